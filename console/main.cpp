#include "Books.h"
#include "Commands.h"
#include "Interrupt.h"
#include "Script.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTextStream>

#include <unistd.h>

namespace {

enum ExitCode { Good = 0, Failed = 1, Usage = 2 };

struct Options {
    QString script; ///< empty: standard input
    QString books;
    QString state;
    GatewayOptions market;
    ConsoleHost::Settings host;
    Script::Format format;
    bool help = false;
};

void print(FILE *to, const QString &text)
{
    QTextStream stream(to);
    stream.setCodec("UTF-8");
    stream << text << '\n';
}

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
                             m_settings, m_json, m_strict});
        m_parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("Commands; without it standard input."),
                                       QStringLiteral("[FILE]"));
    }

    Options read(const QStringList &arguments, QString &errorText)
    {
        Options options;
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
        bool isNumber = false;
        options.host.requestTimeoutMs = m_parser.value(m_timeout).toInt(&isNumber);

        errorText = readMarket(options.market);
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
    const QCommandLineOption m_strict = option("strict", "Stop at the first bad command.");
};

/// False when the books are bad or the state cannot be opened; the errors are printed.
bool openGateway(Options &options)
{
    const Books::Loaded loaded = Books::load(options.books);
    for (const BookError &error : loaded.errors)
        print(stderr, error.toText());
    if (!loaded.books)
        return false;
    QString errorText;
    options.host.gateway = PaperGateway::open(*loaded.books, options.state, errorText, options.market);
    if (!options.host.gateway)
        print(stderr, QStringLiteral("t0-console: ") + errorText);
    return options.host.gateway != nullptr;
}

int runScript(QCoreApplication &application, const Options &options)
{
    QFile file(options.script);
    const bool isOpen = options.script.isEmpty() || file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    if (!isOpen) {
        print(stderr, QStringLiteral("t0-console: %1: %2").arg(options.script, file.errorString()));
        return Failed;
    }
    // Commands run inside exec(): when it returns, aboutToQuit has been sent and has stopped the library's
    // threads, so that the host below closes its session under nobody. The library's later stops, by the
    // application object's end and by static destructors, find nothing left to do. A library that was asked
    // but never started has a thread that waits for work and calls nothing. Hanging up is connected before
    // the library connects its stop, and so comes first: no query is waited for.
    ConsoleHost host(options.host);
    QObject::connect(&application, &QCoreApplication::aboutToQuit, &application, [&host] { host.hangUp(); });
    Commands commands(host);
    Script script(commands, options.script.isEmpty() ? STDIN_FILENO : file.handle(),
                  options.script.isEmpty() ? QStringLiteral("<stdin>") : options.script, options.format);
    Interrupt::quitOnSignals(application);
    application.exec();
    return script.hadBadCommand() ? Failed : Good;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("t0-console"));
    OptionReader reader;
    QString errorText;
    Options options = reader.read(application.arguments(), errorText);
    if (!errorText.isEmpty()) {
        print(stderr, QStringLiteral("t0-console: %1\n\n%2").arg(errorText, reader.helpText()));
        return Usage;
    }
    if (options.help) {
        print(stdout, reader.helpText());
        return Good;
    }
    if (options.host.serverName.isEmpty() && !openGateway(options))
        return Failed;
    return runScript(application, options);
}
