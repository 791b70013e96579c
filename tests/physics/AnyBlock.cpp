#include "AnyBlock.h"

#include "contract/AllBlocks.h"
#include "support/DataDirectory.h"

#include <algorithm>
#include <set>
#include <sstream>
#include <stdexcept>

namespace zelm::test {

AnyBlock::AnyBlock(const Block& block) : m_block(block), m_params(block.makeParams()) {}

ZelmCellInfo::Type AnyBlock::typeOf(std::string_view cell) const
{
    for (const ZelmCellInfo& info : m_block.cells()) {
        if (info.name == cell)
            return info.type;
    }
    throw std::out_of_range("no cell " + std::string(cell));
}

void AnyBlock::set(const Setting& setting)
{
    const std::string name(setting.cell);
    switch (typeOf(name)) {
    case Block::Type::integer:
        m_block.intCell(*m_params, name) = static_cast<int>(std::get<double>(setting.value));
        break;
    case Block::Type::real:
        m_block.floatCell(*m_params, name) = static_cast<float>(std::get<double>(setting.value));
        break;
    case Block::Type::text:
        m_block.stringCell(*m_params, name) = std::get<const char*>(setting.value);
        break;
    }
}

void AnyBlock::calculate()
{
    static std::set<const Block*> loaded;
    if (loaded.insert(&m_block).second) {
        const DataDirVariable variable(shippedDataDirectory());
        m_block.reload();
    }
    m_block.calculate(*m_params);
}

double AnyBlock::number(const std::string& cell) const
{
    if (typeOf(cell) == Block::Type::integer)
        return m_block.intCell(*m_params, cell);
    return static_cast<double>(m_block.floatCell(*m_params, cell));
}

std::string AnyBlock::text(const std::string& cell) const
{
    return m_block.stringCell(*m_params, cell);
}

std::ostream& operator<<(std::ostream& out, const Setting& setting)
{
    out << setting.cell << '=';
    std::visit([&](const auto& value) { out << value; }, setting.value);
    return out;
}

std::string show(const Settings& settings)
{
    std::ostringstream text;
    for (const Setting& setting : settings)
        text << ' ' << setting;
    return text.str();
}

void AnyBlock::set(const Settings& settings)
{
    for (const Setting& setting : settings)
        set(setting);
}

double AnyBlock::inBaseUnit(const ZelmCellInfo& cell) const
{
    const double units = baseUnits(cell.unit);
    return number(std::string(cell.name)) * (units > 0.0 ? units : 1.0);
}

const ZelmCellInfo& Kind::cell(std::string_view wanted) const
{
    const auto found =
        std::find_if(cells.begin(), cells.end(), [&](const ZelmCellInfo& info) { return info.name == wanted; });
    if (found == cells.end())
        throw std::out_of_range(std::string(name) + " has no cell " + std::string(wanted));
    return *found;
}

AnyBlock Kind::create() const
{
    return AnyBlock(block);
}

std::span<const Kind> kinds()
{
    static const std::vector<Kind> all = [] {
        std::vector<Kind> described;
        for (const BlockRow& row : allBlocks())
            described.push_back({row.name, row.block.cells(), row.block});
        return described;
    }();
    return all;
}

const Kind& kind(std::string_view name)
{
    for (const Kind& candidate : kinds()) {
        if (candidate.name == name)
            return candidate;
    }
    throw std::out_of_range("no block " + std::string(name));
}

double baseUnits(std::string_view unit)
{
    if (unit == "W" || unit == "A")
        return 1.0;
    if (unit == "mW" || unit == "mA")
        return 1e-3;
    return unit == "uW" || unit == "uA" ? 1e-6 : 0.0;
}

double calculated(std::string_view block, const Settings& inputs, const std::vector<const char*>& outputs)
{
    const Kind& chosen = kind(block);
    AnyBlock instance = chosen.create();
    instance.set(inputs);
    instance.calculate();
    double sum = 0.0;
    for (const char* output : outputs)
        sum += instance.inBaseUnit(chosen.cell(output));
    return sum;
}

} // namespace zelm::test
