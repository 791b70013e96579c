#include "processing/ZelmOrvaneYondModel.h"

#include "framework/ZelmModelBlockImpl.h"
#include "processing/ZelmProcessingSheet.h"

#include <optional>

#define ZELM_MODEL ZelmOrvaneYondModel
#define ZELM_CELL_ROWS "processing/ZelmOrvaneYondCells.def"
#define ZELM_TABLE_ROWS "processing/ZelmOrvaneYondTables.def"

namespace {

using Params = ZelmOrvaneYondParams;
using zelm::Key;
using Sum = zelm::SumRow<Params>;
using Supply = zelm::SupplyRow<Params>;

constexpr std::string_view kDisabled = "DISABLED";

bool isGated(int flag)
{
    return flag == 1;
}

// The power that goes with a bank's voltage.
float atVoltage(float voltage, float at18, float at25, float at33)
{
    if (voltage == 2.5f)
        return at25;
    // No float equals the double 1.8, so a setting of 1.8 takes the 3.3 V power: results match the workbook.
    if (static_cast<double>(voltage) != 1.8)
        return at33;
    return at18;
}

// Logic behind a clock tree; an item without a gate always runs.
struct ClockedItem {
    Params::FloatEnum clocked;
    Key clockKey, dynamicKey;
    Params::FloatEnum frequency, load;
    std::optional<Params::IntEnum> gated;
    Params::FloatEnum scaling;
};

struct Controller {
    Params::FloatEnum controller;
    Params::FloatEnum frequency, load;
    Params::IntEnum gated;
};

struct Memory {
    Params::FloatEnum memory;
    Key dynamicKey;
    Params::FloatEnum frequency, load;
    Params::IntEnum cores;
};

struct Pll {
    Params::FloatEnum pllAux;
    Params::FloatEnum frequency;
    Params::IntEnum on;
};

// An I/O group in the bank's distribution.
struct Bank {
    Key key;
    Params::IntEnum bidis, inputs, outputs;
    Params::FloatEnum bias;
};

// What a bank's voltage sets: the pad tables and the low-speed pads' power.
struct BankSupply {
    Params::FloatEnum lowSpeedMio;
    Key receiveKey, gemTransmitKey, lowSpeedTransmitKey, loadScaleKey, staticKey;
};

struct GemPads {
    const Bank& bank;
    Params::FloatEnum frequency;
    Params::StringEnum mode;
    Params::FloatEnum core, vccint, mio18, mio25, mio33;
};

constexpr Supply kVccpsfp{Params::VCCPSFP_VOLTAGE_SCALING, Params::VCCPSFP};
constexpr Supply kVccpslp{Params::VCCPSLP_VOLTAGE_SCALING, Params::VCCPSLP};

// The cluster's gate flag has no effect: results match the workbook.
constexpr ClockedItem kApu{.clocked = Params::APU_DYNAMIC_POWER,
                           .clockKey = "APU_CLOCK",
                           .dynamicKey = "APU_DYNAMIC",
                           .frequency = Params::APU_CLK_FREQ,
                           .load = Params::APU_LOAD,
                           .gated = {},
                           .scaling = Params::VCCPSFP_VOLTAGE_SCALING};
constexpr ClockedItem kFpInterconnect{.clocked = Params::FP_INTERCONNECT_DYNAMIC_POWER,
                                      .clockKey = "FP_INTERCONNECT_CLOCK",
                                      .dynamicKey = "FP_INTERCONNECT_DYNAMIC",
                                      .frequency = Params::FP_INTERCONNECT_CLK_FREQ,
                                      .load = Params::FP_INTERCONNECT_LOAD,
                                      .gated = Params::FP_INTERCONNECT_CLOCK_GATED,
                                      .scaling = Params::VCCPSFP_VOLTAGE_SCALING};
constexpr ClockedItem kCci{.clocked = Params::CCI_DYNAMIC_POWER,
                           .clockKey = "CCI_CLOCK",
                           .dynamicKey = "CCI_DYNAMIC",
                           .frequency = Params::CCI_CLK_FREQ,
                           .load = Params::CCI_LOAD,
                           .gated = Params::CCI_CLOCK_GATED,
                           .scaling = Params::VCCPSFP_VOLTAGE_SCALING};
constexpr ClockedItem kLpdIou{.clocked = Params::LPD_IOU_DYNAMIC_POWER,
                              .clockKey = "LPD_IOU_CLOCK",
                              .dynamicKey = "LPD_IOU_DYNAMIC",
                              .frequency = Params::LPD_IOU_CLK_FREQ,
                              .load = Params::LPD_IOU_LOAD,
                              .gated = Params::LPD_IOU_CLOCK_GATED,
                              .scaling = Params::VCCPSLP_VOLTAGE_SCALING};
constexpr ClockedItem kLpInterconnect{.clocked = Params::LP_INTERCONNECT_DYNAMIC_POWER,
                                      .clockKey = "LP_INTERCONNECT_CLOCK",
                                      .dynamicKey = "LP_INTERCONNECT_DYNAMIC",
                                      .frequency = Params::LP_INTERCONNECT_CLK_FREQ,
                                      .load = Params::LP_INTERCONNECT_LOAD,
                                      .gated = Params::LP_INTERCONNECT_CLOCK_GATED,
                                      .scaling = Params::VCCPSLP_VOLTAGE_SCALING};

constexpr Controller kGem0{.controller = Params::GEM0_DYNAMIC_POWER,
                           .frequency = Params::GEM0_CLK_FREQ,
                           .load = Params::GEM0_LOAD,
                           .gated = Params::GEM0_CLOCK_GATED};
constexpr Controller kGem1{.controller = Params::GEM1_DYNAMIC_POWER,
                           .frequency = Params::GEM1_CLK_FREQ,
                           .load = Params::GEM1_LOAD,
                           .gated = Params::GEM1_CLOCK_GATED};

// The memories have gate flags that nothing reads: results match the workbook.
constexpr Memory kOcm{.memory = Params::OCM_MEMORY_DYNAMIC_POWER,
                      .dynamicKey = "OCM_MEMORY_DYNAMIC",
                      .frequency = Params::OCM_MEMORY_CLK_FREQ,
                      .load = Params::OCM_MEMORY_LOAD,
                      .cores = Params::OCM_MEMORY_CORES};
constexpr Memory kTcm{.memory = Params::TCM_MEMORY_DYNAMIC_POWER,
                      .dynamicKey = "TCM_MEMORY_DYNAMIC",
                      .frequency = Params::TCM_MEMORY_CLK_FREQ,
                      .load = Params::TCM_MEMORY_LOAD,
                      .cores = Params::TCM_MEMORY_CORES};

constexpr Pll kFpdPll{.pllAux = Params::FPD_PLL_DYNAMIC_VCCAUX_POWER,
                      .frequency = Params::FPD_PLL_CLK_FREQ,
                      .on = Params::FPD_PLL_ON_OFF};
constexpr Pll kLpdPll{.pllAux = Params::LPD_PLL_VCCAUX_DYNAMIC_POWER,
                      .frequency = Params::LPD_PLL_CLK_FREQ,
                      .on = Params::LPD_PLL_ON_OFF};

constexpr Bank kGem0Bank{.key = "LPD_GEM0",
                         .bidis = Params::GEM0_BIDIS,
                         .inputs = Params::GEM0_INPUTS,
                         .outputs = Params::GEM0_OUTPUTS,
                         .bias = Params::GEM0_BIAS};
constexpr Bank kGem1Bank{.key = "LPD_GEM1",
                         .bidis = Params::GEM1_BIDIS,
                         .inputs = Params::GEM1_INPUTS,
                         .outputs = Params::GEM1_OUTPUTS,
                         .bias = Params::GEM1_BIAS};
constexpr Bank kLowSpeedBank{.key = "LPD_IOU_BANK1",
                             .bidis = Params::LPD_IOU_BANK1_BIDIS,
                             .inputs = Params::LPD_IOU_BANK1_INPUTS,
                             .outputs = Params::LPD_IOU_BANK1_OUTPUTS,
                             .bias = Params::LPD_IOU_BANK1_BIAS};

constexpr GemPads kGem0Pads{.bank = kGem0Bank,
                            .frequency = Params::GEM0_CLK_FREQ,
                            .mode = Params::LPD_GEM0_MODE,
                            .core = Params::LPD_GEM0_CORE_POWER,
                            .vccint = Params::LPD_GEM0_DYNAMIC_VCCINT_POWER,
                            .mio18 = Params::LPD_GEM0_MIO_18_POWER,
                            .mio25 = Params::LPD_GEM0_MIO_25_POWER,
                            .mio33 = Params::LPD_GEM0_MIO_33_POWER};
constexpr GemPads kGem1Pads{.bank = kGem1Bank,
                            .frequency = Params::GEM1_CLK_FREQ,
                            .mode = Params::LPD_GEM1_MODE,
                            .core = Params::LPD_GEM1_CORE_POWER,
                            .vccint = Params::LPD_GEM1_DYNAMIC_VCCINT_POWER,
                            .mio18 = Params::LPD_GEM1_MIO_18_POWER,
                            .mio25 = Params::LPD_GEM1_MIO_25_POWER,
                            .mio33 = Params::LPD_GEM1_MIO_33_POWER};

// At 1.8 V the GEMs' 4 mA transmitters take the 12 mA load factor: results match the workbook.
constexpr BankSupply kAt18{.lowSpeedMio = Params::LPD_LOW_PER_IO_DYNAMIC_MIO_18_POWER,
                           .receiveKey = "MIO_IOB_VCCO_HARLIO_1V8_RX_DYNAMIC",
                           .gemTransmitKey = "MIO_IOB_VCCO_HARLIO_1V8_TX_4MA_F_DYNAMIC",
                           .lowSpeedTransmitKey = "MIO_IOB_VCCO_HARLIO_1V8_TX_12MA_F_DYNAMIC",
                           .loadScaleKey = "MIO_IOB_1V8_TX_12MA_CLOAD_SCALE_FACTOR",
                           .staticKey = "MIO_IOB_VCCO_HARLIO_1V8_STATIC"};
constexpr BankSupply kAt25{.lowSpeedMio = Params::LPD_LOW_PER_IO_DYNAMIC_MIO_25_POWER,
                           .receiveKey = "MIO_IOB_VCCO_HARLIO_2V5_RX_DYNAMIC",
                           .gemTransmitKey = "MIO_IOB_VCCO_HARLIO_2V5_TX_12MA_F_DYNAMIC",
                           .lowSpeedTransmitKey = "MIO_IOB_VCCO_HARLIO_2V5_TX_12MA_F_DYNAMIC",
                           .loadScaleKey = "MIO_IOB_2V5_TX_12MA_CLOAD_SCALE_FACTOR",
                           .staticKey = "MIO_IOB_VCCO_HARLIO_2V5_STATIC"};
constexpr BankSupply kAt33{.lowSpeedMio = Params::LPD_LOW_PER_IO_DYNAMIC_MIO_33_POWER,
                           .receiveKey = "MIO_IOB_VCCO_HARLIO_3V3_RX_DYNAMIC",
                           .gemTransmitKey = "MIO_IOB_VCCO_HARLIO_3V3_TX_12MA_F_DYNAMIC",
                           .lowSpeedTransmitKey = "MIO_IOB_VCCO_HARLIO_3V3_TX_12MA_F_DYNAMIC",
                           .loadScaleKey = "MIO_IOB_3V3_TX_12MA_CLOAD_SCALE_FACTOR",
                           .staticKey = "MIO_IOB_VCCO_HARLIO_3V3_STATIC"};

constexpr Sum kApuCpuPower{Params::APU_CPU_POWER, {Params::APU_DYNAMIC_POWER, Params::CPU_DYNAMIC_POWER}};
constexpr Sum kL2MemoryPower{Params::L2_MEMORY_POWER, {Params::L2_MEMORY_DYNAMIC_POWER}};
constexpr Sum kFpInterconnectPower{Params::FP_INTERCONNECT_POWER, {Params::FP_INTERCONNECT_DYNAMIC_POWER}};
constexpr Sum kCciPower{Params::CCI_POWER, {Params::CCI_DYNAMIC_POWER}};
constexpr Sum kFpdPllPower{Params::FPD_PLL_POWER,
                           {Params::FPD_PLL_DYNAMIC_VCCINT_POWER, Params::FPD_PLL_DYNAMIC_VCCAUX_POWER}};
constexpr Sum kIouPower{Params::IOU_WITHOUT_IO_POWER, {Params::LPD_IOU_DYNAMIC_POWER}};
constexpr Sum kGem0Power{Params::GEM0_POWER, {Params::GEM0_DYNAMIC_POWER}};
constexpr Sum kGem1Power{Params::GEM1_POWER, {Params::GEM1_DYNAMIC_POWER}};
constexpr Sum kUsb0Power{Params::USB0_POWER, {Params::USB0_DYNAMIC_POWER}};
constexpr Sum kLpInterconnectPower{Params::LP_INTECONNECT_POWER, {Params::LP_INTERCONNECT_DYNAMIC_POWER}};
constexpr Sum kDualR5Power{Params::DUAL_R5_POWER, {Params::DUAL_RP_DYNAMIC_POWER}};
constexpr Sum kOcmPower{Params::OCM_MEMORY_POWER, {Params::OCM_MEMORY_DYNAMIC_POWER}};
constexpr Sum kTcmPower{Params::TCM_MEMORY_POWER, {Params::TCM_MEMORY_DYNAMIC_POWER}};
constexpr Sum kLpdPllPower{Params::LPD_PLL_POWER,
                           {Params::LPD_PLL_VCCPSLP_DYNAMIC_POWER, Params::LPD_PLL_VCCAUX_DYNAMIC_POWER}};
constexpr Sum kLpdGem0Power{Params::LPD_GEM0_POWER,
                            {Params::LPD_GEM0_DYNAMIC_VCCINT_POWER, Params::LPD_GEM0_DYNAMIC_MIO_POWER}};
constexpr Sum kLpdGem1Power{Params::LPD_GEM1_POWER,
                            {Params::LPD_GEM1_DYNAMIC_VCCINT_POWER, Params::LPD_GEM1_DYNAMIC_MIO_POWER}};
constexpr Sum kLowSpeedPower{Params::LPD_LOW_PER_IOS_POWER,
                             {Params::LPD_LOW_PER_IO_DYNAMIC_VCCINT_POWER, Params::LPD_LOW_PER_IO_DYNAMIC_MIO_POWER}};

constexpr Sum kFpdTotal{Params::FPD_TOTAL_DYNAMIC_POWER,
                        {Params::APU_CPU_POWER, Params::L2_MEMORY_POWER, Params::FP_INTERCONNECT_POWER,
                         Params::CCI_POWER, Params::FPD_PLL_POWER}};
constexpr Sum kLpdTotal{Params::LPD_TOTAL_DYNAMIC_POWER,
                        {Params::IOU_WITHOUT_IO_POWER, Params::GEM0_POWER, Params::GEM1_POWER, Params::USB0_POWER,
                         Params::LP_INTECONNECT_POWER, Params::DUAL_R5_POWER, Params::OCM_MEMORY_POWER,
                         Params::TCM_MEMORY_POWER, Params::LPD_PLL_POWER, Params::LPD_GEM0_POWER,
                         Params::LPD_GEM1_POWER, Params::LPD_LOW_PER_IOS_POWER}};

} // namespace

