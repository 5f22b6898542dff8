#pragma once

#include "ProfitHistory.h"

#include <QtCore/QTimer>

/// The total profit over the market's day, sampled every five seconds while the usage is loaded.
class ProfitCurve : public QObject
{
    Q_OBJECT

public:
    explicit ProfitCurve(QObject *parent);

    const QVector<ProfitSample> &samples() const { return m_samples; }

signals:
    void changed();

private:
    void sample();
    void beginDay(const QDateTime &marketNow);

    ProfitHistory m_history;
    QVector<ProfitSample> m_samples; ///< of the day, in order of the market's time
    QDate m_day;
    bool m_isLoading = false; ///< the day's earlier samples are on their way
    QTimer m_timer;
};
