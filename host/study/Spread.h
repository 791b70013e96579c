#pragma once

#include "host/study/Sample.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zelm::host {

/// Values of one quantity, one after the other. All of them are kept as long as they are few; many are counted in fine
/// bins, so that memory stays flat.
class Spread {
public:
    void add(double value);
    /// The value below which that share lies.
    double quantile(double share) const;
    Band band() const;

private:
    void beginBins();
    std::size_t binOf(double value) const;
    double standardError(double share) const;
    std::vector<std::size_t> histogram() const;
    const std::vector<double>& sorted() const;

    mutable std::vector<double> m_values; // while they are few
    mutable bool m_sorted = true;
    std::vector<std::uint64_t> m_bins;
    double m_low = 0.0; // of the bins
    double m_width = 0.0;
    std::size_t m_count = 0;
    std::size_t m_lost = 0;
    double m_mean = 0.0;
    double m_squares = 0.0; // of what the values are off the mean
    double m_least = 0.0;
    double m_most = 0.0;
};

} // namespace zelm::host
