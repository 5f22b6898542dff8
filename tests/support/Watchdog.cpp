#include "Watchdog.h"

#include <QtCore/QDir>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <execinfo.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

std::atomic<bool> printed{false};

void printStack(int)
{
    void *frames[64];
    const int count = backtrace(frames, 64);
    backtrace_symbols_fd(frames, count, STDERR_FILENO);
    printed = true;
}

/// One thread after the other, so that their lines do not mix.
void printStacks()
{
    struct sigaction action = {};
    action.sa_handler = &printStack;
    action.sa_flags = SA_RESTART;
    sigaction(SIGUSR2, &action, nullptr);
    const QStringList threads = QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &thread : threads) {
        std::fprintf(stderr, "thread %s:\n", qPrintable(thread));
        printed = false;
        syscall(SYS_tgkill, getpid(), thread.toInt(), SIGUSR2);
        for (int i = 0; i < 200 && !printed; ++i) // a thread that blocks signals is passed over
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

} // namespace

Watchdog::Watchdog(std::string what, int seconds)
    : m_what(std::move(what))
    , m_thread([this, seconds] { watch(seconds); })
{}

Watchdog::~Watchdog()
{
    {
        const std::lock_guard lock(m_mutex);
        m_over = true;
        m_ended.notify_all();
    }
    m_thread.join();
}

void Watchdog::watch(int seconds)
{
    std::unique_lock lock(m_mutex);
    if (m_ended.wait_for(lock, std::chrono::seconds(seconds), [this] { return m_over; }))
        return;
    std::fprintf(stderr, "%s has not ended within %d s\n", m_what.c_str(), seconds);
    printStacks();
    std::abort();
}
