#include "AuditReport.h"
#include "Books.h"
#include "BooksWriter.h"
#include "SampleBooks.h"
#include "SocketServer.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QSocketNotifier>
#include <QtCore/QTextStream>

#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace {

enum ExitCode { Good = 0, Failed = 1, Usage = 2 };

void print(FILE *to, const QString &line)
{
    QTextStream stream(to);
    stream.setCodec("UTF-8");
    stream << line << '\n';
}

int failed(const QString &text)
{
    print(stderr, QStringLiteral("t0-gateway: ") + text);
    return Failed;
}

int initSample(const QString &dir, int scale)
{
    const QString error = BooksWriter::write(SampleBooks::make(scale), dir);
    if (!error.isEmpty())
        return failed(error);
    print(stdout, QStringLiteral("sample books written to %1").arg(dir));
    return Good;
}

QString counts(const Books &books)
{
    const auto count = [](int number, const char *what) {
        return QString::number(number) + QLatin1Char(' ') + QLatin1String(what);
    };
    return QStringList{count(books.instruments.size(), "instruments"),
                       count(books.accounts.size(), "accounts"),
                       count(books.users.size(), "users"),
                       count(books.positions.size(), "positions"),
                       count(books.margin.size(), "margin securities"),
                       count(books.resources.size(), "resources"),
                       count(books.pools.size(), "pools"),
                       count(books.carried.size(), "carried-over legs"),
                       count(books.safety.size(), "traders with safety rules"),
                       count(books.quotes.size(), "quotes")}
        .join(QStringLiteral(", "));
}

int printErrors(const QVector<BookError> &errors)
{
    for (const BookError &error : errors)
        print(stdout, error.toText());
    return Failed;
}

int check(const QString &dir)
{
    const Books::Loaded loaded = Books::load(dir);
    if (!loaded.books)
        return printErrors(loaded.errors);
    print(stdout, QStringLiteral("books are good: ") + counts(*loaded.books));
    return Good;
}

int &signalPipe(int end)
{
    static int ends[2] = {-1, -1};
    return ends[end];
}

/// A signal handler may do next to nothing: it wakes the event loop, which ends it.
void quitOnSignals(QCoreApplication &application)
{
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, ends) != 0)
        qFatal("no socket pair for signals");
    signalPipe(0) = ends[0];
    signalPipe(1) = ends[1];
    const auto wake = [](int) {
        const char byte = 0;
        [[maybe_unused]] const auto written = ::write(signalPipe(0), &byte, 1);
    };
    std::signal(SIGTERM, wake);
    std::signal(SIGINT, wake);
    auto *notifier = new QSocketNotifier(ends[1], QSocketNotifier::Read, &application);
    QObject::connect(notifier, &QSocketNotifier::activated, &application, &QCoreApplication::quit);
}

/// False: a value is no number that it can be; fault says which.
bool readGatewayOptions(const QCommandLineParser &parser, GatewayOptions &options, QString &fault)
{
    bool isSeed = true;
    bool isSlippage = true;
    if (parser.isSet(QStringLiteral("seed")))
        options.seed = parser.value(QStringLiteral("seed")).toULongLong(&isSeed);
    if (parser.isSet(QStringLiteral("slippage")))
        options.slippage = parser.value(QStringLiteral("slippage")).toInt(&isSlippage);
    options.immediate = parser.isSet(QStringLiteral("immediate"));
    if (!isSeed)
        fault = QStringLiteral("--seed must be a whole number from 0 on");
    else if (!isSlippage || options.slippage < 0)
        fault = QStringLiteral("--slippage must be a number of ticks from 0 on");
    return fault.isEmpty();
}

int serve(QCoreApplication &application, const QString &name, const QString &dir, const QString &state,
          const GatewayOptions &options)
{
    quitOnSignals(application);
    const Books::Loaded loaded = Books::load(dir);
    if (!loaded.books)
        return printErrors(loaded.errors);
    QString error;
    const auto gateway = PaperGateway::open(*loaded.books, state, error, options);
    if (!gateway)
        return failed(error);
    SocketServer server(gateway);
    error = server.listen(name);
    if (!error.isEmpty())
        return failed(error);
    print(stdout, QStringLiteral("serving ") + name);
    return application.exec();
}

int usage(const QCommandLineParser &parser, const QString &reason)
{
    print(stderr, QStringLiteral("t0-gateway: %1\n\n%2").arg(reason, parser.helpText()));
    return Usage;
}

/// What the program does, and what may be said about it.
struct Mode {
    QString name;
    QStringList needed;
    QStringList allowed;
};

QVector<Mode> modes()
{
    const auto books = QStringLiteral("books");
    const auto state = QStringLiteral("state");
    return {
        {QStringLiteral("init-sample"), {}, {QStringLiteral("scale")}},
        {QStringLiteral("check"), {}, {}},
        {QStringLiteral("serve"),
         {books},
         {state, QStringLiteral("seed"), QStringLiteral("immediate"), QStringLiteral("slippage")}},
        {QStringLiteral("audit"), {state}, {QStringLiteral("since"), QStringLiteral("user"), QStringLiteral("json")}}};
}

