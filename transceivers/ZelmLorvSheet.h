#pragma once

#include "framework/ZelmSheet.h"
#include "transceivers/ZelmChannelArithmetic.h"

#include <string_view>

/// The formulas of one channel, for the transceiver and the enhanced transceiver: the models differ in what counts the
/// channels and in how a channel shares what its quad has in common (numChannels and commonShare of their sheets).
template <class Model>
struct ZelmLorvSheet : zelm::Sheet<Model> {
    using Base = ZelmLorvSheet;
    using zelm::Sheet<Model>::Sheet;
    using zelm::Sheet<Model>::self;
    using zelm::Sheet<Model>::value;
    using typename zelm::Sheet<Model>::Key;
    using typename zelm::Sheet<Model>::Params;
    using Line = zelm::channel::Line;

    void pullOutputs() const
    {
        self().TotalPower();
        self().VccintPower();
        self().MlorvvccauxPower();
        self().MlorvavccPower();
        self().MlorvavttPower();
        self().VccintChPwr();
        self().RxMlorvavccPower();
        self().RxMlorvavttPower();
        self().TxMlorvavccPower();
        self().TxMlorvavttPower();
        self().PllMlorvavccPower();
        self().PllMlorvavttPower();
        self().PllMlorvvccauxPower();
        self().CommonMlorvavccPower();
        self().CommonMlorvavttPower();
    }

    // ---- Lines of power, by table ----

    Line txLine(const Key& item) const
    {
        return {self().findChtxData(item, "SLOPE"), self().findChtxData(item, "OFFSET")};
    }

    Line lpmLine(const Key& item) const
    {
        return {self().findChrxLpmData(item, "SLOPE"), self().findChrxLpmData(item, "OFFSET")};
    }

    Line dfeLine(const Key& item) const
    {
        return {self().findChrxDfeData(item, "SLOPE"), self().findChrxDfeData(item, "OFFSET")};
    }

    Line clockLine(const Key& item) const
    {
        return {self().findChClkData(item, "SLOPE"), self().findChClkData(item, "OFFSET")};
    }

    Line adapterLine(const Key& item) const
    {
        return {self().findPcsadaptData(item, "SLOPE"), self().findPcsadaptData(item, "OFFSET")};
    }

    Line rpllLine(const Key& item) const
    {
        return {self().findRpllData(item, "SLOPE"), self().findRpllData(item, "OFFSET")};
    }

    // What sets the receiver's clocking and fabric interface apart from the transmitter's.
    struct Direction {
        std::string_view silentMode; // the operational mode in which it rests
        typename Params::StringEnum clockSource;
        typename Params::FloatEnum dataRate;
        typename Params::StringEnum dataMode;
        typename Params::IntEnum dataPath;
        typename Params::FloatEnum qpll0;
        typename Params::FloatEnum qpll1;
        typename Params::FloatEnum vcoLcpll;
        typename Params::FloatEnum vcoRpll;
        typename Params::FloatEnum inputFrequency;
        typename Params::FloatEnum multFactor;
    };
    static constexpr Direction kRx{.silentMode = "TRANSMITTER",
                                   .clockSource = Params::RX_CLOCK_SOURCE,
                                   .dataRate = Params::RX_DATA_RATE,
                                   .dataMode = Params::RX_DATA_MODE,
                                   .dataPath = Params::RX_DATA_PATH,
                                   .qpll0 = Params::QPLL0_RX,
                                   .qpll1 = Params::QPLL1_RX,
                                   .vcoLcpll = Params::RX_VCO_LCPLL,
                                   .vcoRpll = Params::RX_VCO_RPLL,
                                   .inputFrequency = Params::RX_INPUT_FREQUENCY,
                                   .multFactor = Params::RX_MULT_FACTOR_PCSADAPT};
    static constexpr Direction kTx{.silentMode = "RECEIVER",
                                   .clockSource = Params::TX_CLOCK_SOURCE,
                                   .dataRate = Params::TX_DATA_RATE,
                                   .dataMode = Params::TX_DATA_MODE,
                                   .dataPath = Params::TX_DATA_PATH,
                                   .qpll0 = Params::QPLL0_TX,
                                   .qpll1 = Params::QPLL1_TX,
                                   .vcoLcpll = Params::TX_VCO_LCPLL,
                                   .vcoRpll = Params::TX_VCO_RPLL,
                                   .inputFrequency = Params::TX_INPUT_FREQUENCY,
                                   .multFactor = Params::TX_MULT_FACTOR_PCSADAPT};

