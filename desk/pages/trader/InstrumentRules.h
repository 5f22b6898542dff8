#pragma once

#include <QtCore/QString>

/// What an instrument's orders are held to.
namespace InstrumentRules {

int decimals(const QString &symbol); ///< of a price

/// The price units above and below a price: they differ where a band of prices begins.
double unitAbove(const QString &symbol, double price, const QString &sideUnion);
double unitBelow(const QString &symbol, double price, const QString &sideUnion);

qint64 quantityStep(const QString &symbol);
qint64 lot(const QString &symbol); ///< what traders call one lot, in shares or bonds
QString name(const QString &symbol);

} // namespace InstrumentRules
