// Designs that stand in several files.

#include "Designs.h"
#include "Tool.h"

#include "host/base/Json.h"

namespace zelm::test::includeTest {

using namespace zelm::host;
using testing::HasSubstr;

namespace {

class IncludeTest : public testing::Test {
protected:
    std::string write(const std::string& name, const std::string& text) const
    {
        std::filesystem::create_directories(std::filesystem::path(m_scratch.path(name)).parent_path());
        return m_scratch.write(name, text);
    }

    std::string messageOf(const std::string& text) const
    {
        try {
            estimate(readDesign(write("d.json", text)));
        } catch (const Error& error) {
            return error.what();
        }
        return "no error";
    }

    // A message's place, as the file's path in this test's folder makes it.
    std::string at(const std::string& place) const
    {
        return m_scratch.path(place);
    }

    static std::string namesOf(const Design& design)
    {
        std::string names;
        for (const Group& group : design.groups)
            names += group.name + (group.clock.empty() ? "" : "@" + group.clock) + ";";
        return names;
    }

    static Value inputOf(const Design& design, const std::string& group, const std::string& cell)
    {
        for (const Group& each : design.groups) {
            if (each.name == group && each.input(cell))
                return *each.input(cell);
        }
        return {};
    }

    const Scratch m_scratch;
};

constexpr const char* kLink = R"({
  "description": "a link", // of some lanes
  "parameters": {"lanes": 4, "double": "= lanes * 2"},
  "groups": [
    {"block": "Clock", "name": "clock", "inputs": {"CLOCK_FREQ": "= flink"}},
    {"block": "Bram", "name": "framer", "clock": "clock", "inputs": {"NUM_BRAMS": "= double"}},
    {"block": "Bram", "name": "outer", "clock": "core", "inputs": {"NUM_BRAMS": "= lanes + base"}}
  ]
})";

constexpr const char* kCore = R"("parameters": {"base": 10, "flink": "322 MHz", "right_lanes": 8},
  "groups": [{"block": "Clock", "name": "core"}])";

TEST_F(IncludeTest, AddsGroupsAndParametersBehindTheOwn)
{
    write("parts/link.json", kLink);
    const Design design =
        readDesign(write("d.json", std::string(R"({"include": ["parts/link.json"], )") + kCore + "}"));
    EXPECT_EQ(namesOf(design), "core;clock;framer@clock;outer@core;");
    EXPECT_EQ(inputOf(design, "clock", "CLOCK_FREQ"), Value(322.0f));
    EXPECT_EQ(inputOf(design, "framer", "NUM_BRAMS"), Value(8));
    EXPECT_EQ(inputOf(design, "outer", "NUM_BRAMS"), Value(14));
    EXPECT_EQ(design.source.at("groups[0]"), at("d.json") + ":2: groups[0]");
    EXPECT_EQ(design.source.at("groups[2].inputs.NUM_BRAMS"), at("parts/link.json") + ":6: groups[1].inputs.NUM_BRAMS");
    EXPECT_EQ(design.source.at("parameters.lanes"), at("parts/link.json") + ":3: parameters.lanes");
    EXPECT_EQ(design.source.at("parameters.base"), at("d.json") + ":1: parameters.base");
    EXPECT_EQ(design.source.includedFiles(), std::vector<std::string>{at("parts/link.json")});
}

TEST_F(IncludeTest, IsTheSameAsOneFile)
{
    write("link.json", kLink);
    const Estimate apart =
        estimate(readDesign(write("d.json", std::string(R"({"include": ["link.json"], )") + kCore + "}")));
    const Estimate together = estimateOf(R"({"groups": [{"block": "Clock", "name": "core"},
        {"block": "Clock", "name": "clock", "inputs": {"CLOCK_FREQ": 322}},
        {"block": "Bram", "name": "framer", "clock": "clock", "inputs": {"NUM_BRAMS": 8}},
        {"block": "Bram", "name": "outer", "clock": "core", "inputs": {"NUM_BRAMS": 14}}]})");
    EXPECT_GT(apart.dynamicWatts, 0.0);
    EXPECT_EQ(apart.dynamicWatts, together.dynamicWatts);
}

TEST_F(IncludeTest, PrefixesMakeOneFileOfUseTwice)
{
    write("link.json", kLink);
    const Design design =
        readDesign(write("d.json", std::string(R"({"include": [{"file": "link.json", "prefix": "left/"},
        {"file": "link.json", "prefix": "right/"}], )") +
                                       kCore + "}"));
    EXPECT_EQ(namesOf(design), "core;left/clock;left/framer@left/clock;left/outer@core;"
                               "right/clock;right/framer@right/clock;right/outer@core;");
    EXPECT_EQ(inputOf(design, "left/framer", "NUM_BRAMS"), Value(8));
    EXPECT_EQ(inputOf(design, "left/outer", "NUM_BRAMS"), Value(14));
    EXPECT_EQ(inputOf(design, "right/framer", "NUM_BRAMS"), Value(16)); // right_lanes is the design's own
    EXPECT_EQ(inputOf(design, "right/outer", "NUM_BRAMS"), Value(18));
}

