#include "CommandReader.h"
#include "Commands.h"
#include "MasterFields.h"
#include "StandFields.h"
#include "StandMsgType.h"
#include "TextTable.h"

#include <algorithm>

namespace {

namespace Safety_ = Stand_Fields::Safety;
namespace Switch = Stand_Values::TradeSwitch;
using Master_Fields::ManualT0::T0TraderId;

struct Position {
    const char *word;
    const QString &value;
};

/// What a trader's switch is set to by a word.
const QVector<Position> &positions()
{
    static const QVector<Position> all{
        {"active", Switch::Active}, {"reduce", Switch::ReduceOnly}, {"halt", Switch::Halted}};
    return all;
}

/// A word for the switch, or a record of rules; false: neither.
bool readRules(const Argument &argument, VariantRecord &rules)
{
    if (argument.kind == Argument::Kind::Json && argument.value.userType() == QMetaType::QVariantMap) {
        rules = argument.value.toMap();
        return true;
    }
    for (const Position &position : positions())
        if (argument.kind == Argument::Kind::Word && argument.text == QLatin1String(position.word))
            rules.insert(Safety_::tradeSwitch, position.value);
    return !rules.isEmpty();
}

} // namespace

Outcome Commands::safety(const QVector<Argument> &arguments)
{
    Reader reader(arguments);
    const auto trader = reader.get<QString>(0);
    VariantRecord rules;
    if (arguments.size() > 1 && !readRules(arguments.at(1), rules))
        reader.errorText = QStringLiteral("argument 2: active, reduce, halt or a record is expected, not %1")
                               .arg(arguments.at(1).text);
    if (!reader.errorText.isEmpty())
        return bad(reader.errorText);
    RecordList asked{{}}; // the header
    if (!rules.isEmpty()) {
        rules.insert(T0TraderId, trader);
        asked.append(rules);
    }
    VariantRecord values;
    RecordList held;
    Outcome outcome =
        sendToServer(rules.isEmpty() ? Stand_MsgType::QuerySafetyRulesRequest : Stand_MsgType::AlterSafetyRulesRequest,
                     asked, values, held);
    if (!outcome.errorText.isEmpty())
        return outcome;
    const auto isOther = [&](const VariantRecord &row) { return row.value(T0TraderId).toString() != trader; };
    if (!trader.isEmpty())
        held.erase(std::remove_if(held.begin(), held.end(), isOther), held.end());
    if (held.isEmpty())
        return bad(QStringLiteral("there is no trader %1 whose rules you may see").arg(trader));
    outcome.result = present(held);
    outcome.text = TextTable::ofRows(held, {T0TraderId, Safety_::tradeSwitch, Safety_::ordersPerSecond,
                                            Safety_::cancelsPerMinute, Safety_::duplicateMs, Safety_::refuseSelfMatch});
    return outcome;
}
