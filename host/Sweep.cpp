#include "host/Sweep.h"

#include "host/Error.h"
#include "host/Estimate.h"
#include "host/Json.h"
#include "host/Terminal.h"
#include "host/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <map>
#include <optional>

namespace zelm::host {

namespace {

constexpr std::size_t kMostPoints = 100000;

struct Variation {
    std::string path;
    std::vector<Json> values;
};

struct Point {
    std::vector<Json> values; // one of each variation
    Estimate estimate;
};

std::optional<double> number(std::string_view text)
{
    double value = 0.0;
    const char* end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, value);
    return parsed.ec == std::errc() && parsed.ptr == end && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

// What a sweep's number is in a design: 4 rather than 4.0 where it is whole, for counts.
Json plain(double value)
{
    constexpr double exactUpTo = 9007199254740992.0; // 2^53
    return std::fabs(value) < exactUpTo && value == std::floor(value) ? Json(static_cast<std::int64_t>(value))
                                                                      : Json(value);
}

[[noreturn]] void fail(const std::string& variation, const std::string& message)
{
    throw Error(fmt::format("--vary {}: {}", variation, message));
}

std::vector<Json> range(const std::string& variation, double from, double to, double step)
{
    const double steps = (to - from) / step;
    if (!(steps >= 0.0))
        fail(variation, "the step doesn't lead from the first value to the last");
    if (!(steps < static_cast<double>(kMostPoints)))
        fail(variation, fmt::format("more than {} values", kMostPoints));
    constexpr double tolerance = 1e-9; // 0:1:0.1 has 11 values, whatever ten tenths add up to
    std::vector<Json> values;
    for (std::size_t i = 0; static_cast<double>(i) <= steps + tolerance; ++i) {
        // Rounded to what a person would write, so that 3 x 0.1 is 0.3.
        values.push_back(plain(std::stod(fmt::format("{:.12g}", from + static_cast<double>(i) * step))));
    }
    return values;
}

// The place in the design that a path names. What isn't there yet comes to be; the reading of the design then tells
// whether it may.
Json& at(Json& root, const std::string& path, const std::string& variation)
{
    Json* here = &root;
    std::size_t next = 0;
    while (next < path.size()) {
        const std::size_t end = std::min(path.find_first_of(".[", next), path.size());
        if (const std::string field = path.substr(next, end - next); !field.empty()) {
            if (!here->is_object() && !here->is_null())
                fail(variation, fmt::format("\"{}\" isn't a field of an object", field));
            here = &(*here)[field];
        }
        next = end;
        if (next < path.size() && path[next] == '[') {
            const std::size_t close = path.find(']', next);
            if (close == std::string::npos)
                fail(variation, "a ']' is missing");
            const std::string wanted = path.substr(next + 1, close - next - 1);
            if (!here->is_array())
                fail(variation, fmt::format("\"{}\" isn't a list", path.substr(0, next)));
            std::vector<std::string> names;
            Json* found = nullptr;
            for (Json& element : *here) {
                const Json name = element.is_object() ? element.value("name", element.value("block", Json())) : Json();
                if (fmt::format("{}", names.size()) == wanted || (name.is_string() && name == wanted))
                    found = &element;
                names.push_back(name.is_string() ? name.get<std::string>() : "");
            }
            if (!found)
                fail(variation, fmt::format("\"{}\" has no element {}{}", path.substr(0, next), wanted,
                                            suggestion(wanted, names)));
            here = found;
            next = close + 1;
        }
        if (next < path.size() && path[next] == '.')
            ++next;
    }
    return *here;
}

Variation parse(const std::string& text, const Json& root)
{
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0)
        fail(text, "expected PATH=FROM:TO:STEP or PATH=VALUE,VALUE,...");
    Variation variation{text.substr(0, equals), {}};
    const std::string list = text.substr(equals + 1);
    Json copy = root;
    const bool isText = at(copy, variation.path, text).is_string() || variation.path.starts_with("device.");
    const std::vector<std::string> ends = split(list, ':');
    if (ends.size() == 3 && !isText) {
        const auto from = number(ends[0]);
        const auto to = number(ends[1]);
        const auto step = number(ends[2]);
        if (!from || !to || !step || *step == 0.0)
            fail(text, "expected numbers in FROM:TO:STEP, and a step that isn't 0");
        variation.values = range(text, *from, *to, *step);
        return variation;
    }
    for (const std::string& word : split(list, ',')) {
        if (word.empty())
            fail(text, "a value is empty");
        const auto value = isText ? std::nullopt : number(word);
        variation.values.push_back(value ? plain(*value) : Json(word));
    }
    return variation;
}

std::string shown(const Json& value)
{
    return value.is_string() ? value.get<std::string>() : value.dump();
}

std::vector<Point> run(const Json& root, const JsonSource& source, const std::vector<Variation>& variations)
{
    std::size_t count = 1;
    for (const Variation& variation : variations) {
        count *= variation.values.size();
        if (count > kMostPoints)
            throw Error(fmt::format("the variations make more than {} points", kMostPoints));
    }
    Progress progress("sweeping", count);
    std::vector<Point> points;
    for (std::size_t index = 0; index < count; ++index) {
        Json changed = root;
        Point point;
        std::vector<std::string> settings;
        std::size_t rest = count;
        for (const Variation& variation : variations) {
            rest /= variation.values.size();
            const Json& value = variation.values[index / rest % variation.values.size()];
            at(changed, variation.path, variation.path) = value;
            point.values.push_back(value);
            settings.push_back(fmt::format("{} = {}", variation.path, shown(value)));
        }
        try {
            point.estimate = estimate(readDesign(changed, source));
        } catch (const Error& error) {
            throw Error(fmt::format("{} (at {})", error.what(), fmt::join(settings, ", ")));
        }
        points.push_back(std::move(point));
        progress.step();
    }
    return points;
}

std::vector<std::string> brokenBudgets(const Estimate& estimate)
{
    std::vector<std::string> names;
    for (const BudgetResult& budget : estimate.budgets) {
        if (budget.broken())
            names.push_back(budget.name);
    }
    return names;
}

std::string table(const std::vector<Variation>& variations, const std::vector<Point>& points)
{
    const Paint paint(takesColour(stdout));
    std::vector<std::string> header;
    for (const Variation& variation : variations)
        header.push_back(variation.path);
    header.emplace_back("Dynamic");
    for (const Side& side : points.front().estimate.sides) {
        const std::string process = side.process.empty() ? "" : side.process + " ";
        header.insert(header.end(), {process + "static", process + "total", process + "junction"});
    }
    const bool budgets = !points.front().estimate.budgets.empty();
    if (budgets)
        header.emplace_back("Budgets");
    TextTable rows(header);
    std::map<std::string, std::size_t> warnings;
    for (const Point& point : points) {
        std::vector<std::string> cells;
        for (const Json& value : point.values)
            cells.push_back(shown(value));
        cells.push_back(si(point.estimate.dynamicWatts, "W"));
        for (const Side& first : points.front().estimate.sides) { // the order changes with device.process
            const auto found = std::find_if(point.estimate.sides.begin(), point.estimate.sides.end(),
                                            [&](const Side& side) { return side.process == first.process; });
            const Side& side = found == point.estimate.sides.end() ? point.estimate.side() : *found;
            cells.insert(cells.end(), {si(side.staticWatts, "W"), si(side.totalWatts, "W"),
                                       side.settles() ? fmt::format("{:.2f} C", side.junction) : paint.bad("runaway")});
        }
        if (budgets) {
            const std::vector<std::string> broken = brokenBudgets(point.estimate);
            cells.push_back(broken.empty() ? paint.good("kept")
                                           : paint.bad(fmt::format("BROKEN: {}", fmt::join(broken, ", "))));
        }
        rows.row(cells);
        for (const std::string& warning : point.estimate.warnings)
            ++warnings[warning];
    }
    std::string text = rows.text();
    for (const auto& [warning, times] : warnings)
        text += paint.warning(fmt::format("- {} (at {} of {} points)", warning, times, points.size())) + "\n";
    return text;
}

Json json(const std::vector<Variation>& variations, const std::vector<Point>& points)
{
    Json list = Json::array();
    for (const Point& point : points) {
        Json entry{{"settings", Json::object()}};
        for (std::size_t i = 0; i < variations.size(); ++i)
            entry["settings"][variations[i].path] = point.values[i];
        addNumber(entry, "dynamicWatts", point.estimate.dynamicWatts);
        addNumber(entry, "offchipWatts", point.estimate.offchipWatts);
        entry["sides"] = Json::array();
        for (const Side& side : point.estimate.sides) {
            Json each{{"process", side.process}};
            addNumber(each, "junctionTemperature", side.junction);
            addNumber(each, "staticWatts", side.staticWatts);
            addNumber(each, "totalWatts", side.totalWatts);
            each["settles"] = side.settles();
            entry["sides"].push_back(std::move(each));
        }
        entry["budgetsBroken"] = brokenBudgets(point.estimate);
        entry["warnings"] = point.estimate.warnings;
        list.push_back(std::move(entry));
    }
    return list;
}

std::string csv(const std::vector<Variation>& variations, const std::vector<Point>& points)
{
    std::string text;
    for (const Variation& variation : variations)
        text += escapedCsv(variation.path) + ",";
    text += "process,dynamic_w,static_w,total_w,junction_c,settles,budgets_broken\n";
    for (const Point& point : points) {
        std::string settings;
        for (const Json& value : point.values)
            settings += escapedCsv(shown(value)) + ",";
        for (const Side& side : point.estimate.sides)
            text += fmt::format("{}{},{},{},{},{},{},{}\n", settings, side.process, point.estimate.dynamicWatts,
                                side.staticWatts, side.totalWatts, side.junction, side.settles() ? "yes" : "no",
                                escapedCsv(fmt::format("{}", fmt::join(brokenBudgets(point.estimate), "; "))));
    }
    return text;
}

} // namespace

std::string sweep(const std::string& designFile, const std::vector<std::string>& variations, SweepFormat format)
{
    JsonSource source;
    const Json root = readJson(designFile, source);
    std::vector<Variation> parsed;
    for (const std::string& variation : variations)
        parsed.push_back(parse(variation, root));
    const std::vector<Point> points = run(root, source, parsed);
    switch (format) {
    case SweepFormat::json:
        return json(parsed, points).dump(2) + "\n";
    case SweepFormat::csv:
        return csv(parsed, points);
    case SweepFormat::table:
        break;
    }
    return table(parsed, points);
}

} // namespace zelm::host
