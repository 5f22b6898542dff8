#include "WarningColor.h"

#include "PageShell.h"

#include <QtWidgets/QLabel>

void WarningColor::applyTo(QLabel *label)
{
    const PageShell *shell = PageShell::instance();
    QPalette colors = label->palette();
    colors.setColor(QPalette::WindowText, shell && shell->isDark() ? QColor(255, 176, 96) : QColor(160, 72, 0));
    label->setPalette(colors);
}
