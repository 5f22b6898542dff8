#pragma once

#include <QtWidgets/QDialog>

#include <functional>

/// A question before something is sent: what, in one line, and the lines of what comes with it. Goes by itself.
class ConfirmChange : public QDialog
{
    Q_OBJECT

public:
    enum class Enter { Confirms, Cancels }; ///< what it does at first: deletions want another key

    /// Opens at once and returns at once. name: fixed English object name, its buttons are name.ok and name.cancel.
    static void ask(QWidget *parent, const QString &name, const QString &question, const QStringList &details,
                    Enter enter, std::function<void()> confirmed);

private:
    ConfirmChange(QWidget *parent, const QString &name, const QString &question, const QStringList &details,
                  Enter enter);
};
