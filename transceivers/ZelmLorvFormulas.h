#pragma once

#include "transceivers/ZelmChannelArithmetic.h"

#include <string_view>

/// The formulas of one channel, for the transceiver and the enhanced transceiver: the models differ in what counts the
/// channels and in how a channel shares what its quad has in common (numChannels and commonShare). The models' public
/// functions wrap these in the cell pattern.
template <class Model>
struct ZelmLorvFormulas {
    using Params = typename Model::Params;
    using Data = typename Model::Data;
    using LineTable = zelm::channel::LineTable<Data>;
    using Line = zelm::channel::Line;

    // What sets the receiver's clocking and fabric interface apart from the transmitter's.
    struct Direction {
        using Text = std::string_view (Model::*)(Params&, const Data&) const;
        using Number = float (Model::*)(Params&, const Data&) const;
        using Integer = int (Model::*)(Params&, const Data&) const;

        std::string_view silentMode; // the operational mode in which it rests
        Text clockSource;
        Number dataRate;
        Text dataMode;
        Integer dataPath;
        Number qpll0;
        Number qpll1;
        Number vcoLcpll;
        Number vcoRpll;
    };
    static constexpr Direction kRx{.silentMode = "TRANSMITTER",
                                   .clockSource = &Model::viewRxClockSource,
                                   .dataRate = &Model::getRxDataRate,
                                   .dataMode = &Model::viewRxDataMode,
                                   .dataPath = &Model::getRxDataPath,
                                   .qpll0 = &Model::calculateQpll0Rx,
                                   .qpll1 = &Model::calculateQpll1Rx,
                                   .vcoLcpll = &Model::calculateRxVcoLcpll,
                                   .vcoRpll = &Model::calculateRxVcoRpll};
    static constexpr Direction kTx{.silentMode = "RECEIVER",
                                   .clockSource = &Model::viewTxClockSource,
                                   .dataRate = &Model::getTxDataRate,
                                   .dataMode = &Model::viewTxDataMode,
                                   .dataPath = &Model::getTxDataPath,
                                   .qpll0 = &Model::calculateQpll0Tx,
                                   .qpll1 = &Model::calculateQpll1Tx,
                                   .vcoLcpll = &Model::calculateTxVcoLcpll,
                                   .vcoRpll = &Model::calculateTxVcoRpll};

    // What sets the two equalisers apart. Each is off in the other's power mode, so a third text keeps both.
    struct Equaliser {
        std::string_view offMode;
        std::string_view fixedKey;
        LineTable lines;
    };
    static constexpr Equaliser kDfe{"LOW_POWER", "CHRX_DFE", &Data::findChrxDfeData};
    static constexpr Equaliser kLpm{"DFE", "CHRX_LPM", &Data::findChrxLpmData};

    static Line line(const Data& data, LineTable table, std::string_view item)
    {
        return zelm::channel::lineOf(data, table, item);
    }

    // ---- Supplies ----

    static float calculateScaleAvttCml(const Model& model, Params& params, const Data& data)
    {
        const float voltage = model.getMlorvavtt(params, data);
        return zelm::channel::linearScale(voltage, 1.2f, data.findPvtScalingData("MARGIN_FACTOR_1"));
    }

    static float calculateScaleAvttCmos(const Model& model, Params& params, const Data& data)
    {
        return model.calculateScaleAvttCml(params, data); // this rail is never squared
    }

    static float calculateScaleAvccCml(const Model& model, Params& params, const Data& data)
    {
        const float voltage = model.getMlorvavcc(params, data);
        return zelm::channel::linearScale(voltage, 0.88f, data.findPvtScalingData("MARGIN_FACTOR_1"));
    }

    static float calculateScaleAvccCmos(const Model& model, Params& params, const Data& data)
    {
        const float voltage = model.getMlorvavcc(params, data);
        return zelm::channel::squareScale(voltage, 0.88f, data.findPvtScalingData("MARGIN_FACTOR_1"));
    }

