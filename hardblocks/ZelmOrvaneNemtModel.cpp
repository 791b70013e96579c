#include "hardblocks/ZelmOrvaneNemtModel.h"

#include "framework/ZelmModelBlockImpl.h"
#include "hardblocks/ZelmHardBlockFormulas.h"

template class ZelmModelBlock<ZelmOrvaneNemtModel, ZelmOrvaneNemtParams, ZelmOrvaneNemtData>;

namespace {

using Model = ZelmOrvaneNemtModel;

// The one group of NEMT_DATA.
float dynamicItem(const ZelmOrvaneNemtData& data, std::string_view item)
{
    return data.findNemtData("DYNAMIC", item);
}

} // namespace

// What the cores compute: the kernel's name, what a core then draws, and the cell of the tiles' power.
struct Model::Kernel {
    std::string_view type;
    std::string_view coreItem;
    Params::FloatEnum cell;
};

const Model::Kernel Model::kInt16{"Int16", "NEMT_INT_CORE_POWER_16BIT", Params::NEMT_TILE_16_BIT};
const Model::Kernel Model::kInt8{"Int8", "NEMT_INT_CORE_POWER_8BIT", Params::NEMT_TILE_8_BIT};
const Model::Kernel Model::kFloating{"Floating", "NEMT_FP_CORE_POWER", Params::NEMT_TILE_FLOAT};
// Kept: complex kernels draw what 16-bit kernels draw.
const Model::Kernel Model::kComplex{"Complex", "NEMT_INT_CORE_POWER_16BIT", Params::NEMT_TILE_CPLX_BIT};

#define ZELM_MODEL ZelmOrvaneNemtModel
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneNemtCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneNemtModel::pullOutputs(Params& params, const Data& data) const
{
    calculateVoltageScaling(params, data);
    calculateTotalPower(params, data);
    calculateNemtVccintPower(params, data);
    calculateNemtVccauxPower(params, data);
    calculateNemtCoreMemPower(params, data);
    calculateNemtCorePower(params, data);
    calculateNemtMemPower(params, data);
    calculateNemtShimPower(params, data);
    calculateNemtPlShimPower(params, data);
    calculateNemtNocShimPower(params, data);
}

// Eight memory banks make a tile, and a tile may serve for its memory alone.
int ZelmOrvaneNemtModel::tilesInUse(Params& params, const Data& data) const
{
    const float cores = static_cast<float>(getNemtCores(params, data));
    const float banks = static_cast<float>(getNumMemoryBanks(params, data));
    return zelm::truncate(ZelmHelperUtils::MAX(cores, banks * 0.125f));
}

float ZelmOrvaneNemtModel::calculateVoltageScaling(Params& params, const Data& data) const
{
    return once(params[Params::VOLTAGE_SCALING], [&] {
        const float vccint = getVccint(params, data);
        const float reference = data.findSimConditions("PSIM_VOLTAGE");
        return reference > 0.0f ? zelm::voltageFactor(vccint, reference, zelm::powerOverVoltage) : 0.0;
    });
}

float ZelmOrvaneNemtModel::tilePower(const Kernel& kernel, Params& params, const Data& data) const
{
    return once(params[kernel.cell], [&] {
        const float load = getCoreLoad(params, data);
        const float core = dynamicItem(data, kernel.coreItem);
        const float idle = dynamicItem(data, "NEMT_TILE_IDLE_POWER");
        const float scalar = dynamicItem(data, "NEMT_TILE_SCALAR_POWER");
        const float cores = static_cast<float>(getNemtCores(params, data));
        const float clkFreq = getClkFreq(params, data);
        const float power = (load * core + (idle + scalar)) * (cores * clkFreq);
        return viewKernelType(params, data) == kernel.type ? power : 0.0f;
    });
}

// Kept: FFT kernels carry no idle and no scalar power, unlike all others.
float ZelmOrvaneNemtModel::calculateNemtTileFft(Params& params, const Data& data) const
{
    return once(params[Params::NEMT_TILE_FFT], [&] {
        const float cores = static_cast<float>(getNemtCores(params, data));
        const float clkFreq = getClkFreq(params, data);
        const float load = getCoreLoad(params, data);
        const float core = dynamicItem(data, "NEMT_FFT_CORE_POWER");
        return viewKernelType(params, data) == "FFT" ? cores * clkFreq * load * core : 0.0f;
    });
}

