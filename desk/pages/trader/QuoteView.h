#pragma once

#include "SymbolQuote.h"

#include <QtWidgets/QWidget>

class LevelsTable;
class QueueView;
class QLabel;
class TradeSelection;

/// The chosen instrument's market: last price, limits, five levels, and who waits at the best prices.
class QuoteView : public QWidget
{
    Q_OBJECT

public:
    explicit QuoteView(TradeSelection *selection, QWidget *parent = nullptr);

signals:
    void priceClicked(double price);

private:
    void showQuote();
    void showOwnOrders();
    void showPrices(const SymbolQuote &quote, int decimals);

    TradeSelection *m_selection;
    QLabel *m_name;
    QLabel *m_last;
    QLabel *m_limits;
    LevelsTable *m_levels;
    QueueView *m_bids;
    QueueView *m_asks;
};
