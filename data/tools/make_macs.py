#!/usr/bin/env python3
"""Writes the data files of the hard MACs, Ilkn, Jorl and Tuvo, from an energy per bit and a power per channel.

A MAC with its coding layer moves each bit through some thirty pipeline stages and two buffers of a few Kbit: 1.5 to 2 pJ per
bit in a FinFET process at 0.8 to 0.9 V, 1 mW per Gb/s being 1 pJ per bit. Error correction of the Reed-Solomon kind adds about
1 pJ per bit. Clock tree and control draw a fixed power, each channel its own state machines. Check: the public figures of such
hard cores, 1 to 5 pJ per bit all in all.
"""

import pathlib

OUT = pathlib.Path(__file__).resolve().parents[1] / "powercfg" / "orvane"


def rate_of(mode):
    """Gb/s and channels of 2x200GE_1x100GE."""
    ports = [tuple(map(int, port[:-2].split("x"))) for port in mode.split("_")]
    return sum(n * gbps for n, gbps in ports), sum(n for n, _ in ports)


def write(block, lines):
    (OUT / f"ZelmOrvane{block}Data.cfg").write_text("\n".join([*lines, "};", ""]))


def mode_table(rows):
    yield "  MODE_TABLE :"
    yield "  {"
    for name, plain, coded in rows:
        yield f"    KEY_{name} : {{ POWER_WO_FEC = {plain:.1f}; POWER_W_FEC = {coded:.1f}; }};"
    yield "  };"


def ilkn():
    base, per_gbps, fec, fec_per_gbps = 120.0, 1.68, 5.0, 0.94
    yield "// Interlaken core: power of its rates. Illustrative numbers, written by data/tools/make_macs.py."
    yield "ZelmOrvaneIlknData :"
    yield "{"
    yield f"  // mW of one core at 0.88 V and full traffic. Origin: {base:g} mW of clock tree and control, {per_gbps} pJ per bit for framing"
    yield f"  // and lane buffers, {fec_per_gbps} pJ per bit for error correction. Check: 1.9 to 3.5 pJ per bit. A name can't begin with a digit,"
    yield "  // hence KEY_."
    yield from mode_table((f"{gbps}G_ILKN", base + per_gbps * gbps, base + fec + (per_gbps + fec_per_gbps) * gbps)
                          for gbps in (150, 300, 450, 600))


def jorl():
    base, per_gbps, per_channel, fec_per_gbps = 90.0, 1.475, 25.0, 1.225
    modes = ("1x400GE", "1x400GE_1x200GE", "1x400GE_2x100GE", "2x200GE", "2x200GE_2x100GE", "3x200GE", "4x100GE", "6x100GE")
    yield "// Dual-channel Ethernet MAC: power of its channel modes. Illustrative numbers, written by data/tools/make_macs.py."
    yield "ZelmOrvaneJorlData :"
    yield "{"
    yield f"  // mW of one MAC at 0.88 V and full traffic. Origin: {base:g} mW of clock tree and control, {per_channel:g} mW per channel, {per_gbps} pJ per"
    yield f"  // bit for MAC and buffers, {fec_per_gbps} pJ per bit for error correction. Check: 1.7 to 3.2 pJ per bit. A name can't begin with"
    yield "  // a digit, hence KEY_."
    rows = []
    for mode in modes:
        gbps, channels = rate_of(mode)
        plain = base + per_gbps * gbps + per_channel * channels
        rows.append((mode, plain, plain + fec_per_gbps * gbps))
    yield from mode_table(rows)


# mW fixed and pJ per bit, by activity. An idle link still sends idle words; the maximum is back-to-back random frames.
MAC = {"IDLE": (25.0, 0.80), "TYPICAL": (30.0, 1.50), "MAXIMUM": (38.0, 1.90)}
CODER = {"IDLE": (9.0, 0.70), "TYPICAL": (10.0, 1.16), "MAXIMUM": (12.0, 1.45)}


def tuvo():
    def row(prefix, gbps, parts):
        powers = {word: sum(part[word][0] + part[word][1] * gbps for part in parts) for word in MAC}
        return f"    {prefix}_{gbps}GE : {{ " + " ".join(f"{word} = {power:.1f};" for word, power in powers.items()) + " };"

    yield "// Multi-rate Ethernet MAC: power of its configurations. Illustrative numbers, written by data/tools/make_macs.py."
    yield "ZelmOrvaneTuvoData :"
    yield "{"
    yield "  // V at which the power was characterised: the process's nominal supply"
    yield "  SIM_VOLTAGE : { VCCINT = 0.80; };"
    yield ""
    yield "  // mW of one MAC. FEC_ONLY_: error correction alone; FEC_, NO_FEC_: the MAC with and without it. Origin: a fixed power and pJ"
    yield f"  // per bit by activity, {MAC['TYPICAL'][1]} for the MAC and {CODER['TYPICAL'][1]} for error correction in typical traffic; an idle link sends idle"
    yield "  // words, MAXIMUM is back-to-back frames of random data. Check: 0.8 to 3.9 pJ per bit at the highest rate."
    yield "  CONFIG_PWR_DATA :"
    yield "  {"
    for prefix, parts in (("FEC_ONLY", (CODER,)), ("FEC", (MAC, CODER)), ("NO_FEC", (MAC,))):
        for gbps in (10, 25, 40, 50, 100):
            yield row(prefix, gbps, parts)
    yield "  };"


if __name__ == "__main__":
    for name, lines in (("Ilkn", ilkn()), ("Jorl", jorl()), ("Tuvo", tuvo())):
        write(name, lines)
