#!/usr/bin/env python3
"""Writes the data files of the five arithmetic DSP models: data/tools/make_dsp.py

The numbers are illustrative and follow one law. A component in full use draws a base current per megahertz at the
measurement's toggle rate. A mode that doesn't use it leaves a residue; a register that is bypassed lets glitches through
to the logic behind it; controls that change at run time cost a little more. The whole slice draws 7 percent more than its
components, for the clock branches between them. A component's off current is that of a few megahertz.
"""

from itertools import product
from pathlib import Path

OUT = Path(__file__).resolve().parent.parent / "powercfg" / "orvane"

SIMULATED_TR = 0.25
IDLE = 0.08            # share that an unused component still draws
CONTROLS_MOVE = 1.12   # controls that change at run time
UNEXPLAINED = 1.07     # whole slice over the sum of its components
OFF_MEGAHERTZ = 3.0    # off current, as megahertz of dynamic current

# Microamperes per megahertz in full use.
INT24 = dict(AB_DATA=1.25, PREADD_DATA=0.62, C_DATA=0.60, ALUREG=0.24, ALUMUX=0.85, ALUADD=1.10, PREADD=0.95, MULT=4.60,
             M_DATA=0.72, PATDET=0.16, FP_EXP=0.10, FP_ADD=0.14, FP_NORM=0.09, OUTPUT=0.66, OPTINV=0.15, COMPLEX=0.09,
             CASC_DELAY=0.21)
FP32 = INT24 | dict(AB_DATA=1.35, PREADD_DATA=0.70, ALUMUX=0.55, ALUADD=0.48, PREADD=0.34, MULT=4.10, FP_EXP=0.78,
                    FP_ADD=2.30, FP_NORM=1.05, OUTPUT=0.52)
CONTROLS = {"ALUREG", "ALUMUX", "OPTINV"}
FLOATING = {"FP_EXP", "FP_ADD", "FP_NORM"}


def scaled(base, **factors):
    return {name: value * factors.get(name, 1.0) for name, value in base.items()}


def currents(base, unused, glitching, usage="CONST"):
    """Milliamperes per megahertz of each component, then the two totals."""
    result = {}
    for name, value in base.items():
        value *= IDLE if name in unused else 1.0
        value *= glitching.get(name, 1.0)
        value *= CONTROLS_MOVE if usage == "DYNAMIC" and name in CONTROLS else 1.0
        result[name] = round(value / 1000.0, 7)
    result["COMPONENT_SUM"] = round(sum(result.values()), 7)
    result["TOTAL_MEASURED"] = round(result["COMPONENT_SUM"] * UNEXPLAINED, 7)
    return result


def integer_mode(mode, base, usage):
    unused = set(FLOATING) | {name for name in base if name.startswith("COMPLEX")}
    glitching = {}
    if "MULT" not in mode:
        unused |= {"MULT", "M_DATA"}
    if "PREADD" not in mode:
        unused |= {"PREADD", "PREADD_DATA"}
    if "NOMREG" in mode:
        glitching |= dict(M_DATA=0.8, ALUMUX=1.25, ALUADD=1.3)
    if "NOADREG" in mode:
        glitching |= dict(PREADD_DATA=0.85, MULT=1.15)
    return currents(base, unused, glitching, usage)


def complex_mode(mode, base, usage):
    result = integer_mode("PREADD_" + mode, {name: value for name, value in base.items() if "STG" not in name}, usage)
    stages = {name: round(value / 1000.0, 7) for name, value in base.items() if "STG" in name}
    parts = {name: result[name] for name in base if name in result}
    cascade = parts.pop("CASC_DELAY")
    parts |= stages | {"CASC_DELAY": cascade}
    parts["COMPONENT_SUM"] = round(sum(parts.values()), 7)
    # A slice without its stages, as the adjustment is made per slice.
    parts["TOTAL_MEASURED"] = round(parts["COMPONENT_SUM"] + (UNEXPLAINED - 1.0) * result["COMPONENT_SUM"], 7)
    return parts


