#include "ConsoleHost.h"

#include "LocalChannel.h"
#include "PluginLoader.h"
#include "SocketChannel.h"

#include <QtCore/QDir>
#include <QtCore/QStringList>

ConsoleHost::ConsoleHost(Settings settings)
    : m_settings(std::move(settings))
    , m_companions(m_settings.gateway, m_settings.serverName, m_settings.requestTimeoutMs)
{}

ConsoleHost::~ConsoleHost() = default;

std::unique_ptr<MessageChannel> ConsoleHost::connectServer(QString &errorText) const
{
    if (m_settings.otherServer)
        return m_settings.otherServer();
    if (m_settings.gateway)
        return std::make_unique<LocalChannel>(m_settings.gateway);
    auto channel = std::make_unique<SocketChannel>(m_settings.serverName);
    if (channel->waitForConnected(m_settings.requestTimeoutMs))
        return channel;
    errorText = QStringLiteral("no gateway answers at %1").arg(m_settings.serverName);
    return nullptr;
}

FaultChannel *ConsoleHost::faults(QString &errorText)
{
    if (m_channel)
        return m_channel;
    auto server = connectServer(errorText);
    if (!server)
        return nullptr;
    m_waitingChannel = std::make_unique<FaultChannel>(std::move(server));
    m_channel = m_waitingChannel.get();
    return m_channel;
}

QString ConsoleHost::login(const QString &user)
{
    if (m_isLibraryOpen)
        return QStringLiteral("login is possible only before init and any operation: the library has its user");
    if (m_session) {
        m_session.reset();
        m_channel = nullptr;
    }
    m_settings.user = user;
    return openSession();
}

QString ConsoleHost::openSession()
{
    if (m_session)
        return {};
    if (m_settings.user.isEmpty() && m_settings.gateway && m_settings.gateway->books().firstManager())
        m_settings.user = m_settings.gateway->books().firstManager()->userID;
    if (m_settings.user.isEmpty())
        return QStringLiteral("nobody to log in: use login USER or --user ID");
    QString errorText;
    if (!faults(errorText))
        return errorText;

    HostConfig config;
    config.channel = std::move(m_waitingChannel);
    config.user = m_settings.user;
    config.settingsDir = m_settings.settingsDir;
    config.requestTimeoutMs = m_settings.requestTimeoutMs;
    config.journal = m_settings.journal;
    m_session = HostSession::open(std::move(config), errorText);
    if (!m_session) {
        m_channel = nullptr;
        return QStringLiteral("%1 is not logged in: %2").arg(m_settings.user, errorText);
    }
    m_events.listen();
    return {};
}

void ConsoleHost::hangUp()
{
    if (m_session)
        m_session->channel().close();
}

QString ConsoleHost::openLibrary()
{
    if (m_isLibraryOpen)
        return {};
    QString errorText = openSession();
    if (errorText.isEmpty())
        errorText = loadPlugin();
    m_isLibraryOpen = errorText.isEmpty();
    return errorText;
}

QString ConsoleHost::loadPlugin() const
{
    PluginLoader loader;
    QStringList errors;
    const QList<PluginLoader::Plugin> plugins = loader.loadFolder(m_settings.pluginDir);
    for (const PluginLoader::Plugin &plugin : plugins) {
        if (plugin.errorText.isEmpty() &&
            plugin.metaData.value(QStringLiteral("Name")) == QLatin1String("ManualT0Logic"))
            return {};
        errors.append(plugin.errorText);
    }
    errors.removeAll(QString());
    return QStringLiteral("no plug-in ManualT0Logic in %1%2")
        .arg(QDir::toNativeSeparators(m_settings.pluginDir),
             errors.isEmpty() ? QString() : QStringLiteral(": ") + errors.join(QStringLiteral("; ")));
}

bool ConsoleHost::isLibraryOpen() const
{
    return m_isLibraryOpen;
}

Companions &ConsoleHost::companions()
{
    return m_companions;
}

EventRecorder &ConsoleHost::events()
{
    return m_events;
}