    static float calculateScaleVccauxCml(const Model& model, Params& params, const Data& data)
    {
        const float voltage = model.getMlorvvccaux(params, data);
        return zelm::channel::linearScale(voltage, 1.5f, data.findPvtScalingData("MARGIN_FACTOR_1"));
    }

    static float calculateScaleVccauxCmos(const Model& model, Params& params, const Data& data)
    {
        return model.calculateScaleVccauxCml(params, data); // this rail is never squared
    }

    static float calculateScaleVccintCmos(const Model& model, Params& params, const Data& data)
    {
        const float voltage = model.getVccint(params, data);
        // Characterised at 0.88 V, though the rail's default is 0.7 V.
        return zelm::channel::squareScale(voltage, 0.88f, data.findPvtScalingData("MARGIN_FACTOR_2"));
    }

    // ---- Clocks ----

    // Half the VCO's frequency for a data rate. The smallest multiple of the rate in the VCO's range wins; above the
    // range, half of the rate.
    static float qpll(const Direction& direction, const Model& model, Params& params, const Data& data)
    {
        const float rate = (model.*direction.dataRate)(params, data);
        const float min = data.findCommonData("LCPLL_VCO_MIN");
        const float max = data.findCommonData("LCPLL_VCO_MAX");
        const auto inRange = [&](float frequency) { return frequency >= min && frequency <= max; };
        if (!(rate < max))
            return inRange(rate * 0.5f) ? rate * 0.5f : -0.5f;
        float vco = -1.0f;
        for (const float multiplier : {16.0f, 8.0f, 4.0f, 2.0f, 1.0f})
            vco = inRange(rate * multiplier) ? rate * multiplier : vco;
        return vco * 0.5f;
    }

    static float calculateQpll0Rx(const Model& model, Params& params, const Data& data)
    {
        return qpll(kRx, model, params, data);
    }

    static float calculateQpll1Rx(const Model& model, Params& params, const Data& data)
    {
        return qpll(kRx, model, params, data);
    }

    static float calculateQpll0Tx(const Model& model, Params& params, const Data& data)
    {
        return qpll(kTx, model, params, data);
    }

    static float calculateQpll1Tx(const Model& model, Params& params, const Data& data)
    {
        return qpll(kTx, model, params, data);
    }

    static float vcoLcpll(const Direction& direction, const Model& model, Params& params, const Data& data)
    {
        const bool silent = model.viewOperationalMode(params, data) == direction.silentMode;
        const std::string_view source = (model.*direction.clockSource)(params, data);
        const float qpll1 = (model.*direction.qpll1)(params, data);
        const float qpll0 = (model.*direction.qpll0)(params, data);
        const float min = data.findCommonData("LCPLL_VCO_MIN");
        if (silent || source == "RPLL")
            return 0.0f;
        if (source == "LCPLL" && qpll1 >= 0.0f)
            return qpll1;
        return qpll0 >= 0.0f ? qpll0 : min;
    }

    static float calculateRxVcoLcpll(const Model& model, Params& params, const Data& data)
    {
        return vcoLcpll(kRx, model, params, data);
    }

    static float calculateTxVcoLcpll(const Model& model, Params& params, const Data& data)
    {
        return vcoLcpll(kTx, model, params, data);
    }

    static float vcoRpll(const Direction& direction, const Model& model, Params& params, const Data& data)
    {
        const bool silent = model.viewOperationalMode(params, data) == direction.silentMode;
        const float rate = (model.*direction.dataRate)(params, data);
        const float min = data.findCommonData("RPLL_VCO_MIN");
        if (silent)
            return 0.0f;
        for (const float multiplier : {0.5f, 1.0f, 2.0f}) {
            if (rate * multiplier >= min)
                return rate * multiplier;
        }
        return rate * 4.0f;
    }

    static float calculateRxVcoRpll(const Model& model, Params& params, const Data& data)
    {
        return vcoRpll(kRx, model, params, data);
    }

