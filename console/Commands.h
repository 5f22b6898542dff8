#pragma once

#include "ConsoleHost.h"
#include "Operations.h"

/// What a line may ask for: the operations of the facade and the console's own commands.
class Commands
{
public:
    explicit Commands(ConsoleHost &host);

    Outcome run(const CommandLine &command);
    bool isQuit() const; ///< quit was run

    static QStringList names();     ///< of the console's own commands
    static QStringList help();      ///< one line a command
    static QStringList faultable(); ///< message types that a fault may be put on

private:
    struct Own;
    static const QVector<Own> &ownCommands();

    Outcome runOperation(const CommandLine &command);

    Outcome init(const QVector<Argument> &arguments);
    Outcome login(const QVector<Argument> &arguments);
    Outcome wait(const QVector<Argument> &arguments);
    Outcome picture(const QVector<Argument> &arguments);
    Outcome events(const QVector<Argument> &arguments);
    Outcome fault(const QVector<Argument> &arguments);
    Outcome sleep(const QVector<Argument> &arguments);
    Outcome settle(const QVector<Argument> &arguments);
    Outcome echo(const QVector<Argument> &arguments);
    Outcome quit(const QVector<Argument> &arguments);

    // Commands_Market.cpp

    /// A request of the console itself; bad with the server's text.
    Outcome sendToServer(const QString &msgType, const RecordList &asked, VariantRecord &answerValues,
                         RecordList &answerRows);
    Outcome gateway(const QVector<Argument> &arguments);
    Outcome quote(const QVector<Argument> &arguments);
    Outcome push(const QVector<Argument> &arguments);
    Outcome orders(const QVector<Argument> &arguments);
    Outcome fills(const QVector<Argument> &arguments);
    Outcome fate(const QVector<Argument> &arguments);
    Outcome exchange(const QVector<Argument> &arguments);
    Outcome dayChange(const QVector<Argument> &arguments);
    Outcome control(const VariantRecord &row);
    Outcome stepBy(int seconds);
    Outcome as(const QVector<Argument> &arguments);
    // Commands_Safety.cpp
    Outcome safety(const QVector<Argument> &arguments);

    /// Gives orders and fills the columns that people look for, whoever has listed them.
    static void showOrders(const QString &command, Outcome &outcome);

    ConsoleHost &m_host;
    bool m_isQuit = false;
};
