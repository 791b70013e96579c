#pragma once

#include "host/report/SweepReport.h"

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace zelm::test {

/// What a sweep prints.
inline std::string sweepText(const std::string& file, const std::vector<std::string>& variations,
                             host::SweepFormat format, unsigned jobs = 2)
{
    std::string text;
    printSweep(host::Sweep(file, variations), {jobs, std::chrono::hours(1), host::Gaps::refused}, format, host::Paint(),
               [&](std::string_view more) { text += more; });
    return text;
}

} // namespace zelm::test
