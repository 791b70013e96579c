#include "device/ZelmOrvanePartsModel.h"

#include "support/BlockFixture.h"

#include <algorithm>
#include <set>

namespace zelm::test::partsTest {

using Params = ZelmOrvanePartsParams;
using Data = ZelmOrvanePartsData;

class PartsTest : public BlockFixture<ZelmOrvanePartsModel> {
protected:
    PartsTest()
    {
        load(R"(
          DEVICE_TO_FAMILY_MAP : { ab12 = "Halden Rim Series"; };
          DEVICE_CORE_VOLTAGE_MAP : { ab12 = "0.80"; };
          FAMILY_TO_DEFAULT_DEVICE : { RIM = "ab12"; };
          DEVICE_DATA : {
            FAMILY_AXIS_SERIES_DATA : { ab12_p1_1 = "axis"; zq4410_kibo4471_1_LP_e_S_es1 = "Yes"; };
            FAMILY_RIM_SERIES_DATA : { ab12_p1_1 = "rim"; };
            FAMILY_WAVE_SERIES_DATA : { ab12_p1_1 = "wave"; };
            FAMILY_BASE_SERIES_DATA : { ab12_p1_1 = "base"; };
            FAMILY_CREST_SERIES_DATA : { ab12_p1_1 = "crest"; only_crest = "last"; };
          };
          RESOURCE_DATA : { ab1_ : { LUT = 70; FF = 0; }; ab12_p1 : { LUT = 1; }; zq441_ : { LUT = 900; }; };)");
    }

