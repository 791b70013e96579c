#include "AnyBlock.h"

#include "support/DataDirectory.h"

#include "BlockHeaders.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

namespace zelm::test {

namespace {

template <class Model>
class BlockOf final : public AnyBlock {
    using Params = typename Model::Params;
    using Type = ZelmCellInfo::Type;

    static Type typeOf(std::string_view cell)
    {
        for (const ZelmCellInfo& info : Params::cells()) {
            if (info.name == cell)
                return info.type;
        }
        throw std::out_of_range("no cell " + std::string(cell));
    }

public:
    void set(const Setting& setting) override
    {
        const std::string name(setting.cell);
        switch (typeOf(name)) {
        case Type::integer:
            m_params[Params::string_to_int_enum(name)] = static_cast<int>(std::get<double>(setting.value));
            break;
        case Type::real:
            m_params[Params::string_to_float_enum(name)] = static_cast<float>(std::get<double>(setting.value));
            break;
        case Type::text:
            m_params[Params::string_to_string_enum(name)] = std::get<const char*>(setting.value);
            break;
        }
    }

    void calculate() override
    {
        static const bool shipped = [] {
            const DataDirVariable variable(shippedDataDirectory());
            return Model::Data::getMutableGlobal().reset();
        }();
        static_cast<void>(shipped);
        Model::getGlobal().calculate(m_params);
    }

    double number(const std::string& cell) const override
    {
        if (typeOf(cell) == Type::integer)
            return m_params[Params::string_to_int_enum(cell)];
        return static_cast<double>(m_params[Params::string_to_float_enum(cell)]);
    }

    std::string text(const std::string& cell) const override
    {
        return m_params[Params::string_to_string_enum(cell)];
    }

private:
    Params m_params;
};

template <class Model>
Kind describe(std::string_view name)
{
    return {name, Model::Params::cells(), [] { return std::unique_ptr<AnyBlock>(std::make_unique<BlockOf<Model>>()); }};
}

} // namespace

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

std::span<const Kind> kinds()
{
    static const std::vector<Kind> all{
#define BLOCK(name, subsystem, title) describe<ZelmOrvane##name##Model>(#name),
#include ZELM_BLOCK_LIST
    };
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
    const auto instance = chosen.create();
    instance->set(inputs);
    instance->calculate();
    double sum = 0.0;
    for (const char* output : outputs)
        sum += instance->inBaseUnit(chosen.cell(output));
    return sum;
}

} // namespace zelm::test
