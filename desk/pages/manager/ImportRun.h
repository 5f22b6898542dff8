#pragma once

#include "ChangeOutcome.h"
#include "ImportModel.h"

#include <QtCore/QObject>

/// Sends the ticked rows of an import, one request a trading account, and a second one where some of its rows have
/// traders and some have none. An account that fails does not hold up the others. Lives until finished.
class ImportRun : public QObject
{
    Q_OBJECT

public:
    ImportRun(const ImportModel &model, bool cover, QObject *parent);

    void start();

signals:
    void ended(const QVector<int> &rows, const ChangeOutcome &outcome); ///< of one request
    void finished(int good, int bad);                                   ///< rows

private:
    struct Request {
        QVector<int> rows;
        QVector<ResourceRow> content;
        bool withPools = false;
    };

    void take(const Request &request, const ChangeOutcome &outcome);

    QVector<Request> m_requests;
    bool m_cover;
    int m_running = 0;
    int m_good = 0;
    int m_bad = 0;
};
