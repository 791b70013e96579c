"""Results are the tool's, whatever way the design comes in, and can be looked at."""

import copy
import json
import math
import pickle
import re

import pytest

import zelm
from conftest import EXAMPLES, ROOT

FIRST = ROOT / "examples/first.json"
VISION = ROOT / "examples/vision.json"


def first():
    """The example as a dict: comments are no JSON."""
    text = FIRST.read_text()
    return json.loads(re.sub(r"^\s*//.*$", "", text, flags=re.M))


@pytest.mark.parametrize("example", EXAMPLES, ids=lambda path: path.stem)
def test_an_estimate_is_what_the_tool_prints(example, printed):
    result = zelm.estimate(example)
    assert result.to_dict() == printed("estimate", example)
    assert zelm.Design(example).estimate(curves=True).to_dict() == result.to_dict()
    assert zelm.estimate(zelm.Design(example).to_dict()).totalWatts == result.totalWatts


STUDIES = [
    (lambda design: zelm.sweep(design, vary=["environment.ambientTemperature=0:80:40", "rails.VCCINT=0.78,0.8"], jobs=1),
     ["sweep", "--vary", "environment.ambientTemperature=0:80:40", "--vary", "rails.VCCINT=0.78,0.8"]),
    (lambda design: zelm.sweep(design, {"environment.ambientTemperature": "0:80:40", "rails.VCCINT": [0.78, 0.8]}),
     ["sweep", "--vary", "environment.ambientTemperature=0:80:40", "--vary", "rails.VCCINT=0.78,0.8"]),
    (lambda design: zelm.sweep(design, "environment.ambientTemperature=0:80:40", columns=["total@MAX", "junction"]),
     ["sweep", "--vary", "environment.ambientTemperature=0:80:40", "--columns", "total@MAX,junction"]),
    (lambda design: zelm.sample(design, points=64, seed=3, method="latin", of="junction@MAX", jobs=2),
     ["sample", "--points", "64", "--seed", "3", "--method", "latin", "--of", "junction@MAX"]),
    (lambda design: zelm.explain(design, "rail:VCCINT@MAX", depth=3), ["explain", "rail:VCCINT@MAX", "--depth", "3"]),
    (lambda design: zelm.diff(VISION, design), ["diff", VISION]),
    (lambda design: zelm.solve(design, vary="environment.thetaJA=0.2:3", until="junction@MAX <= 95 C"),
     ["solve", "--vary", "environment.thetaJA=0.2:3", "--until", "junction@MAX <= 95 C"]),
    (lambda design: zelm.fit(design, temperature="i", jobs=2), ["fit", "--temperature", "i"]),
    (lambda design: zelm.sensitivity(design, of="junction@MAX", span="5%", top=4),
     ["sensitivity", "--of", "junction@MAX", "--span", "5%", "--top", "4"]),
    (lambda design: zelm.estimate(design, by="rail", top=3), ["estimate", "--by", "rail", "--top", "3"]),
]


@pytest.mark.parametrize("study, words", STUDIES, ids=[words[0] + str(i) for i, (_, words) in enumerate(STUDIES)])
def test_a_study_is_what_the_tool_prints(study, words, printed):
    words = [words[0], *words[1:], FIRST] if words[0] == "diff" else [words[0], FIRST, *words[1:]]
    expected = printed(*words)
    assert study(FIRST).to_dict() == expected
    if words[0] != "explain":  # which tells the file of what was typed
        assert study(first()).to_dict() == expected


def test_differences_between_states_of_a_design(printed, tmp_path):
    design = zelm.Design(FIRST)
    design["groups[line buffers].inputs.NUM_BRAMS"] = 128
    design.save(tmp_path / "later.json")
    expected = printed("diff", FIRST, tmp_path / "later.json")
    assert zelm.diff(FIRST, design).to_dict() == expected
    assert zelm.diff(zelm.Design(FIRST), design).to_dict() == expected
    earlier = tmp_path / "earlier.json"
    earlier.write_text(json.dumps(zelm.estimate(FIRST).to_dict()))
    expected = printed("diff", earlier, tmp_path / "later.json")
    assert zelm.diff(zelm.estimate(FIRST), design).to_dict() == expected


