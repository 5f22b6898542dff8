#include "CMessageCommon.h"

void CMessageCommon::SetSrcid(const QString &srcId)
{
    m_srcId = srcId;
}

void CMessageCommon::SetType(const QString &msgType)
{
    m_type = msgType;
}

void CMessageCommon::SetMsg(const QByteArray &packed)
{
    m_msg = packed;
}

QString CMessageCommon::srcId() const
{
    return m_srcId;
}

QString CMessageCommon::type() const
{
    return m_type;
}

QByteArray CMessageCommon::msg() const
{
    return m_msg;
}
