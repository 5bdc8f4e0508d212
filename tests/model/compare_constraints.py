#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Compare the command's rules and searches with a second store and solver.

Each seed gives one file, one set of selections, one call of `constraints` and
a few of `solve`.
"""

import sys

import random_rules
from comparing import Call, Dice, Result, keep, own_folder, run, run_command
from constraints_model import NoSuchText, RuleReader
from inspect_model import Boolean, NoSuchControl, Popup

DEPTH, QUEUE = "the bound of the depth", "the bound of the queue"


class Case(Dice):
    """The file of one seed, and the calls with what is expected of them."""

    def __init__(self, seed):
        super().__init__(f"questions {seed}")
        self.data = random_rules.make(seed)
        self.parse_options = self.pick((3, 3, 3, 0, 1, 2))
        self.controls = RuleReader(self.data, 3).controls
        self.settings = [self.setting() for _ in
                         range(self.pick((0, 1, 2, 3, 5)))]
        self.bounds = set()
        self.calls = [self.constraints()]
        self.calls += [self.solve() for _ in range(self.rng.randint(1, 2))]

    def options(self, control):
        if isinstance(control, Boolean):
            return [b"True", b"False"]
        if isinstance(control, Popup):
            return [item.keyword for item in control.items]
        return [b"1"]

    def pair(self):
        if not self.controls or self.chance(0.01):
            return b"*NoSuch", b"x"
        control = self.pick(self.controls)
        options = self.options(control)
        if not options or self.chance(0.05):
            options = self.options(self.pick(self.controls)) + [
                b"None", b"", b"", b"Unlisted", self.controls[0].keyword]
        return control.keyword, self.pick(options)

    def setting(self):
        key, option = self.pair()
        while not key.isascii():
            key, option = self.pair()
        return key.decode(), option.decode("mac_roman")

    # -- the calls

    def call(self, question, arguments, ask):
        reader = RuleReader(self.data, self.parse_options)
        assert not reader.doubts, reader.doubts
        call = Call([question, "random.ppd", "--parse-options",
                     str(self.parse_options)] + arguments)
        if not reader.is_valid():
            call.status = 3
        elif all(call.set(*setting, reader.set_value)
                 for setting in self.settings):
            try:
                call.document = ask(reader)
            except (NoSuchControl, NoSuchText):
                call.status = 1
        return call

    def constraints(self):
        custom = self.chance(0.3)
        return self.call("constraints", ["--custom-paper"] * custom,
                         lambda reader: reader.constrained(custom))

    def solve(self):
        pairs = [self.pair() for _ in
                 range(self.pick((0, 1, 1, 1, 1, 2, 2, 3, 4)))]
        locks = []
        if self.chance(0.3):
            locks = [self.pair() for _ in
                     range(self.pick((1, 1, 2, 3)))]
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


def compare(options, seed):
    case = Case(seed)
    names = {"depth": DEPTH, "queue": QUEUE}
    result = Result(seed, len(case.calls),
                    notes=tuple(names[bound] for bound in case.bounds))
    with own_folder("random.ppd", case.data):
        for call in case.calls:
            answer = run_command(options, call.arguments)
            if difference := call.difference(answer):
                result.found = call.arguments, difference
                keep(options, result, case.data, call, answer)
                break
    return result


if __name__ == "__main__":
    sys.exit(run(__doc__, "rules", 400, compare, (DEPTH, QUEUE)))