struct ZelmOrvaneYondModel::Sheet : ZelmProcessingSheet<ZelmOrvaneYondModel> {
#include "framework/ZelmAccessors.inc"
    void pullOutputs() const
    {
        VccpsfpVoltageScaling();
        VccpslpVoltageScaling();
        FpdTotalDynamicPower();
        LpdTotalDynamicPower();

        ApuCpuPower();
        L2MemoryPower();
        FpInterconnectPower();
        CciPower();
        FpdPllPower();
        IouWithoutIoPower();
        Gem0Power();
        Gem1Power();
        Usb0Power();
        LpInteconnectPower();
        DualR5Power();
        OcmMemoryPower();
        TcmMemoryPower();
        LpdPllPower();
        LpdGem0Power();
        LpdGem1Power();
        LpdLowPerIosPower();

        ApuDynamicPower();
        CpuDynamicPower();
        L2MemoryDynamicPower();
        FpInterconnectDynamicPower();
        CciDynamicPower();
        FpdPllDynamicVccintPower();
        FpdPllDynamicVccauxPower();
        LpdIouDynamicPower();
        Gem0DynamicPower();
        Gem1DynamicPower();
        Usb0DynamicPower();
        LpInterconnectDynamicPower();
        DualRpDynamicPower();
        OcmMemoryDynamicPower();
        TcmMemoryDynamicPower();
        LpdPllVccpslpDynamicPower();
        LpdPllVccauxDynamicPower();
        LpdGem0DynamicVccintPower();
        LpdGem0DynamicMioPower();
        LpdGem1DynamicVccintPower();
        LpdGem1DynamicMioPower();
        LpdLowPerIoDynamicVccintPower();
        LpdLowPerIoDynamicMioPower();
    }

