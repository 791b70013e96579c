#include "processing/ZelmOrvaneYondModel.h"

#include "framework/ZelmModelBlockImpl.h"

template class ZelmModelBlock<ZelmOrvaneYondModel, ZelmOrvaneYondParams, ZelmOrvaneYondData>;

namespace {

using Model = ZelmOrvaneYondModel;
using FloatPull = zelm::Pull<Model>;
using IntPull = zelm::Pull<Model, int>;
using TextPull = zelm::Pull<Model, std::string_view>;

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

} // namespace

struct ZelmOrvaneYondModel::Rail {
    Params::FloatEnum cell;
    FloatPull voltage;
};

// Logic behind a clock tree; an item without a gate always runs.
struct ZelmOrvaneYondModel::ClockedItem {
    Params::FloatEnum cell;
    std::string_view clockKey, dynamicKey;
    FloatPull frequency, load;
    IntPull gated;
    FloatPull scaling;
};

struct ZelmOrvaneYondModel::Controller {
    Params::FloatEnum cell;
    FloatPull frequency, load;
    IntPull gated;
};

struct ZelmOrvaneYondModel::Memory {
    Params::FloatEnum cell;
    std::string_view dynamicKey;
    FloatPull frequency, load;
    IntPull cores;
};

struct ZelmOrvaneYondModel::Pll {
    Params::FloatEnum auxCell;
    FloatPull frequency;
    IntPull on;

    float power(const Model& model, Params& params, const Data& data, float at2160, float at4320) const
    {
        const float clock = (model.*frequency)(params, data);
        const int onOff = (model.*on)(params, data);
        return onOff != 0 ? zelm::pllPower(at2160, at4320, clock) : 0.0f;
    }
};

// An I/O group in the bank's distribution. The cells of its counts follow each other.
struct ZelmOrvaneYondModel::Bank {
    std::string_view key;
    Params::IntEnum firstCount;
    Params::FloatEnum biasCell;

    enum Count { bidisCount, inputsCount, outputsCount };
    int& cell(Params& params, Count count) const
    {
        return params[zelm::cellBehind(firstCount, count)];
    }
    float load(const Data& data) const
    {
        return static_cast<float>(data.findMioBankDistribution(key, "LOAD"));
    }
};

// What a bank's voltage sets: the pad tables, and the place of its cells behind a group's 1.8 V cell.
struct ZelmOrvaneYondModel::Supply {
    int place;
    std::string_view receiveKey, gemTransmitKey, lowSpeedTransmitKey, loadScaleKey, staticKey;
};

struct ZelmOrvaneYondModel::GemPads {
    const Bank& bank;
    FloatPull frequency;
    TextPull mode;
    Params::FloatEnum coreCell, vccintCell, firstMioCell;
};

struct ZelmOrvaneYondModel::Rows {
    using M = Model;

    static constexpr Rail vccpsfp{Params::VCCPSFP_VOLTAGE_SCALING, &M::getVccpsfp};
    static constexpr Rail vccpslp{Params::VCCPSLP_VOLTAGE_SCALING, &M::getVccpslp};

