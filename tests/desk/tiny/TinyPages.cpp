#include "CommonQuotaHandler.h"
#include "IPlugin.h"
#include "MasterTradeLogic.h"
#include "MasterValues.h"
#include "OrvaneValues.h"
#include "PageShell.h"
#include "VantaKeys.h"

#include <QtWidgets/QAction>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QTableWidget>
#include <QtWidgets/QVBoxLayout>

/// Two pages that show what the window told them: "tiny" with a table, a line edit and commands, "other" with nothing.
class TinyPages : public IPlugin
{
    Q_OBJECT
    Q_INTERFACES(IPlugin)
    Q_PLUGIN_METADATA(IID "ZRAppPlugin" FILE "TinyPages.json")

public:
    bool initialize(const QStringList &, QString *, const QString &) override { return PageShell::instance(); }

    void extensionsInitialized() override
    {
        PageShell::instance()->addPage({QStringLiteral("tiny"), QStringLiteral("小"), {}, makeTiny});
        PageShell::instance()->addPage(
            {QStringLiteral("other"), QStringLiteral("另"), {}, [] { return named(new QLabel, "other"); }});
        PageShell::instance()->addPage({QStringLiteral("nobodys"), {}, QStringLiteral("NoSuchRole"), makeTiny});
        PageShell::instance()->addStatusWidget(named(new QLabel(QStringLiteral("chip")), "tiny.chip"));
    }

private:
    template <typename Widget> static Widget *named(Widget *widget, const char *name)
    {
        widget->setObjectName(QString::fromLatin1(name));
        return widget;
    }

    static QString nameOf(const QWidget *widget) { return widget ? widget->objectName() : QStringLiteral("none"); }

    static QTableWidget *makeTable()
    {
        auto *table = named(new QTableWidget(2, 2), "tiny.table");
        table->setHorizontalHeaderLabels({QStringLiteral("letter"), QStringLiteral("number")});
        table->setEditTriggers(QAbstractItemView::NoEditTriggers); // a letter would begin to edit
        for (int row = 0; row < 2; ++row) {
            table->setItem(row, 0, new QTableWidgetItem(QString(QLatin1Char(char('A' + row)))));
            table->setItem(row, 1, new QTableWidgetItem(QString::number(row)));
            table->item(row, 0)->setCheckState(Qt::Unchecked);
        }
        QObject::connect(table, &QTableWidget::itemChanged, table, [](QTableWidgetItem *item) {
            item->tableWidget()->item(item->row(), 1)->setText(QStringLiteral("ticked"));
        });
        return table;
    }

    static QWidget *makeTiny()
    {
        auto *page = new QWidget;
        auto *layout = new QVBoxLayout(page);
        auto *heard = named(new QLabel, "tiny.heard");
        auto *table = makeTable();
        for (QWidget *widget : {static_cast<QWidget *>(heard), static_cast<QWidget *>(table),
                                static_cast<QWidget *>(named(new QLineEdit, "tiny.edit"))})
            layout->addWidget(widget);
        table->setFocus();
        listen(heard);
        PageShell *shell = PageShell::instance();
        shell->addCommand({QStringLiteral("tiny.letter"), QStringLiteral("字母"), QKeySequence(Qt::Key_Z)}, table,
                          [heard] { heard->setText(heard->text() + QStringLiteral("letter;")); });
        shell->addCommand({QStringLiteral("tiny.note"), QStringLiteral("提示"), QKeySequence(Qt::Key_F2)}, nullptr,
                          [shell] { shell->notify(PageShell::Notice::Refusal, QStringLiteral("a note")); });
        shell->addCommand({QStringLiteral("tiny.sell"), QStringLiteral("卖出"), QKeySequence(Qt::Key_F3)}, nullptr,
                          [] { sell(200); });
        shell->addCommand({QStringLiteral("tiny.taken"), QStringLiteral("冲突"), QKeySequence(Qt::Key_F5)}, table,
                          [heard] { heard->setText(QStringLiteral("taken")); });
        return page;
    }

    /// Sells what lead1 may sell.
    static void sell(qint64 quantity)
    {
        const QString symbol = QStringLiteral("600004.SH");
        const double price = CommonQuotaHandler::instance().lastPrice(symbol, 0) - 0.05;
        OrderRequestList orders;
        orders.getOrderCommonInfo() = {QStringLiteral("A000101"),
                                       Vanta_Keys::BusinessName::ManualT0Trade,
                                       Master_Values::VantaBusiType::ManualT0Order,
                                       true,
                                       {}};
        orders.AddSymbol(symbol, quantity, Orvane_Values::PriceType::limit, QString::number(price, 'f', 2),
                         Master_Values::SideUnion::normalSell, Orvane_Values::Exchange::sh);
        QVariant answer;
        MasterTradeLogic::instance()->orders(orders, answer);
    }

    static void listen(QLabel *heard)
    {
        PageShell *shell = PageShell::instance();
        connect(shell, &PageShell::refreshRequested, heard, [heard] { heard->setText(QStringLiteral("refresh")); });
        connect(shell, &PageShell::layoutReset, heard,
                [heard](const QString &page) { heard->setText(QStringLiteral("layout ") + page); });
        connect(shell, &PageShell::exportRequested, heard,
                [heard](QWidget *focus) { heard->setText(QStringLiteral("export ") + nameOf(focus)); });
        connect(shell, &PageShell::searchRequested, heard,
                [heard](QWidget *focus) { heard->setText(QStringLiteral("search ") + nameOf(focus)); });
        connect(shell, &PageShell::sendingGateChanged, heard, [heard, shell] {
            heard->setText(shell->sendingGate().isEmpty() ? QStringLiteral("gate open") : QStringLiteral("gate shut"));
        });
        connect(shell, &PageShell::appearanceChanged, heard, [heard, shell] {
            heard->setText(
                QStringLiteral("%1 %2").arg(shell->isDark() ? QStringLiteral("dark") : QStringLiteral("light"),
                                            QString::number(heard->font().pointSize())));
        });
    }
};

#include "TinyPages.moc"
