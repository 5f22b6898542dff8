#include "CBusinessDataBase.h"
#include "EventBus.h"
#include "HCore.h"
#include "MasterDelayBuffer.h"
#include "MasterUtils.h"
#include "ScriptedChannel.h"
#include "ZrObject.h"
#include "ZrPresenterClass.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QTemporaryDir>

#include <cstring>

namespace {

class Presenter : public ZrPresenterClass
{
public:
    Presenter()
        : ZrPresenterClass({}, nullptr, 15)
    {
        Sub(pluginPid(), "Push", 1);
    }
    void onPush(const QString &, const QString &, const QVariant &) override {}
    void onResponse(int, const QString &, const QString &, const QVariant &) override {}
};

/// Dies among the statics, in an order nobody chose, and still calls the host.
struct Late {
    ~Late()
    {
        MasterUtils::SendEventMsg(nullptr, "late", 1);
        QString errorText;
        MasterUtils::QueryDatasFromServer(nullptr, "Query", {}, Mode0, errorText);
        CBusinessDataBase::GetLoginAccount();
        HCore::instance()->saveSetting("late", 1, {}, {}, QSettings::UserScope);
        delete object;
    }
    ZrObject *object = nullptr;
};

void useEverything(Late &late)
{
    static QObject context;
    late.object = new ZrObject(true, nullptr);
    EventBus::listen("late", &context, [](const QVariant &) {});
    EventBus::listen("late", late.object, [](const QVariant &) {});
    MasterUtils::SendEventMsg(nullptr, "late", 1);
}

} // namespace

/// Ends the process in one of several ways; exit code 0 and no report of a sanitizer is the result.
int main(int argc, char **argv)
{
    const char *way = argc > 1 ? argv[1] : "";
    static Late late;
    if (std::strcmp(way, "noapplication") == 0) {
        ScriptedChannel *channel = nullptr;
        auto session = ScriptedReference{}.open(channel);
        useEverything(late);
        channel->push("Push", {});
        auto *presenter = new Presenter;
        ZrPresenterClass::release(presenter);
        session.reset();
        return 0;
    }
    QCoreApplication application(argc, argv);
    ScriptedChannel *channel = nullptr;
    static std::unique_ptr<HostSession> session; // closed while the statics die
    if (std::strcmp(way, "opensession") == 0) {
        session = ScriptedReference{}.open(channel);
        channel->push("Push", {});
    } else if (std::strcmp(way, "presenter") == 0) {
        session = ScriptedReference{}.open(channel);
        (new Presenter)->deleteLater(); // its thread ends with it, also without release()
        channel->push("Push", {});
        return session->settle(20000) ? 0 : 1;
    }
    useEverything(late);
    return 0;
}
