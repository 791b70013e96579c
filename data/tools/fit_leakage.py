#!/usr/bin/env python3
"""Writes ZelmOrvaneStaticData.cfg. Run from any folder, without arguments.

Leakage doubles every 25 to 35 degrees, the interval widening as the device warms up, above a floor of tunnelling
current that doesn't depend on temperature. Bias currents (regulators, references, converters) are proportional to the
absolute temperature, with a little leakage beside. A curve is its law, fitted by a polynomial of degree five with the
least relative error over -40 to 125 degrees, times the current at 25 degrees. Voltage: exponential, 1 at the voltage of
characterisation. MAX is TYP times a constant: leakage spreads with the threshold voltage, a bias with a resistor.
"""

import math
import pathlib
import struct

from devices import DEVICES, OVERDRIVES, SCREENS, SPEEDS, TEMPERATURES, VOLTAGES

OUTPUT = pathlib.Path(__file__).resolve().parents[1] / "powercfg/orvane/ZelmOrvaneStaticData.cfg"
COLD, HOT = -40.0, 125.0
PROCESSES = ("TYP", "MAX")
KELVIN = 273.15


class Shape:
    """Doubling interval at -40 and at 125 degrees, floor as a share of the current at 25, exponent in 1/V, MAX over TYP."""

    def __init__(self, cold, hot, floor, per_volt, spread=2.1):
        self.cold, self.slope, self.floor, self.per_volt = cold, (hot - cold) / (HOT - COLD), floor, per_volt
        self.spread = {"TYP": 1.0, "MAX": spread}
        self.polynomial = fit(self.current)

    def current(self, t):
        """Leakage at t degrees over leakage at 25: the integral of 1 / doubling interval, in powers of two."""
        at_t, at_25 = (self.cold + self.slope * (x - COLD) for x in (t, 25.0))
        return self.floor + (1.0 - self.floor) * (at_t / at_25) ** (math.log(2.0) / self.slope)


class Bias(Shape):
    """A bias proportional to the absolute temperature, and a share of leakage at 25 degrees."""

    LEAKAGE = 0.03

    def current(self, t):
        return (1.0 - self.LEAKAGE) * (t + KELVIN) / (25.0 + KELVIN) + self.LEAKAGE * super().current(t)


def single(x):
    return struct.unpack("f", struct.pack("f", x))[0]


def solve(matrix, right):
    """Gaussian elimination with pivoting."""
    rows = [row + [value] for row, value in zip(matrix, right)]
    size = len(rows)
    for i in range(size):
        pivot = max(range(i, size), key=lambda r: abs(rows[r][i]))
        rows[i], rows[pivot] = rows[pivot], rows[i]
        for r in range(i + 1, size):
            factor = rows[r][i] / rows[i][i]
            rows[r] = [a - factor * b for a, b in zip(rows[r], rows[i])]
    result = [0.0] * size
    for i in reversed(range(size)):
        known = sum(rows[i][j] * result[j] for j in range(i + 1, size))
        result[i] = (rows[i][size] - known) / rows[i][i]
    return result


def fit(law, degree=5, points=60):
    """Coefficients of T^0 to T^degree: least squares of the relative error on Chebyshev points."""
    scale = 100.0  # keeps the normal equations well conditioned
    nodes = [(COLD + HOT) / 2 + (HOT - COLD) / 2 * math.cos(math.pi * (i + 0.5) / points) for i in range(points)]
    powers = [[(t / scale) ** k / law(t) for k in range(degree + 1)] for t in nodes]
    matrix = [[sum(row[i] * row[j] for row in powers) for j in range(degree + 1)] for i in range(degree + 1)]
    right = [sum(row[i] for row in powers) for i in range(degree + 1)]
    return [c / scale ** k for k, c in enumerate(solve(matrix, right))]


