#pragma once

#include "PageShell.h"

#include <QtWidgets/QWidget>

class ProfitPage : public QWidget
{
    Q_OBJECT

public:
    static PageDescription description();

    explicit ProfitPage(QWidget *parent = nullptr);
};
