#pragma once

#include "JournalRecord.h"

#include <QtCore/QByteArray>

/// How records lie in a file: a first line, then for each record the length of its content, the same inverted, the
/// content, and the hash of the hash before it and of the content. The length stands there twice so that a damaged one
/// is not taken for a record that was cut off.
namespace JournalFrame {

constexpr int headBytes = 8;
constexpr int hashBytes = 32;
constexpr quint32 maxContent = 96 * 1024 * 1024; ///< above that of the largest message

QByteArray firstLine();
QByteArray firstHash();
QByteArray nextHash(const QByteArray &hash, const QByteArray &content);

QByteArray head(quint32 length);
bool lengthOf(const QByteArray &head, quint32 &length); ///< false: damaged

QByteArray encode(const JournalRecord &record);
bool decode(const QByteArray &content, JournalRecord &record); ///< false: damaged

} // namespace JournalFrame