def floating_mode(mode):
    unused = {"PATDET", "ALUADD", "COMPLEX", "OPTINV"}
    glitching = {}
    if mode == "ADD_ONLY":
        unused |= {"MULT", "M_DATA", "PREADD", "PREADD_DATA"}
    elif "ADD" not in mode:
        unused |= {"FP_ADD", "C_DATA", "ALUMUX"}
    if mode.startswith("B16"):
        glitching |= dict(AB_DATA=0.7, MULT=0.5, FP_EXP=0.9)
    if "NOFPMPIPEREG" in mode:
        glitching |= dict(M_DATA=0.8, FP_NORM=1.2, FP_ADD=1.25)
    return currents(FP32, unused, glitching)


INT_MODES = ["MULT_ALU_MREG", "PREADD_MULT_ALU", "ALU_ONLY", "MULT_ALU_NOMREG", "PREADD_MULT_ALU_NOMREG",
             "PREADD_MULT_ALU_NOMREG_NOADREG", "PREADD_MULT_ALU_NOADREG"]
INT8_MODES = ["MULT_MREG", "PREADD_MULT", "MULT_NOMREG", "PREADD_MULT_NOMREG", "PREADD_MULT_NOADREG",
              "PREADD_MULT_NOMREG_NOADREG"]
CPLX_MODES = ["MULT_ALU", "MULT_ALU_NOMREG", "MULT_ALU_NOADREG", "MULT_ALU_NOMREG_NOADREG"]
FP32_MODES = ["MULT_ADD", "MULT_ADD_NOFPMPIPEREG", "MULT_ONLY", "MULT_ONLY_NOFPMPIPEREG", "ADD_ONLY", "B16_MULT_ADD",
              "B16_MULT_ADD_NOFPMPIPEREG", "B16_MULT", "B16_MULT_NOFPMPIPEREG"]


def bypassed(mreg, adreg):
    return ("" if mreg == "YES" else "_NOMREG") + ("" if adreg == "YES" else "_NOADREG")


def int24_usages():
    for mult, mreg, preadd, adreg in product(("NO", "YES"), repeat=4):
        if mult == "NO":
            mode = "ALU_ONLY"  # the pre-adder and the registers only feed the multiplier
        elif preadd == "NO":
            mode = "MULT_ALU_MREG" if mreg == "YES" else "MULT_ALU_NOMREG"
        else:
            mode = "PREADD_MULT_ALU" + bypassed(mreg, adreg)
        yield f"MULT_{mult}_MREG_{mreg}_PREADD_{preadd}_ADREG_{adreg}", mode


def int8_usages():
    for mult, mreg, preadd, adreg in product(("NO", "YES"), repeat=4):
        if preadd == "NO":
            mode = "MULT_MREG" if mreg == "YES" else "MULT_NOMREG"
        else:
            mode = "PREADD_MULT" + bypassed(mreg, adreg)
        yield f"MULT_{mult}_MREG_{mreg}_PREADD_{preadd}_ADREG_{adreg}", mode  # narrow products always multiply


def cplx_usages():
    for mreg, adreg in product(("NO", "YES"), repeat=2):
        yield f"MULT_YES_MREG_{mreg}_PREADD_YES_ADREG_{adreg}", "MULT_ALU" + bypassed(mreg, adreg)


def fp32_usages():
    for b16, mult, add, pipe in product(("NO", "YES"), repeat=4):
        if mult == "NO":
            mode = "ADD_ONLY"
        else:
            mode = ("B16_MULT" + ("_ADD" if add == "YES" else "") if b16 == "YES"
                    else "MULT_ADD" if add == "YES" else "MULT_ONLY")
            mode += "" if pipe == "YES" else "_NOFPMPIPEREG"
        yield f"B16_{b16}_MULT_{mult}_ADD_{add}_FPMPIPEREG_{pipe}", mode


