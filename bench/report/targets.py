"""What is asked of the module."""

# Ratio of the two variants of a measurement.
RATIOS = {"reload/laps": 1.10, "reload/journal": 1.8, "reload/journal, TZ set": 1.8, "reload/wide": 1.3,
          "paint/wide": 1.25, "remote/journal": 1.5, "remote/journal-no-index": 1.5,
          "garagectl due/laps": 1.15, "garagectl report/laps": 2.0}
# Milliseconds by the clock: of single measurements, and of all others of a group.
TIMES = {"gap/journal": 8.0, "gap/wide": 8.0, "scroll/wide": 16.7}
TIMES_OF_GROUP = {"sort": 5.0, "filter": 5.0, "log-filter": 5.0, "log-key": 16.7, "log-wheel": 16.7}
# From the message about a saved run to the repainted table, without SQLite's own time.
FRESH_TABLE_MS = 50.0
START_MS = 100.0
COLD_START_RATIOS = {"ms": 1.3, "gui_read_bytes": 1.3}  # to an empty Qt window
BYTES = {"memory/record": 100}


def time_target(name):
    """None for what is not measured by the clock."""
    return TIMES.get(name, TIMES_OF_GROUP.get(name.split("/")[0]))


def verdict(value, target):
    """The last two cells of a row; a figure without a target has the target None."""
    if target is None:
        return "– | –"
    return f"{target:g} | {'met' if value <= target else 'missed'}"
