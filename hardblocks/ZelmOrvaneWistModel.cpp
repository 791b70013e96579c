#include "hardblocks/ZelmOrvaneWistModel.h"

#include "framework/ZelmModelBlockImpl.h"
#include "hardblocks/ZelmHardBlockSheet.h"

#define ZELM_MODEL ZelmOrvaneWistModel
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneWistCells.def"
#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvaneWistTables.def"

struct ZelmOrvaneWistModel::Sheet : zelm::Sheet<ZelmOrvaneWistModel> {
#include "framework/ZelmAccessors.inc"

    void pullOutputs() const
    {
        VccintPowerA0();
        VccauxPower();
        VccintPowerA1();
    }

    // ---- Link configurations ----

    // The key of a link's clocks, such as GEN1_x2_A2.
    static std::string configTag(std::string_view speed, int width, int channels)
    {
        return std::string(speed)
            .append("_x")
            .append(std::to_string(width))
            .append("_A")
            .append(std::to_string(channels));
    }

    std::string_view invalidConfig(const Key& tag) const
    {
        return ISERROR(findConfigPowerData(tag, "ARTERIS")) ? "YES" : "NO";
    }

    std::string computeConfigTag() const
    {
        const Key& speed = LinkSpeedA0();
        const int width = LinkWidthA0();
        const int channels = PciChannels();
        return configTag(speed, width, channels);
    }

    std::string computeConfigTagA1() const
    {
        const Key& speed = LinkSpeedA1();
        const int width = LinkWidthA1();
        const int channels = PciChannels();
        return configTag(speed, width, channels);
    }

    std::string_view computeInvalidConfig() const
    {
        return invalidConfig(ConfigTag());
    }

    std::string_view computeInvalidConfigA1() const
    {
        return invalidConfig(ConfigTagA1());
    }

    // ---- Activity: A0 takes nine tenths of what both controllers share, A1 the rest ----

    float computeTopActiveA0() const
    {
        const Key& mode = WistModeA0();
        return mode == "WIST_CCIX" ? 0.9f : mode == "WIST_PS" ? 1.0f : 0.0f;
    }

    float computeTopActiveA1() const
    {
        return WistModeA1() == "WIST_CCIX" ? 0.1f : 0.0f;
    }

    float computeCmnL2CpiActiveA0() const
    {
        return WistModeA0() == "WIST_CCIX" ? 0.9f : 0.0f;
    }

    float computeCmnL2CpiActiveA1() const
    {
        return WistModeA1() == "WIST_CCIX" ? 0.1f : 0.0f;
    }

    int computePcieA0Active() const
    {
        const bool used = WistModeA0() != "NONE";
        const int channels = PciChannels();
        return used && (channels == 1 || channels == 2) ? 1 : 0;
    }

    int computePcieA1Active() const
    {
        const bool used = WistModeA1() != "NONE";
        const int channels = PciChannels();
        return used && channels == 2 ? 1 : 0;
    }

    int computePcieDmaActiveA0() const
    {
        const Key& mode = WistModeA0();
        return mode == "WIST_STREAM_W_DMA" || mode == "WIST_PS" ? 1 : 0;
    }

    int clockOf(std::string_view invalid, const Key& tag, const Key& item) const
    {
        const int megahertz = findConfigPowerData(tag, item);
        return invalid == "YES" ? 0 : megahertz;
    }

    int clockOfA0(const Key& item) const
    {
        const Key& invalid = InvalidConfig();
        const Key& tag = ConfigTag();
        return clockOf(invalid, tag, item);
    }

    // ---- Clocks: all but A1's follow from A0's link ----

    int computePcieA0Freq() const
    {
        return clockOfA0("GENPCIE_USER_CLK_CORE0");
    }

    int computePcieA1Freq() const
    {
        const Key& invalid = InvalidConfigA1();
        const Key& tag = ConfigTagA1();
        return clockOf(invalid, tag, "GENPCIE_USER_CLK_CORE1");
    }

    int computeTopFreq() const
    {
        return clockOfA0("ARTERIS");
    }

    int computePcieDmaFreq() const
    {
        return clockOfA0("DMA");
    }

    int computeCmnL2CpiFreq() const
    {
        return clockOfA0("GENWIST_CORE_CLK");
    }

    // ---- Power of the parts at full activity ----

    float dynamicPower(const Key& item, int megahertz) const
    {
        const float slope = findPower("DYNAMIC", item);
        return slope * static_cast<float>(megahertz);
    }

    float computePcieA0DynamicPower() const
    {
        return dynamicPower("PCIEA_CORE0_DYNAMIC", PcieA0Freq());
    }

    float computePcieA1DynamicPower() const
    {
        return dynamicPower("PCIEA_CORE1_DYNAMIC", PcieA1Freq());
    }

    float computeTopDynamicPower() const
    {
        return dynamicPower("WIST_INT_WRAP", TopFreq());
    }

    float computePcieDmaDynamicPower() const
    {
        return dynamicPower("WIST_DMA", PcieDmaFreq());
    }

    float computeCmnL2CpiDynamicPower() const
    {
        const float wrap = findPower("DYNAMIC", "WIST_CMN_WRAP");
        const float mic = findPower("DYNAMIC", "WIST_MIC");
        const float megahertz = static_cast<float>(CmnL2CpiFreq());
        return (wrap + mic) * megahertz;
    }

    // ---- Rails ----

    double voltageScale() const
    {
        const float volts = Vccint();
        const float simulated = findFactors("VCCINT_SIM");
        return zelm::voltageFactor(volts, simulated, zelm::powerOverVoltage);
    }

    double computeVccintPowerA0() const
    {
        const bool invalid = InvalidConfig() == "YES";
        const float active = static_cast<float>(PcieA0Active());
        const float pcie = PcieA0DynamicPower();
        const float top = TopDynamicPower();
        const float topActive = TopActiveA0();
        const float dmaActive = static_cast<float>(PcieDmaActiveA0());
        const float dma = PcieDmaDynamicPower();
        const float cmn = CmnL2CpiDynamicPower();
        const float cmnActive = CmnL2CpiActiveA0();
        const double scale = voltageScale();
        const double pll = findPower("PLL", "POWER_DYNAMIC_VCCINT");
        const float core = active * pcie + top * topActive + dmaActive * dma + cmn * cmnActive;
        // The PLL draws also where nothing is known of the link; its power was measured at the supply itself.
        return (invalid ? 0.0 : core * scale) + pll;
    }

    // Kept: the module's PLL and DMA engine count on A0's output alone, and a bad link of A0 takes A1's power away too.
    double computeVccintPowerA1() const
    {
        const bool invalid = InvalidConfig() == "YES";
        const bool invalidA1 = InvalidConfigA1() == "YES";
        const float active = static_cast<float>(PcieA1Active());
        const float pcie = PcieA1DynamicPower();
        const float top = TopDynamicPower();
        const float topActive = TopActiveA1();
        const float cmn = CmnL2CpiDynamicPower();
        const float cmnActive = CmnL2CpiActiveA1();
        const double scale = voltageScale();
        const float core = active * pcie + top * topActive + cmn * cmnActive;
        return invalid || invalidA1 ? 0.0 : core * scale;
    }

    float computeVccauxPower() const
    {
        const float atRest = findPower("PLL", "STATIC_VCCAUX");
        const float dynamic = findPower("PLL", "POWER_DYNAMIC_AUX");
        return atRest + dynamic;
    }
};

#include "framework/ZelmModelBodies.inc"
