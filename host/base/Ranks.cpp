#include "host/base/Ranks.h"

#include "host/base/InOrder.h"

namespace zelm::host {

namespace {

Ranks* g_ranks = nullptr; // set before any thread begins

} // namespace

Ranks* Ranks::here()
{
    return g_ranks;
}

void Ranks::join(Ranks* ranks)
{
    g_ranks = ranks;
}

bool writesOutput()
{
    return !g_ranks || g_ranks->isFirst();
}

void bytesInOrder(std::size_t begin, std::size_t end, unsigned threads, const MakePieceWork& makeWork,
                  const TakePiece& take)
{
    if (g_ranks) {
        g_ranks->inOrder(begin, end, makeWork, take);
        return;
    }
    const auto makeWorker = [&]() -> PieceWork {
        return [begin, work = makeWork()](std::size_t index) { return work(begin + index); };
    };
    inOrder<std::string>(end - begin, threads, makeWorker, take);
}

} // namespace zelm::host
