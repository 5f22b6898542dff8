#include "AuditReport.h"

#include "Store.h"

#include <QtCore/QDateTime>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTextStream>

namespace {

QString timeText(qint64 ms)
{
    return QDateTime::fromMSecsSinceEpoch(ms, Qt::UTC).toString(QStringLiteral("yyyy-MM-ddThh:mm:ss.zzz"));
}

/// One cell of a line under the name of its column.
using Cell = QPair<QString, QString>;

QVector<Cell> cellsOf(const AuditEntry &entry)
{
    return {{QStringLiteral("time"), timeText(entry.realMs) + QLatin1Char('Z')},
            {QStringLiteral("market"), timeText(entry.marketMs)},
            {QStringLiteral("user"), entry.user},
            {QStringLiteral("type"), entry.type},
            {QStringLiteral("request"), entry.request},
            {QStringLiteral("object"), entry.object},
            {QStringLiteral("id"), entry.objectId},
            {QStringLiteral("account"), entry.holding.account},
            {QStringLiteral("security"), entry.holding.securityID},
            {QStringLiteral("exchange"), entry.holding.exchange},
            {QStringLiteral("trader"), entry.trader},
            {QStringLiteral("field"), entry.field},
            {QStringLiteral("from"), entry.from},
            {QStringLiteral("to"), entry.to},
            {QStringLiteral("refusal"), entry.refusal}};
}

QString jsonLine(const QVector<Cell> &cells)
{
    QJsonObject object;
    for (const Cell &cell : cells)
        object.insert(cell.first, cell.second);
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

/// Chinese characters take two columns of a terminal.
int width(const QString &text)
{
    int columns = 0;
    for (const QChar c : text)
        columns += c.unicode() >= 0x2e80 ? 2 : 1;
    return columns;
}

/// What clients have sent stays in its line.
QString inOneLine(QString text)
{
    for (QChar &c : text)
        c = c.category() == QChar::Other_Control ? QChar(0x2423) : c;
    return text;
}

void printTable(QTextStream &stream, const QVector<QVector<Cell>> &lines)
{
    QVector<Cell> header = cellsOf(AuditEntry());
    QVector<int> widths;
    for (Cell &cell : header) {
        cell.second = cell.first;
        widths.append(width(cell.first));
    }
    for (const QVector<Cell> &line : lines)
        for (int i = 0; i < line.size(); ++i)
            widths[i] = qMax(widths.at(i), width(line.at(i).second));
    for (const QVector<Cell> &line : QVector<QVector<Cell>>{header} + lines) {
        QString text;
        for (int i = 0; i < line.size(); ++i) {
            const QString &cell = line.at(i).second;
            text += cell + QString(widths.at(i) - width(cell) + 2, QLatin1Char(' '));
        }
        stream << text.trimmed() << '\n';
    }
}

QVector<Cell> tableCellsOf(const AuditEntry &entry)
{
    QVector<Cell> cells = cellsOf(entry);
    for (Cell &cell : cells)
        cell.second = inOneLine(cell.second);
    return cells;
}

/// False: the text is no time.
bool readTime(const QString &text, qint64 &ms)
{
    const auto shape = QStringLiteral("yyyy-MM-ddThh:mm:ss");
    for (const int length : {10, 16, 19}) {
        QDateTime time = QDateTime::fromString(text, shape.left(length));
        time.setTimeSpec(Qt::UTC);
        ms = time.toMSecsSinceEpoch();
        if (time.isValid() && text.size() == length)
            return true;
    }
    return false;
}

} // namespace

bool AuditReport::isTime(const QString &text)
{
    qint64 ms = 0;
    return readTime(text, ms);
}

QString AuditReport::print(const AuditQuestion &question)
{
    AuditFilter filter{0, question.user};
    if (!question.since.isEmpty())
        readTime(question.since, filter.sinceMs);
    QTextStream stream(stdout);
    stream.setCodec("UTF-8");
    QVector<QVector<Cell>> lines;
    const QString error = Store::readAudit(question.file, filter, [&](const AuditEntry &entry) {
        if (question.json)
            stream << jsonLine(cellsOf(entry)) << '\n';
        else
            lines.append(tableCellsOf(entry));
    });
    if (error.isEmpty() && !question.json)
        printTable(stream, lines);
    return error;
}
