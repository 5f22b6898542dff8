#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

/// Ends the process when it is not destroyed in time: what hangs could not be cleaned up. Says what hung, and where
/// each thread stands (file and offset; addr2line reads them).
class Watchdog
{
public:
    Watchdog(std::string what, int seconds);
    ~Watchdog();
    Watchdog(const Watchdog &) = delete;
    Watchdog &operator=(const Watchdog &) = delete;

private:
    void watch(int seconds);

    const std::string m_what;
    std::mutex m_mutex;
    std::condition_variable m_ended;
    bool m_over = false;
    std::thread m_thread;
};
