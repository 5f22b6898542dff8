#pragma once

#include "VariantRecord.h"

#include <QtCore/QMap>
#include <QtWidgets/QWidget>

class Later;
class QLabel;
class RecordModel;
class RecordTable;
class TradersSwitchBar;
struct TraderSums;

/// One line a trader: what he was given, what he made of it, what stands open, whether he may trade; and the sums.
class TradersView : public QWidget
{
    Q_OBJECT

public:
    explicit TradersView(QWidget *parent = nullptr);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void sum();
    void showSums(const QMap<QString, TraderSums> &sums);
    VariantRecord withSwitch(VariantRecord row) const;
    void showSwitches();
    void offerChosen();

    RecordModel *m_model;
    RecordTable *m_table;
    QLabel *m_sums;
    TradersSwitchBar *m_switches;
    Later *m_later;
    bool m_isSumming = false;
};
