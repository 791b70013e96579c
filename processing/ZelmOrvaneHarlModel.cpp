#include "processing/ZelmOrvaneHarlModel.h"

#include "framework/ZelmModelBlockImpl.h"
#include "processing/ZelmProcessingSheet.h"

#include <optional>

#define ZELM_MODEL ZelmOrvaneHarlModel
#define ZELM_CELL_ROWS "processing/ZelmOrvaneHarlCells.def"
#define ZELM_TABLE_ROWS "processing/ZelmOrvaneHarlTables.def"

namespace {

using Params = ZelmOrvaneHarlParams;
using zelm::Key;
using Sum = zelm::SumRow<Params>;
using Supply = zelm::SupplyRow<Params>;

constexpr std::string_view kEnabled = "ENABLED";

constexpr Supply kVccintharl{Params::VCCINTHARL_VOLTAGE_SCALING, Params::VCCINTHARL};

struct ClockedItem {
    Params::FloatEnum clocked;
    Key clockKey, dynamicKey;
    Params::FloatEnum frequency, load;
};

struct Pll {
    Params::FloatEnum pllCore, pllAux;
    Params::FloatEnum frequency;
    Params::StringEnum usage;
};

// Pads by direction, and the frequency at which they toggle.
struct Counts {
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
struct Pads {
    Params::FloatEnum vccint, vccaux;
    Params::IntEnum inputs, outputs, bidis;
    Params::FloatEnum frequency;
    Params::StringEnum usage;
    bool auxRests = false; // out of use, it draws nothing from the auxiliary rail either
};

// What a bank's voltage sets: the pad tables and the dedicated pads' power.
struct BankSupply {
    Params::FloatEnum fio;
    Key receiveKey, transmitKey, dedicatedTransmitKey, loadScaleKey, biasKey, porKey;
};

// A peripheral's pads with their own rail.
struct Port {
    Pads pads;
    Params::FloatEnum rail;
    Params::StringEnum standard;
    Params::FloatEnum load;
    Params::FloatEnum mio18, mio25, mio33; // the pads at a bank's voltage and full load
    std::optional<Counts> fixed{};         // in place of the cells' counts on the port's own rail
};

constexpr ClockedItem kIou{.clocked = Params::HARL_IOU_VCCINTHARL_POWER,
                           .clockKey = "PMU_IOU_CLOCK",
                           .dynamicKey = "HARL_IOU_DYNAMIC",
                           .frequency = Params::IOU_CLOCK_FREQ,
                           .load = Params::IOU_LOAD};
constexpr ClockedItem kInterconnect{.clocked = Params::HARL_INTERCONNECT_VCCINTHARL_POWER,
                                    .clockKey = "HARL_INTERCONNECT_CLK",
                                    .dynamicKey = "HARL_INTERCONNECT_DYNAMIC",
                                    .frequency = Params::INTERCONNECT_CLOCK_FREQ,
                                    .load = Params::INTERCONNECT_LOAD};

constexpr Pll kOwnPll{.pllCore = Params::HARL_PLL_VCCINTHARL_POWER,
                      .pllAux = Params::HARL_PLL_VCCAUXHARL_POWER,
                      .frequency = Params::HARL_PLL_CLOCK,
                      .usage = Params::HARL_PLL_USAGE};
constexpr Pll kNocPll{.pllCore = Params::NOC_PLL_VCCINTHARL_POWER,
                      .pllAux = Params::NOC_PLL_VCCAUXHARL_POWER,
                      .frequency = Params::NOC_PLL_CLOCK,
                      .usage = Params::NOC_PLL_USAGE};

// The bank as a whole runs at the I/O unit's clock.
constexpr Pads kBank0{.vccint = Params::HARL_BANK0_VCCINTHARL_POWER,
                      .vccaux = Params::HARL_BANK0_VCCAUXHARL_POWER,
                      .inputs = Params::HARL_IO_BANK0_INPUTS,
                      .outputs = Params::HARL_IO_BANK0_OUTPUTS,
                      .bidis = Params::HARL_IO_BANK0_BIDIS,
                      .frequency = Params::IOU_CLOCK_FREQ,
                      .usage = Params::HARL_IO_BANK0_USAGE,
                      .auxRests = true};

// On its own rail USB counts with fixed numbers, whatever its cells say: results match the workbook.
constexpr Port kUsb0{.pads = {.vccint = Params::HARL_USB0_BANK0_VCCINTHARL_POWER,
                              .vccaux = Params::HARL_USB0_BANK0_VCCAUXHARL_POWER,
                              .inputs = Params::HARL_USB0_INPUTS,
                              .outputs = Params::HARL_USB0_OUTPUTS,
                              .bidis = Params::HARL_USB0_BIDIS,
                              .frequency = Params::HARL_USB0_FREQ,
                              .usage = Params::HARL_USB0_USAGE},
                     .rail = Params::HARL_USB0_BANK0_VCCHARLIO0_POWER,
                     .standard = Params::HARL_BANK0_IOSTD,
                     .load = Params::HARL_USB0_LOAD,
                     .mio18 = Params::USB0_MIO_18_POWER,
                     .mio25 = Params::USB0_MIO_25_POWER,
                     .mio33 = Params::USB0_MIO_33_POWER,
                     .fixed = Counts{.inputs = 1.0f, .outputs = 1.0f, .bidis = 4.0f, .frequency = 60.0f}};
constexpr Port kQspi{.pads = {.vccint = Params::HARL_QSPI_BANK0_VCCINTHARL_POWER,
                              .vccaux = Params::HARL_QSPI_BANK0_VCCAUXHARL_POWER,
                              .inputs = Params::HARL_QSPI_INPUTS,
                              .outputs = Params::HARL_QSPI_OUTPUTS,
                              .bidis = Params::HARL_QSPI_BIDIS,
                              .frequency = Params::HARL_QSPI_FREQ,
                              .usage = Params::HARL_QSPI_USAGE},
                     .rail = Params::HARL_QSPI_BANK0_VCCHARLIO0_POWER,
                     .standard = Params::HARL_BANK0_IOSTD,
                     .load = Params::HARL_QSPI_LOAD,
                     .mio18 = Params::QSPI_MIO_18_POWER,
                     .mio25 = Params::QSPI_MIO_25_POWER,
                     .mio33 = Params::QSPI_MIO_33_POWER};
constexpr Port kOspi{.pads = {.vccint = Params::HARL_OSPI_BANK0_VCCINTHARL_POWER,
                              .vccaux = Params::HARL_OSPI_BANK0_VCCAUXHARL_POWER,
                              .inputs = Params::HARL_OSPI_INPUTS,
                              .outputs = Params::HARL_OSPI_OUTPUTS,
                              .bidis = Params::HARL_OSPI_BIDIS,
                              .frequency = Params::HARL_OSPI_FREQ,
                              .usage = Params::HARL_OSPI_USAGE},
                     .rail = Params::HARL_OSPI_BANK0_VCCHARLIO0_POWER,
                     .standard = Params::HARL_BANK0_IOSTD,
                     .load = Params::HARL_OSPI_LOAD,
                     .mio18 = Params::OSPI_MIO_18_POWER,
                     .mio25 = Params::OSPI_MIO_25_POWER,
                     .mio33 = Params::OSPI_MIO_33_POWER};
constexpr Port kI2c{.pads = {.vccint = Params::HARL_I2C_BANK0_VCCINTHARL_POWER,
                             .vccaux = Params::HARL_I2C_BANK0_VCCAUXHARL_POWER,
                             .inputs = Params::HARL_I2C_INPUTS,
                             .outputs = Params::HARL_I2C_OUTPUTS,
                             .bidis = Params::HARL_I2C_BIDIS,
                             .frequency = Params::HARL_I2C_FREQ,
                             .usage = Params::HARL_I2C_USAGE},
                    .rail = Params::HARL_I2C_BANK0_VCCHARLIO0_POWER,
                    .standard = Params::HARL_BANK0_IOSTD,
                    .load = Params::HARL_I2C_LOAD,
                    .mio18 = Params::I2C_MIO_18_POWER,
                    .mio25 = Params::I2C_MIO_25_POWER,
                    .mio33 = Params::I2C_MIO_33_POWER};
constexpr Port kSd{.pads = {.vccint = Params::HARL_SD_BANK0_VCCINTHARL_POWER,
                            .vccaux = Params::HARL_SD_BANK0_VCCAUXHARL_POWER,
                            .inputs = Params::HARL_SD_INPUTS,
                            .outputs = Params::HARL_SD_OUTPUTS,
                            .bidis = Params::HARL_SD_BIDIS,
                            .frequency = Params::HARL_SD_FREQ,
                            .usage = Params::HARL_SD_USAGE},
                   .rail = Params::HARL_SD_BANK0_VCCHARLIO0_POWER,
                   .standard = Params::HARL_BANK0_IOSTD,
                   .load = Params::HARL_SD_LOAD,
                   .mio18 = Params::SD_MIO_18_POWER,
                   .mio25 = Params::SD_MIO_25_POWER,
                   .mio33 = Params::SD_MIO_33_POWER};
constexpr Port kGem0{.pads = {.vccint = Params::GEM0_BANK1_VCCINTHARL_POWER,
                              .vccaux = Params::GEM0_BANK1_VCCAUXHARL_POWER,
                              .inputs = Params::HARL_GEM0_INPUTS,
                              .outputs = Params::HARL_GEM0_OUTPUTS,
                              .bidis = Params::HARL_GEM0_BIDIS,
                              .frequency = Params::HARL_GEM0_FREQ,
                              .usage = Params::HARL_GEM0_USAGE},
                     .rail = Params::GEM0_BANK1_VCCHARLIO1_POWER,
                     .standard = Params::HARL_BANK1_IOSTD,
                     .load = Params::HARL_GEM0_LOAD,
                     .mio18 = Params::GEM0_MIO_18_POWER,
                     .mio25 = Params::GEM0_MIO_25_POWER,
                     .mio33 = Params::GEM0_MIO_33_POWER};
constexpr Port kGem1{.pads = {.vccint = Params::GEM1_BANK1_VCCINTHARL_POWER,
                              .vccaux = Params::GEM1_BANK1_VCCAUXHARL_POWER,
                              .inputs = Params::HARL_GEM1_INPUTS,
                              .outputs = Params::HARL_GEM1_OUTPUTS,
                              .bidis = Params::HARL_GEM1_BIDIS,
                              .frequency = Params::HARL_GEM1_FREQ,
                              .usage = Params::HARL_GEM1_USAGE},
                     .rail = Params::GEM1_BANK1_VCCHARLIO1_POWER,
                     .standard = Params::HARL_BANK1_IOSTD,
                     .load = Params::HARL_GEM1_LOAD,
                     .mio18 = Params::GEM1_MIO_18_POWER,
                     .mio25 = Params::GEM1_MIO_25_POWER,
                     .mio33 = Params::GEM1_MIO_33_POWER};
// The dedicated pins follow bank 0's standard.
constexpr Port kDedicated{.pads = {.vccint = Params::DED_IO_VCCINTHARL_POWER,
                                   .vccaux = Params::DED_IO_VCCAUXHARL_POWER,
                                   .inputs = Params::HARL_DED_IO_INPUTS,
                                   .outputs = Params::HARL_DED_IO_OUTPUTS,
                                   .bidis = Params::HARL_DED_IO_BIDIS,
                                   .frequency = Params::HARL_DED_IO_FREQ,
                                   .usage = Params::HARL_DED_IO_USAGE},
                          .rail = Params::DED_IO_VCCFIO_POWER,
                          .standard = Params::HARL_BANK0_IOSTD,
                          .load = Params::HARL_DED_IO_LOAD,
                          .mio18 = Params::DED_IO_FIO_18_POWER,
                          .mio25 = Params::DED_IO_FIO_25_POWER,
                          .mio33 = Params::DED_IO_FIO_33_POWER};

// Peripherals transmit at 4 mA with the load factor of 12 mA, dedicated pins above 1.8 V at 12 mA: as in the
// workbook.
constexpr BankSupply kAt18{.fio = Params::DED_IO_FIO_18_POWER,
                           .receiveKey = "MIO_IOB_VCCO_HARLIO_1V8_RX_DYNAMIC",
                           .transmitKey = "MIO_IOB_VCCO_HARLIO_1V8_TX_4MA_F_DYNAMIC",
                           .dedicatedTransmitKey = "MIO_IOB_VCCO_HARLIO_1V8_TX_4MA_F_DYNAMIC",
                           .loadScaleKey = "MIO_IOB_1V8_TX_12MA_CLOAD_SCALE_FACTOR",
                           .biasKey = "MIO_BIAS_VCCO_HARLIO_1V8_STATIC",
                           .porKey = "MIO_POR_RCVR_VCCO_HARLIO_1V8_DYNAMIC"};
constexpr BankSupply kAt25{.fio = Params::DED_IO_FIO_25_POWER,
                           .receiveKey = "MIO_IOB_VCCO_HARLIO_2V5_RX_DYNAMIC",
                           .transmitKey = "MIO_IOB_VCCO_HARLIO_2V5_TX_4MA_F_DYNAMIC",
                           .dedicatedTransmitKey = "MIO_IOB_VCCO_HARLIO_2V5_TX_12MA_F_DYNAMIC",
                           .loadScaleKey = "MIO_IOB_2V5_TX_12MA_CLOAD_SCALE_FACTOR",
                           .biasKey = "MIO_BIAS_VCCO_HARLIO_2V5_STATIC",
                           .porKey = "MIO_POR_RCVR_VCCO_HARLIO_2V5_DYNAMIC"};
constexpr BankSupply kAt33{.fio = Params::DED_IO_FIO_33_POWER,
                           .receiveKey = "MIO_IOB_VCCO_HARLIO_3V3_RX_DYNAMIC",
                           .transmitKey = "MIO_IOB_VCCO_HARLIO_3V3_TX_4MA_F_DYNAMIC",
                           .dedicatedTransmitKey = "MIO_IOB_VCCO_HARLIO_3V3_TX_12MA_F_DYNAMIC",
                           .loadScaleKey = "MIO_IOB_3V3_TX_12MA_CLOAD_SCALE_FACTOR",
                           .biasKey = "MIO_BIAS_VCCO_HARLIO_3V3_STATIC",
                           .porKey = "MIO_POR_RCVR_VCCO_HARLIO_3V3_DYNAMIC"};

constexpr Sum kVccintTotal{
    Params::VCCINT_HARL_POWER,
    {Params::HARL_IOU_VCCINTHARL_POWER, Params::HARL_INTERCONNECT_VCCINTHARL_POWER, Params::HARL_PLL_VCCINTHARL_POWER,
     Params::NOC_PLL_VCCINTHARL_POWER, Params::HARL_IO_BANK0_VCCINTHARL_POWER, Params::HARL_USB0_BANK0_VCCINTHARL_POWER,
     Params::HARL_QSPI_BANK0_VCCINTHARL_POWER, Params::HARL_OSPI_BANK0_VCCINTHARL_POWER,
     Params::HARL_I2C_BANK0_VCCINTHARL_POWER, Params::HARL_SD_BANK0_VCCINTHARL_POWER,
     Params::GEM0_BANK1_VCCINTHARL_POWER, Params::GEM1_BANK1_VCCINTHARL_POWER, Params::DED_IO_VCCINTHARL_POWER}};
constexpr Sum kVccauxTotal{Params::VCCAUX_HARL_POWER,
                           {Params::HARL_PLL_VCCAUXHARL_POWER, Params::NOC_PLL_VCCAUXHARL_POWER,
                            Params::HARL_IO_BANK0_VCCAUX_POWER, Params::HARL_USB0_BANK0_VCCAUXHARL_POWER,
                            Params::HARL_QSPI_BANK0_VCCAUXHARL_POWER, Params::HARL_OSPI_BANK0_VCCAUXHARL_POWER,
                            Params::HARL_I2C_BANK0_VCCAUXHARL_POWER, Params::HARL_SD_BANK0_VCCAUXHARL_POWER,
                            Params::GEM0_BANK1_VCCAUXHARL_POWER, Params::GEM1_BANK1_VCCAUXHARL_POWER,
                            Params::DED_IO_VCCAUXHARL_POWER}};
constexpr Sum kIo0Total{Params::VCCHARLIO0_POWER,
                        {Params::HARL_USB0_BANK0_VCCHARLIO0_POWER, Params::HARL_QSPI_BANK0_VCCHARLIO0_POWER,
                         Params::HARL_OSPI_BANK0_VCCHARLIO0_POWER, Params::HARL_I2C_BANK0_VCCHARLIO0_POWER,
                         Params::HARL_SD_BANK0_VCCHARLIO0_POWER}};
constexpr Sum kIo1Total{Params::VCCHARLIO1_POWER,
                        {Params::GEM0_BANK1_VCCHARLIO1_POWER, Params::GEM1_BANK1_VCCHARLIO1_POWER}};
constexpr Sum kFioTotal{Params::VCC_FIO_POWER, {Params::DED_IO_VCCFIO_POWER}};
constexpr Sum kRailTotal{Params::HARL_DYNAMIC_POWER,
                         {Params::VCCINT_HARL_POWER, Params::VCCAUX_HARL_POWER, Params::VCCHARLIO0_POWER,
                          Params::VCCHARLIO1_POWER, Params::VCC_FIO_POWER}};
constexpr Sum kAnalogTotal{Params::HARL_AMS_SYSMON_DYNAMIC_POWER,
                           {Params::HARL_AUXHARLSYSMON_POWER, Params::HARL_AMSAUXPOWER, Params::HARL_AMSVCCSOCPOWER,
                            Params::HARL_AMSINTPOWER, Params::HARL_AMSHARLPOWER}};
constexpr Sum kTotal{Params::TOTAL_DYNAMIC_POWER, {Params::HARL_DYNAMIC_POWER, Params::HARL_AMS_SYSMON_DYNAMIC_POWER}};

} // namespace

struct ZelmOrvaneHarlModel::Sheet : ZelmProcessingSheet<ZelmOrvaneHarlModel> {
#include "framework/ZelmAccessors.inc"
    void pullOutputs() const
    {
        VccintharlVoltageScaling();
        TotalDynamicPower();
        HarlDynamicPower();
        HarlAmsSysmonDynamicPower();
        VccintHarlPower();
        VccauxHarlPower();
        Vccharlio0Power();
        Vccharlio1Power();
        VccFioPower();

        HarlIouVccintharlPower();
        HarlInterconnectVccintharlPower();
        HarlPllVccintharlPower();
        NocPllVccintharlPower();
        HarlPllVccauxharlPower();
        NocPllVccauxharlPower();

        HarlIoBank0VccintharlPower();
        HarlIoBank0VccauxPower();
        HarlUsb0Bank0VccintharlPower();
        HarlUsb0Bank0VccauxharlPower();
        HarlUsb0Bank0Vccharlio0Power();
        HarlQspiBank0VccintharlPower();
        HarlQspiBank0VccauxharlPower();
        HarlQspiBank0Vccharlio0Power();
        HarlOspiBank0VccintharlPower();
        HarlOspiBank0VccauxharlPower();
        HarlOspiBank0Vccharlio0Power();
        HarlI2CBank0VccintharlPower();
        HarlI2CBank0VccauxharlPower();
        HarlI2CBank0Vccharlio0Power();
        HarlSdBank0VccintharlPower();
        HarlSdBank0VccauxharlPower();
        HarlSdBank0Vccharlio0Power();
        Gem0Bank1VccintharlPower();
        Gem0Bank1VccauxharlPower();
        Gem0Bank1Vccharlio1Power();
        Gem1Bank1VccintharlPower();
        Gem1Bank1VccauxharlPower();
        Gem1Bank1Vccharlio1Power();
        DedIoVccintharlPower();
        DedIoVccauxharlPower();
        DedIoVccfioPower();

        HarlAuxharlsysmonPower();
        HarlAmsauxpower();
        HarlAmsvccsocpower();
        HarlAmsintpower();
        HarlAmsharlpower();
    }

