#include "AddResourcesDialog.h"

#include "FilterBar.h"
#include "HostDirectory.h"
#include "ImportItems.h"
#include "ImportRun.h"
#include "Layout.h"
#include "ManualT0Logic.h"
#include "PageShell.h"
#include "SheetText.h"
#include "TypingDelegate.h"
#include "VantaKeys.h"
#include "ViewParts.h"

#include <QtCore/QFile>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QTabBar>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QTableView>
#include <QtWidgets/QVBoxLayout>

namespace {

QString partName(const char *part)
{
    return QStringLiteral("manage.import.") + QLatin1String(part);
}

QString inWords(const QVector<ResourceError> &errors)
{
    QStringList lines;
    for (const ResourceError &error : errors) {
        if (error.line == 0)
            lines.append(error.text);
        else
            lines.append(
                AddResourcesDialog::tr("第%1行 %2：%3").arg(QString::number(error.line), error.column, error.text));
    }
    constexpr int shown = 4;
    const int more = lines.size() - shown;
    lines = lines.mid(0, shown);
    if (more > 0)
        lines.append(AddResourcesDialog::tr("……另有%1处，见表").arg(more));
    return lines.join(QLatin1Char('\n'));
}

} // namespace

AddResourcesDialog::AddResourcesDialog(QWidget *parent)
    : QDialog(parent)
    , m_model(new ImportModel(this))
    , m_table(new QTableView)
    , m_sources(new QTabWidget)
    , m_filter(new FilterBar(partName("filter")))
    , m_withT0Symbols(new QCheckBox(tr("含未持有的可转债")))
    , m_paste(new QPlainTextEdit)
    , m_file(new QLineEdit)
    , m_errors(ViewParts::label(partName("errors")))
    , m_append(new QRadioButton(tr("追加数量(&A)")))
    , m_cover(new QRadioButton(tr("覆盖数量(&C)")))
    , m_state(ViewParts::label(partName("state")))
    , m_send(ViewParts::button(partName("send"), tr("提交(&S)")))
{
    setObjectName(QStringLiteral("manage.import"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("新增资源"));
    m_sources->tabBar()->setObjectName(partName("sources"));
    m_sources->addTab(candidatesTab(), tr("候选持仓"));
    m_sources->addTab(pasteTab(), tr("粘贴"));
    m_sources->addTab(fileTab(), tr("CSV文件"));
    m_sources->setMaximumHeight(fontMetrics().height() * 8);
    buildTable();
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_sources);
    layout->addWidget(m_errors);
    layout->addWidget(m_table, 1);
    layout->addWidget(bottomBar());
    connect(m_model, &ImportModel::changed, this, &AddResourcesDialog::showState);
    connect(m_cover, &QRadioButton::toggled, this, &AddResourcesDialog::showState);
    if (const PageShell *shell = PageShell::instance())
        connect(shell, &PageShell::sendingGateChanged, this, &AddResourcesDialog::showState);
    auto *later = new Later(
        100, [this] { showHeld(); }, this);
    later->follow({Vanta_Keys::EventMsgName::ManualT0ResourceUpdated, Vanta_Keys::EventMsgName::ManualT0DataInited});
    resize(1160, 720);
    showState();
}

QWidget *AddResourcesDialog::candidatesTab()
{
    auto *tab = new QWidget;
    auto *layout = new QHBoxLayout(tab);
    QPushButton *load = ViewParts::button(partName("load"), tr("列出持仓(&L)"));
    load->setAutoDefault(false);
    m_withT0Symbols->setObjectName(partName("withT0Symbols"));
    m_filter->hideTraders();
    layout->addWidget(m_filter, 1);
    layout->addWidget(m_withT0Symbols);
    layout->addWidget(load);
    connect(load, &QPushButton::clicked, this, &AddResourcesDialog::loadCandidates);
    return tab;
}

QWidget *AddResourcesDialog::pasteTab()
{
    m_paste->setObjectName(partName("paste"));
    m_paste->setPlaceholderText(tr("从表格复制后粘贴：资金账号、代码、数量，可再加交易员、券池数量；"
                                   "首行有标题时列的顺序不限（资金账号 代码 市场 数量 交易员 券池数量）"));
    m_paste->setTabChangesFocus(true);
    connect(m_paste, &QPlainTextEdit::textChanged, this, [this] { readText(m_paste->toPlainText(), false); });
    return m_paste;
}

QWidget *AddResourcesDialog::fileTab()
{
    auto *tab = new QWidget;
    auto *layout = new QHBoxLayout(tab);
    m_file->setObjectName(partName("file"));
    m_file->setPlaceholderText(tr("有标题行的CSV文件，UTF-8或GB18030"));
    QPushButton *browse = ViewParts::button(partName("browse"), tr("浏览(&B)…"));
    QPushButton *read = ViewParts::button(partName("read"), tr("读取(&R)"));
    for (QPushButton *button : {browse, read})
        button->setAutoDefault(false);
    layout->addWidget(m_file, 1);
    layout->addWidget(browse);
    layout->addWidget(read);
    connect(browse, &QPushButton::clicked, this, &AddResourcesDialog::chooseFile);
    connect(read, &QPushButton::clicked, this, &AddResourcesDialog::loadFile);
    return tab;
}

