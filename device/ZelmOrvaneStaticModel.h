#pragma once

#include "device/ZelmOrvaneStaticData.h"
#include "device/ZelmOrvaneStaticParams.h"
#include "framework/ZelmModelBlock.h"

namespace zelm::staticpower {
struct Rail;
struct Site;
struct Copy;
struct Share;
struct Total;
struct Addends;
enum CurveCell : int;
enum VoltageTerm : int;
} // namespace zelm::staticpower

class ZELM_EXPORT ZelmOrvaneStaticModel;
extern template class ZelmModelBlock<ZelmOrvaneStaticModel, ZelmOrvaneStaticParams, ZelmOrvaneStaticData>;

/// Leakage of the whole device, by rail. One network of cells: what a resource leaks on a rail, the rails' sums,
/// totals.
class ZELM_EXPORT ZelmOrvaneStaticModel final
    : public ZelmModelBlock<ZelmOrvaneStaticModel, ZelmOrvaneStaticParams, ZelmOrvaneStaticData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneStaticModel";

#define ZELM_CELL_ROWS "device/ZelmOrvaneStaticCells.def"
#include "framework/ZelmCellFunctions.inc"

    void pullOutputs(Params& params, const Data& data) const;

private:
    using Rail = zelm::staticpower::Rail;
    using Site = zelm::staticpower::Site;

    float valueOf(Params::FloatEnum cell, Params& params, const Data& data) const;
    int valueOf(Params::IntEnum cell, Params& params, const Data& data) const;
    float sumOf(const zelm::staticpower::Addends& addends, float start, Params& params, const Data& data) const;

    // Metrics of a rail
    float nominalVolts(const Rail& rail, Params& params, const Data& data) const;
    std::string_view rangeKey(const Rail& rail, Params& params, const Data& data) const;
    float validMin(const Rail& rail, Params& params, const Data& data) const;
    float validMax(const Rail& rail, Params& params, const Data& data) const;
    float railCurrent(const Rail& rail, Params& params, const Data& data) const;
    float railPower(const Rail& rail, Params& params, const Data& data) const;
    float railPowerupCurrent(const Rail& rail, Params& params, const Data& data) const;

    // Metrics of a site
    std::string_view curveKey(const Site& site, Params& params, const Data& data) const;
    template <zelm::staticpower::CurveCell which>
    float term(const Site& site, Params& params, const Data& data) const;
    float leakage(const Site& site, Params& params, const Data& data) const;
    float leakageAt25(const Site& site, Params& params, const Data& data) const;
    template <zelm::staticpower::VoltageTerm which>
    float voltageTerm(const Site& site, Params& params, const Data& data) const;
    float voltageScaling(const Site& site, Params& params, const Data& data) const;
    float binning(const Site& site, Params& params, const Data& data) const;
    float share(const Site& site, Params& params, const Data& data) const;
    int units(const Site& site, Params& params, const Data& data) const;
    float multiplier(const Site& site, Params& params, const Data& data) const;
    float siteCurrent(const Site& site, Params& params, const Data& data) const;
    float totalPowerFactor(const Site& site, Params& params, const Data& data) const;
    float powerupConst(const Site& site, Params& params, const Data& data) const;
    float powerupCurrent(const Site& site, Params& params, const Data& data) const;

    float copiedCurrent(const zelm::staticpower::Copy& copy, Params& params, const Data& data) const;
    float sharePower(const zelm::staticpower::Share& share, Params& params, const Data& data) const;
    float total(const zelm::staticpower::Total& total, Params& params, const Data& data) const;
};
