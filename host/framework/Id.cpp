#include "Id.h"

Id::Id(const QString &text)
    : m_name(text.toUtf8())
{}

QVariant Id::toSetting() const
{
    return m_name;
}
