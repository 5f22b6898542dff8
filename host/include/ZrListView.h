#pragma once

#include "HostExport.h"
#include "VariantRecord.h"

#include <QtWidgets/QWidget>

class QListView;

/// A list or a grid of records. A record is keyed by the decimal texts of item-data roles: every one of them is what
/// the list's index.data(role) gives. Cells show roles "0" (text), "9" (its colour) and "8" (background); a colour
/// that is missing or invalid is the skin's. GUI thread only.
class T0_HOST_EXPORT ZrListView : public QWidget
{
    Q_OBJECT

public:
    explicit ZrListView(QWidget *parent = nullptr);
    ~ZrListView() override;

    /// 0: a list from top to bottom. 1: a grid that flows from left to right and follows the width.
    void setViewMode(int mode);
    void setGridSize(const QSize &size); ///< of every cell; an invalid size: what a text needs
    void setKeyEnable(bool enable);      ///< off: takes no focus, keys go to the parent. On in the beginning

    /// Replaces the records: one change of the model, however many they are. The scroll position stays.
    void updateRecordDataList(const RecordList &records);

    QListView *getOriginListView() const; ///< owned by this widget

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    class Records;
    Records *m_records;
    QListView *m_list;
    bool m_keyEnable = true;
};
