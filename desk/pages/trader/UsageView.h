#pragma once

#include "UsageFigures.h"

#include <QtCore/QHash>
#include <QtWidgets/QWidget>

class QCheckBox;
class QLabel;
class RecordModel;
class RecordTable;
class TradeSelection;

/// What the user has traded and may still trade in the ticked accounts, with exposure and profit at the latest prices.
class UsageView : public QWidget
{
    Q_OBJECT

public:
    explicit UsageView(TradeSelection *selection, QWidget *parent = nullptr);

    /// Goes to the chosen instrument's row, that of an open position first.
    void focusInstrument();

signals:
    void usageChanged();                          ///< quotas and exposures may be others now
    void closeWanted(const VariantRecord &usage); ///< of an open position, by Enter or a double click

private:
    Columns columns() const;
    void follow();
    void reload();
    void take(const RecordList &usage);
    void reprice(const QStringList &symbols);
    void takeLimits();
    void showTotals();
    bool isShown(const VariantRecord &usage) const;
    VariantRecord priced(const VariantRecord &usage);

    TradeSelection *m_selection;
    QHash<QString, VariantRecord> m_usage;  ///< by key; the newest, while the model may still wait to show it
    QHash<QString, UsageFigures> m_figures; ///< of these
    RecordModel *m_model;
    RecordTable *m_table;
    QCheckBox *m_openOnly;
    QLabel *m_totals;
};
