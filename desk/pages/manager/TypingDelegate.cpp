#include "TypingDelegate.h"

#include <QtWidgets/QLineEdit>

void TypingDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    const auto *line = qobject_cast<const QLineEdit *>(editor);
    if (!line || !line->isModified())
        QStyledItemDelegate::setEditorData(editor, index);
}
