#include "host/exchange/FlatNetlist.h"

#include "host/base/Error.h"
#include "host/base/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>
#include <unordered_map>

namespace zelm::host {

namespace {

constexpr std::size_t kDeepestInstances = 200;
constexpr double kMostInstances = 10'000;
constexpr double kMostFlatCells = 4'000'000;
constexpr double kMostFlatBits = 32'000'000;

struct RegisterRow {
    std::string_view gate; ///< "$_DFF_" and what stands between underscores behind it
    std::string_view word; ///< the type of many bits
    std::size_t letters;   ///< behind the gate's name: polarities and reset values
    CellKind kind;
    std::string_view control;
};

constexpr RegisterRow kRegisters[] = {
    {"DFF", "$dff", 1, CellKind::flipFlop, "plain"},
    {"DFF", "$adff", 3, CellKind::flipFlop, "asynchronous reset"},
    {"DFFE", "$dffe", 2, CellKind::flipFlop, "enable"},
    {"DFFE", "$adffe", 4, CellKind::flipFlop, "enable, asynchronous reset"},
    {"SDFF", "$sdff", 3, CellKind::flipFlop, "synchronous reset"},
    {"SDFFE", "$sdffe", 4, CellKind::flipFlop, "enable, synchronous reset"},
    {"SDFFCE", "$sdffce", 4, CellKind::flipFlop, "enable, synchronous reset"},
    {"ALDFF", "$aldff", 2, CellKind::flipFlop, "asynchronous load"},
    {"ALDFFE", "$aldffe", 3, CellKind::flipFlop, "enable, asynchronous load"},
    {"DFFSR", "$dffsr", 3, CellKind::flipFlop, "set and reset"},
    {"DFFSRE", "$dffsre", 4, CellKind::flipFlop, "enable, set and reset"},
    {"DLATCH", "$dlatch", 1, CellKind::latch, "plain"},
    {"DLATCH", "$adlatch", 3, CellKind::latch, "reset"},
    {"DLATCHSR", "$dlatchsr", 3, CellKind::latch, "set and reset"},
};

CellRole registerRole(std::string_view type)
{
    for (const RegisterRow& row : kRegisters) {
        const bool latch = row.kind == CellKind::latch;
        const std::size_t end = 2 + row.gate.size();
        if (type == row.word)
            return {row.kind, latch ? "EN" : "CLK", row.control};
        if (type.size() == end + row.letters + 2 && type.starts_with("$_") && type.substr(2).starts_with(row.gate) &&
            type[end] == '_' && type.back() == '_')
            return {row.kind, latch ? "E" : "C", row.control};
    }
    return {};
}

} // namespace

CellRole roleOf(std::string_view type)
{
    if (type == "$lut")
        return {CellKind::lut};
    if (type == "$alu" || type == "$lcu")
        return {CellKind::carry};
    if (type == "$mul")
        return {CellKind::multiplier};
    if (type == "$mem" || type == "$mem_v2")
        return {CellKind::memory};
    if (type.starts_with("$__SHREG_"))
        return {CellKind::shiftRegister, "C"};
    for (const std::string_view check :
         {"$assert", "$assume", "$check", "$cover", "$fair", "$initstate", "$live", "$print", "$scopeinfo"}) {
        if (type == check)
            return {CellKind::nothing};
    }
    return registerRole(type);
}

std::vector<NetBit> FlatNetlist::netsAt(const Cell& cell, std::string_view port) const
{
    std::vector<NetBit> all;
    for (const NetBit bit : netlist->bitsAt(moduleOf(cell), of(cell), port))
        all.push_back(net(cell.instance, bit));
    return all;
}

PortDirection FlatNetlist::directionOf(const Cell& cell, const Netlist::Connection& connection) const
{
    if (connection.direction != PortDirection::unknown)
        return connection.direction;
    const std::string& port = netlist->names[connection.port];
    const bool out = port == "Y" || port == "Q" || port == "X" || port == "CO" || port == "RD_DATA";
    return typeOf(cell).starts_with('$') && out ? PortDirection::output : PortDirection::input;
}

namespace {

class Flattener {
public:
    explicit Flattener(const Netlist& netlist) : m_netlist(&netlist)
    {
        m_flat.netlist = &netlist;
        std::unordered_map<std::string_view, std::uint32_t> byName;
        for (std::uint32_t i = 0; i < netlist.modules.size(); ++i)
            byName.emplace(netlist.modules[i].name, i);
        for (const std::string& name : netlist.names) {
            const auto found = byName.find(name);
            const bool held = found != byName.end() && !netlist.modules[found->second].blackBox;
            m_moduleOfType.push_back(held ? found->second : kNone);
            m_flat.roles.push_back(found == byName.end() ? roleOf(name) : CellRole());
        }
        m_sizes.resize(netlist.modules.size());
    }

