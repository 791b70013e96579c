#include "transceivers/ZelmOrvaneSarnModel.h"

#include "framework/ZelmModelBlockImpl.h"
#include "transceivers/ZelmChannelArithmetic.h"

#include <limits>

template class ZelmModelBlock<ZelmOrvaneSarnModel, ZelmOrvaneSarnParams, ZelmOrvaneSarnData>;

using Model = ZelmOrvaneSarnModel;
using LineTable = zelm::channel::LineTable<Model::Data>;
using zelm::channel::Line;
using zelm::channel::lineOf;

// A reach of the receiver. It is off in the power modes of the other two, so any other text keeps all three.
struct ZelmOrvaneSarnModel::Reach {
    std::string_view offModes[2];
    std::string_view fixedKey;
    std::string_view referenceKey; // of the converter's reference on the auxiliary rail
    LineTable lines;
    Params::FloatEnum avccCell;
    Params::FloatEnum vccauxCell;
};

const Model::Reach Model::kLr{.offModes = {"VSR", "XSR"},
                              .fixedKey = "CHRX_LR",
                              .referenceKey = "CHRX_LR",
                              .lines = &Data::findChrxLrData,
                              .avccCell = Params::MSARNAVCC_RX_POWER_LR,
                              .vccauxCell = Params::MSARNAVCCAUX_RX_POWER_LR};
const Model::Reach Model::kVsr{.offModes = {"LR", "XSR"},
                               .fixedKey = "CHRX_VSR",
                               .referenceKey = "CHRX_VSR",
                               .lines = &Data::findChrxVsrData,
                               .avccCell = Params::MSARNAVCC_RX_POWER_VSR,
                               .vccauxCell = Params::MSARNAVCCAUX_RX_POWER_VSR};
// The reference of this converter is taken from the VSR row.
const Model::Reach Model::kXsr{.offModes = {"LR", "VSR"},
                               .fixedKey = "CHRX_XSR",
                               .referenceKey = "CHRX_VSR",
                               .lines = &Data::findChrxXsrData,
                               .avccCell = Params::MSARNAVCC_RX_POWER_XSR,
                               .vccauxCell = Params::MSARNAVCCAUX_RX_POWER_XSR};

namespace {

constexpr float kNoLimit = std::numeric_limits<float>::quiet_NaN(); // no rate compares with it

} // namespace

// The baud rates, in GBd, of a cell that is characterised for some of them only.
struct ZelmOrvaneSarnModel::BaudRange {
    float above;
    float upTo;
};

// The analogue receiver at one reach in one range of baud rates.
struct ZelmOrvaneSarnModel::Bin {
    const Reach& reach;
    BaudRange range;
    LineTable equaliser; // fixed powers by item and reach
    Params::FloatEnum cell;
};

const Model::Bin Model::kLrLte15{
    kLr, {kNoLimit, 15.0f}, &Data::findChrxFixedPowerDataLte15Gbaud, Params::MSARNAVTT_RX_POWER_LR_LTE_15GBAUD};
const Model::Bin Model::kLrLte30{
    kLr, {15.0f, 30.0f}, &Data::findChrxFixedPowerDataLte30Gbaud, Params::MSARNAVTT_RX_POWER_LR_LTE_30GBAUD};
const Model::Bin Model::kLrGt30{
    kLr, {30.0f, kNoLimit}, &Data::findChrxFixedPowerDataGt30Gbaud, Params::MSARNAVTT_RX_POWER_LR_GT_30GBAUD};
const Model::Bin Model::kVsrLte30{
    kVsr, {kNoLimit, 30.0f}, &Data::findChrxFixedPowerDataLte30Gbaud, Params::MSARNAVTT_RX_POWER_VSR_LTE_30GBAUD};
const Model::Bin Model::kVsrGt30{
    kVsr, {30.0f, kNoLimit}, &Data::findChrxFixedPowerDataGt30Gbaud, Params::MSARNAVTT_RX_POWER_VSR_GT_30GBAUD};
const Model::Bin Model::kXsrLte30{
    kXsr, {kNoLimit, 30.0f}, &Data::findChrxFixedPowerDataLte30Gbaud, Params::MSARNAVTT_RX_POWER_XSR_LTE_30GBAUD};
const Model::Bin Model::kXsrGt30{
    kXsr, {30.0f, kNoLimit}, &Data::findChrxFixedPowerDataGt30Gbaud, Params::MSARNAVTT_RX_POWER_XSR_GT_30GBAUD};

