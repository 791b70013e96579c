#include "io/ZelmOrvaneNaltModel.h"

#include "framework/ZelmModelBlockImpl.h"

template class ZelmModelBlock<ZelmOrvaneNaltModel, ZelmOrvaneNaltParams, ZelmOrvaneNaltData>;

// ---- Input standards ----

// An input standard with all that sets it apart.
struct ZelmOrvaneNaltModel::Input {
    using Formula = float (Receiver::*)() const;
    // How the receiver is terminated: the formulas of its levels, its direct current and where that turns into heat.
    struct Termination {
        Formula vol;
        Formula voh;
        Formula directCurrent;
        Formula onchip;
        Formula offchip;
    };
    enum Metric {
        acVccauxCurrentCell,
        acVccioCurrentCell,
        acVccoCurrentCell,
        dcVccauxCurrentCell,
        dcVccioCurrentCell,
        dcVccoCurrentCell,
        offchipPowerCell,
        onchipPowerCell,
        vohCell,
        volCell
    };

    std::string_view name;
    Params::FloatEnum firstCell; // ten cells in the order of Metric
    float lines = 1.0f;          // lines that the termination serves
    const Termination& termination;

    float table(const Data& data, std::string_view key) const
    {
        return data.findIbuf(name, key);
    }
    float& cell(Params& values, Metric metric) const
    {
        return values[zelm::cellBehind(firstCell, metric)];
    }
};

// One input standard in one run: the formulas that its row chooses from. v is the bank's supply, t the termination in
// the receiver.
struct ZelmOrvaneNaltModel::Receiver : zelm::io::Buffer<ZelmOrvaneNaltModel, Input> {
    float enabled(float current) const
    {
        return current * model.calculateIbufEnableFactor(params, data);
    }

    float auxiliaryToggling() const
    {
        return enabled(table("VCCAUX_AC"));
    }

    float coreToggling() const
    {
        return enabled(table("VCCINT_IO_AC"));
    }

    float driverToggling() const
    {
        const float current = table("VCCO_AC");
        const float vcco = model.getVcco(params, data);
        return enabled(current * vcco);
    }

    float auxiliaryDirect() const
    {
        return enabled(table("VCCAUX_DC"));
    }

    float coreDirect() const
    {
        return enabled(table("VCCINT_IO_DC"));
    }

    float dividedLow() const
    {
        const float v = supply();
        const float r = boardResistance();
        const float t = model.getInputTermination(params, data);
        return zelm::io::dividedLow(v, r, t, 0.5f);
    }

    // Counts both levels alike, whatever the share of time at the high one, and whether the buffer is on or off.
    float terminationCurrent() const
    {
        const float v = supply();
        const float voh = high();
        const float vol = low();
        const float t = model.getInputTermination(params, data);
        return t > 0.0f ? ((v - voh) * 0.5f + (v - vol) * 0.5f) / (2.0f * t) * (1000.0f * standard.lines) : 0.0f;
    }

    // Heats on while the buffer is off: the enable factor is missing here, as in the workbook.
    float splitOnchip() const
    {
        const float v = supply();
        const float vol = low();
        const float voh = high();
        const float pw = table("PW");
        const float t = model.getInputTermination(params, data);
        return zelm::io::splitHeat(v, vol, voh, pw, t, 1000.0f * standard.lines);
    }

    float enabledRemainder() const
    {
        return enabled(remainderOffchip());
    }
};

// ---- Output standards ----

// An output standard with all that sets it apart.
struct ZelmOrvaneNaltModel::Output {
    using Formula = float (Driver::*)() const;
    using Metric = Input::Metric;
    using enum Input::Metric;

    std::string_view name;
    Params::FloatEnum firstCell; // ten cells in the order of Metric
    Formula offchip;             // heat on the board

    float table(const Data& data, std::string_view key) const
    {
        return data.findObuf(name, key);
    }
    float& cell(Params& values, Metric metric) const
    {
        return values[zelm::cellBehind(firstCell, metric)];
    }
};

