#include "processing/ZelmOrvaneHarlModel.h"

#include "framework/ZelmModelBlockImpl.h"

#include <optional>

template class ZelmModelBlock<ZelmOrvaneHarlModel, ZelmOrvaneHarlParams, ZelmOrvaneHarlData>;

namespace {

using Model = ZelmOrvaneHarlModel;
using FloatPull = zelm::Pull<Model>;
using IntPull = zelm::Pull<Model, int>;
using TextPull = zelm::Pull<Model, std::string_view>;

constexpr std::string_view kEnabled = "ENABLED";

} // namespace

struct ZelmOrvaneHarlModel::ClockedItem {
    Params::FloatEnum cell;
    std::string_view clockKey, dynamicKey;
    FloatPull frequency, load;
};

struct ZelmOrvaneHarlModel::Pll {
    Params::FloatEnum coreCell, auxCell;
    FloatPull frequency;
    TextPull usage;

    float power(const Model& model, Params& params, const Data& data, float at2160, float at4320) const
    {
        const float clock = (model.*frequency)(params, data);
        const std::string_view state = (model.*usage)(params, data);
        return state != "POWERDOWN" ? zelm::pllPower(at2160, at4320, clock) : 0.0f;
    }
};

// Pads by direction, and the frequency at which they toggle.
struct ZelmOrvaneHarlModel::Counts {
    float inputs, outputs, bidis, frequency;

    float onInternalRail(float receive, float transmit) const
    {
        return zelm::padPower(inputs, outputs, bidis, receive, transmit, frequency);
    }
    float onIoRail(float receive, float transmit, float factor) const
    {
        return inputs * receive * frequency + outputs * transmit * factor * frequency +
               (factor * transmit + receive) * bidis * frequency;
    }
};

// A group of pads as the internal rails see it.
struct ZelmOrvaneHarlModel::Pads {
    Params::FloatEnum vccintCell, vccauxCell;
    IntPull inputs, outputs, bidis;
    FloatPull frequency;
    TextPull usage;

    Counts counts(const Model& model, Params& params, const Data& data) const
    {
        const float ins = static_cast<float>((model.*inputs)(params, data));
        const float outs = static_cast<float>((model.*outputs)(params, data));
        const float both = static_cast<float>((model.*bidis)(params, data));
        const float clock = (model.*frequency)(params, data);
        return {ins, outs, both, clock};
    }
};

// What a bank's voltage sets: the pad tables, and the place of its cells behind a port's 1.8 V cell.
struct ZelmOrvaneHarlModel::Supply {
    int place;
    std::string_view receiveKey, transmitKey, dedicatedTransmitKey, loadScaleKey, biasKey, porKey;

    float loadFactor(const Data& data) const
    {
        const float scale = data.findHarlData(loadScaleKey);
        const float load = data.findHarlData("CAP_LOAD");
        return zelm::loadFactor(scale, load);
    }
};

// A peripheral's pads with their own rail.
struct ZelmOrvaneHarlModel::Port {
    Pads pads;
    Params::FloatEnum railCell, firstVoltageCell;
    TextPull standard;
    FloatPull load;
    std::array<FloatPull, 3> perVoltage; // 1.8, 2.5, 3.3 V
    std::optional<Counts> fixed{};       // in place of the cells' counts on the port's own rail
};

struct ZelmOrvaneHarlModel::Rows {
    using M = Model;

    static constexpr ClockedItem iou{.cell = Params::HARL_IOU_VCCINTHARL_POWER,
                                     .clockKey = "PMU_IOU_CLOCK",
                                     .dynamicKey = "HARL_IOU_DYNAMIC",
                                     .frequency = &M::getIouClockFreq,
                                     .load = &M::getIouLoad};
    static constexpr ClockedItem interconnect{.cell = Params::HARL_INTERCONNECT_VCCINTHARL_POWER,
                                              .clockKey = "HARL_INTERCONNECT_CLK",
                                              .dynamicKey = "HARL_INTERCONNECT_DYNAMIC",
                                              .frequency = &M::getInterconnectClockFreq,
                                              .load = &M::getInterconnectLoad};

