#include "framework/ZelmDependencies.h"

#include <algorithm>
#include <utility>

namespace zelm {

Dependencies::Dependencies(int ints, int floats, int strings)
    : Watcher(Wants::reads), m_first{0, ints, ints + floats},
      m_operands(static_cast<std::size_t>(ints + floats + strings), Operands{0, 0}), m_foundIn(m_operands.size(), 0)
{
    begin();
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
    std::fill(m_operands.begin(), m_operands.end(), Operands{0, 0});
    m_log.clear();
    m_unused = 0;
    begin();
    ++m_version;
    m_lostOperands = false;
}

void Dependencies::takeReadsSoFar()
{
    m_frame.firstRead = static_cast<std::uint32_t>(m_reads.size());
    const std::uint32_t first = m_operands[m_frame.node].first;
    m_reads.insert(m_reads.end(), m_log.begin() + first, m_log.begin() + m_frame.next);
    m_frame.next = m_frame.end;
}

// Cells that change what they read do so seldom: what the log held of them before stays there, unused, as long as the
// run lasts.
void Dependencies::note()
{
    const Frame frame = m_frame;
    Operands& operands = m_operands[frame.node];
    const auto before = m_log.begin() + operands.first;
    ++m_version;
    if (!frame.readsOther()) { // it stopped early
        const auto read = m_log.begin() + frame.next;
        m_lostOperands = m_lostOperands || std::any_of(read, before + operands.size,
                                                       [&](Node old) { return std::find(before, read, old) == read; });
        m_unused += operands.size - (frame.next - operands.first);
        operands.size = frame.next - operands.first;
        return;
    }
    const auto firstRead = m_reads.begin() + frame.firstRead;
    m_lostOperands = m_lostOperands || std::any_of(before, before + operands.size, [&](Node old) {
                         return std::find(firstRead, m_reads.end(), old) == m_reads.end();
                     });
    m_unused += operands.size;
    operands = {static_cast<std::uint32_t>(m_log.size()), static_cast<std::uint32_t>(m_reads.size()) - frame.firstRead};
    m_log.insert(m_log.end(), firstRead, m_reads.end());
    m_reads.resize(frame.firstRead);
}

void Dependencies::dropUnused()
{
    std::vector<Node> log;
    log.reserve(m_log.size() - m_unused);
    for (Operands& operands : m_operands) {
        const auto first = m_log.begin() + operands.first;
        operands.first = static_cast<std::uint32_t>(log.size());
        log.insert(log.end(), first, first + operands.size);
    }
    m_log = std::move(log);
    m_unused = 0;
}

void Dependencies::indexReaders()
{
    m_firstReader.assign(size() + 1, 0);
    const auto forEachRead = [this](auto visit) {
        for (std::size_t reader = 0; reader < size(); ++reader) {
            for (std::uint32_t i = 0; i < m_operands[reader].size; ++i)
                visit(static_cast<Node>(reader), m_log[m_operands[reader].first + i]);
        }
    };
    forEachRead([this](Node, Node read) { ++m_firstReader[read]; });
    std::uint32_t end = 0;
    for (std::uint32_t& first : m_firstReader)
        first = end += first;
    m_readers.resize(end);
    forEachRead([this](Node reader, Node read) { m_readers[--m_firstReader[read]] = reader; });
    m_indexed = m_version;
}

void Dependencies::findDependents(const std::vector<Node>& changed, const std::vector<bool>& fixed,
                                  std::vector<Node>& found)
{
    if (m_indexed != m_version)
        indexReaders();
    ++m_search;
    const auto addReaders = [&](Node node) {
        for (std::uint32_t i = m_firstReader[node]; i < m_firstReader[node + 1u]; ++i) {
            const Node reader = m_readers[i];
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

void Dependencies::findUnread(const std::vector<bool>& isRoot, const std::vector<bool>& fixed, std::vector<Node>& found)
{
    ++m_search;
    found.clear();
    const auto reach = [&](Node node) {
        if (m_foundIn[node] == m_search)
            return;
        m_foundIn[node] = m_search;
        if (!fixed[node])
            found.push_back(node); // its operands are to be reached
    };
    for (std::size_t node = 0; node < size(); ++node) {
        if (isRoot[node])
            reach(static_cast<Node>(node));
    }
    for (std::size_t i = 0; i < found.size(); ++i) {
        const Operands operands = m_operands[found[i]];
        for (std::uint32_t read = operands.first; read < operands.first + operands.size; ++read)
            reach(m_log[read]);
    }
    found.clear();
    for (std::size_t node = 0; node < size(); ++node) {
        if (m_foundIn[node] != m_search && !fixed[node])
            found.push_back(static_cast<Node>(node));
    }
}

bool Dependencies::takeLostOperands()
{
    return std::exchange(m_lostOperands, false);
}

} // namespace zelm
