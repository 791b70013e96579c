#include "host/study/Crossings.h"

#include "host/base/Json.h"

#include <algorithm>
#include <cmath>

namespace zelm::host {

namespace {

// Words make no line.
bool isLine(const Variation& variation)
{
    return variation.count > 1 && std::all_of(variation.listed.begin(), variation.listed.end(),
                                              [](const Json& value) { return value.is_number(); });
}

bool isKept(double left)
{
    return left >= 0.0; // NaN isn't
}

} // namespace

SweepCrossings::SweepCrossings(const Sweep& sweep) : m_sweep(&sweep)
{
    std::size_t stride = sweep.points();
    for (std::size_t i = 0; i < sweep.variations().size(); ++i) {
        stride /= sweep.variations()[i].count;
        if (isLine(sweep.variations()[i]))
            m_lines.push_back({i, stride});
    }
}

void SweepCrossings::begin(const SweepPoint& first)
{
    constexpr std::size_t most = 1'000'000; // budgets of points that are remembered
    m_begun = true;
    for (const SweepBudget& budget : first.budgets)
        m_budgets.push_back(budget.name);
    if (m_budgets.empty())
        m_lines.clear();
    std::erase_if(m_lines, [&](const Line& line) {
        const bool isFar = line.stride > most / m_budgets.size();
        if (isFar)
            m_tooFar.push_back(line.variation);
        return isFar;
    });
    for (const Line& line : m_lines)
        m_rows = std::max(m_rows, line.stride);
    m_seen.resize(m_rows * m_budgets.size());
}

void SweepCrossings::take(std::span<const SweepPoint> points)
{
    if (!points.empty() && !m_begun)
        begin(points.front());
    for (const SweepPoint& point : points) {
        if (m_lines.empty())
            return;
        const std::size_t same = std::min(m_budgets.size(), point.budgets.size());
        for (std::size_t i = 0; i < same; ++i) {
            for (const Line& line : m_lines)
                compare(point, line, i);
        }
        Seen* here = &m_seen[m_next % m_rows * m_budgets.size()];
        for (std::size_t i = 0; i < same; ++i)
            here[i] = {point.budgets[i].limit, point.budgets[i].left()};
        ++m_next;
    }
}

void SweepCrossings::compare(const SweepPoint& point, const Line& line, std::size_t budget)
{
    constexpr std::size_t most = 1000;
    const Variation& variation = m_sweep->variations()[line.variation];
    const std::size_t digit = m_next / line.stride % variation.count;
    const SweepBudget& now = point.budgets[budget];
    if (digit == 0 || now.name != m_budgets[budget])
        return;
    const Seen& before = m_seen[(m_next - line.stride) % m_rows * m_budgets.size() + budget];
    const double left = now.left();
    if (isKept(before.left) == isKept(left))
        return;
    if (m_found.size() == most) {
        ++m_more;
        return;
    }
    SweepCrossing crossing;
    crossing.variation = line.variation;
    crossing.from = variation.value(digit - 1).get<double>();
    crossing.to = variation.value(digit).get<double>();
    crossing.values = point.values;
    crossing.budget = now.name;
    crossing.process = now.process;
    crossing.unit = now.unit;
    crossing.limit = now.limit;
    crossing.keptBelow = isKept(before.left) == (crossing.from < crossing.to);
    const double share = before.left / (before.left - left);
    if (std::isfinite(share)) {
        crossing.value = crossing.from + share * (crossing.to - crossing.from);
        crossing.limit = before.limit + share * (now.limit - before.limit);
    }
    m_found.push_back(std::move(crossing));
}

} // namespace zelm::host