def test_other_data_of_the_design_before_are_loaded_in_another_process(printed, tmp_path):
    data = tmp_path / "data"
    folder = data / "powercfg/orvane"
    folder.mkdir(parents=True)
    for file in (ROOT / "data/powercfg/orvane").iterdir():
        text = file.read_text()
        if file.name == "ZelmOrvaneSignalData.cfg":
            text = re.sub(r"OTHER = ([0-9.]+);", "OTHER = 1.0;", text)
        (folder / file.name).write_text(text)
    (data / "uncertainty.json").write_text((ROOT / "data/uncertainty.json").read_text())
    expected = printed("diff", FIRST, FIRST, "--old-datadir", data)
    assert expected["quantities"][0]["change"] != 0
    assert zelm.diff(FIRST, first(), old_datadir=data).to_dict() == expected
    with pytest.raises(zelm.Error, match="no powercfg folder"):
        zelm.diff(FIRST, FIRST, old_datadir=tmp_path / "none")


def test_reports_are_written(tmp_path):
    zelm.estimate(FIRST, html=tmp_path / "page.html", xlsx=str(tmp_path / "book.xlsx"), junit=tmp_path / "budgets.xml")
    assert "</html>" in (tmp_path / "page.html").read_text()
    assert (tmp_path / "book.xlsx").read_bytes().startswith(b"PK")
    assert "<testsuite" in (tmp_path / "budgets.xml").read_text()


def test_fields_are_attributes():
    result = zelm.estimate(FIRST)
    as_dict = result.to_dict()
    assert result.totalWatts == as_dict["totalWatts"] == result["totalWatts"]
    assert result.groups[0].name == as_dict["groups"][0]["name"]
    assert result.groups["line buffers"].block == "Bram"
    assert result.sides["MAX"].rails["VCCINT"].volts == as_dict["sides"][1]["rails"][
        [rail["rail"] for rail in as_dict["sides"][1]["rails"]].index("VCCINT")]["volts"]
    assert "totalWatts" in dir(result) and "totalWatts" in result
    assert [group.name for group in result.groups[:2]] == [group["name"] for group in as_dict["groups"][:2]]
    with pytest.raises(AttributeError, match="there is no field totalWats; there are format, name"):
        result.totalWats
    with pytest.raises(KeyError):
        result.groups["no such group"]
    assert pickle.loads(pickle.dumps(result)) == result == copy.deepcopy(result)
    as_dict["groups"].clear()
    assert len(result.groups) > 0  # a dict is the caller's own


def test_tables_of_notebooks_are_short_and_escaped():
    design = first()
    design["name"] = "<script>"
    page = zelm.estimate(design)._repr_html_()
    assert "<script>" not in page and "&lt;script&gt;" in page
    assert page.count("<tr>") <= 13 and "line buffers" in page


def test_frames():
    pytest.importorskip("pandas", reason="needs python3-pandas")
    result = zelm.estimate(FIRST)
    groups = result.to_frame()
    assert groups.watts.sum() == pytest.approx(result.dynamicWatts)
    assert list(groups.name) == [group.name for group in result.groups]
    rails = result.to_frame("rails")
    assert set(rails.process) == {"TYP", "MAX"}
    typical = rails[(rails.process == "TYP") & (rails.staticCurrentInside.isna())]
    assert typical.watts.sum() == pytest.approx(result.totalWatts)
    assert result.to_frame("budgets").name[0] == result.budgets[0].name
    assert list(result.budgets.to_frame().name) == [budget.name for budget in result.budgets]
    with pytest.raises(ValueError, match="there is no table rail; there are groups, rails, budgets"):
        result.to_frame("rail")
    points = zelm.sweep(FIRST, vary="environment.ambientTemperature=0:80:40").to_frame()
    assert list(points["settings.environment.ambientTemperature"]) == [0, 0, 40, 40, 80, 80]
    assert list(points.process) == ["TYP", "MAX"] * 3
    assert not math.isnan(points.totalWatts.sum())
    for result in (zelm.fit(FIRST), zelm.sensitivity(FIRST), zelm.diff(VISION, FIRST), zelm.explain(FIRST, "total"), zelm.sample(FIRST, points=64),
                   zelm.solve(FIRST, "environment.thetaJA=0.2:3", "junction@MAX <= 95 C")):
        assert len(result.to_frame()) > 0
        assert "<table>" in result._repr_html_()
