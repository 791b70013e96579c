"""What the tests share: the tool, which the package is held against."""

import json
import os
import pathlib
import subprocess

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
EXAMPLES = sorted((ROOT / "examples").glob("*.json"))


@pytest.fixture(scope="session")
def tool():
    """Runs the tool with some words: its exit code, what it prints, what it complains of."""

    def run(*words):
        done = subprocess.run([os.environ["ZELM_TOOL"], *map(str, words)], capture_output=True, text=True)
        return done.returncode, done.stdout, done.stderr

    return run


@pytest.fixture(scope="session")
def printed(tool):
    """What the tool prints as JSON."""

    def run(*words):
        code, out, err = tool(*words, "--json")
        assert out, f"{words}: exit code {code}, {err}"
        return json.loads(out)

    return run
