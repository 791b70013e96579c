#include "framework/ZelmLookUpMisses.h"

namespace zelm {

void LookUpMisses::onMiss(const void* table, const std::string& key)
{
    m_misses.push_back({table, key});
}

} // namespace zelm
