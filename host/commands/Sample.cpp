#include "host/study/Sample.h"

#include "host/base/Error.h"
#include "host/base/Files.h"
#include "host/base/InOrder.h"
#include "host/base/Interrupt.h"
#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/base/Units.h"
#include "host/commands/Command.h"
#include "host/commands/PageFile.h"
#include "host/report/SampleReport.h"

#include <fmt/format.h>

#include <charconv>

namespace zelm::host {

namespace {

std::uint64_t wholeOf(const std::string& option, const std::string& text, std::uint64_t least, std::uint64_t most)
{
    std::uint64_t number = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (failure != std::errc() || end != text.data() + text.size() || number < least || number > most)
        throw Error(fmt::format("{} {}: expected a whole number, {} to {}", option, abbreviated(text), least, most));
    return number;
}

SampleMethod methodOf(const std::string& word)
{
    std::vector<std::string> known;
    for (const SampleMethod method : {SampleMethod::sobol, SampleMethod::latin, SampleMethod::random}) {
        known.emplace_back(methodWord(method));
        if (word == known.back())
            return method;
    }
    throw Error(fmt::format("--method {}: expected {}{}", abbreviated(word), orList(known), suggestion(word, known)));
}

// "1%" or 0.01
double errorOf(const std::string& text)
{
    try {
        const auto written = writtenQuantity(text);
        const std::optional<double> share = written ? std::optional(inUnit(*written, "")) : plainNumber(text);
        if (share && *share > 0.0 && *share < 1.0)
            return *share;
    } catch (const Error& error) {
        throw Error(fmt::format("--until-error {}: {}", abbreviated(text), error.what()));
    }
    throw Error(fmt::format("--until-error {}: expected a share above 0 and below 100%: 1%", abbreviated(text)));
}

struct SampleOptions {
    const std::optional<std::string>& points;
    const std::optional<std::string>& seed;
    const std::optional<std::string>& method;
    const std::optional<std::string>& of;
    const std::optional<std::string>& untilError;
    const bool& exactData;
    const unsigned& jobs;

    SampleWish wish() const
    {
        constexpr std::uint64_t mostPoints = 1000000000;
        SampleWish wish;
        wish.seed = seed ? wholeOf("--seed", *seed, 0, std::numeric_limits<std::uint64_t>::max()) : wish.seed;
        wish.method = method ? methodOf(*method) : wish.method;
        if (untilError) {
            constexpr std::size_t most = 1048576;
            wish.untilError = errorOf(*untilError);
            wish.points = most;
        }
        if (wish.untilError && wish.method == SampleMethod::latin)
            throw Error("--method latin has to know its points before it begins: it doesn't go with --until-error");
        wish.points = points ? wholeOf("--points", *points, 2, mostPoints) : wish.points;
        wish.of = of.value_or(wish.of);
        wish.dataUncertainty = !exactData;
        wish.jobs = threadsFor(jobs);
        return wish;
    }
};

} // namespace

Action declareSample(Options& options)
{
    const std::string& design = options.required("design", "The design file (JSON), with distributions for values");
    const SampleOptions how{
        options.value("--points", "COUNT", "How many estimates; else 4096, or with --until-error at most 1048576"),
        options.value("--seed", "NUMBER", "Which draw: the same numbers for the same seed; else 1"),
        options.value("--method", "METHOD", "sobol (unless given), latin or random"),
        options.value("--of", "QUANTITY",
                      "Whose band is laid to the inputs: total (unless given), junction@MAX, "
                      "rail:VCCINT"),
        options.value("--until-error", "SHARE", "End once the totals' quantiles are known this well: 1%"),
        options.flag("--no-data-uncertainty", "Take the data as exact"),
        options.count("--jobs", "How many points at once; else as many as there are processors")};
    const bool& json = options.flag("--json", "Print JSON");
    const bool& csv = options.flag("--csv", "Print CSV, a line for each point");
    options.exclude("--csv", "--json");
    const std::optional<std::string>& html = options.text("--html", "Write histograms, bands and tables to this file");
    return [&, how](Run& run) {
        checkPageFile(html, {design});
        SampleWish wish = how.wish();
        wish.barAfter = run.barAfter;
        const Interrupt interrupt;
        Sampling sampling(design, wish);
        if (csv)
            run.print(sampleCsvHeader(sampling.plan()));
        const Sample sample =
            sampling.run([&](const SamplePoint& point) { return csv ? sampleCsvLine(point) : std::string(); },
                         [&](std::string_view text) {
                             if (csv)
                                 run.print(text);
                         });
        if (const int signal = Interrupt::signal())
            return kSignalled + signal;
        if (!csv)
            run.out += json ? jsonText(sampleJson(sample)) : sampleText(sample, Paint(takesColour(stdout)));
        if (html)
            writeFile(*html, sampleHtml(sample));
        return kSuccess;
    };
}

} // namespace zelm::host
