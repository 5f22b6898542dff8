#include "SignColour.h"

#include "PageShell.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

void SignColour::show(QWidget *label, double value)
{
    const PageShell *shell = PageShell::instance();
    QPalette palette = QApplication::palette();
    if (shell && value != 0)
        palette.setColor(QPalette::WindowText, value > 0 ? shell->riseColor() : shell->fallColor());
    if (label->palette() != palette)
        label->setPalette(palette);
}