    // The cluster's gate flag has no effect: results match the workbook.
    static constexpr ClockedItem apu{.cell = Params::APU_DYNAMIC_POWER,
                                     .clockKey = "APU_CLOCK",
                                     .dynamicKey = "APU_DYNAMIC",
                                     .frequency = &M::getApuClkFreq,
                                     .load = &M::getApuLoad,
                                     .gated = nullptr,
                                     .scaling = &M::calculateVccpsfpVoltageScaling};
    static constexpr ClockedItem fpInterconnect{.cell = Params::FP_INTERCONNECT_DYNAMIC_POWER,
                                                .clockKey = "FP_INTERCONNECT_CLOCK",
                                                .dynamicKey = "FP_INTERCONNECT_DYNAMIC",
                                                .frequency = &M::getFpInterconnectClkFreq,
                                                .load = &M::getFpInterconnectLoad,
                                                .gated = &M::getFpInterconnectClockGated,
                                                .scaling = &M::calculateVccpsfpVoltageScaling};
    static constexpr ClockedItem cci{.cell = Params::CCI_DYNAMIC_POWER,
                                     .clockKey = "CCI_CLOCK",
                                     .dynamicKey = "CCI_DYNAMIC",
                                     .frequency = &M::getCciClkFreq,
                                     .load = &M::getCciLoad,
                                     .gated = &M::getCciClockGated,
                                     .scaling = &M::calculateVccpsfpVoltageScaling};
    static constexpr ClockedItem lpdIou{.cell = Params::LPD_IOU_DYNAMIC_POWER,
                                        .clockKey = "LPD_IOU_CLOCK",
                                        .dynamicKey = "LPD_IOU_DYNAMIC",
                                        .frequency = &M::getLpdIouClkFreq,
                                        .load = &M::getLpdIouLoad,
                                        .gated = &M::getLpdIouClockGated,
                                        .scaling = &M::calculateVccpslpVoltageScaling};
    static constexpr ClockedItem lpInterconnect{.cell = Params::LP_INTERCONNECT_DYNAMIC_POWER,
                                                .clockKey = "LP_INTERCONNECT_CLOCK",
                                                .dynamicKey = "LP_INTERCONNECT_DYNAMIC",
                                                .frequency = &M::getLpInterconnectClkFreq,
                                                .load = &M::getLpInterconnectLoad,
                                                .gated = &M::getLpInterconnectClockGated,
                                                .scaling = &M::calculateVccpslpVoltageScaling};

    static constexpr Controller gem0{.cell = Params::GEM0_DYNAMIC_POWER,
                                     .frequency = &M::getGem0ClkFreq,
                                     .load = &M::getGem0Load,
                                     .gated = &M::getGem0ClockGated};
    static constexpr Controller gem1{.cell = Params::GEM1_DYNAMIC_POWER,
                                     .frequency = &M::getGem1ClkFreq,
                                     .load = &M::getGem1Load,
                                     .gated = &M::getGem1ClockGated};

    // The memories have gate flags that nothing reads: results match the workbook.
    static constexpr Memory ocm{.cell = Params::OCM_MEMORY_DYNAMIC_POWER,
                                .dynamicKey = "OCM_MEMORY_DYNAMIC",
                                .frequency = &M::getOcmMemoryClkFreq,
                                .load = &M::getOcmMemoryLoad,
                                .cores = &M::getOcmMemoryCores};
    static constexpr Memory tcm{.cell = Params::TCM_MEMORY_DYNAMIC_POWER,
                                .dynamicKey = "TCM_MEMORY_DYNAMIC",
                                .frequency = &M::getTcmMemoryClkFreq,
                                .load = &M::getTcmMemoryLoad,
                                .cores = &M::getTcmMemoryCores};

    static constexpr Pll fpdPll{
        .auxCell = Params::FPD_PLL_DYNAMIC_VCCAUX_POWER, .frequency = &M::getFpdPllClkFreq, .on = &M::getFpdPllOnOff};
    static constexpr Pll lpdPll{
        .auxCell = Params::LPD_PLL_VCCAUX_DYNAMIC_POWER, .frequency = &M::getLpdPllClkFreq, .on = &M::getLpdPllOnOff};

    static constexpr Bank gem0Bank{"LPD_GEM0", Params::GEM0_BIDIS, Params::GEM0_BIAS};
    static constexpr Bank gem1Bank{"LPD_GEM1", Params::GEM1_BIDIS, Params::GEM1_BIAS};
    static constexpr Bank lowSpeedBank{"LPD_IOU_BANK1", Params::LPD_IOU_BANK1_BIDIS, Params::LPD_IOU_BANK1_BIAS};

