#include "host/exchange/Netlist.h"

#include "host/base/Error.h"
#include "host/base/Files.h"
#include "host/base/Json.h"
#include "host/base/Text.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace zelm::host {

namespace {

// What a file of kMostFileBytes could hold and no netlist does: each of them takes more memory than text.
constexpr std::size_t kMostCells = 4'000'000;
constexpr std::size_t kMostNames = 1'000'000;
constexpr std::size_t kDeepestNetlist = 64;
constexpr std::size_t kLongestParameter = 512; // texts of memories' content are longer, and nobody asks for them
constexpr std::size_t kMostParameterDigits = 31;

// Reads a netlist from the parser's events, without the whole as a tree. The members' names are the parser's.
class NetlistReader {
public:
    using number_integer_t = Json::number_integer_t;
    using number_unsigned_t = Json::number_unsigned_t;
    using number_float_t = Json::number_float_t;
    using string_t = Json::string_t;
    using binary_t = Json::binary_t;

    NetlistReader(const std::string& file, const std::string& text) : m_text(&text)
    {
        m_netlist.file = file;
    }

    Netlist result() &&
    {
        return std::move(m_netlist);
    }

    bool null() // NOLINT(readability-identifier-naming)
    {
        return scalar("null");
    }
    bool boolean(bool value)
    {
        return scalar(value ? "true" : "false");
    }
    bool number_integer(number_integer_t value) // NOLINT(readability-identifier-naming)
    {
        return scalar(std::to_string(value));
    }
    bool number_unsigned(number_unsigned_t value) // NOLINT(readability-identifier-naming)
    {
        if (m_place == Place::bits && m_lists == 1 && value < kBit0)
            return bit(static_cast<NetBit>(value));
        return scalar(isParameter() ? fmt::format("{:b}", value) : std::to_string(value));
    }
    bool number_float(number_float_t, const string_t& text) // NOLINT(readability-identifier-naming)
    {
        return scalar(text);
    }
    bool string(string_t& value)
    {
        if (m_place == Place::bits && m_lists == 1) {
            if (value == "0" || value == "1")
                return bit(value == "0" ? kBit0 : kBit1);
            if (value == "x" || value == "z")
                return bit(kBitX);
        }
        return scalar(value, true);
    }
    bool binary(binary_t&)
    {
        return false; // not in texts
    }
    bool start_object(std::size_t) // NOLINT(readability-identifier-naming)
    {
        if (m_place == Place::bits || m_place == Place::word)
            fail(fmt::format("an object, expected {}", m_place == Place::bits ? "a list of bits" : "a word"));
        if (m_keys.size() == kDeepestNetlist)
            fail(fmt::format("objects stand more than {} deep in each other", kDeepestNetlist));
        if (m_lists == 0)
            opened();
        m_keys.emplace_back();
        m_listsBefore.push_back(std::exchange(m_lists, 0));
        return true;
    }
    bool end_object() // NOLINT(readability-identifier-naming)
    {
        m_keys.pop_back();
        m_lists = m_listsBefore.back();
        m_listsBefore.pop_back();
        if (m_lists == 0)
            closed();
        m_place = Place::other;
        return true;
    }
    bool start_array(std::size_t) // NOLINT(readability-identifier-naming)
    {
        if (m_keys.empty())
            fail("a list, expected an object with modules");
        if (m_place == Place::object || m_place == Place::word || (m_place == Place::bits && m_lists > 0))
            fail(fmt::format("a list, expected {}", expected()));
        if (++m_lists > kDeepestNetlist)
            fail(fmt::format("lists stand more than {} deep in each other", kDeepestNetlist));
        if (m_place == Place::bits)
            m_range = {static_cast<std::uint32_t>(m_module.bits.size()), 0};
        return true;
    }
    bool end_array() // NOLINT(readability-identifier-naming)
    {
        if (--m_lists == 0 && m_place == Place::bits)
            gathered();
        return true;
    }
    bool key(string_t& name)
    {
        m_keys.back() = std::move(name);
        m_place = placeHere();
        return true;
    }
    bool parse_error(std::size_t byte, const std::string&, // NOLINT(readability-identifier-naming)
                     const nlohmann::detail::exception& error)
    {
        const std::string_view before = std::string_view(*m_text).substr(0, byte == 0 ? 0 : byte - 1);
        const auto line = std::count(before.begin(), before.end(), '\n') + 1;
        std::string_view what = error.what();
        what.remove_prefix(std::min(what.size(), what.find(": ") + 2));
        throw Error(fmt::format("{}:{}:{}: {}", m_netlist.file, line, before.size() - (before.rfind('\n') + 1) + 1,
                                abbreviated(what, 200)));
    }

private:
    // What may stand where the parser is.
    enum class Place { other, object, bits, word };

