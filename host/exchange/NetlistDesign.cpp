#include "host/exchange/NetlistDesign.h"

#include "host/base/Error.h"
#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/base/Units.h"
#include "host/design/Format.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <deque>
#include <limits>
#include <map>
#include <set>
#include <tuple>
#include <unordered_map>
#include <unordered_set>

namespace zelm::host {

namespace {

constexpr int kLutInputs = 6;
constexpr std::uint64_t kLutMemoryBits = 64;
constexpr std::uint64_t kShiftsPerLut = 32;
constexpr std::uint64_t kBitsPerCarry = 8; // of an element with outputs B, D, F and H
constexpr std::uint64_t kLargeDepth = 4096;
constexpr std::uint64_t kLargeWidth = 72;
constexpr std::uint64_t kManyBlocks = 16; // from here on a deep memory is better in large ones
constexpr double kMostOfAnything = 1e6;   // of memories, of slices: beyond any device
constexpr std::size_t kLongestLabel = 140;

constexpr std::uint64_t roundedUp(std::uint64_t number, std::uint64_t by)
{
    return number / by + (number % by == 0 ? 0 : 1);
}

std::string jsonWord(const std::string& text)
{
    return compactJson(Json(text));
}

} // namespace

BlockMemories blockMemories(std::uint64_t depth, std::uint64_t width, bool eachPortBoth)
{
    struct Shape {
        const char* mode;
        std::uint64_t depth;
        int width;
        bool simple; // one port reads, the other writes
    };
    constexpr Shape shapes[] = {
        {"BLKM36SDP", 512, 72, true}, {"BLKM36", 1024, 36, false}, {"BLKM36", 2048, 18, false},
        {"BLKM36", 4096, 9, false},   {"BLKM36", 8192, 4, false},  {"BLKM36", 16384, 2, false},
        {"BLKM36", 32768, 1, false},
    };
    constexpr Shape halves[] = {
        {"BLKM18SDP", 512, 36, true}, {"BLKM18", 1024, 18, false}, {"BLKM18", 2048, 9, false},
        {"BLKM18", 4096, 4, false},   {"BLKM18", 8192, 2, false},  {"BLKM18", 16384, 1, false},
    };
    for (const Shape& half : halves) {
        if (depth <= half.depth && width <= static_cast<std::uint64_t>(half.width) && !(half.simple && eachPortBoth))
            return {half.mode, 1, 1, half.width};
    }
    BlockMemories best;
    for (const Shape& shape : shapes) {
        if (shape.simple && eachPortBoth)
            continue;
        const std::uint64_t deep = roundedUp(depth, shape.depth);
        const std::uint64_t count = deep * roundedUp(width, static_cast<std::uint64_t>(shape.width));
        if (best.count == 0 || count < best.count)
            best = {shape.mode, count, deep, shape.width};
    }
    return best;
}

std::uint64_t dspSlices(std::uint64_t a, std::uint64_t b, bool isSigned)
{
    const std::uint64_t wide = isSigned ? 27 : 26;
    const std::uint64_t narrow = isSigned ? 24 : 23;
    return std::min(roundedUp(a, wide) * roundedUp(b, narrow), roundedUp(b, wide) * roundedUp(a, narrow));
}

namespace {

using FlatCell = FlatNetlist::Cell;

// What drives a net. The words are those of Signal's DRIVER_TYPE.
enum class Driver : std::uint8_t { none, lut, flipFlop, carry, lutMemory, blockMemory, largeMemory, dsp, io, other };

struct DriverWords {
    const char* key;
    const char* name;
};
constexpr std::array<DriverWords, 10> kDrivers{{{"OTHER", "nothing"},
                                                {"LUT", "LUTs"},
                                                {"FF", "registers"},
                                                {"LOOKAHEAD", "carry"},
                                                {"LUTRAM", "LUT memories"},
                                                {"BRAM", "block memories"},
                                                {"PLAM", "large memories"},
                                                {"DSP", "multipliers"},
                                                {"IO", "inputs"},
                                                {"OTHER", "unmapped cells"}}};

// A memory as its cell tells it.
struct Memory {
    std::uint64_t depth = 0;
    std::uint64_t width = 0;
    std::size_t reads = 0;
    std::size_t writes = 0;
    bool clockedReads = false;
    NetBit readClock = kBitX;
    NetBit writeClock = kBitX;
    Driver kind = Driver::none; // what becomes of it; none: nothing
    std::string whyNot;
};

class Planner {
public:
    Planner(const FlatNetlist& netlist, const NetlistWishes& wishes) : m_netlist(&netlist), m_wishes(&wishes) {}

    NetlistPlan run() &&
    {
        m_plan.file = m_netlist->netlist->file;
        m_plan.top = m_netlist->top().name;
        m_plan.instances = m_netlist->instances.size();
        m_plan.cells = m_netlist->cells.size();
        readMemories();
        findClocks();
        nameClocks();
        findDrivers();
        findDomains();
        for (std::uint32_t i = 0; i < m_netlist->cells.size(); ++i)
            add(i);
        addSignals();
        addPorts();
        finish();
        return std::move(m_plan);
    }

private:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    // ---- Cells ----