QList<QCommandLineOption> options()
{
    const auto option = [](const char *name, const QString &text, const char *value, const char *otherwise = "") {
        return QCommandLineOption(QString::fromLatin1(name), text, QString::fromLatin1(value),
                                  QString::fromLatin1(otherwise));
    };
    return {option("init-sample", QStringLiteral("Write sample books to a folder."), "DIR"),
            option("scale",
                   QStringLiteral("How many times accounts, securities and pools are there, 1 to %1.")
                       .arg(SampleBooks::maxScale),
                   "N", "1"),
            option("check", QStringLiteral("Check the books of a folder; names every error, changes nothing."), "DIR"),
            option("serve", QStringLiteral("Serve clients on a local socket."), "NAME"),
            option("books", QStringLiteral("The books to serve."), "DIR"),
            option("state", QStringLiteral("Where the state is kept; in memory without it."), "FILE"),
            option("seed", QStringLiteral("Of the paper market; of a state that has one already the same."), "N"),
            option("immediate", QStringLiteral("Fill orders whole as soon as their price is there."), ""),
            option("slippage", QStringLiteral("Fill orders that take this many ticks worse."), "TICKS"),
            option("audit", QStringLiteral("Print who changed what in a state file, and what was refused."), ""),
            option("since", QStringLiteral("Only from this time on: yyyy-MM-dd[Thh:mm[:ss]], UTC."), "TIME"),
            option("user", QStringLiteral("Only what this user did."), "ID"),
            option("json", QStringLiteral("One JSON object a line."), "")};
}

/// Which of the modes is asked for; empty: none, or several.
QString modeOf(const QCommandLineParser &parser)
{
    QStringList asked;
    for (const Mode &mode : modes())
        if (parser.isSet(mode.name))
            asked.append(mode.name);
    return asked.size() == 1 ? asked.constFirst() : QString();
}

/// What is wrong with the options of a mode; empty: nothing.
QString optionFault(const QCommandLineParser &parser, const Mode &mode)
{
    for (const QString &name : mode.needed)
        if (!parser.isSet(name))
            return QStringLiteral("--%1 needs --%2").arg(mode.name, name);
    const QStringList belonging = QStringList{mode.name} + mode.needed + mode.allowed;
    for (const QCommandLineOption &option : options()) {
        const QString name = option.names().constFirst();
        if (!parser.isSet(name))
            continue;
        if (!belonging.contains(name))
            return QStringLiteral("--%1 does not belong to --%2").arg(name, mode.name);
        if (!option.valueName().isEmpty() && parser.value(name).isEmpty())
            return QStringLiteral("--%1 needs a value").arg(name);
    }
    return QString();
}

/// The first thing that is wrong with the arguments; empty: nothing.
QString argumentFault(const QCommandLineParser &parser)
{
    if (!parser.positionalArguments().isEmpty())
        return QStringLiteral("unexpected argument ") + parser.positionalArguments().constFirst();
    for (const Mode &mode : modes())
        if (modeOf(parser) == mode.name)
            return optionFault(parser, mode);
    return QStringLiteral("one of --init-sample, --check, --serve and --audit is needed");
}

int run(QCoreApplication &application, const QCommandLineParser &parser)
{
    const QString mode = modeOf(parser);
    const QString value = parser.value(mode);
    const QString state = parser.value(QStringLiteral("state"));
    if (mode == QLatin1String("check"))
        return check(value);
    if (mode == QLatin1String("serve")) {
        GatewayOptions options;
        QString fault;
        return readGatewayOptions(parser, options, fault)
                   ? serve(application, value, parser.value(QStringLiteral("books")), state, options)
                   : usage(parser, fault);
    }
    if (mode == QLatin1String("audit")) {
        const QString since = parser.value(QStringLiteral("since"));
        if (parser.isSet(QStringLiteral("since")) && !AuditReport::isTime(since))
            return usage(
                parser,
                QStringLiteral("--since: \"%1\" is no time: expected yyyy-MM-dd or yyyy-MM-ddThh:mm[:ss]").arg(since));
        const QString error = AuditReport::print(
            {state, since, parser.value(QStringLiteral("user")), parser.isSet(QStringLiteral("json"))});
        return error.isEmpty() ? Good : failed(error);
    }
    bool isNumber = false;
    const int times = parser.value(QStringLiteral("scale")).toInt(&isNumber);
    if (!isNumber || times < 1 || times > SampleBooks::maxScale)
        return usage(parser, QStringLiteral("--scale must be 1 to %1").arg(SampleBooks::maxScale));
    return initSample(value, times);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("t0-gateway"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("The paper gateway: a trading server without an exchange."));
    const QCommandLineOption help = parser.addHelpOption();
    parser.addOptions(options());
    if (!parser.parse(application.arguments()))
        return usage(parser, parser.errorText());
    if (parser.isSet(help)) {
        print(stdout, parser.helpText());
        return Good;
    }
    const QString fault = argumentFault(parser);
    return fault.isEmpty() ? run(application, parser) : usage(parser, fault);
}
