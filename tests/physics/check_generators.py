#!/usr/bin/env python3
"""Sees that each generated data file is what its script writes, byte for byte: check_generators.py SOURCE_DIR"""
import pathlib
import shutil
import subprocess
import sys
import tempfile

data = pathlib.Path(sys.argv[1]) / "data"
with tempfile.TemporaryDirectory() as scratch:
    copy = pathlib.Path(scratch)
    shutil.copytree(data / "tools", copy / "tools", ignore=shutil.ignore_patterns("__pycache__"))
    (copy / "powercfg/orvane").mkdir(parents=True)
    for script in sorted((copy / "tools").glob("*.py")):
        subprocess.run([sys.executable, "-B", script], check=True)
    written = sorted((copy / "powercfg/orvane").iterdir())
    assert len(written) >= 15, f"only {len(written)} files were written"
    for path in written:
        shipped = data / "powercfg/orvane" / path.name
        assert path.read_bytes() == shipped.read_bytes(), f"{path.name} is not what its script writes: run data/tools/*.py"
        assert "data/tools/" in shipped.read_text().split("{", 1)[0], f"{path.name} doesn't name its script"
print(f"{len(written)} data files are what their scripts write")