float ZelmOrvaneNemtModel::calculateNemtTilePower(Params& params, const Data& data) const
{
    return once(params[Params::NEMT_TILE_POWER], [&] {
        const float int16 = calculateNemtTile16Bit(params, data);
        const float int8 = calculateNemtTile8Bit(params, data);
        const float floating = calculateNemtTileFloat(params, data);
        const float fft = calculateNemtTileFft(params, data);
        const float complex = calculateNemtTileCplxBit(params, data);
        const float scaling = calculateVoltageScaling(params, data);
        return (int16 + int8 + floating + fft + complex) * scaling;
    });
}

float ZelmOrvaneNemtModel::calculateNemtIdlePower(Params& params, const Data& data) const
{
    return once(params[Params::NEMT_IDLE_POWER], [&] {
        const int tiles = getNemtTiles(params, data);
        const int cores = getNemtCores(params, data);
        const float clkFreq = getClkFreq(params, data);
        const float idle = dynamicItem(data, "NEMT_TILE_IDLE_POWER");
        const float scaling = calculateVoltageScaling(params, data);
        const float idleTiles = static_cast<float>(zelm::wrapSubtract(tiles, cores));
        return (tiles > cores ? idleTiles * clkFreq * idle : 0.0f) * scaling;
    });
}

float ZelmOrvaneNemtModel::trafficPower(int partCount, float load, std::string_view item, Params& params,
                                        const Data& data) const
{
    const float clkFreq = getClkFreq(params, data);
    const float parts = static_cast<float>(partCount);
    const float part = dynamicItem(data, item);
    const float scaling = calculateVoltageScaling(params, data);
    return clkFreq * parts * load * part * scaling;
}

float ZelmOrvaneNemtModel::calculateNemtMemoryPower(Params& params, const Data& data) const
{
    return once(params[Params::NEMT_MEMORY_POWER], [&] {
        const int banks = getNumMemoryBanks(params, data);
        const float rate = getMemoryReadWriteRate(params, data);
        return trafficPower(banks, rate, "NEMT_MEMORY_POWER", params, data);
    });
}

float ZelmOrvaneNemtModel::calculateNemtInterconnectStreamPower(Params& params, const Data& data) const
{
    return once(params[Params::NEMT_INTERCONNECT_STREAM_POWER], [&] {
        const int tiles = getNemtTiles(params, data);
        const float load = getInterconnectLoad(params, data);
        return trafficPower(tiles, load, "STREAM_INTERCONNECT_POWER", params, data);
    });
}

float ZelmOrvaneNemtModel::calculateNemtPllVccintPower(Params& params, const Data& data) const
{
    return once(params[Params::NEMT_PLL_VCCINT_POWER], [&] {
        const float pll = dynamicItem(data, "PLL_POWER_VCCINT");
        const float scaling = calculateVoltageScaling(params, data);
        return pll * scaling;
    });
}

float ZelmOrvaneNemtModel::calculateNemtPllVccauxPower(Params& params, const Data& data) const
{
    return once(params[Params::NEMT_PLL_VCCAUX_POWER], [&] {
        const int cores = getNemtCores(params, data);
        const float pll = dynamicItem(data, "PLL_POWER_VCCAUX");
        return cores >= 1 ? pll : 0.0f;
    });
}

float ZelmOrvaneNemtModel::shimStreamPower(int streamCount, std::string_view item, Params& params,
                                           const Data& data) const
{
    const float streams = static_cast<float>(streamCount);
    const float clkFreq = getClkFreq(params, data);
    const float stream = dynamicItem(data, item);
    const float scaling = calculateVoltageScaling(params, data);
    return streams * clkFreq * stream * scaling;
}

float ZelmOrvaneNemtModel::calculateNemtPlShimPower(Params& params, const Data& data) const
{
    return once(params[Params::NEMT_PL_SHIM_POWER], [&] {
        return shimStreamPower(getPlInterfaceStreams(params, data), "NEMT_PL_INTERFACE_POWER", params, data);
    });
}

float ZelmOrvaneNemtModel::calculateNemtNocShimPower(Params& params, const Data& data) const
{
    return once(params[Params::NEMT_NOC_SHIM_POWER], [&] {
        return shimStreamPower(getNocAximmsInterfaceStreams(params, data), "NEMT_NOC_INTERFACE_POWER", params, data);
    });
}

