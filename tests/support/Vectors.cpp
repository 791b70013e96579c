#include "support/Vectors.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <filesystem>
#include <fstream>

namespace zelm::test
{

std::vector<VectorSet> readVectors(const std::string& block)
{
    std::vector<VectorSet> sets;
    for (const auto& entry : std::filesystem::directory_iterator(ZELM_SOURCE_DIR "/tests/vectors/" + block)) {
        std::ifstream file(entry.path() / "cases.json");
        // Pulled cells are listed in the order in which they were pulled; an object keeps no order, and needs none:
        // a cell's value doesn't depend on it.
        sets.push_back({entry.path().string(), nlohmann::json::parse(file)});
    }
    std::sort(sets.begin(), sets.end(), [](const auto& a, const auto& b) { return a.directory < b.directory; });
    return sets;
}

float floatOfBits(const std::string& hex)
{
    return std::bit_cast<float>(static_cast<std::uint32_t>(std::stoul(hex, nullptr, 16)));
}

} // namespace zelm::test
