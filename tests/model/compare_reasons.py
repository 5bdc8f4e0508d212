#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Compare why and fix with what trying every state of a small PPD gives.

Each seed gives one file, some settings, and one choice that is asked about.
"""

import json
import shlex
import sys

from comparing import Dice, Result, own_folder, run, run_command
from reasons_model import Printer, Rule

FORCED, FIXED, HOPELESS = "a forced blocker", "a fix", "no fix"
HEAD = ['*PPD-Adobe: "4.3"', "*LanguageVersion: English",
        "*LanguageEncoding: ISOLatin1", '*PCFileName: "ZUBTEST.PPD"',
        "*%ZUVersion: 4.4"]


class Case(Dice):
    """A file, the settings, and the printer that they come to."""

    def __init__(self, seed):
        super().__init__(f"reasons {seed}")
        count = self.rng.randint(2, 5)
        self.keys = [f"*K{n}" for n in range(count)]
        self.options = {key: self.words() for key in self.keys}
        self.selected = {key: self.pick(words)
                         for key, words in self.options.items()}
        self.lines, self.rules = list(HEAD), []
        for key in self.keys:
            self.add_option(key)
        share = self.pick((0.15, 0.3, 0.5))
        for first in self.pairs():
            for second in self.pairs():
                if first[0] != second[0] and self.chance(share / 2):
                    self.add_rule(first, second)
        if self.chance(0.1):
            pair = self.pick(list(self.pairs()))
            self.add_rule(pair, pair)
        self.printer = Printer(self.options, self.selected, self.rules)
        self.choice = self.pick(
            [pair for pair in self.pairs()
             if pair[1] != self.selected[pair[0]]])
        self.data = "\n".join(self.lines + [""]).encode()

    def words(self):
        if self.chance(0.25):
            return ["True", "False"]
        words = [f"w{n}" for n in range(self.rng.randint(2, 4))]
        if self.chance(0.4):
            words[0] = "None"
        return words

    def add_option(self, key):
        words = self.options[key]
        kind = "Boolean" if words == ["True", "False"] else "PickOne"
        self.lines += [f"*%ZUBFlags {key}: Dynamic",
                       f"*OpenUI {key}/Option {key[1:]}: {kind}",
                       f"*Default{key[1:]}: {self.selected[key]}"]
        self.lines += [f'{key} {word}/Word {word}: ""' for word in words]
        self.lines.append(f"*CloseUI: {key}")

    def pairs(self):
        return ((key, word) for key in self.keys
                for word in self.options[key])

    def add_rule(self, first, second):
        blank = [self.chance(0.05), self.chance(0.05)]
        ends = [(key, "" if b else word)
                for (key, word), b in zip((first, second), blank)]
        self.write_rule(*ends)
        if self.chance(0.7):
            self.write_rule(*ends[::-1])

    def write_rule(self, first, second):
        word = self.pick(("*UIConstraints:", "*%ZUBUIConstraints:"))
        text = " ".join(t for t in (word, *first, *second) if t)
        if self.chance(0.1):
            self.lines.append("*% a remark")
        if self.chance(0.05):
            self.lines.append(text.replace("*%ZUB", "*").replace(
                "*UIConstraints", "*%ZUBUIRequires"))
        self.lines.append(text)
        self.rules.append(Rule(*first, *second, len(self.lines), text))


def difference(options, case, result):
    """(arguments, (place, expected, found)), or None."""
    printer, choice = case.printer, case.choice
    asked = "=".join(choice)

    def ask(*arguments):
        result.calls += 1
        status, output, _ = run_command(options, list(arguments))
        return status, output.decode()

    blockers = printer.blockers(choice)
    call = ["why", "small.ppd", "--json", asked]
    status, output = ask(*call)
    found = json.loads(output)
    expected = {"constrained": bool(blockers), "blockers": blockers,
                "rulesOut": printer.ruled_out(choice)}
    if status or found != expected:
        return call, ("answer", expected, found)
    if any(row["forcedBy"] for row in blockers):
        result.notes += (FORCED,)

    call = ["fix", "small.ppd", "--json", asked]
    status, output = ask(*call)
    found = json.loads(output)
    reachable = printer.fewest_solved(choice)
    if not found["possible"]:
        result.notes += (HOPELESS,)
        if status != 1 or found["changes"] or reachable is not None:
            return call, ("possible", reachable, found)
        return None
    result.notes += (FIXED,)
    changes = {key: new for key, _, new in found["changes"]}
    froms = {key: old for key, old, _ in found["changes"]}
    if status or any(case.selected[key] != froms[key] for key in froms) or \
            choice[0] in changes or not printer.works(choice, changes):
        return call, ("changes", "changes that work", found)
    fewest = printer.fewest(choice)
    if len(changes) < fewest or reachable is None or \
            len(changes) > reachable:
        return call, ("number of changes", (fewest, reachable), changes)

    # The last line of the text is what makes the changes.
    last = shlex.split(ask("fix", "small.ppd", asked)[1].splitlines()[-1])
    call = ["constraints", "small.ppd", *last]
    constrained = json.loads(ask(*call)[1])["constrained"]
    state = dict(case.selected, **changes)
    state[choice[0]] = choice[1]
    changed = {choice[0], *changes}
    for key, option in state.items():
        hits = [hit for _, hit in printer.hits((key, option), state)]
        bad = key in changed or any(hit[0] in changed for hit in hits)
        if ([key, option] in constrained) != bool(hits) or (hits and bad):
            return call, ("conflicts after the fix", [], [key, option])
    return None


def compare(options, seed):
    case = Case(seed)
    result = Result(seed)
    with own_folder("small.ppd", case.data):
        try:
            found = difference(options, case, result)
        except (ValueError, LookupError, TypeError) as e:
            found = ["=".join(case.choice)], ("answer", "a document as it was asked for", str(e))
        if found:
            result.found = found
            if options.keep:
                with open(f"{options.keep}/reasons{seed}.ppd", "wb") as file:
                    file.write(case.data)
    return result


if __name__ == "__main__":
    sys.exit(run(__doc__, "reasons", 200, compare,
                 (FORCED, FIXED, HOPELESS)))
