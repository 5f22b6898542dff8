#pragma once

#include <QtCore/QStringList>
#include <QtCore/QVector>

/// One command of a script.
struct ScriptLine {
    int number = 0; ///< of the line, from 1
    QString verb;
    QStringList words; ///< what follows, quotes removed
};

/// The commands of a file: one a line, words between blanks, a word or a part of one in double quotes may hold blanks;
/// lines that start with # say nothing.
namespace ScriptFile {

/// False: errorText names file, line and word. A known verb with the right number of words is all that is checked here.
bool read(const QString &fileName, QVector<ScriptLine> &lines, QString &errorText);

/// "FILE:LINE: text"
QString place(const QString &fileName, int line, const QString &text);

} // namespace ScriptFile
