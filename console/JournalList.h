#pragma once

#include <QtCore/QString>

/// What a journal holds, a line a record, on standard output: number, time, direction, type, rows, and of a request its
/// first row, of an answer its time and what is no success. False: errorText says what is damaged; what came before is
/// listed.
bool listJournal(const QString &path, quint64 until, QString &errorText);
