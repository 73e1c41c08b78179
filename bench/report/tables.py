"""The rows of the page's tables."""
from report.measuring import SHAPES
from report.samples import median, shortest
from report.targets import FRESH_TABLE_MS, RATIOS, START_MS, time_target, verdict

GROWN = ["laps-0.1", "laps", "laps-3", "journal-0.1", "journal", "journal-3"]
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


def fresh_table_rows(samples):
    if "fresh-table/laps" not in samples:
        return []
    parts = [median(samples, "fresh-table/laps", f"{part}_ms")
             for part in ("query", "records", "message", "delivery", "models", "paint", "other")]
    service = median(samples, "service-to-green/laps", "median_ms")
    return ["| " + " | ".join(f"{ms:.1f}" for ms in parts)
            + f" | {verdict(parts[-1], FRESH_TABLE_MS)} | {service:.1f} |"]


def peer_rows(samples):
    rows = []
    for shape in SHAPES:
        if f"reload/{shape}/garage" in samples:
            times = [shortest(samples, f"reload/{shape}/{variant}") for variant in PEERS]
            rows.append(f"| {shape} | " + " | ".join(f"{ms:.0f} ({ms / times[2]:.2f})" for ms in times) + " |")
    return rows


def growth_rows(samples):
    rows = []
    for shape in GROWN:
        if f"reload/{shape}/plain" in samples and f"reload/{shape.split('-')[0]}-3/plain" in samples:
            plain, ours = (shortest(samples, f"reload/{shape}/{variant}") for variant in ("plain", "garage"))
            rows.append(f"| {shape} | {plain:.1f} | {ours:.1f} | {ours / plain:.2f} | {ours - plain:.1f} |")
    return rows


def count_rows(counts):
    return [f"| {name[len('count/'):]} | {instructions / 1e6:,.1f} |" for name, instructions in counts.items()]
