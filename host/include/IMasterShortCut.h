#pragma once

#include "HostExport.h"

#include <QtGui/QKeySequence>

class QShortcut;
class QWidget;

/// A widget that keys pressed anywhere in its window give the focus to. GUI thread only.
class T0_HOST_EXPORT IMasterShortCut
{
public:
    virtual ~IMasterShortCut();

    /// Empty keys: no shortcut, as in the beginning. Keys that two widgets of a window share focus them by turns.
    void setShortCut(const QKeySequence &keys);
    QKeySequence shortCut() const;

protected:
    explicit IMasterShortCut(QWidget *widget);

private:
    QShortcut *m_shortCut; ///< a child of the widget
};
