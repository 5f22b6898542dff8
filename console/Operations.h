#pragma once

#include "Kinds.h"

#include <functional>
#include <tuple>
#include <utility>

/// What a command ended with.
struct Outcome {
    QVariant result;
    QVariantList out;  ///< by-reference values, in order
    QString errorText; ///< not empty: the command was bad
    QString text;      ///< for people; empty: the result as a table
};

/// One operation of the facade: how it is called with written arguments. Made from the function itself, so
/// that kinds of arguments and outputs cannot differ from it.
struct Operation {
    using Arguments = QVector<Argument>;

    QString name;
    QStringList kinds; ///< of the arguments; "&" before those by reference

    /// An empty text when the arguments fit, else the first that does not and what is expected.
    std::function<QString(const Arguments &)> check;

    std::function<Outcome(const Arguments &)> call; ///< only with arguments that fit

    QString signature() const; ///< name and kinds, for messages
};

/// Every operation of the facade.
const QVector<Operation> &facadeOperations();

/// The operation of this name that the arguments fit; nullptr and errorText when there is none.
const Operation *findOperation(const CommandLine &command, QString &errorText);

/// The candidate that is spelled most like a name; empty when none comes near.
QString nearestName(const QString &name, const QStringList &candidates);

namespace OperationDetail {

template <typename T> struct Parameter {
    /// Passed on as it is; any other pointer is a reference that may be left out.
    static constexpr bool isHandle = std::is_same_v<T, ZrPresenterClass *>;
    static constexpr bool isOutput = std::is_pointer_v<T> && !isHandle;
    using Value = std::conditional_t<isHandle, T, std::decay_t<std::remove_pointer_t<T>>>;
    static constexpr bool byReference =
        isOutput || (std::is_lvalue_reference_v<T> && !std::is_const_v<std::remove_reference_t<T>>);

    static QString kind() { return (byReference ? QStringLiteral("& ") : QString()) + kindName<Value>(); }

    static QString read(const Argument &argument, Value &value)
    {
        if (byReference != (argument.kind == Argument::Kind::Reference))
            return byReference ? QStringLiteral("& is expected, it is by reference")
                               : QStringLiteral("%1 is expected, not a reference").arg(kindName<Value>());
        if (byReference && !argument.value.isValid())
            return {}; // starts empty
        return readKind(argument, value);
    }

    static T pass(Value &value)
    {
        if constexpr (isOutput)
            return &value;
        else
            return value;
    }

    static void collect([[maybe_unused]] const Value &value, [[maybe_unused]] QVariantList &out)
    {
        if constexpr (byReference)
            out.append(present(value));
    }
};

template <typename... A> class Caller
{
public:
    static QString read(const QVector<Argument> &arguments, std::tuple<typename Parameter<A>::Value...> &values)
    {
        return readAll(arguments, values, std::index_sequence_for<A...>());
    }

    template <typename R> static Outcome call(R (*function)(A...), const QVector<Argument> &arguments)
    {
        std::tuple<typename Parameter<A>::Value...> values;
        read(arguments, values);
        return callWith(function, values, std::index_sequence_for<A...>());
    }

private:
    template <typename Values, size_t... I>
    static QString readAll(const QVector<Argument> &arguments, Values &values, std::index_sequence<I...>)
    {
        QString error;
        const auto readOne = [&error](int number, const QString &wrong) {
            if (error.isEmpty() && !wrong.isEmpty())
                error = QStringLiteral("argument %1: %2").arg(QString::number(number), wrong);
        };
        (readOne(int(I) + 1, Parameter<A>::read(arguments.at(int(I)), std::get<I>(values))), ...);
        Q_UNUSED(arguments)
        Q_UNUSED(values)
        Q_UNUSED(readOne)
        return error;
    }

    template <typename R, typename Values, size_t... I>
    static Outcome callWith(R (*function)(A...), Values &values, std::index_sequence<I...>)
    {
        Q_UNUSED(values)
        Outcome outcome;
        if constexpr (std::is_void_v<R>)
            function(Parameter<A>::pass(std::get<I>(values))...);
        else
            outcome.result = present(function(Parameter<A>::pass(std::get<I>(values))...));
        (Parameter<A>::collect(std::get<I>(values), outcome.out), ...);
        return outcome;
    }
};

} // namespace OperationDetail

template <typename R, typename... A> Operation operation(const char *name, R (*function)(A...))
{
    using namespace OperationDetail;
    Operation operation;
    operation.name = QString::fromLatin1(name);
    operation.kinds = QStringList{Parameter<A>::kind()...};
    operation.check = [](const QVector<Argument> &arguments) {
        std::tuple<typename Parameter<A>::Value...> values;
        return Caller<A...>::read(arguments, values);
    };
    operation.call = [function](const QVector<Argument> &arguments) { return Caller<A...>::call(function, arguments); };
    return operation;
}
