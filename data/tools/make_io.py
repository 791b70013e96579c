#!/usr/bin/env python3
"""Writes the data files of the I/O buffers, Selv and Nalt, from each standard's voltages and strength.

The laws are those of a CMOS pad: a current that toggles is charge per cycle (pF x V x 1e-3 = mA/MHz), a predriver is a
fixed share of its driver's gate, a differential receiver burns a constant current where a CMOS one has a leak.
All numbers are illustrative.
"""

from pathlib import Path

OUT = Path(__file__).resolve().parent.parent / "powercfg" / "orvane"

CORE = 0.80  # V, of the core at characterisation
SELV_PAD = 2.2  # pF of a high-performance pad
NALT_PAD = 3.1  # pF of the larger high-density pad
LOAD = 5.0  # pF at the characterised output


def charge(picofarads, volts):
    """mA/MHz of a node that swings so far each cycle."""
    return picofarads * volts * 1e-3


# Of each output: own supply (V), swing at the pad (V), strength in units of a 40 ohm driver, and what is its own.
SELV_OUTPUTS = {
    "SSTL12": (1.2, 0.66, 1.0, {}),
    "SSTL135": (1.35, 0.74, 1.0, {}),
    "SSTL15_VOH75": (1.5, 0.82, 1.0, {}),
    "SSTL15_VOH80": (1.5, 0.90, 1.0, {}),
    "HSTL_I": (1.5, 0.80, 1.0, {}),
    "HSTL_I_12": (1.2, 0.64, 1.0, {}),
    "HSUL_12": (1.2, 1.2, 0.9, {}),
    "POD10": (1.0, 0.55, 1.0, {}),
    "POD12": (1.2, 0.66, 1.0, {"RDRV": 40.0}),
    "POD12_FIR": (1.2, 0.70, 1.2, {}),
    "LVDCI_15": (1.5, 1.5, 0.8, {}),
    "HSLVDCI_15": (1.5, 1.5, 0.9, {}),
    "LVSTL06_12": (1.2, 0.30, 1.0, {}),
    "LVSTL_11_VOH33": (1.1, 0.37, 1.0, {}),
    "LVSTL_11_VOH50": (1.1, 0.55, 1.0, {}),
    # A current steered through the pair: direct current in mA, board termination in ohms.
    "LVDS15": (1.5, 0.31, 0.6, {"VCCO_DC": 5.9}),
    "LVDS15_FIR": (1.5, 0.40, 0.8, {"VCCO_DC": 8.0, "TERM": 100.0}),
    "MIPI_DPHY_DCI_HS": (1.2, 0.20, 0.5, {"VCCO_DC": 2.4}),
    "MIPI_DPHY_LP": (1.2, 1.2, 0.2, {"VCCO_DC": 0.12}),
}
for _strength in (2, 4, 6, 8, 12):
    SELV_OUTPUTS[f"LVCMOS15_{_strength}"] = (1.5, 1.5, _strength / 12, {})
for _strength in (2, 4, 6, 8):
    SELV_OUTPUTS[f"LVCMOS12_{_strength}"] = (1.2, 1.2, _strength / 12, {})
for _name in ("HSUL_12", "HSTL_I", "SSTL15_VOH75", "SSTL15_VOH80", "SSTL135", "HSTL_I_12", "SSTL12", "POD10", "POD12",
              "POD12_FIR", "LVSTL06_12", "LVSTL_11_VOH33", "LVSTL_11_VOH50"):
    _supply, _swing, _strength, _ = SELV_OUTPUTS[_name]
    SELV_OUTPUTS["DIFF_" + _name] = (_supply, _swing, _strength, {})

