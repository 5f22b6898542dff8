#include "Desk.h"
#include "DeskStyle.h"
#include "MainWindow.h"
#include "ScriptPlayer.h"

#include <QtCore/QLibraryInfo>
#include <QtCore/QTextStream>
#include <QtCore/QTimer>
#include <QtCore/QTranslator>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMessageBox>

#include <cstdlib>

namespace {

enum ExitCode { Good = 0, Failed = 1, Usage = 2 };

void print(FILE *to, const QString &text)
{
    QTextStream stream(to);
    stream.setCodec("UTF-8");
    stream << text << '\n';
}

QStringList textsOf(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

int explain(int argc, char **argv, const QString &fault)
{
    const QCoreApplication application(argc, argv);
    if (fault.isEmpty())
        print(stdout, DeskOptions::helpText());
    else
        print(stderr, QStringLiteral("t0-desk: %1\n\n%2").arg(fault, DeskOptions::helpText()));
    return fault.isEmpty() ? Good : Usage;
}

bool hasDisplay()
{
    for (const char *variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        if (!qEnvironmentVariableIsEmpty(variable))
            return true;
    return false;
}

/// Qt remarks at every turn what is missing where there is no display; here that is meant.
void messageWithoutDisplay(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (!text.startsWith(QLatin1String("This plugin does not support")) &&
        !text.contains(QLatin1String("XDG_RUNTIME_DIR")))
        print(stderr, qFormatLogMessage(type, context, text));
    if (type == QtFatalMsg)
        std::abort();
}

/// The desk's own texts, and Qt's where they are installed.
void translate(QApplication &application, const QString &language)
{
    auto *ofQt = new QTranslator(&application);
    if (ofQt->load(QLocale(language), QStringLiteral("qtbase"), QStringLiteral("_"),
                   QLibraryInfo::location(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(ofQt);
    auto *own = new QTranslator(&application);
    if (language == QLatin1String("en") && own->load(QStringLiteral(":/translations/t0desk_en.qm")))
        QApplication::installTranslator(own);
}

/// The plug-ins may be at work already: they stop when the event loop ends, so there must be one.
int fail(const DeskOptions &options, const QString &errorText)
{
    if (options.isOffscreen || !options.script.isEmpty())
        print(stderr, QStringLiteral("t0-desk: %1").arg(errorText));
    else
        QMessageBox::critical(nullptr, QStringLiteral("T0"), errorText);
    QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(Failed); });
    return QApplication::exec();
}

int play(Desk &desk, const DeskOptions &options)
{
    ScriptPlayer player(desk.window(), *desk.faults(), options.script, options.shotsDir);
    QString errorText;
    if (!player.start(errorText))
        return fail(options, errorText);
    QObject::connect(&player, &ScriptPlayer::finished, qApp, [](const QString &failure) {
        if (!failure.isEmpty())
            print(stderr, failure);
        QCoreApplication::exit(failure.isEmpty() ? Good : Failed);
    });
    return QApplication::exec();
}

int run(const DeskOptions &options)
{
    Desk desk(options);
    const QString errorText = desk.open();
    if (!errorText.isEmpty())
        return fail(options, errorText);
    return options.script.isEmpty() ? QApplication::exec() : play(desk, options);
}

} // namespace

int main(int argc, char **argv)
{
    DeskOptions options;
    QString fault;
    if (!DeskOptions::read(textsOf(argc, argv), options, fault) || options.isHelp)
        return explain(argc, argv, fault);
    if (options.isOffscreen) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qInstallMessageHandler(messageWithoutDisplay);
    } else if (!hasDisplay()) {
        print(stderr, QStringLiteral("t0-desk: there is no display (DISPLAY and WAYLAND_DISPLAY are not set); "
                                     "--offscreen needs none"));
        return Failed;
    }
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("t0-desk"));
    QApplication::setStyle(new DeskStyle);
    translate(application, options.language);
    return run(options);
}
