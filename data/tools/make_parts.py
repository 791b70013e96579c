#!/usr/bin/env python3
"""Writes ZelmOrvanePartsData.cfg: every device in every package and grade. Run from any folder, without arguments."""

import pathlib

from devices import DEVICES, GRADES, RESOURCES, SAMPLE_GRADES, SERIES_KEYS

OUTPUT = pathlib.Path(__file__).resolve().parents[1] / "powercfg/orvane/ZelmOrvanePartsData.cfg"


def group(name, lines, indent="  "):
    return [f"{indent}{name} :", f"{indent}{{", *(f"{indent}  {line}" for line in lines), f"{indent}}};"]


def parts_of(series):
    for device in DEVICES:
        if device.series != series:
            continue
        for package, (status, _) in sorted(device.packages.items()):
            for grades in SAMPLE_GRADES if status != "PRODUCTION" else GRADES:
                yield f"{device.name}_{package}_{grades}"
            if status == "ENGINEERING_SAMPLE":
                for grades in ("1_MP_i_S", "2_MP_e_S"):
                    yield f"{device.name}_{package}_{grades}"


def main():
    lines = [
        "// Catalogue of devices, parts and resources. Illustrative facts of made-up devices. Written by data/tools/make_parts.py.",
        "ZelmOrvanePartsData :",
        "{",
        "  // the name of each device's series",
    ]
    lines += group("DEVICE_TO_FAMILY_MAP", [f'{d.name} = "{d.series}";' for d in DEVICES])
    lines += ["", "  // core voltages in V of the grades LP, MP, HP"]
    lines += group("DEVICE_CORE_VOLTAGE_MAP", [f'{d.name} = "0.70 0.80 0.88";' for d in DEVICES])
    lines += ["", "  // by the series' name with underscores for blanks"]
    first = {}
    for device in sorted(DEVICES, key=lambda d: d.name != "zq4410"):
        first.setdefault(device.series, device.name)
    lines += group("FAMILY_TO_DEFAULT_DEVICE",
                   [f'{series.replace(" ", "_")} = "{first[series]}";' for series in SERIES_KEYS])
    lines += ["", "  // Yes for each part: device_package_speed_voltage_temperature_screen, es1 for samples"]
    series_groups = []
    for series, key in SERIES_KEYS.items():
        series_groups += group(key, [f'{part} = "Yes";' for part in sorted(parts_of(series))], "")
    lines += group("DEVICE_DATA", series_groups)
    lines += ["", "  // units per device; the first key is the device less its last character, with an underscore"]
    resource_groups = []
    for device in DEVICES:
        resource_groups += [f"// {device.name}"]
        resource_groups += group(device.cut, [f"{word} = {device.units(word)};" for word in RESOURCES], "")
    lines += group("RESOURCE_DATA", resource_groups)
    lines += ["};", ""]
    OUTPUT.write_text("\n".join(lines))


if __name__ == "__main__":
    main()