// One output standard in one run. v is the bank's supply, z the driver's impedance.
struct ZelmOrvaneNaltModel::Driver : zelm::io::Buffer<ZelmOrvaneNaltModel, Output> {
    float driverToggling() const
    {
        const float pad = data.findCapData("CIO_HP");
        const float load = model.getOutputLoad(params, data);
        const float package = data.findCapData("CPKG");
        const float current = table("VCCO_AC");
        const float characterisedLoad = table("OBUF_LOAD");
        return zelm::io::loadedCurrent(pad, load, package, current, characterisedLoad);
    }

    float driverDirect() const
    {
        const float direct = table("VCCO_DC");
        const float pw = table("PW");
        return 2.0f * direct * pw;
    }

    float sunkLow() const
    {
        const float v = supply();
        const float direct = table("VCCO_DC");
        const float ohms = table("TERM");
        const float z = model.getOutputImpedance(params, data);
        const float r = boardResistance();
        return z + r > 0.0f ? v * 0.5f - 2.0f * direct * ohms / 1000.0f : 0.0f;
    }

    float driverHeat() const
    {
        const float vol = low();
        const float direct = table("VCCO_DC");
        const float pw = table("PW");
        const float v = supply();
        const float voh = high();
        const float current = directCurrent();
        const float z = model.getOutputImpedance(params, data);
        return z > 0.0f ? (vol * direct + vol * direct) * (1.0f - pw) + (v - voh) * current : 0.0f;
    }
};

// ---- Rows ----

// clang-format off
struct ZelmOrvaneNaltModel::Rows {
    using M = ZelmOrvaneNaltModel;
    using R = Receiver;
    using D = Driver;

    // How receivers are terminated:                   VOL             VOH                 direct current          heat on chip     heat on the board
    static constexpr Input::Termination kReceiveBare  {&R::zero,       &R::zero,           &R::tabulatedCurrent,   &R::zero,        &R::zero};
    static constexpr Input::Termination kReceiveSplit {&R::dividedLow, &R::complementHigh, &R::terminationCurrent, &R::splitOnchip, &R::enabledRemainder};

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
        {OUTPUT(SSTL18_I),     .offchip = &D::remainderOffchip},
        {OUTPUT(LVTTL_4),      .offchip = &D::zero},
        {OUTPUT(LVTTL_8),      .offchip = &D::zero},
        {OUTPUT(LVTTL_12),     .offchip = &D::zero},
        {OUTPUT(LVCMOS33_4),   .offchip = &D::zero},
        {OUTPUT(LVCMOS33_8),   .offchip = &D::zero},
        {OUTPUT(LVCMOS33_12),  .offchip = &D::zero},
        {OUTPUT(LVCMOS25_4),   .offchip = &D::zero},
        {OUTPUT(LVCMOS25_8),   .offchip = &D::zero},
        {OUTPUT(LVCMOS25_12),  .offchip = &D::zero},
        {OUTPUT(LVCMOS18_4),   .offchip = &D::zero},
        {OUTPUT(LVCMOS18_8),   .offchip = &D::zero},
        {OUTPUT(LVCMOS18_12),  .offchip = &D::zero},
        {OUTPUT(HSTL_I_18),    .offchip = &D::remainderOffchip},
    };
