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

void textsInOrder(std::size_t count, unsigned threads, const MakePieceWork& makeWork, const TakePiece& take)
{
    if (g_ranks)
        g_ranks->inOrder(count, threads, makeWork, take);
    else
        inOrder<std::string>(count, threads, makeWork, take);
}

} // namespace zelm::host
