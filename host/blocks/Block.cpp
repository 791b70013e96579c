#include "host/blocks/Block.h"

#include "host/base/Error.h"
#include "host/base/Files.h"
#include "host/base/Numerals.h"
#include "host/base/Text.h"
#include "host/base/Units.h"
#include "host/blocks/DataLines.h"
#include "host/blocks/Rails.h"

#include "BlockHeaders.h"
#include "framework/ZelmRecalculation.h"
#include "framework/ZelmUnset.h"

#include <fmt/format.h>
#include <libconfig.h++>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>

namespace zelm::host {

namespace {

using Kind = ZelmCellInfo::Kind;
using Type = ZelmCellInfo::Type;

std::string dataFileOf(std::string_view dataName)
{
    return "powercfg/orvane/" + std::string(dataName) + ".cfg";
}

template <class T>
Value ifSet(const T& value)
{
    return isUnset(value) ? Value() : Value(value);
}

// An instance but for the types of its kind, which the class derived from it knows: compiled once for all kinds.
class UntypedInstance : public Instance {
public:
    void set(const ZelmCellInfo& cell, const Value& value) override
    {
        if (cell.type == Type::integer)
            assign(m_cells.ints, &RecalculationOfCells::setInt, cell.ordinal, std::get<int>(value));
        else if (cell.type == Type::real)
            assign(m_cells.floats, &RecalculationOfCells::setFloat, cell.ordinal, std::get<float>(value));
        else
            assign(m_cells.strings, &RecalculationOfCells::setString, cell.ordinal, std::get<std::string>(value));
    }

    Value get(const ZelmCellInfo& cell) const override
    {
        if (cell.type == Type::integer)
            return ifSet(m_cells.ints[cell.ordinal]);
        if (cell.type == Type::real)
            return ifSet(m_cells.floats[cell.ordinal]);
        return ifSet(m_cells.strings[cell.ordinal]);
    }

    const float& slot(const ZelmCellInfo& cell) const override
    {
        return m_cells.floats[cell.ordinal];
    }

    CellSlots slots() override
    {
        return m_cells;
    }

    void calculate() override
    {
        m_recalculation.reset();
        guarded([this] { calculateAll(); });
    }

    void calculateBy(Instance& other, std::span<const ZelmCellInfo* const> inputs) override
    {
        auto& source = static_cast<UntypedInstance&>(other);
        for (const ZelmCellInfo* input : inputs) {
            const int at = input->ordinal;
            if (input->type == Type::integer)
                source.assign(source.m_cells.ints, &RecalculationOfCells::setInt, at, m_cells.ints[at]);
            else if (input->type == Type::real)
                source.assign(source.m_cells.floats, &RecalculationOfCells::setFloat, at, m_cells.floats[at]);
            else
                source.assign(source.m_cells.strings, &RecalculationOfCells::setString, at, m_cells.strings[at]);
        }
        source.recalculate();
        m_recalculation.reset();
        takeCells(source);
    }

    void recalculate() override
    {
        guarded([this] { recalculation().recalculate(); });
    }

    void recalculate(std::span<const CellRef> wanted) override
    {
        guarded([&] { recalculation().recalculate(wanted); });
    }

    void pull(const ZelmCellInfo& cell) override
    {
        const CellRef ref{cell.type, cell.ordinal};
        if (m_recalculation)
            return recalculate({&ref, 1});
        guarded([&] { pullOne(ref); });
    }

protected:
    explicit UntypedInstance(std::string_view dataName) : m_dataName(dataName) {}

    /// Of the kind's parameter block, as soon as that stands.
    void hold(CellSlots cells)
    {
        m_cells = cells;
    }

private:
    virtual void calculateAll() = 0;
    virtual void pullOne(CellRef cell) = 0;
    virtual void takeCells(const UntypedInstance& other) = 0; // of the same kind
    virtual std::unique_ptr<RecalculationOfCells> makeRecalculation() = 0;

    RecalculationOfCells& recalculation()
    {
        if (!m_recalculation)
            m_recalculation = makeRecalculation();
        return *m_recalculation;
    }

