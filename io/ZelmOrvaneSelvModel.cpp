#include "io/ZelmOrvaneSelvModel.h"

#include "framework/ZelmModelBlockImpl.h"

template class ZelmModelBlock<ZelmOrvaneSelvModel, ZelmOrvaneSelvParams, ZelmOrvaneSelvData>;

using zelm::ratioOrZero;
using zelm::io::square;

// ---- Input standards ----

// An input standard with all that sets it apart.
struct ZelmOrvaneSelvModel::Input {
    using Formula = float (Receiver::*)() const;
    // How the receiver is terminated: the formulas of its levels, its direct current and where that turns into heat.
    struct Termination {
        Formula vol;
        Formula voh;
        Formula directCurrent;
        Formula onchip;
        Formula offchip;
    };
    enum Current {
        acVccauxCurrentCell,
        acVccioCurrentCell,
        acVccoCurrentCell,
        dcVccauxCurrentCell,
        dcVccioCurrentCell,
        dcVccoCurrentCell
    };
    enum Level { offchipPowerCell, onchipPowerCell, pwCell, vohCell, volCell };

    std::string_view name;
    Params::FloatEnum firstCurrent; // six cells in the order of Current,
    Params::FloatEnum firstLevel;   // and five in that of Level
    const Termination& termination;
    float swing = 1.0f;          // share of the divided supply that a level moves by
    float legs = 1.0f;           // resistors of a split termination: two of twice its value, else one
    float currentLines = 1.0f;   // lines that the termination current counts
    float heatLines = 1.0f;      // lines that its heat counts
    bool bankSupplied = true;    // the toggling termination current grows with the bank's supply
    float acVccoDerating = 1.0f; // else it is derated by this
    float acDerating = 1.0f;     // of the toggling core and auxiliary currents
    bool evenDuty = false;       // high half of the time, whatever the table says
    bool lowPowerMipi = false;   // toggles at the low-power mode's own data rate

    float table(const Data& data, std::string_view key) const
    {
        return data.findIbuf(name, key);
    }
    float& cell(Params& values, Current metric) const
    {
        return values[zelm::cellBehind(firstCurrent, metric)];
    }
    float& cell(Params& values, Level metric) const
    {
        return values[zelm::cellBehind(firstLevel, metric)];
    }
};

// One input standard in one run: the formulas that its row chooses from. v is the standard's own supply, not the
// bank's; t the termination in the receiver.
struct ZelmOrvaneSelvModel::Receiver : zelm::io::Buffer<ZelmOrvaneSelvModel, Input> {
    float bankSupply() const
    {
        return model.getVcco15(params, data);
    }
    float termination() const
    {
        return model.getInputTermination(params, data);
    }
    float highShare() const
    {
        return model.pw(standard, params, data);
    }

    float dividedLow() const
    {
        const float v = supply();
        const float r = boardResistance();
        const float t = termination();
        return zelm::io::dividedLow(v, r, t, standard.swing);
    }

    float boostedLow() const
    {
        const float v = supply();
        const float r = boardResistance();
        const float t = termination();
        return r > 0.0f ? ratioOrZero(0.6f * v * r, 1.2f * t + r) : 0.0f;
    }

    float supplyHigh() const
    {
        return supply();
    }

    float boostedHigh() const
    {
        const float v = supply();
        const float r = boardResistance();
        const float t = termination();
        const float divisor = 1.2f * t + r;
        return t + r > 0.0f ? ratioOrZero(0.6f * v * r, divisor) + ratioOrZero(2.16f * t, divisor) : 0.0f;
    }

    float groundedHigh() const
    {
        const float v = supply();
        const float r = boardResistance();
        const float t = termination();
        return t + r > 0.0f ? v * standard.swing * t / (t + r) : 0.0f;
    }

    float terminationCurrent() const
    {
        const float v = supply();
        const float voh = high();
        const float pw = highShare();
        const float vol = low();
        const float t = termination();
        const float scale = 1000.0f * standard.currentLines;
        return t > 0.0f ? ((v - voh) * pw + (v - vol) * (1.0f - pw)) * scale / (standard.legs * t) : 0.0f;
    }

    float splitOnchip() const
    {
        const float v = supply();
        const float vol = low();
        const float voh = high();
        const float pw = highShare();
        const float t = termination();
        return zelm::io::splitHeat(v, vol, voh, pw, t, 1000.0f * standard.heatLines);
    }

    float pullUpOnchip() const
    {
        const float v = supply();
        const float vol = low();
        const float pw = highShare();
        const float t = termination();
        return t > 0.0f ? (1.0f - pw) * (1000.0f * standard.heatLines) * square(v - vol) / t : 0.0f;
    }

    float boostedOnchip() const
    {
        const float v = supply();
        const float vol = low();
        const float voh = high();
        const float pw = highShare();
        const float t = termination();
        const float upper = 2.0f * t;
        const float lower = 3.0f * t;
        const float highHeat = ratioOrZero(square(v - voh), upper) + ratioOrZero(square(voh), lower);
        const float lowHeat = ratioOrZero(square(v - vol), upper) + ratioOrZero(square(vol), lower);
        return t > 0.0f ? (highHeat * pw + lowHeat * (1.0f - pw)) * 1000.0f : 0.0f;
    }

    float groundedOnchip() const
    {
        const float voh = high();
        const float pw = highShare();
        const float t = termination();
        return t > 0.0f ? standard.heatLines * square(voh) / t * 1000.0f * (1.0f - pw) : 0.0f;
    }

    float differentialOnchip() const
    {
        return table("DIFFTERM");
    }

    float mipiOnchip() const
    {
        return 4.0f * table("ODT") / 1000.0f;
    }

    float bankSupplyOnchip() const
    {
        const float current = directCurrent();
        const float vcco15 = bankSupply();
        return current * vcco15;
    }

    float auxiliaryToggling() const
    {
        return toggling("VCCAUX_AC") * standard.acDerating;
    }

    float coreToggling() const
    {
        return toggling("VCCINT_IO_AC") * standard.acDerating;
    }

    float driverToggling() const
    {
        const float current = toggling("VCCO_AC");
        const float vcco15 = bankSupply();
        return current * (standard.bankSupplied ? vcco15 : standard.acVccoDerating);
    }

