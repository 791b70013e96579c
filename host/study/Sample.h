#pragma once

#include "host/base/JsonFwd.h"
#include "host/estimate/DataFactors.h"
#include "host/study/Quantity.h"
#include "host/study/WarningCounts.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelm::host {

enum class SampleMethod { sobol, latin, random };

/// "sobol", as options say it.
std::string_view methodWord(SampleMethod method);

struct SampleWish {
    std::size_t points = 4096;
    std::uint64_t seed = 1;
    SampleMethod method = SampleMethod::sobol;
    unsigned jobs = 1;
    std::optional<double> untilError; ///< of the totals' quantiles, relative; points are then the most
    bool dataUncertainty = true;
    std::string of = "total";             ///< whose band is laid to the inputs
    std::chrono::milliseconds barAfter{}; ///< when a progress bar shows
};

/// What many values of a quantity tell. Those of points that run away, which have none, count as above all others: a
/// quantile among them is NaN. Mean and deviation are of the others.
struct Band {
    double mean = 0.0;
    double sd = 0.0;
    double p5 = 0.0;
    double p50 = 0.0;
    double p95 = 0.0;
    double meanError = 0.0; ///< standard errors
    double p5Error = 0.0;
    double p50Error = 0.0;
    double p95Error = 0.0;
    std::size_t lost = 0; ///< points that run away

    double least = 0.0;
    double most = 0.0;
    std::vector<std::size_t> histogram; ///< in bins of like width from least to most

    /// The largest standard error of a quantile over the quantile.
    double relativeError() const;
};

struct SampledQuantity {
    NamedQuantity quantity;
    Band band;
};

struct SampledBudget {
    struct Side {
        std::string process;
        Band band;
        double probabilityKept = 0.0;
    };

    std::string name;
    std::string unit;
    double limit = 0.0;
    std::vector<Side> sides;
    double probabilityKept = 0.0; ///< on all sides that count
};

/// How much of a quantity's variance an input makes: alone, and with all that it does together with others. Or, of few
/// points, how far the ranks of both go together.
struct SampledIndex {
    std::string path; ///< "data": all numbers of the data; of rank correlations each: "data:Signal dynamic"
    double first = 0.0;
    double total = 0.0;
};

struct Sample {
    std::string design;
    std::size_t points = 0;
    double error = 0.0; ///< the largest standard error of a total's quantile, relative
    SampleWish wish;
    std::vector<Uncertain> inputs; ///< paths have the groups' names
    std::vector<DataFactor> data;
    std::vector<SampledQuantity> quantities;
    std::vector<SampledBudget> budgets;
    NamedQuantity of;
    std::vector<SampledIndex> indices;      ///< from 2,000 points on, largest total first
    std::size_t indexEstimates = 0;         ///< that they took beyond the points
    std::vector<SampledIndex> correlations; ///< else, the largest first; total has none
    WarningCounts warnings;                 ///< of the points
};

/// A drawn point.
struct SamplePoint {
    std::size_t index = 0;
    std::vector<Distribution::Value> inputs;
    std::vector<double> factors;
    std::vector<double> quantities;
    std::vector<bool> kept; ///< by budget
};

/// Estimates a design for values drawn from its distributions, and from those of the data's factors.
class Sampling {
public:
    Sampling(const std::string& designFile, const SampleWish& wish);
    ~Sampling();
    Sampling(const Sampling&) = delete;
    Sampling& operator=(const Sampling&) = delete;

    /// Quantities and budgets without bands yet.
    const Sample& plan() const;

    /// A point's text, made on any thread; empty if nobody wants it.
    using Render = std::function<std::string(const SamplePoint& point)>;
    /// Texts of some points, in order.
    using Take = std::function<void(std::string_view text)>;

    /// All points, whose numbers depend on seed and index alone; an Interrupt ends it early. An Error tells at which
    /// point the design is wrong. Over several ranks what it returns, and what is taken, is the first one's.
    Sample run(const Render& render, const Take& take);

    /// Texts of the points alone, from a chunk on, for whom bands don't matter.
    void stream(std::size_t firstChunk, const Render& render, const Take& take) const;
    /// Points are taken by so many, whatever the number of threads.
    static std::size_t chunkPoints();

    /// What identifies the sample: design, data and draws.
    Json identity() const;

private:
    class Plan;
    std::unique_ptr<Plan> m_plan;
};

/// The value of a distribution below which it lies with that probability, within 0 to 1.
Distribution::Value valueAt(const Distribution& distribution, double probability);

} // namespace zelm::host