    float clocked(const ClockedItem& item) const
    {
        const float clock = findYondData(item.clockKey);
        const float dynamic = findYondData(item.dynamicKey);
        const float frequency = value(item.frequency);
        const float load = value(item.load);
        const bool gated = item.gated && isGated(value(*item.gated));
        const float scale = value(item.scaling);
        return gated ? 0.0f : zelm::clockedPower(clock, dynamic, frequency, load) * scale;
    }

    float computeCpuDynamicPower() const
    {
        const bool powerGated = isGated(CpuPowerGated());
        const float clock = findYondData("MAIA_CPU_CLOCK");
        const float dynamic = findYondData("MAIA_CPU_DYNAMIC");
        const float frequency = CpuClkFreq();
        const float load = CpuLoad();
        const float cores = static_cast<float>(CpuCores());
        const float scale = VccpsfpVoltageScaling();
        return powerGated ? 0.0f : zelm::clockedPower(clock, dynamic, frequency, load) * cores * scale;
    }

    float computeL2MemoryDynamicPower() const
    {
        const int on = L2MemoryOnOff();
        const bool powerGated = isGated(L2MemoryPowerGated());
        const bool clockGated = isGated(L2MemoryClockGated());
        const float frequency = L2MemoryClkFreq();
        const float dynamic = findYondData("L2_MEMORY_DYNAMIC");
        const float load = L2MemoryLoad();
        const float scale = VccpsfpVoltageScaling();
        return on == 0 || powerGated || clockGated ? 0.0f : frequency * dynamic * load * scale;
    }