    // The low-power mode toggles at its own rate, which takes the place of the frequency that the multiplier brings in.
    float toggling(std::string_view key) const
    {
        const float current = table(key);
        if (!standard.lowPowerMipi)
            return current;
        const float freq = model.calculateIobFreq(params, data);
        const float rate = data.findMipiData("MIPI_LP_DATARATE");
        return freq > 0.0f ? current / freq * rate * 0.5f : 0.0f;
    }

    float auxiliaryDirect() const
    {
        const float current = table("VCCAUX_DC");
        const float vccaux = model.getVccaux(params, data);
        return standard.lowPowerMipi ? current + ratioOrZero(0.15f, vccaux) : current;
    }

    float share() const
    {
        return standard.evenDuty ? 0.5f : table("PW");
    }
};

// ---- Output standards ----

// An output standard with all that sets it apart.
struct ZelmOrvaneSelvModel::Output {
    using Formula = float (Driver::*)() const;
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
    enum Current {
        acVccauxCurrentCell,
        acVccioCurrentCell,
        acVccoCurrentCell,
        acVccoPredrvCurrentCell,
        dcVccauxCurrentCell,
        dcVccioCurrentCell,
        dcVccoCurrentCell,
        dcVccoPredrvCurrentCell
    };
    enum Level { offchipPowerCell, onchipPowerCell, pwCell, vohCell, volCell };

    std::string_view name;
    Params::FloatEnum firstCurrent; // eight cells in the order of Current,
    Params::FloatEnum firstLevel;   // and five in that of Level
    const Termination& termination;
    float swing = 1.0f;                // share of the divided supply that VOL is
    float highDivisor = 1.0f;          // the own supply over VOH
    std::string_view package = "CPKG"; // capacitance of the package's trace
    const Predriver& predriver;
    Formula driverToggling;  // toggling current of the driver itself
    bool clampedCore = true; // core currents below 0 are fitting noise

    float table(const Data& data, std::string_view key) const
    {
        return data.findObuf(name, key);
    }
    float& cell(Params& values, Current metric) const
    {
        return values[zelm::cellBehind(firstCurrent, metric)];
    }
    float& cell(Params& values, Level metric) const
    {
        return values[zelm::cellBehind(firstLevel, metric)];
    }
};

// One output standard in one run. v is the standard's own supply, z the driver's impedance.
struct ZelmOrvaneSelvModel::Driver : zelm::io::Buffer<ZelmOrvaneSelvModel, Output> {
    float bankSupply() const
    {
        return model.getVcco15(params, data);
    }
    float impedance() const
    {
        return model.getOutputImpedance(params, data);
    }
    float highShare() const
    {
        return model.pw(standard, params, data);
    }
    float offchip() const
    {
        return model.offchipPower(standard, params, data);
    }

    static constexpr float kBoost = 240.0f; // ohms of the branch that lifts the levels of the VOH80 forms
    static float inParallelWithBoost(float z)
    {
        return ratioOrZero(kBoost * z, z + kBoost);
    }

    float dividedLow() const
    {
        const float v = supply();
        const float z = impedance();
        const float r = boardResistance();
        return z + r > 0.0f ? v * (z / (z + r)) * standard.swing : 0.0f;
    }

    float boostedLow() const
    {
        const float v = supply();
        const float z = impedance();
        const float r = boardResistance();
        return z + r > 0.0f ? ratioOrZero(v * z * r + 216.0f * z, z * r + kBoost * r + kBoost * z) : 0.0f;
    }

    float lvdsLow() const
    {
        return 1.047f;
    }

    float supplyHigh() const
    {
        return supply();
    }

    float boostedHigh() const
    {
        const float v = supply();
        const float z = impedance();
        const float r = boardResistance();
        const float p = inParallelWithBoost(z);
        return z + r > 0.0f ? 0.9f * ratioOrZero(p, p + r) + v * ratioOrZero(r, p + r) : 0.0f;
    }

    float fractionHigh() const
    {
        return supply() / standard.highDivisor;
    }

    float lvdsHigh() const
    {
        return 1.353f;
    }

    float splitCurrent() const
    {
        const float v = supply();
        const float z = impedance();
        const float r = boardResistance();
        const float pw = highShare();
        return z + r > 0.0f ? v * 0.5f * 1000.0f / (z + r) * pw : 0.0f;
    }

    float boostedCurrent() const
    {
        const float v = supply();
        const float z = impedance();
        const float r = boardResistance();
        const float pw = highShare();
        const float p = inParallelWithBoost(z);
        const float lowVolts = v - ratioOrZero(0.9f * z, z + r);
        const float lowOhms = ratioOrZero(z * r, z + r) + kBoost;
        const float lowCurrent = ratioOrZero((1.0f - pw) * lowVolts, lowOhms) * 1000.0f;
        const float highCurrent = ratioOrZero(pw * (v - 0.9f) * 1000.0f, p + r);
        return z + r > 0.0f ? lowCurrent + highCurrent : 0.0f;
    }

    float groundedCurrent() const
    {
        const float v = supply();
        const float z = impedance();
        const float r = boardResistance();
        const float pw = highShare();
        return z + r > 0.0f ? v / (z + r) * 1000.0f * (1.0f - pw) : 0.0f;
    }

    float groundedTwiceCurrent() const
    {
        const float v = supply();
        const float z = impedance();
        const float r = boardResistance();
        const float pw = highShare();
        const float ohms = z + ratioOrZero(z * r, z + r);
        return z + r > 0.0f ? ratioOrZero((1.0f - pw) * 1000.0f * v, ohms) : 0.0f;
    }

    float pushPullOnchip() const
    {
        const float v = supply();
        const float voh = high();
        const float z = impedance();
        const float pw = highShare();
        const float vol = low();
        return z > 0.0f ? square(v - voh) / z * 1000.0f * pw + square(vol) / z * (1.0f - pw) * 1000.0f : 0.0f;
    }

    // The single-ended form's high level works through the driver and the boost branch side by side, the pair's through
    // the driver alone: the two were characterised apart.
    float boostedOnchip() const
    {
        const float z = impedance();
        return boostedOnchipThrough(inParallelWithBoost(z));
    }

    float boostedPairOnchip() const
    {
        const float z = impedance();
        return boostedOnchipThrough(z);
    }

