#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Compare the pairs of a job with a second assembly on random PPD files.

Each seed gives one file, the tickets that are found, and one or two runs of
the dialog, the second from what the first one left. What was enciphered is
read back.
"""

import contextlib
import glob
import os
import plistlib
import stat
import sys
import time

import random_jobs
from comparing import (Call, Dice, Result, first_difference, keep, own_folder,
                       run, run_command)
from inspect_model import JobNote, latin
from job_model import FIRST_PAGE_KEY, PAGE_FORMAT, SELECTED_KEY, SETTINGS, \
    SPECIALS, Dialog, Host, document, with_options
from note_ciphers import described_record, packed, stored_note
from note_model import (AES_ENCRYPT, COLUMNS_KEY, NOTE_COMMENT, ROWS_KEY, USER,
                        USER_TAG)
from watermark_model import NUMBERS, Watermark

TICKETS = "tickets.plist"
JOB_FILES = "/tmp/Velon.temp"
DATA_KEY = ("ZUB.PSData.com.zub.print.pde."
            "645EBB97-CCEC-44A1-ADE0-29E4901A642D.PInf")


NOTES = ["", "one", "Ünï é", "日本", "a\\b (c)", "line\nshowpage", "\x7f\t",
         "12345678", "user/:a/:b", "a//b/:c", "EFBBBF profile", "n" * 126,
         "n" * 127, "é" * 63 + "x", "é" * 64, "n" * 254 + "é", "n" * 255,
         "n" * 256, "é" * 255, "日" * 86, "n" * 512, "n" * 511 + "xy"]
LAYOUTS = [(1, 1), (1, 2), (2, 1), (2, 3), (3, 2), (6, 1), (2, 2), (4, 4)]


class JobCall(Call):
    def read(self, output):
        """The records of users, which chance has a part in, stand plain."""
        pairs = super().read(output)
        tag = latin(USER_TAG)
        for pair in pairs:
            head, found, record = pair["text"].partition(tag)
            if pair["site"] == NOTE_COMMENT and found and not head:
                pair["text"] = (tag + described_record(record[:-1]) +
                                record[-1:])
        return pairs


class TextCall(Call):
    def read(self, output):
        return latin(output)


class Case(Dice):
    """The file of one seed, and (call, dialog) for each of its runs."""

    def __init__(self, seed):
        super().__init__(f"dialogs {seed}")
        self.token = f"{os.getpid()}X{seed}"
        self.name = f"zubjob{self.token}.ppd"
        self.data = random_jobs.make(seed)
        self.found = self.tickets() if self.chance(0.6) else {}
        self.runs = [self.run(Host(), self.found)]
        call, dialog = self.runs[0]
        if call.status == 0 and self.chance(0.4):
            self.runs.append(self.run(dialog.host,
                                      dialog.kept(dialog.tickets)))

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
                         "トレイ 2", "1\r2"] +
                        ["w" * 240] * self.chance(0.05))
        if self.chance(0.6):
            count = self.pick([1, 2, 5, 12, 257])
            settings[".MMKey"] = count
            for n in range(count):
                if count > 255 or self.chance(0.9):
                    settings["MMKey%d" % n] = self.pick(
                        ["*ZUStored", "Key é"])
                    settings["MMValue%d" % n] = self.pick(
                        ["%d" % n, "two words", "値", "m" * 215, "m" * 216,
                         "a\nb", "\x7f",
                         "é" * 110])
        if self.chance(0.4):
            settings[SELECTED_KEY] = self.pick([-2, -1, 0, 1, 2, 99])
            settings[FIRST_PAGE_KEY] = self.pick([-1, 0, 1, 2])
        if self.chance(0.7):
            settings.update(self.stored_choices())
        if self.chance(0.2):
            settings[ROWS_KEY] = 2
            settings.update({COLUMNS_KEY: 1} if self.chance(0.5) else {})
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
                value = self.value(control)
                if isinstance(control, JobNote) and self.chance(0.9) and \
                        control.keyword not in SPECIALS:
                    value = stored_note(value)
                choices[control.keyword.decode("mac_roman")] = value
        return {dialog.choices_key(): choices}

    def value(self, control):
        if not isinstance(control, JobNote):
            return super().value(control)
        nobody = control.keyword == USER and self.chance(0.5)
        return "" if nobody else self.pick(NOTES)

    # -- a run

    def watermark(self):
        """A record, mostly one that is taken and can be seen."""
        fields = ["-"] * 12
        for place, low, high in NUMBERS:
            fields[place] = self.pick(["1", "48", "%d" % low, "%d" % high,
                                       "%d" % self.rng.randint(low, high)])
        fields[6] = self.pick(["1", "0", "11", "-"])
        if self.chance(0.04):
            fields[self.rng.randrange(12)] = self.pick(
                ["x", "12x", "0", " 7", "+3", "-1", "300", "99999999999"])
        text = self.pick(["DRAFT", "50 €, net", ",,", "t", "Entwürfe ¤",
                          "見本 ｻﾝﾌﾟﾙ", "草稿", "あ€", "Œuvre", "工x", ")>} quit",
                          "t" * 255, "t" * 256, "t" * 254 + "é",
                          "é" * 127 + "見", "a日"])
        if self.chance(0.02):
            text = self.pick(["", " ", "a\tb", "a\x85"])
        font = self.pick(["Helvetica", "Courier-Bold", "Ryumin-Light-H"] * 5 +
                         ["F" * 63, "F" * 64, "a b", "é", "~!$&*",
                          "F" + self.pick("()<>[]{}/%")])
        record = ",".join(fields + [font, text])
        return record[:record.rfind(",", 0, 40)] if self.chance(0.02) \
            else record

    def watermarks(self):
        count = self.pick([1, 2, 3] * 9 + [98, 99, 100])
        return [self.watermark() if n < 3 or n > 97 else
                f"{n},0,0,0,0,-,0,-,0,-,-,9,F,{n}" for n in range(count)]

    def host(self, former, commits):
        """(host, its arguments)"""
        arguments = []
        host = Host(two_way=former.two_way, watermarks=former.watermarks)
        if self.chance(0.6):
            host.watermarks = self.watermarks()
            arguments += [f"--watermark={r}" for r in host.watermarks]
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
                              "a\tb", "n" * 207, "n" * 208])
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

    def run(self, former, tickets):
        commits = self.pick([1, 1, 1, 2, 3])
        host, arguments = self.host(former, commits)
        if commits > 1:
            arguments += ["--commits", str(commits)]
        orientation = paper_feed = None
        layout = ()
        if self.chance(0.3):
            layout = self.pick(LAYOUTS)
            arguments += ["--layout", "%dx%d" % layout]
        if self.chance(0.6):
            orientation = self.rng.randint(0, 5)
            arguments += ["--orientation", str(orientation)]
        if self.chance(0.4):
            paper_feed = self.pick(["Tray1", "Tray2", "Bypass", "Nowhere",
                                    ""])
            arguments += ["--paper-feed", paper_feed]
        call = JobCall(["print", "--ppd", self.name, "--pairs", "--tickets",
                        TICKETS] + arguments)
        are_taken = all(Watermark(r).is_taken() for r in host.watermarks)
        selected = self.pick([None] * 4 + [0] * 6 + [-1, 1, 1, 2, 98, 99])
        tickets = with_options(tickets, orientation, paper_feed, layout)
        if any("--watermark" in a for a in arguments):
            tickets[SETTINGS].pop(FIRST_PAGE_KEY, None)
        dialog = Dialog(self.data, host, tickets)
        if not dialog.accepted:
            call.status = 3 if are_taken else 2
            return call, dialog
        call.warnings += dialog.unreadable
        call.set_some(self, dialog.ppd.controls, self.pick((0, 0, 1, 2, 4)),
                      dialog.set_value)
        if paper_feed is None and any(
                a.startswith("*InputSlot=") for a in call.arguments):
            dialog.drop_paper_feed()
        if selected is not None:
            call.arguments += ["--select-watermark", str(selected)]
            dialog.select_watermark(selected)
        if any("--watermark" in a for a in arguments):
            dialog.doubt_others()
        if not are_taken:
            call.status, call.warnings = 2, 0
        for _ in range(commits if call.status == 0 else 0):
            call.document = document(dialog.commit())
        if call.status == 0:
            call.marks_told = dialog.marks_told
        return call, dialog

    # -- reading back

    def some(self, values):
        return [self.pick(values)] if values and self.chance(0.5) else []

    def reading_calls(self, dialog):
        """Calls that read what went into the job, and what didn't."""
        for note, cipher, digits in self.some(
                dialog.notes.enciphered):
            call = TextCall(["decrypt-note", "--ppd", self.name] +
                            ["--aes"] * bool(note.bits & AES_ENCRYPT))
            digits = latin(digits)
            digits = self.pick([digits] * 4 + [
                digits[1:], digits[:-1] + "G", digits[cipher.block * 2:]])
            call.arguments.append(digits)
            text = cipher.text(digits)
            call.status = int(text is None)
            call.document = latin(text)
            yield call
        if self.chance(0.08):
            yield self.unpacking_call()

    def unpacking_call(self):
        fields = [self.pick([b"", b"user", "Ünï".encode(), b"n" * 255])
                  for _ in range(3)]
        kind, identifier = self.rng.randint(0, 9), self.rng.randbytes(16)
        record = packed(fields, kind, identifier, self.rng.randbytes(32))
        call = Call(["unpack", record])
        user, password, domain = map(latin, fields)
        call.document = {"user": user, "password": password, "domain": domain,
                         "domainType": kind, "identifier": identifier.hex()}
        if self.chance(0.4):
            at = self.rng.randrange(40)
            other = "B" if record[at] == "A" else "A"
            call.arguments[1] = self.pick(
                [record[:at] + other + record[at + 1:], record[:at], "AAAA"])
            call.status = 1
        return call


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


