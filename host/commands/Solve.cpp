#include "host/study/Solve.h"

#include "host/base/InOrder.h"
#include "host/base/Json.h"
#include "host/commands/Command.h"
#include "host/report/StudyReports.h"

namespace zelm::host {

Action declareSolve(Options& options)
{
    const std::string& design = options.required("design", "The design file (JSON)");
    const std::string& vary =
        options.requiredValue("--vary", "PATH=LO:HI", "What varies, and between which values: rails.VCCINT=0.7:0.9");
    const std::vector<std::string>& until = options.repeated(
        "--until", "A limit that is to be kept: \"total@MAX <= 40 W\", \"junction <= 95 C\", \"rail:VCCINT <= 30 A\"; "
                   "repeat it for several");
    const bool& json = options.flag("--json", "Print JSON");
    const unsigned& jobs = options.count("--jobs", "How many points at once; else as many as there are processors");
    return [&](Run& run) {
        const Solution solution = solve(design, {vary, until, threadsFor(jobs)});
        run.out += json ? jsonText(solveJson(solution)) : solveText(solution, Paint(takesColour(stdout)));
        return kSuccess;
    };
}

} // namespace zelm::host
