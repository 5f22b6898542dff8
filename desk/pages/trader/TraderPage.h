#pragma once

#include "PageShell.h"
#include "VariantRecord.h"

#include <QtCore/QHash>
#include <QtCore/QTimer>
#include <QtWidgets/QWidget>

class OrderPanel;
class OrderSender;
class OrdersView;
class QCheckBox;
class QToolButton;
class QuoteView;
class ResultsView;
class SymbolBox;
class TradeSelection;
class UsageView;
struct OrderPlan;

/// Where a trader works: accounts, an instrument, an order of each direction, the market, what he has traded.
class TraderPage : public QWidget
{
    Q_OBJECT

public:
    static PageDescription description();

    explicit TraderPage(QWidget *parent = nullptr);

private:
    QWidget *accounts();
    QWidget *entry(); ///< symbol and order panels
    QWidget *symbolLine();
    void arrange();
    void connectParts();
    void addCommands();

    void goTo(QWidget *widget);
    void goToPanel(OrderPanel *panel);
    void togglePanels();
    void editSymbolSettings();
    void showGate();

    void beginOrder(OrderPanel *panel);
    void confirm(OrderPanel *panel, const OrderPlan &plan);
    void send(OrderPanel *panel, const RecordList &rows);
    void takeAnswer(int sending, const RecordList &sent);
    void fillClosing(const VariantRecord &usage);
    void tellResults(const RecordList &sent);

    TradeSelection *m_selection;
    OrderSender *m_sender;
    SymbolBox *m_symbol;
    QToolButton *m_settings;
    QCheckBox *m_asksBefore;
    OrderPanel *m_buy;
    OrderPanel *m_sell;
    OrderPanel *m_active; ///< the one that was last used
    QuoteView *m_quote;
    UsageView *m_usage;
    OrdersView *m_orders;
    ResultsView *m_results;
    QHash<int, OrderPanel *> m_sending; ///< by the sender's number: whose answer is awaited
    QTimer m_recheck;                   ///< quotas change with every fill
};