LOGIC = Shape(26.0, 34.0, 0.03, 3.2)
SRAM = Shape(25.0, 33.0, 0.02, 3.6)
ANALOG = Shape(28.0, 35.0, 0.06, 0.9)  # thick-oxide or powered-down analog circuits
BIAS = Bias(28.0, 35.0, 0.06, 0.5, spread=1.15)

# ---- Rails: shape, volts by voltage grade, tolerance, amperes at 25 degrees of a device, inrush mA, power-up factor ----

CORE = (0.70, 0.80, 0.88)
OVERDRIVE_VOLTS = 0.03  # what overdrive adds to the rails of the core
TOLERANCE = 0.03


def flat(volts):
    return (volts, volts, volts)


def size(device):
    """Of the die's fabric, 1 for the default device."""
    return device.units("LUT") / 899_840


def if_has(resource, amperes):
    return lambda device: amperes * device.units(resource)


RAILS = {
    # core and memory
    "VCCINT": (LOGIC, CORE, lambda d: 0.06 + 0.95 * size(d) + 2.2e-5 * d.units("DSP"), 420),
    "VCCRAM": (SRAM, (0.80, 0.80, 0.88), lambda d: 0.01 + 0.06 * size(d), 90),
    "VCCSOC": (LOGIC, CORE, lambda d: 0.12 + 0.22 * size(d) + 0.04 * d.units("DDRMC"), 180),
    "VCCINTIO": (LOGIC, CORE, lambda d: 0.012 * d.units("SELV_BANK"), 60),
    "VCCAUX": (BIAS, flat(1.5), lambda d: 0.03 + 0.008 * d.units("CLOCK_MANAGER") / 4, 80),
    # platform management and processing system
    "VCCHARL": (LOGIC, (0.80, 0.80, 0.88), lambda d: 0.045, 70),
    "VCCAUXHARL": (BIAS, flat(1.5), lambda d: 0.009, 20),
    "VCCAUXSMON": (BIAS, flat(1.5), lambda d: 0.004, 8),
    "VCCPSLP": (LOGIC, CORE, lambda d: 0.038, 60),
    "VCCPSFP": (LOGIC, CORE, lambda d: 0.052, 90),
    "VCCOHARLIO0": (ANALOG, flat(1.8), lambda d: 0.0021, 12),
    "VCCOHARLIO1": (ANALOG, flat(1.8), lambda d: 0.0021, 12),
    "VCCOHARLIO2": (ANALOG, flat(1.8), lambda d: 0.0023, 12),
    "VCCOFIO": (ANALOG, flat(1.8), lambda d: 0.0012, 9),
    # hard blocks
    "VCCINTWIST": (LOGIC, CORE, if_has("WIST", 0.009), 0),
    "VCCWIST5": (LOGIC, CORE, if_has("WIST5", 0.021), 55),
    "VCCME": (LOGIC, CORE, if_has("NEMT", 0.00115), 260),
    "VCCVCUINT": (LOGIC, flat(0.80), if_has("VCU", 0.03), 70),
    "VCCIOHBM": (ANALOG, flat(1.2), if_has("HBM", 0.011), 40),
    "VCCHBM": (BIAS, flat(1.2), if_has("HBM", 0.16), 120),
    "VCCAUXHBM": (BIAS, flat(2.5), if_has("HBM", 0.006), 20),
    "VCCBATT": (ANALOG, flat(1.5), lambda d: 0.4e-6, 0.05),
    "VCCFUSE": (ANALOG, flat(1.8), lambda d: 30e-6, 0.5),
    # I/O banks and quads leak by resource; here their inrush, per quad for quads
    "VCCO10": (ANALOG, flat(1.0), None, 14),
    "VCCO11": (ANALOG, flat(1.1), None, 14),
    "VCCO12": (ANALOG, flat(1.2), None, 14),
    "VCCO135": (ANALOG, flat(1.35), None, 15),
    "VCCO15": (ANALOG, flat(1.5), None, 15),
    "VCCO18": (ANALOG, flat(1.8), None, 10),
    "VCCO25": (ANALOG, flat(2.5), None, 10),
    "VCCO33": (ANALOG, flat(3.3), None, 11),
    "MLORVAVCC": (ANALOG, flat(0.88), None, 13),
    "MLORVAVTT": (ANALOG, flat(1.2), None, 9),
    "MLORVVCCAUX": (ANALOG, flat(1.5), None, 3),
    "MSARNAVCC": (ANALOG, flat(0.88), None, 21),
    "MSARNAVTT": (ANALOG, flat(1.2), None, 14),
    "MSARNVCCAUX": (ANALOG, flat(1.5), None, 4),
    "MSARNAVTTRCAL": (ANALOG, flat(1.2), None, 1),
    "VCCINTGT": (LOGIC, flat(0.80), None, 28),
    "VCCPSGTA": (ANALOG, flat(0.88), lambda d: 0.006, 10),
    "VTTPSGTA": (ANALOG, flat(1.2), lambda d: 0.002, 6),
    "VAUXPSGTA": (ANALOG, flat(1.5), lambda d: 0.0007, 2),
    # converters: their common bias, and the leakage of their digital part
    "VCCHSAMS": (LOGIC, flat(0.80), if_has("ADC", 0.002), 30),
    "ADCAVCC": (BIAS, flat(0.92), if_has("ADC", 0.0009), 25),
    "ADCAVCCAUX": (BIAS, flat(1.8), if_has("ADC", 0.0004), 12),
    "DACAVCC": (BIAS, flat(0.92), if_has("DAC", 0.0008), 25),
    "DACAVCCAUX": (BIAS, flat(1.8), if_has("DAC", 0.0004), 12),
    "DACAVTT": (BIAS, flat(2.5), if_has("DAC", 0.0003), 10),
}
RESOURCE_OF = {"MLORV": ("LORV_QUAD", "LORVP_QUAD"), "MSARN": ("SARN_QUAD",), "VCCINTGT": ("SARN_QUAD",)}
OWN_VOLTS_EXPONENTS = {"VCCAUX": 0.4}  # VCCAUX also rises with VCCINT

