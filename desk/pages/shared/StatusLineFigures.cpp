#include "StatusLineFigures.h"

#include "Format.h"
#include "PageShell.h"
#include "SignColour.h"
#include "UsageBook.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>

StatusLineFigures::StatusLineFigures(QWidget *parent)
    : QWidget(parent)
    , m_book(UsageBook::ofWindow())
    , m_exposure(new QLabel)
    , m_profit(new QLabel)
{
    m_exposure->setObjectName(QStringLiteral("status.line.exposure"));
    m_profit->setObjectName(QStringLiteral("status.line.profit"));
    auto *line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->addWidget(m_exposure);
    line->addWidget(m_profit);
    connect(m_book, &UsageBook::replaced, this, &StatusLineFigures::show);
    connect(m_book, &UsageBook::changed, this, &StatusLineFigures::show);
    connect(PageShell::instance(), &PageShell::appearanceChanged, this, &StatusLineFigures::show);
    show();
}

void StatusLineFigures::show()
{
    const UsageTotals totals = m_book->totals();
    const bool isKnown = totals.rows > totals.withoutPrice;
    const QVariant exposure = isKnown ? QVariant(totals.exposure) : QVariant();
    const QVariant profit = isKnown ? QVariant(totals.totalProfit) : QVariant();
    m_exposure->setText(tr("敞口 %1").arg(Format::quantity(exposure)));
    m_profit->setText(tr("盈亏 %1").arg(Format::money(profit)));
    SignColour::show(m_profit, profit.toDouble());
    const QString whose = UsageBook::isManager() ? tr("全部交易员") : tr("本人");
    const QString missing = totals.withoutPrice > 0 ? tr("，%1 行无行情未计入").arg(totals.withoutPrice) : QString();
    const QString tip = tr("%1，%2 行%3").arg(whose, Format::quantity(totals.rows), missing);
    m_exposure->setToolTip(tip);
    m_profit->setToolTip(tip);
}
