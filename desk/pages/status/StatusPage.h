#pragma once

#include "PageShell.h"

#include <QtWidgets/QWidget>

class StatusPage : public QWidget
{
    Q_OBJECT

public:
    static PageDescription description();

    explicit StatusPage(QWidget *parent = nullptr);
};
