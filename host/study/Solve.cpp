#include "host/study/Solve.h"

#include "host/base/Error.h"
#include "host/base/InOrder.h"
#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/base/Units.h"
#include "host/design/Include.h"
#include "host/design/Place.h"
#include "host/estimate/EditedDesign.h"
#include "host/study/Varied.h"

#include <boost/math/tools/toms748_solve.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <map>

namespace zelm::host {

namespace {

// Points of the grid on which crossings are looked for. Those that lie closer than its step may hide each other.
constexpr std::size_t kGridSteps = 32;

// What varies, read from "PATH=LO:HI".
struct SolvedRange {
    std::string path;
    std::string unit;
    double low = 0.0;
    double high = 0.0;
};

SolvedRange solvedRange(const std::string& text, const Json& root)
{
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0)
        failVary(text, "expected PATH=LO:HI");
    SolvedRange range;
    range.path = text.substr(0, equals);
    if (range.path.starts_with("modes"))
        failVary(text, "quantities are those of the design as it stands, which its modes don't change");
    Json copy = root;
    const Json& before = variedPlace(copy, range.path, text);
    if (takesWords(before, range.path))
        failVary(text, "words stand for the values of this place, and only numbers can be solved for");
    if (before.is_structured())
        failVary(text, "this place holds more than a number");
    if (range.path.starts_with("parameters."))
        range.unit = writtenUnit(before);
    const std::vector<std::string> ends = split(text.substr(equals + 1), ':');
    const auto low = ends.size() == 2 ? variedNumber(ends[0], range.unit, text) : std::nullopt;
    const auto high = ends.size() == 2 ? variedNumber(ends[1], range.unit, text) : std::nullopt;
    if (!low || !high)
        failVary(text, "expected two numbers, LO:HI");
    if (!(*low < *high))
        failVary(text, fmt::format("the interval is empty: {:g} isn't below {:g}", *low, *high));
    range.low = *low;
    range.high = *high;
    return range;
}

Limit limitOf(const std::string& text, const Estimate& estimate)
{
    const auto fail = [&](const std::string& message) {
        throw Error(fmt::format("--until {}: {}", abbreviated(text, 200), message));
    };
    const std::size_t sign = text.find_last_of("<>");
    if (sign == std::string::npos || sign == 0)
        fail("expected QUANTITY <= LIMIT or QUANTITY >= LIMIT");
    const auto trimmed = [](std::string part) {
        part.erase(0, part.find_first_not_of(" \t"));
        part.erase(part.find_last_not_of(" \t") + 1);
        return part;
    };
    const std::size_t behind = sign + (text[sign + 1] == '=' ? 2 : 1);
    const std::string amount = trimmed(text.substr(behind));
    Limit limit;
    limit.isMost = text[sign] == '<';
    try {
        limit.quantity = namedQuantity(trimmed(text.substr(0, sign)), estimate);
        const std::string_view unit = limit.quantity.unit();
        if (const auto written = writtenQuantity(amount)) {
            if (!findUnit(unit))
                throw Error(fmt::format("{} counts in {}: give the number alone", limit.quantity.name(), unit));
            limit.value = inUnit(*written, unit);
        } else if (const auto number = plainNumber(amount)) {
            limit.value = *number;
        } else {
            throw Error(fmt::format("{} is no number", abbreviated(amount.empty() ? "the limit" : amount)));
        }
    } catch (const Error& error) {
        fail(error.what());
    }
    return limit;
}

// An input or count that is a whole number by its own type.
bool isWholeCell(const Json& root, const std::string& path)
{
    const std::size_t close = path.find(']');
    if (!path.starts_with("groups[") || close == std::string::npos)
        return false;
    const std::string rest = path.substr(close + 1);
    if (rest == ".count")
        return true;
    constexpr std::string_view inputs = ".inputs.";
    Json copy = root;
    const Json& group = placeAt(copy, path.substr(0, close + 1));
    if (!rest.starts_with(inputs) || !group.is_object() || !group.contains("block"))
        return false;
    for (const Block* reached : inputBlocks(block(group["block"].get<std::string>()))) {
        if (const ZelmCellInfo* cell = reached->findCell(rest.substr(inputs.size())))
            return cell->type == ZelmCellInfo::Type::integer;
    }
    return false;
}

// Estimates the design with another value of what varies.
class SolvedDesign {
public:
    SolvedDesign(const Json& root, const JsonSource& source, const SolvedRange& range)
        : m_range(&range), m_edited(root, source, {range.path}, Gaps::refused)
    {
    }

