#include "transceivers/ZelmOrvaneSarnModel.h"

#include "framework/ZelmModelBlockImpl.h"
#include "transceivers/ZelmChannelArithmetic.h"

#include <limits>

#define ZELM_MODEL ZelmOrvaneSarnModel
#define ZELM_CELL_ROWS "transceivers/ZelmOrvaneSarnCells.def"
#define ZELM_TABLE_ROWS "transceivers/ZelmOrvaneSarnTables.def"

namespace {

constexpr float kNoLimit = std::numeric_limits<float>::quiet_NaN(); // no rate compares with it

} // namespace

struct ZelmOrvaneSarnModel::Sheet : zelm::Sheet<ZelmOrvaneSarnModel> {
#include "framework/ZelmAccessors.inc"

    using Line = zelm::channel::Line;
    using Table = float (Sheet::*)(const Key& item, const Key& column) const;

    // ---- Lines of power, by table ----

    Line txLine(const Key& item) const
    {
        return {findChtxData(item, "SLOPE"), findChtxData(item, "OFFSET")};
    }

    Line clockLine(const Key& item) const
    {
        return {findChClkData(item, "SLOPE"), findChClkData(item, "OFFSET")};
    }

    Line adapterLine(const Key& item) const
    {
        return {findPcsData(item, "SLOPE"), findPcsData(item, "OFFSET")};
    }

    Line lrLine(const Key& item) const
    {
        return {findChrxLrData(item, "SLOPE"), findChrxLrData(item, "OFFSET")};
    }

    Line lrLte30Line(const Key& item) const
    {
        return {findChrxLrDataLte30Gbaud(item, "SLOPE"), findChrxLrDataLte30Gbaud(item, "OFFSET")};
    }

    Line lrGt30Line(const Key& item) const
    {
        return {findChrxLrDataGt30Gbaud(item, "SLOPE"), findChrxLrDataGt30Gbaud(item, "OFFSET")};
    }

    Line vsrLine(const Key& item) const
    {
        return {findChrxVsrData(item, "SLOPE"), findChrxVsrData(item, "OFFSET")};
    }

    Line xsrLine(const Key& item) const
    {
        return {findChrxXsrData(item, "SLOPE"), findChrxXsrData(item, "OFFSET")};
    }

    // ---- What sets reaches and baud rates apart ----

    // A reach of the receiver. It is off in the power modes of the other two, so any other text keeps all three.
    struct Reach {
        std::string_view offModes[2];
        Key fixedKey;
        Key referenceKey; // of the converter's reference on the auxiliary rail
        Line (Sheet::*line)(const Key& item) const;
        Params::FloatEnum rxPowerAvcc;
        Params::FloatEnum rxPowerVccaux;
    };

    static constexpr Reach kLr{.offModes = {"VSR", "XSR"},
                               .fixedKey = "CHRX_LR",
                               .referenceKey = "CHRX_LR",
                               .line = &Sheet::lrLine,
                               .rxPowerAvcc = Params::MSARNAVCC_RX_POWER_LR,
                               .rxPowerVccaux = Params::MSARNAVCCAUX_RX_POWER_LR};
    static constexpr Reach kVsr{.offModes = {"LR", "XSR"},
                                .fixedKey = "CHRX_VSR",
                                .referenceKey = "CHRX_VSR",
                                .line = &Sheet::vsrLine,
                                .rxPowerAvcc = Params::MSARNAVCC_RX_POWER_VSR,
                                .rxPowerVccaux = Params::MSARNAVCCAUX_RX_POWER_VSR};
    // The reference of this converter is taken from the VSR row.
    static constexpr Reach kXsr{.offModes = {"LR", "VSR"},
                                .fixedKey = "CHRX_XSR",
                                .referenceKey = "CHRX_VSR",
                                .line = &Sheet::xsrLine,
                                .rxPowerAvcc = Params::MSARNAVCC_RX_POWER_XSR,
                                .rxPowerVccaux = Params::MSARNAVCCAUX_RX_POWER_XSR};

    // The baud rates, in GBd, of a cell that is characterised for some of them only.
    struct BaudRange {
        float above;
        float upTo;
    };

    // The analogue receiver at one reach in one range of baud rates.
    struct Bin {
        const Reach& reach;
        BaudRange range;
        Table equaliser; // fixed powers by item and reach
        Params::FloatEnum rxPowerAvtt;
    };

