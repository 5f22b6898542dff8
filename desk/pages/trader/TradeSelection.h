#pragma once

#include <QtCore/QObject>
#include <QtCore/QStringList>

/// What the trader page works on: the ticked accounts, best first, and one instrument. GUI thread only.
class TradeSelection : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    QStringList accounts() const { return m_accounts; }
    QString symbol() const { return m_symbol; }
    QString exchange() const { return m_exchange; }

    void setAccounts(const QStringList &accounts);
    void setInstrument(const QString &symbol, const QString &exchange);

signals:
    void accountsChanged();
    void instrumentChanged();

private:
    QStringList m_accounts;
    QString m_symbol;
    QString m_exchange;
};
