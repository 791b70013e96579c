"""A fresh virtual environment, with the system's packages and no network, installs the package from the source tree
and runs it with its own library and data. The module comes from the build that is being tested, which ZELM_BUILD names:
what pip does, what the wheel holds and that it runs is tried here, not that CMake compiles it once more.
"""

import json
import os
import subprocess
import sys

from conftest import ROOT


def run(*words, **environment):
    kept = {name: value for name, value in os.environ.items() if name not in ("PYTHONPATH", "QTA_DATADIR")}
    return subprocess.run([str(word) for word in words], capture_output=True, text=True, env={**kept, **environment},
                          cwd=environment.get("HOME", "/"))


def test_a_fresh_environment_installs_and_runs_it(tmp_path, printed):
    made = run(sys.executable, "-m", "venv", "--system-site-packages", tmp_path / "venv")
    assert made.returncode == 0, made.stdout + made.stderr
    python = tmp_path / "venv/bin/python"
    installed = run(python, "-m", "pip", "install", "--no-index", "--no-build-isolation", ROOT, HOME=str(tmp_path),
                    ZELM_BUILD=os.environ["ZELM_BUILD"])
    assert installed.returncode == 0, installed.stdout + installed.stderr
    script = """
import json, sys, zelm
result = zelm.estimate(sys.argv[1])
power = zelm.block("Signal").calc(SIGNAL_COUNT=[1, 2]).SIGNAL_POWER
print(json.dumps([zelm.__file__, zelm.data_directory(), zelm.__version__, result.to_dict(), power.tolist()]))
libraries = [line.split()[-1] for line in open("/proc/self/maps") if "libzelmorvane" in line]
print(json.dumps(sorted(set(libraries))))
"""
    done = run(python, "-c", script, ROOT / "examples/first.json", HOME=str(tmp_path))
    assert done.returncode == 0, done.stderr
    answer, libraries = map(json.loads, done.stdout.splitlines())
    file, data, version, result, power = answer
    inside = str(tmp_path / "venv")
    assert file.startswith(inside) and data.startswith(inside) and libraries and libraries[0].startswith(inside)
    expected = printed("estimate", ROOT / "examples/first.json")
    assert result == expected and version == expected["version"]
    assert power[1] > power[0] > 0
    module = run(python, "-m", "zelm", "estimate", ROOT / "examples/first.json", "--json", HOME=str(tmp_path))
    assert json.loads(module.stdout) == expected
