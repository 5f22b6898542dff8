#pragma once

#include <qwt_plot.h>

/// A plot that takes the room it is given. The hints of QwtPlot measure every label of its axes, and layouts ask for
/// them whenever any text of the page changes.
class Chart : public QwtPlot
{
public:
    using QwtPlot::QwtPlot;

    QSize sizeHint() const override { return minimumSizeHint(); }
    QSize minimumSizeHint() const override { return {160, 120}; }
};