def left_difference(dialog):
    """The first one in what the dialog left beside the job."""
    settings = left_tickets()
    stored = settings.get(dialog.choices_key(), {})
    found = first_difference(*([list(p) for p in sorted(c.items())]
                               for c in (dialog.choices(), stored)),
                             "choices")
    found = found or first_difference(dialog.kept_selection(), settings)
    for path in dialog.files:
        there = os.path.isdir(os.path.dirname(path) or ".")
        found = found or first_difference([0o777, 0] if there else None,
                                          mode(path), path)
    return found


def difference_of(call, dialog, answer):
    found = call.difference(answer)
    if found is None and call.status == 0:
        found = left_difference(dialog)
    return (call.arguments, found) if found else ()


def read_back(options, case, dialog, result):
    for call in case.reading_calls(dialog):
        answer = run_command(options, call.arguments)
        result.calls += 1
        if found := call.difference(answer):
            result.found = call.arguments, found
            keep(options, result, case.data, call, answer)
            return


def compare(options, seed):
    case = Case(seed)
    result = Result(seed)
    with own_folder(case.name, case.data):
        if case.found:
            with open(TICKETS, "wb") as file:
                plistlib.dump(case.found, file)
        if case.chance(0.8):
            os.mkdir("out")
        for call, dialog in case.runs:
            result.notes += tuple(dialog.doubts)
            result.open = bool(dialog.doubts) and not options.unsettled
            start = time.time()
            answer = run_command(options, call.arguments)
            result.calls += 1
            if not result.open:
                result.found = difference_of(call, dialog, answer)
            clean_up(case.name, case.token, start)
            if result.found:
                keep(options, result, case.data, call, answer)
            elif not result.open and call.status == 0:
                result.notes += tuple(dialog.notes.met)
                read_back(options, case, dialog, result)
            if result.open or result.found:
                break
    return result


if __name__ == "__main__":
    sys.exit(run(__doc__, "job", 200, compare,
                 ("AES", "DES", "a cipher that is too long",
                  "a record", "a record without a user", "the name's code")))
