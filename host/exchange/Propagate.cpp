#include "host/exchange/Propagate.h"

#include "host/base/Error.h"
#include "host/base/Json.h"
#include "host/base/JsonSource.h"
#include "host/base/Text.h"
#include "host/base/Units.h"
#include "host/design/Format.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>
#include <unordered_map>

namespace zelm::host {

namespace {

constexpr std::size_t kMostInputs = 6;
constexpr std::size_t kStates = 64;

// A probability's and a density's bounds hold each other: a net can't change more often than it has been either way.
NetActivity bounded(NetActivity activity)
{
    activity.probability = std::clamp(activity.probability, 0.0, 1.0);
    const double most = 2.0 * std::min(activity.probability, 1.0 - activity.probability);
    activity.density = std::clamp(activity.density, 0.0, most);
    return activity;
}

// How likely each state of the inputs is.
std::array<double, kStates> likelihoods(const std::vector<NetActivity>& inputs)
{
    std::array<double, kStates> all{};
    all[0] = 1.0;
    for (std::size_t input = 0; input < inputs.size(); ++input) {
        const std::size_t half = std::size_t{1} << input;
        for (std::size_t state = 0; state < half; ++state) {
            all[state + half] = all[state] * inputs[input].probability;
            all[state] *= 1.0 - inputs[input].probability;
        }
    }
    return all;
}

bool valueAt(std::uint64_t table, std::size_t state)
{
    return ((table >> state) & 1U) != 0;
}

} // namespace

NetActivity throughLut(std::uint64_t table, const std::vector<NetActivity>& inputs)
{
    const std::size_t states = std::size_t{1} << inputs.size();
    const std::array<double, kStates> likely = likelihoods(inputs);
    // How likely a state is together with one of output 1 in the next cycle: input by input, of the two that it has now
    // and the two that it has then.
    std::array<double, kStates> then{};
    double one = 0.0;
    for (std::size_t state = 0; state < states; ++state) {
        then[state] = valueAt(table, state) ? 1.0 : 0.0;
        one += valueAt(table, state) ? likely[state] : 0.0;
    }
    for (std::size_t input = 0; input < inputs.size(); ++input) {
        const std::size_t bit = std::size_t{1} << input;
        const double change = inputs[input].density / 2.0; // either way
        const double zero = 1.0 - inputs[input].probability - change;
        const double stays = inputs[input].probability - change;
        for (std::size_t state = 0; state < states; ++state) {
            if ((state & bit) != 0)
                continue;
            const double low = then[state];
            const double high = then[state | bit];
            then[state] = zero * low + change * high;
            then[state | bit] = change * low + stays * high;
        }
    }
    double both = 0.0;
    for (std::size_t state = 0; state < states; ++state)
        both += valueAt(table, state) ? then[state] : 0.0;
    return bounded({one, 2.0 * (one - both)});
}

NetActivity throughEnable(const NetActivity& data, double enabled)
{
    const double spread = 2.0 * data.probability * (1.0 - data.probability);
    if (spread <= 0.0 || enabled <= 0.0)
        return {data.probability, 0.0};
    const double remembers = 1.0 - data.density / spread; // from a cycle to the next; below 0 if it tends to change
    const double betweenLoads = enabled * remembers / (1.0 - (1.0 - enabled) * remembers);
    return bounded({data.probability, enabled * spread * (1.0 - betweenLoads)});
}

namespace {

struct LutNode {
    std::uint64_t table = 0;
    std::vector<NetBit> inputs{};
    NetBit output = kBitX;
    std::uint32_t instance = 0;
};

// A register of one bit.
struct StateNode {
    NetBit data = kBitX;
    NetBit output = kBitX;
    NetBit enable = kBit1;
    NetBit reset = kBit0;
    bool enableLow = false;
    bool resetLow = false;
    bool resetValue = false;
};

// A cell whose function isn't known bit by bit: its outputs are as random words are, which change if an input does.
struct GuessNode {
    std::vector<NetBit> inputs{};
    std::vector<NetBit> outputs{};
    double changing = 0.0; ///< share of cycles in which an input changes
};

class Propagator {
public:
    explicit Propagator(const FlatNetlist& netlist) : m_netlist(&netlist) {}

