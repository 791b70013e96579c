#include "host/blocks/Rails.h"

#include "host/blocks/RollUp.h"

namespace zelm::host {

std::vector<std::string> railNames()
{
    std::vector<std::string> names;
    for (const ZelmCellInfo& cell : block("Static").cells) {
        if (takesVolts(cell))
            names.emplace_back(cell.name);
    }
    return names;
}

bool takesVolts(const ZelmCellInfo& cell)
{
    return cell.kind == ZelmCellInfo::Kind::userInput && cell.type == ZelmCellInfo::Type::real && cell.unit == "V";
}

std::string railOf(const Block& block, const ZelmCellInfo& cell)
{
    for (const RailInput& alias : railInputs()) {
        if (alias.block == block.name && alias.cell == cell.name)
            return std::string(alias.rail);
    }
    return std::string(cell.name);
}

} // namespace zelm::host
