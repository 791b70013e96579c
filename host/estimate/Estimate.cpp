#include "host/estimate/RunningDesign.h"

#include "host/base/Error.h"
#include "host/base/Text.h"
#include "host/blocks/Rails.h"
#include "host/estimate/Budgets.h"
#include "host/estimate/CrossChecks.h"
#include "host/estimate/DeviceChecks.h"
#include "host/estimate/GroupPower.h"
#include "host/estimate/Modes.h"
#include "host/estimate/Ranges.h"
#include "host/estimate/Supplies.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <numeric>
#include <set>
#include <utility>

namespace zelm::host {

namespace {

void refuseUnknownRails(const Design& design)
{
    const auto check = [&](const std::string& rail, const char* where) {
        if (!placeOfRail(rail))
            throw Error(fmt::format("{}: there is no rail of this name{}",
                                    design.source.at(fmt::format("{}.{}", where, rail)),
                                    suggestion(rail, railNames())));
    };
    for (const auto& [rail, volts] : design.rails)
        check(rail, "rails");
    for (const auto& [rail, current] : design.regulators)
        check(rail, "regulators");
    for (const auto& [rail, current] : design.budgets.rails)
        check(rail, "budgets.rails");
}

std::vector<std::string> loadedRails(const Side& side)
{
    std::vector<std::string> loaded;
    for (const RailResult& rail : side.rails) {
        if (rail.amperes() != 0.0)
            loaded.push_back(rail.name);
    }
    return loaded;
}

// Limits on rails that mean nothing: a name that differs by a letter, say.
void warnOfIdleLimits(const Design& design, const ResolvedDevice* device, Estimate& result)
{
    const auto check = [&](const std::string& rail, const auto& place) {
        const bool lacking = device && !hasRail(device->name, rail);
        const RailResult* load = result.side().rail(rail);
        if (!lacking && load && load->amperes() != 0.0)
            return;
        const std::string what = lacking ? device->name + " has no such rail" : "nothing loads this rail";
        result.warnings.push_back(
            fmt::format("{}: {}{}", design.source.at(place()), what, suggestion(rail, loadedRails(result.side()))));
    };
    for (const auto& regulator : design.regulators)
        check(regulator.first, [&] { return "regulators." + regulator.first; });
    for (const auto& budget : design.budgets.rails)
        check(budget.first, [&] { return "budgets.rails." + budget.first; });
    for (const Supply& supply : design.supplies.all) {
        for (std::size_t i = 0; i < supply.rails.size() && !design.regulators.contains(supply.name); ++i)
            check(supply.rails[i], [&] { return fmt::format("supplies.{}.rails[{}]", supply.name, i); });
    }
}

// Two outputs of a group on one rail warn of the same.
void sayOnce(std::vector<std::string>& warnings)
{
    std::set<std::string> said;
    std::erase_if(warnings, [&](const std::string& warning) { return !said.insert(warning).second; });
}

// So that a group which is the same in both comes to the same.
bool differInGroupsOnly(const Design& a, const Design& b)
{
    const auto isOneInBoth = [](const Group& one, const Group& other) {
        return one.name == other.name && one.block == other.block;
    };
    return a.device == b.device && a.rails == b.rails && a.staticInputs == b.staticInputs &&
           std::equal(a.groups.begin(), a.groups.end(), b.groups.begin(), b.groups.end(), isOneInBoth);
}

bool areReadFromOneFile(const Design& a, const Design& b)
{
    return a.source.file == b.source.file && a.source.lines == b.source.lines && a.source.included == b.source.included;
}

// What groups load rails with, without the inputs that make it.
std::vector<GroupResult> loadsOf(const std::vector<GroupResult>& groups)
{
    std::vector<GroupResult> loads(groups.size());
    for (std::size_t i = 0; i < groups.size(); ++i) {
        loads[i].block = groups[i].block;
        loads[i].contributions = groups[i].contributions;
        loads[i].watts = groups[i].watts;
        loads[i].offchipWatts = groups[i].offchipWatts;
    }
    return loads;
}

void append(std::vector<std::string>& all, const std::vector<std::string>& more)
{
    all.insert(all.end(), more.begin(), more.end());
}

} // namespace

RunningDesign::RunningDesign(Design design, Curves curves, Gaps gaps, Scope scope)
    : m_curves(curves), m_gaps(gaps), m_scope(scope)
{
    m_estimate.design = std::move(design);
    startModes();
}

// Those of the design. What is at work already finds out what differs.
void RunningDesign::startModes()
{
    const std::vector<Mode>& modes = m_estimate.design.modes;
    m_modes.resize(modes.size());
    for (std::size_t i = 0; i < modes.size(); ++i) {
        RunningMode& mode = m_modes[i];
        mode.shown.reset();
        if (mode.running)
            mode.running->change(*modes[i].design);
        else
            mode.running = std::make_unique<RunningDesign>(*modes[i].design, Curves::none, m_gaps, Scope::mode);
    }
}

// The estimate's own: who has copied the estimate keeps the mode as it was.
Design& RunningDesign::shownMode(std::size_t mode)
{
    constexpr long ours = 2; // the estimate's and this
    std::shared_ptr<Design>& own = m_modes.at(mode).shown;
    if (!own || own.use_count() > ours) {
        std::shared_ptr<const Design>& shown = m_estimate.design.modes[mode].design;
        own = std::make_shared<Design>(*shown);
        shown = own;
    }
    return *own;
}

void RunningDesign::changeMode(std::size_t mode, std::size_t index, const Group& group)
{
    shownMode(mode).groups.change().at(index) = group;
    m_modes[mode].running->change(index, group);
    m_changed = true;
}

void RunningDesign::changeMode(std::size_t mode, const Environment& environment)
{
    shownMode(mode).environment = environment;
    m_modes[mode].running->change(environment);
    m_changed = true;
}

void RunningDesign::change(std::size_t index, Group group)
{
    const Group& place = m_estimate.design.groups.at(index);
    if (group == place)
        return;
    m_changed = true;
    if (group.name != place.name || group.block != place.block || m_stale.size() <= index)
        m_all = true;
    else
        markStale(index, place, group);
    m_estimate.design.groups.change()[index] = std::move(group);
}

void RunningDesign::markStale(std::size_t index, const Group& before, const Group& after)
{
    m_stale[index] = true;
    for (const std::size_t reached : carriedInto(m_estimate.design, before, after))
        m_stale[reached] = true;
}

void RunningDesign::change(Environment environment)
{
    m_estimate.design.environment = std::move(environment);
    m_changed = true;
}

void RunningDesign::change(Design design)
{
    Design& now = m_estimate.design;
    if (m_stale.size() != design.groups.size() || !differInGroupsOnly(now, design)) {
        m_all = true;
        now = std::move(design);
        m_changed = true;
        startModes();
        return;
    }
    for (std::size_t i = 0; i < design.groups.size(); ++i) {
        if (design.groups[i] != now.groups[i])
            change(i, design.groups[i]);
    }
    design.groups = std::move(now.groups);
    now = std::move(design);
    m_changed = m_otherFields = true;
    startModes();
}

const Estimate& RunningDesign::estimate()
{
    if (m_loads != dataLoads())
        m_all = m_changed = true;
    if (!m_changed)
        return m_estimate;
    const bool all = std::exchange(m_all, true); // until this ends well
    refuseUnknownRails(m_estimate.design);
    refuseImpossible(m_estimate.design);
    if (all)
        resolveDevice();
    m_readsOthers = all;
    computeGroups();
    addUpGroups();
    addStaticPower();
    for (Side& side : m_estimate.sides)
        addUp(side);
    warnOfIdleLimits(m_estimate.design, device(), m_estimate);
    addSupplies(m_estimate);
    if (m_scope != Scope::mode) {
        addModes();
        m_estimate.budgets.clear();
        checkBudgets(m_estimate);
    }
    sayOnce(m_estimate.warnings);
    m_all = m_changed = m_otherFields = false;
    m_loads = dataLoads();
    return m_estimate;
}

// How often all data that the estimate takes have been loaded.
std::uint64_t RunningDesign::dataLoads() const
{
    std::uint64_t sum = 0;
    for (const GroupResult& group : m_estimate.groups)
        sum += group.block->loads();
    for (const RunningMode& mode : m_modes)
        sum += mode.running->dataLoads();
    return m_device ? sum + block("Static").loads() + block("Parts").loads() + block("Noc").loads() : sum;
}

Estimate RunningDesign::take() &&
{
    estimate();
    return std::move(m_estimate);
}

void RunningDesign::resolveDevice()
{
    const Design& design = m_estimate.design;
    m_device.reset();
    if (design.device)
        m_device = resolve(design);
    m_rails = std::make_shared<const RailVolts>(design, device());
    m_started.clear();
    m_started.resize(design.groups.size());
    m_running = RunningGroups();
    m_stale.assign(design.groups.size(), true);
    m_carriedOf.assign(design.groups.size(), 0);
    m_estimate.carried.clear();
}

// A mode that has to begin anew goes on from its design, which has just been computed, as if its groups had changed.
void RunningDesign::beginFrom(const RunningDesign& other)
{
    const std::vector<Group>& groups = m_estimate.design.groups.items();
    const std::vector<Group>& others = other.m_estimate.design.groups.items();
    if (!differInGroupsOnly(m_estimate.design, other.m_estimate.design))
        return;
    m_device = other.m_device;
    m_rails = other.m_rails;
    m_started = other.m_started;
    m_estimate.groups = loadsOf(other.m_estimate.groups);
    m_estimate.utilisation = other.m_estimate.utilisation;
    m_warningsAcross = other.m_warningsAcross;
    m_warningsOfDevice = other.m_warningsOfDevice;
    m_otherFields = !areReadFromOneFile(m_estimate.design, other.m_estimate.design);
    m_placesOfLoads = other.m_placesOfLoads;
    m_static.takeFrom(other.m_static);
    m_stale.assign(groups.size(), false);
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (groups[i] != others[i])
            markStale(i, others[i], groups[i]);
    }
    m_all = false;
    m_otherGroups = true;
    m_loads = dataLoads();
}

