#include "CommandReader.h"
#include "Commands.h"
#include "MasterFields.h"
#include "StandFields.h"
#include "StandMsgType.h"
#include "TextTable.h"

#include <QtCore/QHash>

#include <algorithm>

namespace {

namespace Safety_ = Stand_Fields::Safety;
namespace Switch = Stand_Values::TradeSwitch;
using Master_Fields::ManualT0::T0TraderId;

/// What a trader's switch is set to by a word: that of the command or that of the table.
QString switchOf(const QString &word)
{
    static const QHash<QString, QString> words{
        {QStringLiteral("active"), Switch::Active}, {QStringLiteral("reduce"), Switch::ReduceOnly},
        {QStringLiteral("halt"), Switch::Halted},   {Switch::Active, Switch::Active},
        {Switch::ReduceOnly, Switch::ReduceOnly},   {Switch::Halted, Switch::Halted}};
    return words.value(word);
}

QStringList ruleFields()
{
    return {Safety_::tradeSwitch, Safety_::ordersPerSecond, Safety_::cancelsPerMinute, Safety_::duplicateMs,
            Safety_::refuseSelfMatch};
}

/// A word for the switch, or a record of rules. The text says what is wrong.
QString readRules(const Argument &argument, VariantRecord &rules)
{
    const bool isRecord = argument.kind == Argument::Kind::Json && argument.value.userType() == QMetaType::QVariantMap;
    if (isRecord)
        rules = argument.value.toMap();
    else if (argument.kind == Argument::Kind::Word && !switchOf(argument.text).isEmpty())
        rules.insert(Safety_::tradeSwitch, switchOf(argument.text));
    // The server would leave out a rule that it does not know, and who asked would believe it set.
    for (auto rule = rules.cbegin(); rule != rules.cend(); ++rule)
        if (!ruleFields().contains(rule.key()))
            return QStringLiteral("argument 2: there is no rule %1, only %2")
                .arg(rule.key(), ruleFields().join(QStringLiteral(", ")));
    return rules.isEmpty() ? QStringLiteral("argument 2: active, reduce, halt or a record of rules is expected, not %1")
                                 .arg(argument.text)
                           : QString();
}

} // namespace

Outcome Commands::safety(const QVector<Argument> &arguments)
{
    Reader reader(arguments);
    const auto trader = reader.get<QString>(0);
    VariantRecord rules;
    const QString wrong = arguments.size() > 1 ? readRules(arguments.at(1), rules) : QString();
    if (!reader.errorText.isEmpty() || !wrong.isEmpty())
        return bad(reader.errorText.isEmpty() ? wrong : reader.errorText);
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
    outcome.text = TextTable::ofRows(held, QStringList(T0TraderId) + ruleFields());
    return outcome;
}