    Place placeHere() const
    {
        const std::size_t depth = m_keys.size();
        if (m_keys[0] != "modules")
            return Place::other;
        if (depth <= 2)
            return Place::object;
        const std::string& section = m_keys[2];
        const bool cells = section == "cells";
        if (section != "ports" && !cells && section != "netnames")
            return section == "attributes" && depth == 3 ? Place::object : Place::other;
        if (depth <= 4)
            return Place::object;
        const std::string& field = m_keys[4];
        if (depth == 5)
            return field == "bits" && !cells                                                    ? Place::bits
                   : (field == "direction" && section == "ports") || (field == "type" && cells) ? Place::word
                   : cells && (field == "connections" || field == "parameters" || field == "port_directions")
                       ? Place::object
                       : Place::other;
        if (depth == 6 && cells)
            return field == "connections" ? Place::bits : field == "port_directions" ? Place::word : Place::other;
        return Place::other;
    }

    bool isParameter() const
    {
        return m_keys.size() == 6 && m_keys[2] == "cells" && m_keys[4] == "parameters";
    }

    const char* expected() const
    {
        switch (m_place) {
        case Place::bits:
            return m_lists == 0 ? "a list of bits" : "a bit: a number from 0 on, or \"0\", \"1\", \"x\" or \"z\"";
        case Place::word:
            return "a word";
        default:
            return "an object";
        }
    }

    [[noreturn]] void fail(const std::string& message) const
    {
        std::string path;
        for (const std::string& part : m_keys)
            path += (path.empty() || part.empty() ? "" : ".") + part;
        throw Error(
            fmt::format("{}: {}{}{}", m_netlist.file, abbreviated(path, 200), path.empty() ? "" : ": ", message));
    }

    bool scalar(const std::string& text, bool isText = false)
    {
        if (m_keys.empty())
            fail(fmt::format("{}, expected an object with modules", abbreviated(text)));
        const bool wordOrOther = m_place == Place::other || (m_place == Place::word && isText);
        if (!wordOrOther)
            fail(fmt::format("{}, expected {}", isText ? quoted(Json(text)) : abbreviated(text), expected()));
        if (m_lists > 0)
            return true;
        const std::size_t depth = m_keys.size();
        if (m_keys[0] == "modules" && depth == 4 && m_keys[2] == "attributes")
            attribute(text);
        else if (m_keys[0] == "modules" && depth == 5)
            word(text);
        else if (m_keys[0] == "modules" && depth == 6 && m_keys[2] == "cells")
            wordOfCell(text);
        return true;
    }

    void attribute(const std::string& text)
    {
        const bool on = text.find_first_not_of('0') != std::string::npos;
        if (m_keys[3] == "top")
            m_module.top = on;
        else if (m_keys[3] == "blackbox" || m_keys[3] == "whitebox")
            m_module.blackBox = m_module.blackBox || on;
    }

    void word(const std::string& text)
    {
        if (m_keys[2] == "ports" && m_keys[4] == "direction")
            m_module.ports.back().direction = directionOf(text);
        else if (m_keys[2] == "cells" && m_keys[4] == "type") {
            m_cell.type = nameOf(text);
            m_typed = true;
        } else if (m_keys[2] == "netnames" && m_keys[4] == "hide_name")
            m_hidden = text != "0";
    }

    void wordOfCell(const std::string& text)
    {
        if (m_keys[4] == "parameters")
            m_module.parameters.push_back({nameOf(m_keys[5]), text.substr(0, kLongestParameter)});
        else if (m_keys[4] == "port_directions")
            m_directions.emplace_back(nameOf(m_keys[5]), directionOf(text));
    }