    const FlatCell& cell(std::uint32_t index) const
    {
        return m_netlist->cells[index];
    }
    CellKind kindOf(std::uint32_t index) const
    {
        return m_netlist->roleOf(cell(index)).kind;
    }
    std::string placeOf(std::uint32_t index) const
    {
        return m_netlist->netlist->at(m_netlist->moduleOf(cell(index)), m_netlist->of(cell(index)));
    }
    std::uint64_t number(std::uint32_t index, std::string_view parameter) const
    {
        return m_netlist->netlist->number(m_netlist->moduleOf(cell(index)), m_netlist->of(cell(index)), parameter);
    }
    std::string_view parameter(std::uint32_t index, std::string_view name) const
    {
        return m_netlist->netlist->parameter(m_netlist->moduleOf(cell(index)), m_netlist->of(cell(index)), name);
    }
    NetBit firstAt(std::uint32_t index, std::string_view port) const
    {
        const std::vector<NetBit> nets = m_netlist->netsAt(cell(index), port);
        return nets.empty() ? kBitX : nets.front();
    }

    // Calls with each net at a cell, whether the cell drives it, and whether it is a clock there.
    template <typename Then>
    void eachPin(std::uint32_t index, const Then& then) const
    {
        const FlatCell& one = cell(index);
        const Netlist::Module& module = m_netlist->moduleOf(one);
        const CellRole& role = m_netlist->roleOf(one);
        for (const Netlist::Connection& connection : module.of(m_netlist->of(one))) {
            const std::string& port = m_netlist->netlist->names[connection.port];
            const bool drives = m_netlist->directionOf(one, connection) == PortDirection::output;
            const bool clocks =
                port == role.clock || (role.kind == CellKind::memory && (port == "RD_CLK" || port == "WR_CLK"));
            for (const NetBit bit : module.at(connection.bits)) {
                if (const NetBit net = m_netlist->net(one.instance, bit); !isConstant(net))
                    then(net, drives, clocks);
            }
        }
    }

    // ---- Memories ----

    void readMemories()
    {
        for (std::uint32_t i = 0; i < m_netlist->cells.size(); ++i) {
            if (kindOf(i) == CellKind::memory)
                m_memories.emplace(i, memoryOf(i));
        }
    }

    static bool alike(const std::vector<NetBit>& nets)
    {
        return std::adjacent_find(nets.begin(), nets.end(), std::not_equal_to<>()) == nets.end();
    }

    Memory memoryOf(std::uint32_t index) const
    {
        Memory memory;
        memory.depth = number(index, "SIZE");
        memory.width = number(index, "WIDTH");
        memory.reads = number(index, "RD_PORTS");
        memory.writes = number(index, "WR_PORTS");
        const std::string_view clocked = parameter(index, "RD_CLK_ENABLE");
        memory.clockedReads = memory.reads > 0 && clocked.find('1') != std::string_view::npos;
        const std::vector<NetBit> readClocks = m_netlist->netsAt(cell(index), "RD_CLK");
        const std::vector<NetBit> writeClocks = m_netlist->netsAt(cell(index), "WR_CLK");
        memory.writeClock = memory.writes > 0 && !writeClocks.empty() ? writeClocks.front() : kBitX;
        memory.readClock = memory.clockedReads && !readClocks.empty() ? readClocks.front() : memory.writeClock;
        if (memory.depth == 0 || memory.width == 0 || memory.reads == 0)
            memory.whyNot = "nothing reads it";
        else if (memory.clockedReads && clocked.find('0') != std::string_view::npos)
            memory.whyNot = "some of its reads have a clock, some not";
        else if (memory.writes > 2)
            memory.whyNot = fmt::format("{} ports write; memories have up to two", memory.writes);
        else if (memory.writes == 2 && (memory.reads > 2 || !memory.clockedReads))
            memory.whyNot = "two ports write, and more than two read or without a clock";
        else if (!alike(writeClocks) || !alike(readClocks))
            memory.whyNot = "its ports are on more than two clocks";
        else
            memory.kind = kindFor(memory);
        if (memory.kind != Driver::none && blocksOf(memory, memory.kind) > kMostOfAnything)
            throw Error(fmt::format("{}: {} words of {} bits are more than any device holds", placeOf(index),
                                    memory.depth, memory.width));
        return memory;
    }

    // What is shallow, or read without a clock, is in LUTs; what is deep in block memories, and much of it in large
    // ones.
    static Driver kindFor(const Memory& memory)
    {
        if (!memory.clockedReads)
            return memory.writes == 0 ? Driver::lut : Driver::lutMemory;
        if (memory.depth <= kLutMemoryBits && memory.writes == 1)
            return Driver::lutMemory;
        const bool large = memory.depth >= kLargeDepth && memory.readClock == memory.writeClock &&
                           blocksOf(memory, Driver::blockMemory) > static_cast<double>(kManyBlocks);
        return large ? Driver::largeMemory : Driver::blockMemory;
    }

    // A block memory has two ports: copies serve further ones.
    static std::uint64_t copiesOf(const Memory& memory)
    {
        return memory.writes == 0 ? roundedUp(memory.reads, 2) : memory.writes == 1 ? memory.reads : 1;
    }

    static double blocksOf(const Memory& memory, Driver kind)
    {
        const double bits = static_cast<double>(memory.depth) * static_cast<double>(memory.width);
        if (bits > 1e12) // counts of whole blocks could overflow
            return bits;
        std::uint64_t each = roundedUp(memory.depth, kLutMemoryBits) * memory.width * memory.reads;
        if (kind == Driver::blockMemory)
            each = blockMemories(memory.depth, memory.width, memory.writes == 2).count * copiesOf(memory);
        else if (kind == Driver::largeMemory)
            each = roundedUp(memory.depth, kLargeDepth) * roundedUp(memory.width, kLargeWidth) * copiesOf(memory);
        return static_cast<double>(each);
    }

    // ---- Clocks ----

    void takeClock(NetBit net)
    {
        if (isConstant(net) || !m_clockOfNet.try_emplace(net, m_plan.clocks.size()).second)
            return;
        m_plan.clocks.push_back({"", "", "", net});
    }

