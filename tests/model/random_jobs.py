# SPDX-License-Identifier: Apache-2.0
"""Random extended PPD files full of the options that a job treats specially.

The same seed always gives the same bytes.
"""

import comparing

LAYOUT = comparing.LAYOUT + [
    b"*%ZUBGroupName Spare/Spare: True",
    b"*%ZUBGroupName ZUPPInstallableOptions/Installed: True",
    b"*%ZUBParent ZUPPInstallableOptions/Pane: True|Rolldown"]
# A control without a group is an orphan, and so is one of a plain group.
GROUPS = [b"Roll"] * 8 + [b"Dark", b"Spare", b"", b"ZUPPInstallableOptions"]

VERSIONS = [b"4.4"] * 4 + [b"3.1"] * 5 + [b"2.1", b"A", b" "] + [None] * 3
LATE_VERSIONS = [b"2.0", b"3.2", b"4.4", b" ", b"2"]

PLAIN = [b"*Duplex", b"*Staple", b"*MediaType", b"*Fold", b"*Density",
         b"*Gamma", b"*F\xf6ld", b"*ZUSimulationMode", b"*ZUScaleBy",
         b"*PageSizes", b"*My*ZUOutProfile"]
WORDS = [b"None", b"On", b"Off", b"Auto", b"True", b"Left", b"Zw\xf6lf", b"5"]
SIZES = [b"A4", b"a4", b"Letter", b"Sm\xe5", b"B5"]
PROFILED = (b"*ZUOutProfile", b"*ZUSimulation", b"*ZURGBOverride")
PROFILES = [b"None", b"Coated", b"EFBBBF", b"Matt\xe9", b"on"]

# keyword: the kinds that it mostly is of, its options, its chance
NAMED = {
    b"*PageSize": ("popup", SIZES, 0.7),
    b"*ZUPrintSize": ("popup", SIZES[:2] + [b"SameAsPageSize",
                                            b"CustomPrintSize",
                                            b"customPRINTsize"], 0.7),
    b"*ZUOrientation": ("popup boolean", [b"Portrait", b"Landscape", b"Auto"],
                        0.5),
    b"*Collate": ("popup boolean", [b"True", b"False"], 0.4),
    b"*InputSlot": ("popup", [b"Tray1", b"Tray2", b"Bypass"], 0.5),
    b"*ZUScale": ("range", [b"100"], 0.5),
    b"*ZUOutProfile": ("popup", PROFILES, 0.5),
    b"*ZUSimulation": ("popup", PROFILES, 0.5),
    b"*ZURGBOverride": ("popup", PROFILES, 0.4),
    b"*ZUDestination": ("popup", [b"Print", b"File", b"FILE"], 0.35),
    b"*ZUMailboxName": ("popup", [b"box", b"Box 2", b"b\xf6x"], 0.2),
}
NOTES = [b"*Notes1", b"*Notes2", b"*Instruct", b"*Notes3", b"*Resume",
         b"*DeptPassword", b"*ZUBPrintTime", b"*ZUUserAuthName",
         b"*ZUUserAuthPwd", b"*ZUSecurePrintId", b"*Account", b"*N\xf6te"]
USER_AND_PASSWORD = [b"*ZUUserAuthName", b"*ZUUserAuthPwd"]
NOTE_WORDS = [b"Encrypt", b"AESEncrypt", b"UTF8", b"UTF8", b"Password",
              b"TwoCharField", b"Resume", b"Member", b"Alpha", b"Required"]
NOTE_TEXTS = [b"text", b"Two Words", b"caf\x8e", b"gr\xc3\xbc\xc3\x9f",
              b"a\\b(c)", b"tab\there", b"EFBBBF", b"123", b"//host",
              b"x" * 126, b"x" * 127, b"\xc3\xa9" * 40, b"\x8e" * 120]
CODE = [b"", b"", b"1 set", b"<< /A 1 >> setpagedevice\n% two\n(\\\\n)",
        b"\xe9\x80 x", b"%% comment"]


