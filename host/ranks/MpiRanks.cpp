#include "host/ranks/MpiRanks.h"

#include "host/base/Error.h"
#include "host/base/InOrder.h"
#include "host/base/Ranks.h"
#include "host/base/Terminal.h"
#include "host/commands/Tool.h"

#include <mpi.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <fcntl.h>
#include <future>
#include <limits>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <thread>
#include <unistd.h>
#include <utility>

namespace zelm::host {

namespace {

constexpr std::uint64_t kNoMore = std::numeric_limits<std::uint64_t>::max();
constexpr int kTagOfEnd = 0;
// Pieces that a rank has at once, so that the next one is there when one is done.
constexpr unsigned kPiecesPerRank = 2;

using Clock = std::chrono::steady_clock;

// MPI's own calls wait by spinning, which takes a processor from those who work. What has been waited for long may take
// some more.
void rest(Clock::duration waited = {})
{
    constexpr Clock::duration shortest = std::chrono::microseconds(100);
    constexpr Clock::duration longest = std::chrono::milliseconds(2);
    std::this_thread::sleep_for(std::clamp(waited / 16, shortest, longest));
}

class MpiRanks final : public Ranks {
public:
    MpiRanks()
    {
        MPI_Comm_rank(MPI_COMM_WORLD, &m_rank);
        MPI_Comm_size(MPI_COMM_WORLD, &m_size);
    }

    bool isFirst() const override
    {
        return m_rank == 0;
    }
    bool began() const
    {
        return m_began;
    }

    void inOrder(std::size_t begin, std::size_t end, const MakePieceWork& makeWork, const TakePiece& take) override
    {
        const bool isTold = std::exchange(m_began, true);
        if (isFirst()) {
            if (!isTold)
                tellOthers(true);
            lead(begin, end, makeWork, take);
        } else {
            follow(makeWork);
        }
    }

    /// Whether there is work for them. They wait for that word, so that what is wrong with a command is said once.
    static void tellOthers(bool isWork)
    {
        hearOrTell(isWork ? 1 : 0);
    }
    static bool awaitWord()
    {
        return hearOrTell(0) != 0;
    }

private:
    static int hearOrTell(int word)
    {
        MPI_Request request = MPI_REQUEST_NULL;
        MPI_Ibcast(&word, 1, MPI_INT, 0, MPI_COMM_WORLD, &request);
        finish(request);
        return word;
    }

    static void finish(MPI_Request& request)
    {
        int done = 0;
        for (MPI_Test(&request, &done, MPI_STATUS_IGNORE); !done; MPI_Test(&request, &done, MPI_STATUS_IGNORE))
            rest();
    }

    // The pool of threads of one process, but all threads save one wait for what another rank does in their place.
    void lead(std::size_t begin, std::size_t end, const MakePieceWork& makeWork, const TakePiece& take)
    {
        const auto others = static_cast<unsigned>(m_size - 1);
        std::atomic<unsigned> next{0};
        const auto makeWorker = [&]() -> PieceWork {
            const unsigned thread = next++;
            const PieceWork work = thread == 0 ? makeWork() : PieceWork([this, thread, others](std::size_t index) {
                return ask(static_cast<int>(1 + (thread - 1) % others), static_cast<int>(thread), index);
            });
            return [work, begin](std::size_t index) { return work(begin + index); };
        };
        struct AtEnd {
            MpiRanks& ranks;
            ~AtEnd()
            {
                for (int rank = 1; rank < ranks.m_size; ++rank)
                    MPI_Send(&kNoMore, 1, MPI_UINT64_T, rank, kTagOfEnd, MPI_COMM_WORLD);
            }
        } const atEnd{*this};
        zelm::host::inOrder<std::string>(end - begin, 1 + others * kPiecesPerRank, makeWorker, take);
    }

    std::string ask(int rank, int tag, std::uint64_t index)
    {
        {
            const std::lock_guard lock(m_mutex);
            MPI_Send(&index, 1, MPI_UINT64_T, rank, tag, MPI_COMM_WORLD);
        }
        std::string answer;
        const Clock::time_point begin = Clock::now();
        while (!receive(rank, tag, answer))
            rest(Clock::now() - begin);
        const char outcome = answer.front();
        answer.erase(0, 1);
        if (outcome == 'e')
            throw Error(answer);
        if (outcome == 'x')
            throw std::runtime_error(answer);
        return answer;
    }

