#!/usr/bin/env python3
"""Writes the data files of the transceiver, Lorv, and of its enhanced sibling, Lorvp.

Origin: 1 mW per Gb/s is 1 pJ per bit. A serialiser or deserialiser toggles some 0.5 pF per bit at 0.88 V, 0.4 to 0.7 pJ; a
clock and data recovery loop, its phase interpolators and clock buffers as much again; a driver of 100 ohm steers swing / 100 ohm
from 1.2 V, 12 mW per V and as much for its pre-emphasis legs; an LC oscillator at 8 to 16 GHz draws 30 to 50 mW, which the
channels of a quad share; decision feedback costs half the receiver again. Check: 5 to 15 pJ per bit, both directions, between
10 and 32 Gb/s, as published for transceivers of this generation. The sibling is one process step better.
"""

import pathlib

OUT = pathlib.Path(__file__).resolve().parents[1] / "powercfg" / "orvane"
BETTER = 0.88


def line(slope, offset):
    return {"SLOPE": slope, "OFFSET": offset}


def modes(dfe, lpm):
    return {"CHRX_DFE": dfe, "CHRX_LPM": lpm}


# table: (comment, rows)
TABLES = {
    "CHTX_FIXED_POWER_DATA": ("mW: the driver's bias, 2 mA from 1.5 V", {"DRVBIAS_VCCAUX": 3.0}),
    "CHTX_DATA": (
        "mW per Gb/s and mW: serialiser and predriver per bit, clock buffers; the driver's slope is mW per mV of swing",
        {"SER_AVCC": line(0.55, 4.0), "PREDRV_AVCC": line(0.30, 2.5), "DRIVER_AVTT": line(0.032, 4.2),
         "CLKBUF_AVTT": line(0.12, 1.0)}),
    "CHRX_FIXED_POWER_DATA": (
        "mW: analog stages, 1 to 9 mA each from 1.2 V, and converters of thresholds",
        {"DAC_AVCC": modes(4.0, 2.5), "VCM_AVTT": modes(1.2, 1.2), "OOB_AVTT": modes(3.0, 3.0),
         "ACJTAG_AVTT": modes(1.1, 1.1), "I2V_AVTT": modes(2.0, 1.5), "CTLE_AVTT": modes(11.0, 9.0),
         "SUMMER_AVTT": modes(9.0, 4.0)}),
    "CHRX_LPM_DATA": (
        "mW per Gb/s and mW: feed-forward taps, deserialiser, clock and data recovery",
        {"CAPFF_HTAPS_AVCC": line(0.12, 1.5), "CAPFF_HTAPS_AVTT": line(0.06, 0.8), "DES_AVCC": line(0.55, 3.0),
         "CDR_AVCC": line(0.35, 4.0)}),
    "CHRX_DFE_DATA": (
        "mW per Gb/s and mW; decision feedback's taps and sharper samplers cost about half as much again",
        {"CAPFF_HTAPS_AVCC": line(0.38, 4.0), "CAPFF_HTAPS_AVTT": line(0.20, 2.0), "DES_AVCC": line(0.70, 4.0),
         "CDR_AVCC": line(0.42, 5.0)}),
    "CH_CLK_DATA": (
        "mW per GHz of the clock that enters, and mW: 0.2 to 0.4 pF of interpolator or divider at 1.2 V",
        {"TXPI_AVTT": line(0.25, 1.2), "TXCLKGEN_AVTT": line(0.30, 1.5), "PREPI_AVTT": line(0.15, 0.8),
         "RXPI_AVTT": line(0.30, 1.5), "RXCLKGEN_AVTT": line(0.35, 1.5)}),
    "PCSADAPT_DATA": ("mW per Gb/s and mW, fabric interface of 40 bits: coding layer and FIFO, some 1 pJ per bit",
                      {"PCS_VCCINT": line(0.90, 4.0)}),
    "LCPLL_DATA": (
        "mW of the PLL and its clock distribution, which the sharing channels bear together; the slope in mW per GHz",
        {"QPLL_AVCC": 38.0, "QPLL_VCCAUX": 7.0, "IQGEN_AVTT": 6.0, "HS_CLKDIST_AVTT_SLOPE": 0.35,
         "HS_CLKDIST_AVTT_OFFSET": 3.0}),
    "RPLL_DATA": ("mW per GHz and mW: a ring oscillator with its loop, 1 mW per GHz",
                  {"CPLL_AVCC": line(0.80, 2.5), "CPLL_AVTT": line(0.20, 0.8)}),
}
COMMON = """\
  // GHz and mW: oscillators with an octave of range, a clock buffer of 7 mA, a bias generator of 7 mA
  COMMON_DATA :
  {
    // GHz; the LCPLL's range is more than an octave, so that no rate below its top falls into a gap
    LCPLL_VCO_MIN = 8.0;
    LCPLL_VCO_MAX = 16.375;
    RPLL_VCO_MIN = 4.0;
    // mW of a quad: reference clock buffer, bias generator
    REFCLK_AVCC = %s;
    BIAS_AVTT = %s;
  };

  // without unit: spread of process and temperature, 1 for the transceivers' own rails, whose bias is regulated to 5 %%, 2 for
  // VCCINT
  PVT_SCALING_DATA :
  {
    MARGIN_FACTOR_1 = 1.05;
    MARGIN_FACTOR_2 = 1.10;
  };
};
"""


def number(value, factor):
    text = f"{value * factor:.2g}"
    return text if "." in text else text + ".0"


def rows(entries, factor):
    for name, value in entries.items():
        if isinstance(value, dict):
            inner = " ".join(f"{key} = {number(item, factor)};" for key, item in value.items())
            yield f"    {name} : {{ {inner} }};"
        else:
            yield f"    {name} = {number(value, factor)};"


def write(block, title, factor):
    lines = [f"// {title}: lines of power over data rate or clock frequency, and fixed powers, of one channel. Illustrative",
             "// numbers, written by data/tools/make_transceivers.py.",
             "// Powers at nominal supplies (MLORVAVCC 0.88 V, MLORVAVTT 1.2 V, MLORVVCCAUX 1.5 V, VCCINT 0.88 V).",
             "// Origin: pJ per bit of each stage, mA of each analog stage. Check: 5 to 15 pJ per bit, both directions.",
             f"ZelmOrvane{block}Data :", "{"]
    for name, (comment, entries) in TABLES.items():
        lines += [f"  // {comment}", f"  {name} :", "  {", *rows(entries, factor), "  };", ""]
    text = "\n".join(lines) + "\n" + COMMON % (number(6.0, factor), number(8.0, factor))
    (OUT / f"ZelmOrvane{block}Data.cfg").write_text(text)


if __name__ == "__main__":
    write("Lorv", "Transceiver", 1.0)
    write("Lorvp", "Enhanced transceiver", BETTER)
