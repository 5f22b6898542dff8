#pragma once

#include <QtCore/QMap>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <array>
#include <optional>
#include <tuple>

/// What a manager has typed into the pools of one resource, held against what the server has: one row a trader, the
/// public pool being that of publicTrader. What was not typed follows the server. Quantities are display units, a
/// limit below 0 is none. Plain values, no widgets.
class PoolEdit
{
public:
    enum Field { Quantity, Exposure, PendExposure, FieldCount };
    using Figures = std::array<qint64, FieldCount>;
    static constexpr Figures NoPool{0, -1, -1};

    struct ServerPool {
        QString id;
        Figures figures = NoPool;
        bool operator==(const ServerPool &other) const { return id == other.id && figures == other.figures; }
    };
    using ServerPools = QMap<QString, ServerPool>; ///< by trader

    enum class State { Same, Changed, Added, Removed };
    struct Row {
        QString trader;
        Figures shown = NoPool;
        std::optional<Figures> server; ///< none: the server has no such pool
        State state = State::Same;
        bool isOvertaken = false; ///< the server's value has changed since another one was typed
        bool isOffUnit = false;   ///< a number is no multiple of the security's unit

        bool operator==(const Row &other) const
        {
            return std::tie(trader, shown, server, state, isOvertaken, isOffUnit) ==
                   std::tie(other.trader, other.shown, other.server, other.state, other.isOvertaken, other.isOffUnit);
        }
    };

    /// A pool of the server that is another one than was shown.
    struct ServerChange {
        QString trader; ///< empty: the quantity of the resource
        std::optional<qint64> before;
        std::optional<qint64> now;
    };

    /// One request; pools: by trader.
    struct Step {
        enum Kind { Public, Private, DeletePrivate, Limits };
        Kind kind = Public;
        QMap<QString, Figures> pools;
        QStringList ids; ///< of DeletePrivate
    };

    PoolEdit() = default;
    PoolEdit(const QString &publicTrader, qint64 unit);

    /// The server's state from now on. What differs from what was shown before, and was not typed by the user himself.
    QVector<ServerChange> takeServer(qint64 resourceQty, const ServerPools &pools);
    const ServerPools &server() const { return m_server; }
    qint64 resourceQty() const { return m_resourceQty; }

    void type(const QString &trader, Field field, qint64 value); ///< a trader without a row gets one
    void remove(const QString &trader);
    void revert(const QString &trader);
    void revertAll();

    QVector<Row> rows() const; ///< the public pool first, then by trader
    bool hasRow(const QString &trader) const;
    bool isTyped() const { return !m_typed.isEmpty() || !m_removed.isEmpty(); }

    qint64 publicQty() const;
    qint64 privateQty() const;
    qint64 freeQty() const { return m_resourceQty - publicQty() - privateQty(); } ///< below 0: over-allocated
    bool maySend() const; ///< something was typed, and none of it would be refused

    /// What is to be sent, in an order in which the pools never exceed the resource: of public and private pools those
    /// that shrink first. Limits come last, of pools that exist: those of a new pool once the server has it.
    QVector<Step> steps() const;

private:
    struct Typed {
        qint64 value = 0;
        qint64 base = 0; ///< the server's when it was typed
    };
    using TypedFields = std::array<std::optional<Typed>, FieldCount>;

    Figures serverFigures(const QString &trader) const { return m_server.value(trader).figures; }
    Row row(const QString &trader) const;
    QStringList traders() const;
    void dropWhatTheServerHas();
    QMap<QString, Figures> wantedPrivate() const;
    std::optional<Step> publicStep() const;
    std::optional<Step> privateStep() const;
    std::optional<Step> limitsStep() const;

    QString m_publicTrader;
    qint64 m_unit = 1;
    qint64 m_resourceQty = 0;
    ServerPools m_server;
    QMap<QString, TypedFields> m_typed;
    QMap<QString, Figures> m_removed; ///< with the server's figures at that time
};