// The digital signal processor at one reach; only the long reach is told apart by baud rate, without a bin up to 15.
struct ZelmOrvaneSarnModel::Processor {
    const Reach& reach;
    BaudRange range;
    LineTable lines; // of the filters and their adaptation
    Params::FloatEnum cell;
};

const Model::Processor Model::kDspLrLte30{
    kLr, {kNoLimit, 30.0f}, &Data::findChrxLrDataLte30Gbaud, Params::VCCINT_GT_RX_POWER_LR_LTE_30GBAUD};
const Model::Processor Model::kDspLrGt30{
    kLr, {30.0f, kNoLimit}, &Data::findChrxLrDataGt30Gbaud, Params::VCCINT_GT_RX_POWER_LR_GT_30GBAUD};
const Model::Processor Model::kDspVsr{
    kVsr, {kNoLimit, kNoLimit}, &Data::findChrxVsrData, Params::VCCINT_GT_RX_POWER_VSR};
const Model::Processor Model::kDspXsr{
    kXsr, {kNoLimit, kNoLimit}, &Data::findChrxXsrData, Params::VCCINT_GT_RX_POWER_XSR};

#define ZELM_MODEL ZelmOrvaneSarnModel
#define ZELM_CELL_ROWS "transceivers/ZelmOrvaneSarnCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneSarnModel::pullOutputs(Params& params, const Data& data) const
{
    calculateTotalPower(params, data);
    calculateVccintPower(params, data);
    calculateMsarnvccauxPower(params, data);
    calculateMsarnavccPower(params, data);
    calculateMsarnavttPower(params, data);
    calculateVccintGtPower(params, data);
    calculateVccintChPwr(params, data);
    calculateRxMsarnavccPower(params, data);
    calculateRxMsarnavttPower(params, data);
    calculateRxMsarnavccauxPower(params, data);
    calculateRxVccintGtPower(params, data);
    calculateTxMsarnavccPower(params, data);
    calculateTxMsarnavttPower(params, data);
    calculateTxMsarnavccauxPower(params, data);
    calculatePllMsarnavccPower(params, data);
    calculatePllMsarnavttPower(params, data);
    calculatePllMsarnvccauxPower(params, data);
    calculateCommonMsarnavccPower(params, data);
    calculateCommonMsarnavttPower(params, data);
}

// ---- Supplies ----

float ZelmOrvaneSarnModel::calculateScaleAvttCml(Params& params, const Data& data) const
{
    return once(params[Params::SCALE_AVTT_CML], [&] {
        const float voltage = getMsarnavtt(params, data);
        return zelm::channel::linearScale(voltage, 1.2f, data.findPvtScalingData("MARGIN_FACTOR_1"));
    });
}

float ZelmOrvaneSarnModel::calculateScaleAvttCmos(Params& params, const Data& data) const
{
    return once(params[Params::SCALE_AVTT_CMOS], [&] {
        return calculateScaleAvttCml(params, data); // this rail is never squared
    });
}

float ZelmOrvaneSarnModel::calculateScaleAvccCml(Params& params, const Data& data) const
{
    return once(params[Params::SCALE_AVCC_CML], [&] {
        const float voltage = getMsarnavcc(params, data);
        return zelm::channel::linearScale(voltage, 0.88f, data.findPvtScalingData("MARGIN_FACTOR_1"));
    });
}

float ZelmOrvaneSarnModel::calculateScaleAvccCmos(Params& params, const Data& data) const
{
    return once(params[Params::SCALE_AVCC_CMOS], [&] {
        const float voltage = getMsarnavcc(params, data);
        return zelm::channel::squareScale(voltage, 0.88f, data.findPvtScalingData("MARGIN_FACTOR_1"));
    });
}

float ZelmOrvaneSarnModel::calculateScaleVccauxCml(Params& params, const Data& data) const
{
    return once(params[Params::SCALE_VCCAUX_CML], [&] {
        const float voltage = getMsarnvccaux(params, data);
        return zelm::channel::linearScale(voltage, 1.5f, data.findPvtScalingData("MARGIN_FACTOR_1"));
    });
}

float ZelmOrvaneSarnModel::calculateScaleVccauxCmos(Params& params, const Data& data) const
{
    return once(params[Params::SCALE_VCCAUX_CMOS], [&] {
        return calculateScaleVccauxCml(params, data); // this rail is never squared
    });
}

