#pragma once

#include "HostNews.h"
#include "RecordModel.h"

/// The requests that have ended, at most 500, the newest last.
class RequestModel : public RecordModel
{
    Q_OBJECT

public:
    explicit RequestModel(QObject *parent);

    static bool isHeartbeat(const VariantRecord &row); ///< the window's own measuring of the connection

private:
    void add(const QVector<FinishedRequest> &requests);

    QVector<FinishedRequest> m_first; ///< taken over at the beginning; empty after the first news
    int m_next = 0;                   ///< number of the next request
};
