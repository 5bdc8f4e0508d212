#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Compare the command's rules and searches with a second store and solver.

Each seed gives one file, one set of selections, one call of `constraints` and
a few of `solve`.
"""

import json
import multiprocessing
import os
import random
import sys
import tempfile

import random_rules
from compare_inspect import (argument_parser, first_difference, keep, parsed,
                             print_difference, run_command)
from constraints_model import NoSuchText, RuleReader
from inspect_model import Boolean, NoSuchControl, Popup

COUNT = 400


class Case:
    """The file of one seed, and the calls with what is expected of them."""

    def __init__(self, seed):
        self.rng = random.Random(f"questions {seed}")
        self.data = random_rules.make(seed)
        self.parse_options = self.rng.choice((3, 3, 3, 0, 1, 2))
        self.controls = RuleReader(self.data, 3).controls
        self.settings = [self.setting() for _ in
                         range(self.rng.choice((0, 1, 2, 3, 5)))]
        self.bounds = set()
        self.calls = [self.constraints()]
        self.calls += [self.solve() for _ in range(self.rng.randint(1, 2))]

    def chance(self, p):
        return self.rng.random() < p

    def options(self, control):
        if isinstance(control, Boolean):
            return [b"True", b"False"]
        if isinstance(control, Popup):
            return [item.keyword for item in control.items]
        return [b"1"]

    def pair(self):
        if not self.controls or self.chance(0.01):
            return b"*NoSuch", b"x"
        control = self.rng.choice(self.controls)
        options = self.options(control)
        if not options or self.chance(0.05):
            options = self.options(self.rng.choice(self.controls)) + [
                b"None", b"", b"", b"Unlisted", self.controls[0].keyword]
        return control.keyword, self.rng.choice(options)

    def setting(self):
        key, option = self.pair()
        while not key.isascii():
            key, option = self.pair()
        return key.decode(), option.decode("mac_roman")

    # -- the calls: (question, arguments, status, document, warning lines)

    def call(self, question, arguments, ask):
        reader = RuleReader(self.data, self.parse_options)
        assert not reader.doubts, reader.doubts
        head = ["--parse-options", str(self.parse_options)]
        for setting in self.settings:
            head += ["--set", "=".join(setting)]
        warnings, document = 0, None
        if not reader.is_valid():
            return question, head + arguments, 3, document, warnings
        status = 0
        try:
            for setting in self.settings:
                warnings += not reader.set_value(*setting)
            document = ask(reader)
        except (NoSuchControl, NoSuchText):
            status = 1
        return question, head + arguments, status, document, warnings

    def constraints(self):
        custom = self.chance(0.3)
        return self.call("constraints", ["--custom-paper"] * custom,
                         lambda reader: reader.constrained(custom))

    def solve(self):
        pairs = [self.pair() for _ in
                 range(self.rng.choice((0, 1, 1, 1, 1, 2, 2, 3, 4)))]
        locks = []
        if self.chance(0.3):
            locks = [self.pair() for _ in
                     range(self.rng.choice((1, 1, 2, 3)))]
            locks = [(key, None if self.chance(0.5) else option)
                     for key, option in locks]
        keep_delta, only_test = self.chance(0.3), self.chance(0.2)
        arguments = ["--keep-delta"] * keep_delta + ["--test"] * only_test
        for lock in locks:
            arguments += ["--lock", joined(lock)]
        arguments += [joined(pair) for pair in pairs]

        def ask(reader):
            document, bounds = reader.solved(pairs, locks, keep_delta,
                                             only_test)
            self.bounds |= bounds
            return document
        return self.call("solve", arguments, ask)


def joined(pair):
    return b"=".join(text for text in pair if text is not None).decode(
        "utf-8", "surrogateescape")


def check(call, status, output, errors):
    """The first difference, or None."""
    _, _, expected_status, document, warnings = call
    if status != expected_status:
        return "exit status", expected_status, status
    lines = warnings + bool(status)
    if len(errors) != lines:
        return "lines on standard error", lines, len(errors)
    if status:
        return ("output", "", output.decode("utf-8", "replace")) if output \
            else None
    try:
        return first_difference(document, json.loads(output.decode("utf-8")))
    except ValueError as e:
        return "output", "a JSON document in UTF-8", str(e)


def run_seed(job):
    """(seed, number of calls, bounds, call and difference or None)."""
    seed, options = job
    case = Case(seed)
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "random.ppd")
        with open(path, "wb") as file:
            file.write(case.data)
        for call in case.calls:
            question, arguments, _, document, _ = call
            status, output, errors = run_command(options.zubprint, question,
                                                 path, arguments)
            difference = check(call, status, output, errors)
            if difference:
                if options.keep:
                    keep(os.path.join(options.keep, f"rules{seed}"),
                         case.data, document, output)
                return seed, len(case.calls), case.bounds, (
                    question, arguments, difference)
    return seed, len(case.calls), case.bounds, None


def main(argv=None):
    options, jobs = parsed(argument_parser(__doc__.splitlines()[0], COUNT),
                           argv)
    calls = failed = 0
    met = {"depth": 0, "queue": 0}
    with multiprocessing.Pool(2) as pool:
        for seed, count, bounds, found in pool.imap(run_seed, jobs,
                                                    chunksize=4):
            calls += count
            for bound in bounds:
                met[bound] += 1
            if found:
                failed += 1
                print_difference(seed, *found)
    print(f"{len(jobs) - failed} passed, {failed} failed, {calls} calls; "
          f"{met['depth']} seeds met the bound of the depth, {met['queue']} "
          f"that of the queue")
    if options.count >= COUNT and 0 in met.values():
        print("a bound was never met")
        return 1
    return 1 if failed or not jobs else 0


if __name__ == "__main__":
    sys.exit(main())
