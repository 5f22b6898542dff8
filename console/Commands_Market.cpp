#include "BusinessDataInterface.h"
#include "CommandReader.h"
#include "Commands.h"
#include "MasterFields.h"
#include "MasterTradeLogic.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "Picture.h"
#include "StandFields.h"
#include "StandMsgType.h"
#include "TextTable.h"

namespace {

/// Of one request: a whole day at once would outlast its time on a slow machine.
constexpr int maxStepsAtOnce = 600;

Outcome tableOf(const RecordList &rows, const QStringList &columns)
{
    Outcome outcome;
    outcome.result = present(rows);
    outcome.text = rows.isEmpty() ? TextTable::countOf(rows) : TextTable::ofRows(rows, columns);
    return outcome;
}

const QStringList &orderColumns()
{
    using namespace Orvane_Fields;
    static const QStringList columns{Security::orderID,
                                     UserAccount::loginUserId,
                                     UserAccount::tradingAccount,
                                     Security::symbol,
                                     UserAccount::securityExchange,
                                     Master_Fields::Security::SideUnion,
                                     Security::price,
                                     Security::orderQty,
                                     Stand_Fields::Order::filledQty,
                                     Stand_Fields::Order::filledAmount,
                                     Security::orderStatus,
                                     Stand_Fields::Order::orderTime};
    return columns;
}

const QStringList &fillColumns()
{
    using namespace Orvane_Fields;
    static const QStringList columns{Stand_Fields::Fill::fillID,
                                     Security::orderID,
                                     UserAccount::loginUserId,
                                     UserAccount::tradingAccount,
                                     Security::symbol,
                                     UserAccount::securityExchange,
                                     Security::side,
                                     Security::price,
                                     Stand_Fields::Fill::fillQty,
                                     Stand_Fields::Fill::fillTime};
    return columns;
}

} // namespace

Outcome Commands::sendToServer(const QString &msgType, const RecordList &asked, VariantRecord &answerValues,
                               RecordList &answerRows)
{
    QString errorText = m_host.openSession();
    if (!errorText.isEmpty())
        return bad(errorText);
    const QString status = HostSession::current()->request(msgType, {}, asked, errorText, answerValues, answerRows);
    return bad(status == Orvane_Values::RequestExeStatus::success ? QString()
                                                                  : QStringLiteral("%1: %2").arg(status, errorText));
}

Outcome Commands::gateway(const QVector<Argument> &arguments)
{
    Reader reader(arguments);
    const QString what = reader.get<QString>(0);
    if (reader.errorText.isEmpty() && what != QLatin1String("picture"))
        reader.errorText = QStringLiteral("argument 1: picture is expected, not %1").arg(what);
    if (!reader.errorText.isEmpty())
        return bad(reader.errorText);
    VariantRecord held;
    RecordList rows;
    const Outcome asked = sendToServer(Stand_MsgType::PictureRequest, {{}}, held, rows);
    return asked.errorText.isEmpty() ? Picture::ofGateway(held) : asked;
}

Outcome Commands::quote(const QVector<Argument> &arguments)
{
    Reader reader(arguments);
    const VariantRecord row{{Orvane_Fields::Security::symbol, reader.get<QString>(0)},
                            {Stand_Fields::Quote::lastPrice, reader.get<double>(1)}};
    VariantRecord values;
    RecordList rows;
    return reader.errorText.isEmpty() ? sendToServer(Stand_MsgType::SetQuoteRequest, {row}, values, rows)
                                      : bad(reader.errorText);
}

Outcome Commands::push(const QVector<Argument> &arguments)
{
    Reader reader(arguments);
    const auto row = reader.get<VariantRecord>(0);
    VariantRecord values;
    RecordList rows;
    return reader.errorText.isEmpty() ? sendToServer(Stand_MsgType::PushUsageRequest, {row}, values, rows)
                                      : bad(reader.errorText);
}

Outcome Commands::orders(const QVector<Argument> &arguments)
{
    Reader reader(arguments);
    const auto filter = reader.get<VariantRecord>(0);
    QString errorText = reader.errorText.isEmpty() ? m_host.openSession() : reader.errorText;
    if (!errorText.isEmpty())
        return bad(errorText);
    int total = 0;
    BusinessDataInterface::GetOrderListByCustomKey(filter, total, 0, 1, {}, {});
    return tableOf(BusinessDataInterface::GetOrderListByCustomKey(filter, total, 0, total, {}, {}), orderColumns());
}

