#include "io/ZelmOrvaneSelvModel.h"

#include "framework/ZelmModelBlockImpl.h"
#include "io/ZelmBufferSheet.h"

#define ZELM_MODEL ZelmOrvaneSelvModel
#define ZELM_CELL_ROWS "io/ZelmOrvaneSelvCells.def"
#define ZELM_TABLE_ROWS "io/ZelmOrvaneSelvTables.def"

using zelm::ratioOrZero;
using zelm::io::square;

namespace {

using Params = ZelmOrvaneSelvParams;
using zelm::Key;

// An input standard with all that sets it apart. Templates, because only the model can name its sheet.
template <class Sheet>
struct InputOf {
    using Formula = float (Sheet::*)(const InputOf&) const;
    // How the receiver is terminated: the formulas of its levels, its direct current and where that turns into heat.
    struct Termination {
        Formula vol;
        Formula voh;
        Formula directCurrent;
        Formula onchip;
        Formula offchip;
    };
    enum Metric {
        acVccauxCurrent,
        acVccioCurrent,
        acVccoCurrent,
        dcVccauxCurrent,
        dcVccioCurrent,
        dcVccoCurrent,
        offchipPower,
        onchipPower,
        pw,
        voh,
        vol
    };

    Key name;
    Params::FloatEnum firstCell; // eleven cells in the order of Metric
    float swing = 1.0f;          // share of the divided supply that a level moves by
    const Termination& termination;
    float legs = 1.0f;           // resistors of a split termination: two of twice its value, else one
    float currentLines = 1.0f;   // lines that the termination current counts
    float heatLines = 1.0f;      // lines that its heat counts
    float acDerating = 1.0f;     // of the toggling core and auxiliary currents
    float acVccoDerating = 1.0f; // of the toggling termination current
    bool bankSupplied = true;    // which grows with the bank's supply instead
    bool evenDuty = false;       // high half of the time, whatever the table says
    bool lowPowerMipi = false;   // toggles at the low-power mode's own data rate

    constexpr Params::FloatEnum cellOf(Metric metric) const
    {
        return zelm::cellBehind(firstCell, metric);
    }
};

// An output standard with all that sets it apart.
template <class Sheet>
struct OutputOf {
    using Formula = float (Sheet::*)(const OutputOf&) const;
    // What the driver pulls against: the formulas of its levels, its direct current and where that turns into heat.
    struct Termination {
        Formula vol;
        Formula voh;
        Formula directCurrent;
        Formula onchip;
        Formula offchip;
    };
    // The predriver's currents.
    struct Predriver {
        Formula toggling;
        Formula direct;
    };
    enum Metric {
        acVccauxCurrent,
        acVccioCurrent,
        acVccoCurrent,
        acVccoPredrvCurrent,
        dcVccauxCurrent,
        dcVccioCurrent,
        dcVccoCurrent,
        dcVccoPredrvCurrent,
        offchipPower,
        onchipPower,
        pw,
        voh,
        vol
    };

    Key name;
    Params::FloatEnum firstCurrent; // eight cells in the order of Metric,
    Params::FloatEnum firstLevel;   // and five from offchipPower on
    const Termination& termination;
    float swing = 1.0f;       // share of the divided supply that VOL is
    float highDivisor = 1.0f; // the own supply over VOH
    Key package = "CPKG";     // capacitance of the package's trace
    const Predriver& predriver;
    Formula driverToggling;  // toggling current of the driver itself
    bool clampedCore = true; // core currents below 0 are fitting noise

    constexpr Params::FloatEnum cellOf(Metric metric) const
    {
        return metric < offchipPower ? zelm::cellBehind(firstCurrent, metric)
                                     : zelm::cellBehind(firstLevel, metric - offchipPower);
    }
};

} // namespace

// In the formulas of standards v is the standard's own supply, not the bank's.
struct ZelmOrvaneSelvModel::Sheet : ZelmBufferSheet<ZelmOrvaneSelvModel> {
#include "framework/ZelmAccessors.inc"

    using Input = InputOf<Sheet>;
    using Output = OutputOf<Sheet>;
    using InputPower = zelm::io::SelectedInput<Input, FloatCell>;
    using OutputPower = zelm::io::SelectedOutput<Output, FloatCell>;

    void pullOutputs() const
    {
        PowerScaling();
        VccioPower();
        VccauxPower();
        VccoPower();
        OffchipPower();
        IobFreq();
        IbufDcVccioPower();
        IbufAcVccioPower();
        IbufDcVccauxPower();
        IbufAcVccauxPower();
        IbufDcVccoPower();
        IbufAcVccoPower();
        IbufOffchipPower();
        NumInputs();
        ObufDcVccioPower();
        ObufAcVccioPower();
        ObufDcVccoPredrvPower();
        ObufAcVccoPredrvPower();
        ObufDcVccoPower();
        ObufAcVccoPower();
        ObufOffchipPower();
        ObufDcVccauxPower();
        ObufAcVccauxPower();
        NumOutputs();
        pullUnselectedCells();
    }

    // Hosts find all cells of all standards filled, also those that no output selects from.
    void pullUnselectedCells() const
    {
        for (const Input& standard : kInputs) {
            low(standard);
            high(standard);
            highShare(standard);
            directCurrent(standard);
        }
        for (const Output& standard : kOutputs) {
            low(standard);
            high(standard);
            highShare(standard);
            directCurrent(standard);
        }
    }

    // ---- Of each standard ----

    float table(const Input& standard, const Key& key) const
    {
        return findIbuf(standard.name, key);
    }

    float table(const Output& standard, const Key& key) const
    {
        return findObuf(standard.name, key);
    }

    template <class Standard>
    float supply(const Standard& standard) const
    {
        return table(standard, "VCCO");
    }

    template <class Standard>
    float highShare(const Standard& standard) const
    {
        return value(standard.cellOf(standard.pw));
    }

    // ---- Receivers: what their rows choose from; t is the termination in the receiver ----

