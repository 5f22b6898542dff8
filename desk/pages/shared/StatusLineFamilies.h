#pragma once

#include <QtWidgets/QWidget>

class FamilyWatch;
class QLabel;

/// One chip a data family: its name, coloured by how it stands; the tooltip says it in words.
class StatusLineFamilies : public QWidget
{
    Q_OBJECT

public:
    explicit StatusLineFamilies(QWidget *parent = nullptr);

private:
    void show(int type);
    void showAll();
    QColor colourOf(int type) const;
    QString stateText(int type) const;

    FamilyWatch *m_watch;
    QList<QLabel *> m_chips;
};
