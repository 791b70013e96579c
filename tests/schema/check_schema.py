#!/usr/bin/env python3
"""Validates designs against `zelm schema`, and sees that it refuses mistakes: check_schema.py ZELM DESIGN..."""
import copy
import json
import re
import subprocess
import sys
import tempfile

import jsonschema

schema = json.loads(subprocess.run([sys.argv[1], "schema"], check=True, capture_output=True).stdout)
jsonschema.Draft202012Validator.check_schema(schema)
validator = jsonschema.Draft202012Validator(schema)



def without_comments(text):
    """Strings are matched first, so that what looks like a comment in one stays."""
    return re.sub(r'("(?:\\.|[^"\\])*")|//[^\n]*|/\*.*?\*/', lambda m: m.group(1) or " ", text, flags=re.S)


for path in sys.argv[2:]:
    with open(path, encoding="utf-8") as file:
        design = json.loads(without_comments(file.read()))
    problems = [f"{'/'.join(map(str, e.path))}: {e.message[:200]}" for e in validator.iter_errors(design)]
    assert not problems, f"{path}: {problems}"

    def refused(what, change):
        mistaken = copy.deepcopy(design)
        change(mistaken)
        assert not validator.is_valid(mistaken), f"{path}: {what} was accepted"

    refused("an unknown field", lambda d: d.update(grups=[]))
    refused("an unknown block", lambda d: d["groups"][0].update(block="Signl"))
    refused("an unknown input", lambda d: d["groups"][0].setdefault("inputs", {}).update(NO_SUCH_CELL=1))
    refused("a text for a number", lambda d: d["groups"].append({"block": "Signal", "inputs": {"CLOCK_FREQ": "fast"}}))
    def accepted(what, change):
        changed = copy.deepcopy(design)
        change(changed)
        assert validator.is_valid(changed), f"{path}: {what} was refused"

    clock = lambda value: lambda d: d["groups"].append({"block": "Signal", "name": "x", "inputs": {"CLOCK_FREQ": value}})
    for value in ("322 MHz", "1.5GHz", "1e3 kHz", "= fclk / 2", 322):
        accepted(value, clock(value))
    for value in ("322 MHZ", "322", "850 mV", "MHz", "1,5 GHz"):
        refused(value, clock(value))
    for value in ({"low": 100, "high": 300}, {"low": "100 MHz", "mode": "0.2 GHz", "high": "300 MHz"}, {"mean": 300, "sd": 15},
                  {"mean": 300, "sd": 15, "low": 250}, {"values": [200, 300], "weights": [1, 3]}, {"values": [200]}):
        accepted(f"the distribution {value}", clock(value))
    for value in ({}, {"low": 100}, {"mean": 300}, {"low": 100, "hihg": 300}, {"values": []}, {"values": [1], "weights": [-1]},
                  {"low": [1], "high": 2}, [100, 300]):
        refused(f"the distribution {value}", clock(value))
    mode = lambda value: lambda d: d["groups"].append({"block": "Bram", "name": "x", "inputs": {"MODE": value}})
    accepted("a word by its parameter", mode("= mode"))
    accepted("a word of some", mode({"values": ["BLKM18", "BLKM36"]}))
    accepted("uncertain places", lambda d: d.update(rails={"VCCINT": {"low": "0.78 V", "high": "0.82 V"}},
                                                    parameters={"f": {"mean": "300 MHz", "sd": "15 MHz"}}))
    accepted("rails in millivolts", lambda d: d.update(rails={"VCCINT": "780 mV"}))
    refused("a rail in amperes", lambda d: d.update(rails={"VCCINT": "1 A"}))
    accepted("parameters", lambda d: d.update(parameters={"fclk": "322 MHz", "lanes": 4, "half": "= lanes / 2"}))
    refused("a parameter whose name is no name", lambda d: d.update(parameters={"f-clk": 1}))
    refused("a parameter that is a list", lambda d: d.update(parameters={"a": [1]}))
    supply = lambda **fields: lambda d: d.update(supplies={"A": {"rails": ["VCCINT"], **fields}})
    accepted("a supply", supply(maxCurrent="60 A", efficiency=[["5 A", 0.84], [30, "91 %"]], **{"from": "12V"}))
    accepted("a supply's share", supply(efficiency="= share"))
    refused("an efficiency of 0", supply(efficiency=0))
    refused("an efficiency above 1", supply(efficiency=90))
    refused("a point of one number", supply(efficiency=[[5]]))
    refused("a supply of an unknown rail", supply(rails=["VCCFOO"]))
    refused("a supply's unknown field", supply(maxCurent=1))
    accepted("a sequence", lambda d: d.update(sequence=["VCCINT", ["VCCRAM", "VCCAUX"]]))
    refused("a sequence of unknown rails", lambda d: d.update(sequence=["VCCFOO"]))
    period = lambda **fields: lambda d: d.update(modes=[{"name": "a", "for": "9 ms", **fields}])
    accepted("a mode", period(set={"groups[x].count": 1}))
    refused("a mode of no length", period(**{"for": 0}))
    refused("a mode's unknown field", period(sets={}))
    refused("modes that are none", lambda d: d.update(modes=[]))
    accepted("stages", lambda d: d.update(thermal={"stages": [{"r": "0.2 C/W", "tau": "10 ms"}]}))
    refused("a stage without its time constant", lambda d: d.update(thermal={"stages": [{"r": 0.2}]}))
    refused("a negative time constant", lambda d: d.update(thermal={"stages": [{"r": 0.2, "tau": -1}]}))
    accepted("a battery", lambda d: d.update(battery={"energy": "40 Wh"}))
    refused("an empty battery", lambda d: d.update(battery={"energy": 0}))
    refused("an unknown rail", lambda d: d.update(rails={"VCCFOO": 1}))
    refused("a static input that has a field of its own", lambda d: d.update(static={"SPEED_GRADE": "1"}))
    refused("a rail at 0 V", lambda d: d.update(rails={"VCCINT": 0}))
    refused("an unknown word", lambda d: d["groups"].append({"block": "Bram", "name": "x", "inputs": {"MODE": "RAMB36"}}))
    refused("a negative clock", lambda d: d["groups"].append({"block": "Signal", "name": "x", "inputs": {"CLOCK_FREQ": -1}}))
    refused("the catalogue as a group", lambda d: d["groups"].append({"block": "Parts"}))
    refused("a negative count", lambda d: d["groups"][0].update(count=-1))
    refused("no groups", lambda d: d.pop("groups"))

