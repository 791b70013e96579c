#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/report/Report.h"
#include "host/report/StudyReports.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

namespace zelm::host {

namespace {

std::vector<std::string> namesOfLacking(const FitPart& part)
{
    std::vector<std::string> names;
    for (const Utilisation& use : part.lacking)
        names.push_back(use.resource);
    return names;
}

std::string verdictOf(const FitPart& part, bool hasBudgets, const Paint& paint)
{
    if (!part.why.empty())
        return paint.bad("can't be estimated");
    std::vector<std::string> words;
    if (!part.lacking.empty())
        words.push_back(fmt::format("short of {}", fmt::join(namesOfLacking(part), ", ")));
    constexpr std::ptrdiff_t few = 3;
    const auto count = static_cast<std::ptrdiff_t>(part.broken.size());
    if (count > 0)
        words.push_back(fmt::format("breaks {}{}",
                                    fmt::join(part.broken.begin(), part.broken.begin() + std::min(few, count), ", "),
                                    count > few ? fmt::format(" and {} more", count - few) : ""));
    if (!words.empty())
        return paint.bad(shown(fmt::format("{}", fmt::join(words, "; "))));
    return paint.good(hasBudgets ? "fits and keeps everything" : "fits");
}

} // namespace

std::string fitText(const Fit& fit, bool verbose, const Paint& paint)
{
    std::vector<std::string> header{"Part", ""};
    const auto estimated =
        std::find_if(fit.parts.begin(), fit.parts.end(), [](const FitPart& part) { return !part.sides.empty(); });
    const std::size_t sides = estimated == fit.parts.end() ? 0 : estimated->sides.size();
    for (std::size_t i = 0; i < sides; ++i) {
        const std::string& process = estimated->sides[i].process;
        header.insert(header.end(), {process + " static", process + " total", process + " junction"});
    }
    header.emplace_back("Verdict");
    TextTable table(header);
    for (const FitPart& part : fit.parts) {
        std::vector<std::string> row{part.part, part.isDesigns ? "<- the design's" : ""};
        for (std::size_t i = 0; i < sides; ++i) {
            const FitSide side =
                part.sides.empty() ? FitSide{"", std::nan(""), std::nan(""), std::nan("")} : part.sides[i];
            row.insert(row.end(),
                       {si(side.staticWatts, "W"), si(side.totalWatts, "W"), amountText(side.junction, "C")});
        }
        row.push_back(verdictOf(part, fit.hasBudgets, paint));
        table.row(row);
    }
    const auto good = std::count_if(fit.parts.begin(), fit.parts.end(),
                                    [](const FitPart& part) { return part.fits() && part.keeps(); });
    std::string text =
        fmt::format("{}\n{} of {} parts hold the design{}\n\n{}", paint.title(shown(fit.design)), good,
                    fit.parts.size(), fit.hasBudgets ? " and keep its budgets and limits" : "", table.text());
    for (const FitPart& part : fit.parts) {
        if (!verbose)
            break;
        if (!part.why.empty())
            text += shown(fmt::format("{}: {}", part.part, part.why)) + "\n";
        for (const std::string& note : part.notes)
            text += shown(fmt::format("{}: {}", part.part, note)) + "\n";
    }
    return text;
}

Json fitJson(const Fit& fit)
{
    Json parts = Json::array();
    for (const FitPart& part : fit.parts) {
        Json each{{"part", part.part},          {"device", part.device},       {"package", part.package},
                  {"own", part.isDesigns},      {"fits", part.fits()},         {"short", namesOfLacking(part)},
                  {"shortages", Json::array()}, {"totalWatts", Json::object()}};
        for (const Utilisation& use : part.lacking)
            each["shortages"].push_back({{"resource", use.resource}, {"used", use.used}, {"available", use.available}});
        for (const char* bySide : {"staticWatts", "junction"})
            each[bySide] = Json::object();
        for (const FitSide& side : part.sides) {
            addAmount(each["totalWatts"], side.process, side.totalWatts);
            addAmount(each["staticWatts"], side.process, side.staticWatts);
            addAmount(each["junction"], side.process, side.junction);
        }
        each["keeps"] = part.keeps();
        each["broken"] = part.broken;
        each["warnings"] = part.notes;
        if (!part.why.empty())
            each["why"] = part.why;
        parts.push_back(std::move(each));
    }
    return {{"format", kJsonFormat}, {"name", fit.design}, {"part", fit.part}, {"parts", std::move(parts)}};
}

} // namespace zelm::host
