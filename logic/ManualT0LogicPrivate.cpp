#include "ManualT0LogicPrivate.h"

#include "CBusinessDataBase.h"
#include "ManualT0Logic.h"
#include "MarginDC.h"
#include "MasterDelayBuffer.h"
#include "MasterUtils.h"
#include "OrvaneFields.h"
#include "VantaKeys.h"

#include <QtCore/QThread>
#include <QtCore/QTimer>

ManualT0LogicPrivate &ManualT0LogicPrivate::instance()
{
    FamilyLock::makePool();
    static ManualT0LogicPrivate hub;
    return hub;
}

ManualT0LogicPrivate::ManualT0LogicPrivate(QObject *parent, HubTiming timing)
    : ZrObject(true, parent)
    , timing(timing)
{
    qRegisterMetaType<QList<QVariantMap>>("QList<QVariantMap>");
    setThreadName(QStringLiteral("ManualT0LogicThread"));
    // Timers belong to the thread they run on: it deletes them itself as the last thing it does.
    connect(thread(), &QThread::finished, this, &ManualT0LogicPrivate::deleteTimers, Qt::DirectConnection);

    loginUserId = CBusinessDataBase::GetLoginAccountDetail().value(Orvane_Fields::UserAccount::userID).toString();
    buildCandidates();
    loadSymbolLists();
    loadSymbolTradeSettings();
    MarginDC::init({});
}

ManualT0LogicPrivate::~ManualT0LogicPrivate()
{
    stop();
}

void ManualT0LogicPrivate::stop()
{
    stopping = true;
    quitThread();
}

bool ManualT0LogicPrivate::enterSlot() const
{
    Q_ASSERT(QThread::currentThread() == thread());
    return !stopping;
}

void ManualT0LogicPrivate::sendEvent(const QString &eventName, const QVariant &payload) const
{
    MasterUtils::SendEventMsg(presenter, eventName, payload);
}

void ManualT0LogicPrivate::sendDataInited(int type) const
{
    sendEvent(Vanta_Keys::EventMsgName::ManualT0DataInited, type);
}

void ManualT0LogicPrivate::retryLater(QTimer *&timer, void (ManualT0LogicPrivate::*again)())
{
    if (!timer) {
        timer = new QTimer(this);
        timer->setSingleShot(true);
        connect(timer, &QTimer::timeout, this, again);
    }
    timer->start(timing.retry);
}

void ManualT0LogicPrivate::deleteTimers()
{
    delete std::exchange(realtimeRefreshTimer, nullptr);
    delete std::exchange(realtimeRetryTimer, nullptr);
    delete std::exchange(accountPriorityRetryTimer, nullptr);
    delete std::exchange(realtimeDelayBuffer, nullptr);
    delete std::exchange(integrityTimer, nullptr);
}
