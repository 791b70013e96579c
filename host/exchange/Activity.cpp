#include "host/exchange/Activity.h"

#include "host/base/Error.h"
#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/base/Units.h"
#include "host/blocks/Uses.h"
#include "host/design/Format.h"
#include "host/design/Include.h"
#include "host/exchange/ActivityMap.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace zelm::host {

namespace {

using ScopeId = std::uint32_t;
constexpr ScopeId kNoScope = 0xFFFFFFFF;

// The names in a path of scopes or of the hierarchy.
std::vector<std::string> pathParts(std::string path, char separator)
{
    return path.empty() ? std::vector<std::string>() : split(path, separator);
}

// A scope by its name; "lane[0].core" may be one, or one in another.
std::optional<ScopeId> within(const ScopeTree& tree, ScopeId scope, const std::string& name)
{
    if (const std::optional<ScopeId> whole = tree.find(scope, name))
        return whole;
    std::optional<ScopeId> found = scope;
    const std::vector<std::string> parts = split(name, '.');
    for (std::size_t i = 0; found && i < parts.size(); ++i)
        found = tree.find(*found, parts[i]);
    return found;
}

// The scope of a path below another, as far as there is one: how many of its parts.
std::pair<ScopeId, std::size_t> follow(const ScopeTree& tree, ScopeId scope, const std::vector<std::string>& parts)
{
    std::size_t done = 0;
    for (; done < parts.size(); ++done) {
        const std::optional<ScopeId> next = within(tree, scope, parts[done]);
        if (!next)
            break;
        scope = *next;
    }
    return {scope, done};
}

std::vector<std::string> namesWithin(const ScopeTree& tree, ScopeId parent)
{
    std::vector<std::string> names;
    for (ScopeId i = 1; i < tree.size(); ++i) {
        if (tree.parent(i) == parent)
            names.push_back(tree.name(i));
    }
    return names;
}

// Signals of one kind, and what they are in the dump.
struct SignalUse {
    std::vector<std::uint32_t> nets;
    bool wanted = false; // named by a person: it must be there
    std::string place;   // of that
};

// Where the nets of groups are: those of a scope and of all below it that aren't another's.
class Finder {
public:
    Finder(const ScopeTree& tree, ScopeId root) : m_tree(&tree), m_root(root) {}

    void claim(ScopeId scope)
    {
        m_netsOfScope.try_emplace(scope);
    }

    /// A signal by its path from the design's scope or from the top of the dump; its handle.
    std::size_t signal(const std::string& path, bool wanted, const std::string& place)
    {
        const std::size_t handle = m_signals.size();
        m_signals.push_back({{}, wanted, place.empty() ? path : fmt::format("{}: {}", place, path)});
        // Brackets may be a name's own, those of generated scopes among them, or choose a bit.
        const auto [own, select] = nameAndSelect(path);
        look(path, "", handle);
        if (!select.empty())
            look(std::string(own), std::string(select), handle);
        return handle;
    }

    bool wants(const DumpVariable& variable)
    {
        bool wanted = false;
        if (!m_byName.empty()) {
            const auto named = m_byName.equal_range({variable.scope, std::string(variable.name)});
            for (auto one = named.first; one != named.second; ++one) {
                const auto& [handle, select] = one->second;
                if (!select.empty() && select != variable.select)
                    continue;
                m_signals[handle].nets.push_back(variable.net);
                wanted = true;
            }
            if (m_lookedIn.contains(variable.scope) && m_seenNames.size() < kMostSeenNames)
                m_seenNames.emplace(variable.name);
        }
        const ScopeId owner = variable.isNet ? ownerOf(variable.scope) : kNoScope;
        if (owner != kNoScope) {
            m_netsOfScope[owner].push_back(variable.net);
            wanted = true;
        }
        return (owner == kNoScope && countUnclaimed(variable)) || wanted;
    }

    void refuseMissing(const std::string& dump) const
    {
        for (const SignalUse& signal : m_signals) {
            if (!signal.wanted || !signal.nets.empty())
                continue;
            const std::size_t dot = signal.place.find_last_of(". ");
            const std::string name = signal.place.substr(dot == std::string::npos ? 0 : dot + 1);
            throw Error(fmt::format("{}, and {} has no such signal{}", signal.place, shown(dump),
                                    suggestion(name, {m_seenNames.begin(), m_seenNames.end()})));
        }
    }

