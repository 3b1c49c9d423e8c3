#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace zorvex_cli
{

/// Tells a person at a terminal that work goes on, once it has taken more than a second.
///
/// Lives as long as the work. Writes to standard error and wipes its line at the end; where
/// standard error is no terminal it does nothing.
class Progress
{
public:
    explicit Progress(std::string what);
    ~Progress();

    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

private:
    void Run();

    std::string m_what;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_done = false;  // guarded by m_mutex
    std::thread m_thread;
};

}  // namespace zorvex_cli
