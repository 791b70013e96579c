#pragma once

#include "framework/ZelmWatcher.h"

#include <string>
#include <vector>

namespace zelm {

/// While one lives, the table look-ups of this thread that find nothing are noted in it. A miss is no error to the
/// formulas, which go on with a sentinel; this is how a host tells people which row their data lacks. Costs nothing on
/// a hit.
class ZELM_EXPORT LookUpMisses final : public Watcher {
public:
    struct Miss {
        const void* table; ///< the table's address: ZelmDataBlock::groupOf names it
        std::string key;   ///< the joined key
    };

    LookUpMisses() : Watcher(Wants::misses) {}
    LookUpMisses(const LookUpMisses&) = delete;
    LookUpMisses& operator=(const LookUpMisses&) = delete;

    /// In order of look-up, repetitions included.
    const std::vector<Miss>& misses() const
    {
        return m_misses;
    }

    void onMiss(const void* table, const std::string& key) override;

private:
    std::vector<Miss> m_misses;
    Watching m_watching{*this};
};

} // namespace zelm
