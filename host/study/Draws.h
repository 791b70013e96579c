#pragma once

#include "host/study/Sample.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace zelm::host {

/// Points in a cube of so many dimensions, each number between 0 and 1, neither of them. A point depends on the seed
/// and its index alone, and its first numbers not on how many dimensions there are.
class Draws {
public:
    Draws(SampleMethod method, std::uint64_t seed, std::size_t points, std::size_t dimensions);
    ~Draws();
    Draws(Draws&&) noexcept;

    /// Quickest for one index after the other.
    void point(std::size_t index, std::span<double> numbers);

private:
    class Sequence;
    double latin(std::size_t index, std::size_t dimension) const;

    SampleMethod m_method;
    std::uint64_t m_seed;
    std::size_t m_points;
    std::unique_ptr<Sequence> m_sequence; // of Sobol's points
};

/// How many standard deviations off its mean a normal number lies with that probability below it.
double deviationsAt(double probability);

} // namespace zelm::host
