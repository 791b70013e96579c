// The example designs hold together: memories that are written, traffic that the memories can carry, nibbles of six.

#include "AnyBlock.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>

namespace zelm::test::exampleTest {

namespace {

using Json = nlohmann::json;

std::vector<std::string> examples()
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(ZELM_SOURCE_DIR "/examples")) {
        if (entry.path().extension() == ".json")
            names.push_back(entry.path().stem().string());
    }
    return names;
}

class ExampleDesign : public testing::TestWithParam<std::string> {
protected:
    std::vector<Json> groups(const std::string& block) const
    {
        std::vector<Json> found;
        for (const Json& group : m_design.at("groups")) {
            if (group.at("block") == block)
                found.push_back(group);
        }
        return found;
    }

    static double input(const Json& group, const char* cell)
    {
        return group.at("inputs").value(cell, 0.0);
    }

    static double count(const Json& group)
    {
        return group.value("count", 1.0);
    }

    static constexpr bool kThrows = true;
    static constexpr bool kWithComments = true;
    const Json m_design = Json::parse(std::ifstream(ZELM_SOURCE_DIR "/examples/" + GetParam() + ".json"), nullptr,
                                      kThrows, kWithComments);
};

TEST_P(ExampleDesign, SaysWhatItStandsFor)
{
    EXPECT_GT(m_design.at("description").get<std::string>().size(), 200u);
}

TEST_P(ExampleDesign, WritesItsSimpleDualPortMemoriesOnPortB)
{
    for (const Json& group : groups("Bram")) {
        if (group.at("inputs").value("MODE", "BLKM18").find("SDP") == std::string::npos)
            continue;
        EXPECT_EQ(input(group, "PORT_A_WRITE_ENABLE"), 0.0) << group.at("name");
        EXPECT_GT(input(group, "PORT_B_WRITE_ENABLE"), 0.0) << group.at("name");
        EXPECT_LE(input(group, "PORT_B_WRITE_ENABLE"), input(group, "PORT_B_ENABLE_RATE")) << group.at("name");
    }
}

TEST_P(ExampleDesign, CarriesOverTheNetworkWhatItsMemoriesTake)
{
    double reads = 0.0;
    double writes = 0.0;
    for (const Json& path : groups("Noc")) {
        if (!path.at("inputs").at("DATA_PATH").get<std::string>().ends_with("_TO_DDRC"))
            continue;
        reads += count(path) * input(path, "BANDWITH_READ");
        writes += count(path) * input(path, "BANDWITH_WRITE");
    }
    double declaredReads = 0.0;
    double declaredWrites = 0.0;
    for (const Json& controller : groups("Ddrmc")) {
        const double peak = input(controller, "DATA_WIDTH") / 8.0 * input(controller, "DATA_RATE"); // MB/s
        EXPECT_LE(input(controller, "READ_BAND_WIDTH") + input(controller, "WRITE_BAND_WIDTH"), 0.8 * peak)
            << controller.at("name");
        declaredReads += count(controller) * input(controller, "READ_BAND_WIDTH");
        declaredWrites += count(controller) * input(controller, "WRITE_BAND_WIDTH");
    }
    EXPECT_NEAR(declaredReads, reads, 0.05 * reads);
    EXPECT_NEAR(declaredWrites, writes, 0.05 * writes);
}

TEST_P(ExampleDesign, FillsNibblesWithUpToSix)
{
    for (const Json& group : groups("Kelp")) {
        const double used = input(group, "NUM_RX_IOS") + input(group, "NUM_TX_IOS") + input(group, "NUM_RXTX_IOS");
        EXPECT_GE(used, 1.0) << group.at("name");
        EXPECT_LE(used, 6.0) << group.at("name");
    }
}

TEST_P(ExampleDesign, CountsItsProcessorsPllsOnce)
{
    if (groups("Pspll").empty())
        return;
    for (const Json& group : groups("Yond")) {
        EXPECT_EQ(group.at("inputs").value("FPD_PLL_ON_OFF", 1), 0) << group.at("name");
        EXPECT_EQ(group.at("inputs").value("LPD_PLL_ON_OFF", 1), 0) << group.at("name");
    }
}

TEST_P(ExampleDesign, ClocksItsDirectMemoryAccess)
{
    for (const Json& group : groups("Wist5")) {
        AnyBlock module = kind("Wist5").create();
        for (const auto& [cell, value] : group.at("inputs").items())
            module.set(Setting{cell.c_str(), value.get_ref<const std::string&>().c_str()});
        module.calculate();
        EXPECT_GT(module.number("DMA0_FREQUENCY"), 0.0) << group.at("name");
        EXPECT_GT(module.number("DMA1_FREQUENCY"), 0.0) << group.at("name");
    }
}

INSTANTIATE_TEST_SUITE_P(All, ExampleDesign, testing::ValuesIn(examples()),
                         [](const auto& test) { return test.param; });

} // namespace

} // namespace zelm::test::exampleTest
