#pragma once

#include "LocalChannel.h"

#include <QtCore/QMutex>

/// A client on a channel of its own to a gateway in this process, and what was pushed to it.
class TestClient
{
public:
    /// Logs in as the user; an empty one stays outside.
    TestClient(std::shared_ptr<PaperGateway> gateway, const QString &user);
    ~TestClient();

    /// The answer's body. The running test fails when none comes.
    MessageBody ask(const QString &type, const VariantRecord &row = {}, const VariantRecord &values = {});

    MessageBody change(const QString &type, const VariantRecord &header, const RecordList &rows);
    MessageBody send(const Envelope &envelope);

    /// Every page of a query: by position, or by page when the answers say hasMore.
    QVector<RecordList> pages(const QString &type, const VariantRecord &row = {}, int pageSize = 0);
    RecordList all(const QString &type, const VariantRecord &row = {}, int pageSize = 0);

    bool subscribe(const QString &pushType, const QString &user);
    QStringList pushedTypes() const;
    RecordList pushed() const; ///< the row of each push

    LocalChannel channel;

private:
    mutable QMutex m_mutex;
    QStringList m_types;
    RecordList m_pushed;
};

/// A gateway in memory, or on a state file; the running test fails when it does not open.
std::shared_ptr<PaperGateway> openGateway(const Books &books, const QString &stateFile = QString(),
                                          const GatewayOptions &options = GatewayOptions());

/// A change request with an id of its own.
Envelope changeOf(const QString &type, const VariantRecord &header, const RecordList &rows);

bool succeeded(const MessageBody &answer);
QString refusal(const MessageBody &answer);
