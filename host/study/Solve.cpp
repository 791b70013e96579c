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
#include <memory>
#include <mutex>

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
    if (before.is_structured() && !holdsDistribution(before))
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

// Two values of what varies, of which one keeps a limit.
struct Bracket {
    std::size_t limit = 0;
    double kept = 0.0;
    double broken = 0.0;
    std::map<double, double> amounts; // of the limit's quantity, by value, as far as they are known
};

// The crossing within a bracket: the last value that keeps the limit. Of whole numbers that is one.
class CrossingSearch {
public:
    CrossingSearch(SolvedDesign& design, const Solution& solution, Bracket bracket)
        : m_design(&design), m_solution(&solution), m_limit(&solution.limits[bracket.limit]),
          m_bracket(std::move(bracket))
    {
    }

    Crossing crossing()
    {
        const bool ends = m_bracket.kept < m_bracket.broken;
        const double value = lastKept();
        return {value, m_bracket.limit, amountAt(value), ends};
    }

private:
    static constexpr double kRunaway = 1e30;

    double amountAt(double value)
    {
        const auto known = m_bracket.amounts.find(value);
        if (known != m_bracket.amounts.end())
            return known->second;
        return m_bracket.amounts[value] = m_design->amounts(value, {*m_limit}).front();
    }

    // Below 0, or 0, is kept. A runaway is as far beyond the limit as can be.
    double beyondAt(double value)
    {
        const double amount = amountAt(value);
        if (std::isnan(amount))
            return kRunaway;
        return m_limit->isMost ? amount - m_limit->value : m_limit->value - amount;
    }

    bool isClose(double a, double b) const
    {
        constexpr double relative = 1e-9; // beyond what single precision tells apart
        return std::fabs(a - b) <=
               relative * std::max({std::fabs(a), std::fabs(b), m_solution->high - m_solution->low});
    }

    double bisected()
    {
        double& kept = m_bracket.kept;
        double& broken = m_bracket.broken;
        while (m_solution->isWhole ? std::fabs(kept - broken) > 1.0 : !isClose(kept, broken)) {
            const double middle = m_solution->isWhole ? std::floor((kept + broken) / 2.0) : (kept + broken) / 2.0;
            (beyondAt(middle) <= 0.0 ? kept : broken) = middle;
        }
        return kept;
    }

    double lastKept()
    {
        if (m_solution->isWhole || beyondAt(m_bracket.broken) >= kRunaway) // where it runs away, there is no root
            return bisected();
        const auto [low, high] = std::minmax(m_bracket.kept, m_bracket.broken);
        std::uintmax_t steps = 100;
        const auto [a, b] = boost::math::tools::toms748_solve(
            [&](double value) { return beyondAt(value); }, low, high, beyondAt(low), beyondAt(high),
            [&](double one, double other) { return isClose(one, other); }, steps);
        return m_bracket.kept < m_bracket.broken ? a : b;
    }

    SolvedDesign* m_design;
    const Solution* m_solution;
    const Limit* m_limit;
    Bracket m_bracket;
};

// The designs of the workers, which take a while to make: each works on the grid, then on crossings.
class SolvedDesigns {
public:
    explicit SolvedDesigns(std::function<std::unique_ptr<SolvedDesign>()> make) : m_make(std::move(make)) {}

    std::unique_ptr<SolvedDesign> take()
    {
        std::unique_lock lock(m_mutex);
        if (m_free.empty()) {
            lock.unlock();
            return m_make();
        }
        std::unique_ptr<SolvedDesign> design = std::move(m_free.back());
        m_free.pop_back();
        return design;
    }

    void giveBack(std::unique_ptr<SolvedDesign> design)
    {
        const std::lock_guard lock(m_mutex);
        m_free.push_back(std::move(design));
    }

private:
    std::function<std::unique_ptr<SolvedDesign>()> m_make;
    std::mutex m_mutex;
    std::vector<std::unique_ptr<SolvedDesign>> m_free;
};

// Does count pieces of work, each on a design of its own.
template <class Result, class Work>
std::vector<Result> onDesigns(std::size_t count, unsigned jobs, SolvedDesigns& designs, Work work)
{
    std::vector<Result> all;
    inOrder<Result>(
        count, jobs,
        [&] {
            return [&](std::size_t index) {
                std::unique_ptr<SolvedDesign> design = designs.take();
                Result result = work(*design, index);
                designs.giveBack(std::move(design));
                return result;
            };
        },
        [&](Result result) {
            all.push_back(std::move(result));
            return true;
        });
    return all;
}

std::vector<std::vector<double>> amountsOnGrid(const std::vector<double>& grid, const Solution& solution, unsigned jobs,
                                               SolvedDesigns& designs)
{
    return onDesigns<std::vector<double>>(grid.size(), jobs, designs, [&](SolvedDesign& design, std::size_t index) {
        return design.amounts(grid[index], solution.limits);
    });
}

void findCrossings(Solution& solution, const std::vector<double>& grid, const std::vector<std::vector<double>>& amounts,
                   unsigned jobs, SolvedDesigns& designs)
{
    std::vector<Bracket> brackets;
    for (std::size_t k = 0; k < solution.limits.size(); ++k) {
        const Limit& limit = solution.limits[k];
        for (std::size_t i = 0; i + 1 < grid.size(); ++i) {
            const bool before = limit.keptBy(amounts[i][k]);
            if (before != limit.keptBy(amounts[i + 1][k]))
                brackets.push_back({k,
                                    grid[before ? i : i + 1],
                                    grid[before ? i + 1 : i],
                                    {{grid[i], amounts[i][k]}, {grid[i + 1], amounts[i + 1][k]}}});
        }
    }
    solution.crossings =
        onDesigns<Crossing>(brackets.size(), jobs, designs, [&](SolvedDesign& design, std::size_t index) {
            return CrossingSearch(design, solution, brackets[index]).crossing();
        });
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

    SolvedDesigns designs([&] { return std::make_unique<SolvedDesign>(root, source, range); });
    std::unique_ptr<SolvedDesign> design = designs.take();
    const Estimate& first = design->at(range.low);
    solution.design = first.design.name;
    for (const std::string& until : wish.until)
        solution.limits.push_back(limitOf(until, first));
    solution.isWhole = isWholeCell(root, range.path) || isWholeParameter(range, *design);
    if (solution.isWhole) {
        solution.low = std::ceil(range.low);
        solution.high = std::floor(range.high);
        if (!(solution.low < solution.high))
            failVary(wish.vary, "the interval is empty: it holds no two whole numbers");
    }
    const std::vector<double> grid = gridOf(solution);
    designs.giveBack(std::move(design));
    const auto amounts = amountsOnGrid(grid, solution, wish.jobs, designs);
    solution.atLow = amounts.front();
    solution.atHigh = amounts.back();
    findCrossings(solution, grid, amounts, wish.jobs, designs);
    findKept(solution);
    return solution;
}

} // namespace zelm::host
