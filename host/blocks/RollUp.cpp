#include "host/blocks/RollUp.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace zelm::host {

namespace {

constexpr PerUnit kPerUnit[] = {
    {"DspCplx", "NUM_DSP"},
    {"Lorv", "NUM_LORVQUAD_CHANNELS"},
    {"Lorvp", "NUM_LORVP_QUAD_CHANNELS"},
    {"Sarn", "NUM_SARNQUAD_CHANNELS"},
};

struct Bank {
    float volts;
    const char* rail;
};
constexpr std::array<Bank, 8> kBanks{{{1.0f, "VCCO10"},
                                      {1.1f, "VCCO11"},
                                      {1.2f, "VCCO12"},
                                      {1.35f, "VCCO135"},
                                      {1.5f, "VCCO15"},
                                      {1.8f, "VCCO18"},
                                      {2.5f, "VCCO25"},
                                      {3.3f, "VCCO33"}}};

} // namespace

std::span<const PerUnit> perUnit()
{
    return kPerUnit;
}

std::string_view bankRail(float volts)
{
    const auto* nearest = std::min_element(kBanks.begin(), kBanks.end(), [&](const Bank& a, const Bank& b) {
        return std::fabs(a.volts - volts) < std::fabs(b.volts - volts);
    });
    return nearest->rail;
}

} // namespace zelm::host