    float clocked(const ClockedItem& item) const
    {
        const bool gated = ClockGating() == kEnabled;
        const float clock = findHarlData(item.clockKey);
        const float dynamic = findHarlData(item.dynamicKey);
        const float frequency = value(item.frequency);
        const float load = value(item.load);
        const float scale = VccintharlVoltageScaling();
        return gated ? 0.0f : zelm::clockedPower(clock, dynamic, frequency, load) * scale;
    }

    float pllPower(const Pll& pll, float at2160, float at4320) const
    {
        const float clock = value(pll.frequency);
        const Key& usage = value(pll.usage);
        return usage != "POWERDOWN" ? zelm::pllPower(at2160, at4320, clock) : 0.0f;
    }

    double pllCore(const Pll& pll) const
    {
        const float at2160 = findHarlData("PLL_DYNAMIC_POWER_2160MHZ_VCCINT");
        const float at4320 = findHarlData("PLL_DYNAMIC_POWER_4320MHZ_VCCINT");
        const float power = pllPower(pll, at2160, at4320);
        const float voltage = Vccintharl();
        return zelm::pllCorePower(power, voltage);
    }

    float pllAux(const Pll& pll) const
    {
        const float at2160 = findHarlData("PLL_DYNAMIC_POWER_2160MHZ_VCCAUX");
        const float at4320 = findHarlData("PLL_DYNAMIC_POWER_4320MHZ_VCCAUX");
        return pllPower(pll, at2160, at4320);
    }