    float boostedOnchipThrough(float highOhms) const
    {
        const float v = supply();
        const float voh = high();
        const float pw = highShare();
        const float vol = low();
        const float z = impedance();
        const float highHeat = ratioOrZero(square(v - voh), highOhms) * 1000.0f * pw;
        const float lowHeat = ratioOrZero(square(vol), z) * (1.0f - pw) * 1000.0f;
        const float boostHeat = square(v - vol) / kBoost * (1.0f - pw) * 1000.0f;
        return z > 0.0f ? highHeat + lowHeat + boostHeat : 0.0f;
    }

    float groundedOnchip() const
    {
        const float v = supply();
        const float voh = high();
        const float z = impedance();
        const float pw = highShare();
        const float vol = low();
        return z > 0.0f ? square(v - voh) / z * 1000.0f * (1.0f - pw) + square(vol) / z * pw * 1000.0f : 0.0f;
    }

    float groundedTwiceOnchip() const
    {
        const float voh = high();
        const float z = impedance();
        const float pw = highShare();
        return z > 0.0f ? groundedOnchip() + square(voh) / z * 1000.0f * (1.0f - pw) : 0.0f;
    }

    float remainderOnchip() const
    {
        const float v = supply();
        const float current = directCurrent();
        const float onBoard = offchip();
        return v * current - onBoard;
    }

    float lvdsOffchip() const
    {
        const float voh = high();
        const float vol = low();
        return square(voh - vol) * 1000.0f / 100.0f;
    }

    float pairTerminationOffchip() const
    {
        const float current = directCurrent();
        const float ohms = table("TERM");
        return 0.5f * current * ohms * current * 0.5f / 1000.0f;
    }

    float mipiOffchip() const
    {
        return 0.4f;
    }

    float coreToggling() const
    {
        const float current = table("VCCINT_IO_AC");
        return standard.clampedCore ? ZelmHelperUtils::MAX(0.0f, current) : current;
    }

    float coreDirect() const
    {
        const float current = table("VCCINT_IO_DC");
        return standard.clampedCore ? ZelmHelperUtils::MAX(0.0f, current) : current;
    }

    float share() const
    {
        return table("PW");
    }

    float byLoad() const
    {
        const float pad = data.findCapData("CIO_HP");
        const float load = model.getOutputLoad(params, data);
        const float package = data.findCapData(standard.package);
        const float current = table("VCCO_AC");
        const float characterisedLoad = table("OBUF_LOAD");
        return zelm::io::loadedCurrent(pad, load, package, current, characterisedLoad);
    }

    float byLoadIfDriven() const
    {
        const float current = byLoad();
        const float z = impedance();
        return z > 0.0f ? current : 0.0f;
    }

    // The impedance cancels, but for its rounding: as in the workbook.
    float byLoadOverImpedance() const
    {
        const float current = byLoad();
        const float z = impedance();
        return z > 0.0f ? current * z / z : 0.0f;
    }

    float byLoadAndImpedance() const
    {
        const float current = byLoad();
        const float characterised = table("RDRV");
        const float z = impedance();
        return z > 0.0f ? current * characterised / z : 0.0f;
    }

    float ifSupplied() const
    {
        const float current = table("VCCO_AC");
        const float vcco15 = bankSupply();
        return vcco15 > 0.0f ? current : 0.0f;
    }

    float overSupply() const
    {
        const float current = table("VCCO_AC");
        const float vcco15 = bankSupply();
        return vcco15 > 0.0f ? current / vcco15 : 0.0f;
    }

    // The predrivers were characterised with drivers of 40 ohms.
    float predriverByImpedance() const
    {
        const float current = table("VCCO_PREDRV_AC");
        const float z = impedance();
        return z > 0.0f ? current * 40.0f / z : 0.0f;
    }

    // The impedance cancels, but for its rounding: as in the workbook.
    float predriverOverImpedance() const
    {
        const float current = table("VCCO_PREDRV_AC");
        const float z = impedance();
        return z > 0.0f ? current * z / z : 0.0f;
    }

    float predriverTabulated() const
    {
        return table("VCCO_PREDRV_AC");
    }

    float predriverDirect() const
    {
        return table("VCCO_PREDRV_DC");
    }

    float predriverDirectClamped() const
    {
        return ZelmHelperUtils::MAX(0.0f, table("VCCO_PREDRV_DC"));
    }
};

// ---- Rows ----

// clang-format off
struct ZelmOrvaneSelvModel::Rows {
    using M = ZelmOrvaneSelvModel;
    using R = Receiver;
    using D = Driver;

    // How receivers are terminated:                      VOL             VOH                 direct current          heat on chip            heat on the board
    static constexpr Input::Termination kReceiveBare     {&R::zero,       &R::zero,           &R::zero,               &R::bankSupplyOnchip,   &R::remainderOffchip};
    static constexpr Input::Termination kReceiveSplit    {&R::dividedLow, &R::complementHigh, &R::terminationCurrent, &R::splitOnchip,        &R::remainderOffchip};
    static constexpr Input::Termination kReceiveCold     {&R::dividedLow, &R::complementHigh, &R::terminationCurrent, &R::zero,               &R::zero};
    static constexpr Input::Termination kReceivePullUp   {&R::dividedLow, &R::supplyHigh,     &R::terminationCurrent, &R::pullUpOnchip,       &R::remainderOffchip};
    static constexpr Input::Termination kReceiveBoosted  {&R::boostedLow, &R::boostedHigh,    &R::terminationCurrent, &R::boostedOnchip,      &R::remainderOffchip};
    static constexpr Input::Termination kReceiveGrounded {&R::zero,       &R::groundedHigh,   &R::zero,               &R::groundedOnchip,     &R::remainderOffchip};
    static constexpr Input::Termination kReceiveLvds     {&R::zero,       &R::zero,           &R::zero,               &R::differentialOnchip, &R::remainderOffchip};
    static constexpr Input::Termination kReceiveMipi     {&R::zero,       &R::zero,           &R::tabulatedCurrent,   &R::mipiOnchip,         &R::remainderOffchip};
    static constexpr Input::Termination kReceiveLowPower {&R::zero,       &R::zero,           &R::tabulatedCurrent,   &R::bankSupplyOnchip,   &R::remainderOffchip};

