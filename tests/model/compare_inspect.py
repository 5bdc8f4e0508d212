#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Compare `zubprint inspect` with the second reader on random PPD files.

Each seed gives one file and one set of arguments. Of a file that reaches a
place whose outcome isn't settled only the status is compared; with --unsettled
it is compared whole.
"""

import sys

import random_ppd
from comparing import Call, Dice, Result, keep, own_folder, run, run_command
from inspect_model import Reader

FRAGMENTS = ["ZUB", "DEMO.PPD", ".PPD", "zub", '"X.', "X.PPD\"", "NAME BEHIND IT ALL",
             "", "ZüB", "4.3", "日"]


def make_case(seed, whole):
    """(file, call, unsettled places)"""
    dice = Dice(f"arguments {seed}")
    data = random_ppd.make(seed)
    call = Call(["inspect", "random.ppd"])
    options, accept, level = 3, None, -1
    if dice.chance(0.5):
        options = dice.rng.randrange(4)
        call.arguments += ["--parse-options", str(options)]
    if dice.chance(0.3):
        level = dice.rng.randint(-1, 3)
        call.arguments += ["--extensions", str(level)]
    if dice.chance(0.3):
        accept = dice.rng.sample(FRAGMENTS, dice.rng.randint(1, 3))
        for fragment in accept:
            call.arguments += ["--accept", fragment]
    reader = Reader(data, options, accept, level)
    doubts = tuple(reader.doubts)
    whole = whole or not doubts
    if whole and dice.chance(0.7):
        call.set_some(dice, reader.controls, dice.rng.randint(1, 4),
                      reader.set_value)
    if call.status == 0:
        call.document = reader.document() if whole else {}
    return data, call, doubts


def compare(options, seed):
    data, call, doubts = make_case(seed, options.unsettled)
    result = Result(seed, 1, partly=call.document == {}, notes=doubts)
    with own_folder("random.ppd", data):
        answer = run_command(options, call.arguments)
    if difference := call.difference(answer):
        result.found = call.arguments, difference
        keep(options, result, data, call, answer)
    return result


if __name__ == "__main__":
    sys.exit(run(__doc__, "inspect", 600, compare))
