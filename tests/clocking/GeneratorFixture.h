#pragma once

#include "support/BlockFixture.h"

#include <algorithm>
#include <cctype>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace zelm::test {

/// A clock generator over hand-made tables, at 64 MHz through 1/2 x 4: a detector at 32 MHz, a VCO at 128 MHz, outputs
/// 0 and 1 at 64 and 32 MHz, the others not used.
template <class Model>
class GeneratorFixture : public BlockFixture<Model> {
protected:
    using typename BlockFixture<Model>::Params;
    using BlockFixture<Model>::params;

    explicit GeneratorFixture(std::string_view tables) : BlockFixture<Model>(tables)
    {
        std::vector<std::string> inputs;
        Params::getIntUserInputNames(inputs);
        for (const std::string& name : inputs) {
            if (name.starts_with("CLKOUT"))
                params[Params::string_to_int_enum(name)] = 1;
        }
        params[Params::INPUT_FREQUENCY] = 64.0f;
        params[Params::D_COUNTER] = 2;
        params[Params::M_COUNTER] = 4;
        params[Params::CLKOUT0_DIVIDE] = 2;
        params[Params::CLKOUT1_DIVIDE] = 4;
    }
};

/// The intermediates with a number in their names are those of the outputs: every output with every metric, whose name
/// has a # where the output's number goes.
template <class Params>
void expectOutputFamily(int outputs, std::initializer_list<std::string_view> metrics)
{
    std::vector<std::string> family;
    for (const std::string_view metric : metrics) {
        for (int output = 0; output < outputs; ++output)
            family.push_back(std::string(metric).replace(metric.find('#'), 1, std::to_string(output)));
    }
    std::vector<std::string> names;
    Params::getFloatIntermediateCalculationNames(names);
    std::erase_if(names, [](const std::string& name) {
        return std::none_of(name.begin(), name.end(), [](unsigned char c) { return std::isdigit(c); });
    });
    EXPECT_EQ(names, family);
}

} // namespace zelm::test
