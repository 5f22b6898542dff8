#include "Companions.h"

#include "CommandReader.h"
#include "Interrupt.h"
#include "SocketServer.h"

#include <QtCore/QCoreApplication>

namespace {

constexpr int interruptCheckMs = 50;
constexpr int endMs = 10000;

/// A line that was printed by a console with --json.
Outcome outcomeOf(const QByteArray &line)
{
    CommandLine parsed;
    QString errorText;
    // A record as an argument: integers stay exact.
    if (!CommandLine::parse(QStringLiteral("answer ") + QString::fromUtf8(line.trimmed()), parsed, errorText) ||
        parsed.arguments.size() != 1)
        return bad(QStringLiteral("the console has answered what cannot be read: %1").arg(errorText));
    const QVariantMap answer = parsed.arguments.constFirst().value.toMap();
    Outcome outcome = bad(answer.value(QStringLiteral("error")).toString());
    outcome.result = answer.value(QStringLiteral("result"));
    outcome.out = answer.value(QStringLiteral("out")).toList();
    return outcome;
}

} // namespace

Companions::Companions(std::shared_ptr<PaperGateway> gateway, const QString &serverName, int requestTimeoutMs)
    : m_gateway(std::move(gateway))
    , m_requestTimeoutMs(requestTimeoutMs)
    , m_serverName(serverName)
{}

Companions::~Companions()
{
    for (const auto &console : m_consoles)
        console.second->closeWriteChannel(); // the end of its script
    for (const auto &console : m_consoles)
        if (!console.second->waitForFinished(endMs))
            console.second->kill();
    m_consoles.clear();
    if (m_server)
        QMetaObject::invokeMethod(
            &m_context, [this] { m_server.reset(); }, Qt::BlockingQueuedConnection);
    m_thread.quit();
    m_thread.wait();
}

QString Companions::serve()
{
    if (!m_serverName.isEmpty())
        return {};
    if (!m_gateway)
        return QStringLiteral("other users have no gateway in a replay");
    const QString name = m_dir.filePath(QStringLiteral("gateway"));
    m_thread.setObjectName(QStringLiteral("SocketServer"));
    m_context.moveToThread(&m_thread);
    m_thread.start();
    QString errorText;
    const auto listen = [&] {
        m_server = std::make_unique<SocketServer>(m_gateway);
        errorText = m_server->listen(name);
    };
    QMetaObject::invokeMethod(&m_context, listen, Qt::BlockingQueuedConnection);
    if (errorText.isEmpty())
        m_serverName = name;
    return errorText;
}

QProcess *Companions::consoleOf(const QString &user, QString &errorText)
{
    const auto known = m_consoles.find(user);
    if (known != m_consoles.end())
        return known->second.get();
    errorText = serve();
    if (!errorText.isEmpty())
        return nullptr;
    auto console = std::make_unique<QProcess>();
    console->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    console->start(QCoreApplication::applicationFilePath(),
                   {QStringLiteral("--json"), QStringLiteral("--connect"), m_serverName, QStringLiteral("--user"), user,
                    QStringLiteral("--timeout"), QString::number(m_requestTimeoutMs)});
    if (!console->waitForStarted()) {
        errorText = console->errorString();
        return nullptr;
    }
    return (m_consoles[user] = std::move(console)).get();
}

Outcome Companions::run(const QString &user, const QString &line)
{
    QString errorText;
    QProcess *console = consoleOf(user, errorText);
    if (!console)
        return bad(errorText);
    console->write(line.toUtf8() + '\n');
    while (!console->canReadLine()) {
        console->waitForReadyRead(interruptCheckMs); // writes, too
        if (Interrupt::requested())
            return bad(QStringLiteral("interrupted"));
        if (console->state() == QProcess::NotRunning && !console->canReadLine()) {
            m_consoles.erase(user);
            return bad(QStringLiteral("the console of %1 has ended").arg(user));
        }
    }
    return outcomeOf(console->readLine());
}