    const Estimate& at(double value)
    {
        m_edited.set(0, withUnit(plainJson(value), m_range->unit));
        try {
            return m_edited.estimate();
        } catch (const Error& error) {
            throw Error(fmt::format("{} (at {} = {:g})", error.what(), m_range->path, value));
        }
    }

    std::vector<double> amounts(double value, const std::vector<Limit>& limits)
    {
        const Estimate& estimate = at(value);
        std::vector<double> all;
        for (const Limit& limit : limits)
            all.push_back(valueOf(limit.quantity, estimate));
        return all;
    }

private:
    const SolvedRange* m_range;
    EditedDesign m_edited;
};

// A parameter may reach whole-number inputs: then no value between two whole numbers is legal.
bool isWholeParameter(const SolvedRange& range, SolvedDesign& design)
{
    if (!range.path.starts_with("parameters.") || range.low != std::floor(range.low) ||
        range.high != std::floor(range.high))
        return false;
    constexpr double betweenWholes = 0.3819660112501051;
    try {
        design.at(range.low + betweenWholes);
        return false;
    } catch (const Error&) {
        design.at(range.low); // or there is another mistake
        return true;
    }
}

std::vector<double> gridOf(const Solution& solution)
{
    std::vector<double> grid;
    for (std::size_t i = 0; i <= kGridSteps; ++i) {
        const double share = static_cast<double>(i) / kGridSteps;
        const double value = i == kGridSteps ? solution.high : solution.low + share * (solution.high - solution.low);
        grid.push_back(solution.isWhole ? std::round(value) : value);
    }
    grid.erase(std::unique(grid.begin(), grid.end()), grid.end());
    return grid;
}

// How far an amount is from its limit; below 0, or 0, is kept. A runaway is as far as can be.
double beyond(const Limit& limit, double amount)
{
    constexpr double runaway = 1e30;
    if (std::isnan(amount))
        return runaway;
    return limit.isMost ? amount - limit.value : limit.value - amount;
}

// The value between two, of which one keeps the limit, that is the last to keep it. Of whole numbers that is one.
double lastKept(SolvedDesign& design, const Solution& solution, const Limit& limit, double kept, double broken)
{
    const auto beyondAt = [&](double value) { return beyond(limit, design.amounts(value, {limit}).front()); };
    const auto bisect = [&](const std::function<bool()>& enough) {
        while (!enough()) {
            const double middle = solution.isWhole ? std::floor((kept + broken) / 2.0) : (kept + broken) / 2.0;
            (beyondAt(middle) <= 0.0 ? kept : broken) = middle;
        }
        return kept;
    };
    if (solution.isWhole)
        return bisect([&] { return std::fabs(kept - broken) <= 1.0; });
    const auto close = [&](double a, double b) {
        constexpr double relative = 1e-9; // beyond what single precision tells apart
        return std::fabs(a - b) <= relative * std::max({std::fabs(a), std::fabs(b), solution.high - solution.low});
    };
    constexpr double farthest = 1e29;
    if (beyondAt(broken) > farthest) // where it runs away, there is no root
        return bisect([&] { return close(kept, broken); });
    const auto [low, high] = std::minmax(kept, broken);
    std::uintmax_t steps = 100;
    const auto [a, b] = boost::math::tools::toms748_solve(beyondAt, low, high, close, steps);
    return kept < broken ? a : b;
}

// Each worker's design takes a while to make, and costs less than the grid's points do.
std::vector<std::vector<double>> amountsOnGrid(const std::vector<double>& grid, const std::vector<Limit>& limits,
                                               unsigned jobs, const std::function<SolvedDesign()>& make)
{
    std::vector<std::vector<double>> all;
    const std::size_t share = (grid.size() + jobs - 1) / jobs;
    using GridPart = std::vector<std::vector<double>>;
    inOrder<GridPart>((grid.size() + share - 1) / share, jobs,
                      [&] {
                          return [&, design = make()](std::size_t part) mutable {
                              GridPart some;
                              for (std::size_t i = part * share; i < std::min((part + 1) * share, grid.size()); ++i)
                                  some.push_back(design.amounts(grid[i], limits));
                              return some;
                          };
                      },
                      [&](const GridPart& some) {
                          all.insert(all.end(), some.begin(), some.end());
                          return true;
                      });
    return all;
}

void findCrossings(Solution& solution, const std::vector<double>& grid, const std::vector<std::vector<double>>& amounts,
                   SolvedDesign& design)
{
    for (std::size_t k = 0; k < solution.limits.size(); ++k) {
        const Limit& limit = solution.limits[k];
        for (std::size_t i = 0; i + 1 < grid.size(); ++i) {
            const bool before = limit.keptBy(amounts[i][k]);
            if (before == limit.keptBy(amounts[i + 1][k]))
                continue;
            const double value = lastKept(design, solution, limit, grid[before ? i : i + 1], grid[before ? i + 1 : i]);
            solution.crossings.push_back({value, k, design.amounts(value, {limit}).front(), before});
        }
    }
    std::stable_sort(solution.crossings.begin(), solution.crossings.end(),
                     [](const Crossing& a, const Crossing& b) { return a.value < b.value; });
}

// Where all limits are kept, and which of them ends the first such stretch, or begins it where it goes on to the end.
void findKept(Solution& solution)
{
    std::vector<bool> kept;
    for (std::size_t k = 0; k < solution.limits.size(); ++k)
        kept.push_back(solution.limits[k].keptBy(solution.atLow[k]));
    const auto all = [&] { return std::all_of(kept.begin(), kept.end(), [](bool each) { return each; }); };
    double from = solution.low;
    std::optional<std::size_t> begin;
    for (std::size_t i = 0; i < solution.crossings.size(); ++i) {
        const Crossing& crossing = solution.crossings[i];
        const bool before = all();
        kept[crossing.limit] = !crossing.ends;
        if (before && !all()) {
            solution.kept.emplace_back(from, crossing.value);
            solution.decides = solution.decides ? solution.decides : i;
        } else if (!before && all()) {
            from = crossing.value;
            begin = i;
        }
    }
    if (all())
        solution.kept.emplace_back(from, solution.high);
    if (!solution.decides && !solution.kept.empty())
        solution.decides = begin;
}

} // namespace

