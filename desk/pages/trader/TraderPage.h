#pragma once

#include "PageShell.h"

#include <QtWidgets/QWidget>

class TraderPage : public QWidget
{
    Q_OBJECT

public:
    static PageDescription description();

    explicit TraderPage(QWidget *parent = nullptr);
};