    static float calculateTxVcoRpll(const Model& model, Params& params, const Data& data)
    {
        return vcoRpll(kTx, model, params, data);
    }

    static float inputFrequency(const Direction& direction, const Model& model, Params& params, const Data& data)
    {
        const bool silent = model.viewOperationalMode(params, data) == direction.silentMode;
        const std::string_view source = (model.*direction.clockSource)(params, data);
        const float lcpll = (model.*direction.vcoLcpll)(params, data);
        const float rpll = (model.*direction.vcoRpll)(params, data);
        return silent ? 0.0f : source == "LCPLL" ? lcpll : rpll;
    }

    static float calculateRxInputFrequency(const Model& model, Params& params, const Data& data)
    {
        return inputFrequency(kRx, model, params, data);
    }

    static float calculateTxInputFrequency(const Model& model, Params& params, const Data& data)
    {
        return inputFrequency(kTx, model, params, data);
    }

    // Whether a direction runs on that PLL, by that name and no other.
    static bool runsOn(std::string_view pll, const Direction& direction, const Model& model, Params& params,
                       const Data& data)
    {
        const bool silent = model.viewOperationalMode(params, data) == direction.silentMode;
        const std::string_view source = (model.*direction.clockSource)(params, data);
        return !silent && source == pll;
    }

    // MAX never falls below its tiny positive floor, so an unused PLL's frequency isn't 0.
    static float calculateLcpllFrequency(const Model& model, Params& params, const Data& data)
    {
        const float rx = model.calculateRxVcoLcpll(params, data);
        const float tx = model.calculateTxVcoLcpll(params, data);
        return ZelmHelperUtils::MAX(runsOn("LCPLL", kRx, model, params, data) ? rx : 0.0f,
                                    runsOn("LCPLL", kTx, model, params, data) ? tx : 0.0f);
    }

    static float calculateRpllFrequency(const Model& model, Params& params, const Data& data)
    {
        const float rx = model.calculateRxVcoRpll(params, data);
        const float tx = model.calculateTxVcoRpll(params, data);
        return ZelmHelperUtils::MAX(runsOn("RPLL", kRx, model, params, data) ? rx : 0.0f,
                                    runsOn("RPLL", kTx, model, params, data) ? tx : 0.0f);
    }

    // ---- Receiver ----

    // Two lines over one rate, in the order that the last bit depends on.
    static float sumOfLines(Line a, Line b, float rate)
    {
        return (a.slope + b.slope) * rate + a.offset + b.offset;
    }

    static bool isOff(const Equaliser& equaliser, const Model& model, Params& params, const Data& data)
    {
        const std::string_view powerMode = model.viewPowerMode(params, data);
        const std::string_view operationalMode = model.viewOperationalMode(params, data);
        return powerMode == equaliser.offMode || operationalMode == "TRANSMITTER";
    }

    static float rxPowerAvcc(const Equaliser& equaliser, const Model& model, Params& params, const Data& data)
    {
        const bool off = isOff(equaliser, model, params, data);
        const float rate = model.getRxDataRate(params, data);
        const Line deserialiser = line(data, equaliser.lines, "DES_AVCC");
        const Line recovery = line(data, equaliser.lines, "CDR_AVCC");
        const Line taps = line(data, equaliser.lines, "CAPFF_HTAPS_AVCC");
        const float dac = data.findChrxFixedPowerData("DAC_AVCC", equaliser.fixedKey);
        const float cmos = model.calculateScaleAvccCmos(params, data);
        const float cml = model.calculateScaleAvccCml(params, data);
        const float power =
            sumOfLines(deserialiser, recovery, rate) * cmos + (taps.slope * rate + dac + taps.offset) * cml;
        return off ? 0.0f : power;
    }

    static float calculateMlorvavccRxPowerDfe(const Model& model, Params& params, const Data& data)
    {
        return rxPowerAvcc(kDfe, model, params, data);
    }

    static float calculateMlorvavccRxPowerLpm(const Model& model, Params& params, const Data& data)
    {
        return rxPowerAvcc(kLpm, model, params, data);
    }