    std::vector<std::uint32_t> netsOf(std::size_t handle) const
    {
        return distinct(m_signals[handle].nets);
    }
    std::vector<std::uint32_t> netsIn(ScopeId scope) const
    {
        const auto found = m_netsOfScope.find(scope);
        return found == m_netsOfScope.end() ? std::vector<std::uint32_t>() : distinct(found->second);
    }
    /// Nets of the design, and those of them that are some group's.
    std::pair<std::size_t, std::size_t> coverage() const
    {
        std::vector<std::uint32_t> all;
        for (const auto& [scope, nets] : m_netsOfScope)
            all.insert(all.end(), nets.begin(), nets.end());
        const std::vector<std::uint32_t> claimed = distinct(all);
        all.insert(all.end(), m_unclaimed.begin(), m_unclaimed.end());
        return {distinct(all).size(), claimed.size()};
    }

private:
    static constexpr std::size_t kMostSeenNames = 20000;

    // An escaped name may hold dots: any rest of a path is a name.
    void look(const std::string& path, const std::string& select, std::size_t handle)
    {
        const std::vector<std::string> parts = pathParts(path, '.');
        for (const ScopeId start : std::set<ScopeId>{m_root, 0}) {
            ScopeId scope = start;
            std::size_t begin = 0;
            for (const std::string& part : parts) {
                m_byName.emplace(std::pair(scope, path.substr(begin)), std::pair(handle, select));
                const std::optional<ScopeId> next = m_tree->find(scope, part);
                if (!next)
                    break;
                scope = *next;
                begin += part.size() + 1;
            }
            m_lookedIn.insert(scope);
        }
    }

    static std::vector<std::uint32_t> distinct(std::vector<std::uint32_t> nets)
    {
        std::sort(nets.begin(), nets.end());
        nets.erase(std::unique(nets.begin(), nets.end()), nets.end());
        return nets;
    }

    // The nearest scope around that a group claims, within the design.
    ScopeId ownerOf(ScopeId scope)
    {
        const auto [known, isNew] = m_owner.try_emplace(scope, kNoScope);
        if (!isNew)
            return known->second;
        ScopeId owner = scope;
        while (owner != 0 && owner != m_root && !m_netsOfScope.contains(owner))
            owner = m_tree->parent(owner);
        const bool claimed = m_netsOfScope.contains(owner);
        m_owner[scope] = claimed ? owner : kNoScope;
        return m_owner[scope];
    }

    bool isInDesign(ScopeId scope) const
    {
        while (scope != m_root && scope != 0)
            scope = m_tree->parent(scope);
        return scope == m_root;
    }

    // Nets of the design in no group's scope count for the coverage.
    bool countUnclaimed(const DumpVariable& variable)
    {
        if (!variable.isNet || !isInDesign(variable.scope))
            return false;
        m_unclaimed.push_back(variable.net);
        return true;
    }

    const ScopeTree* m_tree;
    ScopeId m_root;
    std::map<ScopeId, std::vector<std::uint32_t>> m_netsOfScope;
    std::unordered_map<ScopeId, ScopeId> m_owner;
    std::vector<SignalUse> m_signals;
    std::multimap<std::pair<ScopeId, std::string>, std::pair<std::size_t, std::string>> m_byName;
    std::set<ScopeId> m_lookedIn;
    std::set<std::string> m_seenNames;
    std::vector<std::uint32_t> m_unclaimed;
};

// What is looked for, for one group.
struct GroupSearch {
    std::size_t index = 0; // in the design
    ScopeId scope = kNoScope;
    std::optional<std::size_t> clock;
    std::vector<std::size_t> signals;
    std::vector<std::pair<const MappedGroup::Input*, std::vector<std::size_t>>> inputs;
};

struct Sum {
    std::size_t nets = 0;
    double bits = 0.0;
    double toggles = 0.0;
    double high = 0.0;
    double known = 0.0;
};

class Importer {
public:
    explicit Importer(const ActivityWishes& wishes)
        : m_wishes(&wishes), m_root(readDesignTree(wishes.design, m_source)), m_design(readDesign(m_root, m_source)),
          m_dump(openDump(wishes.dump))
    {
        if (wishes.map)
            m_map = readActivityMap(*wishes.map, m_design);
        if ((wishes.from || wishes.to) && !m_dump->hasWindows())
            throw Error(fmt::format("{}: holds sums over its whole time, so that --from and --to need a VCD",
                                    shown(wishes.dump)));
        m_tree = m_dump->scopes();
    }

