"""Folders and files of the benchmarks."""
import pathlib
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = ROOT / "build-bench"
BENCH = BUILD / "bench" / "garage-bench"
DATA = pathlib.Path(tempfile.gettempdir()) / "garage-bench"  # where the programs make their databases
PAGE = ROOT / "docs" / "performance.md"
FIGURES = BUILD / "performance.json"
