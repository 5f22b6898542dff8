#include "Desk.h"

#include "Background.h"
#include "Books.h"
#include "FaultChannel.h"
#include "HostSession.h"
#include "JournalWriter.h"
#include "LocalChannel.h"
#include "MainWindow.h"
#include "OrvaneValues.h"
#include "PluginLoader.h"
#include "SocketChannel.h"
#include "StandFields.h"
#include "StandMsgType.h"

namespace {

constexpr int connectTimeoutMs = 5000;

/// Has the characters that the window's texts need, wherever pictures are taken.
const QLatin1String pictureFont("WenQuanYi Micro Hei");

} // namespace

Desk::Desk(const DeskOptions &options)
    : m_options(options)
{}

Desk::~Desk()
{
    if (m_session)
        m_session->channel().close(); // whoever still waits for an answer gets none
    Background::waitForAll();
    m_window.reset();
    m_session.reset();
}

QString Desk::open()
{
    QString errorText = openSession();
    if (errorText.isEmpty() && m_options.marketSpeed >= 0)
        errorText = runMarket();
    if (!errorText.isEmpty())
        return errorText;
    // Connected before the library connects its stop, and so comes first: no query is waited for.
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, qApp, [this] { m_session->channel().close(); });
    const QString gateway = m_gateway ? tr("内嵌网关") : tr("网关 %1").arg(m_options.serverName);
    m_window = std::make_unique<MainWindow>(*m_session, gateway, m_options.isOffscreen ? pictureFont : QString());
    errorText = loadPlugins();
    if (!errorText.isEmpty())
        return errorText;
    m_window->build();
    if (m_options.keepsSettings && !m_options.isOffscreen)
        m_window->keepGeometry();
    m_window->show();
    return {};
}

QString Desk::openGateway()
{
    const Books::Loaded loaded = Books::load(m_options.booksDir());
    if (!loaded.books) {
        QStringList errors;
        for (const BookError &error : loaded.errors)
            errors.append(error.toText());
        return errors.join(QLatin1Char('\n'));
    }
    QString errorText;
    m_gateway = PaperGateway::open(*loaded.books, m_options.state, errorText, m_options.market);
    if (!m_gateway)
        return errorText;
    if (m_options.user.isEmpty() && m_gateway->books().firstManager())
        m_options.user = m_gateway->books().firstManager()->userID;
    return m_options.user.isEmpty() ? tr("账簿中没有管理员，请用 --user 指定登录用户") : QString();
}

std::unique_ptr<MessageChannel> Desk::connectGateway(QString &errorText)
{
    if (m_options.serverName.isEmpty()) {
        errorText = openGateway();
        return errorText.isEmpty() ? std::make_unique<LocalChannel>(m_gateway) : nullptr;
    }
    auto channel = std::make_unique<SocketChannel>(m_options.serverName);
    if (channel->waitForConnected(connectTimeoutMs))
        return channel;
    errorText = tr("网关 %1 没有应答").arg(m_options.serverName);
    return nullptr;
}

QString Desk::openSession()
{
    QString errorText;
    HostConfig config;
    config.channel = connectGateway(errorText);
    if (!config.channel)
        return errorText;
    if (!m_options.script.isEmpty()) {
        auto faults = std::make_unique<FaultChannel>(std::move(config.channel));
        m_faults = faults.get();
        config.channel = std::move(faults);
    }
    if (!m_options.journal.isEmpty()) {
        config.journal = JournalWriter::create(m_options.journal, errorText);
        if (!config.journal)
            return errorText;
    }
    config.user = m_options.user;
    config.settingsDir = m_options.settingsDirOf(m_options.user);
    m_session = HostSession::open(std::move(config), errorText);
    return m_session ? QString() : tr("%1 登录失败：%2").arg(m_options.user, errorText);
}

QString Desk::runMarket() const
{
    const VariantRecord row{{Stand_Fields::Market::command, Stand_Values::MarketCommand::run},
                            {Stand_Fields::Market::speed, m_options.marketSpeed}};
    QString errorText;
    VariantRecord values;
    RecordList rows;
    m_session->request(Stand_MsgType::ExchangeControlRequest, {}, {row}, errorText, values, rows);
    return errorText;
}

QString Desk::loadPlugins() const
{
    QStringList errors;
    const QStringList folders = m_options.allPluginDirs();
    for (const QString &folder : folders) {
        PluginLoader loader;
        const QList<PluginLoader::Plugin> plugins = loader.loadFolder(folder);
        if (plugins.isEmpty())
            errors.append(tr("%1 中没有插件").arg(folder));
        for (const PluginLoader::Plugin &plugin : plugins)
            errors.append(plugin.errorText);
    }
    errors.removeAll(QString());
    return errors.join(QLatin1Char('\n'));
}
