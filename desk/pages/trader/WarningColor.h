#pragma once

class QLabel;

/// The colour of what is wrong or dangerous: readable on light and dark windows, and neither rise nor fall.
namespace WarningColor {

void applyTo(QLabel *label);

} // namespace WarningColor
