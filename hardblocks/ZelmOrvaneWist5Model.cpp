#include "hardblocks/ZelmOrvaneWist5Model.h"

#include "framework/ZelmModelBlockImpl.h"
#include "hardblocks/ZelmHardBlockFormulas.h"

#include <algorithm>
#include <initializer_list>

template class ZelmModelBlock<ZelmOrvaneWist5Model, ZelmOrvaneWist5Params, ZelmOrvaneWist5Data>;

namespace {

using Data = ZelmOrvaneWist5Data;

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
    std::string_view dynamicItem;
    std::string_view clockItem;
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

float perMegahertz(const Part& part, const Data& data)
{
    const float dynamic = data.findWist5Data(part.dynamicItem);
    const float clock = data.findWist5Data(part.clockItem);
    return dynamic + clock;
}

float partPower(const Part& part, int megahertz, const Data& data)
{
    return perMegahertz(part, data) * static_cast<float>(megahertz);
}

// The PLL's power on a rail above its power at 2160 MHz, on a straight line through that at 4320 MHz.
float pllPowerAbove(float at2160, float at4320, float megahertzAbove)
{
    return (at4320 - at2160) / 2160.0f * megahertzAbove;
}

} // namespace

#define ZELM_MODEL ZelmOrvaneWist5Model
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneWist5Cells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneWist5Model::pullOutputs(Params& params, const Data& data) const
{
    calculateA0ChannelPwr(params, data);
    calculateA1ChannelPwr(params, data);
    calculateWist5TopPower(params, data);
    viewA0Wist5Modes(params, data);
    viewA1Wist5Modes(params, data);
    calculateCmnClkFreq(params, data);
    calculateDma0Frequency(params, data);
    calculateDma1Frequency(params, data);
    calculateIntWrapClkBotFreq(params, data);
    calculateIntWrapClkTopFreq(params, data);
    calculateL2ClkFrequency(params, data);
    calculatePciOperationalFrequencyPcie0(params, data);
    calculatePciOperationalFrequencyPcie1(params, data);
    calculateWist5CmnPwr(params, data);
    calculateWist5Dma0Pwr(params, data);
    calculateWist5Dma1Pwr(params, data);
    calculateWist5IntWrapBotPwr(params, data);
    calculateWist5IntWrapTopPwr(params, data);
    calculateWist5L2Pwr(params, data);
    calculateWist5Pcie0Pwr(params, data);
    calculateWist5Pcie1Pwr(params, data);
    calculateDynamicPwrVccaux(params, data);
    calculateDynamicPwrVccWist5(params, data);
}

// ---- Links: mode, speed and lanes in one name. The clock rules know lanes with a capital X only ----

std::string_view ZelmOrvaneWist5Model::viewA0Wist5Modes(Params& params, const Data& data) const
{
    return once(params[Params::A0_WIST5_MODES], [&] {
        return linkName(viewA0Modes(params, data), "_A0_", viewA0LinkSpeed(params, data),
                        viewA0LinkWidth(params, data));
    });
}

std::string_view ZelmOrvaneWist5Model::viewA1Wist5Modes(Params& params, const Data& data) const
{
    return once(params[Params::A1_WIST5_MODES], [&] {
        return linkName(viewA1Modes(params, data), "_A1_", viewA1LinkSpeed(params, data),
                        viewA1LinkWidth(params, data));
    });
}

// ---- Clocks ----

int ZelmOrvaneWist5Model::calculateCmnClkFreq(Params& params, const Data& data) const
{
    return once(params[Params::CMN_CLK_FREQ], [&] {
        const std::string_view a0Mode = viewA0Modes(params, data);
        const std::string_view a1Mode = viewA1Modes(params, data);
        const std::string_view a0Speed = viewA0LinkSpeed(params, data);
        const std::string_view a1Speed = viewA1LinkSpeed(params, data);
        const std::initializer_list<std::string_view> slow = {"ESM20G", "GEN3", "GEN2"};
        return firstOf({{a0Mode != "WIST5_CCIX" && a1Mode != "WIST5_CCIX", 0},
                        {oneOf(a0Speed, slow) || oneOf(a1Speed, slow), 900}},
                       1200);
    });
}

