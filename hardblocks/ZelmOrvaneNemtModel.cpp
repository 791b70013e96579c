#include "hardblocks/ZelmOrvaneNemtModel.h"

#include "framework/ZelmModelBlockImpl.h"
#include "hardblocks/ZelmHardBlockSheet.h"

#define ZELM_MODEL ZelmOrvaneNemtModel
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneNemtCells.def"
#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvaneNemtTables.def"

namespace {

using Params = ZelmOrvaneNemtParams;
using zelm::Key;

// What the cores compute: the kernel's name, and what a core then draws.
struct Kernel {
    std::string_view type;
    Key coreItem;
    Params::FloatEnum tilePower;
};

constexpr Kernel kInt16{"Int16", "NEMT_INT_CORE_POWER_16BIT", Params::NEMT_TILE_16_BIT};
constexpr Kernel kInt8{"Int8", "NEMT_INT_CORE_POWER_8BIT", Params::NEMT_TILE_8_BIT};
constexpr Kernel kFloating{"Floating", "NEMT_FP_CORE_POWER", Params::NEMT_TILE_FLOAT};
// Kept: complex kernels draw what 16-bit kernels draw.
constexpr Kernel kComplex{"Complex", "NEMT_INT_CORE_POWER_16BIT", Params::NEMT_TILE_CPLX_BIT};

} // namespace

struct ZelmOrvaneNemtModel::Sheet : zelm::Sheet<ZelmOrvaneNemtModel> {
#include "framework/ZelmAccessors.inc"

    void pullOutputs() const
    {
        VoltageScaling();
        TotalPower();
        NemtVccintPower();
        NemtVccauxPower();
        NemtCoreMemPower();
        NemtCorePower();
        NemtMemPower();
        NemtShimPower();
        NemtPlShimPower();
        NemtNocShimPower();
    }

    // The one group of NEMT_DATA.
    float dynamicItem(const Key& item) const
    {
        return findNemtData("DYNAMIC", item);
    }

    // Eight memory banks make a tile, and a tile may serve for its memory alone.
    int tilesInUse() const
    {
        const float cores = static_cast<float>(NemtCores());
        const float banks = static_cast<float>(NumMemoryBanks());
        return zelm::truncate(MAX(cores, banks * 0.125f));
    }

    double computeVoltageScaling() const
    {
        const float vccint = Vccint();
        const float reference = findSimConditions("PSIM_VOLTAGE");
        return reference > 0.0f ? zelm::voltageFactor(vccint, reference, zelm::powerOverVoltage) : 0.0;
    }

    float tilePower(const Kernel& kernel) const
    {
        const float load = CoreLoad();
        const float core = dynamicItem(kernel.coreItem);
        const float idle = dynamicItem("NEMT_TILE_IDLE_POWER");
        const float scalar = dynamicItem("NEMT_TILE_SCALAR_POWER");
        const float cores = static_cast<float>(NemtCores());
        const float clkFreq = ClkFreq();
        const float power = (load * core + (idle + scalar)) * (cores * clkFreq);
        return KernelType() == kernel.type ? power : 0.0f;
    }

    // Kept: FFT kernels carry no idle and no scalar power, unlike all others.
    float computeNemtTileFft() const
    {
        const float cores = static_cast<float>(NemtCores());
        const float clkFreq = ClkFreq();
        const float load = CoreLoad();
        const float core = dynamicItem("NEMT_FFT_CORE_POWER");
        return KernelType() == "FFT" ? cores * clkFreq * load * core : 0.0f;
    }

    float computeNemtTilePower() const
    {
        const float int16 = NemtTile16Bit();
        const float int8 = NemtTile8Bit();
        const float floating = NemtTileFloat();
        const float fft = NemtTileFft();
        const float complex = NemtTileCplxBit();
        const float scaling = VoltageScaling();
        return (int16 + int8 + floating + fft + complex) * scaling;
    }

    float computeNemtIdlePower() const
    {
        const int tiles = NemtTiles();
        const int cores = NemtCores();
        const float clkFreq = ClkFreq();
        const float idle = dynamicItem("NEMT_TILE_IDLE_POWER");
        const float scaling = VoltageScaling();
        const float idleTiles = static_cast<float>(zelm::wrapSubtract(tiles, cores));
        return (tiles > cores ? idleTiles * clkFreq * idle : 0.0f) * scaling;
    }