    Counts countsOf(const Pads& pads) const
    {
        const float ins = static_cast<float>(value(pads.inputs));
        const float outs = static_cast<float>(value(pads.outputs));
        const float both = static_cast<float>(value(pads.bidis));
        const float frequency = value(pads.frequency);
        return {ins, outs, both, frequency};
    }

    // Unlike the logic's, the pads' power isn't scaled by the rail's voltage: results match the workbook.
    float vccint(const Pads& pads) const
    {
        const bool inUse = value(pads.usage) == kEnabled;
        const Counts counts = countsOf(pads);
        const float receive = findHarlData("MIO_IOB_VCCINT_RX_DYNAMIC");
        const float transmit = findHarlData("MIO_IOB_VCCINT_TX_DYNAMIC");
        return inUse ? counts.onInternalRail(receive, transmit) : 0.0f;
    }

    // A peripheral out of use keeps this share, the bank as a whole doesn't: results match the workbook.
    float vccaux(const Pads& pads) const
    {
        const bool rests = pads.auxRests && value(pads.usage) != kEnabled;
        const Counts counts = countsOf(pads);
        const float receive = findHarlData("MIO_IOB_VCCAUX_RX_DYNAMIC");
        const float transmit = findHarlData("MIO_IOB_VCCAUX_TX_DYNAMIC");
        return rests ? 0.0f : counts.onInternalRail(receive, transmit);
    }

