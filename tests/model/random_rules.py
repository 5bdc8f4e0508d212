# SPDX-License-Identifier: Apache-2.0
"""Random extended PPD files full of rules about options.

The same seed always gives the same bytes. A file is of one of four moods:
"mixed" has rules of all forms, "sizes" has a print size that follows the page
size, "dense" has so many rules that a search for a way out is long, and "wide"
has a conflict with about as many ways on as a search looks at.
"""

from comparing import LAYOUT, Dice

HEAD = [b'*PPD-Adobe: "4.3"', b"*LanguageVersion: English",
        b"*LanguageEncoding: ISOLatin1"] + LAYOUT
# Keywords and options of equal text are meant: a text has one id.
KEYS = [b"*A", b"*B", b"*C", b"*Duplex", b"*Collate", b"*PageSize", b"Staple",
        b"*F\xf6ld", b"*ZUOutProfile"]
OPTIONS = [b"a", b"b", b"c", b"d", b"None", b"False", b"True", b"*A", b"*B",
           b"Staple", b"\xe9t\xe9", b"On", b"Off"]
SIZES = [b"A4", b"A5", b"Letter", b"Legal", b"None", b"Gr\xf6\xdfe"]
RULES = [b"*UIConstraints:", b"*UIConstraints:", b"*%ZUBUIConstraints:",
         b"*UIConstraints", b"*%ZUBUIRequires:"]


