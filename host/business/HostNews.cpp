#include "HostNews.h"

#include "NewsDesk.h"
#include "OrvaneFields.h"
#include "PictureStep.h"

#include <QtCore/QMutex>
#include <QtCore/QSet>
#include <QtCore/QTimer>

namespace {

constexpr int deliverAfterMs = 100;
constexpr int watchEveryMs = 250;
constexpr int keptRequests = 500;

/// What waits to be signalled.
struct Waiting {
    QString day;
    QSet<QString> symbols;
    QMap<QString, VariantRecord> orders; ///< by id
    RecordList fills;
    QSet<QString> accounts;
    VariantRecord market;
    RecordList safetyRules;
    QStringList messages;
    QVector<FinishedRequest> requests;
};

/// The news of the open session; null without one.
struct Current {
    QMutex mutex;
    HostNews *news = nullptr;
};

Current &current()
{
    static auto *current = new Current; // never deleted: something may still be handed in while the process ends
    return *current;
}

QStringList sorted(const QSet<QString> &texts)
{
    QStringList list = texts.values();
    list.sort();
    return list;
}

} // namespace

class HostNews::Private
{
public:
    explicit Private(MessageChannel &channel)
        : channel(channel)
        , connection(channel.connection())
    {}

    MessageChannel &channel;
    MessageChannel::Connection connection;
    bool isInStep = true; ///< once the session is open
    QTimer deliverTimer;
    QTimer watchTimer;

    // under current().mutex
    Waiting waiting;
    bool isDue = false; ///< the timer was asked to start
    QVector<FinishedRequest> requests;
};

HostNews::HostNews() = default;

HostNews::~HostNews()
{
    const QMutexLocker lock(&current().mutex);
    if (current().news == this)
        current().news = nullptr;
}

void HostNews::deliver()
{
    Waiting news;
    {
        const QMutexLocker lock(&current().mutex);
        std::swap(news, d->waiting);
        d->isDue = false;
    }
    if (!news.day.isEmpty())
        emit dayBegan(news.day);
    if (!news.market.isEmpty())
        emit marketChanged(news.market);
    if (!news.symbols.isEmpty())
        emit quotesChanged(sorted(news.symbols));
    if (!news.orders.isEmpty())
        emit ordersChanged(news.orders.values());
    if (!news.fills.isEmpty())
        emit fillsCame(news.fills);
    if (!news.accounts.isEmpty())
        emit positionsChanged(sorted(news.accounts));
    if (!news.safetyRules.isEmpty())
        emit safetyRulesChanged(news.safetyRules);
    if (!news.messages.isEmpty())
        emit businessMessagesCame(news.messages);
    if (!news.requests.isEmpty())
        emit requestsFinished(news.requests);
}

QVector<FinishedRequest> HostNews::requests() const
{
    const QMutexLocker lock(&current().mutex);
    return d->requests;
}

std::unique_ptr<HostNews> NewsDesk::open(MessageChannel &channel)
{
    std::unique_ptr<HostNews> news(new HostNews);
    news->d = std::make_unique<HostNews::Private>(channel);
    HostNews *self = news.get();
    HostNews::Private *d = self->d.get();
    d->deliverTimer.setSingleShot(true);
    d->deliverTimer.setInterval(deliverAfterMs);
    QObject::connect(&d->deliverTimer, &QTimer::timeout, self, &HostNews::deliver);
    QObject::connect(&d->watchTimer, &QTimer::timeout, self, [self, d] {
        PictureStep::synchronise();
        const MessageChannel::Connection connection = d->channel.connection();
        if (std::exchange(d->connection, connection) != connection)
            emit self->connectionChanged();
        const bool isInStep = PictureStep::state().isInStep;
        if (std::exchange(d->isInStep, isInStep) != isInStep)
            emit self->pictureChanged();
    });
    d->watchTimer.start(watchEveryMs);
    const QMutexLocker lock(&current().mutex);
    current().news = self;
    return news;
}

/// Hands something in and sees to it that it will be signalled.
template <typename Enter> void NewsDesk::enter(Enter enter)
{
    const QMutexLocker lock(&current().mutex);
    HostNews *news = current().news;
    if (!news)
        return;
    HostNews::Private &d = *news->d;
    enter(d);
    if (d.isDue)
        return;
    d.isDue = true;
    // In the lock: the news cannot go before the call is posted, and takes it with it when it goes.
    QMetaObject::invokeMethod(
        &d.deliverTimer, [&d] { d.deliverTimer.start(); }, Qt::QueuedConnection);
}

void NewsDesk::dayBegan(const QString &day)
{
    enter([&](HostNews::Private &d) {
        d.waiting.day = day;
        // Of the day that has ended.
        d.waiting.orders.clear();
        d.waiting.fills.clear();
    });
}

void NewsDesk::quotes(const RecordList &rows)
{
    enter([&](HostNews::Private &d) {
        for (const VariantRecord &row : rows)
            d.waiting.symbols.insert(row.value(Orvane_Fields::Security::symbol).toString());
    });
}

void NewsDesk::orders(const RecordList &rows)
{
    enter([&](HostNews::Private &d) {
        for (const VariantRecord &row : rows)
            d.waiting.orders.insert(row.value(Orvane_Fields::Security::orderID).toString(), row);
    });
}

void NewsDesk::fills(const RecordList &rows)
{
    enter([&](HostNews::Private &d) { d.waiting.fills += rows; });
}

void NewsDesk::positions(const RecordList &rows)
{
    enter([&](HostNews::Private &d) {
        for (const VariantRecord &row : rows)
            d.waiting.accounts.insert(row.value(Orvane_Fields::UserAccount::tradingAccount).toString());
    });
}

void NewsDesk::market(const VariantRecord &market)
{
    enter([&](HostNews::Private &d) { d.waiting.market = market; });
}

void NewsDesk::safetyRules(const RecordList &rows)
{
    enter([&](HostNews::Private &d) { d.waiting.safetyRules += rows; });
}

void NewsDesk::businessMessage(const QString &line)
{
    enter([&](HostNews::Private &d) { d.waiting.messages.append(line); });
}

void NewsDesk::request(const FinishedRequest &request)
{
    enter([&](HostNews::Private &d) {
        for (QVector<FinishedRequest> *requests : {&d.waiting.requests, &d.requests}) {
            requests->append(request);
            if (requests->size() > keptRequests)
                requests->removeFirst();
        }
    });
}