    static constexpr GemPads gem0Pads{.bank = gem0Bank,
                                      .frequency = &M::getGem0ClkFreq,
                                      .mode = &M::viewLpdGem0Mode,
                                      .coreCell = Params::LPD_GEM0_CORE_POWER,
                                      .vccintCell = Params::LPD_GEM0_DYNAMIC_VCCINT_POWER,
                                      .firstMioCell = Params::LPD_GEM0_MIO_18_POWER};
    static constexpr GemPads gem1Pads{.bank = gem1Bank,
                                      .frequency = &M::getGem1ClkFreq,
                                      .mode = &M::viewLpdGem1Mode,
                                      .coreCell = Params::LPD_GEM1_CORE_POWER,
                                      .vccintCell = Params::LPD_GEM1_DYNAMIC_VCCINT_POWER,
                                      .firstMioCell = Params::LPD_GEM1_MIO_18_POWER};

    // At 1.8 V the GEMs' 4 mA transmitters take the 12 mA load factor: results match the workbook.
    static constexpr Supply at18{.place = 0,
                                 .receiveKey = "MIO_IOB_VCCO_HARLIO_1V8_RX_DYNAMIC",
                                 .gemTransmitKey = "MIO_IOB_VCCO_HARLIO_1V8_TX_4MA_F_DYNAMIC",
                                 .lowSpeedTransmitKey = "MIO_IOB_VCCO_HARLIO_1V8_TX_12MA_F_DYNAMIC",
                                 .loadScaleKey = "MIO_IOB_1V8_TX_12MA_CLOAD_SCALE_FACTOR",
                                 .staticKey = "MIO_IOB_VCCO_HARLIO_1V8_STATIC"};
    static constexpr Supply at25{.place = 1,
                                 .receiveKey = "MIO_IOB_VCCO_HARLIO_2V5_RX_DYNAMIC",
                                 .gemTransmitKey = "MIO_IOB_VCCO_HARLIO_2V5_TX_12MA_F_DYNAMIC",
                                 .lowSpeedTransmitKey = "MIO_IOB_VCCO_HARLIO_2V5_TX_12MA_F_DYNAMIC",
                                 .loadScaleKey = "MIO_IOB_2V5_TX_12MA_CLOAD_SCALE_FACTOR",
                                 .staticKey = "MIO_IOB_VCCO_HARLIO_2V5_STATIC"};
    static constexpr Supply at33{.place = 2,
                                 .receiveKey = "MIO_IOB_VCCO_HARLIO_3V3_RX_DYNAMIC",
                                 .gemTransmitKey = "MIO_IOB_VCCO_HARLIO_3V3_TX_12MA_F_DYNAMIC",
                                 .lowSpeedTransmitKey = "MIO_IOB_VCCO_HARLIO_3V3_TX_12MA_F_DYNAMIC",
                                 .loadScaleKey = "MIO_IOB_3V3_TX_12MA_CLOAD_SCALE_FACTOR",
                                 .staticKey = "MIO_IOB_VCCO_HARLIO_3V3_STATIC"};

    static constexpr Sum apuCpuPower{Params::APU_CPU_POWER,
                                     {&M::calculateApuDynamicPower, &M::calculateCpuDynamicPower}};
    static constexpr Sum l2MemoryPower{Params::L2_MEMORY_POWER, {&M::calculateL2MemoryDynamicPower}};
    static constexpr Sum fpInterconnectPower{Params::FP_INTERCONNECT_POWER, {&M::calculateFpInterconnectDynamicPower}};
    static constexpr Sum cciPower{Params::CCI_POWER, {&M::calculateCciDynamicPower}};
    static constexpr Sum fpdPllPower{Params::FPD_PLL_POWER,
                                     {&M::calculateFpdPllDynamicVccintPower, &M::calculateFpdPllDynamicVccauxPower}};
    static constexpr Sum iouPower{Params::IOU_WITHOUT_IO_POWER, {&M::calculateLpdIouDynamicPower}};
    static constexpr Sum gem0Power{Params::GEM0_POWER, {&M::calculateGem0DynamicPower}};
    static constexpr Sum gem1Power{Params::GEM1_POWER, {&M::calculateGem1DynamicPower}};
    static constexpr Sum usb0Power{Params::USB0_POWER, {&M::calculateUsb0DynamicPower}};
    static constexpr Sum lpInterconnectPower{Params::LP_INTECONNECT_POWER, {&M::calculateLpInterconnectDynamicPower}};
    static constexpr Sum dualR5Power{Params::DUAL_R5_POWER, {&M::calculateDualRpDynamicPower}};
    static constexpr Sum ocmPower{Params::OCM_MEMORY_POWER, {&M::calculateOcmMemoryDynamicPower}};
    static constexpr Sum tcmPower{Params::TCM_MEMORY_POWER, {&M::calculateTcmMemoryDynamicPower}};
    static constexpr Sum lpdPllPower{Params::LPD_PLL_POWER,
                                     {&M::calculateLpdPllVccpslpDynamicPower, &M::calculateLpdPllVccauxDynamicPower}};
    static constexpr Sum lpdGem0Power{Params::LPD_GEM0_POWER,
                                      {&M::calculateLpdGem0DynamicVccintPower, &M::calculateLpdGem0DynamicMioPower}};
    static constexpr Sum lpdGem1Power{Params::LPD_GEM1_POWER,
                                      {&M::calculateLpdGem1DynamicVccintPower, &M::calculateLpdGem1DynamicMioPower}};
    static constexpr Sum lowSpeedPower{
        Params::LPD_LOW_PER_IOS_POWER,
        {&M::calculateLpdLowPerIoDynamicVccintPower, &M::calculateLpdLowPerIoDynamicMioPower}};