    // Registers and memories tell what is a clock. A latch's enable is none: it has no frequency of its own.
    void findClocks()
    {
        for (std::uint32_t i = 0; i < m_netlist->cells.size(); ++i) {
            const CellRole& role = m_netlist->roleOf(cell(i));
            if (role.kind == CellKind::flipFlop || role.kind == CellKind::shiftRegister)
                takeClock(firstAt(i, role.clock));
            const auto memory = m_memories.find(i);
            if (memory != m_memories.end() && memory->second.kind != Driver::none) {
                takeClock(memory->second.readClock);
                takeClock(memory->second.writeClock);
            }
        }
    }

    std::optional<std::size_t> clockOf(NetBit net) const
    {
        const auto found = m_clockOfNet.find(net);
        return found == m_clockOfNet.end() ? std::nullopt : std::optional(found->second);
    }

    // By the port or, first the top's, the net that a person named.
    void nameClocks()
    {
        for (const Netlist::Port& port : m_netlist->top().ports)
            nameClock(0, "", port.name, port.bits);
        for (std::uint32_t i = 0; i < m_netlist->instances.size(); ++i) {
            const FlatNetlist::Instance& instance = m_netlist->instances[i];
            for (const Netlist::Net& net : m_netlist->netlist->modules[instance.module].nets)
                nameClock(i, instance.path.empty() ? "" : instance.path + "/", net.name, net.bits);
        }
        std::set<std::string> names;
        std::set<std::string> parameters;
        for (NetlistPlan::Clock& clock : m_plan.clocks) {
            const bool number = clock.name.find_first_not_of("0123456789") == std::string::npos; // or nothing at all
            clock.name = unique(number ? "clock" + clock.name : label(clock.name), names);
            std::string word = "f_";
            for (const char c : clock.name)
                word += std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
            clock.parameter = unique(word, parameters, "_");
        }
        setFrequencies();
    }

    void nameClock(std::uint32_t instance, const std::string& before, const std::string& name, BitRange range)
    {
        const Netlist::Module& module = m_netlist->netlist->modules[m_netlist->instances[instance].module];
        const auto bits = module.at(range);
        for (std::size_t i = 0; i < bits.size(); ++i) {
            const auto clock = clockOf(m_netlist->net(instance, bits[i]));
            if (clock && m_plan.clocks[*clock].name.empty())
                m_plan.clocks[*clock].name = before + (bits.size() > 1 ? fmt::format("{}[{}]", name, i) : name);
        }
    }

    void setFrequencies()
    {
        std::vector<std::string> names;
        for (const NetlistPlan::Clock& clock : m_plan.clocks)
            names.push_back(clock.name);
        for (const std::string& wish : m_wishes->clocks) {
            const std::size_t cut = wish.find('=');
            const std::string name = wish.substr(0, cut);
            const std::string text = cut == std::string::npos ? "" : wish.substr(cut + 1);
            if (text.empty())
                throw Error(fmt::format("--clock {} is not of the form NAME=FREQUENCY: clk=200MHz", abbreviated(wish)));
            const auto written = writtenQuantity(text);
            const auto plain = plainNumber(text);
            if (!written && !plain)
                throw Error(fmt::format("--clock {}: {} is no frequency", abbreviated(wish), abbreviated(text)));
            const double megahertz = written ? inUnit(*written, "MHz") : *plain;
            if (!(megahertz >= 0.0) || megahertz > 1e6)
                throw Error(fmt::format("--clock {}: no clock runs at {} MHz", abbreviated(wish), megahertz));
            const auto found = std::find(names.begin(), names.end(), name);
            if (found == names.end())
                throw Error(fmt::format("--clock {}: {} has no clock of that name{}", abbreviated(wish), m_plan.file,
                                        names.empty() ? "; nothing in it has a clock"
                                                      : suggestion(name, names) + "; there is " + clocksText(names)));
            m_plan.clocks[static_cast<std::size_t>(found - names.begin())].frequency = written ? text : text + " MHz";
        }
        for (NetlistPlan::Clock& clock : m_plan.clocks) {
            if (!clock.frequency.empty())
                continue;
            clock.frequency = "200 MHz";
            m_plan.notes.push_back(fmt::format("clock {} is taken at 200 MHz: --clock {}=... tells its frequency",
                                               clock.name, clock.name));
        }
    }

    static std::string clocksText(std::vector<std::string> names)
    {
        constexpr std::size_t few = 8;
        const bool more = names.size() > few;
        names.resize(std::min(names.size(), few));
        for (std::string& name : names)
            name = abbreviated(name);
        return fmt::format("{}{}", fmt::join(names, ", "), more ? ", ..." : "");
    }

    // ---- Nets ----

    Driver driverKind(std::uint32_t index) const
    {
        switch (kindOf(index)) {
        case CellKind::lut:
            return Driver::lut;
        case CellKind::carry:
            return Driver::carry;
        case CellKind::flipFlop:
        case CellKind::latch:
        case CellKind::shiftRegister:
            return Driver::flipFlop;
        case CellKind::multiplier:
            return Driver::dsp;
        case CellKind::memory: {
            const Driver kind = m_memories.at(index).kind;
            return kind == Driver::none ? Driver::other : kind;
        }
        default:
            return Driver::other;
        }
    }

