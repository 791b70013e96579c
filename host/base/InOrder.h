#pragma once

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace zelm::host {

/// Does count like pieces of work on so many threads, and hands what comes of them over in order, on the caller's
/// thread. Those that are done too early wait, so that memory doesn't depend on count. makeWorker() gives each thread
/// its own work(index). The first piece, by order, that throws ends it all with its exception; so does take(result)
/// with false, without one.
template <class Result, class MakeWorker, class Take>
void inOrder(std::size_t count, unsigned threads, MakeWorker makeWorker, Take take)
{
    const std::size_t window = std::size_t{threads} * 4; // pieces that may be ahead of the one that is due
    struct Done {
        std::optional<Result> result;
        std::exception_ptr failure;
    };
    std::mutex mutex;
    std::condition_variable someTaken;
    std::condition_variable someDone;
    std::map<std::size_t, Done> done;
    std::size_t next = 0; // to be begun
    std::size_t due = 0;  // to be taken
    bool over = false;

    const auto run = [&] {
        std::optional<decltype(makeWorker())> work;
        std::unique_lock lock(mutex);
        for (;;) {
            someTaken.wait(lock, [&] { return over || next >= count || next < due + window; });
            if (over || next >= count)
                return;
            const std::size_t index = next++;
            lock.unlock();
            Done piece;
            try {
                if (!work)
                    work.emplace(makeWorker());
                piece.result.emplace((*work)(index));
            } catch (...) {
                piece.failure = std::current_exception();
            }
            lock.lock();
            done.emplace(index, std::move(piece));
            someDone.notify_one();
        }
    };
    const auto end = [&] {
        const std::lock_guard lock(mutex);
        over = true;
        someTaken.notify_all();
    };

    std::vector<std::jthread> pool;
    try {
        const std::size_t wanted = std::min<std::size_t>(std::max(threads, 1u), count);
        for (std::size_t i = 0; i < wanted; ++i)
            pool.emplace_back(run);
        for (std::size_t i = 0; i < count; ++i) {
            std::unique_lock lock(mutex);
            someDone.wait(lock, [&] { return done.contains(i); });
            Done piece = std::move(done.extract(i).mapped());
            due = i + 1;
            someTaken.notify_all();
            lock.unlock();
            if (piece.failure)
                std::rethrow_exception(piece.failure);
            if (!take(std::move(*piece.result)))
                break;
        }
    } catch (...) {
        end();
        throw;
    }
    end();
}

} // namespace zelm::host