    // What drivers pull against:                             VOL             VOH                 direct current            heat on chip             heat on the board
    static constexpr Output::Termination kDriveBare          {&D::zero,       &D::zero,           &D::zero,                 &D::zero,                &D::zero};
    static constexpr Output::Termination kDriveSplit         {&D::dividedLow, &D::complementHigh, &D::splitCurrent,         &D::pushPullOnchip,      &D::remainderOffchip};
    static constexpr Output::Termination kDrivePullUp        {&D::dividedLow, &D::supplyHigh,     &D::zero,                 &D::pushPullOnchip,      &D::remainderOffchip};
    static constexpr Output::Termination kDriveBoosted       {&D::boostedLow, &D::boostedHigh,    &D::boostedCurrent,       &D::boostedOnchip,       &D::remainderOffchip};
    static constexpr Output::Termination kDriveBoostedPair   {&D::boostedLow, &D::boostedHigh,    &D::boostedCurrent,       &D::boostedPairOnchip,   &D::remainderOffchip};
    static constexpr Output::Termination kDriveGrounded      {&D::zero,       &D::fractionHigh,   &D::groundedCurrent,      &D::groundedOnchip,      &D::remainderOffchip};
    static constexpr Output::Termination kDriveGroundedTwice {&D::zero,       &D::fractionHigh,   &D::groundedTwiceCurrent, &D::groundedTwiceOnchip, &D::remainderOffchip};
    static constexpr Output::Termination kDriveLvds          {&D::lvdsLow,    &D::lvdsHigh,       &D::tabulatedCurrent,     &D::remainderOnchip,     &D::lvdsOffchip};
    static constexpr Output::Termination kDriveLvdsFir       {&D::zero,       &D::zero,           &D::tabulatedCurrent,     &D::remainderOnchip,     &D::pairTerminationOffchip};
    static constexpr Output::Termination kDriveMipi          {&D::zero,       &D::zero,           &D::tabulatedCurrent,     &D::remainderOnchip,     &D::mipiOffchip};
    static constexpr Output::Termination kDriveLowPower      {&D::zero,       &D::zero,           &D::tabulatedCurrent,     &D::zero,                &D::zero};