    float dividedLow(const Input& standard) const
    {
        const float v = supply(standard);
        const float r = OffchipTermination();
        const float t = InputTermination();
        return zelm::io::dividedLow(v, r, t, standard.swing);
    }

    float boostedLow(const Input& standard) const
    {
        const float v = supply(standard);
        const float r = OffchipTermination();
        const float t = InputTermination();
        return r > 0.0f ? ratioOrZero(0.6f * v * r, 1.2f * t + r) : 0.0f;
    }

    float supplyHigh(const Input& standard) const
    {
        return supply(standard);
    }

    float boostedHigh(const Input& standard) const
    {
        const float v = supply(standard);
        const float r = OffchipTermination();
        const float t = InputTermination();
        const float divisor = 1.2f * t + r;
        return t + r > 0.0f ? ratioOrZero(0.6f * v * r, divisor) + ratioOrZero(2.16f * t, divisor) : 0.0f;
    }

    float groundedHigh(const Input& standard) const
    {
        const float v = supply(standard);
        const float r = OffchipTermination();
        const float t = InputTermination();
        return t + r > 0.0f ? v * standard.swing * t / (t + r) : 0.0f;
    }

    float terminationCurrent(const Input& standard) const
    {
        const float v = supply(standard);
        const float voh = high(standard);
        const float pw = highShare(standard);
        const float vol = low(standard);
        const float t = InputTermination();
        const float scale = 1000.0f * standard.currentLines;
        return t > 0.0f ? ((v - voh) * pw + (v - vol) * (1.0f - pw)) * scale / (standard.legs * t) : 0.0f;
    }

    float splitOnchip(const Input& standard) const
    {
        const float v = supply(standard);
        const float vol = low(standard);
        const float voh = high(standard);
        const float pw = highShare(standard);
        const float t = InputTermination();
        return zelm::io::splitHeat(v, vol, voh, pw, t, 1000.0f * standard.heatLines);
    }

    float pullUpOnchip(const Input& standard) const
    {
        const float v = supply(standard);
        const float vol = low(standard);
        const float pw = highShare(standard);
        const float t = InputTermination();
        return t > 0.0f ? (1.0f - pw) * (1000.0f * standard.heatLines) * square(v - vol) / t : 0.0f;
    }

    float boostedOnchip(const Input& standard) const
    {
        const float v = supply(standard);
        const float vol = low(standard);
        const float voh = high(standard);
        const float pw = highShare(standard);
        const float t = InputTermination();
        const float upper = 2.0f * t;
        const float lower = 3.0f * t;
        const float highHeat = ratioOrZero(square(v - voh), upper) + ratioOrZero(square(voh), lower);
        const float lowHeat = ratioOrZero(square(v - vol), upper) + ratioOrZero(square(vol), lower);
        return t > 0.0f ? (highHeat * pw + lowHeat * (1.0f - pw)) * 1000.0f : 0.0f;
    }

    float groundedOnchip(const Input& standard) const
    {
        const float voh = high(standard);
        const float pw = highShare(standard);
        const float t = InputTermination();
        return t > 0.0f ? standard.heatLines * square(voh) / t * 1000.0f * (1.0f - pw) : 0.0f;
    }

    float differentialOnchip(const Input& standard) const
    {
        return table(standard, "DIFFTERM");
    }

    float mipiOnchip(const Input& standard) const
    {
        return 4.0f * table(standard, "ODT") / 1000.0f;
    }

    float bankSupplyOnchip(const Input& standard) const
    {
        const float current = directCurrent(standard);
        const float vcco15 = Vcco15();
        return current * vcco15;
    }

    // ---- Metrics of the input standards ----

    float acVccauxCurrent(const Input& standard) const
    {
        return toggling(standard, "VCCAUX_AC") * standard.acDerating;
    }

    float acVccioCurrent(const Input& standard) const
    {
        return toggling(standard, "VCCINT_IO_AC") * standard.acDerating;
    }

    float acVccoCurrent(const Input& standard) const
    {
        const float current = toggling(standard, "VCCO_AC");
        const float vcco15 = Vcco15();
        return current * (standard.bankSupplied ? vcco15 : standard.acVccoDerating);
    }

    // The low-power mode toggles at its own rate, which takes the place of the frequency that the multiplier brings
    // in.
    float toggling(const Input& standard, const Key& key) const
    {
        const float current = table(standard, key);
        if (!standard.lowPowerMipi)
            return current;
        const float freq = IobFreq();
        const float rate = findMipiData("MIPI_LP_DATARATE");
        return freq > 0.0f ? current / freq * rate * 0.5f : 0.0f;
    }

    float dcVccauxCurrent(const Input& standard) const
    {
        const float current = table(standard, "VCCAUX_DC");
        const float vccaux = Vccaux();
        return standard.lowPowerMipi ? current + ratioOrZero(0.15f, vccaux) : current;
    }

    float dcVccioCurrent(const Input& standard) const
    {
        return table(standard, "VCCINT_IO_DC");
    }

    float dcVccoCurrent(const Input& standard) const
    {
        return (this->*standard.termination.directCurrent)(standard);
    }

    float offchipPower(const Input& standard) const
    {
        return (this->*standard.termination.offchip)(standard);
    }

    float onchipPower(const Input& standard) const
    {
        return (this->*standard.termination.onchip)(standard);
    }

    float pw(const Input& standard) const
    {
        return standard.evenDuty ? 0.5f : table(standard, "PW");
    }

    float voh(const Input& standard) const
    {
        return (this->*standard.termination.voh)(standard);
    }

    float vol(const Input& standard) const
    {
        return (this->*standard.termination.vol)(standard);
    }

    // ---- Drivers: what their rows choose from; z is the driver's impedance ----

    float offchip(const Output& standard) const
    {
        return value(standard.cellOf(standard.offchipPower));
    }

    static constexpr float kBoost = 240.0f; // ohms of the branch that lifts the levels of the VOH80 forms
    static float inParallelWithBoost(float z)
    {
        return ratioOrZero(kBoost * z, z + kBoost);
    }

