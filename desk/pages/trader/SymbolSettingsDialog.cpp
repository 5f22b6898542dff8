#include "SymbolSettingsDialog.h"

#include "InstrumentRules.h"
#include "ManualT0DoubleSpinbox.h"
#include "ManualT0Logic.h"
#include "SymbolSettings.h"

#include <QtWidgets/QCheckBox>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QPushButton>

#include <cmath>

namespace {

constexpr double maxQuantity = 1e9;

ManualT0DoubleSpinbox *quantityField(const QString &name, qint64 value, qint64 step)
{
    auto *field = new ManualT0DoubleSpinbox;
    field->setObjectName(name);
    field->setDecimals(0);
    field->setMaximum(maxQuantity);
    field->SetUpStep(double(step));
    field->SetDownStep(double(step));
    field->setValue(double(value));
    return field;
}

} // namespace

SymbolSettingsDialog::SymbolSettingsDialog(const QString &symbol, QWidget *parent)
    : QDialog(parent)
    , m_symbol(symbol)
    , m_collateral(new QCheckBox(tr("默认担保品买卖")))
{
    setObjectName(QStringLiteral("trade.settings.dialog"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("%1 %2 交易设置").arg(symbol, InstrumentRules::name(symbol)));
    const SymbolSettings settings = SymbolSettings::of(symbol);
    const qint64 step = InstrumentRules::quantityStep(symbol);
    m_cutQty = quantityField(QStringLiteral("trade.settings.cut"), settings.cutQty, step);
    m_cutQty->setSpecialValueText(tr("不拆单"));
    m_defaultQty = quantityField(QStringLiteral("trade.settings.default"), settings.defaultQty, step);
    m_collateral->setObjectName(QStringLiteral("trade.settings.collateral"));
    m_collateral->setChecked(settings.isCollateral);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Save)->setText(tr("保存"));
    buttons->button(QDialogButtonBox::Save)->setObjectName(QStringLiteral("trade.settings.save"));
    buttons->button(QDialogButtonBox::Cancel)->setText(tr("取消"));
    QPushButton *remove = buttons->addButton(tr("删除设置"), QDialogButtonBox::ResetRole);
    remove->setObjectName(QStringLiteral("trade.settings.delete"));
    connect(buttons, &QDialogButtonBox::accepted, this, &SymbolSettingsDialog::keep);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(remove, &QPushButton::clicked, this, &SymbolSettingsDialog::forget);

    auto *form = new QFormLayout(this);
    form->addRow(tr("拆单数量"), m_cutQty);
    form->addRow(tr("默认数量"), m_defaultQty);
    form->addRow(QString(), m_collateral);
    form->addRow(buttons);
}

void SymbolSettingsDialog::keep()
{
    const SymbolSettings settings{std::llround(m_cutQty->value()), std::llround(m_defaultQty->value()),
                                  m_collateral->isChecked()};
    settings.keepFor(m_symbol);
    accept();
}

void SymbolSettingsDialog::forget()
{
    ManualT0Logic::DeleteSymbolTradeSettings(m_symbol);
    accept();
}
