#pragma once

#include "HostExport.h"

#include <QtCore/QString>
#include <QtGui/QColor>

class QWidget;

/// A widget that says what is wrong with its content: by a coloured frame, by its tooltip and to screen readers.
/// GUI thread only.
class T0_HOST_EXPORT InputStatusStyle
{
public:
    enum class InputStatus { Normal, Warning, Error };

    virtual ~InputStatusStyle();

    /// The text replaces tooltip and accessible description until the status is normal again. Normal needs none.
    void setInputStatus(InputStatus status, const QString &text = QString());
    InputStatus inputStatus() const;

protected:
    explicit InputStatusStyle(QWidget *widget);

    void updateStatusColor(); ///< after the status or the palette has changed
    void paintInputStatus();  ///< over the painted widget, inside its paintEvent

private:
    QWidget *m_widget;
    InputStatus m_status = InputStatus::Normal;
    QColor m_color;
    QString m_ownToolTip;     ///< what the widget says when nothing is wrong
    QString m_ownDescription; ///< likewise
};
