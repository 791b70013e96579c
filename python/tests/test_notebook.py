"""The notebook in docs/ runs, and its numbers are still those that it was stored with."""

import ast
import json
import os

import pytest

from conftest import ROOT


def last_value(cell, names):
    """Runs a cell as a notebook does: what its last line comes to, if that is an expression."""
    tree = ast.parse(cell)
    last = tree.body.pop() if isinstance(tree.body[-1], ast.Expr) else None
    exec(compile(tree, "cell", "exec"), names)
    return eval(compile(ast.Expression(last.value), "cell", "eval"), names) if last else None


def test_the_notebook_runs_and_tells_what_it_told(capsys, monkeypatch):
    pytest.importorskip("pandas", reason="needs python3-pandas")
    pytest.importorskip("matplotlib", reason="needs python3-matplotlib").use("Agg")
    monkeypatch.chdir(ROOT / "docs")
    book = json.loads((ROOT / "docs/notebook.ipynb").read_text())
    names = {}
    compared = drawn = 0
    for cell in book["cells"]:
        if cell["cell_type"] != "code":
            continue
        value = last_value("".join(cell["source"]), names)
        printed = capsys.readouterr().out
        for output in cell["outputs"]:
            if output["output_type"] == "stream":
                assert printed == "".join(output["text"])
                compared += 1
            elif output["output_type"] == "execute_result" and type(value).__module__.startswith("zelm"):
                assert value._repr_html_() == "".join(output["data"]["text/html"])
                compared += 1
            elif "image/png" in output.get("data", {}):
                drawn += 1
    assert compared >= 4 and drawn == 2
    assert os.path.basename(names["design"].path) == "first.json"
