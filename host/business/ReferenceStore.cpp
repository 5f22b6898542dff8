#include "ReferenceStore.h"

#include "OrvaneFields.h"
#include "StandFields.h"
#include "business/NewsDesk.h"

#include <QtCore/QReadWriteLock>

#include <algorithm>
#include <tuple>

namespace {

struct State {
    QReadWriteLock lock;
    std::shared_ptr<const ReferenceData> data = std::make_shared<const ReferenceData>();
    bool marginInited = false;
    QSet<QString> marginAccounts; ///< empty: all
    QSet<QPair<QString, QString>> reported;
    QStringList businessMessages;
};

State &state()
{
    static auto *state = new State; // never deleted: look-ups may come while the process ends
    return *state;
}

QString text(const VariantRecord &row, const QString &field)
{
    return row.value(field).toString();
}

} // namespace

QPair<QString, QString> securityKey(const VariantRecord &row)
{
    return {text(row, Orvane_Fields::Security::securityID), text(row, Orvane_Fields::UserAccount::securityExchange)};
}

void ReferenceData::setLogin(const VariantRecord &row)
{
    login = row;
}

void ReferenceData::setAccounts(const RecordList &rows)
{
    for (const VariantRecord &row : rows) {
        Account account;
        account.info.tradingAccount = text(row, Orvane_Fields::UserAccount::tradingAccount);
        account.info.productAccount = text(row, Orvane_Fields::UserAccount::productAccount);
        account.info.assetProp = text(row, Stand_Fields::Account::assetProp);
        account.info.accountText = text(row, Stand_Fields::Account::accountText);
        account.exchanges = row.value(Stand_Fields::Account::exchanges).toStringList();
        accounts.append(account);
        productNames.insert(account.info.productAccount, text(row, Stand_Fields::Account::productName));
    }
    std::sort(accounts.begin(), accounts.end(), [](const Account &a, const Account &b) {
        return std::tie(a.info.productAccount, a.info.tradingAccount) <
               std::tie(b.info.productAccount, b.info.tradingAccount);
    });
    for (int i = 0; i < accounts.size(); ++i)
        accountIndex.insert(accounts.at(i).info.tradingAccount, i);
}

void ReferenceData::setInstruments(const RecordList &rows)
{
    for (const VariantRecord &row : rows) {
        const QString symbol = text(row, Orvane_Fields::Security::symbol);
        symbols.insert(securityKey(row), symbol);
        if (!instruments.contains(symbol))
            instruments.insert(symbol, row);
    }
}

QHash<QString, RecordList> ReferenceData::byAccount(const RecordList &rows) const
{
    QHash<QString, RecordList> out;
    for (VariantRecord row : rows) {
        row.insert(Orvane_Fields::Security::symbol, symbols.value(securityKey(row)));
        out[text(row, Orvane_Fields::UserAccount::tradingAccount)].append(row);
    }
    for (RecordList &list : out) {
        std::stable_sort(list.begin(), list.end(), [](const VariantRecord &a, const VariantRecord &b) {
            return securityKey(a) < securityKey(b);
        });
    }
    return out;
}

void ReferenceData::setMarginSecurities(const RecordList &rows)
{
    marginSecurities = byAccount(rows);
}

std::shared_ptr<const ReferenceData> ReferenceStore::data()
{
    QReadLocker lock(&state().lock);
    return state().data;
}

void ReferenceStore::set(const ReferenceData &data)
{
    auto next = std::make_shared<const ReferenceData>(data);
    QWriteLocker lock(&state().lock);
    state().data.swap(next);
}

void ReferenceStore::clear()
{
    set({});
    QWriteLocker lock(&state().lock);
    state().marginInited = false;
    state().marginAccounts.clear();
    state().reported.clear();
    state().businessMessages.clear();
}

void ReferenceStore::initMargin(const QStringList &accounts)
{
    QWriteLocker lock(&state().lock);
    const bool all = accounts.isEmpty() || (state().marginInited && state().marginAccounts.isEmpty());
    state().marginInited = true;
    for (const QString &account : accounts)
        state().marginAccounts.insert(account);
    if (all)
        state().marginAccounts.clear();
}

bool ReferenceStore::isMarginInited(const QString &tradingAccount)
{
    QReadLocker lock(&state().lock);
    return state().marginInited &&
           (state().marginAccounts.isEmpty() || state().marginAccounts.contains(tradingAccount));
}

bool ReferenceStore::isFirstReport(const QString &securityID, const QString &exchange)
{
    QWriteLocker lock(&state().lock);
    const int before = state().reported.size();
    state().reported.insert({securityID, exchange});
    return state().reported.size() > before;
}

void ReferenceStore::addBusinessMessage(const QString &line)
{
    QWriteLocker lock(&state().lock);
    state().businessMessages.append(line);
    lock.unlock();
    NewsDesk::businessMessage(line);
}

QStringList ReferenceStore::takeBusinessMessages()
{
    QStringList messages;
    QWriteLocker lock(&state().lock);
    messages.swap(state().businessMessages);
    return messages;
}
