#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Compare `zubprint inspect` with the second reader on random PPD files.

Each seed gives one file and one set of arguments. A file that reaches a place
whose outcome isn't settled is compared only in what that place can't touch;
with --unsettled it is compared whole.
"""

import sys

import random_ppd
from comparing import Call, Dice, Result, keep, own_folder, run, run_command
from inspect_model import ALL_FIELDS, Reader

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
    fields = ALL_FIELDS if whole else reader.certain_fields()
    if "controls" in fields and dice.chance(0.7):
        call.set_some(dice, reader.controls, dice.rng.randint(1, 4),
                      reader.set_value)
    if call.status == 0:
        document = reader.document()
        call.document = {field: document[field] for field in fields}
    return data, call, doubts


def compare(options, seed):
    data, call, doubts = make_case(seed, options.unsettled)
    partly = call.document is not None and len(call.document) < len(ALL_FIELDS)
    result = Result(seed, 1, partly=partly, notes=doubts)
    with own_folder("random.ppd", data):
        answer = run_command(options, call.arguments)
    if difference := call.difference(answer):
        result.found = call.arguments, difference
        keep(options, result, data, call, answer)
    return result


if __name__ == "__main__":
    sys.exit(run(__doc__, "inspect", 600, compare))