float ZelmOrvaneSarnModel::calculateScaleVccintCmos(Params& params, const Data& data) const
{
    return once(params[Params::SCALE_VCCINT_CMOS], [&] {
        const float voltage = getVccint(params, data);
        // Characterised at 0.88 V, though the rail's default is 0.7 V.
        return zelm::channel::squareScale(voltage, 0.88f, data.findPvtScalingData("MARGIN_FACTOR_2"));
    });
}

// ---- Counts and limits for the host ----

int ZelmOrvaneSarnModel::calculateNumDual(Params& params, const Data& data) const
{
    return once(params[Params::NUM_DUAL], [&] { return zelm::channel::duals(getNumSarnquadChannels(params, data)); });
}

int ZelmOrvaneSarnModel::calculateNumOctals(Params& params, const Data& data) const
{
    return once(params[Params::NUM_OCTALS],
                [&] { return zelm::channel::octals(getNumSarnquadChannels(params, data)); });
}

int ZelmOrvaneSarnModel::calculateNumOfLcpllUsed(Params& params, const Data& data) const
{
    return once(params[Params::NUM_OF_LCPLL_USED], [&] {
        const int channels = getNumSarnquadChannels(params, data);
        const int sharing = getLcpllSharing(params, data);
        return zelm::channel::lcplls(channels, sharing);
    });
}

namespace {

std::string_view speedKey(int speedgrade)
{
    return speedgrade == -2 ? "SPEED_2" : speedgrade == -3 ? "SPEED_3" : "SPEED_1";
}

} // namespace

float ZelmOrvaneSarnModel::calculateMaxNrzDatarate(Params& params, const Data& data) const
{
    return once(params[Params::MAX_NRZ_DATARATE],
                [&] { return data.findNrzDatarates(speedKey(getSpeedgrade(params, data)), "MAX"); });
}

float ZelmOrvaneSarnModel::calculateMaxPam4Datarate(Params& params, const Data& data) const
{
    return once(params[Params::MAX_PAM4_DATARATE],
                [&] { return data.findPam4Datarates(speedKey(getSpeedgrade(params, data)), "MAX"); });
}

// ---- Clock of the receiver ----

float ZelmOrvaneSarnModel::calculateChclkOutputFrequency(Params& params, const Data& data) const
{
    return once(params[Params::CHCLK_OUTPUT_FREQUENCY], [&] {
        const bool silent = viewOperationalMode(params, data) == "TRANSMITTER";
        const float rate = getRxDataRate(params, data);
        const bool pam4 = viewModulation(params, data) == "PAM4";
        return silent ? 0.0f : rate * (pam4 ? 0.125f : 0.25f);
    });
}

float ZelmOrvaneSarnModel::calculateDspClkRate(Params& params, const Data& data) const
{
    return once(params[Params::DSP_CLK_RATE], [&] {
        const bool silent = viewOperationalMode(params, data) == "TRANSMITTER";
        const float channelClock = calculateChclkOutputFrequency(params, data);
        return silent ? 0.0f : channelClock * 8.0f;
    });
}

int ZelmOrvaneSarnModel::calculateChclkDivideMode(Params& params, const Data& data) const
{
    return once(params[Params::CHCLK_DIVIDE_MODE], [&] {
        const float min = data.findCommonData("LCPLL_VCO_MIN");
        const float channelClock = calculateChclkOutputFrequency(params, data);
        if (!(min * 0.5f > channelClock))
            return 1;
        return min * 0.25f > channelClock ? 4 : 2;
    });
}

int ZelmOrvaneSarnModel::calculateHsclkDivideMode(Params& params, const Data& data) const
{
    return once(params[Params::HSCLK_DIVIDE_MODE], [&] {
        const float min = data.findCommonData("LCPLL_VCO_MIN");
        const float channelClock = calculateChclkOutputFrequency(params, data);
        return min > channelClock ? 2 : 1;
    });
}

float ZelmOrvaneSarnModel::calculateQpllRx(Params& params, const Data& data) const
{
    return once(params[Params::QPLL_RX], [&] {
        const float channelClock = calculateChclkOutputFrequency(params, data);
        const float highSpeedDivider = static_cast<float>(calculateHsclkDivideMode(params, data));
        const float channelDivider = static_cast<float>(calculateChclkDivideMode(params, data));
        return channelClock * highSpeedDivider * channelDivider;
    });
}

float ZelmOrvaneSarnModel::calculateRxVcoLcpll(Params& params, const Data& data) const
{
    return once(params[Params::RX_VCO_LCPLL], [&] {
        const bool silent = viewOperationalMode(params, data) == "TRANSMITTER";
        const float qpll = calculateQpllRx(params, data);
        const float min = data.findCommonData("LCPLL_VCO_MIN");
        return silent ? 0.0f : qpll >= 0.0f ? qpll : min;
    });
}