    float controller(const Controller& gem) const
    {
        const float clock = findYondData("GEM_CLOCK");
        const float dynamic = findYondData("GEM_DYNAMIC");
        const float frequency = value(gem.frequency);
        const float load = value(gem.load);
        const bool gated = isGated(value(gem.gated));
        const float scale = VccpslpVoltageScaling();
        if (gated)
            return 0.0f;
        // An idle controller draws its clock's power, a busy one the logic's only: results match the workbook.
        return load == 0.0f ? clock * frequency * scale : frequency * dynamic * load * scale;
    }

    float computeUsb0DynamicPower() const
    {
        const float dynamic = findYondData("USB2_DYNAMIC");
        const float frequency = Usb0ClkFreq();
        const float load = Usb0Load();
        const int pads = Usb0Ios();
        const float scale = VccpslpVoltageScaling();
        return load == 0.0f || pads == 0 ? 0.0f : dynamic * frequency * load * scale;
    }

    float computeDualRpDynamicPower() const
    {
        const bool powerGated = isGated(DualR5PowerGated());
        const bool clockGated = isGated(DualR5ClockGated());
        const float clock = findYondData("RPU_TIEOFF_WRAPPER_CLOCK");
        const float dynamic = findYondData("RPU_TIEOFF_WRAPPER_DYNAMIC");
        const float frequency = DualR5ClkFreq();
        const float load = DualR5Load();
        const float cores = static_cast<float>(RpuCores());
        const float scale = VccpslpVoltageScaling();
        const float switching = load != 0.0f && !clockGated ? dynamic * 0.5f * frequency * load * cores : 0.0f;
        return powerGated ? 0.0f : (clock * frequency + switching) * scale;
    }

