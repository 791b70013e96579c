#include "host/estimate/Combination.h"

#include "host/blocks/LegalWords.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <initializer_list>
#include <memory>

namespace zelm::host {

namespace {

struct Change {
    const ZelmCellInfo* cell;
    Value value;
};

// The group's formulas with other values in some inputs; null where they can't do without a row.
std::unique_ptr<Instance> calculatedWith(const Running& group, std::initializer_list<Change> changes)
{
    auto instance = group.block->create();
    for (const ZelmCellInfo& cell : group.block->cells) {
        if (group.isSet(cell))
            instance->set(cell, group.instance->get(cell));
    }
    for (const Change& change : changes)
        instance->set(*change.cell, change.value);
    try {
        instance->calculate();
    } catch (const std::exception&) {
        return nullptr;
    }
    return instance;
}

// Whether the group's formulas find the row, and don't miss another for it, with another value in one input.
bool finds(const Running& group, const MissingRow& row, const ZelmCellInfo& changed, const Value& value)
{
    const LookUpMisses misses;
    if (!calculatedWith(group, {{&changed, value}}))
        return false;
    const std::vector<MissingRow> rows = group.block->missingRows(misses);
    return rows.size() < group.missingRows.size() && std::find(rows.begin(), rows.end(), row) == rows.end();
}

bool draws(const Block& block, const Instance& instance)
{
    using Goes = zelm::Destination::Kind;
    return std::any_of(block.cells.begin(), block.cells.end(), [&](const ZelmCellInfo& output) {
        if (output.goes.kind != Goes::rail && output.goes.kind != Goes::offchip)
            return false;
        return instance.real(output).value_or(0.0f) != 0.0f;
    });
}

bool drawsWith(const Running& group, std::initializer_list<Change> changes)
{
    const LookUpMisses misses; // those of values that are only tried are nobody's business
    const auto instance = calculatedWith(group, changes);
    return instance && draws(*group.block, *instance);
}

// 1 in the type of a number.
Value oneLike(const Value& number)
{
    return std::holds_alternative<int>(number) ? Value(1) : Value(1.0f);
}

Value zeroLike(const Value& number)
{
    return std::holds_alternative<int>(number) ? Value(0) : Value(0.0f);
}

bool isOff(const ZelmCellInfo& cell, const Value& value)
{
    if (const std::string* word = std::get_if<std::string>(&value))
        return *word == "NONE" || *word == "DISABLED" || *word == "OFF";
    return cell.name.ends_with("_DISABLE");
}

// The other values to try in an input: all that choose rows, and for shares of the time the other end.
std::vector<Value> otherValues(const Block& block, const ZelmCellInfo& cell, const Value& given)
{
    std::vector<Value> values = legalValues(block, cell);
    if (cell.legal.kind == zelm::Legal::Kind::number && given.index() != 0 && given == oneLike(given) &&
        cell.legal.lowest <= 0.0 && cell.legal.usualHighest <= 1.0)
        values.push_back(zeroLike(given));
    std::erase(values, given);
    return values;
}

// Whether the group draws power once an input and one more change together, though a third keeps its value.
bool drawsWithPartner(const Running& group, const ZelmCellInfo& cell, const ZelmCellInfo& kept)
{
    const std::vector<Value> values = otherValues(*group.block, cell, group.instance->get(cell));
    const auto drawsBeside = [&](const ZelmCellInfo& other) {
        if (other.kind != ZelmCellInfo::Kind::userInput || &other == &cell || &other == &kept)
            return false;
        const std::vector<Value> others = otherValues(*group.block, other, group.instance->get(other));
        return std::any_of(values.begin(), values.end(), [&](const Value& a) {
            return std::any_of(others.begin(), others.end(), [&](const Value& b) {
                return drawsWith(group, {{&cell, a}, {&other, b}});
            });
        });
    };
    return std::any_of(group.block->cells.begin(), group.block->cells.end(), drawsBeside);
}

} // namespace

std::string combinationWithout(const Running& group, const MissingRow& row)
{
    std::vector<std::string> inputs;
    for (const ZelmCellInfo& cell : group.block->cells) {
        if (cell.kind != ZelmCellInfo::Kind::userInput)
            continue;
        const Value given = group.instance->get(cell);
        const std::vector<Value> others = legalValues(*group.block, cell);
        if (std::any_of(others.begin(), others.end(),
                        [&](const Value& other) { return other != given && finds(group, row, cell, other); }))
            inputs.push_back(fmt::format("{} {}", cell.name, valueText(given)));
    }
    return fmt::format("{}", fmt::join(inputs, ", "));
}

std::string combinationWithoutPower(const Running& group)
{
    if (draws(*group.block, *group.instance))
        return {};
    std::vector<const ZelmCellInfo*> inputs;
    for (const ZelmCellInfo& cell : group.block->cells) {
        if (cell.kind != ZelmCellInfo::Kind::userInput)
            continue;
        const Value given = group.instance->get(cell);
        const bool idle = given.index() != 0 && cell.type != ZelmCellInfo::Type::text && given == zeroLike(given);
        if (idle && drawsWith(group, {{&cell, oneLike(given)}}))
            return {};
        const std::vector<Value> others = otherValues(*group.block, cell, given);
        if (!std::any_of(others.begin(), others.end(), [&](const Value& other) {
                return drawsWith(group, {{&cell, other}});
            }))
            continue;
        if (isOff(cell, given))
            return {};
        inputs.push_back(&cell);
    }
    // One alone fits with nothing that the others have: two others have to change for it to stay.
    if (inputs.size() == 1) {
        for (const ZelmCellInfo& cell : group.block->cells) {
            if (cell.kind == ZelmCellInfo::Kind::userInput && &cell != inputs.front() &&
                drawsWithPartner(group, cell, *inputs.front()))
                inputs.push_back(&cell);
        }
    }
    std::vector<std::string> words;
    for (const ZelmCellInfo* cell : inputs)
        words.push_back(fmt::format("{} {}", cell->name, valueText(group.instance->get(*cell))));
    return fmt::format("{}", fmt::join(words, ", "));
}

} // namespace zelm::host