    ActivityImport run()
    {
        m_scope = m_wishes->scope ? namedScope(*m_wishes->scope, 0, "--scope") : likelyScope();
        Finder finder(m_tree, m_scope);
        for (std::size_t i = 0; i < m_design.groups.size(); ++i)
            search(i, finder);
        const DumpWindow window = windowOf();
        m_counts = m_dump->count(m_tree, window, [&](const DumpVariable& variable) { return finder.wants(variable); });
        finder.refuseMissing(m_wishes->dump);
        if (!(m_counts.duration > 0.0))
            throw Error(fmt::format("{}: no time passes{}", shown(m_wishes->dump),
                                    m_wishes->from || m_wishes->to ? " between --from and --to" : ""));
        m_seconds = m_counts.duration * m_dump->secondsPerUnit();
        m_result.seconds = m_seconds;
        m_result.scope = m_tree.path(m_scope);
        std::tie(m_result.nets, m_result.annotatedNets) = finder.coverage();
        for (const GroupSearch& one : m_searches)
            annotate(one, finder);
        m_result.text = formattedDesign(jsonText(m_root), m_wishes->design);
        return std::move(m_result);
    }

private:
    ScopeId namedScope(const std::string& path, ScopeId from, const std::string& place) const
    {
        const char separator = path.find('/') == std::string::npos ? '.' : '/';
        const std::vector<std::string> parts = pathParts(path, separator);
        for (const ScopeId start : {from, ScopeId{0}}) {
            const auto [scope, done] = follow(m_tree, start, parts);
            if (done == parts.size())
                return scope;
        }
        const auto [scope, done] = follow(m_tree, 0, parts);
        throw Error(fmt::format("{} {}: {} has no scope {}{}", place, abbreviated(path), shown(m_wishes->dump),
                                abbreviated(parts[done]), suggestion(parts[done], namesWithin(m_tree, scope))));
    }

    // Where a group of the hierarchy is below a scope, whose own name may lead the path.
    std::optional<ScopeId> scopeOf(const Group& group, ScopeId root) const
    {
        const std::vector<std::string> parts = pathParts(group.in, '/');
        if (const auto [scope, done] = follow(m_tree, root, parts); done == parts.size())
            return scope;
        if (parts.front() != m_tree.name(root))
            return std::nullopt;
        const std::vector<std::string> rest(parts.begin() + 1, parts.end());
        const auto [scope, done] = follow(m_tree, root, rest);
        return done == rest.size() ? std::optional(scope) : std::nullopt;
    }

    // The scope below which most groups are found, the outermost of them.
    ScopeId likelyScope() const
    {
        std::set<std::string> firsts;
        for (const Group& group : m_design.groups) {
            if (!group.in.empty())
                firsts.insert(pathParts(group.in, '/').front());
        }
        ScopeId best = kNoScope;
        std::size_t most = 0;
        std::set<ScopeId> tried;
        for (ScopeId i = 1; i < m_tree.size(); ++i) {
            if (!firsts.contains(m_tree.name(i)))
                continue;
            for (const ScopeId root : {m_tree.parent(i), i}) {
                if (!tried.insert(root).second)
                    continue;
                const auto found = static_cast<std::size_t>(
                    std::count_if(m_design.groups.begin(), m_design.groups.end(),
                                  [&](const Group& g) { return !g.in.empty() && scopeOf(g, root); }));
                if (found > most) {
                    most = found;
                    best = root;
                }
            }
        }
        if (best != kNoScope || !m_map.empty())
            return best == kNoScope ? 0 : best;
        throw Error(
            fmt::format("{}: none of its scopes is where a group of {} stands (\"in\"); name the design's scope "
                        "with --scope, or the groups' with --map. The outermost scopes are {}",
                        shown(m_wishes->dump), shown(m_wishes->design), orList(namesWithin(m_tree, 0))));
    }

