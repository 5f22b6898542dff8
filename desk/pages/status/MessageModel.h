#pragma once

#include "RecordModel.h"

/// The business messages of the session, at most 1,000, the newest last.
class MessageModel : public RecordModel
{
    Q_OBJECT

public:
    explicit MessageModel(QObject *parent);

private:
    void add(const QStringList &lines);

    int m_next = 0; ///< number of the next message
};
