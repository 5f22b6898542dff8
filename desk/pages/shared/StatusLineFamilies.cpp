#include "StatusLineFamilies.h"

#include "FamilyWatch.h"
#include "PageShell.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>

StatusLineFamilies::StatusLineFamilies(QWidget *parent)
    : QWidget(parent)
    , m_watch(FamilyWatch::ofWindow())
{
    setObjectName(QStringLiteral("status.line.families"));
    auto *line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(3);
    for (int type = 0; type < FamilyWatch::familyCount; ++type) {
        auto *chip = new QLabel(FamilyWatch::name(type));
        chip->setObjectName(QStringLiteral("status.chip.%1").arg(type));
        line->addWidget(chip);
        m_chips.append(chip);
    }
    connect(m_watch, &FamilyWatch::changed, this, &StatusLineFamilies::showAll);
    connect(PageShell::instance(), &PageShell::appearanceChanged, this, &StatusLineFamilies::showAll);
    showAll();
}

void StatusLineFamilies::showAll()
{
    for (int type = 0; type < m_chips.size(); ++type)
        show(type);
}

/// Readable with white on it, in a light window and in a dark one.
QColor StatusLineFamilies::colourOf(int type) const
{
    using State = FamilyStatus::State;
    const State state = m_watch->status(type).state;
    if (m_watch->isStale() && state != State::Loading)
        return QColor(0x6d, 0x4c, 0x8d);
    switch (state) {
    case State::NotStarted:
        return QColor(0x6b, 0x6b, 0x6b);
    case State::Loading:
        return QColor(0x1f, 0x5f, 0xa8);
    case State::Ready:
        return QColor(0x2a, 0x6f, 0x3c);
    case State::PartlyFailed:
        return QColor(0x9a, 0x57, 0x00);
    case State::Failed:
        return QColor(0xa3, 0x1d, 0x1d);
    }
    return {};
}

/// The colour alone would tell it to some only.
QString StatusLineFamilies::stateText(int type) const
{
    using State = FamilyStatus::State;
    const FamilyStatus &family = m_watch->status(type);
    if (m_watch->isStale() && family.state != State::Loading)
        return tr("过时");
    switch (family.state) {
    case State::NotStarted:
        return tr("未加载");
    case State::Loading:
        return family.expected > 1
                   ? QStringLiteral("%1/%2").arg(QString::number(family.done), QString::number(family.expected))
                   : tr("加载中");
    case State::Ready:
        return family.finishedAt.toString(QStringLiteral("HH:mm"));
    case State::PartlyFailed:
        return tr("部分失败");
    case State::Failed:
        return tr("失败");
    }
    return {};
}

void StatusLineFamilies::show(int type)
{
    QLabel *chip = m_chips.at(type);
    chip->setText(FamilyWatch::name(type) + QLatin1Char(' ') + stateText(type));
    chip->setToolTip(m_watch->description(type));
    // A style sheet is parsed anew each time it is set.
    const QString style = QStringLiteral("QLabel { background: %1; color: white; border-radius: 3px; padding: 0 4px; }")
                              .arg(colourOf(type).name());
    if (chip->styleSheet() != style)
        chip->setStyleSheet(style);
}
