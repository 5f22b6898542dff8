#pragma once

#include "HostExport.h"
#include "MessageChannel.h"
#include "VariantRecord.h"

#include <QtCore/QObject>
#include <QtCore/QStringList>

#include <memory>

/// A request that has ended, as whoever watches the connection sees it.
struct FinishedRequest {
    QString msgType;
    QDateTime sentAt;
    int durationMs = 0;
    MessageChannel::Outcome outcome = MessageChannel::Outcome::NotSent;
};

/// What has changed in the stores of the open session (HostSession::news), for whoever shows it. Lives on the thread
/// that opened the session and signals there, from its event loop: all that came within a tenth of a second in one
/// signal of each kind. What the session loaded when it opened is no news.
class T0_HOST_EXPORT HostNews : public QObject
{
    Q_OBJECT

public:
    ~HostNews() override;

    /// Signals at once what is waiting.
    void deliver();

    /// The last requests that have ended, at most 500, oldest first; those of the opening included.
    QVector<FinishedRequest> requests() const;

signals:
    void dayBegan(const QString &day);                   ///< yyyy-MM-dd: earlier orders and fills are gone; comes first
    void quotesChanged(const QStringList &symbols);      ///< CommonQuotaHandler::quote has the new ones
    void ordersChanged(const RecordList &orders);        ///< whole orders, the newest state of each
    void fillsCame(const RecordList &fills);             ///< in the order they came
    void positionsChanged(const QStringList &accounts);  ///< BusinessDataInterface has the new ones
    void marketChanged(const VariantRecord &market);     ///< as HostSession::marketState
    void safetyRulesChanged(const RecordList &rows);     ///< of who subscribed Stand_MsgType::SafetyRulesPush: its rows
    void businessMessagesCame(const QStringList &lines); ///< text, level and time, a tab between, oldest first
    void requestsFinished(const QVector<FinishedRequest> &requests);
    void connectionChanged(); ///< of the session's channel; noticed within a quarter of a second
    void pictureChanged();    ///< whether HostSession::picture is in step; noticed as the connection is, and after it

private:
    friend class NewsDesk;
    HostNews();

    class Private;
    std::unique_ptr<Private> d;
};
