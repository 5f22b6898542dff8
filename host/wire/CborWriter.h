#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QVariant>

/// Writes the few forms of CBOR that messages use: definite lengths, 64-bit floats, no tags.
class CborWriter
{
public:
    static constexpr int maxDepth = 8;

    void array(quint64 items) { head(4, items); }
    void map(quint64 pairs) { head(5, pairs); }
    void integer(qint64 number);
    void text(const QString &text);
    void bytes(const QByteArray &bytes);
    void undefined() { m_out.append(char(0xf7)); }

    /// Any variant, as MessageBody says. False: nested deeper than maxDepth.
    bool value(const QVariant &value, int depth = 0);

    void reserve(int size) { m_out.reserve(size); }
    int size() const { return m_out.size(); }
    QByteArray take() { return std::move(m_out); }

private:
    void head(int major, quint64 number);
    void real(double number);
    bool list(const QVariant &value, int depth);
    bool dictionary(const QVariantMap &map, int depth);

    QByteArray m_out;
};
