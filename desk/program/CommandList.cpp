#include "CommandList.h"

#include "DeskSettings.h"
#include "HostLog.h"

#include <QtWidgets/QAction>
#include <QtWidgets/QWidget>

#include <algorithm>

namespace {

QString settingOf(const QString &id)
{
    return QStringLiteral("Key.") + id;
}

/// Also true for a key that begins a longer sequence: it would never get there.
bool isSameKey(const QKeySequence &one, const QKeySequence &other)
{
    return !one.isEmpty() && !other.isEmpty() &&
           (one.matches(other) != QKeySequence::NoMatch || other.matches(one) != QKeySequence::NoMatch);
}

bool canMeet(const QWidget *one, const QWidget *other)
{
    return !one || !other || one == other || one->isAncestorOf(other) || other->isAncestorOf(one);
}

/// Without these nobody could type, move or answer a dialog.
bool isReserved(const QKeySequence &keys)
{
    static const QVector<QKeySequence> reserved{Qt::Key_Tab,
                                                Qt::Key_Backtab,
                                                Qt::Key_Return,
                                                Qt::Key_Enter,
                                                Qt::Key_Escape,
                                                Qt::Key_Space,
                                                Qt::Key_Up,
                                                Qt::Key_Down,
                                                Qt::Key_Left,
                                                Qt::Key_Right,
                                                Qt::Key_Home,
                                                Qt::Key_End,
                                                Qt::Key_PageUp,
                                                Qt::Key_PageDown,
                                                Qt::Key_Backspace,
                                                QKeySequence(Qt::CTRL + Qt::Key_A),
                                                QKeySequence(Qt::CTRL + Qt::Key_C),
                                                QKeySequence(Qt::CTRL + Qt::Key_V),
                                                QKeySequence(Qt::CTRL + Qt::Key_X),
                                                QKeySequence(Qt::CTRL + Qt::Key_Z)};
    return reserved.contains(keys);
}

QKeySequence keptKeys(const CommandDescription &command)
{
    const QVariant kept = DeskSettings::value(settingOf(command.id));
    return kept.isValid() ? QKeySequence(kept.toString(), QKeySequence::PortableText) : command.keys;
}

} // namespace

QKeySequence CommandList::Command::keys() const
{
    return action->shortcut();
}

CommandList::CommandList(QWidget *window)
    : QObject(window)
    , m_window(window)
{}

QAction *CommandList::add(const CommandDescription &description, QWidget *context, std::function<void()> run)
{
    QWidget *owner = context ? context : m_window;
    auto *action = new QAction(description.text, owner);
    action->setObjectName(description.id);
    action->setAutoRepeat(false); // a key held down cancels one order, not one after the other
    action->setShortcutContext(context ? Qt::WidgetWithChildrenShortcut : Qt::WindowShortcut);
    connect(action, &QAction::triggered, this, [run = std::move(run)] { run(); });
    connect(action, &QObject::destroyed, this, [this, action] {
        const auto isIts = [action](const Command &command) { return command.action == action; };
        m_commands.erase(std::remove_if(m_commands.begin(), m_commands.end(), isIts), m_commands.end());
    });
    owner->addAction(action);
    m_commands.append({description, context, action});
    assign(m_commands.constLast(), keptKeys(description));
    return action;
}

void CommandList::assign(const Command &command, const QKeySequence &keys)
{
    const Command *holder = holderOf(keys, command);
    if (holder)
        HOST_INFO("Desk", command.description.id << "gets no key:" << holder->description.id << "has" << keys);
    command.action->setShortcut(holder ? QKeySequence() : keys);
}

const CommandList::Command *CommandList::find(const QString &id) const
{
    for (const Command &command : m_commands)
        if (command.description.id == id)
            return &command;
    return nullptr;
}

const CommandList::Command *CommandList::holderOf(const QKeySequence &keys, const QString &forId) const
{
    const Command *wanted = find(forId);
    return wanted ? holderOf(keys, *wanted) : nullptr;
}

const CommandList::Command *CommandList::holderOf(const QKeySequence &keys, const Command &wanted) const
{
    for (const Command &command : m_commands)
        if (command.action != wanted.action && isSameKey(command.keys(), keys) &&
            canMeet(command.context, wanted.context))
            return &command;
    return nullptr;
}

QString CommandList::setKeys(const QString &id, const QKeySequence &keys)
{
    const Command *command = find(id);
    if (!command)
        return tr("没有这个命令：%1").arg(id);
    if (isReserved(keys))
        return tr("%1 留给输入和移动").arg(keys.toString(QKeySequence::NativeText));
    if (const Command *holder = holderOf(keys, *command))
        return tr("%1 已用于“%2”").arg(keys.toString(QKeySequence::NativeText), holder->description.text);
    command->action->setShortcut(keys);
    const bool isDefault = keys == command->description.keys;
    DeskSettings::keep(settingOf(id), isDefault ? QVariant() : keys.toString(QKeySequence::PortableText));
    emit changed();
    return {};
}

void CommandList::restoreDefaults()
{
    // All keys go first, else one that moves back would find its place still taken.
    for (const Command &command : qAsConst(m_commands)) {
        DeskSettings::keep(settingOf(command.description.id), {});
        command.action->setShortcut({});
    }
    for (const Command &command : qAsConst(m_commands))
        assign(command, command.description.keys);
    emit changed();
}
