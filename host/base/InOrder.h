#pragma once

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace zelm::host {

/// So many threads as are asked for, or 0 for as many as there are processors.
inline unsigned threadsFor(unsigned asked)
{
    return asked > 0 ? asked : std::max(std::thread::hardware_concurrency(), 1u);
}

/// Pieces of work that threads take as they get free, and whose results leave in order. Those that are done too early
/// wait, so that memory doesn't depend on the number of pieces.
template <class Result>
class OrderedPieces {
public:
    OrderedPieces(std::size_t count, std::size_t window) : m_count(count), m_window(window) {}

    /// The next piece to work on; nothing if there is none any more.
    std::optional<std::size_t> begin()
    {
        std::unique_lock lock(m_mutex);
        m_someTaken.wait(lock, [this] { return m_over || m_next >= m_count || m_next < m_due + m_window; });
        return m_over || m_next >= m_count ? std::nullopt : std::optional(m_next++);
    }

    /// Does a piece, or keeps the exception that it throws.
    template <class Work>
    void finish(std::size_t index, Work work)
    {
        Done done;
        try {
            done.result.emplace(work());
        } catch (...) {
            done.failure = std::current_exception();
        }
        const std::lock_guard lock(m_mutex);
        m_done.emplace(index, std::move(done));
        m_someDone.notify_one();
    }

    /// What came of the piece that is due, or its exception.
    Result take()
    {
        std::unique_lock lock(m_mutex);
        m_someDone.wait(lock, [this] { return m_done.contains(m_due); });
        Done done = std::move(m_done.extract(m_due++).mapped());
        m_someTaken.notify_all();
        lock.unlock();
        if (done.failure)
            std::rethrow_exception(done.failure);
        return std::move(*done.result);
    }

    /// No further piece begins.
    void end()
    {
        const std::lock_guard lock(m_mutex);
        m_over = true;
        m_someTaken.notify_all();
    }

private:
    struct Done {
        std::optional<Result> result;
        std::exception_ptr failure;
    };

    std::size_t m_count;
    std::size_t m_window; // pieces that may be ahead of the one that is due
    std::mutex m_mutex;
    std::condition_variable m_someTaken;
    std::condition_variable m_someDone;
    std::map<std::size_t, Done> m_done;
    std::size_t m_next = 0; // to be begun
    std::size_t m_due = 0;  // to be taken
    bool m_over = false;
};

/// Does count like pieces of work on so many threads, and hands what comes of them over in order, on the caller's
/// thread. makeWorker() gives each thread its own work(index). The first piece, by order, that throws ends it all with
/// its exception; so does take(result) with false, without one.
template <class Result, class MakeWorker, class Take>
void inOrder(std::size_t count, unsigned threads, MakeWorker makeWorker, Take take)
{
    constexpr std::size_t ahead = 4;
    OrderedPieces<Result> pieces(count, std::size_t{threads} * ahead);
    const auto run = [&] {
        std::optional<decltype(makeWorker())> work;
        while (const std::optional<std::size_t> index = pieces.begin()) {
            pieces.finish(*index, [&] {
                if (!work)
                    work.emplace(makeWorker());
                return (*work)(*index);
            });
        }
    };
    std::vector<std::jthread> pool; // joins when it goes, whatever ends the scope
    struct AtEnd {
        OrderedPieces<Result>& pieces;
        ~AtEnd()
        {
            pieces.end();
        }
    } const atEnd{pieces};
    const std::size_t wanted = std::min<std::size_t>(std::max(threads, 1u), count);
    while (pool.size() < wanted)
        pool.emplace_back(run);
    for (std::size_t i = 0; i < count; ++i) {
        if (!take(pieces.take()))
            return;
    }
}

} // namespace zelm::host
