#include "ProfitPage.h"

PageDescription ProfitPage::description()
{
    return {QStringLiteral("profit"), tr("盈亏"), {}, [] { return new ProfitPage; }};
}

ProfitPage::ProfitPage(QWidget *parent)
    : QWidget(parent)
{}
