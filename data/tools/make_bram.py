#!/usr/bin/env python3
"""Writes ZelmOrvaneBramData.cfg: the currents of the block memories from a few charges per access.

An access pays for its address decoder, the array's word line and bit lines, and each data bit's path. A simple-dual-port
memory reads on port A and writes on port B: its read rows go with the width of A, its write rows with that of B."""

import pathlib

VOLTS = 0.80  # characterisation voltage of both rails
# Charges in nC, that is mA/MHz. On VCCINT:
DECODE = 0.0042  # clock, address decoder and control, per access
PER_BIT = 0.00026  # data path of one bit at 25 % toggle
PER_BIT_PERCENT = 0.0000078  # what one bit's path adds per percent of toggle rate
ECC = 0.0031  # one pass through the 64-bit encoder or decoder
STANDBY = 0.00048  # clock tree of 18 Kbit that isn't accessed
# On VCCRAM:
ARRAY = 0.0021  # word line and bit lines of 18 Kbit
ARRAY_PER_BIT = 0.000055  # sense amplifier or write driver of one bit

# key: (arrays of 18 Kbit, bits read, bits written, passes through the decoder, passes through the encoder)
KEYS = {
    "BLKM18": (1, 18, 18, 0, 0),
    "BLKM36": (2, 36, 36, 0, 0),
    "BLKM18SDP_36_36": (1, 36, 36, 0, 0),
    "BLKM18SDP_36_18": (1, 36, 18, 0, 0),
    "BLKM18SDP_18_36": (1, 18, 36, 0, 0),
    "BLKM36SDP_72_72": (2, 72, 72, 0, 0),
    "BLKM36SDP_72_36": (2, 72, 36, 0, 0),
    "BLKM36SDP_36_72": (2, 36, 72, 0, 0),
    "BLKM36SDP_ECC": (2, 72, 72, 1, 1),
    "BLKM36SDP_ECC_ENCODE_ONLY": (2, 72, 72, 0, 1),
    "BLKM36SDP_ECC_DECODE_ONLY": (2, 72, 72, 1, 0),
}

# A read-first write reads the old word too, a write-first one passes the new word to the output, a third does neither.
READ_FACTOR = {"RF": 1.04, "WF": 1.0, "NC": 0.97}
WRITE_FACTOR = {"RF": 1.38, "WF": 1.12, "NC": 0.90}


def number(value):
    return f"{value:.4g}"


def access_rows(read, write):
    cells = [f"{mode}_R = {number(read * factor)};" for mode, factor in READ_FACTOR.items()]
    cells += [f"{mode}_W = {number(write * factor)};" for mode, factor in WRITE_FACTOR.items()]
    return " ".join(cells)


def table(name, comment, rows):
    lines = [f"  // {comment}", f"  {name} :", "  {"]
    lines += [f"    {row}" for row in rows]
    return lines + ["  };"]


def core(bits, passes):
    return DECODE + PER_BIT * bits + ECC * passes


def array(arrays, bits):
    return ARRAY * arrays + ARRAY_PER_BIT * bits


lines = [
    "// Block memories: currents per megahertz of the port's clock, by primitive and port widths. Illustrative numbers,",
    "// written by data/tools/make_bram.py. 1 mA/MHz is 1 nC per cycle. Origin: 2.1 pC for word line and",
    "// bit lines of 18 Kbit that swing a fifth of the supply; 0.26 pC per bit for sense latch, output register and drivers, of",
    "// which a quarter toggles. Check: 13 to 17 pJ per read of 36 bits, 22 pJ per write of 72, as published for this size.",
    "ZelmOrvaneBramData :",
    "{",
]
lines += table(
    "PER_TR_CURRENT",
    "mA/MHz per percent of toggle rate beyond 25, reading (R) and writing (W): 10 fF per bit and percent",
    [f"{key} : {{ R = {number(PER_BIT_PERCENT * r)}; W = {number(PER_BIT_PERCENT * w)}; }};"
     for key, (_, r, w, _, _) in KEYS.items()])
lines += table(
    "STANDBY_CURRENT",
    "mA/MHz of a memory that is clocked and not accessed: clock pins and their wires, 0.6 pF per 18 Kbit",
    [f"{key} = {number(STANDBY * arrays)};" for key, (arrays, *_) in KEYS.items()])
lines += table(
    "DYNAMIC_CURRENT_VCCINT",
    "mA/MHz of one access at 25 % toggle: read first (RF), write first (WF), no change (NC); read (_R), write (_W)",
    [f"{key} : {{ {access_rows(core(r, decode), core(w, encode))} }};" for key, (_, r, w, decode, encode) in KEYS.items()])
lines += table(
    "DYNAMIC_CURRENT_VCCRAM",
    "mA/MHz of one access to the memory array, rows as above",
    [f"{key} : {{ {access_rows(array(arrays, r), array(arrays, w))} }};" for key, (arrays, r, w, *_) in KEYS.items()])
lines += table("SIM_VOLTAGE", "V at which the currents hold", [f"VCCINT = {VOLTS:.2f};", f"VCCRAM = {VOLTS:.2f};"])
lines.append("};")

target = pathlib.Path(__file__).parents[1] / "powercfg/orvane/ZelmOrvaneBramData.cfg"
target.write_text("\n".join(lines) + "\n")