    float computeHarlIoBank0VccintharlPower() const
    {
        const bool inUse = HarlIoBank0Usage() == kEnabled;
        const float bank = HarlBank0VccintharlPower();
        const float usb = HarlUsb0Bank0VccintharlPower();
        const float sd = HarlSdBank0VccintharlPower();
        return inUse ? bank - usb - sd : 0.0f;
    }

    float computeHarlIoBank0VccauxPower() const
    {
        const bool inUse = HarlIoBank0Usage() == kEnabled;
        // Without the subtraction of the core rail's cell: results match the workbook.
        const float bank = HarlBank0VccauxharlPower();
        return inUse ? bank : 0.0f;
    }

    float loadFactor(const BankSupply& supply) const
    {
        const float scale = findHarlData(supply.loadScaleKey);
        const float load = findHarlData("CAP_LOAD");
        return zelm::loadFactor(scale, load);
    }

    float mio(const Port& port, const BankSupply& supply) const
    {
        const float factor = loadFactor(supply);
        const Counts counts = port.fixed ? *port.fixed : countsOf(port.pads);
        const float receive = findHarlData(supply.receiveKey);
        const float transmit = findHarlData(supply.transmitKey);
        return counts.onIoRail(receive, transmit, factor);
    }

    float mio18(const Port& port) const
    {
        return mio(port, kAt18);
    }

