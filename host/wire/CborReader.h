#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QVariant>

/// Reads what CborWriter writes, from bytes that may be hostile: nothing is allocated for a declared length
/// that the rest of the bytes cannot hold. The first error stops every further read; its text names the byte.
class CborReader
{
public:
    explicit CborReader(const QByteArray &bytes);

    bool failed() const { return !m_errorText.isEmpty(); }
    QString errorText() const { return m_errorText; }
    bool fail(const char *what); ///< always false; the position is the start of the item read last

    bool array(quint64 &items); ///< each item has one byte at least, so items fits what is left
    bool map(quint64 &pairs);
    bool integer(qint64 &number);
    bool text(QString &text);
    bool bytes(QByteArray &bytes);
    bool value(QVariant &value, int depth = 0);
    bool dictionary(QVariantMap &map, int depth);

    bool takeUndefined(); ///< true when the next item is `undefined`, which is consumed

    /// A short text as it stands in the bytes, which outlive it; empty: none.
    struct EncodedText {
        const char *data = nullptr;
        int size = 0;
    };

    EncodedText nextText() const; ///< empty when the next item is anything else; nothing is consumed

    /// True when the next item is this text, which is consumed and counts as a value read.
    bool takeAgain(const EncodedText &text);

    bool end(); ///< false and an error unless all bytes were read

private:
    int left() const { return m_size - m_at; }
    bool head(int &major, quint64 &number);
    bool longHead(quint64 &number);
    bool countValue();
    bool expect(int major, const char *what, quint64 &number);
    bool payload(quint64 size, const char *&data);
    bool simple(quint64 number, QVariant &value);
    bool list(quint64 items, QVariantList &list, int depth);
    bool pairs(quint64 count, QVariantMap &map, int depth);

    const char *m_data;
    int m_size;
    int m_at = 0;
    int m_itemStart = 0;
    int m_values = 0;
    int m_shortForm = 0; ///< low five bits of the last head: the length of its number
    QString m_errorText;
};
