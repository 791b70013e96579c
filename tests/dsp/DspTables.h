#pragma once

#include "support/BlockFixture.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace zelm::test {

/// The components of an integer or floating-point slice, in the order of every sum.
inline const std::vector<std::string> kDspParts{"AB_DATA", "PREADD_DATA", "C_DATA", "ALUREG",  "ALUMUX",    "ALUADD",
                                                "PREADD",  "MULT",        "M_DATA", "PATDET",  "FP_EXP",    "FP_ADD",
                                                "FP_NORM", "OUTPUT",      "OPTINV", "COMPLEX", "CASC_DELAY"};

/// The modes of the 24-bit integer slices, in the order of selection.
inline const std::vector<std::string> kDspInt24Modes{
    "MULT_ALU_MREG",          "PREADD_MULT_ALU",        "ALU_ONLY",
    "MULT_ALU_NOMREG",        "PREADD_MULT_ALU_NOMREG", "PREADD_MULT_ALU_NOMREG_NOADREG",
    "PREADD_MULT_ALU_NOADREG"};

/// Hand-made tables in which all components of a mode are alike, but for those in parts.
struct DspTables {
    std::string family;
    std::string usage; ///< the usage key that stands for mode
    std::string mode;
    std::vector<std::string> opmodeUsages{"CONST", "DYNAMIC"}; ///< none: the tables have no such level
    std::vector<std::string> components = kDspParts;
    std::string normalized = "0.8", exponent = "2.0", simulated = "0.5";
    std::string dynamic = "0.25", off = "0.125", componentSum = "4.0", totalMeasured = "5.0";
    std::map<std::string, std::string> parts{}; ///< dynamic currents that differ
    std::string topRow{};

    std::string text() const
    {
        const auto row = [](const std::string& name, const std::string& dynamicText, const std::string& offText) {
            return name + " : { DYNAMIC_MA_MHZ = " + dynamicText + "; OFF_CURRENT_MA = " + offText + "; };\n";
        };
        std::string rows;
        for (const std::string& component : components)
            rows += row(component, parts.contains(component) ? parts.at(component) : dynamic, off);
        rows += row("COMPONENT_SUM", componentSum, off) + row("TOTAL_MEASURED", totalMeasured, off);
        std::string levels;
        for (const std::string& opmode : opmodeUsages)
            levels += opmode + " : {\n" + rows + "};\n";
        return "SCALE_FACTORS : { VCCINT_NORMALIZED = " + normalized +
               "; CURRENT_VOLTAGE_EXPONENTIAL_FACTOR = " + exponent + "; SIMULATED_TR = " + simulated +
               "; };\nOPERATIONAL_MODE_MAP : { " + family + " : { " + usage + " = \"" + mode +
               "\"; }; };\nDYNAMIC_DATA : { " + topRow + family + " : { " + mode + " : {\n" +
               (opmodeUsages.empty() ? rows : levels) + "}; }; };\n";
    }
};

/// A model on hand-made tables. Inputs and cells go by name.
template <class Model>
class DspSliceTest : public BlockFixture<Model> {
protected:
    using typename BlockFixture<Model>::Params;
    using BlockFixture<Model>::calculate;
    using BlockFixture<Model>::params;

    explicit DspSliceTest(DspTables defaults) : tables(std::move(defaults))
    {
        load();
    }

    void load()
    {
        BlockFixture<Model>::load(tables.text());
    }

    /// The default usage key now stands for mode.
    void useMode(const std::string& mode)
    {
        tables.mode = mode;
        load();
    }

    void set(const std::string& cell, float value)
    {
        params[Params::string_to_float_enum(cell)] = value;
    }

    void set(const std::string& cell, const char* value)
    {
        params[Params::string_to_string_enum(cell)] = value;
    }

    void setAll(float value)
    {
        std::vector<std::string> names;
        Params::getFloatUserInputNames(names);
        for (const std::string& name : names) {
            if (name.ends_with("_TR"))
                set(name, value);
        }
    }

    float& cell(const std::string& name)
    {
        return params[Params::string_to_float_enum(name)];
    }

    /// The cell after a new calculate, pulled if calculate doesn't reach it.
    float after(const std::string& name)
    {
        calculate();
        this->model.pull(Params::string_to_float_enum(name), params, this->data);
        return cell(name);
    }

    /// GLOBAL_TR, of its default if unset, is every component's rate in every mode, above the caps too; a mode that the
    /// slice doesn't have gives 0.
    void expectGlobalRate(const std::vector<std::string>& modes, const std::vector<std::string>& components, float rate)
    {
        set("USE_GLOBAL_TR", "YES");
        for (const std::string& mode : modes) {
            useMode(mode);
            calculate();
            for (const std::string& component : components)
                EXPECT_THAT(cell(component + "_TR"), IsBits(rate)) << mode << " " << component;
        }
        useMode("NO_SUCH_MODE");
        calculate();
        for (const std::string& component : components)
            EXPECT_THAT(cell(component + "_TR"), IsBits(0.0f)) << component;
    }

    DspTables tables;
};

/// A family's row: its cell, and the member and metric that stand for it.
struct DspFamilyRow {
    std::string_view cell, member, metric;
};

