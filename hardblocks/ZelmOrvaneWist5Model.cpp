#include "hardblocks/ZelmOrvaneWist5Model.h"

#include "framework/ZelmModelBlockImpl.h"
#include "hardblocks/ZelmHardBlockSheet.h"

#include <algorithm>
#include <initializer_list>

#define ZELM_MODEL ZelmOrvaneWist5Model
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneWist5Cells.def"
#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvaneWist5Tables.def"

namespace {

using zelm::Key;

// A clock rule: the clock's frequency where the condition holds and none before it did.
struct Rule {
    bool holds;
    int megahertz;
};

int firstOf(std::initializer_list<Rule> rules, int otherwise)
{
    for (const Rule& rule : rules)
        if (rule.holds)
            return rule.megahertz;
    return otherwise;
}

bool oneOf(std::string_view text, std::initializer_list<std::string_view> words)
{
    return std::find(words.begin(), words.end(), text) != words.end();
}

std::string linkName(std::string_view mode, std::string_view controller, std::string_view speed, std::string_view width)
{
    if (mode == "NONE")
        return "NONE";
    return std::string(mode).append(controller).append(speed).append("_").append(width);
}

int interconnectClock(std::string_view speed)
{
    return firstOf({{oneOf(speed, {"ESM20G", "GEN3", "GEN2"}), 825}, //
                    {oneOf(speed, {"GEN4", "ESM25G"}), 1000}},
                   1200);
}

int controllerClock(std::string_view link, std::string_view speed)
{
    return firstOf({{link == "NONE", 0},
                    {speed == "ESM25G", 196},
                    {speed == "ESM20G", 157},
                    {oneOf(speed, {"GEN4", "GEN3", "GEN2"}), 250}},
                   1000);
}

// A part's items of WIST5_DATA: its switching and its clock tree, both per MHz.
struct Part {
    Key dynamicItem;
    Key clockItem;
};

constexpr Part kDma{"WIST5_DMA_DYNAMIC_MHZ", "WIST5_DMA_CLOCK_MHZ"};
constexpr Part kL2{"WIST5_L2_DYNAMIC_MHZ", "WIST5_L2_CLOCK_MHZ"};
constexpr Part kIntWrapBot{"WIST5_INT_WRAP_BOT_DYNAMIC_MHZ", "WIST5_INT_WRAP_BOT_CLOCK_MHZ"};
constexpr Part kIntWrapTop{"WIST5_INT_WRAP_TOP_DYNAMIC_MHZ", "WIST5_INT_WRAP_TOP_CLOCK_MHZ"};
constexpr Part kPcie{"WIST5_PCIE_DYNAMIC_MHZ", "WIST5_PCIE_CLOCK_MHZ"};
constexpr Part kCmn{"WIST5_CMN_DYNAMIC_MHZ", "WIST5_CMN_CLOCK_MHZ"};
constexpr Part kCmnCxla{"WIST5_CMN_CXLA_DYNAMIC_MHZ", "WIST5_CMN_CXLA_CLOCK_MHZ"};
constexpr Part kCmnHnf{"WIST5_CMN_HNF_DYNAMIC_MHZ", "WIST5_CMN_HNF_CLOCK_MHZ"};
constexpr Part kCmnCxrh{"WIST5_CMN_CXRH_DYNAMIC_MHZ", "WIST5_CMN_CXRH_CLOCK_MHZ"};

// The PLL's power on a rail above its power at 2160 MHz, on a straight line through that at 4320 MHz.
float pllPowerAbove(float at2160, float at4320, float megahertzAbove)
{
    return (at4320 - at2160) / 2160.0f * megahertzAbove;
}

} // namespace

struct ZelmOrvaneWist5Model::Sheet : zelm::Sheet<ZelmOrvaneWist5Model> {
#include "framework/ZelmAccessors.inc"

