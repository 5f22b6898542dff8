#include "CsvText.h"

namespace {

bool needsQuotes(const QString &cell)
{
    for (const QChar c : cell) {
        if (c == QLatin1Char(',') || c == QLatin1Char('"') || c == QLatin1Char('\n') || c == QLatin1Char('\r'))
            return true;
    }
    return cell != cell.trimmed();
}

} // namespace

QString CsvText::line(const QStringList &cells)
{
    QStringList written;
    for (QString cell : cells) {
        if (needsQuotes(cell))
            cell = QLatin1Char('"') + cell.replace(QLatin1Char('"'), QLatin1String("\"\"")) + QLatin1Char('"');
        written.append(cell);
    }
    return written.join(QLatin1Char(',')) + QLatin1String("\r\n");
}
