#include "host/study/Spread.h"

#include <algorithm>
#include <cmath>

namespace zelm::host {

namespace {

constexpr std::size_t kMostKept = 65536;
constexpr std::size_t kBins = 16384;
constexpr std::size_t kDrawnBins = 40;

} // namespace

double Band::relativeError() const
{
    const auto share = [](double error, double value) { return std::fabs(error / value); };
    const double largest = std::max({share(p5Error, p5), share(p50Error, p50), share(p95Error, p95)});
    return std::isnan(p5 + p50 + p95 + largest) ? HUGE_VAL : largest;
}

void Spread::add(double value)
{
    if (std::isnan(value)) {
        ++m_lost;
        return;
    }
    m_least = m_count == 0 ? value : std::min(m_least, value);
    m_most = m_count == 0 ? value : std::max(m_most, value);
    ++m_count;
    const double off = value - m_mean;
    m_mean += off / static_cast<double>(m_count);
    m_squares += off * (value - m_mean);
    if (m_bins.empty() && m_values.size() == kMostKept)
        beginBins();
    if (m_bins.empty()) {
        m_values.push_back(value);
        m_sorted = false;
    } else {
        ++m_bins[binOf(value)];
    }
}

// As wide again on both sides as what has been seen: what lies beyond counts in the last bins.
void Spread::beginBins()
{
    const double span = std::max(m_most - m_least, 1e-12 * std::fabs(m_mean) + 1e-300);
    m_low = m_least - span;
    m_width = 3.0 * span / static_cast<double>(kBins);
    m_bins.assign(kBins, 0);
    for (const double value : m_values)
        ++m_bins[binOf(value)];
    m_values.clear();
    m_values.shrink_to_fit();
}

std::size_t Spread::binOf(double value) const
{
    const double place = (value - m_low) / m_width;
    return static_cast<std::size_t>(std::clamp(place, 0.0, static_cast<double>(kBins - 1)));
}

const std::vector<double>& Spread::sorted() const
{
    if (!m_sorted)
        std::sort(m_values.begin(), m_values.end());
    m_sorted = true;
    return m_values;
}

double Spread::quantile(double share) const
{
    const std::size_t all = m_count + m_lost;
    if (all == 0)
        return std::nan("");
    const double place = std::clamp(share, 0.0, 1.0) * static_cast<double>(all - 1);
    const auto below = static_cast<std::size_t>(place);
    const double rest = place - static_cast<double>(below);
    const std::size_t above = rest > 0.0 ? below + 1 : below;
    if (above >= m_count)
        return std::nan("");
    if (m_bins.empty())
        return sorted()[below] + rest * (sorted()[above] - sorted()[below]);
    std::uint64_t counted = 0;
    std::size_t bin = 0;
    while (counted + m_bins[bin] <= below)
        counted += m_bins[bin++];
    const double within = (place - static_cast<double>(counted) + 0.5) / static_cast<double>(m_bins[bin]);
    return std::clamp(m_low + m_width * (static_cast<double>(bin) + within), m_least, m_most);
}

// How many values lie below a quantile is binomial: half of what lies between the quantiles one deviation of that
// number to either side.
double Spread::standardError(double share) const
{
    const double deviation = std::sqrt(share * (1.0 - share) / static_cast<double>(m_count + m_lost));
    return 0.5 * (quantile(share + deviation) - quantile(share - deviation));
}

std::vector<std::size_t> Spread::histogram() const
{
    std::vector<std::size_t> counts(kDrawnBins, 0);
    const double width = (m_most - m_least) / static_cast<double>(kDrawnBins);
    const auto count = [&](double value, std::size_t times) {
        const double place = width > 0.0 ? (value - m_least) / width : 0.0;
        counts[static_cast<std::size_t>(std::clamp(place, 0.0, static_cast<double>(kDrawnBins - 1)))] += times;
    };
    for (const double value : m_values)
        count(value, 1);
    for (std::size_t i = 0; i < m_bins.size(); ++i)
        count(m_low + m_width * (static_cast<double>(i) + 0.5), m_bins[i]);
    return counts;
}

Band Spread::band() const
{
    Band band;
    band.lost = m_lost;
    const double count = static_cast<double>(m_count);
    band.mean = m_count > 0 ? m_mean : std::nan("");
    band.sd = m_count > 1 ? std::sqrt(m_squares / (count - 1.0)) : m_count == 1 ? 0.0 : std::nan("");
    band.meanError = band.sd / std::sqrt(count);
    constexpr double low = 0.05;
    constexpr double middle = 0.5;
    constexpr double high = 0.95;
    band.p5 = quantile(low);
    band.p50 = quantile(middle);
    band.p95 = quantile(high);
    band.p5Error = standardError(low);
    band.p50Error = standardError(middle);
    band.p95Error = standardError(high);
    band.least = m_least;
    band.most = m_most;
    band.histogram = histogram();
    return band;
}

} // namespace zelm::host
