#include "Appearance.h"

#include "DeskSettings.h"

#include <QtWidgets/QApplication>

#include <algorithm>

namespace {

const QLatin1String darkSetting("dark");
const QLatin1String redUpSetting("redUp");
const QLatin1String pointSizeSetting("pointSize");

struct Shades {
    QRgb window, base, alternate, button, text, dimmed, highlight, highlightedText, link, border;
};

constexpr Shades light{0xfff3f4f6, 0xffffffff, 0xfff7f8fa, 0xffe9ebee, 0xff1c1f24,
                       0xff8a8f98, 0xff2563c9, 0xffffffff, 0xff1d5fbf, 0xffc4c8ce};
constexpr Shades dark{0xff24272c, 0xff191b1f, 0xff1f2227, 0xff30343a, 0xffe6e8eb,
                      0xff7d838c, 0xff2f65b8, 0xffffffff, 0xff7ab0ff, 0xff454a52};

} // namespace

Appearance::Appearance(const QString &fontFamily, QObject *parent)
    : QObject(parent)
    , m_font(QApplication::font())
{
    if (!fontFamily.isEmpty())
        m_font.setFamily(fontFamily);
    m_choice.isDark = DeskSettings::value(darkSetting, m_choice.isDark).toBool();
    m_choice.isRedUp = DeskSettings::value(redUpSetting, m_choice.isRedUp).toBool();
    const int points = DeskSettings::value(pointSizeSetting, m_choice.pointSize).toInt();
    m_choice.pointSize = std::clamp(points, smallest, largest);
    show();
}

void Appearance::choose(const Choice &choice)
{
    m_choice = choice;
    m_choice.pointSize = std::clamp(choice.pointSize, smallest, largest);
    DeskSettings::keep(darkSetting, m_choice.isDark);
    DeskSettings::keep(redUpSetting, m_choice.isRedUp);
    DeskSettings::keep(pointSizeSetting, m_choice.pointSize);
    show();
    emit changed();
}

void Appearance::resizeText(int points)
{
    Choice choice = m_choice;
    choice.pointSize += points;
    choose(choice);
}

void Appearance::show()
{
    m_font.setPointSize(m_choice.pointSize);
    QApplication::setPalette(palette(m_choice.isDark));
    QApplication::setFont(m_font);
}

QColor Appearance::riseColor() const
{
    return m_choice.isRedUp ? red(m_choice.isDark) : green(m_choice.isDark);
}

QColor Appearance::fallColor() const
{
    return m_choice.isRedUp ? green(m_choice.isDark) : red(m_choice.isDark);
}

QColor Appearance::red(bool isDark)
{
    return isDark ? QColor(0xff6b68) : QColor(0xc62828);
}

QColor Appearance::green(bool isDark)
{
    return isDark ? QColor(0x3ecf8e) : QColor(0x12783c);
}

QPalette Appearance::palette(bool isDark)
{
    const Shades &shades = isDark ? dark : light;
    QPalette palette(QColor(shades.button), QColor(shades.window));
    palette.setColor(QPalette::Base, QColor(shades.base));
    palette.setColor(QPalette::AlternateBase, QColor(shades.alternate));
    palette.setColor(QPalette::Mid, QColor(shades.border));
    palette.setColor(QPalette::ToolTipBase, QColor(shades.window));
    palette.setColor(QPalette::Highlight, QColor(shades.highlight));
    palette.setColor(QPalette::HighlightedText, QColor(shades.highlightedText));
    palette.setColor(QPalette::Link, QColor(shades.link));
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, QColor(shades.text));
        palette.setColor(QPalette::Disabled, role, QColor(shades.dimmed));
    }
    palette.setColor(QPalette::PlaceholderText, QColor(shades.dimmed));
    return palette;
}
