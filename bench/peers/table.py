#!/usr/bin/python3
"""Prints a Markdown table of what compare.py --json wrote in several runs.

Each figure is the median of the runs; in brackets, how many times a raw write of the same line it
takes. A last column counts the runs in which olvex was ahead of every other library.
"""
import json
import pathlib
import statistics
import sys

from compare import LIBRARIES

TIMED = ("write", "rolling", "2 th", "4 th")


def cell(runs, title, library):
    values = [run[title].get(library) for run in runs]
    if None in values:
        return "-"
    value = statistics.median(values)
    text = f"{value:,.2f}" if value < 100 else f"{value:,.0f}"
    if library == "raw" or not title.startswith(TIMED):
        return text
    ratio = statistics.median(run[title][library] / run[title]["raw"] for run in runs)
    return f"{text} ({ratio:.2f})"


def is_ahead(row):
    others = [value for name, value in row.items()
              if value is not None and name not in ("raw", "olvex")]
    return row["olvex"] <= min(others, default=row["olvex"])


def main():
    runs = [json.loads(pathlib.Path(name).read_text()) for name in sys.argv[1:]]
    print("| |", " | ".join(LIBRARIES), "| ahead |")
    print("|---" * (len(LIBRARIES) + 2) + "|")
    for title in runs[0]:
        cells = " | ".join(cell(runs, title, library) for library in LIBRARIES)
        ahead = sum(is_ahead(run[title]) for run in runs)
        print(f"| {title} | {cells} | {ahead} of {len(runs)} |")


if __name__ == "__main__":
    main()
