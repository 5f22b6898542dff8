#include "LogPanel.h"

#include "FollowEnd.h"
#include "LogBook.h"
#include "RecordTable.h"
#include "StatusFields.h"

#include <QtWidgets/QComboBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLineEdit>

namespace {

constexpr int takeOverEveryMs = 200;

QString keyOf(const VariantRecord &row)
{
    return row.value(StatusFields::key()).toString();
}

Columns columns()
{
    using namespace StatusFields;
    return {{QStringLiteral("time"), LogPanel::tr("时间"), CellKind::Time, time(), {}, false, 10},
            {QStringLiteral("level"), LogPanel::tr("级别"), CellKind::Text, level(), {}, false, 7},
            {QStringLiteral("source"), LogPanel::tr("来源"), CellKind::Text, name(), {}, false, 32},
            {QStringLiteral("text"), LogPanel::tr("内容"), CellKind::Text, text(), {}, false, 120}};
}

/// A line is: time, level, source and line, the function in brackets, text.
VariantRecord rowOf(const LogBook::Line &line)
{
    const QLatin1Char space(' ');
    const int text = line.text.indexOf(QStringLiteral("] "));
    const bool isDebug = line.level == HostLog::Level::Debug;
    return {{StatusFields::key(), line.number},
            {StatusFields::time(), line.text.section(space, 0, 0).replace(QLatin1Char('T'), space)},
            {StatusFields::level(), isDebug ? LogPanel::tr("调试") : LogPanel::tr("信息")},
            {StatusFields::name(), line.text.section(space, 2, 2)},
            {StatusFields::text(), text < 0 ? line.text : line.text.mid(text + 2).trimmed()}};
}

} // namespace

LogPanel::LogPanel(QWidget *parent)
    : QWidget(parent)
    , m_model(new RecordModel(columns(), keyOf, this))
    , m_table(new RecordTable(QStringLiteral("status.log"), m_model))
    , m_level(new QComboBox)
    , m_text(new QLineEdit)
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(makeFilter());
    column->addWidget(m_table);
    connect(m_level, qOverload<int>(&QComboBox::currentIndexChanged), this, &LogPanel::filter);
    connect(m_text, &QLineEdit::textChanged, this, &LogPanel::filter);
    FollowEnd::keep(m_table);
    connect(&m_timer, &QTimer::timeout, this, &LogPanel::takeOver);
    m_timer.start(takeOverEveryMs);
}

QWidget *LogPanel::makeFilter()
{
    m_level->setObjectName(QStringLiteral("status.log.level"));
    m_level->addItems({tr("信息"), tr("信息与调试")});
    m_text->setObjectName(QStringLiteral("status.log.filter"));
    m_text->setPlaceholderText(tr("只看含此文字的行"));
    m_text->setClearButtonEnabled(true);
    auto *filter = new QWidget;
    auto *line = new QHBoxLayout(filter);
    line->setContentsMargins(0, 0, 0, 0);
    line->addWidget(m_level);
    line->addWidget(m_text, 1);
    return filter;
}

void LogPanel::takeOver()
{
    if (!isVisible())
        return;
    const QVector<LogBook::Line> lines = LogBook::from(m_next);
    if (lines.isEmpty())
        return;
    RecordList rows;
    for (const LogBook::Line &line : lines)
        rows.append(rowOf(line));
    m_next = lines.last().number + 1;
    QStringList leaving;
    for (int row = 0; row < m_model->rowCount(); ++row) {
        const QString key = m_model->key(row);
        if (key.toLongLong() >= m_next - LogBook::kept)
            break;
        leaving.append(key);
    }
    m_model->remove(leaving);
    m_model->put(rows);
}

void LogPanel::filter()
{
    const bool withDebug = m_level->currentIndex() == 1;
    LogBook::takeDebug(withDebug);
    const QString wanted = m_text->text().trimmed();
    const QString debug = tr("调试");
    m_table->setFilter([withDebug, wanted, debug](const VariantRecord &row) {
        if (!withDebug && row.value(StatusFields::level()).toString() == debug)
            return false;
        return wanted.isEmpty() || row.value(StatusFields::text()).toString().contains(wanted, Qt::CaseInsensitive) ||
               row.value(StatusFields::name()).toString().contains(wanted, Qt::CaseInsensitive);
    });
}

void LogPanel::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    takeOver();
}
