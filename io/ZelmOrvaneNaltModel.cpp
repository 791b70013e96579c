#include "io/ZelmOrvaneNaltModel.h"

#include "framework/ZelmModelBlockImpl.h"
#include "io/ZelmBufferSheet.h"

#define ZELM_MODEL ZelmOrvaneNaltModel
#define ZELM_CELL_ROWS "io/ZelmOrvaneNaltCells.def"
#define ZELM_TABLE_ROWS "io/ZelmOrvaneNaltTables.def"

namespace {

using Params = ZelmOrvaneNaltParams;
using zelm::Key;

// What is computed for each standard, in the order of its cells.
struct OfStandard {
    enum Metric {
        acVccauxCurrent,
        acVccioCurrent,
        acVccoCurrent,
        dcVccauxCurrent,
        dcVccioCurrent,
        dcVccoCurrent,
        offchipPower,
        onchipPower,
        voh,
        vol
    };
};

// An input standard with all that sets it apart. Templates, because only the model can name its sheet.
template <class Sheet>
struct InputOf {
    using Metric = OfStandard::Metric;
    using enum OfStandard::Metric;
    using Formula = float (Sheet::*)(const InputOf&) const;
    // How the receiver is terminated: the formulas of its levels, its direct current and where that turns into heat.
    struct Termination {
        Formula vol;
        Formula voh;
        Formula directCurrent;
        Formula onchip;
        Formula offchip;
    };

    Key name;
    Params::FloatEnum firstCell; // ten cells in the order of Metric
    float lines = 1.0f;          // lines that the termination serves
    const Termination& termination;

    constexpr Params::FloatEnum cellOf(Metric metric) const
    {
        return zelm::cellBehind(firstCell, metric);
    }
};

// An output standard with all that sets it apart.
template <class Sheet>
struct OutputOf {
    using Metric = OfStandard::Metric;
    using enum OfStandard::Metric;
    using Formula = float (Sheet::*)(const OutputOf&) const;

    Key name;
    Params::FloatEnum firstCell; // ten cells in the order of Metric
    Formula offchip;             // heat on the board

    constexpr Params::FloatEnum cellOf(Metric metric) const
    {
        return zelm::cellBehind(firstCell, metric);
    }
};

} // namespace

// In the formulas of standards v is the bank's supply.
struct ZelmOrvaneNaltModel::Sheet : ZelmBufferSheet<ZelmOrvaneNaltModel> {
#include "framework/ZelmAccessors.inc"

    using Input = InputOf<Sheet>;
    using Output = OutputOf<Sheet>;
    using InputPower = zelm::io::SelectedInput<Input, FloatCell>;
    using OutputPower = zelm::io::SelectedOutput<Output, FloatCell>;

    void pullOutputs() const
    {
        VccintPower();
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
        ObufDcVccauxPower();
        ObufAcVccauxPower();
        ObufDcVccoPower();
        ObufAcVccoPower();
        ObufOffchipPower();
        NumOutputs();
        pullUnselectedCells();
    }