    // What formulas throw comes from what they read: a text, say, where they want a number.
    template <class Run>
    void guarded(Run run) const
    {
        const auto fail = [this](const std::string& why) {
            const std::string file = dataFileOf(m_dataName);
            const std::string path = dataPath(file);
            throw DataError(fmt::format("{}: a formula fails on its rows: {}", path.empty() ? file : path, why));
        };
        try {
            run();
        } catch (const std::invalid_argument&) {
            fail("a text that is no number stands where one is read");
        } catch (const std::out_of_range&) {
            fail("a number is too large or too small");
        } catch (const std::bad_alloc&) {
            throw;
        } catch (const std::exception& error) {
            fail(error.what());
        }
    }

    template <class T, class Setter>
    void assign(T* cells, Setter setter, int ordinal, const T& value)
    {
        if (m_recalculation)
            (*m_recalculation.*setter)(ordinal, value);
        else
            cells[ordinal] = value;
    }

    std::string_view m_dataName;
    CellSlots m_cells{};
    std::unique_ptr<RecalculationOfCells> m_recalculation;
};

template <class Model>
class InstanceOf final : public UntypedInstance {
    using Params = typename Model::Params;
    using Data = typename Model::Data;

public:
    InstanceOf() : UntypedInstance(Data::name)
    {
        hold({&m_params[Params::FirstUIInt], &m_params[Params::FirstUIFloat], &m_params[Params::FirstUIString]});
    }

private:
    void calculateAll() override
    {
        Model::getGlobal().calculate(m_params);
    }

    void pullOne(CellRef cell) override
    {
        Model::getGlobal().pull({&cell, 1}, m_params, Data::getGlobal());
    }

    void takeCells(const UntypedInstance& other) override
    {
        m_params = static_cast<const InstanceOf&>(other).m_params;
    }

    std::unique_ptr<RecalculationOfCells> makeRecalculation() override
    {
        return std::make_unique<Recalculation<Model>>(Model::getGlobal(), m_params, Data::getGlobal());
    }

