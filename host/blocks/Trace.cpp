#include "host/blocks/Trace.h"

#include "framework/ZelmUnset.h"

#include <algorithm>
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
    explicit Recorder(Trace& trace) : Watcher(Wants::pulls), m_trace(&trace) {}

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
        return m_trace->m_cells.at({cell.type, cell.ordinal});
    }

    Trace* m_trace;
    std::vector<CellTrace*> m_computing; // cells that wait for those behind them
};

Trace::Trace(const Block& block, const std::vector<std::pair<const ZelmCellInfo*, Value>>& given)
    : m_block(&block), m_instance(block.create())
{
    for (const ZelmCellInfo& cell : block.cells)
        m_cells[{cell.type, cell.ordinal}] = &cell;
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
