#include "network/ZelmOrvaneDdrmcModel.h"

#include "framework/ZelmModelBlockImpl.h"

template class ZelmModelBlock<ZelmOrvaneDdrmcModel, ZelmOrvaneDdrmcParams, ZelmOrvaneDdrmcData>;

#define ZELM_MODEL ZelmOrvaneDdrmcModel
#define ZELM_CELL_ROWS "network/ZelmOrvaneDdrmcCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneDdrmcModel::pullOutputs(Params& params, const Data& data) const
{
    calculateVccsocPower(params, data);
}

int ZelmOrvaneDdrmcModel::calculateTotalDataWidth(Params& params, const Data& data) const
{
    return once(params[Params::TOTAL_DATA_WIDTH], [&] {
        const int width = getDataWidth(params, data);
        const int channels = getNumChannels(params, data);
        const std::string_view standard = viewDdrStandard(params, data);
        const std::string_view ecc = viewEccUsage(params, data);
        int eccBits = 0;
        if (ecc != "NO" && channels == 1) { // all but NO counts as ECC here, unlike in ECC_USAGE_STR
            if (width > 15 && standard == "DDR4")
                eccBits = 8;
            else if (standard == "LP4")
                eccBits = 16;
        }
        return zelm::wrapAdd(width, eccBits);
    });
}

std::string_view ZelmOrvaneDdrmcModel::viewEccUsageStr(Params& params, const Data& data) const
{
    return once(params[Params::ECC_USAGE_STR], [&] {
        const std::string_view ecc = viewEccUsage(params, data);
        return ecc == "YES" ? "ECC_ENABLED" : "ECC_DISABLED"; // all but YES counts as no ECC here
    });
}

std::string_view ZelmOrvaneDdrmcModel::viewConfigStr(Params& params, const Data& data) const
{
    return once(params[Params::CONFIG_STR], [&] {
        const std::string_view option = viewCommandBusOption(params, data);
        const std::string_view standard = viewDdrStandard(params, data);
        const int channels = getNumChannels(params, data);
        const int width = calculateTotalDataWidth(params, data);
        const std::string_view ecc = viewEccUsageStr(params, data);
        return std::string(option)
            .append("_")
            .append(standard)
            .append("_")
            .append(std::to_string(channels))
            .append("CH_X")
            .append(std::to_string(width))
            .append("_")
            .append(ecc);
    });
}

std::string_view ZelmOrvaneDdrmcModel::viewDataWidthStr(Params& params, const Data& data) const
{
    return once(params[Params::DATA_WIDTH_STR], [&] {
        const std::string_view standard = viewDdrStandard(params, data);
        const std::string_view ecc = viewEccUsage(params, data);
        const int channels = getNumChannels(params, data);
        return std::string(standard)
            .append("_ECC")
            .append(ecc)
            .append("_CH")
            .append(std::to_string(channels))
            .append("_DATA_WIDTH_LIST");
    });
}

std::string_view ZelmOrvaneDdrmcModel::viewDdrmcConfigStr(Params& params, const Data& data) const
{
    return once(params[Params::DDRMC_CONFIG_STR], [&] {
        const float dataRate = data.findDdrmcData(viewConfigStr(params, data), "DATARATE");
        return ZelmHelperUtils::ISERROR(dataRate) ? "INVALID_CONFIG" : "VALID_CONFIG";
    });
}

float ZelmOrvaneDdrmcModel::calculateVoltageScaling(Params& params, const Data& data) const
{
    return once(params[Params::VOLTAGE_SCALING], [&] {
        const float vccSoc = getVccSoc(params, data);
        const float simVoltage = data.findSimConditions("SIM_VOLTAGE");
        const float drop = (simVoltage - vccSoc) / simVoltage;
        const double rest = 1.0 - static_cast<double>(drop);
        return simVoltage == 0.0f ? 1.0 : rest * rest;
    });
}

float ZelmOrvaneDdrmcModel::calculateReadRate(Params& params, const Data& data) const
{
    return once(params[Params::READ_RATE], [&] { return shareOfBus(getReadBandWidth(params, data), params, data); });
}

float ZelmOrvaneDdrmcModel::calculateWriteRate(Params& params, const Data& data) const
{
    return once(params[Params::WRITE_RATE], [&] { return shareOfBus(getWriteBandWidth(params, data), params, data); });
}

// The bandwidth in percent of what the pins without ECC carry.
float ZelmOrvaneDdrmcModel::shareOfBus(float bandWidth, Params& params, const Data& data) const
{
    const float width = static_cast<float>(getDataWidth(params, data));
    const float dataRate = getDataRate(params, data);
    const float peak = width * dataRate;
    return peak == 0.0f || !(dataRate > 0.0f) ? 0.0f : bandWidth * 8.0f / peak * 100.0f;
}

float ZelmOrvaneDdrmcModel::calculateReadOnlyDatarate(Params& params, const Data& data) const
{
    return once(params[Params::READ_ONLY_DATARATE], [&] {
        const float dataRate = data.findDdrmcData(viewConfigStr(params, data), "DATARATE");
        return viewDdrmcConfigStr(params, data) == "VALID_CONFIG" ? dataRate : 0.0f;
    });
}

float ZelmOrvaneDdrmcModel::calculateVccsocPower(Params& params, const Data& data) const
{
    return once(params[Params::VCCSOC_POWER], [&] {
        const std::string_view config = viewConfigStr(params, data);
        const bool valid = viewDdrmcConfigStr(params, data) != "INVALID_CONFIG";
        const float power = data.findDdrmcData(config, "DYNAMIC_POWER");
        const float rateRatio = zelm::ratioOrZero(getDataRate(params, data), data.findDdrmcData(config, "DATARATE"));
        const float clockRatio = zelm::ratioOrZero(getNocNsuClk(params, data) / 1000.0f, data.findNsuClock("CLK_FREQ"));
        const float writeRate = calculateWriteRate(params, data);
        const float readRate = calculateReadRate(params, data);
        const float scaling = calculateVoltageScaling(params, data);

        // Between a floor of 50 mW and the characterised power, half owed to the memory's rate and half to the NSU
        // clock; characterised at 80 % of the bus.
        const double halfSpan = (power - 50.0f) * 0.5f;
        const double ratios = static_cast<double>(rateRatio) + static_cast<double>(clockRatio);
        const float load = static_cast<float>(halfSpan * ratios * static_cast<double>(writeRate + readRate));
        const float milliwatts = load / 80.0f + 50.0f;
        return valid ? milliwatts * scaling / 1000.0f : 0.0f;
    });
}
