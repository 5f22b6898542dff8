#include "StatusPage.h"

PageDescription StatusPage::description()
{
    return {QStringLiteral("status"), tr("状态"), {}, [] { return new StatusPage; }};
}

StatusPage::StatusPage(QWidget *parent)
    : QWidget(parent)
{}
