// Blocks over arrays: one parameter block, a loop over elements, and nothing else inside of it.
#include "python/module/Module.h"

#include "host/base/Error.h"
#include "host/base/Text.h"
#include "host/blocks/Block.h"
#include "host/blocks/Legal.h"

#include "framework/ZelmUnset.h"

#include <fmt/format.h>
#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

namespace zelm::python {

namespace {

namespace py = pybind11;
using host::Block;
using host::Value;
using Type = ZelmCellInfo::Type;

template <class T>
using Array = py::array_t<T, py::array::c_style>;

Value unsetMark(const ZelmCellInfo& cell)
{
    switch (cell.type) {
    case Type::integer:
        return unsetInt;
    case Type::real:
        return unsetFloat;
    case Type::text:
        break;
    }
    return std::string(unsetString);
}

void write(const host::CellSlots& slots, const ZelmCellInfo& cell, const Value& value)
{
    if (cell.type == Type::integer)
        slots.ints[cell.ordinal] = std::get<int>(value);
    else if (cell.type == Type::real)
        slots.floats[cell.ordinal] = std::get<float>(value);
    else
        slots.strings[cell.ordinal] = std::get<std::string>(value);
}

// The element that an index stands for: a column of one holds for all.
template <class T>
class Elements {
public:
    explicit Elements(const Array<T>& array)
        : m_data(array.data()), m_size(static_cast<std::size_t>(array.size())), m_step(m_size == 1 ? 0 : 1)
    {
    }

    const T& operator[](std::size_t index) const
    {
        return m_data[index * m_step];
    }
    const T* begin() const
    {
        return m_data;
    }
    const T* end() const
    {
        return m_data + m_size;
    }

private:
    const T* m_data;
    std::size_t m_size;
    std::size_t m_step;
};

// ---- Inputs ----

// An input's values, element by element.
class Column {
public:
    Column(const Block& block, const ZelmCellInfo& cell) : m_block(&block), m_cell(&cell) {}
    Column(const Column&) = delete;
    Column& operator=(const Column&) = delete;
    virtual ~Column() = default;

    /// What is doubtful about the values. An Error if one can't be one of the cell.
    virtual std::vector<std::string> doubts() const = 0;
    virtual void set(const host::CellSlots& slots, std::size_t index) const = 0;

protected:
    const ZelmCellInfo& cell() const
    {
        return *m_cell;
    }

    void addDoubt(const Value& value, std::vector<std::string>& doubts) const
    {
        if (const auto doubt = host::doubtOf(*m_block, *m_cell, value))
            doubts.push_back(*doubt);
    }

private:
    const Block* m_block;
    const ZelmCellInfo* m_cell;
};

// Values by their place in a list of words, or unset where that is -1, whose next is 0.
class WordColumn final : public Column {
public:
    WordColumn(const Block& block, const ZelmCellInfo& cell, const Array<std::int32_t>& codes,
               const std::vector<std::string>& words)
        : Column(block, cell), m_codes(codes)
    {
        m_values.push_back(unsetMark(cell));
        for (const std::string& word : words)
            m_values.push_back(host::parseValue(cell, word));
    }

    std::vector<std::string> doubts() const override
    {
        std::vector<std::string> all;
        for (std::size_t i = 1; i < m_values.size(); ++i)
            addDoubt(m_values[i], all);
        return all;
    }

    void set(const host::CellSlots& slots, std::size_t index) const override
    {
        write(slots, cell(), m_values[static_cast<std::size_t>(m_codes[index]) + 1]);
    }

private:
    Elements<std::int32_t> m_codes;
    std::vector<Value> m_values;
};

// Numbers, floats for a float cell and doubles for an int one, or unset where they are NaN.
template <class T>
class NumberColumn final : public Column {
public:
    NumberColumn(const Block& block, const ZelmCellInfo& cell, const Array<T>& numbers)
        : Column(block, cell), m_numbers(numbers)
    {
    }

    std::vector<std::string> doubts() const override
    {
        T least = std::numeric_limits<T>::infinity();
        T greatest = -least;
        for (const T number : m_numbers) {
            if (std::isnan(number))
                continue;
            if (!fits(number))
                throw host::Error(
                    fmt::format("{} takes a {}, not \"{}\"", cell().name,
                                cell().type == Type::integer ? "whole number of 32 bits" : "finite number", number));
            least = std::min(least, number);
            greatest = std::max(greatest, number);
        }
        std::vector<std::string> all;
        if (least <= greatest)
            addDoubt(cellValue(least), all);
        if (least < greatest)
            addDoubt(cellValue(greatest), all);
        return all;
    }

    void set(const host::CellSlots& slots, std::size_t index) const override
    {
        if constexpr (std::is_same_v<T, double>)
            slots.ints[cell().ordinal] = cellValue(m_numbers[index]);
        else
            slots.floats[cell().ordinal] = cellValue(m_numbers[index]);
    }

private:
    static bool fits(T number)
    {
        if constexpr (std::is_same_v<T, double>)
            return number == std::floor(number) && std::fabs(number) <= std::numeric_limits<int>::max();
        else
            return std::isfinite(number);
    }

    static auto cellValue(T number)
    {
        if constexpr (std::is_same_v<T, double>)
            return std::isnan(number) ? unsetInt : static_cast<int>(number);
        else
            return std::isnan(number) ? unsetFloat : number;
    }

