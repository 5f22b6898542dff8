#include "OrderPanel.h"

#include "Format.h"
#include "InstrumentRules.h"
#include "ManualT0DoubleSpinbox.h"
#include "MasterValues.h"
#include "PageShell.h"
#include "SymbolQuote.h"
#include "TradeSelection.h"
#include "WarningColor.h"

#include <QtWidgets/QComboBox>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QToolButton>

#include <cmath>

namespace {

enum Kind { Ordinary, Collateral };

constexpr double maxQuantity = 1e9;

void showStatus(ManualT0DoubleSpinbox *field, QLabel *label, const QString &text)
{
    field->setInputStatus(text.isEmpty() ? InputStatusStyle::InputStatus::Normal : InputStatusStyle::InputStatus::Error,
                          text);
    label->setText(text);
}

QLabel *statusLabel(const QString &name)
{
    auto *label = new QLabel;
    label->setObjectName(name);
    label->setWordWrap(true);
    label->setMinimumHeight(label->fontMetrics().height()); // the fields below stay where they are
    return label;
}

} // namespace

OrderPanel::OrderPanel(bool isBuy, TradeSelection *selection, QWidget *parent)
    : QFrame(parent)
    , m_isBuy(isBuy)
    , m_selection(selection)
    , m_title(new QLabel(isBuy ? tr("买入") : tr("卖出")))
    , m_kind(new QComboBox)
    , m_only(new QToolButton)
    , m_price(new ManualT0DoubleSpinbox)
    , m_priceStatus(statusLabel(named("price.status")))
    , m_quantity(new ManualT0DoubleSpinbox)
    , m_quantityStatus(statusLabel(named("quantity.status")))
    , m_quota(new QLabel)
    , m_exposure(new QLabel)
    , m_send(new QPushButton)
{
    setFrameShape(QFrame::StyledPanel);
    setObjectName(isBuy ? QStringLiteral("trade.buy") : QStringLiteral("trade.sell"));
    build();
    showSend();
    takeColors();
    connect(m_price, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, &OrderPanel::recheck);
    connect(m_quantity, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, &OrderPanel::recheck);
    connect(m_kind, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &OrderPanel::recheck);
    connect(m_price, &MasterDoubleSpinBox::returnPressed, m_quantity, [this] { m_quantity->setFocus(); });
    connect(m_quantity, &MasterDoubleSpinBox::returnPressed, this, &OrderPanel::wantSend);
    connect(m_send, &QPushButton::clicked, this, &OrderPanel::wantSend);
    connect(m_only, &QToolButton::clicked, this, [this] { setOnlyAccount(QString()); });
    connect(selection, &TradeSelection::instrumentChanged, this, &OrderPanel::beginInstrument);
    connect(selection, &TradeSelection::accountsChanged, this, &OrderPanel::takeAccounts);
    beginInstrument();
}

QString OrderPanel::named(const char *part) const
{
    return (m_isBuy ? QStringLiteral("trade.buy.") : QStringLiteral("trade.sell.")) + QLatin1String(part);
}

void OrderPanel::build()
{
    m_kind->addItems({tr("普通"), tr("担保品")});
    m_quantity->setDecimals(0);
    m_quantity->setMaximum(maxQuantity);
    m_price->setObjectName(named("price"));
    m_quantity->setObjectName(named("quantity"));
    m_kind->setObjectName(named("kind"));
    m_only->setObjectName(named("account"));
    m_quota->setObjectName(named("quota"));
    m_exposure->setObjectName(named("exposure"));
    m_send->setObjectName(named("send"));
    m_only->setToolTip(tr("点击后恢复为全部勾选账户"));
    QFont bold = m_title->font();
    bold.setBold(true);
    m_title->setFont(bold);
    m_send->setFont(bold);

    auto *grid = new QGridLayout(this);
    grid->setVerticalSpacing(3);
    grid->setColumnStretch(1, 1);
    grid->addWidget(m_title, 0, 0);
    grid->addWidget(m_only, 0, 1, Qt::AlignRight);
    grid->addWidget(m_kind, 0, 2);
    grid->addWidget(new QLabel(tr("价格")), 1, 0);
    grid->addWidget(m_price, 1, 1, 1, 2);
    grid->addWidget(m_priceStatus, 2, 1, 1, 2);
    grid->addWidget(new QLabel(tr("数量")), 3, 0);
    grid->addWidget(m_quantity, 3, 1, 1, 2);
    grid->addWidget(m_quantityStatus, 4, 1, 1, 2);
    grid->addWidget(quickButtons(), 5, 0, 1, 3);
    grid->addWidget(m_quota, 6, 0, 1, 3);
    grid->addWidget(m_exposure, 7, 0, 1, 3);
    grid->addWidget(m_send, 8, 0, 1, 3);
    grid->setRowStretch(9, 1);
    setTabOrder(m_price, m_quantity);
    setTabOrder(m_quantity, m_send);
    setTabOrder(m_send, m_kind);
}

