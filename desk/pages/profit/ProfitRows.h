#pragma once

#include "UsageBook.h"

#include <QtCore/QMap>

/// Sums of a group of usage records.
struct ProfitSum {
    UsageTotals totals;
    double boughtQty = 0;
    double soldQty = 0;
    double boughtAmount = 0;
    double soldAmount = 0;
    double openQty = 0;
    double openCost = 0;    ///< |open quantity| at its average price
    bool isOneSided = true; ///< no record is long while another is short: an average price says something

    void add(const UsageEntry &entry);
};

/// Usage records grouped, with sums a group. A record that changes costs its own group only.
class ProfitRows
{
public:
    enum class Group { Detail, Symbol, Trader, Account };

    /// Empty: does not narrow.
    struct Filter {
        QString trader;
        QString account;
        QString symbol;
        bool onlyActive = false; ///< traded today or open

        bool passes(const VariantRecord &usage) const;
    };

    ProfitRows() = default;
    ProfitRows(Group group, const Filter &filter);

    Group group() const { return m_group; }

    /// Every record anew: rows() has them all, takeChanged() none.
    void replace(const QHash<QString, UsageEntry> &entries);

    /// A record came or changed.
    void put(const QString &key, const UsageEntry &entry);

    /// Rows of the groups that changed since the last call.
    RecordList takeChanged();
    RecordList rows() const;

    UsageTotals total() const;

    /// Totals a group, without rows.
    static QMap<QString, UsageTotals> totals(const QHash<QString, UsageEntry> &entries, Group group,
                                             const Filter &filter);

    static QString keyOf(const VariantRecord &row);
    static bool isActive(const VariantRecord &usage);

private:
    ProfitSum sumOf(const QString &group) const;
    VariantRecord row(const QString &group) const;

    Group m_group = Group::Detail;
    Filter m_filter;
    QHash<QString, UsageEntry> m_entries;  ///< those that pass
    QHash<QString, QStringList> m_members; ///< group to its records
    QSet<QString> m_changed;               ///< groups
};

/// Fields of the rows that the host has no names for.
namespace ProfitFields {
QString key();
QString exposure();
QString limit();
QString limitShare();
QString records();
QString withoutPrice();
} // namespace ProfitFields