    void pullOutputs() const
    {
        A0ChannelPwr();
        A1ChannelPwr();
        Wist5TopPower();
        A0Wist5Modes();
        A1Wist5Modes();
        CmnClkFreq();
        Dma0Frequency();
        Dma1Frequency();
        IntWrapClkBotFreq();
        IntWrapClkTopFreq();
        L2ClkFrequency();
        PciOperationalFrequencyPcie0();
        PciOperationalFrequencyPcie1();
        Wist5CmnPwr();
        Wist5Dma0Pwr();
        Wist5Dma1Pwr();
        Wist5IntWrapBotPwr();
        Wist5IntWrapTopPwr();
        Wist5L2Pwr();
        Wist5Pcie0Pwr();
        Wist5Pcie1Pwr();
        DynamicPwrVccaux();
        DynamicPwrVccWist5();
    }

    // ---- Links: mode, speed and lanes in one name. The clock rules know lanes with a capital X only ----

    std::string computeA0Wist5Modes() const
    {
        const Key& mode = A0Modes();
        const Key& speed = A0LinkSpeed();
        const Key& width = A0LinkWidth();
        return linkName(mode, "_A0_", speed, width);
    }

    std::string computeA1Wist5Modes() const
    {
        const Key& mode = A1Modes();
        const Key& speed = A1LinkSpeed();
        const Key& width = A1LinkWidth();
        return linkName(mode, "_A1_", speed, width);
    }

    // ---- Clocks ----

    int computeCmnClkFreq() const
    {
        const Key& a0Mode = A0Modes();
        const Key& a1Mode = A1Modes();
        const Key& a0Speed = A0LinkSpeed();
        const Key& a1Speed = A1LinkSpeed();
        const std::initializer_list<std::string_view> slow = {"ESM20G", "GEN3", "GEN2"};
        return firstOf({{a0Mode != "WIST5_CCIX" && a1Mode != "WIST5_CCIX", 0},
                        {oneOf(a0Speed, slow) || oneOf(a1Speed, slow), 900}},
                       1200);
    }

    int computeDma0Frequency() const
    {
        const Key& a0Speed = A0LinkSpeed();
        const Key& a0Link = A0Wist5Modes();
        const Key& a1Link = A1Wist5Modes();
        const Key& a1Speed = A1LinkSpeed();
        const Key& a0Mode = A0Modes();
        // Kept: 250 MHz follow from A1's speed, though the engine is A0's.
        return firstOf({{oneOf(a0Speed, {"ESM25G", "ESM20G"}), 0},
                        {a0Speed == "GEN4" || a0Link == "WIST5_DMA_A0_GEN5_X8", 500},
                        {a1Link == "WIST5_CCIX_A1_GEN5_X8" || a1Speed == "GEN3" || a0Mode == "WIST5_PCISTREAM", 250},
                        {a0Speed == "GEN2", 125}},
                       0);
    }

    int computeDma1Frequency() const
    {
        const Key& link = A1Wist5Modes();
        const Key& speed = A1LinkSpeed();
        return firstOf({{link == "NONE" || oneOf(speed, {"ESM25G", "ESM20G"}), 0},
                        {speed == "GEN4" || link == "WIST5_DMA_A1_GEN5_X8", 500},
                        {speed == "GEN3" || link == "WIST5_CCIX_A1_GEN5_X8", 250},
                        {speed == "GEN2", 125}},
                       0);
    }

    int computeIntWrapClkBotFreq() const
    {
        const Key& link = A0Wist5Modes();
        const Key& speed = A0LinkSpeed();
        return firstOf({{link == "NONE", 0}}, interconnectClock(speed));
    }

    int computeIntWrapClkTopFreq() const
    {
        const Key& a0Link = A0Wist5Modes();
        const Key& a1Link = A1Wist5Modes();
        const Key& a1Speed = A1LinkSpeed();
        return firstOf({{a0Link == "NONE", 0}, //
                        {a1Link == "NONE", 100}},
                       interconnectClock(a1Speed));
    }

    int computeL2ClkFrequency() const
    {
        const Key& mode = A0Modes();
        const Key& link = A0Wist5Modes();
        const Key& speed = A0LinkSpeed();
        // Kept: the bare word GEN is slow here, and GEN3 isn't.
        return firstOf({{mode == "WIST5_PCISTREAM" || link == "NONE", 0}, //
                        {oneOf(speed, {"ESM20G", "GEN2", "GEN"}), 900}},
                       1200);
    }

