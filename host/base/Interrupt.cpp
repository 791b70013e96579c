#include "host/base/Interrupt.h"

#include <array>
#include <atomic>
#include <csignal>
#include <cstddef>
#include <mutex>

namespace zelm::host {

namespace {

constexpr std::array kEnding{SIGINT, SIGTERM, SIGHUP};

std::atomic<int> g_signal{0};
static_assert(std::atomic<int>::is_always_lock_free); // a handler may touch nothing else
std::array<struct sigaction, kEnding.size()> g_before;
std::mutex g_mutex; // of threads that have one each at the same time
int g_living = 0;

void note(int signal)
{
    g_signal = signal;
}

} // namespace

Interrupt::Interrupt()
{
    const std::lock_guard lock(g_mutex);
    if (g_living++ > 0)
        return;
    g_signal = 0;
    struct sigaction action = {};
    action.sa_handler = note;
    for (std::size_t i = 0; i < kEnding.size(); ++i) {
        ::sigaction(kEnding[i], nullptr, &g_before[i]);
        if (g_before[i].sa_handler != SIG_IGN) // as nohup wants it
            ::sigaction(kEnding[i], &action, nullptr);
    }
}

Interrupt::~Interrupt()
{
    const std::lock_guard lock(g_mutex);
    if (--g_living > 0)
        return;
    for (std::size_t i = 0; i < kEnding.size(); ++i)
        ::sigaction(kEnding[i], &g_before[i], nullptr);
}

int Interrupt::signal()
{
    return g_signal;
}

} // namespace zelm::host