    static constexpr Pll ownPll{.coreCell = Params::HARL_PLL_VCCINTHARL_POWER,
                                .auxCell = Params::HARL_PLL_VCCAUXHARL_POWER,
                                .frequency = &M::getHarlPllClock,
                                .usage = &M::viewHarlPllUsage};
    static constexpr Pll nocPll{.coreCell = Params::NOC_PLL_VCCINTHARL_POWER,
                                .auxCell = Params::NOC_PLL_VCCAUXHARL_POWER,
                                .frequency = &M::getNocPllClock,
                                .usage = &M::viewNocPllUsage};

    // The bank as a whole runs at the I/O unit's clock.
    static constexpr Pads bank0{.vccintCell = Params::HARL_BANK0_VCCINTHARL_POWER,
                                .vccauxCell = Params::HARL_BANK0_VCCAUXHARL_POWER,
                                .inputs = &M::getHarlIoBank0Inputs,
                                .outputs = &M::getHarlIoBank0Outputs,
                                .bidis = &M::getHarlIoBank0Bidis,
                                .frequency = &M::getIouClockFreq,
                                .usage = &M::viewHarlIoBank0Usage};

    // On its own rail USB counts with fixed numbers, whatever its cells say: results match the workbook.
    static constexpr Port usb0{
        .pads = {.vccintCell = Params::HARL_USB0_BANK0_VCCINTHARL_POWER,
                 .vccauxCell = Params::HARL_USB0_BANK0_VCCAUXHARL_POWER,
                 .inputs = &M::getHarlUsb0Inputs,
                 .outputs = &M::getHarlUsb0Outputs,
                 .bidis = &M::getHarlUsb0Bidis,
                 .frequency = &M::getHarlUsb0Freq,
                 .usage = &M::viewHarlUsb0Usage},
        .railCell = Params::HARL_USB0_BANK0_VCCHARLIO0_POWER,
        .firstVoltageCell = Params::USB0_MIO_18_POWER,
        .standard = &M::viewHarlBank0Iostd,
        .load = &M::getHarlUsb0Load,
        .perVoltage = {&M::calculateUsb0Mio18Power, &M::calculateUsb0Mio25Power, &M::calculateUsb0Mio33Power},
        .fixed = Counts{.inputs = 1.0f, .outputs = 1.0f, .bidis = 4.0f, .frequency = 60.0f}};
    static constexpr Port qspi{
        .pads = {.vccintCell = Params::HARL_QSPI_BANK0_VCCINTHARL_POWER,
                 .vccauxCell = Params::HARL_QSPI_BANK0_VCCAUXHARL_POWER,
                 .inputs = &M::getHarlQspiInputs,
                 .outputs = &M::getHarlQspiOutputs,
                 .bidis = &M::getHarlQspiBidis,
                 .frequency = &M::getHarlQspiFreq,
                 .usage = &M::viewHarlQspiUsage},
        .railCell = Params::HARL_QSPI_BANK0_VCCHARLIO0_POWER,
        .firstVoltageCell = Params::QSPI_MIO_18_POWER,
        .standard = &M::viewHarlBank0Iostd,
        .load = &M::getHarlQspiLoad,
        .perVoltage = {&M::calculateQspiMio18Power, &M::calculateQspiMio25Power, &M::calculateQspiMio33Power}};
    static constexpr Port ospi{
        .pads = {.vccintCell = Params::HARL_OSPI_BANK0_VCCINTHARL_POWER,
                 .vccauxCell = Params::HARL_OSPI_BANK0_VCCAUXHARL_POWER,
                 .inputs = &M::getHarlOspiInputs,
                 .outputs = &M::getHarlOspiOutputs,
                 .bidis = &M::getHarlOspiBidis,
                 .frequency = &M::getHarlOspiFreq,
                 .usage = &M::viewHarlOspiUsage},
        .railCell = Params::HARL_OSPI_BANK0_VCCHARLIO0_POWER,
        .firstVoltageCell = Params::OSPI_MIO_18_POWER,
        .standard = &M::viewHarlBank0Iostd,
        .load = &M::getHarlOspiLoad,
        .perVoltage = {&M::calculateOspiMio18Power, &M::calculateOspiMio25Power, &M::calculateOspiMio33Power}};
    static constexpr Port i2c{
        .pads = {.vccintCell = Params::HARL_I2C_BANK0_VCCINTHARL_POWER,
                 .vccauxCell = Params::HARL_I2C_BANK0_VCCAUXHARL_POWER,
                 .inputs = &M::getHarlI2CInputs,
                 .outputs = &M::getHarlI2COutputs,
                 .bidis = &M::getHarlI2CBidis,
                 .frequency = &M::getHarlI2CFreq,
                 .usage = &M::viewHarlI2CUsage},
        .railCell = Params::HARL_I2C_BANK0_VCCHARLIO0_POWER,
        .firstVoltageCell = Params::I2C_MIO_18_POWER,
        .standard = &M::viewHarlBank0Iostd,
        .load = &M::getHarlI2CLoad,
        .perVoltage = {&M::calculateI2CMio18Power, &M::calculateI2CMio25Power, &M::calculateI2CMio33Power}};
    static constexpr Port sd{
        .pads = {.vccintCell = Params::HARL_SD_BANK0_VCCINTHARL_POWER,
                 .vccauxCell = Params::HARL_SD_BANK0_VCCAUXHARL_POWER,
                 .inputs = &M::getHarlSdInputs,
                 .outputs = &M::getHarlSdOutputs,
                 .bidis = &M::getHarlSdBidis,
                 .frequency = &M::getHarlSdFreq,
                 .usage = &M::viewHarlSdUsage},
        .railCell = Params::HARL_SD_BANK0_VCCHARLIO0_POWER,
        .firstVoltageCell = Params::SD_MIO_18_POWER,
        .standard = &M::viewHarlBank0Iostd,
        .load = &M::getHarlSdLoad,
        .perVoltage = {&M::calculateSdMio18Power, &M::calculateSdMio25Power, &M::calculateSdMio33Power}};
    static constexpr Port gem0{
        .pads = {.vccintCell = Params::GEM0_BANK1_VCCINTHARL_POWER,
                 .vccauxCell = Params::GEM0_BANK1_VCCAUXHARL_POWER,
                 .inputs = &M::getHarlGem0Inputs,
                 .outputs = &M::getHarlGem0Outputs,
                 .bidis = &M::getHarlGem0Bidis,
                 .frequency = &M::getHarlGem0Freq,
                 .usage = &M::viewHarlGem0Usage},
        .railCell = Params::GEM0_BANK1_VCCHARLIO1_POWER,
        .firstVoltageCell = Params::GEM0_MIO_18_POWER,
        .standard = &M::viewHarlBank1Iostd,
        .load = &M::getHarlGem0Load,
        .perVoltage = {&M::calculateGem0Mio18Power, &M::calculateGem0Mio25Power, &M::calculateGem0Mio33Power}};
    static constexpr Port gem1{
        .pads = {.vccintCell = Params::GEM1_BANK1_VCCINTHARL_POWER,
                 .vccauxCell = Params::GEM1_BANK1_VCCAUXHARL_POWER,
                 .inputs = &M::getHarlGem1Inputs,
                 .outputs = &M::getHarlGem1Outputs,
                 .bidis = &M::getHarlGem1Bidis,
                 .frequency = &M::getHarlGem1Freq,
                 .usage = &M::viewHarlGem1Usage},
        .railCell = Params::GEM1_BANK1_VCCHARLIO1_POWER,
        .firstVoltageCell = Params::GEM1_MIO_18_POWER,
        .standard = &M::viewHarlBank1Iostd,
        .load = &M::getHarlGem1Load,
        .perVoltage = {&M::calculateGem1Mio18Power, &M::calculateGem1Mio25Power, &M::calculateGem1Mio33Power}};
    // The dedicated pins follow bank 0's standard.
    static constexpr Port dedicated{
        .pads = {.vccintCell = Params::DED_IO_VCCINTHARL_POWER,
                 .vccauxCell = Params::DED_IO_VCCAUXHARL_POWER,
                 .inputs = &M::getHarlDedIoInputs,
                 .outputs = &M::getHarlDedIoOutputs,
                 .bidis = &M::getHarlDedIoBidis,
                 .frequency = &M::getHarlDedIoFreq,
                 .usage = &M::viewHarlDedIoUsage},
        .railCell = Params::DED_IO_VCCFIO_POWER,
        .firstVoltageCell = Params::DED_IO_FIO_18_POWER,
        .standard = &M::viewHarlBank0Iostd,
        .load = &M::getHarlDedIoLoad,
        .perVoltage = {&M::calculateDedIoFio18Power, &M::calculateDedIoFio25Power, &M::calculateDedIoFio33Power}};

