#include "FollowEnd.h"

#include "RecordTable.h"

#include <QtWidgets/QScrollBar>

#include <memory>

void FollowEnd::keep(RecordTable *table)
{
    const auto follows = std::make_shared<bool>(true);
    const QScrollBar *bar = table->verticalScrollBar();
    QObject::connect(bar, &QScrollBar::valueChanged, table,
                     [bar, follows](int value) { *follows = value == bar->maximum(); });
    // After the layout that the new rows ask for.
    QObject::connect(bar, &QScrollBar::rangeChanged, table, [table, follows] {
        if (*follows)
            table->scrollToBottom();
    });
}