    float memory(const Memory& ram) const
    {
        const float frequency = value(ram.frequency);
        const float dynamic = findYondData(ram.dynamicKey);
        const float load = value(ram.load);
        const int cores = value(ram.cores);
        const float scale = VccpslpVoltageScaling();
        return cores == 0 ? 0.0f : frequency * dynamic * load * static_cast<float>(cores) * scale;
    }

    float pllPower(const Pll& pll, float at2160, float at4320) const
    {
        const float clock = value(pll.frequency);
        const int on = value(pll.on);
        return on != 0 ? zelm::pllPower(at2160, at4320, clock) : 0.0f;
    }

    float pllCore(const Pll& pll) const
    {
        const float at2160 = findYondData("PLL_DYNAMIC_POWER_2160MHZ_VCCINT");
        const float at4320 = findYondData("PLL_DYNAMIC_POWER_4320MHZ_VCCINT");
        return pllPower(pll, at2160, at4320);
    }

    float pllAux(const Pll& pll) const
    {
        const float at2160 = findYondData("PLL_DYNAMIC_POWER_2160MHZ_VCCAUX");
        const float at4320 = findYondData("PLL_DYNAMIC_POWER_4320MHZ_VCCAUX");
        return pllPower(pll, at2160, at4320);
    }

    double computeFpdPllDynamicVccintPower() const
    {
        const float power = pllCore(kFpdPll);
        const float vccpsfp = Vccpsfp();
        return zelm::pllCorePower(power, vccpsfp);
    }