    // Who drives each net, and how many places it goes to. Clock pins are the clock network's.
    void findDrivers()
    {
        m_driver.assign(m_netlist->netCount, kNone);
        m_driverKind.assign(m_netlist->netCount, Driver::none);
        m_sinks.assign(m_netlist->netCount, 0);
        for (const Netlist::Port& port : m_netlist->top().ports) {
            for (const NetBit bit : m_netlist->top().at(port.bits)) {
                const NetBit net = m_netlist->net(0, bit);
                if (isConstant(net))
                    continue;
                if (port.direction == PortDirection::output)
                    ++m_sinks[net];
                else
                    m_driverKind[net] = Driver::io;
            }
        }
        for (std::uint32_t i = 0; i < m_netlist->cells.size(); ++i) {
            if (kindOf(i) == CellKind::nothing)
                continue;
            eachPin(i, [&](NetBit net, bool drives, bool clocks) {
                if (drives) {
                    m_driver[net] = i;
                    m_driverKind[net] = driverKind(i);
                } else if (!clocks) {
                    ++m_sinks[net];
                }
            });
        }
    }

    // ---- Clock domains ----

    std::optional<std::size_t> ownClock(std::uint32_t index) const
    {
        const CellRole& role = m_netlist->roleOf(cell(index));
        if (role.kind == CellKind::flipFlop || role.kind == CellKind::shiftRegister)
            return clockOf(firstAt(index, role.clock));
        const auto memory = m_memories.find(index);
        return memory == m_memories.end() ? std::nullopt : clockOf(memory->second.readClock);
    }

    // Logic belongs to the clock of the registers that it feeds, over as few cells as may be; where it feeds none, to
    // that of the registers which feed it.
    void findDomains()
    {
        m_domain.assign(m_netlist->cells.size(), std::nullopt);
        m_netDomain.assign(m_netlist->netCount, std::nullopt);
        std::deque<NetBit> next;
        for (std::uint32_t i = 0; i < m_netlist->cells.size(); ++i) {
            m_domain[i] = ownClock(i);
            if (m_domain[i])
                reachInputs(i, next);
        }
        for (; !next.empty(); next.pop_front()) {
            const std::uint32_t driver = m_driver[next.front()];
            if (driver == kNone || m_domain[driver])
                continue;
            m_domain[driver] = m_netDomain[next.front()];
            reachInputs(driver, next);
        }
        spreadForwards();
        for (std::optional<std::size_t>& domain : m_domain) {
            if (!domain && m_plan.clocks.size() == 1)
                domain = 0;
        }
    }

    void reachInputs(std::uint32_t index, std::deque<NetBit>& next)
    {
        eachPin(index, [&](NetBit net, bool drives, bool clocks) {
            if (drives || clocks || m_netDomain[net])
                return;
            m_netDomain[net] = m_domain[index];
            next.push_back(net);
        });
    }

    void spreadForwards()
    {
        std::unordered_map<NetBit, std::vector<std::uint32_t>> readers; // of cells without a clock
        for (std::uint32_t i = 0; i < m_domain.size(); ++i) {
            if (!m_domain[i])
                eachPin(i, [&](NetBit net, bool drives, bool) {
                    if (!drives)
                        readers[net].push_back(i);
                });
        }
        std::deque<std::uint32_t> next;
        for (std::uint32_t i = 0; i < m_domain.size(); ++i) {
            if (m_domain[i])
                next.push_back(i);
        }
        for (; !next.empty(); next.pop_front()) {
            const std::uint32_t from = next.front();
            eachPin(from, [&](NetBit net, bool drives, bool) {
                const auto found = drives ? readers.find(net) : readers.end();
                if (found == readers.end())
                    return;
                for (const std::uint32_t reader : found->second) {
                    if (!m_domain[reader]) {
                        m_domain[reader] = m_domain[from];
                        next.push_back(reader);
                    }
                }
                readers.erase(found);
            });
        }
    }

    // ---- Groups ----

    enum class Kind { nets, luts, carries, registers, latches, shifts, lutMemories, memories, multipliers };

    // Groups stand by instance, then by kind. What tells two of a kind apart is their size, their driver, or their
    // name.
    struct Key {
        std::string in;
        Kind kind;
        int detail;
        std::size_t clock; // behind the last: none
        std::string name;  // of a memory

        bool operator<(const Key& other) const
        {
            return std::tie(in, kind, detail, clock, name) <
                   std::tie(other.in, other.kind, other.detail, other.clock, other.name);
        }
    };

    struct Sum {
        std::uint64_t count = 0;
        double sinks = 0.0;
        const Memory* memory = nullptr;
        std::uint32_t cell = 0;
        std::vector<NetBit> outputs{};
        std::vector<NetBit> a{};
        std::vector<NetBit> b{};
    };

    std::string inOf(std::uint32_t instance) const
    {
        std::string in = m_netlist->instances[instance].path;
        std::size_t end = 0;
        for (std::size_t level = 0; m_wishes->depth > 0 && end != std::string::npos; ++level) {
            end = in.find('/', end == 0 ? 0 : end + 1);
            if (level + 1 == m_wishes->depth)
                in.resize(std::min(end, in.size()));
        }
        return label(in);
    }

    Sum& sum(std::uint32_t instance, Kind kind, int detail, std::optional<std::size_t> clock,
             const std::string& name = "")
    {
        if (m_inOfInstance.empty()) {
            for (std::uint32_t i = 0; i < m_netlist->instances.size(); ++i)
                m_inOfInstance.push_back(inOf(i));
        }
        return m_sums[{m_inOfInstance[instance], kind, detail, clock.value_or(m_plan.clocks.size()), name}];
    }

    void count(std::uint32_t index, const std::string& fate, const std::string& whyNot = "")
    {
        const std::string& type = m_netlist->typeOf(cell(index));
        ++(whyNot.empty() ? m_mapped : m_unmapped)[{type, whyNot.empty() ? fate : whyNot}];
    }

