#pragma once

#include <QtCore/QString>

/// What the operator asks of the audit.
struct AuditQuestion {
    QString file;
    QString since; ///< a time, UTC; empty: from the first line
    QString user;  ///< empty: everybody
    bool json = false;
};

/// Prints the audit of a state file on the standard output: a table, or one JSON object a line.
namespace AuditReport {

/// Whether a text is yyyy-MM-dd or yyyy-MM-ddThh:mm[:ss].
bool isTime(const QString &text);

/// Empty, or why it could not be printed.
QString print(const AuditQuestion &question);

} // namespace AuditReport
