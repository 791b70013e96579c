#pragma once

#include "host/study/Sweep.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace zelm::host {

/// Where a line of a sweep, along one variation while the others stand, crosses a budget.
struct SweepCrossing {
    std::size_t variation = 0;   ///< the one along which the line goes
    double from = 0.0;           ///< its values at the points before and behind
    double to = 0.0;             ///< the same
    std::optional<double> value; ///< where a straight line between the two points crosses; none next to a runaway
    std::vector<Json> values;    ///< of all variations at the point behind
    std::string budget;
    std::string process; ///< the side; empty if there are no sides
    std::string unit;    ///< of the limit
    double limit = 0.0;
    bool keptBelow = true; ///< the crossing, or above it
};

/// Finds crossings while the points of a sweep come by in order. It remembers one row of points for each variation, so
/// that memory depends on how long rows are and not on the number of points.
class SweepCrossings {
public:
    explicit SweepCrossings(const Sweep& sweep);

    void take(std::span<const SweepPoint> points);

    /// The first of them, in the order of points.
    const std::vector<SweepCrossing>& found() const
    {
        return m_found;
    }
    /// Those beyond.
    std::size_t more() const
    {
        return m_more;
    }
    /// Variations along which nothing is found as too many points lie between neighbours.
    const std::vector<std::size_t>& tooFar() const
    {
        return m_tooFar;
    }

private:
    struct Line {
        std::size_t variation = 0;
        std::size_t stride = 1; // points between neighbours
    };
    struct Seen {
        double limit = 0.0;
        double left = 0.0;
    };

    void begin(const SweepPoint& first);
    void compare(const SweepPoint& point, const Line& line, std::size_t budget);

    const Sweep* m_sweep;
    bool m_begun = false;
    std::vector<Line> m_lines;
    std::vector<std::string> m_budgets; // of the first point; the others have the same
    std::vector<Seen> m_seen;           // the last points, each with all budgets, in turn
    std::size_t m_rows = 0;             // points that it holds
    std::size_t m_next = 0;             // point
    std::vector<SweepCrossing> m_found;
    std::size_t m_more = 0;
    std::vector<std::size_t> m_tooFar;
};

} // namespace zelm::host