    static void append(std::vector<NetBit>& to, const std::vector<NetBit>& nets)
    {
        std::copy_if(nets.begin(), nets.end(), std::back_inserter(to), [](NetBit net) { return !isConstant(net); });
    }

    void add(std::uint32_t index)
    {
        switch (kindOf(index)) {
        case CellKind::lut:
            return addLut(index);
        case CellKind::carry:
            return addCarry(index);
        case CellKind::flipFlop:
        case CellKind::latch:
            return addRegister(index);
        case CellKind::shiftRegister:
            return addShiftRegister(index);
        case CellKind::memory:
            return addMemory(index);
        case CellKind::multiplier:
            return addMultiplier(index);
        case CellKind::nothing:
            return count(index, "no hardware");
        case CellKind::unknown:
            return count(index, "", whyUnknown(index));
        }
    }

    std::string whyUnknown(std::uint32_t index) const
    {
        const std::string& type = m_netlist->typeOf(cell(index));
        if (type == "$macc")
            return "sums of products: alumacc left out of the synthesis keeps $mul";
        if (type.starts_with("$_"))
            return "a gate: abc -lut 6 makes LUTs of it";
        if (type.starts_with("$memrd") || type.starts_with("$memwr") || type.starts_with("$meminit"))
            return "a port of a memory: the pass memory collects them";
        if (type.starts_with('$'))
            return "an operator: techmap and abc -lut 6 make LUTs of it";
        return "a black box: the netlist doesn't tell its content";
    }

    void addLut(std::uint32_t index)
    {
        const std::uint64_t width = number(index, "WIDTH");
        const std::vector<NetBit> inputs = m_netlist->netsAt(cell(index), "A");
        if (width != inputs.size())
            throw Error(fmt::format("{}: WIDTH is {}, and A has {} bits", placeOf(index), width, inputs.size()));
        if (width == 0 || width > kLutInputs)
            return count(index, "", fmt::format("of {} inputs: LUTs have 1 to {}", width, kLutInputs));
        const int size = static_cast<int>(width);
        Sum& luts_ = sum(cell(index).instance, Kind::luts, size, m_domain[index]);
        ++luts_.count;
        append(luts_.outputs, m_netlist->netsAt(cell(index), "Y"));
        count(index, fmt::format("LUTs of {} input{}", size, size == 1 ? "" : "s"));
    }

    void addCarry(std::uint32_t index)
    {
        const char* output = m_netlist->typeOf(cell(index)) == "$alu" ? "Y" : "CO";
        const std::vector<NetBit> outputs = m_netlist->netsAt(cell(index), output);
        Sum& carries_ = sum(cell(index).instance, Kind::carries, 0, m_domain[index]);
        carries_.count += roundedUp(outputs.size(), kBitsPerCarry);
        append(carries_.outputs, outputs);
        Sum& luts_ = sum(cell(index).instance, Kind::luts, 2, m_domain[index]);
        luts_.count += outputs.size();
        append(luts_.outputs, outputs);
        count(index, fmt::format("carry elements, one for {} bits, and a LUT of 2 inputs for each bit", kBitsPerCarry));
    }

    void addRegister(std::uint32_t index)
    {
        const CellRole& role = m_netlist->roleOf(cell(index));
        const bool latch = role.kind == CellKind::latch;
        if (!latch && isConstant(firstAt(index, role.clock)))
            return count(index, "", "its clock is constant");
        const std::vector<NetBit> outputs = m_netlist->netsAt(cell(index), "Q");
        Sum& registers_ = sum(cell(index).instance, latch ? Kind::latches : Kind::registers, 0, m_domain[index]);
        registers_.count += outputs.size();
        append(registers_.outputs, outputs);
        count(index, fmt::format("{}: {}", latch ? "latches" : "registers", role.control));
    }

    void addShiftRegister(std::uint32_t index)
    {
        const std::uint64_t depth = number(index, "DEPTH");
        const std::vector<NetBit> outputs = m_netlist->netsAt(cell(index), "Q");
        if (isConstant(firstAt(index, "C")))
            return count(index, "", "its clock is constant");
        if (static_cast<double>(depth) > kMostOfAnything)
            throw Error(fmt::format("{}: a shift register of {} stages", placeOf(index), depth));
        Sum& shifts_ = sum(cell(index).instance, Kind::shifts, 0, m_domain[index]);
        shifts_.count += roundedUp(depth, kShiftsPerLut) * outputs.size();
        append(shifts_.outputs, outputs);
        count(index, fmt::format("shift registers, a LUT for {} stages", kShiftsPerLut));
    }

    std::string shapeOf(const Memory& memory) const
    {
        return fmt::format("{} x {} bits", memory.depth, memory.width);
    }

    void addMemory(std::uint32_t index)
    {
        const Memory& memory = m_memories.at(index);
        if (memory.kind == Driver::none)
            return count(index, "", fmt::format("{}: {}", shapeOf(memory), memory.whyNot));
        const auto blocks = static_cast<std::uint64_t>(blocksOf(memory, memory.kind));
        const std::uint32_t instance = cell(index).instance;
        const std::string name = label(m_netlist->of(cell(index)).name);
        const bool inLuts = memory.kind == Driver::lut || memory.kind == Driver::lutMemory;
        Sum& memory_ = memory.kind == Driver::lut ? sum(instance, Kind::luts, kLutInputs, m_domain[index])
                       : inLuts ? sum(instance, Kind::lutMemories, 0, clockOf(memory.writeClock), name)
                                : sum(instance, Kind::memories, 0, clockOf(memory.readClock), name);
        memory_.count += blocks;
        memory_.memory = &memory;
        memory_.cell = index;
        append(memory_.outputs, m_netlist->netsAt(cell(index), "RD_DATA"));
        append(memory_.a, m_netlist->netsAt(cell(index), "RD_DATA"));
        append(memory_.b, m_netlist->netsAt(cell(index), "WR_DATA"));
        if (inLuts && memory.clockedReads) {
            Sum& registers_ = sum(instance, Kind::registers, 0, clockOf(memory.readClock));
            registers_.count += memory.width * memory.reads;
            append(registers_.outputs, m_netlist->netsAt(cell(index), "RD_DATA"));
        }
        count(index, fmt::format("{}: {} {}{}", shapeOf(memory), blocks, kindWords(memory.kind, blocks),
                                 inLuts && memory.clockedReads ? " and registers behind it" : ""));
    }

