#include "host/study/Explain.h"

#include "host/base/Text.h"
#include "host/blocks/DataLines.h"
#include "host/blocks/Rails.h"
#include "host/blocks/RollUp.h"
#include "host/blocks/Uses.h"
#include "host/estimate/Carry.h"
#include "host/estimate/Ranges.h"
#include "host/estimate/StaticPower.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <unordered_map>
#include <utility>

namespace zelm::host {

namespace {

using Given = std::vector<std::pair<const ZelmCellInfo*, Value>>;
using Amount = decltype(ExplainedNode::value);

Amount amountOf(const Value& value)
{
    return std::visit([](const auto& known) -> Amount { return known; }, value);
}

// Without a number where a device runs away.
Amount amountOf(double value)
{
    return std::isnan(value) ? Amount() : Amount(value);
}

double sizeOf(const ExplainedNode& node)
{
    if (const auto* watts = std::get_if<double>(&node.value))
        return std::fabs(*watts);
    const auto* cell = std::get_if<float>(&node.value);
    return cell ? std::fabs(static_cast<double>(*cell)) : 0.0;
}

std::string sideName(std::string_view quantity, const std::string& process)
{
    return process.empty() ? std::string(quantity) : fmt::format("{}@{}", quantity, process);
}

} // namespace

// On which lines of a data file the rows of its tables stand.
class RowLines {
public:
    explicit RowLines(const Block& block) : m_file(dataPath(block.dataFile())), m_loads(block.loads())
    {
        for (const DataRow& row : DataLines(block.dataFile()).rows())
            m_lines.emplace(fmt::format("{}/{}", row.table, row.key), row.line);
    }

    /// Known from the first question until the data are loaded again.
    static std::shared_ptr<const RowLines> of(const Block& block)
    {
        static std::mutex mutex;
        static std::map<const Block*, std::shared_ptr<const RowLines>> known;
        const std::lock_guard lock(mutex);
        std::shared_ptr<const RowLines>& rows = known[&block];
        if (!rows || rows->m_loads != block.loads() || rows->m_file != dataPath(block.dataFile()))
            rows = std::make_shared<RowLines>(block);
        return rows;
    }

    const std::string& file() const
    {
        return m_file;
    }
    std::size_t lineOf(const LookedUp& lookUp) const
    {
        std::string name(lookUp.table->group);
        name += '/';
        name += lookUp.row();
        const auto found = m_lines.find(name);
        return found == m_lines.end() ? 0 : found->second;
    }

private:
    std::string m_file;
    unsigned m_loads;
    std::unordered_map<std::string, std::size_t> m_lines;
};

std::string ExplainedNode::name() const
{
    if (!quantity.empty())
        return quantity;
    return block->name == "Static" ? sideName(fmt::format("static.{}", cell->name), process)
                                   : fmt::format("group:{}.{}", group, cell->name);
}

class Explanation::Net {
public:
    explicit Net(const Estimate& estimate) : m_estimate(&estimate)
    {
        if (estimate.design.device)
            m_device = resolve(estimate.design);
        m_rails.emplace(estimate.design, m_device.get());
        for (std::size_t i = 0; i < estimate.design.groups.size(); ++i) {
            const std::size_t blocks = inputBlocks(*estimate.design.groups[i].block).size();
            for (std::size_t k = 0; k < blocks; ++k)
                m_places.push_back({i, k});
        }
        for (std::size_t i = 0; i < estimate.groups.size(); ++i)
            m_groupsByName.emplace(estimate.groups[i].name, i);
    }

    std::size_t idOf(const NamedQuantity& quantity)
    {
        using Kind = NamedQuantity::Kind;
        switch (quantity.kind) {
        case Kind::total:
            return total(quantity.process);
        case Kind::dynamic:
            return dynamic();
        case Kind::staticPower:
            return staticPower(quantity.process);
        case Kind::junction:
            return junction(quantity.process);
        case Kind::rail:
            return rail(quantity.of, quantity.process);
        case Kind::group:
            return group(m_groupsByName.at(quantity.of));
        case Kind::cell:
            return cell(m_groupsByName.at(quantity.of), *quantity.cell);
        }
        return 0;
    }

