#include "ConsoleOptions.h"

#include "Books.h"
#include "Commands.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QDir>

namespace {

/// A folder from the environment, else one that is named as seen from the program's own.
QString folder(const char *variable, const QString &fromProgram)
{
    const QString given = qEnvironmentVariable(variable);
    return given.isEmpty() ? QDir::cleanPath(QCoreApplication::applicationDirPath() + QLatin1Char('/') + fromProgram)
                           : given;
}

/// What the command line says, or in errorText why it cannot be understood.
class OptionReader
{
public:
    OptionReader()
    {
        m_parser.setApplicationDescription(QStringLiteral("A host without a window for the ManualT0Logic plug-in.\n"
                                                          "Commands, one a line, beside the facade's operations:\n  ") +
                                           Commands::help().join(QStringLiteral("\n  ")));
        m_parser.addOptions({m_help, m_books, m_state, m_seed, m_immediate, m_slippage, m_connect, m_user, m_timeout,
                             m_settings, m_json, m_strict, m_journal, m_replay, m_until, m_list});
        m_parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("Commands; without it standard input."),
                                       QStringLiteral("[FILE]"));
    }

    ConsoleOptions read(const QStringList &arguments, QString &errorText)
    {
        ConsoleOptions options;
        if (!m_parser.parse(arguments)) {
            errorText = m_parser.errorText();
            return options;
        }
        options.help = m_parser.isSet(m_help);
        options.script = m_parser.positionalArguments().value(0);
        options.books =
            m_parser.isSet(m_books) ? m_parser.value(m_books) : folder("T0_BOOKS", QStringLiteral(T0_SAMPLE_BOOKS));
        options.state = m_parser.value(m_state);
        options.host.serverName = m_parser.value(m_connect);
        options.host.user = m_parser.value(m_user);
        options.host.settingsDir = m_parser.value(m_settings);
        options.host.pluginDir = folder("T0_PLUGIN_DIR", QStringLiteral("../lib/plugins"));
        options.format = {m_parser.isSet(m_json), m_parser.isSet(m_strict)};
        options.journal = m_parser.value(m_journal);
        options.replay = m_parser.value(m_replay);
        options.list = m_parser.isSet(m_list);
        bool isNumber = false;
        options.host.requestTimeoutMs = m_parser.value(m_timeout).toInt(&isNumber);

        errorText = readMarket(options.market);
        if (errorText.isEmpty())
            errorText = readReplay(options.until);
        if (!errorText.isEmpty())
            return options;
        if (m_parser.positionalArguments().size() > 1)
            errorText = QStringLiteral("one file of commands at most");
        else if (!isNumber || options.host.requestTimeoutMs < 1)
            errorText = QStringLiteral("--timeout must be a number of milliseconds above 0");
        else if (m_parser.isSet(m_connect) && isEmbeddedWanted())
            errorText =
                QStringLiteral("--books, --state, --seed, --immediate and --slippage are the embedded gateway's, "
                               "--connect needs none");
        else if (m_parser.isSet(m_user) && options.host.user.isEmpty())
            errorText = QStringLiteral("--user needs an id");
        else if (m_parser.isSet(m_connect) && options.host.serverName.isEmpty())
            errorText = QStringLiteral("--connect needs a name");
        return options;
    }

    QString helpText() const { return m_parser.helpText(); }

private:
    bool isEmbeddedWanted() const
    {
        return m_parser.isSet(m_books) || m_parser.isSet(m_state) || m_parser.isSet(m_seed) ||
               m_parser.isSet(m_immediate) || m_parser.isSet(m_slippage);
    }

    /// How far a journal is replayed; empty, or what is wrong.
    QString readReplay(quint64 &until) const
    {
        const bool isReplay = m_parser.isSet(m_replay);
        for (const QCommandLineOption &file : {m_journal, m_replay})
            if (m_parser.isSet(file) && m_parser.value(file).isEmpty())
                return QStringLiteral("--%1 needs a file").arg(file.names().constFirst());
        if (!isReplay && (m_parser.isSet(m_until) || m_parser.isSet(m_list)))
            return QStringLiteral("--until and --list go with --replay");
        if (isReplay &&
            (isEmbeddedWanted() || m_parser.isSet(m_connect) || m_parser.isSet(m_user) || m_parser.isSet(m_journal)))
            return QStringLiteral("--replay knows server and user from its journal, and writes none");
        bool isNumber = true;
        if (m_parser.isSet(m_until))
            until = m_parser.value(m_until).toULongLong(&isNumber);
        return isNumber && until > 0 ? QString() : QStringLiteral("--until must be the number of a record, from 1 on");
    }

    /// What the options say of the embedded gateway's market; empty, or what is wrong with them.
    QString readMarket(GatewayOptions &market) const
    {
        bool isNumber = true;
        if (m_parser.isSet(m_seed))
            market.seed = m_parser.value(m_seed).toULongLong(&isNumber);
        if (!isNumber)
            return QStringLiteral("--seed must be a whole number from 0 on");
        market.immediate = m_parser.isSet(m_immediate);
        if (m_parser.isSet(m_slippage))
            market.slippage = m_parser.value(m_slippage).toInt(&isNumber);
        return isNumber && market.slippage >= 0 ? QString()
                                                : QStringLiteral("--slippage must be a number of ticks from 0 on");
    }

    static QCommandLineOption option(const char *name, const char *description, const char *value = nullptr,
                                     const char *byDefault = nullptr)
    {
        return QCommandLineOption(QString::fromLatin1(name), QString::fromLatin1(description),
                                  QString::fromLatin1(value), QString::fromLatin1(byDefault));
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
    const QCommandLineOption m_connect = option("connect", "Use the gateway that serves NAME instead.", "NAME");
    const QCommandLineOption m_user = option("user", "Who logs in; default: the first manager of the books.", "ID");
    const QCommandLineOption m_timeout = option("timeout", "Time-out of a request, default 5000.", "MS", "5000");
    const QCommandLineOption m_settings = option("settings", "Where settings are kept; in memory without it.", "DIR");
    const QCommandLineOption m_json = option("json", "Print one JSON object a command.");
    const QCommandLineOption m_journal =
        option("journal", "Take down every message in FILE, which must not be there yet.", "FILE");
    const QCommandLineOption m_replay =
        option("replay",
               "Bring a fresh library to where that of a journal was, without any gateway; then the picture and its "
               "hash are printed, or the commands of [FILE] are run.",
               "FILE");
    const QCommandLineOption m_until = option("until", "Replay as far as the record of this number.", "N");
    const QCommandLineOption m_list = option("list", "Do not replay, say what is in the journal.");
    const QCommandLineOption m_strict = option("strict", "Stop at the first bad command.");
};

} // namespace

bool ConsoleOptions::read(const QStringList &arguments, ConsoleOptions &options, QString &errorText)
{
    options = OptionReader().read(arguments, errorText);
    return errorText.isEmpty();
}

QString ConsoleOptions::helpText()
{
    return OptionReader().helpText();
}
