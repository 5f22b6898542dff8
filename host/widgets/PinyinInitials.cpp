#include "PinyinInitials.h"

#include <QtCore/QTextCodec>

#include <algorithm>
#include <iterator>

namespace {

/// GB 2312 sorts its first level by pinyin: the first code of each initial. None begins with i, u or v.
struct Initial {
    ushort firstCode;
    char letter;
};

constexpr Initial initials[] = {{0xb0a1, 'a'}, {0xb0c5, 'b'}, {0xb2c1, 'c'}, {0xb4ee, 'd'}, {0xb6ea, 'e'},
                                {0xb7a2, 'f'}, {0xb8c1, 'g'}, {0xb9fe, 'h'}, {0xbbf7, 'j'}, {0xbfa6, 'k'},
                                {0xc0ac, 'l'}, {0xc2e8, 'm'}, {0xc4c3, 'n'}, {0xc5b6, 'o'}, {0xc5be, 'p'},
                                {0xc6da, 'q'}, {0xc8bb, 'r'}, {0xc8f6, 's'}, {0xcbfa, 't'}, {0xcdda, 'w'},
                                {0xcef4, 'x'}, {0xd1b9, 'y'}, {0xd4d1, 'z'}};
constexpr ushort lastCode = 0xd7f9;

/// 0 for a code outside the first level.
char initialOf(ushort code)
{
    if (code < std::begin(initials)->firstCode || code > lastCode)
        return 0;
    const auto isBelow = [](ushort value, const Initial &initial) { return value < initial.firstCode; };
    return std::prev(std::upper_bound(std::begin(initials), std::end(initials), code, isBelow))->letter;
}

/// Words in names of securities whose characters have another reading than the one they are sorted by.
QString withReadings(QString text)
{
    text.replace(QStringLiteral("银行"), QStringLiteral("yh"));
    text.replace(QStringLiteral("重庆"), QStringLiteral("cq"));
    text.replace(QStringLiteral("西藏"), QStringLiteral("xz"));
    return text;
}

/// A two-byte code at a position of GB 18030 text that is not ASCII; 0 for a four-byte one, whose second is a digit.
ushort doubleByte(const QByteArray &bytes, int at)
{
    const auto second = uchar(bytes.at(at + 1));
    return second < 0x40 ? 0 : ushort(uchar(bytes.at(at)) << 8 | second);
}

QString initialsOfBytes(const QByteArray &bytes)
{
    QString found;
    for (int i = 0; i < bytes.size();) {
        const char byte = bytes.at(i);
        if (uchar(byte) < 0x80) {
            if (QChar::fromLatin1(byte).isLetterOrNumber())
                found += QChar::fromLatin1(byte).toLower();
            ++i;
            continue;
        }
        if (i + 1 == bytes.size())
            break;
        const ushort code = doubleByte(bytes, i);
        if (const char initial = initialOf(code))
            found += QLatin1Char(initial);
        i += code == 0 ? 4 : 2;
    }
    return found;
}

} // namespace

QString PinyinInitials(const QString &text)
{
    const QTextCodec *codec = QTextCodec::codecForName("GB18030");
    if (!codec)
        return {};
    // Names of securities hold full-width letters, which compatibility decomposition makes plain ones.
    return initialsOfBytes(codec->fromUnicode(withReadings(text.normalized(QString::NormalizationForm_KC))));
}
