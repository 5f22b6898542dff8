#pragma once

#include "MasterComboBox.h"

#include <QtCore/QTimer>

class TradeSelection;

/// The instruments that may be traded with the ticked accounts, found by any part of code or name or by initials. One
/// that trades on two exchanges stands there once for each, so the exchange is always chosen with it.
class SymbolBox : public MasterComboBox
{
    Q_OBJECT

public:
    explicit SymbolBox(TradeSelection *selection, QWidget *parent = nullptr);

signals:
    void taken(); ///< by Enter or a click, also when it is the one that was chosen

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void reload();
    void showChosen();
    void choose(int item);

    TradeSelection *m_selection;
    QStringList m_texts; ///< as the library gave them
    QStringList m_keys;  ///< theirs; an instrument may change its exchange and keep its text
    QTimer m_reload;
};
