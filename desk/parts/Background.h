#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>

#include <functional>
#include <memory>
#include <type_traits>

/// Long calls off the GUI thread, which waits for none of them. Of one lane one call runs after the other: the changes
/// of a page must not overtake each other. Called on the GUI thread.
namespace Background {

/// work runs on another thread of lane.
void runInLane(const QString &lane, std::function<void()> work);

/// Runs work, then done with its result on the GUI thread, unless context is gone.
template <typename Work, typename Done> void run(const QString &lane, QObject *context, Work work, Done done)
{
    using Result = std::invoke_result_t<Work>;
    const QPointer<QObject> guard(context);
    runInLane(lane, [guard, work = std::move(work), done = std::move(done)] {
        auto result = std::make_shared<Result>(work());
        // Not to context: it may go while this is posted.
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [guard, result, done] {
                if (guard)
                    done(*result);
            },
            Qt::QueuedConnection);
    });
}

bool isIdle();     ///< nothing runs and nothing waits; what is done may still have to be delivered
void waitForAll(); ///< before the program ends; the session's channel is closed before, so that nobody waits for
                   ///< answers

} // namespace Background
