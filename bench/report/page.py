"""docs/performance.md: what was measured, followed by the notes that are written by hand."""
import datetime
import json
import os
import platform

from report import growth
from report.paths import FIGURES, PAGE
from report.samples import median
from report.tables import cold_start_rows, count_rows, fresh_table_rows, memory_rows, peer_rows, ratio_rows, time_rows

NOTES = "<!-- Written by hand from here on; scripts/bench keeps it. -->"


def write(samples, counts, load):
    PAGE.write_text("\n\n".join([*measured(samples, counts, load), notes(PAGE)]))
    FIGURES.write_text(json.dumps({"samples": samples, "counts": counts}, indent=1))


def notes(page):
    old = page.read_text() if page.exists() else ""
    return NOTES + old.split(NOTES, 1)[1] if NOTES in old else NOTES + "\n"


def measured(samples, counts, load):
    """The paragraphs, headings and tables above the notes."""
    return [
        "# Performance",
        f"{datetime.date.today()}, {processor()}, {os.cpu_count()} processors, load {load:.1f} at the start. "
        "Written by `scripts/bench`; a load above 0.5 disturbs the figures.",
        "The sides of a ratio run in one process on the same generated file (fixed seed), in random order; "
        "the ratio is that of their shortest times. They are milliseconds of computing time of the whole process, "
        "which other programs disturb least.",
        table("| Measured | Plain | Module | Ratio | Target | |", "|---|---:|---:|---:|---:|---|", ratio_rows(samples)),
        "\"Plain\" is the SQLite C API stepping the same statements and touching each column, or Qt's "
        "delegate with the same grid; of `garagectl` it is the module's reload, and \"module\" the whole process of the "
        "command.",
        "Medians in milliseconds, by the clock and of computing; the target is the clock's:",
        table("| Measured | Clock | Computing | Target | |", "|---|---:|---:|---:|---|", time_rows(samples)),
        "Bytes of the heap:",
        table("| Of | Bytes | Target | |", "|---|---:|---:|---|", memory_rows(samples)),
        "## The start with nothing in the disk's cache",
        "Medians of starts by turns, each in a process of its own, with the library as it is installed and the season's "
        "file. Before each one, all files of both sides are removed from the disk's cache. The time is from the creation "
        "of the process; \"empty\" is a Qt window with nothing in it. The other threads are the loader's first reload:",
        table("| Of a start | Empty | Module | Ratio | Target | |", "|---|---:|---:|---:|---:|---|",
              cold_start_rows(samples)),
        "## After a run and after a service",
        "From the host's message about a saved run to the repainted table in the library's window, milliseconds on "
        "the laps shape. SQLite's time is the rest of the whole by the clock, as are the delivery between the threads "
        "and the last column, from the acceptance of a service to its green cell; the other parts are of computing:",
        table("| SQLite | Records | Message | Delivery | Models | Paint | All but SQLite | Target | | Service |",
              "|---:|---:|---:|---:|---:|---:|---:|---:|---|---:|", fresh_table_rows(samples)),
        "## Beside peers",
        "The reload's job in other hands, milliseconds of computing (and as a multiple of the module's). QtSql: all "
        "values of the five statements fetched forward-only by number, nothing made of them. Plain Qt: by name, not "
        "forward-only. Python: `bench/peer.py`, in a process of its own. All find the same work due.",
        table("| Shape | SQLite C API | QtSql | Module | Plain Qt | Python |", "|---|---:|---:|---:|---:|---:|",
              peer_rows(samples)),
        *growth_section(samples),
        "## Instructions",
        "Millions of instructions of five runs on a small shape (`valgrind --tool=callgrind`). They repeat within "
        "1 %; the test `instruction_counts` fails when one grows by over 10 % against "
        "`bench/instruction-counts.json`, and `scripts/bench --keep-counts` keeps new ones.",
        table("| Job | Millions |", "|---|---:|", count_rows(counts)),
    ]


def growth_section(samples):
    lines = growth.fit(samples)
    if not lines:
        return []
    growth.draw(lines)
    season = growth.SEASON
    return [
        "## Growth",
        f"Files of a season ({season['karts']} karts, {season['operations']} operations, {season['records']:,} records, "
        f"{season['laps']:,} laps; the latest record of each operation is at most 30 days old) in which one size "
        "differs, five of each. A line is fitted to the shortest computing times of a reload (least squares): "
        "microseconds for each further one, milliseconds where the size is 0, and R².",
        table("| One | From | SQLite: µs | ms | R² | Module: µs | ms | R² |", "|---|---|---:|---:|---:|---:|---:|---:|",
              growth.fitted_rows(lines)),
        growth.images(lines),
        "What the module's lines say of a track of the season's size that never deletes anything; memory is that of the "
        "service log without its comments:",
        table("| Years | Records | Laps | Reload, ms | Log in memory, MB |", "|---:|---:|---:|---:|---:|",
              growth.year_rows(lines, median(samples, "memory/record", "bytes"))),
    ]


def table(titles, alignment, rows):
    return "\n".join([titles, alignment, *rows])


def processor():
    for line in open("/proc/cpuinfo"):
        if line.startswith("model name"):
            return line.split(":")[1].strip()
    return platform.machine()
