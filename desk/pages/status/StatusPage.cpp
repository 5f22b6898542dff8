#include "StatusPage.h"

#include "ConnectionPanel.h"
#include "Diagnostics.h"
#include "FamilyPanel.h"
#include "FollowEnd.h"
#include "Layout.h"
#include "LogPanel.h"
#include "MessageModel.h"
#include "RecordTable.h"
#include "RequestModel.h"

#include <QtGui/QClipboard>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QTabBar>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QVBoxLayout>

namespace {

constexpr int linesOfDiagnostics = 50;

} // namespace

PageDescription StatusPage::description()
{
    return {QStringLiteral("status"), tr("状态"), {}, [] { return new StatusPage; }};
}

StatusPage::StatusPage(QWidget *parent)
    : QWidget(parent)
    , m_families(new FamilyPanel)
    , m_connection(new ConnectionPanel)
    , m_requests(new RequestModel(this))
    , m_messages(new MessageModel(this))
{
    auto *parts = new QSplitter(Qt::Vertical);
    parts->addWidget(makeUpper());
    parts->addWidget(makeLower());
    Layout::manage(parts, QStringLiteral("status.parts"), {380, 520});
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(4, 4, 4, 4);
    column->addWidget(parts);
}

QWidget *StatusPage::makeUpper()
{
    auto *scrolled = new QScrollArea; // in a large font the boxes are higher than their part
    scrolled->setFrameShape(QFrame::NoFrame);
    scrolled->setWidgetResizable(true);
    scrolled->setWidget(m_connection);
    auto *upper = new QSplitter(Qt::Horizontal);
    upper->addWidget(m_families);
    upper->addWidget(scrolled);
    Layout::manage(upper, QStringLiteral("status.upper"), {900, 600});
    return upper;
}

QTabWidget *StatusPage::makeLower()
{
    auto *tabs = new QTabWidget;
    tabs->tabBar()->setObjectName(QStringLiteral("status.tabs"));
    tabs->addTab(makeRequests(), tr("请求"));
    auto *messages = new RecordTable(QStringLiteral("status.messages"), m_messages);
    FollowEnd::keep(messages);
    tabs->addTab(messages, tr("业务消息"));
    tabs->addTab(new LogPanel, tr("日志"));
    auto *copy = new QPushButton(tr("复制诊断信息"));
    copy->setObjectName(QStringLiteral("status.copy"));
    connect(copy, &QPushButton::clicked, this, [this] {
        QApplication::clipboard()->setText(diagnostics());
        PageShell::instance()->notify(PageShell::Notice::Success, tr("诊断信息已复制"));
    });
    tabs->setCornerWidget(copy);
    return tabs;
}

QWidget *StatusPage::makeRequests()
{
    auto *part = new QWidget;
    auto *column = new QVBoxLayout(part);
    column->setContentsMargins(0, 0, 0, 0);
    auto *heartbeats = new QCheckBox(tr("显示心跳"));
    heartbeats->setObjectName(QStringLiteral("status.requests.heartbeats"));
    auto *table = new RecordTable(QStringLiteral("status.requests"), m_requests);
    FollowEnd::keep(table);
    const auto filter = [table, heartbeats] {
        const bool all = heartbeats->isChecked();
        table->setFilter([all](const VariantRecord &row) { return all || !RequestModel::isHeartbeat(row); });
    };
    connect(heartbeats, &QCheckBox::toggled, table, filter);
    filter();
    column->addWidget(heartbeats);
    column->addWidget(table);
    return part;
}

QString StatusPage::diagnostics() const
{
    return Diagnostics::program() + Diagnostics::table(QStringLiteral("families"), *m_families->families(), 6) +
           QStringLiteral("== connection\n") + m_connection->lines().join(QLatin1Char('\n')) + QLatin1Char('\n') +
           Diagnostics::table(QStringLiteral("requests"), *m_requests, linesOfDiagnostics) +
           Diagnostics::table(QStringLiteral("messages"), *m_messages, linesOfDiagnostics) +
           Diagnostics::log(linesOfDiagnostics);
}