    PortDirection directionOf(const std::string& text) const
    {
        if (text == "input")
            return PortDirection::input;
        if (text == "output")
            return PortDirection::output;
        if (text != "inout")
            fail(fmt::format("{}, expected \"input\", \"output\" or \"inout\"", quoted(Json(text))));
        return PortDirection::both;
    }

    std::uint32_t nameOf(const std::string& name)
    {
        const auto [found, isNew] = m_ids.try_emplace(name, static_cast<std::uint32_t>(m_netlist.names.size()));
        if (isNew) {
            if (m_netlist.names.size() == kMostNames)
                fail(fmt::format("more than {} names of types, ports and parameters", kMostNames));
            m_netlist.names.push_back(name);
        }
        return found->second;
    }

    bool bit(NetBit value)
    {
        m_module.bits.push_back(value);
        ++m_range.count;
        return true;
    }

    // A list of bits has ended.
    void gathered()
    {
        if (m_keys[2] == "ports")
            m_module.ports.back().bits = m_range;
        else if (m_keys[2] == "netnames")
            m_netBits = m_range;
        else
            m_module.connections.push_back({nameOf(m_keys[5]), PortDirection::unknown, m_range});
    }

    static std::uint32_t sizeOf(const auto& list)
    {
        return static_cast<std::uint32_t>(list.size());
    }

    // An object begins, below the keys.
    void opened()
    {
        const std::size_t depth = m_keys.size();
        if (depth < 2 || m_keys[0] != "modules")
            return;
        if (depth == 2) {
            m_module = {};
            m_module.name = m_keys[1];
        } else if (depth == 4 && m_keys[2] == "ports") {
            m_module.ports.push_back({m_keys[3]});
        } else if (depth == 4 && m_keys[2] == "cells") {
            if (++m_cells > kMostCells)
                fail(fmt::format("more than {} cells", kMostCells));
            m_typed = false;
            m_directions.clear();
            m_cell = {m_keys[3], 0, {sizeOf(m_module.connections), 0}, {sizeOf(m_module.parameters), 0}};
        } else if (depth == 4 && m_keys[2] == "netnames") {
            m_hidden = false;
            m_netBits = {sizeOf(m_module.bits), 0};
        }
    }

    // An object has ended, below the keys.
    void closed()
    {
        const std::size_t depth = m_keys.size();
        if (depth < 2 || m_keys[0] != "modules")
            return;
        if (depth == 2)
            endModule();
        else if (depth == 4 && m_keys[2] == "cells")
            endCell();
        else if (depth == 4 && m_keys[2] == "netnames" && !m_hidden) {
            if (++m_cells > kMostCells)
                fail(fmt::format("more than {} cells and nets", kMostCells));
            m_module.nets.push_back({m_keys[3], m_netBits});
        }
    }

    void endCell()
    {
        if (!m_typed)
            fail("has no type");
        m_cell.connections.count = sizeOf(m_module.connections) - m_cell.connections.first;
        m_cell.parameters.count = sizeOf(m_module.parameters) - m_cell.parameters.first;
        std::sort(m_directions.begin(), m_directions.end());
        for (std::size_t i = m_cell.connections.first; i < m_module.connections.size(); ++i) {
            Netlist::Connection& connection = m_module.connections[i];
            const auto found = std::lower_bound(m_directions.begin(), m_directions.end(),
                                                std::pair(connection.port, PortDirection::unknown));
            if (found != m_directions.end() && found->first == connection.port)
                connection.direction = found->second;
        }
        m_module.cells.push_back(std::move(m_cell));
    }

    static void refuseTwins(const auto& things, const std::string& place)
    {
        std::vector<std::string_view> names;
        for (const auto& thing : things)
            names.push_back(thing.name);
        std::sort(names.begin(), names.end());
        const auto twin = std::adjacent_find(names.begin(), names.end());
        if (twin != names.end())
            throw Error(fmt::format("{}.{} stands twice", place, abbreviated(*twin, 200)));
    }