    float dividedLow(const Output& standard) const
    {
        const float v = supply(standard);
        const float z = OutputImpedance();
        const float r = OffchipTermination();
        return z + r > 0.0f ? v * (z / (z + r)) * standard.swing : 0.0f;
    }

    float boostedLow(const Output& standard) const
    {
        const float v = supply(standard);
        const float z = OutputImpedance();
        const float r = OffchipTermination();
        return z + r > 0.0f ? ratioOrZero(v * z * r + 216.0f * z, z * r + kBoost * r + kBoost * z) : 0.0f;
    }

    float lvdsLow(const Output&) const
    {
        return 1.047f;
    }

    float supplyHigh(const Output& standard) const
    {
        return supply(standard);
    }

    float boostedHigh(const Output& standard) const
    {
        const float v = supply(standard);
        const float z = OutputImpedance();
        const float r = OffchipTermination();
        const float p = inParallelWithBoost(z);
        return z + r > 0.0f ? 0.9f * ratioOrZero(p, p + r) + v * ratioOrZero(r, p + r) : 0.0f;
    }

    float fractionHigh(const Output& standard) const
    {
        return supply(standard) / standard.highDivisor;
    }

    float lvdsHigh(const Output&) const
    {
        return 1.353f;
    }

    float splitCurrent(const Output& standard) const
    {
        const float v = supply(standard);
        const float z = OutputImpedance();
        const float r = OffchipTermination();
        const float pw = highShare(standard);
        return z + r > 0.0f ? v * 0.5f * 1000.0f / (z + r) * pw : 0.0f;
    }

    float boostedCurrent(const Output& standard) const
    {
        const float v = supply(standard);
        const float z = OutputImpedance();
        const float r = OffchipTermination();
        const float pw = highShare(standard);
        const float p = inParallelWithBoost(z);
        const float lowVolts = v - ratioOrZero(0.9f * z, z + r);
        const float lowOhms = ratioOrZero(z * r, z + r) + kBoost;
        const float lowCurrent = ratioOrZero((1.0f - pw) * lowVolts, lowOhms) * 1000.0f;
        const float highCurrent = ratioOrZero(pw * (v - 0.9f) * 1000.0f, p + r);
        return z + r > 0.0f ? lowCurrent + highCurrent : 0.0f;
    }

    float groundedCurrent(const Output& standard) const
    {
        const float v = supply(standard);
        const float z = OutputImpedance();
        const float r = OffchipTermination();
        const float pw = highShare(standard);
        return z + r > 0.0f ? v / (z + r) * 1000.0f * (1.0f - pw) : 0.0f;
    }

    float groundedTwiceCurrent(const Output& standard) const
    {
        const float v = supply(standard);
        const float z = OutputImpedance();
        const float r = OffchipTermination();
        const float pw = highShare(standard);
        const float ohms = z + ratioOrZero(z * r, z + r);
        return z + r > 0.0f ? ratioOrZero((1.0f - pw) * 1000.0f * v, ohms) : 0.0f;
    }

    float pushPullOnchip(const Output& standard) const
    {
        const float v = supply(standard);
        const float voh = high(standard);
        const float z = OutputImpedance();
        const float pw = highShare(standard);
        const float vol = low(standard);
        return z > 0.0f ? square(v - voh) / z * 1000.0f * pw + square(vol) / z * (1.0f - pw) * 1000.0f : 0.0f;
    }

    // The single-ended form's high level works through the driver and the boost branch side by side, the pair's
    // through the driver alone: the two were characterised apart.
    float boostedOnchip(const Output& standard) const
    {
        const float z = OutputImpedance();
        return boostedOnchipThrough(standard, inParallelWithBoost(z));
    }

    float boostedPairOnchip(const Output& standard) const
    {
        const float z = OutputImpedance();
        return boostedOnchipThrough(standard, z);
    }

    float boostedOnchipThrough(const Output& standard, float highOhms) const
    {
        const float v = supply(standard);
        const float voh = high(standard);
        const float pw = highShare(standard);
        const float vol = low(standard);
        const float z = OutputImpedance();
        const float highHeat = ratioOrZero(square(v - voh), highOhms) * 1000.0f * pw;
        const float lowHeat = ratioOrZero(square(vol), z) * (1.0f - pw) * 1000.0f;
        const float boostHeat = square(v - vol) / kBoost * (1.0f - pw) * 1000.0f;
        return z > 0.0f ? highHeat + lowHeat + boostHeat : 0.0f;
    }

    float groundedOnchip(const Output& standard) const
    {
        const float v = supply(standard);
        const float voh = high(standard);
        const float z = OutputImpedance();
        const float pw = highShare(standard);
        const float vol = low(standard);
        return z > 0.0f ? square(v - voh) / z * 1000.0f * (1.0f - pw) + square(vol) / z * pw * 1000.0f : 0.0f;
    }

    float groundedTwiceOnchip(const Output& standard) const
    {
        const float voh = high(standard);
        const float z = OutputImpedance();
        const float pw = highShare(standard);
        return z > 0.0f ? groundedOnchip(standard) + square(voh) / z * 1000.0f * (1.0f - pw) : 0.0f;
    }

    float remainderOnchip(const Output& standard) const
    {
        const float v = supply(standard);
        const float current = directCurrent(standard);
        const float onBoard = offchip(standard);
        return v * current - onBoard;
    }

    float lvdsOffchip(const Output& standard) const
    {
        const float voh = high(standard);
        const float vol = low(standard);
        return square(voh - vol) * 1000.0f / 100.0f;
    }

    float pairTerminationOffchip(const Output& standard) const
    {
        const float current = directCurrent(standard);
        const float ohms = table(standard, "TERM");
        return 0.5f * current * ohms * current * 0.5f / 1000.0f;
    }

    float mipiOffchip(const Output&) const
    {
        return 0.4f;
    }

    float byLoad(const Output& standard) const
    {
        const float pad = findCapData("CIO_HP");
        const float load = OutputLoad();
        const float package = findCapData(standard.package);
        const float current = table(standard, "VCCO_AC");
        const float characterisedLoad = table(standard, "OBUF_LOAD");
        return zelm::io::loadedCurrent(pad, load, package, current, characterisedLoad);
    }

