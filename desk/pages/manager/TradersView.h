#pragma once

#include "VariantRecord.h"

#include <QtCore/QMap>
#include <QtWidgets/QWidget>

class Later;
class QLabel;
class RecordModel;
class RecordTable;
struct TraderSums;

/// One line a trader: what he was given, what he made of it, what stands open; and the sums.
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

    RecordModel *m_model;
    RecordTable *m_table;
    QLabel *m_sums;
    Later *m_later;
    bool m_isSumming = false;
};