    const ExplainedNode& node(std::size_t id)
    {
        Entry& entry = m_entries[id];
        if (entry.fill)
            std::exchange(entry.fill, nullptr)(id);
        return m_entries[id].node;
    }

    const ExplainedNode& head(std::size_t id) const
    {
        return m_entries[id].node;
    }

    std::size_t size() const
    {
        return m_entries.size();
    }

private:
    using Fill = std::function<void(std::size_t id)>;
    struct Entry {
        ExplainedNode node;
        Fill fill; ///< works out what the node doesn't have from the beginning; null once it has
    };
    struct Place {
        std::size_t group; ///< of the design
        std::size_t block; ///< of those that the group reaches
    };

    // A run of formulas, and the nodes of its cells.
    struct Run {
        Trace trace;
        std::vector<std::size_t> ids; ///< by the cells' places; kNone as long as nobody has asked

        Run(const Block& block, const Given& given) : trace(block, given), ids(block.cells.size(), kNone) {}
    };
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    const Design& design() const
    {
        return m_estimate->design;
    }

    const Side& side(const std::string& process) const
    {
        return *std::find_if(m_estimate->sides.begin(), m_estimate->sides.end(),
                             [&](const Side& known) { return known.process == process; });
    }

    ExplainedNode& at(std::size_t id)
    {
        return m_entries[id].node;
    }

    template <class Make>
    std::size_t once(const std::string& name, Make make, Fill fill)
    {
        if (const auto found = m_ids.find(name); found != m_ids.end())
            return found->second;
        ExplainedNode made = make();
        const std::size_t id = m_entries.size();
        m_ids.emplace(name, id);
        m_entries.push_back({std::move(made), std::move(fill)});
        return id;
    }

    std::size_t quantity(const std::string& name, Amount value, std::string_view unit, std::string_view meaning,
                         Fill fill)
    {
        return once(
            name,
            [&] {
                ExplainedNode node;
                node.quantity = name;
                node.value = std::move(value);
                node.unit = unit;
                node.meaning = m_meanings.emplace_back(meaning);
                return node;
            },
            std::move(fill));
    }

    // What stands in the design as it is.
    std::size_t leaf(const std::string& name, Amount value, std::string_view unit, std::string_view meaning,
                     const ValueOrigin& origin)
    {
        return quantity(name, std::move(value), unit, meaning,
                        [this, origin](std::size_t id) { at(id).origin = origin; });
    }

    ValueOrigin inDesign(const std::string& path, std::string_view kind = "design") const
    {
        const auto [file, line] = design().source.lineOf(path);
        const Distribution* all = design().distributionAt(path);
        return {std::string(kind), all ? all->centreText() : "", file, line};
    }

    void sortLargestFirst(std::size_t id)
    {
        std::vector<std::size_t>& operands = at(id).operands;
        at(id).terms = operands;
        std::stable_sort(operands.begin(), operands.end(),
                         [&](std::size_t a, std::size_t b) { return sizeOf(at(a)) > sizeOf(at(b)); });
    }

    void addGroups(std::size_t id)
    {
        for (std::size_t i = 0; i < m_estimate->groups.size(); ++i) {
            if (m_estimate->groups[i].watts != 0.0) {
                const std::size_t operand = group(i);
                at(id).operands.push_back(operand);
            }
        }
    }

    // ---- Totals ----

    std::size_t total(const std::string& process)
    {
        return quantity(sideName("total", process), amountOf(side(process).totalWatts), "W",
                        "power on the chip, all rails", [this, process](std::size_t id) {
                            addGroups(id);
                            if (!process.empty()) {
                                const std::size_t operand = staticPower(process);
                                at(id).operands.push_back(operand);
                            }
                            sortLargestFirst(id);
                            at(id).words = process.empty() ? "the groups, in the design's order"
                                                           : "static power + (the groups, in the design's order)";
                        });
    }