    // What sets the two equalisers apart. Each is off in the other's power mode, so a third text keeps both.
    struct Equaliser {
        std::string_view offMode;
        Key fixedKey;
        Line (ZelmLorvSheet::*line)(const Key& item) const;
        typename Params::FloatEnum rxPowerAvcc;
        typename Params::FloatEnum rxPowerAvtt;
    };
    static constexpr Equaliser kDfe{.offMode = "LOW_POWER",
                                    .fixedKey = "CHRX_DFE",
                                    .line = &ZelmLorvSheet::dfeLine,
                                    .rxPowerAvcc = Params::MLORVAVCC_RX_POWER_DFE,
                                    .rxPowerAvtt = Params::MLORVAVTT_RX_POWER_DFE};
    static constexpr Equaliser kLpm{.offMode = "DFE",
                                    .fixedKey = "CHRX_LPM",
                                    .line = &ZelmLorvSheet::lpmLine,
                                    .rxPowerAvcc = Params::MLORVAVCC_RX_POWER_LPM,
                                    .rxPowerAvtt = Params::MLORVAVTT_RX_POWER_LPM};

    // ---- Supplies ----

    float computeScaleAvttCml() const
    {
        const float voltage = self().Mlorvavtt();
        return zelm::channel::linearScale(voltage, 1.2f, self().findPvtScalingData("MARGIN_FACTOR_1"));
    }

    float computeScaleAvttCmos() const
    {
        return self().ScaleAvttCml(); // this rail is never squared
    }

    float computeScaleAvccCml() const
    {
        const float voltage = self().Mlorvavcc();
        return zelm::channel::linearScale(voltage, 0.88f, self().findPvtScalingData("MARGIN_FACTOR_1"));
    }

    float computeScaleAvccCmos() const
    {
        const float voltage = self().Mlorvavcc();
        return zelm::channel::squareScale(voltage, 0.88f, self().findPvtScalingData("MARGIN_FACTOR_1"));
    }

    float computeScaleVccauxCml() const
    {
        const float voltage = self().Mlorvvccaux();
        return zelm::channel::linearScale(voltage, 1.5f, self().findPvtScalingData("MARGIN_FACTOR_1"));
    }

    float computeScaleVccauxCmos() const
    {
        return self().ScaleVccauxCml(); // this rail is never squared
    }

    float computeScaleVccintCmos() const
    {
        const float voltage = self().Vccint();
        // Characterised at 0.88 V, though the rail's default is 0.7 V.
        return zelm::channel::squareScale(voltage, 0.88f, self().findPvtScalingData("MARGIN_FACTOR_2"));
    }

    // ---- Clocks ----

    // Half the VCO's frequency for a data rate. The smallest multiple of the rate in the VCO's range wins; above the
    // range, half of the rate.
    float halfVco(const Direction& direction) const
    {
        const float rate = value(direction.dataRate);
        const float min = self().findCommonData("LCPLL_VCO_MIN");
        const float max = self().findCommonData("LCPLL_VCO_MAX");
        const auto inRange = [&](float frequency) { return frequency >= min && frequency <= max; };
        if (!(rate < max))
            return inRange(rate * 0.5f) ? rate * 0.5f : -0.5f;
        float vco = -1.0f;
        for (const float multiplier : {16.0f, 8.0f, 4.0f, 2.0f, 1.0f})
            vco = inRange(rate * multiplier) ? rate * multiplier : vco;
        return vco * 0.5f;
    }

    float qpll0(const Direction& direction) const
    {
        return halfVco(direction);
    }

    float qpll1(const Direction& direction) const
    {
        return halfVco(direction);
    }

    float vcoLcpll(const Direction& direction) const
    {
        const bool silent = self().OperationalMode() == direction.silentMode;
        const Key& source = value(direction.clockSource);
        const float second = value(direction.qpll1);
        const float first = value(direction.qpll0);
        const float min = self().findCommonData("LCPLL_VCO_MIN");
        if (silent || source == "RPLL")
            return 0.0f;
        if (source == "LCPLL" && second >= 0.0f)
            return second;
        return first >= 0.0f ? first : min;
    }

    float vcoRpll(const Direction& direction) const
    {
        const bool silent = self().OperationalMode() == direction.silentMode;
        const float rate = value(direction.dataRate);
        const float min = self().findCommonData("RPLL_VCO_MIN");
        if (silent)
            return 0.0f;
        for (const float multiplier : {0.5f, 1.0f, 2.0f}) {
            if (rate * multiplier >= min)
                return rate * multiplier;
        }
        return rate * 4.0f;
    }

