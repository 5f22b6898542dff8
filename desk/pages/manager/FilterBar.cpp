#include "FilterBar.h"

#include "EventBus.h"
#include "ManagerTexts.h"
#include "ManualT0Logic.h"
#include "ManualT0TraderCombo.h"
#include "MasterComboBox.h"
#include "VantaKeys.h"

#include <QtCore/QSignalBlocker>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLineEdit>

namespace {

QString chosen(const QComboBox *box)
{
    return box->currentData().toString();
}

void choose(QComboBox *box, const QString &data)
{
    box->setCurrentIndex(std::max(0, box->findData(data)));
}

} // namespace

FilterBar::FilterBar(const QString &name, QWidget *parent)
    : QWidget(parent)
    , m_product(new MasterComboBox)
    , m_assetProp(new MasterComboBox)
    , m_trader(new ManualT0TraderCombo)
    , m_text(new QLineEdit)
{
    m_product->setObjectName(name + QStringLiteral(".product"));
    m_assetProp->setObjectName(name + QStringLiteral(".assetProp"));
    m_trader->setObjectName(name + QStringLiteral(".trader"));
    m_text->setObjectName(name + QStringLiteral(".symbol"));
    m_product->setSearchEnabled();
    m_text->setPlaceholderText(tr("代码或名称"));
    m_text->setClearButtonEnabled(true);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    for (QWidget *input : {static_cast<QWidget *>(m_product), static_cast<QWidget *>(m_assetProp),
                           static_cast<QWidget *>(m_trader), static_cast<QWidget *>(m_text)})
        layout->addWidget(input);
    layout->addStretch(1);

    offer();
    for (QComboBox *box : {static_cast<QComboBox *>(m_product), static_cast<QComboBox *>(m_assetProp),
                           static_cast<QComboBox *>(m_trader)})
        connect(box, qOverload<int>(&QComboBox::currentIndexChanged), this, &FilterBar::changed);
    connect(m_text, &QLineEdit::textChanged, this, &FilterBar::textChanged);
    EventBus::listen(Vanta_Keys::EventMsgName::ManualT0DataInited, this, [this](const QVariant &family) {
        if (family.toInt() == ManualT0Logic::Products || family.toInt() == ManualT0Logic::Traders)
            offer();
    });
}

void FilterBar::hideTraders()
{
    m_trader->hide();
}

void FilterBar::offer()
{
    const QSignalBlocker quiet[] = {QSignalBlocker(m_product), QSignalBlocker(m_assetProp), QSignalBlocker(m_trader)};
    const QString product = chosen(m_product);
    const QString assetProp = chosen(m_assetProp);
    const QString trader = chosen(m_trader);
    QStringList texts{tr("全部产品")};
    QStringList ids{QString()};
    QStringList properties;
    const QMap<QString, QStringList> products = ManualT0Logic::GetAllT0ProductAccount();
    for (auto enabled = products.cbegin(); enabled != products.cend(); ++enabled) {
        texts.append(ManagerTexts::product(enabled.key()));
        ids.append(enabled.key());
        properties += *enabled;
    }
    properties.removeDuplicates();
    m_product->clear();
    m_product->AddItemsList(texts, ids);
    m_assetProp->clear();
    m_assetProp->addItem(tr("全部属性"), QString());
    for (const QString &property : qAsConst(properties))
        m_assetProp->addItem(ManagerTexts::assetProp(property), property);
    m_trader->InitTraders(ManualT0Logic::GetAllT0TraderId(), true, true);
    choose(m_product, product);
    choose(m_assetProp, assetProp);
    m_trader->setCurrentIndex(m_trader->findData(trader)); // "public" stands before "all", whose id is empty
}

bool FilterBar::isAll() const
{
    return chosen(m_product).isEmpty() && assetProp().isEmpty() && traders().isEmpty();
}

QStringList FilterBar::products() const
{
    const QString product = chosen(m_product);
    return product.isEmpty() ? QStringList(ManualT0Logic::GetAllT0ProductAccount().keys()) : QStringList(product);
}

QString FilterBar::assetProp() const
{
    return chosen(m_assetProp);
}

QStringList FilterBar::assetProps() const
{
    return assetProp().isEmpty() ? QStringList() : QStringList(assetProp());
}

QStringList FilterBar::traders() const
{
    const QString trader = chosen(m_trader);
    return trader.isEmpty() ? QStringList() : QStringList(trader);
}

bool FilterBar::hasText(const VariantRecord &row) const
{
    return ManagerTexts::security(row).contains(m_text->text().trimmed(), Qt::CaseInsensitive);
}
