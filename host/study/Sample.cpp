#include "host/study/Sample.h"

#include "host/base/Error.h"
#include "host/base/InOrder.h"
#include "host/base/Interrupt.h"
#include "host/base/Json.h"
#include "host/base/Ranks.h"
#include "host/base/Terminal.h"
#include "host/base/Text.h"
#include "host/design/Include.h"
#include "host/design/Place.h"
#include "host/estimate/EditedDesign.h"
#include "host/study/Draws.h"
#include "host/study/Spread.h"
#include "host/study/StudyIdentity.h"
#include "host/study/Varied.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <numeric>
#include <span>
#include <utility>

namespace zelm::host {

namespace {

constexpr std::size_t kPointsOfChunk = 32;      // whatever the number of threads
constexpr std::size_t kFewestForIndices = 2000; // below, the indices would be noise
constexpr std::size_t kFewestPairs = 512;
constexpr std::size_t kMostPairs = 4096;
constexpr std::size_t kFewestForError = 256;
constexpr const char* kData = "data";

} // namespace

// What is drawn and looked at. The same for all threads.
class Sampling::Plan {
public:
    Plan(const std::string& designFile, const SampleWish& wish)
    {
        root = readDesignTree(designFile, source);
        const Design design = readDesign(root, source);
        all.wish = wish;
        all.design = design.name;
        for (const Uncertain& each : design.uncertain) {
            refuseUnreachable(each.path);
            paths.push_back(each.path);
            all.inputs.push_back({namedPath(design, each.path), each.distribution});
        }
        factors = wish.dataUncertainty ? DataFactors(design) : DataFactors();
        all.data = factors.entries();
        if (numbers() == 0)
            throw Error(fmt::format("{}: there is nothing to draw: no value of the design is a distribution, and {}",
                                    source.file,
                                    wish.dataUncertainty ? "the data tell no uncertainty" : "the data count as exact"));
        const Estimate centre = estimate(design, Curves::none, Gaps::refused);
        blocks = blocksOf(centre);
        for (const NamedQuantity& quantity : quantitiesOf(centre)) {
            const bool isIdle = quantity.kind == NamedQuantity::Kind::rail && valueOf(quantity, centre) == 0.0;
            if (quantity.kind != NamedQuantity::Kind::group && !isIdle)
                all.quantities.push_back({quantity, {}});
        }
        for (const BudgetResult& budget : centre.budgets) {
            all.budgets.push_back({budget.name, budget.unit, budget.limit, {{budget.process, {}}}, 0.0});
            if (budget.otherActual)
                all.budgets.back().sides.push_back({budget.otherProcess, {}, 0.0});
        }
        all.of = namedQuantity(wish.of, centre);
        const auto isIt = [&](const SampledQuantity& each) { return each.quantity == all.of; };
        const auto found = std::find_if(all.quantities.begin(), all.quantities.end(), isIt);
        if (found == all.quantities.end())
            throw Error(
                fmt::format("--of {}: only totals, the junction and rails are looked at here", abbreviated(wish.of)));
        of = static_cast<std::size_t>(found - all.quantities.begin());
    }

    /// How many are drawn for a point.
    std::size_t numbers() const
    {
        return all.inputs.size() + all.data.size();
    }

