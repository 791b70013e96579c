#include "host/study/Fit.h"

#include "host/base/InOrder.h"
#include "host/base/Json.h"
#include "host/commands/Command.h"
#include "host/report/StudyReports.h"

namespace zelm::host {

Action declareFit(Options& options)
{
    const std::string& design = options.required("design", "The design file (JSON)");
    const std::optional<std::string>& speed =
        options.value("--speed", "GRADE", "Only parts of this speed grade: 1, 2, 3");
    const std::optional<std::string>& temperature =
        options.value("--temperature", "GRADE", "Only parts of this temperature grade: e, i, m or the word");
    const std::optional<std::string>& package = options.value("--package", "NAME", "Only parts in this package");
    const bool& json = options.flag("--json", "Print JSON");
    const unsigned& jobs = options.count("--jobs", "How many parts at once; else as many as there are processors");
    return [&](Run& run) {
        const Fit result =
            fit(design, {speed.value_or(""), temperature.value_or(""), package.value_or(""), threadsFor(jobs)});
        run.out += json ? jsonText(fitJson(result)) : fitText(result, run.verbose, Paint(takesColour(stdout)));
        return kSuccess;
    };
}

} // namespace zelm::host
