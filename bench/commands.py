#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Prints what whole commands take, as a table.

usage: commands.py BIN_DIR SAMPLE LARGE_PPD

`print` of the sample stands beside `cupstestppd -q` on it, in turn and once more among many idle
processes; `inspect` of a large PPD has to stay within its memory. CPU times with the system's share,
medians of the runs, and the fastest of them.
"""

import contextlib
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile

RUNS = 15
IDLE_PROCESSES = 400
MOST_TIMES = 1.5
MOST_MEBIBYTES = 40


def measure(arguments, folder):
    """(CPU milliseconds, MiB at most, what it printed) of one call."""
    output = folder / "output"
    with open(output, "wb") as file:
        process = subprocess.Popen(arguments, stdout=file, stderr=subprocess.DEVNULL,
                                   env=dict(os.environ, HOME=str(folder)))
        _, status, used = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode:
        raise SystemExit(f"{arguments}: status {process.returncode}")
    return 1000 * (used.ru_utime + used.ru_stime), used.ru_maxrss / 1024, output


def in_turn(zubprint, sample, folder):
    """CPU milliseconds of printing and of the peer's test."""
    own, peer = [], []
    for _ in range(RUNS):
        time, _, output = measure([zubprint, "print", "--ppd", sample], folder)
        own.append(time)
        pathlib.Path(output.read_text().splitlines()[-1]).unlink()  # the job data file
        peer.append(measure(["cupstestppd", "-q", sample], folder)[0])
    return own, peer


@contextlib.contextmanager
def idle_processes(count):
    processes = [subprocess.Popen(["sleep", "3600"]) for _ in range(count)]
    try:
        yield
    finally:
        for process in processes:
            process.kill()
            process.wait()


def row(name, own, peer, aim):
    median, fastest = statistics.median(own), min(own)
    print(f"| {name} | {median:.3g} ms | {statistics.median(peer):.3g} ms "
          f"| {median / statistics.median(peer):.3g} | {fastest / min(peer):.3g} | {aim} |")


def main():
    binaries, sample, large = (str(pathlib.Path(path).resolve()) for path in sys.argv[1:])
    zubprint = f"{binaries}/zubprint"
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        print("| command | this reader | cupstestppd -q | times as long | by the fastest runs "
              "| aim |")
        print("| --- | --- | --- | --- | --- | --- |")
        row("print of the sample", *in_turn(zubprint, sample, folder), MOST_TIMES)
        with idle_processes(IDLE_PROCESSES):
            row(f"the same among {IDLE_PROCESSES} more processes",
                *in_turn(zubprint, sample, folder), MOST_TIMES)
        calls = [measure([zubprint, "inspect", large], folder)[:2] for _ in range(RUNS)]
    print()
    print("| command | CPU time | fastest | memory at most | aim |")
    print("| --- | --- | --- | --- | --- |")
    times = [time for time, _ in calls]
    print(f"| inspect of {pathlib.Path(large).stem} | {statistics.median(times):.3g} ms "
          f"| {min(times):.3g} ms | {max(memory for _, memory in calls):.3g} MiB "
          f"| {MOST_MEBIBYTES} MiB |")


if __name__ == "__main__":
    main()
