#pragma once

#include "ProfitRows.h"

#include <QtWidgets/QWidget>

class QCheckBox;
class QComboBox;

/// What the profit page shows: how the rows are grouped and which of them.
class ProfitFilterBar : public QWidget
{
    Q_OBJECT

public:
    explicit ProfitFilterBar(QWidget *parent = nullptr);

    ProfitRows::Group group() const;
    ProfitRows::Filter filter() const;

    /// What can be chosen, from the records there are; a choice stays when it is still among them.
    void offer(const QHash<QString, UsageEntry> &entries);

signals:
    void changed();

private:
    QComboBox *addCombo(const QString &name, int characters);
    void keep() const;

    QComboBox *m_group;
    QComboBox *m_trader;
    QComboBox *m_account;
    QComboBox *m_symbol;
    QCheckBox *m_active;
};