    static constexpr Sum fpdTotal{Params::FPD_TOTAL_DYNAMIC_POWER,
                                  {&M::calculateApuCpuPower, &M::calculateL2MemoryPower,
                                   &M::calculateFpInterconnectPower, &M::calculateCciPower, &M::calculateFpdPllPower}};
    static constexpr Sum lpdTotal{Params::LPD_TOTAL_DYNAMIC_POWER,
                                  {&M::calculateIouWithoutIoPower, &M::calculateGem0Power, &M::calculateGem1Power,
                                   &M::calculateUsb0Power, &M::calculateLpInteconnectPower, &M::calculateDualR5Power,
                                   &M::calculateOcmMemoryPower, &M::calculateTcmMemoryPower, &M::calculateLpdPllPower,
                                   &M::calculateLpdGem0Power, &M::calculateLpdGem1Power,
                                   &M::calculateLpdLowPerIosPower}};
};

#define ZELM_MODEL ZelmOrvaneYondModel
#define ZELM_CELL_ROWS "processing/ZelmOrvaneYondCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneYondModel::pullOutputs(Params& params, const Data& data) const
{
    calculateVccpsfpVoltageScaling(params, data);
    calculateVccpslpVoltageScaling(params, data);
    calculateFpdTotalDynamicPower(params, data);
    calculateLpdTotalDynamicPower(params, data);

    calculateApuCpuPower(params, data);
    calculateL2MemoryPower(params, data);
    calculateFpInterconnectPower(params, data);
    calculateCciPower(params, data);
    calculateFpdPllPower(params, data);
    calculateIouWithoutIoPower(params, data);
    calculateGem0Power(params, data);
    calculateGem1Power(params, data);
    calculateUsb0Power(params, data);
    calculateLpInteconnectPower(params, data);
    calculateDualR5Power(params, data);
    calculateOcmMemoryPower(params, data);
    calculateTcmMemoryPower(params, data);
    calculateLpdPllPower(params, data);
    calculateLpdGem0Power(params, data);
    calculateLpdGem1Power(params, data);
    calculateLpdLowPerIosPower(params, data);

    calculateApuDynamicPower(params, data);
    calculateCpuDynamicPower(params, data);
    calculateL2MemoryDynamicPower(params, data);
    calculateFpInterconnectDynamicPower(params, data);
    calculateCciDynamicPower(params, data);
    calculateFpdPllDynamicVccintPower(params, data);
    calculateFpdPllDynamicVccauxPower(params, data);
    calculateLpdIouDynamicPower(params, data);
    calculateGem0DynamicPower(params, data);
    calculateGem1DynamicPower(params, data);
    calculateUsb0DynamicPower(params, data);
    calculateLpInterconnectDynamicPower(params, data);
    calculateDualRpDynamicPower(params, data);
    calculateOcmMemoryDynamicPower(params, data);
    calculateTcmMemoryDynamicPower(params, data);
    calculateLpdPllVccpslpDynamicPower(params, data);
    calculateLpdPllVccauxDynamicPower(params, data);
    calculateLpdGem0DynamicVccintPower(params, data);
    calculateLpdGem0DynamicMioPower(params, data);
    calculateLpdGem1DynamicVccintPower(params, data);
    calculateLpdGem1DynamicMioPower(params, data);
    calculateLpdLowPerIoDynamicVccintPower(params, data);
    calculateLpdLowPerIoDynamicMioPower(params, data);
}