    Json root;
    JsonSource source;
    std::vector<std::string> paths; ///< of the inputs, as the tree has them
    DataFactors factors;
    std::vector<const Block*> blocks; ///< of the design
    Sample all;
    std::size_t of = 0; ///< its place among the quantities

private:
    // A name with a dot in it can't stand in a path.
    void refuseUnreachable(const std::string& path)
    {
        Json copy = root;
        if (!isDistribution(placeAt(copy, path)))
            throw Error(
                fmt::format("{}: a value whose path has names with dots or brackets in it can't be drawn: let a "
                            "parameter be the distribution, and an expression take that",
                            source.at(path)));
    }
};

namespace {

// What a budget comes to in a point, side by side, and whether it is kept.
struct BudgetPoint {
    std::vector<double> actual;
    std::vector<bool> kept;
    bool keptOnAll = false;
};

BudgetPoint budgetPoint(const SampledBudget& plan, const Estimate& estimate)
{
    BudgetPoint point;
    const BudgetResult* budget = estimate.budget(plan.name);
    for (std::size_t i = 0; i < plan.sides.size(); ++i) {
        point.actual.push_back(!budget  ? std::nan("")
                               : i == 0 ? budget->actual
                                        : budget->otherActual.value_or(std::nan("")));
        point.kept.push_back(budget && point.actual.back() <= budget->limit);
    }
    point.keptOnAll = budget && !budget->broken();
    return point;
}

// A thread's design, which takes on one point after the other.
class DrawnDesign {
public:
    DrawnDesign(const Json& root, const JsonSource& source, const std::vector<std::string>& paths, const Sample& plan,
                const DataFactors& factors)
        : m_plan(&plan), m_factors(std::make_unique<DataFactors>(factors)),
          m_design(root, source, paths, Gaps::refused, Scope::sums)
    {
    }

    const Estimate& at(std::size_t index, std::span<const double> numbers)
    {
        const std::vector<Uncertain>& inputs = m_plan->inputs;
        m_point.index = index;
        m_point.inputs.clear();
        for (std::size_t i = 0; i < inputs.size(); ++i) {
            m_point.inputs.push_back(valueAt(inputs[i].distribution, numbers[i]));
            m_design.set(i, jsonAt(i));
        }
        m_point.factors.clear();
        for (std::size_t i = 0; i < m_plan->data.size(); ++i)
            m_point.factors.push_back(m_plan->data[i].at(deviationsAt(numbers[inputs.size() + i])));
        m_factors->set(m_point.factors);
        m_design.scaleBy(m_factors.get());
        try {
            return m_design.estimate();
        } catch (const Error& error) {
            throw Error(fmt::format("{} (at point {}: {}; \"low\" and \"high\" keep a distribution within what goes)",
                                    error.what(), index, settings()));
        }
    }

    SamplePoint point(std::size_t index, std::span<const double> numbers, std::vector<BudgetPoint>& budgets,
                      WarningCounts& warnings)
    {
        const Estimate& estimate = at(index, numbers);
        warnings.add(estimate.warnings);
        SamplePoint point = m_point;
        point.quantities.reserve(m_plan->quantities.size());
        for (const SampledQuantity& each : m_plan->quantities)
            point.quantities.push_back(valueOf(each.quantity, estimate));
        for (const SampledBudget& budget : m_plan->budgets) {
            budgets.push_back(budgetPoint(budget, estimate));
            point.kept.push_back(budgets.back().keptOnAll);
        }
        return point;
    }

private:
    // In a place, numbers count in its unit; a parameter's has none.
    Json jsonAt(std::size_t index) const
    {
        const Uncertain& input = m_plan->inputs[index];
        const Distribution::Value& value = m_point.inputs[index];
        if (const auto* word = std::get_if<std::string>(&value))
            return *word;
        const double number = std::get<double>(value);
        const bool isParameter = input.path.starts_with("parameters.");
        if (isParameter && !input.distribution.unit.empty())
            return fmt::format("{} {}", number, input.distribution.unit);
        return input.distribution.isWhole ? plainJson(number) : Json(number);
    }

    std::string settings() const
    {
        constexpr std::size_t most = 6;
        std::vector<std::string> words;
        for (std::size_t i = 0; i < std::min(most, m_plan->inputs.size()); ++i) {
            const Json value = jsonAt(i);
            words.push_back(fmt::format("{} = {}", m_plan->inputs[i].path,
                                        value.is_string() ? value.get<std::string>() : compactJson(value)));
        }
        return fmt::format("{}{}", fmt::join(words, ", "), m_plan->inputs.size() > most ? ", ..." : "");
    }