float ZelmOrvaneSarnModel::calculateRxInputFrequency(Params& params, const Data& data) const
{
    return once(params[Params::RX_INPUT_FREQUENCY], [&] {
        const bool silent = viewOperationalMode(params, data) == "TRANSMITTER";
        const float vco = calculateRxVcoLcpll(params, data);
        return silent ? 0.0f : vco;
    });
}

// ---- Clock of the transmitter ----

int ZelmOrvaneSarnModel::calculateTxclkDivideMode(Params& params, const Data& data) const
{
    return once(params[Params::TXCLK_DIVIDE_MODE], [&] {
        const float min = data.findCommonData("LCPLL_VCO_MIN");
        const float rate = getTxDataRate(params, data);
        const bool pam4 = viewModulation(params, data) == "PAM4";
        const bool eighthFalls = min > rate * 0.125f;
        const bool quarterFalls = min > rate * 0.25f;
        const bool halfFalls = min > rate * 0.5f;
        if (pam4)
            return !eighthFalls ? 1 : quarterFalls ? 4 : 2;
        return halfFalls && quarterFalls ? 2 : 1;
    });
}

float ZelmOrvaneSarnModel::calculateTxclkClkFreq(Params& params, const Data& data) const
{
    return once(params[Params::TXCLK_CLK_FREQ], [&] {
        const float divider = static_cast<float>(calculateTxclkDivideMode(params, data));
        const float rate = getTxDataRate(params, data);
        const bool pam4 = viewModulation(params, data) == "PAM4";
        return divider * rate * (pam4 ? 0.125f : 0.25f);
    });
}

float ZelmOrvaneSarnModel::calculateQpllTx(Params& params, const Data& data) const
{
    return once(params[Params::QPLL_TX], [&] {
        const float clock = calculateTxclkClkFreq(params, data);
        const float divider = static_cast<float>(calculateTxclkDivideMode(params, data));
        const float min = data.findCommonData("LCPLL_VCO_MIN");
        const float max = data.findCommonData("LCPLL_VCO_MAX");
        const float vco = clock * divider;
        return vco > min && vco <= max ? vco : -1.0f; // the least frequency itself is out of range
    });
}

float ZelmOrvaneSarnModel::calculateTxVcoLcpll(Params& params, const Data& data) const
{
    return once(params[Params::TX_VCO_LCPLL], [&] {
        const bool silent = viewOperationalMode(params, data) == "RECEIVER";
        const float qpll = calculateQpllTx(params, data);
        const float min = data.findCommonData("LCPLL_VCO_MIN");
        return silent ? 0.0f : qpll >= 0.0f ? qpll : min;
    });
}

float ZelmOrvaneSarnModel::calculateTxInputFrequency(Params& params, const Data& data) const
{
    return once(params[Params::TX_INPUT_FREQUENCY], [&] {
        const bool silent = viewOperationalMode(params, data) == "RECEIVER";
        const float vco = calculateTxVcoLcpll(params, data);
        return silent ? 0.0f : vco;
    });
}

// ---- Clocks in common ----

float ZelmOrvaneSarnModel::calculateLcpllFrequency(Params& params, const Data& data) const
{
    return once(params[Params::LCPLL_FREQUENCY], [&] {
        const std::string_view mode = viewOperationalMode(params, data);
        const float rx = calculateRxVcoLcpll(params, data);
        const float tx = calculateTxVcoLcpll(params, data);
        return ZelmHelperUtils::MAX(mode == "TRANSMITTER" ? 0.0f : rx, mode == "RECEIVER" ? 0.0f : tx);
    });
}

float ZelmOrvaneSarnModel::calculateHsclkOutputFrequency(Params& params, const Data& data) const
{
    return once(params[Params::HSCLK_OUTPUT_FREQUENCY], [&] {
        const float frequency = calculateLcpllFrequency(params, data);
        const float divider = static_cast<float>(calculateHsclkDivideMode(params, data));
        return frequency / divider;
    });
}

// ---- Receiver ----

bool ZelmOrvaneSarnModel::isOff(const Reach& reach, Params& params, const Data& data) const
{
    const std::string_view operationalMode = viewOperationalMode(params, data);
    const std::string_view powerMode = viewPowerMode(params, data);
    return operationalMode == "TRANSMITTER" || powerMode == reach.offModes[0] || powerMode == reach.offModes[1];
}