    std::size_t dynamic()
    {
        return quantity("dynamic", m_estimate->dynamicWatts, "W", "dynamic power of all groups",
                        [this](std::size_t id) {
                            addGroups(id);
                            sortLargestFirst(id);
                            at(id).words = "the groups, in the design's order";
                        });
    }

    // ---- Groups ----

    std::size_t group(std::size_t index)
    {
        const GroupResult& result = m_estimate->groups[index];
        return quantity(fmt::format("group:{}", result.name), result.watts, "W", result.block->title,
                        [this, index](std::size_t id) {
                            const GroupResult& own = m_estimate->groups[index];
                            for (const Contribution& part : own.contributions) {
                                const std::size_t operand = contribution(index, part, "W");
                                at(id).operands.push_back(operand);
                            }
                            sortLargestFirst(id);
                            at(id).words = own.onlyCarries ? "it only works out inputs of other groups"
                                                           : "what its outputs load rails with, in the block's order";
                        });
    }

    // What one output of a group adds to its rail, in watts or amperes.
    std::size_t contribution(std::size_t index, const Contribution& part, std::string_view unit)
    {
        const GroupResult& result = m_estimate->groups[index];
        return quantity(
            fmt::format("group:{}.{} in {}", result.name, part.cell, unit), unit == "W" ? part.watts : part.amperes,
            unit, fmt::format("on rail {}", part.rail),
            [this, index, part, unit = std::string(unit)](std::size_t id) { fillContribution(id, index, part, unit); });
    }

    void fillContribution(std::size_t id, std::size_t index, const Contribution& part, const std::string& unit)
    {
        const Block& block = *m_estimate->groups[index].block;
        const ZelmCellInfo& output = block.cell(part.cell);
        std::vector<std::size_t> operands{cell(index, output)};
        std::string words(part.cell);
        if (!output.goes.scaling.empty()) {
            words += fmt::format(" x {}", output.goes.scaling);
            operands.push_back(cell(index, block.cell(output.goes.scaling)));
        }
        if (output.unit.starts_with('u') || output.unit.starts_with('m'))
            words += output.unit.starts_with('u') ? " x 1e-6" : " x 1e-3";
        words += multiplierWords(index, operands);
        if (output.unit.ends_with('A') != (unit == "A")) {
            const auto [name, operand] = volts(index, part);
            words += fmt::format(" {} {}", unit == "A" ? '/' : 'x', name);
            operands.push_back(operand);
        }
        at(id).operands = std::move(operands);
        at(id).words = std::move(words);
    }

    const Group& designGroup(std::size_t index) const
    {
        return design().groups[m_places[index].group];
    }

    std::size_t countOf(std::size_t index)
    {
        const Group& group = designGroup(index);
        return leaf(fmt::format("group:{} count", m_estimate->groups[index].name), group.count, "",
                    "how many times the group stands in the device", inDesign(group.place + ".count"));
    }

    // How many units a group stands for: multiplied first, then with the amount.
    std::string multiplierWords(std::size_t index, std::vector<std::size_t>& operands)
    {
        std::vector<std::string_view> factors;
        const Block& block = *m_estimate->groups[index].block;
        if (designGroup(index).count != 1) {
            factors.emplace_back("count");
            operands.push_back(countOf(index));
        }
        for (const PerUnit& rule : perUnit()) {
            if (rule.block != block.name)
                continue;
            factors.push_back(rule.cell);
            operands.push_back(cell(index, block.cell(rule.cell)));
        }
        const std::string words = fmt::format("{}", fmt::join(factors, " x "));
        return factors.empty() ? "" : factors.size() == 1 ? " x " + words : fmt::format(" x ({})", words);
    }

    // The volts at which a group loads a rail, by name.
    std::pair<std::string, std::size_t> volts(std::size_t index, const Contribution& part)
    {
        const Running& group = running(index);
        if (const std::optional<double> pads = padVolts(group, part.cell)) {
            const std::string name = fmt::format("volts of {}", part.cell);
            return {name,
                    leaf(fmt::format("group:{}: {}", group.name, name), *pads, "V",
                         "the voltage that the pads' power was characterised at", {"carried", "the data", "", 0})};
        }
        if (const ZelmCellInfo* own = group.railInput(part.rail))
            return {std::string(own->name), cell(index, *own)};
        const std::string name = fmt::format("volts of {}", part.rail);
        const auto known = m_rails->find(part.rail);
        return {name, leaf(name, known ? static_cast<double>(known->volts) : 0.0, "V", "the rail's voltage",
                           railOrigin(part.rail, known ? known->origin : Origin::byDefault))};
    }

