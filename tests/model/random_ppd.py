# SPDX-License-Identifier: Apache-2.0
"""Random extended PPD files: mostly well formed, with faults strewn in.

The same seed always gives the same bytes.
"""

from comparing import Dice
from inspect_model import (CHUNK, CLOSERS, CODECS, NOTE_WORDS, OPENERS,
                           SCAN_LIMIT)

ENCODINGS = list(CODECS) + [b"UTF-8", b"None"]

WORDS = ["Off", "On", "Two Sided", "Finishing", "Paper <and> more", "a/b",
         "Staple (left)", "Tray 1", " padded ", "100%", "x|y", "\\n"]
BEYOND_ASCII = {
    b"ISOLatin1": ["Réglage", "Ölpapier", "¿Sí?", "\x85\xa0ÿ"],
    b"ISOLatin2": ["Říjen", "Żółw", "Őszi", "\x85ˇ˙"],
    b"ISOLatin5": ["Işık", "Ğöz", "İki", "\x9eÿ"],
    b"JIS83-RKSJ": ["両面印刷", "ソート", "表と能", "ｶﾀｶﾅ", "あいう", "ポスト"],
    b"MacStandard": ["Éclair", "π≈∂", "“x”", "Ωß†"],
    b"WindowsANSI": ["“œuf”", "€ 5", "Žlutý", "ÿ"],
    b"UTF-8": ["日本語", "Ünï", "Ж", "🖨", "é"],
    b"None": ["Ünï", "ß"],
}
LANGUAGES = [b"English", b"English", b"French", b"Japanese", b"Czech", b"Xx"]

KEYWORDS = [b"*Duplex", b"*DuplexMode", b"*Dup", b"*PageSize", b"*InputSlot",
            b"*Staple", b"*StapleWhen", b"*ZUDuplex", b"*Collate",
            b"*ZUSimulation", b"*ZUOutProfile", b"*ZURGBOverride", b"*ZUColor",
            b"*ZUPrintSize", b"*Fold", b"*FoldSide", b"*C", b"*Punch",
            b"*MediaType", b"*ZUChromVale", b"*ZU_PROP_WATERMARK", b"Plain"]
ODD_KEYWORDS = [b"*Default", b"*DefaultX", b"*Close", b"*Z\xe9ta", b"*a",
                b"*%x", b"*" + b"Long" * 12, b"*OrderDependency"]
OPTIONS = [b"None", b"On", b"Off", b"A4", b"Letter", b"Auto", b"Tray1",
           b"Left", b"True", b"False", b"x.y", b"Two Words"]
FLAGS = [b"Dynamic", b"Command", b"Spooler", b"Setup", b"MacVJN", b"MacIS",
         b"NoVelonDriverUI", b"DriverUserDisplayHidden", b"Odd word"]
ODD_NOTE_WORDS = [b"MinLength4", b"MinLength12", b"MinLength123",
                  b"MinLengthx", b"MinLength4x", b"MinLength", b"alpha",
                  b"Alphabet", b"Alpha Numeric", b"Min"]
NOTES = [b"*Notes1", b"*Notes2", b"*Notes3", b"*Instruct", b"*Resume",
         b"*ZUUserAuthName", b"*ZUUserAuthPwd", b"*ZUSimulation",
         b"*ZUOutProfile", b"*DeptPassword", b"*ZUSecurePrintId"]
ENDS = (b"\n", b"\r", b"\r\n")


