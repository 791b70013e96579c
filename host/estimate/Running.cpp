#include "host/estimate/Running.h"

#include "host/base/Error.h"
#include "host/blocks/Rails.h"
#include "host/blocks/RollUp.h"
#include "host/blocks/Uses.h"

#include "framework/ZelmUnset.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>

namespace zelm::host {

namespace {

// Groups of one kind differ in few inputs, and of a kind with many cells most are then the same in all of them: they
// are calculated one from the other, whichever designs they belong to. Data that are loaded anew are noticed.
struct Precedent {
    std::unique_ptr<Instance> instance;
    std::optional<unsigned> refusedAt; // the loading of data from which groups have to tell more than their values
};

// Of smaller kinds, finding out what to calculate costs as much as calculating.
constexpr std::size_t kManyCells = 256;

Precedent& precedentOf(const Block& block)
{
    thread_local std::unordered_map<const Block*, Precedent> precedents;
    return precedents[&block];
}

} // namespace

Running::Running(const Block& ofBlock, const Group& group, const std::string& asName)
    : name(asName), block(&ofBlock), count(group.count), place(group.place), in(group.in),
      clock(group.block->name == "Clock" ? group.name : group.clock), instance(ofBlock.create()),
      origins(ofBlock.cells.size())
{
    for (const auto& [cellName, value] : group.inputs) {
        const ZelmCellInfo* cell = block->findCell(cellName);
        if (cell && cell->kind == ZelmCellInfo::Kind::userInput)
            set(*cell, value, Origin::design);
    }
}

void Running::set(const ZelmCellInfo& cell, const Value& value, Origin origin)
{
    instance->set(cell, value);
    origins[placeOf(cell)] = origin;
}

bool Running::isSet(std::string_view cell) const
{
    const ZelmCellInfo* found = block->findCell(cell);
    return found && isSet(*found);
}

Value Running::get(std::string_view cell) const
{
    const ZelmCellInfo& found = block->cell(cell);
    noteRead(found);
    return instance->get(found);
}

int Running::whole(std::string_view cell) const
{
    const ZelmCellInfo& found = block->cell(cell);
    noteRead(found);
    if (found.type != ZelmCellInfo::Type::integer)
        return 0;
    const int number = instance->slots().ints[found.ordinal];
    return isUnset(number) ? 0 : number;
}

const std::string& Running::text(std::string_view cell) const
{
    static const std::string none;
    const ZelmCellInfo& found = block->cell(cell);
    noteRead(found);
    if (found.type != ZelmCellInfo::Type::text)
        return none;
    const std::string& words = instance->slots().strings[found.ordinal];
    return isUnset(words) ? none : words;
}

Origin Running::originOf(std::string_view cell) const
{
    const ZelmCellInfo* found = block->findCell(cell);
    return found ? originOf(*found) : Origin::byDefault;
}

const ZelmCellInfo* Running::railInput(std::string_view rail) const
{
    const auto found = std::find_if(block->voltages.begin(), block->voltages.end(),
                                    [&](const ZelmCellInfo* cell) { return cell->legal.rail == rail; });
    return found == block->voltages.end() ? nullptr : *found;
}

std::string_view Running::bankRail() const
{
    const BankKind* kind = bankKindOf(block->name);
    if (!kind)
        return {};
    const Value value = get(kind->volts);
    const float* volts = std::get_if<float>(&value);
    return zelm::host::bankRail(volts ? *volts : 0.0f);
}

void Running::calculate()
{
    block->load();
    if (block->cells.size() >= kManyCells && calculatesByPrecedent())
        return;
    const LookUpMisses misses;
    instance->calculate();
    missingRows = block->missingRows(misses);
}

// False if the group's own formulas have to tell which rows are missing, or what fails: they look at all of its rows.
bool Running::calculatesByPrecedent()
{
    Precedent& precedent = precedentOf(*block);
    if (precedent.refusedAt == block->loads())
        return false;
    if (!precedent.instance)
        precedent.instance = block->create();
    const LookUpMisses misses;
    try {
        instance->calculateBy(*precedent.instance, block->inputs);
        if (misses.misses().empty())
            return true;
    } catch (const DataError&) { // said again, and better, by the group's own
    }
    precedent = {nullptr, block->loads()};
    return false;
}

bool Running::readsTheSameOf(const Running& other) const
{
    if (other.block != block || other.name != name || other.count != count || other.clock != clock || m_read.empty())
        return false;
    for (std::size_t i = 0; i < m_read.size(); ++i) {
        const ZelmCellInfo& cell = block->cells[i];
        if (m_read[i] && (origins[i] != other.origins[i] || instance->get(cell) != other.instance->get(cell)))
            return false;
    }
    return true;
}

RunningGroups::RunningGroups(std::vector<const Running*> groups) : m_all(std::move(groups)), m_byBlock(m_all)
{
    const auto standsBefore = [](const Running* a, const Running* b) { return a->block < b->block; };
    std::stable_sort(m_byBlock.begin(), m_byBlock.end(), standsBefore);
    m_begins.reserve(blocks().size() + 1);
    for (std::size_t i = 0; i < m_byBlock.size(); ++i)
        m_begins.resize(std::max(m_begins.size(), placeOf(*m_byBlock[i]->block) + 1), i);
    m_begins.resize(blocks().size() + 1, m_byBlock.size());
}

std::span<const Running* const> RunningGroups::of(std::string_view name) const
{
    return of(zelm::host::block(name));
}

std::span<const Running* const> RunningGroups::of(const Block& block) const
{
    if (m_all.empty())
        return {};
    const std::size_t begin = m_begins[placeOf(block)];
    return std::span(m_byBlock).subspan(begin, m_begins[placeOf(block) + 1] - begin);
}

} // namespace zelm::host