class Maker(Dice):
    def __init__(self, seed):
        super().__init__(f"rules {seed}")
        self.mood = self.pick(["mixed"] * 4 + ["sizes"] * 2 + ["dense"] * 2 +
                              ["wide"])
        self.options = {}

    def between(self, low, high):
        return self.rng.randint(low, high)

    # -- controls

    def group(self):
        return self.pick([b"Roll"] * 12 + [b"Dark", b""])

    def default(self, key, value):
        """Mostly a good one; two of them end the whole file."""
        how = self.rng.random()
        if how < 0.08:
            return []
        if how < 0.12:
            value = b"Unlisted"
        return [b"*Default" + key.lstrip(b"*") + b": " + value] * (
            2 if how > 0.995 else 1)

    def popup(self, key, options):
        self.options[key] = options
        kind = b"PickMany" if self.chance(0.15) else b"PickOne"
        lines = self.default(key, self.pick(options))
        lines += [key + b" " + o + b'/Name: ""' for o in options]
        if self.chance(0.1):
            lines.insert(-1, self.rule())
        return self.block(key, kind, lines, self.group())

    def boolean(self, key):
        self.options[key] = [b"True", b"False"]
        return self.block(
            key, b"Boolean", self.default(key, self.pick([b"True", b"False"])) +
            [key + b' True/On: ""', key + b' False/Off: ""'], self.group())

    def range(self, key):
        self.options[key] = [b"1", b"2"]
        return self.opening(key, b"Roll") + [
            b"*%ZUBRange " + key + b'/Name: (0;9;1;2) "x"']

    def control(self, key):
        how = self.rng.random()
        if how < 0.2:
            return self.boolean(key)
        if how < 0.25:
            return self.range(key)
        options = self.rng.sample(OPTIONS, self.between(1, 6))
        if self.chance(0.1):
            options.append(self.pick(options))
        return self.popup(key, options)

    # -- rules

    def named(self, key):
        """An option of the key, or of another, or of none."""
        if self.chance(0.06):
            return self.pick(OPTIONS + [b"Unknown"])
        return self.pick(self.options.get(key, OPTIONS))

    def rule_between(self, key1, key2, blank):
        fields = [self.pick(RULES)]
        for key in (key1, key2):
            fields.append(key)
            if not self.chance(blank):
                fields.append(self.named(key))
        if self.chance(0.03):
            del fields[self.rng.randrange(1, len(fields))]
        if self.chance(0.02):
            fields.append(b"behind")
        gap = self.pick([b" "] * 8 + [b"\t", b"  ", b" \t "])
        return gap.join(fields) + self.pick([b""] * 9 + [b" "])

    def rule(self, blank=0.25):
        keys = list(self.options) or KEYS
        if self.chance(0.08):
            keys = keys + KEYS + [b"*Unknown"]
        key1 = self.pick(keys)
        return self.rule_between(key1, key1 if self.chance(0.06)
                                 else self.pick(keys), blank)

    def rules(self):
        lines = [self.rule() for _ in range(self.between(0, 14))]
        if lines and self.chance(0.3):
            lines.append(self.pick(lines))
        return lines

    # -- the moods

    def mixed(self):
        parts = [self.control(key) for key in
                 self.rng.sample(KEYS, self.between(2, 7))]
        return parts, self.rules()

    def sizes(self):
        parts = [self.control(k) for k in self.rng.sample(KEYS[:5], 2)]
        shared = self.rng.sample(SIZES, self.between(2, 4))
        if self.chance(0.9):
            parts.append(self.popup(b"*PageSize", shared)
                         if self.chance(0.85) else self.control(b"*PageSize"))
        own = self.rng.sample(shared, self.between(1, len(shared)))
        own += [o for o in (b"SameAsPageSize", b"CustomPrintSize")
                if self.chance(0.9)]
        self.rng.shuffle(own)
        size = self.popup(b"*ZUPrintSize", own)
        # It mostly follows from the start.
        if b"SameAsPageSize" in own and self.chance(0.6):
            size = [b"*DefaultZUPrintSize: SameAsPageSize"
                    if s.startswith(b"*Default") else s for s in size]
        parts.insert(self.between(0, len(parts)), size)
        lines = self.rules()
        for _ in range(self.between(2, 6)):
            keys = [b"*ZUPrintSize", self.pick(list(self.options))]
            self.rng.shuffle(keys)
            lines.append(self.rule_between(*keys, 0.1))
        return parts, lines

    def dense(self):
        """Options of different keys fall out with each other at random.

        Half of the files keep one choice for each key free of rules, so that
        there is a way out, though it may be too far.
        """
        keys = [b"*K%d" % n for n in range(self.between(5, 8))]
        most = self.pick([2, 3, 3, 3, 6])
        parts = [self.popup(key, [b"k%d" % n for n in
                                  range(self.between(2, most))])
                 for key in keys]
        free = {(key, self.pick(self.options[key])) for key in keys} \
            if self.chance(0.5) else set()
        share = self.pick([0.2, 0.3, 0.4, 0.5])
        pairs = [(key, option) for key in keys for option in self.options[key]]
        lines = [b" ".join((b"*UIConstraints:",) + one + other)
                 for one in pairs for other in pairs
                 if one[0] != other[0] and not {one, other} <= free and
                 self.chance(share)]
        self.rng.shuffle(lines)
        return parts, lines

    def wide(self):
        count = self.between(126, 130)
        options = [b"b%d" % n for n in range(count + 1)]
        parts = [self.popup(b"*A", [b"a1", b"a2"]),
                 self.popup(b"*X", [b"x"]), self.block(
                     b"*B", b"PickOne", [b"*DefaultB: b0"] +
                     [b"*B " + o + b'/Name: ""' for o in options], b"Roll")]
        # The first way on may be free, or a later one.
        lines = [b"*UIConstraints: *B " + o + b" *X x"
                 for o in options[self.pick([1, 1, 2, 3]):]]
        return parts, [b"*UIConstraints: *A a1 *B b0"] + lines

    # -- the whole

    def make(self):
        parts, lines = getattr(self, self.mood)()
        body = [[line] for line in lines]
        # Rules stand behind the controls, ahead of them or between them.
        where = self.pick(["behind", "ahead", "between"])
        if where == "behind":
            body = parts + body
        elif where == "ahead":
            body = body + parts
        else:
            body = body + parts
            self.rng.shuffle(body)
        version = self.pick([b"4.4"] * 40 + [b"2.1"])
        data = b"\n".join(HEAD + [b"*%ZUVersion: " + version] +
                          [line for part in body for line in part]) + b"\n"
        if self.chance(0.02):
            data = data[:self.between(400, max(401, len(data)))]
        return data


def make(seed):
    return Maker(seed).make()
