#pragma once

#include "framework/ZelmExport.h"
#include "framework/ZelmWatcher.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zelm {

/// Which cells each cell of a run was computed from, kept up to date while parts of it are computed again. It stands in
/// the formulas' way at each pull, so that what it does there is inline, and memory is one array for all.
class ZELM_EXPORT Dependencies final : public Watcher {
public:
    using Node = std::uint16_t;

    /// Of a block with so many cells in its three arrays, markers included.
    Dependencies(int ints, int floats, int strings);

    Node nodeOf(CellRef cell) const
    {
        return static_cast<Node>(m_first[static_cast<std::size_t>(cell.type)] + cell.ordinal);
    }
    CellRef cellOf(Node node) const;
    std::size_t size() const
    {
        return m_operands.size();
    }

    /// Forgets everything; a run from the beginning follows.
    void clear();
    /// A run follows. The one before may have ended with an exception.
    void begin()
    {
        m_frame = {0, 0, 0, 0}; // who asks from outside
        m_reads.clear();
        if (m_unused > m_log.size() / 2)
            dropUnused();
    }

    /// Marks the cells that this run has asked for from outside, and no others.
    void takeRoots(std::vector<bool>& isRoot) const
    {
        isRoot.assign(size(), false);
        for (const Node node : m_reads)
            isRoot[node] = true;
    }

    /// Whether the cell was computed from others.
    bool hasOperands(Node node) const
    {
        return m_operands[node].size != 0;
    }

    /// Adds to found all cells that were computed from changed ones, directly or through others, each once. A fixed
    /// cell was given from outside and ends the way.
    void findDependents(const std::vector<Node>& changed, const std::vector<bool>& fixed, std::vector<Node>& found);

    /// Finds the cells that no root was computed from, directly or through others. A fixed cell ends the way, and is
    /// none of them.
    void findUnread(const std::vector<bool>& isRoot, const std::vector<bool>& fixed, std::vector<Node>& found);

    /// Another number whenever a cell has read anything else than the time before: what findDependents found may
    /// differ.
    unsigned version() const
    {
        return m_version;
    }

    /// Whether a cell has read less than the time before, since this was asked last. What it reads no more may hold a
    /// value that a run from the beginning wouldn't have given it.
    bool takeLostOperands();

    /// A cell that is being computed, and what is left in the log of its reads of the last time. Once it reads
    /// something else, all its reads go where those of the cells that wait for it stand already.
    struct Frame {
        std::uint32_t node;
        std::uint32_t next;
        std::uint32_t end;
        std::uint32_t firstRead; ///< there; asBefore as long as there is none

        static constexpr std::uint32_t asBefore = 0xffffffff;
        bool readsOther() const
        {
            return firstRead != asBefore;
        }
    };

    /// As long as a cell reads what it read the last time there is nothing to note; else readOther is to be called.
    bool readsAsBefore(CellRef cell)
    {
        if (m_frame.next == m_frame.end || m_log[m_frame.next] != nodeOf(cell)) [[unlikely]]
            return false;
        ++m_frame.next;
        return true;
    }
    void readOther(CellRef cell)
    {
        if (!m_frame.readsOther()) [[unlikely]]
            takeReadsSoFar();
        m_reads.push_back(nodeOf(cell));
    }
    /// The cell's formula starts; the one that waits for it is kept by the caller until it ends.
    Frame enter(CellRef cell)
    {
        const Node node = nodeOf(cell);
        const Operands before = m_operands[node];
        const Frame waiting = m_frame;
        m_frame = {node, before.first, before.first + before.size, Frame::asBefore};
        return waiting;
    }
    void leave(const Frame& waiting)
    {
        if (m_frame.next != m_frame.end || m_frame.readsOther()) [[unlikely]]
            note();
        m_frame = waiting;
    }

private:
    struct Operands {
        std::uint32_t first;
        std::uint32_t size;
    };

    void takeReadsSoFar();
    void note();
    void dropUnused();
    void indexReaders();

    int m_first[3];
    std::vector<Operands> m_operands; // of each node: a part of the log, in the order of reading
    std::vector<Node> m_log;
    std::size_t m_unused = 0; // of the log
    std::vector<Node> m_reads;
    Frame m_frame{};

    std::vector<std::uint32_t> m_firstReader; // of each node, and the end
    std::vector<Node> m_readers;
    unsigned m_version = 0;
    unsigned m_indexed = ~0u; // the version of the index

    std::vector<unsigned> m_foundIn; // the search that found the node last
    unsigned m_search = 0;
    bool m_lostOperands = false;
};

} // namespace zelm
