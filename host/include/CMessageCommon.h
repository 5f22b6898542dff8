#pragma once

#include "HostExport.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

/// A packed message with its addressee, as sendRequest_Async takes it.
class T0_HOST_EXPORT CMessageCommon
{
public:
    void SetSrcid(const QString &srcId); ///< the channel id of the sender (ZrPresenterClass::pluginPid)
    void SetType(const QString &msgType);
    void SetMsg(const QByteArray &packed); ///< CPackMessageCommon::GetPackedMsg

    QString srcId() const;
    QString type() const;
    QByteArray msg() const;

private:
    QString m_srcId;
    QString m_type;
    QByteArray m_msg;
};
