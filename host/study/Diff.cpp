#include "host/study/Diff.h"

#include "host/base/Error.h"
#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/base/Units.h"
#include "host/design/Include.h"
#include "host/estimate/RunningDesign.h"
#include "host/study/EarlierResult.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>

namespace zelm::host {

namespace {

// ---- What differs ----

// A change of the old design that can be made alone.
struct Change {
    std::string group;
    std::string input;
    std::function<void(Design&)> make;
    std::vector<Change> inner{}; // what it is made of
};

// A distribution as a whole.
std::string inputText(const Design& design, const Group& group, const std::string& cell)
{
    const Value* value = group.input(cell);
    const Distribution* all = design.distributionAt(fmt::format("{}.inputs.{}", group.place, cell));
    return all ? all->text() : value ? valueText(*value) : std::string();
}

const Group* groupNamed(const Design& design, const std::string& name)
{
    const auto found = std::find_if(design.groups.begin(), design.groups.end(),
                                    [&](const Group& group) { return group.name == name; });
    return found == design.groups.end() ? nullptr : &*found;
}

void setInput(Group& group, const std::string& cell, const Value* value)
{
    std::erase_if(group.inputs, [&](const auto& input) { return input.first == cell; });
    if (value)
        group.inputs.emplace_back(cell, *value);
}

// Groups alike but for their names, which went on under another one.
std::map<std::string, std::string> renamedGroups(const Design& old, const Design& now)
{
    std::map<std::string, std::string> before; // by the name now
    std::vector<const Group*> gone;
    for (const Group& group : old.groups) {
        if (!groupNamed(now, group.name))
            gone.push_back(&group);
    }
    const auto alike = [](const Group& a, const Group& b) {
        std::map<std::string, Value> inputsOfA(a.inputs.begin(), a.inputs.end());
        return a.block == b.block && a.count == b.count && inputsOfA == std::map(b.inputs.begin(), b.inputs.end());
    };
    for (const Group& group : now.groups) {
        if (groupNamed(old, group.name))
            continue;
        const auto same =
            std::find_if(gone.begin(), gone.end(), [&](const Group* other) { return alike(*other, group); });
        if (same != gone.end()) {
            before[group.name] = (*same)->name;
            gone.erase(same);
        }
    }
    return before;
}

// The new design with the old names of its groups, so that a name alone changes nothing.
Design withOldNames(Design design, const std::map<std::string, std::string>& oldNames)
{
    for (Group& group : design.groups.change()) {
        for (std::string* name : {&group.name, &group.clock}) {
            if (const auto old = oldNames.find(*name); old != oldNames.end())
                *name = old->second;
        }
    }
    return design;
}

// Changes of one group, each of which is made by itself.
std::vector<Change> changesWithin(const Group& old, const Group& now)
{
    std::vector<Change> changes;
    const std::string name = old.name;
    const auto add = [&](const std::string& what, const std::function<void(Group&)>& make) {
        changes.push_back({name, what, [name, make](Design& design) {
                               for (Group& group : design.groups.change()) {
                                   if (group.name == name)
                                       make(group);
                               }
                           }});
    };
    if (old.count != now.count)
        add("count", [count = now.count](Group& group) { group.count = count; });
    if (old.clock != now.clock)
        add("clock", [clock = now.clock](Group& group) { group.clock = clock; });
    std::vector<std::string> cells;
    for (const auto& inputs : {old.inputs, now.inputs}) {
        for (const auto& [cell, value] : inputs) {
            if (std::find(cells.begin(), cells.end(), cell) == cells.end())
                cells.push_back(cell);
        }
    }
    for (const std::string& cell : cells) {
        const Value* before = old.input(cell);
        const Value* after = now.input(cell);
        if (before && after && *before == *after)
            continue;
        add(cell, [cell, value = after ? std::optional(*after) : std::nullopt](Group& group) {
            setInput(group, cell, value ? &*value : nullptr);
        });
    }
    return changes;
}

// A group that changes, comes or goes.
std::vector<Change> groupChanges(const Design& old, const Design& now)
{
    std::vector<Change> changes;
    for (const Group& before : old.groups) {
        const std::string name = before.name;
        const auto isIt = [name](const Group& group) { return group.name == name; };
        const Group* after = groupNamed(now, name);
        if (!after) {
            changes.push_back(
                {name, "removed", [isIt](Design& design) { std::erase_if(design.groups.change(), isIt); }});
            continue;
        }
        const auto replace = [isIt, group = *after](Design& design) {
            std::vector<Group>& groups = design.groups.change();
            std::replace_if(groups.begin(), groups.end(), isIt, group);
        };
        if (before.block != after->block) {
            changes.push_back({name, "block", replace});
            continue;
        }
        std::vector<Change> inner = changesWithin(before, *after);
        if (!inner.empty())
            changes.push_back({name, inner.size() == 1 ? inner.front().input : "", replace, std::move(inner)});
    }
    for (const Group& after : now.groups) {
        if (!groupNamed(old, after.name))
            changes.push_back(
                {after.name, "added", [after](Design& design) { design.groups.change().push_back(after); }});
    }
    return changes;
}

template <class Map>
std::vector<std::string> keysThatDiffer(const Map& old, const Map& now)
{
    std::vector<std::string> keys;
    for (const auto& [key, value] : old) {
        const auto other = now.find(key);
        if (other == now.end() || other->second != value)
            keys.push_back(key);
    }
    for (const auto& [key, value] : now) {
        if (!old.contains(key))
            keys.push_back(key);
    }
    return keys;
}

// Settings outside of groups that quantities depend on, with what they were and are.
struct Setting {
    Change change;
    DiffInput words;
};

std::string numberText(const std::optional<double>& number)
{
    return number ? fmt::format("{:g}", *number) : std::string();
}

void addEnvironment(const Environment& old, const Environment& now, std::vector<Setting>& settings)
{
    const auto thetaOf = [](const Environment& environment) {
        return environment.cooling.empty() ? std::nullopt : std::optional(environment.cooling.front().thetaJA);
    };
    const auto junctionOrAmbient = [](const Environment& environment) {
        return environment.ambient ? numberText(environment.ambient) + " ambient" : numberText(environment.junction);
    };
    if (old.ambient && now.ambient) {
        if (old.ambient != now.ambient)
            settings.push_back({{"", "environment.ambientTemperature",
                                 [ambient = now.ambient](Design& design) { design.environment.ambient = ambient; }},
                                {"environment.ambientTemperature", numberText(old.ambient), numberText(now.ambient)}});
        if (thetaOf(old) != thetaOf(now))
            settings.push_back({{"", "environment.thetaJA",
                                 [cooling = now.cooling](Design& design) { design.environment.cooling = cooling; }},
                                {"environment.thetaJA", numberText(thetaOf(old)), numberText(thetaOf(now))}});
    } else if (old.ambient != now.ambient || old.junction != now.junction) {
        settings.push_back({{"", "environment", [now](Design& design) { design.environment = now; }},
                            {"environment", junctionOrAmbient(old), junctionOrAmbient(now)}});
    }
}

std::string deviceText(const std::optional<Device>& device)
{
    if (!device)
        return "";
    std::string text = device->part;
    for (const std::string& word : {device->process, device->speedGrade, device->voltageGrade, device->powerScreen,
                                    device->temperatureGrade, device->overdrive})
        text += word.empty() ? "" : " " + word;
    return text;
}

std::vector<Setting> settingsThatDiffer(const Design& old, const Design& now)
{
    std::vector<Setting> settings;
    if (old.device != now.device)
        settings.push_back({{"", "device", [device = now.device](Design& design) { design.device = device; }},
                            {"device", deviceText(old.device), deviceText(now.device)}});
    addEnvironment(old.environment, now.environment, settings);
    const auto voltsText = [](const std::map<std::string, float>& rails, const std::string& rail) {
        const auto found = rails.find(rail);
        return found == rails.end() ? std::string() : exactText(found->second);
    };
    for (const std::string& rail : keysThatDiffer(old.rails, now.rails)) {
        const auto set = now.rails.find(rail);
        const std::optional<float> volts = set == now.rails.end() ? std::nullopt : std::optional(set->second);
        settings.push_back({{"", "rails." + rail,
                             [rail, volts](Design& design) {
                                 design.rails.erase(rail);
                                 if (volts)
                                     design.rails[rail] = *volts;
                             }},
                            {"rails." + rail, voltsText(old.rails, rail), voltsText(now.rails, rail)}});
    }
    const std::map before(old.staticInputs.begin(), old.staticInputs.end());
    const std::map after(now.staticInputs.begin(), now.staticInputs.end());
    for (const std::string& cell : keysThatDiffer(before, after)) {
        const auto was = before.find(cell);
        const auto is = after.find(cell);
        const std::optional<Value> value = is == after.end() ? std::nullopt : std::optional(is->second);
        settings.push_back(
            {{"", "static." + cell,
              [cell, value](Design& design) {
                  std::erase_if(design.staticInputs, [&](const auto& set) { return set.first == cell; });
                  if (value)
                      design.staticInputs.emplace_back(cell, *value);
              }},
             {"static." + cell, was == before.end() ? "" : valueText(was->second), value ? valueText(*value) : ""}});
    }
    return settings;
}

// ---- What it does ----

using Amounts = std::vector<double>;

Amounts amountsOf(const std::vector<NamedQuantity>& quantities, const Estimate& estimate)
{
    Amounts amounts;
    for (const NamedQuantity& quantity : quantities)
        amounts.push_back(valueOf(quantity, estimate));
    return amounts;
}

Amounts minus(Amounts a, const Amounts& b)
{
    for (std::size_t i = 0; i < a.size(); ++i)
        a[i] -= b[i];
    return a;
}

// Adds to each quantity the parts that changes of the old design make, each on its own.
class Attribution {
public:
    Attribution(const Design& old, RunningDesign& running, Amounts before, std::vector<DiffQuantity>& quantities)
        : m_old(&old), m_running(&running), m_before(std::move(before)), m_quantities(&quantities)
    {
        for (const DiffQuantity& quantity : quantities)
            m_names.push_back(quantity.quantity);
    }