void RunningDesign::computeGroups()
{
    const Design& design = m_estimate.design;
    std::vector<std::size_t> stale;
    for (std::size_t i = 0; i < m_stale.size(); ++i) {
        if (m_stale[i])
            stale.push_back(i);
    }
    std::vector<std::shared_ptr<Started>> before; // null where all begins
    for (const std::size_t i : stale) {
        auto started = std::make_shared<Started>(Started{start(design, design.groups[i], *m_rails, device())});
        before.push_back(std::exchange(m_started[i], std::move(started)));
    }
    for (const std::size_t i : stale) {
        Started& started = *m_started[i];
        for (Running& running : started.group.blocks)
            started.results.push_back(powerOf(running, design, *m_rails, m_gaps, started.warnings));
        m_stale[i] = false;
    }
    for (std::size_t k = 0; k < stale.size(); ++k) {
        const std::vector<Running>& blocks = m_started[stale[k]]->group.blocks;
        const auto readsTheSame = [](const Running& old, const Running& now) { return old.readsTheSameOf(now); };
        m_readsOthers = m_readsOthers || !std::equal(before[k]->group.blocks.begin(), before[k]->group.blocks.end(),
                                                     blocks.begin(), blocks.end(), readsTheSame);
    }
    for (std::size_t k = 0; k < stale.size(); ++k) {
        const std::vector<Running>& blocks = m_started[stale[k]]->group.blocks;
        for (std::size_t b = 0; b < blocks.size(); ++b) {
            if (m_readsOthers)
                blocks[b].rememberReads();
            else
                blocks[b].rememberReadsOf(before[k]->group.blocks[b]);
        }
    }
    const bool areOthers = std::exchange(m_otherGroups, false) || !stale.empty() || m_readsOthers;
    if (areOthers) {
        std::vector<const Running*> all;
        all.reserve(m_started.size());
        for (const auto& started : m_started) {
            for (const Running& running : started->group.blocks)
                all.push_back(&running);
        }
        m_running = RunningGroups(std::move(all));
    }
    takeResults(stale);
    if (m_scope != Scope::mode)
        takeCarried(stale);
    if (areOthers || m_factors)
        addUpRails();
}