#undef OUTPUT

    static constexpr InputPower kIbufAcVccaux{Params::IBUF_AC_VCCAUX_POWER, &M::acVccauxCurrent,  &M::calculateIbufAcVccauxMultiplier};
    static constexpr InputPower kIbufAcVccio {Params::IBUF_AC_VCCIO_POWER,  &M::acVccioCurrent,   &M::calculateIbufAcVccioMultiplier};
    static constexpr InputPower kIbufAcVcco  {Params::IBUF_AC_VCCO_POWER,   &M::acVccoCurrent,    &M::calculateIbufAcVccoMultiplier};
    static constexpr InputPower kIbufDcVccaux{Params::IBUF_DC_VCCAUX_POWER, &M::dcVccauxCurrent,  &M::calculateIbufDcVccauxMultiplier};
    static constexpr InputPower kIbufDcVccio {Params::IBUF_DC_VCCIO_POWER,  &M::dcVccioCurrent,   &M::calculateIbufDcVccioMultiplier};
    static constexpr InputPower kIbufDcVcco  {Params::IBUF_DC_VCCO_POWER,   &M::onchipPower,      &M::calculateIbufDcVccoMultiplier}; // the heat on chip
    static constexpr InputPower kIbufOffchip {Params::IBUF_OFFCHIP_POWER,   &M::offchipPower,     &M::calculateIbufOffchipMultiplier};

    static constexpr OutputPower kObufAcVccaux{Params::OBUF_AC_VCCAUX_POWER, &M::acVccauxCurrent, &M::calculateObufAcVccauxMultiplier};
    static constexpr OutputPower kObufAcVccio {Params::OBUF_AC_VCCIO_POWER,  &M::acVccioCurrent,  &M::calculateObufAcVccioMultiplier};
    static constexpr OutputPower kObufAcVcco  {Params::OBUF_AC_VCCO_POWER,   &M::acVccoCurrent,   &M::calculateObufAcVccoMultiplier};
    static constexpr OutputPower kObufDcVccaux{Params::OBUF_DC_VCCAUX_POWER, &M::dcVccauxCurrent, &M::calculateObufDcVccauxMultiplier};
    static constexpr OutputPower kObufDcVccio {Params::OBUF_DC_VCCIO_POWER,  &M::dcVccioCurrent,  &M::calculateObufDcVccioMultiplier};
    static constexpr OutputPower kObufDcVcco  {Params::OBUF_DC_VCCO_POWER,   &M::dcVccoCurrent,   &M::calculateObufDcVccoMultiplier}; // the bare current, unlike inputs: as in the workbook
    static constexpr OutputPower kObufOffchip {Params::OBUF_OFFCHIP_POWER,   &M::offchipPower,    &M::calculateObufOffchipMultiplier};

    static consteval const Input& input(std::string_view key)
    {
        return zelm::io::row(kInputs, key);
    }
    static consteval const Output& output(std::string_view key)
    {
        return zelm::io::row(kOutputs, key);
    }
};
// clang-format on

#define ZELM_MODEL ZelmOrvaneNaltModel
#define ZELM_CELL_ROWS "io/ZelmOrvaneNaltCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneNaltModel::pullOutputs(Params& params, const Data& data) const
{
    calculateVccintPower(params, data);
    calculateVccauxPower(params, data);
    calculateVccoPower(params, data);
    calculateOffchipPower(params, data);
    calculateIobFreq(params, data);
    calculateIbufDcVccioPower(params, data);
    calculateIbufAcVccioPower(params, data);
    calculateIbufDcVccauxPower(params, data);
    calculateIbufAcVccauxPower(params, data);
    calculateIbufDcVccoPower(params, data);
    calculateIbufAcVccoPower(params, data);
    calculateIbufOffchipPower(params, data);
    calculateNumInputs(params, data);
    calculateObufDcVccioPower(params, data);
    calculateObufAcVccioPower(params, data);
    calculateObufDcVccauxPower(params, data);
    calculateObufAcVccauxPower(params, data);
    calculateObufDcVccoPower(params, data);
    calculateObufAcVccoPower(params, data);
    calculateObufOffchipPower(params, data);
    calculateNumOutputs(params, data);
    pullUnselectedCells(params, data);
}

// Hosts find all cells of all standards filled, also those that no output selects from.
void ZelmOrvaneNaltModel::pullUnselectedCells(Params& params, const Data& data) const
{
    for (const Input& standard : Rows::kInputs) {
        vol(standard, params, data);
        voh(standard, params, data);
        dcVccoCurrent(standard, params, data);
    }
    for (const Output& standard : Rows::kOutputs) {
        vol(standard, params, data);
        voh(standard, params, data);
        onchipPower(standard, params, data);
    }
}

// ---- Metrics of the standards ----

