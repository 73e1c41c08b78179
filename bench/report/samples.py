"""Samples by the name of the measurement: what the benchmark library says of each repetition."""
import statistics


def shortest(samples, name):
    """Milliseconds of computing."""
    return min(sample["cpu_time"] for sample in samples[name])


def median(samples, name, figure):
    return statistics.median(sample[figure] for sample in samples[name])
