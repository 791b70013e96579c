#pragma once

#include "host/design/Design.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zelm::host {

/// Numbers of the data that are off together, by one factor: those of one entry of the data's uncertainty.
struct DataFactor {
    std::string block;
    std::string kind; ///< dynamic, static, process or temperature; empty for a rail that moves apart
    std::string rail;
    double relative = 0.0; ///< one standard deviation over the number

    /// "Signal dynamic", "Selv VCCO"
    std::string name() const;
    /// The factor that so many standard deviations make: log-normal, so that its median is 1.
    double at(double deviations) const;
};

/// By how much the data are off in one sample of a design. Without entries, by nothing.
class DataFactors {
public:
    DataFactors();
    /// With an entry for each kind and rail of the design's blocks; all factors are 1.
    explicit DataFactors(const Design& design);

    const std::vector<DataFactor>& entries() const
    {
        return m_entries;
    }
    /// One for each entry.
    void set(std::span<const double> factors);

    /// Of what a group of a block loads a rail with.
    double of(const Block& block, std::string_view rail) const;
    /// Of what it burns off the chip.
    double of(const Block& block) const;
    /// Of the leakage of a process side at a junction temperature.
    double ofLeakage(std::string_view process, double junction) const;
    /// Of the static currents of rails, in the order of railNames, that don't count as leakage; NaN for those that do.
    const std::vector<double>& ofRails() const
    {
        return m_ofRails;
    }

private:
    struct OfBlock {
        double dynamic = 1.0;
        std::vector<std::pair<std::string, double>> rails;
    };
    void place(const DataFactor& entry, double factor);
    void placeStatic(const DataFactor& entry, double factor);

    std::vector<DataFactor> m_entries;
    std::vector<OfBlock> m_ofBlocks; // by their place in the list of blocks
    std::vector<double> m_ofRails;
    double m_static = 1.0;
    double m_process = 1.0;
    double m_perDegree = 0.0; // logarithm
};

} // namespace zelm::host
