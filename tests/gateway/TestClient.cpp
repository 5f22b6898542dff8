#include "TestClient.h"

#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "StandFields.h"
#include "StandMsgType.h"

#include <QtTest/QtTest>

namespace {

constexpr int patience = 60000;

MessageBody bodyOf(const Envelope &envelope)
{
    MessageBody body;
    QString errorText;
    if (!MessageBody::decode(envelope.body, body, errorText))
        QTest::qFail(qPrintable(errorText), __FILE__, __LINE__);
    return body;
}

} // namespace

TestClient::TestClient(std::shared_ptr<PaperGateway> gateway, const QString &user)
    : channel(std::move(gateway))
{
    channel.setPushHandler([this](const Envelope &push) {
        const QMutexLocker lock(&m_mutex);
        m_types.append(push.type);
        m_pushed.append(bodyOf(push).rows.value(0));
    });
    if (!user.isEmpty())
        ask(Stand_MsgType::LoginRequest, {{Orvane_Fields::UserAccount::userID, user}});
}

TestClient::~TestClient()
{
    channel.close();
}

MessageBody TestClient::ask(const QString &type, const VariantRecord &row, const VariantRecord &values)
{
    return send(Envelope::request(type, QStringLiteral("whoever"), patience, {values, {row}}));
}

MessageBody TestClient::change(const QString &type, const VariantRecord &header, const RecordList &rows)
{
    return send(changeOf(type, header, rows));
}

MessageBody TestClient::send(const Envelope &envelope)
{
    const auto reply = channel.request(envelope, patience);
    if (reply.outcome != MessageChannel::Outcome::Answered)
        QTest::qFail(qPrintable(envelope.type + QStringLiteral(": ") + reply.errorText), __FILE__, __LINE__);
    return bodyOf(reply.envelope);
}

QVector<RecordList> TestClient::pages(const QString &type, const VariantRecord &row, int pageSize)
{
    QVector<RecordList> found;
    VariantRecord values;
    if (pageSize > 0)
        values.insert(Stand_Fields::Paging::pageSize, pageSize);
    for (int page = 0;; ++page) {
        const MessageBody answer = ask(type, row, values);
        found.append(answer.rows);
        const QString position = answer.values.value(Stand_Fields::Paging::position).toString();
        if (!succeeded(answer) || (position.isEmpty() && !answer.values.value(Stand_Fields::Paging::hasMore).toBool()))
            return found;
        values.insert(Stand_Fields::Paging::position, position);
        values.insert(Stand_Fields::Paging::pageIndex, page + 1);
    }
}

RecordList TestClient::all(const QString &type, const VariantRecord &row, int pageSize)
{
    RecordList rows;
    for (const RecordList &page : pages(type, row, pageSize))
        rows += page;
    return rows;
}

bool TestClient::subscribe(const QString &pushType, const QString &user)
{
    return channel.subscribe(pushType, {{Orvane_Fields::UserAccount::userID, user}}, QStringLiteral("tradeGate"),
                             patience);
}

QStringList TestClient::pushedTypes() const
{
    const QMutexLocker lock(&m_mutex);
    return m_types;
}

RecordList TestClient::pushed() const
{
    const QMutexLocker lock(&m_mutex);
    return m_pushed;
}

std::shared_ptr<PaperGateway> openGateway(const Books &books, const QString &stateFile, const GatewayOptions &options)
{
    QString errorText;
    auto gateway = PaperGateway::open(books, stateFile, errorText, options);
    if (!gateway)
        QTest::qFail(qPrintable(errorText), __FILE__, __LINE__);
    return gateway;
}

Envelope changeOf(const QString &type, const VariantRecord &header, const RecordList &rows)
{
    return Envelope::request(type, QStringLiteral("whoever"), patience, {{}, RecordList{header} + rows});
}

bool succeeded(const MessageBody &answer)
{
    return answer.values.value(Orvane_Fields::System::requestExeStatus) == Orvane_Values::RequestExeStatus::success;
}

QString refusal(const MessageBody &answer)
{
    return succeeded(answer) ? QString() : answer.values.value(Orvane_Fields::System::textDescription).toString();
}
