"""Runs the package's tests, or tells why not: run.py PACKAGE-FOLDER package|wheel"""

import importlib.util
import os
import pathlib
import sys


def skip(reason):
    print(f"skipped: {reason}")
    sys.exit(77)


def main():
    folder, part = sys.argv[1:]
    if not folder:
        skip("the module wasn't built, which needs pybind11-dev and python3-dev")
    needed = {"pytest": "python3-pytest", "numpy": "python3-numpy"}
    if part == "wheel":
        needed.update({"pip": "python3-pip", "ensurepip": "python3-venv", "wheel": "python3-wheel",
                       "setuptools": "python3-setuptools"})
    missing = sorted({package for module, package in needed.items() if importlib.util.find_spec(module) is None})
    if missing:
        skip("needs " + ", ".join(missing))
    here = pathlib.Path(__file__).parent
    if part == "package":
        parent = str(pathlib.Path(folder).parent)
        os.environ["PYTHONPATH"] = parent
        sys.path.insert(0, parent)
    import pytest

    wheel = str(here / "test_wheel.py")
    sys.exit(pytest.main(["-q", "-rs", wheel] if part == "wheel" else ["-q", "-rs", f"--ignore={wheel}", str(here)]))


main()
