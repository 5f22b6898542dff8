#include "AddPoolBar.h"

#include "ManualT0DoubleSpinbox.h"
#include "ManualT0Logic.h"
#include "ManualT0TraderCombo.h"
#include "PoolEdit.h"
#include "ViewParts.h"

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QPushButton>

AddPoolBar::AddPoolBar(QWidget *parent)
    : QWidget(parent)
    , m_trader(new ManualT0TraderCombo)
    , m_quantity(new ManualT0DoubleSpinbox)
    , m_add(ViewParts::button(QStringLiteral("manage.edit.add"), tr("加入(&J)")))
{
    setFocusProxy(m_trader);
    m_trader->setObjectName(QStringLiteral("manage.edit.trader"));
    m_quantity->setObjectName(QStringLiteral("manage.edit.quantity"));
    m_trader->setMinimumContentsLength(12);
    m_quantity->setDecimals(0);
    m_quantity->setGroupSeparatorShown(true);
    m_quantity->setMaximum(ManualT0Logic::MaxPoolQty);
    m_quantity->SetUpStep(100);
    m_quantity->SetDownStep(100);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_trader, 1);
    layout->addWidget(m_quantity, 1);
    layout->addWidget(m_add);
    connect(m_add, &QPushButton::clicked, this, &AddPoolBar::add);
    connect(m_quantity, &ManualT0DoubleSpinbox::returnPressed, this, &AddPoolBar::add);
}

void AddPoolBar::offer(const PoolEdit &edit)
{
    QMap<QString, QString> traders = ManualT0Logic::GetAllT0TraderId();
    for (const PoolEdit::Row &row : edit.rows())
        traders.remove(row.trader);
    const bool withPublic = !edit.hasRow(ManualT0Logic::PublicTrader);
    QStringList ids = traders.keys();
    if (withPublic)
        ids.prepend(ManualT0Logic::PublicTrader);
    QStringList offered;
    for (int i = 0; i < m_trader->count(); ++i)
        offered.append(m_trader->itemData(i).toString());
    if (offered == ids)
        return;
    const QString chosen = m_trader->currentData().toString();
    m_trader->InitTraders(traders, false, withPublic);
    const int again = m_trader->findData(chosen);
    if (again >= 0)
        m_trader->setCurrentIndex(again);
}

void AddPoolBar::setUsable(bool usable)
{
    m_add->setEnabled(usable);
}

void AddPoolBar::add()
{
    const QString trader = m_trader->currentData().toString();
    if (trader.isEmpty() || !m_add->isEnabled())
        return;
    const auto quantity = qint64(m_quantity->value());
    m_quantity->setValue(0);
    m_trader->setFocus();
    emit added(trader, quantity);
}