    // ---- Cells ----

    const Running& running(std::size_t index)
    {
        const auto [group, blockOf] = m_places[index];
        const auto found = m_started.find(group);
        if (found != m_started.end())
            return found->second.blocks[blockOf];
        const ResolvedDevice* device = m_device.get();
        return m_started.emplace(group, start(design(), design().groups[group], *m_rails, device))
            .first->second.blocks[blockOf];
    }

    Run& run(std::size_t index)
    {
        std::unique_ptr<Run>& known = m_runs[index];
        if (!known) {
            const Running& group = running(index);
            Given given;
            for (const ZelmCellInfo& input : group.block->cells) {
                if (group.isSet(input))
                    given.emplace_back(&input, group.instance->get(input));
            }
            known = std::make_unique<Run>(*group.block, given);
        }
        return *known;
    }

    std::size_t cellNode(Run& run, const ZelmCellInfo& info, ExplainedNode node, Fill fill)
    {
        std::size_t& id = run.ids[static_cast<std::size_t>(&info - run.trace.block().cells.data())];
        if (id != kNone)
            return id;
        node.block = &run.trace.block();
        node.cell = &info;
        node.value = amountOf(run.trace.value(info));
        node.unit = info.unit;
        node.meaning = info.meaning;
        id = m_entries.size();
        m_entries.push_back({std::move(node), std::move(fill)});
        return id;
    }

    std::size_t cell(std::size_t index, const ZelmCellInfo& info)
    {
        ExplainedNode node;
        node.group = m_estimate->groups[index].name;
        return cellNode(run(index), info, std::move(node), [this, index, &info](std::size_t id) {
            const CellTrace* computed = run(index).trace.of(info);
            if (!computed)
                return fillInput(id, index, info);
            fillComputed(id, *computed, [&](const ZelmCellInfo& operand) { return cell(index, operand); });
        });
    }

    template <class OperandOf>
    void fillComputed(std::size_t id, const CellTrace& computed, OperandOf operandOf)
    {
        const Block& block = *at(id).block;
        const ZelmCellInfo& info = *at(id).cell;
        const Formula& formula = formulaOf(block, info);
        std::vector<std::size_t> operands;
        for (const ZelmCellInfo* operand : computed.operands)
            operands.push_back(operandOf(*operand));
        ExplainedNode& node = at(id);
        node.operands = std::move(operands);
        node.formula = &formula;
        if (info.kind == ZelmCellInfo::Kind::userInput)
            node.origin = {"default", "", std::string(formula.own.file), formula.own.line};
        for (const LookedUp& lookUp : computed.lookUps) {
            std::shared_ptr<const RowLines>& rows = m_rowLines[&block];
            if (!rows)
                rows = RowLines::of(block);
            node.lookUps.push_back({lookUp, rows->file(), rows->lineOf(lookUp)});
        }
    }

    // ---- Where inputs come from ----

    ValueOrigin railOrigin(std::string_view rail, Origin origin) const
    {
        if (origin == Origin::rails)
            return inDesign(fmt::format("rails.{}", rail), originWord(origin));
        if (origin == Origin::device) {
            ValueOrigin device = inDesign("device.part", originWord(origin));
            device.from = m_device->name;
            return device;
        }
        return {std::string(originWord(origin)), "", "", 0};
    }

    void fillInput(std::size_t id, std::size_t index, const ZelmCellInfo& info)
    {
        const Running& group = running(index);
        const Origin origin = group.originOf(info);
        if (origin == Origin::design) {
            at(id).origin = inDesign(fmt::format("{}.inputs.{}", group.place, info.name));
        } else if (origin == Origin::rails || origin == Origin::device) {
            const BankKind* bank = bankKindOf(group.block->name);
            at(id).origin = railOrigin(bank && info.name == bank->volts ? group.bankRail() : info.legal.rail, origin);
        } else {
            fillCarried(id, group, info);
        }
    }