// clang-format off
#define METRIC(Standard, Side, metric, formula)                                                                        \
    float ZelmOrvaneNaltModel::metric(const Standard& standard, Params& params, const Data& data) const                \
    {                                                                                                                  \
        return once(standard.cell(params, Standard::metric##Cell),                                                     \
                    [&] { return (Side{{*this, standard, params, data}}.*formula)(); });                               \
    }
METRIC(Input,  Receiver, acVccauxCurrent, &Receiver::auxiliaryToggling)
METRIC(Input,  Receiver, acVccioCurrent,  &Receiver::coreToggling)
METRIC(Input,  Receiver, acVccoCurrent,   &Receiver::driverToggling)
METRIC(Input,  Receiver, dcVccauxCurrent, &Receiver::auxiliaryDirect)
METRIC(Input,  Receiver, dcVccioCurrent,  &Receiver::coreDirect)
METRIC(Input,  Receiver, dcVccoCurrent,   standard.termination.directCurrent)
METRIC(Input,  Receiver, offchipPower,    standard.termination.offchip)
METRIC(Input,  Receiver, onchipPower,     standard.termination.onchip)
METRIC(Input,  Receiver, voh,             standard.termination.voh)
METRIC(Input,  Receiver, vol,             standard.termination.vol)

METRIC(Output, Driver,   acVccauxCurrent, &Driver::auxiliaryToggling)
METRIC(Output, Driver,   acVccioCurrent,  &Driver::coreToggling)
METRIC(Output, Driver,   acVccoCurrent,   &Driver::driverToggling)
METRIC(Output, Driver,   dcVccauxCurrent, &Driver::auxiliaryDirect)
METRIC(Output, Driver,   dcVccioCurrent,  &Driver::coreDirect)
METRIC(Output, Driver,   dcVccoCurrent,   &Driver::driverDirect)
METRIC(Output, Driver,   offchipPower,    standard.offchip)
METRIC(Output, Driver,   onchipPower,     &Driver::driverHeat)
METRIC(Output, Driver,   voh,             &Driver::complementHigh)
METRIC(Output, Driver,   vol,             &Driver::sunkLow)
#undef METRIC
// clang-format on

// ---- Cells of the group ----

float ZelmOrvaneNaltModel::inputPower(const InputPower& power, Params& params, const Data& data) const
{
    return once(params[power.cell], [&] { return zelm::io::inputPower(*this, power, Rows::kInputs, params, data); });
}

float ZelmOrvaneNaltModel::outputPower(const OutputPower& power, Params& params, const Data& data) const
{
    return once(params[power.cell], [&] { return zelm::io::outputPower(*this, power, Rows::kOutputs, params, data); });
}

float ZelmOrvaneNaltModel::calculateIobFreq(Params& params, const Data& data) const
{
    return once(params[Params::IOB_FREQ], [&] { return zelm::io::iobFreq(*this, params, data); });
}

float ZelmOrvaneNaltModel::calculateNumInputs(Params& params, const Data& data) const
{
    return once(params[Params::NUM_INPUTS], [&] { return zelm::io::numInputs(*this, params, data); });
}

float ZelmOrvaneNaltModel::calculateNumOutputs(Params& params, const Data& data) const
{
    return once(params[Params::NUM_OUTPUTS], [&] { return zelm::io::numOutputs(*this, params, data); });
}

float ZelmOrvaneNaltModel::calculateVccintPower(Params& params, const Data& data) const
{
    return once(params[Params::VCCINT_POWER], [&] { return zelm::io::coreTotal(*this, params, data); });
}

float ZelmOrvaneNaltModel::calculateVccauxPower(Params& params, const Data& data) const
{
    return once(params[Params::VCCAUX_POWER], [&] { return zelm::io::auxiliaryTotal(*this, params, data); });
}

float ZelmOrvaneNaltModel::calculateVccoPower(Params& params, const Data& data) const
{
    return once(params[Params::VCCO_POWER], [&] {
        const float inputDc = calculateIbufDcVccoPower(params, data);
        const float inputAc = calculateIbufAcVccoPower(params, data);
        const float outputDc = calculateObufDcVccoPower(params, data);
        const float outputAc = calculateObufAcVccoPower(params, data);
        return zelm::io::total(*this, params, data, inputDc + inputAc, outputDc + outputAc);
    });
}

float ZelmOrvaneNaltModel::calculateOffchipPower(Params& params, const Data& data) const
{
    return once(params[Params::OFFCHIP_POWER], [&] { return zelm::io::offchipTotal(*this, params, data); });
}

// ---- Multipliers ----

float ZelmOrvaneNaltModel::calculateIbufEnableFactor(Params& params, const Data& data) const
{
    return once(params[Params::IBUF_ENABLE_FACTOR], [&] { return 1.0f - getIbufDisable(params, data); });
}

// Share of time that the pin receives: a bidirectional one does while its output doesn't drive.
float ZelmOrvaneNaltModel::inputShare(Params& params, const Data& data) const
{
    const float enable = getOutputEnable(params, data);
    const std::string_view direction = viewIoDirection(params, data);
    return direction == "BIDI" || direction == "BIDI_INPUT" ? 1.0f - enable : 1.0f;
}

float ZelmOrvaneNaltModel::calculateIbufDcVccioMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::IBUF_DC_VCCIO_MULTIPLIER], [&] {
        const float share = inputShare(params, data);
        const float vccint = getVccint(params, data);
        return share * vccint;
    });
}

