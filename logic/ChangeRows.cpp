#include "ChangeRows.h"

#include "DisplayUnits.h"
#include "MasterValues.h"
#include "OrvaneValues.h"
#include "Quantity.h"
#include "UserTexts.h"

namespace ChangeRows {

QString checkAccountAndSymbol(const VariantRecord &row, const QSet<QString> &t0Accounts, QString &symbol)
{
    symbol = MasterBusinessDataInterface::GetSymbolFromMap(row);
    const QString account = text(row, Orvane_Fields::UserAccount::tradingAccount);
    if (account.isEmpty())
        return UserTexts::noAccount();
    const tagUserAccountInfo info = MasterBusinessDataInterface::GetAccountInfoByTradingAccount(account, 1);
    if (info.tradingAccount.isEmpty())
        return UserTexts::unknownAccount();
    if (!t0Accounts.contains(account))
        return UserTexts::accountNotInT0(info.accountText);
    return symbol.isEmpty() ? UserTexts::unknownSecurity() : QString();
}

QString checkMultiple(const QString &symbol, const QString &what, qint64 quantity)
{
    const int factor = displayFactor(symbol);
    return quantity % factor == 0 ? QString() : UserTexts::notMultipleOf(symbol, what, factor);
}

QString inRow(int row, const RecordList &rows, const QString &text)
{
    return rows.size() > 1 ? UserTexts::inRow(row, text) : text;
}

VariantRecord inServerUnits(const VariantRecord &row, const QString &quantityField, const QString &symbol)
{
    const int factor = displayFactor(symbol);
    const QVariant quantity = row.value(quantityField);
    if (factor == 1 || !Quantity::isWholeNumber(quantity))
        return row;
    VariantRecord converted = row;
    converted.insert(quantityField, Quantity::toQty(quantity) / factor);
    return converted;
}

QString overallCode(int failed, int all)
{
    if (failed == 0)
        return Orvane_Values::RequestExeStatus::success;
    return failed == all ? Orvane_Values::RequestExeStatus::fail : Master_Values::RequestExeStatus::ParticalFail;
}

bool mayBeInForce(const QString &code)
{
    return code == Orvane_Values::RequestExeStatus::success || code == Master_Values::RequestExeStatus::timeout;
}

void Batch::add(const QString &code, const QString &errorText)
{
    ++m_count;
    if (code != Orvane_Values::RequestExeStatus::success)
        m_failures.append(errorText);
}

QString Batch::errorTexts() const
{
    return m_failures.join(QLatin1Char(','));
}

} // namespace ChangeRows
