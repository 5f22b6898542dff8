#include "AccountList.h"

#include "EventBus.h"
#include "HCore.h"
#include "ManualT0Logic.h"
#include "MasterBusinessDataInterface.h"
#include "TradeSelection.h"
#include "VantaKeys.h"

namespace {

constexpr int restMs = 200;

QString setting()
{
    return QStringLiteral("DeskTrade.UntickedAccounts");
}

QStringList keptUnticked()
{
    return HCore::instance()
        ->settings(setting(), {}, {}, QSettings::UserScope)
        .toString()
        .split(QLatin1Char(','), Qt::SkipEmptyParts);
}

} // namespace

AccountList::AccountList(TradeSelection *selection, QWidget *parent)
    : QListWidget(parent)
    , m_selection(selection)
{
    setObjectName(QStringLiteral("trade.accounts"));
    setAccessibleName(tr("交易账户"));
    m_tellLibrary.setSingleShot(true);
    m_tellLibrary.setInterval(restMs);
    connect(&m_tellLibrary, &QTimer::timeout, this,
            [this] { ManualT0Logic::SetCurrentTradeAccount(m_selection->accounts()); });
    connect(this, &QListWidget::itemChanged, this, [this] {
        HCore::instance()->saveSetting(setting(), accountsBy(Qt::Unchecked).join(QLatin1Char(',')), {}, {},
                                       QSettings::UserScope);
        takeTicks();
    });
    EventBus::listen(Vanta_Keys::EventMsgName::ManualT0DataInited, this, [this](const QVariant &family) {
        if (family.toInt() == ManualT0Logic::AccountPriority)
            reload();
        else if (family.toInt() == ManualT0Logic::RealtimeUsage) // a first load of usage recomputes no symbols
            ManualT0Logic::SetCurrentTradeAccount(m_selection->accounts());
    });
    reload();
}

void AccountList::reload()
{
    const QStringList unticked = keptUnticked();
    QStringList accounts = ManualT0Logic::GetAllT0TradingAccountListByCurUser();
    accounts.removeDuplicates();
    const QSignalBlocker quiet(this);
    clear();
    for (const QString &account : qAsConst(accounts)) {
        const QString text = MasterBusinessDataInterface::GetAccountInfoByTradingAccount(account, 1).accountText;
        auto *item = new QListWidgetItem(account + QLatin1Char(' ') + text, this);
        item->setData(Qt::UserRole, account);
        item->setToolTip(tr("优先级 %1").arg(count()));
        item->setCheckState(unticked.contains(account) ? Qt::Unchecked : Qt::Checked);
    }
    m_selection->setAccounts(accountsBy(Qt::Checked));
    ManualT0Logic::SetCurrentTradeAccount(m_selection->accounts());
}

void AccountList::takeTicks()
{
    m_selection->setAccounts(accountsBy(Qt::Checked));
    m_tellLibrary.start();
}

QStringList AccountList::accountsBy(Qt::CheckState state) const
{
    QStringList accounts;
    for (int row = 0; row < count(); ++row) {
        if (item(row)->checkState() == state)
            accounts.append(item(row)->data(Qt::UserRole).toString());
    }
    return accounts;
}
