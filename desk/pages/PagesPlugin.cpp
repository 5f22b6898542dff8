#include "PagesPlugin.h"

#include "LogBook.h"
#include "ManagerPage.h"
#include "ManualT0Logic.h"
#include "ProfitPage.h"
#include "StatusLineFamilies.h"
#include "StatusLineFigures.h"
#include "StatusPage.h"
#include "TraderPage.h"

bool PagesPlugin::initialize(const QStringList &, QString *errorString, const QString &dllName)
{
    if (PageShell::instance())
        return true;
    if (errorString)
        *errorString = tr("%1：没有可放置页面的窗口").arg(dllName);
    return false;
}

void PagesPlugin::extensionsInitialized()
{
    PageShell *shell = PageShell::instance();
    LogBook::open();
    shell->addPage(TraderPage::description());
    shell->addPage(ManagerPage::description());
    shell->addPage(ProfitPage::description());
    shell->addPage(StatusPage::description());
    shell->addStatusWidget(new StatusLineFamilies);
    shell->addStatusWidget(new StatusLineFigures);
    ManualT0Logic::InitData();
}