# ---- Resources: amperes at 25 degrees of one of them, by rail ----

PROCESSING = "YOND_BASE_CORE"
SITES = {
    "BRAM_CORE_ACTIVE": {"VCCINT": (SRAM, 1.0e-4), "VCCRAM": (SRAM, 1.6e-4)},
    "BRAM_CORE_SLEEP": {"VCCINT": (SRAM, 0.6e-4), "VCCRAM": (SRAM, 0.5e-4)},
    "PLAM_CORE_ACTIVE": {"VCCINT": (SRAM, 1.3e-4), "VCCRAM": (SRAM, 3.4e-4)},
    "PLAM_CORE_SLEEP": {"VCCINT": (SRAM, 0.8e-4), "VCCRAM": (SRAM, 1.0e-4)},
    PROCESSING + "_RPU_TIEOFF_WRAPPER": {"VCCPSLP": (LOGIC, 0.0045)},
    PROCESSING + "_OCM_MEMORY": {"VCCPSLP": (SRAM, 0.0026)},
    PROCESSING + "_TCM_MEMORY": {"VCCPSLP": (SRAM, 0.0019)},
    PROCESSING + "_MAIN_CPU0": {"VCCPSFP": (LOGIC, 0.021)},
    PROCESSING + "_L2_MEMORY": {"VCCPSFP": (SRAM, 0.012)},
    "SELVBANK": {rail: (ANALOG, 0.0014) for rail in ("VCCO10", "VCCO11", "VCCO12", "VCCO135", "VCCO15")},
    "NALTBANK": {rail: (ANALOG, 0.0006) for rail in ("VCCO18", "VCCO25", "VCCO33")},
    "LORV_QUAD_TOP_CORE": {"VCCINT": (LOGIC, 0.014), "MLORVAVCC": (ANALOG, 0.0092), "MLORVAVTT": (ANALOG, 0.0031),
                           "MLORVVCCAUX": (ANALOG, 0.0009)},
    "LORVP_QUAD_TOP_CORE": {"VCCINT": (LOGIC, 0.0045), "MLORVAVCC": (ANALOG, 0.0105), "MLORVAVTT": (ANALOG, 0.0034),
                            "MLORVVCCAUX": (ANALOG, 0.0010)},
    "SARN_QUAD_TOP_CORE": {"VCCINT": (LOGIC, 0.018), "VCCINTGT": (LOGIC, 0.019), "MSARNAVCC": (ANALOG, 0.016),
                           "MSARNAVTT": (ANALOG, 0.0055), "MSARNVCCAUX": (ANALOG, 0.0014),
                           "MSARNAVTTRCAL": (ANALOG, 0.0002)},
    # A converter in use. Nothing else models it, so that what it draws at its nominal sample rate stands here: track and
    # hold, comparators and references of an ADC some 180 mW, current cells and drivers of a DAC some 150 mW, and 50 mW
    # for the digital part that is clocked with it.
    "ADC_CORE": {"VCCHSAMS": (BIAS, 0.0625), "ADCAVCC": (BIAS, 0.135), "ADCAVCCAUX": (BIAS, 0.031)},
    "DAC_CORE": {"VCCHSAMS": (BIAS, 0.0625), "DACAVCC": (BIAS, 0.085), "DACAVCCAUX": (BIAS, 0.012),
                 "DACAVTT": (BIAS, 0.020)},
    "OCM2ISLAND": {"VCCPSLP": (SRAM, 0.0055)},
}
BINNING_SITES = {
    "BRAM_CORE": ("BRAM_CORE_ACTIVE",),
    "PLAM_CORE": ("PLAM_CORE_ACTIVE",),
    PROCESSING: (PROCESSING + "_RPU_TIEOFF_WRAPPER", PROCESSING + "_MAIN_CPU0"),
    **{key: (key,) for key in ("SELVBANK", "NALTBANK", "LORV_QUAD_TOP_CORE", "LORVP_QUAD_TOP_CORE",
                               "SARN_QUAD_TOP_CORE", "ADC_CORE", "DAC_CORE", "OCM2ISLAND")},
}

