#include "MessageBody.h"
#include "Envelope.h"
#include "Tests.h"

#include <QtCore/QDateTime>
#include <QtTest/QtTest>

#include <rapidcheck.h>

#include <cmath>
#include <limits>

namespace {

QString anyText()
{
    // beyond ASCII: two, three and four bytes of UTF-8, and what decoders like to swallow
    static const QStringList odd = {QStringLiteral("平安银行"), QString(QChar(0xfeff)) + "x",
                                    QStringLiteral("\u00e9"),   QString::fromUcs4(U"\U0001F600", 1),
                                    QString(QChar(0)),          QString()};
    const int pick = *rc::gen::inRange(0, 12);
    return pick < odd.size() ? odd.at(pick)
                             : QString::fromStdString(*rc::gen::container<std::string>(rc::gen::inRange('!', '~')));
}

QVariant anyValue(int depth)
{
    switch (*rc::gen::inRange(0, depth < 4 ? 9 : 7)) {
    case 0:
        return {};
    case 1:
        return *rc::gen::arbitrary<bool>();
    case 2:
        return qlonglong(*rc::gen::arbitrary<std::int64_t>());
    case 3:
        return qulonglong(std::numeric_limits<qint64>::max()) + 1u + *rc::gen::inRange(0u, 1000u);
    case 4:
        return *rc::gen::arbitrary<double>();
    case 5: {
        const auto bytes = *rc::gen::arbitrary<std::string>();
        return QByteArray(bytes.data(), int(bytes.size()));
    }
    case 7: {
        QVariantList list;
        for (int i = *rc::gen::inRange(0, 4); i > 0; --i)
            list.append(anyValue(depth + 1));
        return list;
    }
    case 8: {
        QVariantMap map;
        for (int i = *rc::gen::inRange(0, 4); i > 0; --i)
            map.insert(anyText(), anyValue(depth + 1));
        return map;
    }
    default:
        return anyText();
    }
}

/// Rows of differing field sets, in every order of first appearance.
RecordList anyRows()
{
    static const QStringList names = {"a", "b", "c", "证券", "z"};
    RecordList rows;
    for (int i = *rc::gen::inRange(0, 8); i > 0; --i) {
        VariantRecord row;
        for (const QString &name : names) {
            if (*rc::gen::arbitrary<bool>())
                row.insert(name, anyValue(1));
        }
        rows.append(row);
    }
    return rows;
}

MessageBody anyBody()
{
    MessageBody body;
    body.values = anyValue(0).toMap();
    body.values.insert(QStringLiteral("v"), anyValue(1));
    body.rows = anyRows();
    return body;
}

bool identical(const QVariant &a, const QVariant &b)
{
    if (a.userType() != b.userType())
        return false;
    if (a.userType() == QMetaType::Double && std::isnan(a.toDouble()))
        return std::isnan(b.toDouble());
    return a == b;
}

MessageBody decoded(const QByteArray &bytes)
{
    MessageBody body;
    QString errorText;
    if (!MessageBody::decode(bytes, body, errorText))
        qWarning() << errorText;
    return body;
}

QByteArray hex(const char *text)
{
    return QByteArray::fromHex(text);
}

} // namespace

class MessageBodyTest : public QObject
{
    Q_OBJECT

private slots:
    void roundTripKeepsValuesAndAbsence();
    void everyTypeArrivesAsPromised_data();
    void everyTypeArrivesAsPromised();
    void rowsShareNamesAndRepeatedTexts();
    void hostileBytesAreRefused_data();
    void hostileBytesAreRefused();
    void everyTruncationIsRefused();
    void whatExceedsTheLimitsIsNotEncoded();
    void envelopeRoundTrip();
};

void MessageBodyTest::roundTripKeepsValuesAndAbsence()
{
    QVERIFY(rc::check([] {
        const MessageBody body = anyBody();
        const MessageBody back = decoded(body.encode());
        RC_ASSERT(back.values == body.values);
        RC_ASSERT(back.rows == body.rows); // a row compares its keys too: absent is not invalid
        RC_ASSERT(back.encode() == body.encode());
    }));
}

