#!/usr/bin/env python3
"""Counts what the nets of a VCD do, bit by bit, without a thought of speed: count_toggles.py FILE.vcd [FROM [TO]].

A line per variable that is a net: its path, bits, toggles, and bits x time at 1 and at 0 or 1."""
import sys

words = open(sys.argv[1], encoding="latin-1").read().split()
begin = int(sys.argv[2]) if len(sys.argv) > 2 else 0
end = int(sys.argv[3]) if len(sys.argv) > 3 else None
NO_NETS = {"real", "realtime", "parameter", "event", "time", "integer", "string", "real_parameter"}

names, size, scopes, at = [], {}, [], 0
while words[at] != "$enddefinitions":
    stop = words.index("$end", at)
    if words[at] == "$scope":
        scopes.append(words[at + 2].lstrip("\\"))
    elif words[at] == "$upscope":
        scopes.pop()
    elif words[at] == "$var" and words[at + 1] not in NO_NETS:
        name = words[at + 4]
        name = name[1:] if name.startswith("\\") else name.split("[")[0]
        names.append((".".join(scopes + [name]), words[at + 3]))
        size[words[at + 3]] = int(words[at + 2])
    at = stop + 1
at = words.index("$end", at) + 1

bits = {code: ["x"] * count for code, count in size.items()}
since = {code: [0] * count for code, count in size.items()}
toggles = dict.fromkeys(size, 0)
high = dict.fromkeys(size, 0)
known = dict.fromkeys(size, 0)
now, first = 0, None


def lived(code, i, until):
    a, b = max(since[code][i], first or 0), until
    if b > a and bits[code][i] in "01":
        known[code] += b - a
        high[code] += b - a if bits[code][i] == "1" else 0
    since[code][i] = max(until, since[code][i])


def clamp(time):
    return max(begin, time if end is None else min(time, end))


def change(code, digits):
    if code not in size:
        return
    digits = digits.lower()
    if len(digits) < size[code]:
        digits = (digits[0] if digits[0] in "xz" else "0") * (size[code] - len(digits)) + digits
    for i, new in enumerate(digits[-size[code]:]):
        old = bits[code][i]
        if new == old:
            continue
        lived(code, i, clamp(now))
        if {old, new} == {"0", "1"} and now >= begin:
            toggles[code] += 1
        bits[code][i] = new


while at < len(words):
    word = words[at]
    at += 1
    if word[0] == "#":
        now = int(word[1:])
        if first is None:
            known_before = any(bit in "01" for net in bits.values() for bit in net)
            first = begin if known_before else max(begin, now)
        if end is not None and now >= end:
            break
    elif word[0] in "01xXzZ":
        change(word[1:], word[0])
    elif word[0] in "bB":
        change(words[at], word[1:])
        at += 1
    elif word[0] in "rR":
        at += 1
for code, count in size.items():
    for i in range(count):
        lived(code, i, clamp(now))
for name, code in names:
    print(name, size[code], toggles[code], high[code], known[code])
