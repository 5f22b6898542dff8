#include "Figures.h"
#include "Instructions.h"
#include "Records.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QTextStream>

#include <algorithm>

namespace {

constexpr int Reached = 0;
constexpr int Missed = 1;
constexpr int NotMeasured = 2;

struct Options {
    QCommandLineOption quick{QStringLiteral("quick"), QStringLiteral("Few records and repetitions, to see that "
                                                                     "the program works; no figure is judged.")};
    QCommandLineOption json{QStringLiteral("json"), QStringLiteral("Writes the numbers to <file> too."),
                            QStringLiteral("file")};
    QCommandLineOption repetitions{QStringLiteral("repetitions"),
                                   QStringLiteral("Repetitions of every time measurement, at least 5 (default 7)."),
                                   QStringLiteral("number")};
    QCommandLineOption noInstructions{QStringLiteral("no-instructions"),
                                      QStringLiteral("Leaves out the instructions, which need valgrind; "
                                                     "their two figures are then not judged.")};
    QCommandLineOption count{QStringLiteral("count"),
                             QStringLiteral("What the program runs under valgrind: lookups among <records>."),
                             QStringLiteral("records")};
    QCommandLineOption calls{QStringLiteral("calls"), QStringLiteral("With --count: the number of lookups."),
                             QStringLiteral("number"), QStringLiteral("2000")};
};

int complain(const QString &text)
{
    QTextStream(stderr) << "t0-bench: " << text << '\n';
    return NotMeasured;
}

void printTable(const BenchScale &scale, const QVector<Figure> &figures, bool counted, bool judged)
{
    QTextStream out(stdout);
    out << QStringLiteral(
               "records of %1 fields, random keys; processor time, medians of %2 repetitions, both sizes in turn\n")
               .arg(QString::number(Records::FieldCount), QString::number(scale.repetitions));
    if (counted)
        out << "instructions of one lookup, counted by valgrind --tool=callgrind in a run of its own\n";
    out << '\n' << Figures::table(scale, figures, judged);
}

int writeJson(const QString &fileName, const QByteArray &json)
{
    QFile file(fileName);
    if (file.open(QIODevice::WriteOnly) && file.write(json) == json.size())
        return Reached;
    return complain(QStringLiteral("%1: %2").arg(fileName, file.errorString()));
}

int run(const BenchScale &scale, bool counted, const QString &jsonFile, bool judged)
{
    QVector<Figure> figures = Figures::times(scale);
    if (counted) {
        QString errorText;
        const QMap<QString, double> counts = Instructions::count(scale, errorText);
        if (!errorText.isEmpty())
            return complain(errorText);
        figures += Figures::instructions(scale, counts);
    }
    printTable(scale, figures, counted, judged);
    if (!jsonFile.isEmpty() && writeJson(jsonFile, Figures::json(scale, figures)) != Reached)
        return NotMeasured;
    const bool allReached = std::all_of(figures.cbegin(), figures.cend(), [](const Figure &f) { return f.reached(); });
    return allReached || !judged ? Reached : Missed;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const Options options;
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Measures how the cost of lookups, pushes and pool answers grows with the number of records.\n"
                       "Exit status: 0 every figure is reached, 1 one is missed, 2 not measured."));
    parser.addHelpOption();
    parser.addOptions(
        {options.quick, options.json, options.repetitions, options.noInstructions, options.count, options.calls});
    parser.process(application);

    const bool quick = parser.isSet(options.quick);
    BenchScale scale = quick ? BenchScale::quick() : BenchScale();
    if (parser.isSet(options.repetitions))
        scale.repetitions = parser.value(options.repetitions).toInt();
    if (scale.repetitions < (quick ? 1 : 5))
        return complain(QStringLiteral("--repetitions must be a number of at least 5"));

    ScriptedChannel *channel = nullptr;
    const std::unique_ptr<HostSession> session = Records::reference().open(channel);
    if (parser.isSet(options.count)) {
        const int records = parser.value(options.count).toInt();
        const int calls = parser.value(options.calls).toInt();
        if (records < 1 || calls < 1)
            return complain(QStringLiteral("--count and --calls must be numbers above 0"));
        Instructions::runCounted(records, calls);
        return Reached;
    }
    return run(scale, !parser.isSet(options.noInstructions), parser.value(options.json), !quick);
}