void MessageBodyTest::everyTypeArrivesAsPromised_data()
{
    QTest::addColumn<QVariant>("sent");
    QTest::addColumn<QVariant>("arrives");
    QTest::newRow("int") << QVariant(-5) << QVariant(qlonglong(-5));
    QTest::newRow("smallest integer") << QVariant(std::numeric_limits<qlonglong>::min())
                                      << QVariant(std::numeric_limits<qlonglong>::min());
    QTest::newRow("largest integer") << QVariant(std::numeric_limits<qulonglong>::max())
                                     << QVariant(std::numeric_limits<qulonglong>::max());
    QTest::newRow("not a number") << QVariant(std::nan("")) << QVariant(std::nan(""));
    QTest::newRow("text list") << QVariant(QStringList{"a", "b"}) << QVariant(QVariantList{"a", "b"});
    QTest::newRow("rows") << QVariant::fromValue(RecordList{{{"k", 1}}})
                          << QVariant(QVariantList{QVariantMap{{"k", qlonglong(1)}}});
    QTest::newRow("date") << QVariant(QDate(2024, 2, 29)) << QVariant("2024-02-29");
    QTest::newRow("null text") << QVariant(QString()) << QVariant(QString());
}

void MessageBodyTest::everyTypeArrivesAsPromised()
{
    QFETCH(QVariant, sent);
    QFETCH(QVariant, arrives);
    const MessageBody back = decoded(MessageBody{{{"v", sent}}, {{{"c", sent}}}}.encode());
    QVERIFY(back.values.contains("v"));
    QVERIFY(identical(back.values.value("v"), arrives));
    QVERIFY(identical(back.rows.value(0).value("c"), arrives));
}

void MessageBodyTest::rowsShareNamesAndRepeatedTexts()
{
    const MessageBody page{{}, {{{"account", "A1"}}, {{"account", "A2"}}, {{"account", "A1"}}}};
    const RecordList rows = decoded(page.encode()).rows;
    QCOMPARE(rows, page.rows);
    QCOMPARE(rows.at(0).firstKey().constData(), rows.at(1).firstKey().constData());
    QCOMPARE(rows.at(0).first().toString().constData(), rows.at(2).first().toString().constData());
    const RecordList later = decoded(page.encode()).rows; // as pushes come, each with its own names
    QCOMPARE(later.at(0).firstKey().constData(), rows.at(0).firstKey().constData());
}

void MessageBodyTest::hostileBytesAreRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("error");
    QTest::newRow("nothing") << QByteArray() << "unexpected end at byte 0";
    QTest::newRow("no array") << hex("a0") << "array expected at byte 0";
    QTest::newRow("huge row count") << hex("83a0809affffffff") << "length beyond the end at byte 3";
    QTest::newRow("huge text") << hex("83a161617bffffffffffffffff8080") << "length beyond the end at byte 4";
    QTest::newRow("indefinite list") << hex("83a161619fff8080") << "indefinite length at byte 4";
    QTest::newRow("nine levels") << hex("83a1616181818181818181818080") << "nested too deeply at byte 11";
    QTest::newRow("invalid UTF-8") << hex("83a1616162c3288080") << "invalid UTF-8 at byte 4";
    QTest::newRow("three bytes for a letter") << hex("83a1616163e081818080") << "invalid UTF-8 at byte 4";
    QTest::newRow("four bytes for a letter") << hex("83a1616164f08081818080") << "invalid UTF-8 at byte 4";
    QTest::newRow("surrogate in UTF-8") << hex("83a1616163eda0808080") << "invalid UTF-8 at byte 4";
    QTest::newRow("tag") << hex("83a16161c1008080") << "unsupported tag at byte 4";
    QTest::newRow("integer below the range")
        << hex("83a161613bffffffffffffffff8080") << "integer out of range at byte 4";
    QTest::newRow("key twice") << hex("83a2616100616101 8080") << "key twice at byte 5";
    QTest::newRow("field twice") << hex("83a08261616161 80") << "field name twice at byte 5";
    QTest::newRow("trailing bytes") << hex("83a0808000") << "trailing bytes at byte 4";
}

