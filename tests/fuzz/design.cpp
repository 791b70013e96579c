// A design file: reading it, the estimate, and every report of it.

#include "Fuzz.h"

#include "host/base/Json.h"
#include "host/design/Design.h"
#include "host/estimate/Estimate.h"
#include "host/report/Report.h"

using namespace zelm;

void zelm::fuzz::run(const std::uint8_t* bytes, std::size_t size)
{
    fuzz::useShippedData();
    fuzz::orError([&] {
        const host::Estimate estimate = host::estimate(host::parseDesign("design.json", fuzz::textOf(bytes, size)));
        host::textReport(estimate, true);
        host::jsonText(host::jsonReport(estimate));
        host::csvReport(estimate);
        host::junitReport(estimate);
        host::htmlReport(estimate, {});
    });
}