    Propagation run(const std::vector<std::string>& inputs) &&
    {
        m_result.nets.resize(m_netlist->netCount);
        m_result.driven.resize(m_netlist->netCount);
        m_driver.assign(m_netlist->netCount, kNone);
        for (const FlatNetlist::Cell& cell : m_netlist->cells)
            take(cell);
        sortLuts();
        setInputs(inputs);
        noteDriven();
        findReconvergence();
        findOccasions();
        settle();
        for (const auto& [type, count] : m_guessedTypes)
            m_result.guessed.emplace_back(type, count);
        return std::move(m_result);
    }

private:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    // ---- Cells ----

    NetBit bitAt(const FlatNetlist::Cell& cell, std::string_view port, NetBit otherwise) const
    {
        const auto bits = m_netlist->netlist->bitsAt(m_netlist->moduleOf(cell), m_netlist->of(cell), port);
        return bits.empty() ? otherwise : m_netlist->net(cell.instance, bits.front());
    }

    void take(const FlatNetlist::Cell& cell)
    {
        switch (m_netlist->roleOf(cell).kind) {
        case CellKind::lut:
            return takeLut(cell);
        case CellKind::flipFlop:
        case CellKind::latch:
        case CellKind::shiftRegister:
            return takeRegister(cell);
        case CellKind::nothing:
            return;
        default:
            return takeOther(cell);
        }
    }

    void takeLut(const FlatNetlist::Cell& cell)
    {
        LutNode lut{0, m_netlist->netsAt(cell, "A"), bitAt(cell, "Y", kBitX), cell.instance};
        const std::string_view digits =
            m_netlist->netlist->parameter(m_netlist->moduleOf(cell), m_netlist->of(cell), "LUT");
        const bool digital = digits.find_first_not_of("01x") == std::string_view::npos;
        if (lut.inputs.size() > kMostInputs || digits.empty() || digits.size() > kStates || !digital)
            return takeOther(cell);
        for (const char digit : digits)
            lut.table = 2 * lut.table + (digit == '1' ? 1U : 0U);
        if (!isConstant(lut.output))
            m_luts.push_back(std::move(lut));
    }

    // Polarities and the value of a reset: letters of a gate's name, $_SDFFE_PP0N_, or parameters of a word's.
    void takeRegister(const FlatNetlist::Cell& cell)
    {
        const std::string& type = m_netlist->typeOf(cell);
        const std::string_view control = m_netlist->roleOf(cell).control;
        const bool enabled = control.find("enable") != std::string_view::npos;
        const bool resets = control.find("reset") != std::string_view::npos && control != "set and reset" &&
                            control != "enable, set and reset";
        const bool gate = type.starts_with("$_");
        const std::size_t letters = type.size() < 3 ? 0 : type.rfind('_', type.size() - 2) + 1;
        const auto low = [&](std::size_t letter) { return gate && type[letters + letter] == 'N'; };
        StateNode node;
        if (enabled) {
            node.enable = bitAt(cell, gate ? "E" : "EN", kBit1);
            node.enableLow = gate ? low(type.size() - letters - 2) : isZero(cell, "EN_POLARITY");
        }
        const bool synchronous = !gate && type.starts_with("$sdff");
        if (resets) {
            node.reset = bitAt(cell, gate ? "R" : synchronous ? "SRST" : "ARST", kBit0);
            node.resetLow = gate ? low(1) : isZero(cell, synchronous ? "SRST_POLARITY" : "ARST_POLARITY");
            node.resetValue = gate && type[letters + 2] == '1';
        }
        const std::vector<NetBit> data = m_netlist->netsAt(cell, "D");
        const std::vector<NetBit> outputs = m_netlist->netsAt(cell, "Q");
        const std::string_view values =
            gate ? std::string_view()
                 : m_netlist->netlist->parameter(m_netlist->moduleOf(cell), m_netlist->of(cell),
                                                 synchronous ? "SRST_VALUE" : "ARST_VALUE");
        for (std::size_t i = 0; i < std::min(data.size(), outputs.size()); ++i) {
            node.data = data[i];
            node.output = outputs[i];
            if (!gate)
                node.resetValue = i < values.size() && values[values.size() - 1 - i] == '1';
            if (!isConstant(node.output))
                m_states.push_back(node);
        }
    }