float ZelmOrvaneYondModel::sum(const Sum& row, Params& params, const Data& data) const
{
    return once(params[row.cell], [&] { return row.add(*this, params, data); });
}

float ZelmOrvaneYondModel::scaling(const Rail& rail, Params& params, const Data& data) const
{
    return once(params[rail.cell], [&] {
        const float voltage = (this->*rail.voltage)(params, data);
        const float characterised = data.findSimConditions("PSIM_VOLTAGE");
        return zelm::voltageScaling(voltage, characterised);
    });
}

float ZelmOrvaneYondModel::clocked(const ClockedItem& item, Params& params, const Data& data) const
{
    return once(params[item.cell], [&] {
        const float clock = data.findYondData(item.clockKey);
        const float dynamic = data.findYondData(item.dynamicKey);
        const float frequency = (this->*item.frequency)(params, data);
        const float load = (this->*item.load)(params, data);
        const bool gated = item.gated && isGated((this->*item.gated)(params, data));
        const float scale = (this->*item.scaling)(params, data);
        return gated ? 0.0f : zelm::clockedPower(clock, dynamic, frequency, load) * scale;
    });
}

float ZelmOrvaneYondModel::calculateCpuDynamicPower(Params& params, const Data& data) const
{
    return once(params[Params::CPU_DYNAMIC_POWER], [&] {
        const bool powerGated = isGated(getCpuPowerGated(params, data));
        const float clock = data.findYondData("MAIA_CPU_CLOCK");
        const float dynamic = data.findYondData("MAIA_CPU_DYNAMIC");
        const float frequency = getCpuClkFreq(params, data);
        const float load = getCpuLoad(params, data);
        const float cores = static_cast<float>(getCpuCores(params, data));
        const float scale = calculateVccpsfpVoltageScaling(params, data);
        return powerGated ? 0.0f : zelm::clockedPower(clock, dynamic, frequency, load) * cores * scale;
    });
}

float ZelmOrvaneYondModel::calculateL2MemoryDynamicPower(Params& params, const Data& data) const
{
    return once(params[Params::L2_MEMORY_DYNAMIC_POWER], [&] {
        const int on = getL2MemoryOnOff(params, data);
        const bool powerGated = isGated(getL2MemoryPowerGated(params, data));
        const bool clockGated = isGated(getL2MemoryClockGated(params, data));
        const float frequency = getL2MemoryClkFreq(params, data);
        const float dynamic = data.findYondData("L2_MEMORY_DYNAMIC");
        const float load = getL2MemoryLoad(params, data);
        const float scale = calculateVccpsfpVoltageScaling(params, data);
        return on == 0 || powerGated || clockGated ? 0.0f : frequency * dynamic * load * scale;
    });
}

float ZelmOrvaneYondModel::controller(const Controller& gem, Params& params, const Data& data) const
{
    return once(params[gem.cell], [&] {
        const float clock = data.findYondData("GEM_CLOCK");
        const float dynamic = data.findYondData("GEM_DYNAMIC");
        const float frequency = (this->*gem.frequency)(params, data);
        const float load = (this->*gem.load)(params, data);
        const bool gated = isGated((this->*gem.gated)(params, data));
        const float scale = calculateVccpslpVoltageScaling(params, data);
        if (gated)
            return 0.0f;
        // An idle controller draws its clock's power, a busy one the logic's only: results match the workbook.
        return load == 0.0f ? clock * frequency * scale : frequency * dynamic * load * scale;
    });
}

