#include "device/ZelmOrvaneStaticModel.h"

#include "support/BlockFixture.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <tuple>

namespace zelm::test::staticTest {

using Params = ZelmOrvaneStaticParams;
using Data = ZelmOrvaneStaticData;
using Model = ZelmOrvaneStaticModel;
using Names = std::vector<std::string>;

constexpr float kMissing = zelm::unsetFloat;

Names words(const std::string& text)
{
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

Params::FloatEnum cellNamed(const std::string& name)
{
    const auto cell = Params::string_to_float_enum(name);
    EXPECT_NE(cell, Params::LastFloat) << name;
    return cell;
}

// ---- The network, written down a second time from the list of sites and rails ----

const Names kRails = words("VCCINT VCCRAM VCCSOC VCCINTIO VCCAUX "
                           "VCCHARL VCCAUXHARL VCCAUXSMON VCCPSLP VCCPSFP VCCOHARLIO0 VCCOHARLIO1 VCCOHARLIO2 VCCOFIO "
                           "VCCINTWIST VCCWIST5 VCCME VCCVCUINT VCCIOHBM VCCHBM VCCAUXHBM VCCBATT VCCFUSE "
                           "VCCO10 VCCO11 VCCO12 VCCO135 VCCO15 VCCO18 VCCO25 VCCO33 "
                           "MLORVAVCC MLORVAVTT MLORVVCCAUX MLORVPAVCC MLORVPAVTT MLORVPVCCAUX "
                           "MSARNAVCC MSARNAVTT MSARNVCCAUX MSARNAVTTRCAL VCCINTGT VCCPSGTA VTTPSGTA VAUXPSGTA "
                           "VCCHSAMS ADCAVCC ADCAVCCAUX DACAVCC DACAVCCAUX DACAVTT");

// The rails on which only banks or quads leak.
const Names kResourceRails = words("VCCO10 VCCO11 VCCO12 VCCO135 VCCO15 VCCO18 VCCO25 VCCO33 "
                                   "MLORVAVCC MLORVAVTT MLORVVCCAUX MLORVPAVCC MLORVPAVTT MLORVPVCCAUX "
                                   "MSARNAVCC MSARNAVTT MSARNVCCAUX MSARNAVTTRCAL VCCINTGT");

bool isIn(const std::string& name, const Names& names)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

// The LORVP rails go by the LORV rails' names in the tables.
std::string railKey(std::string rail)
{
    if (rail.starts_with("MLORVP"))
        rail.erase(5, 1);
    return rail;
}

struct Resource {
    std::string prefix; // of the cells, with {} for the rail
    std::string rails;
    std::string curveKey;
    std::string binningKey;
    std::string count; // with {} for the rail
    std::string current;
    std::string powerup; // empty: no power-up cells
};

// clang-format off
const std::vector<Resource> kResources = {
    {"BRAM_ACTIVE_{}",        "VCCINT VCCRAM",                                          "BRAM_CORE_ACTIVE",                  "BRAM_CORE",           "USED_BRAMS_ACTIVE",      "BRAM_ACTIVE_{}_STATIC_CURRENT",     ""},
    {"BRAM_SLEEP_{}",         "VCCRAM VCCINT",                                          "BRAM_CORE_SLEEP",                   "BRAM_CORE",           "USED_BRAMS_SLEEP",       "BRAM_SLEEP_{}_STATIC_CURRENT",      ""},
    {"PLAM_ACTIVE_{}",        "VCCRAM VCCINT",                                          "PLAM_CORE_ACTIVE",                  "PLAM_CORE",           "USED_PLAMS_ACTIVE",      "PLAM_ACTIVE_{}_STATIC_CURRENT",     ""},
    {"PLAM_SLEEP_{}",         "VCCRAM VCCINT",                                          "PLAM_CORE_SLEEP",                   "PLAM_CORE",           "USED_PLAMS_SLEEP",       "PLAM_SLEEP_{}_STATIC_CURRENT",      ""},
    {"RPU_ACTIVE_{}",         "VCCPSLP",                                                "YOND_BASE_CORE_RPU_TIEOFF_WRAPPER", "YOND_BASE_CORE",      "USED_PS_LPD_R5",         "RPU_ACTIVE_{}_STATIC_CURRENT",      ""},
    {"OCM_ACTIVE_{}",         "VCCPSLP",                                                "YOND_BASE_CORE_OCM_MEMORY",         "YOND_BASE_CORE",      "USED_PS_LPD_OCM",        "OCM_ACTIVE_{}_STATIC_CURRENT",      ""},
    {"TCM_ACTIVE_{}",         "VCCPSLP",                                                "YOND_BASE_CORE_TCM_MEMORY",         "YOND_BASE_CORE",      "USED_PS_LPD_TCM",        "TCM_ACTIVE_{}_STATIC_CURRENT",      ""},
    {"CPU_ACTIVE_{}",         "VCCPSFP",                                                "YOND_BASE_CORE_MAIN_CPU0",          "YOND_BASE_CORE",      "USED_PS_FPD_A72",        "CPU_ACTIVE_{}_STATIC_CURRENT",      ""},
    {"L2_MEMORY_ACTIVE_{}",   "VCCPSFP",                                                "YOND_BASE_CORE_L2_MEMORY",          "YOND_BASE_CORE",      "USED_PS_FPD_L2CACHE",    "L2_ACTIVE_{}_STATIC_CURRENT",       ""},
    {"SELVBANK_ACTIVE_{}",    "VCCO15 VCCO135 VCCO12 VCCO11 VCCO10",                    "SELVBANK",                          "SELVBANK",            "USED_{}_SELV_BANKS",     "SELVBANK_{}_STATIC_CURRENT",        "SELVBANK_{}_POWERUP_CURRENT"},
    {"NALTBANK_ACTIVE_{}",    "VCCO33 VCCO25 VCCO18",                                   "NALTBANK",                          "NALTBANK",            "USED_{}_NALT_BANKS",     "NALTBANK_ACTIVE_{}_STATIC",         "NALTBANK_ACTIVE_{}_POWERUP"},
    {"LORV_QUAD_TOP_CORE_{}", "VCCINT",                                                 "LORV_QUAD_TOP_CORE",                "LORV_QUAD_TOP_CORE",  "",                       "LORV_{}_STATIC_CURRENT",            ""},
    {"LORV_QUAD_{}",          "MLORVAVCC MLORVAVTT MLORVVCCAUX",                        "LORV_QUAD_TOP_CORE",                "LORV_QUAD_TOP_CORE",  "USED_LORV_POWER_QUADS",  "LORV_QUAD_{}_STATIC_CURRENT",       "LORV_QUAD_{}_POWERUP_CURRENT"},
    {"SARN_QUAD_{}",          "VCCINT",                                                 "SARN_QUAD_TOP_CORE",                "SARN_QUAD_TOP_CORE",  "",                       "SARN_{}_STATIC_CURRENT",            ""},
    {"SARN_QUAD_{}",          "VCCINTGT MSARNAVCC MSARNAVTT MSARNVCCAUX MSARNAVTTRCAL", "SARN_QUAD_TOP_CORE",                "SARN_QUAD_TOP_CORE",  "USED_SARN_POWER_QUADS",  "SARN_QUAD_{}_STATIC_CURRENT",       "SARN_QUAD_{}_POWERUP_CURRENT"},
    {"LORVP_QUAD_{}",         "VCCINT",                                                 "LORVP_QUAD_TOP_CORE",               "LORVP_QUAD_TOP_CORE", "USED_LORVP_POWER_QUADS", "LORVP_{}_STATIC_CURRENT",           ""},
    {"LORVP_QUAD_{}",         "MLORVPAVCC MLORVPAVTT MLORVPVCCAUX",                     "LORVP_QUAD_TOP_CORE",               "LORVP_QUAD_TOP_CORE", "USED_LORVP_POWER_QUADS", "LORVP_QUAD_{}_STATIC_CURRENT",      "LORVP_QUAD_{}_POWERUP_CURRENT"},
    {"ADC_CORE_ACTIVE_{}",    "VCCHSAMS ADCAVCC ADCAVCCAUX",                            "ADC_CORE",                          "ADC_CORE",            "USED_ADC_CORE",          "ADC_CORE_ACTIVE_{}_STATIC_CURRENT", ""},
    {"DAC_CORE_ACTIVE_{}",    "VCCHSAMS DACAVCC DACAVTT DACAVCCAUX",                    "DAC_CORE",                          "DAC_CORE",            "USED_DAC_CORE",          "DAC_CORE_ACTIVE_{}_STATIC_CURRENT", ""},
    {"OCM2_ACTIVE_{}",        "VCCPSLP",                                                "OCM2ISLAND",                        "OCM2ISLAND",          "USED_OCM2S_ACTIVE",      "OCM2_ACTIVE_{}_STATIC_CURRENT",     "OCM2_ACTIVE_{}_POWERUP_CURRENT"},
};
// clang-format on

std::string on(std::string name, const std::string& rail)
{
    const auto at = name.find("{}");
    return at == std::string::npos ? name : name.replace(at, 2, rail);
}

// A cell set of the network.
struct Set {
    std::string prefix, rail, curveKey, binningKey, count, current, powerup;
    bool isDevice;
};

std::vector<Set> sets()
{
    std::vector<Set> all;
    for (const std::string& rail : kRails)
        if (!isIn(rail, kResourceRails))
            all.push_back({"COMMON_" + rail, rail, "D", "D", "", "COMMON_" + rail + "_STATIC_CURRENT",
                           "COMMON_" + rail + "_POWERUP_CURRENT", true});
    for (const Resource& r : kResources)
        for (const std::string& rail : words(r.rails))
            all.push_back({on(r.prefix, rail), rail, r.curveKey, r.binningKey, on(r.count, rail), on(r.current, rail),
                           on(r.powerup, rail), false});
    return all;
}

// ---- Tiny tables ----

class StaticTest : public BlockFixture<Model> {
protected:
    StaticTest()
    {
        params[Params::DEVICE_NAME] = "D";
        m_tables["SKU_LIST"] = "SPEED_1 : { MP : { STANDARD : { INDUSTRIAL : { OD_NO = \"S\"; }; }; }; };";
        load();
    }

    // Makes text the content of a table of the file.
    void put(const std::string& table, const std::string& text)
    {
        m_tables[table] = text;
        load();
    }

    void load()
    {
        std::string text;
        for (const ZelmTableInfo& table : Data::tables())
            text += std::string(table.group) + " : { " + m_tables[std::string(table.group)] + " };\n";
        BlockFixture::load(text);
    }

    // A curve that gives the same current at every temperature.
    void leak(const std::string& key, const std::string& rail, const std::string& amperes, const std::string& process)
    {
        put("VT_COEFFICIENT", key + " : { " + process + " : { " + rail + " : { CONST = " + amperes + "; }; }; };");
    }

    // Clears what calculate clears, without pulling anything.
    void clear()
    {
        params.resetIntermediateCalculations();
        params.resetModelOutputs();
    }

    float pulled(const std::string& name)
    {
        const auto cell = cellNamed(name);
        model.pull(cell, params, data);
        return params[cell];
    }

    float& at(const std::string& name)
    {
        return params[cellNamed(name)];
    }

    // Sets the cells to values whose sum depends on the order, and returns the sum from left to right.
    float setInOrder(const Names& cells, float sum)
    {
        const float values[] = {1e8f, 1.0f, -1e8f, 0.1f, 3e7f, 0.3f, -3e7f, 7.7f};
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const float value = values[i % std::size(values)] * (1.0f + 0.01f * static_cast<float>(i));
            at(cells[i]) = value;
            sum = sum + value;
        }
        return sum;
    }

private:
    std::map<std::string, std::string> m_tables;
};

// ---- The cells against sites x metrics ----

TEST(Static, TheCellsAreSitesByMetrics)
{
    const std::vector<Set> all = sets();
    ASSERT_EQ(kRails.size(), 51u);
    EXPECT_EQ(all.size(), 75u);
    EXPECT_EQ(std::count_if(all.begin(), all.end(), [](const Set& set) { return set.isDevice; }), 32);
    EXPECT_EQ(std::count_if(all.begin(), all.end(), [](const Set& set) { return !set.powerup.empty(); }), 52);

    std::set<std::string> floats = {"COMMON_VCCAUX_V_C3", "JUNCTION_TEMPERATURE"};
    std::set<std::string> ints = {"AVAILABLE_LORV_QUADS", "AVAILABLE_SARN_QUADS"};
    for (const Set& set : all) {
        for (const char* metric : {"VT_A", "VT_B", "VT_C", "VT_D", "VT_E", "VT_CONST", "VT_LEAKAGE", "VT_LEAKAGE_25",
                                   "V_C1", "V_C2", "V_SCALING", "VOLT_BINNING"})
            floats.insert(set.prefix + "_" + metric);
        (set.isDevice ? floats : ints).insert(set.prefix + "_MULTIPLIER");
        floats.insert(set.current);
        if (!set.powerup.empty()) {
            floats.insert(set.powerup);
            floats.insert(set.prefix + "_TOTAL_POWER_FACTOR");
            floats.insert(set.prefix + "_POWERUP_CONST");
        }
        if (!set.count.empty())
            ints.insert(set.count);
    }
    EXPECT_EQ(floats.erase("SARN_QUAD_VCCINT_VT_LEAKAGE_25"), 1u) << "the one set without it";
    for (const std::string& rail : kRails)
        for (const char* metric :
             {"", "_VALID_MIN", "_VALID_MAX", "_STATIC_CURRENT", "_STATIC_POWER", "_POWERUP_CURRENT"})
            floats.insert(rail + metric);
    for (const std::string& name :
         words("ADC_CORE_VCCHSAMS ADC_CORE_ADCAVCC ADC_CORE_ADCAVCCAUX DAC_CORE_VCCHSAMS DAC_CORE_DACAVCC "
               "DAC_CORE_DACAVTT DAC_CORE_DACAVCCAUX OCM2_VCCPSLP LORV LORVP SARN"))
        floats.insert(name + "_STATIC_CURRENT");
    for (const std::string& name :
         words("LORV_VCCINT LORVP_VCCINT SARN_VCCINT OCM2_VCCPSLP LORV NEMT NOC HARL PS PS_HARL GT PL TOTAL"))
        floats.insert(name + "_STATIC_POWER");

    std::set<std::string> ownFloats;
    std::set<std::string> ownInts;
    for (const ZelmCellInfo& cell : Params::cells()) {
        if (cell.type == ZelmCellInfo::Type::real)
            ownFloats.emplace(cell.name);
        else if (cell.type == ZelmCellInfo::Type::integer)
            ownInts.emplace(cell.name);
    }
    EXPECT_EQ(ownFloats, floats);
    EXPECT_EQ(ownInts, ints);
}

// Each ampere and watt counts once: as the load of its rail, contained in another output, or shown alone.
TEST(Static, EachOutputSaysWhereItGoes)
{
    using Kind = zelm::Destination::Kind;
    std::map<std::string, zelm::Destination> outputs;
    for (const ZelmCellInfo& cell : Params::cells())
        if (cell.kind == ZelmCellInfo::Kind::modelOutput)
            outputs.emplace(cell.name, cell.goes);

    // VCCINT carries two rails, whose leakage it holds.
    const std::set<std::string> carried = {"VCCINTWIST", "VCCME"};
    for (const std::string& rail : kRails) {
        SCOPED_TRACE(rail);
        const zelm::Destination current = outputs.at(rail + "_STATIC_CURRENT");
        EXPECT_EQ(current.kind, carried.contains(rail) ? Kind::part : Kind::rail);
        EXPECT_EQ(current.name, carried.contains(rail) ? "VCCINT_STATIC_CURRENT" : rail);
        EXPECT_EQ(outputs.at(rail + "_POWERUP_CURRENT").kind, Kind::shown);
    }

    std::set<std::string> shown;
    for (const auto& [name, goes] : outputs) {
        SCOPED_TRACE(name);
        EXPECT_NE(goes.kind, Kind::none);
        EXPECT_EQ(goes.kind == Kind::rail, name == std::string(goes.name) + "_STATIC_CURRENT");
        if (goes.kind == Kind::part) {
            EXPECT_TRUE(outputs.contains(std::string(goes.name))) << goes.name;
        }
        if (goes.kind == Kind::shown && !name.ends_with("_POWERUP_CURRENT"))
            shown.insert(name);
    }
    const Names totals = words("TOTAL_STATIC_POWER PL_STATIC_POWER PS_HARL_STATIC_POWER NEMT_STATIC_POWER "
                               "NOC_STATIC_POWER GT_STATIC_POWER LORV_STATIC_CURRENT LORV_STATIC_POWER "
                               "LORVP_STATIC_CURRENT SARN_STATIC_CURRENT");
    EXPECT_EQ(shown, std::set<std::string>(totals.begin(), totals.end()));
}

TEST(Static, EachRailsVoltageIsAnInput)
{
    std::set<std::string> rails;
    for (const ZelmCellInfo& cell : Params::cells()) {
        EXPECT_TRUE(cell.legal.rail.empty() || cell.legal.rail == cell.name) << cell.name << " " << cell.legal.rail;
        if (!cell.legal.rail.empty())
            rails.emplace(cell.name);
    }
    EXPECT_EQ(rails, std::set<std::string>(kRails.begin(), kRails.end()));
}

// Every cell of every site reads its own rows: give each row of each table a number of its own, and ask for all.
TEST_F(StaticTest, EachSiteReadsItsOwnRows)
{
    std::map<std::string, float> expected;
    std::map<std::string, std::string> curves, laws, bins;
    std::set<std::string> binned;
    int number = 0;
    for (const Set& set : sets()) {
        const std::string key = railKey(set.rail);
        // Two sets share no curve, so each rail of a key is listed once.
        std::string terms;
        for (const char* letter : {"A", "B", "C", "D", "E", "CONST"}) {
            expected[set.prefix + "_VT_" + letter] = static_cast<float>(++number);
            terms += std::string(letter) + " = " + std::to_string(number) + ".0; ";
        }
        curves[set.curveKey] += key + " : { " + terms + "}; ";
        expected[set.prefix + "_V_C1"] = static_cast<float>(number) + 0.25f;
        expected[set.prefix + "_V_C2"] = static_cast<float>(number) + 0.5f;
        laws[set.curveKey] +=
            key + " : { C1 = " + std::to_string(number) + ".25; C2 = " + std::to_string(number) + ".5; }; ";
        if (binned.insert(set.binningKey + key).second)
            bins[set.binningKey] += key + " : { S = 0." + std::to_string(number) + "; }; ";
    }
    const auto whole = [](const std::map<std::string, std::string>& rows) {
        std::string text;
        for (const auto& [key, rails] : rows)
            text += key + " : { TYP : { " + rails + "}; }; ";
        return text;
    };
    put("VT_COEFFICIENT", whole(curves));
    put("VOLTAGE_SCALING", whole(laws));
    put("BINNING_FACTORS", whole(bins));
    for (const auto& [cell, value] : expected)
        EXPECT_THAT(pulled(cell), IsBits(value)) << cell;
    for (const Set& set : sets()) {
        EXPECT_THAT(pulled(set.prefix + "_VOLT_BINNING"),
                    IsBits(data.getBinningFactors(set.binningKey, "TYP", railKey(set.rail), "S")));
        EXPECT_LT(pulled(set.prefix + "_VOLT_BINNING"), 1.0f) << set.prefix << " found no row";
    }
}

TEST_F(StaticTest, EachSiteScalesWithItsRail)
{
    for (const Set& set : sets()) {
        clear();
        for (const std::string& rail : kRails)
            at(rail) = 0.5f;
        at(railKey(set.rail)) = 2.0f;
        at(set.prefix + "_V_C1") = 3.0f;
        at(set.prefix + "_V_C2") = 1.5f;
        EXPECT_THAT(pulled(set.prefix + "_V_SCALING"), IsBits(3.0f * std::exp(3.0f))) << set.prefix; // 3 x e^(1.5 x 2)
    }
}

// ---- Data block ----

TEST_F(StaticTest, AnEmptyKeyIsSkipped)
{
    put("VOLTAGE_RANGE", "NOM : { SHORT = 3.0; };");
    EXPECT_THAT(data.getVoltageRange("NOM", "SHORT", ""), IsBits(3.0f));
    EXPECT_THAT(data.getVoltageRange("NOM", "SHORT", "S"), IsBits(kMissing));
}

TEST_F(StaticTest, AnEmptyTableAndAnUnknownKeyGiveTheSentinel)
{
    EXPECT_EQ(data.getUnbondedGtInfo("D", "LORV"), zelm::unsetInt);
    EXPECT_EQ(data.getPartStatus("D", "P"), zelm::unsetString);
    EXPECT_THAT(data.getPowerupCurrent("D", "VCCINT"), IsBits(kMissing));
    put("POWERUP_CURRENT", "D : { VCCRAM = 1.0; };");
    EXPECT_THAT(data.getPowerupCurrent("D", "VCCINT"), IsBits(kMissing));
    EXPECT_THAT(data.getPowerupCurrent("D", "VCCRAM"), IsBits(1.0f));
}

TEST_F(StaticTest, TheTwelveTablesAreNamedInLoadOrder)
{
    EXPECT_EQ(data.getCfgKeys({}, true),
              words("INT_TO_EXT_DEV_MAP SKU_LIST SUPPLY_LIST VT_COEFFICIENT BINNING_FACTORS VOLTAGE_SCALING "
                    "VOLTAGE_RANGE TOTAL_POWER_FACTORS GT_INFO PART_STATUS UNBONDED_GT_INFO POWERUP_CURRENT"));
}

TEST(Static, ASecondLoadLeavesNothingOfTheFirst)
{
    Data& data = Data::getMutableGlobal();
    const TemporaryDataDirectory directory;
    directory.write("ZelmOrvaneStaticData",
                    R"(ZelmOrvaneStaticData : { INT_TO_EXT_DEV_MAP : { A = "X"; }; SKU_LIST : { K = "first"; }; };)");
    EXPECT_FALSE(data.reset()); // the tables behind SKU_LIST are missing
    EXPECT_EQ(data.getSkuList("K", "", "", "", ""), "first");
    directory.write("ZelmOrvaneStaticData",
                    R"(ZelmOrvaneStaticData : { INT_TO_EXT_DEV_MAP : { B = "Y"; }; PART_STATUS : { P = "q"; }; };)");
    EXPECT_FALSE(data.reset());
    EXPECT_EQ(data.getIntToExtDevMap("A"), zelm::unsetString);
    EXPECT_EQ(data.getIntToExtDevMap("B"), "Y");
    EXPECT_EQ(data.getSkuList("K", "", "", "", ""), zelm::unsetString);
    EXPECT_EQ(data.getPartStatus("P", ""), zelm::unsetString); // behind the first missing table
}

// ---- Grades and voltages ----

TEST_F(StaticTest, AllDefaults)
{
    params.reset();
    put("VOLTAGE_RANGE", "NOM : { VCCINT : { S = 0.75; }; };");
    calculate();
    EXPECT_EQ(params[Params::DEVICE_NAME], "ZQ4410");
    EXPECT_EQ(params[Params::PROCESS], "TYP");
    EXPECT_EQ(params[Params::SPEED_GRADE_STR], "SPEED_1");
    EXPECT_EQ(params[Params::SKU_NAME], "S");
    EXPECT_EQ(params[Params::VOLTAGE_CORNER], "NOM");
    EXPECT_THAT(params[Params::JUNCTION_TEMPERATURE], IsBits(100.0f));
    EXPECT_THAT(params[Params::VCCINT], IsBits(0.75f));
    EXPECT_THAT(params[Params::VCCRAM], IsBits(0.0f)); // no row
    EXPECT_EQ(params[Params::GT_PACKAGE], zelm::unsetString) << "nothing reads it";
    const std::map<std::string, int> counts = {
        {"USED_BRAMS_ACTIVE", 500},    {"USED_PLAMS_ACTIVE", 500},    {"USED_PS_LPD_R5", 2},
        {"USED_PS_LPD_TCM", 2},        {"USED_PS_LPD_OCM", 4},        {"USED_PS_FPD_A72", 2},
        {"USED_PS_FPD_L2CACHE", 1},    {"USED_VCCO18_NALT_BANKS", 2}, {"USED_VCCO25_NALT_BANKS", 2},
        {"USED_VCCO33_NALT_BANKS", 2}, {"USED_LORV_POWER_QUADS", 5}};
    std::vector<std::string> names;
    Params::getIntUserInputNames(names);
    for (const std::string& name : names) {
        const auto count = counts.find(name);
        EXPECT_EQ(params[Params::string_to_int_enum(name)], count == counts.end() ? 0 : count->second) << name;
    }
    for (const std::string& rail : kRails)
        EXPECT_THAT(at(rail + "_POWERUP_CURRENT"), IsBits(0.0f)) << rail;
}

TEST_F(StaticTest, AnUnknownGradeLeavesTheSkuUnsetAndTheRailsOff)
{
    put("VOLTAGE_RANGE", "NOM : { VCCINT : { S = 0.75; }; };");
    leak("D", "VCCINT", "2.0", "TYP");
    params[Params::SPEED_GRADE] = "9";
    calculate();
    EXPECT_EQ(params[Params::SPEED_GRADE_STR], "SPEED_9");
    EXPECT_EQ(params[Params::SKU_NAME], zelm::unsetString);
    EXPECT_THAT(params[Params::VCCINT], IsBits(0.0f));
    EXPECT_THAT(params[Params::VCCINT_STATIC_CURRENT], IsBits(0.0f));
    EXPECT_THAT(params[Params::COMMON_VCCINT_STATIC_CURRENT], IsBits(2.0f)); // the site is computed all the same
}

TEST_F(StaticTest, AHostCanChooseTheCornerForADirectPull)
{
    put("VOLTAGE_RANGE", "NOM : { VCCINT : { S = 0.75; }; }; MIN : { VCCINT : { S = 0.5; }; };");
    params[Params::VOLTAGE_CORNER] = "MIN";
    EXPECT_THAT(model.getVccint(params, data), IsBits(0.5f));
    params[Params::VCCINT] = kMissing;
    params[Params::VOLTAGE_CORNER] = "MIN";
    calculate(); // clears the corner
    EXPECT_THAT(params[Params::VCCINT], IsBits(0.75f));
}

TEST_F(StaticTest, TheValidRangeIsForTheHostAlone)
{
    put("VOLTAGE_RANGE", "MIN : { VCCINT : { S = 0.7; }; MLORVAVCC : { S = 0.9; }; MLORVPAVCC : { S = 5.0; }; };"
                         "MAX : { VCCINT : { S = 0.8; }; };");
    params[Params::VCCINT] = 0.1f;
    leak("D", "VCCINT", "2.0", "TYP");
    calculate();
    for (const std::string& rail : kRails) {
        EXPECT_THAT(at(rail + "_VALID_MIN"), IsBits(kMissing)) << rail;
        EXPECT_THAT(at(rail + "_VALID_MAX"), IsBits(kMissing)) << rail;
    }
    EXPECT_THAT(params[Params::VCCINT_STATIC_CURRENT], IsBits(2.0f)); // out of range, and nobody minds
    EXPECT_THAT(pulled("VCCINT_VALID_MIN"), IsBits(0.7f));
    EXPECT_THAT(pulled("VCCINT_VALID_MAX"), IsBits(0.8f));
    EXPECT_THAT(pulled("VCCRAM_VALID_MAX"), IsBits(0.0f));
    EXPECT_THAT(pulled("MLORVPAVCC_VALID_MIN"), IsBits(0.9f)); // by the LORV rail's key
}

TEST_F(StaticTest, EachRailTakesTheVoltageOfItsKey)
{
    std::string rows;
    for (std::size_t i = 0; i < kRails.size(); ++i)
        rows += kRails[i] + " : { S = " + std::to_string(i + 1) + ".5; };";
    put("VOLTAGE_RANGE", "NOM : { " + rows + " };");
    calculate();
    for (const std::string& rail : kRails)
        EXPECT_THAT(at(rail), IsBits(data.getVoltageRange("NOM", railKey(rail), "S"))) << rail;
    for (const char* plain : {"AVCC", "AVTT", "VCCAUX"}) {
        const auto own = Params::string_to_string_enum(std::string("MLORVP") + plain + "_VR_STRING");
        const auto lent = Params::string_to_string_enum(std::string("MLORV") + plain + "_VR_STRING");
        EXPECT_EQ(params[lent], std::string("MLORV") + plain);
        EXPECT_EQ(params[own], zelm::unsetString) << "the voltage goes through the LORV rail's cell";
        model.pull(own, params, data);
        EXPECT_EQ(params[own], std::string("MLORV") + plain);
    }
    EXPECT_EQ(params[Params::VCCHARL_VR_STRING], "VCCHARL");
}

TEST_F(StaticTest, VoltagesOfAnEarlierSelectionStay)
{
    put("SKU_LIST", "SPEED_1 : { MP : { STANDARD : { INDUSTRIAL : { OD_NO = \"S\"; }; }; }; };"
                    "SPEED_2 : { MP : { STANDARD : { INDUSTRIAL : { OD_NO = \"T\"; }; }; }; };");
    put("VOLTAGE_RANGE", "NOM : { VCCINT : { S = 0.75; T = 0.875; }; };");
    calculate();
    params[Params::SPEED_GRADE] = "2";
    calculate();
    EXPECT_EQ(params[Params::SKU_NAME], "T");
    EXPECT_THAT(params[Params::VCCINT], IsBits(0.75f));
    params.resetUserInputs();
    params[Params::SPEED_GRADE] = "2";
    calculate();
    EXPECT_THAT(params[Params::VCCINT], IsBits(0.875f));
}

// ---- Leakage of a site ----

TEST_F(StaticTest, MissingRowsGiveNoLeakageAndNeutralFactors)
{
    calculate();
    for (const Set& set : sets()) {
        EXPECT_THAT(at(set.prefix + "_VT_A"), IsBits(0.0f)) << set.prefix;
        EXPECT_THAT(at(set.prefix + "_VT_LEAKAGE"), IsBits(0.0f)) << set.prefix;
        EXPECT_THAT(at(set.prefix + "_V_C1"), IsBits(0.0f)) << set.prefix;
        EXPECT_THAT(at(set.prefix + "_V_SCALING"), IsBits(1.0f)) << set.prefix;
        EXPECT_THAT(at(set.prefix + "_VOLT_BINNING"), IsBits(1.0f)) << set.prefix;
        EXPECT_THAT(at(set.current), IsBits(0.0f)) << set.prefix;
    }
    EXPECT_THAT(params[Params::TOTAL_STATIC_POWER], IsBits(0.0f));
}

TEST_F(StaticTest, TheCurveIsAPolynomialInDouble)
{
    put("VT_COEFFICIENT", "D : { TYP : { VCCINT : { A = 1e3; B = 0.0001; C = -1e5; D = 0.5; E = 2.0; CONST = 4.0; };"
                          " VCCRAM : { A = 3.0; }; VCCSOC : { D = 2.0; }; }; };");
    params[Params::JUNCTION_TEMPERATURE] = 10.0f;
    calculate();
    // 1e8 + 1 - 1e8 + 50 + 20 + 4: single precision would lose the 1
    EXPECT_NEAR(params[Params::COMMON_VCCINT_VT_LEAKAGE], 75.0, 1e-5);
    EXPECT_THAT(params[Params::COMMON_VCCRAM_VT_LEAKAGE], IsBits(300000.0f)); // 3 x 10^5
    EXPECT_THAT(params[Params::COMMON_VCCSOC_VT_LEAKAGE], IsBits(200.0f));
    params[Params::JUNCTION_TEMPERATURE] = -10.0f;
    calculate();
    // -1e8 + 1 + 1e8 + 50 - 20 + 4
    EXPECT_NEAR(params[Params::COMMON_VCCINT_VT_LEAKAGE], 35.0, 1e-5);
}

TEST_F(StaticTest, TheLinearTermAloneIsRoundedToSingle)
{
    put("VT_COEFFICIENT",
        "D : { TYP : { VCCINT : { E = 0.1; CONST = -10.0; }; VCCRAM : { E = 0.1; CONST = -2.5; }; }; };");
    params[Params::JUNCTION_TEMPERATURE] = 100.1f;
    calculate();
    const float product = 0.1f * 100.1f;
    const auto rounded = static_cast<float>(static_cast<double>(product) - 10.0);
    const auto wide = static_cast<float>(static_cast<double>(0.1f) * static_cast<double>(100.1f) - 10.0);
    ASSERT_NE(rounded, wide);
    EXPECT_THAT(params[Params::COMMON_VCCINT_VT_LEAKAGE], IsBits(rounded));
    EXPECT_THAT(pulled("COMMON_VCCRAM_VT_LEAKAGE_25"),
                IsBits(static_cast<float>(static_cast<double>(0.1f * 25.0f) - 2.5)));
}

TEST_F(StaticTest, TheLeakageAt25IgnoresTheTemperature)
{
    put("VT_COEFFICIENT",
        "D : { TYP : { VCCINT : { A = 1.0; B = 2.0; C = 4.0; D = 8.0; E = 16.0; CONST = 32.0; }; }; };");
    params[Params::JUNCTION_TEMPERATURE] = -40.0f;
    calculate();
    // 25^5 + 2 x 25^4 + 4 x 25^3 + 8 x 25^2 + 16 x 25 + 32 = 9765625 + 781250 + 62500 + 5000 + 400 + 32
    EXPECT_THAT(params[Params::COMMON_VCCINT_VT_LEAKAGE_25], IsBits(10614807.0f));
    EXPECT_LT(params[Params::COMMON_VCCINT_VT_LEAKAGE], 0.0f); // -40^5 leads
}

TEST_F(StaticTest, NoFactorMeansNoScalingWhateverTheExponent)
{
    put("VOLTAGE_SCALING", "D : { TYP : { VCCINT : { C1 = 0.0; C2 = 5.0; }; VCCAUX : { C2 = 5.0; C3 = 2.0; }; }; };");
    params[Params::VCCINT] = params[Params::VCCAUX] = 1.0f;
    calculate();
    EXPECT_THAT(params[Params::COMMON_VCCINT_V_C2], IsBits(5.0f));
    EXPECT_THAT(params[Params::COMMON_VCCINT_V_SCALING], IsBits(1.0f));
    EXPECT_THAT(params[Params::COMMON_VCCAUX_V_C3], IsBits(2.0f));
    EXPECT_THAT(params[Params::COMMON_VCCAUX_V_SCALING], IsBits(1.0f)); // C1 alone decides
}

TEST_F(StaticTest, TheAuxiliaryRailFollowsTheCoreVoltageToo)
{
    put("VOLTAGE_SCALING", "D : { TYP : { VCCAUX : { C1 = 0.3; C2 = 1.5; C3 = 0.7; }; VCCRAM : { C1 = 0.3; C3 = 0.7; };"
                           " }; };");
    params[Params::VCCAUX] = 1.2f;
    params[Params::VCCRAM] = 1.2f;
    params[Params::VCCINT] = 0.9f;
    calculate();
    EXPECT_THAT(params[Params::COMMON_VCCAUX_V_SCALING], IsBits(0.3f * std::exp(1.5f * 1.2f) * std::exp(0.7f * 0.9f)));
    EXPECT_THAT(params[Params::COMMON_VCCRAM_V_SCALING], IsBits(0.3f)); // no other rail has a C3
}

TEST_F(StaticTest, LorvpQuadsLeakByTheLorvVoltages)
{
    params[Params::USED_LORVP_POWER_QUADS] = 1;
    leak("LORVP_QUAD_TOP_CORE", "MLORVAVCC", "2.0", "TYP");
    put("VOLTAGE_SCALING", "LORVP_QUAD_TOP_CORE : { TYP : { MLORVAVCC : { C1 = 1.0; C2 = 1.0; }; }; };");
    params[Params::MLORVAVCC] = 1.0f;
    params[Params::MLORVPAVCC] = 3.0f;
    calculate();
    const float e = std::exp(1.0f);
    EXPECT_THAT(params[Params::LORVP_QUAD_MLORVPAVCC_V_SCALING], IsBits(e));
    EXPECT_THAT(params[Params::MLORVPAVCC_STATIC_CURRENT], IsBits(2.0f * e));
    EXPECT_THAT(params[Params::MLORVPAVCC_STATIC_POWER], IsBits(3.0f * (2.0f * e))); // at its own voltage
    params[Params::MLORVPAVCC] = 4.0f;
    calculate();
    EXPECT_THAT(params[Params::LORVP_QUAD_MLORVPAVCC_V_SCALING], IsBits(e));
    EXPECT_THAT(params[Params::MLORVPAVCC_STATIC_POWER], IsBits(4.0f * (2.0f * e)));
}

TEST_F(StaticTest, ActiveAndSleepingMemoriesShareABin)
{
    put("BINNING_FACTORS", "BRAM_CORE : { TYP : { VCCINT : { S = 0.5; }; }; };"
                           "BRAM_CORE_ACTIVE : { TYP : { VCCINT : { S = 9.0; }; }; };");
    calculate();
    EXPECT_THAT(params[Params::BRAM_ACTIVE_VCCINT_VOLT_BINNING], IsBits(0.5f));
    EXPECT_THAT(params[Params::BRAM_SLEEP_VCCINT_VOLT_BINNING], IsBits(0.5f));
    EXPECT_THAT(params[Params::BRAM_SLEEP_VCCRAM_VOLT_BINNING], IsBits(1.0f));
}

TEST_F(StaticTest, OnlyYesCountsThePlatformBanks)
{
    for (const auto& [text, share] : {std::pair{"YES", 1.0f}, {"NO", 0.0f}, {"yes", 0.0f}, {"", 0.0f}}) {
        params[Params::HAS_HARL_IO] = text;
        calculate();
        EXPECT_THAT(params[Params::COMMON_VCCOHARLIO0_MULTIPLIER], IsBits(share)) << text;
        EXPECT_THAT(params[Params::COMMON_VCCOHARLIO1_MULTIPLIER], IsBits(share)) << text;
        EXPECT_THAT(params[Params::COMMON_VCCOHARLIO2_MULTIPLIER], IsBits(1.0f)) << text;
        EXPECT_THAT(params[Params::COMMON_VCCOFIO_MULTIPLIER], IsBits(1.0f)) << text;
    }
}

TEST_F(StaticTest, MultipliersCopyTheCounts)
{
    int next = -3;
    std::map<std::string, int> values;
    for (const Set& set : sets())
        if (!set.count.empty() && values.emplace(set.count, next).second)
            params[Params::string_to_int_enum(set.count)] = next++;
    calculate();
    for (const Set& set : sets()) {
        if (set.count.empty())
            continue;
        EXPECT_EQ(params[Params::string_to_int_enum(set.prefix + "_MULTIPLIER")], values[set.count]) << set.prefix;
    }
    EXPECT_EQ(values.size(), 23u);
}

TEST_F(StaticTest, AQuadCoreCountsByFullFours)
{
    for (const auto& [quads, cores] : {std::pair{3, 0}, {4, 1}, {8, 2}, {-5, -1}}) {
        const std::string n = std::to_string(quads);
        put("UNBONDED_GT_INFO", "D : { LORV = " + n + "; SARN_56G = " + n + "; };");
        calculate();
        EXPECT_EQ(params[Params::AVAILABLE_LORV_QUADS], quads);
        EXPECT_EQ(params[Params::LORV_QUAD_TOP_CORE_VCCINT_MULTIPLIER], cores);
        EXPECT_EQ(params[Params::SARN_QUAD_VCCINT_MULTIPLIER], cores);
        params[Params::DEVICE_NAME] = "OTHER";
        calculate();
        EXPECT_EQ(params[Params::AVAILABLE_SARN_QUADS], 0);
        EXPECT_EQ(params[Params::SARN_QUAD_VCCINT_MULTIPLIER], 0);
        params[Params::DEVICE_NAME] = "D";
    }
}

TEST_F(StaticTest, UsedQuadsDontChangeTheirCores)
{
    put("UNBONDED_GT_INFO", "D : { LORV = 8; };");
    leak("LORV_QUAD_TOP_CORE", "VCCINT", "0.5", "TYP");
    params[Params::VCCINT] = 1.0f;
    for (const int used : {0, 5}) {
        params[Params::USED_LORV_POWER_QUADS] = used;
        calculate();
        EXPECT_THAT(params[Params::LORV_VCCINT_STATIC_CURRENT], IsBits(1.0f)); // 2 cores x 0.5
        EXPECT_THAT(params[Params::LORV_VCCINT_STATIC_POWER], IsBits(1.0f));
    }
}

TEST_F(StaticTest, ASitesCurrentIsAProductInSinglePrecision)
{
    for (const Set& set : sets()) {
        clear();
        at(set.prefix + "_VT_LEAKAGE") = 0.1f;
        at(set.prefix + "_V_SCALING") = 1.7f;
        at(set.prefix + "_VOLT_BINNING") = 0.3f;
        if (set.isDevice)
            at(set.prefix + "_MULTIPLIER") = 7.0f;
        else
            params[Params::string_to_int_enum(set.prefix + "_MULTIPLIER")] = 7;
        EXPECT_THAT(pulled(set.current), IsBits(0.1f * 1.7f * 0.3f * 7.0f)) << set.prefix;
    }
}

// ---- Power-up current of a site ----

class PowerupTest : public StaticTest {
protected:
    // A site with leakage 2 A at 25 degrees, neutral factors, and the given multiplier.
    void prepare(const Set& set, float multiplier, float leakage = 2.0f)
    {
        clear();
        at(set.prefix + "_VT_LEAKAGE_25") = leakage;
        at(set.prefix + "_V_SCALING") = 0.1f;
        at(set.prefix + "_VOLT_BINNING") = 0.3f;
        at(set.prefix + "_TOTAL_POWER_FACTOR") = 1.7f;
        at(set.prefix + "_POWERUP_CONST") = 10.0f;
        if (set.isDevice)
            at(set.prefix + "_MULTIPLIER") = multiplier;
        else
            params[Params::string_to_int_enum(set.prefix + "_MULTIPLIER")] = static_cast<int>(multiplier);
        if (!set.count.empty())
            params[Params::string_to_int_enum(set.count)] = static_cast<int>(multiplier);
    }

