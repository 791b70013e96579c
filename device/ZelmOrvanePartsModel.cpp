#include "device/ZelmOrvanePartsModel.h"

#include "framework/ZelmModelBlockImpl.h"

#include <algorithm>
#include <iterator>

template class ZelmModelBlock<ZelmOrvanePartsModel, ZelmOrvanePartsParams, ZelmOrvanePartsData>;

#define ZELM_MODEL ZelmOrvanePartsModel
#define ZELM_CELL_ROWS "device/ZelmOrvanePartsCells.def"
#include "framework/ZelmCellBodies.inc"

namespace {

struct Series {
    std::string_view name;
    std::string_view key; // of DEVICE_DATA
};

// The last one serves every other name.
constexpr Series kSeries[] = {{"Halden Axis Series", "FAMILY_AXIS_SERIES_DATA"},
                              {"Halden Rim Series", "FAMILY_RIM_SERIES_DATA"},
                              {"Halden Wave Series", "FAMILY_WAVE_SERIES_DATA"},
                              {"Halden Base Series", "FAMILY_BASE_SERIES_DATA"},
                              {"Halden Crest Series", "FAMILY_CREST_SERIES_DATA"}};

// FIND counts from 0 and the cuts subtract 1 as if it counted from 1, so they end one character short of the
// underscore; kept: the first keys of RESOURCE_DATA have the form that these cuts give.
std::string leftOfUnderscore(const std::string& text)
{
    return ZelmHelperUtils::LEFT(text, ZelmHelperUtils::FIND("_", text, 0) - 1);
}

} // namespace

void ZelmOrvanePartsModel::pullOutputs(Params& params, const Data& data) const
{
    viewIsPartSupported(params, data);
    viewDevicePackage(params, data);
    calculateResourceCount(params, data);
}

std::string_view ZelmOrvanePartsModel::viewDevice(Params& params, const Data& data) const
{
    return once(params[Params::DEVICE], [&] { return leftOfUnderscore(getPartSelection(params, data)); });
}

std::string_view ZelmOrvanePartsModel::viewRightOfDevice(Params& params, const Data& data) const
{
    return once(params[Params::RIGHT_OF_DEVICE], [&] {
        const std::string part = getPartSelection(params, data);
        return ZelmHelperUtils::RIGHT(part, ZelmHelperUtils::LEN(part) - ZelmHelperUtils::FIND("_", part, 0));
    });
}

std::string_view ZelmOrvanePartsModel::viewPackage(Params& params, const Data& data) const
{
    // The text begins with the underscore itself, so the cut is of length -1 and gives nothing.
    return once(params[Params::PACKAGE], [&] { return leftOfUnderscore(calculateRightOfDevice(params, data)); });
}

std::string_view ZelmOrvanePartsModel::viewDevicePackage(Params& params, const Data& data) const
{
    return once(params[Params::DEVICE_PACKAGE], [&] {
        const std::string device = calculateDevice(params, data);
        const std::string_view package = viewPackage(params, data);
        return device + "_" + std::string(package);
    });
}

std::string_view ZelmOrvanePartsModel::viewIsPartSupported(Params& params, const Data& data) const
{
    return once(params[Params::IS_PART_SUPPORTED], [&] {
        const std::string_view family = viewDeviceFamily(params, data);
        const std::string_view part = viewPartSelection(params, data);
        const auto* const last = std::end(kSeries) - 1;
        const auto* const series =
            std::find_if(std::begin(kSeries), last, [&](const Series& row) { return row.name == family; });
        return ZelmHelperUtils::IFERROR(data.findDeviceData(series->key, part, ""), "No");
    });
}

int ZelmOrvanePartsModel::calculateResourceCount(Params& params, const Data& data) const
{
    return once(params[Params::RESOURCE_COUNT], [&] {
        const std::string_view devicePackage = viewDevicePackage(params, data);
        const std::string_view resourceType = viewResourceType(params, data);
        return ZelmHelperUtils::IFERROR(data.findResourceData(devicePackage, resourceType), -1);
    });
}