    static float rxPowerAvtt(const Equaliser& equaliser, const Model& model, Params& params, const Data& data)
    {
        const bool off = isOff(equaliser, model, params, data);
        const float rate = model.getRxDataRate(params, data);
        const bool oobOn = model.viewOob(params, data) == "ON";
        const bool acjtagOn = model.viewAcjtag(params, data) == "ON";
        const auto fixed = [&](std::string_view item) { return data.findChrxFixedPowerData(item, equaliser.fixedKey); };
        const float oob = oobOn ? fixed("OOB_AVTT") : 0.0f;
        const float acjtag = acjtagOn ? fixed("ACJTAG_AVTT") : 0.0f;
        const Line taps = line(data, equaliser.lines, "CAPFF_HTAPS_AVTT");
        const float scale = model.calculateScaleAvttCml(params, data);
        const float power = (fixed("VCM_AVTT") + oob + acjtag + fixed("I2V_AVTT") + fixed("CTLE_AVTT") +
                             fixed("SUMMER_AVTT") + taps.slope * rate + taps.offset) *
                            scale;
        return off ? 0.0f : power;
    }

    static float calculateMlorvavttRxPowerDfe(const Model& model, Params& params, const Data& data)
    {
        return rxPowerAvtt(kDfe, model, params, data);
    }

    static float calculateMlorvavttRxPowerLpm(const Model& model, Params& params, const Data& data)
    {
        return rxPowerAvtt(kLpm, model, params, data);
    }

    static float calculateRxMlorvavccPower(const Model& model, Params& params, const Data& data)
    {
        const float dfe = model.calculateMlorvavccRxPowerDfe(params, data);
        const float lpm = model.calculateMlorvavccRxPowerLpm(params, data);
        return dfe + lpm;
    }

    static float calculateRxMlorvavttPower(const Model& model, Params& params, const Data& data)
    {
        const float dfe = model.calculateMlorvavttRxPowerDfe(params, data);
        const float lpm = model.calculateMlorvavttRxPowerLpm(params, data);
        return dfe + lpm;
    }

    // ---- Transmitter ----

    static float calculateTxMlorvavccPower(const Model& model, Params& params, const Data& data)
    {
        const bool off = model.viewOperationalMode(params, data) == "RECEIVER";
        const float rate = model.getTxDataRate(params, data);
        const Line serialiser = line(data, &Data::findChtxData, "SER_AVCC");
        const Line predriver = line(data, &Data::findChtxData, "PREDRV_AVCC");
        const float scale = model.calculateScaleAvccCmos(params, data);
        return off ? 0.0f : sumOfLines(serialiser, predriver, rate) * scale;
    }

    static float calculateTxMlorvavttPower(const Model& model, Params& params, const Data& data)
    {
        const bool off = model.viewOperationalMode(params, data) == "RECEIVER";
        const float swing = static_cast<float>(model.getTxDifferentialSwing(params, data));
        const float rate = model.getTxDataRate(params, data);
        const Line driver = line(data, &Data::findChtxData, "DRIVER_AVTT"); // over the swing, not the rate
        const float bias = data.findChtxFixedPowerData("DRVBIAS_VCCAUX");
        const Line buffer = line(data, &Data::findChtxData, "CLKBUF_AVTT");
        const float scale = model.calculateScaleAvttCml(params, data);
        const float power = (swing * driver.slope + driver.offset + bias + rate * buffer.slope + buffer.offset) * scale;
        return off ? 0.0f : power;
    }

    // ---- Fabric adapter ----

    static float calculatePcsadaptVccint40Raw(const Model& model, Params& params, const Data& data)
    {
        const std::string_view mode = model.viewOperationalMode(params, data);
        const float rx = model.getRxDataRate(params, data);
        const float tx = model.getTxDataRate(params, data);
        return line(data, &Data::findPcsadaptData, "PCS_VCCINT").at(zelm::channel::pacingRate(mode, rx, tx));
    }

