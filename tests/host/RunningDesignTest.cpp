#include "Designs.h"
#include "Tool.h"

#include "host/base/Json.h"
#include "host/blocks/Legal.h"
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
    if (root.contains("parameters")) {
        for (const auto& [name, value] : root["parameters"].items())
            edits.push_back({"parameters." + name, value, name == "hall" ? Json("41 C") : Json("240 MHz")});
    }
    if (root.contains("modes"))
        edits.push_back({"modes[0].for", root["modes"][0]["for"], "3 s"});
    return edits;
}

// Modes that set all that a mode can: inputs and counts, which are edited, too, rails, parameters that the environment
// depends on, and all inputs of a group.
Json withModes(Json root)
{
    root["parameters"]["hall"] = "30 C";
    root["environment"]["ambientTemperature"] = "= hall + 2 C";
    const Json& groups = root.at("groups");
    Json set{{"rails.VCCINT", 0.79}, {"parameters.hall", "25 C"}};
    for (std::size_t i = 0; i < groups.size(); ++i) {
        const std::string group = "groups[" + groups[i].value("name", groups[i].at("block")).get<std::string>() + "]";
        if (i % 4 == 1)
            set[group + ".count"] = 3;
        if (i % 4 == 2)
            set[group + ".inputs"] = groups[i].at("inputs");
        for (const auto& [cell, value] : groups[i].at("inputs").items()) {
            if (i % 4 == 0 && value.is_number_float())
                set[group + ".inputs." + cell] = value.get<double>() * 0.5;
        }
    }
    root["modes"] = {{{"name", "as it is"}, {"for", "1 s"}}, {{"name", "changed"}, {"for", "2 s"}, {"set", set}}};
    return root;
}

Json exampleTree(const std::string& name, JsonSource& source)
{
    return readDesignTree(ZELM_SOURCE_DIR "/examples/" + name + ".json", source);
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

// To the last bit what a new estimate gives, whatever changed in whatever order.
void editAtRandom(const Json& root, const JsonSource& source)
{
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

class EditedExample : public testing::TestWithParam<const char*> {};

TEST_P(EditedExample, IsWhatANewEstimateGives)
{
    JsonSource source;
    const Json root = exampleTree(GetParam(), source);
    editAtRandom(root, source);
}

TEST_P(EditedExample, WithModesIsWhatANewEstimateGives)
{
    JsonSource source;
    const Json root = withModes(exampleTree(GetParam(), source));
    editAtRandom(root, source);
}

INSTANTIATE_TEST_SUITE_P(All, EditedExample,
                         testing::Values("first", "controller", "gateway", "network", "radio", "vision"),
                         [](const auto& example) { return std::string(example.param); });

constexpr const char* kModes =
    R"({"device": {"part": "zq4410"}, "environment": {"ambientTemperature": 40, "thetaJA": 1},
    "modes": [{"name": "half", "for": 1, "set": {"groups[0].inputs.NUM_BRAMS": 20}}, {"name": "all", "for": 1}],
    "groups": [{"block": "Bram", "count": 2, "inputs": {"NUM_BRAMS": 40}},
               {"block": "Signal", "inputs": {"SIGNAL_COUNT": 1000, "CLOCK_FREQ": 300}}]})";

// Whoever keeps an estimate has the design that it is of.
TEST(EditedDesign, LeavesTheModesOfCopiesAlone)
{
    JsonSource source{"d.json", {}};
    EditedDesign edited(parseJson(kModes, source), source, {"groups[0].count"}, Gaps::refused);
    edited.set(0, 2);
    const auto countInMode = [](const Estimate& estimate) {
        return estimate.design.modes.at(0).design->groups.at(0).count;
    };
    const Estimate first = edited.estimate();
    edited.set(0, 3);
    const Estimate second = edited.estimate();
    edited.set(0, 4);
    EXPECT_EQ(countInMode(edited.estimate()), 4);
    EXPECT_EQ(countInMode(second), 3);
    EXPECT_EQ(countInMode(first), 2);
}

// What is wrong is told as of a design that is read for the first time: of a mode too, which then is mended with it.
TEST(EditedDesign, TellsOfAModeThatAnEditBreaks)
{
    JsonSource source{"d.json", {}};
    Json root = parseJson(kModes, source);
    root["modes"][0]["set"] = {{"parameters.depth", "40 MHz"}};
    root["parameters"]["depth"] = 40;
    const std::string place = "groups[0].inputs.NUM_BRAMS";
    EditedDesign edited(root, source, {place}, Gaps::refused);
    for (const Json& value : {Json(40), Json("= depth"), Json(30)}) {
        edited.set(0, value);
        placeAt(root, place) = value;
        EXPECT_EQ(reportOrError([&] { return edited.estimate(); }),
                  reportOrError([&] { return estimate(readDesign(root, source)); }))
            << value;
    }
}

TEST(EditedDesign, FollowsWhereAModeReplacesAGroup)
{
    JsonSource source{"d.json", {}};
    Json root = parseJson(kModes, source);
    root["modes"][0]["set"] = {{"groups[0]", {{"block", "DspInt8"}, {"name", "others"}, {"inputs", Json::object()}}},
                               {"groups[Signal].inputs.TOGGLE_RATE", 0.3}};
    EditedDesign edited(root, source, {"groups[0].count", "environment.ambientTemperature"}, Gaps::refused);
    edited.set(1, 40);
    for (const int count : {2, 3, 4}) {
        edited.set(0, count);
        root["groups"][0]["count"] = count;
        EXPECT_EQ(reportOf(edited.estimate()), reportOf(estimate(readDesign(root, source)))) << count;
    }
}

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

TEST(RunningDesign, DevicesComeAndGo)
{
    const auto design = [](const std::string& device) {
        return parseDesign("d.json", "{" + device + R"("groups": [{"block": "Bram", "inputs": {"NUM_BRAMS": 8}}]})");
    };
    const std::string one = R"("device": {"part": "zq4410"}, )";
    const std::string other = R"("device": {"part": "zq5620"}, )";
    RunningDesign running(design(one));
    for (const std::string& device : {one, std::string(), other, one}) {
        running.change(design(device));
        EXPECT_EQ(reportOf(running.estimate()), reportOf(estimate(design(device)))) << device;
        EXPECT_EQ(running.estimate().utilisation.empty(), device.empty());
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
    const Design design = parseDesign("d.json", kModes);
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

// Nor do the words that designs are held against.
TEST(LegalWords, AreKeysOfTheDataThatAreLoaded)
{
    const Block& statics = block("Static");
    const auto isGrade = [&](const std::string& word) {
        return !whyIllegal(statics, statics.cell("SPEED_GRADE"), word);
    };
    EXPECT_TRUE(isGrade("3"));
    EXPECT_FALSE(isGrade("9"));
    const Scratch scratch;
    const std::string other = scratch.copyData();
    const std::string file = Scratch::dataFile(other, "Static");
    const std::string text = Scratch::read(file);
    std::ofstream(file) << std::regex_replace(text, std::regex("SPEED_3"), "SPEED_9");
    load(other);
    EXPECT_FALSE(isGrade("3"));
    EXPECT_TRUE(isGrade("9"));
    load(shippedDataDirectory());
    EXPECT_TRUE(isGrade("3"));
    EXPECT_FALSE(isGrade("9"));
}

} // namespace

} // namespace zelm::test::runningDesignTest
