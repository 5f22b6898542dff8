#pragma once

#include "ManualT0LogicExport.h"
#include "MasterDoubleSpinBox.h"

/// An input of a price or a quantity whose arrows, keys and wheel may step up by another amount than down: price units
/// differ above and below a price. In the beginning: 0 to 1e13, two decimals, steps of 0.01. GUI thread only.
class MANUALT0LOGIC_EXPORT ManualT0DoubleSpinbox : public MasterDoubleSpinBox
{
    Q_OBJECT

public:
    explicit ManualT0DoubleSpinbox(QWidget *parent = nullptr);
    ~ManualT0DoubleSpinbox() override;

    /// The amount of one step up, in the unit of value(). False for a negative amount, which changes nothing. 0, the
    /// initial value, and NaN: the standard step, singleStep(). Values are rounded to decimals(), so an amount below
    /// half of the last decimal moves nothing.
    bool SetUpStep(double step);
    bool SetDownStep(double step); ///< the same downwards; given as a positive amount

    double GetUpStep() const;
    double GetDownStep() const;

    /// Changes the value by so many steps, downwards when negative; stops at minimum() and maximum().
    void stepBy(int steps) override;

private:
    double m_upStep = 0;
    double m_downStep = 0;
};