    bool isZero(const FlatNetlist::Cell& cell, std::string_view parameter) const
    {
        const std::string_view value =
            m_netlist->netlist->parameter(m_netlist->moduleOf(cell), m_netlist->of(cell), parameter);
        return !value.empty() && value.find('1') == std::string_view::npos;
    }

    void takeOther(const FlatNetlist::Cell& cell)
    {
        GuessNode node;
        const Netlist::Module& module = m_netlist->moduleOf(cell);
        const bool memory = m_netlist->roleOf(cell).kind == CellKind::memory;
        for (const Netlist::Connection& connection : module.of(m_netlist->of(cell))) {
            const std::string& port = m_netlist->netlist->names[connection.port];
            const bool drives = m_netlist->directionOf(cell, connection) == PortDirection::output;
            if (memory && !drives && port != "RD_ADDR")
                continue; // what is read depends on where
            for (const NetBit bit : module.at(connection.bits)) {
                if (const NetBit net = m_netlist->net(cell.instance, bit); !isConstant(net))
                    (drives ? node.outputs : node.inputs).push_back(net);
            }
        }
        ++m_guessedTypes[m_netlist->typeOf(cell)];
        if (!node.outputs.empty())
            m_guesses.push_back(std::move(node));
    }

    // ---- Order ----

    // Each LUT behind those that feed it; those in circles last, as they stand in the file.
    void sortLuts()
    {
        for (std::uint32_t i = 0; i < m_luts.size(); ++i)
            m_driver[m_luts[i].output] = i;
        std::vector<std::uint32_t> waits(m_luts.size(), 0);
        std::vector<std::vector<std::uint32_t>> feeds(m_luts.size());
        for (std::uint32_t i = 0; i < m_luts.size(); ++i) {
            for (const NetBit net : m_luts[i].inputs) {
                if (isConstant(net) || m_driver[net] == kNone)
                    continue;
                feeds[m_driver[net]].push_back(i);
                ++waits[i];
            }
        }
        for (std::uint32_t i = 0; i < m_luts.size(); ++i) {
            if (waits[i] == 0)
                m_order.push_back(i);
        }
        for (std::size_t next = 0; next < m_order.size(); ++next) {
            for (const std::uint32_t fed : feeds[m_order[next]]) {
                if (--waits[fed] == 0)
                    m_order.push_back(fed);
            }
        }
        m_result.looped = m_luts.size() - m_order.size();
        for (std::uint32_t i = 0; i < m_luts.size(); ++i) {
            if (waits[i] > 0)
                m_order.push_back(i);
        }
    }

    // ---- Inputs ----

    NetActivity of(NetBit net) const
    {
        if (net == kBit0 || net == kBit1)
            return {net == kBit1 ? 1.0 : 0.0, 0.0};
        return isConstant(net) ? NetActivity{0.5, 0.0} : m_result.nets[net];
    }

    static NetActivity activityOf(const std::string& wish, const std::string& text)
    {
        const std::size_t cut = text.find(',');
        const auto share = plainNumber(text.substr(0, cut));
        const auto density = plainNumber(cut == std::string::npos ? "" : text.substr(cut + 1));
        if (!share || !density)
            throw Error(fmt::format("--input {} is not of the form PORT=PROBABILITY,DENSITY: data=0.5,0.25",
                                    abbreviated(wish)));
        if (!(*share >= 0.0 && *share <= 1.0))
            throw Error(fmt::format("--input {}: a probability is from 0 to 1", abbreviated(wish)));
        const double most = 2.0 * std::min(*share, 1.0 - *share);
        constexpr double rounding = 1e-3; // of measured shares
        if (!(*density >= 0.0 && *density <= most + rounding))
            throw Error(fmt::format("--input {}: a net that is 1 in {:g} of the cycles changes in {:g} of them at most",
                                    abbreviated(wish), *share, most));
        return bounded({*share, *density});
    }