    const Sample* m_plan;
    std::unique_ptr<DataFactors> m_factors; // the design looks at them
    EditedDesign m_design;
    SamplePoint m_point;
};

// ---- Bands ----

// Adds up points in order.
class Bands {
public:
    explicit Bands(const Sample& plan) : m_quantities(plan.quantities.size())
    {
        for (const SampledBudget& budget : plan.budgets) {
            m_budgets.emplace_back();
            m_budgets.back().sides.resize(budget.sides.size());
            m_budgets.back().kept.resize(budget.sides.size());
        }
    }

    void add(const SamplePoint& point, const std::vector<BudgetPoint>& budgets)
    {
        ++m_points;
        for (std::size_t i = 0; i < m_quantities.size(); ++i)
            m_quantities[i].add(point.quantities[i]);
        for (std::size_t i = 0; i < m_budgets.size(); ++i) {
            OfBudget& own = m_budgets[i];
            for (std::size_t side = 0; side < own.sides.size(); ++side) {
                own.sides[side].add(budgets[i].actual[side]);
                own.kept[side] += budgets[i].kept[side] ? 1U : 0U;
            }
            own.keptOnAll += budgets[i].keptOnAll ? 1U : 0U;
        }
    }

    /// Of the totals' quantiles, relative.
    double largestError(const Sample& plan) const
    {
        double largest = 0.0;
        for (std::size_t i = 0; i < m_quantities.size(); ++i) {
            if (plan.quantities[i].quantity.kind == NamedQuantity::Kind::total)
                largest = std::max(largest, m_quantities[i].band().relativeError());
        }
        return largest;
    }

    void fill(Sample& all) const
    {
        all.points = m_points;
        all.error = largestError(all);
        for (std::size_t i = 0; i < m_quantities.size(); ++i)
            all.quantities[i].band = m_quantities[i].band();
        const double points = static_cast<double>(m_points);
        for (std::size_t i = 0; i < m_budgets.size(); ++i) {
            const OfBudget& own = m_budgets[i];
            for (std::size_t side = 0; side < own.sides.size(); ++side) {
                all.budgets[i].sides[side].band = own.sides[side].band();
                all.budgets[i].sides[side].probabilityKept = static_cast<double>(own.kept[side]) / points;
            }
            all.budgets[i].probabilityKept = static_cast<double>(own.keptOnAll) / points;
        }
    }

    std::size_t points() const
    {
        return m_points;
    }

private:
    struct OfBudget {
        std::vector<Spread> sides;
        std::vector<std::size_t> kept;
        std::size_t keptOnAll = 0;
    };

    std::vector<Spread> m_quantities;
    std::vector<OfBudget> m_budgets;
    std::size_t m_points = 0;
};

// ---- What makes the band ----

// Ranks from 0, like values sharing the middle of theirs.
std::vector<double> ranksOf(const std::vector<double>& values)
{
    std::vector<std::size_t> order(values.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return values[a] < values[b]; });
    std::vector<double> ranks(values.size());
    for (std::size_t first = 0; first < order.size();) {
        std::size_t last = first;
        while (last + 1 < order.size() && values[order[last + 1]] == values[order[first]])
            ++last;
        for (std::size_t i = first; i <= last; ++i)
            ranks[order[i]] = 0.5 * static_cast<double>(first + last);
        first = last + 1;
    }
    return ranks;
}

// Spearman's coefficient; 0 if one of them never changes.
double rankCorrelation(const std::vector<double>& x, const std::vector<double>& y)
{
    const std::vector<double> a = ranksOf(x);
    const std::vector<double> b = ranksOf(y);
    const double mean = 0.5 * (static_cast<double>(x.size()) - 1.0);
    double together = 0.0;
    double ofA = 0.0;
    double ofB = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        together += (a[i] - mean) * (b[i] - mean);
        ofA += (a[i] - mean) * (a[i] - mean);
        ofB += (b[i] - mean) * (b[i] - mean);
    }
    return ofA > 0.0 && ofB > 0.0 ? together / std::sqrt(ofA * ofB) : 0.0;
}

