#pragma once

#include "VariantRecord.h"

#include <QtCore/QVector>

#include <functional>

/// How a cell is written and coloured.
enum class CellKind {
    Text,     ///< as it is
    Code,     ///< a text that looks like a number and is none: "600001" stays so in a spreadsheet
    Quantity, ///< whole shares or bonds, thousands separated
    Price,    ///< with the decimals of the row's symbol
    Money,    ///< two decimals, thousands separated
    Share,    ///< a fraction, shown in percent
    Bar,      ///< a fraction from 0 to 1, drawn as a bar with its percent
    Time      ///< of a text yyyy-MM-dd HH:mm:ss[.zzz] only the time
};

/// One column of a table of records.
struct Column {
    QString id;    ///< fixed English name: of its place and width in the layout
    QString title; ///< as shown
    CellKind kind = CellKind::Text;
    QString field = {}; ///< the host's constant of the field shown; empty: value computes it
    std::function<QVariant(const VariantRecord &row)> value =
        {};                ///< instead of a field; invalid: nothing to show, "--"
    bool isSigned = false; ///< coloured by its sign: rise above 0, fall below, neutral at 0
    int width = 0;         ///< in characters; 0: by the kind
    std::function<int(const VariantRecord &row)> sign = {}; ///< whose sign colours the cell, of what is no number
};

using Columns = QVector<Column>;
