#include "host/study/Sweep.h"

#include "host/base/Error.h"
#include "host/base/Json.h"
#include "host/base/Terminal.h"
#include "host/base/Text.h"
#include "host/base/Units.h"
#include "host/design/Include.h"
#include "host/design/Parameters.h"
#include "host/design/Place.h"
#include "host/estimate/Estimate.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>

namespace zelm::host {

namespace {

constexpr std::size_t kMostPoints = 100000;

// What a sweep's number is in a design: 4 rather than 4.0 where it is whole, for counts.
Json plain(double value)
{
    constexpr double exactUpTo = 9007199254740992.0; // 2^53
    return std::fabs(value) < exactUpTo && value == std::floor(value) ? Json(static_cast<std::int64_t>(value))
                                                                      : Json(value);
}

[[noreturn]] void fail(const std::string& variation, const std::string& message)
{
    throw Error(fmt::format("--vary {}: {}", abbreviated(variation, 200), message));
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

// The place in the design that a variation's path names.
Json& at(Json& root, const std::string& path, const std::string& variation)
{
    try {
        return placeAt(root, path);
    } catch (const Error& error) {
        fail(variation, error.what());
    }
}

// A number of a range, counted in the unit of the first one that has one.
std::optional<double> numberOf(const std::string& text, std::string& unit, const std::string& variation)
{
    try {
        const auto written = writtenQuantity(text);
        if (!written)
            return plainNumber(text);
        if (unit.empty())
            unit = written->unit->symbol;
        return inUnit(*written, unit);
    } catch (const Error& error) {
        fail(variation, error.what());
    }
}

// The unit that a place's value is written with; empty if there is none.
std::string unitOf(const Json& value)
{
    const auto* text = value.get_ptr<const std::string*>();
    try {
        const auto written = text ? writtenQuantity(*text) : std::nullopt;
        return written ? std::string(written->unit->symbol) : std::string();
    } catch (const Error&) {
        return {}; // a word that begins with a number
    }
}

// Whether words stand for the values of a place.
bool takesWords(const Json& value, const std::string& path)
{
    const auto* text = value.get_ptr<const std::string*>();
    return path.starts_with("device.") || (text && !isExpression(*text) && unitOf(value).empty());
}

Variation parse(const std::string& text, const Json& root)
{
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0)
        fail(text, "expected PATH=FROM:TO:STEP or PATH=VALUE,VALUE,...");
    Variation variation{text.substr(0, equals), {}, {}};
    const std::string list = text.substr(equals + 1);
    Json copy = root;
    const Json& before = at(copy, variation.path, text);
    const bool isText = takesWords(before, variation.path);
    if (variation.path.starts_with("parameters."))
        variation.unit = unitOf(before);
    const std::vector<std::string> ends = split(list, ':');
    if (ends.size() == 3 && !isText) {
        const auto from = numberOf(ends[0], variation.unit, text);
        const auto to = numberOf(ends[1], variation.unit, text);
        const auto step = numberOf(ends[2], variation.unit, text);
        if (!from || !to || !step || *step == 0.0)
            fail(text, "expected numbers in FROM:TO:STEP, and a step that isn't 0");
        variation.values = range(text, *from, *to, *step);
        return variation;
    }
    for (const std::string& word : split(list, ',')) {
        if (word.empty())
            fail(text, "a value is empty");
        const auto value = isText ? std::nullopt : plainNumber(word);
        variation.values.push_back(value ? plain(*value) : Json(word));
    }
    return variation;
}

// By index or by name, the last variation of a place would win.
void refuseOnePlaceTwice(const std::vector<Variation>& variations, Json marked)
{
    const auto place = [&](std::size_t i) -> Json& { return at(marked, variations[i].path, variations[i].path); };
    for (std::size_t i = 0; i < variations.size(); ++i)
        place(i) = i;
    for (std::size_t i = 0; i < variations.size(); ++i) {
        if (place(i) != i)
            fail(variations[i].path, "this place varies twice");
    }
}

Json withUnit(const Json& value, const std::string& unit)
{
    return unit.empty() || value.is_string() ? value : Json(fmt::format("{} {}", compactJson(value), unit));
}

std::vector<SweepPoint> run(const Json& root, const JsonSource& source, const std::vector<Variation>& variations,
                            std::chrono::milliseconds barAfter, Gaps gaps)
{
    std::size_t count = 1;
    for (const Variation& variation : variations) {
        count *= variation.values.size();
        if (count > kMostPoints)
            throw Error(fmt::format("the variations make more than {} points", kMostPoints));
    }
    Progress progress("sweeping", count, barAfter);
    std::vector<SweepPoint> points;
    for (std::size_t index = 0; index < count; ++index) {
        Json changed = root;
        SweepPoint point;
        std::vector<std::string> settings;
        std::size_t rest = count;
        for (const Variation& variation : variations) {
            rest /= variation.values.size();
            const Json& value = variation.values[index / rest % variation.values.size()];
            at(changed, variation.path, variation.path) = withUnit(value, variation.unit);
            point.values.push_back(value);
            settings.push_back(fmt::format("{} = {}", variation.path, abbreviated(sweepWord(value))));
        }
        try {
            point.estimate = estimate(readDesign(changed, source), Curves::none, gaps);
        } catch (const Error& error) {
            throw Error(fmt::format("{} (at {})", error.what(), fmt::join(settings, ", ")));
        }
        points.push_back(std::move(point));
        progress.step();
    }
    return points;
}

} // namespace

std::string sweepWord(const Json& value)
{
    return value.is_string() ? value.get<std::string>() : compactJson(value);
}

std::string sweepName(const Variation& variation)
{
    return variation.unit.empty() ? variation.path : fmt::format("{} [{}]", variation.path, variation.unit);
}

Sweep sweep(const std::string& designFile, const std::vector<std::string>& variations,
            std::chrono::milliseconds barAfter, Gaps gaps)
{
    JsonSource source;
    const Json root = readDesignTree(designFile, source);
    Sweep result;
    for (const std::string& variation : variations)
        result.variations.push_back(parse(variation, root));
    refuseOnePlaceTwice(result.variations, root);
    result.points = run(root, source, result.variations, barAfter, gaps);
    return result;
}

} // namespace zelm::host
