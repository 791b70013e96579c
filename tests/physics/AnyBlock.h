#pragma once

#include "contract/Block.h"
#include "framework/ZelmInfo.h"

#include <memory>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace zelm::test {

/// What an input is set to.
struct Setting {
    const char* cell;
    std::variant<double, const char*> value;
};
using Settings = std::vector<Setting>;

std::ostream& operator<<(std::ostream& out, const Setting& setting);
std::string show(const Settings& settings);

/// A parameter block of a kind that is chosen at run time, with the shipped data behind it.
class AnyBlock {
public:
    explicit AnyBlock(const Block& block);

    void set(const Setting& setting);
    void set(const Settings& settings);
    void calculate();
    double number(const std::string& cell) const;
    std::string text(const std::string& cell) const;
    /// An output in watts or amperes, whatever unit its cell has; plain numbers as they are.
    double inBaseUnit(const ZelmCellInfo& cell) const;

private:
    ZelmCellInfo::Type typeOf(std::string_view cell) const;

    const Block& m_block;
    std::unique_ptr<ZelmParams> m_params;
};

/// A resource kind.
struct Kind {
    std::string_view name;
    std::span<const ZelmCellInfo> cells;
    const Block& block;

    AnyBlock create() const;
    const ZelmCellInfo& cell(std::string_view wanted) const;
};

std::span<const Kind> kinds();
const Kind& kind(std::string_view name);

/// W or A that one of the unit is; 0 if the unit is neither of power nor of current.
double baseUnits(std::string_view unit);

/// Sum of outputs in W or A with these inputs.
double calculated(std::string_view block, const Settings& inputs, const std::vector<const char*>& outputs);

} // namespace zelm::test