    static constexpr Bin kLrLte15{
        kLr, {kNoLimit, 15.0f}, &Sheet::findChrxFixedPowerDataLte15Gbaud, Params::MSARNAVTT_RX_POWER_LR_LTE_15GBAUD};
    static constexpr Bin kLrLte30{
        kLr, {15.0f, 30.0f}, &Sheet::findChrxFixedPowerDataLte30Gbaud, Params::MSARNAVTT_RX_POWER_LR_LTE_30GBAUD};
    static constexpr Bin kLrGt30{
        kLr, {30.0f, kNoLimit}, &Sheet::findChrxFixedPowerDataGt30Gbaud, Params::MSARNAVTT_RX_POWER_LR_GT_30GBAUD};
    static constexpr Bin kVsrLte30{
        kVsr, {kNoLimit, 30.0f}, &Sheet::findChrxFixedPowerDataLte30Gbaud, Params::MSARNAVTT_RX_POWER_VSR_LTE_30GBAUD};
    static constexpr Bin kVsrGt30{
        kVsr, {30.0f, kNoLimit}, &Sheet::findChrxFixedPowerDataGt30Gbaud, Params::MSARNAVTT_RX_POWER_VSR_GT_30GBAUD};
    static constexpr Bin kXsrLte30{
        kXsr, {kNoLimit, 30.0f}, &Sheet::findChrxFixedPowerDataLte30Gbaud, Params::MSARNAVTT_RX_POWER_XSR_LTE_30GBAUD};
    static constexpr Bin kXsrGt30{
        kXsr, {30.0f, kNoLimit}, &Sheet::findChrxFixedPowerDataGt30Gbaud, Params::MSARNAVTT_RX_POWER_XSR_GT_30GBAUD};

    // The digital signal processor at one reach; only the long reach is told apart by baud rate, without a bin up
    // to 15.
    struct Processor {
        const Reach& reach;
        BaudRange range;
        Line (Sheet::*line)(const Key& item) const; // of the filters and their adaptation
        Params::FloatEnum rxPowerVccintGt;
    };

    static constexpr Processor kDspLrLte30{
        kLr, {kNoLimit, 30.0f}, &Sheet::lrLte30Line, Params::VCCINT_GT_RX_POWER_LR_LTE_30GBAUD};
    static constexpr Processor kDspLrGt30{
        kLr, {30.0f, kNoLimit}, &Sheet::lrGt30Line, Params::VCCINT_GT_RX_POWER_LR_GT_30GBAUD};
    static constexpr Processor kDspVsr{kVsr, {kNoLimit, kNoLimit}, &Sheet::vsrLine, Params::VCCINT_GT_RX_POWER_VSR};
    static constexpr Processor kDspXsr{kXsr, {kNoLimit, kNoLimit}, &Sheet::xsrLine, Params::VCCINT_GT_RX_POWER_XSR};

    void pullOutputs() const
    {
        TotalPower();
        VccintPower();
        MsarnvccauxPower();
        MsarnavccPower();
        MsarnavttPower();
        VccintGtPower();
        VccintChPwr();
        RxMsarnavccPower();
        RxMsarnavttPower();
        RxMsarnavccauxPower();
        RxVccintGtPower();
        TxMsarnavccPower();
        TxMsarnavttPower();
        TxMsarnavccauxPower();
        PllMsarnavccPower();
        PllMsarnavttPower();
        PllMsarnvccauxPower();
        CommonMsarnavccPower();
        CommonMsarnavttPower();
    }

    // ---- Supplies ----

    float computeScaleAvttCml() const
    {
        const float voltage = Msarnavtt();
        return zelm::channel::linearScale(voltage, 1.2f, findPvtScalingData("MARGIN_FACTOR_1"));
    }

    float computeScaleAvttCmos() const
    {
        return ScaleAvttCml(); // this rail is never squared
    }

    float computeScaleAvccCml() const
    {
        const float voltage = Msarnavcc();
        return zelm::channel::linearScale(voltage, 0.88f, findPvtScalingData("MARGIN_FACTOR_1"));
    }

    float computeScaleAvccCmos() const
    {
        const float voltage = Msarnavcc();
        return zelm::channel::squareScale(voltage, 0.88f, findPvtScalingData("MARGIN_FACTOR_1"));
    }

    float computeScaleVccauxCml() const
    {
        const float voltage = Msarnvccaux();
        return zelm::channel::linearScale(voltage, 1.5f, findPvtScalingData("MARGIN_FACTOR_1"));
    }

