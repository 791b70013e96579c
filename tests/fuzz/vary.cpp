// The arguments of `--vary`, one a line, over a small design.

#include "Fuzz.h"

#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/study/Sweep.h"

#include <span>
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

} // namespace

void zelm::fuzz::run(const std::uint8_t* bytes, std::size_t size)
{
    static const fuzz::Scratch scratch;
    static const std::string design = scratch.write("design.json", kDesign);
    fuzz::useShippedData();
    const std::vector<std::string> variations = host::split(fuzz::textOf(bytes, size), '\n');
    fuzz::orError([&] {
        constexpr std::size_t few = 50; // a sweep of any number of points is legal, and takes long: no finding
        const host::Sweep sweep(design, variations);
        if (sweep.points() > few)
            return;
        const auto words = [](const host::SweepPoint& point) {
            std::string text;
            for (const host::Json& value : point.values)
                text += host::sweepWord(value);
            return text;
        };
        sweep.run({}, words, [](std::span<const host::SweepPoint>, const std::string&) {});
    });
}