    // Predrivers:                                            toggling                    direct
    static constexpr Output::Predriver kPredriverByImpedance {&D::predriverByImpedance,   &D::predriverDirectClamped};
    static constexpr Output::Predriver kPredriverTabulated   {&D::predriverTabulated,     &D::predriverDirectClamped};
    static constexpr Output::Predriver kPredriverPair        {&D::predriverTabulated,     &D::predriverDirect};
    static constexpr Output::Predriver kPredriverLvstl       {&D::predriverTabulated,     &D::zero};
    static constexpr Output::Predriver kPredriverLvstl06     {&D::predriverOverImpedance, &D::zero};

#define INPUT(S) .name = #S, .firstCurrent = Params::IBUF_##S##_AC_VCCAUX_CURRENT, .firstLevel = Params::IBUF_##S##_OFFCHIP_POWER
    static constexpr Input kInputs[] = {
        {INPUT(LVDS15),              .termination = kReceiveLvds},
        // Its current counts one line, unlike that of every other pair.
        {INPUT(DIFF_HSUL_12),        .termination = kReceiveCold,     .swing = 0.5f, .legs = 2},
        {INPUT(DIFF_HSTL_I),         .termination = kReceiveSplit,    .swing = 0.5f, .legs = 2, .currentLines = 2, .heatLines = 2},
        {INPUT(DIFF_SSTL15_VOH75),   .termination = kReceiveSplit,    .swing = 0.5f, .legs = 2, .currentLines = 2, .heatLines = 2},
        // Its heat counts one line, unlike its current.
        {INPUT(DIFF_SSTL15_VOH80),   .termination = kReceiveBoosted,                 .legs = 2, .currentLines = 2},
        {INPUT(DIFF_SSTL135),        .termination = kReceiveSplit,    .swing = 0.5f, .legs = 2, .currentLines = 2, .heatLines = 2},
        {INPUT(DIFF_HSTL_I_12),      .termination = kReceiveSplit,    .swing = 0.5f, .legs = 2, .currentLines = 2, .heatLines = 2},
        {INPUT(DIFF_SSTL12),         .termination = kReceiveSplit,    .swing = 0.5f, .legs = 2, .currentLines = 2, .heatLines = 2},
        {INPUT(DIFF_POD10),          .termination = kReceivePullUp,                             .currentLines = 2, .heatLines = 2},
        {INPUT(DIFF_POD12),          .termination = kReceivePullUp,                             .currentLines = 2, .heatLines = 2},
        {INPUT(HSUL_12),             .termination = kReceiveCold,     .swing = 0.5f, .legs = 2},
        {INPUT(HSTL_I),              .termination = kReceiveSplit,    .swing = 0.5f, .legs = 2},
        {INPUT(SSTL15_VOH75),        .termination = kReceiveSplit,    .swing = 0.5f, .legs = 2},
        {INPUT(SSTL15_VOH80),        .termination = kReceiveBoosted,                 .legs = 2},
        {INPUT(SSTL135),             .termination = kReceiveSplit,    .swing = 0.5f, .legs = 2},
        {INPUT(HSTL_I_12),           .termination = kReceiveSplit,    .swing = 0.5f, .legs = 2},
        {INPUT(SSTL12),              .termination = kReceiveSplit,    .swing = 0.5f, .legs = 2},
        // The single-ended POD and the controlled-impedance receivers are derated; the pairs of POD are not.
        {INPUT(POD10),               .termination = kReceivePullUp,   .bankSupplied = false, .acVccoDerating = 0.93f, .acDerating = 0.93f},
        {INPUT(POD12),               .termination = kReceivePullUp,   .bankSupplied = false, .acVccoDerating = 0.93f, .acDerating = 0.93f},
        {INPUT(LVDCI_15),            .termination = kReceivePullUp,   .bankSupplied = false, .acDerating = 0.93f, .evenDuty = true},
        {INPUT(HSLVDCI_15),          .termination = kReceivePullUp,   .bankSupplied = false, .acDerating = 0.93f, .evenDuty = true},
        {INPUT(LVCMOS15),            .termination = kReceiveBare},
        {INPUT(LVCMOS12),            .termination = kReceiveBare},
        {INPUT(MIPI_DPHY_DCI_HS),    .termination = kReceiveMipi,     .bankSupplied = false},
        {INPUT(MIPI_DPHY_LP),        .termination = kReceiveLowPower, .bankSupplied = false, .lowPowerMipi = true},
        {INPUT(LVSTL06_12),          .termination = kReceiveGrounded, .swing = 0.5f},
        {INPUT(DIFF_LVSTL06_12),     .termination = kReceiveGrounded, .swing = 0.5f, .heatLines = 2},
        {INPUT(LVSTL_11_VOH33),      .termination = kReceiveGrounded},
        {INPUT(DIFF_LVSTL_11_VOH33), .termination = kReceiveGrounded,                .heatLines = 2},
        {INPUT(LVSTL_11_VOH50),      .termination = kReceiveGrounded},
        {INPUT(DIFF_LVSTL_11_VOH50), .termination = kReceiveGrounded,                .heatLines = 2},
    };
#undef INPUT

#define OUTPUT(S) .name = #S, .firstCurrent = Params::OBUF_##S##_AC_VCCAUX_CURRENT, .firstLevel = Params::OBUF_##S##_OFFCHIP_POWER
    static constexpr Output kOutputs[] = {
        {OUTPUT(SSTL12),              .termination = kDriveSplit,         .swing = 0.5f,    .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &D::byLoad},
        {OUTPUT(LVDS15),              .termination = kDriveLvds,                            .package = "CPKG",    .predriver = kPredriverPair,        .driverToggling = &D::ifSupplied},
        {OUTPUT(LVDS15_FIR),          .termination = kDriveLvdsFir,                         .package = "CPKG",    .predriver = kPredriverPair,        .driverToggling = &D::overSupply},
        {OUTPUT(DIFF_HSUL_12),        .termination = kDriveBare,                            .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &D::byLoad}, // in the fast package, unlike the single-ended form
        {OUTPUT(DIFF_HSTL_I),         .termination = kDriveSplit,         .swing = 0.5f,    .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &D::byLoad},
        {OUTPUT(DIFF_SSTL15_VOH75),   .termination = kDriveSplit,         .swing = 0.5f,    .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &D::byLoad},
        {OUTPUT(DIFF_SSTL15_VOH80),   .termination = kDriveBoostedPair,                     .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &D::byLoad},
        {OUTPUT(DIFF_SSTL135),        .termination = kDriveSplit,         .swing = 0.5f,    .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &D::byLoad},
        {OUTPUT(DIFF_HSTL_I_12),      .termination = kDriveSplit,         .swing = 0.5f,    .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &D::byLoad},
        {OUTPUT(DIFF_SSTL12),         .termination = kDriveSplit,         .swing = 0.5f,    .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &D::byLoad},
        {OUTPUT(DIFF_POD10),          .termination = kDrivePullUp,                          .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &D::byLoad},
        {OUTPUT(DIFF_POD12),          .termination = kDrivePullUp,                          .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &D::byLoad},
        {OUTPUT(DIFF_POD12_FIR),      .termination = kDrivePullUp,                          .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &D::byLoad},
        {OUTPUT(HSUL_12),             .termination = kDriveBare,                            .package = "CPKG_LS", .predriver = kPredriverByImpedance, .driverToggling = &D::byLoad},
        {OUTPUT(HSTL_I),              .termination = kDriveSplit,         .swing = 0.5f,    .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &D::byLoad},
        {OUTPUT(SSTL15_VOH75),        .termination = kDriveSplit,         .swing = 0.5f,    .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &D::byLoad},
        {OUTPUT(SSTL15_VOH80),        .termination = kDriveBoosted,                         .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &D::byLoad},
        {OUTPUT(SSTL135),             .termination = kDriveSplit,         .swing = 0.5f,    .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &D::byLoad},
        {OUTPUT(HSTL_I_12),           .termination = kDriveSplit,         .swing = 0.5f,    .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &D::byLoad},
        {OUTPUT(POD10),               .termination = kDrivePullUp,                          .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &D::byLoad},
        {OUTPUT(POD12),               .termination = kDrivePullUp,                          .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &D::byLoadAndImpedance}, // the only POD characterised over its impedance
        {OUTPUT(POD12_FIR),           .termination = kDrivePullUp,                          .package = "CPKG",    .predriver = kPredriverByImpedance, .driverToggling = &D::byLoad},
        {OUTPUT(HSLVDCI_15),          .termination = kDriveBare,                            .package = "CPKG_LS", .predriver = kPredriverByImpedance, .driverToggling = &D::byLoad},
        {OUTPUT(LVDCI_15),            .termination = kDriveBare,                            .package = "CPKG_LS", .predriver = kPredriverByImpedance, .driverToggling = &D::byLoad},
        {OUTPUT(LVCMOS15_2),          .termination = kDriveBare,                            .package = "CPKG_LS", .predriver = kPredriverTabulated,   .driverToggling = &D::byLoad},
        {OUTPUT(LVCMOS15_4),          .termination = kDriveBare,                            .package = "CPKG_LS", .predriver = kPredriverTabulated,   .driverToggling = &D::byLoad},
        {OUTPUT(LVCMOS15_6),          .termination = kDriveBare,                            .package = "CPKG_LS", .predriver = kPredriverTabulated,   .driverToggling = &D::byLoad},
        {OUTPUT(LVCMOS15_8),          .termination = kDriveBare,                            .package = "CPKG_LS", .predriver = kPredriverTabulated,   .driverToggling = &D::byLoad},
        {OUTPUT(LVCMOS15_12),         .termination = kDriveBare,                            .package = "CPKG_LS", .predriver = kPredriverTabulated,   .driverToggling = &D::byLoad},
        {OUTPUT(LVCMOS12_2),          .termination = kDriveBare,                            .package = "CPKG_LS", .predriver = kPredriverTabulated,   .driverToggling = &D::byLoad},
        {OUTPUT(LVCMOS12_4),          .termination = kDriveBare,                            .package = "CPKG_LS", .predriver = kPredriverTabulated,   .driverToggling = &D::byLoad},
        {OUTPUT(LVCMOS12_6),          .termination = kDriveBare,                            .package = "CPKG_LS", .predriver = kPredriverTabulated,   .driverToggling = &D::byLoad},
        {OUTPUT(LVCMOS12_8),          .termination = kDriveBare,                            .package = "CPKG_LS", .predriver = kPredriverTabulated,   .driverToggling = &D::byLoad},
        {OUTPUT(MIPI_DPHY_DCI_HS),    .termination = kDriveMipi,                            .package = "CPKG",    .predriver = kPredriverPair,        .driverToggling = &D::byLoad, .clampedCore = false},
        {OUTPUT(MIPI_DPHY_LP),        .termination = kDriveLowPower,                        .package = "CPKG_LS", .predriver = kPredriverPair,        .driverToggling = &D::byLoad, .clampedCore = false},
        {OUTPUT(LVSTL06_12),          .termination = kDriveGroundedTwice, .highDivisor = 4, .package = "CPKG",    .predriver = kPredriverLvstl06,     .driverToggling = &D::byLoadOverImpedance},
        {OUTPUT(DIFF_LVSTL06_12),     .termination = kDriveGroundedTwice, .highDivisor = 4, .package = "CPKG",    .predriver = kPredriverLvstl06,     .driverToggling = &D::byLoadOverImpedance},
        {OUTPUT(LVSTL_11_VOH33),      .termination = kDriveGrounded,      .highDivisor = 3, .package = "CPKG",    .predriver = kPredriverLvstl,       .driverToggling = &D::byLoadIfDriven},
        {OUTPUT(DIFF_LVSTL_11_VOH33), .termination = kDriveGrounded,      .highDivisor = 3, .package = "CPKG",    .predriver = kPredriverLvstl,       .driverToggling = &D::byLoadIfDriven},
        {OUTPUT(LVSTL_11_VOH50),      .termination = kDriveGrounded,      .highDivisor = 2, .package = "CPKG",    .predriver = kPredriverLvstl,       .driverToggling = &D::byLoadIfDriven},
        {OUTPUT(DIFF_LVSTL_11_VOH50), .termination = kDriveGrounded,      .highDivisor = 2, .package = "CPKG",    .predriver = kPredriverLvstl,       .driverToggling = &D::byLoadIfDriven},
    };
#undef OUTPUT

