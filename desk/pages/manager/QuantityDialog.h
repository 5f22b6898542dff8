#pragma once

#include <QtWidgets/QDialog>

#include <functional>

/// Asks for a quantity. Goes by itself.
class QuantityDialog : public QDialog
{
    Q_OBJECT

public:
    /// Opens at once and returns at once. name: fixed English object name; the input is name.value, the buttons are
    /// name.ok and name.cancel. unit: the step of its arrows.
    static void ask(QWidget *parent, const QString &name, const QString &text, qint64 quantity, qint64 unit,
                    const std::function<void(qint64 quantity)> &entered);

private:
    explicit QuantityDialog(QWidget *parent);
};
