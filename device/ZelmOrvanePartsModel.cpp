#include "device/ZelmOrvanePartsModel.h"

#include "framework/ZelmModelBlockImpl.h"

#include <algorithm>
#include <iterator>

#define ZELM_MODEL ZelmOrvanePartsModel
#define ZELM_CELL_ROWS "device/ZelmOrvanePartsCells.def"
#define ZELM_TABLE_ROWS "device/ZelmOrvanePartsTables.def"

namespace {

using zelm::Key;

struct Series {
    std::string_view name;
    Key key; // of DEVICE_DATA
};

// The last one serves every other name.
constexpr Series kSeries[] = {{"Halden Axis Series", "FAMILY_AXIS_SERIES_DATA"},
                              {"Halden Rim Series", "FAMILY_RIM_SERIES_DATA"},
                              {"Halden Wave Series", "FAMILY_WAVE_SERIES_DATA"},
                              {"Halden Base Series", "FAMILY_BASE_SERIES_DATA"},
                              {"Halden Crest Series", "FAMILY_CREST_SERIES_DATA"}};

} // namespace

struct ZelmOrvanePartsModel::Sheet : zelm::Sheet<ZelmOrvanePartsModel> {
#include "framework/ZelmAccessors.inc"

    void pullOutputs() const
    {
        IsPartSupported();
        DevicePackage();
        ResourceCount();
    }

    // FIND counts from 0 and the cuts subtract 1 as if it counted from 1, so they end one character short of the
    // underscore; kept: the first keys of RESOURCE_DATA have the form that these cuts give.
    static std::string_view leftOfUnderscore(std::string_view text)
    {
        return zelm::left(text, zelm::find("_", text, 0) - 1);
    }

    std::string_view computeDevice() const
    {
        return leftOfUnderscore(PartSelection());
    }

    std::string_view computeRightOfDevice() const
    {
        const Text part = PartSelection();
        return zelm::right(part, zelm::length(part) - zelm::find("_", part, 0));
    }

    std::string_view computePackage() const
    {
        // The text begins with the underscore itself, so the cut is of length -1 and gives nothing.
        return leftOfUnderscore(RightOfDevice());
    }

    zelm::Composed computeDevicePackage() const
    {
        const Text device = Device();
        const Text package = Package();
        return zelm::Composed{device, "_", package};
    }

    std::string_view computeIsPartSupported() const
    {
        const Text family = DeviceFamily();
        const Key& part = PartSelection();
        const auto* const last = std::end(kSeries) - 1;
        const auto* const series =
            std::find_if(std::begin(kSeries), last, [&](const Series& row) { return row.name == family; });
        return IFERROR(findDeviceData(series->key, part, ""), "No");
    }

    int computeResourceCount() const
    {
        const Key& devicePackage = DevicePackage();
        const Key& resourceType = ResourceType();
        return IFERROR(findResourceData(devicePackage, resourceType), -1);
    }
};

#include "framework/ZelmModelBodies.inc"
