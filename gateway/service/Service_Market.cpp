#include "Service.h"

#include "Answers.h"
#include "ChangeRows.h"
#include "GatewayTexts.h"
#include "MarketTime.h"
#include "OrvaneFields.h"
#include "StandFields.h"
#include "StandMsgType.h"

#include <cmath>

namespace {

namespace Market_ = Stand_Fields::Market;
namespace Quote_ = Stand_Fields::Quote;

constexpr int tickMs = 100;
constexpr qint64 maxSteps = 86'400; ///< of one request: a day
constexpr double maxSpeed = 3'600;

QString phaseName(Phase phase)
{
    switch (phase) {
    case Phase::OpenAuction:
        return QStringLiteral("OpenAuction");
    case Phase::Continuous:
        return QStringLiteral("Continuous");
    case Phase::CloseAuction:
        return QStringLiteral("CloseAuction");
    case Phase::Closed:
        break;
    }
    return QStringLiteral("Closed");
}

void insertLevels(VariantRecord &row, const QVector<QuoteLevel> &levels, const QString &prices, const QString &qtys,
                  const QString &queue)
{
    QVariantList priceList;
    QVariantList qtyList;
    for (const QuoteLevel &level : levels) {
        priceList.append(level.price);
        qtyList.append(level.quantity);
    }
    QVariantList first;
    if (!levels.isEmpty())
        for (const QuoteLevel::Item &item : levels.constFirst().queue)
            first.append(item.quantity);
    row.insert(prices, priceList);
    row.insert(qtys, qtyList);
    row.insert(queue, first);
}

} // namespace

VariantRecord Service::quoteRow(const QString &symbol) const
{
    const Quote quote = m_memory.exchange.quote(symbol).value_or(Quote());
    VariantRecord row{{Orvane_Fields::Security::symbol, symbol}, {Quote_::lastPrice, quote.last},
                      {Quote_::preClose, quote.preClose},        {Quote_::upLimit, quote.upLimit},
                      {Quote_::downLimit, quote.downLimit},      {Quote_::volume, quote.volume}};
    insertLevels(row, quote.bids, Quote_::bidPrices, Quote_::bidQtys, Quote_::bidQueue);
    insertLevels(row, quote.asks, Quote_::askPrices, Quote_::askQtys, Quote_::askQueue);
    return row;
}

VariantRecord Service::marketRow() const
{
    QVariantMap phases;
    for (const SessionPhase &session : m_books.sessions)
        phases.insert(session.market, phaseName(m_memory.exchange.phase(session.market).phase));
    return {{Market_::marketTime, MarketTime::text(m_memory.exchange.time())},
            {Market_::phases, phases},
            {Market_::held, m_memory.exchange.isHeld()},
            {Market_::speed, m_memory.speed}};
}

MessageBody Service::queryQuotes(const Request &request)
{
    return Answers::listPage(request.values, m_symbols, [this](const QString &symbol) { return quoteRow(symbol); });
}

MessageBody Service::setQuote(const Request &request)
{
    const QString symbol = request.text(Orvane_Fields::Security::symbol);
    const auto before = m_memory.exchange.prices(symbol);
    if (!before)
        return Answers::refused(GatewayTexts::unknownSymbol(symbol));
    bool valid = false;
    const double price = request.row.value(Quote_::lastPrice).toDouble(&valid);
    if (!valid || !std::isfinite(price) || price < 0)
        return Answers::refused(GatewayTexts::badPrice());
    if (!m_memory.exchange.setLast(symbol, price))
        return Answers::refused(GatewayTexts::impossiblePrice(before->downLimit, before->upLimit));
    touch(symbol);
    m_changes.noteQuote(symbol, before->last, price);
    return Answers::success();
}

MessageBody Service::controlMarket(const Request &request)
{
    const QString command = request.text(Market_::command);
    if (command == Stand_Values::MarketCommand::status)
        return Answers::success({marketRow()});
    const QString before = MarketTime::text(m_memory.exchange.time());
    const QString refusal = carryOut(command, request.row);
    if (!refusal.isEmpty())
        return Answers::refused(refusal);
    touchAll();
    m_changes.noteMarket(command, before, MarketTime::text(m_memory.exchange.time()));
    return Answers::success({marketRow()});
}

