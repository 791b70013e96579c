#include "framework/ZelmRecalculation.h"

#include <algorithm>
#include <utility>

namespace zelm {

namespace {

bool contains(const std::vector<Dependencies::Node>& nodes, Dependencies::Node wanted)
{
    return std::find(nodes.begin(), nodes.end(), wanted) != nodes.end();
}

} // namespace

Dependencies::Dependencies(int ints, int floats, int strings)
    : Watcher(Wants::pulls), m_first{0, ints, ints + floats},
      m_operands(static_cast<std::size_t>(ints + floats + strings)), m_readers(m_operands.size()),
      m_foundIn(m_operands.size(), 0)
{
}

CellRef Dependencies::cellOf(Node node) const
{
    using Type = ZelmCellInfo::Type;
    for (const Type type : {Type::text, Type::real}) {
        if (const int first = m_first[static_cast<std::size_t>(type)]; node >= first)
            return {type, node - first};
    }
    return {Type::integer, node};
}

void Dependencies::clear()
{
    for (std::vector<Node>& operands : m_operands)
        operands.clear();
    for (std::vector<Node>& readers : m_readers)
        readers.clear();
    m_frames.clear();
    m_lostOperands = false;
}

void Dependencies::findDependents(const std::vector<Node>& changed, const std::vector<bool>& fixed,
                                  std::vector<Node>& found)
{
    ++m_search;
    const auto addReaders = [&](Node node) {
        for (const Node reader : m_readers[node]) {
            if (m_foundIn[reader] == m_search || fixed[reader])
                continue;
            m_foundIn[reader] = m_search;
            found.push_back(reader);
        }
    };
    for (const Node node : changed)
        addReaders(node);
    for (std::size_t i = 0; i < found.size(); ++i)
        addReaders(found[i]);
}

bool Dependencies::takeLostOperands()
{
    return std::exchange(m_lostOperands, false);
}

void Dependencies::onRead(CellRef cell)
{
    if (m_frames.empty())
        return;
    Frame& frame = m_frames.back();
    std::vector<Node>& operands = m_operands[frame.node];
    const Node node = nodeOf(cell);
    if (frame.read < operands.size()) {
        if (operands[frame.read] == node) [[likely]] {
            ++frame.read;
            return;
        }
        frame.before.assign(operands.begin() + static_cast<std::ptrdiff_t>(frame.read), operands.end());
        operands.resize(frame.read);
    }
    operands.push_back(node);
    ++frame.read;
    if (!contains(m_readers[node], frame.node))
        m_readers[node].push_back(frame.node);
}

void Dependencies::onCompute(CellRef cell)
{
    m_frames.push_back({nodeOf(cell)});
}

void Dependencies::onComputed(CellRef)
{
    Frame& frame = m_frames.back();
    std::vector<Node>& operands = m_operands[frame.node];
    frame.before.insert(frame.before.end(), operands.begin() + static_cast<std::ptrdiff_t>(frame.read), operands.end());
    operands.resize(frame.read);
    for (const Node node : frame.before)
        m_lostOperands = m_lostOperands || !contains(operands, node);
    m_frames.pop_back();
}

} // namespace zelm