// NRZ carries one bit per baud, PAM4 two; a third modulation meets no limit.
bool ZelmOrvaneSarnModel::isOff(const Reach& reach, const BaudRange& range, Params& params, const Data& data) const
{
    const bool reachOff = isOff(reach, params, data);
    const std::string_view modulation = viewModulation(params, data);
    const float rate = getRxDataRate(params, data);
    const float bitsPerBaud = modulation == "NRZ" ? 1.0f : modulation == "PAM4" ? 2.0f : kNoLimit;
    return reachOff || rate > bitsPerBaud * range.upTo || rate <= bitsPerBaud * range.above;
}

float ZelmOrvaneSarnModel::rxPowerAvtt(const Bin& bin, Params& params, const Data& data) const
{
    return once(params[bin.cell], [&] {
        const bool off = isOff(bin.reach, bin.range, params, data);
        const float rate = getRxDataRate(params, data);
        const std::string_view reach = bin.reach.fixedKey;
        const float commonMode = data.findChrxFixedPowerData("VCM_AVTT", reach);
        const bool acjtagOn = viewAcjtag(params, data) == "ON";
        const float acjtag = acjtagOn ? data.findChrxFixedPowerData("ACJTAG_AVTT", reach) : 0.0f;
        const float offsetDac = data.findChrxFixedPowerData("LS_OSDAC_AVTT", reach);
        const float reference = data.findChrxFixedPowerData("ADC_VREF_AVTT", reach);
        const float regulator = data.findChrxFixedPowerData("RXREG_AVTT", reach);
        const float filter = (data.*bin.equaliser)("CTLE_HF_MF_AVTT", reach);
        const float gain = (data.*bin.equaliser)("CTLE_AGC_AVTT", reach);
        const Line clocks = lineOf(data, bin.reach.lines, "ADC_CLKGEN_AVTT");
        const Line converter = lineOf(data, bin.reach.lines, "ADC_SAR_AVTT");
        const float scale = calculateScaleAvttCml(params, data);
        const float power = (commonMode + acjtag + offsetDac + reference + regulator + filter + gain +
                             clocks.slope * rate + clocks.offset + converter.slope * rate + converter.offset) *
                            scale;
        return off ? 0.0f : power;
    });
}

float ZelmOrvaneSarnModel::rxPowerAvcc(const Reach& reach, Params& params, const Data& data) const
{
    return once(params[reach.avccCell], [&] {
        const bool off = isOff(reach, params, data);
        const float processorClock = calculateChclkOutputFrequency(params, data) * 8.0f;
        const Line converter = lineOf(data, reach.lines, "ADC_SAR_AVCC");
        const Line retimer = lineOf(data, reach.lines, "ADC_RETIMER_AVCC");
        const float cml = calculateScaleAvccCml(params, data);
        const float cmos = calculateScaleAvccCmos(params, data);
        const float power = converter.at(processorClock) * cml + retimer.at(processorClock) * cmos;
        return off ? 0.0f : power;
    });
}

float ZelmOrvaneSarnModel::rxPowerVccaux(const Reach& reach, Params& params, const Data& data) const
{
    return once(params[reach.vccauxCell], [&] {
        const bool off = isOff(reach, params, data);
        const float scale = calculateScaleAvttCml(params, data); // the termination supply's scale, as characterised
        const float power = scale * data.findChrxFixedPowerData("ADC_VREF_VCCAUX", reach.referenceKey);
        return off ? 0.0f : power;
    });
}

float ZelmOrvaneSarnModel::rxPowerVccintGt(const Processor& processor, Params& params, const Data& data) const
{
    return once(params[processor.cell], [&] {
        const bool off = isOff(processor.reach, processor.range, params, data);
        const float clock = calculateDspClkRate(params, data);
        const Line filters = lineOf(data, processor.lines, "DSP_VCCINTGT");
        const Line recovery = lineOf(data, processor.reach.lines, "CDR_VCCINTGT");
        const Line adaptation = lineOf(data, processor.lines, "ADAPT_VCCINTGT");
        const float scale = calculateScaleAvttCml(params, data); // not that of VCCINT_GT, which no formula reads
        const float power = (filters.slope * clock + filters.offset + recovery.slope * clock + recovery.offset +
                             adaptation.slope * clock + adaptation.offset) *
                            scale;
        return off ? 0.0f : power;
    });
}