    std::uint64_t timeOf(const std::string& text, const char* option) const
    {
        constexpr double most = 9e18;
        double units = 0.0;
        if (const std::optional<double> plain = plainNumber(text))
            units = *plain;
        else if (const auto written = writtenQuantity(text))
            units = inUnit(*written, "s") / m_dump->secondsPerUnit();
        else
            throw Error(fmt::format("{} {}: expected a time (10 us), or a number in the dump's units", option,
                                    abbreviated(text)));
        if (!(units >= 0.0) || units > most)
            throw Error(fmt::format("{} {}: is outside what a dump's time can be", option, abbreviated(text)));
        return static_cast<std::uint64_t>(std::llround(units));
    }

    DumpWindow windowOf() const
    {
        DumpWindow window;
        if (m_wishes->from)
            window.from = timeOf(*m_wishes->from, "--from");
        if (m_wishes->to)
            window.to = timeOf(*m_wishes->to, "--to");
        if (window.from >= window.to)
            throw Error("--from must be before --to");
        return window;
    }

    // The inputs that the average of a scope's nets stands for: toggles per cycle.
    static std::vector<std::string> averageInputs(const Group& group)
    {
        const Block& block = *group.block;
        const bool pads = bankKindOf(block.name) != nullptr;
        std::vector<std::string> names;
        for (const char* const name : {"TOGGLE_RATE", "INPUT_TOGGLE_RATE", "OUTPUT_TOGGLE_RATE"}) {
            if (!pads && activityKind(block, name) == ActivityKind::toggles)
                names.emplace_back(name);
        }
        for (const auto& [cell, value] : group.inputs) {
            if (cell.ends_with("_TR") && activityKind(block, cell) == ActivityKind::toggles)
                names.push_back(cell);
        }
        if (names.empty() && block.findCell("GLOBAL_TR"))
            names.emplace_back("GLOBAL_TR");
        return names;
    }

    static std::vector<std::string> inputsOfActivity(const Group& group)
    {
        std::vector<std::string> names;
        for (const Block* block : inputBlocks(*group.block)) {
            for (const ZelmCellInfo& cell : block->cells) {
                const auto kind = activityKind(*block, cell.name);
                if (kind && kind != ActivityKind::signalRate)
                    names.emplace_back(cell.name);
            }
        }
        return names;
    }

    void search(std::size_t index, Finder& finder)
    {
        const Group& group = m_design.groups[index];
        GroupSearch one;
        one.index = index;
        const auto mapped = m_map.find(group.name);
        const std::string place = mapped == m_map.end() ? "" : fmt::format("{}: {}", shown(*m_wishes->map), group.name);
        if (mapped != m_map.end() && !mapped->second.scope.empty())
            one.scope = namedScope(mapped->second.scope, m_scope, place + ": scope");
        else if (const auto found = scopeOf(group, m_scope);
                 found && (mapped == m_map.end() || mapped->second.signals.empty()))
            one.scope = *found;
        if (mapped != m_map.end()) {
            const MappedGroup& said = mapped->second;
            if (!said.clock.empty())
                one.clock = finder.signal(said.clock, true, place);
            for (const std::string& signal : said.signals)
                one.signals.push_back(finder.signal(signal, true, place));
            for (const MappedGroup::Input& input : said.inputs) {
                one.inputs.emplace_back(&input, std::vector<std::size_t>());
                for (const std::string& signal : input.signals)
                    one.inputs.back().second.push_back(
                        finder.signal(signal.substr(signal.starts_with('!') ? 1 : 0), true, place));
            }
        }
        if (!one.clock && !group.clock.empty())
            one.clock = clockSignal(group.clock, finder);
        if (one.scope != kNoScope && one.signals.empty() && !averageInputs(group).empty())
            finder.claim(one.scope);
        m_searches.push_back(std::move(one));
    }

    // A clock of the design in the dump: as the map has it, else by its own name.
    std::size_t clockSignal(const std::string& clock, Finder& finder)
    {
        if (const auto known = m_clocks.find(clock); known != m_clocks.end())
            return known->second;
        const auto mapped = m_map.find(clock);
        const bool said = mapped != m_map.end() && !mapped->second.clock.empty();
        const std::size_t handle =
            said ? finder.signal(mapped->second.clock, true, fmt::format("{}: {}", shown(*m_wishes->map), clock))
                 : finder.signal(clock, false, "");
        m_clocks.emplace(clock, handle);
        return handle;
    }