# ---- SKUs ----


def sku_name(voltage, screen, overdrive):
    return f"{voltage}_{'STD' if screen == 'STANDARD' else 'LOW'}{'_OD' if overdrive == 'OD_YES' else ''}"


SKUS = [(v, s, o) for v in VOLTAGES.values() for s in SCREENS.values() for o in OVERDRIVES]


def binning(shape, process, voltage, screen):
    """Parts for high voltage are the fast, leaky ones; the power screen and the low-voltage grade sort those out."""
    if shape in (ANALOG, BIAS):
        return 1.0
    by_voltage = {"TYP": {"LP": 0.95, "MP": 1.0, "HP": 1.12}, "MAX": {"LP": 0.88, "MP": 1.0, "HP": 1.25}}
    by_screen = {"TYP": {"STANDARD": 1.0, "LOW": 0.93}, "MAX": {"STANDARD": 1.0, "LOW": 0.75}}
    return by_voltage[process][voltage] * by_screen[process][screen]


def nominal(rail, voltage, overdrive):
    volts = RAILS[rail][1]
    value = volts[list(VOLTAGES.values()).index(voltage)]
    return value + (OVERDRIVE_VOLTS if overdrive == "OD_YES" and volts is CORE else 0.0)


# ---- What a device has ----


def current(device, rail):
    """Of the device itself on a rail, at 25 degrees; 0 if it lacks the rail."""
    return RAILS[rail][2](device)


def has_rail(device, rail):
    if RAILS[rail][2]:
        return current(device, rail) > 0.0
    for prefix, resources in RESOURCE_OF.items():
        if rail.startswith(prefix):
            return any(device.units(resource) for resource in resources)
    return True


