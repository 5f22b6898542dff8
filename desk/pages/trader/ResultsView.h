#pragma once

#include "VariantRecord.h"

#include <QtWidgets/QWidget>

class RecordModel;

/// What became of the orders sent from this window, one row each.
class ResultsView : public QWidget
{
    Q_OBJECT

public:
    explicit ResultsView(QWidget *parent = nullptr);

    void take(const RecordList &sent); ///< new ones, or those of which more is known

private:
    void beginDay();
    static QString stateOf(const VariantRecord &sent);

    RecordModel *m_model;
};