    float inputFrequency(const Direction& direction) const
    {
        const bool silent = self().OperationalMode() == direction.silentMode;
        const Key& source = value(direction.clockSource);
        const float lcpll = value(direction.vcoLcpll);
        const float rpll = value(direction.vcoRpll);
        return silent ? 0.0f : source == "LCPLL" ? lcpll : rpll;
    }

    // Whether a direction runs on that PLL, by that name and no other.
    bool runsOn(std::string_view pll, const Direction& direction) const
    {
        const bool silent = self().OperationalMode() == direction.silentMode;
        const Key& source = value(direction.clockSource);
        return !silent && source == pll;
    }

    // MAX never falls below its tiny positive floor, so an unused PLL's frequency isn't 0.
    float fasterOn(std::string_view pll, float rx, float tx) const
    {
        const bool receives = runsOn(pll, kRx);
        const bool sends = runsOn(pll, kTx);
        return ZelmHelperUtils::MAX(receives ? rx : 0.0f, sends ? tx : 0.0f);
    }

    float computeLcpllFrequency() const
    {
        const float rx = self().RxVcoLcpll();
        const float tx = self().TxVcoLcpll();
        return fasterOn("LCPLL", rx, tx);
    }

    float computeRpllFrequency() const
    {
        const float rx = self().RxVcoRpll();
        const float tx = self().TxVcoRpll();
        return fasterOn("RPLL", rx, tx);
    }

    // ---- Receiver ----

    // Two lines over one rate, in the order that the last bit depends on.
    static float sumOfLines(Line a, Line b, float rate)
    {
        return (a.slope + b.slope) * rate + a.offset + b.offset;
    }

    bool isOff(const Equaliser& equaliser) const
    {
        const Key& powerMode = self().PowerMode();
        const Key& operationalMode = self().OperationalMode();
        return powerMode == equaliser.offMode || operationalMode == "TRANSMITTER";
    }

    float rxPowerAvcc(const Equaliser& equaliser) const
    {
        const bool off = isOff(equaliser);
        const float rate = self().RxDataRate();
        const Line deserialiser = (this->*equaliser.line)("DES_AVCC");
        const Line recovery = (this->*equaliser.line)("CDR_AVCC");
        const Line taps = (this->*equaliser.line)("CAPFF_HTAPS_AVCC");
        const float dac = self().findChrxFixedPowerData("DAC_AVCC", equaliser.fixedKey);
        const float cmos = self().ScaleAvccCmos();
        const float cml = self().ScaleAvccCml();
        const float power =
            sumOfLines(deserialiser, recovery, rate) * cmos + (taps.slope * rate + dac + taps.offset) * cml;
        return off ? 0.0f : power;
    }

    float rxPowerAvtt(const Equaliser& equaliser) const
    {
        const bool off = isOff(equaliser);
        const float rate = self().RxDataRate();
        const bool oobOn = self().Oob() == "ON";
        const bool acjtagOn = self().Acjtag() == "ON";
        const auto fixed = [&](const Key& item) { return self().findChrxFixedPowerData(item, equaliser.fixedKey); };
        const float oob = oobOn ? fixed("OOB_AVTT") : 0.0f;
        const float acjtag = acjtagOn ? fixed("ACJTAG_AVTT") : 0.0f;
        const Line taps = (this->*equaliser.line)("CAPFF_HTAPS_AVTT");
        const float scale = self().ScaleAvttCml();
        const float power = (fixed("VCM_AVTT") + oob + acjtag + fixed("I2V_AVTT") + fixed("CTLE_AVTT") +
                             fixed("SUMMER_AVTT") + taps.slope * rate + taps.offset) *
                            scale;
        return off ? 0.0f : power;
    }

    float computeRxMlorvavccPower() const
    {
        const float dfe = self().MlorvavccRxPowerDfe();
        const float lpm = self().MlorvavccRxPowerLpm();
        return dfe + lpm;
    }

    float computeRxMlorvavttPower() const
    {
        const float dfe = self().MlorvavttRxPowerDfe();
        const float lpm = self().MlorvavttRxPowerLpm();
        return dfe + lpm;
    }

    // ---- Transmitter ----

    float computeTxMlorvavccPower() const
    {
        const bool off = self().OperationalMode() == "RECEIVER";
        const float rate = self().TxDataRate();
        const Line serialiser = txLine("SER_AVCC");
        const Line predriver = txLine("PREDRV_AVCC");
        const float scale = self().ScaleAvccCmos();
        return off ? 0.0f : sumOfLines(serialiser, predriver, rate) * scale;
    }

