#pragma once

#include "Kinds.h"
#include "Operations.h"

/// A command that could not be carried out.
inline Outcome bad(const QString &errorText)
{
    Outcome outcome;
    outcome.errorText = errorText;
    return outcome;
}

/// Reads the arguments of the console's own commands; the first that does not fit is what errorText says.
class Reader
{
public:
    explicit Reader(const QVector<Argument> &arguments)
        : m_arguments(arguments)
    {}

    template <typename T> T get(int index, T absent = {})
    {
        if (index >= m_arguments.size())
            return absent;
        T value = absent;
        check(index, readKind(m_arguments.at(index), value));
        return value;
    }

    /// An integer that is not below a least value.
    int atLeast(int least, int index, int absent = 0)
    {
        const int value = get(index, absent);
        if (index < m_arguments.size() && errorText.isEmpty() && value < least)
            check(index, QStringLiteral("%1 or more is expected, not %2").arg(least).arg(value));
        return value;
    }

    QString errorText;

private:
    void check(int index, const QString &wrong)
    {
        if (errorText.isEmpty() && !wrong.isEmpty())
            errorText = QStringLiteral("argument %1: %2").arg(QString::number(index + 1), wrong);
    }

    const QVector<Argument> &m_arguments;
};
