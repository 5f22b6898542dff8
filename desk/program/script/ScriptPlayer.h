#pragma once

#include "ScriptFile.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QTimer>

#include <functional>

class FaultChannel;
class MainWindow;

/// Plays a script in the running window, one command a turn of the event loop. The first that fails ends it, with a
/// picture of what was there then.
class ScriptPlayer : public QObject
{
    Q_OBJECT

public:
    /// shotsDir: where pictures go; empty: none are saved.
    ScriptPlayer(MainWindow &window, FaultChannel &faults, const QString &fileName, const QString &shotsDir);

    /// False: the script cannot be read, errorText says why.
    bool start(QString &errorText);

signals:
    void finished(const QString &errorText); ///< empty: every command was carried out

private:
    using Action = std::function<QString(const QStringList &words)>;
    enum class Progress { Done, Again };

    void addActions();
    void addExpectations();
    void step();
    Progress carryOut(const ScriptLine &line, QString &errorText);
    Progress settle(QString &errorText);
    Progress until(const ScriptLine &line, QString &errorText);
    void next(int afterMs);
    void end(const QString &errorText);
    QString shot(const QString &name);

    MainWindow &m_window;
    FaultChannel &m_faults;
    const QString m_fileName;
    const QString m_shotsDir;
    QHash<QString, Action> m_actions;
    QHash<QString, Action> m_expectations;
    QVector<ScriptLine> m_lines;
    int m_at = 0;
    int m_quiet = 0;       ///< how often in a row settling has found nothing to do
    QElapsedTimer m_clock; ///< since the command began
    QTimer m_timer;
};