float ZelmOrvaneNemtModel::calculateNemtShimPower(Params& params, const Data& data) const
{
    return once(params[Params::NEMT_SHIM_POWER], [&] {
        const float fabric = calculateNemtPlShimPower(params, data);
        const float network = calculateNemtNocShimPower(params, data);
        return fabric + network;
    });
}

int ZelmOrvaneNemtModel::calculateBColumnFactor(Params& params, const Data& data) const
{
    return once(params[Params::B_COLUMN_FACTOR],
                [&] { return data.findShimData(viewInternalDeviceName(params, data), "SHIM_B"); });
}

float ZelmOrvaneNemtModel::calculateNemtShimPowerTop(Params& params, const Data& data) const
{
    return once(params[Params::NEMT_SHIM_POWER_TOP], [&] {
        const float clkFreq = getClkFreq(params, data);
        const float columnsB = static_cast<float>(calculateBColumnFactor(params, data));
        const float columnB = dynamicItem(data, "NEMT_SHIM_TOP_POWER_B");
        const float shimC = dynamicItem(data, "NEMT_SHIM_C_POWER");
        const float topC = dynamicItem(data, "NEMT_SHIM_TOP_POWER_C");
        const float scaling = calculateVoltageScaling(params, data);
        // The shims were characterised at 1300 MHz.
        return clkFreq * (columnsB * columnB + (shimC + topC)) * scaling / 1300.0f;
    });
}

float ZelmOrvaneNemtModel::calculateNemtCorePower(Params& params, const Data& data) const
{
    return once(params[Params::NEMT_CORE_POWER], [&] {
        const int cores = getNemtCores(params, data);
        const float idle = calculateNemtIdlePower(params, data);
        const float tiles = calculateNemtTilePower(params, data);
        const float pll = calculateNemtPllVccintPower(params, data);
        return cores < 1 ? 0.0f : idle + (tiles + pll);
    });
}

float ZelmOrvaneNemtModel::calculateNemtMemPower(Params& params, const Data& data) const
{
    return once(params[Params::NEMT_MEM_POWER], [&] {
        const int cores = getNemtCores(params, data);
        const float shims = calculateNemtShimPower(params, data);
        const float memory = calculateNemtMemoryPower(params, data);
        const float streams = calculateNemtInterconnectStreamPower(params, data);
        const float pll = calculateNemtPllVccauxPower(params, data);
        const float shimTop = calculateNemtShimPowerTop(params, data);
        return cores < 1 ? 0.0f : shims + (memory + streams + pll + shimTop);
    });
}

float ZelmOrvaneNemtModel::calculateNemtCoreMemPower(Params& params, const Data& data) const
{
    return once(params[Params::NEMT_CORE_MEM_POWER], [&] {
        const float memory = calculateNemtMemPower(params, data);
        const float cores = calculateNemtCorePower(params, data);
        return memory + cores;
    });
}

float ZelmOrvaneNemtModel::calculateTotalPower(Params& params, const Data& data) const
{
    return once(params[Params::TOTAL_POWER], [&] { return calculateNemtCoreMemPower(params, data); });
}

float ZelmOrvaneNemtModel::calculateNemtVccauxPower(Params& params, const Data& data) const
{
    return once(params[Params::NEMT_VCCAUX_POWER], [&] { return calculateNemtPllVccauxPower(params, data); });
}

float ZelmOrvaneNemtModel::calculateNemtVccintPower(Params& params, const Data& data) const
{
    return once(params[Params::NEMT_VCCINT_POWER], [&] {
        const float total = calculateNemtCoreMemPower(params, data);
        const float vccaux = calculateNemtVccauxPower(params, data);
        return total - vccaux;
    });
}

// What a die offers, for the host to stay within: no formula reads these two.

int ZelmOrvaneNemtModel::calculatePlStreams(Params& params, const Data& data) const
{
    return once(params[Params::PL_STREAMS],
                [&] { return data.findNemtStreams(viewInternalDeviceName(params, data), "PL_STREAMS"); });
}

int ZelmOrvaneNemtModel::calculateNocStreams(Params& params, const Data& data) const
{
    return once(params[Params::NOC_STREAMS],
                [&] { return data.findNemtStreams(viewInternalDeviceName(params, data), "NOC_STREAMS"); });
}