    // Peripherals transmit at 4 mA with the load factor of 12 mA, dedicated pins above 1.8 V at 12 mA: as in the
    // workbook.
    static constexpr Supply at18{.place = 0,
                                 .receiveKey = "MIO_IOB_VCCO_HARLIO_1V8_RX_DYNAMIC",
                                 .transmitKey = "MIO_IOB_VCCO_HARLIO_1V8_TX_4MA_F_DYNAMIC",
                                 .dedicatedTransmitKey = "MIO_IOB_VCCO_HARLIO_1V8_TX_4MA_F_DYNAMIC",
                                 .loadScaleKey = "MIO_IOB_1V8_TX_12MA_CLOAD_SCALE_FACTOR",
                                 .biasKey = "MIO_BIAS_VCCO_HARLIO_1V8_STATIC",
                                 .porKey = "MIO_POR_RCVR_VCCO_HARLIO_1V8_DYNAMIC"};
    static constexpr Supply at25{.place = 1,
                                 .receiveKey = "MIO_IOB_VCCO_HARLIO_2V5_RX_DYNAMIC",
                                 .transmitKey = "MIO_IOB_VCCO_HARLIO_2V5_TX_4MA_F_DYNAMIC",
                                 .dedicatedTransmitKey = "MIO_IOB_VCCO_HARLIO_2V5_TX_12MA_F_DYNAMIC",
                                 .loadScaleKey = "MIO_IOB_2V5_TX_12MA_CLOAD_SCALE_FACTOR",
                                 .biasKey = "MIO_BIAS_VCCO_HARLIO_2V5_STATIC",
                                 .porKey = "MIO_POR_RCVR_VCCO_HARLIO_2V5_DYNAMIC"};
    static constexpr Supply at33{.place = 2,
                                 .receiveKey = "MIO_IOB_VCCO_HARLIO_3V3_RX_DYNAMIC",
                                 .transmitKey = "MIO_IOB_VCCO_HARLIO_3V3_TX_4MA_F_DYNAMIC",
                                 .dedicatedTransmitKey = "MIO_IOB_VCCO_HARLIO_3V3_TX_12MA_F_DYNAMIC",
                                 .loadScaleKey = "MIO_IOB_3V3_TX_12MA_CLOAD_SCALE_FACTOR",
                                 .biasKey = "MIO_BIAS_VCCO_HARLIO_3V3_STATIC",
                                 .porKey = "MIO_POR_RCVR_VCCO_HARLIO_3V3_DYNAMIC"};