void MessageBodyTest::hostileBytesAreRefused()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, error);
    MessageBody body{{{"kept", 1}}, {}};
    QString errorText;
    QVERIFY(!MessageBody::decode(bytes, body, errorText));
    QCOMPARE(errorText, error);
    QVERIFY(body.values.contains("kept"));
}

void MessageBodyTest::everyTruncationIsRefused()
{
    const QByteArray whole = MessageBody{
        {{"text", "平安"}, {"list", QVariantList{1, 2.5}}},
        {{{"a", 1000}, {"b", "x"}},
         {{"b", QVariant()}}}}.encode();
    for (int size = 0; size < whole.size(); ++size) {
        MessageBody body;
        QString errorText;
        QVERIFY2(!MessageBody::decode(whole.left(size), body, errorText), qPrintable(QString::number(size)));
        QVERIFY(errorText.contains(" at byte "));
    }
}

void MessageBodyTest::whatExceedsTheLimitsIsNotEncoded()
{
    VariantRecord wide;
    for (int i = 0; i < 1000; ++i)
        wide.insert(QString::number(i), i);
    QVERIFY(!MessageBody({{}, {wide}}).encode().isEmpty());
    wide.insert(QStringLiteral("one more"), 1);
    QVERIFY(MessageBody({{}, {wide}}).encode().isEmpty());

    QVariant deep = 1;
    for (int level = 0; level < 7; ++level)
        deep = QVariantList{deep};
    QCOMPARE(decoded(MessageBody{{{"d", deep}}, {}}.encode()).values.size(), 1);
    QVERIFY(MessageBody({{{"d", QVariantList{deep}}}, {}}).encode().isEmpty());

    // Small on the wire, large in memory: the list, its items and every cell count, the names do not.
    QVariantList many;
    many.reserve(4000000);
    for (int i = 1; i < 4000000; ++i)
        many.append(0);
    const QByteArray largest = MessageBody{{{"l", many}}, {}}.encode();
    QCOMPARE(decoded(largest).values.value("l").toList().size(), 3999999);
    many.append(0);
    QVERIFY(MessageBody({{{"l", many}}, {}}).encode().isEmpty());
    QByteArray oneMore = largest;
    oneMore.replace(5, 4, QByteArray::fromHex("003d0900")); // the list's length: 4,000,000
    oneMore.insert(9, '\0');
    MessageBody body;
    QString errorText;
    QVERIFY(!MessageBody::decode(oneMore, body, errorText));
    QVERIFY2(errorText.startsWith("too many values"), qUtf8Printable(errorText));
    QByteArray repeatedText = largest;
    repeatedText.replace(5, 4, QByteArray::fromHex("003d08fe")); // 3,999,998 items, then two cells
    repeatedText.chop(3);
    repeatedText.append(QByteArray::fromHex("8161638281617881 6178"));
    QVERIFY(!MessageBody::decode(repeatedText, body, errorText));
    QCOMPARE(errorText, QStringLiteral("too many values at byte %1").arg(repeatedText.size() - 2));
}

void MessageBodyTest::envelopeRoundTrip()
{
    const Envelope request = Envelope::request("Type", "u1", 5000, {{{"k", 1}}, {}});
    QCOMPARE(request.validUntil - request.sent, qint64(5000));
    QVERIFY(Envelope::request("Type", "u1", 5000, {}).id != request.id);

    Envelope back;
    QString errorText;
    QVERIFY(Envelope::decode(request.answer({}).encode(), back, errorText));
    QCOMPARE(back.id, request.id);
    QCOMPARE(back.type, request.type);
    QCOMPARE(int(back.kind), int(Envelope::Kind::Answer));
    const QByteArray bytes = request.encode();
    for (int size = 0; size < bytes.size(); ++size)
        QVERIFY(!Envelope::decode(bytes.left(size), back, errorText));
    QByteArray wrongKind = bytes;
    wrongKind[1] = 3;
    QVERIFY(!Envelope::decode(wrongKind, back, errorText));
    QCOMPARE(errorText, QStringLiteral("unknown kind of message at byte 1"));
}

T0_REGISTER_TEST(MessageBodyTest)
#include "MessageBodyTest.moc"