    float computeTxMlorvavttPower() const
    {
        const bool off = self().OperationalMode() == "RECEIVER";
        const float swing = static_cast<float>(self().TxDifferentialSwing());
        const float rate = self().TxDataRate();
        const Line driver = txLine("DRIVER_AVTT"); // over the swing, not the rate
        const float bias = self().findChtxFixedPowerData("DRVBIAS_VCCAUX");
        const Line buffer = txLine("CLKBUF_AVTT");
        const float scale = self().ScaleAvttCml();
        const float power = (swing * driver.slope + driver.offset + bias + rate * buffer.slope + buffer.offset) * scale;
        return off ? 0.0f : power;
    }

    // ---- Fabric adapter ----

    float computePcsadaptVccint40Raw() const
    {
        const Key& mode = self().OperationalMode();
        const float rx = self().RxDataRate();
        const float tx = self().TxDataRate();
        return adapterLine("PCS_VCCINT").at(zelm::channel::pacingRate(mode, rx, tx));
    }

    // The adapter is characterised for 40 bits, and 8b/10b carries 8 of 10 bits; a wide interface is two adapters.
    float multFactor(const Direction& direction) const
    {
        const bool silent = self().OperationalMode() == direction.silentMode;
        const int path = value(direction.dataPath);
        const Key& dataMode = value(direction.dataMode);
        if (silent || path < 1)
            return 0.0f;
        const float factor = dataMode == "8b/10b" ? (path <= 32 ? 0.8f : 1.6f) : (path <= 40 ? 1.0f : 2.0f);
        return 40.0f / static_cast<float>(path) * factor;
    }

    float computeVccintChPwr() const
    {
        const float raw = self().PcsadaptVccint40Raw();
        const float rx = self().RxMultFactorPcsadapt();
        const float tx = self().TxMultFactorPcsadapt();
        const float scale = self().ScaleVccintCmos();
        return raw * ZelmHelperUtils::MAX(rx, tx) * scale;
    }

    // ---- PLLs ----

    // Unused, the RPLL still shows its offsets: its frequency is the floor of MAX, which is above 0.
    float computeMlorvavccRpllPwr() const
    {
        const float frequency = self().RpllFrequency();
        const Line pll = rpllLine("CPLL_AVCC");
        const float scale = self().ScaleAvccCmos();
        return frequency > 0.0f ? pll.at(frequency) * scale : 0.0f;
    }

    float computeMlorvavttRpllPwr() const
    {
        const float frequency = self().RpllFrequency();
        const Line pll = rpllLine("CPLL_AVTT");
        const float scale = self().ScaleAvttCml();
        return frequency > 0.0f ? pll.at(frequency) * scale : 0.0f;
    }

    bool lcpllInUse() const
    {
        return runsOn("LCPLL", kTx) || runsOn("LCPLL", kRx);
    }

    float computeMlorvavccLcpllPwr() const
    {
        const bool used = lcpllInUse();
        const float scale = self().ScaleAvccCmos();
        const int sharing = self().LcpllSharing();
        return used ? zelm::channel::share(self().findLcpllData("QPLL_AVCC") * scale, sharing) : 0.0f;
    }

    float computeMlorvavttLcpllPwr() const
    {
        const bool used = lcpllInUse();
        const float frequency = self().LcpllFrequency();
        const Line distribution{self().findLcpllData("HS_CLKDIST_AVTT_SLOPE"),
                                self().findLcpllData("HS_CLKDIST_AVTT_OFFSET")};
        const float quadrature = self().findLcpllData("IQGEN_AVTT");
        const float scale = self().ScaleAvttCml();
        const int sharing = self().LcpllSharing();
        const float power = (frequency * distribution.slope + quadrature + distribution.offset) * scale;
        return used ? zelm::channel::share(power, sharing) : 0.0f;
    }

    // This test asks for the RPLL by name, the others for the LCPLL: a third source counts as the LCPLL here only.
    float computeMlorvvccauxLcpllPwr() const
    {
        const Key& mode = self().OperationalMode();
        const Key& rxSource = self().RxClockSource();
        const Key& txSource = self().TxClockSource();
        const float scale = self().ScaleVccauxCml();
        const int sharing = self().LcpllSharing();
        const bool unused = (rxSource == "RPLL" || mode == "TRANSMITTER") && (txSource == "RPLL" || mode == "RECEIVER");
        return unused ? 0.0f : zelm::channel::share(scale * self().findLcpllData("QPLL_VCCAUX"), sharing);
    }

    float computePllMlorvavccPower() const
    {
        const float rpll = self().MlorvavccRpllPwr();
        const float lcpll = self().MlorvavccLcpllPwr();
        return rpll + lcpll;
    }

