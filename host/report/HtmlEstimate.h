#pragma once

#include "host/report/ExplainReport.h"
#include "host/report/Report.h"

#include <string>

namespace zelm::host {

/// What the HTML report says without scripts: these draw charts, sort and explain. All is HTML.
struct EstimateHtml {
    std::string lead;  ///< a line below the title
    std::string links; ///< to the sections, as a list's items
    std::string body;
    std::string foot;
};

EstimateHtml estimateHtml(const Estimate& estimate, const Provenance& provenance, const PageExplanations& told);

} // namespace zelm::host