    // What the tool carried, from which group if from one.
    void fillCarried(std::size_t id, const Running& group, const ZelmCellInfo& info)
    {
        const auto& all = m_estimate->carried;
        const auto carried = std::find_if(all.begin(), all.end(), [&](const Carried& entry) {
            return *entry.to.name == group.name && entry.to.cell == info.name;
        });
        ValueOrigin origin{"carried", carried == all.end() ? "the I/O standard" : carried->from.text(), "", 0};
        std::vector<std::size_t> operands;
        if (origin.from == "device" || (m_device && origin.from.starts_with(m_device->name + "."))) {
            origin = inDesign("device.part", "carried");
            origin.from = carried->from.text();
        } else if (origin.from == "groups on " + group.name) {
            operands = loadsOn(group, info.name);
            at(id).words = info.name == "FANOUT" ? "sites of these loads x FANOUT_PER_SITE"
                                                 : "loads of all groups on the clock, for each of its nets";
        } else if (const auto source = sourceOf(origin.from)) {
            operands.push_back(cell(source->first, *source->second));
        }
        at(id).operands = std::move(operands);
        at(id).origin = std::move(origin);
    }

    // "clk.CLOCK_FREQ": the cell of the group of that name, or of one that it feeds.
    std::optional<std::pair<std::size_t, const ZelmCellInfo*>> sourceOf(const std::string& from) const
    {
        const std::size_t dot = from.rfind('.');
        const std::string name = from.substr(0, dot);
        const auto found = m_groupsByName.find(name);
        if (dot == std::string::npos || found == m_groupsByName.end())
            return std::nullopt;
        for (std::size_t i = found->second; i < m_places.size() && m_places[i].group == m_places[found->second].group;
             ++i) {
            if (const ZelmCellInfo* cell = m_estimate->groups[i].block->findCell(from.substr(dot + 1)))
                return std::pair(i, cell);
        }
        return std::nullopt;
    }

    // What the groups on a clock load it with, or what its fanout was worked out from.
    std::vector<std::size_t> loadsOn(const Running& clock, std::string_view loads)
    {
        std::vector<std::size_t> operands;
        const auto addOf = [&](std::size_t index, std::string_view name) {
            operands.push_back(cell(index, m_estimate->groups[index].block->cell(name)));
        };
        if (loads == "FANOUT")
            addOf(m_groupsByName.at(clock.name), "FANOUT_PER_SITE");
        for (const ClockLoad& load : clockLoads()) {
            for (std::size_t i = 0; i < m_estimate->groups.size(); ++i) {
                const GroupResult& group = m_estimate->groups[i];
                if (loads == "FANOUT" && group.name == clock.name)
                    addOf(i, load.load);
                const bool counts = load.load == loads && group.clock == clock.name && group.block->name == load.block;
                if (!counts || !(load.kind.empty() || running(i).text(load.kind).starts_with(load.word)))
                    continue;
                addOf(i, load.cell);
                if (designGroup(i).count != 1)
                    operands.push_back(countOf(i));
            }
        }
        std::sort(operands.begin(), operands.end());
        operands.erase(std::unique(operands.begin(), operands.end()), operands.end());
        return operands;
    }

    // ---- Static power and temperature ----

    Run& staticRun(const std::string& process)
    {
        std::unique_ptr<Run>& known = m_staticRuns[process];
        if (!known) {
            const Block& statics = block("Static");
            Given given = staticSettings(*m_estimate);
            given.emplace_back(&statics.cell("PROCESS"), process);
            given.emplace_back(&statics.cell("JUNCTION_TEMPERATURE"), static_cast<float>(side(process).junction));
            known = std::make_unique<Run>(statics, given);
        }
        return *known;
    }

