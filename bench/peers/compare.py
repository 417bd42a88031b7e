#!/usr/bin/python3
"""Compares olvex with other logging libraries, one program each, in turn: A B C A B C.

Prints a table of medians, a row for each work and a column for each library. Every record is in the
kernel when the call returns, for all of them; each program checks that everything was written.
"""
import argparse
import json
import os
import pathlib
import re
import shutil
import statistics
import subprocess
import sys
import tempfile
from dataclasses import dataclass

LIBRARIES = ["raw", "olvex", "spdlog", "log4cplus", "log4cxx", "glog", "boost_log"]
CANNOT = 3  # the exit status of a program whose library cannot do the work


@dataclass(frozen=True)
class Work:
    """One row: what the programs are told, and how its figures are read."""

    title: str
    name: str
    records: int
    unit: str = "ns"
    workers: int = 1
    keys: tuple = ("ns",)


WORKS = [
    Work("disabled call, recommended form", "disabled", 50_000_000),
    Work("disabled call, through a function", "disabled-call", 50_000_000),
    Work("write-through, one thread", "write", 100_000),
    Work("rolling, 3 files of 1 MiB", "rolling", 100_000),
    Work("2 threads, one logger", "threads", 100_000, workers=2),
    Work("4 threads, one logger", "threads", 100_000, workers=4),
    Work("4 processes, one rolling file", "processes", 200_000, workers=4),
    Work("formatting only", "format", 300_000),
    Work("latency", "latency", 100_000, keys=("p50", "p99", "p99.9", "max")),
]

# How a shared log fares with more writers; only on demand.
PROCESSES = [
    Work(f"{count} processes, one rolling file", "processes", 200_000, workers=count)
    for count in (1, 2, 4, 8, 16, 32)
]


class Bench:
    """Runs the programs of one build in a folder of its own."""

    def __init__(self, build, rounds):
        self.programs = {
            library: program
            for library in LIBRARIES
            if (program := build / f"olvex_peer_{library}").exists()
        }
        self.rounds = rounds
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="logs-", dir=build))

    def close(self):
        shutil.rmtree(self.folder, ignore_errors=True)

    def command(self, library, name, records, workers=1):
        return [self.programs[library], name, str(records), self.folder / "app.log", str(workers)]

    def run(self, command, **arguments):
        """One run in an empty folder: its output, or None when the library cannot do the work."""
        shutil.rmtree(self.folder)
        self.folder.mkdir()
        try:
            done = subprocess.run(command, capture_output=True, text=True, timeout=120, **arguments)
        except subprocess.TimeoutExpired:
            print(f"\n{command[0].name} {command[1]}: not finished after 120 s", file=sys.stderr)
            return None
        if done.returncode == CANNOT:
            return None
        if done.returncode != 0:
            sys.exit(f"{command[0]} {command[1]} failed: {done.stderr.strip()}")
        return done

    def figures(self, library, work):
        done = self.run(self.command(library, work.name, work.records, work.workers))
        words = done.stdout.split() if done else []
        return {key: float(value) for key, value in zip(words[::2], words[1::2])}

    def measure(self, work):
        """The medians of all rounds: {library: {key: value}}."""
        samples = {library: [] for library in self.programs}
        for _ in range(self.rounds):
            for library in list(samples):
                figures = self.figures(library, work)
                if figures:
                    samples[library].append(figures)
                else:
                    del samples[library]
        return {
            library: {key: statistics.median(one[key] for one in rounds) for key in work.keys}
            for library, rounds in samples.items()
        }


def count_system_calls(bench, library):
    """What a record adds, from two runs of different length."""

    def total(records):
        summary = bench.folder.parent / "strace.txt"
        command = bench.command(library, "write", records)
        done = bench.run(["strace", "-f", "-c", "-o", summary, *command])
        if not done:
            return None
        return int(re.search(r"^100\.00\s+\S+\s+(?:\S+\s+)?(\d+)\s.*total$", summary.read_text(),
                             re.MULTILINE).group(1))

    few, many = total(1000), total(3000)
    return None if few is None else (many - few) / 2000


def count_allocations(bench, library):
    done = bench.run(bench.command(library, "allocations", 20_000))
    return float(done.stdout.split()[1]) if done else None


def measure_starts(bench, run_many, **variables):
    """Milliseconds and peak megabytes from the start of a process to its end with one record, for
    each library the medians of all rounds, which are taken in turn."""
    samples = {library: [] for library in bench.programs}
    for _ in range(bench.rounds):
        for library, sample in samples.items():
            done = bench.run([run_many, "41", *bench.command(library, "first", 1)],
                             env=os.environ | variables)
            words = done.stdout.split()
            sample.append((float(words[0]), float(words[2])))
    return {library: tuple(map(statistics.median, zip(*sample)))
            for library, sample in samples.items()}