    static constexpr Sum vccintTotal{
        Params::VCCINT_HARL_POWER,
        {&M::calculateHarlIouVccintharlPower, &M::calculateHarlInterconnectVccintharlPower,
         &M::calculateHarlPllVccintharlPower, &M::calculateNocPllVccintharlPower,
         &M::calculateHarlIoBank0VccintharlPower, &M::calculateHarlUsb0Bank0VccintharlPower,
         &M::calculateHarlQspiBank0VccintharlPower, &M::calculateHarlOspiBank0VccintharlPower,
         &M::calculateHarlI2CBank0VccintharlPower, &M::calculateHarlSdBank0VccintharlPower,
         &M::calculateGem0Bank1VccintharlPower, &M::calculateGem1Bank1VccintharlPower,
         &M::calculateDedIoVccintharlPower}};
    static constexpr Sum vccauxTotal{
        Params::VCCAUX_HARL_POWER,
        {&M::calculateHarlPllVccauxharlPower, &M::calculateNocPllVccauxharlPower, &M::calculateHarlIoBank0VccauxPower,
         &M::calculateHarlUsb0Bank0VccauxharlPower, &M::calculateHarlQspiBank0VccauxharlPower,
         &M::calculateHarlOspiBank0VccauxharlPower, &M::calculateHarlI2CBank0VccauxharlPower,
         &M::calculateHarlSdBank0VccauxharlPower, &M::calculateGem0Bank1VccauxharlPower,
         &M::calculateGem1Bank1VccauxharlPower, &M::calculateDedIoVccauxharlPower}};
    static constexpr Sum io0Total{Params::VCCHARLIO0_POWER,
                                  {&M::calculateHarlUsb0Bank0Vccharlio0Power, &M::calculateHarlQspiBank0Vccharlio0Power,
                                   &M::calculateHarlOspiBank0Vccharlio0Power, &M::calculateHarlI2CBank0Vccharlio0Power,
                                   &M::calculateHarlSdBank0Vccharlio0Power}};
    static constexpr Sum io1Total{Params::VCCHARLIO1_POWER,
                                  {&M::calculateGem0Bank1Vccharlio1Power, &M::calculateGem1Bank1Vccharlio1Power}};
    static constexpr Sum fioTotal{Params::VCC_FIO_POWER, {&M::calculateDedIoVccfioPower}};
    static constexpr Sum railTotal{Params::HARL_DYNAMIC_POWER,
                                   {&M::calculateVccintHarlPower, &M::calculateVccauxHarlPower,
                                    &M::calculateVccharlio0Power, &M::calculateVccharlio1Power,
                                    &M::calculateVccFioPower}};
    static constexpr Sum analogTotal{Params::HARL_AMS_SYSMON_DYNAMIC_POWER,
                                     {&M::calculateHarlAuxharlsysmonPower, &M::calculateHarlAmsauxpower,
                                      &M::calculateHarlAmsvccsocpower, &M::calculateHarlAmsintpower,
                                      &M::calculateHarlAmsharlpower}};
    static constexpr Sum total{Params::TOTAL_DYNAMIC_POWER,
                               {&M::calculateHarlDynamicPower, &M::calculateHarlAmsSysmonDynamicPower}};
};

