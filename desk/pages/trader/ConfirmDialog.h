#pragma once

#include "OrderPlan.h"

#include <QtWidgets/QDialog>

/// Shows what would be sent, one row an account and part, and asks. Enter sends when nothing is wrong; with a warning
/// it takes more than Enter.
class ConfirmDialog : public QDialog
{
    Q_OBJECT

public:
    ConfirmDialog(const OrderWish &wish, const OrderPlan &plan, QWidget *parent = nullptr);

private:
    QWidget *rows(const OrderPlan &plan);
    QWidget *notes(const OrderPlan &plan);
    QWidget *buttons(const OrderWish &wish, bool isHarmless);
};