// Into the estimate, whose groups are those of all blocks.
void RunningDesign::takeResults(const std::vector<std::size_t>& stale)
{
    std::vector<GroupResult>& groups = m_estimate.groups;
    groups.resize(m_running.all().size());
    auto next = stale.begin();
    std::size_t place = 0;
    for (std::size_t i = 0; i < m_started.size(); ++i) {
        if (next != stale.end() && *next == i) {
            std::move(m_started[i]->results.begin(), m_started[i]->results.end(),
                      groups.begin() + static_cast<std::ptrdiff_t>(place));
            ++next;
        }
        place += m_started[i]->group.blocks.size();
    }
}

// The same. Most changes of a group leave what is carried as it was.
void RunningDesign::takeCarried(const std::vector<std::size_t>& stale)
{
    std::vector<Carried>& all = m_estimate.carried;
    const auto ofGroup = [&](std::size_t index) -> std::vector<Carried>& { return m_started[index]->group.carried; };
    bool isOther = false;
    std::size_t begin = 0;
    std::size_t before = 0; // groups
    for (const std::size_t i : stale) {
        for (; before < i; ++before)
            begin += m_carriedOf[before];
        const std::vector<Carried>& own = ofGroup(i);
        const auto old = all.begin() + static_cast<std::ptrdiff_t>(begin);
        isOther =
            isOther || !std::equal(own.begin(), own.end(), old, old + static_cast<std::ptrdiff_t>(m_carriedOf[i]));
    }
    if (isOther) {
        std::vector<Carried> now;
        now.reserve(all.size());
        auto from = std::make_move_iterator(all.begin());
        auto next = stale.begin();
        for (std::size_t i = 0; i < m_started.size(); ++i) {
            const auto to = from + static_cast<std::ptrdiff_t>(m_carriedOf[i]);
            if (next != stale.end() && *next == i) {
                ++next;
                m_carriedOf[i] = ofGroup(i).size();
                now.insert(now.end(), std::make_move_iterator(ofGroup(i).begin()),
                           std::make_move_iterator(ofGroup(i).end()));
            } else {
                now.insert(now.end(), from, to);
            }
            from = to;
        }
        now.insert(now.end(), from, std::make_move_iterator(all.end()));
        all = std::move(now);
    }
    for (const std::size_t i : stale)
        ofGroup(i) = std::vector<Carried>();
}

