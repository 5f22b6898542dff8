#pragma once

#include <QtWidgets/QWidget>

class QLabel;
struct UsageTotals;

/// The line under the rows: their totals, and how many of them have no price.
class ProfitTotals : public QWidget
{
    Q_OBJECT

public:
    explicit ProfitTotals(QWidget *parent = nullptr);

    void show(const UsageTotals &totals);

private:
    QLabel *add(const QString &name);

    QLabel *m_rows;
    QLabel *m_float;
    QLabel *m_realized;
    QLabel *m_profit;
    QLabel *m_exposure;
    QLabel *m_withoutPrice;
};
