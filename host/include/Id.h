#pragma once

#include "HostExport.h"

#include <QtCore/QVariant>

/// An identifier of the platform, made of a dotted text.
class T0_HOST_EXPORT Id
{
public:
    explicit Id(const QString &text);

    /// The form that settings and properties hold: a QByteArray of the UTF-8 text.
    QVariant toSetting() const;

private:
    QByteArray m_name;
};