    float computeScaleVccauxCmos() const
    {
        return ScaleVccauxCml(); // this rail is never squared
    }

    float computeScaleVccintCmos() const
    {
        const float voltage = Vccint();
        // Characterised at 0.88 V, though the rail's default is 0.7 V.
        return zelm::channel::squareScale(voltage, 0.88f, findPvtScalingData("MARGIN_FACTOR_2"));
    }

    // ---- Counts and limits for the host ----

    int computeNumDual() const
    {
        return zelm::channel::duals(NumSarnquadChannels());
    }

    int computeNumOctals() const
    {
        return zelm::channel::octals(NumSarnquadChannels());
    }

    int computeNumOfLcpllUsed() const
    {
        const int channels = NumSarnquadChannels();
        const int sharing = LcpllSharing();
        return zelm::channel::lcplls(channels, sharing);
    }

    static Key speedKey(int speedgrade)
    {
        if (speedgrade == -2)
            return "SPEED_2";
        return speedgrade == -3 ? Key("SPEED_3") : Key("SPEED_1");
    }

    float computeMaxNrzDatarate() const
    {
        return findNrzDatarates(speedKey(Speedgrade()), "MAX");
    }

    float computeMaxPam4Datarate() const
    {
        return findPam4Datarates(speedKey(Speedgrade()), "MAX");
    }

    // ---- Clock of the receiver ----

    float computeChclkOutputFrequency() const
    {
        const bool silent = OperationalMode() == "TRANSMITTER";
        const float rate = RxDataRate();
        const bool pam4 = Modulation() == "PAM4";
        return silent ? 0.0f : rate * (pam4 ? 0.125f : 0.25f);
    }

    float computeDspClkRate() const
    {
        const bool silent = OperationalMode() == "TRANSMITTER";
        const float channelClock = ChclkOutputFrequency();
        return silent ? 0.0f : channelClock * 8.0f;
    }

    int computeChclkDivideMode() const
    {
        const float min = findCommonData("LCPLL_VCO_MIN");
        const float channelClock = ChclkOutputFrequency();
        if (!(min * 0.5f > channelClock))
            return 1;
        return min * 0.25f > channelClock ? 4 : 2;
    }

    int computeHsclkDivideMode() const
    {
        const float min = findCommonData("LCPLL_VCO_MIN");
        const float channelClock = ChclkOutputFrequency();
        return min > channelClock ? 2 : 1;
    }

    float computeQpllRx() const
    {
        const float channelClock = ChclkOutputFrequency();
        const float highSpeedDivider = static_cast<float>(HsclkDivideMode());
        const float channelDivider = static_cast<float>(ChclkDivideMode());
        return channelClock * highSpeedDivider * channelDivider;
    }

    float computeRxVcoLcpll() const
    {
        const bool silent = OperationalMode() == "TRANSMITTER";
        const float qpll = QpllRx();
        const float min = findCommonData("LCPLL_VCO_MIN");
        return silent ? 0.0f : qpll >= 0.0f ? qpll : min;
    }

    float computeRxInputFrequency() const
    {
        const bool silent = OperationalMode() == "TRANSMITTER";
        const float vco = RxVcoLcpll();
        return silent ? 0.0f : vco;
    }

    // ---- Clock of the transmitter ----

    int computeTxclkDivideMode() const
    {
        const float min = findCommonData("LCPLL_VCO_MIN");
        const float rate = TxDataRate();
        const bool pam4 = Modulation() == "PAM4";
        const bool eighthFalls = min > rate * 0.125f;
        const bool quarterFalls = min > rate * 0.25f;
        const bool halfFalls = min > rate * 0.5f;
        if (pam4)
            return !eighthFalls ? 1 : quarterFalls ? 4 : 2;
        return halfFalls && quarterFalls ? 2 : 1;
    }

    float computeTxclkClkFreq() const
    {
        const float divider = static_cast<float>(TxclkDivideMode());
        const float rate = TxDataRate();
        const bool pam4 = Modulation() == "PAM4";
        return divider * rate * (pam4 ? 0.125f : 0.25f);
    }

    float computeQpllTx() const
    {
        const float clock = TxclkClkFreq();
        const float divider = static_cast<float>(TxclkDivideMode());
        const float min = findCommonData("LCPLL_VCO_MIN");
        const float max = findCommonData("LCPLL_VCO_MAX");
        const float vco = clock * divider;
        return vco > min && vco <= max ? vco : -1.0f; // the least frequency itself is out of range
    }