    float byLoadIfDriven(const Output& standard) const
    {
        const float current = byLoad(standard);
        const float z = OutputImpedance();
        return z > 0.0f ? current : 0.0f;
    }

    // The impedance cancels, but for its rounding: as in the workbook.
    float byLoadOverImpedance(const Output& standard) const
    {
        const float current = byLoad(standard);
        const float z = OutputImpedance();
        return z > 0.0f ? current * z / z : 0.0f;
    }

    float byLoadAndImpedance(const Output& standard) const
    {
        const float current = byLoad(standard);
        const float characterised = table(standard, "RDRV");
        const float z = OutputImpedance();
        return z > 0.0f ? current * characterised / z : 0.0f;
    }

    float ifSupplied(const Output& standard) const
    {
        const float current = table(standard, "VCCO_AC");
        const float vcco15 = Vcco15();
        return vcco15 > 0.0f ? current : 0.0f;
    }

    float overSupply(const Output& standard) const
    {
        const float current = table(standard, "VCCO_AC");
        const float vcco15 = Vcco15();
        return vcco15 > 0.0f ? current / vcco15 : 0.0f;
    }

    // The predrivers were characterised with drivers of 40 ohms.
    float predriverByImpedance(const Output& standard) const
    {
        const float current = table(standard, "VCCO_PREDRV_AC");
        const float z = OutputImpedance();
        return z > 0.0f ? current * 40.0f / z : 0.0f;
    }

    // The impedance cancels, but for its rounding: as in the workbook.
    float predriverOverImpedance(const Output& standard) const
    {
        const float current = table(standard, "VCCO_PREDRV_AC");
        const float z = OutputImpedance();
        return z > 0.0f ? current * z / z : 0.0f;
    }

    float predriverTabulated(const Output& standard) const
    {
        return table(standard, "VCCO_PREDRV_AC");
    }

    float predriverDirect(const Output& standard) const
    {
        return table(standard, "VCCO_PREDRV_DC");
    }

    float predriverDirectClamped(const Output& standard) const
    {
        return MAX(0.0f, table(standard, "VCCO_PREDRV_DC"));
    }

    // ---- Metrics of the output standards ----

    float acVccauxCurrent(const Output& standard) const
    {
        return table(standard, "VCCAUX_AC");
    }

    float acVccioCurrent(const Output& standard) const
    {
        const float current = table(standard, "VCCINT_IO_AC");
        return standard.clampedCore ? MAX(0.0f, current) : current;
    }

    float acVccoCurrent(const Output& standard) const
    {
        return (this->*standard.driverToggling)(standard);
    }

    float acVccoPredrvCurrent(const Output& standard) const
    {
        return (this->*standard.predriver.toggling)(standard);
    }

    float dcVccauxCurrent(const Output& standard) const
    {
        return table(standard, "VCCAUX_DC");
    }

    float dcVccioCurrent(const Output& standard) const
    {
        const float current = table(standard, "VCCINT_IO_DC");
        return standard.clampedCore ? MAX(0.0f, current) : current;
    }

    float dcVccoCurrent(const Output& standard) const
    {
        return (this->*standard.termination.directCurrent)(standard);
    }

    float dcVccoPredrvCurrent(const Output& standard) const
    {
        return (this->*standard.predriver.direct)(standard);
    }

    float offchipPower(const Output& standard) const
    {
        return (this->*standard.termination.offchip)(standard);
    }

    float onchipPower(const Output& standard) const
    {
        return (this->*standard.termination.onchip)(standard);
    }

    float pw(const Output& standard) const
    {
        return table(standard, "PW");
    }

    float voh(const Output& standard) const
    {
        return (this->*standard.termination.voh)(standard);
    }

    float vol(const Output& standard) const
    {
        return (this->*standard.termination.vol)(standard);
    }

    // ---- Cells of the group ----

    float computePowerScaling() const
    {
        const float vccIo = VccIo();
        const float simVoltage = findSimData("SIM_VOLTAGE");
        return ratioOrZero(vccIo, simVoltage);
    }

    float computeVccioPower() const
    {
        return corePower();
    }

    float computeVccoPower() const
    {
        const float inputDc = IbufDcVccoPower();
        const float inputAc = IbufAcVccoPower();
        const float outputDc = ObufDcVccoPower();
        const float outputAc = ObufAcVccoPower();
        const float predriverDc = ObufDcVccoPredrvPower();
        const float predriverAc = ObufAcVccoPredrvPower();
        return total(inputDc + inputAc, outputDc + outputAc + predriverDc + predriverAc);
    }

    // ---- Multipliers ----

    bool isMipiInput() const
    {
        return InputIoStandard().text().starts_with("MIPI");
    }

    float computeIbufEnableFactor() const
    {
        const bool mipi = isMipiInput();
        const float disable = IbufDisable();
        // A MIPI receiver stays powered for 70 percent of the time at least.
        return 1.0f - (mipi ? MIN(disable, 0.3f) : disable);
    }

    bool receives() const
    {
        const Key& direction = IoDirection();
        return direction == "BIDI" || direction == "BIDI_INPUT" || direction == "INPUT";
    }

    // Share of time with the input buffer on.
    float inputEnable() const
    {
        const float enable = IbufEnableFactor();
        return receives() ? enable : 1.0f;
    }

    // Share of time with the input termination on.
    float terminationEnable() const
    {
        const float disable = TermDisable();
        return receives() ? 1.0f - disable : 1.0f;
    }

    bool drivesLowPowerMipi() const
    {
        return OutputIoStandard().text().ends_with("DPHY_LP");
    }

    // Share of time with the output driven; the low-power MIPI driver works while the fast one is off.
    float outputEnable() const
    {
        const float enable = OutputEnable();
        return drivesLowPowerMipi() ? 1.0f - enable : enable;
    }

