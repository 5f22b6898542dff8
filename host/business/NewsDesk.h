#pragma once

#include "HostNews.h"

/// Where the host's other parts hand in what has changed. Callable from any thread; without an open session nothing
/// happens.
class NewsDesk
{
public:
    /// News of a session, for the calling thread. They end with the object.
    static std::unique_ptr<HostNews> open(MessageChannel &channel);

    static void dayBegan(const QString &day);
    static void quotes(const RecordList &rows);
    static void orders(const RecordList &rows);
    static void fills(const RecordList &rows);
    static void positions(const RecordList &rows);
    static void market(const VariantRecord &market);
    static void safetyRules(const RecordList &rows);
    static void businessMessage(const QString &line);
    static void request(const FinishedRequest &request);

private:
    template <typename Enter> static void enter(Enter enter);
};
