#include "ManagerPage.h"

#include "MasterValues.h"

PageDescription ManagerPage::description()
{
    return {QStringLiteral("manager"), tr("管理"), Master_Values::UserRoles::ManualT0Mangager,
            [] { return new ManagerPage; }};
}

ManagerPage::ManagerPage(QWidget *parent)
    : QWidget(parent)
{}
