#pragma once

#include "UsageFigures.h"

#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QSet>
#include <QtCore/QTimer>

struct UsageEntry {
    VariantRecord usage;
    UsageFigures figures;
    std::optional<double> limitQuantity = {}; ///< as UsageFigures::limitQuantity
};

/// The usage records that the user may see (all of a manager, a trader's own) with what they are worth, kept up to
/// date: a push, a quote or a pool costs its own records only, and what changed is told at most ten times a second. GUI
/// thread only.
class UsageBook : public QObject
{
    Q_OBJECT

public:
    /// The one that everything in the window shares; made when first asked for, goes with the window.
    static UsageBook *ofWindow();

    explicit UsageBook(QObject *parent);

    const QHash<QString, UsageEntry> &entries() const { return m_entries; } ///< by ManualT0Logic::GetRealtimePoolKey
    UsageTotals totals() const;

    /// The accounts whose records are read.
    static QStringList accounts();
    static bool isManager();

signals:
    void replaced();                       ///< any entry may have come, gone or changed
    void changed(const QStringList &keys); ///< entries that came or changed; none went

private:
    void listenToLibrary();
    void take(const QVariantList &records);
    void touch(const QString &key);
    void touchPools(const RecordList &pools);
    void touchAll();
    void wait();
    void update();
    void readAll();
    void enter(const QString &key, const VariantRecord &usage);

    QHash<QString, UsageEntry> m_entries;
    QHash<QString, QStringList> m_keysOfSymbol;
    QSet<QString> m_accounts;
    QString m_onlyTrader; ///< empty: everybody
    QSet<QString> m_touched;
    bool m_isStale = true; ///< everything is to be read again
    QTimer m_timer;
};
