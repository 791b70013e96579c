#pragma once

#include "support/Bits.h"
#include "support/DataDirectory.h"

#include "framework/ZelmInfo.h"

#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace zelm::test {

using CellValue = std::variant<int, float, std::string>;
using NamedValues = std::vector<std::pair<std::string, CellValue>>;

struct VectorCase {
    NamedValues in;     ///< the inputs that the host sets
    NamedValues out;    ///< every cell after calculate, in enum order
    NamedValues pulled; ///< cells that calculate doesn't reach, after pulling each
    std::string where;  ///< set, case and inputs, for messages
};

/// One of tests/vectors/<block>/<set>: tables, and cases computed by an independent implementation.
struct VectorSet {
    std::string directory;
    std::vector<std::string> cells;
    std::vector<VectorCase> cases;
};

std::vector<VectorSet> readVectors(const std::string& block);

/// Runs every case of a block's vectors and compares every cell's bits.
template <class Model>
void expectVectorsAgree(const std::string& block)
{
    using Params = typename Model::Params;
    using Data = typename Model::Data;

    const Model& model = Model::getGlobal();
    std::vector<std::string> own;
    for (const ZelmCellInfo& cell : Params::cells())
        own.emplace_back(cell.name);

    const std::vector<VectorSet> sets = readVectors(block);
    EXPECT_FALSE(sets.empty()) << "no vectors for " << block;
    for (const VectorSet& set : sets) {
        EXPECT_EQ(own, set.cells) << set.directory;
        EXPECT_FALSE(set.cases.empty()) << set.directory;
        const DataDirVariable variable(set.directory);
        Data::getMutableGlobal().reset();
        const Data& data = Data::getGlobal();

        for (const VectorCase& testCase : set.cases) {
            Params params;
            const auto set_ = [&](const std::string& name, const CellValue& value) {
                if (const int* whole = std::get_if<int>(&value))
                    params[Params::string_to_int_enum(name)] = *whole;
                else if (const float* real = std::get_if<float>(&value))
                    params[Params::string_to_float_enum(name)] = *real;
                else
                    params[Params::string_to_string_enum(name)] = std::get<std::string>(value);
            };
            const auto compare = [&](const std::string& name, const CellValue& expected) {
                if (const int* whole = std::get_if<int>(&expected))
                    EXPECT_EQ(params[Params::string_to_int_enum(name)], *whole) << name << " of " << testCase.where;
                else if (const float* real = std::get_if<float>(&expected))
                    EXPECT_THAT(params[Params::string_to_float_enum(name)], IsBits(*real))
                        << name << " of " << testCase.where;
                else
                    EXPECT_EQ(params[Params::string_to_string_enum(name)], std::get<std::string>(expected))
                        << name << " of " << testCase.where;
            };
            for (const auto& [name, value] : testCase.in)
                set_(name, value);
            model.calculate(params);
            ASSERT_EQ(testCase.out.size(), own.size()) << testCase.where;
            for (const auto& [name, value] : testCase.out)
                compare(name, value);
            for (const auto& [name, value] : testCase.pulled) {
                if (std::holds_alternative<int>(value))
                    model.pull(Params::string_to_int_enum(name), params, data);
                else if (std::holds_alternative<float>(value))
                    model.pull(Params::string_to_float_enum(name), params, data);
                else
                    model.pull(Params::string_to_string_enum(name), params, data);
                compare(name, value);
            }
            if (testing::Test::HasFailure())
                return; // the first bad case tells enough
        }
    }
}

} // namespace zelm::test
