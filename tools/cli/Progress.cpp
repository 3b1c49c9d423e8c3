#include "Progress.h"

#include <unistd.h>

#include <chrono>
#include <iostream>
#include <utility>

namespace zorvex_cli
{

Progress::Progress(std::string what) : m_what(std::move(what))
{
    if (isatty(STDERR_FILENO))
    {
        m_thread = std::thread(&Progress::Run, this);
    }
}

Progress::~Progress()
{
    if (!m_thread.joinable())
    {
        return;
    }
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_done = true;
    }
    m_wake.notify_one();
    m_thread.join();
}

void Progress::Run()
{
    using std::chrono::milliseconds;

    constexpr milliseconds kStep(200);
    constexpr milliseconds kPatience(1000);

    milliseconds elapsed(0);
    bool shown = false;
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_wake.wait_for(lock, kStep, [this] { return m_done; }))
    {
        elapsed += kStep;
        if (elapsed > kPatience)
        {
            std::cerr << '\r' << m_what << " ... " << elapsed.count() / 1000 << " s" << std::flush;
            shown = true;
        }
    }
    if (shown)
    {
        std::cerr << "\r\x1b[K" << std::flush;
    }
}

}  // namespace zorvex_cli
