#include "ScriptMarket.h"

#include "FaultChannel.h"
#include "HostSession.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "StandFields.h"
#include "StandMsgType.h"

namespace {

namespace C = Stand_Values::MarketCommand;

/// Of one request: a whole day at once would outlast its time on a slow machine.
constexpr int maxStepsAtOnce = 600;

QString send(const QString &msgType, const VariantRecord &row)
{
    QString errorText;
    VariantRecord values;
    RecordList rows;
    HostSession::current()->request(msgType, {}, {row}, errorText, values, rows);
    return errorText;
}

QString control(const VariantRecord &row)
{
    return send(Stand_MsgType::ExchangeControlRequest, row);
}

QString step(int seconds)
{
    QString errorText;
    for (int left = seconds; left > 0 && errorText.isEmpty(); left -= maxStepsAtOnce)
        errorText = control(
            {{Stand_Fields::Market::command, C::step}, {Stand_Fields::Market::count, qMin(left, maxStepsAtOnce)}});
    return errorText;
}

} // namespace

QString ScriptMarket::exchange(const QStringList &words)
{
    const QString command = words.constFirst();
    const bool needsNumber = command == C::run || command == C::step;
    bool isNumber = true;
    const int number = needsNumber ? words.value(1).toInt(&isNumber) : 0;
    if (!isNumber || number < 0 || (!needsNumber && words.size() > 1))
        return QStringLiteral("exchange %1: \"%2\" is not what follows").arg(command, words.value(1));
    if (command == C::step)
        return step(number);
    if (command == C::run)
        return control({{Stand_Fields::Market::command, command}, {Stand_Fields::Market::speed, number}});
    if (command == QLatin1String("day-change"))
        return control({{Stand_Fields::Market::command, C::dayChange}});
    return command == C::hold ? control({{Stand_Fields::Market::command, command}})
                              : QStringLiteral("\"%1\" is not hold, run, step or day-change").arg(command);
}

QString ScriptMarket::quote(const QString &symbol, const QString &price)
{
    bool isNumber = false;
    const double value = price.toDouble(&isNumber);
    if (!isNumber)
        return QStringLiteral("\"%1\" is no price").arg(price);
    return send(Stand_MsgType::SetQuoteRequest,
                {{Orvane_Fields::Security::symbol, symbol}, {Stand_Fields::Quote::lastPrice, value}});
}

QString ScriptMarket::fault(FaultChannel &channel, const QStringList &words)
{
    if (words == QStringList{QStringLiteral("clear")}) {
        channel.clearFaults();
        return {};
    }
    FaultChannel::Fault kind = FaultChannel::Fault::Fail;
    if (!FaultChannel::faultOfName(words.value(1), kind))
        return QStringLiteral("\"%1\" is no kind of fault").arg(words.value(1));
    bool isArgument = true;
    bool isTimes = true;
    const int argument = words.size() > 2 ? words.at(2).toInt(&isArgument) : 0;
    const int times = words.size() > 3 ? words.at(3).toInt(&isTimes) : 1;
    if (!isArgument || !isTimes)
        return QStringLiteral("\"%1\" is no number").arg(words.at(isArgument ? 3 : 2));
    channel.addFault(words.constFirst(), kind, argument, times, words.value(4));
    return {};
}
