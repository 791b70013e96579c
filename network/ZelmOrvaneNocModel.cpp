#include "network/ZelmOrvaneNocModel.h"

#include "framework/ZelmModelBlockImpl.h"

#include <algorithm>

template class ZelmModelBlock<ZelmOrvaneNocModel, ZelmOrvaneNocParams, ZelmOrvaneNocData>;

#define ZELM_MODEL ZelmOrvaneNocModel
#define ZELM_CELL_ROWS "network/ZelmOrvaneNocCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneNocModel::pullOutputs(Params& params, const Data& data) const
{
    calculateVccSocPwr(params, data);
    calculatePwrScaleFactor(params, data);
    calculateNocClkPwr(params, data);
    calculateTotalPathPwr(params, data);
    calculateUsedClkBuffers(params, data);
}

std::string_view ZelmOrvaneNocModel::viewIntDeviceName(Params& params, const Data& data) const
{
    return once(params[Params::INT_DEVICE_NAME], [&] {
        const std::string_view found = data.findDeviceIntNames(viewDevice(params, data));
        return ZelmHelperUtils::IFERROR(found, "ZQ20T60");
    });
}

int ZelmOrvaneNocModel::calculateTotalClockBuffers(Params& params, const Data& data) const
{
    return once(params[Params::TOTAL_CLOCK_BUFFERS], [&] {
        const int found = data.findClockBufferMax(viewIntDeviceName(params, data));
        return ZelmHelperUtils::IFERROR(found, 64);
    });
}

int ZelmOrvaneNocModel::calculateDdrOnlyClockBuffers(Params& params, const Data& data) const
{
    return once(params[Params::DDR_ONLY_CLOCK_BUFFERS], [&] {
        const int found = data.findClockBufferDdr(viewIntDeviceName(params, data));
        return ZelmHelperUtils::IFERROR(found, 24);
    });
}

int ZelmOrvaneNocModel::calculateDefaultClockBuffers(Params& params, const Data& data) const
{
    return once(params[Params::DEFAULT_CLOCK_BUFFERS], [&] {
        const int switches = getNumSwitches(params, data);
        return std::max(switches, 6);
    });
}

int ZelmOrvaneNocModel::calculateUsedClkBuffers(Params& params, const Data& data) const
{
    return once(params[Params::USED_CLK_BUFFERS], [&] {
        const int wistPaths = getNumWistPaths(params, data);
        const int plPaths = getNumPlPaths(params, data);
        const int nemtPaths = getNumNemtPaths(params, data);
        const int ps2NemtPaths = getNumPs2NemtPaths(params, data);
        const float buffers = static_cast<float>(getNumClockBuffers(params, data));
        const float most = static_cast<float>(calculateTotalClockBuffers(params, data));
        const float mostForDdr = static_cast<float>(calculateDdrOnlyClockBuffers(params, data));
        const bool ddrOnly = zelm::wrapAdd(zelm::wrapAdd(wistPaths, plPaths), nemtPaths) < 1 && ps2NemtPaths < 1;
        return zelm::truncate(ZelmHelperUtils::MIN(buffers, ddrOnly ? mostForDdr : most));
    });
}

float ZelmOrvaneNocModel::calculatePwrScaleFactor(Params& params, const Data& data) const
{
    return once(params[Params::PWR_SCALE_FACTOR], [&] {
        const float vccSoc = getVccSoc(params, data);
        const double square = vccSoc * vccSoc;
        return square / 0.7744; // 0.88 V squared
    });
}

float ZelmOrvaneNocModel::calculateRawBw(Params& params, const Data& data) const
{
    return once(params[Params::RAW_BW], [&] {
        const float read = getBandwithRead(params, data);
        const int readSize = getTransactionReadSize(params, data);
        const float write = getBandwithWrite(params, data);
        const int writeSize = getTransactionWriteSize(params, data);
        // A write costs one header beat more than a read.
        return withHeaders(read, readSize, 1.0) + withHeaders(write, writeSize, 2.0);
    });
}

// Bandwidth in Gb/s, with the headers of transactions of that size: 16 bytes are a beat.
double ZelmOrvaneNocModel::withHeaders(float bandwidth, int transactionSize, double headerBeats)
{
    const float beats = static_cast<float>(transactionSize) * 0.0625f;
    const double payload = 8.0f * bandwidth / 1000.0f;
    return transactionSize < 1 ? 0.0
                               : payload * (headerBeats + static_cast<double>(beats)) / static_cast<double>(beats);
}

float ZelmOrvaneNocModel::calculateNmuPwr(Params& params, const Data& data) const
{
    return once(params[Params::NMU_PWR], [&] {
        const float rawBw = calculateRawBw(params, data);
        return data.findCommonData("NMU_DYNAMIC") * rawBw + data.findCommonData("NMU_STAT");
    });
}

float ZelmOrvaneNocModel::calculateNsuPwr(Params& params, const Data& data) const
{
    return once(params[Params::NSU_PWR], [&] {
        const float rawBw = calculateRawBw(params, data);
        return data.findCommonData("NSU_DYNAMIC") * rawBw + data.findCommonData("NSU_STAT");
    });
}

float ZelmOrvaneNocModel::calculateNpsPwr(Params& params, const Data& data) const
{
    return once(params[Params::NPS_PWR], [&] {
        const float rawBw = calculateRawBw(params, data);
        const float switches = static_cast<float>(getNumSwitches(params, data));
        return (data.findCommonData("NPS_DYNAMIC") * rawBw + data.findCommonData("NPS_STAT")) * switches;
    });
}

float ZelmOrvaneNocModel::calculateTotalPathPwr(Params& params, const Data& data) const
{
    return once(params[Params::TOTAL_PATH_PWR], [&] {
        const float nmu = calculateNmuPwr(params, data);
        const float nsu = calculateNsuPwr(params, data);
        const float nps = calculateNpsPwr(params, data);
        const float scale = calculatePwrScaleFactor(params, data);
        return (nmu + nsu + nps) * scale;
    });
}

float ZelmOrvaneNocModel::calculateNocClkPwr(Params& params, const Data& data) const
{
    return once(params[Params::NOC_CLK_PWR], [&] {
        const float clock = getNocClk(params, data);
        const float perBuffer = data.findCommonData("NOC_CLK_DYANMIC"); // the key's spelling in the data files
        const float buffers = static_cast<float>(calculateUsedClkBuffers(params, data));
        const float scale = calculatePwrScaleFactor(params, data);
        return clock / 1000.0f * perBuffer * buffers * scale;
    });
}

float ZelmOrvaneNocModel::calculateVccSocPwr(Params& params, const Data& data) const
{
    return once(params[Params::VCC_SOC_PWR], [&] {
        const float path = calculateTotalPathPwr(params, data);
        const float clock = calculateNocClkPwr(params, data);
        return path > 0.0f ? path + clock : 0.0f; // no clock power where the path carries nothing
    });
}