#define ZELM_MODEL ZelmOrvaneHarlModel
#define ZELM_CELL_ROWS "processing/ZelmOrvaneHarlCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneHarlModel::pullOutputs(Params& params, const Data& data) const
{
    calculateVccintharlVoltageScaling(params, data);
    calculateTotalDynamicPower(params, data);
    calculateHarlDynamicPower(params, data);
    calculateHarlAmsSysmonDynamicPower(params, data);
    calculateVccintHarlPower(params, data);
    calculateVccauxHarlPower(params, data);
    calculateVccharlio0Power(params, data);
    calculateVccharlio1Power(params, data);
    calculateVccFioPower(params, data);

    calculateHarlIouVccintharlPower(params, data);
    calculateHarlInterconnectVccintharlPower(params, data);
    calculateHarlPllVccintharlPower(params, data);
    calculateNocPllVccintharlPower(params, data);
    calculateHarlPllVccauxharlPower(params, data);
    calculateNocPllVccauxharlPower(params, data);

    calculateHarlIoBank0VccintharlPower(params, data);
    calculateHarlIoBank0VccauxPower(params, data);
    calculateHarlUsb0Bank0VccintharlPower(params, data);
    calculateHarlUsb0Bank0VccauxharlPower(params, data);
    calculateHarlUsb0Bank0Vccharlio0Power(params, data);
    calculateHarlQspiBank0VccintharlPower(params, data);
    calculateHarlQspiBank0VccauxharlPower(params, data);
    calculateHarlQspiBank0Vccharlio0Power(params, data);
    calculateHarlOspiBank0VccintharlPower(params, data);
    calculateHarlOspiBank0VccauxharlPower(params, data);
    calculateHarlOspiBank0Vccharlio0Power(params, data);
    calculateHarlI2CBank0VccintharlPower(params, data);
    calculateHarlI2CBank0VccauxharlPower(params, data);
    calculateHarlI2CBank0Vccharlio0Power(params, data);
    calculateHarlSdBank0VccintharlPower(params, data);
    calculateHarlSdBank0VccauxharlPower(params, data);
    calculateHarlSdBank0Vccharlio0Power(params, data);
    calculateGem0Bank1VccintharlPower(params, data);
    calculateGem0Bank1VccauxharlPower(params, data);
    calculateGem0Bank1Vccharlio1Power(params, data);
    calculateGem1Bank1VccintharlPower(params, data);
    calculateGem1Bank1VccauxharlPower(params, data);
    calculateGem1Bank1Vccharlio1Power(params, data);
    calculateDedIoVccintharlPower(params, data);
    calculateDedIoVccauxharlPower(params, data);
    calculateDedIoVccfioPower(params, data);

    calculateHarlAuxharlsysmonPower(params, data);
    calculateHarlAmsauxpower(params, data);
    calculateHarlAmsvccsocpower(params, data);
    calculateHarlAmsintpower(params, data);
    calculateHarlAmsharlpower(params, data);
}