    static std::string kindWords(Driver kind, std::uint64_t count)
    {
        const std::string words = kind == Driver::blockMemory   ? "block memor"
                                  : kind == Driver::largeMemory ? "large memor"
                                  : kind == Driver::lutMemory   ? "LUT memor"
                                                                : "";
        return words.empty() ? "LUTs" : words + (count == 1 ? "y" : "ies");
    }

    void addMultiplier(std::uint32_t index)
    {
        const std::vector<NetBit> a = m_netlist->netsAt(cell(index), "A");
        const std::vector<NetBit> b = m_netlist->netsAt(cell(index), "B");
        const bool isSigned =
            parameter(index, "A_SIGNED").ends_with('1') && parameter(index, "B_SIGNED").ends_with('1');
        if (a.empty() || b.empty())
            return count(index, "", "a multiplier without A or B");
        const std::uint64_t slices = dspSlices(a.size(), b.size(), isSigned);
        if (static_cast<double>(slices) > kMostOfAnything)
            throw Error(fmt::format("{}: {} x {} bits are more than any device multiplies", placeOf(index), a.size(),
                                    b.size()));
        Sum& multipliers_ = sum(cell(index).instance, Kind::multipliers, 0, m_domain[index]);
        multipliers_.count += slices;
        append(multipliers_.outputs, m_netlist->netsAt(cell(index), "Y"));
        append(multipliers_.a, a);
        append(multipliers_.b, b);
        count(index, fmt::format("{} x {} bits: {} DSP slice{}", a.size(), b.size(), slices, slices == 1 ? "" : "s"));
    }

    // A net counts where its driver stands; one that goes nowhere, and a clock, is no wire.
    void addSignals()
    {
        for (NetBit net = 0; net < m_netlist->netCount; ++net) {
            const Driver kind = m_driverKind[net];
            if (kind == Driver::none || m_sinks[net] == 0 || clockOf(net))
                continue;
            const std::uint32_t driver = m_driver[net];
            const std::optional<std::size_t> clock = driver == kNone ? inputDomain(net) : m_domain[driver];
            Sum& nets_ = sum(driver == kNone ? 0 : cell(driver).instance, Kind::nets, static_cast<int>(kind), clock);
            ++nets_.count;
            nets_.sinks += m_sinks[net];
            nets_.outputs.push_back(net);
        }
    }

    std::optional<std::size_t> inputDomain(NetBit net) const
    {
        if (m_netDomain[net])
            return m_netDomain[net];
        return m_plan.clocks.size() == 1 ? std::optional<std::size_t>(0) : std::nullopt;
    }

    void addPorts()
    {
        for (const Netlist::Port& port : m_netlist->top().ports) {
            const char* way = port.direction == PortDirection::input    ? "input"
                              : port.direction == PortDirection::output ? "output"
                                                                        : "inout";
            m_plan.ports.push_back({port.name, port.bits.count, way});
        }
    }

    // ---- The plan ----

    static std::string label(const std::string& name)
    {
        std::string valid = validUtf8(name);
        if (valid.size() <= kLongestLabel)
            return valid;
        const std::size_t half = kLongestLabel / 2;
        return validUtf8(valid.substr(0, half) + "..." + valid.substr(valid.size() - half));
    }

    static std::string unique(const std::string& name, std::set<std::string>& names, const char* before = " ")
    {
        std::string one = name;
        for (int i = 2; !names.insert(one).second; ++i)
            one = fmt::format("{}{}{}", name, before, i);
        return one;
    }

    static std::string whatOf(const Key& key, const Sum& sum)
    {
        switch (key.kind) {
        case Kind::nets:
            return fmt::format("nets from {}", kDrivers[static_cast<std::size_t>(key.detail)].name);
        case Kind::luts:
            return fmt::format("LUTs of {} input{}", key.detail, key.detail == 1 ? "" : "s");
        case Kind::carries:
            return "carry";
        case Kind::registers:
            return "registers";
        case Kind::latches:
            return "latches";
        case Kind::shifts:
            return "shift registers";
        case Kind::multipliers:
            return "multipliers";
        default:
            return fmt::format("memory {} of {} x {} bits", key.name, sum.memory->depth, sum.memory->width);
        }
    }

