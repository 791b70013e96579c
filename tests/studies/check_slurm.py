#!/usr/bin/env python3
"""Runs tools/slurm-study on a Slurm of one node that it sets up itself: check_slurm.py ZELM ZELM_MPI DESIGN SCRIPT.

The job is cancelled on its way and submitted again; its file is held against one process."""
import os
import shutil
import socket
import subprocess
import sys
import tempfile
import time

zelm, over_ranks, design, script = sys.argv[1:5]


def skip(why):
    print(f"skipped: {why}")
    sys.exit(77)


for program, package in (("munged", "munge"), ("slurmctld", "slurmctld"), ("slurmd", "slurmd"),
                         ("sbatch", "slurm-client"), ("mpirun", "openmpi-bin")):
    if not shutil.which(program, path="/usr/sbin:" + os.environ["PATH"]):
        skip(f"no {program}; Debian has it in {package}")
if not os.path.exists(over_ranks):
    skip("the build found no MPI; Debian has it in libopenmpi-dev")
if os.geteuid() != 0:
    skip("only root can run a slurmd")

VARIED = ["--vary", "environment.ambientTemperature=0:49.9:0.1", "--vary", "environment.thetaJA=0.5:1:0.1"]
node = socket.gethostname().split(".")[0]


def free_port():
    with socket.socket() as one:
        one.bind(("127.0.0.1", 0))
        return one.getsockname()[1]


def wait(what, seconds=30):
    until = time.monotonic() + seconds
    while not (found := what()):
        if time.monotonic() > until:
            return None
        time.sleep(0.05)
    return found


with tempfile.TemporaryDirectory() as folder:
    os.chmod(folder, 0o755)
    for name in ("state", "spool", "log"):
        os.mkdir(f"{folder}/{name}")
    with open(f"{folder}/key", "wb") as key:
        key.write(os.urandom(128))
    os.chmod(f"{folder}/key", 0o400)
    with open(f"{folder}/slurm.conf", "w", encoding="ascii") as conf:
        conf.write(f"""ClusterName=study
SlurmctldHost={node}(127.0.0.1)
SlurmctldPort={free_port()}
SlurmdPort={free_port()}
SlurmUser=root
AuthType=auth/munge
CredType=cred/munge
AuthInfo=socket={folder}/munge.socket
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
MpiDefault=none
ReturnToService=2
SelectType=select/cons_tres
SelectTypeParameters=CR_Core
SchedulerParameters=sched_interval=1
StateSaveLocation={folder}/state
SlurmdSpoolDir={folder}/spool
SlurmctldPidFile={folder}/slurmctld.pid
SlurmdPidFile={folder}/slurmd.pid
SlurmctldLogFile={folder}/log/slurmctld
SlurmdLogFile={folder}/log/slurmd
NodeName={node} NodeAddr=127.0.0.1 CPUs=2 Boards=1 SocketsPerBoard=1 CoresPerSocket=2 ThreadsPerCore=1 State=UNKNOWN
PartitionName=all Nodes={node} Default=YES State=UP
SlurmdParameters=config_overrides
""")  # the last line: a container may hide what the node has, and the numbers above are to hold
    environment = {**os.environ, "SLURM_CONF": f"{folder}/slurm.conf", "PATH": "/usr/sbin:" + os.environ["PATH"],
                   "ZELM_MPI": over_ranks, "OMPI_ALLOW_RUN_AS_ROOT": "1", "OMPI_ALLOW_RUN_AS_ROOT_CONFIRM": "1"}
    daemons = []

    def start(*command):
        daemons.append(subprocess.Popen(command, env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))

    def slurm(*command):
        return subprocess.run(command, env=environment, capture_output=True, text=True).stdout.strip()

    def logs():
        for name in os.listdir(f"{folder}/log"):
            with open(f"{folder}/log/{name}", encoding="utf-8", errors="replace") as log:
                print(f"{name}:\n{log.read()[-2000:]}")

    try:
        start("munged", "--foreground", "--force", f"--key-file={folder}/key", f"--socket={folder}/munge.socket",
              f"--pid-file={folder}/munge.pid", f"--log-file={folder}/log/munge", f"--seed-file={folder}/seed",
              "--num-threads=1")
        if not wait(lambda: os.path.exists(f"{folder}/munge.socket"), 10):
            logs()
            skip("munged doesn't start here")
        start("slurmctld", "-D")
        start("slurmd", "-D", "-N", node)
        if not wait(lambda: slurm("sinfo", "-h", "-o", "%T") == "idle"):
            logs()
            skip("slurmctld and slurmd don't come up here")
        expected = subprocess.run([zelm, "sweep", design, *VARIED, "--csv"], check=True, capture_output=True).stdout
        points = f"{folder}/points.csv"
        submit = ["sbatch", "--parsable", "--ntasks", "2", f"--output={folder}/log/job", script, "sweep", design, *VARIED,
                  "--resume", points]

        def ended(job):
            return wait(lambda: slurm("squeue", "-h", "-j", job) == "", 120)

        def cancelled_on_its_way():
            job = slurm(*submit)
            if not wait(lambda: os.path.exists(points) and os.path.getsize(points) > len(expected) / 4, 60):
                logs()
                raise AssertionError(f"job {job} writes nothing: {slurm('squeue')}")
            slurm("scancel", "--full", "--signal=KILL", job)
            slurm("scancel", job)
            assert ended(job), slurm("squeue")
            if os.path.exists(points + ".resume"):
                return True
            os.remove(points)  # it was done before Slurm had heard of it
            return False

        assert any(cancelled_on_its_way() for _ in range(20)), "each job was done before it was cancelled"
        job = slurm(*submit)
        if not ended(job):
            logs()
            raise AssertionError(slurm("squeue"))
        with open(points, "rb") as written:
            if written.read() != expected:
                logs()
                raise AssertionError("the job's file isn't that of one process")
        assert not os.path.exists(points + ".resume")
    finally:
        for daemon in reversed(daemons):
            daemon.terminate()
        for daemon in daemons:
            try:
                daemon.wait(timeout=10)
            except subprocess.TimeoutExpired:
                daemon.kill()
