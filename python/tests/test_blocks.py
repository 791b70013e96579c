"""Blocks over arrays: the tool's numbers to the last bit, and those of loops."""

import json
import os
import random
import subprocess
import sys
import threading
import warnings

import numpy
import pytest

import zelm
from conftest import ROOT

# Random inputs that are held against the tool, which takes a process for each: more of them for a thorough look.
CALCS = int(os.environ.get("ZELM_TEST_CALCS", "184"))


def bits(value):
    """A cell's value as `calc --bits` has it."""
    if isinstance(value, numpy.float32):
        return f"{value.view(numpy.uint32):08x}"
    return value if value is None or isinstance(value, str) else int(value)


def same(one, other):
    """The same elements to the last bit, and the same unset ones."""
    one, other = numpy.ma.asarray(one), numpy.ma.asarray(other)
    if one.dtype != other.dtype or not numpy.array_equal(numpy.ma.getmaskarray(one), numpy.ma.getmaskarray(other)):
        return False
    if one.dtype == object:
        return one.tolist() == other.tolist()
    return numpy.array_equal(one.data.view(numpy.uint32), other.data.view(numpy.uint32))


def random_inputs(block, dice, count):
    """Legal inputs of a block, some of them, as columns of Python's values."""
    columns = {}
    for cell in block.cells:
        if cell.kind != "input" or dice.random() < 0.3:
            continue
        if cell.type == "string":
            words = [word.strip() for word in cell.legal.replace(" or ", ", ").split(",")] if " of " not in cell.legal else []
            if words and cell.default in words:
                columns[cell.name] = [dice.choice(words) for _ in range(count)]
        elif isinstance(cell.default, (int, float)):
            spread = [cell.default * dice.choice((0.5, 0.75, 1.0, 1.25)) for _ in range(count)]
            columns[cell.name] = [round(value) for value in spread] if cell.type == "int" else [
                float(numpy.float32(value)) for value in spread]
    return columns


@pytest.fixture(autouse=True)
def quiet():
    with warnings.catch_warnings():
        warnings.simplefilter("ignore", zelm.InputWarning)
        yield


