#include "IPlugin.h"
#include "PageShell.h"

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
        shell->addCommand({QStringLiteral("tiny.taken"), QStringLiteral("冲突"), QKeySequence(Qt::Key_F5)}, table,
                          [heard] { heard->setText(QStringLiteral("taken")); });
        return page;
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
