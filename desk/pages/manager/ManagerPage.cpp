#include "ManagerPage.h"

#include "AllocationEditor.h"
#include "Layout.h"
#include "MasterValues.h"
#include "PoolsView.h"
#include "ProductsView.h"
#include "ResourcesView.h"
#include "TradersView.h"

#include <QtWidgets/QSplitter>
#include <QtWidgets/QTabBar>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QVBoxLayout>

PageDescription ManagerPage::description()
{
    return {QStringLiteral("manage"), tr("管理"), Master_Values::UserRoles::ManualT0Mangager,
            [] { return new ManagerPage; }};
}

ManagerPage::ManagerPage(QWidget *parent)
    : QWidget(parent)
    , m_tabs(new QTabWidget)
{
    m_tabs->tabBar()->setObjectName(QStringLiteral("manage.tabs"));
    m_tabs->setDocumentMode(true);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_tabs);
    addTab(resourcesTab(), tr("资源与分配"), QStringLiteral("manage.showResources"), Qt::ALT + Qt::Key_1);
    addTab(new ProductsView, tr("产品"), QStringLiteral("manage.showProducts"), Qt::ALT + Qt::Key_2);
    addTab(new PoolsView, tr("券池"), QStringLiteral("manage.showPools"), Qt::ALT + Qt::Key_3);
    addTab(new TradersView, tr("交易员"), QStringLiteral("manage.showTraders"), Qt::ALT + Qt::Key_4);
}

QWidget *ManagerPage::resourcesTab()
{
    auto *splitter = new QSplitter(Qt::Horizontal);
    auto *resources = new ResourcesView;
    auto *editor = new AllocationEditor;
    splitter->addWidget(resources);
    splitter->addWidget(editor);
    splitter->setStretchFactor(0, 1);
    Layout::manage(splitter, QStringLiteral("manage.resourcesAndPools"), {900, 700});
    connect(resources, &ResourcesView::chosen, editor, &AllocationEditor::edit);
    connect(resources, &ResourcesView::editAsked, editor, &AllocationEditor::startTyping);
    return splitter;
}

void ManagerPage::addTab(QWidget *view, const QString &title, const QString &commandId, const QKeySequence &keys)
{
    m_tabs->addTab(view, title);
    PageShell *shell = PageShell::instance();
    if (!shell)
        return;
    shell->addCommand({commandId, tr("管理：%1").arg(title), keys}, this, [this, view] {
        m_tabs->setCurrentWidget(view);
        view->setFocus();
    });
}