    float computeLpdPllVccpslpDynamicPower() const
    {
        const float power = pllCore(kLpdPll);
        const float scale = VccpslpVoltageScaling();
        return power * scale;
    }

    int bidis(const Bank& bank) const
    {
        return findMioBankDistribution(bank.key, "BIDI");
    }

    int inputs(const Bank& bank) const
    {
        return findMioBankDistribution(bank.key, "INPUT");
    }

    int outputs(const Bank& bank) const
    {
        return findMioBankDistribution(bank.key, "OUTPUT");
    }

    float bias(const Bank& bank) const
    {
        return static_cast<float>(findMioBankDistribution(bank.key, "BIAS"));
    }

    float loadOf(const Bank& bank) const
    {
        return static_cast<float>(findMioBankDistribution(bank.key, "LOAD"));
    }

    float core(const GemPads& pads) const
    {
        const Key& mode = value(pads.mode);
        const float ins = static_cast<float>(value(pads.bank.inputs));
        const float outs = static_cast<float>(value(pads.bank.outputs));
        const float receive = findYondData("MIO_IOB_VCCINT_RX_DYNAMIC");
        const float transmit = findYondData("MIO_IOB_VCCINT_TX_DYNAMIC");
        const float frequency = value(pads.frequency);
        // Bidirectional pads count 0.0 times here, which still turns an infinite power into NaN, as in the workbook.
        return mode == kDisabled ? 0.0f : zelm::padPower(ins, outs, 0.0f, receive, transmit, frequency);
    }

    float vccint(const GemPads& pads) const
    {
        const Key& mode = value(pads.mode);
        const float corePower = value(pads.core);
        const float scale = VccpslpVoltageScaling();
        return mode == kDisabled ? 0.0f : corePower * scale;
    }

