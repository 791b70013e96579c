#include "framework/ZelmWatcher.h"

namespace zelm {

namespace {

// Every run asks for it: at a fixed place of the thread, not by a call.
[[gnu::tls_model("initial-exec")]] thread_local Watching* newest = nullptr;

} // namespace

Watching::Watching(Watcher& watcher) : m_watcher(watcher), m_outer(newest)
{
    newest = this;
}

template <class Is>
Watcher* Watching::innermost(Is is)
{
    for (const Watching* watching = newest; watching; watching = watching->m_outer) {
        if (is(watching->m_watcher))
            return &watching->m_watcher;
    }
    return nullptr;
}

Watching::~Watching()
{
    newest = m_outer;
}

Watcher* Watcher::ofPulls()
{
    return Watching::innermost([](const Watcher& watcher) { return watcher.m_wants != Wants::misses; });
}

void Watcher::miss(const void* table, const std::string& key)
{
    if (Watcher* watcher =
            Watching::innermost([](const Watcher& candidate) { return candidate.m_wants == Wants::misses; }))
        watcher->onMiss(table, key);
}

void Watcher::onRead(CellRef) {}

void Watcher::onCompute(CellRef) {}

void Watcher::onComputed(CellRef) {}

void Watcher::onLookUp(const LookUp&) {}

void Watcher::onMiss(const void*, const std::string&) {}

} // namespace zelm
