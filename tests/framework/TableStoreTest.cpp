// The data directory, the table store and the load of data blocks.
#include "framework/LibconfigAutoConvert.h"
#include "framework/ZelmLookUpMisses.h"
#include "framework/ZelmOrvaneGauge.h"
#include "framework/ZelmOrvaneSignalModel.h"

#include "support/BlockContract.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <thread>

namespace {

using namespace zelm::test;
using Utils = ZelmHelperUtils;
namespace fs = std::filesystem;

std::vector<std::string> sorted(std::vector<std::string> v)
{
    std::sort(v.begin(), v.end());
    return v;
}

template <class T>
Utils::Table<T> load(const char* text, bool expected = true)
{
    libconfig::Config cfg;
    cfg.readString(text);
    zelm::setAutoConvert(cfg, false);
    std::vector<std::string> path{"Block", "TABLE"};
    Utils::Table<T> table;
    EXPECT_EQ(Utils::loadCfgDataToVar(&cfg, path, table, true), expected);
    EXPECT_FALSE(zelm::autoConvert(cfg)) << "the option is not as it was";
    EXPECT_EQ(path, (std::vector<std::string>{"Block", "TABLE"}));
    return table;
}

// ---- Data directory ----

TEST(DataDirectory, TheFirstListedDirectoryThatHoldsTheFileIsGivenAsListed)
{
    const TemporaryDataDirectory empty;
    const TemporaryDataDirectory holder;
    holder.write("ZelmOrvaneSignalData", "");
    const std::string first = empty.path().string();
    const std::string second = holder.path().string() + "/";
    const DataDirVariable variable(first + "::" + second);
    EXPECT_EQ(ZelmData::getQTADataDir("powercfg/orvane/ZelmOrvaneSignalData.cfg"), second);
    EXPECT_EQ(ZelmData::getQTADataDir("powercfg/orvane/NoSuchFile.cfg"), "");
    EXPECT_EQ(ZelmData::getQTADataDir("powercfg"), first) << "a directory exists too";
}

TEST(DataDirectory, WithoutAFileTheLastDirectoryIsGiven)
{
    const DataDirVariable variable("/first:/second");
    EXPECT_EQ(ZelmData::getQTADataDir(""), "/second");
}

TEST(DataDirectory, AnEmptyListGivesNothing)
{
    const DataDirVariable variable("");
    EXPECT_EQ(ZelmData::getQTADataDir("powercfg"), "");
    EXPECT_EQ(ZelmData::getQTADataDir(""), "");
}

TEST(DataDirectory, AnUnsetVariableIsALogicError)
{
    const DataDirVariable variable(std::nullopt);
    try {
        ZelmData::getQTADataDir("powercfg");
        FAIL() << "no exception";
    } catch (const std::logic_error& error) {
        EXPECT_STREQ(error.what(), "basic_string::_M_construct null not valid");
    }
    EXPECT_THROW(ZelmOrvaneSignalData(), std::logic_error);
}

// ---- Reading files ----

TEST(ReadFile, ANullConfigIsRefused)
{
    const DataDirVariable variable(std::nullopt); // not even looked at
    EXPECT_FALSE(ZelmData::readFile(nullptr, "orvane/ZelmOrvaneSignalData.cfg"));
}

TEST(ReadFile, AutoConversionIsOnAfterwards)
{
    const TemporaryDataDirectory directory;
    directory.write("ZelmOrvaneSignalData", "ZelmOrvaneSignalData : { WHOLE = 3; };");
    libconfig::Config cfg;
    EXPECT_TRUE(ZelmData::readFile(&cfg, "orvane/ZelmOrvaneSignalData.cfg"));
    float value = 0.0f;
    EXPECT_TRUE(cfg.lookupValue("ZelmOrvaneSignalData.WHOLE", value));
    EXPECT_THAT(value, IsBits(3.0f));
}

struct BrokenFile {
    const char* what;
    void (*breakIt)(const TemporaryDataDirectory&);
    bool parses;
    const char* message;
};

class BrokenFiles : public testing::TestWithParam<BrokenFile> {};

constexpr const char* kWhole = "ZelmOrvaneSignalData : { PER_NODE_CAP : { OTHER = 1.0; LUT = 2.0; }; };";

TEST_P(BrokenFiles, ResetLeavesEmptyTablesAndAMendedFileLoads)
{
    const TemporaryDataDirectory directory;
    directory.write("ZelmOrvaneSignalData", kWhole);
    ZelmOrvaneSignalData data;
    ASSERT_THAT(data.getPerNodeCap("LUT"), IsBits(2.0f));

    GetParam().breakIt(directory);
    testing::internal::CaptureStderr();
    if (GetParam().parses)
        EXPECT_THROW(data.reset(), libconfig::ParseException);
    else
        EXPECT_THROW(data.reset(), libconfig::FileIOException);
    const std::string printed = testing::internal::GetCapturedStderr();
    EXPECT_NE(printed.find(GetParam().message), std::string::npos) << printed;
    if (GetParam().parses) {
        EXPECT_EQ(printed.rfind("Parse error at " + directory.fileOf("ZelmOrvaneSignalData").string() + ":", 0), 0u)
            << printed;
    }
    EXPECT_THAT(data.getPerNodeCap("LUT"), IsBits(zelm::unsetFloat));
    EXPECT_EQ(data.reflect(), "m_PerNodeCap ( Container with 0 elements )\n");

    fs::remove_all(directory.fileOf("ZelmOrvaneSignalData"));
    directory.write("ZelmOrvaneSignalData", kWhole);
    EXPECT_TRUE(data.reset());
    EXPECT_THAT(data.getPerNodeCap("LUT"), IsBits(2.0f));
}

TEST_P(BrokenFiles, AFailedFirstUseIsTriedAgain)
{
    // The singleton of the made-up block: this test alone may meet it unconstructed, so it runs in a child process.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            const TemporaryDataDirectory directory;
            const char* whole = "ZelmOrvaneSignalData : { PER_NODE_CAP : { OTHER = 1.0; }; };";
            directory.write("ZelmOrvaneSignalData", whole);
            GetParam().breakIt(directory);
            int failures = 0;
            for (int attempt = 0; attempt < 2; ++attempt) {
                try {
                    ZelmOrvaneSignalData::getGlobal();
                } catch (const libconfig::ConfigException&) {
                    ++failures;
                }
            }
            fs::remove_all(directory.fileOf("ZelmOrvaneSignalData"));
            directory.write("ZelmOrvaneSignalData", whole);
            const bool mended = ZelmOrvaneSignalData::getGlobal().getPerNodeCap("OTHER") == 1.0f;
            std::exit(failures == 2 && mended ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

INSTANTIATE_TEST_SUITE_P(
    All, BrokenFiles,
    testing::Values(BrokenFile{"Missing",
                               [](const TemporaryDataDirectory& d) { fs::remove(d.fileOf("ZelmOrvaneSignalData")); },
                               false, "I/O error while reading file.\n"},
                    BrokenFile{"Unreadable",
                               [](const TemporaryDataDirectory& d) {
                                   fs::remove(d.fileOf("ZelmOrvaneSignalData"));
                                   fs::create_directory(d.fileOf("ZelmOrvaneSignalData"));
                               },
                               false, "I/O error while reading file.\n"},
                    BrokenFile{"CutInTheMiddle",
                               [](const TemporaryDataDirectory& d) {
                                   d.write("ZelmOrvaneSignalData", std::string_view(kWhole).substr(0, 50));
                               },
                               true, " - syntax error"}),
    [](const auto& broken) { return std::string(broken.param.what); });

// ---- Loading tables ----

TEST(LoadTable, NestedGroupsBecomeDottedKeysWithoutTheLeadingTwo)
{
    const char* text = "Block : { TABLE : { OTHER = 1.5; A : { B : { C = 2.5; }; D = 3.5; }; }; };";
    EXPECT_EQ(load<float>(text), (Utils::Table<float>{{"OTHER", 1.5f}, {"A.B.C", 2.5f}, {"A.D", 3.5f}}));
}

TEST(LoadTable, AMissingPathIsFalseAndSilent)
{
    testing::internal::CaptureStdout();
    const char* text = "Block : { };";
    EXPECT_TRUE(load<float>(text, false).empty());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(LoadTable, AnEmptyGroupIsAnEmptyTable)
{
    const char* text = "Block : { TABLE : { }; };";
    EXPECT_TRUE(load<int>(text).empty());
}

TEST(LoadTable, AScalarAtTheTablesOwnPathHasTheEmptyKey)
{
    const char* text = "Block : { TABLE = 7; };";
    EXPECT_EQ(load<int>(text), (Utils::Table<int>{{"", 7}}));
}

TEST(LoadTable, IntegersBecomeFloatsAndTheOptionIsRestored)
{
    const char* text = "Block : { TABLE : { WHOLE = 3; BIG = 5000000000L; PART = 0.25; }; };";
    EXPECT_EQ(load<float>(text), (Utils::Table<float>{{"WHOLE", 3.0f}, {"BIG", 5e9f}, {"PART", 0.25f}}));
}

TEST(LoadTable, AValueThatDoesNotConvertIsLeftOutWithoutAWord)
{
    testing::internal::CaptureStdout();
    const char* text = "Block : { TABLE : { TEXT = \"yes\"; NUMBER = 3; FLAG = true; }; };";
    EXPECT_EQ(load<std::string>(text), (Utils::Table<std::string>{{"TEXT", "yes"}}));
    EXPECT_EQ(load<bool>(text), (Utils::Table<bool>{{"FLAG", true}}));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(LoadTable, ArraysAndListsAreSkippedWithALineEach)
{
    testing::internal::CaptureStdout();
    const char* text = "Block : { TABLE : { A = 1; B = [1, 2]; C : { D = (3, 4); E = 5; }; }; };";
    EXPECT_EQ(load<int>(text), (Utils::Table<int>{{"A", 1}, {"C.E", 5}}));
    const std::string line =
        "Unsupported cfg file format error: to use loadCfgDataToVar function, cfg has to be a nested "
        "dictionary that does not contain any array or list.\n";
    EXPECT_EQ(testing::internal::GetCapturedStdout(), line + line);
}

TEST(LoadBlock, AMissingTableStopsTheLoadAndLeavesTheRestEmpty)
{
    const TemporaryDataDirectory directory;
    directory.write("ZelmOrvaneGaugeData", R"(ZelmOrvaneGaugeData : {
      ENABLED : { }; LONG_KEY : { A = 1.0; }; LIMITS : { B = 2; }; GRADES : { C = "c"; }; };)");
    ZelmOrvaneGaugeData data;
    EXPECT_FALSE(data.loadCfgData());
    EXPECT_EQ(data.getCfgKeys({"LONG_KEY"}, true), (std::vector<std::string>{"A"})) << "an empty table is no miss";
    EXPECT_EQ(data.getLimits("B", "", ""), zelm::unsetInt);
    EXPECT_EQ(data.getGrades("C"), zelm::unsetString);
}

TEST(LoadBlock, LoadKeepsWhatTheFileNoLongerHasAndResetDoesNot)
{
    const TemporaryDataDirectory directory;
    directory.write("ZelmOrvaneSignalData", "ZelmOrvaneSignalData : { PER_NODE_CAP : { A = 1.0; B = 2.0; }; };");
    ZelmOrvaneSignalData data;
    directory.write("ZelmOrvaneSignalData", "ZelmOrvaneSignalData : { PER_NODE_CAP : { B = 5.0; }; };");
    EXPECT_TRUE(data.loadCfgData());
    EXPECT_THAT(data.getPerNodeCap("A"), IsBits(1.0f));
    EXPECT_THAT(data.getPerNodeCap("B"), IsBits(5.0f));
    EXPECT_TRUE(data.reset());
    EXPECT_THAT(data.getPerNodeCap("A"), IsBits(zelm::unsetFloat));
}

TEST(LoadBlock, ResetReadsTheSearchListAgain)
{
    const TemporaryDataDirectory first;
    first.write("ZelmOrvaneSignalData", "ZelmOrvaneSignalData : { PER_NODE_CAP : { A = 1.0; }; };");
    ZelmOrvaneSignalData data;
    const TemporaryDataDirectory second;
    second.write("ZelmOrvaneSignalData", "ZelmOrvaneSignalData : { PER_NODE_CAP : { A = 2.0; }; };");
    data.reset();
    EXPECT_THAT(data.getPerNodeCap("A"), IsBits(2.0f));
}

// ---- Looking up ----

TEST(MergeStrVect, SkipsEmptyElementsAndTheirSeparators)
{
    using V = std::vector<std::string>;
    EXPECT_EQ(Utils::mergeStrVect(V{"a", "b", "c"}, 0, "."), "a.b.c");
    EXPECT_EQ(Utils::mergeStrVect(V{"a", "b", "c"}, 1, "."), "b.c");
    EXPECT_EQ(Utils::mergeStrVect(V{"a", "b"}, 2, "."), "");
    EXPECT_EQ(Utils::mergeStrVect(V{"a", "b"}, 7, "."), "");
    EXPECT_EQ(Utils::mergeStrVect(V{"", "a", "b", "", ""}, 0, "."), "a.b");
    EXPECT_EQ(Utils::mergeStrVect(V{"a", "", "b"}, 0, "."), "ab"); // the gap takes the separator too
    EXPECT_EQ(Utils::mergeStrVect(V{"a", "b"}, 0, ""), "ab");
    EXPECT_EQ(Utils::mergeStrVect(V{}, 0, "."), "");
}

TEST(LookUp, AllFormsJoinAlike)
{
    const Utils::Table<float> table{{"A.B", 1.0f}, {"AB", 2.0f}, {"", 3.0f}};
    std::vector<std::string> keys{"A", "B"};
    EXPECT_THAT(Utils::getCfgDataFromVar(table, keys), IsBits(1.0f));
    EXPECT_EQ(keys, (std::vector<std::string>{"A", "B"}));
    EXPECT_THAT(Utils::getCfgDataFromVar(table, "A", "B", "", "", "", "", "", "", "", ""), IsBits(1.0f));
    EXPECT_THAT(Utils::getCfgDataFromVar(table, "A", "", "B", "", "", "", "", "", "", ""), IsBits(2.0f));
    EXPECT_THAT(Utils::lookUp(table, {"A", "B"}), IsBits(1.0f));
    EXPECT_THAT(Utils::lookUp(table, {"A", "", "B"}), IsBits(2.0f));
    EXPECT_THAT(Utils::lookUp(table, {""}), IsBits(3.0f));
}

TEST(LookUp, AMissGivesTheSentinelAndInsertsNothing)
{
    const Utils::Table<float> floats;
    const Utils::Table<int> ints;
    const Utils::Table<std::string> strings;
    EXPECT_THAT(Utils::lookUp(floats, {"X"}), IsBits(3.4028235e38f));
    EXPECT_EQ(Utils::lookUp(ints, {"X"}), 0x7fffffff);
    EXPECT_EQ(Utils::getCfgDataFromVar(strings, "X", "", "", "", "", "", "", "", "", ""), "UninitializedString");
    EXPECT_TRUE(floats.empty() && ints.empty() && strings.empty());
}

TEST(LookUp, AMissInABoolTableIsPrintedAndFalse)
{
    const Utils::Table<bool> table{{"ON", true}};
    testing::internal::CaptureStdout();
    EXPECT_TRUE(Utils::lookUp(table, {"ON"}));
    EXPECT_FALSE(Utils::lookUp(table, {"X"}));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Boolean error issues");
}

TEST(LookUp, MissesAreNotedByTheInnermostObserverOfTheThread)
{
    const Utils::Table<float> table{{"A", 1.0f}};
    const zelm::LookUpMisses outer;
    {
        const zelm::LookUpMisses inner;
        Utils::lookUp(table, {"A"});
        Utils::lookUp(table, {"B", "C"});
        std::thread([&] { Utils::lookUp(table, {"ELSEWHERE"}); }).join();
        ASSERT_EQ(inner.misses().size(), 1u);
        EXPECT_EQ(inner.misses()[0].key, "B.C");
        EXPECT_EQ(inner.misses()[0].table, &table);
    }
    EXPECT_TRUE(outer.misses().empty());
    Utils::lookUp(table, {"D"});
    EXPECT_EQ(outer.misses().size(), 1u);
}

TEST(LookUp, ABlockNamesItsTableByAddress)
{
    const TemporaryDataDirectory directory;
    directory.write("ZelmOrvaneGaugeData", "ZelmOrvaneGaugeData : { };");
    const ZelmOrvaneGaugeData data;
    const zelm::LookUpMisses misses;
    (void)data.getGain("PLAIN", "A");
    (void)data.getGrades("FANCY");
    ASSERT_EQ(misses.misses().size(), 2u);
    EXPECT_EQ(data.groupOf(misses.misses()[0].table), "GAIN");
    EXPECT_EQ(data.groupOf(misses.misses()[1].table), "GRADES");
    EXPECT_EQ(data.groupOf(&misses), "");
}

// ---- Listing keys ----

TEST(ListKeys, GivesTheNextLevelOrTheWholeRest)
{
    const Utils::Table<int> table{{"A.X.1", 1}, {"A.X.2", 2}, {"A.Y", 3}, {"AB.Z", 4}};
    std::vector<std::string> keys{"A"};
    EXPECT_EQ(sorted(Utils::getCfgKeyVectorFromVar(table, keys, false)), (std::vector<std::string>{"X", "Y"}));
    EXPECT_EQ(sorted(Utils::getCfgKeyVectorFromVar(table, keys, true)), (std::vector<std::string>{"X.1", "X.2", "Y"}));
    keys = {};
    EXPECT_EQ(sorted(Utils::getCfgKeyVectorFromVar(table, keys, false)), (std::vector<std::string>{"A", "AB"}));
    keys = {"", ""};
    EXPECT_EQ(Utils::getCfgKeyVectorFromVar(table, keys, true).size(), 4u);
    keys = {"NONE"};
    EXPECT_TRUE(Utils::getCfgKeyVectorFromVar(table, keys, true).empty());
}

TEST(ListKeys, TheBlockBrowserNamesItsTablesInOrder)
{
    const TemporaryDataDirectory directory;
    directory.write("ZelmOrvaneSignalData", kWhole);
    const ZelmOrvaneSignalData data;
    EXPECT_EQ(data.getCfgKeys({}, false), (std::vector<std::string>{"PER_NODE_CAP"}));
    EXPECT_EQ(sorted(data.getCfgKeys({"PER_NODE_CAP"}, false)), (std::vector<std::string>{"LUT", "OTHER"}));
    EXPECT_TRUE(data.getCfgKeys({"NO_TABLE"}, false).empty());
    EXPECT_TRUE(data.getCfgKeys({""}, true).empty());

    directory.write("ZelmOrvaneGaugeData", "ZelmOrvaneGaugeData : { };");
    EXPECT_EQ(ZelmOrvaneGaugeData().getCfgKeys({}, true),
              (std::vector<std::string>{"ENABLED", "LONG_KEY", "GAIN", "LIMITS", "GRADES"}));
}

// ---- Text of a block ----

TEST(DataReflect, PrintsEachTableAsAContainerOfPairs)
{
    const TemporaryDataDirectory directory;
    directory.write("ZelmOrvaneGaugeData", R"(ZelmOrvaneGaugeData : {
      ENABLED : { PLAIN = true; }; LONG_KEY : { }; GAIN : { A : { B = 0.125; }; }; LIMITS : { }; GRADES : { G = "good"; }; };)");
    const ZelmOrvaneGaugeData data;
    EXPECT_EQ(data.reflect(), "m_Enabled ( Container with 1 elements )\n"
                              "\tm_Enabled[0] ( Tuple with 2 elements )\n"
                              "\t\tm_Enabled[0][0] = PLAIN\n"
                              "\t\tm_Enabled[0][1] = true\n"
                              "m_LongKey ( Container with 0 elements )\n"
                              "m_Gain ( Container with 1 elements )\n"
                              "\tm_Gain[0] ( Tuple with 2 elements )\n"
                              "\t\tm_Gain[0][0] = A.B\n"
                              "\t\tm_Gain[0][1] = 0.125\n"
                              "m_Limits ( Container with 0 elements )\n"
                              "m_Grades ( Container with 1 elements )\n"
                              "\tm_Grades[0] ( Tuple with 2 elements )\n"
                              "\t\tm_Grades[0][0] = G\n"
                              "\t\tm_Grades[0][1] = good\n");
    EXPECT_EQ(data.className(), "ZelmOrvaneGaugeData");
    EXPECT_EQ(data.ZelmData::className(), "ZelmData");
}

} // namespace