QWidget *AddResourcesDialog::bottomBar()
{
    auto *bar = new QWidget;
    auto *layout = new QHBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    auto *all = new QCheckBox(tr("全选"));
    all->setObjectName(partName("all"));
    m_append->setObjectName(partName("append"));
    m_cover->setObjectName(partName("cover"));
    m_append->setToolTip(tr("已有的资源增加这些数量"));
    m_cover->setToolTip(tr("已有的资源改为这些数量；有交易员的行还会替换该资源的全部券池"));
    m_append->setChecked(true);
    QPushButton *close = ViewParts::button(partName("close"), tr("关闭"));
    for (QPushButton *button : {m_send, close})
        button->setAutoDefault(false);
    layout->addWidget(all);
    layout->addWidget(m_append);
    layout->addWidget(m_cover);
    layout->addWidget(m_state, 1);
    layout->addWidget(m_send);
    layout->addWidget(close);
    connect(all, &QCheckBox::clicked, m_model, &ImportModel::tickAll);
    connect(m_send, &QPushButton::clicked, this, &AddResourcesDialog::send);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    return bar;
}

void AddResourcesDialog::buildTable()
{
    m_table->setObjectName(partName("rows"));
    m_table->setModel(m_model);
    m_table->setItemDelegate(new TypingDelegate(m_table));
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                             QAbstractItemView::AnyKeyPressed);
    m_table->setTabKeyNavigation(false);
    m_table->setAlternatingRowColors(true);
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    m_table->horizontalHeader()->setStretchLastSection(true);
    const int character = Layout::characterWidth(fontMetrics());
    const QVector<int> widths{7, 9, 10, 6, 11, 9, 10, 10, 13};
    for (int column = 0; column < widths.size(); ++column)
        m_table->setColumnWidth(column, widths.at(column) * character + 12);
    ViewParts::keepLayout(m_table->horizontalHeader(), m_table->objectName());
}

void AddResourcesDialog::reject()
{
    if (!m_run)
        QDialog::reject();
}

void AddResourcesDialog::loadCandidates()
{
    QVector<ImportModel::Item> items;
    const ImportItems make;
    const RecordList candidates = ManualT0Logic::GetT0ResourceCandidatesList(
        m_filter->products(), m_filter->assetProp(), m_withT0Symbols->isChecked());
    for (const VariantRecord &candidate : candidates) {
        if (m_filter->hasText(candidate))
            items.append(make.of(candidate, items.size() + 1));
    }
    m_errors->clear();
    m_model->setItems(items);
}

void AddResourcesDialog::chooseFile()
{
    auto *dialog = new QFileDialog(this, tr("CSV文件"), {}, tr("CSV 文件 (*.csv *.txt);;所有文件 (*)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &file) {
        m_file->setText(file);
        loadFile();
    });
    dialog->open();
}

void AddResourcesDialog::loadFile()
{
    QFile file(m_file->text());
    QString errorText;
    QString text;
    if (!file.open(QIODevice::ReadOnly))
        errorText = tr("无法读取文件：%1").arg(file.errorString());
    else
        text = SheetText::decoded(file.readAll(), errorText);
    readText(text, true);
    if (!errorText.isEmpty())
        m_errors->setText(errorText);
}

void AddResourcesDialog::readText(const QString &text, bool titlesNeeded)
{
    const ResourceRows read = ResourceRows::read(text, titlesNeeded, HostDirectory::directory());
    QVector<ImportModel::Item> items;
    const ImportItems make;
    for (const ResourceRow &row : read.rows)
        items.append(make.of(row));
    m_errors->setText(inWords(read.errors));
    m_model->setItems(items);
}

void AddResourcesDialog::showHeld()
{
    const ImportItems now;
    m_model->setHeld([&now](const ResourceRow &row) { return now.held(row); });
}

QString AddResourcesDialog::whyNotToSend() const
{
    if (m_run)
        return tr("提交中…");
    if (const QString gate = ViewParts::gate(); !gate.isEmpty())
        return gate;
    if (m_model->tickedRows().isEmpty())
        return m_model->items().isEmpty() ? tr("没有数据") : tr("没有勾选的行");
    const int bad = m_model->badTicked();
    return bad == 0 ? QString() : tr("%1 行有问题：改正，或去掉勾选").arg(bad);
}

void AddResourcesDialog::send()
{
    if (!whyNotToSend().isEmpty())
        return;
    m_run = new ImportRun(*m_model, m_cover->isChecked(), this);
    connect(m_run, &ImportRun::ended, m_model, &ImportModel::setResult);
    connect(m_run, &ImportRun::finished, this, &AddResourcesDialog::finish);
    showState();
    m_run->start();
}

void AddResourcesDialog::finish(int good, int bad)
{
    m_run = nullptr;
    showState();
    const QString text = bad == 0
                             ? tr("已新增 %1 行资源").arg(good)
                             : tr("新增资源：%1 行成功，%2 行未成功").arg(QString::number(good), QString::number(bad));
    m_state->setText(text);
    if (PageShell *shell = PageShell::instance())
        shell->notify(bad == 0 ? PageShell::Notice::Success : PageShell::Notice::Refusal, text);
}

void AddResourcesDialog::showState()
{
    const QString why = whyNotToSend();
    const int ticked = m_model->tickedRows().size();
    m_state->setText(why.isEmpty() ? tr("将提交 %1 行").arg(ticked) : why);
    m_send->setEnabled(why.isEmpty());
    m_sources->setEnabled(!m_run);
    m_table->setEnabled(!m_run);
}
