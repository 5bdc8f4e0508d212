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


class Watermark:
    """That of a record without empty fields ahead of its text."""

    def __init__(self, record):
        *self.fields, self.text = record.split(",", 13)
        if self.is_taken():
            numbers = {n: int(self.fields[n]) for n, *_ in NUMBERS}
            self.x, self.y = numbers[0], numbers[1]
            self.rgb = numbers[2], numbers[3], numbers[4]
            self.angle, self.size = numbers[8], numbers[11]
            self.first = self.fields[6] == "1"
            self.font = self.fields[12]

    def is_taken(self):
        """Whether the command takes its record."""
        return len(self.fields) == 13 and self.text and \
            "\t" not in self.text and all(
                re.fullmatch("-?[0-9]+", self.fields[n]) and
                low <= int(self.fields[n]) <= high for n, low, high in NUMBERS)

    def has_font(self):
        font = self.font.encode()
        return 0 < len(font) <= FONT and all(
            32 < byte < 127 and byte not in DELIMITERS for byte in font)

    def digits(self, language):
        encoding = ENCODINGS.get(language, "iso8859_15")
        converted = b""
        for character in self.text.encode()[:TEXT].decode(errors="ignore"):
            if encoding == "gbk" and character == "€":
                converted += b"\x80"
                continue
            try:
                converted += character.encode(encoding)
            except UnicodeError:
                break
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
