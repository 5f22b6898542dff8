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

int serve(QCoreApplication &application, const QString &name, const QString &dir, const QString &state)
{
    quitOnSignals(application);
    const Books::Loaded loaded = Books::load(dir);
    if (!loaded.books)
        return printErrors(loaded.errors);
    QString error;
    const auto gateway = PaperGateway::open(*loaded.books, state, error);
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

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("t0-gateway"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("The paper gateway: a trading server without an exchange."));
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption init(QStringLiteral("init-sample"), QStringLiteral("Write sample books to a folder."),
                                  QStringLiteral("DIR"));
    const QCommandLineOption scale(
        QStringLiteral("scale"),
        QStringLiteral("How many times accounts, securities and pools are there, 1 to %1.").arg(SampleBooks::maxScale),
        QStringLiteral("N"), QStringLiteral("1"));
    const QCommandLineOption verify(QStringLiteral("check"),
                                    QStringLiteral("Check the books of a folder; names every error, changes nothing."),
                                    QStringLiteral("DIR"));
    const QCommandLineOption serveAs(QStringLiteral("serve"), QStringLiteral("Serve clients on a local socket."),
                                     QStringLiteral("NAME"));
    const QCommandLineOption booksDir(QStringLiteral("books"), QStringLiteral("The books to serve."),
                                      QStringLiteral("DIR"));
    const QCommandLineOption stateFile(QStringLiteral("state"),
                                       QStringLiteral("Where the state is kept; in memory without it."),
                                       QStringLiteral("FILE"));
    parser.addOptions({init, scale, verify, serveAs, booksDir, stateFile});
    if (!parser.parse(application.arguments()))
        return usage(parser, parser.errorText());
    if (parser.isSet(help)) {
        print(stdout, parser.helpText());
        return Good;
    }
    if (!parser.positionalArguments().isEmpty())
        return usage(parser, QStringLiteral("unexpected argument ") + parser.positionalArguments().constFirst());
    if (int(parser.isSet(init)) + int(parser.isSet(verify)) + int(parser.isSet(serveAs)) != 1)
        return usage(parser, QStringLiteral("one of --init-sample, --check and --serve is needed"));

    bool isNumber = false;
    const int times = parser.value(scale).toInt(&isNumber);
    if (!isNumber || times < 1 || times > SampleBooks::maxScale)
        return usage(parser, QStringLiteral("--scale must be 1 to %1").arg(SampleBooks::maxScale));
    if (parser.isSet(init))
        return initSample(parser.value(init), times);
    if (parser.isSet(verify))
        return check(parser.value(verify));
    if (!parser.isSet(booksDir))
        return usage(parser, QStringLiteral("--serve needs --books"));
    return serve(application, parser.value(serveAs), parser.value(booksDir), parser.value(stateFile));
}
