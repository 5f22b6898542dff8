#include "ProfitCurve.h"

#include "HostSession.h"
#include "ManualT0Logic.h"
#include "StandFields.h"
#include "UsageBook.h"

namespace {

constexpr int sampleEveryMs = 5000;

QDateTime marketTime()
{
    const VariantRecord market = HostSession::current()->marketState();
    const QString text = market.value(Stand_Fields::Market::marketTime).toString().left(19);
    QDateTime time = QDateTime::fromString(text, QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    time.setTimeSpec(Qt::UTC);
    return time;
}

} // namespace

ProfitCurve::ProfitCurve(QObject *parent)
    : QObject(parent)
    , m_history(ProfitHistory::fileOfUser())
{
    connect(&m_history, &ProfitHistory::loaded, this, [this](const QVector<ProfitSample> &samples) {
        m_isLoading = false;
        m_samples = samples;
        sample();
        emit changed();
    });
    connect(UsageBook::ofWindow(), &UsageBook::replaced, this, &ProfitCurve::sample);
    connect(&m_timer, &QTimer::timeout, this, &ProfitCurve::sample);
    m_timer.start(sampleEveryMs);
}

void ProfitCurve::beginDay(const QDateTime &marketNow)
{
    m_day = marketNow.date();
    m_samples.clear();
    m_isLoading = true;
    m_history.load(marketNow);
    emit changed();
}

/// While the market's clock stands a sample takes the place of the last, and only when the profit is another: the time
/// it was taken then shows how long the clock stood, as a gap.
void ProfitCurve::sample()
{
    const QDateTime now = marketTime();
    const UsageTotals totals = UsageBook::ofWindow()->totals();
    const bool isKnown = totals.rows > totals.withoutPrice;
    if (!now.isValid() || !isKnown ||
        ManualT0Logic::GetInitStateByType(ManualT0Logic::RealtimeUsage) != MasterInitStateMgr::Inited)
        return;
    if (now.date() != m_day || (!m_samples.isEmpty() && now < m_samples.last().marketTime)) {
        beginDay(now);
        return;
    }
    if (m_isLoading)
        return;
    const bool stands = !m_samples.isEmpty() && m_samples.last().marketTime == now;
    if (stands && m_samples.last().profit == totals.totalProfit)
        return;
    if (stands)
        m_samples.removeLast();
    m_samples.append({now, QDateTime::currentDateTimeUtc(), totals.totalProfit});
    m_history.add(m_samples.last());
    emit changed();
}
