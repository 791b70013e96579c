#include "host/blocks/Rails.h"

#include "device/ZelmOrvaneStaticData.h"

namespace zelm::host {

namespace {

constexpr std::string_view kStaticCurrent = "_STATIC_CURRENT";

} // namespace

const std::vector<std::string>& railNames()
{
    static const std::vector<std::string> all = [] {
        std::vector<std::string> names;
        for (const ZelmCellInfo& cell : block("Static").cells) {
            if (takesVolts(cell))
                names.emplace_back(cell.name);
        }
        return names;
    }();
    return all;
}

std::optional<std::size_t> placeOfRail(std::string_view rail)
{
    static const ByName<std::size_t> places = [] {
        ByName<std::size_t> index;
        for (const std::string& name : railNames())
            index.emplace(name, index.size());
        return index;
    }();
    const auto found = places.find(rail);
    return found == places.end() ? std::nullopt : std::optional(found->second);
}

bool takesVolts(const ZelmCellInfo& cell)
{
    return cell.kind == ZelmCellInfo::Kind::userInput && !cell.legal.rail.empty();
}

bool hasRail(const std::string& device, const std::string& rail)
{
    block("Static").load();
    return ZelmOrvaneStaticData::getGlobal().getSupplyList(device, rail) != "NO";
}

std::string railHolding(const std::string& rail)
{
    const zelm::Destination& goes = block("Static").cell(rail + std::string(kStaticCurrent)).goes;
    return goes.kind == zelm::Destination::Kind::part
               ? std::string(goes.name.substr(0, goes.name.size() - kStaticCurrent.size()))
               : std::string();
}

} // namespace zelm::host