    FlatNetlist run(const std::optional<std::string>& wished) &&
    {
        const std::uint32_t top = topModule(wished);
        const Size size = sizeOf(top, 0);
        refuse(size.instances, kMostInstances, "instances of modules");
        refuse(size.cells, kMostFlatCells, "cells");
        refuse(size.bits, kMostFlatBits, "bits of nets");
        m_joined.resize(kConstants + static_cast<std::size_t>(size.bits));
        std::iota(m_joined.begin(), m_joined.end(), 0U);
        m_flat.instances.push_back({"", top, 0});
        m_bits = m_netlist->modules[top].bitCount;
        for (std::uint32_t i = 0; i < m_flat.instances.size(); ++i)
            spread(i);
        sortByPath();
        number();
        return std::move(m_flat);
    }

private:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;
    static constexpr std::uint32_t kConstants = 3; // nodes in front of the bits' own

    struct Size {
        double instances = 0.0; // 0: not known yet
        double cells = 0.0;
        double bits = 0.0;
        bool open = false; // being found: who meets it again has met a circle
    };

    const Netlist::Module& module(std::uint32_t index) const
    {
        return m_netlist->modules[index];
    }

    [[noreturn]] void fail(const std::string& message) const
    {
        throw Error(fmt::format("{}: {}", m_netlist->file, message));
    }

    std::uint32_t topModule(const std::optional<std::string>& wished) const
    {
        std::vector<std::string> names;
        std::vector<bool> held(m_netlist->modules.size());
        for (const Netlist::Module& one : m_netlist->modules) {
            names.push_back(one.name);
            for (const Netlist::Cell& cell : one.cells) {
                if (const std::uint32_t inner = m_moduleOfType[cell.type]; inner != kNone)
                    held[inner] = true;
            }
        }
        std::vector<std::uint32_t> marked;
        std::vector<std::uint32_t> free;
        for (std::uint32_t i = 0; i < names.size(); ++i) {
            if (wished && names[i] == *wished)
                return i;
            if (module(i).top)
                marked.push_back(i);
            if (!held[i] && !module(i).blackBox)
                free.push_back(i);
        }
        if (wished)
            fail(fmt::format("there is no module {}{}", abbreviated(*wished), suggestion(*wished, names)));
        const std::vector<std::uint32_t>& candidates = marked.empty() ? free : marked;
        if (candidates.size() == 1)
            return candidates.front();
        if (candidates.empty())
            fail("every module is held by another; name the one to begin with by --top");
        names.clear();
        for (const std::uint32_t i : std::span(candidates).first(std::min<std::size_t>(candidates.size(), 5)))
            names.push_back(abbreviated(module(i).name));
        fail(fmt::format("{} modules could be the top, {}; name it by --top", candidates.size(),
                         orList(names) + (candidates.size() > names.size() ? " among them" : "")));
    }

    // What a module makes with all that it holds.
    Size sizeOf(std::uint32_t index, std::size_t depth)
    {
        const Netlist::Module& one = module(index);
        if (m_sizes[index].open)
            fail(fmt::format("modules.{} holds itself", abbreviated(one.name)));
        if (depth > kDeepestInstances)
            fail(fmt::format("modules hold each other more than {} deep", kDeepestInstances));
        if (m_sizes[index].instances > 0.0)
            return m_sizes[index];
        m_sizes[index].open = true;
        Size sum{1.0, 0.0, static_cast<double>(one.bitCount)};
        for (const Netlist::Cell& cell : one.cells) {
            const std::uint32_t inner = m_moduleOfType[cell.type];
            const Size add = inner == kNone ? Size{0.0, 1.0, 0.0} : sizeOf(inner, depth + 1);
            sum.instances += add.instances;
            sum.cells += add.cells;
            sum.bits += add.bits;
        }
        m_sizes[index] = sum;
        return sum;
    }

    void refuse(double count, double most, const char* what) const
    {
        if (count > most)
            fail(fmt::format("makes {:.4g} {}, more than {:g}", count, what, most));
    }

    // The parts of a flattened or generated name are a hierarchy too.
    static std::string pathOf(const std::string& holder, const std::string& name)
    {
        std::string path = holder;
        for (std::string part : split(name, '.')) {
            std::replace(part.begin(), part.end(), '/', '_');
            if (!part.empty())
                path += (path.empty() ? "" : "/") + part;
        }
        return path;
    }