QWidget *OrderPanel::quickButtons()
{
    struct Button {
        QuickQuantity::Kind kind;
        const char *name;
        QString text;
    };
    const Button buttons[] = {
        {QuickQuantity::Third, "third", tr("1/3")},   {QuickQuantity::Half, "half", tr("1/2")},
        {QuickQuantity::All, "all", tr("全部")},      {QuickQuantity::OneLot, "lot", tr("1手")},
        {QuickQuantity::TenLots, "lots", tr("10手")}, {QuickQuantity::Close, "close", tr("平仓")}};
    auto *row = new QWidget;
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    for (const Button &entry : buttons) {
        auto *button = new QToolButton;
        button->setText(entry.text);
        button->setObjectName(named(entry.name));
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        layout->addWidget(button);
        connect(button, &QToolButton::clicked, this, [this, kind = entry.kind] {
            const QString symbol = m_selection->symbol();
            m_quantity->setValue(double(QuickQuantity::of(kind, m_room, m_isBuy, InstrumentRules::quantityStep(symbol),
                                                          InstrumentRules::lot(symbol))));
            m_quantity->setFocus();
        });
    }
    return row;
}

OrderWish OrderPanel::wish() const
{
    namespace Side = Master_Values::SideUnion;
    OrderWish wish;
    wish.accounts = m_onlyAccount.isEmpty() ? m_selection->accounts() : QStringList(m_onlyAccount);
    wish.symbol = m_selection->symbol();
    wish.exchange = m_selection->exchange();
    if (m_kind->currentIndex() == Collateral)
        wish.sideUnion = m_isBuy ? Side::collateralBuy : Side::collateralSell;
    else
        wish.sideUnion = m_isBuy ? Side::normalBuy : Side::normalSell;
    wish.price = m_price->value();
    wish.quantity = std::llround(m_quantity->value());
    return wish;
}

void OrderPanel::focusPrice()
{
    m_price->setFocus(Qt::ShortcutFocusReason);
    m_price->selectAll();
}

bool OrderPanel::hasPriceFocus() const
{
    return m_price->hasFocus();
}

void OrderPanel::setPrice(double price)
{
    m_price->setValue(price);
    m_price->selectAll();
}

void OrderPanel::fillFor(const QString &account, double price, qint64 quantity)
{
    setOnlyAccount(account);
    m_price->setValue(price);
    m_quantity->setValue(double(quantity));
}

/// What was filled in for one account is not meant for the others.
void OrderPanel::takeAccounts()
{
    if (m_onlyAccount.isEmpty() || m_selection->accounts().contains(m_onlyAccount)) {
        recheck();
        return;
    }
    m_quantity->setValue(0);
    setOnlyAccount(QString());
}

void OrderPanel::setOnlyAccount(const QString &account)
{
    m_onlyAccount = account;
    m_only->setText(tr("仅 %1 ✕").arg(account));
    m_only->setVisible(!account.isEmpty());
    recheck();
}

void OrderPanel::beginInstrument()
{
    const QString symbol = m_selection->symbol();
    m_price->setDecimals(InstrumentRules::decimals(symbol));
    m_price->setValue(SymbolQuote::of(symbol).opposite(m_isBuy));
    const double step = double(InstrumentRules::quantityStep(symbol));
    m_quantity->SetUpStep(step);
    m_quantity->SetDownStep(step);
    m_defaults = SymbolSettings::of(symbol);
    m_quantity->setValue(double(m_defaults.defaultQty));
    m_kind->setCurrentIndex(m_defaults.isCollateral ? Collateral : Ordinary);
    setOnlyAccount(QString());
}

void OrderPanel::takeSettings()
{
    const SymbolSettings old = m_defaults;
    m_defaults = SymbolSettings::of(m_selection->symbol());
    if (wish().quantity == old.defaultQty)
        m_quantity->setValue(double(m_defaults.defaultQty));
    if (m_kind->currentIndex() == (old.isCollateral ? Collateral : Ordinary))
        m_kind->setCurrentIndex(m_defaults.isCollateral ? Collateral : Ordinary);
}

