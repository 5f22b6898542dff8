#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtCore/QVector>

/// One argument as it was written.
struct Argument {
    enum class Kind {
        Word,     ///< bare: text holds it; what it means is for the operation to say
        Json,     ///< a quoted text, a list or a record: value holds it
        Reference ///< by reference: value holds what it starts with, invalid for empty
    };

    Kind kind = Kind::Word;
    QString text; ///< as written, for messages
    QVariant value;
};

/// One line of input: a name and its arguments, with spaces between. Empty lines and lines that start with #
/// have no name.
struct CommandLine {
    QString name;
    QVector<Argument> arguments;

    /// False: errorText says what is wrong and at which column, counted from 1.
    static bool parse(const QString &line, CommandLine &command, QString &errorText);
};
