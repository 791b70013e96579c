// The arguments of `--vary`, one a line, over a small design.

#include "Fuzz.h"

#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/study/Sweep.h"

#include <algorithm>
#include <vector>

using namespace zelm;

namespace {

constexpr const char* kDesign = R"({
  "name": "small",
  "device": {"part": "ZQ4410", "process": "TYP"},
  "environment": {"ambientTemperature": 25, "thetaJA": 1.5},
  "rails": {"VCCINT": 0.8},
  "groups": [
    {"block": "Signal", "name": "wires", "inputs": {"SIGNAL_COUNT": 1000, "DRIVER_TYPE": "FF"}},
    {"block": "Bram", "name": "buffers", "count": 2, "inputs": {"MODE": "BLKM36"}}
  ]
}
)";

// A sweep of a hundred thousand points is legal, and takes long: no finding. Counts no fewer than the sweep has.
bool hasFewPoints(const std::vector<std::string>& variations)
{
    constexpr double few = 50.0;
    double points = 1.0;
    for (const std::string& variation : variations) {
        const std::string list = variation.substr(std::min(variation.find('=') + 1, variation.size()));
        const std::vector<std::string> ends = host::split(list, ':');
        double values = static_cast<double>(host::split(list, ',').size());
        if (ends.size() == 3) {
            const double steps = (std::atof(ends[1].c_str()) - std::atof(ends[0].c_str())) / std::atof(ends[2].c_str());
            values = std::max(values, steps > 100000.0 ? 1.0 : steps + 2.0); // more are refused
        }
        points *= values;
    }
    return points <= few;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    static const fuzz::Scratch scratch;
    static const std::string design = scratch.write("design.json", kDesign);
    fuzz::useShippedData();
    const std::vector<std::string> variations = host::split(fuzz::textOf(bytes, size), '\n');
    if (!hasFewPoints(variations))
        return 0;
    fuzz::orError([&] {
        for (const host::SweepPoint& point : host::sweep(design, variations, std::chrono::hours(1)).points) {
            for (const host::Json& value : point.values)
                host::sweepWord(value);
        }
    });
    return 0;
}