    // The adapter is characterised for 40 bits, and 8b/10b carries 8 of 10 bits; a wide interface is two adapters.
    static float multFactor(const Direction& direction, const Model& model, Params& params, const Data& data)
    {
        const bool silent = model.viewOperationalMode(params, data) == direction.silentMode;
        const int path = (model.*direction.dataPath)(params, data);
        const std::string_view dataMode = (model.*direction.dataMode)(params, data);
        if (silent || path < 1)
            return 0.0f;
        const float factor = dataMode == "8b/10b" ? (path <= 32 ? 0.8f : 1.6f) : (path <= 40 ? 1.0f : 2.0f);
        return 40.0f / static_cast<float>(path) * factor;
    }

    static float calculateRxMultFactorPcsadapt(const Model& model, Params& params, const Data& data)
    {
        return multFactor(kRx, model, params, data);
    }

    static float calculateTxMultFactorPcsadapt(const Model& model, Params& params, const Data& data)
    {
        return multFactor(kTx, model, params, data);
    }

    static float calculateVccintChPwr(const Model& model, Params& params, const Data& data)
    {
        const float raw = model.calculatePcsadaptVccint40Raw(params, data);
        const float rx = model.calculateRxMultFactorPcsadapt(params, data);
        const float tx = model.calculateTxMultFactorPcsadapt(params, data);
        const float scale = model.calculateScaleVccintCmos(params, data);
        return raw * ZelmHelperUtils::MAX(rx, tx) * scale;
    }

    // ---- PLLs ----

    // Unused, the RPLL still shows its offsets: its frequency is the floor of MAX, which is above 0.
    static float calculateMlorvavccRpllPwr(const Model& model, Params& params, const Data& data)
    {
        const float frequency = model.calculateRpllFrequency(params, data);
        const Line pll = line(data, &Data::findRpllData, "CPLL_AVCC");
        const float scale = model.calculateScaleAvccCmos(params, data);
        return frequency > 0.0f ? pll.at(frequency) * scale : 0.0f;
    }

    static float calculateMlorvavttRpllPwr(const Model& model, Params& params, const Data& data)
    {
        const float frequency = model.calculateRpllFrequency(params, data);
        const Line pll = line(data, &Data::findRpllData, "CPLL_AVTT");
        const float scale = model.calculateScaleAvttCml(params, data);
        return frequency > 0.0f ? pll.at(frequency) * scale : 0.0f;
    }

    static bool lcpllInUse(const Model& model, Params& params, const Data& data)
    {
        return runsOn("LCPLL", kTx, model, params, data) || runsOn("LCPLL", kRx, model, params, data);
    }

    static float calculateMlorvavccLcpllPwr(const Model& model, Params& params, const Data& data)
    {
        const bool used = lcpllInUse(model, params, data);
        const float scale = model.calculateScaleAvccCmos(params, data);
        const int sharing = model.getLcpllSharing(params, data);
        return used ? zelm::channel::share(data.findLcpllData("QPLL_AVCC") * scale, sharing) : 0.0f;
    }

    static float calculateMlorvavttLcpllPwr(const Model& model, Params& params, const Data& data)
    {
        const bool used = lcpllInUse(model, params, data);
        const float frequency = model.calculateLcpllFrequency(params, data);
        const Line distribution{data.findLcpllData("HS_CLKDIST_AVTT_SLOPE"),
                                data.findLcpllData("HS_CLKDIST_AVTT_OFFSET")};
        const float quadrature = data.findLcpllData("IQGEN_AVTT");
        const float scale = model.calculateScaleAvttCml(params, data);
        const int sharing = model.getLcpllSharing(params, data);
        const float power = (frequency * distribution.slope + quadrature + distribution.offset) * scale;
        return used ? zelm::channel::share(power, sharing) : 0.0f;
    }