QString Service::carryOut(const QString &command, const VariantRecord &row)
{
    namespace Command = Stand_Values::MarketCommand;
    if (command == Command::step)
        return stepBy(row.value(Market_::count, 1));
    if (command == Command::run)
        return runWith(row.value(Market_::speed, 1));
    if (command == Command::dayChange) {
        nextDay();
        return QString();
    }
    if (command != Command::hold)
        return GatewayTexts::unknownCommand(command);
    m_memory.exchange.setHeld(true);
    m_memory.speed = 0;
    return QString();
}

QString Service::stepBy(const QVariant &count)
{
    qint64 seconds = 0;
    if (!readWholeNumber(count, seconds) || seconds < 1 || seconds > maxSteps)
        return GatewayTexts::badStepCount(maxSteps);
    if (m_memory.exchange.isHeld())
        return GatewayTexts::marketHeld();
    advance(int(seconds));
    return QString();
}

/// Speed 0: not held, but moved by steps only, as a new market is.
QString Service::runWith(const QVariant &speed)
{
    bool valid = false;
    const double wanted = speed.toDouble(&valid);
    if (!valid || !(wanted >= 0 && wanted <= maxSpeed))
        return GatewayTexts::badSpeed(int(maxSpeed));
    m_memory.exchange.setHeld(false);
    m_memory.speed = wanted;
    return QString();
}

/// Only a day change leads to another date: clients take a new date for a new day, which no order survives.
void Service::advance(int seconds)
{
    Exchange &exchange = m_memory.exchange;
    seconds = qMin(seconds, MarketTime::secondsLeft(exchange.time()));
    if (seconds == 0)
        return;
    for (int i = 0; i < seconds; ++i) {
        const Exchange::Events events = exchange.step();
        m_store->moveClock(exchange.time());
        applyFills(events.fills);
    }
    touchAll();
}

void Service::touch(const QString &symbol)
{
    m_memory.moved = true;
    m_staleQuotes.insert(symbol);
}

void Service::touchAll()
{
    m_memory.moved = true;
    m_allStale = true;
}

bool Service::saveMarket()
{
    if (!m_memory.moved)
        return true;
    m_memory.moved = false;
    const Exchange &exchange = m_memory.exchange;
    return m_store->saveMarket({exchange.time(), m_seed, exchange.isHeld(), exchange.save()});
}

void Service::pushMarket()
{
    setTimer();
    if (isWanted(Stand_MsgType::QuotePush))
        pushQuotes();
    m_staleQuotes.clear();
    if (!m_allStale)
        return;
    m_allStale = false;
    const VariantRecord row = marketRow();
    if (row != m_shownMarket)
        push(Stand_MsgType::MarketPush, row);
    m_shownMarket = row;
}

void Service::pushQuotes()
{
    QStringList stale = m_allStale ? QStringList(m_symbols.toList()) : m_staleQuotes.values();
    stale.sort();
    RecordList rows;
    for (const QString &symbol : qAsConst(stale)) {
        const VariantRecord row = quoteRow(symbol);
        if (m_shownQuotes.value(symbol) == row)
            continue;
        m_shownQuotes.insert(symbol, row);
        rows.append(row);
    }
    // All that moved at once goes out in one message: a second of the market moves nearly every symbol.
    if (!rows.isEmpty())
        m_pushes.append({Envelope::push(Stand_MsgType::QuotePush, {{}, rows}), QString(), nullptr});
}

void Service::rememberQuotes()
{
    for (const QString &symbol : qAsConst(m_symbols))
        m_shownQuotes.insert(symbol, quoteRow(symbol));
}

bool Service::isWanted(const QString &pushType) const
{
    for (const ClientSession &session : m_sessions)
        if (session.subscribed.contains(pushType))
            return true;
    return false;
}

void Service::setTimer()
{
    const bool runs = m_memory.speed > 0;
    if (runs == m_timer.isActive())
        return;
    if (!runs)
        return m_timer.stop();
    m_due = 0;
    m_sinceTick.start();
    m_timer.start(tickMs);
}

void Service::tick()
{
    m_due = qMin(maxSpeed, m_due + double(m_sinceTick.restart()) / 1000 * m_memory.speed);
    const int seconds = int(m_due);
    m_due -= seconds;
    if (seconds == 0)
        return;
    m_store->clearError();
    const Memory before = m_memory;
    if (!m_store->begin())
        return;
    advance(seconds);
    if (!m_store->errorText().isEmpty() || !saveMarket() || !m_store->commit()) {
        qWarning("gateway: the market stops: %s", qPrintable(m_store->errorText()));
        undo(before);
        m_memory.speed = 0;
        touchAll();
    }
    deliverPushes();
}
