#include "TradeNotices.h"

#include "CBusinessDataBase.h"
#include "Format.h"
#include "HostNews.h"
#include "MasterBusinessDataInterface.h"
#include "OrvaneFields.h"
#include "StandFields.h"

using namespace Orvane_Fields;

namespace {

constexpr int mostLines = 3; ///< of one note

/// A manager sees everybody's orders; notes are of his own.
RecordList ownOf(const RecordList &rows)
{
    const QString user = CBusinessDataBase::GetLoginAccount();
    RecordList own;
    for (const VariantRecord &row : rows)
        if (row.value(UserAccount::loginUserId).toString() == user)
            own.append(row);
    return own;
}

QString price(const VariantRecord &row)
{
    const QString symbol = row.value(Security::symbol).toString();
    return Format::price(row.value(Security::price),
                         MasterBusinessDataInterface::GetPricePrecisionBySymbol(symbol, {}));
}

QString withMore(QStringList lines, const QString &more)
{
    const int left = lines.size() - mostLines;
    if (left > 0) {
        lines = lines.mid(0, mostLines);
        lines.append(more.arg(left));
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace

TradeNotices::TradeNotices(HostNews &news, PageShell &shell, QObject *parent)
    : QObject(parent)
    , m_shell(shell)
{
    connect(&news, &HostNews::fillsCame, this, &TradeNotices::onFills);
    connect(&news, &HostNews::ordersChanged, this, &TradeNotices::onOrders);
    connect(&news, &HostNews::dayBegan, this, [this](const QString &day) {
        m_shell.notify(PageShell::Notice::Info, tr("新的交易日 %1：此前未了结的委托已失效").arg(day));
    });
    connect(&news, &HostNews::businessMessagesCame, this, &TradeNotices::onMessages);
}

void TradeNotices::onFills(const RecordList &fills)
{
    QStringList lines;
    for (const VariantRecord &fill : ownOf(fills)) {
        const bool isBought = fill.value(Security::side).toString() == Stand_Values::Side::buy;
        const QString text = isBought ? tr("成交 %1 买入 %2 @ %3") : tr("成交 %1 卖出 %2 @ %3");
        lines.append(text.arg(fill.value(Security::symbol).toString(),
                              Format::quantity(fill.value(Stand_Fields::Fill::fillQty)), price(fill)));
    }
    if (!lines.isEmpty())
        m_shell.notify(PageShell::Notice::Success, withMore(lines, tr("另有 %1 笔成交")));
}

void TradeNotices::onOrders(const RecordList &orders)
{
    QStringList lines;
    for (const VariantRecord &order : ownOf(orders)) {
        if (order.value(Security::orderStatus).toString() != Stand_Values::OrderStatus::Expired)
            continue;
        const QString reason = order.value(System::textDescription).toString();
        lines.append(tr("委托 %1 %2 已失效")
                         .arg(order.value(Security::orderID).toString(), order.value(Security::symbol).toString()) +
                     (reason.isEmpty() ? QString() : tr("：%1").arg(reason)));
    }
    if (!lines.isEmpty())
        m_shell.notify(PageShell::Notice::Refusal, withMore(lines, tr("另有 %1 笔委托失效")));
}

void TradeNotices::onMessages(const QStringList &lines)
{
    QStringList texts;
    for (const QString &line : lines)
        texts.append(line.section(QLatin1Char('\t'), 0, 0));
    m_shell.notify(PageShell::Notice::Info, withMore(texts, tr("另有 %1 条消息")));
}