    static constexpr InputPower kIbufAcVccaux{Params::IBUF_AC_VCCAUX_POWER, &M::acVccauxCurrent, &M::calculateIbufAcVccauxMultiplier};
    static constexpr InputPower kIbufAcVccio {Params::IBUF_AC_VCCIO_POWER,  &M::acVccioCurrent,  &M::calculateIbufAcVccioMultiplier};
    static constexpr InputPower kIbufAcVcco  {Params::IBUF_AC_VCCO_POWER,   &M::acVccoCurrent,   &M::calculateIbufAcVccoMultiplier};
    static constexpr InputPower kIbufDcVccaux{Params::IBUF_DC_VCCAUX_POWER, &M::dcVccauxCurrent, &M::calculateIbufDcVccauxMultiplier};
    static constexpr InputPower kIbufDcVccio {Params::IBUF_DC_VCCIO_POWER,  &M::dcVccioCurrent,  &M::calculateIbufDcVccioMultiplier};
    static constexpr InputPower kIbufDcVcco  {Params::IBUF_DC_VCCO_POWER,   &M::onchipPower,     &M::calculateIbufDcVccoMultiplier};
    static constexpr InputPower kIbufOffchip {Params::IBUF_OFFCHIP_POWER,   &M::offchipPower,    &M::calculateIbufOffchipMultiplier};

