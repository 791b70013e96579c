#include "hardblocks/ZelmOrvaneWistModel.h"

#include "framework/ZelmModelBlockImpl.h"
#include "hardblocks/ZelmHardBlockFormulas.h"

template class ZelmModelBlock<ZelmOrvaneWistModel, ZelmOrvaneWistParams, ZelmOrvaneWistData>;

namespace {

using Data = ZelmOrvaneWistData;

// The key of a link's clocks, such as GEN1_x2_A2.
std::string configTag(std::string_view speed, int width, int channels)
{
    return std::string(speed).append("_x").append(std::to_string(width)).append("_A").append(std::to_string(channels));
}

std::string_view invalidConfig(std::string_view tag, const Data& data)
{
    return ZelmHelperUtils::ISERROR(data.findConfigPowerData(tag, "ARTERIS")) ? "YES" : "NO";
}

int clockOf(std::string_view invalid, std::string_view tag, std::string_view item, const Data& data)
{
    const int megahertz = data.findConfigPowerData(tag, item);
    return invalid == "YES" ? 0 : megahertz;
}

float dynamicPower(std::string_view item, int megahertz, const Data& data)
{
    const float slope = data.findPower("DYNAMIC", item);
    return slope * static_cast<float>(megahertz);
}

} // namespace

#define ZELM_MODEL ZelmOrvaneWistModel
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneWistCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneWistModel::pullOutputs(Params& params, const Data& data) const
{
    calculateVccintPowerA0(params, data);
    calculateVccauxPower(params, data);
    calculateVccintPowerA1(params, data);
}

// ---- Link configurations ----

std::string_view ZelmOrvaneWistModel::viewConfigTag(Params& params, const Data& data) const
{
    return once(params[Params::CONFIG_TAG], [&] {
        return configTag(viewLinkSpeedA0(params, data), getLinkWidthA0(params, data), getPciChannels(params, data));
    });
}

std::string_view ZelmOrvaneWistModel::viewConfigTagA1(Params& params, const Data& data) const
{
    return once(params[Params::CONFIG_TAG_A1], [&] {
        return configTag(viewLinkSpeedA1(params, data), getLinkWidthA1(params, data), getPciChannels(params, data));
    });
}

std::string_view ZelmOrvaneWistModel::viewInvalidConfig(Params& params, const Data& data) const
{
    return once(params[Params::INVALID_CONFIG], [&] { return invalidConfig(viewConfigTag(params, data), data); });
}

std::string_view ZelmOrvaneWistModel::viewInvalidConfigA1(Params& params, const Data& data) const
{
    return once(params[Params::INVALID_CONFIG_A1], [&] { return invalidConfig(viewConfigTagA1(params, data), data); });
}

// ---- Activity: A0 takes nine tenths of what both controllers share, A1 the rest ----

float ZelmOrvaneWistModel::calculateTopActiveA0(Params& params, const Data& data) const
{
    return once(params[Params::TOP_ACTIVE_A0], [&] {
        const std::string_view mode = viewWistModeA0(params, data);
        return mode == "WIST_CCIX" ? 0.9f : mode == "WIST_PS" ? 1.0f : 0.0f;
    });
}

float ZelmOrvaneWistModel::calculateTopActiveA1(Params& params, const Data& data) const
{
    return once(params[Params::TOP_ACTIVE_A1],
                [&] { return viewWistModeA1(params, data) == "WIST_CCIX" ? 0.1f : 0.0f; });
}

float ZelmOrvaneWistModel::calculateCmnL2CpiActiveA0(Params& params, const Data& data) const
{
    return once(params[Params::CMN_L2_CPI_ACTIVE_A0],
                [&] { return viewWistModeA0(params, data) == "WIST_CCIX" ? 0.9f : 0.0f; });
}

float ZelmOrvaneWistModel::calculateCmnL2CpiActiveA1(Params& params, const Data& data) const
{
    return once(params[Params::CMN_L2_CPI_ACTIVE_A1],
                [&] { return viewWistModeA1(params, data) == "WIST_CCIX" ? 0.1f : 0.0f; });
}

int ZelmOrvaneWistModel::calculatePcieA0Active(Params& params, const Data& data) const
{
    return once(params[Params::PCIE_A0_ACTIVE], [&] {
        const bool used = viewWistModeA0(params, data) != "NONE";
        const int channels = getPciChannels(params, data);
        return used && (channels == 1 || channels == 2) ? 1 : 0;
    });
}

int ZelmOrvaneWistModel::calculatePcieA1Active(Params& params, const Data& data) const
{
    return once(params[Params::PCIE_A1_ACTIVE], [&] {
        const bool used = viewWistModeA1(params, data) != "NONE";
        const int channels = getPciChannels(params, data);
        return used && channels == 2 ? 1 : 0;
    });
}

int ZelmOrvaneWistModel::calculatePcieDmaActiveA0(Params& params, const Data& data) const
{
    return once(params[Params::PCIE_DMA_ACTIVE_A0], [&] {
        const std::string_view mode = viewWistModeA0(params, data);
        return mode == "WIST_STREAM_W_DMA" || mode == "WIST_PS" ? 1 : 0;
    });
}

// ---- Clocks: all but A1's follow from A0's link ----

int ZelmOrvaneWistModel::calculatePcieA0Freq(Params& params, const Data& data) const
{
    return once(params[Params::PCIE_A0_FREQ], [&] {
        return clockOf(viewInvalidConfig(params, data), viewConfigTag(params, data), "GENPCIE_USER_CLK_CORE0", data);
    });
}

