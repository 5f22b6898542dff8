#pragma once

#include <QtCore/QObject>
#include <QtGui/QColor>
#include <QtGui/QFont>
#include <QtGui/QPalette>

/// Light or dark, size of the text, which way is red: shown at once and kept in the settings. Every colour is readable
/// on the background of tables in its palette.
class Appearance : public QObject
{
    Q_OBJECT

public:
    struct Choice {
        bool isDark = false;
        bool isRedUp = true;
        int pointSize = 10;
    };

    static constexpr int smallest = 7;
    static constexpr int largest = 24;

    /// fontFamily: empty: the system's.
    Appearance(const QString &fontFamily, QObject *parent);

    Choice choice() const { return m_choice; }
    void choose(const Choice &choice);
    void resizeText(int points); ///< by so many

    QColor riseColor() const;
    QColor fallColor() const;

    static QPalette palette(bool isDark);
    static QColor red(bool isDark);
    static QColor green(bool isDark);

signals:
    void changed();

private:
    void show();

    QFont m_font;
    Choice m_choice;
};