    std::string supportedIn(const std::string& family, const std::string& part)
    {
        params[Params::DEVICE_FAMILY] = family;
        params[Params::PART_SELECTION] = part;
        calculate();
        return params[Params::IS_PART_SUPPORTED];
    }
};

TEST(Parts, HasNoFloats)
{
    EXPECT_EQ(Params::LastFloat, 6); // markers alone
}

TEST_F(PartsTest, TheDefaultsStayInTheInputs)
{
    calculate();
    EXPECT_EQ(params[Params::DEVICE_FAMILY], "Halden Axis Series");
    EXPECT_EQ(params[Params::PART_SELECTION], "zq4410_kibo4471_1_LP_e_S_es1");
    EXPECT_EQ(params[Params::RESOURCE_TYPE], "LUT");
    EXPECT_EQ(params[Params::IS_PART_SUPPORTED], "Yes");
    EXPECT_EQ(params[Params::RESOURCE_COUNT], 900);
}

TEST_F(PartsTest, TheCutsEndOneCharacterShort)
{
    params[Params::PART_SELECTION] = "ab12_p1_1";
    calculate();
    EXPECT_EQ(params[Params::DEVICE], "ab1"); // of the field ab12
    EXPECT_EQ(params[Params::RIGHT_OF_DEVICE], "_p1_1");
    EXPECT_EQ(params[Params::PACKAGE], ""); // of the field p1
    EXPECT_EQ(params[Params::DEVICE_PACKAGE], "ab1_");
    EXPECT_EQ(params[Params::RESOURCE_COUNT], 70); // not ab12_p1's
}

TEST_F(PartsTest, EachSeriesReadsItsTable)
{
    EXPECT_EQ(supportedIn("Halden Axis Series", "ab12_p1_1"), "axis");
    EXPECT_EQ(supportedIn("Halden Rim Series", "ab12_p1_1"), "rim");
    EXPECT_EQ(supportedIn("Halden Wave Series", "ab12_p1_1"), "wave");
    EXPECT_EQ(supportedIn("Halden Base Series", "ab12_p1_1"), "base");
    EXPECT_EQ(supportedIn("Halden Crest Series", "ab12_p1_1"), "crest");
}

TEST_F(PartsTest, AnyOtherNameReadsTheLastTable)
{
    EXPECT_EQ(supportedIn("halden axis series", "ab12_p1_1"), "crest");
    EXPECT_EQ(supportedIn("", "ab12_p1_1"), "crest");
    EXPECT_EQ(supportedIn("Halden Base Series ", "ab12_p1_1"), "crest");
}

TEST_F(PartsTest, APartOfAnotherSeriesIsNotSupported)
{
    EXPECT_EQ(supportedIn("Halden Crest Series", "only_crest"), "last");
    EXPECT_EQ(supportedIn("Halden Axis Series", "only_crest"), "No");
}

TEST_F(PartsTest, WithoutAnUnderscoreNothingIsLeft)
{
    for (const std::string part : {"ab12", ""}) {
        params[Params::PART_SELECTION] = part;
        calculate();
        EXPECT_EQ(params[Params::PART_SELECTION], part); // an empty input is not an unset one
        EXPECT_EQ(params[Params::DEVICE], "");
        EXPECT_EQ(params[Params::RIGHT_OF_DEVICE], "");
        EXPECT_EQ(params[Params::PACKAGE], "");
        EXPECT_EQ(params[Params::DEVICE_PACKAGE], "_");
        EXPECT_EQ(params[Params::RESOURCE_COUNT], -1);
        EXPECT_EQ(params[Params::IS_PART_SUPPORTED], "No");
    }
}

TEST_F(PartsTest, AnUnderscoreInFrontLeavesNoDevice)
{
    params[Params::PART_SELECTION] = "_p1";
    calculate();
    EXPECT_EQ(params[Params::DEVICE], ""); // a cut of length -1
    EXPECT_EQ(params[Params::RIGHT_OF_DEVICE], "_p1");
    EXPECT_EQ(params[Params::DEVICE_PACKAGE], "_");
}

TEST_F(PartsTest, ACountOfZeroIsNotAMiss)
{
    params[Params::PART_SELECTION] = "ab12_p1_1";
    params[Params::RESOURCE_TYPE] = "FF";
    calculate();
    EXPECT_EQ(params[Params::RESOURCE_COUNT], 0);
    params[Params::RESOURCE_TYPE] = "NO_SUCH_RESOURCE";
    calculate();
    EXPECT_EQ(params[Params::RESOURCE_COUNT], -1);
}

TEST_F(PartsTest, ASecondPartIsComputedAfresh)
{
    calculate();
    params[Params::PART_SELECTION] = "ab12_p1_1";
    calculate();
    EXPECT_EQ(params[Params::DEVICE], "ab1");
    EXPECT_EQ(params[Params::RIGHT_OF_DEVICE], "_p1_1");
    EXPECT_EQ(params[Params::DEVICE_PACKAGE], "ab1_");
    EXPECT_EQ(params[Params::IS_PART_SUPPORTED], "axis");
    EXPECT_EQ(params[Params::RESOURCE_COUNT], 70);
    EXPECT_EQ(params[Params::DEVICE_FAMILY], "Halden Axis Series");
}

TEST_F(PartsTest, TheHostsTablesAreServed)
{
    EXPECT_EQ(data.getDeviceToFamilyMap("ab12"), "Halden Rim Series");
    EXPECT_EQ(data.getDeviceCoreVoltageMap("ab12"), "0.80");
    EXPECT_EQ(data.getFamilyToDefaultDevice("RIM"), "ab12");
    EXPECT_EQ(data.getDeviceData("FAMILY_RIM_SERIES_DATA", "ab12_p1_1", ""), "rim");
    EXPECT_EQ(data.getDeviceData("FAMILY_RIM_SERIES_DATA", "ab12_p1_1", "third"), zelm::unsetString);
    EXPECT_EQ(data.getCfgKeys({}, false),
              (std::vector<std::string>{"DEVICE_TO_FAMILY_MAP", "DEVICE_CORE_VOLTAGE_MAP", "FAMILY_TO_DEFAULT_DEVICE",
                                        "DEVICE_DATA", "RESOURCE_DATA"}));
}

TEST(Parts, ALoadStopsAtTheFirstMissingTable)
{
    const TemporaryDataDirectory directory;
    directory.write("ZelmOrvanePartsData", R"(ZelmOrvanePartsData : {
      DEVICE_TO_FAMILY_MAP : { a = "x"; };
      FAMILY_TO_DEFAULT_DEVICE : { b = "y"; };
    };)");
    EXPECT_FALSE(Data::getMutableGlobal().reset());
    EXPECT_EQ(Data::getGlobal().getDeviceToFamilyMap("a"), "x");
    EXPECT_EQ(Data::getGlobal().getFamilyToDefaultDevice("b"), zelm::unsetString);
}