    float mio25(const Port& port) const
    {
        return mio(port, kAt25);
    }

    float mio33(const Port& port) const
    {
        return mio(port, kAt33);
    }

    float fio(const BankSupply& supply) const
    {
        const float factor = loadFactor(supply);
        const Counts counts = countsOf(kDedicated.pads);
        const float receive = findHarlData(supply.receiveKey);
        const float transmit = findHarlData(supply.dedicatedTransmitKey);
        const float biasPower = findHarlData(supply.biasKey);
        const float biases = findHarlData("BIAS");
        const float porPower = findHarlData(supply.porKey);
        const float receivers = findHarlData("POR");
        return counts.onIoRail(receive, transmit, factor) + biasPower * biases +
               porPower * receivers * counts.frequency;
    }

    float rail(const Port& port) const
    {
        const bool inUse = value(port.pads.usage) == kEnabled;
        const Key& standard = value(port.standard);
        const float at18 = value(port.mio18);
        const float at25 = value(port.mio25);
        const float at33 = value(port.mio33);
        const float load = value(port.load);
        const float chosen = standard == "LVCMOS18" ? at18 : standard == "LVCMOS25" ? at25 : at33;
        return (inUse ? chosen : 0.0f) * load;
    }

    float computeHarlAuxharlsysmonPower() const
    {
        const float voltage = Vccauxharl();
        const float running = ClockGating() == "DISABLED" ? 1.0f : 0.0f;
        const float bbr = findHarlData("CFG_BBR_TOP_DYNAMIC_VCCAUX_HARL");
        const float por = findHarlData("CFG_HARL_POR_TOP_DYNAMIC_VCCAUX_HARL");
        const float rtcSwitch = findHarlData("CFG_RTC_SPLYSW_DYNAMIC_VCCAUX_HARL");
        const float vgg = findHarlData("CFG_VGG_TOP_DYNAMIC_VCCAUX_HARL");
        const float glitch = findHarlData("CFG_GLITCH_DET_TOP_DYNAMIC_VCCAUX_HARL");
        return voltage > 0.0f ? bbr + por + running * rtcSwitch + running * vgg + running * glitch : 0.0f;
    }

