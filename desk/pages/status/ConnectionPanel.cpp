#include "ConnectionPanel.h"

#include "CBusinessDataBase.h"
#include "Format.h"
#include "HostNews.h"
#include "HostSession.h"
#include "ManualT0Logic.h"
#include "MasterFields.h"
#include "PageShell.h"
#include "StandFields.h"
#include "UsageBook.h"

#include <QtWidgets/QFormLayout>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>

namespace {

constexpr int showEveryMs = 1000;
constexpr int latencyOfLast = 50;

struct Latency {
    int last = 0;
    int middle = 0;
    int worst = 0;
    int count = 0;
};

/// Of the last requests that were answered.
Latency latency()
{
    QVector<int> durations;
    const QVector<FinishedRequest> requests = HostSession::current()->news().requests();
    for (auto request = requests.crbegin(); request != requests.crend() && durations.size() < latencyOfLast;
         ++request) {
        if (request->outcome == MessageChannel::Outcome::Answered)
            durations.append(request->durationMs);
    }
    if (durations.isEmpty())
        return {};
    Latency latency{durations.first(), 0, 0, durations.size()};
    std::sort(durations.begin(), durations.end());
    latency.middle = durations.at(durations.size() / 2);
    latency.worst = durations.last();
    return latency;
}

int accountsOf(const QMap<QString, QStringList> &products)
{
    int count = 0;
    for (const QStringList &properties : products)
        count += properties.size();
    return count;
}

} // namespace

ConnectionPanel::ConnectionPanel(QWidget *parent)
    : QWidget(parent)
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(makeConnection());
    column->addWidget(makeData());
    column->addStretch();
    const HostNews *news = &HostSession::current()->news();
    connect(news, &HostNews::connectionChanged, this, &ConnectionPanel::showConnection);
    connect(news, &HostNews::pictureChanged, this, &ConnectionPanel::showConnection);
    connect(UsageBook::ofWindow(), &UsageBook::replaced, this, &ConnectionPanel::showData);
    connect(PageShell::instance(), &PageShell::appearanceChanged, this, &ConnectionPanel::showConnection);
    connect(&m_timer, &QTimer::timeout, this, &ConnectionPanel::showConnection);
    m_timer.start(showEveryMs);
    showConnection();
}

QLabel *ConnectionPanel::add(QFormLayout *form, const QString &name, const QString &title)
{
    auto *label = new QLabel;
    label->setObjectName(QStringLiteral("status.box.") + name);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setWordWrap(true);
    form->addRow(title, label);
    m_lines.append({title, label});
    return label;
}

QGroupBox *ConnectionPanel::makeConnection()
{
    auto *box = new QGroupBox(tr("连接"));
    auto *form = new QFormLayout(box);
    m_state = add(form, QStringLiteral("state"), tr("状态"));
    m_since = add(form, QStringLiteral("since"), tr("自"));
    m_picture = add(form, QStringLiteral("picture"), tr("同步"));
    m_latency = add(form, QStringLiteral("latency"), tr("延迟"));
    m_market = add(form, QStringLiteral("market"), tr("行情时间"));
    return box;
}

QGroupBox *ConnectionPanel::makeData()
{
    auto *box = new QGroupBox(tr("数据"));
    auto *form = new QFormLayout(box);
    m_exchanges = add(form, QStringLiteral("exchanges"), tr("支持的市场"));
    m_kinds = add(form, QStringLiteral("kinds"), tr("可交易品种"));
    m_bonds = add(form, QStringLiteral("bonds"), tr("可转债"));
    m_candidates = add(form, QStringLiteral("candidates"), tr("可启用产品属性"));
    m_ownSymbols = add(form, QStringLiteral("symbols"), tr("本人标的"));
    m_priced = add(form, QStringLiteral("priced"), tr("有行情的用量"));
    return box;
}

void ConnectionPanel::showConnection()
{
    if (!isVisible())
        return;
    const HostSession *session = HostSession::current();
    const MessageChannel &channel = HostSession::current()->channel();
    const bool isConnected = channel.connection() == MessageChannel::Connection::Connected;
    m_state->setText(isConnected ? tr("已连接") : tr("已断开，下单已停用"));
    const QDateTime since = channel.connectionSince().toLocalTime();
    m_since->setText(since.isValid() ? since.toString(QStringLiteral("HH:mm:ss")) : Format::missing());
    m_picture->setText(pictureText());
    const Latency measured = latency();
    m_latency->setText(measured.count == 0
                           ? Format::missing()
                           : tr("最近 %1 毫秒，最近 %2 次中位 %3、最差 %4")
                                 .arg(QString::number(measured.last), QString::number(measured.count),
                                      QString::number(measured.middle), QString::number(measured.worst)));
    const VariantRecord market = session->marketState();
    const QString held = market.value(Stand_Fields::Market::held).toBool() ? tr("（暂停）") : QString();
    m_market->setText(market.value(Stand_Fields::Market::marketTime).toString() + held);
}

QString ConnectionPanel::pictureText()
{
    const PictureState picture = HostSession::current()->picture();
    const auto time = [](const QDateTime &at) { return at.toLocalTime().toString(QStringLiteral("HH:mm:ss")); };
    const QString heard = picture.heardAt.isValid() ? time(picture.heardAt) : Format::missing();
    return picture.isInStep ? tr("自 %1 起同步，最近收到 %2").arg(time(picture.since), heard)
                            : tr("未同步，下单暂停，最近收到 %1").arg(heard);
}

void ConnectionPanel::showData()
{
    if (!isVisible())
        return;
    m_exchanges->setText(ManualT0Logic::GetSupportExchangeList().join(tr("、")));
    m_kinds->setText(tr("%1 类").arg(ManualT0Logic::GetTradableSymbolListType().size()));
    m_bonds->setText(tr("%1 只").arg(ManualT0Logic::GetT0Symbols().size()));
    m_candidates->setText(tr("%1，已启用 %2")
                              .arg(QString::number(accountsOf(ManualT0Logic::GetCandidateT0ProductAccount())),
                                   QString::number(accountsOf(ManualT0Logic::GetAllT0ProductAccount()))));
    const QStringList accounts = UsageBook::accounts();
    const RecordList own =
        ManualT0Logic::GetRealtimeSumListMergeBySymbolExchange(accounts, CBusinessDataBase::GetLoginAccount(), {}, {});
    m_ownSymbols->setText(tr("%1 只").arg(own.size()));
    const RecordList profits = ManualT0Logic::GetProfitLossDataList(accounts, {}, {}, {});
    const auto priced = std::count_if(profits.cbegin(), profits.cend(), [](const VariantRecord &row) {
        return row.contains(Master_Fields::ManualT0::TotalProfit);
    });
    m_priced->setText(tr("%1 / %2 行").arg(QString::number(priced), QString::number(profits.size())));
}

QStringList ConnectionPanel::lines() const
{
    QStringList lines;
    for (const auto &[title, label] : m_lines)
        lines.append(title + QStringLiteral(": ") + label->text());
    return lines;
}

void ConnectionPanel::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    showConnection();
    showData();
}
