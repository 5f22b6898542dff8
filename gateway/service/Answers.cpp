#include "Answers.h"

#include "GatewayTexts.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "StandFields.h"

MessageBody Answers::success(const RecordList &rows)
{
    return {{{Orvane_Fields::System::requestExeStatus, Orvane_Values::RequestExeStatus::success}}, rows};
}

MessageBody Answers::refused(const QString &text)
{
    return {{{Orvane_Fields::System::requestExeStatus, Orvane_Values::RequestExeStatus::fail},
             {Orvane_Fields::System::textDescription, text}},
            {}};
}

QString Answers::refusalOf(const MessageBody &answer)
{
    const bool good =
        answer.values.value(Orvane_Fields::System::requestExeStatus) == Orvane_Values::RequestExeStatus::success;
    return good ? QString() : answer.values.value(Orvane_Fields::System::textDescription).toString();
}

Answers::PageSize Answers::pageSize(const VariantRecord &values)
{
    const QVariant asked = values.value(Stand_Fields::Paging::pageSize);
    if (!asked.isValid())
        return {1000, {}};
    bool valid = false;
    const qint64 rows = asked.toLongLong(&valid);
    if (valid && rows >= 1 && rows <= 10000)
        return {int(rows), {}};
    return {0, GatewayTexts::badPageSize()};
}

bool Answers::readPosition(const VariantRecord &values, int size, int &position)
{
    const QString text = positionOf(values);
    if (text.isEmpty())
        return true;
    bool valid = false;
    position = text.toInt(&valid);
    return valid && position >= 0 && position <= size;
}

MessageBody Answers::withPosition(MessageBody answer, const QString &position)
{
    answer.values.insert(Stand_Fields::Paging::position, position);
    return answer;
}

QString Answers::positionOf(const VariantRecord &values)
{
    return values.value(Stand_Fields::Paging::position).toString();
}

QString Answers::badPosition()
{
    return GatewayTexts::badPosition();
}
