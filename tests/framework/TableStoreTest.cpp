// The data directory, the table store and the load of data blocks.
#include "framework/LibconfigAutoConvert.h"
#include "framework/ZelmLookUpMisses.h"
#include "framework/ZelmOrvaneGauge.h"
#include "framework/ZelmOrvaneSignalModel.h"

#include "support/BlockFixture.h"

#include <boost/filesystem.hpp>

#include <algorithm>
#include <fstream>
#include <latch>
#include <stdexcept>
#include <thread>
#include <typeinfo>

namespace zelm::test::tableStoreTest {

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
        EXPECT_TRUE(typeid(error) == typeid(std::logic_error)) << typeid(error).name(); // none derived from it
        EXPECT_STREQ(error.what(), "basic_string::_M_construct null not valid");
    }
    EXPECT_THROW(ZelmOrvaneSignalData(), std::logic_error);
}

TEST(DataDirectory, EmptyTokensAreDropped)
{
    const TemporaryDataDirectory holder;
    holder.write("ZelmOrvaneSignalData", "");
    const fs::path before = fs::current_path();
    fs::current_path(holder.path()); // where an empty token would find the file
    {
        const DataDirVariable variable("::/no/such/directory:");
        EXPECT_EQ(ZelmData::getQTADataDir("powercfg/orvane/ZelmOrvaneSignalData.cfg"), "");
        EXPECT_EQ(ZelmData::getQTADataDir(""), "/no/such/directory");
    }
    const DataDirVariable variable(":::");
    EXPECT_EQ(ZelmData::getQTADataDir("powercfg"), "");
    EXPECT_EQ(ZelmData::getQTADataDir(""), "");
    fs::current_path(before);
}

TEST(DataDirectory, AFilesystemErrorPropagates)
{
    const TemporaryDataDirectory holder;
    const DataDirVariable variable(holder.path().string());
    EXPECT_THROW(ZelmData::getQTADataDir(std::string(5000, 'x')), boost::filesystem::filesystem_error);
    libconfig::Config cfg;
    EXPECT_THROW(ZelmData::readFile(&cfg, std::string(5000, 'x')), boost::filesystem::filesystem_error);
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

TEST(ReadFile, APathThatCantBeExaminedIsAnUnreadableFile)
{
    const DataDirVariable variable(""); // no directory is tested, so the file is the first that is
    libconfig::Config cfg;
    testing::internal::CaptureStderr();
    EXPECT_THROW(ZelmData::readFile(&cfg, std::string(5000, 'x')), libconfig::FileIOException);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "I/O error while reading file.\n");
}

TEST(ReadFile, AnErrorInAnIncludedFileIsToldWithThatFilesName)
{
    const TemporaryDataDirectory directory;
    const fs::path included = directory.path() / "included.cfg";
    std::ofstream(included) << "A = 1;\nB = ;\n";
    directory.write("ZelmOrvaneSignalData", "@include \"" + included.string() + "\"\n");
    libconfig::Config cfg;
    testing::internal::CaptureStderr();
    EXPECT_THROW(ZelmData::readFile(&cfg, "orvane/ZelmOrvaneSignalData.cfg"), libconfig::ParseException);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Parse error at " + included.string() + ":2 - syntax error\n");
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

TEST(FirstLoad, OneThatThrowsLeavesTheCellsAndTheNextOneWorks)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            const TemporaryDataDirectory directory;
            using Params = ZelmOrvaneSignalParams;
            Params params;
            params[Params::SIGNAL_COUNT] = 2;
            params[Params::WIRE_CAPACITANCE] = 3.0f;
            params[Params::SIGNAL_POWER] = 4.0f;
            const std::string before = params.reflect();
            bool thrown = false;
            try {
                ZelmOrvaneSignalModel::getGlobal().calculate(params);
            } catch (const libconfig::FileIOException&) {
                thrown = true;
            }
            const bool untouched = params.reflect() == before;
            directory.write("ZelmOrvaneSignalData", kWhole);
            ZelmOrvaneSignalModel::getGlobal().calculate(params);
            const bool works = params[Params::WIRE_CAPACITANCE] == 18.0f; // 9 nodes x 2 signals x 1 pF
            std::exit(thrown && untouched && works ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

// Each load of the file prints one line, for it has one array.
TEST(FirstLoad, RacingThreadsGetOneInstanceLoadedOnce)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            const TemporaryDataDirectory directory;
            std::string rows; // enough that a load lasts
            for (int i = 0; i < 5000; ++i)
                rows += "R" + std::to_string(i) + " = 1.0; ";
            directory.write("ZelmOrvaneGaugeData",
                            "ZelmOrvaneGaugeData : { ENABLED : { A = [1]; }; LONG_KEY : { " + rows + "}; };");
            testing::internal::CaptureStdout();
            constexpr int count = 16;
            std::latch start(count);
            std::vector<const ZelmOrvaneGaugeData*> seen(count);
            std::vector<std::thread> threads;
            for (int i = 0; i < count; ++i) {
                threads.emplace_back([&, i] {
                    start.arrive_and_wait();
                    const ZelmOrvaneGaugeData& data = ZelmOrvaneGaugeData::getGlobal();
                    if (data.findLongKey("R4999", "", "", "", "") == 1.0f) // loaded whole
                        seen[static_cast<std::size_t>(i)] = &data;
                });
            }
            for (std::thread& thread : threads)
                thread.join();
            const std::string printed = testing::internal::GetCapturedStdout();
            const bool one = seen == std::vector<const ZelmOrvaneGaugeData*>(count, &ZelmOrvaneGaugeData::getGlobal());
            const auto loads = std::count(printed.begin(), printed.end(), '\n');
            std::cerr << loads << " loads, " << (one ? "one instance" : "several instances") << std::endl;
            std::exit(one && loads == 1 ? 0 : 1);
        },
        testing::ExitedWithCode(0), "1 loads, one instance");
}

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

