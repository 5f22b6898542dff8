#include "DeskSettings.h"

#include "HCore.h"

namespace {

const QLatin1String group("Desk");

} // namespace

QVariant DeskSettings::value(const QString &name, const QVariant &otherwise)
{
    const QVariant kept = HCore::instance()->settings(name, group, {}, QSettings::UserScope);
    return kept.isValid() ? kept : otherwise;
}

void DeskSettings::keep(const QString &name, const QVariant &value)
{
    HCore::instance()->saveSetting(name, value, group, {}, QSettings::UserScope);
}