    static float leaked(float multiplier)
    {
        return 2.0f * 0.1f * 0.3f * multiplier * 1.7f;
    }

    std::vector<Set> powered(const std::string& start, bool isDevice)
    {
        std::vector<Set> chosen;
        for (const Set& set : sets())
            if (!set.powerup.empty() && set.isDevice == isDevice && set.prefix.starts_with(start))
                chosen.push_back(set);
        return chosen;
    }
};

TEST_F(PowerupTest, OnlyTheWorstProcessHasOne)
{
    for (const Set& set : sets()) {
        if (set.powerup.empty())
            continue;
        for (const char* process : {"TYP", "max", "MAX "}) {
            params[Params::PROCESS] = process;
            prepare(set, 3.0f);
            EXPECT_THAT(pulled(set.powerup), IsBits(0.0f)) << set.prefix << process;
        }
        params[Params::PROCESS] = "MAX";
        prepare(set, 3.0f);
        EXPECT_THAT(pulled(set.powerup), IsBits(leaked(3.0f) + 10.0f)) << set.prefix;
    }
}

TEST_F(PowerupTest, DeviceSitesNeedAMultiplierAboveZero)
{
    params[Params::PROCESS] = "MAX";
    for (const Set& set : powered("COMMON_", true)) {
        if (isIn(set.rail, {"VCCINTWIST", "VCCBATT", "VCCFUSE"}))
            continue;
        for (const float none : {0.0f, -1.0f}) {
            prepare(set, none);
            EXPECT_THAT(pulled(set.powerup), IsBits(0.0f)) << set.prefix;
        }
    }
    for (const Set& set : powered("OCM2", false))
        for (const float none : {0.0f, -1.0f}) {
            prepare(set, none);
            EXPECT_THAT(pulled(set.powerup), IsBits(0.0f)) << set.prefix;
        }
}

TEST_F(PowerupTest, ThreeDeviceSitesNeedNoMultiplier)
{
    params[Params::PROCESS] = "MAX";
    for (const char* rail : {"VCCINTWIST", "VCCBATT", "VCCFUSE"}) {
        const Set set = powered(std::string("COMMON_") + rail, true).front();
        prepare(set, 0.0f);
        EXPECT_THAT(pulled(set.powerup), IsBits(10.0f)) << rail;
        prepare(set, -1.0f);
        EXPECT_THAT(pulled(set.powerup), IsBits(leaked(-1.0f) + 10.0f)) << rail;
        prepare(set, 1.0f, 0.0f); // a site that doesn't leak
        EXPECT_THAT(pulled(set.powerup), IsBits(std::string_view(rail) == "VCCINTWIST" ? 10.0f : 0.0f)) << rail;
    }
    const Set other = powered("COMMON_VCCINT", true).front();
    prepare(other, 1.0f, 0.0f);
    EXPECT_THAT(pulled(other.powerup), IsBits(10.0f)); // the others keep their inrush
}

TEST_F(PowerupTest, BanksAndQuadsCountAsUsedUnlessExactlyZero)
{
    params[Params::PROCESS] = "MAX";
    for (const Set& set : powered("", false)) {
        if (set.prefix.starts_with("OCM2"))
            continue;
        prepare(set, 0.0f);
        EXPECT_THAT(pulled(set.powerup), IsBits(0.0f)) << set.prefix;
        prepare(set, -2.0f);
        EXPECT_THAT(pulled(set.powerup), IsBits(leaked(-2.0f) + 10.0f)) << set.prefix;
        prepare(set, 3.0f); // the gate reads the count, not the multiplier
        params[Params::string_to_int_enum(set.count)] = 0;
        EXPECT_THAT(pulled(set.powerup), IsBits(0.0f)) << set.prefix;
    }
}

TEST_F(PowerupTest, TheInrushIsTakenFromTheTable)
{
    std::string rows;
    for (std::size_t i = 0; i < kRails.size(); ++i)
        rows += kRails[i] + " = " + std::to_string(i + 1) + ".7; ";
    put("POWERUP_CURRENT", "D : { " + rows + "};");
    params[Params::USED_LORV_POWER_QUADS] = 3;
    params[Params::USED_LORVP_POWER_QUADS] = 7;
    params[Params::USED_SARN_POWER_QUADS] = -9;
    for (const Set& set : sets()) {
        if (set.powerup.empty())
            continue;
        const float milliamperes = data.getPowerupCurrent("D", railKey(set.rail));
        float expected = milliamperes / 1000.0f;
        if (set.prefix.starts_with("LORV_"))
            expected = 3.0f * milliamperes / 1000.0f;
        else if (set.prefix.starts_with("LORVP_"))
            expected = 7.0f * milliamperes / 1000.0f;
        else if (set.prefix.starts_with("SARN_"))
            expected = -9.0f * milliamperes / 1000.0f;
        else if (set.rail == "VCCINTWIST")
            expected = 0.0f; // in spite of its row
        EXPECT_THAT(pulled(set.prefix + "_POWERUP_CONST"), IsBits(expected)) << set.prefix;
    }
}

TEST_F(PowerupTest, AMissingInrushIsHuge)
{
    params[Params::PROCESS] = "MAX";
    put("VOLTAGE_RANGE", "NOM : { VCCINT : { S = 1.0; }; VCCPSGTA : { S = 1.0; }; };");
    calculate();
    EXPECT_THAT(params[Params::COMMON_VCCINT_POWERUP_CONST], IsBits(kMissing / 1000.0f));
    for (const char* rail : {"VCCPSGTA", "VTTPSGTA", "VAUXPSGTA"}) // no fall-back here either
        EXPECT_THAT(pulled(std::string("COMMON_") + rail + "_POWERUP_CONST"), IsBits(kMissing / 1000.0f)) << rail;
    params[Params::USED_SARN_POWER_QUADS] = 1;
    calculate();
    EXPECT_THAT(params[Params::SARN_QUAD_MSARNAVTTRCAL_POWERUP_CONST], IsBits(kMissing / 1000.0f));
    params[Params::USED_SARN_POWER_QUADS] = 2000;
    calculate();
    EXPECT_TRUE(std::isinf(params[Params::SARN_QUAD_MSARNAVTTRCAL_POWERUP_CONST])); // multiplied before dividing
}

TEST_F(PowerupTest, AMissingFactorIsTheSentinel)
{
    params[Params::PROCESS] = "MAX";
    leak("D", "VCCINT", "2.0", "MAX");
    put("POWERUP_CURRENT", "D : { VCCINT = 1.0; VCCRAM = 1.0; };");
    calculate();
    EXPECT_THAT(params[Params::COMMON_VCCINT_TOTAL_POWER_FACTOR], IsBits(kMissing));
    EXPECT_TRUE(std::isinf(params[Params::COMMON_VCCINT_POWERUP_CURRENT]));     // 2 x the sentinel
    EXPECT_THAT(params[Params::COMMON_VCCRAM_POWERUP_CURRENT], IsBits(0.001f)); // 0 x the sentinel
}

TEST_F(PowerupTest, TheCellsAreFilledForATypicalProcessToo)
{
    leak("D", "VCCINT", "2.0", "TYP");
    put("TOTAL_POWER_FACTORS", "D : { VCCINT = 1.5; };");
    put("POWERUP_CURRENT", "D : { VCCINT = 1.0; };");
    calculate();
    EXPECT_THAT(params[Params::COMMON_VCCINT_VT_LEAKAGE_25], IsBits(2.0f));
    EXPECT_THAT(params[Params::COMMON_VCCINT_TOTAL_POWER_FACTOR], IsBits(1.5f));
    EXPECT_THAT(params[Params::COMMON_VCCINT_POWERUP_CONST], IsBits(0.001f));
    EXPECT_THAT(params[Params::COMMON_VCCINT_POWERUP_CURRENT], IsBits(0.0f));
    EXPECT_THAT(params[Params::BRAM_ACTIVE_VCCINT_VT_LEAKAGE_25], IsBits(kMissing)) << "no power-up current, no pull";
}

TEST_F(PowerupTest, PlatformBanksPowerUpOnlyIfPresent)
{
    params[Params::PROCESS] = "MAX";
    put("TOTAL_POWER_FACTORS", "D : { VCCOHARLIO0 = 1.0; VCCOHARLIO2 = 1.0; };");
    put("POWERUP_CURRENT", "D : { VCCOHARLIO0 = 5.0; VCCOHARLIO2 = 5.0; };");
    calculate();
    EXPECT_THAT(params[Params::COMMON_VCCOHARLIO0_POWERUP_CURRENT], IsBits(0.0f));
    EXPECT_THAT(params[Params::COMMON_VCCOHARLIO2_POWERUP_CURRENT], IsBits(0.005f));
    EXPECT_THAT(params[Params::VCCOHARLIO2_POWERUP_CURRENT], IsBits(0.005f)); // though its rail is at 0 V
}

// ---- Rails ----

Names leaksOn(const std::string& rail)
{
    const auto currents = [&](const std::string& prefixes) {
        Names names;
        for (const std::string& prefix : words(prefixes))
            names.push_back(prefix + "_" + rail + "_STATIC_CURRENT");
        return names;
    };
    if (rail == "VCCINT") {
        Names names = currents("COMMON BRAM_ACTIVE BRAM_SLEEP PLAM_ACTIVE PLAM_SLEEP LORV LORVP SARN");
        names.emplace_back("VCCINTWIST_STATIC_CURRENT");
        names.emplace_back("VCCME_STATIC_CURRENT");
        return names;
    }
    if (rail == "VCCRAM")
        return currents("COMMON BRAM_SLEEP BRAM_ACTIVE PLAM_SLEEP PLAM_ACTIVE");
    if (rail == "VCCPSLP")
        return currents("COMMON RPU_ACTIVE OCM_ACTIVE TCM_ACTIVE OCM2");
    if (rail == "VCCPSFP")
        return currents("COMMON CPU_ACTIVE L2_ACTIVE");
    if (rail == "VCCHSAMS")
        return currents("COMMON ADC_CORE DAC_CORE");
    if (rail.starts_with("ADC"))
        return currents("COMMON ADC_CORE");
    if (rail.starts_with("DAC"))
        return currents("COMMON DAC_CORE");
    if (!isIn(rail, kResourceRails))
        return currents("COMMON");
    for (const Set& set : sets())
        if (set.rail == rail)
            return {set.current};
    return {};
}

TEST_F(StaticTest, ARailsCurrentIsTheSumOfItsSites)
{
    for (const std::string& rail : kRails) {
        for (const float volts : {1.5f, -1.5f, 0.0f, -0.0f}) {
            clear();
            at(rail) = volts;
            const Names leaks = leaksOn(rail);
            float sum = setInOrder(leaks, -0.0f);
            if (volts == 0.0f)
                sum = 0.0f;
            EXPECT_THAT(pulled(rail + "_STATIC_CURRENT"), IsBits(sum)) << rail;
            EXPECT_THAT(pulled(rail + "_STATIC_POWER"), IsBits(volts * sum)) << rail;
        }
    }
}

TEST_F(StaticTest, RailsPowerUpWithTheirOwnSitesOnly)
{
    const Names withVoltsOnly = [] {
        Names names = kResourceRails;
        for (const char* rail : {"VCCINTWIST", "VCCBATT", "VCCFUSE"})
            names.emplace_back(rail);
        return names;
    }();
    for (const std::string& rail : kRails) {
        for (const float volts : {1.5f, 0.0f}) {
            clear();
            at(rail) = volts;
            Names cells;
            if (!isIn(rail, kResourceRails))
                cells.push_back("COMMON_" + rail + "_POWERUP_CURRENT");
            else
                for (const Set& set : sets())
                    if (set.rail == rail)
                        cells.push_back(set.powerup);
            if (rail == "VCCINT") {
                cells.emplace_back("VCCINTWIST_POWERUP_CURRENT");
                cells.emplace_back("VCCME_POWERUP_CURRENT");
            }
            float sum = setInOrder(cells, -0.0f);
            if (volts == 0.0f && isIn(rail, withVoltsOnly))
                sum = 0.0f;
            EXPECT_THAT(pulled(rail + "_POWERUP_CURRENT"), IsBits(sum)) << rail << " at " << volts;
        }
    }
}

TEST_F(StaticTest, ARailSetToZeroIsNotAnUnsetRail)
{
    put("VOLTAGE_RANGE", "NOM : { VCCRAM : { S = 0.75; }; };");
    leak("D", "VCCRAM", "2.0", "TYP");
    calculate();
    EXPECT_THAT(params[Params::VCCRAM_STATIC_CURRENT], IsBits(2.0f));
    params[Params::VCCRAM] = 0.0f;
    calculate();
    EXPECT_THAT(params[Params::VCCRAM], IsBits(0.0f));
    EXPECT_THAT(params[Params::VCCRAM_STATIC_CURRENT], IsBits(0.0f));
    EXPECT_THAT(params[Params::COMMON_VCCRAM_STATIC_CURRENT], IsBits(2.0f));
}

TEST_F(StaticTest, TheCoreRailOffLeavesTheComputeArraysSubtraction)
{
    put("VT_COEFFICIENT", "D : { TYP : { VCCINT : { CONST = 3.0; }; VCCME : { CONST = 2.0; }; }; };");
    params[Params::VCCINT] = 1.0f;
    params[Params::VCCME] = 0.5f;
    calculate();
    EXPECT_THAT(params[Params::VCCINT_STATIC_CURRENT], IsBits(5.0f));
    EXPECT_THAT(params[Params::NEMT_STATIC_POWER], IsBits(1.0f));
    EXPECT_THAT(params[Params::PL_STATIC_POWER], IsBits(4.0f));    // 5 x 1 - 2 x 0.5: more than VCCINT's own 3
    EXPECT_THAT(params[Params::TOTAL_STATIC_POWER], IsBits(5.0f)); // 4 + 1
    params[Params::VCCINT] = 0.0f;
    calculate();
    EXPECT_THAT(params[Params::VCCINT_STATIC_CURRENT], IsBits(0.0f));
    EXPECT_THAT(params[Params::VCCINT_STATIC_POWER], IsBits(0.0f));
    EXPECT_THAT(params[Params::VCCME_STATIC_CURRENT], IsBits(2.0f));
    EXPECT_THAT(params[Params::PL_STATIC_POWER], IsBits(-1.0f));
    EXPECT_THAT(params[Params::TOTAL_STATIC_POWER], IsBits(0.0f)); // -1 + 1
}

TEST_F(StaticTest, BanksLeakByTheirCountEvenANegativeOne)
{
    params[Params::VCCO12] = 1.2f;
    leak("SELVBANK", "VCCO12", "0.5", "MAX");
    put("TOTAL_POWER_FACTORS", "D : { VCCO12 = 1.0; };");
    put("POWERUP_CURRENT", "D : { VCCO12 = 250.0; };");
    params[Params::PROCESS] = "MAX";
    for (const auto& [banks, current, powerup] : {std::tuple{0, 0.0f, 0.0f}, {3, 1.5f, 1.75f}, {-2, -1.0f, -0.75f}}) {
        params[Params::USED_VCCO12_SELV_BANKS] = banks;
        calculate();
        EXPECT_THAT(params[Params::VCCO12_STATIC_CURRENT], IsBits(current)) << banks;
        EXPECT_THAT(params[Params::VCCO12_POWERUP_CURRENT], IsBits(powerup)) << banks;
        EXPECT_THAT(params[Params::VCCO12_STATIC_POWER], IsBits(1.2f * current)) << banks;
    }
}

// ---- Totals ----

TEST_F(StaticTest, TotalsAreSumsInOrder)
{
    const auto powers = [](const std::string& rails) {
        Names names;
        for (const std::string& rail : words(rails))
            names.push_back(rail + "_STATIC_POWER");
        return names;
    };
    const auto currents = [](const std::string& rails) {
        Names names;
        for (const std::string& rail : words(rails))
            names.push_back(rail + "_STATIC_CURRENT");
        return names;
    };
    const std::vector<std::pair<std::string, Names>> totals = {
        {"LORV_STATIC_CURRENT", currents("MLORVAVCC MLORVAVTT MLORVVCCAUX MSARNAVTTRCAL")},
        {"LORV_STATIC_POWER", currents("LORV_VCCINT MLORVAVCC MLORVAVTT MLORVVCCAUX MSARNAVTTRCAL")},
        {"SARN_STATIC_CURRENT", currents("VCCINTGT MSARNAVCC MSARNAVTT MSARNVCCAUX MSARNAVTTRCAL")},
        {"LORVP_STATIC_CURRENT", currents("LORVP_VCCINT MLORVPAVCC MLORVPAVTT MLORVPVCCAUX")},
        {"NEMT_STATIC_POWER", powers("VCCME")},
        {"NOC_STATIC_POWER", powers("VCCSOC")},
        {"HARL_STATIC_POWER", powers("VCCHARL VCCAUXHARL VCCOFIO VCCAUXSMON VCCOHARLIO0 VCCOHARLIO1")},
        {"PS_STATIC_POWER", powers("VCCPSLP VCCPSFP VCCOHARLIO2 OCM2_VCCPSLP")},
        {"PS_HARL_STATIC_POWER", powers("PS HARL")},
        {"GT_STATIC_POWER", powers("MLORVAVCC MLORVAVTT MLORVVCCAUX MLORVPAVCC MLORVPAVTT MLORVPVCCAUX MSARNAVCC "
                                   "MSARNAVTT MSARNVCCAUX MSARNAVTTRCAL VCCINTGT")},
        {"TOTAL_STATIC_POWER", powers("PL PS_HARL NOC NEMT GT")}};
    for (const auto& [total, cells] : totals) {
        clear();
        const float sum = setInOrder(cells, -0.0f);
        EXPECT_THAT(pulled(total), IsBits(sum)) << total;
    }

    clear();
    const float rails = setInOrder(powers("VCCINT VCCRAM VCCAUX VCCBATT VCCFUSE VCCO33 VCCO25 VCCO18 VCCO15 VCCO135 "
                                          "VCCO12 VCCO11 VCCO10 VCCHSAMS ADCAVCC ADCAVCCAUX DACAVCC DACAVCCAUX DACAVTT "
                                          "VCCVCUINT VCCIOHBM VCCHBM VCCAUXHBM VCCINTIO"),
                                   0.0f);
    at("NEMT_STATIC_POWER") = 0.7f;
    at("VCCWIST5_STATIC_POWER") = 0.3f;
    EXPECT_THAT(pulled("PL_STATIC_POWER"), IsBits(rails - 0.7f + 0.3f));
}

TEST_F(StaticTest, OnlyTheTwoGreatTotalsStartAtZero)
{
    clear();
    for (const std::string& name : words("PL PS_HARL NOC NEMT GT"))
        at(name + "_STATIC_POWER") = -0.0f;
    EXPECT_THAT(pulled("TOTAL_STATIC_POWER"), IsBits(0.0f)); // 0 + -0
    clear();
    at("VCCME_STATIC_POWER") = -0.0f;
    EXPECT_THAT(pulled("NEMT_STATIC_POWER"), IsBits(-0.0f));
}

TEST_F(StaticTest, TheProcessingTransceiversAreInNoTotal)
{
    put("VT_COEFFICIENT", "D : { TYP : { VCCPSGTA : { CONST = 1.0; }; VTTPSGTA : { CONST = 1.0; };"
                          " VAUXPSGTA : { CONST = 1.0; }; }; };");
    params[Params::VCCPSGTA] = params[Params::VTTPSGTA] = params[Params::VAUXPSGTA] = 1.0f;
    calculate();
    EXPECT_THAT(params[Params::VTTPSGTA_STATIC_CURRENT], IsBits(1.0f));
    EXPECT_THAT(params[Params::GT_STATIC_POWER], IsBits(0.0f));
    EXPECT_THAT(params[Params::TOTAL_STATIC_POWER], IsBits(0.0f));
}

TEST_F(StaticTest, TheSecondMemoryIslandCountsTwice)
{
    leak("OCM2ISLAND", "VCCPSLP", "0.5", "TYP");
    params[Params::USED_OCM2S_ACTIVE] = 2;
    params[Params::VCCPSLP] = 4.0f;
    calculate();
    EXPECT_THAT(params[Params::OCM2_VCCPSLP_STATIC_CURRENT], IsBits(1.0f));
    EXPECT_THAT(params[Params::OCM2_VCCPSLP_STATIC_POWER], IsBits(4.0f)); // pulled by the total alone
    EXPECT_THAT(params[Params::VCCPSLP_STATIC_POWER], IsBits(4.0f));
    EXPECT_THAT(params[Params::PS_STATIC_POWER], IsBits(8.0f));
    EXPECT_THAT(params[Params::OCM2_ACTIVE_VCCPSLP_POWERUP_CURRENT], IsBits(kMissing)) << "in no rail's sum";
}

TEST_F(StaticTest, LorvTotalsCarryTheSarnCalibrationRail)
{
    leak("SARN_QUAD_TOP_CORE", "MSARNAVTTRCAL", "0.25", "TYP");
    params[Params::MSARNAVTTRCAL] = 1.0f;
    calculate();
    EXPECT_THAT(params[Params::LORV_STATIC_CURRENT], IsBits(0.0f));
    params[Params::USED_SARN_POWER_QUADS] = 2;
    calculate();
    EXPECT_THAT(params[Params::LORV_STATIC_CURRENT], IsBits(0.5f));
    EXPECT_THAT(params[Params::LORV_STATIC_POWER], IsBits(0.5f)); // amperes, in spite of its name
    params[Params::MSARNAVTTRCAL] = 3.0f;
    calculate();
    EXPECT_THAT(params[Params::LORV_STATIC_POWER], IsBits(0.5f));
}

TEST_F(StaticTest, CopiesRepeatTheirCells)
{
    for (const std::string& name : words("ADC_CORE_#VCCHSAMS ADC_CORE_#ADCAVCC ADC_CORE_#ADCAVCCAUX DAC_CORE_#VCCHSAMS "
                                         "DAC_CORE_#DACAVCC DAC_CORE_#DACAVTT DAC_CORE_#DACAVCCAUX OCM2_#VCCPSLP")) {
        const auto mark = name.find('#');
        clear();
        at(name.substr(0, mark) + "ACTIVE_" + name.substr(mark + 1) + "_STATIC_CURRENT") = 0.3f;
        EXPECT_THAT(pulled(name.substr(0, mark) + name.substr(mark + 1) + "_STATIC_CURRENT"), IsBits(0.3f)) << name;
    }
}

TEST_F(StaticTest, CalculateFillsEveryOutput)
{
    calculate();
    Names outputs;
    Params::getFloatModelOutputNames(outputs);
    for (const std::string& name : outputs)
        EXPECT_NE(at(name), kMissing) << name;
}

TEST_F(StaticTest, TwoParameterBlocksDontInfluenceEachOther)
{
    leak("D", "VCCINT", "2.0", "TYP");
    params[Params::VCCINT] = 1.0f;
    Params twin = params;
    calculate();
    Params other;
    other[Params::DEVICE_NAME] = "NO_SUCH_DEVICE";
    other[Params::VCCINT] = 1.0f;
    model.calculate(other);
    EXPECT_THAT(other[Params::VCCINT_STATIC_CURRENT], IsBits(0.0f)); // a wrong name is no error
    model.calculate(twin);
    EXPECT_EQ(twin.reflect(), params.reflect());
}

} // namespace zelm::test::staticTest
