#pragma once

#include "OrderRoom.h"
#include "SymbolSettings.h"

#include <QtWidgets/QFrame>

class ManualT0DoubleSpinbox;
class QComboBox;
class QLabel;
class QPushButton;
class QToolButton;
class TradeSelection;

/// One direction's order: price, quantity, ordinary or collateral, what may still be traded, and what is wrong with the
/// input while it is typed. Sends nothing itself.
class OrderPanel : public QFrame
{
    Q_OBJECT

public:
    OrderPanel(bool isBuy, TradeSelection *selection, QWidget *parent = nullptr);

    bool isBuy() const { return m_isBuy; }
    OrderWish wish() const;

    void focusPrice();
    bool hasPriceFocus() const;
    void setPrice(double price);

    /// An order for this account alone, until the instrument changes, the order is sent, the account is unticked or the
    /// user takes it back.
    void fillFor(const QString &account, double price, qint64 quantity);

    void recheck();                        ///< what it was checked against has changed
    void showRefusal(const QString &text); ///< why the wish is not sent; stays until it is another one
    void setGate(const QString &reason);   ///< why nothing may be sent now; empty: it may
    void takeSettings();                   ///< those of the instrument are others: defaults nobody changed follow
    void beginSending();                   ///< sends nothing else until endSending
    void endSending(bool wasTaken);        ///< what was taken leaves the fields, what was refused stays
    void takeColors();

signals:
    void sendWanted();

private:
    void wantSend();
    void build();
    QWidget *quickButtons();
    void beginInstrument();
    void takeAccounts();
    void setOnlyAccount(const QString &account);
    void takeRefusalBack();
    void showSend();
    void updateSteps();
    void updateRoom(const OrderWish &wish);
    QString named(const char *part) const;

    const bool m_isBuy;
    TradeSelection *m_selection;
    QString m_onlyAccount; ///< empty: all ticked ones
    OrderRoom m_room;
    SymbolSettings m_defaults; ///< last put into the fields
    OrderWish m_refused;
    QString m_refusal; ///< of m_refused; empty: none
    OrderWish m_sent;
    bool m_isSending = false;
    QString m_gate;

    QLabel *m_title;
    QComboBox *m_kind;
    QToolButton *m_only;
    ManualT0DoubleSpinbox *m_price;
    QLabel *m_priceStatus;
    ManualT0DoubleSpinbox *m_quantity;
    QLabel *m_quantityStatus;
    QLabel *m_quota;
    QLabel *m_exposure;
    QPushButton *m_send;
};
