#pragma once

#include "host/base/JsonFwd.h"
#include "host/base/JsonSource.h"
#include "host/estimate/Estimate.h"
#include "host/study/SweepColumns.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace zelm::host {

class EditedDesign;

/// A place in a design and the values that it takes in turn.
struct Variation {
    std::string path;
    std::string unit; ///< in which values that are numbers count, if the variation or its parameter says one
    std::size_t count = 0;
    std::vector<Json> listed; ///< or, if it is empty,
    double from = 0.0;
    double step = 0.0;

    Json value(std::size_t index) const;
};

struct SweepSide {
    std::string process;
    double junction = 0.0;
    double staticWatts = 0.0;
    double totalWatts = 0.0;
    bool settles = false;
    std::vector<std::string> broken; ///< budgets that this side breaks
};

struct SweepPoint {
    std::vector<Json> values; ///< one of each variation
    double dynamicWatts = 0.0;
    double offchipWatts = 0.0;
    std::vector<SweepSide> sides; ///< where the process varies, just its own
    bool hasBudgets = false;
    std::vector<std::string> broken; ///< budgets, whatever the side that breaks them
    std::vector<std::string> warnings;
    std::vector<double> columns;      ///< those that the run is asked for
    std::vector<SweepBudget> budgets; ///< if the run is asked for them
};

struct SweepRun {
    unsigned jobs = 1;
    std::chrono::milliseconds barAfter{}; ///< when a progress bar shows
    Gaps gaps = Gaps::refused;
    std::vector<SweepColumn> columns{};
    bool budgets = false; ///< of each point, on each side
};

/// Some points of a sweep as text.
struct SweepText {
    std::size_t chunk = 0; ///< its index
    std::size_t points = 0;
    std::size_t warned = 0; ///< points that warn of something
    std::string text;
};

/// Estimates a design once for each combination of values. A variation is "PATH=FROM:TO:STEP" or
/// "PATH=VALUE,VALUE,...", with a path as messages about designs write it: "environment.ambientTemperature",
/// "rails.VCCINT", "groups[2].inputs.CLOCK_FREQ", "parameters.fclk"; a group's name may stand for its index, and values
/// may have units: "100MHz:400MHz:50MHz". Plain numbers count in the unit of the parameter that they replace. An Error
/// tells what is wrong with a variation.
class Sweep {
public:
    Sweep(const std::string& designFile, const std::vector<std::string>& variations);
    ~Sweep();

    const std::vector<Variation>& variations() const
    {
        return m_variations;
    }
    std::size_t points() const
    {
        return m_points;
    }
    bool variesProcess() const;

    /// A point's text, made on any thread.
    using Render = std::function<std::string(const SweepPoint& point)>;
    /// Some points, in order, and their texts.
    using Take = std::function<void(std::span<const SweepPoint> points, const std::string& text)>;

    /// Estimates all points, the last variation changing fastest; an Interrupt ends it early. An Error tells at which
    /// point, the first of those, the design is wrong; those before have been taken by then.
    void run(const SweepRun& options, const Render& render, const Take& take) const;

    /// The same from a chunk on, for texts alone.
    void stream(const SweepRun& options, std::size_t firstChunk, const Render& render,
                const std::function<void(const SweepText& chunk)>& take) const;
    /// Points are taken by so many, whatever the number of threads.
    std::size_t chunkPoints() const;

    /// The estimate of the first point.
    Estimate first(Gaps gaps) const;
    /// The design, with what it includes.
    const Json& design() const
    {
        return *m_root;
    }

private:
    EditedDesign startedDesign(Gaps gaps) const;
    const Estimate& estimateAt(std::size_t index, EditedDesign& design, std::vector<Json>& values) const;
    SweepPoint pointAt(std::size_t index, EditedDesign& design, const SweepRun& options) const;

    JsonSource m_source;
    std::unique_ptr<const Json> m_root;
    std::vector<Variation> m_variations;
    std::size_t m_points = 1;
};

/// What identifies a sweep: the design, variations and columns, what computes them, and how many points there are.
Json sweepIdentity(const Sweep& sweep, const std::vector<std::string>& variations, const SweepRun& options,
                   const Estimate& first);

/// A varied value as people write it.
std::string sweepWord(const Json& value);
/// What varies, for the head of a table: "parameters.fclk [MHz]".
std::string sweepName(const Variation& variation);

} // namespace zelm::host