    // Cycles of the output while driven; the low-power MIPI driver has a data rate of its own.
    float outputToggles() const
    {
        const float enable = OutputEnable();
        const float rate = findMipiData("MIPI_LP_DATARATE");
        const float freq = IobFreq();
        return drivesLowPowerMipi() ? (1.0f - enable) * rate * 0.5f : freq * enable;
    }

    float outputLines() const
    {
        return OutputIoStandard().text().starts_with("DIFF") ? 2.0f : 1.0f;
    }

    float computeIbufDcVccioMultiplier() const
    {
        const float enable = inputEnable();
        const float vccIo = VccIo();
        const float scaling = PowerScaling();
        return enable * vccIo * scaling;
    }

    float computeIbufAcVccioMultiplier() const
    {
        const float enable = inputEnable();
        const float vccIo = VccIo();
        const float freq = IobFreq();
        const float scaling = PowerScaling();
        return enable * vccIo * freq * scaling;
    }

    float computeIbufDcVccauxMultiplier() const
    {
        const float enable = inputEnable();
        const float vccaux = Vccaux();
        return enable * vccaux;
    }

    float computeIbufAcVccauxMultiplier() const
    {
        const float enable = inputEnable();
        const float freq = IobFreq();
        const float vccaux = Vccaux();
        return enable * freq * vccaux;
    }

    float computeIbufAcVccoMultiplier() const
    {
        const float enable = inputEnable();
        const float freq = IobFreq();
        const float vcco15 = Vcco15();
        return enable * freq * vcco15;
    }

    float computeIbufDcVccoMultiplier() const
    {
        return terminationEnable();
    }

    float computeIbufOffchipMultiplier() const
    {
        return terminationEnable();
    }

    float computeObufDcVccioMultiplier() const
    {
        const float enable = outputEnable();
        const float vccIo = VccIo();
        const float lines = outputLines();
        const float scaling = PowerScaling();
        return enable * vccIo * lines * scaling;
    }

    float computeObufAcVccioMultiplier() const
    {
        const float toggles = outputToggles();
        const float vccIo = VccIo();
        const float lines = outputLines();
        const float scaling = PowerScaling();
        return toggles * vccIo * lines * scaling;
    }

    float computeObufDcVccoPredrvMultiplier() const
    {
        const float enable = outputEnable();
        const float vcco15 = Vcco15();
        const float lines = outputLines();
        return enable * vcco15 * lines;
    }

    float computeObufAcVccoPredrvMultiplier() const
    {
        const float toggles = outputToggles();
        const float vcco15 = Vcco15();
        const float lines = outputLines();
        return toggles * vcco15 * lines;
    }

    float computeObufDcVccoMultiplier() const
    {
        const float enable = outputEnable();
        const float lines = outputLines();
        return enable * lines;
    }

    float computeObufAcVccoMultiplier() const
    {
        const float toggles = outputToggles();
        const float lines = outputLines();
        const float vcco15 = Vcco15();
        return toggles * lines * vcco15;
    }

    float computeObufOffchipMultiplier() const
    {
        const float enable = outputEnable();
        const float lines = outputLines();
        return enable * lines;
    }

    // ---- Rows ----

    // clang-format off
    // How receivers are terminated:                      VOL                 VOH                     direct current              heat on chip                heat on the board
    static constexpr Input::Termination kReceiveBare     {&Sheet::zero,       &Sheet::zero,           &Sheet::zero,               &Sheet::bankSupplyOnchip,   &Sheet::remainderOffchip};
    static constexpr Input::Termination kReceiveSplit    {&Sheet::dividedLow, &Sheet::complementHigh, &Sheet::terminationCurrent, &Sheet::splitOnchip,        &Sheet::remainderOffchip};
    static constexpr Input::Termination kReceiveCold     {&Sheet::dividedLow, &Sheet::complementHigh, &Sheet::terminationCurrent, &Sheet::zero,               &Sheet::zero};
    static constexpr Input::Termination kReceivePullUp   {&Sheet::dividedLow, &Sheet::supplyHigh,     &Sheet::terminationCurrent, &Sheet::pullUpOnchip,       &Sheet::remainderOffchip};
    static constexpr Input::Termination kReceiveBoosted  {&Sheet::boostedLow, &Sheet::boostedHigh,    &Sheet::terminationCurrent, &Sheet::boostedOnchip,      &Sheet::remainderOffchip};
    static constexpr Input::Termination kReceiveGrounded {&Sheet::zero,       &Sheet::groundedHigh,   &Sheet::zero,               &Sheet::groundedOnchip,     &Sheet::remainderOffchip};
    static constexpr Input::Termination kReceiveLvds     {&Sheet::zero,       &Sheet::zero,           &Sheet::zero,               &Sheet::differentialOnchip, &Sheet::remainderOffchip};
    static constexpr Input::Termination kReceiveMipi     {&Sheet::zero,       &Sheet::zero,           &Sheet::tabulatedCurrent,   &Sheet::mipiOnchip,         &Sheet::remainderOffchip};
    static constexpr Input::Termination kReceiveLowPower {&Sheet::zero,       &Sheet::zero,           &Sheet::tabulatedCurrent,   &Sheet::bankSupplyOnchip,   &Sheet::remainderOffchip};