float ZelmOrvaneHarlModel::sum(const Sum& row, Params& params, const Data& data) const
{
    return once(params[row.cell], [&] { return row.add(*this, params, data); });
}

float ZelmOrvaneHarlModel::calculateVccintharlVoltageScaling(Params& params, const Data& data) const
{
    return once(params[Params::VCCINTHARL_VOLTAGE_SCALING], [&] {
        const float voltage = getVccintharl(params, data);
        const float characterised = data.findSimConditions("PSIM_VOLTAGE");
        return zelm::voltageScaling(voltage, characterised);
    });
}

float ZelmOrvaneHarlModel::clocked(const ClockedItem& item, Params& params, const Data& data) const
{
    return once(params[item.cell], [&] {
        const bool gated = viewClockGating(params, data) == kEnabled;
        const float clock = data.findHarlData(item.clockKey);
        const float dynamic = data.findHarlData(item.dynamicKey);
        const float frequency = (this->*item.frequency)(params, data);
        const float load = (this->*item.load)(params, data);
        const float scale = calculateVccintharlVoltageScaling(params, data);
        return gated ? 0.0f : zelm::clockedPower(clock, dynamic, frequency, load) * scale;
    });
}

float ZelmOrvaneHarlModel::pllCore(const Pll& pll, Params& params, const Data& data) const
{
    return once(params[pll.coreCell], [&] {
        const float at2160 = data.findHarlData("PLL_DYNAMIC_POWER_2160MHZ_VCCINT");
        const float at4320 = data.findHarlData("PLL_DYNAMIC_POWER_4320MHZ_VCCINT");
        const float power = pll.power(*this, params, data, at2160, at4320);
        const float voltage = getVccintharl(params, data);
        return zelm::pllCorePower(power, voltage);
    });
}

float ZelmOrvaneHarlModel::pllAux(const Pll& pll, Params& params, const Data& data) const
{
    return once(params[pll.auxCell], [&] {
        const float at2160 = data.findHarlData("PLL_DYNAMIC_POWER_2160MHZ_VCCAUX");
        const float at4320 = data.findHarlData("PLL_DYNAMIC_POWER_4320MHZ_VCCAUX");
        return pll.power(*this, params, data, at2160, at4320);
    });
}

// Unlike the logic's, the pads' power isn't scaled by the rail's voltage: results match the workbook.
float ZelmOrvaneHarlModel::vccint(const Pads& pads, Params& params, const Data& data) const
{
    return once(params[pads.vccintCell], [&] {
        const bool inUse = (this->*pads.usage)(params, data) == kEnabled;
        const Counts counts = pads.counts(*this, params, data);
        const float receive = data.findHarlData("MIO_IOB_VCCINT_RX_DYNAMIC");
        const float transmit = data.findHarlData("MIO_IOB_VCCINT_TX_DYNAMIC");
        return inUse ? counts.onInternalRail(receive, transmit) : 0.0f;
    });
}

