# SPDX-License-Identifier: Apache-2.0
"""What the comparers share: a case for each seed, calls of the command with
what a model expects of them, and the account of the differences.
"""

import argparse
import collections
import contextlib
import dataclasses
import functools
import json
import math
import multiprocessing
import os
import random
import subprocess
import tempfile

from inspect_model import (Boolean, CustomPageSize, FloatRange, JobNote,
                           NoSuchControl, Popup, Range)

# A page with a pane in it, a roll-down to see and one that is hidden.
LAYOUT = [b"*%ZUBPropPage Page/Page: True", b"*%ZUBGroupName Pane/Pane: True",
          b"*%ZUBGroupName Roll/Roll: True", b"*%ZUBGroupName Dark/Dark: x",
          b"*%ZUBParent Pane/Page: True|Scrollpane",
          b"*%ZUBParent Roll/Pane: True|Rolldown",
          b"*%ZUBParent Dark/Pane: Rolldown"]
TIMEOUT = 30
ABSENT = "(absent)"


class Dice:
    """Random choices; the same seed always gives the same."""

    def __init__(self, seed):
        self.rng = random.Random(seed)

    def chance(self, p):
        return self.rng.random() < p

    def pick(self, values):
        return self.rng.choice(values)

    def opening(self, key, group, flags=b"Dynamic"):
        lines = [b"*%ZUBFlags " + key + b": " + flags]
        if group:
            lines.append(b"*%ZUBGroup " + key + b": " + group + b"/x")
        return lines

    def block(self, key, kind, body, group, flags=b"Dynamic"):
        """The lines of a popup or a boolean."""
        return (self.opening(key, group, flags) +
                [b"*OpenUI " + key + b"/Name: " + kind] + body +
                [b"*CloseUI: " + key])

    def value(self, control):
        """A text to set the control to, mostly one that it takes."""
        if isinstance(control, Boolean):
            return self.pick(["True", "False", "true", "TRUEish", "tru", "",
                              "1"])
        if isinstance(control, FloatRange):
            return self.pick(["0", "1.5", "-2", "99.25", "abc", "0.33333"])
        if isinstance(control, Range):
            return self.pick(["0", "7", "-7", "103", "12", "abc", "5x"])
        if isinstance(control, CustomPageSize):
            return self.pick(["612 792", "10", "72.5 100.25", "", "x 5"])
        if isinstance(control, JobNote):
            return self.pick(["", "one", "Ünï é", "日本", "a\\b (c)", "~",
                              "line\nshowpage", "\x7f\t", "n" * 512,
                              "n" * 511 + "xy", "é" * 300])
        if not isinstance(control, Popup):
            return "other"
        texts = [i.text() for i in control.items if i.keyword]
        names = [i.name for i in control.items
                 if i.name and i.name.isascii() and "\0" not in i.name]
        texts += [self.pick(["on", "Nothing", "Profil é", "profil x",
                             "Profil X", "p" * 63, "p" * 64])]
        if names and self.chance(0.3):
            name = self.pick(names)
            return self.pick([name, name.upper(), name.lower()])
        return self.pick(texts)


@dataclasses.dataclass
class Call:
    """One call of the command, and what a model expects of it."""
    arguments: list
    status: int = 0
    document: object = None
    warnings: int = 0  # None for any number of lines
    # Beginnings of the lines about watermarks; None where nobody knows.
    marks_told: list = None

    def set(self, keyword, text, set_value):
        """Adds a setting; False if the call ends with it."""
        self.arguments += ["--set", f"{keyword}={text}"]
        try:
            taken = set_value(keyword, text)
        except NoSuchControl:
            self.status = 1
            return False
        if taken is None:
            self.warnings = None
        elif self.warnings is not None:
            self.warnings += not taken
        return True

    def set_some(self, dice, controls, count, set_value):
        """Settings of controls that are there, and rarely of none."""
        able = [c for c in controls if c.keyword and len(c.keyword) <= 40 and
                c.keyword.isascii() and b"=" not in c.keyword]
        for _ in range(count):
            keyword, text = "*NoSuch", "x"
            if able and not dice.chance(0.01):
                control = dice.pick(able)
                keyword, text = control.keyword.decode(), dice.value(control)
            elif dice.chance(0.5):
                return
            if not self.set(keyword, text, set_value):
                return

    def read(self, output):
        return json.loads(output.decode("utf-8"))

    def difference(self, answer):
        """The first one, or None."""
        status, output, errors = answer
        if status != self.status:
            return "exit status", self.status, status
        opening = b"zubprint: warning: "
        told = [line.removeprefix(opening) for line in errors
                if line.startswith(opening) and b"watermark" in line and
                b" doesn't take " not in line]
        if self.marks_told is not None and not (
                len(told) == len(self.marks_told) and all(
                    map(bytes.startswith, told,
                        map(str.encode, self.marks_told)))):
            return "lines of watermarks", self.marks_told, told
        # Of the warnings only these are a matter of one setting alone.
        errors = [line for line in errors
                  if not line.startswith(b"zubprint: warning: ") or
                  b" doesn't take " in line]
        if self.warnings is not None and \
                len(errors) != self.warnings + bool(status):
            return "error lines", self.warnings + bool(status), len(errors)
        if status:
            return ("output", "", output.decode("utf-8", "replace")) \
                if output else None
        try:
            return first_difference(self.document, self.read(output))
        except ValueError as e:
            return "output", "a JSON document in UTF-8", str(e)