    /// What all changes come to together, of which those that can't be made alone, and interaction, are the rest.
    void add(const std::vector<Change>& changes, const Amounts& all, const std::string& group)
    {
        Amounts rest = all;
        for (const Change& change : changes) {
            const std::optional<Amounts> alone = changes.size() == 1 ? std::optional(all) : alongWith(change);
            if (!alone)
                continue;
            rest = minus(rest, *alone);
            if (change.inner.size() > 1)
                add(change.inner, *alone, change.group);
            else
                addParts(change.group, change.input, *alone);
        }
        addParts(group, "interaction", rest);
    }

    void addParts(const std::string& group, const std::string& input, const Amounts& amounts)
    {
        for (std::size_t i = 0; i < amounts.size(); ++i) {
            if (amounts[i] != 0.0)
                (*m_quantities)[i].parts.push_back({group, input, amounts[i]});
        }
    }

private:
    // Nothing if the old design with this change alone has no meaning.
    std::optional<Amounts> alongWith(const Change& change)
    {
        try {
            Design design = *m_old;
            change.make(design);
            m_running->change(std::move(design));
            Amounts alone = minus(amountsOf(m_names, m_running->estimate()), m_before);
            for (double& amount : alone)
                amount = std::isnan(amount) ? 0.0 : amount; // alone it lets the device run away
            return alone;
        } catch (const Error&) {
            return std::nullopt;
        }
    }