    float mio(const GemPads& pads, const BankSupply& supply) const
    {
        const float loadScale = findYondData(supply.loadScaleKey);
        const float factor = zelm::loadFactor(loadScale, loadOf(pads.bank));
        const float ins = static_cast<float>(value(pads.bank.inputs));
        const float outs = static_cast<float>(value(pads.bank.outputs));
        const float both = static_cast<float>(value(pads.bank.bidis));
        const float biases = value(pads.bank.bias);
        const float frequency = value(pads.frequency);
        const float receive = findYondData(supply.receiveKey);
        const float transmit = findYondData(supply.gemTransmitKey);
        const float still = findYondData(supply.staticKey);
        return ins * frequency * receive + outs * frequency * transmit * factor +
               both * frequency * (transmit * factor + receive) + biases * still;
    }

    float mio18(const GemPads& pads) const
    {
        return mio(pads, kAt18);
    }

    float mio25(const GemPads& pads) const
    {
        return mio(pads, kAt25);
    }

    float mio33(const GemPads& pads) const
    {
        return mio(pads, kAt33);
    }

    float computeLpdGem0DynamicMioPower() const
    {
        const Key& mode = LpdGem0Mode();
        const float load = LpdGem0Load();
        const float voltage = LpdMioGem0Voltage();
        const float at18 = LpdGem0Mio18Power();
        const float at25 = LpdGem0Mio25Power();
        const float at33 = LpdGem0Mio33Power();
        return mode == kDisabled ? 0.0f : load * atVoltage(voltage, at18, at25, at33);
    }

    float computeLpdGem1DynamicMioPower() const
    {
        const Key& mode = LpdGem1Mode();
        const float load = LpdGem1Load();
        const float voltage = LpdMioGem1Voltage();
        // Powers of the whole bank in place of GEM1's pad cells: results match the workbook.
        const float at18 = findYondData("LPD_GEM1_DYNAMIC_VCC_HARLIO_2_18");
        const float at25 = findYondData("LPD_GEM1_DYNAMIC_VCC_HARLIO_2_25");
        const float at33 = findYondData("LPD_GEM1_DYNAMIC_VCC_HARLIO_2_33");
        return mode == kDisabled ? 0.0f : load * atVoltage(voltage, at18, at25, at33);
    }

    float computeLpdLowPerIoDynamicMioCorePower() const
    {
        const float receive = findYondData("MIO_IOB_VCCINT_RX_DYNAMIC");
        const float transmit = findYondData("MIO_IOB_VCCINT_TX_DYNAMIC");
        const float frequency = LpdIouClkFreq();
        const float count = static_cast<float>(NumLpdIou());
        const float gem1 = LpdGem1CorePower();
        const float gem0 = LpdGem0CorePower();
        return (transmit + receive) * frequency * count - (gem1 + gem0);
    }

    float computeLpdLowPerIoDynamicVccintPower() const
    {
        const Key& mode = LpdLowPerIoMode();
        const float corePower = LpdLowPerIoDynamicMioCorePower();
        const float scale = VccpslpVoltageScaling();
        return mode == kDisabled ? 0.0f : corePower * scale;
    }

    float lowSpeedMio(const BankSupply& supply) const
    {
        const float loadScale = findYondData(supply.loadScaleKey);
        const float factor = zelm::loadFactor(loadScale, loadOf(kLowSpeedBank));
        const float frequency = LpdIouClkFreq();
        const float transmit = findYondData(supply.lowSpeedTransmitKey);
        const float receive = findYondData(supply.receiveKey);
        const float count = static_cast<float>(NumLpdIou());
        const float still = findYondData("MIO_IOB_VCCINT_STATIC");
        return frequency * (factor * transmit + receive) * count + still;
    }

    float computeLpdLowPerIoDynamicMioPower() const
    {
        const Key& mode = LpdLowPerIoMode();
        const float load = LpdLowPerIoLoad();
        const float voltage = LpdMioLowPerIoVoltage();
        const float at18 = LpdLowPerIoDynamicMio18Power();
        const float at25 = LpdLowPerIoDynamicMio25Power();
        const float at33 = LpdLowPerIoDynamicMio33Power();
        return mode == kDisabled ? 0.0f : load * atVoltage(voltage, at18, at25, at33);
    }
};

#include "framework/ZelmModelBodies.inc"
