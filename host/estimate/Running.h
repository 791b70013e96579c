#pragma once

#include "host/design/Design.h"
#include "host/estimate/Origin.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zelm::host {

/// A group at work: its parameter block and where each input came from.
struct Running {
    std::string name;
    const Block* block = nullptr;
    int count = 1;
    std::string place; ///< the group's path in the design
    std::string in;    ///< its place in the hierarchy
    std::string clock; ///< the group of Clock that clocks it, itself for one of those
    std::unique_ptr<Instance> instance;
    std::vector<std::optional<Origin>> origins; ///< of the inputs that are set, by their place among the block's cells
    std::vector<MissingRow> missingRows;

    /// With the group's inputs that this block has: a group may reach more blocks than its own.
    Running(const Block& ofBlock, const Group& group, const std::string& asName);

    void set(const ZelmCellInfo& cell, const Value& value, Origin origin);
    bool isSet(const ZelmCellInfo& cell) const
    {
        noteRead(cell);
        return origins[placeOf(cell)].has_value();
    }
    bool isSet(std::string_view cell) const;
    Value get(std::string_view cell) const;
    int whole(std::string_view cell) const;
    /// Empty if it is unset.
    const std::string& text(std::string_view cell) const;
    Origin originOf(const ZelmCellInfo& cell) const
    {
        noteRead(cell);
        return origins[placeOf(cell)].value_or(Origin::byDefault);
    }
    Origin originOf(std::string_view cell) const;
    /// The input that holds the voltage of a rail, if the block has one.
    const ZelmCellInfo* railInput(std::string_view rail) const;
    /// The rail of the group's I/O bank.
    std::string_view bankRail() const;

    void calculate();

    /// From now on what is read of the group by its cells' names is remembered, for readsTheSameOf.
    void rememberReads() const
    {
        m_read.assign(block->cells.size(), false);
    }
    /// The same, with what has been read of the one that this group takes the place of: nobody reads it again.
    void rememberReadsOf(const Running& before) const
    {
        m_read = before.m_read;
    }
    /// Whether who read all that has been read of the group would read the same of another one.
    bool readsTheSameOf(const Running& other) const;

private:
    bool calculatesByPrecedent();
    std::size_t placeOf(const ZelmCellInfo& cell) const
    {
        return static_cast<std::size_t>(&cell - block->cells.data());
    }
    void noteRead(const ZelmCellInfo& cell) const
    {
        if (!m_read.empty())
            m_read[placeOf(cell)] = true;
    }

    mutable std::vector<bool> m_read; // by the cells' places; empty as long as nobody wants to know
};

/// The groups of a design at work, by block: what only some kinds of them have to do with looks at those alone.
class RunningGroups {
public:
    RunningGroups() = default;
    explicit RunningGroups(std::vector<const Running*> groups);

    /// In the design's order.
    std::span<const Running* const> of(std::string_view block) const;
    std::span<const Running* const> of(const Block& block) const;
    std::span<const Running* const> all() const
    {
        return m_all;
    }

private:
    std::vector<const Running*> m_all;
    std::vector<const Running*> m_byBlock;
    std::vector<std::size_t> m_begins; // of each block there, by its place in the list of blocks, and the end
};

} // namespace zelm::host
