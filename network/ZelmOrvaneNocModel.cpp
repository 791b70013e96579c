#include "network/ZelmOrvaneNocModel.h"

#include "framework/ZelmModelBlockImpl.h"

#include <algorithm>

#define ZELM_MODEL ZelmOrvaneNocModel
#define ZELM_CELL_ROWS "network/ZelmOrvaneNocCells.def"
#define ZELM_TABLE_ROWS "network/ZelmOrvaneNocTables.def"

struct ZelmOrvaneNocModel::Sheet : zelm::Sheet<ZelmOrvaneNocModel> {
#include "framework/ZelmAccessors.inc"

    void pullOutputs() const
    {
        VccSocPwr();
        PwrScaleFactor();
        NocClkPwr();
        TotalPathPwr();
        UsedClkBuffers();
    }

    int averageSwitches() const
    {
        const Key& device = IntDeviceName();
        const Key& path = DataPath();
        return findDeviceData(device, path, "AVG_SW");
    }

    std::string_view computeIntDeviceName() const
    {
        const std::string_view found = findDeviceIntNames(Device());
        return IFERROR(found, "ZQ20T60");
    }

    int computeTotalClockBuffers() const
    {
        const int found = findClockBufferMax(IntDeviceName());
        return IFERROR(found, 64);
    }

    int computeDdrOnlyClockBuffers() const
    {
        const int found = findClockBufferDdr(IntDeviceName());
        return IFERROR(found, 24);
    }

    int computeDefaultClockBuffers() const
    {
        const int switches = NumSwitches();
        return std::max(switches, 6);
    }

    int computeUsedClkBuffers() const
    {
        const int wistPaths = NumWistPaths();
        const int plPaths = NumPlPaths();
        const int nemtPaths = NumNemtPaths();
        const int ps2NemtPaths = NumPs2NemtPaths();
        const float buffers = static_cast<float>(NumClockBuffers());
        const float most = static_cast<float>(TotalClockBuffers());
        const float mostForDdr = static_cast<float>(DdrOnlyClockBuffers());
        const bool ddrOnly = zelm::wrapAdd(zelm::wrapAdd(wistPaths, plPaths), nemtPaths) < 1 && ps2NemtPaths < 1;
        return zelm::truncate(MIN(buffers, ddrOnly ? mostForDdr : most));
    }

    double computePwrScaleFactor() const
    {
        const float vccSoc = VccSoc();
        const double square = vccSoc * vccSoc;
        return square / 0.7744; // 0.88 V squared
    }

    double computeRawBw() const
    {
        const float read = BandwithRead();
        const int readSize = TransactionReadSize();
        const float write = BandwithWrite();
        const int writeSize = TransactionWriteSize();
        // A write costs one header beat more than a read.
        return withHeaders(read, readSize, 1.0) + withHeaders(write, writeSize, 2.0);
    }

    // Bandwidth in Gb/s, with the headers of transactions of that size: 16 bytes are a beat.
    static double withHeaders(float bandwidth, int transactionSize, double headerBeats)
    {
        const float beats = static_cast<float>(transactionSize) * 0.0625f;
        const double payload = 8.0f * bandwidth / 1000.0f;
        return transactionSize < 1 ? 0.0
                                   : payload * (headerBeats + static_cast<double>(beats)) / static_cast<double>(beats);
    }

    float computeNmuPwr() const
    {
        const float rawBw = RawBw();
        return findCommonData("NMU_DYNAMIC") * rawBw + findCommonData("NMU_STAT");
    }

    float computeNsuPwr() const
    {
        const float rawBw = RawBw();
        return findCommonData("NSU_DYNAMIC") * rawBw + findCommonData("NSU_STAT");
    }

    float computeNpsPwr() const
    {
        const float rawBw = RawBw();
        const float switches = static_cast<float>(NumSwitches());
        return (findCommonData("NPS_DYNAMIC") * rawBw + findCommonData("NPS_STAT")) * switches;
    }

    float computeTotalPathPwr() const
    {
        const float nmu = NmuPwr();
        const float nsu = NsuPwr();
        const float nps = NpsPwr();
        const float scale = PwrScaleFactor();
        return (nmu + nsu + nps) * scale;
    }

    float computeNocClkPwr() const
    {
        const float clock = NocClk();
        const float perBuffer = findCommonData("NOC_CLK_DYANMIC"); // the key's spelling in the data files
        const float buffers = static_cast<float>(UsedClkBuffers());
        const float scale = PwrScaleFactor();
        return clock / 1000.0f * perBuffer * buffers * scale;
    }

    float computeVccSocPwr() const
    {
        const float path = TotalPathPwr();
        const float clock = NocClkPwr();
        return path > 0.0f ? path + clock : 0.0f; // no clock power where the path carries nothing
    }
};

#include "framework/ZelmModelBodies.inc"
