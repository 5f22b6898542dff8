#include "ProductsView.h"

#include "Background.h"
#include "ChangeOutcome.h"
#include "ConfirmChange.h"
#include "ManagerTexts.h"
#include "ManualT0Logic.h"
#include "MasterBusinessDataInterface.h"
#include "MasterMsgType.h"
#include "PageShell.h"
#include "VantaKeys.h"
#include "ViewParts.h"

#include <QtCore/QSet>
#include <QtCore/QSignalBlocker>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTreeWidget>
#include <QtWidgets/QVBoxLayout>

namespace {

enum Column { Name, Accounts, Change };
enum Role { ProductRole = Qt::UserRole, PropertyRole };

/// The accounts that could be enabled of a product's asset property.
QStringList accountsOf(const QString &product, const QString &assetProp)
{
    QStringList accounts;
    const QList<tagUserAccountInfo> all = MasterBusinessDataInterface::GetFundAccountListByFundProp(
        3, 16, true, ManualT0Logic::GetSupportExchangeList(), true);
    for (const tagUserAccountInfo &account : all) {
        if (account.productAccount == product && account.assetProp == assetProp)
            accounts.append(account.tradingAccount);
    }
    return accounts;
}

QSet<QString> asSet(const QStringList &list)
{
    return {list.cbegin(), list.cend()};
}

QStringList accountTexts(const QSet<QString> &accounts)
{
    QStringList texts;
    for (const QString &account : accounts)
        texts.append(ManagerTexts::account(account));
    texts.sort();
    return texts;
}

bool isLoaded()
{
    return ManualT0Logic::GetInitStateByType(ManualT0Logic::Products) == MasterInitStateMgr::Inited;
}

} // namespace

ProductsView::ProductsView(QWidget *parent)
    : QWidget(parent)
    , m_tree(new QTreeWidget)
    , m_apply(ViewParts::button(QStringLiteral("manage.products.apply"), tr("应用(&Y)…")))
    , m_revert(ViewParts::button(QStringLiteral("manage.products.revert"), tr("还原")))
    , m_status(ViewParts::label(QStringLiteral("manage.products.status")))
    , m_notice(ViewParts::label(QStringLiteral("manage.products.notice")))
{
    setFocusProxy(m_tree);
    m_tree->setObjectName(QStringLiteral("manage.products"));
    m_tree->setHeaderLabels({tr("产品"), tr("资金账号"), tr("变化")});
    m_tree->setAlternatingRowColors(true);
    m_tree->setColumnWidth(Name, 260);
    m_tree->setColumnWidth(Accounts, 420);
    ViewParts::keepLayout(m_tree->header(), m_tree->objectName());
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_apply);
    buttons->addWidget(m_revert);
    buttons->addWidget(m_status, 1);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_notice);
    layout->addWidget(m_tree, 1);
    layout->addLayout(buttons);

    connect(m_tree, &QTreeWidget::itemChanged, this, &ProductsView::ticked);
    connect(m_apply, &QPushButton::clicked, this, &ProductsView::askToApply);
    connect(m_revert, &QPushButton::clicked, this, &ProductsView::revert);
    const QMap<QString, QStringList> candidates = ManualT0Logic::GetCandidateT0ProductAccount();
    for (auto product = candidates.cbegin(); product != candidates.cend(); ++product)
        addProduct(product.key(), *product);
    auto *later = new Later(
        100, [this] { takeState(); }, this);
    later->follow({Vanta_Keys::EventMsgName::ManualT0DataInited});
    if (const PageShell *shell = PageShell::instance())
        connect(shell, &PageShell::sendingGateChanged, this, &ProductsView::showChanges);
    takeState();
}

void ProductsView::addProduct(const QString &product, const QStringList &properties)
{
    auto *parent = new QTreeWidgetItem(m_tree, {ManagerTexts::product(product)});
    for (const QString &property : properties) {
        QStringList accounts;
        for (const QString &account : accountsOf(product, property))
            accounts.append(ManagerTexts::account(account));
        auto *item = new QTreeWidgetItem({ManagerTexts::assetProp(property), accounts.join(tr("，"))});
        item->setData(Name, ProductRole, product);
        item->setData(Name, PropertyRole, property);
        item->setCheckState(Name, Qt::Unchecked);
        parent->addChild(item);
        m_items.insert({product, property}, item);
    }
    parent->setExpanded(true);
}

/// While the products are loaded anew the library has none, and what would be sent is the whole state.
void ProductsView::takeState()
{
    if (!isLoaded()) {
        showChanges();
        return;
    }
    m_enabled = ManualT0Logic::GetAllT0ProductAccount();
    for (auto tick = m_ticked.begin(); tick != m_ticked.end();)
        tick = isEnabledNow(tick.key()) == *tick ? m_ticked.erase(tick) : tick + 1;
    showChanges();
}

