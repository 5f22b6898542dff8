#include "MasterUtils.h"

#include <QtGui/QColor>
#include <QtGui/QGuiApplication>
#include <QtGui/QPalette>

#include <cmath>

namespace {

constexpr double readable = 4.5; ///< the contrast that guidelines for accessible texts ask for

/// Relative luminance as those guidelines define it: 0 black to 1 white.
double luminance(const QColor &color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor &a, const QColor &b)
{
    const double first = luminance(a) + 0.05;
    const double second = luminance(b) + 0.05;
    return qMax(first, second) / qMin(first, second);
}

QColor blend(const QColor &color, const QColor &ground, double share)
{
    const auto mix = [share](int part, int groundPart) { return qRound(share * part + (1 - share) * groundPart); };
    return {mix(color.red(), ground.red()), mix(color.green(), ground.green()), mix(color.blue(), ground.blue())};
}

/// As much of the colour as leaves it readable on the mixture; invalid when it is not even readable on the ground.
QColor tint(const QColor &color, const QColor &ground)
{
    for (int percent = 30; percent >= 0; percent -= 2) {
        const QColor mixture = blend(color, ground, percent / 100.0);
        if (contrast(color, mixture) >= readable)
            return mixture;
    }
    return {};
}

} // namespace

QColor MasterUtils::SystemBackgroundColor()
{
    const bool hasWindows = qobject_cast<QGuiApplication *>(QCoreApplication::instance()) != nullptr;
    return hasWindows ? QGuiApplication::palette().color(QPalette::Base) : QColor(Qt::white);
}

QColor MasterUtils::GetBackgroundColor(QColor textColor)
{
    const QColor skin = SystemBackgroundColor();
    if (!textColor.isValid())
        return skin;
    const QColor background = tint(textColor, skin);
    if (background.isValid())
        return background;
    // Yellow on white: no ground near the skin's will do. Every colour is readable on black or on white.
    const QColor black(Qt::black);
    const QColor white(Qt::white);
    return tint(textColor, contrast(textColor, black) > contrast(textColor, white) ? black : white);
}
