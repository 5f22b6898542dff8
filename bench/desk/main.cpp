#include "DeskOptions.h"
#include "DeskServer.h"
#include "Heartbeat.h"
#include "MainWindow.h"
#include "MessageChannel.h"
#include "PluginLoader.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QEventLoop>
#include <QtCore/QTextStream>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyleFactory>

namespace {

enum ExitCode { Reached = 0, Missed = 1, NotMeasured = 2 };

constexpr int pushesPerSecond = 2000;
constexpr int beatsPerLateOne = 1000;
constexpr int loadTimeoutMs = 60000;

int complain(const QString &text)
{
    QTextStream(stderr) << "t0-bench-desk: " << text << '\n';
    return NotMeasured;
}

QString loadPlugins()
{
    const QStringList folders = DeskOptions().allPluginDirs();
    for (const QString &folder : folders) {
        const QList<PluginLoader::Plugin> plugins = PluginLoader().loadFolder(folder);
        for (const PluginLoader::Plugin &plugin : plugins) {
            if (!plugin.errorText.isEmpty())
                return plugin.errorText;
        }
    }
    return {};
}

Beats::Result measure(int seconds)
{
    QEventLoop loop;
    const Heartbeat heartbeat;
    QTimer::singleShot(seconds * 1000, &loop, &QEventLoop::quit);
    loop.exec();
    return heartbeat.result();
}

QString line(const QString &page, const QString &beats, const QString &late, const QString &share, const QString &worst)
{
    return page.leftJustified(24) + beats.rightJustified(8) + late.rightJustified(8) + share.rightJustified(12) +
           worst.rightJustified(12) + QLatin1Char('\n');
}

QString line(const QString &page, const Beats::Result &result)
{
    const double share = result.beats > 0 ? double(result.late) / double(result.beats) : 0;
    return line(page, QString::number(result.beats), QString::number(result.late), QString::number(share, 'f', 5),
                QString::number(result.worst));
}

int measurePages(MainWindow &window, DeskServer &server, int seconds)
{
    QTextStream out(stdout);
    out << QStringLiteral(
               "%1 accounts, %2 usage rows, %3 usage and %4 quote pushes a second; a beat every %5 ms, late: "
               "more than %6 ms\n\n")
               .arg(QString::number(DeskServer::Accounts), QString::number(DeskServer::UsageRecords),
                    QString::number(pushesPerSecond), QString::number(pushesPerSecond / 10),
                    QString::number(Beats::IntervalMs), QString::number(Beats::LateMs));
    out << line(QStringLiteral("page"), QStringLiteral("beats"), QStringLiteral("late"), QStringLiteral("share"),
                QStringLiteral("worst ms"));
    Beats::Result all;
    BareThread bare;
    server.startPushing(pushesPerSecond);
    for (const QString &page : window.pageIds()) {
        window.showPage(page);
        const Beats::Result result = measure(seconds);
        out << line(page, result);
        out.flush();
        all = {all.beats + result.beats, all.late + result.late, std::max(all.worst, result.worst)};
    }
    server.stopPushing();
    out << line(QStringLiteral("all"), all) << line(QStringLiteral("a bare thread beside it"), bare.stop())
        << QStringLiteral("\n%1 usage pushes sent; at most 1 late beat in %2: ")
               .arg(server.pushed())
               .arg(beatsPerLateOne)
        << (all.late * beatsPerLateOne <= all.beats ? "reached" : "MISSED") << '\n';
    return all.late * beatsPerLateOne <= all.beats ? Reached : Missed;
}

/// The library's threads end with the event loop, and before the session.
int run(int seconds, bool judged)
{
    DeskServer server;
    const std::unique_ptr<HostSession> session = server.openSession();
    MainWindow window(*session, QStringLiteral("bench"), {});
    const QString errorText = loadPlugins();
    if (!errorText.isEmpty())
        return complain(errorText);
    window.build();
    if (window.pageIds().isEmpty())
        return complain(QStringLiteral("there are no pages"));
    window.resize(1600, 1000);
    window.show();
    QTimer::singleShot(0, &window, [&] {
        const bool isLoaded = session->settle(loadTimeoutMs);
        const int result =
            isLoaded ? measurePages(window, server, seconds) : complain(QStringLiteral("the data have not come"));
        session->channel().close();
        QCoreApplication::exit(judged || !isLoaded ? result : int(Reached));
    });
    return QApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Measures how fluent the desk stays while the server pushes.\n"
                                                    "Exit status: 0 reached, 1 missed, 2 not measured."));
    parser.addHelpOption();
    const QCommandLineOption quick(QStringLiteral("quick"), QStringLiteral("A second a page; nothing is judged."));
    const QCommandLineOption seconds(QStringLiteral("seconds"), QStringLiteral("A page (default 15)."),
                                     QStringLiteral("number"), QStringLiteral("15"));
    parser.addOptions({quick, seconds});
    parser.process(application);
    const int perPage = parser.isSet(quick) ? 1 : parser.value(seconds).toInt();
    if (perPage < 1)
        return complain(QStringLiteral("--seconds must be a number above 0"));
    return run(perPage, !parser.isSet(quick));
}