def library_bytes(program):
    """What all shared libraries of the program load, the C library left out, debugging data too."""
    output = subprocess.run(["ldd", program], capture_output=True, text=True, check=True).stdout
    paths = re.findall(r"=> (/\S+)", output)
    own = [path for path in paths if not re.search(r"/(libc|libm|libpthread|ld-linux\S*)\.so", path)]
    sizes = subprocess.run(["size", *own], capture_output=True, text=True, check=True).stdout
    return sum(int(line.split()[3]) for line in sizes.splitlines()[1:])


def print_row(title, values, ratios=None):
    cells = []
    for library in LIBRARIES:
        value = values.get(library)
        text = "-" if value is None else f"{value:,.2f}" if value < 100 else f"{value:,.0f}"
        if ratios and library in ratios:
            text += f" ({ratios[library]:.2f})"
        cells.append(f"{text:>17}")
    print(f"{title:<36}{''.join(cells)}", flush=True)


def ratios_to_raw(values):
    raw = values.get("raw")
    return {name: value / raw for name, value in values.items() if name != "raw"} if raw else None


def compare_times(bench, chosen, results):
    for work in chosen:
        measured = bench.measure(work)
        for key in work.keys:
            title = work.title if len(work.keys) == 1 else f"{work.title} {key}"
            values = {library: figures[key] for library, figures in measured.items()}
            results[f"{title} [ns]"] = values
            timed = work.name in ("write", "rolling", "threads")
            print_row(f"{title} [ns]", values, ratios_to_raw(values) if timed else None)


def compare_counts(bench, run_many, results):
    columns = {
        "allocations per record": count_allocations,
        "system calls per record": count_system_calls if shutil.which("strace") else None,
    }
    for title, count in columns.items():
        if not count:
            continue
        values = {library: count(bench, library) for library in bench.programs}
        results[title] = values
        print_row(title, values)
    starts = measure_starts(bench, run_many)
    simple = measure_starts(bench, run_many, LC_ALL="C")
    for title, measured, index in (("start to first record [ms]", starts, 0),
                                   ("the same in the locale C [ms]", simple, 0),
                                   ("peak memory [MB]", starts, 1),
                                   ("the same in the locale C [MB]", simple, 1)):
        values = {library: figures[index] for library, figures in measured.items()}
        results[title] = values
        print_row(title, values)
    values = {name: library_bytes(program) / 1e6 for name, program in bench.programs.items()}
    results["shared libraries [MB]"] = values
    print_row("shared libraries [MB]", values)


def plot(results, path):
    import matplotlib

    matplotlib.use("svg")
    from matplotlib import pyplot

    titles = [title for title in results if title.startswith(("write", "rolling", "2 th", "4 th",
                                                              "format"))]
    figure, axes = pyplot.subplots(figsize=(9, 4.5))
    names = [name for name in LIBRARIES if any(name in results[title] for title in titles)]
    width = 0.8 / len(names)
    for index, name in enumerate(names):
        heights = [(results[title].get(name) or 0) / 1000 for title in titles]
        places = [at + index * width for at in range(len(titles))]
        axes.bar(places, heights, width, label=name)
    axes.set_xticks([at + 0.4 - width / 2 for at in range(len(titles))])
    axes.set_xticklabels([title.replace(" [ns]", "").replace(", ", ",\n") for title in titles],
                         fontsize=8)
    axes.set_ylabel("µs per record, lower is better")
    axes.legend(fontsize=8)
    figure.tight_layout()
    figure.savefig(path, metadata={"Date": None})


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("build", type=pathlib.Path, help="the folder of the built benchmarks")
    parser.add_argument("--rounds", type=int, default=7, help="rounds of each work (default 7)")
    parser.add_argument("--only", help="works whose titles hold this text")
    parser.add_argument("--processes", action="store_true",
                        help="only the shared log, with 1 to 32 processes")
    parser.add_argument("--json", type=pathlib.Path, help="write the figures there")
    parser.add_argument("--plot", type=pathlib.Path, help="draw the figures there, as SVG")
    options = parser.parse_args()

    bench = Bench(options.build.resolve() / "peers", options.rounds)
    results = {}
    try:
        print(f"{'median of ' + str(options.rounds) + ' rounds (times raw)':<36}"
              + "".join(f"{library:>17}" for library in LIBRARIES))
        works = PROCESSES if options.processes else WORKS
        chosen = [work for work in works if not options.only or options.only in work.title]
        compare_times(bench, chosen, results)
        if works is WORKS and not options.only:
            compare_counts(bench, options.build.resolve() / "olvex_run_many", results)
    finally:
        bench.close()
    if options.json:
        options.json.write_text(json.dumps(results, indent=2) + "\n")
    if options.plot:
        plot(results, options.plot)


if __name__ == "__main__":
    main()
