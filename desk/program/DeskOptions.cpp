#include "DeskOptions.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QDir>
#include <QtCore/QStandardPaths>
#include <QtCore/QUrl>

namespace {

QCommandLineOption option(const char *name, const char *description, const char *value = "")
{
    return QCommandLineOption(QString::fromLatin1(name), QString::fromLatin1(description), QString::fromLatin1(value));
}

/// The options and what they mean.
class Reader
{
public:
    Reader()
    {
        m_parser.setApplicationDescription(QStringLiteral("The window for manual T0 trading."));
        m_parser.addOptions({m_help, m_books, m_state, m_seed, m_immediate, m_slippage, m_market, m_connect, m_user,
                             m_settings, m_journal, m_lang, m_plugins, m_offscreen, m_script, m_shots});
    }

    QString read(const QStringList &arguments, DeskOptions &options)
    {
        if (!m_parser.parse(arguments))
            return m_parser.errorText();
        options.isHelp = m_parser.isSet(m_help);
        options.books = m_parser.value(m_books);
        options.state = m_parser.value(m_state);
        options.serverName = m_parser.value(m_connect);
        options.user = m_parser.value(m_user);
        options.settingsDir = m_parser.value(m_settings);
        options.pluginDirs = m_parser.values(m_plugins);
        options.journal = m_parser.value(m_journal);
        options.script = m_parser.value(m_script);
        options.shotsDir = m_parser.value(m_shots);
        options.isOffscreen = m_parser.isSet(m_offscreen);
        // A script finds the same window everywhere, unless it is told where settings are.
        options.keepsSettings = options.script.isEmpty() || m_parser.isSet(m_settings);
        if (m_parser.isSet(m_lang))
            options.language = m_parser.value(m_lang);
        const QString fault = readMarket(options);
        return fault.isEmpty() ? faultOf(options) : fault;
    }

    QString helpText() const { return m_parser.helpText(); }

private:
    QString readMarket(DeskOptions &options) const
    {
        bool isNumber = true;
        if (m_parser.isSet(m_seed))
            options.market.seed = m_parser.value(m_seed).toULongLong(&isNumber);
        if (!isNumber)
            return QStringLiteral("--seed must be a whole number from 0 on");
        options.market.immediate = m_parser.isSet(m_immediate);
        if (m_parser.isSet(m_slippage))
            options.market.slippage = m_parser.value(m_slippage).toInt(&isNumber);
        if (!isNumber || options.market.slippage < 0)
            return QStringLiteral("--slippage must be a number of ticks from 0 on");
        if (m_parser.isSet(m_market))
            options.marketSpeed = m_parser.value(m_market).toInt(&isNumber);
        return isNumber && options.marketSpeed >= -1 ? QString()
                                                     : QStringLiteral("--market must be a whole number from 0 on");
    }

    QString faultOf(const DeskOptions &options) const
    {
        const bool isEmbeddedWanted = m_parser.isSet(m_books) || m_parser.isSet(m_state) || m_parser.isSet(m_seed) ||
                                      m_parser.isSet(m_immediate) || m_parser.isSet(m_slippage);
        if (!m_parser.positionalArguments().isEmpty())
            return QStringLiteral("\"%1\" is no option").arg(m_parser.positionalArguments().constFirst());
        for (const QCommandLineOption &given :
             {m_books, m_state, m_connect, m_user, m_settings, m_journal, m_plugins, m_script})
            if (m_parser.isSet(given) && m_parser.value(given).isEmpty())
                return QStringLiteral("--%1 needs a value").arg(given.names().constFirst());
        if (m_parser.isSet(m_connect) && isEmbeddedWanted)
            return QStringLiteral("--books, --state, --seed, --immediate and --slippage are the embedded gateway's, "
                                  "--connect needs none");
        if (m_parser.isSet(m_connect) && options.user.isEmpty())
            return QStringLiteral("--connect needs --user: only the gateway knows who there is");
        if (options.language != QLatin1String("zh") && options.language != QLatin1String("en"))
            return QStringLiteral("--lang is zh or en, not \"%1\"").arg(options.language);
        return {};
    }

    QCommandLineParser m_parser;
    const QCommandLineOption m_help = option("help", "Show this text.");
    const QCommandLineOption m_books = option("books", "Books of the embedded gateway; default: the sample.", "DIR");
    const QCommandLineOption m_state = option("state", "Where its state is kept; in memory without it.", "FILE");
    const QCommandLineOption m_seed = option("seed", "Of its market; in a state that has one the same.", "N");
    const QCommandLineOption m_immediate =
        option("immediate", "It fills orders whole as soon as their price is there.");
    const QCommandLineOption m_slippage =
        option("slippage", "It fills orders that take this many ticks worse.", "TICKS");
    const QCommandLineOption m_market =
        option("market", "The paper market runs from the start, this many times as fast as a real one.", "SPEED");
    const QCommandLineOption m_connect = option("connect", "Use the gateway that serves NAME instead.", "NAME");
    const QCommandLineOption m_user = option("user", "Who logs in; default: the first manager of the books.", "ID");
    const QCommandLineOption m_settings =
        option("settings", "Where settings are kept, a folder a user; with --script in memory without it.", "DIR");
    const QCommandLineOption m_journal =
        option("journal", "Take down every message in a new file, for t0-console --replay.", "FILE");
    const QCommandLineOption m_lang = option("lang", "Language of the window: zh (default) or en.", "LANGUAGE");
    const QCommandLineOption m_plugins =
        option("plugins", "A folder of plug-ins, one or more, in place of the library's and the pages'.", "DIR");
    const QCommandLineOption m_offscreen = option("offscreen", "Needs no display.");
    const QCommandLineOption m_script = option("script", "Play the commands of a file, then end.", "FILE");
    const QCommandLineOption m_shots = option("shots", "Where the script's pictures are saved.", "DIR");
};

QString fromProgram(const char *folder)
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QLatin1Char('/') + QString::fromUtf8(folder));
}

} // namespace

bool DeskOptions::read(const QStringList &arguments, DeskOptions &options, QString &errorText)
{
    errorText = Reader().read(arguments, options);
    return errorText.isEmpty();
}

QString DeskOptions::helpText()
{
    return Reader().helpText();
}

QString DeskOptions::booksDir() const
{
    const QString given = books.isEmpty() ? qEnvironmentVariable("T0_BOOKS") : books;
    return given.isEmpty() ? fromProgram(T0_SAMPLE_BOOKS) : given;
}

QStringList DeskOptions::allPluginDirs() const
{
    const QStringList own{fromProgram("../lib/plugins"), fromProgram("../lib/pages")};
    return pluginDirs.isEmpty() ? own : pluginDirs;
}

QString DeskOptions::settingsDirOf(const QString &userId) const
{
    if (!keepsSettings)
        return {};
    const QString all =
        settingsDir.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation) : settingsDir;
    // Percent-encoded: an id may hold what is no part of a folder's name.
    return QDir(all).filePath(QString::fromLatin1(QUrl::toPercentEncoding(userId)));
}