    // The auxiliary currents of outputs reach the power unscaled by voltage, frequency or enable: as in the workbook.
    static constexpr OutputPower kObufAcVccaux    {Params::OBUF_AC_VCCAUX_POWER,      &M::acVccauxCurrent};
    static constexpr OutputPower kObufAcVccio     {Params::OBUF_AC_VCCIO_POWER,       &M::acVccioCurrent,      &M::calculateObufAcVccioMultiplier};
    static constexpr OutputPower kObufAcVcco      {Params::OBUF_AC_VCCO_POWER,        &M::acVccoCurrent,       &M::calculateObufAcVccoMultiplier};
    static constexpr OutputPower kObufAcVccoPredrv{Params::OBUF_AC_VCCO_PREDRV_POWER, &M::acVccoPredrvCurrent, &M::calculateObufAcVccoPredrvMultiplier};
    static constexpr OutputPower kObufDcVccaux    {Params::OBUF_DC_VCCAUX_POWER,      &M::dcVccauxCurrent};
    static constexpr OutputPower kObufDcVccio     {Params::OBUF_DC_VCCIO_POWER,       &M::dcVccioCurrent,      &M::calculateObufDcVccioMultiplier};
    static constexpr OutputPower kObufDcVcco      {Params::OBUF_DC_VCCO_POWER,        &M::onchipPower,         &M::calculateObufDcVccoMultiplier};
    static constexpr OutputPower kObufDcVccoPredrv{Params::OBUF_DC_VCCO_PREDRV_POWER, &M::dcVccoPredrvCurrent, &M::calculateObufDcVccoPredrvMultiplier};
    static constexpr OutputPower kObufOffchip     {Params::OBUF_OFFCHIP_POWER,        &M::offchipPower,        &M::calculateObufOffchipMultiplier};

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

#define ZELM_MODEL ZelmOrvaneSelvModel
#define ZELM_CELL_ROWS "io/ZelmOrvaneSelvCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneSelvModel::pullOutputs(Params& params, const Data& data) const
{
    calculatePowerScaling(params, data);
    calculateVccioPower(params, data);
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
    calculateObufDcVccoPredrvPower(params, data);
    calculateObufAcVccoPredrvPower(params, data);
    calculateObufDcVccoPower(params, data);
    calculateObufAcVccoPower(params, data);
    calculateObufOffchipPower(params, data);
    calculateObufDcVccauxPower(params, data);
    calculateObufAcVccauxPower(params, data);
    calculateNumOutputs(params, data);
    pullUnselectedCells(params, data);
}

// Hosts find all cells of all standards filled, also those that no output selects from.
void ZelmOrvaneSelvModel::pullUnselectedCells(Params& params, const Data& data) const
{
    for (const Input& standard : Rows::kInputs) {
        vol(standard, params, data);
        voh(standard, params, data);
        pw(standard, params, data);
        dcVccoCurrent(standard, params, data);
    }
    for (const Output& standard : Rows::kOutputs) {
        vol(standard, params, data);
        voh(standard, params, data);
        pw(standard, params, data);
        dcVccoCurrent(standard, params, data);
    }
}

// ---- Metrics of the standards ----

// clang-format off
#define METRIC(Standard, Side, metric, formula)                                                                        \
    float ZelmOrvaneSelvModel::metric(const Standard& standard, Params& params, const Data& data) const                \
    {                                                                                                                  \
        return once(standard.cell(params, Standard::metric##Cell),                                                     \
                    [&] { return (Side{{*this, standard, params, data}}.*formula)(); });                               \
    }
METRIC(Input,  Receiver, acVccauxCurrent,     &Receiver::auxiliaryToggling)
METRIC(Input,  Receiver, acVccioCurrent,      &Receiver::coreToggling)
METRIC(Input,  Receiver, acVccoCurrent,       &Receiver::driverToggling)
METRIC(Input,  Receiver, dcVccauxCurrent,     &Receiver::auxiliaryDirect)
METRIC(Input,  Receiver, dcVccioCurrent,      &Receiver::coreDirect)
METRIC(Input,  Receiver, dcVccoCurrent,       standard.termination.directCurrent)
METRIC(Input,  Receiver, offchipPower,        standard.termination.offchip)
METRIC(Input,  Receiver, onchipPower,         standard.termination.onchip)
METRIC(Input,  Receiver, pw,                  &Receiver::share)
METRIC(Input,  Receiver, voh,                 standard.termination.voh)
METRIC(Input,  Receiver, vol,                 standard.termination.vol)

METRIC(Output, Driver,   acVccauxCurrent,     &Driver::auxiliaryToggling)
METRIC(Output, Driver,   acVccioCurrent,      &Driver::coreToggling)
METRIC(Output, Driver,   acVccoCurrent,       standard.driverToggling)
METRIC(Output, Driver,   acVccoPredrvCurrent, standard.predriver.toggling)
METRIC(Output, Driver,   dcVccauxCurrent,     &Driver::auxiliaryDirect)
METRIC(Output, Driver,   dcVccioCurrent,      &Driver::coreDirect)
METRIC(Output, Driver,   dcVccoCurrent,       standard.termination.directCurrent)
METRIC(Output, Driver,   dcVccoPredrvCurrent, standard.predriver.direct)
METRIC(Output, Driver,   offchipPower,        standard.termination.offchip)
METRIC(Output, Driver,   onchipPower,         standard.termination.onchip)
METRIC(Output, Driver,   pw,                  &Driver::share)
METRIC(Output, Driver,   voh,                 standard.termination.voh)
METRIC(Output, Driver,   vol,                 standard.termination.vol)
#undef METRIC
// clang-format on

// ---- Cells of the group ----

float ZelmOrvaneSelvModel::inputPower(const InputPower& power, Params& params, const Data& data) const
{
    return once(params[power.cell], [&] { return zelm::io::inputPower(*this, power, Rows::kInputs, params, data); });
}

float ZelmOrvaneSelvModel::outputPower(const OutputPower& power, Params& params, const Data& data) const
{
    return once(params[power.cell], [&] { return zelm::io::outputPower(*this, power, Rows::kOutputs, params, data); });
}

float ZelmOrvaneSelvModel::calculateIobFreq(Params& params, const Data& data) const
{
    return once(params[Params::IOB_FREQ], [&] { return zelm::io::iobFreq(*this, params, data); });
}

float ZelmOrvaneSelvModel::calculateNumInputs(Params& params, const Data& data) const
{
    return once(params[Params::NUM_INPUTS], [&] { return zelm::io::numInputs(*this, params, data); });
}

float ZelmOrvaneSelvModel::calculateNumOutputs(Params& params, const Data& data) const
{
    return once(params[Params::NUM_OUTPUTS], [&] { return zelm::io::numOutputs(*this, params, data); });
}

float ZelmOrvaneSelvModel::calculatePowerScaling(Params& params, const Data& data) const
{
    return once(params[Params::POWER_SCALING], [&] {
        const float vccIo = getVccIo(params, data);
        const float simVoltage = data.findSimData("SIM_VOLTAGE");
        return ratioOrZero(vccIo, simVoltage);
    });
}

float ZelmOrvaneSelvModel::calculateVccioPower(Params& params, const Data& data) const
{
    return once(params[Params::VCCIO_POWER], [&] { return zelm::io::coreTotal(*this, params, data); });
}

float ZelmOrvaneSelvModel::calculateVccauxPower(Params& params, const Data& data) const
{
    return once(params[Params::VCCAUX_POWER], [&] { return zelm::io::auxiliaryTotal(*this, params, data); });
}

float ZelmOrvaneSelvModel::calculateVccoPower(Params& params, const Data& data) const
{
    return once(params[Params::VCCO_POWER], [&] {
        const float inputDc = calculateIbufDcVccoPower(params, data);
        const float inputAc = calculateIbufAcVccoPower(params, data);
        const float outputDc = calculateObufDcVccoPower(params, data);
        const float outputAc = calculateObufAcVccoPower(params, data);
        const float predriverDc = calculateObufDcVccoPredrvPower(params, data);
        const float predriverAc = calculateObufAcVccoPredrvPower(params, data);
        return zelm::io::total(*this, params, data, inputDc + inputAc, outputDc + outputAc + predriverDc + predriverAc);
    });
}

float ZelmOrvaneSelvModel::calculateOffchipPower(Params& params, const Data& data) const
{
    return once(params[Params::OFFCHIP_POWER], [&] { return zelm::io::offchipTotal(*this, params, data); });
}

// ---- Multipliers ----

bool ZelmOrvaneSelvModel::isMipiInput(Params& params, const Data& data) const
{
    return viewInputIoStandard(params, data).starts_with("MIPI");
}

float ZelmOrvaneSelvModel::calculateIbufEnableFactor(Params& params, const Data& data) const
{
    return once(params[Params::IBUF_ENABLE_FACTOR], [&] {
        const bool mipi = isMipiInput(params, data);
        const float disable = getIbufDisable(params, data);
        // A MIPI receiver stays powered for 70 percent of the time at least.
        return 1.0f - (mipi ? ZelmHelperUtils::MIN(disable, 0.3f) : disable);
    });
}

bool ZelmOrvaneSelvModel::receives(Params& params, const Data& data) const
{
    const std::string_view direction = viewIoDirection(params, data);
    return direction == "BIDI" || direction == "BIDI_INPUT" || direction == "INPUT";
}

// Share of time with the input buffer on.
float ZelmOrvaneSelvModel::inputEnable(Params& params, const Data& data) const
{
    const float enable = calculateIbufEnableFactor(params, data);
    return receives(params, data) ? enable : 1.0f;
}

// Share of time with the input termination on.
float ZelmOrvaneSelvModel::terminationEnable(Params& params, const Data& data) const
{
    const float disable = getTermDisable(params, data);
    return receives(params, data) ? 1.0f - disable : 1.0f;
}

bool ZelmOrvaneSelvModel::drivesLowPowerMipi(Params& params, const Data& data) const
{
    return viewOutputIoStandard(params, data).ends_with("DPHY_LP");
}

// Share of time with the output driven; the low-power MIPI driver works while the fast one is off.
float ZelmOrvaneSelvModel::outputEnable(Params& params, const Data& data) const
{
    const float enable = getOutputEnable(params, data);
    return drivesLowPowerMipi(params, data) ? 1.0f - enable : enable;
}

// Cycles of the output while driven; the low-power MIPI driver has a data rate of its own.
float ZelmOrvaneSelvModel::outputToggles(Params& params, const Data& data) const
{
    const float enable = getOutputEnable(params, data);
    const float rate = data.findMipiData("MIPI_LP_DATARATE");
    const float freq = calculateIobFreq(params, data);
    return drivesLowPowerMipi(params, data) ? (1.0f - enable) * rate * 0.5f : freq * enable;
}

float ZelmOrvaneSelvModel::outputLines(Params& params, const Data& data) const
{
    return viewOutputIoStandard(params, data).starts_with("DIFF") ? 2.0f : 1.0f;
}

float ZelmOrvaneSelvModel::calculateIbufDcVccioMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::IBUF_DC_VCCIO_MULTIPLIER], [&] {
        const float enable = inputEnable(params, data);
        const float vccIo = getVccIo(params, data);
        const float scaling = calculatePowerScaling(params, data);
        return enable * vccIo * scaling;
    });
}

