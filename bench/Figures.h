#pragma once

#include "BenchScale.h"

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QVector>

/// One figure: what an operation costs with few and with many records, and how many times more it may.
struct Figure {
    QString name;
    QString unit;
    double small = 0;
    double large = 0;
    double bar = 0; ///< the highest ratio that is good enough

    double ratio() const { return large / small; }
    bool reached() const { return ratio() <= bar; }
};

namespace Figures {

/// Fills both hubs and measures every operation: times are medians of repetitions in which the sizes alternate.
/// Needs an open host session of Records::reference().
QVector<Figure> times(const BenchScale &scale);

/// The two lookups, from Instructions::count().
QVector<Figure> instructions(const BenchScale &scale, const QMap<QString, double> &counts);

/// An aligned table, a heading and a line a figure. judged: with the verdict on each.
QString table(const BenchScale &scale, const QVector<Figure> &figures, bool judged);

/// Everything the table says, as one JSON object.
QByteArray json(const BenchScale &scale, const QVector<Figure> &figures);

} // namespace Figures