/// preaddMultAlu -> PREADD_MULT_ALU; rate<abData> is its component.
inline std::string dspKeyOf(std::string_view name)
{
    if (name.starts_with("rate<"))
        name = name.substr(5, name.size() - 6);
    std::string key;
    for (const char c : name) {
        if (std::isupper(static_cast<unsigned char>(c)))
            key += '_';
        key += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    return key;
}

/// The rows name the cells that member and metric make up, and all of modes x components are there.
inline void expectDspFamilies(const std::vector<DspFamilyRow>& rows, const std::string& family,
                              const std::vector<std::string>& modes, const std::vector<std::string>& components,
                              const std::vector<std::string>& metrics)
{
    const std::map<std::string_view, std::string> suffixes{{"componentCurrent", "_CURRENT"},
                                                           {"dynamicCurrent", "_DYNAMIC_CURRENT"},
                                                           {"offCurrent", "_OFF_CURRENT"},
                                                           {"toggleRate", "_TR"}};
    std::set<std::string> expected;
    for (const std::string& mode : modes) {
        for (const std::string& component : components)
            expected.insert(family + "_" + mode + "_" + component + "_TR");
        expected.insert(family + "_" + mode + "_AGGREGATED_TR");
    }
    for (const std::string& metric : metrics) {
        for (const std::string& component : components) {
            if (component != "WIDE_XOR" || metric == "toggleRate")
                expected.insert(component + suffixes.at(metric));
        }
        for (const char* total : {"COMPONENT_SUM", "TOTAL_MEASURED"}) {
            if (metric == "dynamicCurrent" || metric == "offCurrent")
                expected.insert(total + suffixes.at(metric));
        }
    }
    std::set<std::string> listed;
    for (const DspFamilyRow& row : rows) {
        listed.emplace(row.cell);
        if (suffixes.contains(row.metric))
            EXPECT_EQ(row.cell, dspKeyOf(row.member) + suffixes.at(row.metric));
        else if (row.metric == "aggregatedRate")
            EXPECT_EQ(row.cell, family + "_" + dspKeyOf(row.member) + "_AGGREGATED_TR");
        else
            EXPECT_EQ(row.cell, family + "_" + dspKeyOf(row.member) + "_" + dspKeyOf(row.metric) + "_TR");
    }
    EXPECT_EQ(listed, expected);
}

/// Every mode that the shipped usages name has all rows, its component sum is the components' sum, and the measured
/// whole is a little above. Gives the number of usages.
template <class Data>
std::size_t expectWholeDspData(const std::string& family, const std::vector<std::string>& components, bool usageLevel)
{
    const DataDirVariable variable(shippedDataDirectory());
    EXPECT_TRUE(Data::getMutableGlobal().reset());
    const Data& data = Data::getGlobal();
    const std::vector<std::string> usages = data.getCfgKeys({"OPERATIONAL_MODE_MAP", family}, true);
    std::set<std::string> modes;
    for (const std::string& usage : usages)
        modes.insert(data.getOperationalModeMap(family, usage.substr(usage.rfind('.') + 1)));
    for (const std::string& mode : data.getCfgKeys({"DYNAMIC_DATA", family}, false))
        EXPECT_TRUE(modes.contains(mode)) << mode << " is never used";
    for (const std::string& mode : modes) {
        for (const std::string& opmode :
             usageLevel ? std::vector<std::string>{"CONST", "DYNAMIC"} : std::vector{mode}) {
            const auto look = [&](const std::string& component, const std::string& measure) {
                if constexpr (requires { data.getDynamicData(family, mode, opmode, component, measure); })
                    return data.getDynamicData(family, mode, opmode, component, measure);
                else
                    return data.getDynamicData(family, mode, component, measure);
            };
            double sum = 0.0;
            for (const std::string& component : components) {
                const float dynamic = look(component, "DYNAMIC_MA_MHZ");
                EXPECT_TRUE(dynamic > 0.0f && dynamic < 0.01f) << mode << " " << component << " " << show(dynamic);
                const float off = look(component, "OFF_CURRENT_MA");
                EXPECT_TRUE(off > 0.0f && off < 0.1f) << mode << " " << component << " " << show(off);
                sum += static_cast<double>(dynamic);
            }
            const float stated = look("COMPONENT_SUM", "DYNAMIC_MA_MHZ");
            EXPECT_NEAR(stated, sum, 1e-6) << mode;
            EXPECT_GT(look("TOTAL_MEASURED", "DYNAMIC_MA_MHZ"), stated) << mode;
            EXPECT_LT(look("TOTAL_MEASURED", "DYNAMIC_MA_MHZ"), 1.1f * stated) << mode;
        }
    }
    return usages.size();
}

/// Calculates on the shipped data and gives the power in milliwatts.
template <class Model>
float shippedDspPower(typename Model::Params& params)
{
    const DataDirVariable variable(shippedDataDirectory());
    Model::Data::getMutableGlobal().reset();
    Model::getGlobal().calculate(params);
    return params[Model::Params::DYNAMIC_VCCINT_POWER];
}

} // namespace zelm::test
