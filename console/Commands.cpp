#include "Commands.h"

#include "CommandReader.h"
#include "Interrupt.h"
#include "JsonText.h"
#include "ManualT0Logic.h"
#include "MasterMsgType.h"
#include "OrvaneFields.h"
#include "OrvaneValues.h"
#include "Picture.h"
#include "StandFields.h"
#include "StandMsgType.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QTextStream>
#include <QtCore/QThread>

#include <climits>

namespace {

constexpr int defaultWaitMs = 10000;
constexpr int interruptCheckMs = 50;
constexpr int everyTime = -1;

/// "0,2,5" to numbers; empty and errorText when it is no list of families.
QList<int> familiesOf(const QString &text, QString &errorText)
{
    QList<int> families;
    const QStringList parts = text.split(QLatin1Char(','));
    for (const QString &part : parts) {
        bool isNumber = false;
        const int family = part.toInt(&isNumber);
        if (!isNumber || family < 0 || family >= Picture::familyCount) {
            errorText =
                QStringLiteral("argument 2: families are expected, 0 to 5 with \",\" between, not %1").arg(text);
            return {};
        }
        families.append(family);
    }
    return families;
}

QString describe(const QList<int> &families)
{
    QStringList texts;
    for (const int family : families)
        texts.append(QStringLiteral("%1 (%2)").arg(QString::number(family), Picture::familyName(family)));
    return texts.join(QStringLiteral(", "));
}

bool isPush(const QString &msgType)
{
    return msgType.endsWith(QLatin1String("Push"));
}

QString unknown(const QString &what, const QString &name, const QStringList &candidates)
{
    const QString nearest = nearestName(name, candidates);
    return nearest.isEmpty() ? QStringLiteral("unknown %1 %2").arg(what, name)
                             : QStringLiteral("unknown %1 %2, did you mean %3?").arg(what, name, nearest);
}

} // namespace

struct Commands::Own {
    const char *name;
    const char *usage;
    int least; ///< arguments
    int most;
    Outcome (Commands::*run)(const QVector<Argument> &);
};

const QVector<Commands::Own> &Commands::ownCommands()
{
    static const QVector<Own> own = {
        {"init", "init", 0, 0, &Commands::init},
        {"login", "login USER", 1, 1, &Commands::login},
        {"wait", "wait inited FAMILY,… [MS]", 2, 3, &Commands::wait},
        {"picture", "picture [hash]", 0, 1, &Commands::picture},
        {"gateway", "gateway picture", 1, 1, &Commands::gateway},
        {"events", "events", 0, 0, &Commands::events},
        {"quote", "quote SYMBOL PRICE", 2, 2, &Commands::quote},
        {"push", "push {RECORD}", 1, 1, &Commands::push},
        {"orders", "orders [{FILTER}]", 0, 1, &Commands::orders},
        {"fills", "fills [{FILTER}]", 0, 1, &Commands::fills},
        {"fate", "fate REQUESTID", 1, 1, &Commands::fate},
        {"exchange", "exchange status|step [N]|hold|run [SPEED]", 1, 2, &Commands::exchange},
        {"safety", "safety [TRADER [active|reduce|halt|{RULES}]]", 0, 2, &Commands::safety},
        {"day-change", "day-change", 0, 0, &Commands::dayChange},
        {"fault", "fault MSGTYPE fail|timeout|delay MS|truncate PAGE|duplicate|lose [TIMES]", 2, 4, &Commands::fault},
        {"sleep", "sleep MS", 1, 1, &Commands::sleep},
        {"settle", "settle [MS]", 0, 1, &Commands::settle},
        {"as", "as USER COMMAND…", 2, INT_MAX, &Commands::as},
        {"echo", "echo TEXT…", 0, INT_MAX, &Commands::echo},
        {"quit", "quit", 0, 0, &Commands::quit},
    };
    return own;
}

Commands::Commands(ConsoleHost &host)
    : m_host(host)
{}

bool Commands::isQuit() const
{
    return m_isQuit;
}

QStringList Commands::names()
{
    QStringList names;
    for (const Own &own : ownCommands())
        names.append(QString::fromLatin1(own.name));
    return names;
}

QStringList Commands::help()
{
    QStringList lines;
    for (const Own &own : ownCommands())
        lines.append(QString::fromUtf8(own.usage));
    return lines;
}