def test_random_inputs_give_what_the_tool_calculates(printed):
    names = zelm.blocks()
    each = max(1, CALCS // len(names))
    compared = 0
    for name in names:
        block = zelm.block(name)
        columns = random_inputs(block, random.Random(name), each)
        out = block.calc(cells="all", **{cell: numpy.array(values) for cell, values in columns.items()})
        for i in range(each):
            given = {cell: values[i] for cell, values in columns.items()}
            words = [f"{cell}={value!r}" if isinstance(value, float) else f"{cell}={value}" for cell, value in given.items()]
            for entry in printed("calc", name, "--bits", *words)["cells"]:
                value = out[entry["cell"]][i] if columns else out[entry["cell"]]
                value = None if value is numpy.ma.masked else value
                expected = entry.get("bits", entry["value"])
                assert bits(value) == expected, f"{name} {' '.join(words)}: {entry['cell']}"
                compared += 1
    assert compared > 46 * each


def test_arrays_equal_loops():
    evaluations = 0
    for name in zelm.blocks():
        block = zelm.block(name)
        count = max(1, 10_000 // 46)
        columns = random_inputs(block, random.Random(name + "loops"), count)
        arrays = block.calc(**{cell: numpy.array(values) for cell, values in columns.items()})
        if not columns:
            continue
        for i in range(count):
            loop = block.calc(**{cell: values[i] for cell, values in columns.items()})
            for cell, value in loop.items():
                element = arrays[cell][i]
                element = None if element is numpy.ma.masked else element
                assert bits(element) == bits(value), f"{name} {[(c, v[i]) for c, v in columns.items()]}: {cell}"
            evaluations += 1
    assert evaluations > 9_000


VECTORS = """
import json, sys, numpy, warnings, zelm
warnings.simplefilter("ignore", zelm.InputWarning)
root, number = sys.argv[1:]
import pathlib
folders = sorted(pathlib.Path(root).glob("*/" + number))
zelm.data_directory(":".join(map(str, folders)))
UNSET = {"float": "7f7fffff", "int": 2147483647, "string": "UninitializedString"}
def given(value, kind):
    return float(numpy.uint32(int(value, 16)).view(numpy.float32)) if kind == "float" else value
def told(value, kind):
    if value is None or value is numpy.ma.masked:
        return UNSET[kind]
    if kind == "float":
        return "7fc00000" if numpy.isnan(value) else f"{value.view(numpy.uint32):08x}"
    return value if kind == "string" else int(value)
cases, refused = 0, []
for folder in folders:
    vectors = json.loads((folder / "cases.json").read_text())
    kinds = dict(vectors["cells"])
    block = zelm.block(vectors["block"])
    usable = [case for case in vectors["cases"]
              if all(value not in UNSET.values() and (kinds[cell] != "float" or numpy.isfinite(given(value, "float")))
                     for cell, value in case["in"].items())]
    inputs = sorted({cell for case in usable for cell in case["in"]})
    columns = {cell: [given(case["in"][cell], kinds[cell]) if cell in case["in"] else None for case in usable]
               for cell in inputs}
    try:
        out = block.calc(cells="all", **columns)
    except zelm.DataError:
        refused.append(block.name)
        continue
    for i, case in enumerate(usable):
        for (cell, kind), expected in zip(vectors["cells"], case["out"]):
            value = out[cell][i] if inputs else out[cell]
            assert told(value, kind) == expected, (folder, i, case["in"], cell, told(value, kind), expected)
        cases += 1
print(json.dumps([cases, refused]))
"""


@pytest.mark.parametrize("number", ["0", "1"])
def test_vectors_of_an_independent_implementation(number):
    """In a process of its own for each set of tables. Unset inputs are None among others' values."""
    done = subprocess.run([sys.executable, "-c", VECTORS, str(ROOT / "tests/vectors"), number], capture_output=True,
                          text=True)
    assert done.returncode == 0, done.stderr
    cases, refused = json.loads(done.stdout)
    assert cases > 800 and len(refused) < 10, refused  # where a random table is empty, which the host doesn't load


def test_cells_say_what_they_are(printed):
    for name in ("Signal", "Bram", "Selv"):
        block = zelm.block(name)
        entries = printed("cells", name)["cells"]
        assert [(cell.name, cell.kind, cell.type, cell.unit, cell.meaning) for cell in block.cells] == [
            (entry["cell"], entry["kind"], entry["type"], entry["unit"], entry["meaning"]) for entry in entries]
    frequency = zelm.block("Signal").cell("CLOCK_FREQ")
    assert (frequency.kind, frequency.type, frequency.unit, frequency.default) == ("input", "float", "MHz", 200.0)
    assert frequency.legal.startswith("from 0")
    assert zelm.block("Signal").cell("SIGNAL_POWER").goes_to == "VCCINT"
    assert zelm.block("Signal").cell("VCCINT").default == pytest.approx(0.72)


def test_inputs_are_broadcast():
    block = zelm.block("Signal")
    counts, clocks = numpy.arange(5), numpy.array([[100.0], [200.0], [300.0]])
    out = block.calc(SIGNAL_COUNT=counts, CLOCK_FREQ=clocks, DRIVER_TYPE="BRAM")
    assert out.SIGNAL_POWER.shape == (3, 5) and out.SIGNAL_POWER.dtype == numpy.float32
    for row, clock in enumerate(clocks[:, 0]):
        for column, count in enumerate(counts):
            alone = block.calc(SIGNAL_COUNT=int(count), CLOCK_FREQ=clock, DRIVER_TYPE="BRAM")
            assert out.SIGNAL_POWER[row, column] == alone.SIGNAL_POWER
    assert list(out) == ["SIGNAL_POWER"] and len(out) == 1
    assert len(block.calc(SIGNAL_COUNT=numpy.arange(0)).SIGNAL_POWER) == 0
    with pytest.raises(ValueError, match="[Bb]roadcast|shape mismatch"):
        block.calc(SIGNAL_COUNT=numpy.arange(5), CLOCK_FREQ=numpy.arange(4.0))


def test_unset_is_none_nan_or_a_mask():
    block = zelm.block("Signal")
    default = block.calc()
    assert isinstance(default.SIGNAL_POWER, numpy.float32)
    assert block.calc(CLOCK_FREQ=None, DRIVER_TYPE=None) == default
    halves = numpy.array([100.0, numpy.nan, 100.0])
    out = block.calc(CLOCK_FREQ=halves, cells="all")
    assert out.CLOCK_FREQ.tolist() == [100.0, 200.0, 100.0]
    assert out.SIGNAL_POWER[1] == default.SIGNAL_POWER
    assert same(out.SIGNAL_POWER, block.calc(CLOCK_FREQ=numpy.ma.masked_array([100.0, 7.0, 100.0], [0, 1, 0])).SIGNAL_POWER)
    assert same(out.SIGNAL_POWER, block.calc(CLOCK_FREQ=[100, None, "100 MHz"]).SIGNAL_POWER)
    texts = block.calc(DRIVER_TYPE=numpy.array(["BRAM", None], dtype=object), cells=["DRIVER_TYPE"]).DRIVER_TYPE
    assert texts.tolist() == ["BRAM", "OTHER"]


def test_cells_that_no_formula_asked_for_are_none_or_masked():
    block = zelm.block("Ddrmc")
    asked = ["READ_ONLY_DATARATE", "DATA_WIDTH_STR"]
    assert list(block.calc(cells=asked).values()) == [None, None]
    name = next(cell.name for cell in block.cells if cell.kind == "input" and cell.type == "float")
    out = block.calc(cells=asked, **{name: numpy.array([numpy.nan, numpy.nan])})
    assert out.READ_ONLY_DATARATE.mask.tolist() == [True, True]
    assert numpy.isnan(out.READ_ONLY_DATARATE.data).all() and out.READ_ONLY_DATARATE.dtype == numpy.float32
    assert out.DATA_WIDTH_STR.mask.tolist() == [True, True] and out.DATA_WIDTH_STR.data.tolist() == [None, None]


def test_what_is_doubtful_is_a_warning(tool):
    block = zelm.block("Signal")
    with warnings.catch_warnings(record=True) as caught:
        warnings.simplefilter("always")
        block.calc(CLOCK_FREQ=numpy.array([100.0, 3e8, -1.0]), DRIVER_TYPE="NONE_SUCH")
    told = {str(warning.message) for warning in caught}
    assert {warning.category for warning in caught} == {zelm.InputWarning} and caught[0].filename == __file__
    for words in (["CLOCK_FREQ=3e8"], ["CLOCK_FREQ=-1"], ["DRIVER_TYPE=NONE_SUCH"]):
        complaint = tool("calc", "Signal", *words)[2].strip().removeprefix("zelm: warning: ")
        assert complaint in told
    assert len(told) == 3


@pytest.mark.parametrize("inputs, words", [
    ({"CLOCK_FRQ": 1}, ["CLOCK_FRQ=1"]),
    ({"SIGNAL_COUNT": 2.5}, ["SIGNAL_COUNT=2.5"]),
    ({"SIGNAL_COUNT": 1 << 40}, ["SIGNAL_COUNT=1099511627776"]),
    ({"SIGNAL_COUNT": 2147483647}, ["SIGNAL_COUNT=2147483647"]),
    ({"CLOCK_FREQ": float("inf")}, ["CLOCK_FREQ=inf"]),
    ({"CLOCK_FREQ": "250 V"}, ["CLOCK_FREQ=250 V"]),
    ({"SIGNAL_POWER": 1.0}, ["SIGNAL_POWER=1"]),
    ({"DRIVER_TYPE": "UninitializedString"}, ["DRIVER_TYPE=UninitializedString"]),
])
def test_mistakes_are_the_tools(inputs, words, tool):
    with pytest.raises(zelm.DesignError) as error:
        zelm.block("Signal").calc(**{cell: numpy.array([value]) for cell, value in inputs.items()})
    expected = tool("calc", "Signal", *words)[2].strip().removeprefix("zelm: ")
    assert str(error.value).split(", not ")[0] == expected.split(", not ")[0]  # the number itself may look otherwise


def test_unknown_names_carry_the_nearest():
    with pytest.raises(zelm.DesignError, match="there is no block Signl; did you mean Signal") as error:
        zelm.block("Signl")
    assert error.value.nearest == ["Signal"]
    with pytest.raises(zelm.DesignError, match="has no input CLOCK_FRQ") as error:
        zelm.block("Signal").calc(CLOCK_FRQ=300)
    assert error.value.nearest == ["CLOCK_FREQ"]
    with pytest.raises(zelm.DesignError, match="has no cell SIGNAL_POWR") as error:
        zelm.block("Signal").calc(cells=["SIGNAL_POWR"])
    assert error.value.nearest == ["SIGNAL_POWER"]


def test_threads_work_at_the_same_time_and_alike():
    counts = numpy.arange(1_000_000)
    block = zelm.block("Signal")
    expected = block.calc(SIGNAL_COUNT=counts).SIGNAL_POWER
    results = {}
    begun = threading.Event()
    counted = 0

    def work(number):
        begun.set()
        results[number] = zelm.block("Signal").calc(SIGNAL_COUNT=counts).SIGNAL_POWER

    threads = [threading.Thread(target=work, args=(number,)) for number in range(3)]
    for thread in threads:
        thread.start()
    begun.wait()
    while any(thread.is_alive() for thread in threads):
        counted += 1  # this thread goes on: the others hold no lock
    assert counted > 100
    assert all(same(result, expected) for result in results.values()) and len(results) == 3


def test_commands_work_in_threads():
    examples = sorted((ROOT / "examples").glob("*.json")) * 3
    alone = {example: zelm.estimate(example).to_dict() for example in set(examples)}
    results = {}

    def work(number):
        results[number] = zelm.estimate(examples[number]).to_dict()

    threads = [threading.Thread(target=work, args=(number,)) for number in range(len(examples))]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    for number, example in enumerate(examples):
        assert results[number] == alone[example], example
