#pragma once

#include "SymbolQuote.h"

#include <QtWidgets/QTableWidget>

/// Five levels of asks above five levels of bids. A click on one tells its price.
class LevelsTable : public QTableWidget
{
    Q_OBJECT

public:
    explicit LevelsTable(QWidget *parent = nullptr);

    void show(const SymbolQuote &quote, int decimals);

signals:
    void priceClicked(double price);

private:
    void showLevel(int row, const SymbolQuote::Level &level, double preClose, int decimals);
};
