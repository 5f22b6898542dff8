#pragma once

#include "MasterBusinessDataInterface.h"
#include "VariantRecord.h"

#include <QtCore/QHash>
#include <QtCore/QPair>
#include <QtCore/QSet>

#include <memory>

/// Security id and exchange of a row.
QPair<QString, QString> securityKey(const VariantRecord &row);

/// The reference data of a session as the server sent it, with the look-ups the host offers.
class ReferenceData
{
public:
    void setLogin(const VariantRecord &row);
    void setAccounts(const RecordList &rows);
    void setInstruments(const RecordList &rows); ///< before margin securities, which get symbols
    void setMarginSecurities(const RecordList &rows);

    struct Account {
        tagUserAccountInfo info;
        QStringList exchanges;
    };

    VariantRecord login;
    QList<Account> accounts; ///< by product account and trading account
    QHash<QString, int> accountIndex;
    QMap<QString, QString> productNames;
    QHash<QString, VariantRecord> instruments;       ///< by symbol; of several exchanges the first
    QHash<QPair<QString, QString>, QString> symbols; ///< by security id and exchange
    QHash<QString, RecordList> marginSecurities;

private:
    QHash<QString, RecordList> byAccount(const RecordList &rows) const;
};

/// The open session's reference data and business messages. Thread-safe; empty without a session.
namespace ReferenceStore {

std::shared_ptr<const ReferenceData> data(); ///< never null
void set(const ReferenceData &data);
void clear();

void initMargin(const QStringList &accounts); ///< empty: all
bool isMarginInited(const QString &tradingAccount);

bool isFirstReport(const QString &securityID, const QString &exchange); ///< of an unknown security

void addBusinessMessage(const QString &line);
QStringList takeBusinessMessages();

} // namespace ReferenceStore
