#!/usr/bin/env python3
"""Holds `zelm-mpi` on 1, 2 and 3 ranks against one process: check_ranks.py ZELM ZELM_MPI DESIGN."""
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time

zelm, over_ranks, design = sys.argv[1:4]
if not os.path.exists(over_ranks):
    print("skipped: the build found no MPI; Debian has it in libopenmpi-dev and openmpi-bin")
    sys.exit(77)
if not shutil.which("mpirun"):
    print("skipped: no mpirun; Debian has it in openmpi-bin")
    sys.exit(77)
VARIED = ["--vary", "environment.ambientTemperature=0:49.9:0.1", "--vary", "environment.thetaJA=0.5:1:0.1"]
environment = {**os.environ, "OMPI_ALLOW_RUN_AS_ROOT": "1", "OMPI_ALLOW_RUN_AS_ROOT_CONFIRM": "1"}


def mpirun(ranks):
    return ["mpirun", "--oversubscribe", "-n", str(ranks), over_ranks]


def on_ranks(ranks, *arguments):
    return subprocess.run([*mpirun(ranks), *arguments], capture_output=True, env=environment, timeout=120)


expected = subprocess.run([zelm, "sweep", design, *VARIED, "--csv"], check=True, capture_output=True).stdout
for ranks in (1, 2, 3):
    run = on_ranks(ranks, "sweep", design, *VARIED, "--csv")
    assert run.returncode == 0 and run.stdout == expected, f"{ranks} ranks: {run.returncode} {run.stderr[:500]}"
# Samples: points, and bands with what makes them, which need a second round of all ranks.
EARLY = """{"name": "early", "groups": [{"block": "Signal", "name": "wires", "inputs": {"SIGNAL_COUNT": {"low": 900, "high": 1100},
    "CLOCK_FREQ": {"mean": 300, "sd": 15}, "DRIVER_TYPE": {"values": ["FF", "LUT"], "weights": [1, 3]}}}]}"""
with tempfile.TemporaryDirectory() as folder:
    early = f"{folder}/early.json"
    with open(early, "w", encoding="ascii") as written:
        written.write(EARLY)
    for how in (["--points", "300", "--csv"], ["--points", "300", "--json"], ["--points", "2000", "--json", "--seed", "2"]):
        expected_sample = subprocess.run([zelm, "sample", early, *how], check=True, capture_output=True).stdout
        for ranks in (1, 2, 3):
            run = on_ranks(ranks, "sample", early, *how)
            assert run.returncode == 0 and run.stdout == expected_sample, f"{ranks} ranks, {how}: {run.stderr[:500]}"
with tempfile.TemporaryDirectory() as folder:
    # A job that is killed, rank by rank, and gone on with on another number of ranks.
    file = f"{folder}/points.csv"

    def killed_on_its_way():
        job = subprocess.Popen([*mpirun(3), "sweep", design, *VARIED, "--resume", file], env=environment,
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True)
        while job.poll() is None and (not os.path.exists(file) or os.path.getsize(file) < len(expected) / 3):
            time.sleep(0.002)
        try:
            with open(f"/proc/{job.pid}/task/{job.pid}/children", encoding="ascii") as children:
                os.kill(int(children.read().split()[-1]), signal.SIGKILL)
        except (OSError, IndexError):
            pass  # the job was quicker
        code = job.wait(timeout=60)
        if code != 0 and os.path.exists(file + ".resume"):
            return True
        os.remove(file)
        return False

    assert any(killed_on_its_way() for _ in range(20)), "each job was done before it could be killed"
    run = on_ranks(2, "sweep", design, *VARIED, "--resume", file)
    with open(file, "rb") as written:
        assert run.returncode == 0 and written.read() == expected, run.stderr[:500]
# What is wrong is told once, and every rank ends.
run = on_ranks(2, "sweep", design, "--vary", "rails.VCCIN=0.8", "--csv")
assert run.returncode == 2 and run.stderr.count(b"did you mean VCCINT") == 1, run.stderr
run = on_ranks(2, "sweep", design, "--vary", "rails.VCCINT=" + "0.8," * 300 + "-1", "--csv")
assert run.returncode == 2 and run.stderr.count(b"(at rails.VCCINT = -1)") == 1, run.stderr
assert run.stdout.count(b"\n") > 500, "the points before the wrong one"
run = on_ranks(2, "sweep", design, *VARIED)
assert run.returncode == 2 and b"over several ranks" in run.stderr, run.stderr
run = on_ranks(2, "blocks")
assert run.returncode == 0 and run.stdout == subprocess.run([zelm, "blocks"], capture_output=True).stdout
