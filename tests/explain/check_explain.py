#!/usr/bin/env python3
"""Holds explanations against the data files, the sources and the design that they name, and computes their sums and
products again: check_explain.py ZELM SOURCE_DIR EXAMPLE..."""
import functools
import json
import os
import pathlib
import re
import struct
import subprocess
import sys

zelm, source = sys.argv[1], pathlib.Path(sys.argv[2])
os.chdir(source)


def single(value):
    return struct.unpack("f", struct.pack("f", value))[0]


@functools.cache
def lines_of(file):
    return pathlib.Path(file).read_text().split("\n")


@functools.cache
def rows_of(file):
    """Table, key: line and value."""
    path, rows = [], {}
    text = re.sub(r'("(?:[^"\\\n]|\\.)*")|(?:#|//)[^\n]*', lambda found: found[1] or "", "\n".join(lines_of(file)))
    for found in re.finditer(r'([A-Za-z*][\w*-]*)\s*[:=]\s*(?:(\{)|("(?:[^"\\]|\\.)*"|[^\s;,{}]+))|\}', text):
        name, opening, value = found.groups()
        if opening:
            path.append(name)
        elif name:
            rows[path[1], ".".join([*path[2:], name])] = (text.count("\n", 0, found.start()) + 1, value)
        else:
            path.pop()
    return rows


def check_row(row, counts):
    key = ".".join(filter(None, row["keys"]))
    found = rows_of(row["file"]).get((row["table"], key))
    if row["value"] is None:
        assert found is None and row["valueReason"] == "no such row" and "line" not in row, row
        return
    assert found and found[0] == row["line"], f"{row} is {found}"
    value = found[1]
    if isinstance(row["value"], str):
        assert value == json.dumps(row["value"]), f"{row} is {found}"
    elif isinstance(row["value"], bool):
        assert value == str(row["value"]).lower(), f"{row} is {found}"
    else:
        assert single(float(value)) == single(row["value"]), f"{row} is {found}"
    counts["rows"] += 1



def check_source(file, line, text):
    lines = text.split("\n")
    assert lines_of(file)[line - 1:line - 1 + len(lines)] == lines, f"{file}:{line} isn't\n{text}"


def amount(node):
    """Cells are in single precision, whatever the decimals that stand for one."""
    return single(node["value"]) if "cell" in node else node["value"]


def check_formula(node, counts):
    """A sum adds up in the order of its terms; what is said in cells is what they come to."""
    operands = node["operands"]
    if any("term" in operand for operand in operands):
        total = 0.0
        for operand in sorted(operands, key=lambda one: one["term"]):
            total += amount(operand)
        assert total == node["value"], f"{node['quantity']}: {total} isn't {node['value']}"
        counts["sums"] += 1
        return
    if " in " not in node["quantity"] and not node["quantity"].startswith("static:"):
        return
    names = {}
    for operand in operands:
        name = operand.get("cell") or re.sub(r"^group:.*(?: (?=count$)|: )", "", operand["quantity"])
        names[name] = amount(operand)
    expression = node["formula"].replace(" x ", " * ")
    for name in sorted(names, key=len, reverse=True):
        expression = re.sub(rf"(?<![\w.]){re.escape(name)}(?!\w)", repr(float(names[name])), expression)
    value = eval(expression, {"__builtins__": {}})
    assert value == node["value"], f"{node['quantity']}: {node['formula']} is {value}, not {node['value']}"
    counts["products"] += 1


def check_node(node, counts):
    counts["nodes"] += 1
    for row in node.get("lookUps", []):
        check_row(row, counts)
    if "source" in node:
        check_source(node["source"]["file"], node["source"]["line"], node["formula"])
        counts["formulas"] += 1
    for piece in node.get("member", []) + node.get("sources", []):
        check_source(piece["file"], piece["line"], piece["text"])
    origin = node.get("origin", {})
    if origin.get("kind") == "design" and "cell" in node and node["cell"] != "PROCESS":
        # What spans several lines begins where its object does.
        below = "\n".join(lines_of(origin["file"])[origin["line"] - 1:origin["line"] + 6])
        assert f'"{node["cell"]}"' in below, f"{origin} doesn't set {node['cell']}"
        counts["origins"] += 1
    if "quantity" in node and "formula" in node and node["value"] is not None and "cut" not in node:
        check_formula(node, counts)
    for operand in node["operands"]:
        check_node(operand, counts)


for example in sys.argv[3:]:
    counts = dict.fromkeys(("nodes", "rows", "formulas", "sums", "products", "origins"), 0)
    rails = ("rail:VCCINT@MAX", "rail:VCCAUX@TYP")
    for what in ("total@TYP", "total@MAX", "junction@MAX", *rails):
        told = subprocess.run([zelm, "--datadir", "data", "explain", f"examples/{example}.json", what, "--json"],
                              check=True, capture_output=True).stdout
        check_node(json.loads(told), counts)
    assert all(counts.values()), f"{example}: {counts}"
    print(f"{example}: {', '.join(f'{count} {what}' for what, count in counts.items())}")
