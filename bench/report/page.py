"""docs/performance.md: what was measured, followed by the notes that are written by hand."""
import datetime
import json
import os
import platform

from report.paths import FIGURES, PAGE
from report.samples import median
from report.tables import count_rows, fresh_table_rows, growth_rows, peer_rows, ratio_rows, time_rows

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
        f"Memory: {median(samples, 'memory/journal', 'bytes_per_record'):.0f} bytes per record of the journal, its "
        "row in the window included.",
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
        "## Growth",
        "A reload of a tenth, the whole and three times a shape, milliseconds of computing:",
        table("| Shape | Plain | Module | Ratio | Difference |", "|---|---:|---:|---:|---:|", growth_rows(samples)),
        "## Instructions",
        "Millions of instructions of five runs on a small shape (`valgrind --tool=callgrind`). They repeat within "
        "1 %; the test `instruction_counts` fails when one grows by over 10 % against "
        "`bench/instruction-counts.json`, and `scripts/bench --keep-counts` keeps new ones.",
        table("| Job | Millions |", "|---|---:|", count_rows(counts)),
    ]


def table(titles, alignment, rows):
    return "\n".join([titles, alignment, *rows])


def processor():
    for line in open("/proc/cpuinfo"):
        if line.startswith("model name"):
            return line.split(":")[1].strip()
    return platform.machine()
