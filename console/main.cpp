#include "Books.h"
#include "ConsoleOptions.h"
#include "Interrupt.h"
#include "JournalList.h"
#include "JournalWriter.h"
#include "Replay.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QTextStream>
#include <QtCore/QTimer>

#include <unistd.h>

namespace {

enum ExitCode { Good = 0, Failed = 1, Usage = 2 };

void print(FILE *to, const QString &text)
{
    QTextStream stream(to);
    stream.setCodec("UTF-8");
    stream << text << '\n';
}

int fail(const QString &errorText)
{
    print(stderr, QStringLiteral("t0-console: ") + errorText);
    return Failed;
}

/// False when the books are bad or the state cannot be opened; the errors are printed.
bool openGateway(ConsoleOptions &options)
{
    const Books::Loaded loaded = Books::load(options.books);
    for (const BookError &error : loaded.errors)
        print(stderr, error.toText());
    if (!loaded.books)
        return false;
    QString errorText;
    options.host.gateway = PaperGateway::open(*loaded.books, options.state, errorText, options.market);
    if (!options.host.gateway)
        fail(errorText);
    return options.host.gateway != nullptr;
}

/// The session's server is a journal from here on; the text of what is wrong with it.
QString openReplay(ConsoleOptions &options, Replay &replay)
{
    QString errorText;
    if (!replay.load(options.replay, options.until, errorText))
        return errorText;
    options.host.user = replay.user();
    options.host.journal = replay.journal();
    options.host.otherServer = [&replay] { return replay.connect(); };
    return {};
}

/// False: it came to a halt. What is to be said of it is printed.
bool runReplay(ConsoleHost &host, Replay &replay)
{
    QString errorText = host.openLibrary();
    if (!errorText.isEmpty()) {
        fail(QStringLiteral("the journal ends before the session was open, or is one of another host: ") + errorText);
        return false;
    }
    errorText = replay.run();
    const QStringList remarks = replay.remarks();
    for (const QString &remark : remarks)
        print(stderr, remark);
    if (!errorText.isEmpty())
        fail(errorText);
    return errorText.isEmpty();
}

/// replay: null when the session has a gateway.
int runScript(QCoreApplication &application, const ConsoleOptions &options, Replay *replay)
{
    QFile file(options.script);
    const bool isOpen = options.script.isEmpty() || file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    if (!isOpen)
        return fail(QStringLiteral("%1: %2").arg(options.script, file.errorString()));
    // Commands run inside exec(): when it returns, aboutToQuit has been sent and has stopped the library's
    // threads, so that the host below closes its session under nobody. The library's later stops, by the
    // application object's end and by static destructors, find nothing left to do. A library that was asked
    // but never started has a thread that waits for work and calls nothing. Hanging up is connected before
    // the library connects its stop, and so comes first: no query is waited for.
    ConsoleHost host(options.host);
    QObject::connect(&application, &QCoreApplication::aboutToQuit, &application, [&host] { host.hangUp(); });
    Commands commands(host);
    Script script(commands, options.script.isEmpty() ? QStringLiteral("<stdin>") : options.script, options.format);
    Interrupt::quitOnSignals(application);
    bool isGood = true;
    QTimer::singleShot(0, &application, [&] {
        isGood = !replay || runReplay(host, *replay);
        if (isGood && !(replay && options.script.isEmpty()))
            return script.read(options.script.isEmpty() ? STDIN_FILENO : file.handle());
        if (isGood)
            script.run("picture\npicture hash\n");
        QCoreApplication::quit();
    });
    application.exec();
    return isGood && !script.hadBadCommand() ? Good : Failed;
}

int run(QCoreApplication &application, ConsoleOptions &options)
{
    QString errorText;
    if (options.list)
        return listJournal(options.replay, options.until, errorText) ? Good : fail(errorText);
    if (!options.replay.isEmpty()) {
        Replay replay;
        errorText = openReplay(options, replay);
        return errorText.isEmpty() ? runScript(application, options, &replay) : fail(errorText);
    }
    if (options.host.serverName.isEmpty() && !openGateway(options))
        return Failed;
    if (!options.journal.isEmpty()) {
        options.host.journal = JournalWriter::create(options.journal, errorText);
        if (!options.host.journal)
            return fail(errorText);
    }
    return runScript(application, options, nullptr);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("t0-console"));
    ConsoleOptions options;
    QString errorText;
    if (!ConsoleOptions::read(application.arguments(), options, errorText)) {
        print(stderr, QStringLiteral("t0-console: %1\n\n%2").arg(errorText, ConsoleOptions::helpText()));
        return Usage;
    }
    if (options.help) {
        print(stdout, ConsoleOptions::helpText());
        return Good;
    }
    return run(application, options);
}
