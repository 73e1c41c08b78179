"""The rows of the page's tables."""
from report.measuring import SHAPES
from report.samples import median, shortest
from report.starts import medians
from report.targets import BYTES, COLD_START_RATIOS, FRESH_TABLE_MS, RATIOS, START_MS, time_target, verdict

MEMORY = {"memory/record": "a record of the journal, its row in the window included, without a comment",
          "memory/record-with-comment": "the same with a comment of 20 letters",
          "memory/kart-operation": "an operation of one kart",
          "memory/reloads": "growth in 1,000 reloads, in all"}
COLD_START = {"ms": ("milliseconds to the first paint", 1), "gui_read_bytes": ("MB read by the GUI thread", 1e6),
              "read_bytes": ("MB read by all threads", 1e6), "major_faults": ("waits for a page of a file", 1)}
PEERS = ["plain", "qtsql", "garage", "by-name", "python"]


def ratio_rows(samples):
    rows = []
    for name, target in RATIOS.items():
        if f"{name}/plain" in samples:
            plain, ours = (shortest(samples, f"{name}/{variant}") for variant in ("plain", "garage"))
            rows.append(f"| {name} | {plain:.1f} | {ours:.1f} | {ours / plain:.2f} | {verdict(ours / plain, target)} |")
    return rows


def time_rows(samples):
    rows = []
    for name in sorted(samples):
        target = time_target(name)
        if target is None:
            continue
        # The repetitions of a wait are within one sample.
        is_wait = "median_ms" in samples[name][0]
        figures = ("median_ms", "computing_ms") if is_wait else ("real_time", "cpu_time")
        clock, computing = (median(samples, name, figure) for figure in figures)
        rows.append(f"| {name} | {clock:.2f} | {computing:.2f} | {verdict(clock, target)} |")
    start = median(samples, "start", "real_time")
    rows.append(f"| start to the first paint | {start:.2f} | – | {verdict(start, START_MS)} |")
    return rows


def cold_start_rows(samples):
    rows = []
    for figure, (meaning, unit) in COLD_START.items():
        plain, ours = medians(samples, figure)
        ratio = ours / plain
        rows.append(f"| {meaning} | {plain / unit:.1f} | {ours / unit:.1f} | {ratio:.2f} | "
                    f"{verdict(ratio, COLD_START_RATIOS.get(figure))} |")
    return rows


def fresh_table_rows(samples):
    if "fresh-table/laps" not in samples:
        return []
    parts = [median(samples, "fresh-table/laps", f"{part}_ms")
             for part in ("query", "records", "message", "delivery", "models", "paint", "other")]
    service = median(samples, "service-to-green/laps", "median_ms")
    return ["| " + " | ".join(f"{ms:.1f}" for ms in parts)
            + f" | {verdict(parts[-1], FRESH_TABLE_MS)} | {service:.1f} |"]


def memory_rows(samples):
    rows = []
    for name, meaning in MEMORY.items():
        bytes_used = median(samples, name, "bytes")
        rows.append(f"| {meaning} | {bytes_used:,.0f} | {verdict(bytes_used, BYTES.get(name))} |")
    return rows


def peer_rows(samples):
    rows = []
    for shape in SHAPES:
        if f"reload/{shape}/garage" in samples:
            times = [shortest(samples, f"reload/{shape}/{variant}") for variant in PEERS]
            rows.append(f"| {shape} | " + " | ".join(f"{ms:.0f} ({ms / times[2]:.2f})" for ms in times) + " |")
    return rows


def count_rows(counts):
    return [f"| {name[len('count/'):]} | {instructions / 1e6:,.1f} |" for name, instructions in counts.items()]
