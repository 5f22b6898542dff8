#include "Operations.h"

#include "ManualT0Logic.h"
#include "RowOrder.h"

#include <algorithm>
#include <numeric>

namespace {

/// Rows of an operation that promises no order are given one.
Operation sorted(Operation operation, RowOrder::Less less)
{
    operation.call = [call = operation.call, less](const QVector<Argument> &arguments) {
        Outcome outcome = call(arguments);
        outcome.result = RowOrder::sorted(outcome.result.toList(), less);
        return outcome;
    };
    return operation;
}

QVector<Operation> tableOfOperations()
{
    using F = ManualT0Logic;
    using Texts = const QStringList &;
    using Text = const QString &;
    return {
        operation("InitData", F::InitData),
        operation("RefreshData", F::RefreshData),
        operation("RefreshDataByType", F::RefreshDataByType),
        operation("GetInitStateByType", F::GetInitStateByType),

        operation("GetAllT0ProductAccount", F::GetAllT0ProductAccount),
        operation("GetAllT0TradingAccountList", F::GetAllT0TradingAccountList),
        operation("GetCandidateT0ProductAccount", F::GetCandidateT0ProductAccount),
        operation("GetProductAssetPropList", F::GetProductAssetPropList),
        operation("IsProductAndAssetPropInT0", F::IsProductAndAssetPropInT0),
        operation("GetT0ProductMap", F::GetT0ProductMap),
        operation("GetTradingAccountListByProductAndAssetProp", F::GetTradingAccountListByProductAndAssetProp),

        operation("AlterT0ProductAccount", F::AlterT0ProductAccount),

        operation("GetAllT0TraderId", F::GetAllT0TraderId),
        operation("GetTraderNameByTraderId", F::GetTraderNameByTraderId),
        operation("GetAllT0TradingAccountListByCurUser", F::GetAllT0TradingAccountListByCurUser),

        sorted(operation("GetAllResourceList", F::GetAllResourceList), RowOrder::byResourceId),
        operation("GetResourceDetailById", F::GetResourceDetailById),
        sorted(operation("GetResourceByProductAccount", F::GetResourceByProductAccount), RowOrder::byResourceId),

        operation("GetT0ResourceCandidatesList", F::GetT0ResourceCandidatesList),
        operation("GetAllocatableQty2ResourceByTradingAccount", F::GetAllocatableQty2ResourceByTradingAccount),
        operation("GetAllocatableQty2Resource", F::GetAllocatableQty2Resource),
        operation("AddT0Resource", F::AddT0Resource),
        operation("AlterT0Resource", F::AlterT0Resource),
        operation("DeleteT0Resource", F::DeleteT0Resource),

        sorted(operation("GetAllSecurityPoolList", F::GetAllSecurityPoolList), RowOrder::byPoolId),
        operation("GetSecurityPoolDetailById", F::GetSecurityPoolDetailById),
        operation("GetSecurityPoolDetailByIdList", F::GetSecurityPoolDetailByIdList),
        sorted(operation("GetSecurityPoolDetailByResourceId", F::GetSecurityPoolDetailByResourceId),
               RowOrder::byPoolId),
        sorted(operation("GetSecurityPoolDetailListByTradingList", F::GetSecurityPoolDetailListByTradingList),
               RowOrder::byPoolId),
        sorted(operation("GetSecurityPoolDetailListByTrading", F::GetSecurityPoolDetailListByTrading),
               RowOrder::byPoolId),
        operation("GetSecurityPoolDetailByTrading", F::GetSecurityPoolDetailByTrading),
        sorted(operation<RecordList, Text, Text, Text, Text, Text, bool>("GetSecurityPoolDetail",
                                                                         F::GetSecurityPoolDetail),
               RowOrder::byPoolId),
        sorted(operation<RecordList, Texts, Texts, Texts, Text, Text, bool>("GetSecurityPoolDetail",
                                                                            F::GetSecurityPoolDetail),
               RowOrder::byPoolId),

        operation("AllocatePublicResource", F::AllocatePublicResource),
        operation("AllocateResourceToTrader", F::AllocateResourceToTrader),
        operation("AddSecurityPoolAndResource", F::AddSecurityPoolAndResource),
        operation("DeleteSecurityPoolsByIdList", F::DeleteSecurityPoolsByIdList),

        operation("GetRealtimePoolKey", F::GetRealtimePoolKey),
        operation("GetRealtimePoolDetail", F::GetRealtimePoolDetail),
        sorted(operation("GetRealtimePoolDetailList", F::GetRealtimePoolDetailList), RowOrder::byUsageKey),
        operation("GetRealtimeSumListMergeBySymbolExchange", F::GetRealtimeSumListMergeBySymbolExchange),
        operation("CalcProfitLossByRealtimeMap", F::CalcProfitLossByRealtimeMap),
        sorted(operation("GetProfitLossDataList", F::GetProfitLossDataList), RowOrder::byUsageKey),

        operation("CheckSingleOrderData", F::CheckSingleOrderData),
        operation("CheckOrderData", F::CheckOrderData),
        operation<RecordList, const RecordList &>("GetOrderConfirmMap", F::GetOrderConfirmMap),
        operation<RecordList, const RecordList &, RecordList &>("GetOrderConfirmMap", F::GetOrderConfirmMap),
        operation("Order", F::Order),
        operation("GetCancelableOrderList", F::GetCancelableOrderList),
        operation("CancelOrderList", F::CancelOrderList),
        operation("GetOpenPositionByAccountAndSymbol", F::GetOpenPositionByAccountAndSymbol),
        sorted(operation("GetOpenPositionList", F::GetOpenPositionList), RowOrder::byUsageKey),
        operation("GetExchangeListByAccountAndSymbol", F::GetExchangeListByAccountAndSymbol),

        operation("GetSupportExchangeList", F::GetSupportExchangeList),
        operation("GetT0Symbols", F::GetT0Symbols),
        operation("GetTradableSymbolListType", F::GetTradableSymbolListType),
        operation("GetTradableQtyByAccountAndSymbol", F::GetTradableQtyByAccountAndSymbol),
        operation("GetSymbolTradeSettings", F::GetSymbolTradeSettings),
        operation("SetSymbolTradeSettings", F::SetSymbolTradeSettings),
        operation("DeleteSymbolTradeSettings", F::DeleteSymbolTradeSettings),
        operation("GetCurrentTradeAccount", F::GetCurrentTradeAccount),
        operation("SetCurrentTradeAccount", F::SetCurrentTradeAccount),
        operation("GetCurrentTradableSymbolList", F::GetCurrentTradableSymbolList),
        operation("GetCurrentInputSymbolList", F::GetCurrentInputSymbolList),
    };
}

/// Insertions, deletions and replacements that make one text of the other.
int distance(const QString &from, const QString &to)
{
    QVector<int> row(to.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (int i = 0; i < from.size(); ++i) {
        int diagonal = row.at(0);
        row[0] = i + 1;
        for (int j = 0; j < to.size(); ++j) {
            const int replaced = diagonal + (from.at(i) == to.at(j) ? 0 : 1);
            diagonal = row.at(j + 1);
            row[j + 1] = std::min({replaced, diagonal + 1, row.at(j) + 1});
        }
    }
    return row.constLast();
}

} // namespace

QString Operation::signature() const
{
    if (kinds.isEmpty())
        return QStringLiteral("%1 takes no arguments").arg(name);
    return QStringLiteral("%1 takes %2: %3")
        .arg(name, kinds.size() == 1 ? QStringLiteral("1 argument") : QStringLiteral("%1 arguments").arg(kinds.size()),
             kinds.join(QStringLiteral(", ")));
}

const QVector<Operation> &facadeOperations()
{
    static const QVector<Operation> operations = tableOfOperations();
    return operations;
}

const Operation *findOperation(const CommandLine &command, QString &errorText)
{
    QStringList errors;
    for (const Operation &operation : facadeOperations()) {
        if (operation.name != command.name)
            continue;
        const bool counted = operation.kinds.size() == command.arguments.size();
        const QString error = counted ? operation.check(command.arguments) : QString();
        if (counted && error.isEmpty())
            return &operation;
        errors.append(
            counted
                ? QStringLiteral("%1 (%2)").arg(error, operation.signature())
                : QStringLiteral("%1, not %2").arg(operation.signature(), QString::number(command.arguments.size())));
    }
    errorText = errors.join(QStringLiteral("; or "));
    return nullptr;
}

QString nearestName(const QString &name, const QStringList &candidates)
{
    QString nearest;
    int least = qMax(2, name.size() / 2) + 1; // further apart is another name
    for (const QString &candidate : candidates) {
        const int apart = distance(name.toLower(), candidate.toLower());
        if (apart < least) {
            least = apart;
            nearest = candidate;
        }
    }
    return nearest;
}
