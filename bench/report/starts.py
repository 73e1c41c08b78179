"""The start of the module, and that of an empty Qt window."""
import json
import os
import pathlib
import statistics
import subprocess
import time

from report.paths import BUILD, DATA

STARTS = 10
COLD_STARTS = 9
PROGRAM = BUILD / "bench" / "garage-startup"
LIBRARY = BUILD / "plugins" / "libruvalogarage.so"
# What Qt and its platform read beside the mapped files.
FOLDERS = ["/etc/fonts", "/usr/share/fontconfig", "/usr/share/fonts", "/usr/share/mime", "/var/cache/fontconfig"]
FIGURES = ["ms", "gui_read_bytes", "read_bytes", "major_faults"]


def installed_library():
    """A copy without the debug information, which an installed library does not have either."""
    copy = DATA / LIBRARY.name
    subprocess.run(["strip", "-o", copy, LIBRARY], check=True)
    return copy


def start(*arguments):
    """What garage-startup says, with `ms` from the creation of its process to the paint."""
    environment = dict(os.environ, HOME=str(DATA), XDG_CONFIG_HOME=str(DATA))  # none of the user's own settings
    began = time.monotonic_ns()
    said = subprocess.run([PROGRAM, *arguments], check=True, capture_output=True, text=True, env=environment).stdout
    figures = json.loads(said)
    return figures | {"ms": (figures["painted_ns"] - began) / 1e6}


def files_of(figures, home):
    """All that a start may read."""
    folders = [figures["plugins"], home, *FOLDERS]
    paths = [path for folder in folders for path in pathlib.Path(folder).rglob("*")]
    return [path for path in [*paths, *map(pathlib.Path, figures["mapped"])] if path.is_file()]


def evict(files):
    """Removes files from the disk's cache, but not what a running program has mapped."""
    for path in files:
        file = os.open(path, os.O_RDONLY)
        os.posix_fadvise(file, 0, 0, os.POSIX_FADV_DONTNEED)
        os.close(file)


def measure_start(shape):
    """Milliseconds from the request for the library to the first paint, with its files in the disk's cache."""
    module = [installed_library(), DATA / shape]
    start(*module)  # fills the cache
    return [{"real_time": start(*module)["module_ms"]} for _ in range(STARTS)]


def measure_cold_start(shape):
    """Samples of the empty window and of the module on the file of a shape, by turns."""
    home = DATA / shape
    module = [installed_library(), home]
    files = files_of(start(*module), home)
    os.sync()  # only pages that are on the disk can be removed
    samples = {"cold start/plain": [], "cold start/garage": []}
    for _ in range(COLD_STARTS):
        for name, arguments in zip(samples, ([], module)):
            evict(files)
            figures = start(*arguments)
            samples[name].append({figure: figures[figure] for figure in FIGURES})
    return samples


def medians(samples, figure):
    """Of the empty window and of the module."""
    return [statistics.median(sample[figure] for sample in samples[f"cold start/{variant}"])
            for variant in ("plain", "garage")]
