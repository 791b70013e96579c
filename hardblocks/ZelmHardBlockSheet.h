#pragma once

#include "framework/ZelmSheet.h"

#include <cmath>
#include <string>

namespace zelm {

/// The exponent with which power follows the core supply where the data gives none.
inline constexpr double powerOverVoltage = 2.3;

/// (volts / reference) to the power exponent; the ratio is in single precision, and 0 for a reference of 0.
inline double voltageFactor(float volts, float reference, double exponent)
{
    const double ratio = ratioOrZero(volts, reference);
    return std::pow(ratio, exponent);
}

/// The power of count blocks that each draw row at 0.88 V: it grows with the square of the supply.
inline double squaredToSupply(float row, float vccint, int count)
{
    const double ratio = vccint / 0.88;
    return ratio * ratio * row * count;
}

inline float notBelowZero(float power)
{
    return std::isless(power, 0.0f) ? 0.0f : power; // clang makes a maximum of "<" here, which loses the sign of -0
}

} // namespace zelm

/// Blocks whose power is a row of MODE_TABLE, with or without error correction. A block adds numUnits().
template <class Model>
struct ZelmModeTableSheet : zelm::Sheet<Model> {
    using Base = ZelmModeTableSheet;
    using zelm::Sheet<Model>::Sheet;
    using zelm::Sheet<Model>::self;
    using typename zelm::Sheet<Model>::Key;

    void pullOutputs() const
    {
        self().VccintPower();
    }

    /// Names of settings can't begin with a digit, which modes do.
    std::string computeModeKeystr() const
    {
        return std::string("KEY_").append(self().Mode());
    }

    /// Only the exact word Disabled turns error correction off.
    double computeVccintPowerCalc() const
    {
        const int count = self().numUnits();
        const Key& key = self().ModeKeystr();
        const bool corrects = self().Fec() != "Disabled";
        const float withoutFec = self().findModeTable(key, "POWER_WO_FEC");
        const float withFec = self().findModeTable(key, "POWER_W_FEC");
        const float vccint = self().Vccint();
        return zelm::squaredToSupply(corrects ? withFec : withoutFec, vccint, count);
    }

    float computeVccintPower() const
    {
        return zelm::notBelowZero(self().VccintPowerCalc());
    }
};

/// Blocks whose current in A is known at one supply. SCALE gives that supply and the exponent with which power follows
/// it.
template <class Model>
struct ZelmKnownCurrentSheet : zelm::Sheet<Model> {
    using Base = ZelmKnownCurrentSheet;
    using zelm::Sheet<Model>::Sheet;
    using zelm::Sheet<Model>::self;

    void pullOutputs() const
    {
        self().Power();
    }

    /// In mW.
    double powerOf(float current) const
    {
        const float reference = self().findScale("VCCINT_SIM");
        const float exponent = self().findScale("POWER_FACTOR");
        const float vccint = self().Vccint();
        const float power = current * reference;
        return power * zelm::voltageFactor(vccint, reference, exponent) * 1000.0;
    }
};

/// PCIe blocks at their link.
template <class Model>
struct ZelmPcieSheet : ZelmKnownCurrentSheet<Model> {
    using Base = ZelmPcieSheet;
    using ZelmKnownCurrentSheet<Model>::ZelmKnownCurrentSheet;
    using zelm::Sheet<Model>::self;

    /// The key of DYNAMIC_CURRENTS: speed and width without a separator.
    std::string computeDataTag() const
    {
        return std::string(self().LinkSpeed()).append(self().LinkWidth());
    }

    float computeCurrent() const
    {
        return self().findDynamicCurrents(self().DataTag(), "AVG_CURRENT_A");
    }

    double computePower() const
    {
        return this->powerOf(self().Current());
    }
};
