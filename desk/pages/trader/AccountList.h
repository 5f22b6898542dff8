#pragma once

#include <QtCore/QTimer>
#include <QtWidgets/QListWidget>

class TradeSelection;

/// The user's accounts, best first, with a tick at those he trades with. All are ticked until he takes one away; what
/// he took away is kept. The library is told when the ticks have rested for a moment, the page at once: no order may
/// go to an account that has just been taken away.
class AccountList : public QListWidget
{
    Q_OBJECT

public:
    explicit AccountList(TradeSelection *selection, QWidget *parent = nullptr);

private:
    void reload();
    void takeTicks();
    QStringList accountsBy(Qt::CheckState state) const;

    TradeSelection *m_selection;
    QTimer m_tellLibrary;
};
