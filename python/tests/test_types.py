"""Types, stubs and signatures agree with what they describe."""

import ast
import importlib.util
import inspect
import re
import subprocess
import sys

import pytest

import zelm
from conftest import ROOT
from zelm import _zelm


def test_mypy_is_content(tmp_path):
    if importlib.util.find_spec("mypy") is None:
        pytest.skip("needs python3-mypy")
    use = tmp_path / "use.py"
    use.write_text("""import zelm
result: zelm.Estimate = zelm.estimate("design.json", check=True)
design = zelm.Design.load("design.json")
design["name"] = "x"
watts: float = design.value("total@MAX")
cells: list[zelm.Cell] = zelm.block("Signal").cells
""")
    done = subprocess.run([sys.executable, "-m", "mypy", "--strict", f"--cache-dir={tmp_path}",
                           str(ROOT / "python/zelm"), str(use)], capture_output=True, text=True, cwd=ROOT / "python")
    assert done.returncode == 0, done.stdout + done.stderr


def names_of(thing):
    return {name for name in vars(thing) if not name.startswith("_")}


def test_the_stub_has_the_modules_names_and_arguments():
    stub = ast.parse((ROOT / "python/zelm/_zelm.pyi").read_text())
    told = {}
    for node in stub.body:
        if isinstance(node, ast.FunctionDef):
            told[node.name] = [argument.arg for argument in node.args.args]
        elif isinstance(node, ast.AnnAssign):
            told[node.target.id] = None
        elif isinstance(node, ast.ClassDef):
            told[node.name] = {method.name: [argument.arg for argument in method.args.args] for method in node.body}
    assert set(told) == names_of(_zelm)
    for name, stubbed in told.items():
        if isinstance(stubbed, dict):
            of_class = getattr(_zelm, name)
            assert {method for method in stubbed if method != "__init__"} == names_of(of_class)
            for method, arguments in stubbed.items():
                if not isinstance(getattr(of_class, method), property):
                    assert arguments == arguments_of(getattr(of_class, method)), f"{name}.{method}"
        elif stubbed is not None:
            assert stubbed == arguments_of(getattr(_zelm, name)), name


def arguments_of(function):
    """As the module's own documentation begins: name(first: str, second: int = 1) -> ..."""
    if not function.__doc__ or "(" not in function.__doc__:
        return ["self"]
    signature = function.__doc__.splitlines()[0]
    return re.findall(r"(?:\(|, )(\w+): ", signature)


@pytest.mark.parametrize("name", ["estimate", "sweep", "explain", "diff", "solve", "fit", "sample", "sensitivity"])
def test_functions_have_the_tools_options(name, tool):
    printed = tool(name, "--help")[1]
    options = {option.replace("-", "_") for option in re.findall(r"^\s+(?:-\w,\s*)?--([a-z0-9-]+)", printed, flags=re.M)}
    about_output = {"help", "json", "csv", "datadir", "verbose", "version", "progress_after",
                    "jsonl", "hdf5", "resume"}
    keywords = set(inspect.signature(getattr(zelm, name)).parameters) - {"design", "old", "new", "what"}
    assert keywords == options - about_output


def test_everything_is_documented():
    for name in zelm.__all__:
        assert inspect.getdoc(getattr(zelm, name)), name
    for name in ("calc", "run", "main", "data_directory", "Design", "Result"):
        assert getattr(_zelm, name).__doc__, name
