#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QStringList>
#include <QtCore/QTimer>

#include <functional>

class QHeaderView;
class QLabel;
class QPushButton;

/// Shows something anew, however often it is asked to: soon, but at most once in everyMs.
class Later : public QTimer
{
    Q_OBJECT

public:
    Later(int everyMs, std::function<void()> show, QObject *parent);

    void ask();
    void follow(const QStringList &events); ///< events of the library ask

private:
    int m_everyMs;
    QElapsedTimer m_sinceShown;
};

/// What the views of the manager page are put together from.
namespace ViewParts {

QPushButton *button(const QString &name, const QString &text);
QLabel *label(const QString &name); ///< wraps
QString gate();                     ///< why nothing may be sent now, empty when it may

/// Widths of a table that is no RecordTable are kept under its name; a reset layout has those of now again.
void keepLayout(QHeaderView *header, const QString &name);

extern const char *const changeLane; ///< of Background: changes must not overtake each other

} // namespace ViewParts