Outcome Commands::run(const CommandLine &command)
{
    for (const Own &own : ownCommands()) {
        if (command.name != QLatin1String(own.name))
            continue;
        const int count = command.arguments.size();
        if (count < own.least || count > own.most)
            return bad(QStringLiteral("wrong number of arguments, %1: %2")
                           .arg(QString::number(count), QString::fromUtf8(own.usage)));
        return (this->*own.run)(command.arguments);
    }
    return runOperation(command);
}

Outcome Commands::runOperation(const CommandLine &command)
{
    QString errorText;
    const Operation *operation = findOperation(command, errorText);
    if (!operation && errorText.isEmpty()) {
        QStringList candidates = names();
        for (const Operation &other : facadeOperations())
            candidates.append(other.name);
        return bad(unknown(QStringLiteral("command"), command.name, candidates));
    }
    if (operation)
        errorText = m_host.openLibrary();
    if (!errorText.isEmpty())
        return bad(errorText);
    if (operation->name == QLatin1String("InitData"))
        m_host.events().startClock();
    Outcome outcome = operation->call(command.arguments);
    showOrders(operation->name, outcome);
    m_host.events().noteLoading();
    return outcome;
}

Outcome Commands::init(const QVector<Argument> &)
{
    return runOperation({QStringLiteral("InitData"), {}});
}

Outcome Commands::login(const QVector<Argument> &arguments)
{
    Reader reader(arguments);
    const QString user = reader.get<QString>(0);
    return bad(reader.errorText.isEmpty() ? m_host.login(user) : reader.errorText);
}

Outcome Commands::wait(const QVector<Argument> &arguments)
{
    Reader reader(arguments);
    const QString what = reader.get<QString>(0);
    const QString families = reader.get<QString>(1);
    const int timeoutMs = reader.atLeast(0, 2, defaultWaitMs);
    if (reader.errorText.isEmpty() && what != QLatin1String("inited"))
        reader.errorText = QStringLiteral("argument 1: inited is expected, not %1").arg(what);
    const QList<int> wanted = reader.errorText.isEmpty() ? familiesOf(families, reader.errorText) : QList<int>();
    if (!reader.errorText.isEmpty())
        return bad(reader.errorText);
    if (!m_host.isLibraryOpen())
        return bad(QStringLiteral("nothing is being loaded: init comes first"));

    const QList<int> missing = m_host.events().waitForInited(wanted, timeoutMs);
    if (!missing.isEmpty())
        return bad(QStringLiteral("not loaded %1: %2")
                       .arg(Interrupt::requested() ? QStringLiteral("when the program was told to end")
                                                   : QStringLiteral("within %1 ms").arg(timeoutMs),
                            describe(missing)));
    Outcome outcome;
    QVariantList done;
    for (const int family : wanted)
        done.append(family);
    outcome.result = done;
    outcome.text = QStringLiteral("inited ") + families;
    return outcome;
}

Outcome Commands::picture(const QVector<Argument> &arguments)
{
    Reader reader(arguments);
    const QString what = reader.get<QString>(0);
    if (reader.errorText.isEmpty() && !arguments.isEmpty() && what != QLatin1String("hash"))
        reader.errorText = QStringLiteral("argument 1: hash is expected, not %1").arg(what);
    const QString errorText = reader.errorText.isEmpty() ? m_host.openLibrary() : reader.errorText;
    if (!errorText.isEmpty())
        return bad(errorText);
    if (!arguments.isEmpty())
        return Picture::hash();
    QTextStream errorStream(stderr);
    const QMap<int, qint64> times = m_host.events().loadTimes();
    for (auto time = times.cbegin(); time != times.cend(); ++time)
        errorStream << describe({time.key()}) << ": " << time.value() << " ms since init\n";
    return Picture::take();
}

Outcome Commands::events(const QVector<Argument> &)
{
    QVariantList list;
    QStringList lines;
    const QVector<EventRecorder::Event> events = m_host.events().take();
    for (const EventRecorder::Event &event : events) {
        list.append(QVariantMap{{QStringLiteral("event"), event.name}, {QStringLiteral("payload"), event.payload}});
        lines.append(event.name + QLatin1Char(' ') + jsonText(event.payload));
    }
    Outcome outcome;
    outcome.result = list;
    outcome.text = lines.isEmpty() ? QStringLiteral("no events") : lines.join(QLatin1Char('\n'));
    return outcome;
}