float ZelmOrvaneYondModel::calculateUsb0DynamicPower(Params& params, const Data& data) const
{
    return once(params[Params::USB0_DYNAMIC_POWER], [&] {
        const float dynamic = data.findYondData("USB2_DYNAMIC");
        const float frequency = getUsb0ClkFreq(params, data);
        const float load = getUsb0Load(params, data);
        const int pads = getUsb0Ios(params, data);
        const float scale = calculateVccpslpVoltageScaling(params, data);
        return load == 0.0f || pads == 0 ? 0.0f : dynamic * frequency * load * scale;
    });
}

float ZelmOrvaneYondModel::calculateDualRpDynamicPower(Params& params, const Data& data) const
{
    return once(params[Params::DUAL_RP_DYNAMIC_POWER], [&] {
        const bool powerGated = isGated(getDualR5PowerGated(params, data));
        const bool clockGated = isGated(getDualR5ClockGated(params, data));
        const float clock = data.findYondData("RPU_TIEOFF_WRAPPER_CLOCK");
        const float dynamic = data.findYondData("RPU_TIEOFF_WRAPPER_DYNAMIC");
        const float frequency = getDualR5ClkFreq(params, data);
        const float load = getDualR5Load(params, data);
        const float cores = static_cast<float>(getRpuCores(params, data));
        const float scale = calculateVccpslpVoltageScaling(params, data);
        const float switching = load != 0.0f && !clockGated ? dynamic * 0.5f * frequency * load * cores : 0.0f;
        return powerGated ? 0.0f : (clock * frequency + switching) * scale;
    });
}

float ZelmOrvaneYondModel::memory(const Memory& ram, Params& params, const Data& data) const
{
    return once(params[ram.cell], [&] {
        const float frequency = (this->*ram.frequency)(params, data);
        const float dynamic = data.findYondData(ram.dynamicKey);
        const float load = (this->*ram.load)(params, data);
        const int cores = (this->*ram.cores)(params, data);
        const float scale = calculateVccpslpVoltageScaling(params, data);
        return cores == 0 ? 0.0f : frequency * dynamic * load * static_cast<float>(cores) * scale;
    });
}

float ZelmOrvaneYondModel::pllCore(const Pll& pll, Params& params, const Data& data) const
{
    const float at2160 = data.findYondData("PLL_DYNAMIC_POWER_2160MHZ_VCCINT");
    const float at4320 = data.findYondData("PLL_DYNAMIC_POWER_4320MHZ_VCCINT");
    return pll.power(*this, params, data, at2160, at4320);
}

float ZelmOrvaneYondModel::pllAux(const Pll& pll, Params& params, const Data& data) const
{
    return once(params[pll.auxCell], [&] {
        const float at2160 = data.findYondData("PLL_DYNAMIC_POWER_2160MHZ_VCCAUX");
        const float at4320 = data.findYondData("PLL_DYNAMIC_POWER_4320MHZ_VCCAUX");
        return pll.power(*this, params, data, at2160, at4320);
    });
}

float ZelmOrvaneYondModel::calculateFpdPllDynamicVccintPower(Params& params, const Data& data) const
{
    return once(params[Params::FPD_PLL_DYNAMIC_VCCINT_POWER], [&] {
        const float power = pllCore(Rows::fpdPll, params, data);
        const float vccpsfp = getVccpsfp(params, data);
        return zelm::pllCorePower(power, vccpsfp);
    });
}

float ZelmOrvaneYondModel::calculateLpdPllVccpslpDynamicPower(Params& params, const Data& data) const
{
    return once(params[Params::LPD_PLL_VCCPSLP_DYNAMIC_POWER], [&] {
        const float power = pllCore(Rows::lpdPll, params, data);
        const float scale = calculateVccpslpVoltageScaling(params, data);
        return power * scale;
    });
}

int ZelmOrvaneYondModel::bidis(const Bank& bank, Params& params, const Data& data) const
{
    return once(bank.cell(params, Bank::bidisCount), [&] { return data.findMioBankDistribution(bank.key, "BIDI"); });
}

