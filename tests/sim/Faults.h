#pragma once

#include "MessageBody.h"

#include "Chance.h"

#include <array>
#include <functional>

/// What the simulation does to messages, connections and users' timing. Each is counted when it has struck.
enum class Fault {
    Drop,                ///< a request or a push is lost
    Delay,               ///< an answer, and all that follows it, comes seconds later
    Duplicate,           ///< a request arrives twice, an answer or a push comes twice
    Reorder,             ///< a message overtakes those before it
    TimeoutBeforeChange, ///< the request for a change arrives when its time is over
    TimeoutAfterChange,  ///< a change is carried out, its answer is lost
    OtherStatus,         ///< an answer with a status that nobody knows
    TruncatedPage,       ///< the last rows of an answer are missing
    EmptyPage,           ///< a page loses its rows; what follows it stays
    RepeatedPage,        ///< a page says that it follows itself
    ErrorTextWithRows,   ///< a refusal that carries rows
    WrongFirstRow,       ///< the products' answer does not begin with the request
    PushBeforeAnswer,    ///< usage changes after an answer was computed, and is told first
    PushBetweenPages,    ///< usage changes while a paged query is on its way
    UnknownSymbol,       ///< a push of a security that the host does not know
    EqualTime,           ///< a push with other figures and the time of the record held
    OlderTime,           ///< a push from before the record held
    MissingFields,       ///< fields of rows are missing
    WrongTypes,          ///< values of rows have another type
    SubscriptionRefused,
    ReconnectDuringLoad, ///< the connection is lost while a family loads
    RefreshDuringLoad,   ///< a user refreshes while a family loads
    ProductsDuringLoad,  ///< products are changed while a family loads
    DisabledAccount,     ///< an answer of an account that is no longer enabled
    Count
};

class Faults
{
public:
    using Counts = std::array<quint64, size_t(Fault::Count)>;

    static const char *name(Fault fault);

    std::function<void(const QString &)> note; ///< of the trace

    void struck(Fault fault)
    {
        ++m_counts[size_t(fault)];
        note(QStringLiteral("fault: ") + QLatin1String(name(fault)));
    }
    const Counts &counts() const { return m_counts; }

    /// The answer to a query, spoilt; what could not strike, this kind of message or an empty one, leaves it as it is.
    void spoil(Fault fault, MessageBody &answer, Chance &chance);

private:
    bool spoils(Fault fault, MessageBody &answer, Chance &chance);

    Counts m_counts{};
};