// ---- The shipped catalogue ----

class ShippedPartsTest : public testing::Test {
protected:
    ShippedPartsTest() : m_variable(shippedDataDirectory())
    {
        Data::getMutableGlobal().reset();
    }

    const Data& data = Data::getGlobal();

private:
    DataDirVariable m_variable;
};

TEST_F(ShippedPartsTest, EveryPartHasItsSeriesAndResources)
{
    constexpr std::pair<const char*, const char*> series[] = {{"FAMILY_AXIS_SERIES_DATA", "Halden Axis Series"},
                                                              {"FAMILY_RIM_SERIES_DATA", "Halden Rim Series"},
                                                              {"FAMILY_WAVE_SERIES_DATA", "Halden Wave Series"},
                                                              {"FAMILY_BASE_SERIES_DATA", "Halden Base Series"},
                                                              {"FAMILY_CREST_SERIES_DATA", "Halden Crest Series"}};
    std::set<std::string> devices;
    std::set<std::string> cuts;
    for (const auto& [key, family] : series) {
        const std::vector<std::string> parts = data.getCfgKeys({"DEVICE_DATA", key}, false);
        EXPECT_FALSE(parts.empty()) << key;
        for (const std::string& part : parts) {
            const std::string device = part.substr(0, part.find('_'));
            devices.insert(device);
            EXPECT_EQ(data.getDeviceToFamilyMap(device), family) << part;
            Params params;
            params[Params::DEVICE_FAMILY] = family;
            params[Params::PART_SELECTION] = part;
            ZelmOrvanePartsModel::getGlobal().calculate(params);
            EXPECT_EQ(params[Params::IS_PART_SUPPORTED], "Yes") << part;
            EXPECT_GT(params[Params::RESOURCE_COUNT], 100000) << part;
            cuts.insert(params[Params::DEVICE_PACKAGE]);
        }
    }
    EXPECT_GE(devices.size(), 6u);
    EXPECT_EQ(cuts.size(), devices.size()) << "two devices share their resources";
    for (const auto& [key, family] : series) {
        std::string name = family;
        std::replace(name.begin(), name.end(), ' ', '_');
        EXPECT_EQ(data.getDeviceToFamilyMap(data.getFamilyToDefaultDevice(name)), family);
    }
}

TEST_F(ShippedPartsTest, ResourcesFitTogether)
{
    const std::vector<std::string> devices = data.getCfgKeys({"RESOURCE_DATA"}, false);
    EXPECT_GE(devices.size(), 6u);
    for (const std::string& device : devices) {
        for (const char* word :
             {"LUT",        "FF",        "BRAM",    "PLAM",    "DSP",       "CLOCK_MANAGER", "VEKO",
              "DPLL",       "RUSK",      "SELV_IO", "NALT_IO", "SELV_BANK", "NALT_BANK",     "LORV_QUAD",
              "LORVP_QUAD", "SARN_QUAD", "NOC",     "DDRMC",   "NEMT",      "GORB",          "PCIEB",
              "PCIEB5",     "WIST",      "WIST5",   "JORL",    "ILKN",      "HSC",           "SDFEC",
              "TUVO",       "MULM",      "ADC",     "DAC",     "YOND",      "HARL"})
            EXPECT_THAT(data.getResourceData(device, word), testing::AllOf(testing::Ge(0), testing::Lt(10'000'000)))
                << device << " " << word; // a missing word would be the int sentinel
        EXPECT_EQ(data.getResourceData(device, "FF"), 2 * data.getResourceData(device, "LUT")) << device;
        EXPECT_EQ(data.getResourceData(device, "CLOCK_MANAGER"), data.getResourceData(device, "VEKO") +
                                                                     data.getResourceData(device, "DPLL") +
                                                                     data.getResourceData(device, "RUSK"))
            << device;
    }
}

} // namespace zelm::test::partsTest