    // Hosts find all cells of all standards filled, also those that no output selects from.
    void pullUnselectedCells() const
    {
        for (const Input& standard : kInputs) {
            low(standard);
            high(standard);
            directCurrent(standard);
        }
        for (const Output& standard : kOutputs) {
            low(standard);
            high(standard);
            onchip(standard);
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
    float supply(const Standard&) const
    {
        return Vcco();
    }

    // ---- Receivers: what their rows choose from; t is the termination in the receiver ----

    float dividedLow(const Input& standard) const
    {
        const float v = supply(standard);
        const float r = OffchipTermination();
        const float t = InputTermination();
        return zelm::io::dividedLow(v, r, t, 0.5f);
    }

    // Counts both levels alike, whatever the share of time at the high one, and whether the buffer is on or off.
    float terminationCurrent(const Input& standard) const
    {
        const float v = supply(standard);
        const float voh = high(standard);
        const float vol = low(standard);
        const float t = InputTermination();
        return t > 0.0f ? ((v - voh) * 0.5f + (v - vol) * 0.5f) / (2.0f * t) * (1000.0f * standard.lines) : 0.0f;
    }

    // Heats on while the buffer is off: the enable factor is missing here, as in the workbook.
    float splitOnchip(const Input& standard) const
    {
        const float v = supply(standard);
        const float vol = low(standard);
        const float voh = high(standard);
        const float pw = table(standard, "PW");
        const float t = InputTermination();
        return zelm::io::splitHeat(v, vol, voh, pw, t, 1000.0f * standard.lines);
    }

    float enabledRemainder(const Input& standard) const
    {
        return enabled(remainderOffchip(standard));
    }

    // ---- Metrics of the input standards ----

    float enabled(float current) const
    {
        return current * IbufEnableFactor();
    }

    float acVccauxCurrent(const Input& standard) const
    {
        return enabled(table(standard, "VCCAUX_AC"));
    }

    float acVccioCurrent(const Input& standard) const
    {
        return enabled(table(standard, "VCCINT_IO_AC"));
    }

    float acVccoCurrent(const Input& standard) const
    {
        const float current = table(standard, "VCCO_AC");
        const float vcco = Vcco();
        return enabled(current * vcco);
    }

    float dcVccauxCurrent(const Input& standard) const
    {
        return enabled(table(standard, "VCCAUX_DC"));
    }

    float dcVccioCurrent(const Input& standard) const
    {
        return enabled(table(standard, "VCCINT_IO_DC"));
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

    float voh(const Input& standard) const
    {
        return (this->*standard.termination.voh)(standard);
    }

    float vol(const Input& standard) const
    {
        return (this->*standard.termination.vol)(standard);
    }

    // ---- Metrics of the output standards; z is the driver's impedance ----

    float acVccauxCurrent(const Output& standard) const
    {
        return table(standard, "VCCAUX_AC");
    }

    float acVccioCurrent(const Output& standard) const
    {
        return table(standard, "VCCINT_IO_AC");
    }

    float acVccoCurrent(const Output& standard) const
    {
        const float pad = findCapData("CIO_HP");
        const float load = OutputLoad();
        const float package = findCapData("CPKG");
        const float current = table(standard, "VCCO_AC");
        const float characterisedLoad = table(standard, "OBUF_LOAD");
        return zelm::io::loadedCurrent(pad, load, package, current, characterisedLoad);
    }

    float dcVccauxCurrent(const Output& standard) const
    {
        return table(standard, "VCCAUX_DC");
    }

    float dcVccioCurrent(const Output& standard) const
    {
        return table(standard, "VCCINT_IO_DC");
    }

    float dcVccoCurrent(const Output& standard) const
    {
        const float direct = table(standard, "VCCO_DC");
        const float pw = table(standard, "PW");
        return 2.0f * direct * pw;
    }

    float offchipPower(const Output& standard) const
    {
        return (this->*standard.offchip)(standard);
    }

    float onchipPower(const Output& standard) const
    {
        const float vol = low(standard);
        const float direct = table(standard, "VCCO_DC");
        const float pw = table(standard, "PW");
        const float v = supply(standard);
        const float voh = high(standard);
        const float current = directCurrent(standard);
        const float z = OutputImpedance();
        return z > 0.0f ? (vol * direct + vol * direct) * (1.0f - pw) + (v - voh) * current : 0.0f;
    }

    float voh(const Output& standard) const
    {
        return complementHigh(standard);
    }

    float vol(const Output& standard) const
    {
        const float v = supply(standard);
        const float direct = table(standard, "VCCO_DC");
        const float ohms = table(standard, "TERM");
        const float z = OutputImpedance();
        const float r = OffchipTermination();
        return z + r > 0.0f ? v * 0.5f - 2.0f * direct * ohms / 1000.0f : 0.0f;
    }

    // ---- Cells of the group ----

    float computeVccintPower() const
    {
        return corePower();
    }

    float computeVccoPower() const
    {
        const float inputDc = IbufDcVccoPower();
        const float inputAc = IbufAcVccoPower();
        const float outputDc = ObufDcVccoPower();
        const float outputAc = ObufAcVccoPower();
        return total(inputDc + inputAc, outputDc + outputAc);
    }

    // ---- Multipliers ----

    float computeIbufEnableFactor() const
    {
        return 1.0f - IbufDisable();
    }

    // Share of time that the pin receives: a bidirectional one does while its output doesn't drive.
    float inputShare() const
    {
        const float enable = OutputEnable();
        const Key& direction = IoDirection();
        return direction == "BIDI" || direction == "BIDI_INPUT" ? 1.0f - enable : 1.0f;
    }

    float computeIbufDcVccioMultiplier() const
    {
        const float share = inputShare();
        const float vccint = Vccint();
        return share * vccint;
    }

    float computeIbufAcVccioMultiplier() const
    {
        const float share = inputShare();
        const float vccint = Vccint();
        const float freq = IobFreq();
        return share * vccint * freq;
    }

    float computeIbufDcVccauxMultiplier() const
    {
        const float share = inputShare();
        const float vccaux = Vccaux();
        return share * vccaux;
    }

    float computeIbufAcVccauxMultiplier() const
    {
        const float share = inputShare();
        const float vccaux = Vccaux();
        const float freq = IobFreq();
        return share * vccaux * freq;
    }

    float computeIbufDcVccoMultiplier() const
    {
        return inputShare();
    }

    float computeIbufOffchipMultiplier() const
    {
        return inputShare();
    }

    float computeIbufAcVccoMultiplier() const
    {
        const float share = inputShare();
        const float freq = IobFreq();
        return share * freq;
    }

    float computeObufDcVccioMultiplier() const
    {
        const float enable = OutputEnable();
        const float vccint = Vccint();
        return enable * vccint;
    }

    float computeObufAcVccioMultiplier() const
    {
        const float enable = OutputEnable();
        const float vccint = Vccint();
        const float freq = IobFreq();
        return enable * vccint * freq;
    }

    float computeObufDcVccauxMultiplier() const
    {
        const float enable = OutputEnable();
        const float vccaux = Vccaux();
        return enable * vccaux;
    }

    float computeObufAcVccauxMultiplier() const
    {
        const float freq = IobFreq();
        const float enable = OutputEnable();
        const float vccaux = Vccaux();
        return freq * enable * vccaux;
    }

    float computeObufDcVccoMultiplier() const
    {
        return OutputEnable();
    }

    float computeObufAcVccoMultiplier() const
    {
        const float freq = IobFreq();
        const float enable = OutputEnable();
        const float vcco = Vcco();
        return freq * enable * vcco;
    }

    float computeObufOffchipMultiplier() const
    {
        return OutputEnable();
    }

    // ---- Rows ----

    // clang-format off
    // How receivers are terminated:                  VOL                 VOH                     direct current              heat on chip         heat on the board
    static constexpr Input::Termination kReceiveBare {&Sheet::zero,       &Sheet::zero,           &Sheet::tabulatedCurrent,   &Sheet::zero,        &Sheet::zero};
    static constexpr Input::Termination kReceiveSplit{&Sheet::dividedLow, &Sheet::complementHigh, &Sheet::terminationCurrent, &Sheet::splitOnchip, &Sheet::enabledRemainder};

#define INPUT(S) .name = #S, .firstCell = Params::IBUF_##S##_AC_VCCAUX_CURRENT
    static constexpr Input kInputs[] = {
        {INPUT(LVDS_25),                    .termination = kReceiveBare},
        {INPUT(LVPECL),                     .termination = kReceiveBare},
        {INPUT(SUB_LVDS),                   .termination = kReceiveBare},
        {INPUT(SLVS_400_25),                .termination = kReceiveBare},
        {INPUT(DIFF_HSTL_I_18), .lines = 2, .termination = kReceiveSplit},
        {INPUT(DIFF_SSTL18_I),  .lines = 2, .termination = kReceiveSplit},
        {INPUT(HSTL_I_18),                  .termination = kReceiveSplit},
        {INPUT(SSTL18_I),                   .termination = kReceiveSplit},
        {INPUT(LVTTL),                      .termination = kReceiveBare},
        {INPUT(LVCMOS33),                   .termination = kReceiveBare},
        {INPUT(LVCMOS25),                   .termination = kReceiveBare},
        {INPUT(LVCMOS18),                   .termination = kReceiveBare},
    };
#undef INPUT

#define OUTPUT(S) .name = #S, .firstCell = Params::OBUF_##S##_AC_VCCAUX_CURRENT
    static constexpr Output kOutputs[] = {
        {OUTPUT(SSTL18_I),     .offchip = &Sheet::remainderOffchip},
        {OUTPUT(LVTTL_4),      .offchip = &Sheet::zero},
        {OUTPUT(LVTTL_8),      .offchip = &Sheet::zero},
        {OUTPUT(LVTTL_12),     .offchip = &Sheet::zero},
        {OUTPUT(LVCMOS33_4),   .offchip = &Sheet::zero},
        {OUTPUT(LVCMOS33_8),   .offchip = &Sheet::zero},
        {OUTPUT(LVCMOS33_12),  .offchip = &Sheet::zero},
        {OUTPUT(LVCMOS25_4),   .offchip = &Sheet::zero},
        {OUTPUT(LVCMOS25_8),   .offchip = &Sheet::zero},
        {OUTPUT(LVCMOS25_12),  .offchip = &Sheet::zero},
        {OUTPUT(LVCMOS18_4),   .offchip = &Sheet::zero},
        {OUTPUT(LVCMOS18_8),   .offchip = &Sheet::zero},
        {OUTPUT(LVCMOS18_12),  .offchip = &Sheet::zero},
        {OUTPUT(HSTL_I_18),    .offchip = &Sheet::remainderOffchip},
    };
#undef OUTPUT

    static constexpr InputPower kIbufAcVccaux{Params::IBUF_AC_VCCAUX_POWER, Input::acVccauxCurrent,  Params::IBUF_AC_VCCAUX_MULTIPLIER};
    static constexpr InputPower kIbufAcVccio {Params::IBUF_AC_VCCIO_POWER,  Input::acVccioCurrent,   Params::IBUF_AC_VCCIO_MULTIPLIER};
    static constexpr InputPower kIbufAcVcco  {Params::IBUF_AC_VCCO_POWER,   Input::acVccoCurrent,    Params::IBUF_AC_VCCO_MULTIPLIER};
    static constexpr InputPower kIbufDcVccaux{Params::IBUF_DC_VCCAUX_POWER, Input::dcVccauxCurrent,  Params::IBUF_DC_VCCAUX_MULTIPLIER};
    static constexpr InputPower kIbufDcVccio {Params::IBUF_DC_VCCIO_POWER,  Input::dcVccioCurrent,   Params::IBUF_DC_VCCIO_MULTIPLIER};
    static constexpr InputPower kIbufDcVcco  {Params::IBUF_DC_VCCO_POWER,   Input::onchipPower,      Params::IBUF_DC_VCCO_MULTIPLIER}; // the heat on chip
    static constexpr InputPower kIbufOffchip {Params::IBUF_OFFCHIP_POWER,   Input::offchipPower,     Params::IBUF_OFFCHIP_MULTIPLIER};

    static constexpr OutputPower kObufAcVccaux{Params::OBUF_AC_VCCAUX_POWER, Output::acVccauxCurrent, Params::OBUF_AC_VCCAUX_MULTIPLIER};
    static constexpr OutputPower kObufAcVccio {Params::OBUF_AC_VCCIO_POWER,  Output::acVccioCurrent,  Params::OBUF_AC_VCCIO_MULTIPLIER};
    static constexpr OutputPower kObufAcVcco  {Params::OBUF_AC_VCCO_POWER,   Output::acVccoCurrent,   Params::OBUF_AC_VCCO_MULTIPLIER};
    static constexpr OutputPower kObufDcVccaux{Params::OBUF_DC_VCCAUX_POWER, Output::dcVccauxCurrent, Params::OBUF_DC_VCCAUX_MULTIPLIER};
    static constexpr OutputPower kObufDcVccio {Params::OBUF_DC_VCCIO_POWER,  Output::dcVccioCurrent,  Params::OBUF_DC_VCCIO_MULTIPLIER};
    static constexpr OutputPower kObufDcVcco  {Params::OBUF_DC_VCCO_POWER,   Output::dcVccoCurrent,   Params::OBUF_DC_VCCO_MULTIPLIER}; // the bare current, unlike inputs: as in the workbook
    static constexpr OutputPower kObufOffchip {Params::OBUF_OFFCHIP_POWER,   Output::offchipPower,    Params::OBUF_OFFCHIP_MULTIPLIER};

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