for template in ("blank", "controller", "network", "radio", "vision"):
    text = subprocess.run([sys.argv[1], "new", "--template", template], check=True, capture_output=True, text=True).stdout
    problems = [f"{'/'.join(map(str, e.path))}: {e.message[:200]}" for e in validator.iter_errors(json.loads(without_comments(text)))]
    assert not problems, f"zelm new --template {template}: {problems}"
# What the commands print with --json, against the schema that the tool gives for that.
output = json.loads(subprocess.run([sys.argv[1], "schema", "--output"], check=True, capture_output=True).stdout)
jsonschema.Draft202012Validator.check_schema(output)


def check_output(name, *arguments, maybe=()):
    printed = json.loads(subprocess.run([sys.argv[1], *arguments, "--json"], check=True, capture_output=True).stdout)
    one = jsonschema.Draft202012Validator({"$defs": output["$defs"], "$ref": "#/$defs/" + name})
    problems = [f"{'/'.join(map(str, e.path))}: {e.message[:200]}" for e in one.iter_errors(printed)]
    assert not problems, f"{' '.join(arguments)}: {problems[:5]}"
    assert printed["format"] == 1 and jsonschema.Draft202012Validator(output).is_valid(printed), arguments
    for field in printed:
        without = {key: value for key, value in printed.items() if key != field}
        assert not one.is_valid(without) or field in ("part", "ambientTemperature", "staticUncertainty", "period", "remarks", "value", *maybe), f"{name}: {field} may be missing"
    assert not one.is_valid({**printed, "format": 2}), f"{name}: another format is accepted"
    assert not one.is_valid({**printed, "another": 1}), f"{name}: another field is accepted"


for path in sys.argv[2:]:
    check_output("estimate", "estimate", path)
for by in ("in", "block", "rail", "clock"):
    check_output("estimateBy", "estimate", sys.argv[2], "--by", by)
check_output("sweep", "sweep", sys.argv[2], "--vary", "environment.ambientTemperature=20,40")
check_output("sweep", "sweep", sys.argv[2], "--vary", "environment.ambientTemperature=0:125:5", "--columns", "total@MAX,junction")
check_output("solve", "solve", sys.argv[2], "--vary", "environment.ambientTemperature=0:100", "--until", "junction@MAX <= 85 C")
check_output("sensitivity", "sensitivity", sys.argv[2], "--top", "200")
check_output("fit", "fit", sys.argv[2])
for name, points in (("early.json", "16"), ("first.json", "2000")):
    check_output("sample", "sample", [path for path in sys.argv[2:] if path.endswith(name)][0], "--points", points)
check_output("diff", "diff", sys.argv[2], sys.argv[3])
with tempfile.TemporaryDirectory() as folder:
    dump, design = f"{folder}/run.vcd", f"{folder}/design.json"
    with open(dump, "w", encoding="utf-8") as file:
        file.write("$scope module t $end $scope module a $end $var wire 1 ! q $end $upscope $end $upscope $end\n"
                   "$enddefinitions $end\n#0\n0!\n#10\n1!\n#20\n")
    with open(design, "w", encoding="utf-8") as file:
        file.write('{"groups": [{"block": "Signal", "in": "a"}, {"block": "Bram"}]}')
    check_output("importActivity", "import", "activity", dump, "--design", design)
for block in subprocess.run([sys.argv[1], "blocks"], check=True, capture_output=True, text=True).stdout.split("\n")[2:-1]:
    check_output("cells", "cells", block.split()[0])
for what in ("total", "junction", "rail:VCCINT", "static@MAX"):
    check_output("explain", "explain", sys.argv[2], what, "--depth", "4", maybe=("quantity", "formula", "origin", "cut"))
check_output("calc", "calc", "Bram", "--bits")
for name in ("blocks", "parts", "standards"):
    check_output(name, name)
print(f"{len(sys.argv) - 2} designs are valid, and mistakes in them are not")
