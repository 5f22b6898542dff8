#include "Diagnostics.h"

#include "CBusinessDataBase.h"
#include "Format.h"
#include "LogBook.h"
#include "OrvaneFields.h"
#include "RecordModel.h"
#include "StandFields.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtCore/QSysInfo>

#include <algorithm>

namespace {

QString section(const QString &heading, const QStringList &lines)
{
    return QStringLiteral("== ") + heading + QLatin1Char('\n') + lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

} // namespace

QString Diagnostics::table(const QString &heading, const RecordModel &model, int last)
{
    QStringList lines;
    const RecordList rows = model.records();
    for (const VariantRecord &row : rows.mid(std::max(0, rows.size() - last))) {
        QStringList cells;
        for (const Column &column : model.columns())
            cells.append(Format::cell(column, row));
        lines.append(cells.join(QLatin1Char('\t')));
    }
    return section(heading, lines);
}

QString Diagnostics::log(int last)
{
    QStringList lines;
    const QVector<LogBook::Line> all = LogBook::from(0);
    for (const LogBook::Line &line : all.mid(std::max(0, all.size() - last)))
        lines.append(line.text);
    return section(QStringLiteral("log"), lines);
}

QString Diagnostics::program()
{
    const VariantRecord user = CBusinessDataBase::GetLoginAccountDetail();
    return section(QStringLiteral("program"),
                   {QCoreApplication::applicationName() + QLatin1Char(' ') + QCoreApplication::applicationVersion(),
                    QStringLiteral("Qt ") + QString::fromLatin1(qVersion()), QSysInfo::prettyProductName(),
                    QDateTime::currentDateTime().toString(Qt::ISODateWithMs),
                    QStringLiteral("user ") + CBusinessDataBase::GetLoginAccount() + QLatin1Char(' ') +
                        user.value(Stand_Fields::User::roles).toStringList().join(QLatin1Char(','))});
}