    // This test asks for the RPLL by name, the others for the LCPLL: a third source counts as the LCPLL here only.
    static float calculateMlorvvccauxLcpllPwr(const Model& model, Params& params, const Data& data)
    {
        const std::string_view mode = model.viewOperationalMode(params, data);
        const std::string_view rxSource = model.viewRxClockSource(params, data);
        const std::string_view txSource = model.viewTxClockSource(params, data);
        const float scale = model.calculateScaleVccauxCml(params, data);
        const int sharing = model.getLcpllSharing(params, data);
        const bool unused = (rxSource == "RPLL" || mode == "TRANSMITTER") && (txSource == "RPLL" || mode == "RECEIVER");
        return unused ? 0.0f : zelm::channel::share(scale * data.findLcpllData("QPLL_VCCAUX"), sharing);
    }

    static float calculatePllMlorvavccPower(const Model& model, Params& params, const Data& data)
    {
        const float rpll = model.calculateMlorvavccRpllPwr(params, data);
        const float lcpll = model.calculateMlorvavccLcpllPwr(params, data);
        return rpll + lcpll;
    }

    static float calculatePllMlorvavttPower(const Model& model, Params& params, const Data& data)
    {
        const float rpll = model.calculateMlorvavttRpllPwr(params, data);
        const float lcpll = model.calculateMlorvavttLcpllPwr(params, data);
        return rpll + lcpll;
    }

    static float calculatePllMlorvvccauxPower(const Model& model, Params& params, const Data& data)
    {
        return model.calculateMlorvvccauxLcpllPwr(params, data);
    }

    // ---- In common ----

    static float calculateMlorvavccCommonPwr(const Model& model, Params& params, const Data& data)
    {
        const float scale = model.calculateScaleAvccCml(params, data);
        const float reference = scale * data.findCommonData("REFCLK_AVCC");
        return model.commonShare(zelm::channel::share(reference, model.numChannels(params, data)), params, data);
    }

    static float calculateMlorvavttCommonPwr(const Model& model, Params& params, const Data& data)
    {
        const float scale = model.calculateScaleAvttCml(params, data);
        const float bias = scale * data.findCommonData("BIAS_AVTT");
        return model.commonShare(zelm::channel::share(bias, model.numChannels(params, data)), params, data);
    }

    static float calculateMlorvavttChClkPower(const Model& model, Params& params, const Data& data)
    {
        const float tx = model.calculateTxInputFrequency(params, data);
        const float rx = model.calculateRxInputFrequency(params, data);
        const Line txInterpolator = line(data, &Data::findChClkData, "TXPI_AVTT");
        const Line txGenerator = line(data, &Data::findChClkData, "TXCLKGEN_AVTT");
        const Line preInterpolator = line(data, &Data::findChClkData, "PREPI_AVTT");
        const Line rxInterpolator = line(data, &Data::findChClkData, "RXPI_AVTT");
        const Line rxGenerator = line(data, &Data::findChClkData, "RXCLKGEN_AVTT");
        const float scale = model.calculateScaleAvttCml(params, data);
        return (tx * (txInterpolator.slope + txGenerator.slope) +
                rx * (preInterpolator.slope + rxInterpolator.slope + rxGenerator.slope) + preInterpolator.offset +
                txInterpolator.offset + txGenerator.offset + rxInterpolator.offset + rxGenerator.offset) *
               scale;
    }

    // The eye scan runs on the decision-feedback path, whatever the receiver's own mode.
    static bool eyescanOff(const Model& model, Params& params, const Data& data)
    {
        return model.viewEyescan(params, data) == "OFF";
    }

    static float calculateMlorvavccEyescanPower(const Model& model, Params& params, const Data& data)
    {
        const bool off = eyescanOff(model, params, data);
        const float rate = model.getRxDataRate(params, data);
        const Line deserialiser = line(data, kDfe.lines, "DES_AVCC");
        const Line recovery = line(data, kDfe.lines, "CDR_AVCC");
        const float scale = model.calculateScaleAvccCmos(params, data);
        return off ? 0.0f : sumOfLines(deserialiser, recovery, rate) * 0.5f * scale;
    }

