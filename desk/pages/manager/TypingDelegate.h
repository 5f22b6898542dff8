#pragma once

#include <QtWidgets/QStyledItemDelegate>

/// Opens cells to type in. An open cell follows its row until something is typed in it.
class TypingDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
};
