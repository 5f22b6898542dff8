#pragma once

#include "PageShell.h"

#include <QtCore/QPointer>
#include <QtCore/QVector>

/// The commands of the window and of its pages, each an action with a key of the user's choice, which is kept under the
/// command's id. Two commands that can answer in the same place never share a key: who comes later gets none.
class CommandList : public QObject
{
    Q_OBJECT

public:
    struct Command {
        CommandDescription description;
        QPointer<QWidget> context; ///< null: the whole window
        QAction *action = nullptr;

        QKeySequence keys() const;
    };

    explicit CommandList(QWidget *window); ///< window: owns this and the actions without a context

    QAction *add(const CommandDescription &command, QWidget *context, std::function<void()> run);

    const QVector<Command> &commands() const { return m_commands; } ///< in the order added
    const Command *find(const QString &id) const;

    /// The command that has a key and could answer where this one does; null: none.
    const Command *holderOf(const QKeySequence &keys, const QString &forId) const;

    /// Sets and keeps a key that is neither taken nor one of typing and moving; empty keys: the command has none. What
    /// is wrong, empty when it is done.
    QString setKeys(const QString &id, const QKeySequence &keys);

    void restoreDefaults(); ///< of every command

signals:
    void changed();

private:
    const Command *holderOf(const QKeySequence &keys, const Command &wanted) const;
    void assign(const Command &command, const QKeySequence &keys);

    QWidget *m_window;
    QVector<Command> m_commands;
};
