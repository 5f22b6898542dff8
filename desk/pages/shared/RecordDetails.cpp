#include "RecordDetails.h"

#include "ManualT0Logic.h"
#include "MasterBusinessDataInterface.h"
#include "MasterFields.h"
#include "OrvaneFields.h"
#include "PageShell.h"
#include "RecordTable.h"

#include <QtCore/QCoreApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QTreeWidget>
#include <QtWidgets/QVBoxLayout>

namespace {

using namespace Master_Fields::ManualT0;

class DetailsDialog : public QDialog
{
    Q_DECLARE_TR_FUNCTIONS(DetailsDialog)

public:
    DetailsDialog(const VariantRecord &row, QWidget *parent)
        : QDialog(parent)
        , m_account(row.value(Orvane_Fields::UserAccount::tradingAccount).toString())
        , m_trader(row.contains(ResourceQty) ? QString() : row.value(T0TraderId).toString()) // a resource lists several
        , m_symbol(row.value(Orvane_Fields::Security::symbol).toString())
        , m_exchange(row.value(Orvane_Fields::UserAccount::securityExchange).toString())
    {
        setObjectName(QStringLiteral("details"));
        setAttribute(Qt::WA_DeleteOnClose);
        setWindowTitle(tr("明细：%1 %2 %3").arg(m_account, m_symbol, m_exchange));
        m_tree->setObjectName(QStringLiteral("details.fields"));
        m_tree->setHeaderLabels({tr("项目"), tr("值")});
        m_tree->header()->resizeSection(0, m_tree->fontMetrics().height() * 16);
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(m_tree);
        resize(640, 640);
        addProduct();
        addUsage();
        addPools();
        m_tree->expandAll();
    }

private:
    QTreeWidgetItem *section(const QString &title) { return new QTreeWidgetItem(m_tree, {title}); }

    static void add(QTreeWidgetItem *section, const QString &name, const QString &value)
    {
        new QTreeWidgetItem(section, {name, value});
    }

    /// The fields by the names that plug-ins use for them.
    void add(const QString &title, const VariantRecord &record)
    {
        QTreeWidgetItem *fields = section(title);
        for (auto field = record.cbegin(); field != record.cend(); ++field)
            add(fields, field.key(), field->toString());
    }

    static QString yesOrNo(bool is) { return is ? tr("是") : tr("否"); }

    void addProduct()
    {
        const tagUserAccountInfo info = MasterBusinessDataInterface::GetAccountInfoByTradingAccount(m_account, 1);
        const QString product = info.productAccount;
        QTreeWidgetItem *fields = section(tr("产品"));
        add(fields, tr("产品"), product + QLatin1Char(' ') + ManualT0Logic::GetT0ProductMap().value(product));
        add(fields, tr("已启用属性"), ManualT0Logic::GetProductAssetPropList(product).join(QLatin1Char(',')));
        add(fields, tr("本账户属性已启用"), yesOrNo(ManualT0Logic::IsProductAndAssetPropInT0(product, info.assetProp)));
        add(fields, tr("同属性的账户"),
            ManualT0Logic::GetTradingAccountListByProductAndAssetProp(product, info.assetProp).join(QLatin1Char(',')));
        add(fields, tr("产品还可设为资源"),
            QString::number(ManualT0Logic::GetAllocatableQty2Resource(product, info.assetProp, m_symbol, m_exchange),
                            'f', 0));
        add(fields, tr("账户已勾选交易"), yesOrNo(ManualT0Logic::GetCurrentTradeAccount().contains(m_account)));
        add(fields, tr("本人可交易该证券"), yesOrNo(ManualT0Logic::GetCurrentTradableSymbolList().contains(m_symbol)));
    }

    void addUsage()
    {
        const VariantRecord usage = ManualT0Logic::GetRealtimePoolDetail(m_account, m_trader, m_symbol, m_exchange);
        if (!usage.isEmpty())
            add(tr("用量"), usage);
    }

    void addPools()
    {
        const RecordList pools =
            m_trader.isEmpty()
                ? ManualT0Logic::GetSecurityPoolDetailListByTradingList({m_account}, {}, m_symbol, m_exchange, false)
                : ManualT0Logic::GetSecurityPoolDetailListByTrading(m_account, m_trader, m_symbol, m_exchange) +
                      ManualT0Logic::GetSecurityPoolDetailListByTrading(m_account, ManualT0Logic::PublicTrader,
                                                                        m_symbol, m_exchange);
        QStringList resources;
        for (const VariantRecord &pool : pools) {
            const QString id = pool.value(PoolDetailId).toString();
            add(tr("券池 %1").arg(id), ManualT0Logic::GetSecurityPoolDetailById(id));
            resources.append(pool.value(ResourceId).toString());
        }
        resources.removeDuplicates();
        for (const QString &id : qAsConst(resources))
            add(tr("资源 %1").arg(id), ManualT0Logic::GetResourceDetailById(id));
    }

    const QString m_account;
    const QString m_trader; ///< empty: of all
    const QString m_symbol;
    const QString m_exchange;
    QTreeWidget *const m_tree = new QTreeWidget;
};

} // namespace

void RecordDetails::offer(RecordTable *table, const QString &commandId)
{
    PageShell::instance()->addCommand({commandId, DetailsDialog::tr("明细"), QKeySequence(QStringLiteral("Ctrl+I"))},
                                      table, [table] {
                                          const VariantRecord row = table->records()->record(table->currentKey());
                                          if (!row.isEmpty())
                                              (new DetailsDialog(row, table->window()))->open();
                                      });
}
