#include "Figures.h"

#include "CpuTimer.h"
#include "Instructions.h"
#include "Lookups.h"

#include <QtCore/QDateTime>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QLocale>
#include <QtCore/QThread>

#include <algorithm>
#include <functional>

namespace {

constexpr double LookupTimeBar = 8;
constexpr double LookupInstructionsBar = 1.3;
constexpr double PushBar = 2.5;
constexpr double PoolAnswerBar = 2.5;

/// Nanoseconds of one operation with this hub. What it needs is made before its own clock starts.
using Measurement = std::function<double(BenchHub &hub)>;

double median(QVector<double> values)
{
    std::sort(values.begin(), values.end());
    const int middle = values.size() / 2;
    return values.size() % 2 ? values.at(middle) : (values.at(middle - 1) + values.at(middle)) / 2;
}

Figure interleaved(const QString &name, double bar, int repetitions, BenchHub &small, BenchHub &large,
                   const Measurement &measure)
{
    measure(small); // the first touch of code and data is no sample
    measure(large);
    QVector<double> ofSmall;
    QVector<double> ofLarge;
    for (int i = 0; i < repetitions; ++i) {
        ofSmall.append(measure(small));
        ofLarge.append(measure(large));
    }
    return {name, QStringLiteral("us"), median(ofSmall) / 1000, median(ofLarge) / 1000, bar};
}

Measurement lookupTime(Lookups::Lookup lookup, int calls)
{
    return [lookup, calls](BenchHub &hub) {
        const QVector<Records::Keys> keys = hub.randomKeys(calls);
        const CpuTimer timer;
        lookup(hub, keys);
        return double(timer.nanoseconds()) / calls;
    };
}

QString number(double value)
{
    return QString::number(value, 'f', value < 100 ? 2 : 0);
}

QString count(int records)
{
    return QLocale(QLocale::English).toString(records);
}

QString line(const QString &name, const QString &unit, const QString &small, const QString &large, const QString &ratio,
             const QString &bar, const QString &verdict)
{
    return name.leftJustified(44) + unit.leftJustified(14) + small.rightJustified(10) + large.rightJustified(12) +
           ratio.rightJustified(9) + bar.rightJustified(9) + QStringLiteral("  ") + verdict + QLatin1Char('\n');
}

QString verdict(const Figure &figure)
{
    return figure.reached() ? QStringLiteral("reached") : QStringLiteral("MISSED");
}

} // namespace

QVector<Figure> Figures::times(const BenchScale &scale)
{
    BenchHub small(scale.small, scale.answeredPools);
    BenchHub large(scale.large, scale.answeredPools);
    const auto figure = [&](const QString &name, double bar, const Measurement &measure) {
        return interleaved(name, bar, scale.repetitions, small, large, measure);
    };
    return {
        figure(QStringLiteral("usage record by its four keys"), LookupTimeBar,
               lookupTime(&Lookups::usageRecords, scale.lookups)),
        figure(QStringLiteral("pool by its trading keys"), LookupTimeBar, lookupTime(&Lookups::pools, scale.lookups)),
        figure(QStringLiteral("one push merged"), PushBar,
               [&scale](BenchHub &hub) { return double(hub.mergePushes(hub.newPushes(scale.pushes))) / scale.pushes; }),
        figure(QStringLiteral("later pool answer for one account"), PoolAnswerBar,
               [&scale](BenchHub &hub) {
                   return double(hub.takePoolAnswers(hub.newPoolAnswers(scale.answers))) / scale.answers;
               }),
    };
}

QVector<Figure> Figures::instructions(const BenchScale &scale, const QMap<QString, double> &counts)
{
    const auto figure = [&](const QString &name, const QString &lookup) -> Figure {
        return {name, QStringLiteral("instructions"), counts.value(Instructions::countedPart(lookup, scale.small)),
                counts.value(Instructions::countedPart(lookup, scale.large)), LookupInstructionsBar};
    };
    return {figure(QStringLiteral("usage record by its four keys"), QStringLiteral("usage")),
            figure(QStringLiteral("pool by its trading keys"), QStringLiteral("pool"))};
}

QString Figures::table(const BenchScale &scale, const QVector<Figure> &figures, bool judged)
{
    QString text = line(QStringLiteral("figure"), QStringLiteral("unit"), count(scale.small), count(scale.large),
                        QStringLiteral("ratio"), QStringLiteral("at most"), QString());
    for (const Figure &figure : figures)
        text += line(figure.name, figure.unit, number(figure.small), number(figure.large), number(figure.ratio()),
                     number(figure.bar), judged ? verdict(figure) : QString());
    return text;
}

QByteArray Figures::json(const BenchScale &scale, const QVector<Figure> &figures)
{
    QJsonArray list;
    for (const Figure &figure : figures)
        list.append(QJsonObject{{QStringLiteral("name"), figure.name},
                                {QStringLiteral("unit"), figure.unit},
                                {QStringLiteral("small"), figure.small},
                                {QStringLiteral("large"), figure.large},
                                {QStringLiteral("ratio"), figure.ratio()},
                                {QStringLiteral("bar"), figure.bar},
                                {QStringLiteral("reached"), figure.reached()}});
    const QJsonObject all{{QStringLiteral("date"), QDateTime::currentDateTimeUtc().toString(Qt::ISODate)},
                          {QStringLiteral("cores"), QThread::idealThreadCount()},
                          {QStringLiteral("smallRecords"), scale.small},
                          {QStringLiteral("largeRecords"), scale.large},
                          {QStringLiteral("fields"), Records::FieldCount},
                          {QStringLiteral("repetitions"), scale.repetitions},
                          {QStringLiteral("figures"), list}};
    return QJsonDocument(all).toJson();
}
