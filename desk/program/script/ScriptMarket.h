#pragma once

#include <QtCore/QStringList>

class FaultChannel;

/// What a script does behind the window: with the paper market and with the channel to the gateway. Texts that are
/// returned are empty or say what is wrong.
namespace ScriptMarket {

QString exchange(const QStringList &words); ///< hold | run SPEED | step SECONDS | day-change
QString quote(const QString &symbol, const QString &price);
QString fault(FaultChannel &channel, const QStringList &words); ///< clear | TYPE KIND [ARGUMENT [TIMES [ACCOUNT]]]

} // namespace ScriptMarket