void ProductsView::ticked(QTreeWidgetItem *item)
{
    const Property property{item->data(Name, ProductRole).toString(), item->data(Name, PropertyRole).toString()};
    if (!m_items.contains(property))
        return;
    const bool wanted = item->checkState(Name) == Qt::Checked;
    if (wanted == isEnabledNow(property))
        m_ticked.remove(property);
    else
        m_ticked.insert(property, wanted);
    m_status->clear();
    showChanges();
}

bool ProductsView::isEnabledNow(const Property &property) const
{
    return m_enabled.value(property.first).contains(property.second);
}

bool ProductsView::isWanted(const Property &property) const
{
    return m_ticked.value(property, isEnabledNow(property));
}

void ProductsView::showChanges()
{
    const QSignalBlocker quiet(m_tree);
    for (auto item = m_items.cbegin(); item != m_items.cend(); ++item) {
        const bool wanted = isWanted(item.key());
        const QString change = wanted ? tr("将启用") : tr("将停用");
        (*item)->setCheckState(Name, wanted ? Qt::Checked : Qt::Unchecked);
        (*item)->setText(Change, m_ticked.contains(item.key()) ? change : QString());
    }
    m_tree->viewport()->update();
    const bool mayTick = !m_isSending && isLoaded();
    const QString why = whyNotToSend();
    m_tree->setEnabled(mayTick);
    m_apply->setEnabled(!m_isSending && why.isEmpty() && !m_ticked.isEmpty());
    m_apply->setToolTip(why);
    const bool hasFailed = ManualT0Logic::GetInitStateByType(ManualT0Logic::Products) == MasterInitStateMgr::InitFailed;
    m_notice->setText(hasFailed ? why : QString());
    m_notice->setVisible(hasFailed);
    m_revert->setEnabled(mayTick && !m_ticked.isEmpty());
}

QString ProductsView::whyNotToSend() const
{
    switch (ManualT0Logic::GetInitStateByType(ManualT0Logic::Products)) {
    case MasterInitStateMgr::Inited:
        return ViewParts::gate();
    case MasterInitStateMgr::InitFailed:
        return tr("没有读到启用T0的产品，刷新后才能修改");
    default:
        return tr("正在读取启用T0的产品");
    }
}

void ProductsView::revert()
{
    m_ticked.clear();
    showChanges();
}

QMap<QString, QStringList> ProductsView::wantedState() const
{
    QMap<QString, QStringList> wanted;
    for (auto item = m_items.cbegin(); item != m_items.cend(); ++item) {
        if (isWanted(item.key()))
            wanted[item.key().first].append(item.key().second);
    }
    return wanted;
}

/// With the accounts: enabling a property enables all of its accounts, also those that were left out before.
QStringList ProductsView::changesInWords() const
{
    QStringList lines;
    QSet<QString> wanted;
    for (auto item = m_items.cbegin(); item != m_items.cend(); ++item) {
        const Property &property = item.key();
        if (isWanted(property))
            wanted += asSet(accountsOf(property.first, property.second));
        if (m_ticked.contains(property))
            lines.append(QStringLiteral("%1 %2 %3")
                             .arg(isWanted(property) ? tr("启用") : tr("停用"), ManagerTexts::product(property.first),
                                  ManagerTexts::assetProp(property.second)));
    }
    const QSet<QString> now = asSet(ManualT0Logic::GetAllT0TradingAccountList());
    const QStringList come = accountTexts(wanted - now);
    const QStringList go = accountTexts(now - wanted);
    if (!come.isEmpty())
        lines.append(tr("增加账号：%1").arg(come.join(tr("，"))));
    if (!go.isEmpty())
        lines.append(tr("去掉账号：%1").arg(go.join(tr("，"))));
    return lines;
}

void ProductsView::askToApply()
{
    if (!isLoaded()) {
        showChanges();
        return;
    }
    ConfirmChange::ask(this, QStringLiteral("manage.products.confirm"), tr("修改启用T0的产品，并重新读取资源和券池？"),
                       changesInWords(), ConfirmChange::Enter::Confirms, [this] { apply(); });
}

void ProductsView::apply()
{
    m_isSending = true;
    m_status->setText(tr("应用中…"));
    showChanges();
    Background::run(
        QLatin1String(ViewParts::changeLane), this,
        [wanted = wantedState()] {
            return ChangeOutcome::of(Master_MsgType::AlterManualT0ProductsRequest, [&wanted](QString &errorText) {
                return ManualT0Logic::AlterT0ProductAccount(wanted, errorText);
            });
        },
        [this](const ChangeOutcome &outcome) { takeOutcome(outcome); });
}

void ProductsView::takeOutcome(const ChangeOutcome &outcome)
{
    m_isSending = false;
    takeState();
    m_status->setText(outcome.isUnknown ? tr("结果未知：没有收到应答，正在重新读取，请核对") : outcome.inWords());
    if (PageShell *shell = PageShell::instance())
        shell->notify(outcome.isGood() ? PageShell::Notice::Success : PageShell::Notice::Refusal,
                      tr("T0产品：%1").arg(m_status->text()));
}