Outcome Commands::fills(const QVector<Argument> &arguments)
{
    Reader reader(arguments);
    const auto filter = reader.get<VariantRecord>(0);
    const QString errorText = reader.errorText.isEmpty() ? m_host.openSession() : reader.errorText;
    return errorText.isEmpty() ? tableOf(BusinessDataInterface::GetFillList(filter), fillColumns()) : bad(errorText);
}

Outcome Commands::fate(const QVector<Argument> &arguments)
{
    Reader reader(arguments);
    const auto requestId = reader.get<QString>(0);
    const QString errorText = reader.errorText.isEmpty() ? m_host.openSession() : reader.errorText;
    if (!errorText.isEmpty())
        return bad(errorText);
    QVariant answer;
    MasterTradeLogic::instance()->fateOfRequest(requestId, answer);
    const RecordList rows = MasterTradeLogic::transFate(answer);
    return tableOf(rows, {Orvane_Fields::System::requestExeStatus, Orvane_Fields::Security::orderID,
                          Orvane_Fields::System::textDescription});
}

Outcome Commands::exchange(const QVector<Argument> &arguments)
{
    namespace C = Stand_Values::MarketCommand;
    Reader reader(arguments);
    const auto command = reader.get<QString>(0);
    const int number = reader.atLeast(command == C::run ? 0 : 1, 1, 1);
    if (!reader.errorText.isEmpty())
        return bad(reader.errorText);
    const QStringList known{C::status, C::step, C::hold, C::run};
    if (!known.contains(command))
        return bad(
            QStringLiteral("argument 1: %1 is expected, not %2").arg(known.join(QStringLiteral(" or ")), command));
    VariantRecord row{{Stand_Fields::Market::command, command}};
    if (command == C::step)
        return stepBy(number);
    if (command == C::run)
        row.insert(Stand_Fields::Market::speed, number);
    else if (arguments.size() > 1)
        return bad(QStringLiteral("exchange %1 takes nothing more").arg(command));
    return control(row);
}

Outcome Commands::stepBy(int seconds)
{
    Outcome outcome;
    for (int left = seconds; left > 0 && outcome.errorText.isEmpty(); left -= maxStepsAtOnce)
        outcome = control({{Stand_Fields::Market::command, Stand_Values::MarketCommand::step},
                           {Stand_Fields::Market::count, qMin(left, maxStepsAtOnce)}});
    return outcome;
}

Outcome Commands::dayChange(const QVector<Argument> &)
{
    return control({{Stand_Fields::Market::command, Stand_Values::MarketCommand::dayChange}});
}

Outcome Commands::control(const VariantRecord &row)
{
    VariantRecord values;
    RecordList rows;
    Outcome outcome = sendToServer(Stand_MsgType::ExchangeControlRequest, {row}, values, rows);
    const VariantRecord market = rows.value(0);
    if (outcome.errorText.isEmpty()) {
        outcome.result = market;
        const double speed = market.value(Stand_Fields::Market::speed).toDouble();
        const QString state = market.value(Stand_Fields::Market::held).toBool() ? QStringLiteral("held")
                              : speed > 0 ? QStringLiteral("runs, speed %1").arg(speed)
                                          : QStringLiteral("stands still");
        outcome.text = QStringLiteral("%1, %2").arg(market.value(Stand_Fields::Market::marketTime).toString(), state);
    }
    return outcome;
}

void Commands::showOrders(const QString &command, Outcome &outcome)
{
    const bool isFills = command == QLatin1String("fills");
    if (!outcome.errorText.isEmpty() ||
        !(isFills || command == QLatin1String("orders") || command == QLatin1String("GetCancelableOrderList")))
        return;
    RecordList rows;
    const QVariantList items = outcome.result.toList();
    for (const QVariant &item : items)
        rows.append(item.toMap());
    outcome.text = tableOf(rows, isFills ? fillColumns() : orderColumns()).text;
}

Outcome Commands::as(const QVector<Argument> &arguments)
{
    Reader reader(arguments);
    const auto user = reader.get<QString>(0);
    if (!reader.errorText.isEmpty())
        return bad(reader.errorText);
    QStringList words;
    for (int i = 1; i < arguments.size(); ++i)
        words.append(arguments.at(i).text);
    Outcome outcome = m_host.companions().run(user, words.join(QLatin1Char(' ')));
    showOrders(words.constFirst(), outcome);
    return outcome;
}