TEST_F(IncludeTest, PrefixesAddUp)
{
    write(
        "a/b/inner.json",
        R"({"parameters": {"n": 1}, "groups": [{"block": "Bram", "clock": "clk", "inputs": {"NUM_BRAMS": "= n + m"}}]})");
    write("a/middle.json", R"({"include": [{"file": "b/inner.json", "prefix": "in."}], "parameters": {"m": 2},
                              "groups": [{"block": "Clock", "name": "clk"}]})");
    const Design design = readDesign(write("d.json", R"({"include": [{"file": "a/middle.json", "prefix": "out."}],
        "parameters": {"n": 100, "m": 200}, "groups": []})"));
    EXPECT_EQ(namesOf(design), "out.clk;out.in.Bram@out.clk;");
    EXPECT_EQ(inputOf(design, "out.in.Bram", "NUM_BRAMS"), Value(3));
}

TEST_F(IncludeTest, FilesAroundOthersHaveTheLastWordOnParameters)
{
    write("link.json", kLink);
    write("links.json", R"({"include": ["link.json"], "parameters": {"lanes": 5}})");
    const std::string core =
        R"("parameters": {"base": 10, "flink": 100}, "groups": [{"block": "Clock", "name": "core"}]})";
    EXPECT_EQ(inputOf(readDesign(write("d.json", R"({"include": ["links.json"], )" + core)), "framer", "NUM_BRAMS"),
              Value(10));
    // The same value twice is no contradiction, another one is.
    write("same.json", R"({"parameters": {"lanes": 4}})");
    EXPECT_EQ(messageOf(R"({"include": ["link.json", "same.json"], )" + core), "no error");
    write("other.json", "{\"parameters\":\n{\"lanes\": 6}}");
    EXPECT_THAT(messageOf(R"({"include": ["link.json", "other.json"], )" + core),
                HasSubstr(at("other.json") + ":2: parameters.lanes: " + at("link.json") + " gives another value"));
}

TEST_F(IncludeTest, ParametersOfOtherFilesVary)
{
    write("link.json", kLink);
    const std::string file =
        write("d.json", std::string(R"({"include": [{"file": "link.json", "prefix": "left/"}], )") + kCore + "}");
    const Json points = Json::parse(m_scratch
                                        .run("sweep " + file +
                                             " --json --vary parameters.left_lanes=4,6 --vary "
                                             "'groups[left/outer].inputs.PORT_A_CLOCK=100'")
                                        .out)
                            .at("points");
    ASSERT_EQ(points.size(), 2u);
    EXPECT_LT(points[0]["dynamicWatts"], points[1]["dynamicWatts"]);
}

TEST_F(IncludeTest, NoReportTakesThePlaceOfAnIncludedFile)
{
    write("link.json", kLink);
    const std::string file = write("d.json", std::string(R"({"include": ["link.json"], )") + kCore + "}");
    const ToolRun run = m_scratch.run("estimate " + file + " --html " + at("link.json"));
    EXPECT_EQ(run.code, 2);
    EXPECT_THAT(run.err, HasSubstr(at("link.json")));
    EXPECT_EQ(Scratch::read(at("link.json")), kLink);
}