    Elements<T> m_numbers;
};

// An input's name, its numbers or places of words, and those words.
using GivenInput = std::tuple<std::string, py::array, std::optional<std::vector<std::string>>>;

std::unique_ptr<Column> columnOf(const Block& block, const GivenInput& given)
{
    const auto& [name, array, words] = given;
    const ZelmCellInfo& cell = block.input(name);
    if (words)
        return std::make_unique<WordColumn>(block, cell, py::cast<Array<std::int32_t>>(array), *words);
    if (cell.type == Type::real)
        return std::make_unique<NumberColumn<float>>(block, cell, py::cast<Array<float>>(array));
    return std::make_unique<NumberColumn<double>>(block, cell, py::cast<Array<double>>(array));
}

// ---- Cells that are asked for ----

// A cell's values as they come, and where none came.
class Wanted {
public:
    Wanted(const ZelmCellInfo& cell, const host::CellSlots& slots, std::size_t size) : m_type(cell.type), m_unset(size)
    {
        const auto count = static_cast<py::ssize_t>(size);
        if (m_type == Type::real) {
            m_float = slots.floats + cell.ordinal;
            m_reals = Array<float>(count);
            m_real = m_reals.mutable_data();
            return;
        }
        if (m_type == Type::integer)
            m_int = slots.ints + cell.ordinal;
        else
            m_string = slots.strings + cell.ordinal;
        m_wholes = Array<std::int32_t>(count);
        m_whole = m_wholes.mutable_data();
    }

    void take(std::size_t index)
    {
        bool unset = false;
        if (m_type == Type::real) {
            unset = isUnset(*m_float);
            m_real[index] = unset ? std::numeric_limits<float>::quiet_NaN() : *m_float;
        } else if (m_type == Type::integer) {
            unset = isUnset(*m_int);
            m_whole[index] = unset ? 0 : *m_int;
        } else {
            unset = isUnset(std::string_view(*m_string));
            m_whole[index] = unset ? 0 : codeOf(*m_string);
        }
        m_unset[index] = unset;
        m_someUnset = m_someUnset || unset;
    }

    // The numbers, or the places of words; where they are unset, if anywhere; the words.
    py::tuple result() const
    {
        py::object unset = py::none();
        if (m_someUnset) {
            Array<bool> mask(static_cast<py::ssize_t>(m_unset.size()));
            std::copy(m_unset.begin(), m_unset.end(), mask.mutable_data());
            unset = std::move(mask);
        }
        py::object words = py::none();
        if (m_type == Type::text)
            words = py::cast(m_words);
        return py::make_tuple(m_type == Type::real ? py::array(m_reals) : py::array(m_wholes), unset, words);
    }

private:
    std::int32_t codeOf(const std::string& word)
    {
        const auto [place, isNew] = m_codes.try_emplace(word, static_cast<std::int32_t>(m_words.size()));
        if (isNew)
            m_words.push_back(word);
        return place->second;
    }

    Type m_type;
    const float* m_float = nullptr; // where the cell stands: one of the three
    const int* m_int = nullptr;
    const std::string* m_string = nullptr;
    Array<float> m_reals;
    Array<std::int32_t> m_wholes;
    float* m_real = nullptr;
    std::int32_t* m_whole = nullptr;
    std::vector<std::uint8_t> m_unset;
    bool m_someUnset = false;
    std::unordered_map<std::string, std::int32_t> m_codes;
    std::vector<std::string> m_words;
};

// ---- The loop ----

// What a run sets anew for each element: formulas leave the defaults that they took in inputs, and others may follow
// from what is given.
struct Reset {
    const ZelmCellInfo* cell;
    Value unset;
};

void calculateAll(host::Instance& instance, const std::vector<std::unique_ptr<Column>>& columns,
                  const std::vector<Reset>& resets, std::vector<Wanted>& wanted, std::size_t size)
{
    const host::CellSlots slots = instance.slots();
    constexpr std::size_t between = std::size_t{1} << 16; // looks at whether somebody wants to stop
    for (std::size_t i = 0; i < size; ++i) {
        if (i % between == between - 1) {
            const py::gil_scoped_acquire python;
            if (PyErr_CheckSignals() != 0)
                throw py::error_already_set();
        }
        for (const auto& column : columns)
            column->set(slots, i);
        for (const Reset& reset : resets)
            write(slots, *reset.cell, reset.unset);
        instance.calculate();
        for (Wanted& cell : wanted)
            cell.take(i);
    }
}

py::tuple calc(const std::string& name, const std::vector<GivenInput>& given, const std::vector<std::string>& cells,
               std::size_t size)
{
    useData();
    const Block& block = host::block(name);
    const auto instance = block.create();
    std::vector<std::unique_ptr<Column>> columns;
    std::vector<Reset> resets;
    for (const ZelmCellInfo* input : block.inputs)
        resets.push_back({input, unsetMark(*input)});
    for (const GivenInput& one : given) {
        columns.push_back(columnOf(block, one));
        std::erase_if(resets, [&](const Reset& reset) { return reset.cell->name == std::get<0>(one); });
    }
    std::vector<Wanted> wanted;
    wanted.reserve(cells.size());
    for (const std::string& cell : cells)
        wanted.emplace_back(block.cell(cell), instance->slots(), size);
    std::vector<std::string> doubts;
    {
        const py::gil_scoped_release others;
        block.load();
        for (const auto& column : columns) {
            for (std::string& doubt : column->doubts())
                doubts.push_back(std::move(doubt));
        }
        calculateAll(*instance, columns, resets, wanted, size);
    }
    py::list results;
    for (const Wanted& cell : wanted)
        results.append(cell.result());
    return py::make_tuple(results, doubts);
}

} // namespace

void addCalc(py::module_& module)
{
    module.def("calc", calc, py::arg("block"), py::arg("inputs"), py::arg("cells"), py::arg("size"),
               "Calculates a block once for each element: the cells that are asked for, and what is doubtful.");
}

} // namespace zelm::python
