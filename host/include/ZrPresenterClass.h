#pragma once

#include "CMessageCommon.h"
#include "HostExport.h"

#include <QtCore/QObject>
#include <QtCore/QVariant>

class ZrPluginBaseObject;

/// Base of a plug-in's presenter: owns a message channel (its pid) and, with thread type 15, a thread of its
/// own on which its slots and both handlers run, one at a time.
///
/// Pushes are delivered through the presenter's event loop, after any query that is running there; so an
/// answer that the server computed before a push is always seen before it.
class T0_HOST_EXPORT ZrPresenterClass : public QObject
{
    Q_OBJECT

public:
    /// owner: who is told apart in the host's book-keeping, not the QObject parent (an object with a parent
    /// cannot move to a thread of its own). threadType: 15 own thread, any other value the creating thread.
    ZrPresenterClass(const QString &pluginInstanceId, ZrPluginBaseObject *owner, int threadType);

    /// Leaves the message layer; nothing is delivered afterwards.
    ~ZrPresenterClass() override;

    /// Called on the presenter's thread for every push of a subscribed type, in order. msg: for
    /// CUnPackMessageCommon::SetUnPackMsg.
    virtual void onPush(const QString &srcId, const QString &msgType, const QVariant &msg) = 0;

    /// Called on the presenter's thread with the answer to sendRequest_Async. status: 0 answered, 1 time-out,
    /// other failed.
    virtual void onResponse(int status, const QString &srcId, const QString &msgType, const QVariant &msg) = 0;

    /// The channel id; unique in the process.
    QString pluginPid() const;

    /// Subscribes the channel pid to a push type of the host (the server-side subscription is made by
    /// MasterBusinessDataInterface::SubscribePushMsgFromServer). flag: 1. May be called at the end of the most
    /// derived constructor.
    void Sub(const QString &pid, const QString &msgType, int flag);

    /// 0: handed over, the message now belongs to the host and onResponse will be called once. Other: not
    /// sent, the caller still owns the message.
    int sendRequest_Async(CMessageCommon *message);

    /// Cancels the query that is running on the presenter's thread (it returns with an error text), deletes
    /// the presenter on its own thread, ends the thread and waits for it. The presenter is gone on return.
    /// Must not be called on the presenter's thread. With no own thread: deletes the presenter.
    static void release(ZrPresenterClass *presenter);

private:
    class Link;
    Link *m_link;
};
