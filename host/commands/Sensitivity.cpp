#include "host/study/Sensitivity.h"

#include "host/base/Error.h"
#include "host/base/Files.h"
#include "host/base/InOrder.h"
#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/base/Units.h"
#include "host/commands/Command.h"
#include "host/commands/PageFile.h"
#include "host/report/StudyReports.h"

#include <fmt/format.h>

namespace zelm::host {

namespace {

// "10%" or 0.1
double spanOf(const std::string& text)
{
    try {
        const auto written = writtenQuantity(text);
        const std::optional<double> share = written ? std::optional(inUnit(*written, "")) : plainNumber(text);
        if (share && *share > 0.0 && *share <= 1.0)
            return *share;
    } catch (const Error& error) {
        throw Error(fmt::format("--span {}: {}", abbreviated(text), error.what()));
    }
    throw Error(fmt::format("--span {}: expected a share above 0 and up to 100%: 10%", abbreviated(text)));
}

} // namespace

Action declareSensitivity(Options& options)
{
    const std::string& design = options.required("design", "The design file (JSON)");
    const std::optional<std::string>& of = options.value(
        "--of", "QUANTITY", "What to look at: total (unless given), junction@MAX, rail:VCCINT, group:NAME");
    const std::optional<std::string>& span =
        options.value("--span", "SHARE", "How far each number moves, as a share of itself; else 10%");
    const unsigned& top = options.count("--top", "Only the first so many inputs; else 20, or all as JSON");
    const bool& json = options.flag("--json", "Print JSON");
    const std::optional<std::string>& html = options.text("--html", "Write a tornado chart and tables to this file");
    const unsigned& jobs = options.count("--jobs", "How many inputs at once; else as many as there are processors");
    return [&](Run& run) {
        constexpr std::size_t few = 20;
        checkPageFile(html, {design});
        const Sensitivity all =
            sensitivity(design, {of.value_or("total"), spanOf(span.value_or("10%")), threadsFor(jobs)});
        const std::optional<std::size_t> first = top > 0 ? std::optional<std::size_t>(top) : std::nullopt;
        run.out += json ? jsonText(sensitivityJson(all, first)) : sensitivityText(all, first.value_or(few));
        if (html)
            writeFile(*html, sensitivityHtml(all, first.value_or(few)));
        return kSuccess;
    };
}

} // namespace zelm::host
