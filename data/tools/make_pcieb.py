#!/usr/bin/env python3
"""Writes ZelmOrvanePciebData.cfg and ZelmOrvanePcieb5Data.cfg: currents of PCIe blocks by link speed and width.

A block draws a fixed current for its controller and clocks, a share per lane, and a share per Gb/s that the link carries
each way."""

import pathlib

GBPS = {"GEN1": 2.0, "GEN2": 4.0, "GEN3": 7.9, "GEN4": 15.8, "GEN5": 31.5}  # per lane, net of the line code
WIDTHS = (1, 2, 4, 8, 16)
VOLTS = 0.80  # supply of the currents
EXPONENT = 2.3  # of the voltage factor

# block: (what it is, its speeds, A fixed, A per lane, A per Gb/s)
BLOCKS = {
    "Pcieb": ("PCIe block", ("GEN1", "GEN2", "GEN3", "GEN4"), 0.045, 0.0050, 0.0038),
    "Pcieb5": ("Newer PCIe block", ("GEN1", "GEN2", "GEN3", "GEN4", "GEN5"), 0.058, 0.0062, 0.0031),
}


def block_file(block):
    what, speeds, fixed, per_lane, per_gbps = BLOCKS[block]
    yield f"// {what}: currents by link. Written by data/tools/make_pcieb.py. Illustrative numbers."
    yield f"ZelmOrvane{block}Data :"
    yield "{"
    yield f"  // A of one block. Origin: {fixed:g} A of clocks and control, {per_lane:g} A per lane, {per_gbps * VOLTS * 1e3:.1f} pJ per bit each way for three"
    yield "  // protocol layers with their retry buffers. Check: 2.5 to 8 pJ per bit at eight lanes and more."
    yield "  DYNAMIC_CURRENTS :"
    yield "  {"
    for speed in speeds:
        for width in WIDTHS:
            amperes = fixed + width * (per_lane + per_gbps * GBPS[speed])
            yield f"    {speed}x{width} : {{ AVG_CURRENT_A = {amperes:.4f}; }};"
    yield "  };"
    yield ""
    yield "  // VCCINT_SIM: V at which the currents were characterised, the process's nominal supply; POWER_FACTOR: exponent of"
    yield "  // the voltage factor, 2 of C V^2 and crowbar current beside"
    yield "  SCALE :"
    yield "  {"
    yield f"    POWER_FACTOR = {EXPONENT};"
    yield f"    VCCINT_SIM = {VOLTS:.2f};"
    yield "  };"
    yield "};"


if __name__ == "__main__":
    folder = pathlib.Path(__file__).resolve().parents[1] / "powercfg" / "orvane"
    for name in BLOCKS:
        (folder / f"ZelmOrvane{name}Data.cfg").write_text("\n".join(block_file(name)) + "\n")