int ZelmOrvaneWistModel::calculatePcieA1Freq(Params& params, const Data& data) const
{
    return once(params[Params::PCIE_A1_FREQ], [&] {
        return clockOf(viewInvalidConfigA1(params, data), viewConfigTagA1(params, data), "GENPCIE_USER_CLK_CORE1",
                       data);
    });
}

int ZelmOrvaneWistModel::calculateTopFreq(Params& params, const Data& data) const
{
    return once(params[Params::TOP_FREQ],
                [&] { return clockOf(viewInvalidConfig(params, data), viewConfigTag(params, data), "ARTERIS", data); });
}

int ZelmOrvaneWistModel::calculatePcieDmaFreq(Params& params, const Data& data) const
{
    return once(params[Params::PCIE_DMA_FREQ],
                [&] { return clockOf(viewInvalidConfig(params, data), viewConfigTag(params, data), "DMA", data); });
}

int ZelmOrvaneWistModel::calculateCmnL2CpiFreq(Params& params, const Data& data) const
{
    return once(params[Params::CMN_L2_CPI_FREQ], [&] {
        return clockOf(viewInvalidConfig(params, data), viewConfigTag(params, data), "GENWIST_CORE_CLK", data);
    });
}

// ---- Power of the parts at full activity ----

float ZelmOrvaneWistModel::calculatePcieA0DynamicPower(Params& params, const Data& data) const
{
    return once(params[Params::PCIE_A0_DYNAMIC_POWER],
                [&] { return dynamicPower("PCIEA_CORE0_DYNAMIC", calculatePcieA0Freq(params, data), data); });
}

float ZelmOrvaneWistModel::calculatePcieA1DynamicPower(Params& params, const Data& data) const
{
    return once(params[Params::PCIE_A1_DYNAMIC_POWER],
                [&] { return dynamicPower("PCIEA_CORE1_DYNAMIC", calculatePcieA1Freq(params, data), data); });
}

float ZelmOrvaneWistModel::calculateTopDynamicPower(Params& params, const Data& data) const
{
    return once(params[Params::TOP_DYNAMIC_POWER],
                [&] { return dynamicPower("WIST_INT_WRAP", calculateTopFreq(params, data), data); });
}

float ZelmOrvaneWistModel::calculatePcieDmaDynamicPower(Params& params, const Data& data) const
{
    return once(params[Params::PCIE_DMA_DYNAMIC_POWER],
                [&] { return dynamicPower("WIST_DMA", calculatePcieDmaFreq(params, data), data); });
}

float ZelmOrvaneWistModel::calculateCmnL2CpiDynamicPower(Params& params, const Data& data) const
{
    return once(params[Params::CMN_L2_CPI_DYNAMIC_POWER], [&] {
        const float wrap = data.findPower("DYNAMIC", "WIST_CMN_WRAP");
        const float mic = data.findPower("DYNAMIC", "WIST_MIC");
        const float megahertz = static_cast<float>(calculateCmnL2CpiFreq(params, data));
        return (wrap + mic) * megahertz;
    });
}

// ---- Rails ----

double ZelmOrvaneWistModel::voltageScale(Params& params, const Data& data) const
{
    return zelm::voltageFactor(getVccint(params, data), data.findFactors("VCCINT_SIM"), zelm::powerOverVoltage);
}

float ZelmOrvaneWistModel::calculateVccintPowerA0(Params& params, const Data& data) const
{
    return once(params[Params::VCCINT_POWER_A0], [&] {
        const bool invalid = viewInvalidConfig(params, data) == "YES";
        const float active = static_cast<float>(calculatePcieA0Active(params, data));
        const float pcie = calculatePcieA0DynamicPower(params, data);
        const float top = calculateTopDynamicPower(params, data);
        const float topActive = calculateTopActiveA0(params, data);
        const float dmaActive = static_cast<float>(calculatePcieDmaActiveA0(params, data));
        const float dma = calculatePcieDmaDynamicPower(params, data);
        const float cmn = calculateCmnL2CpiDynamicPower(params, data);
        const float cmnActive = calculateCmnL2CpiActiveA0(params, data);
        const double scale = voltageScale(params, data);
        const double pll = data.findPower("PLL", "POWER_DYNAMIC_VCCINT");
        const float core = active * pcie + top * topActive + dmaActive * dma + cmn * cmnActive;
        // The PLL draws also where nothing is known of the link; its power was measured at the supply itself.
        return (invalid ? 0.0 : core * scale) + pll;
    });
}

// Kept: the module's PLL and DMA engine count on A0's output alone, and a bad link of A0 takes A1's power away too.
float ZelmOrvaneWistModel::calculateVccintPowerA1(Params& params, const Data& data) const
{
    return once(params[Params::VCCINT_POWER_A1], [&] {
        const bool invalid = viewInvalidConfig(params, data) == "YES";
        const bool invalidA1 = viewInvalidConfigA1(params, data) == "YES";
        const float active = static_cast<float>(calculatePcieA1Active(params, data));
        const float pcie = calculatePcieA1DynamicPower(params, data);
        const float top = calculateTopDynamicPower(params, data);
        const float topActive = calculateTopActiveA1(params, data);
        const float cmn = calculateCmnL2CpiDynamicPower(params, data);
        const float cmnActive = calculateCmnL2CpiActiveA1(params, data);
        const double scale = voltageScale(params, data);
        const float core = active * pcie + top * topActive + cmn * cmnActive;
        return invalid || invalidA1 ? 0.0 : core * scale;
    });
}

float ZelmOrvaneWistModel::calculateVccauxPower(Params& params, const Data& data) const
{
    return once(params[Params::VCCAUX_POWER], [&] {
        const float atRest = data.findPower("PLL", "STATIC_VCCAUX");
        const float dynamic = data.findPower("PLL", "POWER_DYNAMIC_AUX");
        return atRest + dynamic;
    });
}