    void spread(std::uint32_t index)
    {
        const Netlist::Module& one = module(m_flat.instances[index].module);
        for (std::uint32_t i = 0; i < one.cells.size(); ++i) {
            const std::uint32_t inner = m_moduleOfType[one.cells[i].type];
            if (inner == kNone) {
                m_flat.cells.push_back({index, i});
                continue;
            }
            m_flat.instances.push_back({pathOf(m_flat.instances[index].path, one.cells[i].name), inner, m_bits});
            m_bits += module(inner).bitCount;
            connect(index, one.cells[i], m_flat.instances.back());
        }
    }

    void connect(std::uint32_t outer, const Netlist::Cell& cell, const FlatNetlist::Instance& instance)
    {
        const Netlist::Module& holder = module(m_flat.instances[outer].module);
        const Netlist::Module& inner = module(instance.module);
        std::unordered_map<std::string_view, const Netlist::Port*>& ports = m_ports[instance.module];
        for (const Netlist::Port& port : inner.ports)
            ports.emplace(port.name, &port);
        for (const Netlist::Connection& connection : holder.of(cell)) {
            const std::string& name = m_netlist->names[connection.port];
            const auto port = ports.find(name);
            if (port == ports.end()) {
                std::vector<std::string> known;
                for (const Netlist::Port& other : inner.ports)
                    known.push_back(other.name);
                throw Error(fmt::format("{}.connections.{}: {} has no such port{}", m_netlist->at(holder, cell),
                                        abbreviated(name), abbreviated(inner.name), suggestion(name, known)));
            }
            const auto outerBits = holder.at(connection.bits);
            const auto innerBits = inner.at(port->second->bits);
            for (std::size_t i = 0; i < std::min(outerBits.size(), innerBits.size()); ++i)
                join(node(m_flat.instances[outer], outerBits[i]), node(instance, innerBits[i]));
        }
    }

    static std::uint32_t node(const FlatNetlist::Instance& instance, NetBit bit)
    {
        return isConstant(bit) ? bit - kBit0 : kConstants + instance.firstBit + bit;
    }

    std::uint32_t root(std::uint32_t node)
    {
        while (m_joined[node] != node)
            node = m_joined[node] = m_joined[m_joined[node]];
        return node;
    }

    void join(std::uint32_t a, std::uint32_t b)
    {
        a = root(a);
        b = root(b);
        m_joined[std::max(a, b)] = std::min(a, b); // constants stay roots
    }

    // Instances come level by level; people read one behind what holds it.
    void sortByPath()
    {
        std::vector<std::uint32_t> order(m_flat.instances.size());
        std::iota(order.begin(), order.end(), 0U);
        std::stable_sort(order.begin() + 1, order.end(), [&](std::uint32_t a, std::uint32_t b) {
            return m_flat.instances[a].path < m_flat.instances[b].path;
        });
        std::vector<std::uint32_t> places(order.size());
        std::vector<FlatNetlist::Instance> sorted;
        for (std::uint32_t i = 0; i < order.size(); ++i) {
            places[order[i]] = i;
            sorted.push_back(std::move(m_flat.instances[order[i]]));
        }
        m_flat.instances = std::move(sorted);
        for (FlatNetlist::Cell& cell : m_flat.cells)
            cell.instance = places[cell.instance];
        std::stable_sort(m_flat.cells.begin(), m_flat.cells.end(),
                         [](const auto& a, const auto& b) { return a.instance < b.instance; });
    }

    void number()
    {
        std::vector<NetBit> numbers(m_joined.size(), kNone);
        for (std::uint32_t i = 0; i < kConstants; ++i)
            numbers[i] = kBit0 + root(i);
        for (std::uint32_t i = kConstants; i < m_joined.size(); ++i) {
            const std::uint32_t joined = root(i);
            if (numbers[joined] == kNone)
                numbers[joined] = m_flat.netCount++;
            m_flat.nets.push_back(numbers[joined]);
        }
    }

    const Netlist* m_netlist;
    FlatNetlist m_flat;
    std::vector<std::uint32_t> m_moduleOfType; // by names
    std::vector<Size> m_sizes;
    std::vector<std::uint32_t> m_joined; // constants, then the bits of all instances
    std::uint32_t m_bits = 0;
    std::unordered_map<std::uint32_t, std::unordered_map<std::string_view, const Netlist::Port*>> m_ports; // by module
};

} // namespace

FlatNetlist flattened(const Netlist& netlist, const std::optional<std::string>& top)
{
    return Flattener(netlist).run(top);
}

} // namespace zelm::host