float ZelmOrvaneNaltModel::calculateIbufAcVccioMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::IBUF_AC_VCCIO_MULTIPLIER], [&] {
        const float share = inputShare(params, data);
        const float vccint = getVccint(params, data);
        const float freq = calculateIobFreq(params, data);
        return share * vccint * freq;
    });
}

float ZelmOrvaneNaltModel::calculateIbufDcVccauxMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::IBUF_DC_VCCAUX_MULTIPLIER], [&] {
        const float share = inputShare(params, data);
        const float vccaux = getVccaux(params, data);
        return share * vccaux;
    });
}

float ZelmOrvaneNaltModel::calculateIbufAcVccauxMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::IBUF_AC_VCCAUX_MULTIPLIER], [&] {
        const float share = inputShare(params, data);
        const float vccaux = getVccaux(params, data);
        const float freq = calculateIobFreq(params, data);
        return share * vccaux * freq;
    });
}

float ZelmOrvaneNaltModel::calculateIbufDcVccoMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::IBUF_DC_VCCO_MULTIPLIER], [&] { return inputShare(params, data); });
}

float ZelmOrvaneNaltModel::calculateIbufOffchipMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::IBUF_OFFCHIP_MULTIPLIER], [&] { return inputShare(params, data); });
}

float ZelmOrvaneNaltModel::calculateIbufAcVccoMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::IBUF_AC_VCCO_MULTIPLIER], [&] {
        const float share = inputShare(params, data);
        const float freq = calculateIobFreq(params, data);
        return share * freq;
    });
}

float ZelmOrvaneNaltModel::calculateObufDcVccioMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::OBUF_DC_VCCIO_MULTIPLIER], [&] {
        const float enable = getOutputEnable(params, data);
        const float vccint = getVccint(params, data);
        return enable * vccint;
    });
}

float ZelmOrvaneNaltModel::calculateObufAcVccioMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::OBUF_AC_VCCIO_MULTIPLIER], [&] {
        const float enable = getOutputEnable(params, data);
        const float vccint = getVccint(params, data);
        const float freq = calculateIobFreq(params, data);
        return enable * vccint * freq;
    });
}

float ZelmOrvaneNaltModel::calculateObufDcVccauxMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::OBUF_DC_VCCAUX_MULTIPLIER], [&] {
        const float enable = getOutputEnable(params, data);
        const float vccaux = getVccaux(params, data);
        return enable * vccaux;
    });
}

float ZelmOrvaneNaltModel::calculateObufAcVccauxMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::OBUF_AC_VCCAUX_MULTIPLIER], [&] {
        const float freq = calculateIobFreq(params, data);
        const float enable = getOutputEnable(params, data);
        const float vccaux = getVccaux(params, data);
        return freq * enable * vccaux;
    });
}

float ZelmOrvaneNaltModel::calculateObufDcVccoMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::OBUF_DC_VCCO_MULTIPLIER], [&] { return getOutputEnable(params, data); });
}

float ZelmOrvaneNaltModel::calculateObufAcVccoMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::OBUF_AC_VCCO_MULTIPLIER], [&] {
        const float freq = calculateIobFreq(params, data);
        const float enable = getOutputEnable(params, data);
        const float vcco = getVcco(params, data);
        return freq * enable * vcco;
    });
}

float ZelmOrvaneNaltModel::calculateObufOffchipMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::OBUF_OFFCHIP_MULTIPLIER], [&] { return getOutputEnable(params, data); });
}
