#pragma once

#include "ManualT0LogicExport.h"
#include "MasterComboBox.h"

#include <QtCore/QMap>

/// A searchable choice of a trader; currentData() is the trader's id. GUI thread only.
class MANUALT0LOGIC_EXPORT ManualT0TraderCombo : public MasterComboBox
{
    Q_OBJECT

public:
    explicit ManualT0TraderCombo(QWidget *parent = nullptr);
    ~ManualT0TraderCombo() override;

    /// Replaces the items and chooses the first. traders: id to name, as ManualT0Logic::GetAllT0TraderId gives them;
    /// shown as "name id" in ascending order of ids. Before them withAll puts "全部交易员" with an empty id, and before
    /// that withPublic puts the public pool, ManualT0Logic::PublicTrader.
    void InitTraders(const QMap<QString, QString> &traders, bool withAll, bool withPublic);
};