    void setInputs(const std::vector<std::string>& wishes)
    {
        constexpr NetActivity usual{0.5, 0.125};
        const Netlist::Module& top = m_netlist->top();
        std::map<std::string, NetBit> bits;
        std::map<std::string, std::vector<NetBit>> ports;
        std::vector<std::string> names;
        for (const Netlist::Port& port : top.ports) {
            if (port.direction == PortDirection::output)
                continue;
            names.push_back(port.name);
            std::vector<NetBit>& nets = ports[port.name];
            for (const NetBit bit : top.at(port.bits)) {
                nets.push_back(m_netlist->net(0, bit));
                bits[fmt::format("{}[{}]", port.name, nets.size() - 1)] = nets.back();
                if (isConstant(nets.back()))
                    continue;
                m_result.nets[nets.back()] = usual;
                m_result.driven[nets.back()] = true;
            }
        }
        for (const std::string& wish : wishes) {
            const std::size_t cut = wish.find('=');
            const std::string name = wish.substr(0, cut);
            const NetActivity activity = activityOf(wish, cut == std::string::npos ? "" : wish.substr(cut + 1));
            const auto port = ports.find(name);
            const auto bit = bits.find(name);
            if (port == ports.end() && bit == bits.end())
                throw Error(fmt::format("--input {}: {} has no input of that name{}", abbreviated(wish),
                                        m_netlist->netlist->file, suggestion(name, names)));
            for (const NetBit net : port == ports.end() ? std::vector{bit->second} : port->second) {
                if (!isConstant(net))
                    m_result.nets[net] = activity;
            }
        }
    }

    // Inputs are noted where they are set.
    void noteDriven()
    {
        for (const LutNode& lut : m_luts)
            m_result.driven[lut.output] = true;
        for (const StateNode& state : m_states)
            m_result.driven[state.output] = true;
        for (const GuessNode& guess : m_guesses) {
            for (const NetBit net : guess.outputs)
                m_result.driven[net] = true;
        }
    }

    // ---- Reconvergence ----

    // The nets at which logic begins that a net hangs on; many are not kept, and count as common with all.
    struct Support {
        std::vector<NetBit> nets{};
        bool many = false;
    };

    void findReconvergence()
    {
        constexpr std::size_t most = 64;
        for (std::size_t i = 0; i < m_netlist->instances.size(); ++i)
            m_result.parts.push_back({m_netlist->instances[i].path, 0, 0});
        std::unordered_map<NetBit, Support> supports;
        for (const std::uint32_t index : m_order) {
            const LutNode& lut = m_luts[index];
            Support support;
            bool common = false;
            for (const NetBit net : lut.inputs) {
                if (isConstant(net))
                    continue;
                const auto found = supports.find(net);
                const Support own = found == supports.end() ? Support{{net}, false} : found->second;
                common = common || (own.many && !support.nets.empty()) || (support.many && !own.nets.empty());
                std::vector<NetBit> both;
                std::set_union(support.nets.begin(), support.nets.end(), own.nets.begin(), own.nets.end(),
                               std::back_inserter(both));
                common = common || both.size() < support.nets.size() + own.nets.size();
                support.many = support.many || own.many || both.size() > most;
                both.resize(std::min(both.size(), most));
                support.nets = std::move(both);
            }
            Propagation::Part& part = m_result.parts[lut.instance];
            ++part.luts;
            part.reconvergent += common ? 1U : 0U;
            supports[lut.output] = std::move(support);
        }
        std::erase_if(m_result.parts, [](const Propagation::Part& part) { return part.luts == 0; });
    }

    // ---- Rounds ----

    void settle()
    {
        constexpr std::size_t mostRounds = 300;
        constexpr double enough = 1e-5;
        double& moved = m_result.moved;
        for (moved = 1.0; moved > enough && m_result.rounds < mostRounds; ++m_result.rounds) {
            for (const std::uint32_t index : m_order) {
                const LutNode& lut = m_luts[index];
                m_result.nets[lut.output] = throughLut(lut.table, activities(lut.inputs));
            }
            moved = 0.0;
            for (GuessNode& guess : m_guesses)
                moved = std::max(moved, passGuess(guess));
            std::vector<NetActivity> next;
            for (const StateNode& state : m_states)
                next.push_back(after(state));
            for (std::size_t i = 0; i < m_states.size(); ++i)
                moved = std::max(moved, move(m_states[i].output, next[i]));
            m_result.settled = moved <= enough;
            for (std::size_t i = 0; m_result.settled && i < m_states.size(); ++i)
                m_result.nets[m_states[i].output] = next[i];
        }
    }

