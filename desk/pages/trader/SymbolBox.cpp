#include "SymbolBox.h"

#include "EventBus.h"
#include "ManualT0Logic.h"
#include "MasterConstants.h"
#include "PageShell.h"
#include "TradeSelection.h"
#include "VantaKeys.h"

#include <QtGui/QKeyEvent>
#include <QtWidgets/QLineEdit>

namespace {

constexpr int reloadMs = 100;

QString keyOf(const QString &symbol, const QString &exchange)
{
    return symbol + QLatin1Char('\n') + exchange;
}

} // namespace

SymbolBox::SymbolBox(TradeSelection *selection, QWidget *parent)
    : MasterComboBox(parent)
    , m_selection(selection)
{
    setObjectName(QStringLiteral("trade.symbol"));
    setAccessibleName(tr("证券代码"));
    setSearchEnabled();
    setAttribute(Qt::WA_InputMethodEnabled, false);
    lineEdit()->setAttribute(Qt::WA_InputMethodEnabled, false);
    lineEdit()->setPlaceholderText(tr("代码、名称或首字母"));

    m_reload.setSingleShot(true);
    m_reload.setInterval(reloadMs);
    connect(&m_reload, &QTimer::timeout, this, &SymbolBox::reload);
    const auto reloadSoon = [this] {
        if (m_texts.isEmpty())
            reload(); // somebody may be typing already
        else
            m_reload.start();
    };
    using namespace Vanta_Keys::EventMsgName;
    EventBus::listen(ManualT0CurInputSymbolChanged, this, std::bind(reloadSoon));
    EventBus::listen(ManualT0CurTradeAccountChanged, this, std::bind(reloadSoon));
    connect(selection, &TradeSelection::instrumentChanged, this, &SymbolBox::showChosen);
    connect(this, QOverload<int>::of(&QComboBox::activated), this, &SymbolBox::choose);
    connect(this, &MasterComboBox::nothingFits, this, [](const QString &typed) {
        PageShell::instance()->notify(PageShell::Notice::Refusal, tr("没有可交易的证券“%1”").arg(typed));
    });
    reload();
}

void SymbolBox::reload()
{
    QStringList texts;
    QStringList keys;
    const QStringList accounts = m_selection->accounts();
    const QStringList symbols = ManualT0Logic::GetCurrentInputSymbolList();
    for (const QString &search : symbols) {
        const QStringList parts = search.split(Constants::SymbolSearch_Split);
        const QString text = parts.join(QLatin1Char(' '));
        const QStringList exchanges = ManualT0Logic::GetExchangeListByAccountAndSymbol(parts.constFirst(), accounts);
        for (const QString &exchange : exchanges) {
            texts.append(exchanges.size() > 1 ? text + QLatin1Char(' ') + exchange : text);
            keys.append(keyOf(parts.constFirst(), exchange));
        }
    }
    if (texts == m_texts && keys == m_keys)
        return;
    m_texts = texts;
    m_keys = keys;
    const QString typed = lineEdit()->text() == itemText(currentIndex()) ? QString() : lineEdit()->text();
    clear();
    AddItemsList(texts, keys);
    showChosen();
    if (hasFocus() && !typed.isEmpty())
        setEditText(typed);
}

void SymbolBox::showChosen()
{
    setCurrentIndex(findData(keyOf(m_selection->symbol(), m_selection->exchange())));
}

void SymbolBox::choose(int item)
{
    const QString key = itemData(item).toString();
    m_selection->setInstrument(key.section(QLatin1Char('\n'), 0, 0), key.section(QLatin1Char('\n'), 1));
    emit taken();
}

void SymbolBox::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool isChosen = currentIndex() >= 0 && lineEdit()->text() == itemText(currentIndex());
    MasterComboBox::keyPressEvent(event);
    if (isEnter && isChosen)
        emit taken();
}
