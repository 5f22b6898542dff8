#include "ConfirmDialog.h"

#include "Format.h"
#include "InstrumentRules.h"
#include "OrvaneFields.h"
#include "RecordTable.h"
#include "TradeColumns.h"
#include "UsageFigures.h"
#include "WarningColor.h"

#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

using namespace Orvane_Fields;

namespace {

QVariant amountOf(const VariantRecord &row)
{
    return row.value(Security::price).toDouble() * double(row.value(Security::orderQty).toLongLong());
}

} // namespace

ConfirmDialog::ConfirmDialog(const OrderWish &wish, const OrderPlan &plan, QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("trade.confirm"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(
        tr("%1 %2 %3").arg(TradeTexts::side(wish.sideUnion), wish.symbol, InstrumentRules::name(wish.symbol)));
    resize(720, 0); // as high as it must be
    auto *totals = new QLabel(
        tr("合计 %1 笔　数量 %2　金额 %3")
            .arg(QString::number(plan.rows.size()), Format::quantity(plan.quantity()), Format::money(plan.amount())));
    totals->setObjectName(QStringLiteral("trade.confirm.totals"));
    QFont bold = totals->font();
    bold.setBold(true);
    totals->setFont(bold);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(rows(plan));
    layout->addWidget(totals);
    if (!plan.isHarmless())
        layout->addWidget(notes(plan));
    layout->addWidget(buttons(wish, plan.isHarmless()));
}

/// Parts of one order are alike, so the rows are counted and known by their number.
QWidget *ConfirmDialog::rows(const OrderPlan &plan)
{
    RecordList numbered = plan.rows;
    for (int i = 0; i < numbered.size(); ++i)
        numbered[i].insert(Security::orderID, i + 1);
    Column number{QStringLiteral("number"), tr("序号"), CellKind::Quantity, Security::orderID};
    number.width = 4;
    const Column amount{QStringLiteral("amount"), tr("金额"), CellKind::Money, {}, amountOf, false, 11};
    auto *model = new RecordModel(
        {number, TradeColumns::account(), TradeColumns::symbol(), SharedColumns::exchange(), TradeColumns::side(),
         TradeColumns::price(), TradeColumns::quantity(Security::orderQty), amount},
        [](const VariantRecord &row) { return row.value(Security::orderID).toString(); }, this);
    model->setRows(numbered);
    auto *table = new RecordTable(QStringLiteral("trade.confirm.rows"), model);
    table->setFocusPolicy(Qt::ClickFocus);                    // Enter belongs to the button
    const int shownRows = qBound(3, numbered.size() + 2, 14); // with the titles
    table->setMinimumHeight(shownRows * table->verticalHeader()->defaultSectionSize());
    return table;
}

QWidget *ConfirmDialog::notes(const OrderPlan &plan)
{
    QStringList lines;
    for (const QString &warning : plan.warnings)
        lines.append(QStringLiteral("⚠ ") + warning);
    for (const VariantRecord &row : plan.rest)
        lines.append(
            tr("未能下单 %1：%2")
                .arg(Format::quantity(row.value(Security::orderQty)), row.value(System::textDescription).toString()));
    auto *label = new QLabel(lines.join(QLatin1Char('\n')));
    label->setObjectName(QStringLiteral("trade.confirm.notes"));
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    WarningColor::applyTo(label);
    return label;
}

QWidget *ConfirmDialog::buttons(const OrderWish &wish, bool isHarmless)
{
    auto *box = new QDialogButtonBox;
    QPushButton *send =
        box->addButton(tr("%1(&S)").arg(TradeTexts::side(wish.sideUnion)), QDialogButtonBox::AcceptRole);
    QPushButton *cancel = box->addButton(tr("取消"), QDialogButtonBox::RejectRole);
    send->setObjectName(QStringLiteral("trade.confirm.send"));
    cancel->setObjectName(QStringLiteral("trade.confirm.cancel"));
    for (QPushButton *button : {send, cancel})
        button->setAutoDefault(false); // else the one with the focus answers Enter
    QPushButton *answer = isHarmless ? send : cancel;
    answer->setDefault(true);
    answer->setFocus();
    connect(box, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(box, &QDialogButtonBox::rejected, this, &QDialog::reject);
    return box;
}
