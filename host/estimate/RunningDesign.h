#pragma once

#include "host/estimate/Carry.h"
#include "host/estimate/Estimate.h"
#include "host/estimate/Modes.h"
#include "host/estimate/StaticPower.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelm::host {

/// How much of a design is worked out.
enum class Scope {
    mode,  ///< what the period of a design takes of a mode: groups and sides
    sums,  ///< and the period and budgets
    whole, ///< and cooling cases and limits
};

/// A design at work: parts of it change, and what they reach is computed again, the groups, what is carried between
/// them, and the thermal loop. Its modes are at work themselves. What comes out is to the bit what a new one gives.
class RunningDesign {
public:
    explicit RunningDesign(Design design, Curves curves = Curves::none, Gaps gaps = Gaps::refused,
                           Scope scope = Scope::whole);

    const Design& design() const
    {
        return m_estimate.design;
    }

    /// Takes the place of the group at that index. Modes, each a design of its own, stay as they are.
    void change(std::size_t index, Group group);
    void change(Environment environment);
    /// The same in a mode's design.
    void changeMode(std::size_t mode, std::size_t index, const Group& group);
    void changeMode(std::size_t mode, const Environment& environment);
    /// Takes the place of all; finds out what differs.
    void change(Design design);

    /// From the next estimate on the data are off by these, null: by nothing: rails, totals and all that follows, not
    /// what the groups tell of themselves. To be said again when factors change.
    void scaleBy(const DataFactors* factors)
    {
        m_factors = factors;
        m_changed = true;
    }

    /// Up to date. After an Error a change may mend the design.
    const Estimate& estimate();
    Estimate take() &&;

private:
    struct Started {
        StartedGroup group;                 ///< what it carries, too, until the estimate has it
        std::vector<GroupResult> results{}; ///< the same
        std::vector<std::string> warnings{};
    };

    // What the groups load a rail with, all together.
    struct RailLoad {
        std::string_view rail;
        double volts = 0.0;
        double amperes = 0.0;
        double watts = 0.0;
    };
    struct RunningMode {
        std::unique_ptr<RunningDesign> running;
        std::shared_ptr<Design> shown; ///< by the estimate, once it has changed
    };

    const ResolvedDevice* device() const
    {
        return m_device.get();
    }
    std::uint64_t dataLoads() const;
    void resolveDevice();
    void beginFrom(const RunningDesign& other);
    void markStale(std::size_t index, const Group& before, const Group& after);
    void computeGroups();
    void takeResults(const std::vector<std::size_t>& stale);
    void takeCarried(const std::vector<std::size_t>& stale);
    void addUpGroups();
    void addUpRails();
    void addUp(Side& side) const;
    void lookAtUses();
    void addStaticPower();
    void startModes();
    Design& shownMode(std::size_t mode);
    void addModes();

    Curves m_curves;
    Gaps m_gaps;
    Scope m_scope;
    Estimate m_estimate; // and the design
    std::shared_ptr<const ResolvedDevice> m_device;
    std::shared_ptr<const RailVolts> m_rails;
    std::vector<std::shared_ptr<Started>> m_started; // by group of the design; modes share what is the same in them
    std::vector<bool> m_stale;                       // the same
    RunningGroups m_running;
    std::vector<RailLoad> m_railLoads;
    double m_loadedWatts = 0.0;               // on all rails
    std::vector<std::size_t> m_placesOfLoads; // of each contribution's rail among those, when they were last added up
    bool m_readsOthers = true;                // of groups, where all of them are looked at
    std::vector<std::size_t> m_carriedOf;     // how many the estimate has of each group; then come those of all
    std::vector<std::string> m_warningsAcross;
    std::vector<std::string> m_warningsOfDevice;
    StaticPower m_static;
    const DataFactors* m_factors = nullptr;
    const StaticPower* m_lender = nullptr; // of a mode, its design's
    std::vector<RunningMode> m_modes;      // as the design's
    std::uint64_t m_loads = 0;             // of the data, when the estimate was made
    bool m_all = true;
    bool m_otherGroups = false; // than were added up, though they are computed
    bool m_changed = true;
    bool m_otherFields = true; // than groups have changed
};

} // namespace zelm::host