float ZelmOrvaneHarlModel::auxPower(const Pads& pads, Params& params, const Data& data) const
{
    const Counts counts = pads.counts(*this, params, data);
    const float receive = data.findHarlData("MIO_IOB_VCCAUX_RX_DYNAMIC");
    const float transmit = data.findHarlData("MIO_IOB_VCCAUX_TX_DYNAMIC");
    return counts.onInternalRail(receive, transmit);
}

// A peripheral out of use keeps this share: results match the workbook.
float ZelmOrvaneHarlModel::vccaux(const Pads& pads, Params& params, const Data& data) const
{
    return once(params[pads.vccauxCell], [&] { return auxPower(pads, params, data); });
}

float ZelmOrvaneHarlModel::vccauxInUse(const Pads& pads, Params& params, const Data& data) const
{
    return once(params[pads.vccauxCell], [&] {
        const bool inUse = (this->*pads.usage)(params, data) == kEnabled;
        const float power = auxPower(pads, params, data);
        return inUse ? power : 0.0f;
    });
}

float ZelmOrvaneHarlModel::calculateHarlIoBank0VccintharlPower(Params& params, const Data& data) const
{
    return once(params[Params::HARL_IO_BANK0_VCCINTHARL_POWER], [&] {
        const bool inUse = viewHarlIoBank0Usage(params, data) == kEnabled;
        const float bank = calculateHarlBank0VccintharlPower(params, data);
        const float usb = calculateHarlUsb0Bank0VccintharlPower(params, data);
        const float sd = calculateHarlSdBank0VccintharlPower(params, data);
        return inUse ? bank - usb - sd : 0.0f;
    });
}

float ZelmOrvaneHarlModel::calculateHarlIoBank0VccauxPower(Params& params, const Data& data) const
{
    return once(params[Params::HARL_IO_BANK0_VCCAUX_POWER], [&] {
        const bool inUse = viewHarlIoBank0Usage(params, data) == kEnabled;
        // Without the subtraction of the core rail's cell: results match the workbook.
        const float bank = calculateHarlBank0VccauxharlPower(params, data);
        return inUse ? bank : 0.0f;
    });
}

float ZelmOrvaneHarlModel::mio(const Port& port, const Supply& supply, Params& params, const Data& data) const
{
    return once(params[zelm::cellBehind(port.firstVoltageCell, supply.place)], [&] {
        const float factor = supply.loadFactor(data);
        const Counts counts = port.fixed ? *port.fixed : port.pads.counts(*this, params, data);
        const float receive = data.findHarlData(supply.receiveKey);
        const float transmit = data.findHarlData(supply.transmitKey);
        return counts.onIoRail(receive, transmit, factor);
    });
}

float ZelmOrvaneHarlModel::mio18(const Port& port, Params& params, const Data& data) const
{
    return mio(port, Rows::at18, params, data);
}

float ZelmOrvaneHarlModel::mio25(const Port& port, Params& params, const Data& data) const
{
    return mio(port, Rows::at25, params, data);
}

float ZelmOrvaneHarlModel::mio33(const Port& port, Params& params, const Data& data) const
{
    return mio(port, Rows::at33, params, data);
}

float ZelmOrvaneHarlModel::fio(const Supply& supply, Params& params, const Data& data) const
{
    return once(params[zelm::cellBehind(Rows::dedicated.firstVoltageCell, supply.place)], [&] {
        const float factor = supply.loadFactor(data);
        const Counts counts = Rows::dedicated.pads.counts(*this, params, data);
        const float receive = data.findHarlData(supply.receiveKey);
        const float transmit = data.findHarlData(supply.dedicatedTransmitKey);
        const float biasPower = data.findHarlData(supply.biasKey);
        const float biases = data.findHarlData("BIAS");
        const float porPower = data.findHarlData(supply.porKey);
        const float receivers = data.findHarlData("POR");
        return counts.onIoRail(receive, transmit, factor) + biasPower * biases +
               porPower * receivers * counts.frequency;
    });
}

