#include "TraderPage.h"

PageDescription TraderPage::description()
{
    return {QStringLiteral("trader"), tr("交易"), {}, [] { return new TraderPage; }};
}

TraderPage::TraderPage(QWidget *parent)
    : QWidget(parent)
{}