    // Numbers its bits from 0 on: those of the file may have any gaps.
    void endModule()
    {
        const std::string place = fmt::format("{}: modules.{}", m_netlist.file, abbreviated(m_module.name, 200));
        refuseTwins(m_module.cells, place + ".cells");
        refuseTwins(m_module.ports, place + ".ports");
        std::vector<NetBit> numbers = m_module.bits;
        std::erase_if(numbers, isConstant);
        std::sort(numbers.begin(), numbers.end());
        numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
        for (NetBit& bit : m_module.bits) {
            if (!isConstant(bit))
                bit = static_cast<NetBit>(std::lower_bound(numbers.begin(), numbers.end(), bit) - numbers.begin());
        }
        m_module.bitCount = static_cast<std::uint32_t>(numbers.size());
        m_netlist.modules.push_back(std::move(m_module));
        m_module = {};
    }

    const std::string* m_text;
    Netlist m_netlist;
    std::unordered_map<std::string, std::uint32_t> m_ids; ///< places of names
    std::vector<std::string> m_keys;                      ///< of the objects around, the outermost first
    std::vector<std::size_t> m_listsBefore;
    std::size_t m_lists = 0; ///< around, within the innermost object
    Place m_place = Place::other;
    BitRange m_range;
    std::size_t m_cells = 0;
    Netlist::Module m_module;
    Netlist::Cell m_cell;
    bool m_typed = false;
    bool m_hidden = false;
    BitRange m_netBits;
    std::vector<std::pair<std::uint32_t, PortDirection>> m_directions; ///< of the cell that is being read
};

} // namespace

std::span<const NetBit> Netlist::bitsAt(const Module& module, const Cell& cell, std::string_view port) const
{
    for (const Connection& connection : module.of(cell)) {
        if (names[connection.port] == port)
            return module.at(connection.bits);
    }
    return {};
}

std::string_view Netlist::parameter(const Module& module, const Cell& cell, std::string_view name) const
{
    const auto all = std::span(module.parameters).subspan(cell.parameters.first, cell.parameters.count);
    for (const Parameter& parameter : all) {
        if (names[parameter.name] == name)
            return parameter.value;
    }
    return {};
}

std::uint64_t Netlist::number(const Module& module, const Cell& cell, std::string_view name) const
{
    const std::string_view all = parameter(module, cell, name);
    const std::string_view digits = all.substr(std::min(all.size(), all.find_first_not_of('0')));
    if (all.empty() || digits.size() > kMostParameterDigits || digits.find_first_not_of("01") != std::string_view::npos)
        throw Error(fmt::format("{}: its parameter {} is {}, expected a number of up to {} binary digits",
                                at(module, cell), name, all.empty() ? "missing" : quoted(Json(std::string(all))),
                                kMostParameterDigits));
    std::uint64_t value = 0;
    for (const char digit : digits)
        value = 2 * value + (digit == '1' ? 1 : 0);
    return value;
}

std::string Netlist::at(const Module& module, const Cell& cell) const
{
    return fmt::format("{}: modules.{}.cells.{}", file, abbreviated(module.name, 100), abbreviated(cell.name, 100));
}

Netlist parseNetlist(const std::string& text, const std::string& file)
{
    NetlistReader reader(file, text);
    constexpr bool whole = true;
    constexpr bool withComments = true;
    Json::sax_parse(text, &reader, nlohmann::detail::input_format_t::json, whole, withComments);
    Netlist netlist = std::move(reader).result();
    if (netlist.modules.empty())
        throw Error(fmt::format("{}: has no modules; a netlist is what write_json writes after synthesis", file));
    std::vector<std::string_view> names;
    for (const Netlist::Module& module : netlist.modules)
        names.push_back(module.name);
    std::sort(names.begin(), names.end());
    if (const auto twin = std::adjacent_find(names.begin(), names.end()); twin != names.end())
        throw Error(fmt::format("{}: modules.{} stands twice", file, abbreviated(*twin, 200)));
    return netlist;
}

Netlist readNetlist(const std::string& file)
{
    return parseNetlist(readFile(file), file == kStandardInput ? "standard input" : file);
}

} // namespace zelm::host
