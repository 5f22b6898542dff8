#include "Claims.h"

namespace {
constexpr char never[] = "never";
}

Claims::Claims(World &world, const ModelGateway &gateway, SimChannel &channel)
    : m_world(world)
    , m_gateway(gateway)
    , m_channel(channel)
{
    channel.changeSent = [this](const QString &requestId) {
        if (!m_open.isEmpty())
            m_open.last()->requests.append(requestId);
    };
}

QString Claims::hear(const QString &what, const std::function<QString()> &call)
{
    Claim claim{what, {}, {}};
    m_open.append(&claim);
    m_world.note("a user calls " + what);
    claim.code = call();
    m_open.removeLast();
    m_world.note("he is told \"" + claim.code + "\" of " + what);
    m_heard.append(claim);
    return claim.code;
}

void Claims::hearLater(const QString &what, bool carriedOut, const QString &request)
{
    m_heard.append({what, carriedOut ? Rows::Success : never, {request}});
}

/// The callers of some changes learn of a time-out by its text only.
bool Claims::isUnknown(const Claim &claim) const
{
    return std::any_of(claim.requests.cbegin(), claim.requests.cend(),
                       [this](const QString &id) { return m_channel.wasUnanswered(id); });
}

void Claims::check()
{
    for (const Claim &claim : qAsConst(m_heard))
        check(claim);
    m_heard.clear();
}

void Claims::check(const Claim &claim)
{
    int executed = 0;
    for (const QString &request : claim.requests) {
        executed += m_gateway.executions(request);
        if (m_gateway.executions(request) > 1)
            m_world.fail("carried out twice: " + claim.what);
    }
    if (claim.code == Rows::Success && executed != claim.requests.size())
        m_world.fail("acknowledged and not carried out: " + claim.what);
    if (claim.code == never && executed > 0)
        m_world.fail("said never to be carried out, and was: " + claim.what);
    if (claim.code == Rows::Fail && executed > 0 && !isUnknown(claim))
        m_world.fail("told to have failed and carried out: " + claim.what);
}
