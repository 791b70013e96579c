#include "host/blocks/Catalogue.h"

#include "device/ZelmOrvanePartsModel.h"

#include <algorithm>
#include <set>

namespace zelm::host {

namespace {

const Block& parts()
{
    const Block& block = zelm::host::block("Parts");
    block.load();
    return block;
}

// What the parts model says of a part; an empty resource leaves the default.
ZelmOrvanePartsParams ask(const std::string& family, const std::string& part, const std::string& resource)
{
    using Params = ZelmOrvanePartsParams;
    Params params;
    params[Params::DEVICE_FAMILY] = family;
    params[Params::PART_SELECTION] = part;
    if (!resource.empty())
        params[Params::RESOURCE_TYPE] = resource;
    ZelmOrvanePartsModel::getGlobal().calculate(params);
    return params;
}

} // namespace

std::vector<std::string> deviceNames()
{
    return sortedKeys(parts(), {"DEVICE_TO_FAMILY_MAP"});
}

std::vector<std::string> orderableParts()
{
    std::set<std::string> all;
    for (const std::string& series : sortedKeys(parts(), {"DEVICE_DATA"})) {
        for (std::string& part : sortedKeys(parts(), {"DEVICE_DATA", series}))
            all.insert(std::move(part));
    }
    return {all.begin(), all.end()};
}

bool isInFamily(const std::string& family, const std::string& part)
{
    return ask(family, part, "")[ZelmOrvanePartsParams::IS_PART_SUPPORTED] != "No";
}

std::map<std::string, int> resourcesOf(const std::string& family, const std::string& part)
{
    using Params = ZelmOrvanePartsParams;
    const Params first = ask(family, part, "");
    const std::string devicePackage = first[Params::DEVICE_PACKAGE];
    std::map<std::string, int> resources;
    for (const std::string& resource : parts().keys({"RESOURCE_DATA", devicePackage}, true)) {
        const Params counted = ask(family, part, resource);
        resources[resource] = counted[Params::RESOURCE_COUNT];
    }
    return resources;
}

std::vector<std::string> sortedKeys(const Block& block, std::vector<std::string> chain)
{
    std::vector<std::string> keys = block.keys(std::move(chain), false);
    std::sort(keys.begin(), keys.end());
    return keys;
}

} // namespace zelm::host
