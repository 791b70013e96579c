#include "host/study/Explain.h"

#include "host/commands/Command.h"
#include "host/estimate/Estimate.h"
#include "host/report/ExplainReport.h"

namespace zelm::host {

Action declareExplain(Options& options)
{
    const std::string& design = options.required("design", "The design file (JSON)");
    const std::string& what = options.required(
        "what", "total, dynamic, static, junction, rail:NAME, group:NAME or group:NAME.CELL, each with @TYP or @MAX");
    const unsigned& depth = options.count("--depth", "How many levels down; else to what was typed or characterised");
    const bool& json = options.flag("--json", "Print JSON");
    const bool& keepGoing =
        options.flag("--keep-going", "Warn of inputs that have no row in the data, and explain the rest");
    return [&](Run& run) {
        const Estimate result = estimate(readDesign(design), Curves::none, keepGoing ? Gaps::warned : Gaps::refused);
        Explanation explanation(result);
        const std::size_t root = explanation.idOf(namedQuantity(what, result));
        const std::size_t levels = depth > 0 ? depth : kWholeDepth;
        run.out = json ? explanationJson(explanation, root, levels, result.design.name)
                       : explanationText(explanation, root, levels);
        return kSuccess;
    };
}

} // namespace zelm::host