float ZelmOrvaneSarnModel::calculateRxMsarnavttPower(Params& params, const Data& data) const
{
    return once(params[Params::RX_MSARNAVTT_POWER], [&] {
        const float lrLte15 = calculateMsarnavttRxPowerLrLte15Gbaud(params, data);
        const float lrLte30 = calculateMsarnavttRxPowerLrLte30Gbaud(params, data);
        const float lrGt30 = calculateMsarnavttRxPowerLrGt30Gbaud(params, data);
        const float vsrLte30 = calculateMsarnavttRxPowerVsrLte30Gbaud(params, data);
        const float vsrGt30 = calculateMsarnavttRxPowerVsrGt30Gbaud(params, data);
        const float xsrLte30 = calculateMsarnavttRxPowerXsrLte30Gbaud(params, data);
        const float xsrGt30 = calculateMsarnavttRxPowerXsrGt30Gbaud(params, data);
        return lrLte15 + lrLte30 + lrGt30 + vsrLte30 + vsrGt30 + xsrLte30 + xsrGt30;
    });
}

float ZelmOrvaneSarnModel::calculateRxMsarnavccPower(Params& params, const Data& data) const
{
    return once(params[Params::RX_MSARNAVCC_POWER], [&] {
        const float lr = calculateMsarnavccRxPowerLr(params, data);
        const float vsr = calculateMsarnavccRxPowerVsr(params, data);
        const float xsr = calculateMsarnavccRxPowerXsr(params, data);
        return lr + vsr + xsr;
    });
}

float ZelmOrvaneSarnModel::calculateRxMsarnavccauxPower(Params& params, const Data& data) const
{
    return once(params[Params::RX_MSARNAVCCAUX_POWER], [&] {
        const float lr = calculateMsarnavccauxRxPowerLr(params, data);
        const float vsr = calculateMsarnavccauxRxPowerVsr(params, data);
        const float xsr = calculateMsarnavccauxRxPowerXsr(params, data);
        return lr + vsr + xsr;
    });
}

float ZelmOrvaneSarnModel::calculateRxVccintGtPower(Params& params, const Data& data) const
{
    return once(params[Params::RX_VCCINT_GT_POWER], [&] {
        const float lrLte30 = calculateVccintGtRxPowerLrLte30Gbaud(params, data);
        const float lrGt30 = calculateVccintGtRxPowerLrGt30Gbaud(params, data);
        const float vsr = calculateVccintGtRxPowerVsr(params, data);
        const float xsr = calculateVccintGtRxPowerXsr(params, data);
        return lrLte30 + lrGt30 + vsr + xsr;
    });
}

// ---- Transmitter ----

float ZelmOrvaneSarnModel::calculateTxMsarnPowerModeScaling(Params& params, const Data& data) const
{
    return once(params[Params::TX_MSARN_POWER_MODE_SCALING],
                [&] { return viewModulation(params, data) == "NRZ" ? 2.0f : 1.0f; });
}

float ZelmOrvaneSarnModel::calculateTxMsarnavccPower(Params& params, const Data& data) const
{
    return once(params[Params::TX_MSARNAVCC_POWER], [&] {
        const bool off = viewOperationalMode(params, data) == "RECEIVER";
        const float scaling = calculateTxMsarnPowerModeScaling(params, data);
        const float rate = getTxDataRate(params, data);
        const Line serialiser = lineOf(data, &Data::findChtxData, "SER_AVCC");
        const Line predriver = lineOf(data, &Data::findChtxData, "PREDRV_AVCC");
        const Line coefficients = lineOf(data, &Data::findChtxData, "COEFF_MUL_AVCC");
        const float scale = calculateScaleAvccCmos(params, data);
        const float power = ((serialiser.slope + predriver.slope + coefficients.slope) * scaling * rate +
                             serialiser.offset + coefficients.offset + predriver.offset) *
                            scale;
        return off ? 0.0f : power;
    });
}

float ZelmOrvaneSarnModel::calculateTxMsarnavttPower(Params& params, const Data& data) const
{
    return once(params[Params::TX_MSARNAVTT_POWER], [&] {
        const bool off = viewOperationalMode(params, data) == "RECEIVER";
        const float scaling = calculateTxMsarnPowerModeScaling(params, data);
        const float rate = getTxDataRate(params, data);
        const Line buffer = lineOf(data, &Data::findChtxData, "CLKBUF_AVTT");
        const float scale = calculateScaleAvttCml(params, data);
        return off ? 0.0f : buffer.at(scaling * rate) * scale;
    });
}