    std::vector<NetActivity> activities(const std::vector<NetBit>& nets) const
    {
        std::vector<NetActivity> all;
        for (const NetBit net : nets)
            all.push_back(of(net));
        return all;
    }

    // Half the way, so that a register which feeds itself inverted comes to rest.
    double move(NetBit net, const NetActivity& to)
    {
        NetActivity& now = m_result.nets[net];
        const double moved = std::max(std::fabs(to.probability - now.probability), std::fabs(to.density - now.density));
        now = {(now.probability + to.probability) / 2.0, (now.density + to.density) / 2.0};
        return moved;
    }

    // The share of cycles in which what sets a net may change at all: a register's enable, another guess's inputs. Nets
    // that the same sets change together. None: each on its own.
    std::optional<std::pair<std::uint64_t, double>> occasionOf(NetBit net) const
    {
        const auto found = m_occasions.find(net);
        if (found == m_occasions.end())
            return std::nullopt;
        const auto& [ofState, index] = found->second;
        if (!ofState)
            return std::pair{(std::uint64_t{1} << 32U) + index, m_guesses[index].changing};
        const StateNode& state = m_states[index];
        return std::pair{std::uint64_t{state.enable}, shareOf(of(state.enable), state.enableLow)};
    }

    void findOccasions()
    {
        for (std::uint32_t i = 0; i < m_states.size(); ++i) {
            if (!isConstant(m_states[i].enable))
                m_occasions[m_states[i].output] = {true, i};
        }
        for (std::uint32_t i = 0; i < m_guesses.size(); ++i) {
            for (const NetBit net : m_guesses[i].outputs)
                m_occasions[net] = {false, i};
        }
    }

    // How often one of the inputs changes.
    double changing(const GuessNode& guess) const
    {
        double still = 1.0;
        std::map<std::uint64_t, std::pair<double, double>>
            together; // share of the occasion, and of none changing in it
        for (const NetBit net : guess.inputs) {
            const double density = std::min(of(net).density, 1.0);
            const auto occasion = occasionOf(net);
            if (!occasion || occasion->second <= 0.0) {
                still *= 1.0 - density;
                continue;
            }
            auto& [share, none] = together.try_emplace(occasion->first, occasion->second, 1.0).first->second;
            none *= 1.0 - std::min(density / share, 1.0);
        }
        for (const auto& [id, both] : together)
            still *= 1.0 - both.first * (1.0 - both.second);
        return 1.0 - still;
    }

    double passGuess(GuessNode& guess)
    {
        guess.changing = changing(guess);
        double moved = 0.0;
        for (const NetBit net : guess.outputs)
            moved = std::max(moved, move(net, {0.5, 0.5 * guess.changing}));
        return moved;
    }

    static double shareOf(const NetActivity& activity, bool low)
    {
        return low ? 1.0 - activity.probability : activity.probability;
    }

    // A register changes where it loads another value than it has: known exactly if the LUT in front of it looks at it.
    NetActivity after(const StateNode& state) const
    {
        const NetActivity data = of(state.data);
        const double enabled = shareOf(of(state.enable), state.enableLow);
        const double reset = shareOf(of(state.reset), state.resetLow);
        NetActivity loaded = throughEnable(data, enabled);
        if (const std::optional<double> differs = differsFromItself(state))
            loaded = bounded({data.probability, enabled * *differs});
        if (reset <= 0.0)
            return loaded;
        NetActivity resets = of(state.reset);
        resets.probability = reset;
        constexpr std::uint64_t either = 0b1110;      // reset to 1
        constexpr std::uint64_t unlessReset = 0b0010; // data is the low digit
        return throughLut(state.resetValue ? either : unlessReset, {loaded, resets});
    }

