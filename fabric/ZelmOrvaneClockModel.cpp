#include "fabric/ZelmOrvaneClockModel.h"

#include "framework/ZelmModelBlockImpl.h"

#include <cmath>

template class ZelmModelBlock<ZelmOrvaneClockModel, ZelmOrvaneClockParams, ZelmOrvaneClockData>;

// An output that can't be derived from the net's loads.
template <auto cell, class Value>
auto ZelmOrvaneClockModel::fixed(Value value, Params& params, const Data& /*data*/) const
{
    return once(params[cell], [&] { return value; });
}

#define ZELM_MODEL ZelmOrvaneClockModel
#define ZELM_CELL_ROWS "fabric/ZelmOrvaneClockCells.def"
#include "framework/ZelmCellBodies.inc"

namespace {

// Two counts of one kind of site; none at all still leaves MAX's smallest positive float.
float greater(int a, int b)
{
    return ZelmHelperUtils::MAX(static_cast<float>(a), static_cast<float>(b));
}

} // namespace

void ZelmOrvaneClockModel::pullOutputs(Params& params, const Data& data) const
{
    calculateHdCount(params, data);
    calculateHdLocCount(params, data);
    calculateLeaf1Count(params, data);
    viewBufType(params, data);
    calculateGatingProb(params, data);
    calculateHrCount(params, data);
    calculateVrCount(params, data);
    calculateVrSsitCount(params, data);
    calculateHdHsrCount(params, data);
    calculateVdCount(params, data);
    calculateVdL1Count(params, data);
    calculateVdL2Count(params, data);
    calculateVdSsitCount(params, data);
    calculateLeaf2Count(params, data);
    calculateLeaf4Count(params, data);
    calculateLeaf8Count(params, data);
    calculateNumFfSlices(params, data);
    calculateAvgCeFfGroupsPerSlice(params, data);
    calculateProbSliceCe(params, data);
    calculateNumClockedSlices(params, data);
    calculateProbDualEdgeClocking(params, data);
    calculateProbPdelayUsed(params, data);
    calculateNumLutramSlices(params, data);
    calculateNumSrlSlices(params, data);
    calculateNumImuxSlices(params, data);
    calculateAvgCeImuxGroupsPerSlice(params, data);
    calculateProbCtrlImuxUsed(params, data);
    calculateDCounter(params, data);
    calculateMCounter(params, data);
    calculateClkout0Divide(params, data);
    calculateClkout1Divide(params, data);
    calculateClkout2Divide(params, data);
    calculateClkout3Divide(params, data);
    calculateClkout4Divide(params, data);
    calculateClkout5Divide(params, data);
    calculateClkout6Divide(params, data);
    calculateKelpDivide(params, data);
    viewSpreadSpectrum(params, data);
}

float ZelmOrvaneClockModel::calculateMaxHdist(Params& params, const Data& data) const
{
    return once(params[Params::MAX_HDIST], [&] { return static_cast<float>(getNumFsr(params, data)); });
}

float ZelmOrvaneClockModel::calculateMaxLeafs(Params& params, const Data& data) const
{
    return once(params[Params::MAX_LEAFS], [&] {
        const int regions = getNumFsr(params, data);
        const float registers = greater(getNumFfs(params, data), getAvailFfs(params, data));
        const float blockRams = greater(getNumBrams(params, data), getAvailBrams(params, data));
        const float largeRams = greater(getNumPlams(params, data), getAvailPlams(params, data));
        const float dsps = greater(getNumDsps(params, data), getAvailDsps(params, data));
        const float ofRegions = static_cast<float>(zelm::wrapMultiply(regions, 1536)) / 48.0f;
        const float ofSites =
            registers * 16.0f / 3072.0f + blockRams * 16.0f / 12.0f + largeRams * 16.0f / 12.0f + dsps * 16.0f / 24.0f;
        return (ofRegions + ofSites) * 0.0625f;
    });
}

float ZelmOrvaneClockModel::calculateSites(Params& params, const Data& data) const
{
    return once(params[Params::SITES], [&] {
        const float fanout = static_cast<float>(getFanout(params, data));
        const float perSite = getFanoutPerSite(params, data);
        return zelm::ratioOrZero(fanout, perSite);
    });
}

float ZelmOrvaneClockModel::calculateTotalSites(Params& params, const Data& data) const
{
    return once(params[Params::TOTAL_SITES], [&] {
        const float registers = greater(getNumFfs(params, data), getAvailFfs(params, data));
        const float blockRams = greater(getNumBrams(params, data), getAvailBrams(params, data));
        const float largeRams = greater(getNumPlams(params, data), getAvailPlams(params, data));
        const float dsps = greater(getNumDsps(params, data), getAvailDsps(params, data));
        return registers * 0.0625f + blockRams + largeRams + dsps;
    });
}

