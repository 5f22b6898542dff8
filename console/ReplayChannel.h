#pragma once

#include "RecordedDay.h"
#include "StreamChannel.h"

#include <QtCore/QObject>
#include <QtCore/QSet>
#include <QtCore/QThread>

/// A server that says what a journal has taken down. A request gets what the first request like it got that was not
/// repeated yet, unless another one is expected; the pushes that came before that answer come before it again. A
/// request whose end the journal does not hold times out at once and is listed.
///
/// Answers and pushes leave on a thread of its own, and only there is known what was given: no lock is needed.
class ReplayChannel : public StreamChannel
{
public:
    explicit ReplayChannel(const RecordedDay &day);
    ~ReplayChannel() override;

    Reply request(const Envelope &envelope, int timeoutMs) override;
    bool send(const Envelope &envelope, int timeoutMs, ReplyHandler handler) override;

    // For whoever walks through the day.

    void pushUntil(int record);   ///< hands over what was pushed up to there and was not yet
    bool isRepeated(int request); ///< it was asked again and has its answer
    void expect(int request);     ///< this one is asked now, before others like it
    QStringList unanswered();     ///< types of the requests that timed out for want of an end

protected:
    bool transmit(const QByteArray &) override { return false; } ///< never called: no request leaves

private:
    // On the channel's own thread.
    int find(const Envelope &envelope) const;
    QVector<Reply> repliesTo(const Envelope &envelope);
    void push(int end);

    template <typename Call> void onOwnThread(Call call);

    const RecordedDay &m_day;
    QThread m_thread;
    QObject m_context; ///< lives there
    QSet<int> m_repeated;
    QStringList m_unanswered;
    int m_expected = RecordedDay::nothing;
    int m_nextPush = 0; ///< the first record that was not looked at for pushes
};