int ZelmOrvaneYondModel::inputs(const Bank& bank, Params& params, const Data& data) const
{
    return once(bank.cell(params, Bank::inputsCount), [&] { return data.findMioBankDistribution(bank.key, "INPUT"); });
}

int ZelmOrvaneYondModel::outputs(const Bank& bank, Params& params, const Data& data) const
{
    return once(bank.cell(params, Bank::outputsCount),
                [&] { return data.findMioBankDistribution(bank.key, "OUTPUT"); });
}

float ZelmOrvaneYondModel::bias(const Bank& bank, Params& params, const Data& data) const
{
    return once(params[bank.biasCell],
                [&] { return static_cast<float>(data.findMioBankDistribution(bank.key, "BIAS")); });
}

float ZelmOrvaneYondModel::core(const GemPads& pads, Params& params, const Data& data) const
{
    return once(params[pads.coreCell], [&] {
        const std::string_view mode = (this->*pads.mode)(params, data);
        const float ins = static_cast<float>(inputs(pads.bank, params, data));
        const float outs = static_cast<float>(outputs(pads.bank, params, data));
        const float receive = data.findYondData("MIO_IOB_VCCINT_RX_DYNAMIC");
        const float transmit = data.findYondData("MIO_IOB_VCCINT_TX_DYNAMIC");
        const float frequency = (this->*pads.frequency)(params, data);
        // Bidirectional pads count 0.0 times here, which still turns an infinite power into NaN, as in the workbook.
        return mode == kDisabled ? 0.0f : zelm::padPower(ins, outs, 0.0f, receive, transmit, frequency);
    });
}

float ZelmOrvaneYondModel::vccint(const GemPads& pads, Params& params, const Data& data) const
{
    return once(params[pads.vccintCell], [&] {
        const std::string_view mode = (this->*pads.mode)(params, data);
        const float corePower = core(pads, params, data);
        const float scale = calculateVccpslpVoltageScaling(params, data);
        return mode == kDisabled ? 0.0f : corePower * scale;
    });
}

float ZelmOrvaneYondModel::mio(const GemPads& pads, const Supply& supply, Params& params, const Data& data) const
{
    return once(params[zelm::cellBehind(pads.firstMioCell, supply.place)], [&] {
        const float loadScale = data.findYondData(supply.loadScaleKey);
        const float factor = zelm::loadFactor(loadScale, pads.bank.load(data));
        const float ins = static_cast<float>(inputs(pads.bank, params, data));
        const float outs = static_cast<float>(outputs(pads.bank, params, data));
        const float both = static_cast<float>(bidis(pads.bank, params, data));
        const float biases = bias(pads.bank, params, data);
        const float frequency = (this->*pads.frequency)(params, data);
        const float receive = data.findYondData(supply.receiveKey);
        const float transmit = data.findYondData(supply.gemTransmitKey);
        const float still = data.findYondData(supply.staticKey);
        return ins * frequency * receive + outs * frequency * transmit * factor +
               both * frequency * (transmit * factor + receive) + biases * still;
    });
}

float ZelmOrvaneYondModel::mio18(const GemPads& pads, Params& params, const Data& data) const
{
    return mio(pads, Rows::at18, params, data);
}

float ZelmOrvaneYondModel::mio25(const GemPads& pads, Params& params, const Data& data) const
{
    return mio(pads, Rows::at25, params, data);
}

float ZelmOrvaneYondModel::mio33(const GemPads& pads, Params& params, const Data& data) const
{
    return mio(pads, Rows::at33, params, data);
}

float ZelmOrvaneYondModel::calculateLpdGem0DynamicMioPower(Params& params, const Data& data) const
{
    return once(params[Params::LPD_GEM0_DYNAMIC_MIO_POWER], [&] {
        const std::string_view mode = viewLpdGem0Mode(params, data);
        const float load = getLpdGem0Load(params, data);
        const float voltage = getLpdMioGem0Voltage(params, data);
        const float at18 = calculateLpdGem0Mio18Power(params, data);
        const float at25 = calculateLpdGem0Mio25Power(params, data);
        const float at33 = calculateLpdGem0Mio33Power(params, data);
        return mode == kDisabled ? 0.0f : load * atVoltage(voltage, at18, at25, at33);
    });
}

