#include <HostSession.h>
#include <ManualT0Logic.h>
#include <MessageChannel.h>
#include <PluginLoader.h>

extern "C" Q_DECL_EXPORT void partSetTradeAccounts(const QStringList &accounts)
{
    ManualT0Logic::SetCurrentTradeAccount(accounts);
}