# Of each input: own supply (V), receiver, and what is its own.
SELV_INPUTS = {
    "LVDS15": (1.5, "pair", {"DIFFTERM": 1.1}),  # mW in the 100 ohms across the pair
    "MIPI_DPHY_DCI_HS": (1.2, "pair", {"ODT": 100.0, "VCCO_DC": 0.4}),  # ODT in uW for a quarter of the termination
    "MIPI_DPHY_LP": (1.2, "cmos", {"VCCO_DC": 0.05}),
    "LVCMOS15": (1.5, "cmos", {}),
    "LVCMOS12": (1.2, "cmos", {}),
    "LVDCI_15": (1.5, "cmos", {}),
    "HSLVDCI_15": (1.5, "reference", {}),
}
for _name, _supply in (("HSUL_12", 1.2), ("HSTL_I", 1.5), ("SSTL15_VOH75", 1.5), ("SSTL15_VOH80", 1.5),
                       ("SSTL135", 1.35), ("HSTL_I_12", 1.2), ("SSTL12", 1.2), ("POD10", 1.0), ("POD12", 1.2),
                       ("LVSTL06_12", 1.2), ("LVSTL_11_VOH33", 1.1), ("LVSTL_11_VOH50", 1.1)):
    SELV_INPUTS[_name] = (_supply, "reference", {})
    SELV_INPUTS["DIFF_" + _name] = (_supply, "pair", {})

# Of each output: own supply (V), strength in units of 12 mA, direct current (mA). TERM is the driver's share in ohms.
NALT_OUTPUTS = {"SSTL18_I": (1.8, 0.8, 4.6), "HSTL_I_18": (1.8, 0.7, 4.2)}
for _name, _supply in (("LVTTL", 3.3), ("LVCMOS33", 3.3), ("LVCMOS25", 2.5), ("LVCMOS18", 1.8)):
    for _strength in (4, 8, 12):
        NALT_OUTPUTS[f"{_name}_{_strength}"] = (_supply, _strength / 12, 0.004 * _strength / 12)

NALT_INPUTS = {
    "LVDS_25": (2.5, "pair", 0.35),
    "LVPECL": (3.3, "pair", 0.42),
    "SUB_LVDS": (1.8, "pair", 0.28),
    "SLVS_400_25": (2.5, "pair", 0.26),
    "DIFF_HSTL_I_18": (1.8, "pair", 0.0),
    "DIFF_SSTL18_I": (1.8, "pair", 0.0),
    "HSTL_I_18": (1.8, "reference", 0.0),
    "SSTL18_I": (1.8, "reference", 0.0),
    "LVTTL": (3.3, "cmos", 0.002),
    "LVCMOS33": (3.3, "cmos", 0.002),
    "LVCMOS25": (2.5, "cmos", 0.002),
    "LVCMOS18": (1.8, "cmos", 0.002),
}

# Receivers: direct auxiliary current (mA), and pF that toggle on the auxiliary, the core and the driver rail.
RECEIVERS = {
    "pair": (0.95, 0.28, 0.34, 0.10),
    "reference": (0.62, 0.22, 0.30, 0.10),
    "cmos": (0.015, 0.12, 0.24, 0.16),
}


def receiver(kind, vccaux):
    direct, auxiliary, core, driver = RECEIVERS[kind]
    return {
        "VCCINT_IO_DC": 0.045 if kind != "cmos" else 0.006,
        "VCCINT_IO_AC": charge(core, CORE),
        "VCCAUX_DC": direct,
        "VCCAUX_AC": charge(auxiliary, vccaux),
        "VCCO_AC": charge(driver, 1.0),
        "PW": 0.5,
    }


def selv_output(supply, swing, strength, own):
    return {
        "VCCINT_IO_DC": 0.012 + 0.020 * strength,
        "VCCINT_IO_AC": charge(0.30 + 0.25 * strength, CORE),
        # Outputs take these two as power in mW.
        "VCCAUX_DC": 0.09 + 0.05 * strength,
        "VCCAUX_AC": 0.015 * strength,
        "VCCO_PREDRV_DC": 0.010 + 0.030 * strength,
        "VCCO_PREDRV_AC": charge(0.22 + 0.45 * strength, supply),
        "VCCO_AC": charge(LOAD + SELV_PAD, swing),
        "VCCO_DC": 0.0,
        "OBUF_LOAD": LOAD,
        "VCCO": supply,
        "PW": 0.5,
    } | own


def selv_input(supply, kind, own):
    return receiver(kind, 1.5) | {"VCCO_DC": 0.0, "VCCO": supply} | own


