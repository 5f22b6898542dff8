#include "ProfitFilterBar.h"

#include "Layout.h"
#include "ManualT0Logic.h"
#include "MasterBusinessDataInterface.h"
#include "MasterFields.h"
#include "OrvaneFields.h"
#include "PageShell.h"

#include <QtCore/QSignalBlocker>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QHBoxLayout>

namespace {

using Group = ProfitRows::Group;

QString layoutName()
{
    return QStringLiteral("profit.group");
}

/// "id name", without a name the id alone.
QString named(const QString &id, const QString &name)
{
    return name.isEmpty() ? id : id + QLatin1Char(' ') + name;
}

void offerIn(QComboBox *combo, const QString &all, const QMap<QString, QString> &choices)
{
    const QSignalBlocker blocker(combo);
    const QString chosen = combo->currentData().toString();
    combo->clear();
    combo->addItem(all, QString());
    for (auto choice = choices.cbegin(); choice != choices.cend(); ++choice)
        combo->addItem(*choice, choice.key());
    combo->setCurrentIndex(std::max(0, combo->findData(chosen)));
}

} // namespace

ProfitFilterBar::ProfitFilterBar(QWidget *parent)
    : QWidget(parent)
{
    auto *line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    m_group = addCombo(QStringLiteral("profit.group"), 8);
    m_trader = addCombo(QStringLiteral("profit.trader"), 18);
    m_account = addCombo(QStringLiteral("profit.account"), 14);
    m_symbol = addCombo(QStringLiteral("profit.symbol"), 20);
    m_active = new QCheckBox(tr("只看有成交或敞口"));
    m_active->setObjectName(QStringLiteral("profit.active"));
    line->addWidget(m_active);
    line->addStretch();

    m_group->addItem(tr("明细"), int(Group::Detail));
    m_group->addItem(tr("按标的"), int(Group::Symbol));
    m_group->addItem(tr("按交易员"), int(Group::Trader));
    m_group->addItem(tr("按账户"), int(Group::Account));
    m_group->setCurrentIndex(std::max(0, m_group->findData(Layout::kept(layoutName()).toInt())));
    for (QComboBox *combo : {m_group, m_trader, m_account, m_symbol})
        connect(combo, qOverload<int>(&QComboBox::currentIndexChanged), this, &ProfitFilterBar::changed);
    connect(m_group, qOverload<int>(&QComboBox::currentIndexChanged), this, &ProfitFilterBar::keep);
    connect(m_active, &QCheckBox::toggled, this, &ProfitFilterBar::changed);
    connect(PageShell::instance(), &PageShell::layoutReset, this, [this](const QString &page) {
        if (page == Layout::pageOf(layoutName()))
            m_group->setCurrentIndex(0);
    });
    offer({});
}

QComboBox *ProfitFilterBar::addCombo(const QString &name, int characters)
{
    auto *combo = new QComboBox;
    combo->setObjectName(name);
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo->setMinimumContentsLength(characters);
    combo->setMaxVisibleItems(20);
    layout()->addWidget(combo);
    return combo;
}

void ProfitFilterBar::keep() const
{
    Layout::keep(layoutName(), QByteArray::number(int(group())));
}

ProfitRows::Group ProfitFilterBar::group() const
{
    return Group(m_group->currentData().toInt());
}

ProfitRows::Filter ProfitFilterBar::filter() const
{
    return {m_trader->currentData().toString(), m_account->currentData().toString(), m_symbol->currentData().toString(),
            m_active->isChecked()};
}

void ProfitFilterBar::offer(const QHash<QString, UsageEntry> &entries)
{
    QMap<QString, QString> traders;
    QMap<QString, QString> accounts;
    QMap<QString, QString> symbols;
    for (const UsageEntry &entry : entries) {
        const QString trader = entry.usage.value(Master_Fields::ManualT0::T0TraderId).toString();
        traders.insert(trader, {});
        const QString account = entry.usage.value(Orvane_Fields::UserAccount::tradingAccount).toString();
        accounts.insert(account, account);
        symbols.insert(entry.usage.value(Orvane_Fields::Security::symbol).toString(), {});
    }
    for (auto trader = traders.begin(); trader != traders.end(); ++trader)
        *trader = named(trader.key(), ManualT0Logic::GetTraderNameByTraderId(trader.key()));
    for (auto symbol = symbols.begin(); symbol != symbols.end(); ++symbol) {
        const VariantRecord details = MasterBusinessDataInterface::GetSecurityDetailsBySymbol(symbol.key());
        *symbol = named(symbol.key(), details.value(Orvane_Fields::Security::chineseName).toString());
    }
    offerIn(m_trader, tr("全部交易员"), traders);
    offerIn(m_account, tr("全部账户"), accounts);
    offerIn(m_symbol, tr("全部标的"), symbols);
    m_trader->setVisible(UsageBook::isManager());
}
