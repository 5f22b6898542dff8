#pragma once

#include "MessageBody.h"

#include <QtCore/QVector>

/// How answers look: status and text among the values, and where the next page starts.
namespace Answers {

MessageBody success(const RecordList &rows = {});
MessageBody refused(const QString &text);

/// What an answer refuses with; empty: it is a success.
QString refusalOf(const MessageBody &answer);

struct PageSize {
    int rows = 0;
    QString refusal; ///< empty when the size is good
};

/// The page size a request's values ask for; 1000 when they do not.
PageSize pageSize(const VariantRecord &values);

/// One page of a list that never changes its order. The position is the number of the item behind the last
/// one sent. toRow gives an empty row for an item that the user may not see.
template <typename Item, typename ToRow>
MessageBody listPage(const VariantRecord &values, const QVector<Item> &items, ToRow toRow);

/// One page that starts behind an id. isId tells whether a position is one, fetch(afterId, limit) gives the
/// items behind it, idOf an item's id; toRow as above.
template <typename IsId, typename Fetch, typename IdOf, typename ToRow>
MessageBody idPage(const VariantRecord &values, IsId isId, Fetch fetch, IdOf idOf, ToRow toRow);

/// Fills the position of an answer; false: the text is no position.
bool readPosition(const VariantRecord &values, int size, int &position);

MessageBody withPosition(MessageBody answer, const QString &position);
QString positionOf(const VariantRecord &values);
QString badPosition();

} // namespace Answers

template <typename Item, typename ToRow>
MessageBody Answers::listPage(const VariantRecord &values, const QVector<Item> &items, ToRow toRow)
{
    const PageSize size = pageSize(values);
    if (!size.refusal.isEmpty())
        return refused(size.refusal);
    int at = 0;
    if (!readPosition(values, items.size(), at))
        return refused(badPosition());
    RecordList rows;
    for (; at < items.size() && rows.size() < size.rows; ++at) {
        const VariantRecord row = toRow(items.at(at));
        if (!row.isEmpty())
            rows.append(row);
    }
    return withPosition(success(rows), at < items.size() ? QString::number(at) : QString());
}

template <typename IsId, typename Fetch, typename IdOf, typename ToRow>
MessageBody Answers::idPage(const VariantRecord &values, IsId isId, Fetch fetch, IdOf idOf, ToRow toRow)
{
    const PageSize size = pageSize(values);
    if (!size.refusal.isEmpty())
        return refused(size.refusal);
    const QString position = positionOf(values);
    if (!position.isEmpty() && !isId(position))
        return refused(badPosition());
    // One more than asked for tells whether another page follows.
    const auto items = fetch(position, size.rows + 1);
    RecordList rows;
    for (int i = 0; i < items.size() && i < size.rows; ++i) {
        const VariantRecord row = toRow(items.at(i));
        if (!row.isEmpty())
            rows.append(row);
    }
    return withPosition(success(rows), items.size() > size.rows ? idOf(items.at(size.rows - 1)) : QString());
}