def nalt_output(supply, strength, direct):
    return {
        "VCCINT_IO_DC": 0.010 + 0.012 * strength,
        "VCCINT_IO_AC": charge(0.40 + 0.20 * strength, 0.88),
        "VCCAUX_DC": 0.05 + 0.03 * strength,
        "VCCAUX_AC": charge(0.25 + 0.20 * strength, 1.5),
        "VCCO_AC": charge(LOAD + NALT_PAD, supply if direct < 1 else 0.55 * supply),
        "VCCO_DC": direct,
        "OBUF_LOAD": LOAD,
        "TERM": 50.0,
        "PW": 0.5,
    }


def nalt_input(supply, kind, direct):
    return receiver(kind, 1.5) | {"VCCO_DC": direct}


def number(value):
    text = f"{value:.6g}"
    return text if any(c in text for c in ".e") else text + ".0"


def group(name, entries, indent, comment=None):
    pad = " " * indent
    lines = [f"{pad}// {comment}"] if comment else []
    lines += [f"{pad}{name} :", pad + "{"]
    for key, value in entries.items():
        if isinstance(value, dict):
            lines += group(key, value, indent + 2)
        elif isinstance(value, str):
            lines.append(f'{pad}  {key} = "{value}";')
        else:
            lines.append(f"{pad}  {key} = {number(value)};")
    return lines + [pad + "};"]


def rows(standards, row):
    return {name: row(*standards[name]) for name in sorted(standards)}


def supplies(inputs, outputs):
    return {kind: {name: str(standards[name][0]) for name in sorted(standards)}
            for kind, standards in (("INPUT", inputs), ("OUTPUT", outputs))}


def write(block, title, tables):
    text = [f"// {title} Illustrative numbers, written by data/tools/make_io.py.",
            "// Origin: C V of what swings (pF x V x 1e-3 is mA/MHz) and mA of receivers and drivers. Check: C V^2 f of load, pad and trace",
            "// at LVCMOS, 8 to 10 mW for an LVDS driver, 1.5 mW for a differential receiver.",
            f"ZelmOrvane{block}Data :", "{"]
    for name, (comment, entries) in tables.items():
        text += group(name, entries, 2, comment)
    (OUT / f"ZelmOrvane{block}Data.cfg").write_text("\n".join(text + ["};", ""]))


OBUF_UNITS = "output buffers: mA (_DC), mA/MHz (_AC), V (VCCO), pF (OBUF_LOAD), ohm (TERM, RDRV)"
IBUF_UNITS = "input buffers: mA (_DC), mA/MHz (_AC), V (VCCO), mW (DIFFTERM), uW (ODT)"
LIST_UNITS = "V: supply that a bank of the standard needs, by direction and standard, as the standards say; for hosts, no formula reads it"

write("Selv", "High-performance I/O buffers, by standard.", {
    "MIPI_DATA": ("Mb/s", {"MIPI_LP_DATARATE": 10.0}),
    "CAP_DATA": ("pF: the pad, and the package's trace for fast and for slow standards",
                 {"CIO_HP": SELV_PAD, "CPKG": 1.1, "CPKG_LS": 1.4}),
    "SIM_DATA": ("V", {"SIM_VOLTAGE": CORE}),
    "OBUF": (OBUF_UNITS, rows(SELV_OUTPUTS, selv_output)),
    "IBUF": (IBUF_UNITS, rows(SELV_INPUTS, selv_input)),
    "IO_LIST": (LIST_UNITS, supplies(SELV_INPUTS, SELV_OUTPUTS)),
})
write("Nalt", "High-density I/O buffers, by standard.", {
    "CAP_DATA": ("pF: the pad and the package's trace", {"CIO_HP": NALT_PAD, "CPKG": 1.6}),
    "OBUF": (OBUF_UNITS.replace(", V (VCCO)", "").replace(", RDRV", ""), rows(NALT_OUTPUTS, nalt_output)),
    "IBUF": ("input buffers: mA (_DC), mA/MHz (_AC)", rows(NALT_INPUTS, nalt_input)),
    "IO_LIST": (LIST_UNITS, supplies(NALT_INPUTS, NALT_OUTPUTS)),
})
