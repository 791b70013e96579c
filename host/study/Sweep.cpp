#include "host/study/Sweep.h"

#include "host/base/Error.h"
#include "host/base/InOrder.h"
#include "host/base/Interrupt.h"
#include "host/base/Json.h"
#include "host/base/Ranks.h"
#include "host/base/Terminal.h"
#include "host/base/Text.h"
#include "host/base/Units.h"
#include "host/design/Include.h"
#include "host/estimate/EditedDesign.h"
#include "host/study/StudyIdentity.h"
#include "host/study/Varied.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>

namespace zelm::host {

namespace {

void setRange(Variation& variation, const std::string& text, double from, double to, double step)
{
    const double steps = (to - from) / step;
    if (!(steps >= 0.0))
        failVary(text, "the step doesn't lead from the first value to the last");
    constexpr double most = 1e15;
    if (!(steps < most))
        failVary(text, "more values than anybody can wait for");
    constexpr double tolerance = 1e-9; // 0:1:0.1 has 11 values, whatever ten tenths add up to
    variation.from = from;
    variation.step = step;
    variation.count = static_cast<std::size_t>(steps + tolerance) + 1;
}

Variation parse(const std::string& text, const Json& root)
{
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0)
        failVary(text, "expected PATH=FROM:TO:STEP or PATH=VALUE,VALUE,...");
    Variation variation;
    variation.path = text.substr(0, equals);
    const std::string list = text.substr(equals + 1);
    Json copy = root;
    const Json& before = variedPlace(copy, variation.path, text);
    const bool isText = takesWords(before, variation.path);
    if (variation.path.starts_with("parameters."))
        variation.unit = writtenUnit(before);
    const std::vector<std::string> ends = split(list, ':');
    if (ends.size() == 3 && !isText) {
        const auto from = variedNumber(ends[0], variation.unit, text);
        const auto to = variedNumber(ends[1], variation.unit, text);
        const auto step = variedNumber(ends[2], variation.unit, text);
        if (!from || !to || !step || *step == 0.0)
            failVary(text, "expected numbers in FROM:TO:STEP, and a step that isn't 0");
        setRange(variation, text, *from, *to, *step);
        return variation;
    }
    for (const std::string& word : split(list, ',')) {
        if (word.empty())
            failVary(text, "a value is empty");
        const auto value = isText ? std::nullopt : plainNumber(word);
        variation.listed.push_back(value ? plainJson(*value) : Json(word));
    }
    variation.count = variation.listed.size();
    return variation;
}

// By index or by name, the last variation of a place would win.
void refuseOnePlaceTwice(const std::vector<Variation>& variations, Json marked)
{
    const auto place = [&](std::size_t i) -> Json& {
        return variedPlace(marked, variations[i].path, variations[i].path);
    };
    for (std::size_t i = 0; i < variations.size(); ++i)
        place(i) = i;
    for (std::size_t i = 0; i < variations.size(); ++i) {
        if (place(i) != i)
            failVary(variations[i].path, "this place varies twice");
    }
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

// The budgets that one process side breaks: it alone is to blame.
std::vector<std::string> brokenBudgetsAt(const Estimate& estimate, const std::string& process)
{
    std::vector<std::string> names;
    for (const BudgetResult& budget : estimate.budgets) {
        if (budget.brokenAt(process))
            names.push_back(budget.name);
    }
    return names;
}

// Where the process varies, the other side has a point of its own.
SweepPoint pointOf(const Estimate& estimate, bool variesProcess, const SweepRun& options)
{
    SweepPoint point;
    point.dynamicWatts = estimate.dynamicWatts;
    point.offchipWatts = estimate.offchipWatts;
    for (const Side& side : estimate.sides) {
        point.sides.push_back({side.process, side.junction, side.staticWatts, side.totalWatts, side.settles(),
                               brokenBudgetsAt(estimate, side.process)});
        if (variesProcess)
            break;
    }
    point.hasBudgets = !estimate.budgets.empty();
    point.broken = variesProcess ? point.sides.front().broken : brokenBudgets(estimate);
    point.warnings = estimate.warnings;
    for (const SweepColumn& column : options.columns)
        point.columns.push_back(valueOf(column, estimate));
    if (options.budgets)
        point.budgets = sweepBudgets(estimate, variesProcess);
    return point;
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

Json Variation::value(std::size_t index) const
{
    if (!listed.empty())
        return listed.at(index);
    // Rounded to what a person would write, so that 3 x 0.1 is 0.3.
    const double exact = from + static_cast<double>(index) * step;
    return plainJson(plainNumber(fmt::format("{:.12g}", exact)).value_or(exact));
}

Sweep::Sweep(const std::string& designFile, const std::vector<std::string>& variations)
    : m_root(std::make_unique<Json>(readDesignTree(designFile, m_source)))
{
    for (const std::string& variation : variations)
        m_variations.push_back(parse(variation, *m_root));
    refuseOnePlaceTwice(m_variations, *m_root);
    for (const Variation& variation : m_variations) {
        if (variation.count > std::numeric_limits<std::size_t>::max() / m_points)
            throw Error("the variations make more points than can be counted");
        m_points *= variation.count;
    }
}

Sweep::~Sweep() = default;

bool Sweep::variesProcess() const
{
    return std::any_of(m_variations.begin(), m_variations.end(),
                       [](const Variation& variation) { return variation.path == "device.process"; });
}

EditedDesign Sweep::startedDesign(Gaps gaps) const
{
    std::vector<std::string> places;
    for (const Variation& variation : m_variations)
        places.push_back(variation.path);
    return EditedDesign(*m_root, m_source, places, gaps, Scope::sums);
}

const Estimate& Sweep::estimateAt(std::size_t index, EditedDesign& design, std::vector<Json>& values) const
{
    std::size_t rest = m_points;
    for (const Variation& variation : m_variations) {
        rest /= variation.count;
        values.push_back(variation.value(index / rest % variation.count));
        design.set(values.size() - 1, withUnit(values.back(), variation.unit));
    }
    try {
        return design.estimate();
    } catch (const DataError&) {
        throw; // whatever the point
    } catch (const Error& error) {
        std::vector<std::string> settings;
        for (std::size_t i = 0; i < values.size(); ++i)
            settings.push_back(fmt::format("{} = {}", m_variations[i].path, abbreviated(sweepWord(values[i]))));
        throw Error(fmt::format("{} (at {})", error.what(), fmt::join(settings, ", ")));
    }
}

SweepPoint Sweep::pointAt(std::size_t index, EditedDesign& design, const SweepRun& options) const
{
    std::vector<Json> values;
    SweepPoint point = pointOf(estimateAt(index, design, values), variesProcess(), options);
    point.values = std::move(values);
    return point;
}

Estimate Sweep::first(Gaps gaps) const
{
    EditedDesign design = startedDesign(gaps);
    std::vector<Json> values;
    return estimateAt(0, design, values);
}

std::size_t Sweep::chunkPoints() const
{
    constexpr std::size_t most = 256;
    constexpr std::size_t share = 64; // so that each of many threads has some
    return std::clamp<std::size_t>(m_points / share, 1, most);
}

void Sweep::run(const SweepRun& options, const Render& render, const Take& take) const
{
    struct Chunk {
        std::vector<SweepPoint> points;
        std::string text;
    };
    const std::size_t size = chunkPoints();
    const auto makeWorker = [&] {
        return [&, design = startedDesign(options.gaps)](std::size_t index) mutable {
            Chunk chunk;
            const std::size_t end = std::min((index + 1) * size, m_points);
            for (std::size_t i = index * size; i < end; ++i) {
                chunk.points.push_back(pointAt(i, design, options));
                chunk.text += render(chunk.points.back());
            }
            return chunk;
        };
    };
    Progress progress("sweeping", m_points, options.barAfter);
    inOrder<Chunk>((m_points - 1) / size + 1, options.jobs, makeWorker, [&](const Chunk& chunk) {
        progress.wipe();
        take(chunk.points, chunk.text);
        progress.step(chunk.points.size());
        return Interrupt::signal() == 0;
    });
}

void Sweep::stream(const SweepRun& options, std::size_t firstChunk, const Render& render,
                   const std::function<void(const SweepText& chunk)>& take) const
{
    const std::size_t size = chunkPoints();
    const std::size_t chunks = (m_points - 1) / size + 1;
    const auto makeWorker = [&]() -> PieceWork {
        // Shared, as what std::function holds has to be copied.
        return [&, design = std::make_shared<EditedDesign>(startedDesign(options.gaps))](std::size_t index) {
            const std::size_t begin = index * size;
            std::uint64_t warned = 0;
            std::string text(sizeof warned, '\0'); // in front of the text
            for (std::size_t i = begin; i < std::min(begin + size, m_points); ++i) {
                const SweepPoint point = pointAt(i, *design, options);
                if (!point.warnings.empty())
                    ++warned;
                text += render(point);
            }
            std::memcpy(text.data(), &warned, sizeof warned);
            return text;
        };
    };
    Progress progress("sweeping", m_points, options.barAfter);
    if (firstChunk > 0)
        progress.step(std::min(firstChunk * size, m_points));
    SweepText chunk;
    chunk.chunk = firstChunk;
    bytesInOrder(std::min(firstChunk, chunks), chunks, options.jobs, makeWorker, [&](const std::string& text) {
        std::uint64_t warned = 0;
        std::memcpy(&warned, text.data(), sizeof warned);
        chunk.points = std::min(size, m_points - chunk.chunk * size);
        chunk.warned = warned;
        chunk.text.assign(text, sizeof warned);
        progress.wipe();
        take(chunk);
        progress.step(chunk.points);
        ++chunk.chunk;
        return Interrupt::signal() == 0;
    });
}

Json sweepIdentity(const Sweep& sweep, const std::vector<std::string>& variations, const SweepRun& options,
                   const Estimate& first)
{
    Json identity = studyIdentity("sweep", first.design.name, sweep.design(), blocksOf(first));
    Json columns = Json::array();
    for (const SweepColumn& column : options.columns)
        columns.push_back(column.name);
    identity["variations"] = variations;
    identity["columns"] = std::move(columns);
    identity["points"] = sweep.points();
    identity["chunkPoints"] = sweep.chunkPoints();
    identity["gaps"] = options.gaps == Gaps::refused ? "refused" : "warned";
    return identity;
}

} // namespace zelm::host
