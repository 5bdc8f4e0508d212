#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Compare the pairs of a job with a second assembly on random PPD files.

Each seed gives one file, the tickets that are found, and one or two runs of
the dialog, the second from what the first one left.
"""

import contextlib
import glob
import json
import multiprocessing
import os
import plistlib
import random
import stat
import sys
import tempfile
import time

import compare_inspect
import random_jobs
from compare_inspect import (argument_parser, first_difference, keep, parsed,
                             print_difference, run_command)
from inspect_model import NoSuchControl
from job_model import PAGE_FORMAT, SETTINGS, Dialog, Host, document, \
    with_options

COUNT = 300
TICKETS = "tickets.plist"
JOB_FILES = "/tmp/Velon.temp"
DATA_KEY = ("ZUB.PSData.com.zub.print.pde."
            "645EBB97-CCEC-44A1-ADE0-29E4901A642D.PInf")


class Run:
    """The arguments of one run, and what is expected of it."""

    def __init__(self, arguments, host, tickets):
        self.arguments = arguments
        self.host = host
        self.tickets = tickets
        self.status = 0
        self.warnings = 0
        self.dialog = None
        self.pairs = []


class Case:
    """The file of one seed and its runs."""

    value = compare_inspect.Case.value

    def __init__(self, seed):
        self.rng = random.Random(f"dialogs {seed}")
        self.token = f"{os.getpid()}X{seed}"
        self.data = random_jobs.make(seed)
        self.found = self.tickets() if self.chance(0.6) else {}
        self.runs = [self.run(False, self.found)]
        first = self.runs[0]
        if first.status == 0 and self.chance(0.4):
            self.runs.append(self.run(first.host.two_way,
                                      first.dialog.kept(first.tickets)))

    def chance(self, p):
        return self.rng.random() < p

    def pick(self, values):
        return self.rng.choice(values)

    # -- what is found

    def tickets(self):
        settings = {}
        if self.chance(0.8):
            for n in range(4):
                if self.chance(0.5):
                    settings["PCKey%d" % n] = self.pick(
                        ["ZUPCMID", "*ZUPCName", "", "用紙"])
                if self.chance(0.5):
                    settings["PCValue%d" % n] = self.pick(
                        ["12", "-1", " -1x", "-10", "", "Size of mine",
                         "トレイ 2"] + ["w" * 240] * self.chance(0.05))
        if self.chance(0.6):
            count = self.pick([1, 2, 5, 12, 257])
            settings[".MMKey"] = count
            for n in range(count):
                if count > 255 or self.chance(0.9):
                    settings["MMKey%d" % n] = self.pick(
                        ["*ZUStored", "Key é"])
                    settings["MMValue%d" % n] = self.pick(
                        ["%d" % n, "two words", "値", "m" * 215, "m" * 216,
                         "é" * 110])
        if self.chance(0.7):
            settings.update(self.stored_choices())
        tickets = {SETTINGS: settings}
        if self.chance(0.3):
            tickets[PAGE_FORMAT] = {}
        return tickets

    def stored_choices(self):
        dialog = Dialog(self.data)
        if not dialog.accepted:
            return {}
        choices = {"*Gone": "x"}
        for control in dialog.ppd.controls:
            if self.chance(0.6):
                choices[control.keyword.decode("mac_roman")] = \
                    self.value(control)
        return {dialog.choices_key(): choices}

    # -- a run

    def host(self, two_way, commits):
        """(host, its arguments)"""
        arguments = []
        host = Host(two_way=two_way)
        how = self.pick(["address", "address", "no", "neither"])
        if how == "address":
            arguments += ["--address", "host.invalid"]
            host.two_way = True
        elif how == "no":
            arguments += ["--no-address"]
            host.two_way = False
        if self.chance(0.35):
            arguments += ["--custom-paper"]
            host.custom_paper = True
        if commits > 1 or self.chance(0.6):
            name = self.pick(["Preview", "zub-print 2", "Éditeur ß", "a/B",
                              "n" * 207, "n" * 208])
            # Tells the files of a run of several commits.
            host.process_name = name if commits == 1 else \
                name[:20] + self.token
            arguments += ["--process-name", host.process_name]
        if self.chance(0.6):
            host.bundle_id = self.pick(
                ["com.adobe.InDesign", "x.indesignserver", "INDESIGN",
                 "com.apple.Preview", "in.design", ""])
            arguments += ["--bundle-id", host.bundle_id]
        return host, arguments

    def run(self, two_way, tickets):
        commits = self.pick([1, 1, 1, 2, 3])
        host, arguments = self.host(two_way, commits)
        if commits > 1:
            arguments += ["--commits", str(commits)]
        orientation = paper_feed = None
        if self.chance(0.6):
            orientation = self.rng.randint(0, 5)
            arguments += ["--orientation", str(orientation)]
        if self.chance(0.4):
            paper_feed = self.pick(["Tray1", "Tray2", "Bypass", "Nowhere",
                                    ""])
            arguments += ["--paper-feed", paper_feed]
        run = Run(arguments, host,
                  with_options(tickets, orientation, paper_feed))
        run.dialog = Dialog(self.data, host, run.tickets)
        if not run.dialog.accepted:
            run.status = 3
            return run
        self.set_values(run)
        if run.status == 0:
            for _ in range(commits):
                run.pairs = run.dialog.commit()
        return run

    def set_values(self, run):
        able = [c for c in run.dialog.ppd.controls if c.keyword.isascii()]
        for _ in range(self.pick((0, 0, 1, 2, 4))):
            keyword, text = "*NoSuch", "x"
            if able and not self.chance(0.01):
                control = self.pick(able)
                keyword, text = control.keyword.decode(), self.value(control)
            elif self.chance(0.9):
                return
            run.arguments += ["--set", f"{keyword}={text}"]
            try:
                taken = run.dialog.set_value(keyword, text)
            except NoSuchControl:
                run.status = 1
                return
            if taken is None:
                run.warnings = None
            elif run.warnings is not None:
                run.warnings += not taken


# --- running -----------------------------------------------------------------

@contextlib.contextmanager
def own_folder():
    """A folder that is home and the present one at once."""
    with tempfile.TemporaryDirectory() as folder:
        home = os.environ.get("HOME", "/")
        os.environ["HOME"] = folder
        os.chdir(folder)
        try:
            yield folder
        finally:
            os.chdir("/")
            os.environ["HOME"] = home


def left_tickets():
    try:
        with open(TICKETS, "rb") as file:
            return plistlib.load(file).get(SETTINGS, {})
    except (OSError, plistlib.InvalidFileException):
        return {}


def clean_up(name, token, start):
    """Remove what a run left in the folder for temporary files."""
    paths = ["/tmp/" + name, left_tickets().get(DATA_KEY, "")]
    for path in glob.glob(JOB_FILES + "*"):
        with contextlib.suppress(OSError, plistlib.InvalidFileException):
            if os.stat(path).st_mtime >= start - 1:
                with open(path, "rb") as file:
                    texts = plistlib.load(file)[1::2]
                if any(token.encode() in text for text in texts):
                    paths.append(path)
    for path in paths:
        with contextlib.suppress(OSError):
            os.remove(path)


def mode(path):
    try:
        found = os.stat(path)
    except OSError:
        return None
    return [stat.S_IMODE(found.st_mode), found.st_size]


def check(run, status, output, errors):
    """The first difference, or None."""
    if status != run.status:
        return "exit status", run.status, status
    lines = None if run.warnings is None else run.warnings + bool(status)
    if lines is not None and len(errors) != lines:
        return "lines on standard error", lines, len(errors)
    if status:
        return ("output", "", output.decode("utf-8", "replace")) if output \
            else None
    try:
        actual = json.loads(output.decode("utf-8"))
    except ValueError as e:
        return "output", "a JSON document in UTF-8", str(e)
    dialog = run.dialog
    found = first_difference(document(run.pairs), actual)
    if found is None:
        stored = left_tickets().get(dialog.choices_key(), {})
        found = first_difference(*([list(p) for p in sorted(c.items())]
                                   for c in (dialog.choices(), stored)),
                                 "choices")
    for path in () if found else dialog.files:
        there = os.path.isdir(os.path.dirname(path) or ".")
        found = found or first_difference([0o777, 0] if there else None,
                                          mode(path), path)
    return found


def run_seed(job):
    """(seed, number of runs, places left open, arguments and difference)."""
    seed, options = job
    case = Case(seed)
    name = f"zubjob{case.token}.ppd"
    with own_folder():
        with open(name, "wb") as file:
            file.write(case.data)
        if case.found:
            with open(TICKETS, "wb") as file:
                plistlib.dump(case.found, file)
        if case.chance(0.8):
            os.mkdir("out")
        difference, doubts = None, []
        for count, run in enumerate(case.runs, 1):
            start = time.time()
            status, output, errors = run_command(
                options.zubprint, "print", "--ppd",
                [name, "--pairs", "--tickets", TICKETS] + run.arguments)
            doubts = run.dialog.doubts
            if options.unsettled or not doubts:
                difference = check(run, status, output, errors)
            clean_up(name, case.token, start)
            if doubts and not options.unsettled:
                break
            if difference:
                difference = run.arguments, difference
                if options.keep:
                    keep(os.path.join(options.keep, f"job{seed}"), case.data,
                         document(run.pairs), output)
                break
    return seed, count, doubts, difference


def main(argv=None):
    parser = argument_parser(__doc__.splitlines()[0], COUNT)
    parser.add_argument("--unsettled", action="store_true",
                        help="compare at unsettled places too")
    options, jobs = parsed(parser, argv)
    if options.keep:
        options.keep = os.path.abspath(options.keep)
    runs = failed = left_open = 0
    reasons = {}
    with multiprocessing.Pool(2) as pool:
        for seed, count, doubts, found in pool.imap(run_seed, jobs,
                                                    chunksize=4):
            runs += count
            left_open += bool(doubts and not options.unsettled)
            for doubt in doubts:
                reasons[doubt] = reasons.get(doubt, 0) + 1
            if found:
                failed += 1
                print_difference(seed, "print", *found)
    for doubt, count in sorted(reasons.items()):
        print(f"{count} seeds met {doubt}")
    passed = len(jobs) - failed - left_open
    print(f"{passed} passed, {failed} failed, {left_open} left open, "
          f"{runs} runs")
    return 1 if failed or not passed else 0


if __name__ == "__main__":
    sys.exit(main())
