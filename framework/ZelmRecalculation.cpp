#include "framework/ZelmRecalculation.h"

#include "framework/ZelmUnset.h"

#include <cstdint>
#include <stdexcept>
#include <string>

namespace zelm {

namespace {

bool same(int a, int b)
{
    return a == b;
}

bool same(float a, float b)
{
    return __builtin_bit_cast(std::uint32_t, a) == __builtin_bit_cast(std::uint32_t, b);
}

bool same(std::string_view a, std::string_view b)
{
    return a == b;
}

// A cell that there isn't counts as unset: who pulls it is told.
template <class Cells>
bool isUnsetIn(const Cells& cells, int cell)
{
    return static_cast<std::size_t>(cell) >= static_cast<std::size_t>(cells.size) || isUnset(cells.values[cell]);
}

} // namespace

RecalculationOfCells::RecalculationOfCells(Cells<int> ints, Cells<float> floats, Cells<std::string> strings)
    : m_ints(ints), m_floats(floats), m_strings(strings), m_dependencies(ints.size, floats.size, strings.size),
      m_given(m_dependencies.size(), false), m_isRoot(m_dependencies.size(), false)
{
    forEachInput([this](CellRef cell) { m_given[m_dependencies.nodeOf(cell)] = !isUnsetAt(cell); });
}

void RecalculationOfCells::setInt(int cell, int value)
{
    assign({ZelmCellInfo::Type::integer, cell}, m_ints, value);
}

void RecalculationOfCells::setFloat(int cell, float value)
{
    assign({ZelmCellInfo::Type::real, cell}, m_floats, value);
}

void RecalculationOfCells::setString(int cell, std::string_view value)
{
    assign({ZelmCellInfo::Type::text, cell}, m_strings, value);
}

void RecalculationOfCells::recalculate()
{
    if (isOutOfDate())
        return calculateAll();
    forgetDependents();
    run([this] {
        if (m_pending)
            pullOutputs();
        else
            pull(m_dependentRoots);
    });
    m_pending = false;
    unsetUnread();
}

void RecalculationOfCells::recalculate(std::span<const CellRef> wanted)
{
    const auto pullWanted = [&] {
        m_unsetWanted.clear();
        for (const CellRef cell : wanted) {
            if (isUnsetAt(cell))
                m_unsetWanted.push_back(cell);
        }
        pull(m_unsetWanted);
    };
    if (isOutOfDate()) {
        calculateAll();
    } else {
        m_pending = true;
        forgetDependents();
        run(pullWanted);
        if (!m_mayBeUnread)
            return;
        unsetUnread();
    }
    run(pullWanted); // no output may ask for some
}

bool RecalculationOfCells::isOutOfDate() const
{
    return m_all || loads() != m_loads;
}

// Unsets all that depends on the changed inputs. A run of edits of one input, of a temperature say, finds it once.
void RecalculationOfCells::forgetDependents()
{
    if (m_changed.empty()) {
        m_dependentRoots.clear();
        m_dependentsOf.clear();
        return;
    }
    if (m_changed != m_dependentsOf || m_version != m_dependencies.version())
        findDependents();
    for (float* slot : m_dependentFloats)
        *slot = unsetFloat;
    for (const CellRef cell : m_otherDependents)
        unset(cell);
    m_changed.clear();
}

void RecalculationOfCells::findDependents()
{
    m_dependents.clear();
    m_dependencies.findDependents(m_changed, m_given, m_dependents);
    m_dependentsOf = m_changed;
    m_version = m_dependencies.version();
    m_dependentFloats.clear();
    m_otherDependents.clear();
    m_dependentRoots.clear();
    for (const Node node : m_dependents) {
        const CellRef cell = m_dependencies.cellOf(node);
        if (cell.type == ZelmCellInfo::Type::real)
            m_dependentFloats.push_back(&m_floats.values[cell.ordinal]);
        else
            m_otherDependents.push_back(cell);
        if (m_isRoot[node])
            m_dependentRoots.push_back(cell);
    }
}

template <class Visit>
void RecalculationOfCells::forEachInput(Visit visit) const
{
    const auto forEachOf = [&](ZelmCellInfo::Type type, Range inputs) {
        for (int cell = inputs.first + 1; cell < inputs.last; ++cell)
            visit(CellRef{type, cell});
    };
    forEachOf(ZelmCellInfo::Type::integer, m_ints.inputs);
    forEachOf(ZelmCellInfo::Type::real, m_floats.inputs);
    forEachOf(ZelmCellInfo::Type::text, m_strings.inputs);
}

template <class Value, class Given>
void RecalculationOfCells::assign(CellRef cell, const Cells<Value>& cells, const Given& value)
{
    if (static_cast<std::size_t>(cell.ordinal) >= static_cast<std::size_t>(cells.size))
        throw std::out_of_range("there is no cell of ordinal " + std::to_string(cell.ordinal));
    Value& slot = cells.values[cell.ordinal];
    const Node node = m_dependencies.nodeOf(cell);
    const bool given = !isUnset(value);
    if (m_given[node] == given && (!given || same(slot, value)))
        return;
    m_mayBeUnread = m_mayBeUnread || (given && !m_given[node] && m_dependencies.hasOperands(node));
    if (m_given[node] != given)
        m_dependentsOf.clear();
    m_given[node] = given;
    slot = value;
    m_changed.push_back(node);
}

bool RecalculationOfCells::isUnsetAt(CellRef cell) const
{
    switch (cell.type) {
    case ZelmCellInfo::Type::integer:
        return isUnsetIn(m_ints, cell.ordinal);
    case ZelmCellInfo::Type::real:
        return isUnsetIn(m_floats, cell.ordinal);
    case ZelmCellInfo::Type::text:
        return isUnsetIn(m_strings, cell.ordinal);
    }
    return true;
}

void RecalculationOfCells::unset(CellRef cell)
{
    switch (cell.type) {
    case ZelmCellInfo::Type::integer:
        m_ints.values[cell.ordinal] = unsetInt;
        break;
    case ZelmCellInfo::Type::real:
        m_floats.values[cell.ordinal] = unsetFloat;
        break;
    case ZelmCellInfo::Type::text:
        m_strings.values[cell.ordinal] = unsetString;
        break;
    }
}

void RecalculationOfCells::calculateAll()
{
    m_dependencies.clear();
    forEachInput([this](CellRef cell) {
        if (!m_given[m_dependencies.nodeOf(cell)])
            unset(cell);
    });
    clearComputed();
    m_loads = loads();
    m_changed.clear();
    m_dependentsOf.clear();
    run([this] {
        pullOutputs();
        m_dependencies.takeRoots(m_isRoot);
    });
    m_pending = false;
    m_mayBeUnread = false;
}

// An exception leaves cells behind that no run from the beginning would.
template <class Pull>
void RecalculationOfCells::run(Pull pullCells)
{
    m_all = true;
    m_dependencies.begin();
    {
        const Watching watching(m_dependencies);
        pullCells();
    }
    m_all = false;
    m_mayBeUnread = m_dependencies.takeLostOperands() || m_mayBeUnread;
}

// Cells that no output leads to any more: a run from the beginning wouldn't have computed them.
void RecalculationOfCells::unsetUnread()
{
    if (!m_mayBeUnread)
        return;
    m_mayBeUnread = false;
    m_dependencies.findUnread(m_isRoot, m_given, m_unread);
    for (const Node node : m_unread) {
        const CellRef cell = m_dependencies.cellOf(node);
        if (!isUnsetAt(cell))
            unset(cell);
    }
}

} // namespace zelm
