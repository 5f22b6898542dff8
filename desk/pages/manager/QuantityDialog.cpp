#include "QuantityDialog.h"

#include "ManualT0DoubleSpinbox.h"
#include "ManualT0Logic.h"

#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

QuantityDialog::QuantityDialog(QWidget *parent)
    : QDialog(parent)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("数量"));
}

void QuantityDialog::ask(QWidget *parent, const QString &name, const QString &text, qint64 quantity, qint64 unit,
                         const std::function<void(qint64 quantity)> &entered)
{
    auto *dialog = new QuantityDialog(parent);
    dialog->setObjectName(name);
    auto *value = new ManualT0DoubleSpinbox;
    value->setObjectName(name + QStringLiteral(".value"));
    value->setDecimals(0);
    value->setGroupSeparatorShown(true);
    value->setMaximum(ManualT0Logic::MaxResourceQty);
    value->SetUpStep(double(unit));
    value->SetDownStep(double(unit));
    value->setValue(double(quantity));
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QPushButton *ok = buttons->button(QDialogButtonBox::Ok);
    ok->setText(tr("确定"));
    ok->setObjectName(name + QStringLiteral(".ok"));
    QPushButton *cancel = buttons->button(QDialogButtonBox::Cancel);
    cancel->setText(tr("取消"));
    cancel->setObjectName(name + QStringLiteral(".cancel"));

    auto *layout = new QVBoxLayout(dialog);
    layout->addWidget(new QLabel(text));
    layout->addWidget(value);
    layout->addWidget(buttons);
    value->setFocus();
    connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    connect(dialog, &QDialog::accepted, parent, [value, entered] { entered(qint64(value->value())); });
    dialog->open();
}