class Maker(Dice):
    def __init__(self, seed):
        super().__init__(seed)
        self.encoding = self.pick(ENCODINGS)
        # Most files have no odd places at all, so that what they make can be
        # seen whole; the rest have a few up to many.
        self.rate = self.pick((0, 0, 0.01, 0.03, 0.08, 0.2))
        self.pages, self.panes, self.rolls, self.plain = [], [], [], []
        self.used = []

    def odd(self, scale=1.0):
        return self.rng.random() < self.rate * scale

    def some(self, values, most):
        return [self.pick(values) for _ in range(self.rng.randint(0, most))]

    # -- pieces of lines

    def name(self):
        """A translation in the encoding of the file."""
        if self.chance(0.4):
            codec = CODECS.get(self.encoding, "utf-8")
            data = self.pick(BEYOND_ASCII[self.encoding]).encode(codec)
            if self.chance(0.3):
                data += self.pick(WORDS).encode()
        else:
            data = self.pick(WORDS).encode()
            if data[:1] == b"\\" and self.encoding == b"JIS83-RKSJ":
                data = b"yen"
        if self.odd(0.05):
            data = b""
        if self.chance(0.15):
            data = self.escaped(data)
        if self.chance(0.05):
            data += self.pick([b"<4G>", b"<414>", b"<41 >", b"a>b<41>", b"<41",
                               b" <4 1>", b"<46 6f>", b"<41><42", b"<<41>",
                               b"< >", b"<4\t1>x", b"<41 42>>", b"<00>gone"])
        if self.odd(0.1):
            data += self.pick([b"\x81", b"\xc3", b"\xfe", b"\x8d\x20", b"<C3>",
                               b"<82>", b"\xa0", b"<>", b"<4 >"])
        # As a byte of its own this one ends the file.
        if not self.odd(0.3):
            data = data.replace(b"\xff", b"<FF>")
        return data.replace(b":", b".")

    def escaped(self, data):
        if not data:
            return b""
        start = self.rng.randrange(len(data))
        stop = self.rng.randint(start + 1, len(data))
        pairs = [b"%02X" % c if self.chance(0.7) else b"%02x" % c
                 for c in data[start:stop]]
        return (data[:start] + b"<" + self.pick([b"", b" "]).join(pairs) +
                b">" + data[stop:])

    def gap(self):
        if self.odd(0.3):
            return self.pick([b"", b"  ", b"\t", b" :"])
        return b" "

    def keyword(self):
        if self.odd(0.3) or self.chance(0.01):
            return self.pick(ODD_KEYWORDS)
        return self.pick(KEYWORDS)

    def list_words(self, words):
        """Words behind a colon."""
        if self.odd(0.5):
            words = words + [self.pick([b"", b" ", b"True", b"App", b"true"])]
            self.rng.shuffle(words)
        text = b"|".join(words)
        if self.odd(0.3):
            return self.pick([b'"', b' "']) + text + b'"'
        return self.gap() + text

    def visible(self):
        return [b"True"] if self.chance(0.9) else []

    def spoiled(self, line):
        """The line with a delimiter or a field gone, doubled or moved."""
        at = [n for n, c in enumerate(line) if c in b" \t:/|;()\"*"]
        if not at:
            return line
        n = self.pick(at)
        return self.pick([
            line[:n], line[:n + 1], line[:n] + line[n + 1:],
            line[:n] + line[n:n + 1] + line[n:],
            line[:n] + self.pick([b":", b"/", b" ", b'"', b"|", b"\t"]) +
            line[n + 1:],
            line[:n + 1] + b" " + line[n + 1:], line[:n + 1] + b" ",
            b" " + line, line.swapcase(),
            line[:n] + line[self.pick(at):]])

    def lengthened(self, line):
        """The line stretched to the lengths where lines begin to fail."""
        length = self.pick((253, 254, 254, 255, 256, 300))
        return line + self.pick([b" ", b"x"]) * (length - len(line))

    # -- PostScript

    def code(self, keyword):
        """The lines of a quoted block of PostScript."""
        plain = [b"false setduplex", b"<< /A 1 >> setpagedevice",
                 b"1 2 add", b"% note", b"{a: b}", b"x/y|z", b"(\\\\n)",
                 b"\xe9\x80\x01", b"<" + keyword + b">",
                 b"a <" + keyword.lower() + b"> b <" + keyword + b">"]
        kind = self.rng.random()
        if self.odd(0.1):
            return [b'"' + self.pick(plain), b"ends\xff" + self.pick(plain),
                    self.pick(plain) + b'"']
        if kind < 0.08:
            return [b'""']
        if kind < 0.62:
            return [b'"' + self.pick(plain) + b'"']
        if self.odd(0.2):
            return self.pick([[b""], [b'"' + self.pick(plain)],
                              [self.pick(plain)]])
        lines = [b'"' + self.pick([b"", self.pick(plain)])]
        count = self.rng.randint(0, 4)
        if self.chance(0.06):
            count = self.rng.randint(16, 22)
            plain.append(b"% " + b"long " * 48)
            plain = plain[-1:]
        for _ in range(count):
            line = self.pick(plain)
            how = self.rng.random()
            if how < 0.15:
                line = b"*%" + line
            elif how < 0.2:
                line = b""
            elif how < 0.22 and self.rate:
                line = b"*" + self.pick([b"", b"x", b"End", b"CloseUI: *A"])
            elif self.odd(0.1):
                line = self.lengthened(line)
            lines.append(line)
        if len(lines) == 1 or self.chance(0.5):
            lines.append(b"")
        lines[-1] += b'"' + self.pick([b"", b"", b" % left"])
        if self.odd(0.1):
            lines[-1] = self.pick([b"*End", b"*"])
        return lines

    # -- header

    def first_line(self):
        if self.chance(0.95):
            return [b'*PPD-Adobe: "4.3"']
        return self.pick([
            [b'*PPD-Adobe: "4.2"'], [b'*PPD-Adobe: "4.30"'],
            [b"*PPD-Adobe: 4.3"], [b"*PPD-Adobe:", b'"4.3"'],
            [b"*PPD-Adobe", b' : "4.3"'], [b'*PPD-Adobe "4.3"'],
            [b"", b'*PPD-Adobe: "4.3"'], [b' *PPD-Adobe: "4.3"'],
            [b'*PPD-adobe: "4.3"'], [b'*PPD-Adobe: "4.3'], [b'*x: "4.3"'],
            [b'*PPD-Adobe: ""'], [b'\xef\xbb\xbf*PPD-Adobe: "4.3"'],
            [b'*PPD-Adobe:' + b" " * self.rng.randint(1, 300) + b'"4.3"'],
            [b'*PPD-Adobe:' + b" " * self.rng.randint(9980, 10003) + b'"4.3"'],
            [b'*PPD-Adobe: "4.3" *ModelName: "lost"'], [b"*" * 260],
            [b'*PPD-Adobe: "' + b"4.3" * 100 + b'"']])

    def quoted(self, text):
        if self.odd(0.1):
            # At the limit, or a byte off it, the next line is lost or not.
            return [b'"' + b"w" * 200, b"", b"v" * self.rng.randint(52, 56)]
        if self.odd(0.4):
            return self.pick([
                [b'""'], [b'" "'], [text], [b'"' + text],
                [b'"' + text, b"more", b"", b'end" rest'],
                [b'"', text + b'"'], [b"", b"stray", b"*Stop"],
                [b'"' + text] + [b"y" * 100] * self.rng.randint(1, 5),
                [b'"' + text, self.lengthened(b"z")],
                [b'"' + b"w" * 200 + b'"']])
        return [b'"' + text + b'"']

    def header(self):
        lines = []
        for keyword, text in (
                (b"*PCFileName", self.pick([b"ZUBDEMO.PPD", b"X.PPD",
                                            b"A LONG NAME BEHIND IT ALL.PPD",
                                            b"Z\xfcB.PPD"])),
                (b"*FormatVersion", b"4.3"), (b"*FileVersion", b"1.0"),
                (b"*ModelName", b"Demo 7"),
                (b"*APDialogExtension", b"/Library/x.plugin")):
            if self.chance(0.8):
                value = self.quoted(text)
                lines.append([keyword + b":" + self.gap() + value[0]] +
                             value[1:])
        version = self.pick([b"4.4", b"3", b"3.1", b"9", b"4.4", b"A",
                             b"\xe9"])
        if self.chance(0.06):
            version = self.pick([b"2", b"2.9", b"", b" ", b"1", b"\t",
                                 b'"4.4"'])
        if self.chance(0.98):
            lines.append([b"*%ZUVersion:" + self.gap() + version])
        if self.chance(0.5):
            lines.append([b"*%ZUFileVersion: " +
                          self.pick([b"1.2 ", b"", b" "])])
        if not self.odd(0.15):
            lines.append([b"*LanguageVersion:" + self.gap() +
                          self.pick(LANGUAGES)])
        if not self.odd(0.15):
            lines.append([b"*LanguageEncoding:" + self.gap() + self.encoding])
        self.rng.shuffle(lines)
        if self.odd():
            lines.append(self.pick(lines or [[b""]]))
        return lines

    # -- layout

    def page(self, name):
        words = self.visible()
        if self.chance(0.3):
            words += self.some([b"App", b"Prop"], 2)
            self.rng.shuffle(words)
        return (b"*%ZUBPropPage " + name + b"/" + self.name() + b":" +
                self.list_words(words))

    def group_name(self, name):
        return (b"*%ZUBGroupName " + name + b"/" + self.name() + b":" +
                self.list_words(self.visible()))

    def parent(self, name, parent, kind):
        words = self.visible() + [kind]
        if self.odd(0.3):
            words.append(self.pick([b"Rolldown", b"Scrollpane", b"Other"]))
        self.rng.shuffle(words)
        return (b"*%ZUBParent " + name + b"/" + parent + b":" +
                self.list_words(words))

    def layout(self):
        self.pages = [b"Page%d" % n for n in range(self.rng.randint(1, 2))]
        self.panes = [b"Pane%d" % n for n in range(self.rng.randint(1, 2))]
        self.rolls = [b"Roll%d" % n for n in range(self.rng.randint(1, 3))]
        self.plain = self.some([b"Plain", b"Roll", b"Spare",
                                b"ZUPPInstallableOptions", b"FPPaperSource",
                                b"FPZUNotes", b"InstallableOptions"], 2)
        lines = [self.page(p) for p in self.pages]
        extra = []
        if self.chance(0.3):
            extra = [self.pick([b"ZUPPInstallableOptions", b"FPPaperSource",
                                b"FPZUNotes"])]
            self.rolls += extra
        lines += [self.group_name(g)
                  for g in self.panes + self.rolls + self.plain]
        lines += [self.parent(p, self.pick(self.pages), b"Scrollpane")
                  for p in self.panes]
        lines += [self.parent(r, self.pick(self.panes), b"Rolldown")
                  for r in self.rolls]
        if self.odd(2):
            anyone = self.pages + self.panes + self.rolls + self.plain + [
                b"Nobody", b"", b" "]
            for _ in range(self.rng.randint(1, 3)):
                line = self.pick([
                    self.page(self.pick(anyone)),
                    self.group_name(self.pick(anyone)),
                    self.parent(self.pick(anyone), self.pick(anyone),
                                self.pick([b"Rolldown", b"Scrollpane"]))])
                lines.insert(self.rng.randint(0, len(lines)), line)
        if self.odd(2):
            n = self.rng.randrange(len(lines))
            m = self.rng.randrange(len(lines))
            lines[n], lines[m] = lines[m], lines[n]
        if self.odd(2):
            del lines[self.rng.randrange(len(lines))]
        return [[line] for line in lines]

    # -- control blocks

    def fresh_keyword(self):
        keyword = self.keyword()
        for _ in range(9):
            if keyword not in self.used or self.odd():
                break
            keyword = self.keyword()
        self.used.append(keyword)
        return keyword

    def opening(self, keyword):
        flags = b"*%ZUBFlags " + keyword + b":" + self.list_words(
            self.some(FLAGS, 3))
        lines = [flags]
        if self.odd(0.2):
            lines.append(self.pick([b"", b" ", b"*% note"]))
        if not self.odd():
            group = self.pick(self.rolls)
            if self.chance(0.1):
                group = self.pick(self.plain + self.pages + self.panes +
                                  [b"Nobody", b"InstallableOptions",
                                   b"ZUPPInstallableOptions"])
            word = self.keyword() if self.odd(0.3) else keyword
            lines.append(b"*%ZUBGroup " + word + b": " + group + b"/" +
                         self.name())
            if self.odd(0.1):
                lines.append(b"")
        return lines

    def block(self):
        keyword = self.fresh_keyword()
        kind = self.pick([b"PickOne", b"PickOne", b"PickMany", b"Boolean"])
        lines = self.opening(keyword)
        shown = self.keyword() if self.odd(0.5) else keyword
        written = kind
        if self.odd(0.3):
            written = self.pick([b"Pickone", b"", b" ", b"PickOne(x)",
                                 b"Boolean;", b"Picked"])
        lines.append(self.pick(OPENERS) + b" " + shown + b"/" + self.name() +
                     b":" + self.gap() + written)
        lines += self.states(keyword) if kind == b"Boolean" else \
            self.choices(keyword)
        if not self.odd(0.1):
            lines.append(self.pick([b"", b"", b"", b" "]) +
                         self.pick(CLOSERS) + self.pick([b": " + keyword, b"",
                                                         b":", b":*x"]))
        return lines

    def default(self, keyword, value):
        if self.chance(0.2):
            word = self.keyword() if self.chance(0.2) else keyword
            return b"*Default: " + word + b": " + value
        if self.odd(0.5):
            return self.pick([b"*DefaultOther: " + value, b"*Default" + value,
                              b"*Default: ", b"*Default", b"*DefaultX:",
                              b"*DefaultX: ", b"*DefaultX:: " + value,
                              b"*DefaultX: " + value + b"/y: z"])
        return b"*Default" + keyword.lstrip(b"*") + b":" + \
            self.pick([b" ", b"", b"\t"]) + value

    def option_word(self, keyword):
        """The keyword, or a longer one that begins with it."""
        return keyword + (b"Mode" if self.chance(0.04) else b"")

    def choices(self, keyword):
        options = self.rng.sample(OPTIONS, self.rng.randint(1, 5))
        twice = None
        if self.chance(0.04):
            twice = self.pick(options)
            options.append(twice)
        if self.odd(0.3):
            options.append(self.pick(options + [b"\xe9t\xe9", b"", b" "]))
        if self.odd(0.2):
            options = []
        parts = []
        for option in options:
            line = self.option_word(keyword) + b" " + option
            if self.chance(0.85):
                line += b"/" + self.name()
            code = self.code(keyword)
            parts.append([line + b":" + self.gap() + code[0]] + code[1:])
        value = twice or self.pick(options or OPTIONS)
        if self.chance(0.1):
            value = self.pick(OPTIONS)
        self.sprinkle(parts, keyword)
        default = [self.default(keyword, value)]
        if self.chance(0.9):
            parts.insert(0, default)
        elif self.chance(0.6):
            parts.append(default)
        if self.odd(0.15):
            parts.insert(self.rng.randint(0, len(parts)), default)
        return [line for part in parts for line in part]

    def states(self, keyword):
        parts = []
        for state in (b"True", b"False"):
            if self.chance(0.9):
                if self.odd(0.2):
                    state = self.pick([b"true", b"Maybe", b"", b" "])
                line = self.option_word(keyword) + b" " + state
                if self.chance(0.8):
                    line += b"/" + self.name()
                code = self.code(keyword)
                parts.append([line + b":" + self.gap() + code[0]] + code[1:])
        if parts and self.chance(0.1):
            parts.append(self.pick(parts))
        self.rng.shuffle(parts)
        self.sprinkle(parts, keyword)
        for _ in range(self.pick([0, 1, 1, 1, 1, 1, 1, 2])):
            value = self.pick([b"True", b"False", b"True", b"true", b"On"])
            parts.insert(self.pick([0, 0, len(parts)]),
                         [self.default(keyword, value)])
        return [line for part in parts for line in part]

    def sprinkle(self, parts, keyword):
        """Lines that a block passes over, and some with several heads."""
        for _ in range(self.pick([0, 0, 0, 1, 2])):
            line = self.pick([
                b"", b"*% note", b"*OrderDependency: 10 AnySetup " + keyword,
                b"*UIConstraints: *A *B", b"junk", b"*?" + keyword[1:] + b": x",
                b"*PCFileName: \"inner\"", b": x", b"\t", b"x: y: z",
                b"*%ZUBFlags *Inner: Dynamic", b"*CloseGroup: x",
                b"*%ZUVersion: 9"])
            parts.insert(self.rng.randint(0, len(parts)), [line])
        if parts and (self.odd(0.3) or self.chance(0.02)):
            tail = self.pick([b" " + keyword + b" Second/Two: \"2\"",
                              b"*DefaultX: On", b" *CloseUI: x", b" junk",
                              b" *CloseUI"])
            part = self.pick(parts)
            part[-1] += tail

    def passed_block(self):
        keyword = self.fresh_keyword()
        lines = self.opening(keyword)
        lines.append(b"*OpenUIZUB " + keyword + b"/Name: PickOne")
        lines += self.some([b"*Default: x", b"*CloseUI: *x", b"", b"text",
                            b" *CloseUIZUB", b"*ModelName: \"inside\"",
                            self.page(b"Inside")], 4)
        if not self.odd(0.2):
            lines.append(b"*CloseUIZUB" + self.pick([b"", b": " + keyword,
                                                     b" x"]))
        return lines

    def range_block(self):
        keyword = self.fresh_keyword()
        lines = self.opening(keyword)
        word = self.pick([b"*%ZUBRange", b"*%ZUBUnitRange",
                          b"*%ZUBFloatRange"])
        if word == b"*%ZUBFloatRange":
            pool = [b"0", b"1", b"0.5", b"2.25", b"-3.1", b"100", b".75",
                    b"1e2", b" 4 ", b"5 mm", b"-0"]
        else:
            pool = [b"0", b"1", b"5", b"10", b"-7", b"100", b"99", b" 4 ",
                    b"5 mm", b"3.9", b"+2"]
        if self.odd(0.5):
            pool += [b"", b" ", b"abc", b"99999999999", b"-99999999999",
                     b"0x10", b"inf", b"nan", b"1;2"][:6 if "Fl" in
                                                      word.decode() else 9]
            pool = [p for p in pool if word != b"*%ZUBFloatRange" or
                    b"999" not in p]
        low, high, step, start = (self.pick(pool) for _ in range(4))
        if self.chance(0.7):
            low = self.pick([b"0", b"0", b"-100"])
            high = self.pick([b"10", b"100", b"37"])
        shown = self.keyword() if self.odd(0.2) else keyword
        line = (word + b" " + shown + b"/" + self.name() + b":" + self.gap() +
                b"(" + b";".join([low, high, step, start]) + b")")
        if self.odd():
            line = line[:-1] + self.pick([b";", b"", b"(", b";)"])
        elif self.odd():
            line = line.replace(b";", self.pick([b")", b"(", b",", b";;"]), 1)
        if self.odd(0.3):
            line = self.spoiled(line)
        code = self.code(keyword)
        lines.append(line + b" " + code[0])
        return lines + code[1:]

    # -- job notes

    def note_words(self):
        words = self.some(NOTE_WORDS, 4)
        if self.chance(0.3):
            words.insert(self.rng.randint(0, len(words)),
                         self.pick(ODD_NOTE_WORDS))
        # These two change what a note without a template becomes.
        if self.chance(0.2):
            words.append(self.pick([b"Resume", b"Member"]))
        if self.odd(0.3):
            words.insert(self.rng.randint(0, len(words)),
                         self.pick([b"", b" "]))
        return words

    def note_line(self, keyword):
        length = self.pick([b"20", b"127", b"0", b" 8 ", b"4 digits"])
        if self.odd(0.3):
            length = self.pick([b"", b"x", b"-3", b"99999999999", b'"20"'])
        line = (b"*%ZUBJobNote " + keyword + b"/" + self.name() + b":" +
                self.gap() + b"|".join([length] + self.note_words()))
        return self.spoiled(line) if self.odd(0.4) else line

    def note_text(self, grouped):
        text = self.pick([b"text", b"Two Words", b"caf\x8e", b"gr\xc3\xbc\xc3\x9f",
                          b"a\\b(c)", b"1-3,5", b"tab\there", b"x" * 200])
        if grouped != self.odd():
            return b'"' + text + self.pick([b'"', b'"', b'" left'])
        return text + self.pick([b"", b"", b"|rest", b" "])

    def note_companion(self, keyword, grouped):
        """The lines of a default or of code, or others."""
        how = self.rng.random()
        if how < 0.4:
            head = b"*%Default" + self.pick([keyword.lstrip(b"*"), b"", b"X"])
            return [head + b":" + self.gap() + self.note_text(grouped)]
        if how < 0.8:
            code = self.note_code(keyword)
            if not grouped and not self.odd():
                code = code[:1] if code[0].count(b'"') == 2 else [b'"one line"']
            head = b"*%" + keyword.lstrip(b"*")
            return [head + b":" + self.gap() + code[0]] + code[1:]
        return self.pick([[], [b""], [b"*% nothing"], [b" "],
                          [b"*%ZUBSpecialOption *ZUBehind: 1"],
                          [b"*%default: x"]])

    def note_code(self, keyword):
        marker = b"<" + keyword + b">"
        if self.chance(0.4):
            return self.code(keyword)
        return [b'"' + self.pick([
            b"(" + marker + b") setnote", b"( " + marker + b" ) " + marker,
            b"%%Note: " + marker, b"% " + marker, marker,
            b"%%" + marker.lower() + marker, b"((" + marker + b"))"]) + b'"']

    def note_block(self):
        """A job note on its own, or behind a flags line."""
        keyword = self.pick(NOTES)
        if self.odd(0.5):
            keyword = self.keyword()
        if self.chance(0.4):
            return [self.note_line(keyword)] + \
                self.note_companion(keyword, False)
        self.used.append(keyword)
        shown = self.keyword() if self.odd(0.2) else keyword
        return (self.opening(keyword) + [self.note_line(shown)] +
                self.note_companion(keyword, True))

    def small_kinds(self):
        side = self.pick([b"Width", b"Height"])
        numbers = self.some([b"36", b"72.5", b"1008", b"0", b"x", b"1e2"], 2)
        line = self.pick([
            [b"*%ParamCustomPrintSize " + side + b": 1 points " +
             b" ".join(numbers)],
            [b"*%ParamCustomPrintSize Width: 1 points 72 900",
             b"*%ParamCustomPrintSize Height: 2 points 36.25 1200"],
            [b"*%ZUBSpecialOption " + self.pick([b"*ZUHas", b"ZUCan<41>",
                                                 b"*Duplex", b"*ZUKnows"]) +
             b":" + self.pick([b" Yes it has", b"1", b" ", b""])],
            [b"*%ZUShortcut" + self.gap() + self.keyword() +
             self.pick([b"", b"", b" "])],
            [b"*%ZUShortcut " + k for k in self.used[-2:]] or [b""]])
        if self.odd(0.5):
            line[0] = self.spoiled(line[0])
        return line

    def standard_lines(self):
        return self.pick([
            [b"*OpenUI *Plain/Plain: PickOne", b"*DefaultPlain: x",
             b"*Plain x/X: \"1\"", b"*CloseUI: *Plain"],
            [b"*% a comment with *PCFileName inside"],
            [b"*OpenGroup: Other/Other"], [b"*CloseGroup: Other"], [b""],
            [b"*ColorDevice: True"], [b"just text"], [b" *%ZUBFlags *x: y"],
            [b"*%ZUBGroup *x: y/z"], [b"*End"], [b"*PCFileNames: \"x\""],
            [b"*Product: \"(x", b"y)\""]])

    def constraint(self):
        keys = self.used[-4:] + [b"*PageSize", b"*InputSlot"]
        line = self.pick([b"*UIConstraints:", b"*%ZUBUIConstraints:",
                          b"*%ZUBUIRequires:"])
        for _ in range(2):
            line += self.pick([b" ", b"\t", b"  "]) + self.pick(keys)
            if self.chance(0.7):
                line += b" " + self.pick([b"On", b"None", b"True"])
        if self.odd():
            line = self.pick([line[:15], line.rsplit(b"*", 1)[0], line[:-3],
                              self.spoiled(line)])
        return [line]

    def installable_section(self):
        parts = [self.block() for _ in range(self.rng.randint(0, 2))]
        for part in parts:
            if len(part) > 1 and part[1].startswith(b"*%ZUBGroup") and \
                    self.chance(0.7):
                del part[1]
        if self.chance(0.3):
            parts.append(self.small_kinds())
        opening = b"*OpenGroup: InstallableOptions/" + (self.name() or b" ")
        if self.odd(0.3):
            opening = self.spoiled(opening)
        if self.chance(0.2):
            parts.insert(0, [b"*CloseGroup: " +
                             self.pick([b"Other", b"", b" "])])
        parts.insert(0, [opening])
        if not self.odd():
            parts.append([b"*CloseGroup: InstallableOptions"])
        return parts

    # -- the whole

    def other_encoding(self):
        self.encoding = self.pick(ENCODINGS)
        return [[b"*LanguageEncoding: " + self.encoding]]

    def body(self):
        items = []
        for _ in range(self.rng.randint(0, 8)):
            items.append(self.block())
            if self.odd(0.5):
                items.append(self.passed_block())
            if self.chance(0.3):
                items.append(self.constraint())
            if self.chance(0.3):
                items.append(self.standard_lines())
            if self.chance(0.5):
                items.append(self.pick([self.range_block,
                                        self.small_kinds])())
            if self.chance(0.3):
                items.append(self.note_block())
            if self.chance(0.12):
                items += self.installable_section()
            if self.odd(0.2):
                items += self.other_encoding()
            if self.odd(0.2):
                items.append(self.pick([
                    [b"*%ZUVersion: " + self.pick([b"2", b"4.4", b" "])],
                    [b"*LanguageVersion: Czech"], [b"*%ZUBFlags"],
                    [b"*%ZUBFlags *Lone: x"], [self.page(b"Page0")]]))
        return items

    def entries(self):
        """Lists of [line, line end, starts an item]."""
        items = [self.first_line()]
        items += self.header() + self.layout() + self.body()
        if self.odd(2):
            for _ in range(self.rng.randint(1, 3)):
                self.mutate(items)
        if self.odd(0.3):
            items.insert(self.late(len(items)), [self.lengthened(b"*%")])
        end = self.pick(ENDS)
        mixed = self.chance(0.2)
        return [[line, self.pick(ENDS) if mixed else end, n == 0]
                for item in items for n, line in enumerate(item)]

    def late(self, count):
        """A place nearer to the end: what ends a parse stands better there."""
        return max(self.rng.randint(0, count), self.rng.randint(0, count),
                   min(1, count))

    def mutate(self, items):
        item = items[self.late(len(items) - 1)]
        if not item:
            return
        n = self.rng.randrange(len(item))
        how = self.rng.randrange(9)
        if how == 0:
            del item[n]
        elif how == 1:
            item.insert(n, item[n])
        elif how == 2:
            m = self.rng.randrange(len(item))
            item[n], item[m] = item[m], item[n]
        elif how == 3:
            item.insert(n, self.pick([b"", b" ", b"*% x", b"*"]))
        elif how == 4:
            item[n] = self.lengthened(item[n])
        elif how < 7 and item[n] and item is not items[0]:
            at = self.rng.randrange(len(item[n]) + 1)
            byte = self.pick([b"\0", b"\0", b"\xff"])
            item[n] = item[n][:at] + byte + item[n][at:]
        else:
            item[n] = self.spoiled(item[n])

    def put_on_border(self, entries, border):
        """Pad so that a chunk ends inside, or right at an end of, a line."""
        target = self.late(len(entries) - 1)
        # Behind these lines an empty line would make a difference.
        tight = [n for n, e in enumerate(entries)
                 if e[0].startswith((b"*%ZUBFlags", b"*%ZUBGroup "))]
        if tight and self.chance(0.3):
            target = self.pick(tight)
        entry = entries[target]
        if self.chance(0.3):
            entry[1] = b"\r\n"
            inside = len(entry[0]) + 1
        else:
            inside = self.rng.randint(0, len(entry[0]) + len(entry[1]))
        self.pad(entries, target, inside, border)

    def pad(self, entries, target, inside, border):
        start = target
        while start > 0 and not entries[start][2]:
            start -= 1
        if start == 0:
            return
        offset = sum(len(line) + len(end) for line, end, _ in
                     entries[:target]) + inside
        need = border - offset
        while need < 300:
            need += border
        end = entries[start][1]
        padding = []
        while need:
            length = need if need <= 200 else self.rng.randint(30, 100)
            padding.append([b"*%" + b"-" * (length - 2 - len(end)), end, True])
            need -= length
        entries[start:start] = padding

    def make(self):
        entries = self.entries()
        where = self.rng.random()
        if where < 0.25:
            self.put_on_border(entries, CHUNK)
            if self.chance(0.2):
                self.put_on_border(entries, 2 * CHUNK)
        elif where < 0.36:
            named = [n for n, e in enumerate(entries)
                     if e[0].startswith(b"*PCFileName:")]
            if named:
                line = entries[named[0]][0]
                self.pad(entries, named[0], self.pick([
                    self.rng.randint(0, 50), line.find(b"ZUB") + 3,
                    line.find(b".PPD") + 4]), SCAN_LIMIT)
        if self.chance(0.08):
            entries[-1][1] = b""
        data = bytearray(b"".join(line + end for line, end, _ in entries))
        if self.odd(2):
            for _ in range(self.rng.randint(1, 3)):
                self.mutate_byte(data)
        if self.odd(0.5):
            del data[self.rng.randint(0, len(data)):]
        elif self.odd(0.1):
            data[:] = data[:self.pick([1, 20])]
        if self.chance(0.002):
            data.clear()
        return bytes(data)

    def mutate_byte(self, data):
        if len(data) < 60:
            return
        at = max(self.rng.randrange(40, len(data)),
                 self.rng.randrange(40, len(data)))
        how = self.rng.random()
        special = self.pick(b"\"\"::/|*\n\r \t<>\0\0\xff();")
        if how < 0.4:
            data.insert(at, special)
        elif how < 0.6:
            data[at] = special
        elif how < 0.8:
            del data[at]
        else:
            stop = min(len(data), at + self.rng.randint(1, 80))
            to = self.rng.randrange(40, len(data))
            data[to:to] = data[at:stop]


def make(seed):
    return Maker(seed).make()
