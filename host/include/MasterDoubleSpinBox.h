#pragma once

#include "IHSkin.h"
#include "IMasterShortCut.h"
#include "InputStatusStyle.h"

#include <QtWidgets/QDoubleSpinBox>

/// A number field for people who type: the whole number is selected when the focus comes, input methods are off, the
/// wheel turns only the field that has the focus. Thousands separators (as the widget's locale has them) are shown
/// while nobody types. GUI thread only.
class T0_HOST_EXPORT MasterDoubleSpinBox : public QDoubleSpinBox,
                                           public IHSkin,
                                           public IMasterShortCut,
                                           public InputStatusStyle
{
    Q_OBJECT

public:
    MasterDoubleSpinBox(QWidget *parent, double step, double minimum, double maximum, int decimals);
    ~MasterDoubleSpinBox() override;

    void applySkin() override;

signals:
    void returnPressed(); ///< Enter; value() is what was typed

protected:
    void changeEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
};