    float computeTxVcoLcpll() const
    {
        const bool silent = OperationalMode() == "RECEIVER";
        const float qpll = QpllTx();
        const float min = findCommonData("LCPLL_VCO_MIN");
        return silent ? 0.0f : qpll >= 0.0f ? qpll : min;
    }

    float computeTxInputFrequency() const
    {
        const bool silent = OperationalMode() == "RECEIVER";
        const float vco = TxVcoLcpll();
        return silent ? 0.0f : vco;
    }

    // ---- Clocks in common ----

    float computeLcpllFrequency() const
    {
        const Key& mode = OperationalMode();
        const float rx = RxVcoLcpll();
        const float tx = TxVcoLcpll();
        return MAX(mode == "TRANSMITTER" ? 0.0f : rx, mode == "RECEIVER" ? 0.0f : tx);
    }

    float computeHsclkOutputFrequency() const
    {
        const float frequency = LcpllFrequency();
        const float divider = static_cast<float>(HsclkDivideMode());
        return frequency / divider;
    }

    // ---- Receiver ----

    bool isOff(const Reach& reach) const
    {
        const Key& operationalMode = OperationalMode();
        const Key& powerMode = PowerMode();
        return operationalMode == "TRANSMITTER" || powerMode == reach.offModes[0] || powerMode == reach.offModes[1];
    }

    // NRZ carries one bit per baud, PAM4 two; a third modulation meets no limit.
    bool isOff(const Reach& reach, const BaudRange& range) const
    {
        const bool reachOff = isOff(reach);
        const Key& modulation = Modulation();
        const float rate = RxDataRate();
        const float bitsPerBaud = modulation == "NRZ" ? 1.0f : modulation == "PAM4" ? 2.0f : kNoLimit;
        return reachOff || rate > bitsPerBaud * range.upTo || rate <= bitsPerBaud * range.above;
    }

    float rxPowerAvtt(const Bin& bin) const
    {
        const bool off = isOff(bin.reach, bin.range);
        const float rate = RxDataRate();
        const Key& reach = bin.reach.fixedKey;
        const float commonMode = findChrxFixedPowerData("VCM_AVTT", reach);
        const bool acjtagOn = Acjtag() == "ON";
        const float acjtag = acjtagOn ? findChrxFixedPowerData("ACJTAG_AVTT", reach) : 0.0f;
        const float offsetDac = findChrxFixedPowerData("LS_OSDAC_AVTT", reach);
        const float reference = findChrxFixedPowerData("ADC_VREF_AVTT", reach);
        const float regulator = findChrxFixedPowerData("RXREG_AVTT", reach);
        const float filter = (this->*bin.equaliser)("CTLE_HF_MF_AVTT", reach);
        const float gain = (this->*bin.equaliser)("CTLE_AGC_AVTT", reach);
        const Line clocks = (this->*bin.reach.line)("ADC_CLKGEN_AVTT");
        const Line converter = (this->*bin.reach.line)("ADC_SAR_AVTT");
        const float scale = ScaleAvttCml();
        const float power = (commonMode + acjtag + offsetDac + reference + regulator + filter + gain +
                             clocks.slope * rate + clocks.offset + converter.slope * rate + converter.offset) *
                            scale;
        return off ? 0.0f : power;
    }

    float rxPowerAvcc(const Reach& reach) const
    {
        const bool off = isOff(reach);
        const float processorClock = ChclkOutputFrequency() * 8.0f;
        const Line converter = (this->*reach.line)("ADC_SAR_AVCC");
        const Line retimer = (this->*reach.line)("ADC_RETIMER_AVCC");
        const float cml = ScaleAvccCml();
        const float cmos = ScaleAvccCmos();
        const float power = converter.at(processorClock) * cml + retimer.at(processorClock) * cmos;
        return off ? 0.0f : power;
    }

    float rxPowerVccaux(const Reach& reach) const
    {
        const bool off = isOff(reach);
        const float scale = ScaleAvttCml(); // the termination supply's scale, as characterised
        const float power = scale * findChrxFixedPowerData("ADC_VREF_VCCAUX", reach.referenceKey);
        return off ? 0.0f : power;
    }

