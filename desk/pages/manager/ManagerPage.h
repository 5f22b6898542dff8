#pragma once

#include "PageShell.h"

#include <QtWidgets/QWidget>

class ManagerPage : public QWidget
{
    Q_OBJECT

public:
    static PageDescription description();

    explicit ManagerPage(QWidget *parent = nullptr);
};
