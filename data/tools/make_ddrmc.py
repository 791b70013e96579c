#!/usr/bin/env python3
"""Writes ZelmOrvaneDdrmcData.cfg: data rate and power of every configuration of a DDR memory controller.

The power at 80 % of the bus grows with the bits that toggle: a controller costs a base, each further channel and the
ECC coder a little, and each pin an energy per bit (mW per Mb/s). A command bus with fewer pins runs slower.
"""

import pathlib

BASE, CHANNEL, ECC = 160.0, 40.0, 25.0  # mW
ENERGY = {"DDR4": 0.0029, "LP4": 0.0022}  # mW per Mb/s and pin
RATES = {  # Mb/s per pin
    "HIGHEST_DATA_RATE": {"DDR4": 3200, "LP4": 4266},
    "FEWEST_PINS": {"DDR4": 2933, "LP4": 3733},
}
# (standard, channels) -> widths of the whole bus without and with ECC; only one channel has extra pins for ECC
WIDTHS = {
    ("DDR4", 1): {16: 24, 32: 40, 64: 72},
    ("DDR4", 2): {32: 32, 64: 64},
    ("LP4", 1): {16: 32, 32: 48},
    ("LP4", 2): {32: 32, 64: 64},
}

HEAD = """\
// DDR memory controller: powers of its configurations. Written by data/tools/make_ddrmc.py. Illustrative numbers.
// Origin: scheduler and queues 160 mW, 40 mW per further channel, 25 mW for the ECC coder; 2.2 to 2.9 pJ per bit for data path
// and PHY logic. Check: 0.3 to 0.9 W, 4 to 8 pJ per bit of traffic at 80 % of the bus.
ZelmOrvaneDdrmcData :
{
  // DATARATE: Mb/s per pin; DYNAMIC_POWER: mW at that rate and 80 % of the bus
  DDRMC_DATA :
  {
"""
TAIL = """\
  };

  // V at which the powers hold
  SIM_CONDITIONS :
  {
    SIM_VOLTAGE = 0.88;
  };

  // GHz of the network's port at which the powers hold
  NSU_CLOCK :
  {
    CLK_FREQ = 1.0;
  };
};
"""


def rows():
    for option, rates in RATES.items():
        for (standard, channels), widths in WIDTHS.items():
            for plain, coded in widths.items():
                for width, ecc in ((plain, 0), (coded, 1)):
                    rate = rates[standard]
                    power = BASE + CHANNEL * (channels - 1) + ECC * ecc + ENERGY[standard] * width * rate
                    name = f"{option}_{standard}_{channels}CH_X{width}_ECC_{'ENABLED' if ecc else 'DISABLED'}"
                    yield f"    {name} : {{ DATARATE = {rate}.0; DYNAMIC_POWER = {power:.1f}; }};\n"


out = pathlib.Path(__file__).parents[1] / "powercfg" / "orvane" / "ZelmOrvaneDdrmcData.cfg"
out.write_text(HEAD + "".join(rows()) + TAIL)