    float computePllMlorvavttPower() const
    {
        const float rpll = self().MlorvavttRpllPwr();
        const float lcpll = self().MlorvavttLcpllPwr();
        return rpll + lcpll;
    }

    float computePllMlorvvccauxPower() const
    {
        return self().MlorvvccauxLcpllPwr();
    }

    // ---- In common ----

    float computeMlorvavccCommonPwr() const
    {
        const float scale = self().ScaleAvccCml();
        const float reference = scale * self().findCommonData("REFCLK_AVCC");
        return self().commonShare(zelm::channel::share(reference, self().numChannels()));
    }

    float computeMlorvavttCommonPwr() const
    {
        const float scale = self().ScaleAvttCml();
        const float bias = scale * self().findCommonData("BIAS_AVTT");
        return self().commonShare(zelm::channel::share(bias, self().numChannels()));
    }

    float computeMlorvavttChClkPower() const
    {
        const float tx = self().TxInputFrequency();
        const float rx = self().RxInputFrequency();
        const Line txInterpolator = clockLine("TXPI_AVTT");
        const Line txGenerator = clockLine("TXCLKGEN_AVTT");
        const Line preInterpolator = clockLine("PREPI_AVTT");
        const Line rxInterpolator = clockLine("RXPI_AVTT");
        const Line rxGenerator = clockLine("RXCLKGEN_AVTT");
        const float scale = self().ScaleAvttCml();
        return (tx * (txInterpolator.slope + txGenerator.slope) +
                rx * (preInterpolator.slope + rxInterpolator.slope + rxGenerator.slope) + preInterpolator.offset +
                txInterpolator.offset + txGenerator.offset + rxInterpolator.offset + rxGenerator.offset) *
               scale;
    }

    // The eye scan runs on the decision-feedback path, whatever the receiver's own mode.
    bool eyescanOff() const
    {
        return self().Eyescan() == "OFF";
    }

    float computeMlorvavccEyescanPower() const
    {
        const bool off = eyescanOff();
        const float rate = self().RxDataRate();
        const Line deserialiser = dfeLine("DES_AVCC");
        const Line recovery = dfeLine("CDR_AVCC");
        const float scale = self().ScaleAvccCmos();
        return off ? 0.0f : sumOfLines(deserialiser, recovery, rate) * 0.5f * scale;
    }

    float computeMlorvavttEyescanPower() const
    {
        const bool off = eyescanOff();
        const float rate = self().RxDataRate();
        const Line taps = dfeLine("CAPFF_HTAPS_AVTT");
        const float converter = self().findChrxFixedPowerData("I2V_AVTT", kDfe.fixedKey);
        const float scale = self().ScaleAvttCml();
        return off ? 0.0f : (rate * taps.slope + converter + taps.offset) * 0.5f * scale;
    }

    float computeCommonMlorvavccPower() const
    {
        const float reference = self().MlorvavccCommonPwr();
        const float eyescan = self().MlorvavccEyescanPower();
        return reference + eyescan;
    }

    float computeCommonMlorvavttPower() const
    {
        const float bias = self().MlorvavttCommonPwr();
        const float clocks = self().MlorvavttChClkPower();
        const float eyescan = self().MlorvavttEyescanPower();
        return bias + clocks + eyescan;
    }

    // ---- Rails ----

    float computeVccintPower() const
    {
        const float power = self().VccintChPwr();
        return self().numChannels() < 1 ? 0.0f : power;
    }

    float computeMlorvavccPower() const
    {
        const float rx = self().RxMlorvavccPower();
        const float tx = self().TxMlorvavccPower();
        const float pll = self().PllMlorvavccPower();
        const float common = self().CommonMlorvavccPower();
        return self().numChannels() < 1 ? 0.0f : rx + tx + pll + common;
    }

    float computeMlorvavttPower() const
    {
        const float rx = self().RxMlorvavttPower();
        const float tx = self().TxMlorvavttPower();
        const float pll = self().PllMlorvavttPower();
        const float common = self().CommonMlorvavttPower();
        return self().numChannels() < 1 ? 0.0f : rx + tx + pll + common;
    }

    float computeMlorvvccauxPower() const
    {
        const float pll = self().PllMlorvvccauxPower();
        return self().numChannels() < 1 ? 0.0f : pll;
    }

    float computeTotalPower() const
    {
        const float vccint = self().VccintPower();
        const float avcc = self().MlorvavccPower();
        const float avtt = self().MlorvavttPower();
        const float vccaux = self().MlorvvccauxPower();
        return vccint + avcc + avtt + vccaux;
    }
};