    float computeHarlAmsauxpower() const
    {
        const float running = ClockGating() == "DISABLED" ? 1.0f : 0.0f;
        const float por = findHarlData("CFG_HARL_POR_TOP_DYNAMIC_VCCAUX");
        const float probe = findHarlData("CFG_PROBE_TOP_DYNAMIC_VCCAUX");
        const float vgg = findHarlData("CFG_VGG_TOP_DYNAMIC_VCCAUX");
        return running * (por + probe + vgg);
    }

    float computeHarlAmsvccsocpower() const
    {
        return findHarlData("CFG_HARL_POR_TOP_DYNAMIC_VCCINT_SOC");
    }

    float computeHarlAmsintpower() const
    {
        const float por = findHarlData("CFG_HARL_POR_TOP_DYNAMIC_VCCINT");
        const float probe = findHarlData("CFG_PROBE_TOP_DYNAMIC_VCCINT");
        const float glitch = findHarlData("CFG_GLITCH_DET_TOP_DYNAMIC_VCCINT");
        const float rtcShifter = findHarlData("CFG_RTC_LVLSH_DYNAMIC_VCCINT");
        const float rtcSwitch = findHarlData("CFG_RTC_SPLYSW_DYNAMIC_VCCINT");
        const float vgg = findHarlData("CFG_VGG_TOP_DYNAMIC_VCCINT");
        const float trng = findHarlData("TRNG_ANALOG_DYNAMIC_VCCINT");
        return por + probe + glitch + rtcShifter + rtcSwitch + vgg + trng;
    }

    float computeHarlAmsharlpower() const
    {
        return 2.0f * findHarlData("AMS_SATELLITE_PS_CORE_DYNAMIC_VCCINT_HARL");
    }
};

#include "framework/ZelmModelBodies.inc"