    float rxPowerVccintGt(const Processor& processor) const
    {
        const bool off = isOff(processor.reach, processor.range);
        const float clock = DspClkRate();
        const Line filters = (this->*processor.line)("DSP_VCCINTGT");
        const Line recovery = (this->*processor.reach.line)("CDR_VCCINTGT");
        const Line adaptation = (this->*processor.line)("ADAPT_VCCINTGT");
        const float scale = ScaleAvttCml(); // not that of VCCINT_GT, which no formula reads
        const float power = (filters.slope * clock + filters.offset + recovery.slope * clock + recovery.offset +
                             adaptation.slope * clock + adaptation.offset) *
                            scale;
        return off ? 0.0f : power;
    }

    float computeRxMsarnavttPower() const
    {
        const float lrLte15 = MsarnavttRxPowerLrLte15Gbaud();
        const float lrLte30 = MsarnavttRxPowerLrLte30Gbaud();
        const float lrGt30 = MsarnavttRxPowerLrGt30Gbaud();
        const float vsrLte30 = MsarnavttRxPowerVsrLte30Gbaud();
        const float vsrGt30 = MsarnavttRxPowerVsrGt30Gbaud();
        const float xsrLte30 = MsarnavttRxPowerXsrLte30Gbaud();
        const float xsrGt30 = MsarnavttRxPowerXsrGt30Gbaud();
        return lrLte15 + lrLte30 + lrGt30 + vsrLte30 + vsrGt30 + xsrLte30 + xsrGt30;
    }

    float computeRxMsarnavccPower() const
    {
        const float lr = MsarnavccRxPowerLr();
        const float vsr = MsarnavccRxPowerVsr();
        const float xsr = MsarnavccRxPowerXsr();
        return lr + vsr + xsr;
    }

    float computeRxMsarnavccauxPower() const
    {
        const float lr = MsarnavccauxRxPowerLr();
        const float vsr = MsarnavccauxRxPowerVsr();
        const float xsr = MsarnavccauxRxPowerXsr();
        return lr + vsr + xsr;
    }

    float computeRxVccintGtPower() const
    {
        const float lrLte30 = VccintGtRxPowerLrLte30Gbaud();
        const float lrGt30 = VccintGtRxPowerLrGt30Gbaud();
        const float vsr = VccintGtRxPowerVsr();
        const float xsr = VccintGtRxPowerXsr();
        return lrLte30 + lrGt30 + vsr + xsr;
    }

    // ---- Transmitter ----

    float computeTxMsarnPowerModeScaling() const
    {
        return Modulation() == "NRZ" ? 2.0f : 1.0f;
    }

    float computeTxMsarnavccPower() const
    {
        const bool off = OperationalMode() == "RECEIVER";
        const float scaling = TxMsarnPowerModeScaling();
        const float rate = TxDataRate();
        const Line serialiser = txLine("SER_AVCC");
        const Line predriver = txLine("PREDRV_AVCC");
        const Line coefficients = txLine("COEFF_MUL_AVCC");
        const float scale = ScaleAvccCmos();
        const float power = ((serialiser.slope + predriver.slope + coefficients.slope) * scaling * rate +
                             serialiser.offset + coefficients.offset + predriver.offset) *
                            scale;
        return off ? 0.0f : power;
    }

    float computeTxMsarnavttPower() const
    {
        const bool off = OperationalMode() == "RECEIVER";
        const float scaling = TxMsarnPowerModeScaling();
        const float rate = TxDataRate();
        const Line buffer = txLine("CLKBUF_AVTT");
        const float scale = ScaleAvttCml();
        return off ? 0.0f : buffer.at(scaling * rate) * scale;
    }

    float computeTxMsarnavccauxPower() const
    {
        const bool off = OperationalMode() == "RECEIVER";
        const float swing = static_cast<float>(TxDifferentialSwing());
        const Line driver = txLine("DRIVER_VCCAUX");
        const float scale = ScaleVccauxCml();
        return off ? 0.0f : driver.at(swing) * scale;
    }

    // ---- Fabric adapter ----

    float computePcsVccint160Raw() const
    {
        const Key& mode = OperationalMode();
        const float rx = RxDataRate();
        const float tx = TxDataRate();
        return adapterLine("PCS_VCCINT").at(zelm::channel::pacingRate(mode, rx, tx));
    }

    float computeVccintChPwr() const
    {
        const float raw = PcsVccint160Raw();
        const float scale = ScaleVccintCmos();
        return raw * scale;
    }

