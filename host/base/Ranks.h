#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace zelm::host {

/// Does a piece of work by its index; what comes of it is bytes, so that they may come from another process.
using PieceWork = std::function<std::string(std::size_t index)>;
using MakePieceWork = std::function<PieceWork()>;
/// What came of the next piece by order; false ends the work.
using TakePiece = std::function<bool(const std::string& piece)>;

/// Processes that run the same command together. The first one takes what all of them do; the others print and write
/// nothing.
class Ranks {
public:
    Ranks() = default;
    virtual ~Ranks() = default;
    Ranks(const Ranks&) = delete;
    Ranks& operator=(const Ranks&) = delete;

    virtual bool isFirst() const = 0;
    /// Pieces from begin to before end.
    virtual void inOrder(std::size_t begin, std::size_t end, const MakePieceWork& makeWork, const TakePiece& take) = 0;

    /// Null unless this process is one of several.
    static Ranks* here();
    static void join(Ranks* ranks);
};

/// Whether this process prints and writes what a command comes to.
bool writesOutput();

/// inOrder() for pieces of bytes from begin to before end, on the threads of this process or on one of each rank, all
/// of which call this alike; the begin and end of the first one count.
void bytesInOrder(std::size_t begin, std::size_t end, unsigned threads, const MakePieceWork& makeWork,
                  const TakePiece& take);

} // namespace zelm::host