// Rails stand in the order in which groups load them, which is most often that of the last time.
void RunningDesign::addUpRails()
{
    const std::vector<std::size_t> before = std::exchange(m_placesOfLoads, {});
    m_placesOfLoads.reserve(before.size());
    m_railLoads.clear();
    m_loadedWatts = 0.0;
    for (const GroupResult& group : m_estimate.groups) {
        for (const Contribution& part : group.contributions) {
            const std::size_t next = m_placesOfLoads.size();
            std::size_t place = next < before.size() ? before[next] : m_railLoads.size();
            if (place >= m_railLoads.size() || m_railLoads[place].rail != part.rail) {
                const auto found = std::find_if(m_railLoads.begin(), m_railLoads.end(),
                                                [&](const RailLoad& load) { return load.rail == part.rail; });
                place = static_cast<std::size_t>(found - m_railLoads.begin());
            }
            if (place == m_railLoads.size())
                m_railLoads.push_back({part.rail});
            m_placesOfLoads.push_back(place);
            RailLoad& load = m_railLoads[place];
            const double factor = m_factors ? m_factors->of(*group.block, part.rail) : 1.0;
            load.amperes += factor * part.amperes;
            load.watts += factor * part.watts;
            m_loadedWatts += factor * part.watts;
            if (load.volts == 0.0 && part.amperes != 0.0)
                load.volts = part.watts / part.amperes;
        }
    }
}

