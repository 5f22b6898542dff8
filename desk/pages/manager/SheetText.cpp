#include "SheetText.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QTextCodec>

#include <csv.h>

namespace {

QString text(const char *sourceText)
{
    return QCoreApplication::translate("SheetText", sourceText);
}

bool decode(const QByteArray &bytes, const char *codecName, QString &out)
{
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    out = QTextCodec::codecForName(codecName)->toUnicode(bytes.constData(), bytes.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0 && !out.contains(QChar::ReplacementCharacter);
}

char separatorOf(const QByteArray &firstLine)
{
    for (const char separator : {'\t', ',', ';'}) {
        if (firstLine.contains(separator))
            return separator;
    }
    return ' ';
}

/// Spreadsheets keep a code a text as ="600001".
QString withoutFormula(const QString &cell)
{
    const QString trimmed = cell.trimmed();
    if (trimmed.size() >= 3 && trimmed.startsWith(QLatin1String("=\"")) && trimmed.endsWith(QLatin1Char('"')))
        return trimmed.mid(2, trimmed.size() - 3);
    return trimmed;
}

/// libcsv, fed whole lines, so that every row knows where it began.
class Parser
{
public:
    explicit Parser(char separator)
    {
        csv_init(&m_parser, 0);
        csv_set_delim(&m_parser, uchar(separator));
    }
    ~Parser() { csv_free(&m_parser); }
    Q_DISABLE_COPY(Parser)

    bool feed(const QByteArray &line, int number)
    {
        if (!m_isInside)
            m_row = {number, {}};
        m_isInside = m_isInside || !line.trimmed().isEmpty();
        return csv_parse(&m_parser, line.constData(), size_t(line.size()), &Parser::cell, &Parser::endOfRow, this) ==
               size_t(line.size());
    }
    bool isInside() const { return m_isInside; } ///< a row has not ended: a quote is open
    int line() const { return m_row.line; }
    QVector<SheetText::Row> rows;

private:
    static void cell(void *data, size_t size, void *self)
    {
        static_cast<Parser *>(self)->m_row.cells.append(
            withoutFormula(QString::fromUtf8(static_cast<const char *>(data), int(size))));
    }
    static void endOfRow(int, void *self)
    {
        auto *parser = static_cast<Parser *>(self);
        if (!parser->m_row.cells.join(QString()).isEmpty())
            parser->rows.append(parser->m_row);
        parser->m_isInside = false;
    }

    csv_parser m_parser;
    SheetText::Row m_row;
    bool m_isInside = false;
};

} // namespace

QString SheetText::decoded(QByteArray bytes, QString &errorText)
{
    if (bytes.startsWith("\xEF\xBB\xBF"))
        bytes.remove(0, 3);
    QString decodedText;
    if (decode(bytes, "UTF-8", decodedText) || decode(bytes, "GB18030", decodedText))
        return decodedText;
    int line = 0;
    for (const QByteArray &one : bytes.split('\n')) {
        ++line;
        QString ignored;
        if (decode(one, "UTF-8", ignored) || decode(one, "GB18030", ignored))
            continue;
        break;
    }
    errorText = text(QT_TRANSLATE_NOOP("SheetText", "第%1行既不是UTF-8也不是GB18030编码")).arg(line);
    return {};
}

QVector<SheetText::Row> SheetText::rows(const QString &text, QString &errorText)
{
    const QList<QByteArray> lines = text.toUtf8().split('\n');
    const char separator = separatorOf(lines.value(0));
    Parser parser(separator);
    int number = 0;
    for (const QByteArray &line : lines) {
        const QByteArray fed = (separator == ' ' ? line.simplified() : line) + '\n';
        if (!parser.feed(fed, ++number))
            break;
    }
    if (parser.isInside())
        errorText = ::text(QT_TRANSLATE_NOOP("SheetText", "第%1行的引号没有结束")).arg(parser.line());
    return parser.rows;
}
