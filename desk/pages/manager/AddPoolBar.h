#pragma once

#include <QtWidgets/QWidget>

class ManualT0DoubleSpinbox;
class ManualT0TraderCombo;
class PoolEdit;
class QPushButton;

/// Adds a pool to the list of the allocation editor: of whom, and how much.
class AddPoolBar : public QWidget
{
    Q_OBJECT

public:
    explicit AddPoolBar(QWidget *parent = nullptr);

    /// Offers those who have no row yet. The choice is kept where it can be: others may add rows while one types.
    void offer(const PoolEdit &edit);
    void setUsable(bool usable);

signals:
    void added(const QString &trader, qint64 quantity);

private:
    void add();

    ManualT0TraderCombo *m_trader;
    ManualT0DoubleSpinbox *m_quantity;
    QPushButton *m_add;
};
