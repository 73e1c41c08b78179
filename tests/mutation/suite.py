"""The tests that judge the mutants: which mutants each of them reaches, and whether it fails with one."""
import dataclasses
import json
import os
import pathlib
import signal
import subprocess
import tempfile
import threading
import time

PROGRAMS = ("tests_data", "tests_models", "tests_settings", "tests_garage", "tests_plugin")
# They take long, because they repeat the same in many ways.
LONG_TESTS = {"tst_powercut", "tst_fulldisk", "tst_lifecycle", "tst_modelcontract",
              "tst_garagerandomwalk"}


running = set()
stopping = threading.Event()


@dataclasses.dataclass
class Test:
    """One test class, as CTest runs it."""
    name: str
    command: list
    environment: dict
    signature: str  # of what it runs
    seconds: float = 0
    processor_seconds: float = 0
    reached: list = dataclasses.field(default_factory=list)


def tests_of(build_folder, programs):
    listed = subprocess.run(["ctest", "--test-dir", build_folder, "--show-only=json-v1"], check=True,
                            capture_output=True, text=True).stdout
    for entry in json.loads(listed)["tests"]:
        command = entry.get("command", [""])
        program = pathlib.Path(command[0])
        name = entry["name"]
        if program.name not in programs or name in LONG_TESTS or name.endswith("_elsewhere"):
            continue
        yield Test(name, command, environment_of(entry), signature(build_folder, program))


def environment_of(entry):
    lines = [line for setting in entry["properties"] if setting["name"] == "ENVIRONMENT" for line in setting["value"]]
    return dict(line.split("=", 1) for line in lines)


def signature(build_folder, program):
    """Changes whenever the program or the library that it loads is built anew."""
    files = [program, *sorted(build_folder.glob("plugin/*.so"))]
    return " ".join(str(file.stat().st_mtime_ns) for file in files if file.exists())


def run(test, variables, limit):
    """None if the test passes, else what failed first; and the watch that has measured it."""
    with tempfile.TemporaryDirectory(prefix="garage-mutants-", ignore_cleanup_errors=True) as scratch:
        process = subprocess.Popen(test.command, env=scratch_environment(test, variables, scratch), cwd=scratch,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                   start_new_session=True)
        running.add(process)
        watch = Watch(process, limit)
        watch.start()
        failure = next((line for line in process.stdout if line.startswith((b"FAIL!", b"XPASS"))), None)
        if failure:
            end_group(process)
        code = process.wait()
        watch.join()
        end_group(process)
        running.discard(process)
    if stopping.is_set():
        raise InterruptedError
    if watch.timed_out:
        return "timed out", watch
    if failure:
        return failure.decode(errors="replace").split("(")[0], watch
    return (None if code == 0 else f"ended with {code}"), watch


def scratch_environment(test, variables, scratch):
    """Folders for this run alone, in which a test may work as another user."""
    os.chmod(scratch, 0o755)
    runtime = pathlib.Path(scratch, "runtime")
    runtime.mkdir(mode=0o700)
    environment = {**os.environ, **test.environment, **variables, "TMPDIR": scratch, "HOME": scratch,
                   "XDG_RUNTIME_DIR": str(runtime)}
    if "GARAGE_TRAFFIC_FOLDER" in environment:
        environment["GARAGE_TRAFFIC_FOLDER"] = scratch
    return environment


class Watch(threading.Thread):
    """Ends a test at its limit. Time for which its threads wait for a processor does not count."""

    def __init__(self, process, limit):
        super().__init__(daemon=True)
        self.timed_out = False
        self.seconds = 0
        self.processor_seconds = 0
        self._process = process
        self._limit = limit

    def run(self):
        start = time.monotonic()
        waiting = 0
        while self._process.poll() is None:
            processor, queue = scheduled_seconds(self._process.pid)
            self.processor_seconds = max(self.processor_seconds, processor)
            waiting = max(waiting, queue)
            self.seconds = time.monotonic() - start - waiting
            if self.seconds > self._limit:
                self.timed_out = True
                end_group(self._process)
            time.sleep(0.2)


def scheduled_seconds(process):
    """The time that the threads which have not ended had a processor, and the time that they waited for one."""
    processor = queue = 0
    try:
        for thread in os.listdir(f"/proc/{process}/task"):
            times = pathlib.Path(f"/proc/{process}/task/{thread}/schedstat").read_text().split()
            processor += int(times[0])
            queue += int(times[1])
    except (OSError, IndexError):
        pass  # it has just ended
    return processor / 1e9, queue / 1e9


def end_group(process):
    """Ends the test and what it has started."""
    try:
        os.killpg(process.pid, signal.SIGKILL)
    except ProcessLookupError:
        pass


def stop():
    """Ends all that runs; what it had to say is lost."""
    stopping.set()
    for process in list(running):
        end_group(process)


def record(test, mutants):
    """Runs a test twice without a mutant; False if it does not pass each time."""
    with tempfile.NamedTemporaryFile(prefix="garage-mutants-") as reached:
        reached.truncate(mutants + 1)
        os.chmod(reached.name, 0o666)  # for tests that work as another user
        for variables in ({"GARAGE_MUTANTS_REACHED": reached.name}, {}):
            failure, watch = run(test, variables, 600)
            if failure:
                return False
            test.seconds = max(test.seconds, watch.seconds)
            test.processor_seconds = max(test.processor_seconds, watch.processor_seconds)
        reached.seek(0)
        test.reached = [number for number, byte in enumerate(reached.read()) if byte]
    return True


def judge(mutant, tests):
    """The test that catches a mutant, or None. It must fail twice in the same way. Quick tests of few places first."""
    reaching = [test for test in tests if mutant in test.reached]
    for test in sorted(reaching, key=lambda test: test.processor_seconds * len(test.reached)):
        limit = 5 * test.seconds + 5
        failures = []
        while len(failures) < 2 and None not in failures:
            failures.append(run(test, {"GARAGE_MUTANT": str(mutant)}, limit)[0])
        if failures[0] and failures[0] == failures[-1]:
            return {"test": test.name, "failure": failures[0]}
    return None
