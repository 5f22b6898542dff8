#pragma once

#include <QtCore/QVariant>

#include <cmath>
#include <limits>

// Every conversion of a record's value to a number. QVariant's own conversions round doubles half up, wrap
// silently and read the text "150.0" as 0.

namespace Quantity {

/// Quantities and prices closer than this are the same.
constexpr double Tolerance = 1e-10;

/// Truncated toward zero, clamped to the range; not a number and infinities give 0.
inline qint64 truncToInt64(double value)
{
    constexpr double limit = 9223372036854775808.0; // 2^63
    if (!std::isfinite(value))
        return 0;
    if (value >= limit)
        return std::numeric_limits<qint64>::max();
    if (value < -limit)
        return std::numeric_limits<qint64>::min();
    return qint64(value);
}

/// Rounded half away from zero, else as truncToInt64.
inline qint64 roundToInt64(double value)
{
    return truncToInt64(std::round(value));
}

/// As it stands; 0 when absent or no number. Keeps not-a-number and infinities.
inline double toNum(const QVariant &value)
{
    return value.toDouble();
}

/// A whole quantity: integers as they are (no detour through double), anything else truncated toward zero.
inline qint64 toQty(const QVariant &value)
{
    switch (int(value.type())) {
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::UInt:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Bool:
        return value.toLongLong();
    case QMetaType::ULongLong: {
        const quint64 number = value.toULongLong();
        return qint64(qMin(number, quint64(std::numeric_limits<qint64>::max())));
    }
    default:
        return truncToInt64(value.toDouble());
    }
}

/// Whether the value is a number, not a text of one, and has no fraction.
inline bool isWholeNumber(const QVariant &value)
{
    switch (int(value.type())) {
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::UInt:
    case QMetaType::ULongLong:
        return true;
    case QMetaType::Double:
        return std::floor(value.toDouble()) == value.toDouble() && std::isfinite(value.toDouble());
    default:
        return false;
    }
}

inline int clampToInt(qint64 value)
{
    return int(qBound(qint64(std::numeric_limits<int>::min()), value, qint64(std::numeric_limits<int>::max())));
}

/// toQty clamped to int.
inline int toIntQty(const QVariant &value)
{
    return clampToInt(toQty(value));
}

/// The sum, clamped to the range.
inline qint64 satAdd(qint64 a, qint64 b)
{
    qint64 sum = 0;
    if (!__builtin_add_overflow(a, b, &sum))
        return sum;
    return a > 0 ? std::numeric_limits<qint64>::max() : std::numeric_limits<qint64>::min();
}

/// The difference, clamped to the range.
inline qint64 satSub(qint64 a, qint64 b)
{
    qint64 difference = 0;
    if (!__builtin_sub_overflow(a, b, &difference))
        return difference;
    return a > b ? std::numeric_limits<qint64>::max() : std::numeric_limits<qint64>::min();
}

/// The product, clamped to the range.
inline qint64 satMul(qint64 a, qint64 b)
{
    qint64 product = 0;
    if (!__builtin_mul_overflow(a, b, &product))
        return product;
    return (a < 0) == (b < 0) ? std::numeric_limits<qint64>::max() : std::numeric_limits<qint64>::min();
}

} // namespace Quantity