def number(value):
    return f"{value:.7f}".rstrip("0") if value else "0.0"


def rows(measured, indent):
    for name, dynamic in measured.items():
        off = number(dynamic * OFF_MEGAHERTZ)
        yield f"{indent}{name} : {{ DYNAMIC_MA_MHZ = {number(dynamic)}; OFF_CURRENT_MA = {off}; }};"


def write(block, title, family, usages, modes, measure, extra=()):
    lines = [f"// {title} Illustrative numbers, written by data/tools/make_dsp.py.",
             f"ZelmOrvane{block}Data :", "{",
             "  // conditions of the measurement: V, toggles per clock cycle; exponent of the currents' voltage ratio, 1 of C V and",
             "  // crowbar current beside",
             "  SCALE_FACTORS :", "  {", "    CURRENT_VOLTAGE_EXPONENTIAL_FACTOR = 1.3;",
             f"    SIMULATED_TR = {SIMULATED_TR};", "    VCCINT_NORMALIZED = 0.72;", "  };",
             "  // operational mode by usage, without unit: which registers are in use decides where glitches end", "  OPERATIONAL_MODE_MAP :", "  {", f"    {family} :", "    {"]
    lines += [f'      {key} = "{mode}";' for key, mode in usages]
    lines += ["    };", "  };",
              "  // mA/MHz at SIMULATED_TR, and mA. Origin: 1 uA/MHz is 1 pC per cycle, 1.4 pF at 0.72 V; a multiplier of 27 x 24 bits has",
              "  // 650 cells of some 20 fF that toggle once or twice, registers and multiplexers 10 fF per bit. Check: 5 to 12 pJ per",
              "  // operation, as published for such slices.", "  DYNAMIC_DATA :", "  {"]
    lines += extra
    lines += [f"    {family} :", "    {"]
    for mode in modes:
        lines += [f"      {mode} :", "      {"]
        if family == "FP32":
            lines += rows(measure(mode), " " * 8)
        else:
            for usage in ("CONST", "DYNAMIC"):
                lines += [f"        {usage} :", "        {", *rows(measure(mode, usage), " " * 10), "        };"]
        lines += ["      };"]
    lines += ["    };", "  };", "};", ""]
    (OUT / f"ZelmOrvane{block}Data.cfg").write_text("\n".join(lines))


LEGACY = scaled(INT24, MULT=0.72, C_DATA=48 / 58, ALUMUX=48 / 58, ALUADD=48 / 58, OUTPUT=48 / 58)
INT8 = scaled(INT24, MULT=0.62, M_DATA=1.1)
CPLX = {name: value for name, value in scaled(INT24, MULT=0.55, PREADD=0.8).items() if name != "COMPLEX"}
CPLX |= dict(COMPLEX_STG0=0.95, COMPLEX_STG1=1.20)

write("DspInt24", "DSP slices in integer mode, 27 x 24 bits.", "INT24", int24_usages(), INT_MODES,
      lambda mode, usage: integer_mode(mode, INT24, usage))
write("DspInt8", "DSP slices in narrow-integer mode, three products of 9 x 8 bits.", "INT8", int8_usages(), INT8_MODES,
      lambda mode, usage: integer_mode(mode, INT8, usage))
write("DspLegacy", "DSP slices of the older kind, 27 x 18 bits.", "LEGACY_INT24", int24_usages(), INT_MODES,
      lambda mode, usage: integer_mode(mode, LEGACY, usage),
      ["    // mA at a toggle in every cycle, at a typical 500 MHz: the clock doesn't enter", "    WIDE_XOR_CURRENT = 0.42;"])
write("DspCplx", "Complex multiplier, 18 x 18 bits: each of its two slices, and the complex stages.", "CPLX",
      cplx_usages(), CPLX_MODES, lambda mode, usage: complex_mode(mode, CPLX, usage))
write("DspFp32", "DSP slices in single-precision floating-point mode.", "FP32", fp32_usages(), FP32_MODES, floating_mode)