void RunningDesign::addUp(Side& side) const
{
    for (const RailLoad& load : m_railLoads) {
        auto rail = std::find_if(side.rails.begin(), side.rails.end(),
                                 [&](const RailResult& r) { return r.name == load.rail; });
        if (rail == side.rails.end())
            rail = side.rails.insert(rail, RailResult{std::string(load.rail), "", 0.0, 0.0, 0.0, 0.0, 0.0, 0.0});
        rail->dynamicAmperes = load.amperes;
        rail->dynamicWatts = load.watts;
        if (rail->volts == 0.0)
            rail->volts = load.volts;
    }
    side.totalWatts = side.staticWatts + m_estimate.dynamicWatts;
}

void RunningDesign::addUpGroups()
{
    Estimate& result = m_estimate;
    result.dynamicWatts = 0.0;
    result.offchipWatts = 0.0;
    for (const GroupResult& group : result.groups) {
        result.dynamicWatts += group.watts;
        result.offchipWatts += (m_factors ? m_factors->of(*group.block) : 1.0) * group.offchipWatts;
    }
    if (m_factors)
        result.dynamicWatts = m_loadedWatts;
    result.warnings = result.design.warnings;
    for (const Group& group : result.design.groups)
        append(result.warnings, group.warnings);
    for (const auto& started : m_started)
        append(result.warnings, started->group.warnings);
    for (const auto& started : m_started)
        append(result.warnings, started->warnings);
    if (m_readsOthers)
        m_warningsAcross = warningsAcross(m_running, device());
    append(result.warnings, m_warningsAcross);
    append(result.warnings, warningsOfEnvironment(result.design));
    if (m_readsOthers || m_otherFields || !device())
        m_warningsOfDevice = warningsOfDevice(result.design, m_running, device());
    append(result.warnings, m_warningsOfDevice);
}

// What all groups use of the device, which the static power model takes.
void RunningDesign::lookAtUses()
{
    Estimate& result = m_estimate;
    result.utilisation = utilisation(m_running, *m_device);
    result.usedCounts = usedCounts(m_running, *m_device, result.design);
    m_static.take(result.design, *m_device, result.usedCounts, !m_running.of("Harl").empty(), m_lender);
    if (m_scope == Scope::mode)
        return;
    result.carried.resize(std::accumulate(m_carriedOf.begin(), m_carriedOf.end(), std::size_t{0}));
    static const Carried::End from = endOf("groups");
    static const Carried::End to = endOf("Static");
    for (const auto& [cell, count] : result.usedCounts)
        result.carried.push_back({from, {to.name, cell}, count});
}

void RunningDesign::addStaticPower()
{
    Estimate& result = m_estimate;
    result.sides.clear();
    result.cooling.clear();
    if (!device()) {
        Side side;
        side.junction = result.design.environment.junction.value_or(0.0);
        result.sides.push_back(side);
        result.utilisation.clear(); // of a device that there was before
        result.usedCounts.clear();
        return;
    }
    if (m_readsOthers)
        lookAtUses();
    for (const Utilisation& use : result.utilisation) {
        if (use.used > use.available)
            result.warnings.push_back(fmt::format("the design uses {:g} {} of the {:g} that {} has", use.used,
                                                  use.resource, use.available, m_device->name));
    }
    m_static.scaleBy(m_factors);
    m_static.addTo(result);
    if (m_scope == Scope::whole)
        m_static.addLimitsTo(result, m_curves);
}

void RunningDesign::addModes()
{
    m_estimate.period.reset();
    if (m_modes.empty())
        return;
    std::vector<EstimatedMode> modes;
    for (std::size_t i = 0; i < m_modes.size(); ++i) {
        RunningDesign& mode = *m_modes[i].running;
        mode.m_lender = device() ? &m_static : nullptr;
        if (mode.m_all)
            mode.beginFrom(*this);
        if (m_factors || mode.m_factors)
            mode.scaleBy(m_factors);
        try {
            modes.push_back({&mode.estimate(), mode.device() ? &mode.m_static : nullptr});
        } catch (const DataError&) {
            throw;
        } catch (const Error& error) {
            throw Error(fmt::format("mode \"{}\": {}", m_estimate.design.modes[i].name, error.what()));
        }
    }
    addPeriod(m_estimate, modes);
}

Estimate estimate(const Design& design, Curves curves, Gaps gaps)
{
    return RunningDesign(design, curves, gaps).take();
}

} // namespace zelm::host
