#include "ProfitTotals.h"

#include "Format.h"
#include "SignColour.h"
#include "UsageFigures.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>

ProfitTotals::ProfitTotals(QWidget *parent)
    : QWidget(parent)
{
    auto *line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(18);
    m_rows = add(QStringLiteral("profit.total.rows"));
    m_float = add(QStringLiteral("profit.total.float"));
    m_realized = add(QStringLiteral("profit.total.realized"));
    m_profit = add(QStringLiteral("profit.total.profit"));
    m_exposure = add(QStringLiteral("profit.total.exposure"));
    m_withoutPrice = add(QStringLiteral("profit.total.noprice"));
    line->addStretch();
    QFont bold = m_profit->font();
    bold.setBold(true);
    m_profit->setFont(bold);
}

QLabel *ProfitTotals::add(const QString &name)
{
    auto *label = new QLabel;
    label->setObjectName(name);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout()->addWidget(label);
    return label;
}

void ProfitTotals::show(const UsageTotals &totals)
{
    const bool isKnown = totals.rows > totals.withoutPrice;
    const auto money = [isKnown](double amount) { return isKnown ? Format::money(amount) : Format::missing(); };
    m_rows->setText(tr("合计 %1 行").arg(Format::quantity(totals.rows)));
    m_float->setText(tr("浮动 %1").arg(money(totals.floatProfit)));
    m_realized->setText(tr("已实现 %1").arg(money(totals.realizeProfit)));
    m_profit->setText(tr("总盈亏 %1").arg(money(totals.totalProfit)));
    const QString limit = totals.limit > 0
                              ? tr("（受限 %1 / 限额 %2）").arg(money(totals.limitedExposure), money(totals.limit))
                              : QString();
    m_exposure->setText(tr("敞口 %1%2").arg(money(totals.exposure), limit));
    m_withoutPrice->setText(totals.withoutPrice > 0 ? tr("%1 行无行情").arg(totals.withoutPrice) : QString());
    SignColour::show(m_float, totals.floatProfit);
    SignColour::show(m_realized, totals.realizeProfit);
    SignColour::show(m_profit, totals.totalProfit);
}
