#pragma once

#include <QtWidgets/QDialog>

class Appearance;

/// What the user chose for the window; every choice is carried out at once.
class PreferencesDialog : public QDialog
{
    Q_OBJECT

public:
    PreferencesDialog(Appearance &appearance, QWidget *parent);

    static bool isSoundOn();
    static bool areNoticesOn();
};
