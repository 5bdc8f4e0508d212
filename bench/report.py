#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Prints the benchmarks' results as tables.

usage: report.py --beside FILE... --doubled FILE... --print-size FILE

The files are JSON of ppd_bench with its aggregates. Those behind --beside compare the two readers
on one PPD each; those behind --doubled this reader on a PPD and on one of twice its size; the last
one on a PPD without and with a print size that follows the paper size. Times are CPU times, medians
of the repetitions. On a busy machine the fastest repetitions say more: their ratios stand behind.
"""

import argparse
import json

CASES = (  # case and side as ppd_bench names them
    ("parse", "cups", "parsing"),
    ("menu", "cups", "greying a menu, cupsGetConflicts"),
    ("menu", "cups_marking", "greying a menu, marking"),
    ("dialog", "cups", "greying the dialog, cupsGetConflicts"),
    ("dialog", "cups_marking", "greying the dialog, marking"),
    ("emit", "cups", "emitting"),
    ("commit", "cups", "a whole commit, ppdEmitString"),
)
AIMS = {
    ("parse", "cups"): {"150x10": 4.5, "600x20": 4.5, "3000x20": 5.4},
    ("menu", "cups"): {"150x10": 250, "600x20": 1500, "3000x20": 5000},
    ("dialog", "cups"): {"150x10": 250, "600x20": 1500, "3000x20": 8000},
    ("emit", "cups"): {"150x10": 10, "600x20": 20, "3000x20": 20},
    ("commit", "cups"): {"150x10": 5, "600x20": 10, "3000x20": 15},
}
# Of this reader alone: how many times as long as parsing it may take.
COMPILED = (
    ("rebuild", "rebuilding the compiled PPD", 1),
    ("save", "saving the compiled PPD", 1.5),
)
# How many times libcups's heap a parsed PPD may take.
HEAP_AIMS = {"150x10": 1.2, "600x20": 1.05, "3000x20": 1.05}
UNITS = ((1e9, "s"), (1e6, "ms"), (1e3, "µs"), (1, "ns"))
NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def options_of(size):
    return int(size.split("x")[0])


class Measured:
    """CPU times in nanoseconds: the median of the repetitions, and the fastest of them."""

    def __init__(self):
        self.median = self.fastest = 0.0
        self.menus = None  # of a dialog that wasn't greyed as a whole
        self.bytes = 0  # of the heap, for the case that counts them

    def take(self, row, options):
        menus = row.get("menus", options)
        if menus < options:
            self.menus = round(menus)
        time = row["cpu_time"] * NANOSECONDS[row["time_unit"]] * max(1, options / menus)
        if row["aggregate_name"] == "median":
            self.median = time
            self.bytes = row.get("bytes", 0)
        else:
            self.fastest = time


def read(path):
    """What was measured by (case, side, size)."""
    with open(path, encoding="utf-8") as file:
        rows = json.load(file)["benchmarks"]
    found = {}
    for row in rows:
        if row.get("aggregate_name") in ("median", "min"):
            case, side, size = row["run_name"].split("/")[:3]
            measured = found.setdefault((case, side, size), Measured())
            measured.take(row, options_of(size))
    if not all(measured.median and measured.fastest for measured in found.values()) or not found:
        raise SystemExit(f"{path}: no medians or no minima")
    return found


def ratios(other, own):
    return f"{times(other.median / own.median)} | {times(other.fastest / own.fastest)}"


def shown(nanoseconds):
    factor, unit = next((f, u) for f, u in UNITS if nanoseconds >= f or f == 1)
    return f"{nanoseconds / factor:.3g} {unit}"


def times(number):
    return f"{number:.3g}" if number < 100 else f"{number:.0f}"


def beside(results, case, side, name):
    for found in results:
        size = next(iter(found))[2]
        own, other = found[case, "own", size], found[case, side, size]
        note = "" if other.menus is None else f" (scaled from {other.menus} menus)"
        aim = AIMS.get((case, side), {}).get(size, "")
        yield (f"| {name} | {size} | {shown(own.median)} | {shown(other.median)}{note} "
               f"| {ratios(other, own)} | {aim} |")


def beside_parsing(results, case, name, aim):
    for found in results:
        size = next(iter(found))[2]
        parsing, own = found["parse", "own", size], found[case, "own", size]
        yield (f"| {name} | {size} | {shown(own.median)} | {shown(parsing.median)} "
               f"| {ratios(own, parsing)} | {aim} |")


def heaps(results):
    for found in results:
        size = next(iter(found))[2]
        own, other = (found["heap", side, size].bytes for side in ("own", "cups"))
        yield (f"| {size} | {own / 1e6:.3g} MB | {other / 1e6:.3g} MB | {times(own / other)} "
               f"| {HEAP_AIMS.get(size, '')} |")


def growth(found):
    """How many times as long the second PPD takes, as the rest of a table row."""
    small, large = sorted({key[2] for key in found}, key=lambda size: (options_of(size), size))
    cells = [ratios(found[case, "own", large], found[case, "own", small]).replace(" |", ",")
             for case in ("parse", "menu", "dialog", "emit")]
    return f"{small} to {large} | {' | '.join(cells)} |"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--beside", nargs="+", required=True)
    parser.add_argument("--doubled", nargs="+", required=True)
    parser.add_argument("--print-size", required=True)
    arguments = parser.parse_args()
    results = [read(path) for path in arguments.beside]
    print("| case | size | this reader | libcups | times faster | by the fastest runs | aim |")
    print("| --- | --- | --- | --- | --- | --- | --- |")
    for case in CASES:
        print("\n".join(beside(results, *case)))
    print()
    print("| case | size | time | parsing | times as long | by the fastest runs | aim |")
    print("| --- | --- | --- | --- | --- | --- | --- |")
    for case in COMPILED:
        print("\n".join(beside_parsing(results, *case)))
    print()
    print("| heap of a parsed PPD | this reader | libcups | times as much | aim |")
    print("| --- | --- | --- | --- | --- |")
    print("\n".join(heaps(results)))
    print()
    print("| times as long, medians and fastest | sizes | parsing | a menu | the dialog "
          "| emitting |")
    print("| --- | --- | --- | --- | --- | --- |")
    for path in arguments.doubled:
        print(f"| twice the PPD | {growth(read(path))}")
    print(f"| with a print size | {growth(read(arguments.print_size))}")


if __name__ == "__main__":
    main()