    std::size_t staticCell(const std::string& process, const ZelmCellInfo& info)
    {
        ExplainedNode node;
        node.group = "static power";
        node.process = process;
        return cellNode(staticRun(process), info, std::move(node), [this, process, &info](std::size_t id) {
            const CellTrace* computed = staticRun(process).trace.of(info);
            if (!computed)
                return fillStaticInput(id, process, info);
            fillComputed(id, *computed, [&](const ZelmCellInfo& operand) { return staticCell(process, operand); });
        });
    }

    void fillStaticInput(std::size_t id, const std::string& process, const ZelmCellInfo& info)
    {
        const auto isIt = [&](const auto& set) { return set.first == info.name; };
        const auto& byHand = design().staticInputs;
        if (info.name == "JUNCTION_TEMPERATURE") {
            const std::size_t operand = junction(process);
            at(id).operands = {operand};
            at(id).origin = ValueOrigin{"carried", sideName("junction", process), "", 0};
        } else if (info.name == "PROCESS") {
            at(id).origin = inDesign("device.process");
        } else if (std::any_of(byHand.begin(), byHand.end(), isIt)) {
            at(id).origin = inDesign(fmt::format("static.{}", info.name));
        } else if (design().rails.contains(std::string(info.name))) {
            at(id).origin = railOrigin(info.name, Origin::rails);
        } else if (info.name == "HAS_HARL_IO") {
            at(id).origin = ValueOrigin{"carried", "groups", "", 0};
        } else if (m_estimate->usedCounts.contains(info.name)) {
            fillUsedCount(id, info);
        } else {
            at(id).origin = railOrigin("", Origin::device);
        }
    }

    // What the groups use of a resource.
    void fillUsedCount(std::size_t id, const ZelmCellInfo& info)
    {
        std::vector<std::size_t> operands;
        for (const StaticCount& count : staticCounts()) {
            for (std::size_t i = 0; i < m_estimate->groups.size() && count.staticCell == info.name; ++i) {
                const GroupResult& user = m_estimate->groups[i];
                if (user.block->name != count.block)
                    continue;
                if (!count.cell.empty())
                    operands.push_back(cell(i, user.block->cell(count.cell)));
                if (count.cell.empty() || designGroup(i).count != 1)
                    operands.push_back(countOf(i));
            }
        }
        at(id).operands = std::move(operands);
        at(id).words = "what the groups use, in whole counts";
        at(id).origin = ValueOrigin{"carried", "groups", "", 0};
    }

    std::size_t staticPower(const std::string& process)
    {
        const Side& own = side(process);
        return quantity(sideName("static", process), amountOf(own.staticWatts), "W",
                        "leakage of all rails at the junction temperature", [this, process](std::size_t id) {
                            const Side& ofProcess = side(process);
                            if (!ofProcess.settles()) {
                                at(id).words = ofProcess.thermal->words;
                                return;
                            }
                            for (const RailResult& rail : ofProcess.rails) {
                                if (!rail.inside.empty() || rail.staticWatts == 0.0)
                                    continue;
                                const std::size_t operand = staticRail(rail, process);
                                at(id).operands.push_back(operand);
                            }
                            sortLargestFirst(id);
                            at(id).words = "the rails' volts x amperes, in the model's order";
                        });
    }

    std::size_t staticRail(const RailResult& rail, const std::string& process)
    {
        return quantity(sideName(fmt::format("static:{}", rail.name), process), rail.staticWatts, "W",
                        "leakage power of the rail", [this, name = rail.name, process](std::size_t id) {
                            const Block& statics = block("Static");
                            const std::string current = name + "_STATIC_CURRENT";
                            const std::size_t volts = staticCell(process, statics.cell(name));
                            const std::size_t amperes = staticCell(process, statics.cell(current));
                            at(id).operands = {volts, amperes};
                            at(id).words = fmt::format("{} x {}", name, current);
                        });
    }

    std::size_t rail(const std::string& name, const std::string& process)
    {
        const RailResult* result = side(process).rail(name);
        return quantity(sideName(fmt::format("rail:{}", name), process),
                        amountOf(result                    ? result->amperes()
                                 : side(process).settles() ? 0.0
                                                           : std::nan("")),
                        "A", "current of the rail",
                        [this, name, process](std::size_t id) { fillRail(id, name, process); });
    }

