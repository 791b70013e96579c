#include "host/study/Diff.h"

#include "host/base/Error.h"
#include "host/base/Files.h"
#include "host/base/Json.h"
#include "host/base/Terminal.h"
#include "host/blocks/DataDirectory.h"
#include "host/commands/Command.h"
#include "host/commands/PageFile.h"
#include "host/report/Report.h"
#include "host/report/StudyReports.h"

#include "host/estimate/Estimate.h"

#include <fmt/format.h>

#include <array>
#include <cstdio>
#include <sys/wait.h>
#include <unistd.h>

namespace zelm::host {

namespace {

constexpr char kResultComes = '=';
constexpr char kErrorComes = '!';

// What a design comes to with other data. A process loads its data once: this is the work of another one.
Json resultUnder(const std::string& directories, const std::string& design)
{
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0)
        throw Error("no pipe can be had for --old-datadir");
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child < 0)
        throw Error("no process can be had for --old-datadir");
    if (child == 0) {
        ::close(ends[0]);
        std::string answer;
        try {
            chooseDataDirectory(directories);
            answer = kResultComes + compactJson(jsonReport(estimate(readDesign(design))));
        } catch (const std::exception& error) {
            answer = kErrorComes + std::string(error.what());
        }
        const bool said = writeAll(ends[1], answer);
        ::_exit(said ? kSuccess : kUserError);
    }
    ::close(ends[1]);
    std::string answer;
    std::array<char, 65536> some{};
    for (ssize_t count = 0; (count = ::read(ends[0], some.data(), some.size())) > 0;)
        answer.append(some.data(), static_cast<std::size_t>(count));
    ::close(ends[0]);
    ::waitpid(child, nullptr, 0);
    if (!answer.starts_with(kResultComes))
        throw Error(fmt::format("--old-datadir: {}", answer.empty() ? "no estimate came back" : answer.substr(1)));
    return Json::parse(answer.substr(1));
}

} // namespace

Action declareDiff(Options& options)
{
    const std::string& before =
        options.required("old", "The design before (JSON), or what estimate --json printed then");
    const std::string& after = options.required("new", "The design now (JSON)");
    const std::optional<std::string>& dataBefore =
        options.value("--old-datadir", "DIR", "The data directory before, as --datadir is now");
    const std::optional<std::string>& failAbove =
        options.value("--fail-above", "LIMIT", "End with exit code 1 if the total grows by more than that: 2%, 500mW");
    const bool& json = options.flag("--json", "Print JSON");
    const std::optional<std::string>& html = options.text("--html", "Write waterfall charts and tables to this file");
    return [&](Run& run) {
        const std::optional<Allowance> allowed = failAbove ? std::optional(allowance(*failAbove)) : std::nullopt;
        const std::optional<Json> earlier = dataBefore ? std::optional(resultUnder(*dataBefore, before)) : std::nullopt;
        checkPageFile(html, {before, after});
        const Diff result = diff({before, after, earlier ? &*earlier : nullptr});
        run.out += json ? jsonText(diffJson(result)) : diffText(result);
        if (html)
            writeFile(*html, diffHtml(result));
        if (!allowed || !allowed->isExceededBy(result.total()))
            return kSuccess;
        complain(fmt::format("{} grows from {} to {}, which is more than {}", result.total().quantity.name(),
                             amountText(result.total().before, "W"), amountText(result.total().after, "W"),
                             *failAbove));
        return kBudgetBroken;
    };
}

} // namespace zelm::host
