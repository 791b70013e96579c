#include "fabric/ZelmOrvaneClockModel.h"

#include "framework/ZelmModelBlockImpl.h"

#include <cmath>

#define ZELM_MODEL ZelmOrvaneClockModel
#define ZELM_CELL_ROWS "fabric/ZelmOrvaneClockCells.def"
#define ZELM_TABLE_ROWS "fabric/ZelmOrvaneClockTables.def"
#define ZELM_FAMILY_HOLDS(cell, member, metric) true // a member is the value itself

struct ZelmOrvaneClockModel::Sheet : zelm::Sheet<ZelmOrvaneClockModel> {
#include "framework/ZelmAccessors.inc"

    // An output that can't be derived from the net's loads.
    template <class Value>
    static Value fixed(Value value)
    {
        return value;
    }

    struct SiteCounts {
        float registers;
        float blockRams;
        float largeRams;
        float dsps;
    };

    // Two counts of one kind of site; none at all still leaves MAX's smallest positive float.
    static float greater(int a, int b)
    {
        return MAX(static_cast<float>(a), static_cast<float>(b));
    }

    SiteCounts usedOrAvailable() const
    {
        const int ffs = NumFfs();
        const int availableFfs = AvailFfs();
        const int brams = NumBrams();
        const int availableBrams = AvailBrams();
        const int plams = NumPlams();
        const int availablePlams = AvailPlams();
        const int dsps = NumDsps();
        const int availableDsps = AvailDsps();
        return {greater(ffs, availableFfs), greater(brams, availableBrams), greater(plams, availablePlams),
                greater(dsps, availableDsps)};
    }

    void pullOutputs() const
    {
        HdCount();
        HdLocCount();
        Leaf1Count();
        BufType();
        GatingProb();
        HrCount();
        VrCount();
        VrSsitCount();
        HdHsrCount();
        VdCount();
        VdL1Count();
        VdL2Count();
        VdSsitCount();
        Leaf2Count();
        Leaf4Count();
        Leaf8Count();
        NumFfSlices();
        AvgCeFfGroupsPerSlice();
        ProbSliceCe();
        NumClockedSlices();
        ProbDualEdgeClocking();
        ProbPdelayUsed();
        NumLutramSlices();
        NumSrlSlices();
        NumImuxSlices();
        AvgCeImuxGroupsPerSlice();
        ProbCtrlImuxUsed();
        DCounter();
        MCounter();
        Clkout0Divide();
        Clkout1Divide();
        Clkout2Divide();
        Clkout3Divide();
        Clkout4Divide();
        Clkout5Divide();
        Clkout6Divide();
        KelpDivide();
        SpreadSpectrum();
    }

    float computeMaxHdist() const
    {
        return static_cast<float>(NumFsr());
    }

    float computeMaxLeafs() const
    {
        const int regions = NumFsr();
        const SiteCounts sites = usedOrAvailable();
        const float ofRegions = static_cast<float>(zelm::wrapMultiply(regions, 1536)) / 48.0f;
        const float ofSites = sites.registers * 16.0f / 3072.0f + sites.blockRams * 16.0f / 12.0f +
                              sites.largeRams * 16.0f / 12.0f + sites.dsps * 16.0f / 24.0f;
        return (ofRegions + ofSites) * 0.0625f;
    }

    float computeSites() const
    {
        const float fanout = static_cast<float>(Fanout());
        const float perSite = FanoutPerSite();
        return zelm::ratioOrZero(fanout, perSite);
    }

    float computeTotalSites() const
    {
        const SiteCounts sites = usedOrAvailable();
        return sites.registers * 0.0625f + sites.blockRams + sites.largeRams + sites.dsps;
    }

    float computeSiteUtil() const
    {
        const float sites = Sites();
        const float totalSites = TotalSites();
        return zelm::ratioOrZero(sites, totalSites);
    }

    float utilisation() const
    {
        const float base = findVarData("VAR1");
        const float scale = findVarData("VAR2");
        const float siteUtil = SiteUtil();
        return IFERROR(1.0f - std::pow(base, scale * siteUtil), 1);
    }

    float computeHdistUtil() const
    {
        return utilisation();
    }

    float computeLeafUtil() const
    {
        return utilisation();
    }

    int computeHdCount() const
    {
        return zelm::truncate(MaxHdist() * HdistUtil());
    }

    int computeHdLocCount() const
    {
        return zelm::truncate(MaxHdist() * HdistUtil());
    }

    int computeLeaf1Count() const
    {
        return zelm::truncate(MaxLeafs() * LeafUtil());
    }

    float computeSlices() const
    {
        const float sites = Sites();
        const int blockRams = BramsUsingClk();
        const int largeRams = PlamsUsingClk();
        const int dsps = DspsUsingClk();
        const int others = zelm::wrapAdd(zelm::wrapAdd(blockRams, largeRams), dsps);
        // Block RAMs are taken off, large RAMs and DSP slices put on: results must match the characterisation workbook.
        return sites >= static_cast<float>(others)
                   ? sites - static_cast<float>(blockRams) + static_cast<float>(largeRams) + static_cast<float>(dsps)
                   : 0.0f;
    }

    int computeNumFfSlices() const
    {
        return zelm::truncate(Slices());
    }

    int computeNumClockedSlices() const
    {
        return zelm::truncate(Slices());
    }

    int shareOfSlices(int loads) const
    {
        const double slices = Slices();
        const int lutMemories = LutramsUsingClk();
        const int registers = FfsUsingClk();
        const int shiftRegisters = SrlsUsingClk();
        const int all = zelm::wrapAdd(zelm::wrapAdd(lutMemories, registers), shiftRegisters);
        // An integer quotient, so all slices or none: results must match the characterisation workbook.
        const double share = zelm::quotientOrZero(loads, all);
        return loads > 0 ? zelm::truncate(slices * share) : 0;
    }

    int computeNumLutramSlices() const
    {
        return shareOfSlices(LutramsUsingClk());
    }

    int computeNumSrlSlices() const
    {
        return shareOfSlices(SrlsUsingClk());
    }

    double computeAvgCeFfGroupsPerSlice() const
    {
        const float slices = Slices();
        const float registers = static_cast<float>(FfsUsingClk());
        const double base = findVarData("VAR1");
        const double scale = findVarData("VAR2");
        const double fill = zelm::ratioOrZero(registers, slices * 16.0f);
        // The count of slices is a factor, whatever the name says: results must match the characterisation workbook.
        return slices > 0.0f ? (1.0 - std::pow(base, fill * scale)) * 4.0 * static_cast<double>(slices) : 0.0;
    }
};

#include "framework/ZelmModelBodies.inc"
