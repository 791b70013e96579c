#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace zelm::test {

/// A table with the same entries for each standard, but for VCCAUX_DC, which counts the standards from 1.
inline std::string sameRows(const std::vector<std::string>& standards, std::string_view entries)
{
    std::string text;
    for (std::size_t i = 0; i < standards.size(); ++i)
        text += standards[i] + " : { VCCAUX_DC = " + std::to_string(i + 1) + ".0; " + std::string(entries) + " };\n";
    return text;
}

/// The cells whose names start with prefix are standards x metrics, and the other cells listed in others.
template <class Params>
void expectFamily(const std::string& prefix, const std::vector<std::string>& standards,
                  const std::vector<std::string>& metrics, std::vector<std::string> others)
{
    std::vector<std::string> expected = std::move(others);
    for (const std::string& standard : standards)
        for (const std::string& metric : metrics)
            expected.push_back(prefix + standard + "_" + metric);
    std::sort(expected.begin(), expected.end());

    std::vector<std::string> listed;
    Params::getFloatIntermediateCalculationNames(listed);
    std::erase_if(listed, [&](const std::string& name) { return !name.starts_with(prefix); });
    EXPECT_EQ(listed, expected);
}

} // namespace zelm::test
