#!/usr/bin/env python3
"""Writes ZelmOrvaneMulmData.cfg: power of the pipe block by mode, lanes and link speed.

The block draws a fixed power for its clocks, a share per lane for the lane's registers, and a share per Gb/s. Controller
A1 sits farther from the lanes than A0, so its paths cost more."""

import pathlib

GBPS = {"GEN1": 2.5, "GEN2": 5.0, "GEN3": 8.0, "GEN4": 16.0, "GEN5": 32.0}  # per lane
WIDTHS = (1, 2, 4, 8, 16)
# mode: (mW fixed, mW per lane, mW per Gb/s)
MODES = {"PCIE_A0": (14.0, 3.6, 0.78), "PCIE_A1": (14.0, 3.9, 0.86)}


def mulm_file():
    yield "// Pipe block: power by mode, lanes and link speed. Written by data/tools/make_mulm.py. Illustrative numbers."
    yield "ZelmOrvaneMulmData :"
    yield "{"
    yield "  // mW of one block. Origin: 14 mW of clocks, 3.6 mW per lane, 0.78 pJ per bit for coding and elastic buffers (A1 sits farther"
    yield "  // away). Check: 0.9 to 3 pJ per bit at eight lanes and more."
    yield "  POWER_DATA :"
    yield "  {"
    for mode, (fixed, per_lane, per_gbps) in MODES.items():
        for width in WIDTHS:
            for speed, gbps in GBPS.items():
                yield f"    {mode}_CH{width}_{speed} = {fixed + width * (per_lane + per_gbps * gbps):.1f};"
    yield "  };"
    yield ""
    yield "  // V at which the power was characterised: the process's nominal supply"
    yield "  FACTORS : { VCCINT_SIM = 0.80; };"
    yield "};"


if __name__ == "__main__":
    folder = pathlib.Path(__file__).resolve().parents[1] / "powercfg" / "orvane"
    (folder / "ZelmOrvaneMulmData.cfg").write_text("\n".join(mulm_file()) + "\n")
