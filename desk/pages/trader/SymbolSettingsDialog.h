#pragma once

#include <QtWidgets/QDialog>

class ManualT0DoubleSpinbox;
class QCheckBox;

/// Asks for the settings of one symbol; keeps or deletes them itself.
class SymbolSettingsDialog : public QDialog
{
    Q_OBJECT

public:
    explicit SymbolSettingsDialog(const QString &symbol, QWidget *parent = nullptr);

private:
    void keep();
    void forget();

    const QString m_symbol;
    ManualT0DoubleSpinbox *m_cutQty;
    ManualT0DoubleSpinbox *m_defaultQty;
    QCheckBox *m_collateral;
};