// The points of a small sample, by input. Runaways rank above all.
class Ranked {
public:
    Ranked(const Sample& plan, std::size_t of)
        : m_plan(&plan), m_of(of), m_inputs(plan.inputs.size() + plan.data.size())
    {
    }

    void add(const SamplePoint& point)
    {
        if (m_result.size() == kFewestForIndices)
            return;
        for (std::size_t i = 0; i < point.inputs.size(); ++i) {
            const auto* number = std::get_if<double>(&point.inputs[i]);
            m_inputs[i].push_back(number ? *number : placeOfWord(i, std::get<std::string>(point.inputs[i])));
        }
        for (std::size_t i = 0; i < point.factors.size(); ++i)
            m_inputs[point.inputs.size() + i].push_back(point.factors[i]);
        const double value = point.quantities[m_of];
        m_result.push_back(std::isnan(value) ? HUGE_VAL : value);
    }

    std::vector<SampledIndex> correlations() const
    {
        std::vector<SampledIndex> rows;
        for (std::size_t i = 0; i < m_inputs.size(); ++i) {
            const std::size_t inputs = m_plan->inputs.size();
            rows.push_back(
                {i < inputs ? m_plan->inputs[i].path : fmt::format("{}:{}", kData, m_plan->data[i - inputs].name()),
                 rankCorrelation(m_inputs[i], m_result), 0.0});
        }
        std::stable_sort(rows.begin(), rows.end(), [](const SampledIndex& a, const SampledIndex& b) {
            return std::fabs(a.first) > std::fabs(b.first);
        });
        return rows;
    }

private:
    double placeOfWord(std::size_t input, const std::string& word) const
    {
        const std::vector<Distribution::Value>& words = m_plan->inputs[input].distribution.values;
        return static_cast<double>(std::find(words.begin(), words.end(), Distribution::Value(word)) - words.begin());
    }

    const Sample* m_plan;
    std::size_t m_of;
    std::vector<std::vector<double>> m_inputs;
    std::vector<double> m_result;
};

// The variances of differences: Jansen's estimators over Saltelli's points. f at two points drawn apart from each
// other, and with one input of the first from the second.
class Indices {
public:
    explicit Indices(std::size_t inputs) : m_first(inputs), m_total(inputs) {}

    /// Values at the first point, at the second, and with each input exchanged.
    void add(const std::vector<double>& values)
    {
        if (std::any_of(values.begin(), values.end(), [](double value) { return std::isnan(value); }))
            return; // a runaway
        const double a = values[0];
        const double b = values[1];
        for (const double value : {a, b}) {
            ++m_count;
            const double off = value - m_mean;
            m_mean += off / m_count;
            m_squares += off * (value - m_mean);
        }
        for (std::size_t i = 0; i < m_first.size(); ++i) {
            m_first[i] += (b - values[i + 2]) * (b - values[i + 2]);
            m_total[i] += (a - values[i + 2]) * (a - values[i + 2]);
        }
    }

    std::vector<SampledIndex> rows(const std::vector<std::string>& paths) const
    {
        std::vector<SampledIndex> all;
        const double variance = m_squares / m_count;
        for (std::size_t i = 0; i < paths.size() && variance > 0.0; ++i)
            all.push_back({paths[i], 1.0 - m_first[i] / m_count / variance, m_total[i] / m_count / variance});
        std::stable_sort(all.begin(), all.end(),
                         [](const SampledIndex& a, const SampledIndex& b) { return a.total > b.total; });
        return all;
    }

private:
    double m_count = 0.0; // of values, two for each difference
    double m_mean = 0.0;
    double m_squares = 0.0;
    std::vector<double> m_first;
    std::vector<double> m_total;
};