    Sum sumOf(const std::vector<std::uint32_t>& nets) const
    {
        Sum sum;
        for (const std::uint32_t net : nets) {
            const NetCount& count = m_counts.nets[net];
            ++sum.nets;
            sum.bits += count.bits;
            sum.toggles += count.toggles;
            sum.high += count.high;
            sum.known += count.known;
        }
        return sum;
    }

    static double realOf(const Group& group, std::string_view input)
    {
        if (const Value* value = group.input(input)) {
            if (const auto* real = std::get_if<float>(value))
                return static_cast<double>(*real);
        }
        const std::optional<double> constant = plainNumber(constantDefault(group.block->input(input)));
        return constant.value_or(0.0);
    }

    // The cycles of a group's clock: by its edges in the dump, else by the design's frequency.
    void countCycles(const GroupSearch& one, const Finder& finder, GroupActivity& activity) const
    {
        const Group& group = m_design.groups[one.index];
        if (one.clock) {
            const Sum edges = sumOf(finder.netsOf(*one.clock));
            if (edges.toggles > 0.0) {
                activity.cycles = edges.toggles / 2.0 / edges.bits;
                activity.clock = "edges in the dump";
                return;
            }
        }
        double megahertz = 0.0;
        const Group* clocked = &group;
        for (const Group& clock : m_design.groups) {
            if (clock.name == group.clock && clock.block->name == "Clock")
                clocked = &clock;
        }
        if (clocked != &group)
            megahertz = realOf(*clocked, "CLOCK_FREQ");
        else {
            for (const ClockInput& input : clockInputs()) {
                if (megahertz == 0.0 && input.block == group.block->name)
                    megahertz = realOf(group, input.cell);
            }
        }
        constexpr double perMegahertz = 1e6;
        activity.cycles = megahertz * perMegahertz * m_seconds;
        activity.clock = fmt::format("{:g} MHz", megahertz);
    }

    // Without the clocks among them: they are counted on their own.
    std::vector<std::uint32_t> dataNets(std::vector<std::uint32_t> nets, const GroupSearch& one, const Finder& finder,
                                        double cycles) const
    {
        std::set<std::uint32_t> clocks;
        for (const auto& [name, handle] : m_clocks) {
            for (const std::uint32_t net : finder.netsOf(handle))
                clocks.insert(net);
        }
        if (one.clock) {
            for (const std::uint32_t net : finder.netsOf(*one.clock))
                clocks.insert(net);
        }
        constexpr double nearly = 0.01;
        std::erase_if(nets, [&](std::uint32_t net) {
            const NetCount& count = m_counts.nets[net];
            const bool ticks = count.bits == 1 && std::fabs(count.toggles - 2.0 * cycles) <= nearly * 2.0 * cycles;
            return clocks.contains(net) || (cycles > 0.0 && ticks);
        });
        return nets;
    }

    void annotate(const GroupSearch& one, const Finder& finder)
    {
        const Group& group = m_design.groups[one.index];
        const std::vector<std::string> inputs = inputsOfActivity(group);
        if (inputs.empty())
            return;
        GroupActivity activity;
        activity.group = group.name;
        activity.block = std::string(group.block->name);
        activity.scope = one.scope == kNoScope ? "" : m_tree.path(one.scope);
        countCycles(one, finder, activity);
        for (const auto& [input, handles] : one.inputs)
            setMapped(group, *input, handles, finder, activity);
        setAverage(one, finder, activity);
        for (const std::string& input : inputs) {
            const bool set = std::any_of(activity.inputs.begin(), activity.inputs.end(),
                                         [&](const auto& own) { return own.first == input; });
            if (!set)
                activity.kept.push_back(input);
        }
        if (!activity.inputs.empty()) {
            write(one.index, activity);
            activity.note.clear();
        }
        m_result.groups.push_back(std::move(activity));
    }

