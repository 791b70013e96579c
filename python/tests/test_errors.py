"""An error of each kind, with the tool's words."""

import json
import subprocess
import sys

import pytest

import zelm
from conftest import ROOT

FIRST = ROOT / "examples/first.json"


def elsewhere(script, *words):
    """In a process of its own, which has its own data."""
    done = subprocess.run([sys.executable, "-c", script, *map(str, words)], capture_output=True, text=True)
    assert done.returncode == 0, done.stderr
    return done.stdout.strip()


def told(tool, *words):
    code, _, err = tool(*words)
    assert code == 2, err
    return err.strip().removeprefix("zelm: ")


def test_kinds_of_errors():
    assert issubclass(zelm.DesignError, zelm.Error) and issubclass(zelm.DataError, zelm.Error)
    assert issubclass(zelm.LimitError, zelm.Error) and issubclass(zelm.Error, ValueError)


def test_a_wrong_design_is_told_as_by_the_tool(tool, tmp_path):
    file = tmp_path / "wrong.json"
    file.write_text('{"groups": [\n  {"block": "Signal", "inputs": {"CLOCK_FRQ": 3}}\n]}')
    with pytest.raises(zelm.DesignError) as error:
        zelm.estimate(file)
    assert str(error.value) == told(tool, "estimate", file)
    assert error.value.nearest == ["CLOCK_FREQ"]
    with pytest.raises(zelm.DesignError) as error:
        zelm.Design(file)
    assert str(error.value) == told(tool, "estimate", file)


def test_a_dict_has_no_lines():
    for take in (zelm.estimate, zelm.Design):
        with pytest.raises(zelm.DesignError, match=r"^design: groups\[0\].block: there is no block Brm; did you mean Bram"):
            take({"groups": [{"block": "Brm"}]})


@pytest.mark.parametrize("run, words", [
    (lambda: zelm.sweep(FIRST, vary=["environment.ambientTemprature=0"]), ["sweep", FIRST, "--vary", "environment.ambientTemprature=0"]),
    (lambda: zelm.sweep(FIRST, vary=[]), ["sweep", FIRST]),
    (lambda: zelm.sweep(FIRST, vary="rails.VCCINT=1", jobs=5000), ["sweep", FIRST, "--vary", "rails.VCCINT=1", "--jobs", "5000"]),
    (lambda: zelm.explain(FIRST, "rail:VCCIN"), ["explain", FIRST, "rail:VCCIN"]),
    (lambda: zelm.solve(FIRST, "environment.thetaJA=1:2", "junction is 3"), ["solve", FIRST, "--vary", "environment.thetaJA=1:2", "--until", "junction is 3"]),
    (lambda: zelm.fit(FIRST, package="none"), ["fit", FIRST, "--package", "none"]),
    (lambda: zelm.sensitivity(FIRST, span="200%"), ["sensitivity", FIRST, "--span", "200%"]),
    (lambda: zelm.estimate("none/such.json"), ["estimate", "none/such.json"]),
    (lambda: zelm.estimate(FIRST, by="rails"), ["estimate", FIRST, "--by", "rails"]),
    (lambda: zelm.diff(FIRST, FIRST, fail_above="much"), ["diff", FIRST, FIRST, "--fail-above", "much"]),
], ids=str)
def test_wrong_wishes_are_told_as_by_the_tool(run, words, tool):
    with pytest.raises(zelm.DesignError) as error:
        run()
    assert str(error.value) == told(tool, *words).removesuffix(" (--help tells more)")


def test_data_errors(tool, tmp_path):
    script = """
import sys, zelm
try:
    zelm.data_directory(sys.argv[1])
    zelm.estimate(sys.argv[2])
except zelm.DataError as error:
    print(error)
"""
    assert elsewhere(script, tmp_path, FIRST) == told(tool, "estimate", FIRST, "--datadir", tmp_path)
    (tmp_path / "powercfg/orvane").mkdir(parents=True)
    assert elsewhere(script, tmp_path, FIRST) == told(tool, "estimate", FIRST, "--datadir", tmp_path)
    for file in (ROOT / "data/powercfg/orvane").iterdir():
        (tmp_path / "powercfg/orvane" / file.name).write_text(file.read_text())
    (tmp_path / "uncertainty.json").write_text((ROOT / "data/uncertainty.json").read_text())
    (tmp_path / "powercfg/orvane/ZelmOrvaneSignalData.cfg").write_text("ZelmOrvaneSignalData : { PER_NODE_CAP = ; }")
    assert elsewhere(script, tmp_path, FIRST) == told(tool, "estimate", FIRST, "--datadir", tmp_path)
    script = script.replace("zelm.estimate(sys.argv[2])", "zelm.sweep(sys.argv[2], vary='rails.VCCINT=0.8,0.81')")
    assert "expected settings of the form" in elsewhere(script, tmp_path, FIRST)


def test_data_are_chosen_before_they_are_used():
    script = """
import sys, zelm
assert zelm.data_directory(sys.argv[1]) == sys.argv[1]
zelm.estimate(sys.argv[2])
assert zelm.data_directory() == zelm.data_directory(sys.argv[1]) == sys.argv[1]
try:
    zelm.data_directory(sys.argv[3])
except zelm.DataError as error:
    print(error)
"""
    answer = elsewhere(script, ROOT / "data", FIRST, ROOT)
    assert answer == f"data_directory: the data of {ROOT / 'data'} are in use already; choose others before the first estimate"


def test_limits(tool, tmp_path):
    design = zelm.Design(FIRST)
    design["budgets"] = {"totalPower": "1 W"}
    design.save(tmp_path / "tight.json")
    code, out, err = tool("estimate", tmp_path / "tight.json", "--check", "--json")
    assert code == 1
    with pytest.raises(zelm.LimitError) as error:
        zelm.estimate(tmp_path / "tight.json", check=True)
    assert str(error.value) == err.strip().removeprefix("zelm: ")
    assert error.value.result.to_dict() == json.loads(out)
    assert zelm.estimate(tmp_path / "tight.json").budgets[0].broken
    design["groups[line buffers].inputs.NUM_BRAMS"] = 900
    with pytest.raises(zelm.LimitError, match="grows from .* to .*, which is more than 2%") as error:
        zelm.diff(FIRST, design, fail_above="2%")
    assert error.value.result.quantities[0].change > 0


def test_python_m_is_the_tool(tool):
    words = ["estimate", str(FIRST)]
    done = subprocess.run([sys.executable, "-m", "zelm", *words], capture_output=True, text=True)
    assert (done.returncode, done.stdout) == tool(*words)[:2]


def test_an_interrupt_ends_a_sweep():
    script = """
import os, signal, sys, threading, zelm
threading.Timer(0.3, lambda: os.kill(os.getpid(), signal.SIGINT)).start()
try:
    zelm.sweep(sys.argv[1], vary=["rails.VCCINT=0.7:0.9:0.0001", "environment.ambientTemperature=0:50:0.01"])
except KeyboardInterrupt:
    print("ended")
assert signal.getsignal(signal.SIGINT) is signal.default_int_handler
"""
    assert elsewhere(script, FIRST) == "ended"