// The values of a pair of points and all exchanges between them. The data's factors are exchanged together.
std::vector<double> exchanged(DrawnDesign& design, const Sample& plan, std::size_t index, std::span<const double> both)
{
    const std::size_t inputs = plan.inputs.size();
    const std::span<const double> a = both.first(both.size() / 2);
    const std::span<const double> b = both.last(both.size() / 2);
    const auto valueAtPoint = [&](std::span<const double> numbers) {
        return valueOf(plan.of, design.at(index, numbers));
    };
    std::vector<double> values{valueAtPoint(a), 0.0};
    std::vector<double> mixed(a.begin(), a.end());
    for (std::size_t i = 0; i < inputs; ++i) {
        mixed[i] = b[i];
        values.push_back(valueAtPoint(mixed));
        mixed[i] = a[i];
    }
    if (!plan.data.empty()) {
        const auto data = static_cast<std::ptrdiff_t>(inputs);
        std::copy(b.begin() + data, b.end(), mixed.begin() + data);
        values.push_back(valueAtPoint(mixed));
    }
    values[1] = valueAtPoint(b);
    return values;
}

} // namespace

std::string_view methodWord(SampleMethod method)
{
    switch (method) {
    case SampleMethod::sobol:
        return "sobol";
    case SampleMethod::latin:
        return "latin";
    case SampleMethod::random:
        break;
    }
    return "random";
}

Sampling::Sampling(const std::string& designFile, const SampleWish& wish)
    : m_plan(std::make_unique<Plan>(designFile, wish))
{
}

Sampling::~Sampling() = default;

const Sample& Sampling::plan() const
{
    return m_plan->all;
}

namespace {

struct SampleChunk {
    std::vector<SamplePoint> points;
    std::vector<std::vector<BudgetPoint>> budgets; // of each point
    WarningCounts warnings;
    std::string text;
};
using PairsChunk = std::vector<std::vector<double>>;

// ---- Chunks as bytes that another rank can take ----

Json jsonOf(const PairsChunk& chunk)
{
    return chunk;
}

void read(const Json& json, PairsChunk& chunk)
{
    chunk = json.get<PairsChunk>();
}

Json jsonOf(const SamplePoint& point)
{
    Json inputs = Json::array();
    for (const Distribution::Value& value : point.inputs)
        std::visit([&](const auto& each) { inputs.push_back(each); }, value);
    return {point.index, std::move(inputs), point.factors, point.quantities, point.kept};
}

void read(const Json& json, SamplePoint& point)
{
    point.index = json[0].get<std::size_t>();
    for (const Json& value : json[1]) {
        if (value.is_string())
            point.inputs.emplace_back(value.get<std::string>());
        else
            point.inputs.emplace_back(value.get<double>());
    }
    point.factors = json[2].get<std::vector<double>>();
    point.quantities = json[3].get<std::vector<double>>();
    point.kept = json[4].get<std::vector<bool>>();
}

Json jsonOf(const SampleChunk& chunk)
{
    Json points = Json::array();
    for (std::size_t i = 0; i < chunk.points.size(); ++i) {
        Json budgets = Json::array();
        for (const BudgetPoint& budget : chunk.budgets[i])
            budgets.push_back({budget.actual, budget.kept, budget.keptOnAll});
        points.push_back({jsonOf(chunk.points[i]), std::move(budgets)});
    }
    Json warnings = Json::array();
    for (const WarningCounts::Row& row : chunk.warnings.rows())
        warnings.push_back({row.text, row.points, row.isSame});
    return {std::move(points), chunk.text, std::move(warnings), chunk.warnings.others()};
}

void read(const Json& json, SampleChunk& chunk)
{
    for (const Json& each : json[0]) {
        read(each[0], chunk.points.emplace_back());
        std::vector<BudgetPoint>& budgets = chunk.budgets.emplace_back();
        for (const Json& budget : each[1])
            budgets.push_back(
                {budget[0].get<std::vector<double>>(), budget[1].get<std::vector<bool>>(), budget[2].get<bool>()});
    }
    chunk.text = json[1].get<std::string>();
    for (const Json& row : json[2])
        chunk.warnings.addRow({row[0].get<std::string>(), row[1].get<std::size_t>(), row[2].get<bool>()});
    chunk.warnings.addOthers(json[3].get<std::size_t>());
}

// inOrder() on the threads of this process, or on all ranks.
template <class Chunk, class MakeWorker, class Take>
void inOrderOnAll(std::size_t count, unsigned jobs, const MakeWorker& makeWorker, const Take& take)
{
    if (!Ranks::here())
        return inOrder<Chunk>(count, jobs, makeWorker, take);
    const auto makeWork = [&]() -> PieceWork {
        // Shared, as what std::function holds has to be copied.
        return [work = std::make_shared<decltype(makeWorker())>(makeWorker())](std::size_t index) {
            const std::vector<std::uint8_t> bytes = Json::to_cbor(jsonOf((*work)(index)));
            return std::string(bytes.begin(), bytes.end());
        };
    };
    bytesInOrder(0, count, jobs, makeWork, [&](const std::string& bytes) {
        Chunk chunk;
        read(Json::from_cbor(bytes), chunk);
        return take(chunk);
    });
}

// Does points and gives them to take, in order.
class PointsOfSample {
public:
    PointsOfSample(const Sample& plan, std::function<DrawnDesign()> makeDesign)
        : m_plan(&plan), m_makeDesign(std::move(makeDesign))
    {
    }