    void fillRail(std::size_t id, const std::string& name, const std::string& process)
    {
        const Side& own = side(process);
        for (std::size_t i = 0; i < m_estimate->groups.size(); ++i) {
            for (const Contribution& part : m_estimate->groups[i].contributions) {
                if (part.rail != name || part.amperes == 0.0)
                    continue;
                const std::size_t operand = contribution(i, part, "A");
                at(id).operands.push_back(operand);
            }
        }
        const ZelmCellInfo* current = block("Static").findCell(name + "_STATIC_CURRENT");
        const bool leaks = current && !process.empty() && own.settles();
        if (leaks) {
            const std::size_t operand = staticCell(process, *current);
            at(id).operands.push_back(operand);
        }
        sortLargestFirst(id);
        at(id).words = !own.settles() ? own.thermal->words
                       : leaks        ? "(the groups' outputs, in the design's order) + static current"
                                      : "the groups' outputs, in the design's order";
    }

    std::size_t junction(const std::string& process)
    {
        return quantity(sideName("junction", process),
                        amountOf(side(process).settles() ? side(process).junction : std::nan("")), "C",
                        "junction temperature", [this, process](std::size_t id) { fillJunction(id, process); });
    }

    // Ambient, and what the power heats it up by.
    void fillJunction(std::size_t id, const std::string& process)
    {
        const Side& own = side(process);
        const Environment& environment = design().environment;
        if (!own.thermal) {
            at(id).origin =
                environment.junction ? inDesign("environment.junctionTemperature") : ValueOrigin{"default", "", "", 0};
            return;
        }
        if (!own.thermal->converged) {
            at(id).words = own.thermal->words;
            return;
        }
        const double thetaJA = environment.cooling.front().thetaJA;
        const bool isOne = environment.cooling.front().name == "thetaJA";
        const std::size_t ambient = leaf("ambient", *environment.ambient, "C", "ambient temperature",
                                         inDesign("environment.ambientTemperature"));
        const std::size_t resistance = leaf("thetaJA", thetaJA, "C/W", "degrees per watt from the junction to the air",
                                            inDesign(isOne ? "environment.thetaJA" : "environment.cooling[0].thetaJA"));
        const std::size_t power = total(process);
        at(id).operands = {ambient, resistance, power};
        at(id).words = fmt::format("ambient + thetaJA x total, where that total holds: {:g} + {:g} x {:.6g} = {:.4f}; "
                                   "{}",
                                   *environment.ambient, thetaJA, own.thermal->power,
                                   *environment.ambient + thetaJA * own.thermal->power, own.thermal->words);
    }

    const Estimate* m_estimate;
    std::shared_ptr<const ResolvedDevice> m_device;
    std::optional<RailVolts> m_rails;
    std::vector<Place> m_places; // of the estimate's groups in the design
    std::unordered_map<std::string, std::size_t> m_groupsByName;
    std::map<std::size_t, StartedGroup> m_started;                // by group of the design
    std::unordered_map<std::size_t, std::unique_ptr<Run>> m_runs; // by group of the estimate
    std::map<std::string, std::unique_ptr<Run>> m_staticRuns;     // by process side
    std::map<const Block*, std::shared_ptr<const RowLines>> m_rowLines;
    std::deque<Entry> m_entries; // which stay where they are
    std::deque<std::string> m_meanings;
    std::unordered_map<std::string, std::size_t> m_ids;
};

Explanation::Explanation(const Estimate& estimate) : m_net(std::make_unique<Net>(estimate)) {}

Explanation::~Explanation() = default;

std::size_t Explanation::idOf(const NamedQuantity& quantity)
{
    return m_net->idOf(quantity);
}

const ExplainedNode& Explanation::node(std::size_t id)
{
    return m_net->node(id);
}

const ExplainedNode& Explanation::head(std::size_t id) const
{
    return m_net->head(id);
}

std::size_t Explanation::size() const
{
    return m_net->size();
}

} // namespace zelm::host
