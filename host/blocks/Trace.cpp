#include "host/blocks/Trace.h"

#include "framework/ZelmUnset.h"

#include <algorithm>
#include <array>
#include <type_traits>

namespace zelm::host {

namespace {

template <class T>
void addOnce(std::vector<T>& list, T element)
{
    if (std::find(list.begin(), list.end(), element) == list.end())
        list.push_back(std::move(element));
}

decltype(LookedUp::value) foundOf(const LookUp& lookUp)
{
    return std::visit(
        [](const auto& value) -> decltype(LookedUp::value) {
            using T = std::decay_t<decltype(value)>;
            if constexpr (!std::is_same_v<T, bool>) {
                if (isUnset(value))
                    return {};
            }
            if constexpr (std::is_same_v<T, std::string_view>)
                return std::string(value);
            else
                return value;
        },
        lookUp.value);
}

} // namespace

// The cells of a block by their places in its three arrays, of which markers take some too.
class CellIndex {
public:
    explicit CellIndex(const Block& block)
    {
        for (const ZelmCellInfo& cell : block.cells) {
            std::vector<const ZelmCellInfo*>& ofType = m_cells[static_cast<std::size_t>(cell.type)];
            ofType.resize(std::max(ofType.size(), static_cast<std::size_t>(cell.ordinal) + 1));
            ofType[static_cast<std::size_t>(cell.ordinal)] = &cell;
        }
    }

    const ZelmCellInfo* at(CellRef cell) const
    {
        return m_cells[static_cast<std::size_t>(cell.type)][static_cast<std::size_t>(cell.ordinal)];
    }

    static const CellIndex& of(const Block& block)
    {
        static const std::vector<CellIndex> all(blocks().begin(), blocks().end());
        return all[static_cast<std::size_t>(&block - blocks().data())];
    }

private:
    std::array<std::vector<const ZelmCellInfo*>, 3> m_cells; // by type
};

std::string LookedUp::row() const
{
    std::string joined;
    for (const std::string& key : keys) {
        if (!joined.empty() && !key.empty())
            joined += '.';
        joined += key;
    }
    return joined;
}

class Trace::Recorder final : public Watcher {
public:
    explicit Recorder(Trace& trace) : Watcher(Wants::pulls), m_trace(&trace), m_index(&CellIndex::of(*trace.m_block)) {}

    void onRead(CellRef cell) override
    {
        if (!m_computing.empty())
            addOnce(m_computing.back()->operands, cellOf(cell));
    }
    void onCompute(CellRef cell) override
    {
        CellTrace& trace = m_trace->m_traces[cellOf(cell)];
        trace = {};
        m_computing.push_back(&trace);
    }
    void onComputed(CellRef) override
    {
        m_computing.pop_back();
    }
    void onLookUp(const LookUp& lookUp) override
    {
        LookedUp entry{&lookUp.table, {}, foundOf(lookUp)};
        for (const Key& key : lookUp.keys)
            entry.keys.emplace_back(key.text());
        if (!m_computing.empty())
            addOnce(m_computing.back()->lookUps, std::move(entry));
    }

private:
    const ZelmCellInfo* cellOf(CellRef cell) const
    {
        return m_index->at(cell);
    }

    Trace* m_trace;
    const CellIndex* m_index;
    std::vector<CellTrace*> m_computing; // cells that wait for those behind them
};

Trace::Trace(const Block& block, const std::vector<std::pair<const ZelmCellInfo*, Value>>& given)
    : m_block(&block), m_instance(block.create())
{
    for (const auto& [cell, value] : given)
        m_instance->set(*cell, value);
    block.load();
    Recorder recorder(*this);
    const Watching watching(recorder);
    m_instance->calculate();
}

void Trace::pull(const ZelmCellInfo& cell)
{
    Recorder recorder(*this);
    const Watching watching(recorder);
    m_instance->pull(cell);
}

Value Trace::value(const ZelmCellInfo& cell)
{
    Value value = m_instance->get(cell);
    if (value.index() == 0) {
        pull(cell);
        value = m_instance->get(cell);
    }
    return value;
}

const CellTrace* Trace::of(const ZelmCellInfo& cell)
{
    value(cell);
    const auto found = m_traces.find(&cell);
    return found == m_traces.end() ? nullptr : &found->second;
}

} // namespace zelm::host
