#pragma once

#include "host/base/Terminal.h"
#include "host/exchange/PointOutput.h"
#include "host/study/Crossings.h"
#include "host/study/Sweep.h"

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace zelm::host {

enum class SweepFormat { table, csv, json };

/// What a sweep came to, besides its points.
struct SweepEnd {
    std::size_t points = 0; ///< there are now, those of an earlier run included
    std::size_t warned = 0; ///< points that warn of something
};

/// Runs a sweep and prints its points as they finish, whole lines only, and where lines cross budgets; also sees them,
/// if it isn't empty, before they go. The number of points that warn of something.
std::size_t printSweep(const Sweep& sweep, const SweepRun& options, SweepFormat format, const Paint& paint,
                       const std::function<void(std::string_view)>& print,
                       const std::function<void(std::span<const SweepPoint>)>& also = {});

/// The columns of points that programs read: what varies, then the run's columns.
PointColumns sweepPointColumns(const Sweep& sweep, const SweepRun& options);
/// Runs a sweep from where its output ends. As CSV without columns each point has a row for each process side.
SweepEnd streamSweep(const Sweep& sweep, const SweepRun& options, const PointStudy& study, PointOutput* output);

/// The most points that a page shows.
inline constexpr std::size_t kMostPagePoints = 20'000;

struct PageChart;

/// A page with a chart of each quantity: lines for one variation, maps or small multiples for two.
class SweepPage {
public:
    /// An Error says what is too much for a page.
    SweepPage(const Sweep& sweep, const SweepRun& options);
    void take(std::span<const SweepPoint> points);
    /// Of all points.
    std::string html() const;

private:
    std::string lines(const PageChart& chart) const;
    std::string maps(const PageChart& chart) const;

    const Sweep* m_sweep;
    std::vector<SweepColumn> m_columns;
    std::vector<SweepPoint> m_points;
    SweepCrossings m_crossings;
};

/// "environment.thetaJA = 1, rails.VCCINT = 0.8": what stands while a line crosses a budget.
std::string sweepOthers(const Sweep& sweep, const SweepCrossing& crossing);
/// "67.53", "a runaway between 60 and 65"
std::string crossingPlace(const Sweep& sweep, const SweepCrossing& crossing);

} // namespace zelm::host
