#pragma once

#include "support/BlockFixture.h"

#include "transceivers/ZelmOrvaneLorvModel.h"
#include "transceivers/ZelmOrvaneLorvpModel.h"

namespace zelm::test {

struct Lorv {
    using Model = ZelmOrvaneLorvModel;
    using Params = ZelmOrvaneLorvParams;
    static constexpr auto channels = Params::NUM_LORVQUAD_CHANNELS;
};

struct Lorvp {
    using Model = ZelmOrvaneLorvpModel;
    using Params = ZelmOrvaneLorvpParams;
    static constexpr auto channels = Params::NUM_LORVP_QUAD_CHANNELS;
};

/// A channel of either transceiver on a small table of whole numbers, at supplies that scale by 1: every step is exact.
template <class Block>
class LorvFixture : public BlockFixture<typename Block::Model> {
protected:
    using Params = typename Block::Params;
    using BlockFixture<typename Block::Model>::params;

    LorvFixture()
    {
        write("LCPLL_VCO_MIN = 8.0; LCPLL_VCO_MAX = 16.0;", "MARGIN_FACTOR_1 = 1.0; MARGIN_FACTOR_2 = 1.0;");
        params[Params::VCCINT] = 0.88f;
        params[Params::RX_DATA_RATE] = 10.0f;
        params[Params::TX_DATA_RATE] = 12.0f;
    }

    void write(const std::string& lcpllRange, const std::string& margins)
    {
        this->load(R"(
            CHTX_FIXED_POWER_DATA : { DRVBIAS_VCCAUX = 1.0; };
            CHTX_DATA : { SER_AVCC : { SLOPE = 2.0; OFFSET = 3.0; }; PREDRV_AVCC : { SLOPE = 4.0; OFFSET = 5.0; };
                          DRIVER_AVTT : { SLOPE = 0.5; OFFSET = 7.0; }; CLKBUF_AVTT : { SLOPE = 8.0; OFFSET = 9.0; }; };
            CHRX_FIXED_POWER_DATA : {
                DAC_AVCC : { CHRX_DFE = 10.0; CHRX_LPM = 11.0; }; VCM_AVTT : { CHRX_DFE = 12.0; CHRX_LPM = 13.0; };
                OOB_AVTT : { CHRX_DFE = 100.0; CHRX_LPM = 200.0; };
                ACJTAG_AVTT : { CHRX_DFE = 1000.0; CHRX_LPM = 2000.0; };
                I2V_AVTT : { CHRX_DFE = 14.0; CHRX_LPM = 15.0; }; CTLE_AVTT : { CHRX_DFE = 16.0; CHRX_LPM = 17.0; };
                SUMMER_AVTT : { CHRX_DFE = 18.0; CHRX_LPM = 19.0; }; };
            CHRX_LPM_DATA : {
                CAPFF_HTAPS_AVCC : { SLOPE = 1.0; OFFSET = 2.0; }; CAPFF_HTAPS_AVTT : { SLOPE = 3.0; OFFSET = 4.0; };
                DES_AVCC : { SLOPE = 5.0; OFFSET = 6.0; }; CDR_AVCC : { SLOPE = 7.0; OFFSET = 8.0; }; };
            CHRX_DFE_DATA : {
                CAPFF_HTAPS_AVCC : { SLOPE = 9.0; OFFSET = 10.0; }; CAPFF_HTAPS_AVTT : { SLOPE = 11.0; OFFSET = 12.0; };
                DES_AVCC : { SLOPE = 13.0; OFFSET = 14.0; }; CDR_AVCC : { SLOPE = 15.0; OFFSET = 16.0; }; };
            CH_CLK_DATA : { TXPI_AVTT : { SLOPE = 1.0; OFFSET = 10.0; }; TXCLKGEN_AVTT : { SLOPE = 2.0; OFFSET = 20.0; };
                            PREPI_AVTT : { SLOPE = 3.0; OFFSET = 30.0; }; RXPI_AVTT : { SLOPE = 4.0; OFFSET = 40.0; };
                            RXCLKGEN_AVTT : { SLOPE = 5.0; OFFSET = 50.0; }; };
            PCSADAPT_DATA : { PCS_VCCINT : { SLOPE = 2.0; OFFSET = 5.0; }; };
            LCPLL_DATA : { QPLL_AVCC = 40.0; QPLL_VCCAUX = 60.0; IQGEN_AVTT = 10.0;
                           HS_CLKDIST_AVTT_SLOPE = 2.0; HS_CLKDIST_AVTT_OFFSET = 3.0; };
            RPLL_DATA : { CPLL_AVCC : { SLOPE = 3.0; OFFSET = 7.0; }; CPLL_AVTT : { SLOPE = 5.0; OFFSET = 11.0; }; };
            COMMON_DATA : { RPLL_VCO_MIN = 4.0; REFCLK_AVCC = 20.0; BIAS_AVTT = 30.0; )" +
                   lcpllRange + " }; PVT_SCALING_DATA : { " + margins + " };");
    }

    void setRates(float rate)
    {
        params[Params::RX_DATA_RATE] = params[Params::TX_DATA_RATE] = rate;
    }

    void setSources(const char* source)
    {
        params[Params::RX_CLOCK_SOURCE] = params[Params::TX_CLOCK_SOURCE] = source;
    }
};

} // namespace zelm::test
