#include "host/study/Draws.h"

#include "host/base/Error.h"

#include <boost/math/distributions/normal.hpp>
#include <boost/random/sobol.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <numeric>

namespace zelm::host {

namespace {

// The finish of SplitMix64: each bit of what goes in turns over half of those that come out.
std::uint64_t mixed(std::uint64_t bits)
{
    bits += 0x9e3779b97f4a7c15ULL;
    bits = (bits ^ (bits >> 30U)) * 0xbf58476d1ce4e5b9ULL;
    bits = (bits ^ (bits >> 27U)) * 0x94d049bb133111ebULL;
    return bits ^ (bits >> 31U);
}

std::uint64_t randomBits(std::uint64_t seed, std::uint64_t dimension, std::uint64_t index)
{
    return mixed(mixed(mixed(seed) ^ dimension) + index);
}

// In the middle of one of 2^53 like stretches from 0 to 1.
double unitNumber(std::uint64_t bits)
{
    return (static_cast<double>(bits >> 11U) + 0.5) * 0x1p-53;
}

// A place of so many, each taken once: a Feistel network over the next power of 4, walked on while it leads outside.
std::uint64_t shuffled(std::uint64_t place, std::uint64_t count, std::uint64_t key)
{
    const unsigned half = std::max(1U, (static_cast<unsigned>(std::bit_width(count - 1)) + 1U) / 2U);
    const std::uint64_t mask = (std::uint64_t{1} << half) - 1;
    constexpr std::uint64_t rounds = 4;
    do {
        std::uint64_t left = place >> half;
        std::uint64_t right = place & mask;
        for (std::uint64_t round = 0; round < rounds; ++round) {
            const std::uint64_t next = left ^ (randomBits(key, round, right) & mask);
            left = right;
            right = next;
        }
        place = (left << half) | right;
    } while (place >= count);
    return place;
}

} // namespace

class Draws::Sequence {
public:
    explicit Sequence(std::size_t dimensions) : m_engine(dimensions), m_dimensions(dimensions) {}

    // The engine leaves out the sequence's first point, the corner: with it, as many points as a power of two lie
    // evenly.
    void point(std::size_t index, std::uint64_t seed, std::span<double> numbers)
    {
        if (index != m_next && index > 0)
            m_engine.seed(index - 1);
        for (std::size_t i = 0; i < m_dimensions; ++i) {
            const std::uint64_t bits = index > 0 ? m_engine() : 0;
            numbers[i] = unitNumber(bits ^ mixed(mixed(seed) ^ i)); // a shift that leaves them as even
        }
        m_next = index + 1;
    }

private:
    boost::random::sobol m_engine;
    std::size_t m_dimensions;
    std::size_t m_next = 1;
};

Draws::Draws(SampleMethod method, std::uint64_t seed, std::size_t points, std::size_t dimensions)
    : m_method(method), m_seed(seed), m_points(points)
{
    constexpr std::size_t most = boost::random::default_sobol_table::max_dimension;
    if (method == SampleMethod::sobol && dimensions > most)
        throw Error(fmt::format("Sobol's sequence has at most {} numbers a point, and this design asks for {}: choose "
                                "--method latin",
                                most, dimensions));
    if (method == SampleMethod::sobol)
        m_sequence = std::make_unique<Sequence>(dimensions);
}

Draws::~Draws() = default;
Draws::Draws(Draws&&) noexcept = default;

void Draws::point(std::size_t index, std::span<double> numbers)
{
    if (m_sequence)
        return m_sequence->point(index, m_seed, numbers);
    for (std::size_t i = 0; i < numbers.size(); ++i)
        numbers[i] = m_method == SampleMethod::latin ? latin(index, i) : unitNumber(randomBits(m_seed, i, index));
}

// Each of as many like stretches as there are points has one of them.
double Draws::latin(std::size_t index, std::size_t dimension) const
{
    const std::uint64_t bits = randomBits(m_seed, dimension, index);
    const std::uint64_t stretch = shuffled(index % m_points, m_points, mixed(m_seed) ^ dimension);
    const double number = (static_cast<double>(stretch) + unitNumber(bits)) / static_cast<double>(m_points);
    return std::min(number, 1.0 - 0x1p-53);
}

namespace {

using QuickPolicy = boost::math::policies::policy<boost::math::policies::promote_double<false>>;
using Normal = boost::math::normal_distribution<double, QuickPolicy>;

double uniformAt(const Distribution& all, double probability)
{
    if (!all.isWhole)
        return all.low + probability * (all.high - all.low);
    return std::min(all.low + std::floor(probability * (all.high - all.low + 1.0)), all.high); // each is as likely
}

double triangularAt(const Distribution& all, double probability)
{
    const double span = all.high - all.low;
    const double rise = all.peak - all.low;
    if (probability * span <= rise)
        return all.low + std::sqrt(probability * span * rise);
    return all.high - std::sqrt((1.0 - probability) * span * (all.high - all.peak));
}

double normalAt(const Distribution& all, double probability)
{
    const Normal normal(all.peak, all.sd);
    const double below = std::isfinite(all.low) ? cdf(normal, all.low) : 0.0;
    const double within = std::isfinite(all.high) ? cdf(normal, all.high) - below : 1.0 - below;
    constexpr double least = 1e-300;
    const double share = std::clamp(below + probability * within, least, 1.0 - 0x1p-53);
    return std::clamp(quantile(normal, share), all.low, all.high);
}

} // namespace

double deviationsAt(double probability)
{
    return quantile(Normal(), probability);
}

Distribution::Value valueAt(const Distribution& all, double probability)
{
    double number = 0.0;
    switch (all.kind) {
    case Distribution::Kind::uniform:
        return uniformAt(all, probability);
    case Distribution::Kind::triangular:
        number = triangularAt(all, probability);
        break;
    case Distribution::Kind::normal:
        number = normalAt(all, probability);
        break;
    case Distribution::Kind::discrete: {
        double left = probability * std::accumulate(all.weights.begin(), all.weights.end(), 0.0);
        std::size_t last = 0;
        for (std::size_t i = 0; i < all.values.size(); ++i) {
            if (all.weights[i] == 0.0)
                continue;
            last = i;
            left -= all.weights[i];
            if (left < 0.0)
                break;
        }
        return all.values[last];
    }
    }
    if (!all.isWhole)
        return number;
    return std::clamp(std::round(number), std::ceil(all.low), std::floor(all.high));
}

} // namespace zelm::host
