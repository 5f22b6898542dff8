#include "CsvFile.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTextCodec>

#include <algorithm>

#include <csv.h>

namespace {

std::optional<QString> decoded(const QByteArray &bytes, const char *codecName)
{
    QTextCodec *codec = QTextCodec::codecForName(codecName);
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    const QString text = codec->toUnicode(bytes.constData(), bytes.size(), &state);
    if (state.invalidChars > 0 || state.remainingChars > 0)
        return std::nullopt;
    return text;
}

bool isAscii(const QByteArray &line)
{
    return std::all_of(line.cbegin(), line.cend(), [](char byte) { return uchar(byte) < 0x80; });
}

/// A file is UTF-8 unless most of its lines beyond ASCII are not: one stray byte does not turn the whole file
/// into another encoding.
const char *codecOf(const QList<QByteArray> &lines)
{
    int utf8 = 0;
    int others = 0;
    for (const QByteArray &line : lines) {
        if (!isAscii(line))
            ++(decoded(line, "UTF-8") ? utf8 : others);
    }
    return others > utf8 ? "GB18030" : "UTF-8";
}

/// The lines as UTF-8; badLine, from 1, is the first that is in neither encoding.
QList<QByteArray> decodedLines(QByteArray bytes, int &badLine)
{
    if (bytes.startsWith("\xEF\xBB\xBF"))
        bytes.remove(0, 3);
    QList<QByteArray> lines = bytes.split('\n'); // a line feed is no part of a character in either encoding
    const char *codec = codecOf(lines);
    for (int i = 0; i < lines.size(); ++i) {
        const auto text = decoded(lines.at(i), codec);
        if (!text || text->contains(QChar::ReplacementCharacter)) {
            badLine = i + 1;
            return {};
        }
        lines[i] = text->toUtf8();
    }
    return lines;
}

/// libcsv, fed line by line so that every row knows where it began.
class Parser
{
public:
    Parser() { csv_init(&m_parser, CSV_STRICT | CSV_STRICT_FINI); }
    ~Parser() { csv_free(&m_parser); }
    Q_DISABLE_COPY(Parser)

    bool feed(const QByteArray &line, int number)
    {
        if (!m_insideRow) {
            if (line.startsWith('#'))
                return true;
            m_row = CsvRow{number, {}};
        }
        m_insideRow = !line.trimmed().isEmpty() || m_insideRow;
        const auto size = size_t(line.size());
        return csv_parse(&m_parser, line.constData(), size, &Parser::cell, &Parser::endOfRow, this) == size;
    }

    bool finish() { return csv_fini(&m_parser, &Parser::cell, &Parser::endOfRow, this) == 0; }
    int line() const { return m_row.line; }
    QVector<CsvRow> rows;

private:
    static void cell(void *data, size_t size, void *self)
    {
        static_cast<Parser *>(self)->m_row.cells.append(QString::fromUtf8(static_cast<const char *>(data), int(size)));
    }
    static void endOfRow(int, void *self)
    {
        auto *parser = static_cast<Parser *>(self);
        parser->rows.append(parser->m_row);
        parser->m_row.cells.clear();
        parser->m_insideRow = false;
    }

    csv_parser m_parser;
    CsvRow m_row;
    bool m_insideRow = false;
};

} // namespace

std::optional<QVector<CsvRow>> readCsv(const QString &dir, const QString &file, BookError &error)
{
    error = BookError{file, 0, QStringLiteral("file"), QString(), QString()};
    QFile input(QDir(dir).filePath(file));
    if (!input.open(QIODevice::ReadOnly)) {
        error.value = QDir::toNativeSeparators(input.fileName());
        error.expected = QStringLiteral("a readable file (%1)").arg(input.errorString());
        return std::nullopt;
    }
    const QList<QByteArray> lines = decodedLines(input.readAll(), error.row);
    if (error.row > 0) {
        error.expected = QStringLiteral("text in UTF-8 or GB18030, one of them in the whole file");
        return std::nullopt;
    }

    Parser parser;
    for (int i = 0; i < lines.size(); ++i) {
        if (parser.feed(lines.at(i) + '\n', i + 1))
            continue;
        error.row = i + 1;
        error.value = QString::fromUtf8(lines.at(i).trimmed());
        error.expected = QStringLiteral("cells separated by commas, a quote inside a quoted cell doubled");
        return std::nullopt;
    }
    if (!parser.finish()) {
        error.row = parser.line();
        error.expected = QStringLiteral("a quoted cell to end before the file does");
        return std::nullopt;
    }
    return parser.rows;
}
