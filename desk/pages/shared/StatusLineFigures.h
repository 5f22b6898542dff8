#pragma once

#include <QtWidgets/QWidget>

class QLabel;
class UsageBook;

/// Exposure and total profit: all traders' for a manager, his own for a trader.
class StatusLineFigures : public QWidget
{
    Q_OBJECT

public:
    explicit StatusLineFigures(QWidget *parent = nullptr);

private:
    void show();

    UsageBook *m_book;
    QLabel *m_exposure;
    QLabel *m_profit;
};
