#pragma once

#include "framework/ZelmArithmetic.h"
#include "framework/ZelmHelperUtils.h"

#include <cmath>
#include <string_view>

/// What the channels of all transceivers have in common.
namespace zelm::channel {

/// A power that is linear in data rate, frequency or swing.
struct Line {
    float slope;
    float offset;

    float at(float x) const
    {
        return slope * x + offset;
    }
};

/// Power of current-mode circuits over that at the nominal supply: linear in the voltage.
inline float linearScale(float voltage, float nominal, float margin)
{
    return voltage / nominal * margin;
}

/// Power of switching circuits over that at the nominal supply: quadratic in the voltage.
inline float squareScale(float voltage, float nominal, float margin)
{
    const float ratio = voltage / nominal;
    return ratio * ratio * margin;
}

/// The data rate that sets the pace of the fabric's side.
inline float pacingRate(std::string_view operationalMode, float rxRate, float txRate)
{
    const float faster = ZelmHelperUtils::MAX(rxRate, txRate);
    return operationalMode == "TRANSMITTER" ? txRate : operationalMode == "RECEIVER" ? rxRate : faster;
}

/// A channel's part of what the sharing channels use together; 0 where nobody shares.
inline float share(float power, int sharing)
{
    return sharing < 1 ? 0.0f : power / static_cast<float>(sharing);
}

/// Pairs and groups of eight that hold the channels.
inline int duals(int channels)
{
    return truncate(std::floor(static_cast<float>(wrapAdd(channels, 1)) * 0.5f));
}

inline int octals(int channels)
{
    return truncate(std::floor(static_cast<float>(wrapAdd(channels, 7)) * 0.125f));
}

/// LCPLLs that run when so many channels share each; one LCPLL feeds two channels unless there are more than sharers.
inline int lcplls(int channels, int sharing)
{
    const int perLcpll = channels > sharing ? sharing : 2;
    const float divisor = ZelmHelperUtils::MAX(static_cast<float>(perLcpll), 1.0f);
    return truncate(ZelmHelperUtils::ROUNDUP(static_cast<float>(channels) / divisor, 0));
}

} // namespace zelm::channel