    static float calculateMlorvavttEyescanPower(const Model& model, Params& params, const Data& data)
    {
        const bool off = eyescanOff(model, params, data);
        const float rate = model.getRxDataRate(params, data);
        const Line taps = line(data, kDfe.lines, "CAPFF_HTAPS_AVTT");
        const float converter = data.findChrxFixedPowerData("I2V_AVTT", kDfe.fixedKey);
        const float scale = model.calculateScaleAvttCml(params, data);
        return off ? 0.0f : (rate * taps.slope + converter + taps.offset) * 0.5f * scale;
    }

    static float calculateCommonMlorvavccPower(const Model& model, Params& params, const Data& data)
    {
        const float reference = model.calculateMlorvavccCommonPwr(params, data);
        const float eyescan = model.calculateMlorvavccEyescanPower(params, data);
        return reference + eyescan;
    }

    static float calculateCommonMlorvavttPower(const Model& model, Params& params, const Data& data)
    {
        const float bias = model.calculateMlorvavttCommonPwr(params, data);
        const float clocks = model.calculateMlorvavttChClkPower(params, data);
        const float eyescan = model.calculateMlorvavttEyescanPower(params, data);
        return bias + clocks + eyescan;
    }

    // ---- Rails ----

    static float calculateVccintPower(const Model& model, Params& params, const Data& data)
    {
        const float power = model.calculateVccintChPwr(params, data);
        return model.numChannels(params, data) < 1 ? 0.0f : power;
    }

    static float calculateMlorvavccPower(const Model& model, Params& params, const Data& data)
    {
        const float rx = model.calculateRxMlorvavccPower(params, data);
        const float tx = model.calculateTxMlorvavccPower(params, data);
        const float pll = model.calculatePllMlorvavccPower(params, data);
        const float common = model.calculateCommonMlorvavccPower(params, data);
        return model.numChannels(params, data) < 1 ? 0.0f : rx + tx + pll + common;
    }

    static float calculateMlorvavttPower(const Model& model, Params& params, const Data& data)
    {
        const float rx = model.calculateRxMlorvavttPower(params, data);
        const float tx = model.calculateTxMlorvavttPower(params, data);
        const float pll = model.calculatePllMlorvavttPower(params, data);
        const float common = model.calculateCommonMlorvavttPower(params, data);
        return model.numChannels(params, data) < 1 ? 0.0f : rx + tx + pll + common;
    }

    static float calculateMlorvvccauxPower(const Model& model, Params& params, const Data& data)
    {
        const float pll = model.calculatePllMlorvvccauxPower(params, data);
        return model.numChannels(params, data) < 1 ? 0.0f : pll;
    }

    static float calculateTotalPower(const Model& model, Params& params, const Data& data)
    {
        const float vccint = model.calculateVccintPower(params, data);
        const float avcc = model.calculateMlorvavccPower(params, data);
        const float avtt = model.calculateMlorvavttPower(params, data);
        const float vccaux = model.calculateMlorvvccauxPower(params, data);
        return vccint + avcc + avtt + vccaux;
    }

    static void pullOutputs(const Model& model, Params& params, const Data& data)
    {
        model.calculateTotalPower(params, data);
        model.calculateVccintPower(params, data);
        model.calculateMlorvvccauxPower(params, data);
        model.calculateMlorvavccPower(params, data);
        model.calculateMlorvavttPower(params, data);
        model.calculateVccintChPwr(params, data);
        model.calculateRxMlorvavccPower(params, data);
        model.calculateRxMlorvavttPower(params, data);
        model.calculateTxMlorvavccPower(params, data);
        model.calculateTxMlorvavttPower(params, data);
        model.calculatePllMlorvavccPower(params, data);
        model.calculatePllMlorvavttPower(params, data);
        model.calculatePllMlorvvccauxPower(params, data);
        model.calculateCommonMlorvavccPower(params, data);
        model.calculateCommonMlorvavttPower(params, data);
    }
};