float ZelmOrvaneHarlModel::rail(const Port& port, Params& params, const Data& data) const
{
    return once(params[port.railCell], [&] {
        const bool inUse = (this->*port.pads.usage)(params, data) == kEnabled;
        const std::string_view standard = (this->*port.standard)(params, data);
        const float at18 = (this->*port.perVoltage[0])(params, data);
        const float at25 = (this->*port.perVoltage[1])(params, data);
        const float at33 = (this->*port.perVoltage[2])(params, data);
        const float load = (this->*port.load)(params, data);
        const float chosen = standard == "LVCMOS18" ? at18 : standard == "LVCMOS25" ? at25 : at33;
        return (inUse ? chosen : 0.0f) * load;
    });
}

float ZelmOrvaneHarlModel::calculateHarlAuxharlsysmonPower(Params& params, const Data& data) const
{
    return once(params[Params::HARL_AUXHARLSYSMON_POWER], [&] {
        const float voltage = getVccauxharl(params, data);
        const float running = viewClockGating(params, data) == "DISABLED" ? 1.0f : 0.0f;
        const float bbr = data.findHarlData("CFG_BBR_TOP_DYNAMIC_VCCAUX_HARL");
        const float por = data.findHarlData("CFG_HARL_POR_TOP_DYNAMIC_VCCAUX_HARL");
        const float rtcSwitch = data.findHarlData("CFG_RTC_SPLYSW_DYNAMIC_VCCAUX_HARL");
        const float vgg = data.findHarlData("CFG_VGG_TOP_DYNAMIC_VCCAUX_HARL");
        const float glitch = data.findHarlData("CFG_GLITCH_DET_TOP_DYNAMIC_VCCAUX_HARL");
        return voltage > 0.0f ? bbr + por + running * rtcSwitch + running * vgg + running * glitch : 0.0f;
    });
}

float ZelmOrvaneHarlModel::calculateHarlAmsauxpower(Params& params, const Data& data) const
{
    return once(params[Params::HARL_AMSAUXPOWER], [&] {
        const float running = viewClockGating(params, data) == "DISABLED" ? 1.0f : 0.0f;
        const float por = data.findHarlData("CFG_HARL_POR_TOP_DYNAMIC_VCCAUX");
        const float probe = data.findHarlData("CFG_PROBE_TOP_DYNAMIC_VCCAUX");
        const float vgg = data.findHarlData("CFG_VGG_TOP_DYNAMIC_VCCAUX");
        return running * (por + probe + vgg);
    });
}

float ZelmOrvaneHarlModel::calculateHarlAmsvccsocpower(Params& params, const Data& data) const
{
    return once(params[Params::HARL_AMSVCCSOCPOWER],
                [&] { return data.findHarlData("CFG_HARL_POR_TOP_DYNAMIC_VCCINT_SOC"); });
}

float ZelmOrvaneHarlModel::calculateHarlAmsintpower(Params& params, const Data& data) const
{
    return once(params[Params::HARL_AMSINTPOWER], [&] {
        const float por = data.findHarlData("CFG_HARL_POR_TOP_DYNAMIC_VCCINT");
        const float probe = data.findHarlData("CFG_PROBE_TOP_DYNAMIC_VCCINT");
        const float glitch = data.findHarlData("CFG_GLITCH_DET_TOP_DYNAMIC_VCCINT");
        const float rtcShifter = data.findHarlData("CFG_RTC_LVLSH_DYNAMIC_VCCINT");
        const float rtcSwitch = data.findHarlData("CFG_RTC_SPLYSW_DYNAMIC_VCCINT");
        const float vgg = data.findHarlData("CFG_VGG_TOP_DYNAMIC_VCCINT");
        const float trng = data.findHarlData("TRNG_ANALOG_DYNAMIC_VCCINT");
        return por + probe + glitch + rtcShifter + rtcSwitch + vgg + trng;
    });
}

float ZelmOrvaneHarlModel::calculateHarlAmsharlpower(Params& params, const Data& data) const
{
    return once(params[Params::HARL_AMSHARLPOWER],
                [&] { return 2.0f * data.findHarlData("AMS_SATELLITE_PS_CORE_DYNAMIC_VCCINT_HARL"); });
}
