#pragma once

#include <QtCore/QString>

#include <functional>

/// How a change of the facade ended.
struct ChangeOutcome {
    QString code;
    QString text;
    bool isUnknown = false; ///< a request timed out: nobody knows whether it was carried out

    bool isGood() const;
    QString inWords() const; ///< "成功", "结果未知…" or what the server says

    /// Runs change, which blocks. A facade that counts what timed out as failed does not tell; the requests of
    /// msgType that it sent do.
    static ChangeOutcome of(const QString &msgType, const std::function<QString(QString &errorText)> &change);
};
