"""Builds the programs and runs them."""
import json
import os
import resource
import subprocess
import sys
import tempfile

from report.paths import BENCH, BUILD, DATA, ROOT

PACKAGES = ["libbenchmark-dev", "valgrind"]
PROGRAMS = ["garage-bench", "garage-startup", "garagectl"]
SHAPES = ["laps", "journal", "wide"]


def build():
    subprocess.run([ROOT / "scripts" / "bootstrap", *PACKAGES], check=True)
    subprocess.run(["cmake", "--preset", "bench"], check=True, cwd=ROOT, stdout=subprocess.DEVNULL)
    subprocess.run(["cmake", "--build", BUILD, "--target", *PROGRAMS], check=True, stdout=subprocess.DEVNULL)


def announce(what):
    print(f"bench: {what}", file=sys.stderr, flush=True)


def measure(pattern, repetitions, zone=None):
    """All samples by name, in random order of the variants."""
    environment = {name: value for name, value in os.environ.items() if name != "TZ"}
    if zone:
        environment["TZ"] = zone
    with tempfile.NamedTemporaryFile(suffix=".json") as out:
        subprocess.run([BENCH, f"--benchmark_filter={pattern}", f"--benchmark_repetitions={repetitions}",
                        "--benchmark_min_time=0.05", "--benchmark_enable_random_interleaving=true",
                        f"--benchmark_out={out.name}"],
                       check=True, env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        rows = json.load(open(out.name))["benchmarks"]
    samples = {}
    for row in rows:
        if row["run_type"] == "iteration":
            name = "/".join(part for part in row["name"].split("/")
                            if ":" not in part and not part.endswith("_time"))
            samples.setdefault(name, []).append(row)
    return samples


def measure_peer(shape, repetitions):
    """The same reload by Python, on the file that the benchmark made."""
    database = next((DATA / shape).rglob("*.sqlite"))
    out = subprocess.run([sys.executable, ROOT / "bench" / "peer.py", database, str(repetitions)], check=True,
                         capture_output=True, text=True).stdout
    peer = json.loads(out)
    return [{"cpu_time": ms, "pending": peer["pending"]} for ms in peer["computing_ms"]]


def check_peers(samples, shape):
    """Who finds other work due does another job."""
    found = {sample["pending"] for variant in ("garage", "by-name", "python")
             for sample in samples[f"reload/{shape}/{variant}"]}
    if len(found) != 1:
        sys.exit(f"bench: the peers disagree on the due work of {shape}: {found}")


def computing_ms(command):
    """Of a process of its own, from its start to its end."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return (after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime) * 1000


def measure_tool(shape, repetitions):
    """Commands of garagectl beside the module's reload of the same file, by turns."""
    database = next((DATA / shape).rglob("ruvalo.sqlite"))
    commands = {"due": ["due"], "report": ["report", DATA / "report.html"]}
    samples = {}
    for _ in range(repetitions):
        reloads = measure(f"^reload/{shape}/garage/", 1)[f"reload/{shape}/garage"]
        for name, command in commands.items():
            ms = computing_ms([BUILD / "garagectl" / "garagectl", *command, "--database", database])
            samples.setdefault(f"garagectl {name}/{shape}/plain", []).extend(reloads)
            samples.setdefault(f"garagectl {name}/{shape}/garage", []).append({"cpu_time": ms})
    return samples


def count_instructions(*options):
    """The instructions of each small job if the options contain --json."""
    made_with = (BUILD / "bench" / "made-with").read_text()
    counted = subprocess.run([ROOT / "scripts" / "count-instructions", *options, BENCH, made_with], check=True,
                             capture_output=True, text=True).stdout
    return json.loads(counted) if "--json" in options else None
