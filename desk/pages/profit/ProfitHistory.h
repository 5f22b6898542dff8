#pragma once

#include <QtCore/QDateTime>
#include <QtCore/QObject>
#include <QtCore/QThread>
#include <QtCore/QVector>

#include <memory>

/// The total profit at a moment.
struct ProfitSample {
    QDateTime marketTime; ///< UTC by name: a market's clock has no zone
    QDateTime takenAt;    ///< by this machine's clock
    double profit = 0;
};
Q_DECLARE_METATYPE(ProfitSample)
Q_DECLARE_METATYPE(QVector<ProfitSample>)

/// Samples of the profit in a file, so that the day's curve survives a restart. Reads and writes on a thread of its
/// own. A file that cannot be used is said in the log once; then nothing is kept.
class ProfitHistory : public QObject
{
    Q_OBJECT

public:
    /// Empty: nothing is kept.
    explicit ProfitHistory(const QString &fileName, QObject *parent = nullptr);
    ~ProfitHistory() override; ///< what was added is written before

    /// Asks for the samples of the market's day up to now. Later ones are forgotten: a market whose clock stands before
    /// them is another one, or one that was set back.
    void load(const QDateTime &marketNow);

    /// A sample of the same market time is replaced.
    void add(const ProfitSample &sample);

    /// Where the curve of the session's user is kept: the setting "DeskHistoryFile", else a file of the program's data;
    /// empty on a display that nobody looks at, unless the setting names one.
    static QString fileOfUser();

    /// Cut where no sample was taken for more than 15 seconds.
    static QVector<QVector<ProfitSample>> unbroken(const QVector<ProfitSample> &samples);

signals:
    void loaded(const QVector<ProfitSample> &samples); ///< in order of the market's time

private:
    class Store;

    QThread m_thread;
    std::unique_ptr<Store> m_store; ///< lives on m_thread; null: nothing is kept
};