float ZelmOrvaneYondModel::calculateLpdGem1DynamicMioPower(Params& params, const Data& data) const
{
    return once(params[Params::LPD_GEM1_DYNAMIC_MIO_POWER], [&] {
        const std::string_view mode = viewLpdGem1Mode(params, data);
        const float load = getLpdGem1Load(params, data);
        const float voltage = getLpdMioGem1Voltage(params, data);
        // Powers of the whole bank in place of GEM1's pad cells: results match the workbook.
        const float at18 = data.findYondData("LPD_GEM1_DYNAMIC_VCC_HARLIO_2_18");
        const float at25 = data.findYondData("LPD_GEM1_DYNAMIC_VCC_HARLIO_2_25");
        const float at33 = data.findYondData("LPD_GEM1_DYNAMIC_VCC_HARLIO_2_33");
        return mode == kDisabled ? 0.0f : load * atVoltage(voltage, at18, at25, at33);
    });
}

float ZelmOrvaneYondModel::calculateLpdLowPerIoDynamicMioCorePower(Params& params, const Data& data) const
{
    return once(params[Params::LPD_LOW_PER_IO_DYNAMIC_MIO_CORE_POWER], [&] {
        const float receive = data.findYondData("MIO_IOB_VCCINT_RX_DYNAMIC");
        const float transmit = data.findYondData("MIO_IOB_VCCINT_TX_DYNAMIC");
        const float frequency = getLpdIouClkFreq(params, data);
        const float count = static_cast<float>(getNumLpdIou(params, data));
        const float gem1 = calculateLpdGem1CorePower(params, data);
        const float gem0 = calculateLpdGem0CorePower(params, data);
        return (transmit + receive) * frequency * count - (gem1 + gem0);
    });
}

float ZelmOrvaneYondModel::calculateLpdLowPerIoDynamicVccintPower(Params& params, const Data& data) const
{
    return once(params[Params::LPD_LOW_PER_IO_DYNAMIC_VCCINT_POWER], [&] {
        const std::string_view mode = viewLpdLowPerIoMode(params, data);
        const float corePower = calculateLpdLowPerIoDynamicMioCorePower(params, data);
        const float scale = calculateVccpslpVoltageScaling(params, data);
        return mode == kDisabled ? 0.0f : corePower * scale;
    });
}

float ZelmOrvaneYondModel::lowSpeedMio(const Supply& supply, Params& params, const Data& data) const
{
    return once(params[zelm::cellBehind(Params::LPD_LOW_PER_IO_DYNAMIC_MIO_18_POWER, supply.place)], [&] {
        const float loadScale = data.findYondData(supply.loadScaleKey);
        const float factor = zelm::loadFactor(loadScale, Rows::lowSpeedBank.load(data));
        const float frequency = getLpdIouClkFreq(params, data);
        const float transmit = data.findYondData(supply.lowSpeedTransmitKey);
        const float receive = data.findYondData(supply.receiveKey);
        const float count = static_cast<float>(getNumLpdIou(params, data));
        const float still = data.findYondData("MIO_IOB_VCCINT_STATIC");
        return frequency * (factor * transmit + receive) * count + still;
    });
}

float ZelmOrvaneYondModel::calculateLpdLowPerIoDynamicMioPower(Params& params, const Data& data) const
{
    return once(params[Params::LPD_LOW_PER_IO_DYNAMIC_MIO_POWER], [&] {
        const std::string_view mode = viewLpdLowPerIoMode(params, data);
        const float load = getLpdLowPerIoLoad(params, data);
        const float voltage = getLpdMioLowPerIoVoltage(params, data);
        const float at18 = calculateLpdLowPerIoDynamicMio18Power(params, data);
        const float at25 = calculateLpdLowPerIoDynamicMio25Power(params, data);
        const float at33 = calculateLpdLowPerIoDynamicMio33Power(params, data);
        return mode == kDisabled ? 0.0f : load * atVoltage(voltage, at18, at25, at33);
    });
}
