#include "ChangeRows.h"

#include "GatewayTexts.h"
#include "MasterFields.h"
#include "MasterValues.h"

#include <QtCore/QVariant>

#include <cmath>
#include <limits>

namespace {

bool readWholeReal(double real, qint64 &number)
{
    constexpr double beyond = 9.2e18; // every whole number below fits
    if (!std::isfinite(real) || std::floor(real) != real)
        return false;
    number = std::abs(real) < beyond ? qint64(real)
             : real < 0              ? std::numeric_limits<qint64>::min()
                                     : std::numeric_limits<qint64>::max();
    return true;
}

} // namespace

bool readWholeNumber(const QVariant &value, qint64 &number)
{
    switch (int(value.type())) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
        number = value.toLongLong();
        return true;
    case QMetaType::ULongLong:
        number = qint64(qMin<quint64>(value.toULongLong(), std::numeric_limits<qint64>::max()));
        return true;
    case QMetaType::Double:
        return readWholeReal(value.toDouble(), number);
    default:
        return false;
    }
}

QString refusalInRow(int index, const QString &text)
{
    return GatewayTexts::inRow(index + 1, text);
}

QString refusalOfNoRows()
{
    return GatewayTexts::noRows();
}

ChangeRow::ChangeRow(const VariantRecord &record)
    : m_record(record)
{}

QString ChangeRow::refusal() const
{
    return m_refusal;
}

bool ChangeRow::require(bool good, const QString &text)
{
    if (!good && m_refusal.isEmpty())
        m_refusal = text;
    return good;
}

bool ChangeRow::has(const QString &field) const
{
    return m_record.value(field).isValid();
}

QString ChangeRow::id(const QString &field)
{
    const QString text = m_record.value(field).toString();
    require(!text.isEmpty(), GatewayTexts::missing(field));
    require(!text.contains(QLatin1Char('_')) && !text.contains(QLatin1Char(',')), GatewayTexts::badId(text));
    return text;
}

qint64 ChangeRow::wholeNumber(const QString &field)
{
    qint64 number = 0;
    require(has(field), GatewayTexts::missing(field));
    require(readWholeNumber(m_record.value(field), number), GatewayTexts::notWhole(field));
    return number;
}

qint64 ChangeRow::quantity(const QString &field, qint64 dispFactor, qint64 least)
{
    const qint64 number = wholeNumber(field);
    require(number >= 0, GatewayTexts::negative(field));
    require(number >= least, GatewayTexts::zero(field));
    // Divided and not multiplied: the product of a huge number may not fit.
    require(number <= maxQuantity / dispFactor, GatewayTexts::tooLarge(field, maxQuantity));
    return m_refusal.isEmpty() ? number * dispFactor : 0;
}

qint64 ChangeRow::limit(const QString &field, qint64 dispFactor, qint64 otherwise)
{
    if (!has(field))
        return otherwise;
    return wholeNumber(field) < 0 ? -1 : quantity(field, dispFactor);
}

int ChangeRow::numberOr(const QString &field, int most, int otherwise)
{
    if (!has(field))
        return otherwise;
    const qint64 number = quantity(field, 1);
    require(number <= most, GatewayTexts::tooLarge(field, most));
    return int(number);
}

bool ChangeRow::flagOr(const QString &field, bool otherwise)
{
    if (!has(field))
        return otherwise;
    require(m_record.value(field).userType() == QMetaType::Bool, GatewayTexts::notFlag(field));
    return m_record.value(field).toBool();
}

QString ChangeRow::textOr(const QString &field, const QStringList &choices, const QString &otherwise)
{
    if (!has(field))
        return otherwise;
    const QString text = m_record.value(field).toString();
    require(choices.contains(text), GatewayTexts::notOneOf(field, choices.join(QStringLiteral("、")), text));
    return text;
}

bool ChangeRow::covers()
{
    const QString type = m_record.value(Master_Fields::System::addType).toString();
    const bool covers = type == Master_Values::AddType::Cover;
    require(covers || type == Master_Values::AddType::Append, GatewayTexts::badAddType(type));
    return covers;
}

int ChangeRow::poolType()
{
    qint64 type = -1;
    const QVariant value = m_record.value(Master_Fields::ManualT0::PoolType);
    const bool good = readWholeNumber(value, type) && (type == 0 || type == 1);
    return require(good, GatewayTexts::badPoolType()) ? int(type) : -1;
}
