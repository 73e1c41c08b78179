"""All that one run of scripts/bench measures."""
from report.growth import measure_growth
from report.measuring import SHAPES, announce, check_peers, measure, measure_peer, measure_tool
from report.starts import measure_cold_start, measure_start


def collect(quick):
    """All samples; a quick run leaves out what needs 3,000,000 laps."""
    groups = [("^reload/(journal|wide)/", 5), ("^(gap|log-key|log-wheel|log-open|memory)/", 1),
              ("^(paint|scroll|sort|filter|log-filter|remote)/", 5)]
    if not quick:
        groups += [("^(fresh-table|service-to-green)/", 1), ("^reload/laps/", 9)]
    samples = {}
    for pattern, repetitions in groups:
        announce(pattern)
        samples.update(measure(pattern, repetitions))
    for name, rows in measure("^reload/journal/(plain|garage)", 5, zone=":/etc/localtime").items():
        samples[name.replace("journal/", "journal, TZ set/")] = rows
    for shape in SHAPES:
        if f"reload/{shape}/garage" in samples:
            samples[f"reload/{shape}/python"] = measure_peer(shape, 2)
            check_peers(samples, shape)
    if not quick:
        announce("garagectl")
        samples.update(measure_tool("laps", 7))
        samples.update(measure_growth())
    announce("start")
    season = "journal" if quick else "laps"
    samples["start"] = measure_start(season)
    samples.update(measure_cold_start(season))
    return samples