    std::size_t chunks() const
    {
        return (m_plan->wish.points - 1) / kPointsOfChunk + 1;
    }

    /// Does the chunks of an index each.
    auto makeWorker(const Sampling::Render& render) const
    {
        const std::size_t numbers = m_plan->inputs.size() + m_plan->data.size();
        const SampleWish& wish = m_plan->wish;
        return [&render, points = wish.points, design = m_makeDesign(),
                draws = Draws(wish.method, wish.seed, wish.points, numbers),
                drawn = std::vector<double>(numbers)](std::size_t index) mutable {
            SampleChunk chunk;
            const std::size_t end = std::min((index + 1) * kPointsOfChunk, points);
            for (std::size_t i = index * kPointsOfChunk; i < end; ++i) {
                draws.point(i, drawn);
                chunk.points.push_back(design.point(i, drawn, chunk.budgets.emplace_back(), chunk.warnings));
                chunk.text += render(chunk.points.back());
            }
            return chunk;
        };
    }

    template <class Take>
    void run(const Sampling::Render& render, const Take& take) const
    {
        inOrderOnAll<SampleChunk>(
            chunks(), m_plan->wish.jobs, [&] { return makeWorker(render); }, take);
    }

    /// Of pairs of points, with all exchanges between them.
    template <class Take>
    void runPairs(std::size_t pairs, const Take& take) const
    {
        constexpr std::size_t size = 4;
        const SampleWish& wish = m_plan->wish;
        const auto makePairs = [&] {
            const std::size_t numbers = 2 * (m_plan->inputs.size() + m_plan->data.size());
            return [&, design = m_makeDesign(), draws = Draws(wish.method, wish.seed, wish.points, numbers),
                    drawn = std::vector<double>(numbers)](std::size_t index) mutable {
                PairsChunk chunk;
                for (std::size_t i = index * size; i < (index + 1) * size; ++i) {
                    draws.point(i, drawn);
                    chunk.push_back(exchanged(design, *m_plan, i, drawn));
                }
                return chunk;
            };
        };
        inOrderOnAll<PairsChunk>(pairs / size, wish.jobs, makePairs, take);
    }

private:
    const Sample* m_plan;
    std::function<DrawnDesign()> m_makeDesign;
};

} // namespace

