#!/usr/bin/env python3
"""Sees that what is checked in of the tool's output is what the tool prints: check_docs.py ZELM SOURCE_DIR"""
import filecmp
import json
import pathlib
import shlex
import subprocess
import sys
import tempfile

zelm, source = sys.argv[1], pathlib.Path(sys.argv[2])


def run(*arguments):
    return subprocess.run([zelm, *map(str, arguments)], check=True, capture_output=True, text=True).stdout


with tempfile.TemporaryDirectory() as generated:
    run("docs", generated)
    names = sorted(path.name for path in pathlib.Path(generated).iterdir())
    assert names == sorted(path.name for path in (source / "docs/cells").iterdir()), "docs/cells has other pages: make docs"
    _, differing, unreadable = filecmp.cmpfiles(generated, source / "docs/cells", names, shallow=False)
    assert not differing + unreadable, f"docs/cells differs, make docs: {differing + unreadable}"
assert run("schema") == (source / "docs/design.schema.json").read_text(), "docs/design.schema.json differs: make docs"

# The README shows parts of an estimate, paragraph by paragraph.
printed = run("estimate", source / "examples/first.json")
sample = (source / "README.md").read_text().split("```text\n", 1)[1].split("```", 1)[0]
paragraphs = [paragraph.strip("\n") for paragraph in sample.split("\n\n")]
assert len(paragraphs) > 2
for paragraph in paragraphs:
    assert paragraph in printed, f"README.md shows what the tool doesn't print:\n{paragraph}\n--- but\n{printed}"

# What docs/ask.md shows, command by command. Its new design differs from the example as the text says.
with tempfile.TemporaryDirectory() as folder:
    design = (source / "examples/first.json").read_text()
    changed = design
    for old, new in (('"NUM_BRAMS": 48', '"NUM_BRAMS": 96'), ("250 MHz", "300 MHz"), ("parallel bus", "camera bus")):
        assert old in changed
        changed = changed.replace(old, new)
    (pathlib.Path(folder) / "design.json").write_text(design)
    (pathlib.Path(folder) / "new.json").write_text(changed)
    samples = [block.split("```", 1)[0].split("\n", 1) for block in (source / "docs/ask.md").read_text().split("```text\n$ zelm ")[1:]]
    assert len(samples) > 4
    for command, shown in samples:
        printed = subprocess.run([zelm, *shlex.split(command)], cwd=folder, check=True, capture_output=True, text=True).stdout
        lines = [line.rstrip() for line in printed.rstrip().split("\n")]
        assert shown.rstrip().split("\n") == lines, f"docs/ask.md differs from what zelm {command} prints:\n{printed}"

# The example of the design file is one that the tool takes without a warning.
with tempfile.TemporaryDirectory() as folder:
    design = pathlib.Path(folder) / "design.json"
    design.write_text((source / "docs/design-file.md").read_text().split("```json\n", 1)[1].split("```", 1)[0])
    warnings = json.loads(run("estimate", "--json", design))["warnings"]
    assert not warnings, f"docs/design-file.md's example: {warnings}"

# What docs/explain.md shows, all of it.
runs = 0
for block in (source / "docs/explain.md").read_text().split("```text\n")[1:]:
    command, shown = block.split("```", 1)[0].split("\n", 1)
    assert command.startswith("$ zelm "), command
    result = subprocess.run([zelm, *shlex.split(command.removeprefix("$ zelm "))], cwd=source, check=True,
                            capture_output=True, text=True).stdout
    assert shown == result, f"docs/explain.md: {command} prints\n{result}\ninstead of\n{shown}"
    runs += 1
assert runs == 3
print(f"{len(names)} pages, the schema and {len(paragraphs)} paragraphs of the README are the tool's")
