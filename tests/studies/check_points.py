#!/usr/bin/env python3
"""Reads what `zelm sweep` writes with the readers that people have: check_points.py ZELM DESIGN.

HDF5 by h5py and pandas, against the CSV of the same sweep."""
import csv
import io
import math
import subprocess
import sys
import tempfile

try:
    import h5py
    import numpy
    import pandas
except ImportError as missing:
    print(f"skipped: {missing}; Debian has it in python3-h5py and python3-pandas")
    sys.exit(77)

zelm, design = sys.argv[1:3]
VARIED = ["--vary", "environment.ambientTemperature=20:39.5:0.5", "--vary", "environment.thetaJA=1,40", "--vary",
          "device.speedGrade=1,2"]
COLUMNS = ["--columns", "total@TYP,junction@MAX,rail:VCCINT,group:rtl/wires"]


def run(*arguments):
    return subprocess.run([zelm, "sweep", design, *VARIED, *arguments], check=True, capture_output=True, text=True).stdout


with tempfile.TemporaryDirectory() as folder:
    def written(name, *arguments):
        run(*arguments, f"{folder}/{name}")
        with open(f"{folder}/{name}", "rb") as file:
            return file.read()

    rows = list(csv.reader(io.StringIO(run(*COLUMNS, "--csv"))))
    bytes_of_one = written("one.h5", *COLUMNS, "--jobs", "1", "--hdf5")
    assert written("two.h5", *COLUMNS, "--jobs", "2", "--hdf5") == bytes_of_one, "bytes depend on threads"
    assert written("resumed.h5", *COLUMNS, "--resume") == bytes_of_one, "bytes depend on how the rows came"
    with h5py.File(f"{folder}/one.h5") as file:
        names = list(file.attrs["dataSets"])
        assert sorted(names) == sorted(file), names
        assert names[-1] == "group:rtl|wires@TYP", names
        known = [file[name].attrs for name in names]
        headings = [f"{each['name']} [{each['unit']}]" if each["unit"] else each["name"] for each in known]
        assert headings == rows[0], (headings, rows[0])
        assert [file[name].attrs["kind"] for name in names] == ["setting"] * 3 + ["quantity"] * 4
        assert [file[name].dtype.kind for name in names] == ["f", "i", "S", "f", "f", "f", "f"], [file[n].dtype for n in file]
        for name in names:
            assert file[name].chunks and file[name].compression == "gzip" and file[name].shuffle, name
        for attribute in ("version", "designSha256", "dataFiles", "variations", "columns", "points"):
            assert attribute in file.attrs, attribute
        assert file.attrs["points"] == len(rows) - 1 and file.attrs["complete"] == 1
        assert any(text.endswith("ZelmOrvaneStaticData.cfg") for text in file.attrs["dataFiles"])
        frame = pandas.DataFrame({name: file[name][:] for name in names})
    assert len(frame) == len(rows) - 1 == 160, len(frame)
    for column, name in enumerate(frame):
        for row, value in enumerate(frame[name]):
            text = rows[row + 1][column]
            if isinstance(value, bytes):
                assert value.decode() == text, (name, row, value, text)
            elif text == "":
                assert math.isnan(value), (name, row, value)
            else:
                assert float(text) == value, (name, row, value, text)
    assert numpy.isnan(frame["junction@MAX"]).any(), "no point of the sweep runs away"
    lines = pandas.read_json(io.StringIO(run(*COLUMNS, "--jsonl")), lines=True)
    assert numpy.allclose(lines["total@TYP [W]"], frame["total@TYP"], rtol=1e-12, equal_nan=True)
    table = pandas.read_csv(io.StringIO(run(*COLUMNS, "--csv")))
    assert list(table.columns) == rows[0]
