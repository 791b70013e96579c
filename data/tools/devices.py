"""The made-up devices that the catalogue and the static power describe, and the grades that they are sold in."""

from dataclasses import dataclass, field

SERIES_KEYS = {
    "Halden Axis Series": "FAMILY_AXIS_SERIES_DATA",
    "Halden Rim Series": "FAMILY_RIM_SERIES_DATA",
    "Halden Wave Series": "FAMILY_WAVE_SERIES_DATA",
    "Halden Base Series": "FAMILY_BASE_SERIES_DATA",
    "Halden Crest Series": "FAMILY_CREST_SERIES_DATA",
}

# Grade words of the static power, by the letters that part strings carry.
SPEEDS = {"1": "SPEED_1", "2": "SPEED_2", "3": "SPEED_3"}
VOLTAGES = {"LP": "LP", "MP": "MP", "HP": "HP"}
SCREENS = {"S": "STANDARD", "L": "LOW"}
TEMPERATURES = {"e": "EXTENDED", "i": "INDUSTRIAL", "m": "MILITARY"}
OVERDRIVES = ("OD_NO", "OD_YES")

# Grade fields behind device and package: speed, voltage, temperature, power screen.
GRADES = ("1_LP_e_S", "1_LP_i_S", "1_LP_i_L", "1_MP_e_S", "1_MP_i_S", "1_MP_m_S", "2_LP_e_S", "2_MP_e_S", "2_MP_i_S",
          "2_MP_i_L", "2_HP_e_S", "3_HP_e_S")
SAMPLE_GRADES = ("1_LP_e_S_es1", "2_MP_e_S_es1")

RESOURCES = ("LUT", "FF", "BRAM", "PLAM", "DSP", "CLOCK_MANAGER", "VEKO", "DPLL", "RUSK", "SELV_BANK", "NALT_BANK",
             "SELV_IO", "NALT_IO", "LORV_QUAD", "LORVP_QUAD", "SARN_QUAD", "NOC", "DDRMC", "NEMT", "GORB", "PCIEB", "PCIEB5",
             "WIST", "WIST5", "JORL", "ILKN", "HSC", "SDFEC", "TUVO", "MULM", "ADC", "DAC", "YOND", "HARL", "OCM2",
             "HBM", "VCU", "FSR")


@dataclass
class Device:
    name: str  # as in part strings; upper case as the external name
    die: str  # internal name
    series: str
    packages: dict  # package -> (status, quads bonded out)
    has: dict = field(default_factory=dict)  # resource -> units, 0 if absent

    @property
    def external(self):
        return self.name.upper()

    @property
    def cut(self):
        """The first key of RESOURCE_DATA that the catalogue's cuts make of a part."""
        return self.name[:-1] + "_"

    def units(self, resource):
        return self.has.get(resource, 0)


def fabric(luts, bram, plam, dsp, selv, nalt, **others):
    """Two flip-flops per LUT; 54 pins per SELV and 22 per NALT bank; clock managers of three kinds around the banks;
    a fabric region (FSR) holds up to 112,480 LUTs."""
    veko, dpll, rusk = selv + 2, selv + 4, 2 * selv
    has = dict(LUT=luts, FF=2 * luts, BRAM=bram, PLAM=plam, DSP=dsp, SELV_BANK=selv, NALT_BANK=nalt, SELV_IO=54 * selv,
               NALT_IO=22 * nalt, CLOCK_MANAGER=veko + dpll + rusk, VEKO=veko, DPLL=dpll, RUSK=rusk, NOC=1, YOND=1,
               HARL=1, FSR=-(-luts // 112_480))
    has.update(others)
    assert set(has) <= set(RESOURCES)
    return has


AVAILABLE, SAMPLE, PREVIEW = "PRODUCTION", "ENGINEERING_SAMPLE", "PREVIEW"

DEVICES = (
    Device("zq2210", "T22", "Halden Axis Series", {"kfba1024": (AVAILABLE, 3), "ktba1760": (AVAILABLE, 4)},
           fabric(244_000, 420, 210, 900, 5, 2, LORV_QUAD=4, DDRMC=2, NEMT=60, PCIEB=1, WIST=1)),
    Device("zq4410", "T60", "Halden Axis Series", {"kibo4471": (SAMPLE, 11), "ktba3310": (AVAILABLE, 5)},
           fabric(899_840, 967, 463, 1_968, 12, 2, LORV_QUAD=11, DDRMC=4, NEMT=400, GORB=1, PCIEB=4, WIST=4, OCM2=1)),
    Device("zq5620", "T66", "Halden Axis Series", {"kibo4471": (AVAILABLE, 14), "ktba3980": (SAMPLE, 11)},
           fabric(1_320_000, 1_580, 790, 3_080, 14, 2, LORVP_QUAD=14, DDRMC=4, NEMT=304, GORB=1, PCIEB5=4, WIST=6,
                  JORL=2, HSC=2, OCM2=1)),
    Device("zr1810", "T18", "Halden Rim Series", {"kfba0784": (AVAILABLE, 0), "kfba1024": (AVAILABLE, 2)},
           fabric(150_272, 155, 155, 464, 4, 2, LORVP_QUAD=2, DDRMC=1, NEMT=12, PCIEB=1, VCU=1, OCM2=1)),
    Device("zr3320", "T33", "Halden Rim Series", {"kfba1024": (SAMPLE, 4), "ktba1760": (AVAILABLE, 8)},
           fabric(521_000, 600, 264, 1_312, 9, 2, LORVP_QUAD=8, DDRMC=3, NEMT=304, GORB=1, PCIEB5=2, WIST=2, VCU=4,
                  TUVO=2, OCM2=1)),
    Device("zw4630", "T46", "Halden Wave Series", {"ktba1760": (SAMPLE, 4), "ktba3310": (SAMPLE, 8)},
           fabric(612_000, 820, 400, 3_600, 8, 2, LORV_QUAD=8, DDRMC=3, NEMT=126, PCIEB=2, WIST=2, SDFEC=8, ADC=16,
                  DAC=16, MULM=2)),
    Device("zb2810", "T28", "Halden Base Series", {"kfba1024": (AVAILABLE, 4), "ktba1760": (AVAILABLE, 6)},
           fabric(328_000, 450, 130, 1_100, 8, 3, LORV_QUAD=6, DDRMC=2, PCIEB=2, WIST=2)),
    Device("zc7540", "T75", "Halden Crest Series", {"kibo4471": (PREVIEW, 26), "kjbo4900": (SAMPLE, 32)},
           fabric(2_566_000, 3_740, 1_925, 9_024, 13, 1, LORV_QUAD=20, SARN_QUAD=12, DDRMC=4, PCIEB5=4, GORB=1, WIST=4,
                  WIST5=8, JORL=6, ILKN=2, HSC=3, HBM=2, MULM=2, FSR=24)),  # three dies of eight regions
)

assert len({device.cut for device in DEVICES}) == len(DEVICES)