    // What drivers pull against:                             VOL                 VOH                     direct current                heat on chip                 heat on the board
    static constexpr Output::Termination kDriveBare          {&Sheet::zero,       &Sheet::zero,           &Sheet::zero,                 &Sheet::zero,                &Sheet::zero};
    static constexpr Output::Termination kDriveSplit         {&Sheet::dividedLow, &Sheet::complementHigh, &Sheet::splitCurrent,         &Sheet::pushPullOnchip,      &Sheet::remainderOffchip};
    static constexpr Output::Termination kDrivePullUp        {&Sheet::dividedLow, &Sheet::supplyHigh,     &Sheet::zero,                 &Sheet::pushPullOnchip,      &Sheet::remainderOffchip};
    static constexpr Output::Termination kDriveBoosted       {&Sheet::boostedLow, &Sheet::boostedHigh,    &Sheet::boostedCurrent,       &Sheet::boostedOnchip,       &Sheet::remainderOffchip};
    static constexpr Output::Termination kDriveBoostedPair   {&Sheet::boostedLow, &Sheet::boostedHigh,    &Sheet::boostedCurrent,       &Sheet::boostedPairOnchip,   &Sheet::remainderOffchip};
    static constexpr Output::Termination kDriveGrounded      {&Sheet::zero,       &Sheet::fractionHigh,   &Sheet::groundedCurrent,      &Sheet::groundedOnchip,      &Sheet::remainderOffchip};
    static constexpr Output::Termination kDriveGroundedTwice {&Sheet::zero,       &Sheet::fractionHigh,   &Sheet::groundedTwiceCurrent, &Sheet::groundedTwiceOnchip, &Sheet::remainderOffchip};
    static constexpr Output::Termination kDriveLvds          {&Sheet::lvdsLow,    &Sheet::lvdsHigh,       &Sheet::tabulatedCurrent,     &Sheet::remainderOnchip,     &Sheet::lvdsOffchip};
    static constexpr Output::Termination kDriveLvdsFir       {&Sheet::zero,       &Sheet::zero,           &Sheet::tabulatedCurrent,     &Sheet::remainderOnchip,     &Sheet::pairTerminationOffchip};
    static constexpr Output::Termination kDriveMipi          {&Sheet::zero,       &Sheet::zero,           &Sheet::tabulatedCurrent,     &Sheet::remainderOnchip,     &Sheet::mipiOffchip};
    static constexpr Output::Termination kDriveLowPower      {&Sheet::zero,       &Sheet::zero,           &Sheet::tabulatedCurrent,     &Sheet::zero,                &Sheet::zero};