    void setMapped(const Group& group, const MappedGroup::Input& input, const std::vector<std::size_t>& handles,
                   const Finder& finder, GroupActivity& activity) const
    {
        ActivityKind kind = ActivityKind::toggles;
        for (const Block* block : inputBlocks(*group.block))
            kind = activityKind(*block, input.cell).value_or(kind);
        Sum all;
        double high = 0.0;
        for (std::size_t i = 0; i < handles.size(); ++i) {
            const Sum sum = sumOf(finder.netsOf(handles[i]));
            all.nets += sum.nets;
            all.bits += sum.bits;
            all.toggles += sum.toggles;
            all.known += sum.known;
            high += input.signals[i].starts_with('!') ? sum.known - sum.high : sum.high;
        }
        constexpr double megahertz = 1e6;
        double value = kind == ActivityKind::share        ? high / all.known
                       : kind == ActivityKind::signalRate ? all.toggles / all.bits / m_seconds / megahertz
                                                          : all.toggles / (all.bits * activity.cycles);
        if (kind == ActivityKind::accessToggles)
            value /= shareSet(group, activity, accessShareOf(input.cell));
        if (std::isfinite(value))
            activity.inputs.emplace_back(input.cell, value);
        else
            activity.note = fmt::format("{}: its signals are never known, or there is no clock", input.cell);
    }

    // How often a port is accessed: as it was just set, else as the design has it.
    static double shareSet(const Group& group, const GroupActivity& activity, std::string_view input)
    {
        for (const auto& [cell, value] : activity.inputs) {
            if (cell == input)
                return value;
        }
        return realOf(group, input);
    }

    void setAverage(const GroupSearch& one, const Finder& finder, GroupActivity& activity) const
    {
        const Group& group = m_design.groups[one.index];
        const std::vector<std::string> names = averageInputs(group);
        std::vector<std::uint32_t> nets;
        if (!one.signals.empty()) {
            for (const std::size_t handle : one.signals) {
                const std::vector<std::uint32_t> some = finder.netsOf(handle);
                nets.insert(nets.end(), some.begin(), some.end());
            }
        } else if (one.scope != kNoScope && !names.empty())
            nets = dataNets(finder.netsIn(one.scope), one, finder, activity.cycles);
        const Sum sum = sumOf(nets);
        activity.nets = sum.nets;
        activity.bits = sum.bits;
        activity.toggles = sum.toggles;
        if (activity.scope.empty() && one.signals.empty())
            activity.note = group.in.empty() ? "stands in no hierarchy (\"in\"), and isn't mapped"
                                             : fmt::format("the dump has no scope {}", group.in);
        else if (names.empty())
            activity.note = "needs --map: which signals its inputs are";
        else if (sum.nets == 0)
            activity.note = "its scope has no nets of its own but clocks";
        else if (!(activity.cycles > 0.0))
            activity.note = "its clock stands still";
        if (sum.nets == 0 || !(activity.cycles > 0.0))
            return;
        for (const std::string& name : names) {
            const bool mapped = std::any_of(activity.inputs.begin(), activity.inputs.end(),
                                            [&](const auto& own) { return own.first == name; });
            if (!mapped)
                activity.inputs.emplace_back(name, sum.toggles / (sum.bits * activity.cycles));
        }
    }

    // Into the design, as the numbers that the inputs hold.
    void write(std::size_t index, GroupActivity& activity)
    {
        Json& group = m_root["groups"][index];
        for (auto& [cell, value] : activity.inputs) {
            const double most = cell == "TOGGLE_RATE" ? 2.0 : activityLimit(cell);
            value = shortest(static_cast<float>(std::min(value, most)));
            group["inputs"][cell] = value;
            if (cell == "GLOBAL_TR")
                group["inputs"]["USE_GLOBAL_TR"] = "YES";
        }
    }

    // Shares and rates end at 1; what toggles faster than its formula knows is held there.
    static double activityLimit(const std::string& cell)
    {
        return cell.ends_with("_SIG_RATE") ? HUGE_VAL : 1.0;
    }

    const ActivityWishes* m_wishes;
    JsonSource m_source;
    Json m_root;
    Design m_design;
    std::unique_ptr<Dump> m_dump;
    std::map<std::string, MappedGroup> m_map;
    ScopeTree m_tree;
    ScopeId m_scope = 0;
    std::vector<GroupSearch> m_searches;
    std::map<std::string, std::size_t> m_clocks;
    DumpCounts m_counts;
    double m_seconds = 0.0;
    ActivityImport m_result;
};

} // namespace

ActivityImport importActivity(const ActivityWishes& wishes)
{
    return Importer(wishes).run();
}

} // namespace zelm::host
