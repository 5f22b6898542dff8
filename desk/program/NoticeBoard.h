#pragma once

#include "PageShell.h"

#include <QtWidgets/QWidget>

class Appearance;
class QMainWindow;
class QVBoxLayout;

/// Short notes over the lower right corner of a window's middle. They take neither focus nor mouse and go by
/// themselves, refusals later than the rest.
class NoticeBoard : public QWidget
{
    Q_OBJECT

public:
    NoticeBoard(const Appearance &appearance, QMainWindow *over);

    void add(PageShell::Notice kind, const QString &text);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void place();

    const Appearance &m_appearance;
    QMainWindow *m_over;
    QVBoxLayout *m_notes;
};