class Maker(comparing.Dice):
    def __init__(self, seed):
        super().__init__(f"jobs {seed}")

    def some(self, values, least, most):
        return self.rng.sample(values, min(len(values),
                                           self.rng.randint(least, most)))

    # -- controls

    def flags(self):
        flags = [b"Dynamic"]
        if self.chance(0.25):
            flags += self.some([b"NoVelonDriverUI", b"DriverUserDisplayHidden",
                                b"Setup"], 1, 2)
        return b"|".join(flags)

    def popup(self, key, options):
        options = self.some(options, 1, 4)
        if self.chance(0.06):
            options.append(self.pick(options))
        kind = self.pick([b"PickOne"] * 7 + [b"PickMany"])
        lines = []
        if self.chance(0.93):
            lines.append(b"*Default" + key[1:] + b": " + self.pick(options))
        for option in options:
            name = self.pick([b"", b"/Name", b"/Called " + option[:3]])
            lines.append(key + b" " + option + name + b': "' +
                         self.pick(CODE) + b'"')
        return self.block(key, kind, lines, self.pick(GROUPS), self.flags())

    def boolean(self, key, _):
        return self.block(key, b"Boolean", [
            b"*Default" + key[1:] + b": " + self.pick([b"True", b"False"]),
            key + b' True/On: "' + self.pick(CODE) + b'"',
            key + b' False/Off: "' + self.pick(CODE) + b'"'],
            self.pick(GROUPS), self.flags())

    def range(self, key, _):
        word, numbers = self.pick([
            (b"Range", [b"0;400;1;85", b"0;400;5;250", b"0;100;1;5",
                        b"7;1000;10;100", b"0;2147483647;1;70000"]),
            (b"UnitRange", [b"0;400;1;9", b"-50;50;5;7"]),
            (b"FloatRange", [b"0;2;0.25;1.5", b"-1;99999;1;0.33339"])]
            if key != b"*ZUScale" or self.chance(0.1) else
            [(b"Range", [b"0;400;1;85", b"25;400;5;250", b"0;100;1;5",
                         b"7;1000;10;100", b"0;123456;1;70000"])])
        code = self.pick([b'""', b'"<' + key + b'> set"',
                          b'"%% <' + key.lower() + b'>\n<' + key + b'>"'])
        # Without a group there can't be a range, but a plain one makes it an
        # orphan.
        group = self.pick(GROUPS) or b"Spare"
        return self.opening(key, group, self.flags()) + [
            b"*%ZUB" + word + b" " + key + b"/Name: (" + self.pick(numbers) +
            b") " + code]

    def note(self, key):
        """A note with a default, a template or neither."""
        words = self.some(NOTE_WORDS, 0, 3) if self.chance(0.7) else []
        length = self.pick([b"20", b"127", b"700"])
        grouped = self.chance(0.6)
        lines = self.opening(key, self.pick(GROUPS), self.flags()) \
            if grouped else []
        lines.append(b"*%ZUBJobNote " + key + b"/Note: " +
                     b"|".join([length] + words))
        if self.chance(0.5):
            text = self.pick(NOTE_TEXTS + [b"a/:b/:c", b"a//b/:c"] * grouped)
            if grouped:
                text = b'"' + text + b'"'
            return lines + [b"*%Default" + key[1:] + b": " + text]
        marker = b"<" + key + b">"
        code = self.pick([b"(" + marker + b") setnote", b"%%Note: " + marker,
                          marker + b" " + marker.lower(), b"null setnote"])
        if self.chance(0.6):
            return lines + [b"*%" + key[1:] + b': "' + code + b'"']
        return lines + [b"*% nothing of it"]

    def control(self, key, kinds, options):
        odd = self.chance(0.08) or not self.blocks and self.chance(0.95)
        if odd and key in PROFILED:
            # Nothing settles what a profile that is no popup has for a note.
            odd = self.chance(0.03)
        if odd:
            kinds = "popup boolean range range range"
        return getattr(self, self.pick(kinds.split()))(key, options)

    def custom_size(self):
        lines = [b"*%ParamCustomPrintSize Width: 1 points 72 900",
                 b"*%ParamCustomPrintSize Height: 2 points 36.25 1200"]
        return self.some(lines, 1, 2)

    def special_options(self):
        for line, chance in ((b"*Brennal: 1", 0.2),
                             (b"*ZUUTF8_Version: 1.0", 0.25),
                             (b"*ZUUTF8_Version: two words", 0.1),
                             (b"*ZUUTF8_Version: " + b"9" * 127, 0.02),
                             (b"*ZUUTF8_Version: " + b"9" * 128, 0.02),
                             (b"*ZUKnows: x", 0.2),
                             (b"*UseSpecialAlgorithm: " +
                              self.pick([b"1", b"2"]), 0.4),
                             (b"*UseSpecialKey: %d" % self.rng.randint(1, 7),
                              0.5),
                             (b"*CopierUserAuth: " +
                              self.pick([b"True", b"True", b"False"]), 0.6),
                             (b"*ZUBAuthenticateWithLDAP: " +
                              self.pick([b"True", b"True", b"true"]), 0.7),
                             (b"*ZUMailboxName: out/to you.ps", 0.2)):
            if self.chance(chance):
                yield [b"*%ZUBSpecialOption " + line]

    # -- the whole

    def parts(self):
        parts = [self.control(key, "popup popup boolean range", WORDS)
                 for key in self.some(PLAIN, 0, 4)]
        parts += [self.control(key, kinds, options)
                  for key, (kinds, options, chance) in NAMED.items()
                  if self.chance(chance)]
        if self.chance(0.5):
            parts.append(self.custom_size())
        notes = self.some(NOTES, 0, 5)
        if self.chance(0.45):
            # Mostly the user is told ahead of the password.
            notes = [key for key in notes if key not in USER_AND_PASSWORD]
            parts.append(sum(map(self.note, USER_AND_PASSWORD), []))
        parts += map(self.note, notes)
        parts += self.special_options()
        self.rng.shuffle(parts)
        for key in PROFILED if self.chance(0.15) else ():
            if any(b"*OpenUI " + key in b"".join(part) for part in parts):
                parts.append(self.note(key))
        # The first control has a way of its own into the job.
        return [] if self.chance(0.04) else parts

    def header(self):
        name = b"ZUBDEMO.PPD" if self.chance(0.985) else b"DEMO.PPD"
        lines = [b'*PCFileName: "' + name + b'"',
                 b"*LanguageVersion: " + self.pick([b"English", b"English",
                                                    b"Japanese",
                                                    b"Chinese"])]
        if self.chance(0.3):
            lines.append(b'*ModelName: "Demo 7 of Two"')
        lines.append(b"*LanguageEncoding: ISOLatin1")
        for group in (b"FPPaperSource", b"FPZUNotes"):
            if self.chance(0.4):
                lines.append(b"*%ZUBGroupName " + group + b"/Source: True")
        return lines

    def make(self):
        version = self.pick(VERSIONS)
        self.blocks = version is not None and version > b"3"
        lines = [b'*PPD-Adobe: "' + self.pick([b"4.3"] * 99 + [b"4.2"]) + b'"']
        lines += self.header() + LAYOUT
        for group in (b"FPPaperSource", b"FPZUNotes"):
            if group in b"".join(lines) and self.chance(0.6):
                lines.append(b"*%ZUBParent " + group +
                             b"/Pane: True|Rolldown")
        if version is not None:
            lines.append(b"*%ZUVersion: " + version)
        lines += [line for part in self.parts() for line in part]
        if self.chance(0.3):
            lines.append(b"*%ZUVersion: " + self.pick(LATE_VERSIONS))
        return b"\n".join(lines) + b"\n"


def make(seed):
    return Maker(seed).make()