TEST_F(IncludeTest, MistakesAreToldWithTheirFile)
{
    write("itself.json", "{\n\"include\": [\"itself.json\"]}");
    write("one.json", "{\"include\": [\n\"two.json\"]}");
    write("two.json", "{\"include\": [\n\n\"./one.json\"]}");
    write("broken.json", "{\n\"groups\": [}");
    write("list.json", "[1]");
    write("device.json", "{\"groups\": [],\n\"device\": {\"part\": \"zq4410\"}}");
    write("typo.json", "{\n\"parameter\": {}}");
    write("cell.json", "{\"groups\": [\n{\"block\": \"Bram\", \"inputs\": {\"NUM_BRAM\": 1}}]}");
    write("unit.json", "{\"groups\": [\n{\"block\": \"Bram\", \"inputs\":\n{\"PORT_A_CLOCK\": \"3 MHZz\"}}]}");
    write("name.json", "{\"groups\": [\n{\"block\": \"Bram\", \"inputs\":\n{\"NUM_BRAMS\": \"= lane\"}}]}");
    write("zero.json", "{\"parameters\": {\n\"a\": \"= 1 / 0\"}}");
    write("circle.json", "{\"parameters\": {\n\"a\": \"= b\"}}");
    write("same.json", "{\"groups\": [\n{\"block\": \"Bram\",\n\"name\": \"own\"}]}");
    write("number.json", "{\"groups\": [\n7]}");
    write("groups.json", "{\n\"groups\": {}}");
    write("parameters.json", "{\n\"parameters\": []}");
    write("clock.json", "{\"groups\": [{\"block\": \"Bram\",\n\"clock\": \"cork\"}]}");
    const auto wrong = [&](const std::string& include, const std::string& where, const std::string& words) {
        const std::string message = messageOf("{\"include\":\n" + include + R"(, "parameters": {"b": "= a"},
            "groups": [{"block": "Bram", "name": "own"}, {"block": "Clock", "name": "core"}]})");
        EXPECT_THAT(message, testing::StartsWith(at(where) + ": ")) << include;
        EXPECT_THAT(message, HasSubstr(words)) << include;
    };
    wrong("\"link.json\"", "d.json:1: include", "expected a list of files, found the string \"link.json\"");
    wrong("[3]", "d.json:2: include[0]",
          "expected a file's name or {\"file\": ..., \"prefix\": ...}, found the number 3");
    wrong("[\"\"]", "d.json:2: include[0]", "the name of the file is empty");
    wrong("[{\"prefix\": \"a\"}]", "d.json:2: include[0]", "an include needs its \"file\"");
    wrong("[{\"file\": 1}]", "d.json:2: include[0].file", "expected a text");
    wrong("[{\"file\": \"same.json\", \"prefx\": \"a\"}]", "d.json:2: include[0].prefx", "did you mean prefix?");
    wrong("[\"none.json\"]", "d.json:2: include[0]", at("none.json") + " cannot be read: there is no such file");
    wrong("[\".\"]", "d.json:2: include[0]", "is a folder");
    wrong("[\"d.json\"]", "d.json:2: include[0]", "d.json includes itself: d.json -> d.json");
    wrong("[\"itself.json\"]", "itself.json:2: include[0]",
          "itself.json includes itself: d.json -> itself.json -> itself.json");
    wrong("[\"one.json\"]", "two.json:3: include[0]", "includes itself: d.json -> one.json -> two.json -> one.json");
    wrong("[\"broken.json\"]", "broken.json:2:12", "syntax error");
    wrong("[\"list.json\"]", "list.json", "expected an object {...}, found the array [1]");
    wrong("[\"device.json\"]", "device.json:2: device", "a file that is included has no field of this name");
    wrong("[\"typo.json\"]", "typo.json:2: parameter", "did you mean parameters?");
    wrong("[\"zero.json\"]", "zero.json:2: parameters.a", "\"= 1 / 0\" is no finite number");
    wrong("[\"circle.json\"]", "d.json:2: parameters.b", "stands on itself: b -> a -> b");
    write("a.json", "{\"parameters\": {\"a\": 1}}");
    wrong("[\"a.json\", \"cell.json\"]", "cell.json:2: groups[0].inputs.NUM_BRAM", "did you mean NUM_BRAMS?");
    wrong("[\"a.json\", \"unit.json\"]", "unit.json:3: groups[0].inputs.PORT_A_CLOCK",
          "there is no unit MHZz; did you mean MHz");
    wrong("[\"a.json\", \"name.json\"]", "name.json:3: groups[0].inputs.NUM_BRAMS",
          "names lane, and there is no such parameter");
    wrong("[\"a.json\", \"same.json\"]", "same.json:3: groups[0].name", "two groups are named \"own\"");
    wrong("[\"a.json\", \"number.json\"]", "number.json:2: groups[0]", "expected an object {...}, found the number 7");
    wrong("[\"a.json\", \"groups.json\"]", "groups.json:2: groups", "expected a list");
    wrong("[\"a.json\", \"parameters.json\"]", "parameters.json:2: parameters", "expected an object");
    wrong("[\"a.json\", \"clock.json\"]", "clock.json:2: groups[0].clock",
          "no group of Clock is named \"cork\"; did you mean core?");
}

TEST_F(IncludeTest, HasLimits)
{
    for (int i = 0; i < 18; ++i)
        write("f" + std::to_string(i) + ".json", "{\"include\": [\"f" + std::to_string(i + 1) + ".json\"]}");
    write("f18.json", "{}");
    EXPECT_EQ(messageOf(R"({"include": ["f3.json"], "groups": []})"), "no error"); // f3 to f18 are 16
    EXPECT_THAT(messageOf(R"({"include": ["f2.json"], "groups": []})"),
                HasSubstr("files include each other more than 16 deep"));
    const auto times = [](int count) {
        std::string list;
        for (int i = 0; i < count; ++i)
            list += (i == 0 ? "" : ", ") + std::string("\"f18.json\"");
        return "{\"include\": [" + list + "], \"groups\": []}";
    };
    EXPECT_EQ(messageOf(times(100)), "no error");
    EXPECT_THAT(messageOf(times(101)), HasSubstr("d.json:1: include[100]: more than 100 files are included"));
}

} // namespace

} // namespace zelm::test::includeTest