int ZelmOrvaneWist5Model::calculateDma0Frequency(Params& params, const Data& data) const
{
    return once(params[Params::DMA0_FREQUENCY], [&] {
        const std::string_view a0Speed = viewA0LinkSpeed(params, data);
        const std::string_view a0Link = viewA0Wist5Modes(params, data);
        const std::string_view a1Link = viewA1Wist5Modes(params, data);
        const std::string_view a1Speed = viewA1LinkSpeed(params, data);
        const std::string_view a0Mode = viewA0Modes(params, data);
        // Kept: 250 MHz follow from A1's speed, though the engine is A0's.
        return firstOf({{oneOf(a0Speed, {"ESM25G", "ESM20G"}), 0},
                        {a0Speed == "GEN4" || a0Link == "WIST5_DMA_A0_GEN5_X8", 500},
                        {a1Link == "WIST5_CCIX_A1_GEN5_X8" || a1Speed == "GEN3" || a0Mode == "WIST5_PCISTREAM", 250},
                        {a0Speed == "GEN2", 125}},
                       0);
    });
}

int ZelmOrvaneWist5Model::calculateDma1Frequency(Params& params, const Data& data) const
{
    return once(params[Params::DMA1_FREQUENCY], [&] {
        const std::string_view link = viewA1Wist5Modes(params, data);
        const std::string_view speed = viewA1LinkSpeed(params, data);
        return firstOf({{link == "NONE" || oneOf(speed, {"ESM25G", "ESM20G"}), 0},
                        {speed == "GEN4" || link == "WIST5_DMA_A1_GEN5_X8", 500},
                        {speed == "GEN3" || link == "WIST5_CCIX_A1_GEN5_X8", 250},
                        {speed == "GEN2", 125}},
                       0);
    });
}

int ZelmOrvaneWist5Model::calculateIntWrapClkBotFreq(Params& params, const Data& data) const
{
    return once(params[Params::INT_WRAP_CLK_BOT_FREQ], [&] {
        const std::string_view link = viewA0Wist5Modes(params, data);
        const std::string_view speed = viewA0LinkSpeed(params, data);
        return firstOf({{link == "NONE", 0}}, interconnectClock(speed));
    });
}

int ZelmOrvaneWist5Model::calculateIntWrapClkTopFreq(Params& params, const Data& data) const
{
    return once(params[Params::INT_WRAP_CLK_TOP_FREQ], [&] {
        const std::string_view a0Link = viewA0Wist5Modes(params, data);
        const std::string_view a1Link = viewA1Wist5Modes(params, data);
        const std::string_view a1Speed = viewA1LinkSpeed(params, data);
        return firstOf({{a0Link == "NONE", 0}, //
                        {a1Link == "NONE", 100}},
                       interconnectClock(a1Speed));
    });
}

int ZelmOrvaneWist5Model::calculateL2ClkFrequency(Params& params, const Data& data) const
{
    return once(params[Params::L2_CLK_FREQUENCY], [&] {
        const std::string_view mode = viewA0Modes(params, data);
        const std::string_view link = viewA0Wist5Modes(params, data);
        const std::string_view speed = viewA0LinkSpeed(params, data);
        // Kept: the bare word GEN is slow here, and GEN3 isn't.
        return firstOf({{mode == "WIST5_PCISTREAM" || link == "NONE", 0}, //
                        {oneOf(speed, {"ESM20G", "GEN2", "GEN"}), 900}},
                       1200);
    });
}

int ZelmOrvaneWist5Model::calculatePciOperationalFrequencyPcie0(Params& params, const Data& data) const
{
    return once(params[Params::PCI_OPERATIONAL_FREQUENCY_PCIE0],
                [&] { return controllerClock(viewA0Wist5Modes(params, data), viewA0LinkSpeed(params, data)); });
}

int ZelmOrvaneWist5Model::calculatePciOperationalFrequencyPcie1(Params& params, const Data& data) const
{
    return once(params[Params::PCI_OPERATIONAL_FREQUENCY_PCIE1],
                [&] { return controllerClock(viewA1Wist5Modes(params, data), viewA1LinkSpeed(params, data)); });
}

// ---- Power of the parts ----

float ZelmOrvaneWist5Model::calculateWist5Dma0Pwr(Params& params, const Data& data) const
{
    return once(params[Params::WIST5_DMA0_PWR],
                [&] { return partPower(kDma, calculateDma0Frequency(params, data), data); });
}

float ZelmOrvaneWist5Model::calculateWist5Dma1Pwr(Params& params, const Data& data) const
{
    return once(params[Params::WIST5_DMA1_PWR],
                [&] { return partPower(kDma, calculateDma1Frequency(params, data), data); });
}

float ZelmOrvaneWist5Model::calculateWist5L2Pwr(Params& params, const Data& data) const
{
    return once(params[Params::WIST5_L2_PWR],
                [&] { return partPower(kL2, calculateL2ClkFrequency(params, data), data); });
}