    // Predrivers:                                            toggling                        direct
    static constexpr Output::Predriver kPredriverByImpedance {&Sheet::predriverByImpedance,   &Sheet::predriverDirectClamped};
    static constexpr Output::Predriver kPredriverTabulated   {&Sheet::predriverTabulated,     &Sheet::predriverDirectClamped};
    static constexpr Output::Predriver kPredriverPair        {&Sheet::predriverTabulated,     &Sheet::predriverDirect};
    static constexpr Output::Predriver kPredriverLvstl       {&Sheet::predriverTabulated,     &Sheet::zero};
    static constexpr Output::Predriver kPredriverLvstl06     {&Sheet::predriverOverImpedance, &Sheet::zero};

#define INPUT(S) .name = #S, .firstCell = Params::IBUF_##S##_AC_VCCAUX_CURRENT
    static constexpr Input kInputs[] = {
        {INPUT(LVDS15),                             .termination = kReceiveLvds},
        // Its current counts one line, unlike that of every other pair.
        {INPUT(DIFF_HSUL_12),        .swing = 0.5f, .termination = kReceiveCold,     .legs = 2},
        {INPUT(DIFF_HSTL_I),         .swing = 0.5f, .termination = kReceiveSplit,    .legs = 2, .currentLines = 2, .heatLines = 2},
        {INPUT(DIFF_SSTL15_VOH75),   .swing = 0.5f, .termination = kReceiveSplit,    .legs = 2, .currentLines = 2, .heatLines = 2},
        // Its heat counts one line, unlike its current.
        {INPUT(DIFF_SSTL15_VOH80),                  .termination = kReceiveBoosted,  .legs = 2, .currentLines = 2},
        {INPUT(DIFF_SSTL135),        .swing = 0.5f, .termination = kReceiveSplit,    .legs = 2, .currentLines = 2, .heatLines = 2},
        {INPUT(DIFF_HSTL_I_12),      .swing = 0.5f, .termination = kReceiveSplit,    .legs = 2, .currentLines = 2, .heatLines = 2},
        {INPUT(DIFF_SSTL12),         .swing = 0.5f, .termination = kReceiveSplit,    .legs = 2, .currentLines = 2, .heatLines = 2},
        {INPUT(DIFF_POD10),                         .termination = kReceivePullUp,              .currentLines = 2, .heatLines = 2},
        {INPUT(DIFF_POD12),                         .termination = kReceivePullUp,              .currentLines = 2, .heatLines = 2},
        {INPUT(HSUL_12),             .swing = 0.5f, .termination = kReceiveCold,     .legs = 2},
        {INPUT(HSTL_I),              .swing = 0.5f, .termination = kReceiveSplit,    .legs = 2},
        {INPUT(SSTL15_VOH75),        .swing = 0.5f, .termination = kReceiveSplit,    .legs = 2},
        {INPUT(SSTL15_VOH80),                       .termination = kReceiveBoosted,  .legs = 2},
        {INPUT(SSTL135),             .swing = 0.5f, .termination = kReceiveSplit,    .legs = 2},
        {INPUT(HSTL_I_12),           .swing = 0.5f, .termination = kReceiveSplit,    .legs = 2},
        {INPUT(SSTL12),              .swing = 0.5f, .termination = kReceiveSplit,    .legs = 2},
        // The single-ended POD and the controlled-impedance receivers are derated; the pairs of POD are not.
        {INPUT(POD10),                              .termination = kReceivePullUp,   .acDerating = 0.93f, .acVccoDerating = 0.93f, .bankSupplied = false},
        {INPUT(POD12),                              .termination = kReceivePullUp,   .acDerating = 0.93f, .acVccoDerating = 0.93f, .bankSupplied = false},
        {INPUT(LVDCI_15),                           .termination = kReceivePullUp,   .acDerating = 0.93f,                          .bankSupplied = false, .evenDuty = true},
        {INPUT(HSLVDCI_15),                         .termination = kReceivePullUp,   .acDerating = 0.93f,                          .bankSupplied = false, .evenDuty = true},
        {INPUT(LVCMOS15),                           .termination = kReceiveBare},
        {INPUT(LVCMOS12),                           .termination = kReceiveBare},
        {INPUT(MIPI_DPHY_DCI_HS),                   .termination = kReceiveMipi,                                                   .bankSupplied = false},
        {INPUT(MIPI_DPHY_LP),                       .termination = kReceiveLowPower,                                               .bankSupplied = false, .lowPowerMipi = true},
        {INPUT(LVSTL06_12),          .swing = 0.5f, .termination = kReceiveGrounded},
        {INPUT(DIFF_LVSTL06_12),     .swing = 0.5f, .termination = kReceiveGrounded,            .heatLines = 2},
        {INPUT(LVSTL_11_VOH33),                     .termination = kReceiveGrounded},
        {INPUT(DIFF_LVSTL_11_VOH33),                .termination = kReceiveGrounded,            .heatLines = 2},
        {INPUT(LVSTL_11_VOH50),                     .termination = kReceiveGrounded},
        {INPUT(DIFF_LVSTL_11_VOH50),                .termination = kReceiveGrounded,            .heatLines = 2},
    };
#undef INPUT

#define OUTPUT(S) .name = #S, .firstCurrent = Params::OBUF_##S##_AC_VCCAUX_CURRENT, .firstLevel = Params::OBUF_##S##_OFFCHIP_POWER
    static constexpr Output kOutputs[] = {
        {OUTPUT(SSTL12),              .termination = kDriveSplit,         .swing = 0.5f,    .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &Sheet::byLoad},
        {OUTPUT(LVDS15),              .termination = kDriveLvds,                            .package = "CPKG",    .predriver = kPredriverPair,        .driverToggling = &Sheet::ifSupplied},
        {OUTPUT(LVDS15_FIR),          .termination = kDriveLvdsFir,                         .package = "CPKG",    .predriver = kPredriverPair,        .driverToggling = &Sheet::overSupply},
        {OUTPUT(DIFF_HSUL_12),        .termination = kDriveBare,                            .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &Sheet::byLoad}, // in the fast package, unlike the single-ended form
        {OUTPUT(DIFF_HSTL_I),         .termination = kDriveSplit,         .swing = 0.5f,    .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &Sheet::byLoad},
        {OUTPUT(DIFF_SSTL15_VOH75),   .termination = kDriveSplit,         .swing = 0.5f,    .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &Sheet::byLoad},
        {OUTPUT(DIFF_SSTL15_VOH80),   .termination = kDriveBoostedPair,                     .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &Sheet::byLoad},
        {OUTPUT(DIFF_SSTL135),        .termination = kDriveSplit,         .swing = 0.5f,    .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &Sheet::byLoad},
        {OUTPUT(DIFF_HSTL_I_12),      .termination = kDriveSplit,         .swing = 0.5f,    .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &Sheet::byLoad},
        {OUTPUT(DIFF_SSTL12),         .termination = kDriveSplit,         .swing = 0.5f,    .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &Sheet::byLoad},
        {OUTPUT(DIFF_POD10),          .termination = kDrivePullUp,                          .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &Sheet::byLoad},
        {OUTPUT(DIFF_POD12),          .termination = kDrivePullUp,                          .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &Sheet::byLoad},
        {OUTPUT(DIFF_POD12_FIR),      .termination = kDrivePullUp,                          .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &Sheet::byLoad},
        {OUTPUT(HSUL_12),             .termination = kDriveBare,                            .package = "CPKG_LS", .predriver = kPredriverByImpedance, .driverToggling = &Sheet::byLoad},
        {OUTPUT(HSTL_I),              .termination = kDriveSplit,         .swing = 0.5f,    .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &Sheet::byLoad},
        {OUTPUT(SSTL15_VOH75),        .termination = kDriveSplit,         .swing = 0.5f,    .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &Sheet::byLoad},
        {OUTPUT(SSTL15_VOH80),        .termination = kDriveBoosted,                         .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &Sheet::byLoad},
        {OUTPUT(SSTL135),             .termination = kDriveSplit,         .swing = 0.5f,    .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &Sheet::byLoad},
        {OUTPUT(HSTL_I_12),           .termination = kDriveSplit,         .swing = 0.5f,    .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &Sheet::byLoad},
        {OUTPUT(POD10),               .termination = kDrivePullUp,                          .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &Sheet::byLoad},
        {OUTPUT(POD12),               .termination = kDrivePullUp,                          .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &Sheet::byLoadAndImpedance}, // the only POD characterised over its impedance
        {OUTPUT(POD12_FIR),           .termination = kDrivePullUp,                          .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &Sheet::byLoad},
        {OUTPUT(HSLVDCI_15),          .termination = kDriveBare,                            .package = "CPKG_LS", .predriver = kPredriverByImpedance, .driverToggling = &Sheet::byLoad},
        {OUTPUT(LVDCI_15),            .termination = kDriveBare,                            .package = "CPKG_LS", .predriver = kPredriverByImpedance, .driverToggling = &Sheet::byLoad},
        {OUTPUT(LVCMOS15_2),          .termination = kDriveBare,                            .package = "CPKG_LS", .predriver = kPredriverTabulated,   .driverToggling = &Sheet::byLoad},
        {OUTPUT(LVCMOS15_4),          .termination = kDriveBare,                            .package = "CPKG_LS", .predriver = kPredriverTabulated,   .driverToggling = &Sheet::byLoad},
        {OUTPUT(LVCMOS15_6),          .termination = kDriveBare,                            .package = "CPKG_LS", .predriver = kPredriverTabulated,   .driverToggling = &Sheet::byLoad},
        {OUTPUT(LVCMOS15_8),          .termination = kDriveBare,                            .package = "CPKG_LS", .predriver = kPredriverTabulated,   .driverToggling = &Sheet::byLoad},
        {OUTPUT(LVCMOS15_12),         .termination = kDriveBare,                            .package = "CPKG_LS", .predriver = kPredriverTabulated,   .driverToggling = &Sheet::byLoad},
        {OUTPUT(LVCMOS12_2),          .termination = kDriveBare,                            .package = "CPKG_LS", .predriver = kPredriverTabulated,   .driverToggling = &Sheet::byLoad},
        {OUTPUT(LVCMOS12_4),          .termination = kDriveBare,                            .package = "CPKG_LS", .predriver = kPredriverTabulated,   .driverToggling = &Sheet::byLoad},
        {OUTPUT(LVCMOS12_6),          .termination = kDriveBare,                            .package = "CPKG_LS", .predriver = kPredriverTabulated,   .driverToggling = &Sheet::byLoad},
        {OUTPUT(LVCMOS12_8),          .termination = kDriveBare,                            .package = "CPKG_LS", .predriver = kPredriverTabulated,   .driverToggling = &Sheet::byLoad},
        {OUTPUT(MIPI_DPHY_DCI_HS),    .termination = kDriveMipi,                            .package = "CPKG",    .predriver = kPredriverPair,        .driverToggling = &Sheet::byLoad, .clampedCore = false},
        {OUTPUT(MIPI_DPHY_LP),        .termination = kDriveLowPower,                        .package = "CPKG_LS", .predriver = kPredriverPair,        .driverToggling = &Sheet::byLoad, .clampedCore = false},
        {OUTPUT(LVSTL06_12),          .termination = kDriveGroundedTwice, .highDivisor = 4, .package = "CPKG",    .predriver = kPredriverLvstl06,     .driverToggling = &Sheet::byLoadOverImpedance},
        {OUTPUT(DIFF_LVSTL06_12),     .termination = kDriveGroundedTwice, .highDivisor = 4, .package = "CPKG",    .predriver = kPredriverLvstl06,     .driverToggling = &Sheet::byLoadOverImpedance},
        {OUTPUT(LVSTL_11_VOH33),      .termination = kDriveGrounded,      .highDivisor = 3, .package = "CPKG",    .predriver = kPredriverLvstl,       .driverToggling = &Sheet::byLoadIfDriven},
        {OUTPUT(DIFF_LVSTL_11_VOH33), .termination = kDriveGrounded,      .highDivisor = 3, .package = "CPKG",    .predriver = kPredriverLvstl,       .driverToggling = &Sheet::byLoadIfDriven},
        {OUTPUT(LVSTL_11_VOH50),      .termination = kDriveGrounded,      .highDivisor = 2, .package = "CPKG",    .predriver = kPredriverLvstl,       .driverToggling = &Sheet::byLoadIfDriven},
        {OUTPUT(DIFF_LVSTL_11_VOH50), .termination = kDriveGrounded,      .highDivisor = 2, .package = "CPKG",    .predriver = kPredriverLvstl,       .driverToggling = &Sheet::byLoadIfDriven},
    };
#undef OUTPUT

