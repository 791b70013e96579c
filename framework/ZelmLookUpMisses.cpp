#include "framework/ZelmLookUpMisses.h"

namespace zelm {

namespace {

thread_local LookUpMisses* innermost = nullptr;

} // namespace

LookUpMisses::LookUpMisses() : m_outer(innermost)
{
    innermost = this;
}

LookUpMisses::~LookUpMisses()
{
    innermost = m_outer;
}

void LookUpMisses::note(const void* table, const std::string& key)
{
    if (innermost)
        innermost->m_misses.push_back({table, key});
}

} // namespace zelm
