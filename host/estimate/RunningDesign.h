#pragma once

#include "host/estimate/Carry.h"
#include "host/estimate/Estimate.h"
#include "host/estimate/StaticPower.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace zelm::host {

/// A design at work: parts of it change, and what they reach is computed again, the groups, what is carried between
/// them, and the thermal loop. What comes out is to the bit what a new one gives.
class RunningDesign {
public:
    explicit RunningDesign(Design design, Curves curves = Curves::none, Gaps gaps = Gaps::refused);

    const Design& design() const
    {
        return m_estimate.design;
    }

    /// Takes the place of the group at that index. Modes, each a design of its own, stay as they are.
    void change(std::size_t index, Group group);
    void change(Environment environment);
    /// Takes the place of all; finds out what differs.
    void change(Design design);

    /// Up to date. After an Error a change may mend the design.
    const Estimate& estimate();
    Estimate take() &&;

private:
    struct Started {
        StartedGroup group;
        std::vector<GroupResult> results; ///< until the estimate has them
        std::vector<std::string> warnings;
    };

    const ResolvedDevice* device() const
    {
        return m_device ? &*m_device : nullptr;
    }
    std::uint64_t dataLoads() const;
    void resolveDevice();
    void computeGroups();
    void takeResults(const std::vector<std::size_t>& stale);
    void addUpGroups();
    void addStaticPower();

    Curves m_curves;
    Gaps m_gaps;
    Estimate m_estimate; // and the design
    std::optional<ResolvedDevice> m_device;
    std::optional<RailVolts> m_rails;
    std::vector<Started> m_started; // by group of the design
    std::vector<bool> m_stale;      // the same
    RunningGroups m_running;
    bool m_carriesOthers = true;       // than before, between groups
    bool m_readsOthers = true;         // of groups, where all of them are looked at
    std::size_t m_carriedByGroups = 0; // the first of the estimate's list
    std::vector<std::string> m_warningsAcross;
    std::vector<std::string> m_warningsOfDevice;
    std::map<std::string, int> m_usedCounts;
    StaticPower m_static;
    std::uint64_t m_loads = 0; // of the data, when the estimate was made
    bool m_all = true;
    bool m_changed = true;
    bool m_otherFields = true; // than groups have changed
};

} // namespace zelm::host