namespace {

PointsOfSample pointsOf(const auto& plan)
{
    return {plan.all, [&plan] { return DrawnDesign(plan.root, plan.source, plan.paths, plan.all, plan.factors); }};
}

// None of them if they would be noise: then other ranks, which wait for work, hear that there is none.
void addIndices(const PointsOfSample& work, bool isWanted, Sample& all)
{
    std::vector<std::string> paths;
    for (const Uncertain& input : all.inputs)
        paths.push_back(input.path);
    if (!all.data.empty())
        paths.emplace_back(kData);
    const std::size_t pairs = isWanted ? std::bit_floor(std::clamp(all.points / 4, kFewestPairs, kMostPairs)) : 0;
    Indices indices(paths.size());
    Progress progress("finding what makes the band", pairs, all.wish.barAfter);
    work.runPairs(pairs, [&](const PairsChunk& chunk) {
        for (const std::vector<double>& values : chunk)
            indices.add(values);
        progress.step(chunk.size());
        return Interrupt::signal() == 0;
    });
    if (pairs == 0)
        return;
    all.indices = indices.rows(paths);
    all.indexEstimates = pairs * (paths.size() + 2);
}

} // namespace

std::size_t Sampling::chunkPoints()
{
    return kPointsOfChunk;
}

Json Sampling::identity() const
{
    const Sample& all = m_plan->all;
    Json identity = studyIdentity("sample", all.design, m_plan->root, m_plan->blocks);
    Json factors = Json::array();
    for (const DataFactor& factor : all.data)
        factors.push_back(fmt::format("{} {}", factor.name(), factor.relative));
    identity["dataUncertainty"] = std::move(factors);
    identity["method"] = methodWord(all.wish.method);
    identity["seed"] = all.wish.seed;
    identity["points"] = all.wish.points;
    identity["chunkPoints"] = kPointsOfChunk;
    return identity;
}

void Sampling::stream(std::size_t firstChunk, const Render& render, const Take& take) const
{
    const PointsOfSample work = pointsOf(*m_plan);
    const SampleWish& wish = m_plan->all.wish;
    const auto makeWork = [&]() -> PieceWork {
        using Worker = decltype(work.makeWorker(render));
        return [worker = std::make_shared<Worker>(work.makeWorker(render))](std::size_t index) {
            return (*worker)(index).text;
        };
    };
    std::size_t points = std::min(firstChunk * kPointsOfChunk, wish.points);
    Progress progress("sampling", wish.points, wish.barAfter);
    if (points > 0)
        progress.step(points);
    bytesInOrder(std::min(firstChunk, work.chunks()), work.chunks(), wish.jobs, makeWork, [&](const std::string& text) {
        const std::size_t done = std::min(kPointsOfChunk, wish.points - points);
        points += done;
        progress.wipe();
        take(text);
        progress.step(done);
        return Interrupt::signal() == 0;
    });
}

Sample Sampling::run(const Render& render, const Take& take)
{
    const Plan& plan = *m_plan;
    const SampleWish& wish = plan.all.wish;
    const PointsOfSample work = pointsOf(plan);
    Sample result = plan.all;
    Bands bands(plan.all);
    Ranked ranked(plan.all, plan.of);
    Progress progress("sampling", wish.points, wish.barAfter);
    bool goesOn = true;
    work.run(render, [&](const SampleChunk& chunk) {
        for (std::size_t i = 0; i < chunk.points.size(); ++i) {
            bands.add(chunk.points[i], chunk.budgets[i]);
            ranked.add(chunk.points[i]);
        }
        result.warnings.addLater(chunk.warnings);
        progress.wipe();
        take(chunk.text);
        progress.step(chunk.points.size());
        const bool isTime = wish.untilError && bands.points() >= kFewestForError && std::has_single_bit(bands.points());
        goesOn = Interrupt::signal() == 0;
        return goesOn && !(isTime && bands.largestError(plan.all) <= *wish.untilError);
    });
    const bool isFirst = writesOutput();
    if (isFirst)
        bands.fill(result);
    const bool isLarge = isFirst && goesOn && bands.points() >= kFewestForIndices;
    if (isLarge || Ranks::here())
        addIndices(work, isLarge, result);
    if (isFirst && goesOn && !isLarge)
        result.correlations = ranked.correlations();
    return result;
}

} // namespace zelm::host