Outcome Commands::fault(const QVector<Argument> &arguments)
{
    Reader reader(arguments);
    const QString msgType = reader.get<QString>(0);
    const QString name = reader.get<QString>(1);
    if (!reader.errorText.isEmpty())
        return bad(reader.errorText);
    if (!faultable().contains(msgType))
        return bad(unknown(QStringLiteral("message type"), msgType, faultable()));
    FaultChannel::Fault fault = FaultChannel::Fault::Fail;
    if (!FaultChannel::faultOfName(name, fault))
        return bad(unknown(QStringLiteral("fault"), name,
                           {QStringLiteral("fail"), QStringLiteral("timeout"), QStringLiteral("delay"),
                            QStringLiteral("truncate"), QStringLiteral("duplicate"), QStringLiteral("lose")}));

    if (fault == FaultChannel::Fault::Truncate && isPush(msgType))
        return bad(QStringLiteral("truncate strikes paged queries, %1 is a push").arg(msgType));
    const bool hasArgument = fault == FaultChannel::Fault::Delay || fault == FaultChannel::Fault::Truncate;
    const int timesAt = hasArgument ? 3 : 2;
    if (arguments.size() < timesAt || arguments.size() > timesAt + 1)
        return bad(QStringLiteral("%1 takes %2")
                       .arg(name, hasArgument ? QStringLiteral("a number and how many times")
                                              : QStringLiteral("at most how many times")));
    const int argument = hasArgument ? reader.atLeast(0, 2) : 0;
    const int times = reader.atLeast(1, timesAt, everyTime);
    FaultChannel *channel = reader.errorText.isEmpty() ? m_host.faults(reader.errorText) : nullptr;
    if (channel)
        channel->addFault(msgType, fault, argument, times);
    return bad(reader.errorText);
}

Outcome Commands::sleep(const QVector<Argument> &arguments)
{
    Reader reader(arguments);
    const QDeadlineTimer deadline(reader.atLeast(0, 0));
    while (reader.errorText.isEmpty() && !deadline.hasExpired() && !Interrupt::requested())
        QThread::msleep(ulong(qBound(qint64(1), deadline.remainingTime(), qint64(interruptCheckMs))));
    return bad(reader.errorText);
}

Outcome Commands::settle(const QVector<Argument> &arguments)
{
    Reader reader(arguments);
    const int timeoutMs = reader.atLeast(0, 0, defaultWaitMs);
    if (reader.errorText.isEmpty() && HostSession::current() && !HostSession::current()->settle(timeoutMs))
        reader.errorText = QStringLiteral("not settled within %1 ms").arg(timeoutMs);
    return bad(reader.errorText);
}

Outcome Commands::echo(const QVector<Argument> &arguments)
{
    QStringList texts;
    for (const Argument &argument : arguments)
        texts.append(argument.kind == Argument::Kind::Json && argument.value.userType() == QMetaType::QString
                         ? argument.value.toString()
                         : argument.text);
    Outcome outcome;
    outcome.result = texts.join(QLatin1Char(' '));
    return outcome;
}

Outcome Commands::quit(const QVector<Argument> &)
{
    m_isQuit = true;
    return {};
}

QStringList Commands::faultable()
{
    namespace M = Master_MsgType;
    namespace S = Stand_MsgType;
    return {M::QueryManualT0ProductsRequest,
            M::QueryUserIdByUserRoleRequest,
            M::QueryManualT0ResourceRequest,
            M::QueryManualT0SecurityPoolRequest,
            M::QueryManualT0RealTimePoolUsageRequest,
            M::QueryManualT0TraderAccountPriorityRequest,
            M::ManualT0RealTimePoolUsagePush,
            M::AlterManualT0ProductsRequest,
            M::AddManualT0ResourceRequest,
            M::AlterManualT0ResourceRequest,
            M::DeleteManualT0ResourceRequest,
            M::AllocateManualT0SecurityPoolRequest,
            M::AlterManualT0SecurityPoolRequest,
            M::DeleteManualT0SecurityPoolRequest,
            M::AddManualT0ResourceAndPoolRequest,
            M::orderCancelBatchCppRequest,
            S::OrderRequest,
            S::QueryRequestFateRequest,
            S::QueryOrdersRequest,
            S::QueryFillsRequest,
            S::ExchangeControlRequest,
            S::OrderPush,
            S::FillPush,
            S::PositionPush,
            S::MarketPush,
            S::LoginRequest,
            S::QueryAccountsRequest,
            S::QueryInstrumentsRequest,
            S::QueryPositionsRequest,
            S::QueryMarginSecuritiesRequest,
            S::QueryQuotesRequest,
            S::SubscribeRequest,
            S::QuotePush,
            S::SetQuoteRequest,
            S::PushUsageRequest,
            S::PictureRequest,
            S::QuerySafetyRulesRequest,
            S::AlterSafetyRulesRequest};
}
