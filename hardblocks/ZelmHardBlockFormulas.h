#pragma once

// What the formulas of several hard blocks share. Functions over a model take it by template: a block knows no other.

#include "framework/ZelmArithmetic.h"

#include <cmath>
#include <string>
#include <string_view>

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
    return power < 0.0f ? 0.0f : power;
}

/// The key of MODE_TABLE. Names of settings can't begin with a digit, which modes do.
template <class Model>
std::string modeKey(const Model& model, typename Model::Params& params, const typename Model::Data& data)
{
    return std::string("KEY_").append(model.viewMode(params, data));
}

/// The power of count blocks in their mode. Only the exact word Disabled turns error correction off.
template <class Model>
double modePower(const Model& model, typename Model::Params& params, const typename Model::Data& data, int count)
{
    const std::string_view key = model.viewModeKeystr(params, data);
    const bool corrects = model.viewFec(params, data) != "Disabled";
    const float withoutFec = data.findModeTable(key, "POWER_WO_FEC");
    const float withFec = data.findModeTable(key, "POWER_W_FEC");
    const float vccint = model.getVccint(params, data);
    return squaredToSupply(corrects ? withFec : withoutFec, vccint, count);
}

/// The power in mW of a block whose current in A is known at one supply. SCALE gives that supply and the exponent with
/// which power follows it.
template <class Model>
double currentPower(float current, const Model& model, typename Model::Params& params, const typename Model::Data& data)
{
    const float reference = data.findScale("VCCINT_SIM");
    const float exponent = data.findScale("POWER_FACTOR");
    const float vccint = model.getVccint(params, data);
    const float power = current * reference;
    return power * voltageFactor(vccint, reference, exponent) * 1000.0;
}

/// A PCIe link's key of DYNAMIC_CURRENTS: speed and width without a separator.
template <class Model>
std::string linkTag(const Model& model, typename Model::Params& params, const typename Model::Data& data)
{
    return std::string(model.viewLinkSpeed(params, data)).append(model.viewLinkWidth(params, data));
}

} // namespace zelm