def inrush(device, rail):
    """Grows with the die on the rails of the logic."""
    shape, _, own, milliamperes = RAILS[rail]
    if not has_rail(device, rail):
        return 0.0
    return round(milliamperes * (0.4 + 0.6 * size(device)), 2) if shape is LOGIC and own else float(milliamperes)


COMMON_RAILS = [rail for rail, row in RAILS.items() if row[2]]

# ---- Output ----


def number(x):
    text = f"{x:.9g}"
    return text if any(c in text for c in ".e") else text + ".0"


def row(name, pairs):
    return f"{name} : {{ " + " ".join(f"{key} = {value};" for key, value in pairs) + " };"


def wrapped(name, pairs):
    """A row too long for one line."""
    lines = [""]
    for key, value in pairs:
        entry = f"{key} = {value};"
        if len(lines[-1]) + 1 + len(entry) > 112:
            lines.append("")
        lines[-1] = f"{lines[-1]} {entry}".strip()
    return group(name, lines)


def group(name, lines):
    return [f"{name} :", "{", *("  " + line for line in lines), "};"]


def curve(rail, shape, amperes):
    """The terms from T^5 down, checked as the single-precision numbers that the library reads."""
    terms = [number(amperes * c) for c in shape.polynomial]
    values = [single(float(c)) for c in terms]
    before = 0.0
    for t in range(-40, 126):
        now = sum(c * t ** k for k, c in enumerate(values))
        assert now > before or amperes == 0.0, (rail, t)
        assert abs(now / (amperes * shape.current(t)) - 1.0) < 0.01 if amperes else now == 0.0, (rail, t)
        before = now
    return row(rail, zip(("A", "B", "C", "D", "E", "CONST"), reversed(terms)))


def voltage_law(rail, shape):
    """1 at the voltage of the grade MP."""
    pairs = {"C2": shape.per_volt}
    exponent = shape.per_volt * RAILS[rail][1][1]
    if rail in OWN_VOLTS_EXPONENTS:
        pairs["C3"] = OWN_VOLTS_EXPONENTS[rail]
        exponent += pairs["C3"] * CORE[1]
    pairs = {"C1": math.exp(-exponent), **pairs}
    return row(rail, [(key, number(value)) for key, value in pairs.items()])


def binning_row(rail, shape, process):
    return row(rail, [(sku_name(*sku), number(binning(shape, process, *sku[:2]))) for sku in SKUS])


def sku_tree():
    for speed in SPEEDS.values():
        voltages = []
        for voltage in VOLTAGES.values():
            screens = []
            for screen in SCREENS.values():
                screens += group(screen, [
                    row(temperature, [(o, f'"{sku_name(voltage, screen, o)}"') for o in OVERDRIVES])
                    for temperature in TEMPERATURES.values()])
            voltages += group(voltage, screens)
        yield from group(speed, voltages)


def by_process(lines_of):
    return [line for process in PROCESSES for line in group(process, lines_of(process))]


