#pragma once

#include "framework/ZelmExport.h"

#include <string>
#include <vector>

namespace zelm {

/// While one lives, the table look-ups of this thread that find nothing are noted in it. A miss is no error to the
/// formulas, which go on with a sentinel; this is how a host tells people which row their data lacks. Costs nothing on
/// a hit. Instances nest: the innermost notes.
class ZELM_EXPORT LookUpMisses {
public:
    struct Miss {
        const void* table; ///< the table's address: ZelmDataBlock::groupOf names it
        std::string key;   ///< the joined key
    };

    LookUpMisses();
    ~LookUpMisses();
    LookUpMisses(const LookUpMisses&) = delete;
    LookUpMisses& operator=(const LookUpMisses&) = delete;

    /// In order of look-up, repetitions included.
    const std::vector<Miss>& misses() const
    {
        return m_misses;
    }

    static void note(const void* table, const std::string& key);

private:
    std::vector<Miss> m_misses;
    LookUpMisses* m_outer;
};

} // namespace zelm