TEST(LoadTable, BelowTheTopLevelTheOptionIsLeftAlone)
{
    libconfig::Config cfg;
    cfg.readString("Block : { TABLE : { WHOLE = 3; PART = 0.25; }; };");
    std::vector<std::string> path{"Block", "TABLE"};
    Utils::Table<float> table;
    zelm::setAutoConvert(cfg, false);
    EXPECT_TRUE(Utils::loadCfgDataToVar(&cfg, path, table, false));
    EXPECT_EQ(table, (Utils::Table<float>{{"PART", 0.25f}})) << "an int was converted";
    EXPECT_FALSE(zelm::autoConvert(cfg));
    zelm::setAutoConvert(cfg, true);
    EXPECT_TRUE(Utils::loadCfgDataToVar(&cfg, path, table, false));
    EXPECT_EQ(table, (Utils::Table<float>{{"WHOLE", 3.0f}, {"PART", 0.25f}}));
    EXPECT_TRUE(zelm::autoConvert(cfg));
}

// An empty last part takes the separator in front of a child's name away: the child X of B.T is sought as B.TX.
TEST(LoadTable, BehindAPathThatEndsInAnEmptyPartNoChildIsFound)
{
    libconfig::Config cfg;
    cfg.readString(
        "B : { T : { X = 1; G : { Y = 2; }; }; EMPTY : { }; ONE = 7; U : { V : { Z = 4; }; }; UV : { Z = 3; }; };");
    const auto load = [&](std::vector<std::string> path, bool expected) {
        zelm::setAutoConvert(cfg, false);
        Utils::Table<int> table;
        const std::vector<std::string> before = path;
        EXPECT_EQ(Utils::loadCfgDataToVar(&cfg, path, table, true), expected) << testing::PrintToString(before);
        EXPECT_EQ(path, before);
        EXPECT_NE(zelm::autoConvert(cfg), expected) << "a load that fails leaves the option on";
        return table;
    };
    EXPECT_TRUE(load({"B", "T", ""}, false).empty());
    EXPECT_TRUE(load({"B", "T", "", ""}, false).empty());
    EXPECT_TRUE(load({"B", ""}, false).empty());
    EXPECT_TRUE(load({"B", "EMPTY", ""}, true).empty()); // it has no child to be missing
    EXPECT_EQ(load({"B", "ONE", ""}, true), (Utils::Table<int>{{"", 7}}));
    EXPECT_EQ(load({"B", "U", ""}, true), (Utils::Table<int>{{"V.Z", 3}})); // B.UV stands where B.U's V is sought
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
    EXPECT_THAT(Utils::getCfgDataFromVar(table, "", "", "", "", "", "", "", "", "", ""), IsBits(3.0f));
}

TEST(LookUp, AMissGivesTheSentinelAndInsertsNothing)
{
    const Utils::Table<float> floats;
    const Utils::Table<int> ints;
    const Utils::Table<std::string> strings;
    EXPECT_THAT(Utils::getCfgDataFromVar(floats, "X", "", "", "", "", "", "", "", "", ""), IsBits(3.4028235e38f));
    EXPECT_EQ(Utils::getCfgDataFromVar(ints, "X", "", "", "", "", "", "", "", "", ""), 0x7fffffff);
    EXPECT_EQ(Utils::getCfgDataFromVar(strings, "X", "", "", "", "", "", "", "", "", ""), "UninitializedString");
    EXPECT_TRUE(floats.empty() && ints.empty() && strings.empty());
}

TEST(LookUp, AMissInABoolTableIsPrintedAndFalse)
{
    zelm::Table<bool> table;
    table.insert_or_assign("ON", true);
    testing::internal::CaptureStdout();
    EXPECT_TRUE(table.find(zelm::Key("ON")));
    EXPECT_FALSE(table.find(zelm::Key("X")));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Boolean error issues");
}

TEST(LookUp, MissesAreNotedByTheInnermostObserverOfTheThread)
{
    zelm::Table<float> table;
    table.insert_or_assign("A", 1.0f);
    const zelm::LookUpMisses outer;
    {
        const zelm::LookUpMisses inner;
        table.find(zelm::Key("A"));
        table.find(zelm::Key("B"), zelm::Key("C"));
        std::thread([&] { table.find(zelm::Key("ELSEWHERE")); }).join();
        ASSERT_EQ(inner.misses().size(), 1u);
        EXPECT_EQ(inner.misses()[0].key, "B.C");
        EXPECT_EQ(inner.misses()[0].table, &table);
    }
    EXPECT_TRUE(outer.misses().empty());
    table.find(zelm::Key("D"));
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

} // namespace zelm::test::tableStoreTest