def tables():
    def per_device(lines_of):
        return [line for device in DEVICES for line in group(device.external, lines_of(device))]

    yield "the device by the name of its die", "INT_TO_EXT_DEV_MAP", [f'{d.die} = "{d.external}";' for d in DEVICES]
    yield "SKU by speed, voltage, power screen, temperature and overdrive", "SKU_LIST", list(sku_tree())
    yield "whether a device has a rail", "SUPPLY_LIST", [
        line for d in DEVICES
        for line in wrapped(d.external, [(rail, '"YES"' if has_rail(d, rail) else '"NO"') for rail in RAILS])]

    curves = per_device(lambda d: by_process(
        lambda p: [curve(rail, RAILS[rail][0], RAILS[rail][0].spread[p] * current(d, rail)) for rail in COMMON_RAILS]))
    for site, rails in SITES.items():
        curves += group(site, by_process(
            lambda p: [curve(rail, shape, shape.spread[p] * amperes) for rail, (shape, amperes) in rails.items()]))
    yield "amperes by powers of the temperature in degrees Celsius: A x T^5 ... E x T + CONST; 0 on rails that a " \
          "device lacks", "VT_COEFFICIENT", curves

    bins = per_device(lambda d: by_process(
        lambda p: [binning_row(rail, RAILS[rail][0], p) for rail in COMMON_RAILS]))
    for key, sites in BINNING_SITES.items():
        rails = {rail: shape for site in sites for rail, (shape, _) in SITES[site].items()}
        bins += group(key, by_process(lambda p: [binning_row(rail, shape, p) for rail, shape in rails.items()]))
    yield "leakage of a SKU over the characterised one's", "BINNING_FACTORS", bins

    laws = per_device(lambda d: by_process(lambda p: [voltage_law(rail, RAILS[rail][0]) for rail in COMMON_RAILS]))
    for site, rails in SITES.items():
        laws += group(site, by_process(lambda p: [voltage_law(rail, shape) for rail, (shape, _) in rails.items()]))
    yield "leakage by voltage: C1 x exp(C2 x V), on VCCAUX x exp(C3 x VCCINT)", "VOLTAGE_SCALING", laws

    corners = []
    for corner, factor in (("NOM", 1.0), ("MIN", 1.0 - TOLERANCE), ("MAX", 1.0 + TOLERANCE)):
        corners += group(corner, [
            row(rail, [(sku_name(v, s, o), number(round(factor * nominal(rail, v, o), 4))) for v, s, o in SKUS])
            for rail in RAILS])
    yield "volts", "VOLTAGE_RANGE", corners

    yield "leakage while powering up over leakage at 25 degrees", "TOTAL_POWER_FACTORS", [
        line for d in DEVICES
        for line in wrapped(d.external, [(rail, 1.05 if RAILS[rail][0] in (ANALOG, BIAS) else 1.15) for rail in RAILS])]
    gt_info = []
    for device in DEVICES:
        for package, (_, bonded) in sorted(device.packages.items()):
            sarn = min(bonded, device.units("SARN_QUAD"))
            kind = "LORVP" if device.units("LORVP_QUAD") else "LORV"
            counts = {"LORV": 0, "LORVP": 0, "SARN_56G": sarn, kind: bonded - sarn}
            gt_info.append(row(f"{device.external}_{package.upper()}", counts.items()))
    yield "transceiver quads bonded out in a package", "GT_INFO", gt_info
    yield "state of a device in a package", "PART_STATUS", [
        row(d.external, [(p.upper(), f'"{status}"') for p, (status, _) in sorted(d.packages.items())]) for d in DEVICES]
    yield "transceiver quads on the die", "UNBONDED_GT_INFO", [
        row(d.external, [("LORV", d.units("LORV_QUAD")), ("LORVP", d.units("LORVP_QUAD")),
                         ("SARN_56G", d.units("SARN_QUAD"))]) for d in DEVICES]
    yield "inrush in mA, per quad for transceivers; 0 on rails that a device lacks", "POWERUP_CURRENT", [
        line for d in DEVICES for line in wrapped(d.external, [(rail, inrush(d, rail)) for rail in RAILS])]


def main():
    lines = ["// Static power of the devices. Illustrative numbers. Written by data/tools/fit_leakage.py.",
             "// Origin: 1 uA per LUT with its share of the fabric at 25 degrees and 0.8 V; leakage doubles every 25 to 35 degrees, bias",
             "// currents follow the absolute temperature; voltage enters exponentially. Check: 2 to 4 W at 25 and 10 to 20 W at 100 degrees",
             "// for the mid-size device, worst process 1.5 to 2.5 times that. Rows of rails that a device lacks are 0 and reach no output.",
             "ZelmOrvaneStaticData :", "{"]
    for comment, name, content in tables():
        lines += [f"  // {comment}"] + ["  " + line for line in group(name, content)] + [""]
    lines[-1:] = ["};", ""]
    OUTPUT.write_text("\n".join(lines))


if __name__ == "__main__":
    main()
