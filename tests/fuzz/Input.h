#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <cstdio>
#include <cstdlib>

/// Ends the process with a message, which the fuzzer keeps with the input that caused it.
inline void require(bool holds, const char *what, const QString &details = {})
{
    if (holds)
        return;
    std::fprintf(stderr, "%s %s\n", what, qUtf8Printable(details));
    std::abort();
}

/// An input as a row of decisions. Where it ends every further decision is the first choice, so that an input can be
/// cut anywhere and is still one.
class Input
{
public:
    explicit Input(const QByteArray &bytes)
        : m_bytes(bytes)
    {}

    bool atEnd() const { return m_at >= m_bytes.size(); }

    int byte() { return atEnd() ? 0 : int(uchar(m_bytes.at(m_at++))); }
    int below(int end) { return byte() % end; }

    /// Never at the end of the input.
    bool oneIn(int n) { return below(n) == n - 1; }

    QByteArray bytes()
    {
        const QByteArray taken = m_bytes.mid(m_at, byte());
        m_at += taken.size();
        return taken;
    }

    QString of(const QStringList &texts) { return texts.at(below(texts.size())); }

    QStringList some(const QStringList &texts)
    {
        QStringList chosen;
        for (int i = below(4); i > 0; --i)
            chosen.append(of(texts));
        return chosen;
    }

private:
    const QByteArray m_bytes;
    int m_at = 0;
};