    int computePciOperationalFrequencyPcie0() const
    {
        const Key& link = A0Wist5Modes();
        const Key& speed = A0LinkSpeed();
        return controllerClock(link, speed);
    }

    int computePciOperationalFrequencyPcie1() const
    {
        const Key& link = A1Wist5Modes();
        const Key& speed = A1LinkSpeed();
        return controllerClock(link, speed);
    }

    // ---- Power of the parts ----

    float perMegahertz(const Part& part) const
    {
        const float dynamic = findWist5Data(part.dynamicItem);
        const float clock = findWist5Data(part.clockItem);
        return dynamic + clock;
    }

    float partPower(const Part& part, int megahertz) const
    {
        return perMegahertz(part) * static_cast<float>(megahertz);
    }

    float computeWist5Dma0Pwr() const
    {
        return partPower(kDma, Dma0Frequency());
    }

    float computeWist5Dma1Pwr() const
    {
        return partPower(kDma, Dma1Frequency());
    }

    float computeWist5L2Pwr() const
    {
        return partPower(kL2, L2ClkFrequency());
    }

    float computeWist5IntWrapBotPwr() const
    {
        return partPower(kIntWrapBot, IntWrapClkBotFreq());
    }

    float computeWist5IntWrapTopPwr() const
    {
        return partPower(kIntWrapTop, IntWrapClkTopFreq());
    }

    float computeWist5Pcie0Pwr() const
    {
        return partPower(kPcie, PciOperationalFrequencyPcie0());
    }

    float computeWist5Pcie1Pwr() const
    {
        return partPower(kPcie, PciOperationalFrequencyPcie1());
    }

    float computeWist5CmnPwr() const
    {
        const float cmn = perMegahertz(kCmn);
        const float cxla = perMegahertz(kCmnCxla);
        const float hnf = perMegahertz(kCmnHnf);
        const float cxrh = perMegahertz(kCmnCxrh);
        const float clock = static_cast<float>(CmnClkFreq());
        return (cmn + 2.0f * cxla + 2.0f * hnf + 2.0f * cxrh) * clock;
    }

    // ---- Sums and rails ----

    float computeA0ChannelPwr() const
    {
        const float pcie = Wist5Pcie0Pwr();
        const float dma = Wist5Dma0Pwr();
        return pcie + dma;
    }

    float computeA1ChannelPwr() const
    {
        const float dma = Wist5Dma1Pwr();
        const float pcie = Wist5Pcie1Pwr();
        return dma + pcie;
    }

    float computeWist5TopPower() const
    {
        const float top = Wist5IntWrapTopPwr();
        const float bottom = Wist5IntWrapBotPwr();
        const float cmn = Wist5CmnPwr();
        const float l2 = Wist5L2Pwr();
        return top + bottom + cmn + 2.0f * l2;
    }

    float computeDynamicPwrVccaux() const
    {
        const float at2160 = findWist5Data("PLL_DYNAMIC_POWER_2160MHZ_VCCAUX");
        const float at4320 = findWist5Data("PLL_DYNAMIC_POWER_4320MHZ_VCCAUX");
        return pllPowerAbove(at2160, at4320, 440.0f) + at2160;
    }

    // Kept: this rail takes the PLL at 4320 MHz where the other takes it at 2600 MHz.
    double computeDynamicPwrVccWist5() const
    {
        const float a0 = A0ChannelPwr();
        const float a1 = A1ChannelPwr();
        const float top = Wist5TopPower();
        const float volts = VccWist5();
        const float reference = findSimConditions("PSIM_VOLTAGE");
        const float at2160 = findWist5Data("PLL_DYNAMIC_POWER_2160MHZ_VCCINT");
        const float at4320 = findWist5Data("PLL_DYNAMIC_POWER_4320MHZ_VCCINT");
        const float milliwatts = (a0 + a1 + top) * 1000.0f;
        const double parts = milliwatts * zelm::voltageFactor(volts, reference, zelm::powerOverVoltage);
        return parts + at2160 + pllPowerAbove(at2160, at4320, 2160.0f);
    }
};

#include "framework/ZelmModelBodies.inc"
