// Watts that a power engineer believes: one resource each, at inputs that a data sheet or a textbook would name.
// The ranges come from charge and voltage (C V^2 f), from pJ per operation, per access or per bit, and from mW per Gb/s
// of modern FinFET processes; they are wide enough for one such process against the next.

#include "AnyBlock.h"

#include <gmock/gmock.h>

#include <set>

namespace zelm::test::probeTest {

namespace {

struct Probe {
    const char* block;
    const char* what;
    Settings inputs;
    std::vector<const char*> outputs;
    double low;
    double high;
    const char* unit;
    const char* reason;
};

void PrintTo(const Probe& probe, std::ostream* out)
{
    *out << probe.block << ": " << probe.what;
}

const std::vector<const char*> kTransceiver{"VCCINT_POWER", "MLORVAVCC_POWER", "MLORVAVTT_POWER", "MLORVVCCAUX_POWER"};
const std::vector<const char*> kPam4{"TOTAL_POWER", "TX_MSARNAVCCAUX_POWER", "RX_MSARNAVCCAUX_POWER"};
const std::vector<const char*> kPads{"VCCIO_POWER", "VCCAUX_POWER", "VCCO_POWER"};
const std::vector<const char*> kSlowPads{"VCCINT_POWER", "VCCAUX_POWER", "VCCO_POWER"};
const std::vector<const char*> kMemory{"VCCINT_POWER", "VCCRAM_POWER"};
const std::vector<const char*> kLargeMemory{"VCCINT_PWR_N_PLAMS", "VCCRAM_PWR_N_PLAMS"};

// A net of registers, eight to a slice; the accounting gives the enable groups of all slices together, about four each.
Settings clocked(double slices, double groups)
{
    return {{"NUM_CLOCKED_SLICES", slices}, {"NUM_FF_SLICES", slices}, {"NUM_IMUX_SLICES", 1.0},
            {"NUM_LUTRAM_SLICES", 0.0},     {"NUM_SRL_SLICES", 0.0},   {"AVG_CE_FF_GROUPS_PER_SLICE", groups},
            {"CLOCK_FREQ", 400.0},          {"PROB_SLICE_CE", 0.5},    {"VCCINT", 0.8}};
}

// clang-format off
const std::vector<Probe> kProbes{
    // ---- fabric ----
    {"Signal", "10,000 nets at 300 MHz", {{"SIGNAL_COUNT", 10000.0}, {"CLOCK_FREQ", 300.0}, {"ROUTING_COMPLEXITY", 9.0}, {"VCCINT", 0.8}},
     {"SIGNAL_POWER"}, 24.0, 60.0, "mW", "0.2 to 0.5 pF per net (1 to 2 mm at 0.2 fF/um with its switches), half C V^2 per toggle"},
    {"Signal", "one long net that toggles at 1 GHz", {{"CLOCK_FREQ", 1000.0}, {"TOGGLE_RATE", 1.0}, {"DRIVER_TYPE", "BRAM"}, {"VCCINT", 0.8}},
     {"SIGNAL_POWER"}, 60.0, 250.0, "uW", "0.2 to 0.8 pF behind a memory's output"},
    {"CleLogic", "10,000 LUTs at 300 MHz", {{"INSTANCE_COUNT", 10000.0}, {"CLOCK_FREQ", 300.0}, {"VCCINT", 0.8}},
     {"LOGIC_POWER"}, 10.0, 50.0, "mW", "80 to 400 fF of pins, tree and output per LUT, one toggle in eight cycles"},
    {"CleLogic", "10,000 registers at 300 MHz", {{"INSTANCE_COUNT", 10000.0}, {"CLOCK_FREQ", 300.0}, {"INSTANCE_TYPE", "REG_FF"}, {"VCCINT", 0.8}},
     {"LOGIC_POWER"}, 3.0, 15.0, "mW", "12 to 60 fF of latch nodes and output per register"},
    {"CleLogic", "1,000 shift registers at 300 MHz", {{"INSTANCE_COUNT", 1000.0}, {"CLOCK_FREQ", 300.0}, {"INSTANCE_TYPE", "LUT_SRL"}, {"VCCINT", 0.8}},
     {"LOGIC_POWER"}, 2.0, 12.0, "mW", "up to 32 stages move at each shift: a few times a LUT's"},
    {"CleLogic", "1,000 LUT memories at 300 MHz", {{"INSTANCE_COUNT", 1000.0}, {"CLOCK_FREQ", 300.0}, {"INSTANCE_TYPE", "LUT_DRAM"}, {"LUT_WE_PROB", 0.25}, {"VCCINT", 0.8}},
     {"LOGIC_POWER"}, 1.5, 10.0, "mW", "a LUT's reads and 30 to 100 fF per write"},
    {"CleLogic", "1,000 carry elements at 300 MHz", {{"INSTANCE_COUNT", 1000.0}, {"CLOCK_FREQ", 300.0}, {"INSTANCE_TYPE", "LOOKAHEAD"}, {"VCCINT", 0.8}},
     {"LOGIC_POWER"}, 0.1, 1.5, "mW", "dedicated wires of some fF each"},
    {"Clock", "leaves of a net with 20,000 registers", {{"FANOUT", 2500.0}, {"FFS_USING_CLK", 20000.0}, {"AVAIL_FFS", 1800000.0}, {"AVAIL_BRAMS", 967.0}, {"AVAIL_PLAMS", 463.0}, {"AVAIL_DSPS", 1968.0}, {"NUM_FSR", 8.0}},
     {"LEAF_1_COUNT"}, 40.0, 400.0, "", "a leaf serves 6 to 60 of the net's 2,500 sites, as a placer spreads them"},
    {"Clock", "slices of the same net", {{"FANOUT", 2500.0}, {"FFS_USING_CLK", 20000.0}, {"BRAMS_USING_CLK", 0.0}, {"PLAMS_USING_CLK", 0.0}, {"DSPS_USING_CLK", 0.0}},
     {"NUM_FF_SLICES"}, 2500.0, 2500.0, "", "all sites are slices if no memory and no DSP slice is on the net"},
    {"CleClk", "1,000 registers at 400 MHz", clocked(125.0, 498.0),
     {"CLE_CLOCK_POWER"}, 0.5, 3.2, "mW", "2 to 12 fF per register: clock pin, leaf wire and buffers"},
    {"CleClk", "100,000 registers at 400 MHz", clocked(12500.0, 49800.0),
     {"CLE_CLOCK_POWER"}, 50.0, 320.0, "mW", "the same per register"},
    {"CleClk", "5 million registers at 400 MHz", clocked(625000.0, 2490000.0),
     {"CLE_CLOCK_POWER"}, 2500.0, 16000.0, "mW", "the same per register: no term may grow with the square"},
    {"ClkDist", "a net over eight regions at 300 MHz", {{"HD_COUNT", 8.0}, {"LEAF_1_COUNT", 300.0}, {"CLOCK_FREQ", 300.0}, {"VCCINT", 0.8}, {"VCCRAM", 0.8}, {"BUF_TYPE", "GLOBAL"}},
     {"CLK_NETWORK_VCCINT_PWR", "CLK_NETWORK_VCCRAM_PWR", "CLK_BUF_VCCRAM_PWR"}, 15.0, 110.0, "mW", "0.3 to 1 pF per leaf, 2 to 6 pF per segment of a few mm"},
    {"ClkDist", "a root buffer at 500 MHz", {{"CLOCK_FREQ", 500.0}, {"VCCRAM", 0.8}, {"BUF_TYPE", "GLOBAL_CE"}},
     {"CLK_BUF_VCCRAM_PWR"}, 0.2, 2.0, "mW", "1 to 5 pF of driver and first wire"},
    {"IriClk", "16 latched quads and 100 loads at 300 MHz", {{"NUM_LATCHED_QUADS_PDELAY_ON", 16.0}, {"NON_CLE_SITE_FANOUT", 100.0}, {"CLOCK_FREQ", 300.0}, {"VCCINT", 0.8}},
     {"CLOCK_POWER"}, 0.2, 2.5, "mW", "100 to 200 fF per quad with its delay line, 5 to 20 fF per load"},
    {"IriImux", "1,000 registered inputs at 40 MHz of toggles", {{"NUM_IMUX", 1000.0}, {"MODE", "REGISTER"}, {"OP_SIGNAL_RATE", 40.0}, {"VCCINT", 0.8}},
     {"IMUX_POWER"}, 0.25, 2.5, "mW", "10 to 100 fF per multiplexer and register"},

    // ---- memories ----
    {"Bram", "reads of 36 bits at 500 MHz", {{"NUM_BRAMS", 1.0}, {"CASCADE_GROUP_SIZE", 1.0}, {"MODE", "BLKM36"}, {"PORT_A_BIT_WIDTH", 36.0}, {"PORT_A_CLOCK", 500.0}, {"PORT_A_ENABLE_RATE", 1.0}, {"PORT_A_WRITE_ENABLE", 0.0}, {"PORT_B_CLOCK", 0.0}, {"TOGGLE_RATE_A", 0.25}, {"VCCINT", 0.8}, {"VCCRAM", 0.8}},
     kMemory, 2.5, 15.0, "mW", "5 to 30 pJ per read of 36 bits from 36 Kbit"},
    {"Bram", "writes of 36 bits at 500 MHz", {{"NUM_BRAMS", 1.0}, {"CASCADE_GROUP_SIZE", 1.0}, {"MODE", "BLKM36"}, {"PORT_A_BIT_WIDTH", 36.0}, {"PORT_A_CLOCK", 500.0}, {"PORT_A_ENABLE_RATE", 1.0}, {"PORT_A_WRITE_ENABLE", 1.0}, {"PORT_A_WRITE_MODE", "NO_CHANGE"}, {"PORT_B_CLOCK", 0.0}, {"TOGGLE_RATE_A", 0.25}, {"VCCINT", 0.8}, {"VCCRAM", 0.8}},
     kMemory, 2.5, 15.0, "mW", "5 to 30 pJ per write"},
    {"Bram", "simple-dual-port writes of 72 bits at 500 MHz", {{"NUM_BRAMS", 1.0}, {"CASCADE_GROUP_SIZE", 1.0}, {"MODE", "BLKM36SDP"}, {"PORT_A_BIT_WIDTH", 72.0}, {"PORT_B_BIT_WIDTH", 72.0}, {"PORT_A_CLOCK", 0.0}, {"PORT_B_CLOCK", 500.0}, {"PORT_B_ENABLE_RATE", 1.0}, {"PORT_B_WRITE_ENABLE", 1.0}, {"PORT_B_WRITE_MODE", "NO_CHANGE"}, {"TOGGLE_RATE_B", 0.25}, {"VCCINT", 0.8}, {"VCCRAM", 0.8}},
     kMemory, 4.0, 22.0, "mW", "8 to 45 pJ per write of 72 bits; port B is the one that writes"},
    {"Bram", "an idle memory at 500 MHz", {{"NUM_BRAMS", 1.0}, {"CASCADE_GROUP_SIZE", 1.0}, {"MODE", "BLKM36"}, {"PORT_A_CLOCK", 500.0}, {"PORT_B_CLOCK", 500.0}, {"PORT_A_ENABLE_RATE", 0.0}, {"PORT_B_ENABLE_RATE", 0.0}, {"VCCINT", 0.8}, {"VCCRAM", 0.8}},
     kMemory, 0.1, 1.5, "mW", "clock pins and their tree, 1 to 2 pF"},
    {"Plam", "reads of 72 bits at 500 MHz", {{"CLOCK_FREQ", 500.0}, {"ENABLE_RATE_A", 1.0}, {"WRITE_ENABLE_A", 0.0}, {"ENABLE_RATE_B", 0.0}, {"WRITE_ENABLE_B", 0.0}, {"INPUT_TOGGLE_RATE", 0.25}, {"OUTPUT_TOGGLE_RATE", 0.25}, {"VCCINT", 0.8}, {"VCCRAM", 0.8}},
     kLargeMemory, 7.5, 32.0, "mW", "15 to 64 pJ per read of 72 bits from 288 Kbit"},
    {"Plam", "a memory asleep at 500 MHz", {{"CLOCK_FREQ", 500.0}, {"ENABLE_RATE_A", 0.0}, {"WRITE_ENABLE_A", 0.0}, {"ENABLE_RATE_B", 0.0}, {"WRITE_ENABLE_B", 0.0}, {"INPUT_TOGGLE_RATE", 0.0}, {"SLEEP_RATE", 1.0}, {"AVG_INACTIVE_CYCLES", 1000.0}, {"VCCINT", 0.8}, {"VCCRAM", 0.8}},
     kLargeMemory, 0.05, 1.0, "mW", "0.1 to 2 pF in front of the clock's gate, inputs held still"},

    // ---- DSP slices ----
    {"DspActivity", "output activity of a multiplier", {{"MULT_USED", "YES"}}, {"OUTPUT_TOGGLE_RATE"}, 0.2, 0.5, "", "random data toggle half of their bits, signed ones fewer"},
    {"DspInt24", "a 27 x 24 multiply-add at 500 MHz", {{"CLOCK_FREQ", 500.0}, {"MULT_USED", "YES"}, {"MREG_USED", "YES"}, {"VCCINT", 0.8}},
     {"DYNAMIC_VCCINT_POWER"}, 2.0, 12.5, "mW", "4 to 25 pJ per operation"},
    {"DspInt24", "an adder of 58 bits at 500 MHz", {{"CLOCK_FREQ", 500.0}, {"VCCINT", 0.8}},
     {"DYNAMIC_VCCINT_POWER"}, 0.5, 6.0, "mW", "1 to 12 pJ per addition with its registers"},
    {"DspInt8", "three 9 x 8 products at 500 MHz", {{"CLOCK_FREQ", 500.0}, {"MULT_USED", "YES"}, {"MREG_USED", "YES"}, {"VCCINT", 0.8}},
     {"DYNAMIC_VCCINT_POWER"}, 1.5, 10.0, "mW", "1 to 7 pJ per product"},
    {"DspLegacy", "a 27 x 18 multiply-add at 500 MHz", {{"NUM_DSP", 1.0}, {"CLOCK_FREQ", 500.0}, {"MULT_USED", "YES"}, {"MREG_USED", "YES"}, {"A_TR", 0.125}, {"B_TR", 0.125}, {"P_OUTPUT_TR", 0.5}, {"VCCINT", 0.8}},
     {"DYNAMIC_VCCINT_POWER"}, 1.0, 10.0, "mW", "2 to 20 pJ per operation"},
    {"DspCplx", "an 18 x 18 complex product at 500 MHz", {{"CLOCK_FREQ", 500.0}, {"MREG_USED", "YES"}, {"ADREG_USED", "YES"}, {"VCCINT", 0.8}},
     {"DYNAMIC_VCCINT_POWER"}, 4.0, 22.0, "mW", "two slices: 8 to 44 pJ per product"},
    {"DspFp32", "a multiply-add in single precision at 500 MHz", {{"CLOCK_FREQ", 500.0}, {"ADD_USED", "YES"}, {"FPMPIPEREG_USED", "YES"}, {"VCCINT", 0.8}},
     {"DYNAMIC_VCCINT_POWER"}, 3.0, 15.0, "mW", "6 to 30 pJ per operation"},

    // ---- clock generators ----
    {"Veko", "a VCO at 3.2 GHz", {{"SPREAD_SPECTRUM", "OFF"}}, {"VCCAUX_PWR"}, 8.0, 40.0, "mW", "ring, charge pump and regulator: 3 to 12 mW per GHz"},
    {"Veko", "counters and drivers behind it", {{"SPREAD_SPECTRUM", "OFF"}}, {"VCCRAM_PWR"}, 3.0, 40.0, "mW", "0.5 to 5 mW per output and the control logic"},
    {"Dpll", "a digital PLL at 3.2 GHz", {}, {"VCCAUX_PWR", "VCCINT_PWR", "VCCRAM_PWR"}, 8.0, 50.0, "mW", "time-to-digital converter and ring: 3 to 15 mW per GHz"},
    {"Rusk", "a PLL of an I/O bank at 3.2 GHz", {}, {"VCCAUX_PWR", "VCCINTIO_PWR"}, 10.0, 50.0, "mW", "as the clock manager, fewer outputs"},
    {"Pspll", "oscillator of a processor's PLL at 4.3 GHz", {}, {"VCC_AUX_CURRENT"}, 4.0, 20.0, "mA", "1 to 4 mA per GHz and fixed currents"},
    {"Pspll", "its logic", {}, {"VCCINT_CURRENT"}, 2.0, 20.0, "mA", "counters at 4.3 GHz and the output"},

    // ---- I/O ----
    {"Selv", "LVCMOS at 1.5 V into 10 pF at 100 MHz", {{"OUTPUT_IO_STANDARD", "LVCMOS15_8"}, {"CLOCK_FREQ", 100.0}, {"DATA_RATE", "Clock"}, {"OUTPUT_ENABLE", 1.0}, {"OUTPUT_LOAD", 10.0}, {"VCC_IO", 0.8}},
     {"VCCO_POWER"}, 2.7, 3.8, "mW", "C V^2 f of 10 pF and 2 to 4 pF of pad and trace, predriver beside"},
    {"Selv", "POD at 1.2 V, DDR at 3.2 Gb/s", {{"OUTPUT_IO_STANDARD", "POD12"}, {"CLOCK_FREQ", 1600.0}, {"DATA_RATE", "DDR"}, {"TOGGLE_RATE", 0.5}, {"OUTPUT_ENABLE", 1.0}, {"OUTPUT_LOAD", 3.0}, {"VCCO15", 1.2}, {"VCC_IO", 0.8}},
     kPads, 4.0, 20.0, "mW", "2 to 6 pJ per bit, termination's share on the chip included"},
    {"Selv", "an LVDS driver at 1 Gb/s", {{"OUTPUT_IO_STANDARD", "LVDS15"}, {"CLOCK_FREQ", 500.0}, {"DATA_RATE", "DDR"}, {"TOGGLE_RATE", 0.5}, {"OUTPUT_ENABLE", 1.0}, {"VCC_IO", 0.8}},
     kPads, 5.0, 18.0, "mW", "3.5 to 8 mA through the pair from 1.5 V"},
    {"Selv", "an LVDS receiver at 1 Gb/s", {{"IO_DIRECTION", "INPUT"}, {"INPUT_IO_STANDARD", "LVDS15"}, {"CLOCK_FREQ", 500.0}, {"DATA_RATE", "DDR"}, {"TOGGLE_RATE", 0.5}, {"VCC_IO", 0.8}},
     kPads, 1.0, 9.0, "mW", "a differential stage of about 1 mA and the drop over its termination"},
    {"Selv", "a MIPI receiver at 1.5 Gb/s", {{"IO_DIRECTION", "INPUT"}, {"INPUT_IO_STANDARD", "MIPI_DPHY_DCI_HS"}, {"CLOCK_FREQ", 750.0}, {"DATA_RATE", "DDR"}, {"TOGGLE_RATE", 0.5}, {"VCCO15", 1.2}, {"VCC_IO", 0.8}},
     kPads, 0.5, 5.0, "mW", "half to three pJ per bit"},
    {"Nalt", "LVCMOS at 3.3 V into 10 pF at 50 MHz", {{"OUTPUT_IO_STANDARD", "LVCMOS33_8"}, {"CLOCK_FREQ", 50.0}, {"DATA_RATE", "Clock"}, {"OUTPUT_LOAD", 10.0}},
     {"VCCO_POWER"}, 7.0, 10.0, "mW", "C V^2 f of 10 pF and 3 to 7 pF of pad and trace"},
    {"Nalt", "LVCMOS at 1.8 V into 10 pF at 50 MHz", {{"OUTPUT_IO_STANDARD", "LVCMOS18_8"}, {"CLOCK_FREQ", 50.0}, {"DATA_RATE", "Clock"}, {"OUTPUT_LOAD", 10.0}, {"VCCO", 1.8}},
     {"VCCO_POWER"}, 2.0, 3.0, "mW", "C V^2 f of the same capacitances"},
    {"Nalt", "an LVDS receiver", {{"IO_DIRECTION", "INPUT"}, {"CLOCK_FREQ", 20.0}, {"VCCO", 2.5}}, kSlowPads, 0.8, 6.0, "mW", "a differential stage of about 1 mA from 1.5 V"},
    {"Iologic", "an output register with two edges at 200 MHz", {{"MODE", "ODDR"}, {"FREQUENCY", 200.0}}, {"VCC_IO_PWR"}, 5.0, 50.0, "uW", "two flip-flops with 20 to 100 fF each"},
    {"Iologic", "a serialiser at 200 MHz", {{"MODE", "OSERDES"}, {"FREQUENCY", 200.0}}, {"VCC_IO_PWR"}, 20.0, 250.0, "uW", "eight stages and a divided clock"},
    {"Kelp", "a nibble of six bidirectional I/Os at 3.2 Gb/s", {{"NUM_RXTX_IOS", 6.0}, {"CLOCK_FREQ", 3200.0}}, {"RP_TOTAL_POWER"}, 3.0, 20.0, "mW", "0.2 to 1 pJ per bit for delay line, FIFO and serialiser"},
    {"Kelp", "a nibble that transmits on one I/O", {{"NUM_TX_IOS", 1.0}, {"CLOCK_FREQ", 3200.0}}, {"RP_TOTAL_POWER"}, 1.0, 12.0, "mW", "below a full nibble, above a sixth of it: control and spare slices"},

    // ---- transceivers ----
    {"Lorv", "25.8 Gb/s with decision feedback", {{"NUM_LORVQUAD_CHANNELS", 4.0}, {"LCPLL_SHARING", 4.0}, {"TX_DATA_RATE", 25.78125}, {"RX_DATA_RATE", 25.78125}, {"POWER_MODE", "DFE"}, {"TX_DATA_MODE", "64b/66b"}, {"RX_DATA_MODE", "64b/66b"}, {"TX_DIFFERENTIAL_SWING", 600.0}, {"TX_DATA_PATH", 64.0}, {"RX_DATA_PATH", 64.0}, {"VCCINT", 0.8}},
     kTransceiver, 130.0, 390.0, "mW", "5 to 15 pJ per bit, both directions"},
    {"Lorv", "16 Gb/s in low power", {{"NUM_LORVQUAD_CHANNELS", 8.0}, {"LCPLL_SHARING", 4.0}, {"TX_DATA_RATE", 16.0}, {"RX_DATA_RATE", 16.0}, {"TX_DIFFERENTIAL_SWING", 800.0}, {"VCCINT", 0.8}},
     kTransceiver, 80.0, 240.0, "mW", "5 to 15 pJ per bit"},
    {"Lorvp", "25.8 Gb/s with decision feedback", {{"NUM_LORVP_QUAD_CHANNELS", 4.0}, {"LCPLL_SHARING", 4.0}, {"TX_DATA_RATE", 25.78125}, {"RX_DATA_RATE", 25.78125}, {"POWER_MODE", "DFE"}, {"TX_DATA_MODE", "64b/66b"}, {"RX_DATA_MODE", "64b/66b"}, {"TX_DIFFERENTIAL_SWING", 600.0}, {"TX_DATA_PATH", 64.0}, {"RX_DATA_PATH", 64.0}, {"VCCINT", 0.8}},
     kTransceiver, 120.0, 360.0, "mW", "somewhat better than its elder"},
    {"Lorvp", "10.3 Gb/s in low power", {{"NUM_LORVP_QUAD_CHANNELS", 8.0}, {"LCPLL_SHARING", 4.0}, {"TX_DATA_RATE", 10.3125}, {"RX_DATA_RATE", 10.3125}, {"TX_DIFFERENTIAL_SWING", 600.0}, {"VCCINT", 0.8}},
     kTransceiver, 60.0, 200.0, "mW", "6 to 20 pJ per bit: fixed parts weigh more at a low rate"},
    {"Sarn", "112 Gb/s, long reach", {{"NUM_SARNQUAD_CHANNELS", 4.0}, {"LCPLL_SHARING", 4.0}, {"VCCINT", 0.8}}, kPam4, 400.0, 1000.0, "mW", "4 to 9 pJ per bit with converter and equaliser"},
    {"Sarn", "106 Gb/s to a module", {{"NUM_SARNQUAD_CHANNELS", 4.0}, {"LCPLL_SHARING", 4.0}, {"TX_DATA_RATE", 106.25}, {"RX_DATA_RATE", 106.25}, {"POWER_MODE", "VSR"}, {"TX_DIFFERENTIAL_SWING", 800.0}, {"VCCINT", 0.8}},
     kPam4, 300.0, 750.0, "mW", "3 to 7 pJ per bit"},
    {"Sarn", "25.8 Gb/s NRZ to a module", {{"NUM_SARNQUAD_CHANNELS", 4.0}, {"LCPLL_SHARING", 4.0}, {"MODULATION", "NRZ"}, {"TX_DATA_RATE", 25.78125}, {"RX_DATA_RATE", 25.78125}, {"POWER_MODE", "VSR"}, {"TX_DIFFERENTIAL_SWING", 800.0}, {"VCCINT", 0.8}},
     kPam4, 120.0, 400.0, "mW", "5 to 15 pJ per bit in a circuit made for four times the rate"},
    {"Sarn", "the driver at 1 V of swing", {}, {"TX_MSARNAVCCAUX_POWER"}, 15.0, 60.0, "mW", "10 to 20 mA into 100 ohm from 1.5 V, less at PAM4's inner levels"},

    // ---- network ----
    {"Noc", "10 GB/s from fabric to memory", {{"DATA_PATH", "PL_TO_DDRC"}, {"BANDWITH_READ", 5000.0}, {"BANDWITH_WRITE", 5000.0}, {"TRANSACTION_READ_SIZE", 256.0}, {"TRANSACTION_WRITE_SIZE", 256.0}, {"NUM_PL_PATHS", 2.0}},
     {"TOTAL_PATH_PWR"}, 24.0, 140.0, "mW", "0.3 to 1.7 pJ per bit over eight switches and some 10 mm"},
    {"Noc", "clock of half the network at 1 GHz", {{"NOC_CLK", 1000.0}, {"NUM_CLOCK_BUFFERS", 32.0}, {"NUM_PL_PATHS", 1.0}}, {"NOC_CLK_PWR"}, 30.0, 250.0, "mW", "1 to 8 pF per buffer with its wires"},
    {"Ddrmc", "72 bits of DDR4-3200, four fifths busy", {{"DATA_WIDTH", 64.0}, {"DATA_RATE", 3200.0}, {"READ_BAND_WIDTH", 10240.0}, {"WRITE_BAND_WIDTH", 10240.0}, {"VCC_SOC", 0.88}},
     {"VCCSOC_POWER"}, 400.0, 1500.0, "mW", "2 to 9 pJ per bit of traffic for controller and PHY logic"},
    {"Ddrmc", "the same, idle", {{"DATA_WIDTH", 64.0}, {"DATA_RATE", 3200.0}, {"VCC_SOC", 0.88}}, {"VCCSOC_POWER"}, 20.0, 150.0, "mW", "clocks alone"},
    {"Gorb", "four busy interfaces", {}, {"GORB_TOP_DYNAMIC_POWER"}, 100.0, 800.0, "mW", "44.8 GB/s at 0.3 to 2 pJ per bit"},

    // ---- hard blocks ----
    {"Nemt", "100 tiles of 16-bit arithmetic at 1 GHz", {{"NEMT_CORES", 100.0}, {"NUM_MEMORY_BANKS", 800.0}, {"CLK_FREQ", 1000.0}, {"CORE_LOAD", 1.0}, {"MEMORY_READ_WRITE_RATE", 0.3}},
     {"NEMT_VCCINT_POWER"}, 3.0, 12.0, "W", "32 products per cycle and tile at 0.5 to 2 pJ, memory and instruction supply as much again"},
    {"Jorl", "a 400G MAC with error correction", {{"MODE", "1x400GE"}, {"VCCINT", 0.88}}, {"VCCINT_POWER"}, 0.8, 2.0, "W", "2 to 5 pJ per bit, both directions in one"},
    {"Jorl", "six 100G MACs without", {{"FEC", "Disabled"}, {"VCCINT", 0.88}}, {"VCCINT_POWER"}, 0.6, 1.8, "W", "1 to 3 pJ per bit"},
    {"Ilkn", "600 Gb/s with error correction", {{"VCCINT", 0.88}}, {"VCCINT_POWER"}, 0.9, 2.4, "W", "1.5 to 4 pJ per bit"},
    {"Hsc", "a 400G line's encryption", {{"VCCINT", 0.88}}, {"VCCINT_POWER"}, 0.4, 1.8, "W", "1 to 4.5 pJ per bit in dedicated logic"},
    {"Hsc", "at half the clock", {{"MODE", "Slow"}, {"VCCINT", 0.88}}, {"VCCINT_POWER"}, 0.2, 0.95, "W", "half, and the clock's root"},
    {"Tuvo", "a 100G MAC with error correction", {{"TRANSCODE_BYPASS", "NO"}, {"VCCINT", 0.8}}, {"POWER"}, 0.15, 0.5, "W", "1.5 to 5 pJ per bit"},
    {"Sdfec", "LDPC decoding at 1 Gb/s", {{"MODES", "LDPC_5G"}, {"VCCINT", 0.8}}, {"POWER"}, 40.0, 250.0, "mW", "40 to 250 pJ per decoded bit in eight to ten iterations"},
    {"Sdfec", "turbo decoding at 1 Gb/s", {{"VCCINT", 0.8}}, {"POWER"}, 80.0, 500.0, "mW", "two to three times an LDPC decoder's"},
    {"Pcieb", "16 Gb/s on eight lanes", {{"LINK_SPEED", "GEN4"}, {"LINK_WIDTH", "x8"}, {"VCCINT", 0.8}}, {"POWER"}, 200.0, 800.0, "mW", "1.5 to 6 pJ per bit for three protocol layers"},
    {"Pcieb5", "32 Gb/s on sixteen lanes", {{"LINK_SPEED", "GEN5"}, {"LINK_WIDTH", "x16"}, {"VCCINT", 0.8}}, {"POWER"}, 0.6, 2.6, "W", "1.2 to 5 pJ per bit"},
    {"Mulm", "32 Gb/s on sixteen lanes", {{"LINK_SPEED", "GEN5"}, {"LINK_WIDTH", 16.0}, {"VCCINT", 0.8}}, {"VCCINT_POWER"}, 0.2, 1.0, "W", "0.4 to 2 pJ per bit for the lanes' coding layer"},
    {"Wist", "a coherent link of eight lanes at 16 Gb/s", {{"PCI_CHANNELS", 1.0}, {"LINK_SPEED_A0", "GEN4"}, {"LINK_WIDTH_A0", 8.0}, {"WIST_MODE_A1", "NONE"}, {"VCCINT", 0.8}},
     {"VCCINT_POWER_A0", "VCCINT_POWER_A1"}, 0.4, 2.2, "W", "3 to 17 pJ per bit: protocol, coherence and cache"},
    {"Wist5", "two direct-memory-access links of eight lanes at 32 Gb/s", {{"A0_MODES", "WIST5_DMA"}, {"A0_LINK_WIDTH", "X8"}, {"A1_MODES", "WIST5_DMA"}, {"A1_LINK_WIDTH", "X8"}, {"VCC_WIST5", 0.8}},
     {"DYNAMIC_PWR_VCC_WIST5"}, 1.0, 5.0, "W", "2 to 10 pJ per bit"},

    // ---- processing and device ----
    {"Yond", "two application cores, busy", {{"VCCPSFP", 0.85}}, {"FPD_TOTAL_DYNAMIC_POWER"}, 0.6, 2.5, "W", "0.15 to 0.5 mW per MHz and core, caches and interconnect as much again"},
    {"Yond", "the low-power part, busy", {{"VCCPSLP", 0.85}}, {"LPD_TOTAL_DYNAMIC_POWER"}, 0.1, 0.6, "W", "two real-time cores at 0.05 to 0.15 mW per MHz, peripherals and pads"},
    {"Harl", "management with its defaults", {{"VCCINTHARL", 0.85}}, {"TOTAL_DYNAMIC_POWER"}, 0.1, 0.6, "W", "a microcontroller, two PLLs and some 40 pads"},
    {"Parts", "LUTs of a mid-size device", {}, {"RESOURCE_COUNT"}, 500000.0, 1500000.0, "", "some 900,000 LUTs"},
    {"Static", "a mid-size device at 25 degrees", {{"JUNCTION_TEMPERATURE", 25.0}}, {"TOTAL_STATIC_POWER"}, 1.5, 4.0, "W", "some 1.5 uA per LUT at 25 degrees and 0.8 V"},
    {"Static", "the same at 100 degrees", {{"JUNCTION_TEMPERATURE", 100.0}}, {"TOTAL_STATIC_POWER"}, 8.0, 20.0, "W", "five to six times, doubling every 28 to 33 degrees"},
    {"Static", "eight converters of either kind", {{"DEVICE_NAME", "ZW4630"}, {"USED_ADC_CORE", 8.0}, {"USED_DAC_CORE", 8.0}, {"JUNCTION_TEMPERATURE", 60.0}},
     {"ADCAVCC_STATIC_POWER", "ADCAVCCAUX_STATIC_POWER", "DACAVCC_STATIC_POWER", "DACAVCCAUX_STATIC_POWER", "DACAVTT_STATIC_POWER"}, 2.0, 6.0, "W", "120 to 350 mW of bias each at some GS/s"},
    {"Sysmon", "33 satellites of a mid-size device", {}, {"TOTAL_STATIC_POWER"}, 20.0, 400.0, "mW", "1 to 8 mW per satellite and the root's converter"},
};
// clang-format on

class Believable : public testing::TestWithParam<Probe> {};

TEST_P(Believable, IsInRange)
{
    const Probe& probe = GetParam();
    const double unit = baseUnits(probe.unit) > 0.0 ? baseUnits(probe.unit) : 1.0;
    const double value = calculated(probe.block, probe.inputs, probe.outputs) / unit;
    EXPECT_TRUE(value >= probe.low && value <= probe.high)
        << probe.block << show(probe.inputs) << ": " << value << ' ' << probe.unit << ", expected " << probe.low
        << " to " << probe.high << ": " << probe.reason;
}

INSTANTIATE_TEST_SUITE_P(All, Believable, testing::ValuesIn(kProbes));

TEST(Probes, CoverEveryBlock)
{
    std::set<std::string> probed{"DspConfig"};
    for (const Probe& probe : kProbes)
        probed.insert(probe.block);
    for (const Kind& each : kinds())
        EXPECT_EQ(probed.count(std::string(each.name)), 1u) << each.name;
    EXPECT_GE(kProbes.size(), 60u);
}

TEST(Probes, TheBlocksOfTextAnswer)
{
    AnyBlock config = kind("DspConfig").create();
    config.set({{"DSP_MODE", "27x24 + 58"}});
    config.calculate();
    EXPECT_EQ(config.text("DSP_MODE_USED"), "27x24 + 58");
    AnyBlock parts = kind("Parts").create();
    parts.calculate();
    EXPECT_EQ(parts.text("IS_PART_SUPPORTED"), "Yes");
}

} // namespace

} // namespace zelm::test::probeTest