    void finish()
    {
        std::map<std::tuple<std::string, Kind, int, std::string>, int> clocksOf;
        for (const auto& [key, sum] : m_sums)
            ++clocksOf[{key.in, key.kind, key.detail, key.name}];
        std::set<std::string> names;
        for (const NetlistPlan::Clock& clock : m_plan.clocks)
            names.insert(clock.name);
        for (const auto& [key, sum] : m_sums) {
            NetlistPlan::Group group;
            if (key.clock < m_plan.clocks.size())
                group.clock = key.clock;
            std::string in = m_wishes->in;
            in += (in.empty() || key.in.empty() ? "" : "/") + key.in;
            group.in = validUtf8(in);
            std::string name = label(key.in.empty() ? m_plan.top : key.in) + " " + whatOf(key, sum);
            if (clocksOf[{key.in, key.kind, key.detail, key.name}] > 1)
                name += group.clock ? " on " + abbreviated(m_plan.clocks[key.clock].name, 30) : " without a clock";
            group.name = unique(name, names);
            describe(key, sum, group);
            m_plan.groups.push_back(std::move(group));
        }
        for (const auto& [what, number] : m_mapped)
            m_plan.mapped.push_back({what.first, number, what.second});
        for (const auto& [what, number] : m_unmapped)
            m_plan.unmapped.push_back({what.first, number, what.second});
        if (m_plan.clocks.empty())
            m_plan.notes.emplace_back("nothing in it has a clock: its groups run at their own CLOCK_FREQ, 200 MHz");
    }

    static void set(NetlistPlan::Group& group, const std::string& cell, const std::string& value)
    {
        group.inputs.emplace_back(cell, value);
    }

    static void rate(NetlistPlan::Group& group, const std::string& cell, std::vector<NetBit> all)
    {
        group.rates.push_back({cell, std::move(all)});
    }

    void describe(const Key& key, const Sum& sum, NetlistPlan::Group& group) const
    {
        const std::string number = std::to_string(sum.count);
        if (key.kind == Kind::nets) {
            group.block = "Signal";
            set(group, "SIGNAL_COUNT", number);
            set(group, "ROUTING_COMPLEXITY", complexity(sum.sinks / static_cast<double>(sum.count)));
            set(group, "DRIVER_TYPE", jsonWord(kDrivers[static_cast<std::size_t>(key.detail)].key));
            return rate(group, "TOGGLE_RATE", sum.outputs);
        }
        if (key.kind == Kind::multipliers) {
            group.block = "DspInt24";
            set(group, "NUM_DSP", number);
            set(group, "MULT_USED", "\"YES\"");
            rate(group, "A_TR", sum.a);
            rate(group, "B_TR", sum.b);
            return rate(group, "P_OUTPUT_TR", sum.outputs);
        }
        if (key.kind == Kind::memories)
            return sum.memory->kind == Driver::largeMemory ? describeLarge(sum, group) : describeBlock(sum, group);
        constexpr std::array<const char*, 7> types{"",          "LUT_LOGIC", "LOOKAHEAD", "REG_FF",
                                                   "REG_LATCH", "LUT_SRL",   "LUT_DRAM"};
        group.block = "CleLogic";
        set(group, "INSTANCE_COUNT", number);
        set(group, "INSTANCE_TYPE", jsonWord(types[static_cast<std::size_t>(key.kind)]));
        for (int pin = 1; key.kind == Kind::luts && pin <= kLutInputs - key.detail; ++pin)
            set(group, fmt::format("A{}_SIG_RATE", pin), "0"); // not in use: those next to the output are
        rate(group, "TOGGLE_RATE", sum.outputs);
    }

    // A driver's own node and two for each place that the net goes to: 7 nodes, a complexity of 9, at the usual three.
    static std::string complexity(double fanOut)
    {
        const double nodes = 1.0 + 2.0 * fanOut;
        return fmt::format("{:.1f}", std::min(10.0 * std::log10(nodes + 1.0), 40.0));
    }

    // What is constant is known: a read that is never turned off.
    static bool always(const std::vector<NetBit>& enables)
    {
        return !enables.empty() && std::all_of(enables.begin(), enables.end(), [](NetBit bit) { return bit == kBit1; });
    }

    void describeBlock(const Sum& sum, NetlistPlan::Group& group) const
    {
        const Memory& memory = *sum.memory;
        const BlockMemories blocks = blockMemories(memory.depth, memory.width, memory.writes == 2);
        const bool simple = blocks.mode.find("SDP") != std::string::npos;
        group.block = "Bram";
        set(group, "NUM_BRAMS", std::to_string(sum.count));
        set(group, "CASCADE_GROUP_SIZE", std::to_string(blocks.deep));
        set(group, "MODE", jsonWord(blocks.mode));
        const int width = static_cast<int>(std::min<std::uint64_t>(memory.width, static_cast<unsigned>(blocks.width)));
        const int bits = simple ? blocks.width : width;
        set(group, "PORT_A_BIT_WIDTH", std::to_string(bits));
        set(group, "PORT_B_BIT_WIDTH", std::to_string(bits));
        const std::string reads = always(m_netlist->netsAt(cell(sum.cell), "RD_EN")) ? "1" : "0.25";
        if (memory.writes == 2) { // each port reads and writes, at the cells' own shares
            rate(group, "TOGGLE_RATE_A", sum.a);
            return rate(group, "TOGGLE_RATE_B", sum.a);
        }
        const bool second = memory.writes > 0 || memory.reads > 1;
        set(group, "PORT_A_ENABLE_RATE", reads);
        set(group, "PORT_A_WRITE_ENABLE", "0");
        set(group, "PORT_B_ENABLE_RATE", memory.writes > 0 ? "0.125" : second ? reads : "0");
        set(group, "PORT_B_WRITE_ENABLE", memory.writes > 0 ? "0.125" : "0");
        if (memory.writes > 0 && memory.writeClock != memory.readClock) {
            if (const auto clock = clockOf(memory.writeClock))
                set(group, "PORT_B_CLOCK", jsonWord("= " + m_plan.clocks[*clock].parameter));
        }
        rate(group, "TOGGLE_RATE_A", sum.a);
        rate(group, "TOGGLE_RATE_B", memory.writes > 0 ? sum.b : sum.a);
    }

