#pragma once

#include "PageShell.h"

#include <QtWidgets/QWidget>

class QTabWidget;

/// What managers do: enable products, set stock aside, hand it out, and see what traders make of it.
class ManagerPage : public QWidget
{
    Q_OBJECT

public:
    static PageDescription description();

    explicit ManagerPage(QWidget *parent = nullptr);

private:
    QWidget *resourcesTab();
    void addTab(QWidget *view, const QString &title, const QString &commandId, const QKeySequence &keys);

    QTabWidget *m_tabs;
};