float ZelmOrvaneSarnModel::calculateTxMsarnavccauxPower(Params& params, const Data& data) const
{
    return once(params[Params::TX_MSARNAVCCAUX_POWER], [&] {
        const bool off = viewOperationalMode(params, data) == "RECEIVER";
        const float swing = static_cast<float>(getTxDifferentialSwing(params, data));
        const Line driver = lineOf(data, &Data::findChtxData, "DRIVER_VCCAUX");
        const float scale = calculateScaleVccauxCml(params, data);
        return off ? 0.0f : driver.at(swing) * scale;
    });
}

// ---- Fabric adapter ----

float ZelmOrvaneSarnModel::calculatePcsVccint160Raw(Params& params, const Data& data) const
{
    return once(params[Params::PCS_VCCINT_160_RAW], [&] {
        const std::string_view mode = viewOperationalMode(params, data);
        const float rx = getRxDataRate(params, data);
        const float tx = getTxDataRate(params, data);
        return lineOf(data, &Data::findPcsData, "PCS_VCCINT").at(zelm::channel::pacingRate(mode, rx, tx));
    });
}

float ZelmOrvaneSarnModel::calculateVccintChPwr(Params& params, const Data& data) const
{
    return once(params[Params::VCCINT_CH_PWR], [&] {
        const float raw = calculatePcsVccint160Raw(params, data);
        const float scale = calculateScaleVccintCmos(params, data);
        return raw * scale;
    });
}

// ---- PLL ----

float ZelmOrvaneSarnModel::calculateMsarnavccLcpllPwr(Params& params, const Data& data) const
{
    return once(params[Params::MSARNAVCC_LCPLL_PWR], [&] {
        const float scale = calculateScaleAvccCmos(params, data);
        const int sharing = getLcpllSharing(params, data);
        return zelm::channel::share(data.findLcpllData("QPLL_AVCC") * scale, sharing);
    });
}

float ZelmOrvaneSarnModel::calculateMsarnavttLcpllPwr(Params& params, const Data& data) const
{
    return once(params[Params::MSARNAVTT_LCPLL_PWR], [&] {
        const float scale = calculateScaleAvttCml(params, data);
        const float frequency = calculateLcpllFrequency(params, data);
        const float slope = data.findLcpllData("HS_CLKDIST_AVTT_SLOPE");
        const float quadrature = data.findLcpllData("IQGEN_AVTT");
        const float offset = data.findLcpllData("HS_CLKDIST_AVTT_OFFSET");
        const int sharing = getLcpllSharing(params, data);
        return zelm::channel::share(scale * (frequency * slope + quadrature + offset), sharing);
    });
}

float ZelmOrvaneSarnModel::calculateMsarnvccauxLcpllPwr(Params& params, const Data& data) const
{
    return once(params[Params::MSARNVCCAUX_LCPLL_PWR], [&] {
        const float scale = calculateScaleVccauxCml(params, data);
        const int sharing = getLcpllSharing(params, data);
        return zelm::channel::share(scale * data.findLcpllData("QPLL_VCCAUX"), sharing);
    });
}

float ZelmOrvaneSarnModel::calculatePllMsarnavccPower(Params& params, const Data& data) const
{
    return once(params[Params::PLL_MSARNAVCC_POWER], [&] { return calculateMsarnavccLcpllPwr(params, data); });
}

float ZelmOrvaneSarnModel::calculatePllMsarnavttPower(Params& params, const Data& data) const
{
    return once(params[Params::PLL_MSARNAVTT_POWER], [&] { return calculateMsarnavttLcpllPwr(params, data); });
}

float ZelmOrvaneSarnModel::calculatePllMsarnvccauxPower(Params& params, const Data& data) const
{
    return once(params[Params::PLL_MSARNVCCAUX_POWER], [&] { return calculateMsarnvccauxLcpllPwr(params, data); });
}

// ---- In common ----

float ZelmOrvaneSarnModel::calculateMsarnavccCommonPwr(Params& params, const Data& data) const
{
    return once(params[Params::MSARNAVCC_COMMON_PWR], [&] {
        const float scale = calculateScaleAvccCml(params, data);
        const int channels = getNumSarnquadChannels(params, data);
        return zelm::channel::share(scale * data.findCommonData("REFCLK_AVCC"), channels);
    });
}

