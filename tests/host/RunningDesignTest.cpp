#include "Designs.h"
#include "Tool.h"

#include "host/base/Json.h"
#include "host/design/Include.h"
#include "host/design/Place.h"
#include "host/estimate/EditedDesign.h"
#include "host/report/Report.h"

#include "device/ZelmOrvaneStaticData.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <regex>

namespace zelm::test::runningDesignTest {

using namespace zelm::host;

namespace {

// A value of a design, and another that it takes.
struct Edit {
    std::string place;
    Json before;
    Json after;
};

std::vector<Edit> editsOf(const Json& root)
{
    std::vector<Edit> edits{{"rails.VCCINT", 0.8, 0.81}, {"device.process", "TYP", "MAX"}};
    const Json& groups = root.at("groups");
    std::string clock;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        const std::string group = "groups[" + std::to_string(i) + "]";
        edits.push_back({group + ".count", groups[i].value("count", Json(1)), 2});
        for (const auto& [cell, value] : groups[i].at("inputs").items()) {
            if (value.is_number_float())
                edits.push_back({group + ".inputs." + cell, value, value.get<double>() * 0.75});
        }
        if (groups[i].contains("clock")) {
            if (clock.empty())
                clock = groups[i]["clock"];
            edits.push_back({group + ".clock", groups[i]["clock"], clock});
        }
    }
    if (root.contains("environment") && root["environment"].contains("ambientTemperature"))
        edits.push_back({"environment.ambientTemperature", root["environment"]["ambientTemperature"], 21.5});
    return edits;
}

std::string reportOf(const Estimate& estimate)
{
    return jsonText(jsonReport(estimate));
}

// What both come to; the words of the error if the design comes to nothing.
template <class Estimated>
std::string reportOrError(Estimated estimated)
{
    try {
        return reportOf(estimated());
    } catch (const Error& error) {
        return error.what();
    }
}

class EditedExample : public testing::TestWithParam<const char*> {};

// To the last bit what a new estimate gives, whatever changed in whatever order.
TEST_P(EditedExample, IsWhatANewEstimateGives)
{
    JsonSource source;
    const Json root = readDesignTree(std::string(ZELM_SOURCE_DIR "/examples/") + GetParam() + ".json", source);
    const std::vector<Edit> edits = editsOf(root);
    ASSERT_GT(edits.size(), 3u);
    std::vector<std::string> places;
    for (const Edit& edit : edits)
        places.push_back(edit.place);
    EditedDesign edited(root, source, places, Gaps::warned);
    for (std::size_t i = 0; i < edits.size(); ++i)
        edited.set(i, edits[i].before);
    std::vector<bool> changed(edits.size(), false);
    std::mt19937 random(7);
    std::string log;
    for (int round = 0; round < 30; ++round) {
        const std::size_t i = random() % edits.size();
        changed[i] = !changed[i];
        edited.set(i, changed[i] ? edits[i].after : edits[i].before);
        log += " " + edits[i].place;
        if (random() % 3 == 0)
            continue; // several edits before one estimate
        Json fresh = root;
        for (std::size_t k = 0; k < edits.size(); ++k)
            placeAt(fresh, edits[k].place) = changed[k] ? edits[k].after : edits[k].before;
        ASSERT_EQ(reportOrError([&] { return edited.estimate(); }),
                  reportOrError([&] { return estimate(readDesign(fresh, source), Curves::none, Gaps::warned); }))
            << "after the edits of" << log;
    }
}

INSTANTIATE_TEST_SUITE_P(All, EditedExample,
                         testing::Values("first", "controller", "gateway", "network", "radio", "vision"),
                         [](const auto& example) { return std::string(example.param); });

TEST(RunningDesign, AfterAnErrorAChangeMendsIt)
{
    const auto design = [](const std::string& pins) {
        return parseDesign("d.json", R"({"device": {"part": "zq4410"}, "environment": {"ambientTemperature": 40,
            "thetaJA": 1}, "groups": [{"block": "Kelp", "inputs": {"NUM_RX_IOS": )" +
                                         pins + R"(, "NUM_TX_IOS": 3, "RX_DATA_WIDTH": 8, "CLOCK_FREQ": 1500}},
            {"block": "Signal", "inputs": {"SIGNAL_COUNT": 1000, "CLOCK_FREQ": 300, "ROUTING_COMPLEXITY": 9}}]})");
    };
    RunningDesign running(design("3"));
    const std::string before = reportOf(running.estimate());
    running.change(design("4")); // a nibble has six
    EXPECT_THROW(running.estimate(), Error);
    EXPECT_THROW(running.estimate(), Error);
    running.change(design("3"));
    EXPECT_EQ(reportOf(running.estimate()), before);
    running.change(design("2"));
    EXPECT_EQ(reportOf(running.estimate()), reportOf(estimate(design("2"))));
}

TEST(RunningDesign, GroupsComeAndGo)
{
    const auto design = [](const std::string& groups) {
        return parseDesign("d.json", R"({"device": {"part": "zq4410"}, "groups": [)" + groups + "]}");
    };
    const std::string nets = R"({"block": "Signal", "inputs": {"SIGNAL_COUNT": 1000, "CLOCK_FREQ": 300}})";
    const std::string memories = R"({"block": "Bram", "inputs": {"NUM_BRAMS": 8}})";
    RunningDesign running(design(nets));
    for (const std::string& groups : {nets, nets + "," + memories, memories, std::string(), memories + "," + nets}) {
        running.change(design(groups));
        EXPECT_EQ(reportOf(running.estimate()), reportOf(estimate(design(groups)))) << groups;
    }
}

void load(const std::string& directory)
{
    const DataDirVariable variable(directory);
    ASSERT_TRUE(ZelmOrvaneStaticData::getMutableGlobal().reset());
}

// Neither a design at work nor what estimates share goes on with data that are no longer there.
TEST(RunningDesign, DataThatAreLoadedAnewCount)
{
    const Design design =
        parseDesign("d.json", R"({"device": {"part": "zq4410"}, "environment": {"ambientTemperature": 40,
        "thetaJA": 1}, "groups": [{"block": "Bram", "inputs": {"NUM_BRAMS": 8}}]})");
    RunningDesign running(design);
    const std::string before = reportOf(running.estimate());
    const Scratch scratch;
    const std::string spoilt = scratch.copyData();
    const std::string file = spoilt + "/powercfg/orvane/ZelmOrvaneStaticData.cfg";
    const std::string text = Scratch::read(file);
    const std::string grown = std::regex_replace(text, std::regex("CONST = 0\\."), "CONST = 0.1"); // of leakage
    ASSERT_NE(grown, text);
    std::ofstream(file) << grown;
    load(spoilt);
    const std::string others = reportOf(estimate(design));
    EXPECT_NE(others, before);
    EXPECT_EQ(reportOf(running.estimate()), others);
    load(shippedDataDirectory());
    EXPECT_EQ(reportOf(running.estimate()), before);
    EXPECT_EQ(reportOf(estimate(design)), before);
}

} // namespace

} // namespace zelm::test::runningDesignTest