    float trafficPower(int partCount, float load, const Key& item) const
    {
        const float clkFreq = ClkFreq();
        const float parts = static_cast<float>(partCount);
        const float part = dynamicItem(item);
        const float scaling = VoltageScaling();
        return clkFreq * parts * load * part * scaling;
    }

    float computeNemtMemoryPower() const
    {
        const int banks = NumMemoryBanks();
        const float rate = MemoryReadWriteRate();
        return trafficPower(banks, rate, "NEMT_MEMORY_POWER");
    }

    float computeNemtInterconnectStreamPower() const
    {
        const int tiles = NemtTiles();
        const float load = InterconnectLoad();
        return trafficPower(tiles, load, "STREAM_INTERCONNECT_POWER");
    }

    float computeNemtPllVccintPower() const
    {
        const float pll = dynamicItem("PLL_POWER_VCCINT");
        const float scaling = VoltageScaling();
        return pll * scaling;
    }

    float computeNemtPllVccauxPower() const
    {
        const int cores = NemtCores();
        const float pll = dynamicItem("PLL_POWER_VCCAUX");
        return cores >= 1 ? pll : 0.0f;
    }

    float shimStreamPower(int streamCount, const Key& item) const
    {
        const float streams = static_cast<float>(streamCount);
        const float clkFreq = ClkFreq();
        const float stream = dynamicItem(item);
        const float scaling = VoltageScaling();
        return streams * clkFreq * stream * scaling;
    }

    float computeNemtPlShimPower() const
    {
        return shimStreamPower(PlInterfaceStreams(), "NEMT_PL_INTERFACE_POWER");
    }

    float computeNemtNocShimPower() const
    {
        return shimStreamPower(NocAximmsInterfaceStreams(), "NEMT_NOC_INTERFACE_POWER");
    }

    float computeNemtShimPower() const
    {
        const float fabric = NemtPlShimPower();
        const float network = NemtNocShimPower();
        return fabric + network;
    }

    int computeBColumnFactor() const
    {
        return findShimData(InternalDeviceName(), "SHIM_B");
    }

    float computeNemtShimPowerTop() const
    {
        const float clkFreq = ClkFreq();
        const float columnsB = static_cast<float>(BColumnFactor());
        const float columnB = dynamicItem("NEMT_SHIM_TOP_POWER_B");
        const float shimC = dynamicItem("NEMT_SHIM_C_POWER");
        const float topC = dynamicItem("NEMT_SHIM_TOP_POWER_C");
        const float scaling = VoltageScaling();
        // The shims were characterised at 1300 MHz.
        return clkFreq * (columnsB * columnB + (shimC + topC)) * scaling / 1300.0f;
    }

    float computeNemtCorePower() const
    {
        const int cores = NemtCores();
        const float idle = NemtIdlePower();
        const float tiles = NemtTilePower();
        const float pll = NemtPllVccintPower();
        return cores < 1 ? 0.0f : idle + (tiles + pll);
    }

    float computeNemtMemPower() const
    {
        const int cores = NemtCores();
        const float shims = NemtShimPower();
        const float memory = NemtMemoryPower();
        const float streams = NemtInterconnectStreamPower();
        const float pll = NemtPllVccauxPower();
        const float shimTop = NemtShimPowerTop();
        return cores < 1 ? 0.0f : shims + (memory + streams + pll + shimTop);
    }

    float computeNemtCoreMemPower() const
    {
        const float memory = NemtMemPower();
        const float cores = NemtCorePower();
        return memory + cores;
    }

    float computeTotalPower() const
    {
        return NemtCoreMemPower();
    }

    float computeNemtVccauxPower() const
    {
        return NemtPllVccauxPower();
    }

    float computeNemtVccintPower() const
    {
        const float total = NemtCoreMemPower();
        const float vccaux = NemtVccauxPower();
        return total - vccaux;
    }

    // What a die offers, for the host to stay within: no formula reads these two.

    int computePlStreams() const
    {
        return findNemtStreams(InternalDeviceName(), "PL_STREAMS");
    }

    int computeNocStreams() const
    {
        return findNemtStreams(InternalDeviceName(), "NOC_STREAMS");
    }
};

#include "framework/ZelmModelBodies.inc"
