#pragma once

#include "support/Bits.h"
#include "support/DataDirectory.h"

#include "host/base/Error.h"
#include "host/design/Design.h"
#include "host/estimate/Estimate.h"

#include <algorithm>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zelm::test {

/// The estimate of a design that a test writes out.
inline host::Estimate estimateOf(const std::string& text)
{
    return host::estimate(host::parseDesign("test.json", text));
}

/// What is said of a design that is wrong, or "no error".
inline std::string messageOf(const std::string& text)
{
    try {
        estimateOf(text);
    } catch (const host::Error& error) {
        return error.what();
    }
    return "no error";
}

/// A row of a table of designs that are wrong.
struct Bad {
    const char* name;
    std::string text;
    std::vector<std::string> words; ///< each must stand in the message
};

inline void PrintTo(const Bad& bad,
                    std::ostream* out) // NOLINT(readability-identifier-naming): the test framework's name
{
    *out << bad.text;
}

inline const host::GroupResult& groupOf(const host::Estimate& estimate, std::string_view name)
{
    const auto found =
        std::find_if(estimate.groups.begin(), estimate.groups.end(), [&](const auto& g) { return g.name == name; });
    if (found == estimate.groups.end())
        throw std::runtime_error("the estimate has no group " + std::string(name));
    return *found;
}

inline const host::InputValue& inputOf(const host::GroupResult& group, std::string_view cell)
{
    const auto found =
        std::find_if(group.inputs.begin(), group.inputs.end(), [&](const auto& i) { return i.cell == cell; });
    if (found == group.inputs.end())
        throw std::runtime_error(group.name + " has no input " + std::string(cell));
    return *found;
}

/// "250 from design": an input's value and origin.
inline std::string shownInput(const host::GroupResult& group, std::string_view cell)
{
    const host::InputValue& input = inputOf(group, cell);
    return host::valueText(input.value) + " from " + std::string(host::originWord(input.origin));
}

/// What the tool carried to a cell, or "nothing".
inline std::string carriedTo(const host::Estimate& estimate, std::string_view to)
{
    for (const host::Carried& carried : estimate.carried) {
        if (carried.to.text() == to)
            return host::valueText(carried.value);
    }
    return "nothing";
}

} // namespace zelm::test