float ZelmOrvaneClockModel::calculateSiteUtil(Params& params, const Data& data) const
{
    return once(params[Params::SITE_UTIL], [&] {
        const float sites = calculateSites(params, data);
        const float totalSites = calculateTotalSites(params, data);
        return zelm::ratioOrZero(sites, totalSites);
    });
}

float ZelmOrvaneClockModel::utilisation(Params& params, const Data& data) const
{
    const float base = data.findVarData("VAR1");
    const float scale = data.findVarData("VAR2");
    const float siteUtil = calculateSiteUtil(params, data);
    return ZelmHelperUtils::IFERROR(1.0f - std::pow(base, scale * siteUtil), 1);
}

float ZelmOrvaneClockModel::calculateHdistUtil(Params& params, const Data& data) const
{
    return once(params[Params::HDIST_UTIL], [&] { return utilisation(params, data); });
}

float ZelmOrvaneClockModel::calculateLeafUtil(Params& params, const Data& data) const
{
    return once(params[Params::LEAF_UTIL], [&] { return utilisation(params, data); });
}

int ZelmOrvaneClockModel::calculateHdCount(Params& params, const Data& data) const
{
    return once(params[Params::HD_COUNT],
                [&] { return zelm::truncate(calculateMaxHdist(params, data) * calculateHdistUtil(params, data)); });
}

int ZelmOrvaneClockModel::calculateHdLocCount(Params& params, const Data& data) const
{
    return once(params[Params::HD_LOC_COUNT],
                [&] { return zelm::truncate(calculateMaxHdist(params, data) * calculateHdistUtil(params, data)); });
}

int ZelmOrvaneClockModel::calculateLeaf1Count(Params& params, const Data& data) const
{
    return once(params[Params::LEAF_1_COUNT],
                [&] { return zelm::truncate(calculateMaxLeafs(params, data) * calculateLeafUtil(params, data)); });
}

float ZelmOrvaneClockModel::calculateSlices(Params& params, const Data& data) const
{
    return once(params[Params::SLICES], [&] {
        const float sites = calculateSites(params, data);
        const int blockRams = getBramsUsingClk(params, data);
        const int largeRams = getPlamsUsingClk(params, data);
        const int dsps = getDspsUsingClk(params, data);
        const int others = zelm::wrapAdd(zelm::wrapAdd(blockRams, largeRams), dsps);
        // Block RAMs are taken off, large RAMs and DSP slices put on: results must match the characterisation workbook.
        return sites >= static_cast<float>(others)
                   ? sites - static_cast<float>(blockRams) + static_cast<float>(largeRams) + static_cast<float>(dsps)
                   : 0.0f;
    });
}

int ZelmOrvaneClockModel::calculateNumFfSlices(Params& params, const Data& data) const
{
    return once(params[Params::NUM_FF_SLICES], [&] { return zelm::truncate(calculateSlices(params, data)); });
}

int ZelmOrvaneClockModel::calculateNumClockedSlices(Params& params, const Data& data) const
{
    return once(params[Params::NUM_CLOCKED_SLICES], [&] { return zelm::truncate(calculateSlices(params, data)); });
}

int ZelmOrvaneClockModel::shareOfSlices(int loads, Params& params, const Data& data) const
{
    const double slices = calculateSlices(params, data);
    const int lutMemories = getLutramsUsingClk(params, data);
    const int registers = getFfsUsingClk(params, data);
    const int shiftRegisters = getSrlsUsingClk(params, data);
    const int all = zelm::wrapAdd(zelm::wrapAdd(lutMemories, registers), shiftRegisters);
    // An integer quotient, so all slices or none: results must match the characterisation workbook.
    const double share = zelm::quotientOrZero(loads, all);
    return loads > 0 ? zelm::truncate(slices * share) : 0;
}

int ZelmOrvaneClockModel::calculateNumLutramSlices(Params& params, const Data& data) const
{
    return once(params[Params::NUM_LUTRAM_SLICES],
                [&] { return shareOfSlices(getLutramsUsingClk(params, data), params, data); });
}

int ZelmOrvaneClockModel::calculateNumSrlSlices(Params& params, const Data& data) const
{
    return once(params[Params::NUM_SRL_SLICES],
                [&] { return shareOfSlices(getSrlsUsingClk(params, data), params, data); });
}

float ZelmOrvaneClockModel::calculateAvgCeFfGroupsPerSlice(Params& params, const Data& data) const
{
    return once(params[Params::AVG_CE_FF_GROUPS_PER_SLICE], [&] {
        const float slices = calculateSlices(params, data);
        const float registers = static_cast<float>(getFfsUsingClk(params, data));
        const double base = data.findVarData("VAR1");
        const double scale = data.findVarData("VAR2");
        const double fill = zelm::ratioOrZero(registers, slices * 16.0f);
        // The count of slices is a factor, whatever the name says: results must match the characterisation workbook.
        return slices > 0.0f ? (1.0 - std::pow(base, fill * scale)) * 4.0 * static_cast<double>(slices) : 0.0;
    });
}