std::string Limit::words() const
{
    const std::string_view unit = quantity.unit();
    return fmt::format("{} {} {:g}{}{}", quantity.name(), isMost ? "<=" : ">=", value, unit.empty() ? "" : " ", unit);
}

std::string solvedValue(const Solution& solution, double value)
{
    const std::string number = solution.isWhole ? fmt::format("{:.0f}", value) : fmt::format("{:.7g}", value);
    return solution.unit.empty() ? number : fmt::format("{} {}", number, solution.unit);
}

Solution solve(const std::string& designFile, const SolveWish& wish)
{
    JsonSource source;
    Json root = readDesignTree(designFile, source);
    if (root.is_object())
        root.erase("modes"); // which the quantities don't depend on
    const SolvedRange range = solvedRange(wish.vary, root);
    Solution solution;
    solution.path = range.path;
    solution.unit = range.unit;
    solution.low = range.low;
    solution.high = range.high;

    SolvedDesign design(root, source, range);
    const Estimate& first = design.at(range.low);
    solution.design = first.design.name;
    for (const std::string& until : wish.until)
        solution.limits.push_back(limitOf(until, first));
    solution.isWhole = isWholeCell(root, range.path) || isWholeParameter(range, design);
    if (solution.isWhole) {
        solution.low = std::ceil(range.low);
        solution.high = std::floor(range.high);
        if (!(solution.low < solution.high))
            failVary(wish.vary, "the interval is empty: it holds no two whole numbers");
    }
    const std::vector<double> grid = gridOf(solution);
    const auto amounts =
        amountsOnGrid(grid, solution.limits, wish.jobs, [&] { return SolvedDesign(root, source, range); });
    solution.atLow = amounts.front();
    solution.atHigh = amounts.back();
    findCrossings(solution, grid, amounts, design);
    findKept(solution);
    return solution;
}

} // namespace zelm::host
