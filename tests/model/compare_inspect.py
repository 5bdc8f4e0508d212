#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Compare `zubprint inspect` with the second reader on random PPD files.

Each seed gives one file and one set of arguments. A file that reaches a place
whose outcome isn't settled is compared only in what that place can't touch;
with --unsettled it is compared whole.
"""

import argparse
import json
import math
import multiprocessing
import os
import random
import subprocess
import sys
import tempfile

import random_ppd
from inspect_model import (ALL_FIELDS, Boolean, CustomPageSize,
                           FloatRange, NoSuchControl, Popup, Range, Reader)

TIMEOUT = 30
ABSENT = "(absent)"


class Case:
    """The file and the arguments of one seed, with what is expected."""

    def __init__(self, seed, whole):
        self.rng = random.Random(f"arguments {seed}")
        self.data = random_ppd.make(seed)
        self.arguments = []
        self.status = 0
        self.expected = None
        self.warnings = 0
        reader = self.read()
        self.doubts = list(reader.doubts)
        self.fields = frozenset(ALL_FIELDS) if whole else \
            reader.certain_fields()
        self.set_values(reader)
        if self.status == 0:
            self.expected = reader.document()

    def read(self):
        rng = self.rng
        options, accept = 3, None
        if rng.random() < 0.5:
            options = rng.randrange(4)
            self.arguments += ["--parse-options", str(options)]
        if rng.random() < 0.3:
            self.arguments += ["--extensions", str(rng.randint(-1, 2))]
        if rng.random() < 0.2:
            accept = rng.sample(["ZUB", "DEMO.PPD", "zub", '"X.', "X.PPD\"",
                                 "NAME BEHIND IT ALL", "", "ZüB", "4.3", "日"],
                                rng.randint(1, 3))
            for fragment in accept:
                self.arguments += ["--accept", fragment]
        return Reader(self.data, options, accept)

    def set_values(self, reader):
        if "controls" not in self.fields or self.rng.random() < 0.3:
            return
        able = [c for c in reader.controls if c.keyword and
                len(c.keyword) <= 40 and c.keyword.isascii() and
                b"=" not in c.keyword]
        if self.rng.random() < 0.03:
            able = []
        for _ in range(self.rng.randint(1, 4)):
            keyword, text = "*NoSuch", "x"
            if able:
                control = self.rng.choice(able)
                keyword, text = control.keyword.decode(), self.value(control)
            elif self.rng.random() < 0.7:
                return
            self.arguments += ["--set", f"{keyword}={text}"]
            try:
                taken = reader.set_value(keyword, text)
            except NoSuchControl:
                self.status = 1
                return
            if taken is None:
                self.warnings = None
            elif not taken and self.warnings is not None:
                self.warnings += 1

    def value(self, control):
        pick = self.rng.choice
        if isinstance(control, Boolean):
            return pick(["True", "False", "true", "TRUEish", "tru", "", "1"])
        if isinstance(control, FloatRange):
            return pick(["0", "1.5", "-2", "99.25", "abc", "0.33333"])
        if isinstance(control, Range):
            return pick(["0", "7", "-7", "103", "12", "abc", "5x"])
        if isinstance(control, CustomPageSize):
            return pick(["612 792", "10", "72.5 100.25", "", "x 5"])
        if not isinstance(control, Popup):
            return "other"
        texts = [i.text() for i in control.items if i.keyword]
        names = [i.name for i in control.items
                 if i.name and i.name.isascii() and "\0" not in i.name]
        texts += [self.rng.choice(["on", "Nothing", "Profil é", "profil x",
                                   "Profil X", "p" * 63, "p" * 64])]
        if names and self.rng.random() < 0.3:
            name = pick(names)
            return pick([name, name.upper(), name.lower()])
        return pick(texts)


def same_number(a, b):
    if isinstance(a, float) or isinstance(b, float):
        return math.isclose(a, b, rel_tol=1e-6, abs_tol=1e-9)
    return a == b


def first_difference(expected, actual, path=""):
    """(path, expected, actual), or None. Further fields may stand there."""
    if isinstance(expected, dict) and isinstance(actual, dict):
        for key, value in expected.items():
            found = first_difference(value, actual.get(key, ABSENT),
                                     f"{path}.{key}" if path else key)
            if found:
                return found
        return None
    if isinstance(expected, list) and isinstance(actual, list):
        for n in range(max(len(expected), len(actual))):
            found = first_difference(
                expected[n] if n < len(expected) else ABSENT,
                actual[n] if n < len(actual) else ABSENT, f"{path}[{n}]")
            if found:
                return found
        return None
    numbers = (int, float)
    if isinstance(expected, numbers) and isinstance(actual, numbers) and \
            not isinstance(expected, bool) and not isinstance(actual, bool):
        same = same_number(expected, actual)
    else:
        same = type(expected) is type(actual) and expected == actual
    return None if same else (path, expected, actual)


def run_command(zubprint, question, path, arguments):
    """(status, output, error lines); a text as status says why there's none.
    """
    command = [zubprint, question, path] + [
        a.encode("utf-8", "surrogateescape") for a in arguments]
    try:
        done = subprocess.run(command, stdin=subprocess.DEVNULL,
                              capture_output=True, timeout=TIMEOUT)
    except subprocess.TimeoutExpired:
        return f"none after {TIMEOUT} s", b"", []
    except OSError as e:
        return str(e), b"", []
    return done.returncode, done.stdout, done.stderr.splitlines()


def check(case, status, output, errors):
    """The first difference, or None."""
    if status != case.status:
        return "exit status", case.status, status
    if case.status:
        return None if len(errors) == 1 else ("error lines", 1, len(errors))
    try:
        actual = json.loads(output.decode("utf-8"))
    except ValueError as e:
        return "output", "a JSON document in UTF-8", str(e)
    for field in ALL_FIELDS:
        if field not in actual:
            return field, "a field", ABSENT
        if field in case.fields:
            found = first_difference(case.expected[field], actual[field],
                                     field)
            if found:
                return found
    if case.warnings is not None and len(errors) != case.warnings:
        return "warning lines", case.warnings, len(errors)
    return None


def keep(stem, data, expected, output):
    with open(stem + ".ppd", "wb") as file:
        file.write(data)
    with open(stem + ".actual.json", "wb") as file:
        file.write(output)
    with open(stem + ".expected.json", "w", encoding="utf-8") as file:
        json.dump(expected, file, ensure_ascii=False, indent=2)


def run_seed(job):
    """(seed, arguments, difference, unsettled places, was compared whole)."""
    seed, options = job
    case = Case(seed, options.unsettled)
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "random.ppd")
        with open(path, "wb") as file:
            file.write(case.data)
        status, output, errors = run_command(options.zubprint, "inspect",
                                             path, case.arguments)
    difference = check(case, status, output, errors)
    if difference and options.keep:
        keep(os.path.join(options.keep, f"seed{seed}"), case.data,
             case.expected, output)
    return (seed, case.arguments, difference, case.doubts,
            len(case.fields) == len(ALL_FIELDS))


def shown(value):
    text = json.dumps(value, ensure_ascii=True)
    return text if len(text) <= 300 else text[:300] + "..."


def print_difference(seed, question, arguments, difference):
    path, expected, actual = difference
    print(f"seed {seed}: {question} {' '.join(map(shown, arguments))}\n"
          f"  at {path}\n    expected {shown(expected)}\n"
          f"    actual   {shown(actual)}", flush=True)


def argument_parser(description, count):
    parser = argparse.ArgumentParser(description=description)
    parser.add_argument("--zubprint", required=True, metavar="PATH")
    parser.add_argument("--count", type=int, default=count, metavar="N")
    parser.add_argument("--seed", type=int, default=1, metavar="S",
                        help="the first seed")
    parser.add_argument("--keep", metavar="DIR",
                        help="where the files of failed cases go")
    return parser


def parsed(parser, argv):
    """(options, jobs), a job being a seed and the options."""
    options = parser.parse_args(argv)
    options.zubprint = os.path.abspath(options.zubprint)
    if not os.access(options.zubprint, os.X_OK):
        parser.error(f"{options.zubprint} can't be run")
    if options.keep:
        os.makedirs(options.keep, exist_ok=True)
    return options, [(seed, options) for seed in
                     range(options.seed, options.seed + options.count)]


def main(argv=None):
    parser = argument_parser(__doc__.splitlines()[0], 1000)
    parser.add_argument("--unsettled", action="store_true",
                        help="compare whole at unsettled places too")
    options, jobs = parsed(parser, argv)
    passed = failed = in_part = 0
    with multiprocessing.Pool(2) as pool:
        for seed, arguments, difference, doubts, whole in pool.imap(
                run_seed, jobs, chunksize=4):
            in_part += not whole
            if difference is None:
                passed += 1
                continue
            failed += 1
            print_difference(seed, "inspect", arguments, difference)
            for doubt in doubts:
                print(f"    unsettled: {doubt}", flush=True)
    if in_part:
        print(f"{in_part} compared in part, at unsettled places")
    print(f"{passed} passed, {failed} failed")
    return 1 if failed or not passed else 0


if __name__ == "__main__":
    sys.exit(main())