/// A second Enter would send the same again while its fields still stand.
void OrderPanel::wantSend()
{
    if (m_isSending)
        showRefusal(tr("上一笔委托发送中"));
    else
        emit sendWanted();
}

void OrderPanel::beginSending()
{
    m_sent = wish();
    m_isSending = true;
    showSend();
    focusPrice();
}

/// Leaves alone what was typed for the next order meanwhile.
void OrderPanel::endSending(bool wasTaken)
{
    m_isSending = false;
    showSend();
    takeRefusalBack();
    const OrderWish now = wish();
    if (!wasTaken || now.symbol != m_sent.symbol || now.exchange != m_sent.exchange)
        return;
    if (now.quantity == m_sent.quantity)
        m_quantity->setValue(double(m_defaults.defaultQty));
    if (now.accounts == m_sent.accounts)
        setOnlyAccount(QString());
}

/// An empty field is not wrong yet. A refusal would be gone before it is read if every quote took it back.
void OrderPanel::recheck()
{
    const OrderWish wish = this->wish();
    updateSteps();
    updateRoom(wish);
    const bool isKnown = !wish.symbol.isEmpty();
    showStatus(m_price, m_priceStatus, isKnown && wish.price > 0 ? wish.check(OrderWish::Price) : QString());
    const int checks = OrderWish::Accounts | OrderWish::Quantity | OrderWish::Quota;
    showStatus(m_quantity, m_quantityStatus, isKnown && wish.quantity > 0 ? wish.check(checks) : QString());
    if (!(wish == m_refused))
        m_refusal.clear();
    if (!m_refusal.isEmpty())
        showStatus(m_quantity, m_quantityStatus, m_refusal);
}

void OrderPanel::updateSteps()
{
    const OrderWish wish = this->wish();
    m_price->SetUpStep(InstrumentRules::unitAbove(wish.symbol, wish.price, wish.sideUnion));
    m_price->SetDownStep(InstrumentRules::unitBelow(wish.symbol, wish.price, wish.sideUnion));
}

void OrderPanel::updateRoom(const OrderWish &wish)
{
    m_room = OrderRoom::of(wish);
    m_quota->setText(tr("可用 %1　可平 %2").arg(Format::quantity(m_room.quota), Format::quantity(m_room.closable)));
    const auto money = [](const std::optional<double> &value) {
        return value ? Format::money(*value) : Format::missing();
    };
    const QString limit = m_room.isUnlimited ? tr("不限") : money(m_room.limit);
    m_exposure->setText(tr("敞口 %1 / %2").arg(money(m_room.exposure), limit));
}

void OrderPanel::showRefusal(const QString &text)
{
    m_refused = wish();
    m_refusal = text;
    showStatus(m_quantity, m_quantityStatus, text);
}

void OrderPanel::takeRefusalBack()
{
    m_refusal.clear();
    recheck();
}

void OrderPanel::setGate(const QString &reason)
{
    if (reason == m_gate)
        return;
    m_gate = reason;
    showSend();
    takeRefusalBack(); // it may be the former gate's
}

void OrderPanel::showSend()
{
    const QString text = m_isBuy ? tr("买入下单") : tr("卖出下单");
    m_send->setText(m_isSending ? tr("发送中") : text);
    m_send->setEnabled(m_gate.isEmpty() && !m_isSending);
    m_send->setToolTip(m_gate);
}

void OrderPanel::takeColors()
{
    const PageShell *shell = PageShell::instance();
    if (!shell)
        return;
    const QColor color = m_isBuy ? shell->riseColor() : shell->fallColor();
    for (QWidget *widget : {static_cast<QWidget *>(m_title), static_cast<QWidget *>(m_send)}) {
        QPalette colors = palette();
        colors.setColor(QPalette::Active, QPalette::WindowText, color);
        colors.setColor(QPalette::Inactive, QPalette::WindowText, color);
        colors.setColor(QPalette::Active, QPalette::ButtonText, color);
        colors.setColor(QPalette::Inactive, QPalette::ButtonText, color);
        widget->setPalette(colors);
    }
    for (QLabel *label : {m_priceStatus, m_quantityStatus})
        WarningColor::applyTo(label);
}