    Params m_params;
};

// What loading needs of a kind's data block.
struct DataFunctions {
    std::string_view name;
    std::span<const ZelmTableInfo> (*tables)();
    void (*load)();
    bool (*isEmpty)(std::string_view group);
};

void loadAndCheck(const DataFunctions& data)
{
    const std::string file = dataFileOf(data.name);
    const std::string path = loadablePath(file);
    try {
        data.load();
    } catch (const libconfig::ParseException& error) {
        throw DataError(fmt::format("{}:{}: {}; expected settings of the form NAME = value; or NAME : {{ ... }};", path,
                                    error.getLine(), error.getError()));
    } catch (const libconfig::FileIOException&) {
        throw DataError(fmt::format("{}: cannot be read", path));
    } catch (const libconfig::ConfigException&) {
        throw DataError(fmt::format("{}: holds settings of a kind that tables can't have", path));
    }
    for (const ZelmTableInfo& table : data.tables()) {
        if (data.isEmpty(table.group))
            throw DataError(fmt::format("{}: expected a group {}.{} with at least one {} value (keys: {})",
                                        DataLines(file).where(std::string(table.group), ""), data.name, table.group,
                                        table.type == "std::string" ? "string" : table.type, table.keys));
    }
}

template <class Data>
std::vector<std::string> keys(std::vector<std::string> chain, bool whole)
{
    return Data::getGlobal().getCfgKeys(std::move(chain), whole);
}

// Once for each block: a failed attempt throws, and the next one tries again.
template <class Data>
void load()
{
    static const bool loaded = [] {
        loadAndCheck({Data::name, Data::tables, [] { Data::getGlobal(); },
                      [](std::string_view group) { return Data::getGlobal().isEmpty(group); }});
        return true;
    }();
    static_cast<void>(loaded);
}

template <class Model>
std::unique_ptr<Instance> create()
{
    return std::make_unique<InstanceOf<Model>>();
}

ByName<const ZelmCellInfo*> byName(std::span<const ZelmCellInfo> cells)
{
    ByName<const ZelmCellInfo*> index;
    index.reserve(cells.size());
    for (const ZelmCellInfo& cell : cells)
        index.emplace(cell.name, &cell);
    return index;
}

bool namesDevice(const ZelmCellInfo& cell)
{
    return cell.kind == Kind::userInput && (cell.name == "DEVICE" || cell.name == "INTERNAL_DEVICE_NAME");
}

bool takesSpeedGrade(const ZelmCellInfo& cell)
{
    return cell.kind == Kind::userInput && cell.name == "SPEEDGRADE";
}

bool isPower(const ZelmCellInfo& cell)
{
    return cell.goes.kind == Destination::Kind::rail || cell.goes.kind == Destination::Kind::offchip;
}

std::vector<const ZelmCellInfo*> cellsThat(std::span<const ZelmCellInfo> cells, bool (*are)(const ZelmCellInfo&))
{
    std::vector<const ZelmCellInfo*> found;
    for (const ZelmCellInfo& cell : cells) {
        if (are(cell))
            found.push_back(&cell);
    }
    return found;
}

template <class Model>
Block describe(std::string_view name, std::string_view subsystem, std::string_view title)
{
    using Data = typename Model::Data;
    return {name,
            subsystem,
            title,
            Model::Params::cells(),
            Data::tables(),
            create<Model>,
            [] { return Data::getGlobal().loads(); },
            load<Data>,
            keys<Data>,
            [](const void* table) { return Data::getGlobal().groupOf(table); },
            byName(Model::Params::cells()),
            cellsThat(Model::Params::cells(), [](const ZelmCellInfo& cell) { return cell.kind == Kind::userInput; }),
            cellsThat(Model::Params::cells(), takesVolts),
            cellsThat(Model::Params::cells(), namesDevice),
            cellsThat(Model::Params::cells(), takesSpeedGrade),
            cellsThat(Model::Params::cells(), isPower)};
}

std::vector<std::string> namesOf(std::span<const ZelmCellInfo> cells, bool inputsOnly)
{
    std::vector<std::string> names;
    for (const ZelmCellInfo& cell : cells) {
        if (!inputsOnly || cell.kind == Kind::userInput)
            names.emplace_back(cell.name);
    }
    return names;
}

std::optional<WrittenQuantity> quantityIn(const ZelmCellInfo& cell, std::string_view text)
{
    try {
        return writtenQuantity(text);
    } catch (const Error& error) {
        throw Error(fmt::format("{}: {}", cell.name, error.what()));
    }
}

// A number with its unit: "250 MHz".
Value valueOf(const ZelmCellInfo& cell, const WrittenQuantity& written, std::string_view text)
{
    double number = 0.0;
    try {
        number = inUnit(written, cell.unit);
    } catch (const Error& error) {
        throw Error(fmt::format("{}: {}", cell.name, error.what()));
    }
    if (cell.type == Type::integer) {
        if (number != std::floor(number) || std::fabs(number) >= unsetInt)
            throw Error(fmt::format("{} takes a whole number of 32 bits, not \"{}\"", cell.name, abbreviated(text)));
        return static_cast<int>(number);
    }
    const auto value = static_cast<float>(number);
    if (!std::isfinite(value))
        throw Error(fmt::format("{} takes a finite number, not \"{}\"", cell.name, abbreviated(text)));
    return value;
}

} // namespace

std::size_t NameHash::operator()(std::string_view name) const noexcept
{
    std::uint64_t first = 0;
    std::uint64_t middle = 0;
    std::uint64_t last = 0;
    if (constexpr std::size_t word = sizeof(first); name.size() < word) {
        for (const char letter : name)
            first = first << 8U | static_cast<unsigned char>(letter);
    } else {
        std::memcpy(&first, name.data(), word);
        std::memcpy(&middle, name.data() + (name.size() - word) / 2, word);
        std::memcpy(&last, name.data() + name.size() - word, word);
    }
    constexpr std::uint64_t odd = 0x9e3779b97f4a7c15; // spreads over all bits
    const std::uint64_t mixed = ((first * odd ^ middle) * odd ^ last) * odd + name.size();
    return mixed ^ mixed >> 32U;
}

std::optional<float> Instance::real(const ZelmCellInfo& cell) const
{
    const float value = slot(cell);
    return isUnset(value) ? std::nullopt : std::optional(value);
}

const ZelmCellInfo* Block::findCell(std::string_view wanted) const
{
    const auto found = cellsByName.find(wanted);
    return found == cellsByName.end() ? nullptr : found->second;
}

const ZelmCellInfo& Block::cell(std::string_view wanted) const
{
    if (const ZelmCellInfo* found = findCell(wanted))
        return *found;
    throw Error(
        fmt::format("block {} has no cell {}{}", name, abbreviated(wanted), suggestion(wanted, namesOf(cells, false))));
}

const ZelmCellInfo& Block::input(std::string_view wanted) const
{
    const ZelmCellInfo* found = findCell(wanted);
    if (!found)
        throw Error(fmt::format("block {} has no input {}{}", name, abbreviated(wanted),
                                suggestion(wanted, namesOf(cells, true))));
    if (found->kind != Kind::userInput)
        throw Error(fmt::format("cell {} of block {} is computed, not an input", wanted, name));
    return *found;
}

std::string Block::dataFile() const
{
    return fmt::format("powercfg/orvane/ZelmOrvane{}Data.cfg", name);
}

std::vector<MissingRow> Block::missingRows(const LookUpMisses& misses) const
{
    std::vector<MissingRow> rows;
    for (const LookUpMisses::Miss& miss : misses.misses()) {
        MissingRow row{std::string(groupOf(miss.table)), miss.key};
        if (!row.table.empty() && std::find(rows.begin(), rows.end(), row) == rows.end())
            rows.push_back(std::move(row));
    }
    return rows;
}

std::span<const Block> blocks()
{
    static const Block all[] = {
#define BLOCK(name, subsystem, title) describe<ZelmOrvane##name##Model>(#name, #subsystem, title),
#include "host/blocks/BlockList.def"
    };
    return all;
}

std::size_t placeOf(const Block& block)
{
    static const Block* const first = blocks().data();
    return static_cast<std::size_t>(&block - first);
}

const Block& block(std::string_view name)
{
    static const ByName<const Block*> byBlockName = [] {
        ByName<const Block*> index;
        for (const Block& candidate : blocks())
            index.emplace(candidate.name, &candidate);
        return index;
    }();
    if (const auto found = byBlockName.find(name); found != byBlockName.end())
        return *found->second;
    std::vector<std::string> names;
    for (const Block& candidate : blocks())
        names.emplace_back(candidate.name);
    throw Error(
        fmt::format("there is no block {}{} (zelm blocks lists all)", abbreviated(name), suggestion(name, names)));
}

Value parseValue(const ZelmCellInfo& cell, std::string_view text)
{
    if (cell.type == Type::text)
        return std::string(text);
    if (const auto written = quantityIn(cell, text))
        return valueOf(cell, *written, text);
    if (cell.type == Type::integer) {
        int value = 0;
        const char* end = text.data() + text.size();
        const auto parsed = std::from_chars(text.data(), end, value);
        if (parsed.ec != std::errc() || parsed.ptr != end)
            throw Error(fmt::format("{} takes a whole number of 32 bits, not \"{}\"", cell.name, abbreviated(text)));
        return value;
    }
    const std::optional<float> value = realIn<float>(text);
    if (!value || !std::isfinite(*value))
        throw Error(fmt::format("{} takes a finite number, not \"{}\"", cell.name, abbreviated(text)));
    return *value;
}

std::string valueText(const Value& value)
{
    if (const int* whole = std::get_if<int>(&value))
        return std::to_string(*whole);
    if (const float* real = std::get_if<float>(&value))
        return exactText(*real);
    if (const std::string* text = std::get_if<std::string>(&value))
        return *text;
    return "unset";
}

std::string constantDefault(const ZelmCellInfo& cell)
{
    std::string text(cell.defaultText);
    if (cell.type == Type::text)
        return text.size() >= 2 && text.front() == '"' ? text.substr(1, text.size() - 2) : std::string();
    if (cell.type == Type::real && text.ends_with('f'))
        text.pop_back();
    const std::optional<float> value = realIn<float>(text);
    return value ? exactText(*value) : std::string();
}

std::string_view kindWord(Kind kind)
{
    return kind == Kind::userInput ? "input" : kind == Kind::modelOutput ? "output" : "intermediate";
}

std::string_view typeWord(Type type)
{
    return type == Type::integer ? "int" : type == Type::real ? "float" : "string";
}

} // namespace zelm::host