    bool receive(int rank, int tag, std::string& answer)
    {
        const std::lock_guard lock(m_mutex);
        int isThere = 0;
        MPI_Message message = MPI_MESSAGE_NULL;
        MPI_Status status;
        MPI_Improbe(rank, tag, MPI_COMM_WORLD, &isThere, &message, &status);
        if (!isThere)
            return false;
        int bytes = 0;
        MPI_Get_count(&status, MPI_CHAR, &bytes);
        answer.resize(static_cast<std::size_t>(bytes));
        MPI_Mrecv(answer.data(), bytes, MPI_CHAR, &message, MPI_STATUS_IGNORE);
        return true;
    }

    // Works on what the first rank sends, until it says that there is no more. What has come of a piece is on its way
    // while the next is done.
    void follow(const MakePieceWork& makeWork)
    {
        PieceWork work;
        std::future<void> sending;
        int tag = 0;
        while (const std::optional<std::uint64_t> index = nextPiece(tag)) {
            std::string answer;
            char outcome = 'r';
            try {
                if (!work)
                    work = makeWork();
                answer = work(*index);
            } catch (const Error& error) {
                outcome = 'e';
                answer = error.what();
            } catch (const std::exception& error) {
                outcome = 'x';
                answer = error.what();
            }
            answer.insert(answer.begin(), outcome);
            if (sending.valid())
                sending.get();
            sending = std::async(std::launch::async, [this, tag, bytes = std::move(answer)] { send(bytes, tag); });
        }
    }

    // Nothing if there is no more.
    std::optional<std::uint64_t> nextPiece(int& tag)
    {
        std::uint64_t index = 0;
        while (!receivePiece(index, tag))
            rest();
        return index == kNoMore ? std::nullopt : std::optional(index);
    }

    bool receivePiece(std::uint64_t& index, int& tag)
    {
        const std::lock_guard lock(m_mutex);
        MPI_Status status;
        int isThere = 0;
        MPI_Iprobe(0, MPI_ANY_TAG, MPI_COMM_WORLD, &isThere, &status);
        if (!isThere)
            return false;
        tag = status.MPI_TAG;
        MPI_Recv(&index, 1, MPI_UINT64_T, 0, tag, MPI_COMM_WORLD, MPI_STATUS_IGNORE);
        return true;
    }

    void send(const std::string& bytes, int tag)
    {
        MPI_Request request = MPI_REQUEST_NULL;
        {
            const std::lock_guard lock(m_mutex);
            MPI_Isend(bytes.data(), static_cast<int>(bytes.size()), MPI_CHAR, 0, tag, MPI_COMM_WORLD, &request);
        }
        while (!isDone(request))
            rest();
    }

    bool isDone(MPI_Request& request)
    {
        const std::lock_guard lock(m_mutex);
        int done = 0;
        MPI_Test(&request, &done, MPI_STATUS_IGNORE);
        return done != 0;
    }

    int m_rank = 0;
    int m_size = 1;
    bool m_began = false;
    std::mutex m_mutex; // MPI is called by one thread at a time
};

int runAsOther(MpiRanks& ranks, int argc, char** argv, std::span<const Command> commands)
{
    if (!MpiRanks::awaitWord())
        return kSuccess;
    if (const int nothing = ::open("/dev/null", O_WRONLY | O_CLOEXEC); nothing >= 0)
        ::dup2(nothing, STDOUT_FILENO);
    const int code = runTool(argc, argv, commands);
    if (!ranks.began()) // it has said why: it can't read what the first rank can
        MPI_Abort(MPI_COMM_WORLD, code);
    return kSuccess;
}

} // namespace

int runOnRanks(int argc, char** argv, std::span<const Command> commands)
{
    int level = MPI_THREAD_SINGLE;
    MPI_Init_thread(&argc, &argv, MPI_THREAD_SERIALIZED, &level);
    int code = kUserError;
    if (level < MPI_THREAD_SERIALIZED) {
        complain("this MPI takes no threads");
    } else {
        MpiRanks ranks;
        Ranks::join(&ranks);
        if (ranks.isFirst()) {
            code = runTool(argc, argv, commands);
            if (!ranks.began())
                ranks.tellOthers(false);
        } else {
            code = runAsOther(ranks, argc, argv, commands);
        }
        Ranks::join(nullptr);
    }
    MPI_Finalize();
    return code;
}

} // namespace zelm::host
