#include "ManualT0DoubleSpinbox.h"

namespace {

constexpr double tolerance = 1e-10;

/// Stores what is not negative; NaN is not.
bool storeStep(double &step, double wanted)
{
    if (wanted < 0)
        return false;
    step = wanted;
    return true;
}

} // namespace

ManualT0DoubleSpinbox::ManualT0DoubleSpinbox(QWidget *parent)
    : MasterDoubleSpinBox(parent, 0.01, 0.0, 1e13, 2)
{}

ManualT0DoubleSpinbox::~ManualT0DoubleSpinbox() = default;

bool ManualT0DoubleSpinbox::SetUpStep(double step)
{
    return storeStep(m_upStep, step);
}

bool ManualT0DoubleSpinbox::SetDownStep(double step)
{
    return storeStep(m_downStep, step);
}

double ManualT0DoubleSpinbox::GetUpStep() const
{
    return m_upStep;
}

double ManualT0DoubleSpinbox::GetDownStep() const
{
    return m_downStep;
}

void ManualT0DoubleSpinbox::stepBy(int steps)
{
    const double step = steps > 0 ? m_upStep : m_downStep;
    if (steps == 0 || !(step > 0)) { // also when it is NaN
        MasterDoubleSpinBox::stepBy(steps);
        return;
    }
    interpretText(); // without keyboard tracking value() is older than what is shown
    const double target = value() + steps * step;
    if (target > maximum() + tolerance)
        setValue(maximum());
    else if (minimum() > target + tolerance)
        setValue(minimum());
    else
        setValue(target);
    selectAll(); // as the standard step does: the next key replaces the number
}
