# SPDX-License-Identifier: Apache-2.0
"""A second reading of watermark records, and the resource of one."""

import pathlib
import re

MOST = 99
TEXT, FONT = 255, 63  # bytes
BITS_32 = (-2**31, 2**31 - 1)
NUMBERS = ([(place, *BITS_32) for place in (0, 1, 8)] +
           [(place, 0, 255) for place in (2, 3, 4)] + [(11, 1, BITS_32[1])])
DELIMITERS = b"()<>[]{}/%"
ENCODINGS = {b"Chinese": "gbk", b"Japanese": "shift_jis"}

# The resource of a mark in a font of Latin, and what stands in the place of
# two of its lines where the font is used as it is.
TEMPLATE = (pathlib.Path(__file__).parent.parent / "VelonFeatures/Project/"
            "Core/Job/watermark.ps").read_text(encoding="ascii")
LATIN_FONT = re.search(" /Encoding .*\n.* definefont pop \n.*\n", TEMPLATE)[0]
OWN_FONT = " " * 52 + "end" + " " * 35 + "\n /Font /%s           def \n"


def bool_name(value):
    return "true" if value else "false"


def number(field):
    """What is read at its front, in 32 bits, and None where nothing is."""
    found = re.match(r" *([+]?-?[0-9]+)", field)
    low, high = BITS_32
    return found and max(low, min(high, int(found[1].removeprefix("+"))))


class Watermark:
    def __init__(self, record):
        self.fields, self.text = [], record
        for _ in range(13):
            field, _, self.text = self.text.lstrip(",").partition(",")
            self.fields.append(field)
        numbers = {n: number(self.fields[n]) or 0 for n, *_ in NUMBERS}
        self.x, self.y = numbers[0], numbers[1]
        self.rgb = numbers[2], numbers[3], numbers[4]
        self.angle, self.size = numbers[8], numbers[11]
        self.font = self.fields[12]
        self.take_first_page()

    def take_first_page(self):
        self.first = self.fields[6] == "1"

    def is_taken(self):
        """Whether the command takes its record."""
        return not re.search("[\x80-\x9f]", self.text) and all(
            not self.fields[n] or number(self.fields[n]) is not None
            for n, *_ in NUMBERS)

    def is_printed(self):
        font = self.font.encode()
        return self.size != 0 and 0 < len(font) <= FONT and all(
            32 < byte < 127 and byte not in DELIMITERS for byte in font)

    def is_doubtful(self):
        return not self.is_printed() or "" in self.fields or \
            any(not (re.fullmatch(r" *[+]?-?[0-9]+", self.fields[n]) and
                     low <= int(self.fields[n]) <= high)
                for n, low, high in NUMBERS) or \
            self.fields[6] not in ("0", "1", "-") or \
            not self.text.strip(" ") or len(self.text.encode()) > TEXT

    def doubt(self, index):
        """How the line begins that tells of it; none for nothing."""
        return [f"watermark {index}" + (":" if self.is_printed() else
                                        " is left out:")
                ] * bool(self.is_doubtful())

    def losses(self, language):
        """How the lines begin that tell what its text loses."""
        converted, is_whole = self.converted(language)
        strange = {b"Chinese": b"\xa4", b"Japanese": b""}.get(
            language, b"\xa6\xa8\xb4\xb8\xbc\xbd\xbe" +
            bytes(range(0x80, 0xa0)))
        found = [not is_whole, set(converted) & set(strange),
                 any(byte < 16 for byte in converted)]
        return ["the watermark's text " + opening for there, opening in zip(
            found, ("ends", "has", "has a tab")) if there]

    def converted(self, language):
        """The bytes, and whether they are of the whole text."""
        encoding = ENCODINGS.get(language, "iso8859_15")
        converted = b""
        for character in self.text.encode()[:TEXT].decode(errors="ignore"):
            if encoding == "gbk" and character == "€":
                converted += b"\x80"
                continue
            try:
                converted += character.encode(encoding)
            except UnicodeError:
                return converted, False
        return converted, True

    def digits(self, language):
        converted, _ = self.converted(language)
        if language != b"Japanese":
            converted = converted.replace(b"\xa4", b"\x80")
        return "".join("%X" % byte for byte in converted)

    def resource(self, orientation, language):
        x, y = {2: (-self.y, self.x), 4: (self.y, -self.x)}.get(
            orientation, (self.x, self.y))
        text = TEMPLATE
        if language in ENCODINGS:
            text = text.replace(LATIN_FONT, OWN_FONT % self.font)
        for old, new in (
                ("Helvetica-Bold", self.font),
                ("<436F7079>", "<%s>" % self.digits(language)),
                ("/FontSize 48", "/FontSize %d" % self.size),
                ("1.00 0.50 0.00", "%.2f %.2f %.2f" %
                 tuple(value / 255 for value in self.rgb)),
                ("/Angle 45.0", "/Angle %.1f" % (self.angle / 10)),
                ("/XOffset 100", "/XOffset %d" % x),
                ("/YOffset 20", "/YOffset %d" % y),
                ("AllPages true", "AllPages " + bool_name(not self.first)),
                ("/landscapeDoc false",
                 "/landscapeDoc " + bool_name(orientation == 2)),
                ("/invLandscapeDoc false",
                 "/invLandscapeDoc " + bool_name(orientation == 4))):
            text = text.replace(old, new)
        return text.encode()
