#pragma once

#include "host/design/ResolvedDevice.h"
#include "host/estimate/DataFactors.h"
#include "host/estimate/Estimate.h"
#include "host/estimate/Thermal.h"

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace zelm::host {

class StaticModel;

/// The static side of an estimate, typical and worst case. It stays with a design at work: as long as its inputs are
/// the same, what it has worked out at a temperature is known.
class StaticPower {
public:
    StaticPower();
    ~StaticPower();
    StaticPower(const StaticPower&) = delete;
    StaticPower& operator=(const StaticPower&) = delete;

    /// Takes the inputs of the model: all but the temperature. A managed device's own I/O is in use. A like design,
    /// if there is one, lends its models where they are the same.
    void take(const Design& design, const ResolvedDevice& device, const UsedCounts& usedCounts, bool isManaged,
              const StaticPower* like = nullptr);
    /// Takes those of another design, all of which are the same.
    void takeFrom(const StaticPower& other);
    /// From now on all is off by these, null: by nothing. It comes from a table then, which the formulas fill at half
    /// degrees and which is cubic between: right to the float, and quick for temperatures that never come again.
    void scaleBy(const DataFactors* factors)
    {
        m_factors = factors;
    }
    /// Closes the thermal loop over the estimate's dynamic power, and fills the sides.
    void addTo(Estimate& estimate);
    /// What sides tell beyond that: cooling cases, limits, and curves if they are to be drawn.
    void addLimitsTo(Estimate& estimate, Curves curves);
    /// Static watts by junction temperature, of a process side: TYP or MAX.
    PowerCurve curve(const std::string& process);
    /// The same by a table.
    PowerCurve tabledCurve(const std::string& process);
    /// What the rails draw at a junction temperature on that side, until the next call.
    const std::vector<RailResult>& rails(const std::string& process, double junction);
    /// The power-up current of each of those: the worst of both sides, whatever the temperature.
    std::vector<double> powerUpAmperes();

private:
    PowerCurve totalOf(const Estimate& estimate, const std::string& process);
    void fill(Side& side, StaticModel& model) const;
    void giveBack();

    std::vector<std::string> m_processes; // the design's first
    std::map<std::string, std::shared_ptr<StaticModel>> m_models;
    const DataFactors* m_factors = nullptr;
};

/// What is set in the static power model of an estimated design, but for the process side and the temperature. Empty if
/// it names no device.
std::vector<std::pair<const ZelmCellInfo*, Value>> staticSettings(const Estimate& estimate);

/// The static power of a design that has been estimated. Null if it names no device.
std::shared_ptr<StaticPower> staticPowerOf(const Estimate& estimate);

} // namespace zelm::host
