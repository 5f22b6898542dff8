#include "QuoteView.h"

#include "Format.h"
#include "HostNews.h"
#include "HostSession.h"
#include "InstrumentRules.h"
#include "LevelsTable.h"
#include "OrvaneFields.h"
#include "OwnOrders.h"
#include "PageShell.h"
#include "QueueView.h"
#include "TradeSelection.h"

#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>

#include <algorithm>

QuoteView::QuoteView(TradeSelection *selection, QWidget *parent)
    : QWidget(parent)
    , m_selection(selection)
    , m_name(new QLabel)
    , m_last(new QLabel)
    , m_limits(new QLabel)
    , m_levels(new LevelsTable)
    , m_bids(new QueueView(true))
    , m_asks(new QueueView(false))
{
    m_name->setObjectName(QStringLiteral("trade.quote.name"));
    m_last->setObjectName(QStringLiteral("trade.quote.last"));
    m_limits->setObjectName(QStringLiteral("trade.quote.limits"));
    QFont large = m_last->font();
    large.setPointSizeF(large.pointSizeF() * 1.4);
    large.setBold(true);
    m_last->setFont(large);
    auto *layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_name, 0, 0);
    layout->addWidget(m_last, 0, 1, Qt::AlignRight);
    layout->addWidget(m_limits, 1, 0, 1, 2);
    layout->addWidget(m_levels, 2, 0, 2, 1);
    layout->addWidget(m_asks, 2, 1);
    layout->addWidget(m_bids, 3, 1);
    layout->setColumnStretch(0, 1);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(2, 1);
    layout->setRowStretch(3, 1);

    connect(m_levels, &LevelsTable::priceClicked, this, &QuoteView::priceClicked);
    const auto showAll = [this] {
        showOwnOrders();
        showQuote();
    };
    connect(selection, &TradeSelection::instrumentChanged, this, showAll);
    const HostNews *news = &HostSession::current()->news();
    connect(news, &HostNews::dayBegan, this, showAll);
    connect(news, &HostNews::quotesChanged, this, [this](const QStringList &symbols) {
        if (symbols.contains(m_selection->symbol()))
            showQuote();
    });
    connect(news, &HostNews::ordersChanged, this, [this](const RecordList &orders) {
        const auto concerns = [this](const VariantRecord &order) {
            return order.value(Orvane_Fields::Security::symbol).toString() == m_selection->symbol();
        };
        if (std::any_of(orders.cbegin(), orders.cend(), concerns))
            showOwnOrders();
    });
    if (const PageShell *shell = PageShell::instance())
        connect(shell, &PageShell::appearanceChanged, this, showAll);
    showAll();
}

void QuoteView::showQuote()
{
    const SymbolQuote quote = SymbolQuote::of(m_selection->symbol());
    const int decimals = InstrumentRules::decimals(m_selection->symbol());
    showPrices(quote, decimals);
    m_levels->show(quote, decimals);
    m_bids->setQueue(quote.bids.value(0).price, quote.bidQueue, decimals);
    m_asks->setQueue(quote.asks.value(0).price, quote.askQueue, decimals);
}

void QuoteView::showPrices(const SymbolQuote &quote, int decimals)
{
    const auto price = [decimals](double price) {
        return price > 0 ? Format::price(price, decimals) : Format::missing();
    };
    const QString symbol = m_selection->symbol();
    m_name->setText(symbol.isEmpty()
                        ? tr("未选证券")
                        : tr("%1 %2 %3").arg(symbol, InstrumentRules::name(symbol), m_selection->exchange()));
    const bool isKnown = quote.last > 0 && quote.preClose > 0;
    const double change = isKnown ? quote.last / quote.preClose - 1 : 0;
    const QString sign = change > 0 ? QStringLiteral("+") : QString();
    m_last->setText(isKnown ? tr("%1　%2%3").arg(price(quote.last), sign, Format::percent(change)) : price(quote.last));
    m_limits->setText(
        tr("涨停 %1　跌停 %2　昨收 %3").arg(price(quote.upLimit), price(quote.downLimit), price(quote.preClose)));
    QPalette colors = palette();
    const PageShell *shell = PageShell::instance();
    if (shell && change != 0)
        colors.setColor(QPalette::WindowText, change > 0 ? shell->riseColor() : shell->fallColor());
    m_last->setPalette(colors);
}

void QuoteView::showOwnOrders()
{
    const QString symbol = m_selection->symbol();
    const RecordList orders = symbol.isEmpty() ? RecordList() : OwnOrders::live(symbol);
    m_bids->setOwnOrders(orders);
    m_asks->setOwnOrders(orders);
}
