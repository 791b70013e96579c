#!/usr/bin/env python3
"""Writes ZelmOrvaneWistData.cfg: clocks of the coherent PCIe module by link, and the power of its parts.

A controller moves 512 bits per cycle of its user clock, the DMA engine likewise; each takes the slowest of its clocks that
keeps up with the link. Interconnect and coherent L2 step up with the traffic of all links. Two controllers share sixteen
lanes, so a link of sixteen lanes leaves no room for a second one."""

import pathlib

GBPS = {"GEN1": 2.5, "GEN2": 5.0, "GEN3": 8.0, "GEN4": 16.0, "ESM20G": 20.0, "ESM25G": 25.0}  # per lane
WIDTHS = (1, 2, 4, 8, 16)
LANES = 16

# mW/MHz at full activity
DYNAMIC = {
    "PCIEA_CORE0_DYNAMIC": 0.92,
    "PCIEA_CORE1_DYNAMIC": 0.74,
    "WIST_CMN_WRAP": 0.81,
    "WIST_DMA": 0.88,
    "WIST_INT_WRAP": 0.36,
    "WIST_MIC": 0.13,
}
# mW
PLL = {"POWER_DYNAMIC_AUX": 8.6, "POWER_DYNAMIC_VCCINT": 5.9, "STATIC_VCCAUX": 1.7}


def slowest(clocks, needed):
    return next(clock for clock in clocks if clock >= needed)


def clocks(gbps, channels):
    user = slowest((125, 250, 500, 1000), gbps * 1000 / 512)
    traffic = gbps * channels
    return {
        "ARTERIS": slowest((600, 800, 1000), traffic * 2.5),
        "DMA": slowest((250, 500, 1000), gbps * 1000 / 512),
        "GENPCIE_USER_CLK_CORE0": user,
        "GENPCIE_USER_CLK_CORE1": user,
        "GENWIST_CORE_CLK": slowest((800, 1000, 1200), traffic * 3.0),
    }


def group(name, items):
    yield f"    {name} :"
    yield "    {"
    for item, value in items.items():
        yield f"      {item} = {value};"
    yield "    };"


def wist_file():
    yield "// Coherent PCIe module: clocks and power. Written by data/tools/make_wist.py. Illustrative numbers."
    yield "ZelmOrvaneWistData :"
    yield "{"
    yield "  // DYNAMIC: mW/MHz of a part at full activity; PLL: mW. Origin: a controller with a data path of 512 bits through some forty"
    yield "  // stages is 0.9 nJ per cycle, an interconnect with its cache tags as much. Check: 4 to 9 pJ per bit at eight lanes of 16 Gb/s."
    yield "  POWER :"
    yield "  {"
    yield from group("DYNAMIC", DYNAMIC)
    yield from group("PLL", PLL)
    yield "  };"
    yield ""
    yield "  // MHz, by link speed, lanes and controllers in use: the slowest clock that keeps up with the link at 512 bits per cycle"
    yield "  CONFIG_POWER_DATA :"
    yield "  {"
    for channels in (1, 2):
        for speed, gbps in GBPS.items():
            for width in WIDTHS:
                if width * channels <= LANES:
                    row = " ".join(f"{item} = {mhz};" for item, mhz in clocks(width * gbps, channels).items())
                    yield f"    {speed}_x{width}_A{channels} : {{ {row} }};"
    yield "  };"
    yield ""
    yield "  // V at which the power was characterised: the process's nominal supply"
    yield "  FACTORS : { VCCINT_SIM = 0.80; };"
    yield "};"


if __name__ == "__main__":
    folder = pathlib.Path(__file__).resolve().parents[1] / "powercfg" / "orvane"
    (folder / "ZelmOrvaneWistData.cfg").write_text("\n".join(wist_file()) + "\n")