    const Design* m_old;
    RunningDesign* m_running;
    Amounts m_before;
    std::vector<DiffQuantity>* m_quantities;
    std::vector<NamedQuantity> m_names;
};

// Those of both, the new design's first.
std::vector<NamedQuantity> quantitiesOfBoth(const Estimate& old, const Estimate& now)
{
    std::vector<NamedQuantity> all = quantitiesOf(now);
    for (const NamedQuantity& quantity : quantitiesOf(old)) {
        if (std::find(all.begin(), all.end(), quantity) == all.end())
            all.push_back(quantity);
    }
    return all;
}

// Of a design's group with all blocks that it reaches; 0 if there is none of that name.
double wattsOf(const Estimate& estimate, const std::string& name)
{
    double watts = 0.0;
    std::size_t next = 0; // result of the estimate
    for (const Group& group : estimate.design.groups) {
        for (std::size_t blocks = inputBlocks(*group.block).size(); blocks > 0; --blocks, ++next)
            watts += group.name == name ? estimate.groups[next].watts : 0.0;
    }
    return watts;
}

// Groups that differ, with their inputs.
std::vector<DiffGroup> groupsThatDiffer(const Design& old, const Design& now, const std::vector<Change>& changes,
                                        const Estimate& before, const Estimate& after)
{
    std::vector<DiffGroup> groups;
    for (const Change& change : changes) {
        DiffGroup group;
        group.name = change.group;
        group.fate = change.input == "added"     ? DiffGroup::Fate::added
                     : change.input == "removed" ? DiffGroup::Fate::removed
                                                 : DiffGroup::Fate::changed;
        group.wattsBefore = wattsOf(before, change.group);
        group.wattsAfter = wattsOf(after, change.group);
        const Group* was = groupNamed(old, change.group);
        const Group* is = groupNamed(now, change.group);
        if (change.input == "block")
            group.inputs.push_back({"block", std::string(was->block->name), std::string(is->block->name)});
        for (const Change& inner : change.inner) {
            DiffInput input{inner.input, inputText(old, *was, inner.input), inputText(now, *is, inner.input)};
            if (inner.input == "count")
                input = {"count", fmt::format("{}", was->count), fmt::format("{}", is->count)};
            else if (inner.input == "clock")
                input = {"clock", was->clock, is->clock};
            group.inputs.push_back(std::move(input));
        }
        groups.push_back(std::move(group));
    }
    return groups;
}

// Gives groups that were renamed their new names.
void nameAsNow(Diff& diff, const std::map<std::string, std::string>& oldNames, const Estimate& after)
{
    for (const auto& renamed : oldNames) {
        const std::string& now = renamed.first;
        const std::string& before = renamed.second;
        for (DiffQuantity& quantity : diff.quantities) {
            if (quantity.quantity.of == before && quantity.quantity.kind == NamedQuantity::Kind::group)
                quantity.quantity.of = now;
            for (DiffPart& part : quantity.parts)
                part.group = part.group == before ? now : part.group;
        }
        const auto known = std::find_if(diff.groups.begin(), diff.groups.end(),
                                        [&](const DiffGroup& group) { return group.name == before; });
        const bool isNameAlone = known == diff.groups.end();
        DiffGroup& group = isNameAlone ? diff.groups.emplace_back() : *known;
        if (isNameAlone)
            group.wattsBefore = group.wattsAfter = wattsOf(after, before);
        group.fate = DiffGroup::Fate::renamed;
        group.before = before;
        group.name = now;
    }
}

// What a value may be differs, though what counts of it doesn't: tells so, as nothing else would.
void addOtherDistributions(const Design& old, const Design& now, Diff& diff)
{
    std::map<std::string, std::pair<std::string, std::string>> all; // before and after by path
    for (const Uncertain& each : old.uncertain)
        all[namedPath(old, each.path)].first = each.distribution.text();
    for (const Uncertain& each : now.uncertain)
        all[namedPath(now, each.path)].second = each.distribution.text();
    std::vector<std::string> told;
    for (const DiffInput& setting : diff.settings)
        told.push_back(setting.place);
    for (const DiffGroup& group : diff.groups) {
        for (const DiffInput& input : group.inputs)
            told.push_back(fmt::format("groups[{}].inputs.{}", group.name, input.place));
    }
    for (const auto& [path, texts] : all) {
        const bool isTold = std::find(told.begin(), told.end(), path) != told.end();
        if (texts.first != texts.second && !isTold)
            diff.settings.push_back({path, texts.first, texts.second});
    }
}

void sortBySize(Diff& diff)
{
    const auto size = [](double change) { return std::isnan(change) ? 0.0 : std::fabs(change); };
    for (DiffQuantity& quantity : diff.quantities) {
        std::stable_sort(quantity.parts.begin(), quantity.parts.end(),
                         [&](const DiffPart& a, const DiffPart& b) { return size(a.change) > size(b.change); });
        if (std::isnan(quantity.change()))
            quantity.parts.clear();
    }
    std::stable_sort(diff.groups.begin(), diff.groups.end(), [&](const DiffGroup& a, const DiffGroup& b) {
        return size(a.wattsAfter - a.wattsBefore) > size(b.wattsAfter - b.wattsBefore);
    });
    // Of each kind, those that change most first; the new design's total stays in front.
    std::stable_sort(diff.quantities.begin(), diff.quantities.end(), [&](const DiffQuantity& a, const DiffQuantity& b) {
        const auto kind = [](const DiffQuantity& q) { return static_cast<int>(q.quantity.kind); };
        return kind(a) != kind(b)
                   ? kind(a) < kind(b)
                   : kind(a) >= static_cast<int>(NamedQuantity::Kind::rail) && size(a.change()) > size(b.change());
    });
}

} // namespace

const DiffQuantity& Diff::total() const
{
    return quantities.front();
}

Diff diff(const DiffWish& wish)
{
    const auto read = [](const std::string& file, JsonSource& source) {
        Json root = readDesignTree(file, source);
        if (root.is_object())
            root.erase("modes"); // which the quantities don't depend on
        return root;
    };
    JsonSource sourceAfter;
    JsonSource sourceBefore;
    const Design now = readDesign(read(wish.after, sourceAfter), sourceAfter);
    const Json before = read(wish.before, sourceBefore);
    const Json* result = wish.beforeResult ? wish.beforeResult : isEarlierResult(before) ? &before : nullptr;
    const Design old = isEarlierResult(before) ? designOf(before, now, wish.before) : readDesign(before, sourceBefore);
    const std::map<std::string, std::string> oldNames = renamedGroups(old, now);
    const Design renamed = withOldNames(now, oldNames);

    RunningDesign running(old);
    const Estimate oldEstimate = running.estimate();
    const Estimate newEstimate = estimate(renamed);
    Diff diff;
    diff.before = result ? result->value("name", old.name) : old.name;
    diff.after = now.name;
    for (const NamedQuantity& quantity : quantitiesOfBoth(oldEstimate, newEstimate))
        diff.quantities.push_back({quantity, valueOf(quantity, oldEstimate), valueOf(quantity, newEstimate), {}});

    std::vector<Change> changes = groupChanges(old, renamed);
    diff.groups = groupsThatDiffer(old, renamed, changes, oldEstimate, newEstimate);
    for (Setting& setting : settingsThatDiffer(old, renamed)) {
        changes.push_back(std::move(setting.change));
        diff.settings.push_back(std::move(setting.words));
    }
    Amounts amounts;
    Amounts all;
    for (const DiffQuantity& quantity : diff.quantities) {
        amounts.push_back(quantity.before);
        all.push_back(quantity.change());
    }
    Attribution attribution(old, running, amounts, diff.quantities);
    attribution.add(changes, all, "");
    if (result)
        startFrom(*result, oldEstimate, diff);
    else
        addOtherDistributions(old, renamed, diff);
    nameAsNow(diff, oldNames, newEstimate);
    sortBySize(diff);
    return diff;
}

bool Allowance::isExceededBy(const DiffQuantity& total) const
{
    return !(total.change() <= (isShare ? amount * std::fabs(total.before) : amount));
}

Allowance allowance(const std::string& text)
{
    try {
        const auto written = writtenQuantity(text);
        const bool isShare = written && written->unit->dimension == kPlain;
        const double amount = !written ? plainNumber(text).value_or(-1.0) : inUnit(*written, isShare ? "" : "W");
        if (!written || !(amount >= 0.0))
            throw Error("expected a share or a power, from 0");
        return {amount, isShare};
    } catch (const Error& error) {
        throw Error(fmt::format("--fail-above {}: {} (2% or 500mW)", abbreviated(text), error.what()));
    }
}

} // namespace zelm::host
