#pragma once

#include <QtCore/QStringList>

class RecordModel;

/// A text that says how the program stands, for whoever is to help.
namespace Diagnostics {

/// The last rows of a table under a heading, a tab between cells.
QString table(const QString &heading, const RecordModel &model, int last);

/// The last lines of the log.
QString log(int last);

/// Versions, system and user.
QString program();

} // namespace Diagnostics
