#include "Sessions.h"

#include <QtCore/QTime>

namespace {

int msOfDay(const QString &time)
{
    return QTime::fromString(time, QStringLiteral("hh:mm:ss")).msecsSinceStartOfDay();
}

Phase phaseOf(const QString &name)
{
    if (name == QLatin1String("OpenAuction"))
        return Phase::OpenAuction;
    if (name == QLatin1String("Continuous"))
        return Phase::Continuous;
    return name == QLatin1String("CloseAuction") ? Phase::CloseAuction : Phase::Closed;
}

} // namespace

Sessions::Sessions(const Books &books)
{
    for (const SessionPhase &row : books.sessions) {
        const Phase phase = phaseOf(row.phase);
        const bool open = phase != Phase::Closed;
        m_spans[row.market].append({msOfDay(row.from), msOfDay(row.to), {phase, open, open && row.cancel}});
    }
}

MarketPhase Sessions::at(const QString &market, qint64 marketMs) const
{
    constexpr qint64 day = 24 * 60 * 60 * 1000;
    const qint64 time = (marketMs % day + day) % day;
    const QVector<Span> spans = m_spans.value(market);
    for (const Span &span : spans)
        if (time >= span.from && time < span.to)
            return span.phase;
    return {};
}
