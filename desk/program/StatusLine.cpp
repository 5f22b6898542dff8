#include "StatusLine.h"

#include "Appearance.h"
#include "ConnectionWatch.h"
#include "HostNews.h"
#include "HostSession.h"
#include "MasterValues.h"
#include "OrvaneValues.h"
#include "StandFields.h"

#include <QtCore/QTime>
#include <QtWidgets/QLabel>

namespace {

constexpr int longSilence = 15; ///< seconds; the gateway is asked something every five

struct Name {
    QString key;
    QString text;
};

} // namespace

StatusLine::StatusLine(HostSession &session, const ConnectionWatch &connection, const Appearance &appearance,
                       QWidget *parent)
    : QStatusBar(parent)
    , m_connection(connection)
    , m_appearance(appearance)
    , m_state(addLabel(QStringLiteral("status.connection")))
    , m_age(addLabel(QStringLiteral("status.age")))
    , m_market(addLabel(QStringLiteral("status.market")))
    , m_clock(new QLabel)
{
    setObjectName(QStringLiteral("status"));
    setSizeGripEnabled(false);
    m_clock->setObjectName(QStringLiteral("status.clock"));
    m_clock->setContentsMargins(6, 0, 6, 0);
    addPermanentWidget(m_clock);
    connect(&connection, &ConnectionWatch::changed, this, &StatusLine::showConnection);
    connect(&connection, &ConnectionWatch::measured, this, &StatusLine::showConnection);
    connect(&appearance, &Appearance::changed, this, &StatusLine::showConnection);
    connect(&session.news(), &HostNews::marketChanged, this, &StatusLine::showMarket);
    connect(&m_timer, &QTimer::timeout, this, &StatusLine::showTime);
    m_timer.start(1000);
    showConnection();
    showMarket(session.marketState());
    showTime();
}

QLabel *StatusLine::addLabel(const QString &name)
{
    auto *label = new QLabel;
    label->setObjectName(name);
    label->setContentsMargins(6, 0, 6, 0);
    addWidget(label);
    return label;
}

void StatusLine::showConnection()
{
    QPalette palette;
    if (!m_connection.isConnected()) {
        palette.setColor(QPalette::WindowText, Appearance::red(m_appearance.choice().isDark));
        m_state->setText(tr("● 已断开"));
    } else if (m_connection.latencyMs() < 0) {
        m_state->setText(tr("● 已连接"));
    } else {
        m_state->setText(tr("● 已连接 %1 毫秒").arg(m_connection.latencyMs()));
    }
    m_state->setPalette(palette);
    showAge();
}

void StatusLine::showAge()
{
    QPalette palette;
    if (!m_connection.isInStep() || m_connection.silentSeconds() >= longSilence)
        palette.setColor(QPalette::WindowText, Appearance::red(m_appearance.choice().isDark));
    m_age->setPalette(palette);
    m_age->setText(ageText());
}

QString StatusLine::ageText() const
{
    if (m_connection.isInStep())
        return tr("数据 %1 秒前").arg(m_connection.silentSeconds());
    if (m_connection.isConnected())
        return tr("数据同步中");
    return tr("数据已过时 %1 秒").arg(m_connection.silentSeconds());
}

void StatusLine::showMarket(const VariantRecord &market)
{
    const QVector<Name> markets{{Orvane_Values::Exchange::sh, tr("沪")},
                                {Orvane_Values::Exchange::sz, tr("深")},
                                {Master_Values::Exchange::bj, tr("北")},
                                {Orvane_Values::Exchange::hhk, tr("沪港通")},
                                {Orvane_Values::Exchange::szhk, tr("深港通")}};
    const QVector<Name> phaseNames{{QStringLiteral("OpenAuction"), tr("开盘竞价")},
                                   {QStringLiteral("Continuous"), tr("连续竞价")},
                                   {QStringLiteral("CloseAuction"), tr("收盘竞价")},
                                   {QStringLiteral("Closed"), tr("休市")}};
    // Markets in one phase share its name: the line is short.
    const QVariantMap phases = market.value(Stand_Fields::Market::phases).toMap();
    QStringList parts;
    for (const Name &phase : phaseNames) {
        QStringList in;
        for (const Name &name : markets)
            if (phases.value(name.key).toString() == phase.key)
                in.append(name.text);
        if (!in.isEmpty())
            parts.append(in.join(QLatin1Char('/')) + QLatin1Char(' ') + phase.text);
    }
    const QString time = market.value(Stand_Fields::Market::marketTime).toString().mid(5); // without the year
    const bool isHeld = market.value(Stand_Fields::Market::held).toBool();
    m_market->setText(
        (isHeld ? tr("市场 %1（暂停） %2") : tr("市场 %1 %2")).arg(time, parts.join(QStringLiteral("  "))));
    m_market->setToolTip(m_market->text());
}

void StatusLine::showTime()
{
    m_clock->setText(QTime::currentTime().toString(QStringLiteral("HH:mm:ss")));
    showAge();
}
