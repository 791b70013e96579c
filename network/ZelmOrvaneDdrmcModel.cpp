#include "network/ZelmOrvaneDdrmcModel.h"

#include "framework/ZelmModelBlockImpl.h"

#define ZELM_MODEL ZelmOrvaneDdrmcModel
#define ZELM_CELL_ROWS "network/ZelmOrvaneDdrmcCells.def"
#define ZELM_TABLE_ROWS "network/ZelmOrvaneDdrmcTables.def"

struct ZelmOrvaneDdrmcModel::Sheet : zelm::Sheet<ZelmOrvaneDdrmcModel> {
#include "framework/ZelmAccessors.inc"

    void pullOutputs() const
    {
        VccsocPower();
    }

    int computeTotalDataWidth() const
    {
        const int width = DataWidth();
        const int channels = NumChannels();
        const Key& standard = DdrStandard();
        const Key& ecc = EccUsage();
        int eccBits = 0;
        if (ecc != "NO" && channels == 1) { // all but NO counts as ECC here, unlike in ECC_USAGE_STR
            if (width > 15 && standard == "DDR4")
                eccBits = 8;
            else if (standard == "LP4")
                eccBits = 16;
        }
        return zelm::wrapAdd(width, eccBits);
    }

    std::string_view computeEccUsageStr() const
    {
        const Key& ecc = EccUsage();
        return ecc == "YES" ? "ECC_ENABLED" : "ECC_DISABLED"; // all but YES counts as no ECC here
    }

    std::string computeConfigStr() const
    {
        const Key& option = CommandBusOption();
        const Key& standard = DdrStandard();
        const int channels = NumChannels();
        const int width = TotalDataWidth();
        const Key& ecc = EccUsageStr();
        return std::string(option)
            .append("_")
            .append(standard)
            .append("_")
            .append(std::to_string(channels))
            .append("CH_X")
            .append(std::to_string(width))
            .append("_")
            .append(ecc);
    }

    std::string computeDataWidthStr() const
    {
        const Key& standard = DdrStandard();
        const Key& ecc = EccUsage();
        const int channels = NumChannels();
        return std::string(standard)
            .append("_ECC")
            .append(ecc)
            .append("_CH")
            .append(std::to_string(channels))
            .append("_DATA_WIDTH_LIST");
    }

    std::string_view computeDdrmcConfigStr() const
    {
        const float dataRate = findDdrmcData(ConfigStr(), "DATARATE");
        return ISERROR(dataRate) ? "INVALID_CONFIG" : "VALID_CONFIG";
    }

    double computeVoltageScaling() const
    {
        const float vccSoc = VccSoc();
        const float simVoltage = findSimConditions("SIM_VOLTAGE");
        const float drop = (simVoltage - vccSoc) / simVoltage;
        const double rest = 1.0 - static_cast<double>(drop);
        return simVoltage == 0.0f ? 1.0 : rest * rest;
    }

    float computeReadRate() const
    {
        return shareOfBus(ReadBandWidth());
    }

    float computeWriteRate() const
    {
        return shareOfBus(WriteBandWidth());
    }

    // The bandwidth in percent of what the pins without ECC carry.
    float shareOfBus(float bandWidth) const
    {
        const float width = static_cast<float>(DataWidth());
        const float dataRate = DataRate();
        const float peak = width * dataRate;
        return peak == 0.0f || !(dataRate > 0.0f) ? 0.0f : bandWidth * 8.0f / peak * 100.0f;
    }

    float computeReadOnlyDatarate() const
    {
        const float dataRate = findDdrmcData(ConfigStr(), "DATARATE");
        return DdrmcConfigStr() == "VALID_CONFIG" ? dataRate : 0.0f;
    }

    float computeVccsocPower() const
    {
        const Key& config = ConfigStr();
        const bool valid = DdrmcConfigStr() != "INVALID_CONFIG";
        const float power = findDdrmcData(config, "DYNAMIC_POWER");
        const float dataRate = DataRate();
        const float rateRatio = zelm::ratioOrZero(dataRate, findDdrmcData(config, "DATARATE"));
        const float clock = NocNsuClk();
        const float clockRatio = zelm::ratioOrZero(clock / 1000.0f, findNsuClock("CLK_FREQ"));
        const float writeRate = WriteRate();
        const float readRate = ReadRate();
        const float scaling = VoltageScaling();

        // Between a floor of 50 mW and the characterised power, half owed to the memory's rate and half to the NSU
        // clock; characterised at 80 % of the bus.
        const double halfSpan = (power - 50.0f) * 0.5f;
        const double ratios = static_cast<double>(rateRatio) + static_cast<double>(clockRatio);
        const float load = static_cast<float>(halfSpan * ratios * static_cast<double>(writeRate + readRate));
        const float milliwatts = load / 80.0f + 50.0f;
        return valid ? milliwatts * scaling / 1000.0f : 0.0f;
    }
};

#include "framework/ZelmModelBodies.inc"