float ZelmOrvaneWist5Model::calculateWist5IntWrapBotPwr(Params& params, const Data& data) const
{
    return once(params[Params::WIST5_INT_WRAP_BOT_PWR],
                [&] { return partPower(kIntWrapBot, calculateIntWrapClkBotFreq(params, data), data); });
}

float ZelmOrvaneWist5Model::calculateWist5IntWrapTopPwr(Params& params, const Data& data) const
{
    return once(params[Params::WIST5_INT_WRAP_TOP_PWR],
                [&] { return partPower(kIntWrapTop, calculateIntWrapClkTopFreq(params, data), data); });
}

float ZelmOrvaneWist5Model::calculateWist5Pcie0Pwr(Params& params, const Data& data) const
{
    return once(params[Params::WIST5_PCIE0_PWR],
                [&] { return partPower(kPcie, calculatePciOperationalFrequencyPcie0(params, data), data); });
}

float ZelmOrvaneWist5Model::calculateWist5Pcie1Pwr(Params& params, const Data& data) const
{
    return once(params[Params::WIST5_PCIE1_PWR],
                [&] { return partPower(kPcie, calculatePciOperationalFrequencyPcie1(params, data), data); });
}

float ZelmOrvaneWist5Model::calculateWist5CmnPwr(Params& params, const Data& data) const
{
    return once(params[Params::WIST5_CMN_PWR], [&] {
        const float cmn = perMegahertz(kCmn, data);
        const float cxla = perMegahertz(kCmnCxla, data);
        const float hnf = perMegahertz(kCmnHnf, data);
        const float cxrh = perMegahertz(kCmnCxrh, data);
        const float clock = static_cast<float>(calculateCmnClkFreq(params, data));
        return (cmn + 2.0f * cxla + 2.0f * hnf + 2.0f * cxrh) * clock;
    });
}

// ---- Sums and rails ----

float ZelmOrvaneWist5Model::calculateA0ChannelPwr(Params& params, const Data& data) const
{
    return once(params[Params::A0_CHANNEL_PWR], [&] {
        const float pcie = calculateWist5Pcie0Pwr(params, data);
        const float dma = calculateWist5Dma0Pwr(params, data);
        return pcie + dma;
    });
}

float ZelmOrvaneWist5Model::calculateA1ChannelPwr(Params& params, const Data& data) const
{
    return once(params[Params::A1_CHANNEL_PWR], [&] {
        const float dma = calculateWist5Dma1Pwr(params, data);
        const float pcie = calculateWist5Pcie1Pwr(params, data);
        return dma + pcie;
    });
}

float ZelmOrvaneWist5Model::calculateWist5TopPower(Params& params, const Data& data) const
{
    return once(params[Params::WIST5_TOP_POWER], [&] {
        const float top = calculateWist5IntWrapTopPwr(params, data);
        const float bottom = calculateWist5IntWrapBotPwr(params, data);
        const float cmn = calculateWist5CmnPwr(params, data);
        const float l2 = calculateWist5L2Pwr(params, data);
        return top + bottom + cmn + 2.0f * l2;
    });
}

float ZelmOrvaneWist5Model::calculateDynamicPwrVccaux(Params& params, const Data& data) const
{
    return once(params[Params::DYNAMIC_PWR_VCCAUX], [&] {
        const float at2160 = data.findWist5Data("PLL_DYNAMIC_POWER_2160MHZ_VCCAUX");
        const float at4320 = data.findWist5Data("PLL_DYNAMIC_POWER_4320MHZ_VCCAUX");
        return pllPowerAbove(at2160, at4320, 440.0f) + at2160;
    });
}

// Kept: this rail takes the PLL at 4320 MHz where the other takes it at 2600 MHz.
float ZelmOrvaneWist5Model::calculateDynamicPwrVccWist5(Params& params, const Data& data) const
{
    return once(params[Params::DYNAMIC_PWR_VCC_WIST5], [&] {
        const float a0 = calculateA0ChannelPwr(params, data);
        const float a1 = calculateA1ChannelPwr(params, data);
        const float top = calculateWist5TopPower(params, data);
        const float volts = getVccWist5(params, data);
        const float reference = data.findSimConditions("PSIM_VOLTAGE");
        const float at2160 = data.findWist5Data("PLL_DYNAMIC_POWER_2160MHZ_VCCINT");
        const float at4320 = data.findWist5Data("PLL_DYNAMIC_POWER_4320MHZ_VCCINT");
        const float milliwatts = (a0 + a1 + top) * 1000.0f;
        const double parts = milliwatts * zelm::voltageFactor(volts, reference, zelm::powerOverVoltage);
        return parts + at2160 + pllPowerAbove(at2160, at4320, 2160.0f);
    });
}
