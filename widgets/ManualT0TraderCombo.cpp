#include "ManualT0TraderCombo.h"

#include "ManualT0Logic.h"

ManualT0TraderCombo::ManualT0TraderCombo(QWidget *parent)
    : MasterComboBox(parent)
{}

ManualT0TraderCombo::~ManualT0TraderCombo() = default;

void ManualT0TraderCombo::InitTraders(const QMap<QString, QString> &traders, bool withAll, bool withPublic)
{
    clear();
    setSearchEnabled();

    QStringList ids = traders.keys();
    QStringList texts;
    texts.reserve(ids.size() + 2);
    for (auto trader = traders.cbegin(); trader != traders.cend(); ++trader)
        texts << trader.value() + QLatin1Char(' ') + trader.key();
    if (withAll) {
        ids.prepend(QString());
        texts.prepend(QStringLiteral("全部交易员"));
    }
    if (withPublic) {
        ids.prepend(ManualT0Logic::PublicTrader);
        texts.prepend(ManualT0Logic::PublicTrader);
    }
    AddItemsList(texts, ids);
    selectFirstItem();
}