@dataclasses.dataclass
class Result:
    """What came of one seed."""
    seed: int
    calls: int = 0
    open: bool = False  # it couldn't be compared
    partly: bool = False  # only some of it could
    notes: tuple = ()   # what it met, to be counted over all seeds
    found: tuple = ()   # the arguments of a call and its difference


def same(expected, actual):
    numbers = (int, float)
    if isinstance(expected, numbers) and isinstance(actual, numbers) and \
            not isinstance(expected, bool) and not isinstance(actual, bool):
        if isinstance(expected, float) or isinstance(actual, float):
            return math.isclose(expected, actual, rel_tol=1e-6, abs_tol=1e-9)
        return expected == actual
    return type(expected) is type(actual) and expected == actual


def first_difference(expected, actual, path=""):
    """(path, expected, actual), or None. Further fields may stand there."""
    found = None
    if isinstance(expected, dict) and isinstance(actual, dict):
        for key, value in expected.items():
            found = found or first_difference(
                value, actual.get(key, ABSENT),
                f"{path}.{key}" if path else key)
    elif isinstance(expected, list) and isinstance(actual, list):
        for n in range(max(len(expected), len(actual))):
            found = found or first_difference(
                expected[n] if n < len(expected) else ABSENT,
                actual[n] if n < len(actual) else ABSENT, f"{path}[{n}]")
    elif not same(expected, actual):
        found = path, expected, actual
    return found


@contextlib.contextmanager
def own_folder(name, data):
    """A folder with one file, which is home and the present one at once."""
    with tempfile.TemporaryDirectory() as folder:
        home = os.environ.get("HOME", "/")
        os.environ["HOME"] = folder
        os.chdir(folder)
        try:
            with open(name, "wb") as file:
                file.write(data)
            yield
        finally:
            os.chdir("/")
            os.environ["HOME"] = home


def run_command(options, arguments):
    """(status, output, error lines); a text as status says why there's none.
    """
    command = [options.zubprint] + [a.encode("utf-8", "surrogateescape")
                                    for a in arguments]
    try:
        done = subprocess.run(command, stdin=subprocess.DEVNULL,
                              capture_output=True, timeout=TIMEOUT)
    except subprocess.TimeoutExpired:
        return f"none after {TIMEOUT} s", b"", []
    except OSError as e:
        return str(e), b"", []
    return done.returncode, done.stdout, done.stderr.splitlines()


def keep(options, result, data, call, answer):
    """The files of a difference, if somebody wants them."""
    if not options.keep:
        return
    stem = os.path.join(options.keep, f"{options.subject}{result.seed}")
    with open(stem + ".ppd", "wb") as file:
        file.write(data)
    with open(stem + ".actual.json", "wb") as file:
        file.write(answer[1])
    with open(stem + ".expected.json", "w", encoding="utf-8") as file:
        json.dump(call.document, file, ensure_ascii=False, indent=2)


def shown(value):
    text = json.dumps(value, ensure_ascii=True)
    return text if len(text) <= 300 else text[:300] + "..."


def parsed(description, subject, count, argv):
    parser = argparse.ArgumentParser(description=description.splitlines()[0])
    parser.add_argument("--zubprint", required=True, metavar="PATH")
    parser.add_argument("--count", type=int, default=count, metavar="N")
    parser.add_argument("--seed", type=int, default=1, metavar="S",
                        help="the first seed")
    parser.add_argument("--keep", metavar="DIR",
                        help="where the files of differences go")
    parser.add_argument("--unsettled", action="store_true",
                        help="compare at unsettled places too")
    options = parser.parse_args(argv, argparse.Namespace(subject=subject))
    options.zubprint = os.path.abspath(options.zubprint)
    if not os.access(options.zubprint, os.X_OK):
        parser.error(f"{options.zubprint} can't be run")
    if options.keep:
        options.keep = os.path.abspath(options.keep)
        os.makedirs(options.keep, exist_ok=True)
    return options


def run(description, subject, count, compare, must_meet=(), argv=None):
    """The exit status of a comparer, whose `compare` has options and seed.

    From as many seeds as it runs by default, each of `must_meet` has to be
    among the notes.
    """
    options = parsed(description, subject, count, argv)
    seeds = range(options.seed, options.seed + options.count)
    notes = collections.Counter()
    calls = failed = left_open = partly = 0
    with multiprocessing.Pool(os.cpu_count()) as pool:
        for result in pool.imap(functools.partial(compare, options), seeds,
                                chunksize=4):
            calls += result.calls
            left_open += result.open
            partly += result.partly
            notes.update(result.notes)
            if result.found:
                failed += 1
                arguments, (path, expected, actual) = result.found
                print(f"seed {result.seed}: "
                      f"{' '.join(map(shown, arguments))}\n  at {path}\n"
                      f"    expected {shown(expected)}\n"
                      f"    actual   {shown(actual)}", flush=True)
                for note in result.notes:
                    print(f"    met {note}", flush=True)
    never = [note for note in must_meet if options.count >= count and
             not notes[note]]
    for note in never:
        print(f"no seed met {note}")
    passed = len(seeds) - failed - left_open
    print(f"{subject}: {passed} passed, {failed} failed, {left_open} left "
          f"open, {partly} compared in part, {calls} calls")
    return 1 if failed or never or not passed else 0
