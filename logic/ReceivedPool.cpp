#include "ReceivedPool.h"

#include "DisplayUnits.h"
#include "ManualT0Logic.h"
#include "MasterFields.h"
#include "Quantity.h"
#include "RecordWriter.h"

using namespace Master_Fields::ManualT0;

namespace {

/// How the quantities are scaled: of a first answer of a load, or of a later one.
enum class Answer { First, Later };

bool isScaled(const QString &field)
{
    return field == PoolTotalQty || field == MaxExposureQty || field == MaxPendExposureQty;
}

QVariant scaled(const QString &field, const QVariant &value, int factor, Answer answer)
{
    // deliberate: the first answers of a load scale a limit of -1 too; readers take every negative limit as none.
    if (field == PoolTotalQty || answer == Answer::First)
        return Quantity::toNum(value) * factor;
    const int limit = Quantity::toIntQty(value);
    return limit == ManualT0Logic::InvalidExposure ? value : QVariant(Quantity::clampToInt(qint64(limit) * factor));
}

/// Of two equal values: whether nobody can tell them apart. Values inside lists are not looked at.
bool isSame(const QVariant &a, const QVariant &b)
{
    const int type = a.userType();
    const bool isList = type == QMetaType::QVariantList || type == QMetaType::QVariantMap;
    return type == b.userType() && a.isNull() == b.isNull() && !isList;
}

/// Whether two values are equal; notes when they are not the same.
bool isLike(const QVariant &held, const QVariant &sent, ReceivedPool::Likeness &likeness)
{
    if (!isSame(held, sent))
        likeness = ReceivedPool::Likeness::SameValues;
    return held == sent; // in this order: a text and a number are not compared alike both ways
}

} // namespace

ReceivedPool::ReceivedPool(VariantRecord row)
    : m_row(std::move(row))
    , m_symbol(symbolOf(m_row))
    , m_factor(displayFactor(m_symbol))
{}

VariantRecord ReceivedPool::takeAsFirst()
{
    m_row.insert(Orvane_Fields::Security::symbol, m_symbol);
    if (m_factor > 1) {
        for (const QString &field : {PoolTotalQty, MaxExposureQty, MaxPendExposureQty}) {
            const auto value = m_row.find(field);
            if (value != m_row.end())
                *value = scaled(field, *value, m_factor, Answer::First);
        }
    }
    return std::move(m_row);
}

void ReceivedPool::writeTo(VariantRecord &record) const
{
    using Orvane_Fields::Security::symbol;
    RecordWriter writer(record);
    bool isSymbolWritten = false;
    const auto writeSymbol = [&] {
        writer.write(symbol, m_symbol);
        isSymbolWritten = true;
    };
    for (auto sent = m_row.cbegin(); sent != m_row.cend(); ++sent) {
        if (!isSymbolWritten && !(sent.key() < symbol))
            writeSymbol();
        if (m_factor > 1 && isScaled(sent.key()))
            writer.write(sent.key(), scaled(sent.key(), *sent, m_factor, Answer::Later));
        else if (sent.key() != symbol)
            writer.write(sent.key(), *sent);
    }
    if (!isSymbolWritten)
        writeSymbol();
}

ReceivedPool::Likeness ReceivedPool::likenessTo(const VariantRecord &held) const
{
    using Orvane_Fields::Security::symbol;
    if (text(held, symbol) != m_symbol)
        return Likeness::Different;
    auto likeness = Likeness::Same;
    auto other = held.cbegin();
    for (auto sent = m_row.cbegin(); sent != m_row.cend(); ++sent) {
        if (sent.key() == symbol)
            continue; // the host's stands in its place
        if (other != held.cend() && other.key() == symbol)
            ++other;
        if (other == held.cend() || other.key() != sent.key())
            return Likeness::Different;
        const bool equal = m_factor > 1 && isScaled(sent.key())
                               ? isLike(*other, scaled(sent.key(), *sent, m_factor, Answer::Later), likeness)
                               : isLike(*other, *sent, likeness);
        if (!equal)
            return Likeness::Different;
        ++other;
    }
    if (other != held.cend() && other.key() == symbol)
        ++other;
    return other == held.cend() ? likeness : Likeness::Different;
}
