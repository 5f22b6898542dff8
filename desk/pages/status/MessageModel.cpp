#include "MessageModel.h"

#include "HostNews.h"
#include "HostSession.h"
#include "StatusFields.h"

namespace {

constexpr int kept = 1000;

QString keyOf(const VariantRecord &row)
{
    return row.value(StatusFields::key()).toString();
}

Columns shownColumns()
{
    using namespace StatusFields;
    return {{QStringLiteral("time"), MessageModel::tr("时间"), CellKind::Time, time(), {}, false, 11},
            {QStringLiteral("text"), MessageModel::tr("消息"), CellKind::Text, text(), {}, false, 120}};
}

} // namespace

MessageModel::MessageModel(QObject *parent)
    : RecordModel(shownColumns(), keyOf, parent)
{
    connect(&HostSession::current()->news(), &HostNews::businessMessagesCame, this, &MessageModel::add);
}

/// A line is text, level and time, a tab between; the text may hold tabs itself.
void MessageModel::add(const QStringList &lines)
{
    RecordList rows;
    QStringList leaving;
    for (const QString &line : lines) {
        const QLatin1Char tab('\t');
        rows.append({{StatusFields::key(), m_next},
                     {StatusFields::text(), line.section(tab, 0, -3)},
                     {StatusFields::time(), line.section(tab, -1).replace(QLatin1Char('T'), QLatin1Char(' '))}});
        if (m_next >= kept)
            leaving.append(QString::number(m_next - kept));
        ++m_next;
    }
    remove(leaving);
    put(rows);
}
