#include "CPackMessageCommon.h"
#include "CUnPackMessageCommon.h"
#include "HostLog.h"
#include "MessageBody.h"

void CPackMessageCommon::AddRowVaule(const QVariantMap &row)
{
    m_rows.append(row);
}

void CPackMessageCommon::AddVaule(const QString &key, const QVariant &value)
{
    m_values.insert(key, value);
}

QByteArray CPackMessageCommon::GetPackedMsg(int) const
{
    return MessageBody{m_values, m_rows}.encode();
}

bool CUnPackMessageCommon::SetUnPackMsg(const QVariant &msg, int)
{
    MessageBody body;
    QString errorText;
    const bool readable = MessageBody::decode(msg.toByteArray(), body, errorText);
    if (!readable)
        HOST_INFO("CUnPackMessageCommon", "CUnPackMessageCommon::SetUnPackMsg" << errorText);
    m_values = body.values;
    m_rows = body.rows;
    return readable;
}

QVariant CUnPackMessageCommon::GetValue(const QString &key, const QVariant &defaultValue) const
{
    return m_values.value(key, defaultValue);
}

VariantRecord CUnPackMessageCommon::GetRowValue() const
{
    return m_rows.value(0);
}

RecordList CUnPackMessageCommon::GetAllValue() const
{
    return m_rows;
}