    static constexpr InputPower kIbufAcVccaux{Params::IBUF_AC_VCCAUX_POWER, Input::acVccauxCurrent, Params::IBUF_AC_VCCAUX_MULTIPLIER};
    static constexpr InputPower kIbufAcVccio {Params::IBUF_AC_VCCIO_POWER,  Input::acVccioCurrent,  Params::IBUF_AC_VCCIO_MULTIPLIER};
    static constexpr InputPower kIbufAcVcco  {Params::IBUF_AC_VCCO_POWER,   Input::acVccoCurrent,   Params::IBUF_AC_VCCO_MULTIPLIER};
    static constexpr InputPower kIbufDcVccaux{Params::IBUF_DC_VCCAUX_POWER, Input::dcVccauxCurrent, Params::IBUF_DC_VCCAUX_MULTIPLIER};
    static constexpr InputPower kIbufDcVccio {Params::IBUF_DC_VCCIO_POWER,  Input::dcVccioCurrent,  Params::IBUF_DC_VCCIO_MULTIPLIER};
    static constexpr InputPower kIbufDcVcco  {Params::IBUF_DC_VCCO_POWER,   Input::onchipPower,     Params::IBUF_DC_VCCO_MULTIPLIER};
    static constexpr InputPower kIbufOffchip {Params::IBUF_OFFCHIP_POWER,   Input::offchipPower,    Params::IBUF_OFFCHIP_MULTIPLIER};

    // The auxiliary currents of outputs reach the power unscaled by voltage, frequency or enable: as in the workbook.
    static constexpr OutputPower kObufAcVccaux    {Params::OBUF_AC_VCCAUX_POWER,      Output::acVccauxCurrent};
    static constexpr OutputPower kObufAcVccio     {Params::OBUF_AC_VCCIO_POWER,       Output::acVccioCurrent,      Params::OBUF_AC_VCCIO_MULTIPLIER};
    static constexpr OutputPower kObufAcVcco      {Params::OBUF_AC_VCCO_POWER,        Output::acVccoCurrent,       Params::OBUF_AC_VCCO_MULTIPLIER};
    static constexpr OutputPower kObufAcVccoPredrv{Params::OBUF_AC_VCCO_PREDRV_POWER, Output::acVccoPredrvCurrent, Params::OBUF_AC_VCCO_PREDRV_MULTIPLIER};
    static constexpr OutputPower kObufDcVccaux    {Params::OBUF_DC_VCCAUX_POWER,      Output::dcVccauxCurrent};
    static constexpr OutputPower kObufDcVccio     {Params::OBUF_DC_VCCIO_POWER,       Output::dcVccioCurrent,      Params::OBUF_DC_VCCIO_MULTIPLIER};
    static constexpr OutputPower kObufDcVcco      {Params::OBUF_DC_VCCO_POWER,        Output::onchipPower,         Params::OBUF_DC_VCCO_MULTIPLIER};
    static constexpr OutputPower kObufDcVccoPredrv{Params::OBUF_DC_VCCO_PREDRV_POWER, Output::dcVccoPredrvCurrent, Params::OBUF_DC_VCCO_PREDRV_MULTIPLIER};
    static constexpr OutputPower kObufOffchip     {Params::OBUF_OFFCHIP_POWER,        Output::offchipPower,        Params::OBUF_OFFCHIP_MULTIPLIER};

    static consteval const Input& input(std::string_view key)
    {
        return zelm::io::row(kInputs, key);
    }
    static consteval const Output& output(std::string_view key)
    {
        return zelm::io::row(kOutputs, key);
    }
    // clang-format on
};

#include "framework/ZelmModelBodies.inc"