    std::optional<double> differsFromItself(const StateNode& state) const
    {
        if (isConstant(state.data) || m_driver[state.data] == kNone)
            return std::nullopt;
        const LutNode& lut = m_luts[m_driver[state.data]];
        const auto own = std::find(lut.inputs.begin(), lut.inputs.end(), state.output);
        if (own == lut.inputs.end())
            return std::nullopt;
        const std::size_t digit = static_cast<std::size_t>(own - lut.inputs.begin());
        const std::array<double, kStates> likely = likelihoods(activities(lut.inputs));
        double differs = 0.0;
        for (std::size_t i = 0; i < (std::size_t{1} << lut.inputs.size()); ++i)
            differs += valueAt(lut.table, i) != valueAt(i, digit) ? likely[i] : 0.0;
        return differs;
    }

    const FlatNetlist* m_netlist;
    Propagation m_result;
    std::vector<LutNode> m_luts;
    std::vector<StateNode> m_states;
    std::vector<GuessNode> m_guesses;
    std::unordered_map<NetBit, std::pair<bool, std::uint32_t>> m_occasions; // of a state, else of a guess, by its index
    std::map<std::string, std::size_t> m_guessedTypes;
    std::vector<std::uint32_t> m_driver; // LUT by net
    std::vector<std::uint32_t> m_order;  // of LUTs
};

double meanDensity(const std::vector<NetBit>& nets, const Propagation& propagation)
{
    double sum = 0.0;
    for (const NetBit net : nets)
        sum += propagation.nets[net].density;
    return sum / static_cast<double>(nets.size());
}

} // namespace

Propagation propagated(const FlatNetlist& netlist, const std::vector<std::string>& inputs)
{
    return Propagator(netlist).run(inputs);
}

RatedDesign rated(const std::string& file, const NetlistPlan& plan, const Propagation& propagation)
{
    JsonSource source;
    Json design = readJson(file, source);
    if (!design.is_object() || !design.contains("groups") || !design["groups"].is_array())
        throw Error(fmt::format("{}: has no groups", source.file));
    std::unordered_map<std::string, Json*> byName;
    for (Json& group : design["groups"]) {
        if (group.is_object() && group.contains("name") && group["name"].is_string())
            byName.emplace(group["name"].get<std::string>(), &group);
    }
    RatedDesign result;
    for (const NetlistPlan::Group& group : plan.groups) {
        const auto found = byName.find(group.name);
        if (found == byName.end()) {
            result.missing.push_back(group.name);
            continue;
        }
        Json& inputs = (*found->second)["inputs"];
        if (!inputs.is_null() && !inputs.is_object())
            throw Error(fmt::format("{}: the inputs of group \"{}\" are {}, expected an object", source.file,
                                    abbreviated(group.name), quoted(inputs)));
        for (const NetlistPlan::Rate& rate : group.rates) {
            if (!rate.nets.empty())
                inputs[rate.cell] = std::stod(fmt::format("{:.4g}", meanDensity(rate.nets, propagation)));
        }
        ++result.groups;
    }
    result.text = formattedDesign(jsonText(design), source.file);
    return result;
}

std::string netsCsv(const FlatNetlist& netlist, const Propagation& propagation)
{
    std::string text = "net,probability,density\n";
    std::vector<bool> written(netlist.netCount);
    for (std::uint32_t i = 0; i < netlist.instances.size(); ++i) {
        const FlatNetlist::Instance& instance = netlist.instances[i];
        const Netlist::Module& module = netlist.netlist->modules[instance.module];
        for (const Netlist::Net& net : module.nets) {
            const auto bits = module.at(net.bits);
            for (std::size_t bit = 0; bit < bits.size(); ++bit) {
                const NetBit at = netlist.net(i, bits[bit]);
                if (isConstant(at) || written[at] || !propagation.driven[at])
                    continue;
                written[at] = true;
                const std::string name = bits.size() == 1 ? net.name : fmt::format("{}[{}]", net.name, bit);
                text += fmt::format("{},{:.6g},{:.6g}\n",
                                    escapedCsv(instance.path + (instance.path.empty() ? "" : "/") + name),
                                    propagation.nets[at].probability, propagation.nets[at].density);
            }
        }
    }
    return text;
}

} // namespace zelm::host
