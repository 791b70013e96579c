#include "host/estimate/DataFactors.h"

#include "host/blocks/Rails.h"
#include "host/blocks/Uncertainty.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace zelm::host {

std::string DataFactor::name() const
{
    return fmt::format("{} {}", block, rail.empty() ? kind : rail);
}

double DataFactor::at(double deviations) const
{
    return std::exp(std::sqrt(std::log1p(relative * relative)) * deviations);
}

DataFactors::DataFactors() : m_ofBlocks(blocks().size()), m_ofRails(railNames().size(), std::nan("")) {}

DataFactors::DataFactors(const Design& design) : DataFactors()
{
    std::set<const Block*> used;
    for (const Group& group : design.groups) {
        for (const Block* reached : inputBlocks(*group.block))
            used.insert(reached);
    }
    if (design.device)
        used.insert(&block("Static"));
    const auto known = uncertainties();
    for (const Block& each : blocks()) {
        const auto found = known.find(each.name);
        if (!used.contains(&each) || found == known.end())
            continue;
        for (const Uncertainty& uncertainty : found->second) {
            // Nothing that another block loads rails with is leakage by itself.
            const bool counts = each.name == "Static" || !uncertainty.rail.empty() || uncertainty.kind == "dynamic";
            if (counts)
                m_entries.push_back({std::string(each.name), uncertainty.kind, uncertainty.rail, uncertainty.relative});
        }
    }
    set(std::vector<double>(m_entries.size(), 1.0));
}

void DataFactors::set(std::span<const double> factors)
{
    for (OfBlock& each : m_ofBlocks)
        each.rails.clear();
    for (std::size_t i = 0; i < m_entries.size(); ++i)
        place(m_entries[i], factors[i]);
}

void DataFactors::place(const DataFactor& entry, double factor)
{
    if (entry.block == "Static")
        return placeStatic(entry, factor);
    OfBlock& own = m_ofBlocks[placeOf(block(entry.block))];
    if (entry.rail.empty())
        own.dynamic = factor;
    else
        own.rails.emplace_back(entry.rail, factor);
}

void DataFactors::placeStatic(const DataFactor& entry, double factor)
{
    constexpr double degrees = 30.0; // that the data tell the temperature's uncertainty for
    const std::vector<std::string>& rails = railNames();
    const auto rail = std::find(rails.begin(), rails.end(), entry.rail);
    if (rail != rails.end())
        m_ofRails[static_cast<std::size_t>(rail - rails.begin())] = factor;
    else if (entry.kind == "static")
        m_static = factor;
    else if (entry.kind == "process")
        m_process = factor;
    else if (entry.kind == "temperature")
        m_perDegree = std::log(factor) / degrees;
}

double DataFactors::of(const Block& block) const
{
    return m_ofBlocks[placeOf(block)].dynamic;
}

// The pads' VCCO is the rail of their bank: VCCO18.
double DataFactors::of(const Block& block, std::string_view rail) const
{
    const OfBlock& own = m_ofBlocks[placeOf(block)];
    for (const auto& [name, factor] : own.rails) {
        if (name == rail || (name == "VCCO" && rail.starts_with(name)))
            return factor;
    }
    return own.dynamic;
}

double DataFactors::ofLeakage(std::string_view process, double junction) const
{
    constexpr double reference = 25.0;
    return m_static * (process == "MAX" ? m_process : 1.0) * std::exp(m_perDegree * (junction - reference));
}

} // namespace zelm::host
