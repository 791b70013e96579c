#pragma once

namespace zelm {

/// The cell that a family's member holds for a metric. Either the member has it under the metric's name, or it has its
/// place there, which the member's cellOf turns into the cell.
template <class Member, class Metric>
constexpr auto cellOf(const Member& member, Metric metric)
{
    if constexpr (requires { member.cellOf(metric); })
        return member.cellOf(metric);
    else
        return metric;
}

} // namespace zelm