    void describeLarge(const Sum& sum, NetlistPlan::Group& group) const
    {
        const Memory& memory = *sum.memory;
        const std::string width = std::to_string(std::min(memory.width, kLargeWidth));
        group.block = "Plam";
        set(group, "NUM_PLAMS", std::to_string(sum.count));
        set(group, "CASCADE_GROUP_SIZE", std::to_string(roundedUp(memory.depth, kLargeDepth)));
        set(group, "DATA_WIDTH_A", width);
        set(group, "DATA_WIDTH_B", width);
        set(group, "ENABLE_RATE_A", always(m_netlist->netsAt(cell(sum.cell), "RD_EN")) ? "1" : "0.25");
        set(group, "WRITE_ENABLE_A", memory.writes == 2 ? "0.125" : "0");
        set(group, "ENABLE_RATE_B", memory.writes > 0 ? "0.125" : "0");
        set(group, "WRITE_ENABLE_B", memory.writes > 0 ? "0.125" : "0");
        rate(group, "OUTPUT_TOGGLE_RATE", sum.a);
        rate(group, "INPUT_TOGGLE_RATE", sum.b);
    }

    const FlatNetlist* m_netlist;
    const NetlistWishes* m_wishes;
    NetlistPlan m_plan;
    std::map<std::uint32_t, Memory> m_memories; // by cell
    std::unordered_map<NetBit, std::size_t> m_clockOfNet;
    std::vector<std::uint32_t> m_driver; // by net
    std::vector<Driver> m_driverKind;
    std::vector<std::uint32_t> m_sinks;
    std::vector<std::optional<std::size_t>> m_domain; // by cell
    std::vector<std::optional<std::size_t>> m_netDomain;
    std::vector<std::string> m_inOfInstance;
    std::map<Key, Sum> m_sums;
    std::map<std::pair<std::string, std::string>, std::size_t> m_mapped;
    std::map<std::pair<std::string, std::string>, std::size_t> m_unmapped;
};

// The first of them, and how many more there are.
std::string firstOf(const std::vector<std::string>& parts, const char* between)
{
    constexpr std::size_t most = 100;
    const auto few = std::span(parts).first(std::min(parts.size(), most));
    return fmt::format("{}{}", fmt::join(few, between),
                       parts.size() > most ? fmt::format("{}{} more", between, parts.size() - most) : "");
}

// What a design's description tells of what isn't in its groups.
std::string unmappedText(const NetlistPlan& plan)
{
    std::vector<std::string> cells;
    for (const NetlistPlan::Counted& counted : plan.unmapped)
        cells.push_back(fmt::format("{} {} ({})", counted.count, abbreviated(counted.what), counted.fate));
    std::vector<std::string> ports;
    for (const NetlistPlan::Counted& port : plan.ports)
        ports.push_back(
            fmt::format("{}{}", abbreviated(port.what), port.count == 1 ? "" : fmt::format("[{}]", port.count)));
    return (cells.empty() ? "" : fmt::format(" In no group: {}.", firstOf(cells, "; "))) +
           (ports.empty() ? ""
                          : fmt::format(" Pads, which need an I/O standard, are in none: {}.", firstOf(ports, ", ")));
}

std::string groupText(const NetlistPlan& plan, const NetlistPlan::Group& group)
{
    std::string inputs;
    for (const auto& [cell, value] : group.inputs)
        inputs += fmt::format("{}{}: {}", inputs.empty() ? "" : ", ", jsonWord(cell), value);
    return fmt::format(R"({{"block": {}, "name": {}{}{}, "inputs": {{{}}}}})", jsonWord(group.block),
                       jsonWord(group.name), group.in.empty() ? "" : ", \"in\": " + jsonWord(group.in),
                       group.clock ? ", \"clock\": " + jsonWord(plan.clocks[*group.clock].name) : "", inputs);
}

} // namespace

NetlistPlan plannedGroups(const FlatNetlist& netlist, const NetlistWishes& wishes)
{
    return Planner(netlist, wishes).run();
}

std::string netlistDesign(const NetlistPlan& plan, const NetlistWishes& wishes)
{
    std::vector<std::string> parameters;
    std::vector<std::string> groups;
    for (const NetlistPlan::Clock& clock : plan.clocks) {
        parameters.push_back(fmt::format("{}: {}", jsonWord(clock.parameter), jsonWord(clock.frequency)));
        groups.push_back(
            fmt::format(R"({{"block": "Clock", "name": {}{}, "inputs": {{"CLOCK_FREQ": {}, "BUF_TYPE": "GLOBAL"}}}})",
                        jsonWord(clock.name), wishes.in.empty() ? "" : ", \"in\": " + jsonWord(wishes.in),
                        jsonWord("= " + clock.parameter)));
    }
    for (const NetlistPlan::Group& group : plan.groups)
        groups.push_back(groupText(plan, group));
    const std::string description =
        fmt::format("Imported from {}: {} cells in {} instance{} of modules.{}", plan.file, plan.cells, plan.instances,
                    plan.instances == 1 ? "" : "s", unmappedText(plan));
    std::string text = fmt::format("{{\"name\": {}, \"description\": {}", jsonWord(validUtf8(plan.top)),
                                   jsonWord(validUtf8(description)));
    if (!parameters.empty())
        text += fmt::format(",\n\"parameters\": {{{}}}", fmt::join(parameters, ", "));
    if (wishes.part)
        text += fmt::format(",\n\"device\": {{\"part\": {}}}", jsonWord(*wishes.part));
    text += fmt::format(",\n\"groups\": [\n{}\n]}}\n", fmt::join(groups, ",\n"));
    return formattedDesign(text, plan.file);
}

} // namespace zelm::host