// Without a guard, unlike the reference clock: no channels give an infinity, which the rail's own test keeps out.
float ZelmOrvaneSarnModel::calculateMsarnavttCommonPwr(Params& params, const Data& data) const
{
    return once(params[Params::MSARNAVTT_COMMON_PWR], [&] {
        const float scale = calculateScaleAvttCml(params, data);
        const float channels = static_cast<float>(getNumSarnquadChannels(params, data));
        return scale * data.findCommonData("BIAS_AVTT") / channels;
    });
}

float ZelmOrvaneSarnModel::calculateMsarnavttChClkPower(Params& params, const Data& data) const
{
    return once(params[Params::MSARNAVTT_CH_CLK_POWER], [&] {
        const float clock = calculateHsclkOutputFrequency(params, data);
        const Line preInterpolator = lineOf(data, &Data::findChClkData, "PREPI_AVTT");
        const Line interpolator = lineOf(data, &Data::findChClkData, "RXPI_AVTT");
        const Line generator = lineOf(data, &Data::findChClkData, "RXCLKGEN_AVTT");
        const float scale = calculateScaleAvttCml(params, data);
        return (clock * (preInterpolator.slope + interpolator.slope + generator.slope) + preInterpolator.offset +
                interpolator.offset + generator.offset) *
               scale;
    });
}

float ZelmOrvaneSarnModel::calculateCommonMsarnavccPower(Params& params, const Data& data) const
{
    return once(params[Params::COMMON_MSARNAVCC_POWER], [&] { return calculateMsarnavccCommonPwr(params, data); });
}

float ZelmOrvaneSarnModel::calculateCommonMsarnavttPower(Params& params, const Data& data) const
{
    return once(params[Params::COMMON_MSARNAVTT_POWER], [&] {
        const float bias = calculateMsarnavttCommonPwr(params, data);
        const float clocks = calculateMsarnavttChClkPower(params, data);
        return bias + clocks;
    });
}

// ---- Rails ----

float ZelmOrvaneSarnModel::calculateVccintPower(Params& params, const Data& data) const
{
    return once(params[Params::VCCINT_POWER], [&] {
        const float power = calculateVccintChPwr(params, data);
        return getNumSarnquadChannels(params, data) < 1 ? 0.0f : power;
    });
}

float ZelmOrvaneSarnModel::calculateVccintGtPower(Params& params, const Data& data) const
{
    return once(params[Params::VCCINT_GT_POWER], [&] {
        const float power = calculateRxVccintGtPower(params, data);
        return getNumSarnquadChannels(params, data) < 1 ? 0.0f : power;
    });
}

float ZelmOrvaneSarnModel::calculateMsarnavccPower(Params& params, const Data& data) const
{
    return once(params[Params::MSARNAVCC_POWER], [&] {
        const float rx = calculateRxMsarnavccPower(params, data);
        const float tx = calculateTxMsarnavccPower(params, data);
        const float pll = calculatePllMsarnavccPower(params, data);
        const float common = calculateCommonMsarnavccPower(params, data);
        return getNumSarnquadChannels(params, data) < 1 ? 0.0f : rx + tx + pll + common;
    });
}

float ZelmOrvaneSarnModel::calculateMsarnavttPower(Params& params, const Data& data) const
{
    return once(params[Params::MSARNAVTT_POWER], [&] {
        const float rx = calculateRxMsarnavttPower(params, data);
        const float tx = calculateTxMsarnavttPower(params, data);
        const float pll = calculatePllMsarnavttPower(params, data);
        const float common = calculateCommonMsarnavttPower(params, data);
        return getNumSarnquadChannels(params, data) < 1 ? 0.0f : rx + tx + pll + common;
    });
}

// The receiver's and the transmitter's auxiliary powers are outputs of their own and not part of the rail.
float ZelmOrvaneSarnModel::calculateMsarnvccauxPower(Params& params, const Data& data) const
{
    return once(params[Params::MSARNVCCAUX_POWER], [&] {
        const float pll = calculatePllMsarnvccauxPower(params, data);
        return getNumSarnquadChannels(params, data) < 1 ? 0.0f : pll;
    });
}

float ZelmOrvaneSarnModel::calculateTotalPower(Params& params, const Data& data) const
{
    return once(params[Params::TOTAL_POWER], [&] {
        const float vccint = calculateVccintPower(params, data);
        const float avcc = calculateMsarnavccPower(params, data);
        const float avtt = calculateMsarnavttPower(params, data);
        const float vccaux = calculateMsarnvccauxPower(params, data);
        const float vccintGt = calculateVccintGtPower(params, data);
        return vccint + avcc + avtt + vccaux + vccintGt;
    });
}