    // ---- PLL ----

    float computeMsarnavccLcpllPwr() const
    {
        const float scale = ScaleAvccCmos();
        const int sharing = LcpllSharing();
        return zelm::channel::share(findLcpllData("QPLL_AVCC") * scale, sharing);
    }

    float computeMsarnavttLcpllPwr() const
    {
        const float scale = ScaleAvttCml();
        const float frequency = LcpllFrequency();
        const float slope = findLcpllData("HS_CLKDIST_AVTT_SLOPE");
        const float quadrature = findLcpllData("IQGEN_AVTT");
        const float offset = findLcpllData("HS_CLKDIST_AVTT_OFFSET");
        const int sharing = LcpllSharing();
        return zelm::channel::share(scale * (frequency * slope + quadrature + offset), sharing);
    }

    float computeMsarnvccauxLcpllPwr() const
    {
        const float scale = ScaleVccauxCml();
        const int sharing = LcpllSharing();
        return zelm::channel::share(scale * findLcpllData("QPLL_VCCAUX"), sharing);
    }

    float computePllMsarnavccPower() const
    {
        return MsarnavccLcpllPwr();
    }

    float computePllMsarnavttPower() const
    {
        return MsarnavttLcpllPwr();
    }

    float computePllMsarnvccauxPower() const
    {
        return MsarnvccauxLcpllPwr();
    }

    // ---- In common ----

    float computeMsarnavccCommonPwr() const
    {
        const float scale = ScaleAvccCml();
        const int channels = NumSarnquadChannels();
        return zelm::channel::share(scale * findCommonData("REFCLK_AVCC"), channels);
    }

    // Without a guard, unlike the reference clock: no channels give an infinity, which the rail's own test keeps out.
    float computeMsarnavttCommonPwr() const
    {
        const float scale = ScaleAvttCml();
        const float channels = static_cast<float>(NumSarnquadChannels());
        return scale * findCommonData("BIAS_AVTT") / channels;
    }

    float computeMsarnavttChClkPower() const
    {
        const float clock = HsclkOutputFrequency();
        const Line preInterpolator = clockLine("PREPI_AVTT");
        const Line interpolator = clockLine("RXPI_AVTT");
        const Line generator = clockLine("RXCLKGEN_AVTT");
        const float scale = ScaleAvttCml();
        return (clock * (preInterpolator.slope + interpolator.slope + generator.slope) + preInterpolator.offset +
                interpolator.offset + generator.offset) *
               scale;
    }

    float computeCommonMsarnavccPower() const
    {
        return MsarnavccCommonPwr();
    }

    float computeCommonMsarnavttPower() const
    {
        const float bias = MsarnavttCommonPwr();
        const float clocks = MsarnavttChClkPower();
        return bias + clocks;
    }

    // ---- Rails ----

    float computeVccintPower() const
    {
        const float power = VccintChPwr();
        return NumSarnquadChannels() < 1 ? 0.0f : power;
    }

    float computeVccintGtPower() const
    {
        const float power = RxVccintGtPower();
        return NumSarnquadChannels() < 1 ? 0.0f : power;
    }

    float computeMsarnavccPower() const
    {
        const float rx = RxMsarnavccPower();
        const float tx = TxMsarnavccPower();
        const float pll = PllMsarnavccPower();
        const float common = CommonMsarnavccPower();
        return NumSarnquadChannels() < 1 ? 0.0f : rx + tx + pll + common;
    }

    float computeMsarnavttPower() const
    {
        const float rx = RxMsarnavttPower();
        const float tx = TxMsarnavttPower();
        const float pll = PllMsarnavttPower();
        const float common = CommonMsarnavttPower();
        return NumSarnquadChannels() < 1 ? 0.0f : rx + tx + pll + common;
    }

    // The receiver's and the transmitter's auxiliary powers are outputs of their own and not part of the rail.
    float computeMsarnvccauxPower() const
    {
        const float pll = PllMsarnvccauxPower();
        return NumSarnquadChannels() < 1 ? 0.0f : pll;
    }

    float computeTotalPower() const
    {
        const float vccint = VccintPower();
        const float avcc = MsarnavccPower();
        const float avtt = MsarnavttPower();
        const float vccaux = MsarnvccauxPower();
        const float vccintGt = VccintGtPower();
        return vccint + avcc + avtt + vccaux + vccintGt;
    }
};

#include "framework/ZelmModelBodies.inc"
