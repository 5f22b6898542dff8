#include "Interrupt.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QSocketNotifier>

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

std::atomic<bool> isRequested{false};
int wakeUp[2] = {-1, -1};

void onSignal(int)
{
    isRequested = true;
    const char byte = 0;
    [[maybe_unused]] const auto written = ::write(wakeUp[1], &byte, 1);
}

} // namespace

void Interrupt::quitOnSignals(QCoreApplication &application)
{
    // A handler may do next to nothing: what it writes wakes the event loop, which then ends.
    if (::pipe2(wakeUp, O_CLOEXEC | O_NONBLOCK) != 0)
        qFatal("no pipe for signals");
    auto *notifier = new QSocketNotifier(wakeUp[0], QSocketNotifier::Read, &application);
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, [notifier] {
        notifier->setEnabled(false);
        QCoreApplication::quit();
    });
    std::signal(SIGTERM, onSignal);
    std::signal(SIGINT, onSignal);
}

bool Interrupt::requested()
{
    return isRequested;
}
