#include "framework/ZelmWatcher.h"

namespace zelm {

namespace {

thread_local Watching* newest = nullptr;

} // namespace

Watching::Watching(Watcher& watcher) : m_watcher(watcher), m_outer(newest)
{
    newest = this;
}

Watching::~Watching()
{
    newest = m_outer;
}

Watcher* Watcher::innermost(Wants wants)
{
    for (const Watching* watching = newest; watching; watching = watching->m_outer) {
        if (watching->m_watcher.m_wants == wants)
            return &watching->m_watcher;
    }
    return nullptr;
}

Watcher* Watcher::ofPulls()
{
    return innermost(Wants::pulls);
}

void Watcher::miss(const void* table, const std::string& key)
{
    if (Watcher* watcher = innermost(Wants::misses))
        watcher->onMiss(table, key);
}

void Watcher::onRead(CellRef) {}

void Watcher::onCompute(CellRef) {}

void Watcher::onComputed(CellRef) {}

void Watcher::onLookUp(const LookUp&) {}

void Watcher::onMiss(const void*, const std::string&) {}

} // namespace zelm
