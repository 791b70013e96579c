#pragma once

#include "support/Bits.h"
#include "support/DataDirectory.h"

#include "framework/ZelmInfo.h"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace zelm::test
{

/// One of tests/vectors/<block>/<set>: tables, and cases computed by an independent implementation.
struct VectorSet {
    std::string directory;
    nlohmann::json content;
};

std::vector<VectorSet> readVectors(const std::string& block);
float floatOfBits(const std::string& hex);

/// Runs every case of a block's vectors and compares every cell's bits.
template <class Model>
void expectVectorsAgree(const std::string& block)
{
    using Params = typename Model::Params;
    using Data = typename Model::Data;

    int compared = 0;
    for (const VectorSet& set : readVectors(block)) {
        const DataDirVariable variable(set.directory);
        Data::getMutableGlobal().reset();
        const Data& data = Data::getGlobal();
        const Model& model = Model::getGlobal();
        const auto& cells = set.content.at("cells");

        int caseIndex = 0;
        for (const auto& testCase : set.content.at("cases")) {
            Params params;
            for (const auto& [name, value] : testCase.at("in").items()) {
                if (value.is_number())
                    params[Params::string_to_int_enum(name)] = value.template get<int>();
                else if (const auto cell = Params::string_to_float_enum(name); cell != Params::LastFloat)
                    params[cell] = floatOfBits(value);
                else
                    params[Params::string_to_string_enum(name)] = value.template get<std::string>();
            }
            const auto compare = [&](const std::string& name, const std::string& type, const nlohmann::json& expected) {
                const std::string where = set.directory + " case " + std::to_string(caseIndex) + " cell " + name +
                                          "\ninputs " + testCase.at("in").dump();
                if (type == "int")
                    EXPECT_EQ(params[Params::string_to_int_enum(name)], expected.get<int>()) << where;
                else if (type == "float")
                    EXPECT_THAT(params[Params::string_to_float_enum(name)], IsBits(floatOfBits(expected))) << where;
                else
                    EXPECT_EQ(params[Params::string_to_string_enum(name)], expected.get<std::string>()) << where;
                ++compared;
            };

            model.calculate(params);
            ASSERT_EQ(testCase.at("out").size(), cells.size());
            for (std::size_t i = 0; i < cells.size(); ++i)
                compare(cells[i][0], cells[i][1], testCase.at("out")[i]);

            for (const auto& [name, expected] : testCase.at("pulled").items()) {
                if (const auto intCell = Params::string_to_int_enum(name); intCell != Params::LastInt)
                    model.pull(intCell, params, data), compare(name, "int", expected);
                else if (const auto floatCell = Params::string_to_float_enum(name); floatCell != Params::LastFloat)
                    model.pull(floatCell, params, data), compare(name, "float", expected);
                else
                    model.pull(Params::string_to_string_enum(name), params, data), compare(name, "string", expected);
            }
            ++caseIndex;
            if (testing::Test::HasFailure())
                return; // the first bad case tells enough
        }

        // The vectors' list of cells is the block's: all of them, in enum order.
        std::vector<std::string> listed;
        for (const auto& cell : cells)
            listed.push_back(cell[0]);
        std::vector<std::string> own;
        for (const ZelmCellInfo& cell : Params::cells())
            own.emplace_back(cell.name);
        EXPECT_EQ(own, listed) << set.directory;
    }
    EXPECT_GT(compared, 0) << "no vectors for " << block;
}

} // namespace zelm::test
