#include "Format.h"

#include "MasterBusinessDataInterface.h"
#include "OrvaneFields.h"

#include <QtCore/QLocale>

#include <cmath>

namespace {

const QLocale &locale()
{
    static const QLocale locale(QLocale::English, QLocale::UnitedStates); // 1,234.50, whatever the machine says
    return locale;
}

bool isNumeric(CellKind kind)
{
    return kind == CellKind::Quantity || kind == CellKind::Price || kind == CellKind::Money ||
           kind == CellKind::Share || kind == CellKind::Bar;
}

/// False for what is no finite number.
bool number(const QVariant &value, double &out)
{
    bool valid = false;
    out = value.toDouble(&valid);
    return valid && std::isfinite(out);
}

QString fixed(const QVariant &value, int decimals)
{
    double number_ = 0;
    return number(value, number_) ? locale().toString(number_, 'f', decimals) : Format::missing();
}

int decimalsOf(const VariantRecord &row)
{
    const QString symbol = row.value(Orvane_Fields::Security::symbol).toString();
    return MasterBusinessDataInterface::GetPricePrecisionBySymbol(symbol, {});
}

} // namespace

QString Format::missing()
{
    return QStringLiteral("--");
}

QString Format::quantity(const QVariant &qty)
{
    return fixed(qty, 0);
}

QString Format::price(const QVariant &price, int decimals)
{
    return fixed(price, decimals);
}

QString Format::money(const QVariant &amount)
{
    return fixed(amount, 2);
}

QString Format::percent(const QVariant &fraction)
{
    double share = 0;
    return number(fraction, share) ? locale().toString(share * 100, 'f', 1) + QLatin1Char('%') : missing();
}

QString Format::time(const QVariant &dateAndTime)
{
    const QString text = dateAndTime.toString();
    const int space = text.indexOf(QLatin1Char(' '));
    return text.isEmpty() ? missing() : text.mid(space + 1, 8);
}

QVariant Format::value(const Column &column, const VariantRecord &row)
{
    const QVariant raw = column.value ? column.value(row) : row.value(column.field);
    if (!isNumeric(column.kind))
        return raw.isValid() ? QVariant(raw.toString()) : raw;
    double found = 0;
    return number(raw, found) ? QVariant(found) : QVariant();
}

QString Format::cell(const Column &column, const VariantRecord &row)
{
    const QVariant shown = value(column, row);
    if (!shown.isValid())
        return missing();
    switch (column.kind) {
    case CellKind::Text:
    case CellKind::Code:
        return shown.toString();
    case CellKind::Quantity:
        return quantity(shown);
    case CellKind::Price:
        return price(shown, decimalsOf(row));
    case CellKind::Money:
        return money(shown);
    case CellKind::Share:
    case CellKind::Bar:
        return percent(shown);
    case CellKind::Time:
        return time(shown);
    }
    return {};
}

QString Format::fileCell(const Column &column, const VariantRecord &row)
{
    const QVariant shown = value(column, row);
    if (!shown.isValid())
        return {};
    if (column.kind == CellKind::Code)
        return QStringLiteral("=\"%1\"").arg(shown.toString().replace(QLatin1Char('"'), QLatin1String("\"\"")));
    return isNumeric(column.kind) ? QString::number(shown.toDouble(), 'g', 15) // a sum's last bits are noise
                                  : shown.toString();
}
