#include "ConfirmChange.h"

#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

void ConfirmChange::ask(QWidget *parent, const QString &name, const QString &question, const QStringList &details,
                        Enter enter, std::function<void()> confirmed)
{
    auto *dialog = new ConfirmChange(parent, name, question, details, enter);
    connect(dialog, &QDialog::accepted, parent, std::move(confirmed));
    dialog->open();
}

ConfirmChange::ConfirmChange(QWidget *parent, const QString &name, const QString &question, const QStringList &details,
                             Enter enter)
    : QDialog(parent)
{
    setObjectName(name);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("确认"));
    auto *layout = new QVBoxLayout(this);
    auto *asked = new QLabel(question);
    asked->setObjectName(name + QStringLiteral(".question"));
    asked->setWordWrap(true);
    layout->addWidget(asked);
    auto *lines = new QPlainTextEdit(details.join(QLatin1Char('\n')));
    lines->setObjectName(name + QStringLiteral(".details"));
    lines->setReadOnly(true);
    lines->setTabChangesFocus(true);
    lines->setVisible(!details.isEmpty());
    layout->addWidget(lines);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QPushButton *ok = buttons->button(QDialogButtonBox::Ok);
    ok->setText(tr("确定"));
    ok->setObjectName(name + QStringLiteral(".ok"));
    QPushButton *cancel = buttons->button(QDialogButtonBox::Cancel);
    cancel->setText(tr("取消"));
    cancel->setObjectName(name + QStringLiteral(".cancel"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    QPushButton *first = enter == Enter::Confirms ? ok : cancel;
    first->setDefault(true);
    first->setFocus();
    resize(460, details.isEmpty() ? 120 : 320);
}