float ZelmOrvaneSelvModel::calculateIbufAcVccioMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::IBUF_AC_VCCIO_MULTIPLIER], [&] {
        const float enable = inputEnable(params, data);
        const float vccIo = getVccIo(params, data);
        const float freq = calculateIobFreq(params, data);
        const float scaling = calculatePowerScaling(params, data);
        return enable * vccIo * freq * scaling;
    });
}

float ZelmOrvaneSelvModel::calculateIbufDcVccauxMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::IBUF_DC_VCCAUX_MULTIPLIER], [&] {
        const float enable = inputEnable(params, data);
        const float vccaux = getVccaux(params, data);
        return enable * vccaux;
    });
}

float ZelmOrvaneSelvModel::calculateIbufAcVccauxMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::IBUF_AC_VCCAUX_MULTIPLIER], [&] {
        const float enable = inputEnable(params, data);
        const float freq = calculateIobFreq(params, data);
        const float vccaux = getVccaux(params, data);
        return enable * freq * vccaux;
    });
}

float ZelmOrvaneSelvModel::calculateIbufAcVccoMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::IBUF_AC_VCCO_MULTIPLIER], [&] {
        const float enable = inputEnable(params, data);
        const float freq = calculateIobFreq(params, data);
        const float vcco15 = getVcco15(params, data);
        return enable * freq * vcco15;
    });
}

float ZelmOrvaneSelvModel::calculateIbufDcVccoMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::IBUF_DC_VCCO_MULTIPLIER], [&] { return terminationEnable(params, data); });
}

float ZelmOrvaneSelvModel::calculateIbufOffchipMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::IBUF_OFFCHIP_MULTIPLIER], [&] { return terminationEnable(params, data); });
}

float ZelmOrvaneSelvModel::calculateObufDcVccioMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::OBUF_DC_VCCIO_MULTIPLIER], [&] {
        const float enable = outputEnable(params, data);
        const float vccIo = getVccIo(params, data);
        const float lines = outputLines(params, data);
        const float scaling = calculatePowerScaling(params, data);
        return enable * vccIo * lines * scaling;
    });
}

float ZelmOrvaneSelvModel::calculateObufAcVccioMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::OBUF_AC_VCCIO_MULTIPLIER], [&] {
        const float toggles = outputToggles(params, data);
        const float vccIo = getVccIo(params, data);
        const float lines = outputLines(params, data);
        const float scaling = calculatePowerScaling(params, data);
        return toggles * vccIo * lines * scaling;
    });
}

float ZelmOrvaneSelvModel::calculateObufDcVccoPredrvMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::OBUF_DC_VCCO_PREDRV_MULTIPLIER], [&] {
        const float enable = outputEnable(params, data);
        const float vcco15 = getVcco15(params, data);
        const float lines = outputLines(params, data);
        return enable * vcco15 * lines;
    });
}

float ZelmOrvaneSelvModel::calculateObufAcVccoPredrvMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::OBUF_AC_VCCO_PREDRV_MULTIPLIER], [&] {
        const float toggles = outputToggles(params, data);
        const float vcco15 = getVcco15(params, data);
        const float lines = outputLines(params, data);
        return toggles * vcco15 * lines;
    });
}

float ZelmOrvaneSelvModel::calculateObufDcVccoMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::OBUF_DC_VCCO_MULTIPLIER], [&] {
        const float enable = outputEnable(params, data);
        const float lines = outputLines(params, data);
        return enable * lines;
    });
}

float ZelmOrvaneSelvModel::calculateObufAcVccoMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::OBUF_AC_VCCO_MULTIPLIER], [&] {
        const float toggles = outputToggles(params, data);
        const float lines = outputLines(params, data);
        const float vcco15 = getVcco15(params, data);
        return toggles * lines * vcco15;
    });
}

float ZelmOrvaneSelvModel::calculateObufOffchipMultiplier(Params& params, const Data& data) const
{
    return once(params[Params::OBUF_OFFCHIP_MULTIPLIER], [&] {
        const float enable = outputEnable(params, data);
        const float lines = outputLines(params, data);
        return enable * lines;
    });
}
