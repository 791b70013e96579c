// Every block's uncertainty stands in data/uncertainty.json, with a reason and in the range of early estimates.

#include "AnyBlock.h"

#include "support/DataDirectory.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>

namespace zelm::test::uncertaintyTest {

namespace {

using Json = nlohmann::json;

void expectBelievable(const std::string& where, const Json& entry)
{
    EXPECT_GE(entry.at("relative").get<double>(), 0.05) << where;
    EXPECT_LE(entry.at("relative").get<double>(), 0.4) << where;
    EXPECT_FALSE(entry.at("reason").get<std::string>().empty()) << where;
}

TEST(Uncertainty, OfEachBlockIsSaid)
{
    const Json blocks = Json::parse(std::ifstream(shippedDataDirectory() + "/uncertainty.json")).at("blocks");
    EXPECT_EQ(blocks.size(), kinds().size());
    for (const Kind& each : kinds()) {
        const std::string name(each.name);
        ASSERT_TRUE(blocks.contains(name)) << name;
        for (const auto& [what, entry] : blocks.at(name).items()) {
            if (what == "none")
                continue;
            if (what != "rails") {
                expectBelievable(name + " " + what, entry);
                continue;
            }
            for (const auto& [rail, own] : entry.items())
                expectBelievable(name + " " + rail, own);
        }
    }
}

// A block that says "none" has no output of power or current, and the others have one.
TEST(Uncertainty, IsNoneWhereThereIsNoPower)
{
    const Json blocks = Json::parse(std::ifstream(shippedDataDirectory() + "/uncertainty.json")).at("blocks");
    for (const Kind& each : kinds()) {
        const bool hasPower = std::any_of(each.cells.begin(), each.cells.end(), [](const ZelmCellInfo& cell) {
            return cell.kind == ZelmCellInfo::Kind::modelOutput && baseUnits(cell.unit) > 0.0;
        });
        EXPECT_EQ(hasPower, !blocks.at(std::string(each.name)).contains("none")) << each.name;
    }
}

} // namespace

} // namespace zelm::test::uncertaintyTest
