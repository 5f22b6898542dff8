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

    int m_next = 0; ///< number of the next request
};
