#include "AnswerStatus.h"

#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "RequestTexts.h"

QString statusOfAnswer(const MessageBody &answer, QString &errorText)
{
    const QString status = answer.values.value(Orvane_Fields::System::requestExeStatus).toString();
    if (status == Orvane_Values::RequestExeStatus::success)
        return status;
    errorText = answer.values.value(Orvane_Fields::System::textDescription).toString();
    if (errorText.isEmpty())
        errorText = status.isEmpty() ? RequestTexts::missingStatus() : status;
    return status.isEmpty() ? Orvane_Values::RequestExeStatus::fail : status;
}
