#pragma once

#include "MessageBody.h"

/// The result of an answer: its requestExeStatus. errorText is filled unless that is success: with the
/// answer's textDescription, else with the status itself.
QString statusOfAnswer(const MessageBody &answer, QString &errorText);
