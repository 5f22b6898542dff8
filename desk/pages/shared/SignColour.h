#pragma once

class QWidget;

/// Red up, green down, or as the user chose.
namespace SignColour {

/// The text of a label takes the colour of what rises above 0, of what falls below, the usual one at 0.
void show(QWidget *label, double value);

} // namespace SignColour
