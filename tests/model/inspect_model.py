# SPDX-License-Identifier: Apache-2.0
"""A second reader of extended PPD files, independent of the product's own.

Where a file reaches a place whose outcome isn't settled, the reader notes it
with `doubt()`.
"""

import os
import pwd
import re
import struct

LF, CR, QUOTE, STAR, PERCENT, EOF_BYTE = 0x0A, 0x0D, 0x22, 0x2A, 0x25, 0xFF
CHUNK, TOKEN_LIMIT, LINE_LIMIT = 10000, 255, 255
QUOTED_LIMIT, CODE_LIMIT = 256, 4096
SCAN_LIMIT, NAME_WINDOW = 4096, 32

KEYWORD_ENDS = b" \t:"
NAME_ENDS = b"/:"
COLON = b":"
WORD_ENDS = b'|:"'
TYPE_ENDS = b";(;)"
LINE_ENDS = b"\n\r"
BLANKS = b" \t"

CLOSERS = (b"*CloseUI", b"*ZUCloseUI", b"*CloseUIZUB", b"*EndUI")
OPENERS = (b"*OpenUI", b"*ZUOpenUI", b"*BeginUI")
FREE_CHOICE = (b"*ZUSimulation", b"*ZUOutProfile", b"*ZURGBOverride")

UTF8_NOTES = (b"*Notes1", b"*Instruct", b"*Resume")
# In the order in which levels of the grammar added them, lowest bit first.
NOTE_WORDS = (
    "Alpha Numeric Decimal Required Remembered Password AlwaysDisplay Resume "
    "Member OnOfSwitch LengthReq SecPrint Command Space Negative Encrypt "
    "MultiSpace MultiComma LCD Hyphen TwoCharField NoComma MinLength UTF8 "
    "AESEncrypt").encode().split()
NOTE_WORDS_OF_LEVEL = {0: 9, 1: 12, 2: 15}
PERSONAL, DEPARTMENT = 0x80, 0x100
NOTE_COMMENTS = {b"*Notes1": b"%%ZUBCustom1: ", b"*Notes2": b"%%ZUBCustom2: ",
                 b"*Instruct": b"%%ZUBCustom3: "}

NO_SHORTCUT = frozenset((
    "*ZUChromVale *ZU_PROP_COLORMODE *ZU_PROP_CV_PURE_BLACK "
    "*ZU_PROP_CV_OVER_PRINT *ZU_PROP_CV_RGB_SEPARATION "
    "*ZU_PROP_CV_SOURCE_PROFILES *ZU_PROP_CV_SIMULATION "
    "*ZU_PROP_CV_SPOTCOLORS *ZU_PROP_CV_OUTPUT_PROFILE "
    "*ZU_PROP_CV_SIM_SPEED *ZU_PROP_CV_COLOR_SMART *ZU_PROP_CV_GAMMA "
    "*ZU_PROP_CV_WHITEPOINT *ZU_PROP_CV_PHOSPHORS *ZU_PROP_CV_CRD "
    "*ZU_PROP_CV_CRD_IMAGES *ZU_PROP_CV_CRD_GRAPHICS *ZU_PROP_CV_CRD_TEXT "
    "*ZU_PROP_CV_CRD_IMAGES_HT *ZU_PROP_CV_CRD_GRAPHICS_HT "
    "*ZU_PROP_CV_CRD_TEXT_HT *ZU_LOCAL_PROP_FIRSTPAGESOURCE "
    "*ZU_LOCAL_PROP_FIRSTPAGEMEDIA *ZU_LOCAL_PROP_BACKPAGESOURCE "
    "*ZU_LOCAL_PROP_BACKPAGEMEDIA *ZU_PROP_WATERMARK_FIRSTPAGEONLY "
    "*ZU_PROP_WATERMARK_FOREGROUND *ZU_PROP_WATERMARK_OUTLINE "
    "*ZU_PROP_WATERMARK *ZU_PROP_LOCAL_ZULANDSCAPE").encode().split())

CODECS = {
    b"ISOLatin1": "latin-1",
    b"ISOLatin2": "iso8859_2",
    b"ISOLatin5": "iso8859_9",
    b"JIS83-RKSJ": "shift_jis",
    b"MacStandard": "mac_roman",
    b"WindowsANSI": "cp1252",
}


class NoSuchControl(Exception):
    """A value was to be set on a control that the PPD doesn't have."""


def latin(data):
    return None if data is None else data.decode("latin-1")


def cut_at_nul(data):
    at = data.find(0)
    return data if at < 0 else data[:at]


# --- numbers -----------------------------------------------------------------

def number_prefix(text, fraction):
    """The longest start of `text` that is a decimal number, or b''."""
    at, n = 0, len(text)
    while at < n and text[at] in b" \t\n\v\f\r":
        at += 1
    start = at
    if at < n and text[at] in b"+-":
        at += 1
    digits = at
    while at < n and text[at] in b"0123456789":
        at += 1
    found = at > digits
    if fraction:
        if at < n and text[at] == 0x2E:
            point = at
            at += 1
            while at < n and text[at] in b"0123456789":
                at += 1
            if not found and at == point + 1:
                return b""
            found = True
        if found and at < n and text[at] in b"eE":
            back = at
            at += 1
            if at < n and text[at] in b"+-":
                at += 1
            exponent = at
            while at < n and text[at] in b"0123456789":
                at += 1
            if at == exponent:
                at = back
    return text[start:at] if found else b""


def to_long(text):
    digits = number_prefix(text, False)
    return max(-2**31, min(2**31 - 1, int(digits))) if digits else 0


def to_float(text):
    """The number, narrowed to single precision."""
    digits = number_prefix(text, True)
    if not digits:
        return 0.0
    try:
        return struct.unpack("<f", struct.pack("<f", float(digits)))[0]
    except OverflowError:
        return float("-inf") if digits[:1] == b"-" else float("inf")


# --- streams -----------------------------------------------------------------

class LineStream:
    """A cursor over the bytes of one line, or of a part of it."""

    def __init__(self, data):
        self.data = data
        self.pos = 0
        self.end = len(data)
        self.stop = None

    def get_char(self):
        if self.pos >= self.end:
            return None
        c = self.data[self.pos]
        self.pos += 1
        return c

    def peek(self):
        return self.data[self.pos] if self.pos < self.end else None

    def skip_white_space(self):
        while self.pos < self.end and self.data[self.pos] in BLANKS:
            self.pos += 1

    def rest(self):
        return self.data[self.pos:self.end]

    def peek_line(self):
        """The text of the next line if it ends in what is held, or None."""
        for at in range(self.pos, min(self.end, self.pos + LINE_LIMIT)):
            if self.data[at] == EOF_BYTE:
                return None
            if self.data[at] in LINE_ENDS:
                return cut_at_nul(self.data[self.pos:at])
        return None


class FileStream(LineStream):
    """The file, held one chunk at a time. Only `get_line` fetches the next."""

    def __init__(self, data):
        self.file = data
        self.offset = 0
        self.after_cr = False
        super().__init__(b"")
        self.good = self.refill()

    def refill(self):
        chunk = self.file[self.offset:self.offset + CHUNK]
        self.offset += len(chunk)
        self.data, self.pos, self.end = chunk, 0, len(chunk)
        if not chunk:
            return False
        # The line feed of a pair whose carriage return ended the last chunk.
        if self.after_cr and chunk[0] == LF:
            self.pos = 1
        self.after_cr = False
        return True

    def get_line(self):
        """The text of the next line, or None for a failed read."""
        line = bytearray()
        while True:
            c = self.get_char()
            if c is None:
                if not self.refill():
                    return None
                continue
            if c == LF:
                break
            if c == CR:
                if self.pos >= self.end:
                    self.after_cr = True
                elif self.data[self.pos] == LF:
                    self.pos += 1
                break
            if c == EOF_BYTE:
                return None
            line.append(c)
            if len(line) == LINE_LIMIT:
                return None
        return cut_at_nul(bytes(line))


def next_token(stream, delimiters, strip=True):
    """(found, token). `stream.stop` is the byte that ended the token."""
    token = bytearray()
    stream.stop = None
    while True:
        c = stream.get_char()
        if c is None:
            break
        if c == LF or (c == CR and stream.peek() != LF) or c in delimiters:
            stream.stop = c
            break
        token.append(c)
        if len(token) == TOKEN_LIMIT:
            break
    if token and token[-1] == CR and stream.stop == LF:
        token.pop()
    if not token:
        return False, b""
    return True, bytes(token).strip(BLANKS) if strip else bytes(token)


# --- the tree ----------------------------------------------------------------

class Element:
    def __init__(self, keyword, name, visible):
        self.keyword = keyword or None
        self.name = name
        self.visible = visible
        self.parent = None

    def describe(self):
        return {"keyword": latin(self.keyword), "name": self.name,
                "visible": self.visible}

    def parent_keyword(self):
        return latin(self.parent.keyword) if self.parent else None


class Property(Element):
    def __init__(self, keyword, name, visible, in_properties, in_application):
        super().__init__(keyword, name, visible)
        self.in_properties = in_properties
        self.in_application = in_application
        self.pane = None

    def describe(self):
        return {**super().describe(),
                "showInPrintProperties": self.in_properties,
                "showInApplication": self.in_application,
                "scrollPane": latin(self.pane.keyword) if self.pane else None}


class Group(Element):
    kind, member_field = "group", None

    def __init__(self, keyword, name, visible):
        super().__init__(keyword, name, visible)
        self.members = []

    def describe(self):
        out = {**super().describe(), "kind": self.kind,
               "parent": self.parent_keyword()}
        if self.member_field:
            out[self.member_field] = [latin(m.keyword) for m in self.members]
        return out


class RollDown(Group):
    kind, member_field = "rollDown", "controls"


class ScrollPane(Group):
    kind, member_field = "scrollPane", "rollDowns"


class Control(Element):
    type = 0

    def __init__(self, keyword, name, flags, visible=True):
        super().__init__(keyword, name, visible)
        self.flags = flags

    def frame(self, code, option):
        return (b"%%BeginFeature: " + (self.keyword or b"") + b" " + option +
                b"\n" + (code if code else b"\n") + b"%%EndFeature\n")

    def post_script(self):
        return b""

    def update_kv_cache(self, keyword, option):
        """Told of every selection, for a reader that follows them."""

    def describe(self):
        return {**super().describe(), "type": self.type,
                "parent": self.parent_keyword(),
                "flags": [latin(f) for f in self.flags],
                "value": self.value_text(),
                "postScript": latin(self.post_script())}


class Item:
    def __init__(self, keyword, name, code):
        self.keyword = keyword
        self.name = name
        self.code = code
        self.selected = False

    def text(self, profile=False):
        """The keyword as a value: Mac Roman, a profile's UTF-8 if it is."""
        if profile:
            try:
                return self.keyword.decode()
            except UnicodeDecodeError:
                pass
        return self.keyword.decode("mac_roman")


class Popup(Control):
    type = 5

    def __init__(self, keyword, name, flags, multiple, installable, items,
                 default):
        super().__init__(keyword, name, flags)
        self.multiple = multiple
        self.installable = installable
        self.items = items
        self.default = default
        self.current = None
        if default is not None:
            self.select_keyword(default)

    def select_keyword(self, keyword):
        found = False
        for item in self.items:
            if item.keyword == keyword:
                item.selected = True
                self.current = item
                found = True
                if self.multiple:
                    break
            elif not self.multiple:
                item.selected = False
        self.update_kv_cache(self.keyword, keyword)
        return found

    def select(self, chosen):
        for item in self.items:
            item.selected = item is chosen
        if chosen is not None:
            self.current = chosen
        if self.current is not None:
            self.update_kv_cache(self.keyword, self.current.keyword)

    def is_selected(self, keyword):
        return any(i.selected for i in self.items if i.keyword == keyword)

    def item_of(self, text):
        free = self.keyword in FREE_CHOICE
        return next((i for i in self.items if i.text(free) == text or (
            free and i.name is not None and i.name.lower() == text.lower())),
            None)

    def set_text(self, text):
        """True if taken, False if not, None if it can't be told."""
        if item := self.item_of(text):
            self.select(item)
            return True
        if self.keyword not in FREE_CHOICE:
            return False
        keyword = text.encode()
        if len(keyword) > 63:
            return False
        self.items.append(Item(keyword, text, None))
        if not self.select_keyword(keyword):
            self.select(next((i for i in self.items
                              if i.keyword == self.default), None))
        return True

    def value_text(self):
        if self.current is None:
            return None
        return self.current.text(self.keyword in FREE_CHOICE)

    def post_script(self):
        if self.current is None:
            return b""
        keyword = self.current.keyword
        first = next(i for i in self.items if i.keyword == keyword)
        return self.frame(first.code, keyword)

    def describe(self):
        return {**super().describe(), "multiple": self.multiple,
                "installable": self.installable,
                "default": latin(self.default),
                "items": [{"keyword": latin(i.keyword), "name": i.name,
                           "code": latin(i.code), "selected": i.selected}
                          for i in self.items]}


class Boolean(Control):
    type = 4

    def __init__(self, keyword, name, flags, states, default):
        super().__init__(keyword, name, flags)
        self.states = states
        self.default = default
        self.value = default

    def set_text(self, text):
        self.value = text[:4].lower() == "true"
        self.update_kv_cache(self.keyword, self.value_text().encode())
        return text.lower() in ("true", "false")

    def value_text(self):
        return "True" if self.value else "False"

    def post_script(self):
        text = self.value_text().encode()
        return self.frame(self.states[text][1], text)

    def describe(self):
        on, off = self.states[b"True"], self.states[b"False"]
        return {**super().describe(), "default": self.default,
                "trueText": latin(on[0]), "falseText": latin(off[0]),
                "trueCode": latin(on[1]), "falseCode": latin(off[1])}


def number_in(text):
    """The number that the whole text is, or None."""
    return float(text) if re.fullmatch(r" *[+-]?(\d+\.?\d*|\.\d+)", text) \
        else None


def replace_ignoring_case(text, marker, value):
    """ASCII letters only; the rest of the text is left byte for byte."""
    out, low, marker = bytearray(), text.lower(), marker.lower()
    at = 0
    while True:
        hit = low.find(marker, at)
        if hit < 0:
            return bytes(out + text[at:])
        out += text[at:hit] + value
        at = hit + len(marker)


class Range(Control):
    type = 2

    def __init__(self, keyword, name, flags, code, numbers):
        super().__init__(keyword, name, flags)
        self.code = code
        self.minimum, self.maximum, self.increment, self.default = numbers
        self.value = self.default

    def set_text(self, text):
        self.value = self.clamp(self.snap(to_long(text.encode())))
        return number_in(text) == self.value

    def snap(self, value):
        step = self.increment
        if step == 0 or value % step == 0:
            return value
        quotient = abs(value) // abs(step)
        return step * (quotient if (value < 0) == (step < 0) else -quotient)

    def clamp(self, value):
        if value < self.minimum:
            value = self.minimum
        if value > self.maximum:
            value = self.maximum
        return value

    def value_text(self):
        return "%d" % self.value

    def option_text(self):
        return b"%d" % self.value

    def post_script(self):
        text, code = self.option_text(), self.code
        if code:
            code = replace_ignoring_case(code, b"<" + self.keyword + b">", text)
        return self.frame(code, text)

    def describe(self):
        return {**super().describe(), "minimum": self.minimum,
                "maximum": self.maximum, "increment": self.increment,
                "default": self.default}


class FloatRange(Range):
    type = 3

    def set_text(self, text):
        self.value = self.clamp(to_float(text.encode()))
        return number_in(text) is not None and \
            to_float(text.encode()) == self.value

    def value_text(self):
        return "%.3f" % self.value

    def option_text(self):
        return b"%9.4f" % self.value


class CustomPageSize(Control):
    type = 7

    def __init__(self, keyword):
        super().__init__(keyword, "Custom Page Size", [])
        self.width = self.height = 0.0
        self.limits = {"minWidth": 0.0, "maxWidth": 0.0,
                       "minHeight": 0.0, "maxHeight": 0.0}

    def set_text(self, text):
        data = text.encode()
        self.width = to_float(data)
        if b" " in data:
            self.height = to_float(data.partition(b" ")[2])
        width, blank, height = text.partition(" ")
        return bool(blank) and None not in (number_in(width),
                                            number_in(height))

    def value_text(self):
        return "%f %f" % (self.width, self.height)

    def describe(self):
        return {**super().describe(), **self.limits}


class SpecialOption(Control):
    type = 6

    def __init__(self, keyword, name, value):
        super().__init__(keyword, name, [], visible=False)
        self.value = value

    def set_text(self, text):
        return None

    def value_text(self):
        return self.value.decode("ascii", "replace")


def without_controls(text):
    """A text as it stands in a comment."""
    return bytes(0x20 if c < 0x20 or c == 0x7F else c for c in text)


def is_string(text):
    """Whether it stands between parentheses as it is."""
    depth = 0
    for byte in text:
        depth += (byte == ord("(")) - (byte == ord(")"))
        if depth < 0 or byte == ord("\\"):
            return False
    return depth == 0


def is_unfit_profile(control, text):
    """A profile that isn't the PPD's own and would end what it stands in."""
    data = text.encode()
    return isinstance(control, Popup) and control.keyword in FREE_CHOICE and \
        control.item_of(text) is None and \
        not (is_string(data) and without_controls(data) == data)


class JobNote(Control):
    type = 1

    def __init__(self, keyword, name, flags, code, default, maximum, bits,
                 minimum):
        super().__init__(keyword, name, flags)
        self.code = code
        if default is None and keyword == b"*ZUUserAuthName":
            default = pwd.getpwuid(os.getuid()).pw_name.encode("mac_roman")
        self.text = self.default = default
        self.maximum = maximum
        self.bits = bits
        self.minimum = minimum

    def set_text(self, text):
        try:
            if self.keyword in UTF8_NOTES:
                self.text = text.encode()
            else:
                self.text = text.encode("mac_roman")
        except UnicodeEncodeError:
            self.text = text.encode()
        return True

    def value_text(self):
        text = self.text or b""
        if self.keyword in UTF8_NOTES:
            try:
                return text.decode()
            except UnicodeDecodeError:
                pass
        return text.decode("mac_roman")

    def comment(self, text):
        if self.bits & PERSONAL:
            head = b"%%PersPassword: "
        elif self.bits & DEPARTMENT:
            head = b"%%DeptPassword: "
        elif self.keyword in NOTE_COMMENTS:
            head = NOTE_COMMENTS[self.keyword]
        else:
            return b"%%EmptyOption\n\n"
        return head + without_controls(text) + b"\n"

    def filled(self, text):
        marker, comments = b"<" + self.keyword + b">", b""
        if self.code[:2] == b"%%":
            comments = re.match(rb"(?:%[^\r\n\f]*[\r\n\f]*)*", self.code)[0]
            text = without_controls(text)
        digits = b"<" + text.hex().upper().encode() + b">"
        return replace_ignoring_case(
            comments, marker, text if text.isascii() else b"") + \
            replace_ignoring_case(
                self.code[len(comments):], marker, digits).replace(
                    b"(" + digits + b")", digits)

    def post_script(self):
        if not self.text or not self.keyword or self.keyword in FREE_CHOICE:
            return b""
        short = self.text if len(self.text) <= 512 else self.text[:511]
        code = self.filled(short) if self.code else self.comment(short)
        return self.frame(code, without_controls(self.text))

    def describe(self):
        return {**super().describe(), "maximumLength": self.maximum,
                "minimumLength": self.minimum, "noteFlags": self.bits,
                "defaultNotes": latin(self.default)}


class Problem:
    def __init__(self, code, keyword=None, fatal=False):
        self.code = code
        self.keyword = keyword or None
        self.fatal = fatal

    def describe(self):
        return {"code": self.code, "fatal": self.fatal,
                "keyword": latin(self.keyword)}


class GroupName:
    def __init__(self, keyword, name, visible):
        self.keyword = keyword
        self.name = name
        self.visible = visible


# --- the reader --------------------------------------------------------------

def accepts(data, fragments):
    """Whether the file's name line holds one of the accepted fragments."""
    head = data[:SCAN_LIMIT].ljust(SCAN_LIMIT, b"\0")
    at = head.find(b"*PCFileName")
    if at < 0:
        return False
    at += 12
    while at < SCAN_LIMIT and head[at] in BLANKS:
        at += 1
    window = head[at:at + NAME_WINDOW]
    for fragment in fragments:
        try:
            sought = fragment.encode("mac_roman")
        except UnicodeEncodeError:
            continue
        if 0 < len(sought) <= 255 and sought in window:
            return True
    return False


class Reader:
    HEADER = ("PCFileName", "FormatVersion", "FileVersion", "LanguageVersion",
              "LanguageEncoding", "ModelName", "APDialogExtension",
              "ZUFileVersion", "ZUVersion")
    QUOTED = ("PCFileName", "FormatVersion", "FileVersion", "ModelName",
              "APDialogExtension")

    def __init__(self, data, parse_options=3, accept=None, level=-1):
        self.data = data
        self.note_words = NOTE_WORDS_OF_LEVEL.get(level, len(NOTE_WORDS))
        self.orphans = bool(parse_options & 1)
        self.hidden = bool(parse_options & 2)
        self.doubts = []
        self.header = dict.fromkeys(self.HEADER)
        self.header_accepted = False
        self.printer_name_valid = accept is None or accepts(data, accept)
        self.codec = None
        self.problems = []
        self.properties = []
        self.groups = []
        self.controls = []
        self.group_names = []
        self.shortcut_names = []
        self.shortcuts = []
        self.inside_installable = False
        self.installable = None
        self.current = None
        self.shown_count = 0
        if self.printer_name_valid:
            self.build()

    def doubt(self, reason):
        """Note an unsettled place."""
        if reason not in self.doubts:
            self.doubts.append(reason)

    # -- values that may run over several lines

    def quoted(self, s):
        """(count, text) of a quoted value; a count of 0 for none."""
        text = bytearray()
        c = s.get_char()
        while c is not None and c != QUOTE:
            c = s.get_char()
        if c == QUOTE:
            while True:
                c = s.get_char()
                if c is None:
                    break
                if c == QUOTE:
                    return (len(text) + 1 if text else 0), bytes(text)
                text.append(c)
                if len(text) == QUOTED_LIMIT - 1:
                    return len(text), bytes(text)
        while True:
            line = self.current.get_line()
            if line is None:
                return 0, b""
            if not line:
                continue
            if line[0] == STAR:
                return len(text), bytes(text)
            text.append(0)
            if len(text) == QUOTED_LIMIT - 1:
                return len(text), bytes(text)
            for c in line:
                if c == QUOTE:
                    return len(text) + 1, bytes(text)
                text.append(c)
                if len(text) == QUOTED_LIMIT - 1:
                    return len(text), bytes(text)

    def code(self, s):
        """A block of PostScript, or None if there is none."""
        c = s.get_char()
        while c is not None and c != QUOTE:
            c = s.get_char()
        if c is None:
            return None
        text = bytearray()
        while True:
            c = s.get_char()
            if c is None:
                break
            if c == QUOTE:
                if not text:
                    return None
                return self.limited(text)
            text.append(c)
        while True:
            line = self.current.get_line()
            if line is None:
                return self.limited(text)
            if not line:
                continue
            text.append(LF)
            if line[0] == STAR:
                if line[1:2] != b"%":
                    return self.limited(text)
                line = line[2:]
            head, quote, _ = line.partition(b'"')
            text += head
            if quote:
                return self.limited(text)

    @staticmethod
    def limited(text):
        return bytes(text[:CODE_LIMIT - 1]) + b"\n"

    # -- display names

    def convert(self, text):
        """The display text, or None if it can't be had.

        An element without one isn't made; an option goes without.
        """
        if self.codec is None:
            return None
        data = cut_at_nul(self.unescape(text))
        try:
            return data.decode(self.codec)
        except UnicodeDecodeError:
            if self.codec == "shift_jis":
                self.doubt("bytes that Shift-JIS tables disagree about")
            return None

    def unescape(self, text):
        out = bytearray()
        at = 0
        while True:
            left = text.find(b"<", at)
            right = text.find(b">", at)
            if left < 0 or right < left:
                return bytes(out + text[at:])
            digits = self.escape_digits(text, left, right)
            if digits is None:
                return bytes(out + text[at:])
            out += text[at:left] + digits
            at = right + 1

    def escape_digits(self, text, left, right):
        """The bytes of the escape, or None if it is malformed."""
        digits = bytearray()
        at = left
        while at < right - 1:
            at += 1
            while text[at] in b" \t\n\r":
                at += 1
            if text[at] not in b"0123456789abcdefABCDEF>":
                return None
            digits.append(text[at])
        if len(digits) % 2 or not digits.strip(b">"):
            return None
        return bytes.fromhex(digits.replace(b">", b"0").decode())

    # -- lookups

    @staticmethod
    def find(elements, keyword):
        if not keyword:
            return None
        return next((e for e in elements if e.keyword == keyword), None)

    def find_or_create_parent(self, name):
        for entry in self.group_names:
            if entry.keyword == name:
                group = self.find(self.groups, name)
                if group is None:
                    group = Group(entry.keyword, entry.name, entry.visible)
                    self.groups.append(group)
                return group
        return None

    # -- the drive

    def build(self):
        self.parse()
        if not self.properties:
            self.problems.append(Problem(25))
        if not self.groups:
            self.problems.append(Problem(26))
        if not self.shown_count:
            self.problems.append(Problem(27))

    def parse(self):
        stream = FileStream(self.data)
        if not stream.good:
            self.problems.append(Problem(18, fatal=True))
            return
        self.current = stream
        held = None
        found, token = next_token(stream, KEYWORD_ENDS)
        if found:
            held = self.test_header(stream, token)
        while held is None:
            line = stream.get_line()
            if line is None:
                break
            problem = self.dispatch(line)
            if problem is not None:
                self.problems.append(problem)
                if problem.fatal:
                    break
        self.resolve_shortcuts()
        if self.orphans:
            for entry in self.group_names:
                self.find_or_create_parent(entry.keyword)
        if held is not None:
            self.problems.append(held)

    def test_header(self, stream, token):
        if 0 in token:
            self.doubt("a NUL byte in the first token")
        if token == b"*PPD-Adobe":
            count, text = self.quoted(stream)
            if 0 in text and stream.offset <= CHUNK:
                self.doubt("a NUL byte in the first value")
            if count and cut_at_nul(text) == b"4.3":
                self.header_accepted = True
                return None
        return Problem(28, fatal=True)

    def dispatch(self, line):
        s = LineStream(line)
        found, keyword = next_token(s, KEYWORD_ENDS)
        if not found:
            return None
        if keyword in (b"*UIConstraints", b"*%ZUBUIConstraints"):
            return self.constraint(s, False)
        if keyword == b"*%ZUBUIRequires":
            return self.constraint(s, True)
        if keyword == b"*%ZUBPropPage":
            return self.property_page(s)
        if keyword == b"*%ZUBGroupName":
            return self.group_name(s)
        if keyword == b"*%ZUBParent":
            return self.parent_line(s)
        if keyword == b"*%ZUBFlags":
            return self.control(s)
        if keyword == b"*%ZUBJobNote":
            return self.plain_note(s)
        if keyword == b"*%ParamCustomPrintSize":
            return self.custom_page_size(s)
        if keyword == b"*%ZUShortcut":
            return self.shortcut(s)
        if keyword == b"*%ZUBSpecialOption":
            return self.special_option(s)
        self.header_line(s, keyword)
        return None

    # -- header lines

    def header_line(self, s, keyword):
        if keyword == b"*%ZUFileVersion":
            self.store_plain(s, "ZUFileVersion")
        elif keyword == b"*%ZUVersion":
            self.store_plain(s, "ZUVersion")
        elif keyword == b"*OpenGroup":
            self.open_group(s)
        elif keyword == b"*CloseGroup":
            if next_token(s, NAME_ENDS)[1] == b"InstallableOptions":
                self.inside_installable = False
        elif keyword in (b"*LanguageVersion", b"*LanguageEncoding"):
            if self.store_plain(s, keyword[1:].decode()):
                if None not in (self.header["LanguageVersion"],
                                self.header["LanguageEncoding"]):
                    self.codec = CODECS.get(self.header["LanguageEncoding"],
                                            "utf-8")
        elif keyword[:1] == b"*":
            field = latin(keyword[1:])
            if field in self.QUOTED:
                count, text = self.quoted(s)
                text = cut_at_nul(text)
                if count and text:
                    self.header[field] = text

    def store_plain(self, s, field):
        found, text = next_token(s, LINE_ENDS)
        if found:
            self.header[field] = text
        return found

    def open_group(self, s):
        if next_token(s, NAME_ENDS)[1] != b"InstallableOptions":
            return
        self.inside_installable = True
        translation = next_token(s, NAME_ENDS)[1]
        if self.installable is not None:
            return
        name = self.convert(translation)
        if name is None:
            self.problems.append(Problem(12, b"InstallableOptions"))
            return
        self.installable = RollDown(b"InstallableOptions", name, True)
        self.groups.append(self.installable)

    # -- layout lines

    def words(self, s):
        while True:
            found, word = next_token(s, WORD_ENDS)
            if not found:
                return
            yield word

    def property_page(self, s):
        found, name = next_token(s, NAME_ENDS)
        if not found:
            return Problem(4)
        if self.find(self.properties, name):
            return Problem(23)
        found, translation = next_token(s, COLON, strip=False)
        if not found:
            return None
        local = self.convert(translation)
        visible, in_properties, in_application = False, True, True
        for word in self.words(s):
            if word == b"True":
                visible = True
            elif word == b"App":
                in_properties = False
            elif word == b"Prop":
                in_application = False
        if not visible and not self.hidden:
            return None
        if local is None:
            return Problem(4)
        self.properties.append(Property(name, local, visible, in_properties,
                                        in_application))
        return None

    def group_name(self, s):
        found, name = next_token(s, NAME_ENDS)
        if not found:
            return Problem(12)
        if self.find(self.groups, name):
            return Problem(23, name)
        found, translation = next_token(s, COLON, strip=False)
        if not found:
            return None
        local = self.convert(translation)
        visible = b"True" in list(self.words(s))
        if not visible and not self.hidden:
            return None
        if local is None:
            return Problem(12, name)
        self.group_names.append(GroupName(name, local, visible))
        return None

    def parent_line(self, s):
        found, name = next_token(s, NAME_ENDS)
        if not found:
            return Problem(15)
        found, parent_name = next_token(s, NAME_ENDS)
        if not found:
            return Problem(15, name)
        visible, kind = False, None
        for word in self.words(s):
            if word == b"True":
                visible = True
            elif word == b"Scrollpane":
                kind = ScrollPane
            elif word == b"Rolldown":
                kind = RollDown
        if not visible and not self.hidden:
            return None
        entry = next((g for g in self.group_names if g.keyword == name), None)
        if entry is None or kind is None:
            return None
        if kind is ScrollPane:
            parent = self.find(self.properties, parent_name)
            if parent is None:
                return Problem(14, parent_name)
        else:
            parent = self.find(self.groups, parent_name)
            if not isinstance(parent, ScrollPane):
                return Problem(14, parent_name)
        group = kind(entry.keyword, entry.name, visible)
        group.parent = parent
        if kind is ScrollPane:
            parent.pane = group
        else:
            parent.members.append(group)
        self.groups.append(group)
        return None

    def constraint(self, s, requires):
        def field():
            s.skip_white_space()
            return next_token(s, BLANKS)[1]
        key1, option1, key2 = field(), b"", field()
        if key2[:1] != b"*":
            option1, key2 = key2, field()
        if not key2:
            return Problem(36)
        self.add_rule(key1, option1, key2, field(), requires)
        return None

    def add_rule(self, key1, option1, key2, option2, requires):
        """For a reader that keeps them."""

    # -- control blocks

    def control(self, s):
        found, keyword = next_token(s, KEYWORD_ENDS)
        if not found:
            return Problem(16)
        if self.find(self.controls, keyword):
            return Problem(23)
        flags = [w for w in self.words(s) if w]
        line = self.current.get_line()
        if line is None:
            return None
        s = LineStream(line)
        found, token = next_token(s, KEYWORD_ENDS)
        if not found:
            return None
        if token == b"*%ZUBGroup":
            return self.group_line(s, keyword, flags)
        if token in OPENERS:
            return self.open_ui(s, keyword, flags, None)
        if token == b"*OpenUIZUB":
            return self.open_ui_zub(keyword)
        return Problem(16, keyword)

    def group_line(self, s, keyword, flags):
        found, word = next_token(s, KEYWORD_ENDS)
        if not found:
            return Problem(5)
        if word != keyword:
            return None
        found, name = next_token(s, NAME_ENDS)
        if not found:
            return None
        group = self.find(self.groups, name)
        if group is None:
            group = self.find_or_create_parent(name)
        line = self.current.get_line()
        if line is None:
            return None
        s = LineStream(line)
        found, token = next_token(s, KEYWORD_ENDS)
        if not found:
            return None
        if token == b"*%ZUBJobNote":
            return self.grouped_note(s, keyword, flags, group)
        if token in (b"*%ZUBRange", b"*%ZUBUnitRange"):
            return self.range_line(s, keyword, flags, group, Range, to_long)
        if token == b"*%ZUBFloatRange":
            return self.range_line(s, keyword, flags, group, FloatRange,
                                   to_float)
        if token in OPENERS:
            return self.open_ui(s, keyword, flags, group)
        if token == b"*OpenUIZUB":
            return self.open_ui_zub(keyword)
        return Problem(5, keyword)

    def open_ui(self, s, keyword, flags, group):
        found, _ = next_token(s, NAME_ENDS)
        if not found:
            return Problem(8, keyword)
        name = self.convert(next_token(s, COLON)[1])
        found, kind = next_token(s, TYPE_ENDS)
        if not found or kind not in (b"Boolean", b"PickOne", b"PickMany"):
            return Problem(31, keyword)
        if kind == b"Boolean":
            return self.boolean(keyword, name, flags, group)
        return self.popup(keyword, name, flags, group, kind == b"PickMany")

    def open_ui_zub(self, keyword):
        self.problems.append(Problem(34, keyword))
        while True:
            line = self.current.get_line()
            if line is None:
                return Problem(10, keyword, fatal=True)
            if next_token(LineStream(line), KEYWORD_ENDS)[1] == b"*CloseUIZUB":
                return None

    def counts_as_head(self, head, keyword):
        return (head in CLOSERS or head == b"*OrderDependency" or
                head.startswith(b"*Default") or head.startswith(keyword))

    def passed_over(self, s, keyword, settled=False):
        """Leave the rest of a block's line, noting what it might have been."""
        if settled:
            return
        for head in s.rest().split(b":"):
            if self.counts_as_head(head.strip(BLANKS), keyword):
                self.doubt("a head behind one that comes to nothing")

    def heads(self, s, keyword):
        """The heads of a block's line that mean something."""
        first = True
        while True:
            found, head = next_token(s, COLON)
            if not found:
                self.passed_over(s, keyword)
                return
            if head == b"*OrderDependency":
                self.passed_over(s, keyword)
                return
            if not self.counts_as_head(head, keyword):
                # A first head that is ignored takes its whole line along.
                self.passed_over(s, keyword, settled=first)
                return
            first = False
            yield head

    def popup(self, keyword, name, flags, group, multiple):
        items = []
        default, default_found, twice, open_block = None, False, False, True
        while open_block:
            line = self.current.get_line()
            if line is None:
                return Problem(11, keyword, fatal=True)
            s = LineStream(line)
            for head in self.heads(s, keyword):
                if head in CLOSERS:
                    open_block = False
                    break
                if head.startswith(b"*Default"):
                    if head == b"*Default":
                        found, word = next_token(s, NAME_ENDS)
                        if not found:
                            self.passed_over(s, keyword)
                        if word != keyword:
                            break
                        found, value = next_token(s, WORD_ENDS)
                    else:
                        found, value = next_token(s, NAME_ENDS)
                    if not found:
                        self.passed_over(s, keyword)
                        break
                    if default is None:
                        default = value
                    else:
                        twice = True
                    continue
                parts = LineStream(head)
                next_token(parts, KEYWORD_ENDS)
                found, option = next_token(parts, NAME_ENDS)
                if not found:
                    break
                if default is not None and option == default:
                    default_found = True
                found, translation = next_token(parts, COLON)
                local = self.convert(translation) if found else None
                items.append(Item(option, local, self.code(s)))
        if twice:
            return Problem(11, keyword, fatal=True)
        if default is None:
            self.problems.append(Problem(33, keyword))
        if group is None and not self.orphans:
            return Problem(21, keyword)
        if not self.version_admits_blocks():
            return None
        if default is not None and not default_found:
            default = items[0].keyword if items else None
        if name is None:
            return Problem(8, keyword)
        installable = (group is not None and
                       group.keyword == b"ZUPPInstallableOptions")
        self.place(group, Popup(keyword, name, flags, multiple, installable,
                                items, default), True)
        return None

    def boolean(self, keyword, name, flags, group):
        states = {b"True": (None, None), b"False": (None, None)}
        seen, default, open_block = False, False, True
        while open_block:
            line = self.current.get_line()
            if line is None:
                return None
            s = LineStream(line)
            for head in self.heads(s, keyword):
                if head in CLOSERS:
                    open_block = False
                    break
                if head.startswith(b"*Default"):
                    seen = True
                    default = next_token(s, NAME_ENDS)[1] == b"True"
                    continue
                parts = LineStream(head)
                next_token(parts, KEYWORD_ENDS)
                _, state = next_token(parts, NAME_ENDS)
                if state not in states:
                    return Problem(9, keyword)
                found, text = next_token(parts, COLON)
                states[state] = text if found else None, self.code(s)
        if not seen:
            self.problems.append(Problem(33, keyword))
        if group is None and not self.orphans:
            return Problem(21, keyword)
        if not self.version_admits_blocks():
            return None
        if name is None:
            return Problem(8, keyword)
        self.place(group, Boolean(keyword, name, flags, states, default), True)
        return None

    def version_admits_blocks(self):
        version = self.header["ZUVersion"]
        return bool(version) and version[0] > 0x32

    # -- the other kinds

    def range_line(self, s, keyword, flags, group, kind, number):
        found, word = next_token(s, NAME_ENDS)
        if not found:
            return Problem(7, keyword)
        if word != keyword:
            return Problem(7, word)
        found, translation = next_token(s, COLON, strip=False)
        if not found:
            return None
        name = self.convert(translation)
        s.skip_white_space()
        if s.get_char() != 0x28:
            return Problem(7, keyword)
        numbers = []
        for stop in b";;;)":
            found, text = next_token(s, TYPE_ENDS)
            if not found or s.stop != stop:
                return Problem(7, keyword)
            numbers.append(number(text))
        code = self.code(s)
        if code is None:
            self.problems.append(Problem(35, keyword))
        if group is None and not self.orphans:
            return Problem(21, keyword)
        if name is None:
            return Problem(7, keyword)
        self.place(group, kind(keyword, name, flags, code, numbers), True)
        return None

    def note_line(self, s, keyword, digits_allowed):
        """(problem, what the line says); None for a line that lacks a field."""
        found, translation = next_token(s, COLON, strip=False)
        if not found:
            return None
        found, length = next_token(s, WORD_ENDS)
        if not found:
            return None
        bits = minimum = 0
        problem = None
        for word in self.words(s):
            if digits_allowed and word.startswith(b"MinLength"):
                minimum = self.minimum_length(word[9:])
                word = b"MinLength"
            if word in NOTE_WORDS:
                row = NOTE_WORDS.index(word)
                if row < self.note_words:
                    bits |= 1 << row
                else:
                    problem = Problem(32, keyword)
        name = self.convert(translation)
        if problem is None and name is None:
            problem = Problem(6, keyword)
        return problem, (name, to_long(length), bits, minimum)

    @staticmethod
    def minimum_length(digits):
        if not digits:
            return 0
        if digits[0] not in b"0123456789":
            return -1
        if len(digits) > 2:
            return -2
        return int(digits) if digits.isdigit() else -3

    @staticmethod
    def code_head(keyword):
        return b"*%" + (keyword[1:] if keyword[:1] == b"*" else keyword)

    def plain_note(self, s):
        found, keyword = next_token(s, NAME_ENDS)
        if not found:
            return Problem(6)
        read = self.note_line(s, keyword, False)
        if read is None or read[0] is not None:
            return read and read[0]
        default = code = None
        line = self.current.peek_line()
        if line is not None:
            s = LineStream(line)
            found, token = next_token(s, KEYWORD_ENDS)
            if token.startswith(b"*%Default"):
                default = next_token(s, WORD_ENDS)[1] or None
                self.current.get_line()
            elif found and token == self.code_head(keyword):
                code = self.code(s)
                self.current.get_line()
        self.place_note(keyword, [], code, default, read[1], None)
        return None

    def grouped_note(self, s, keyword, flags, group):
        found, word = next_token(s, NAME_ENDS)
        if not found or word != keyword:
            read = Problem(6, word), None
        else:
            read = self.note_line(s, keyword, True)
            if read is None:
                return None
        default = code = None
        line = self.current.get_line()
        if line is not None:
            s = LineStream(line)
            found, token = next_token(s, KEYWORD_ENDS)
            if token.startswith(b"*%Default"):
                count, text = self.quoted(s)
                default = (cut_at_nul(text) if count else b"") or None
            elif found and token == self.code_head(keyword):
                code = self.code(s)
        if read[0] is not None:
            return read[0]
        if not isinstance(group, RollDown):
            group = None
        self.place_note(keyword, flags, code, default, read[1], group)
        if (self.header["ZUVersion"] or b"")[:1] == b"2" and \
                keyword not in self.shortcut_names:
            self.shortcut_names.append(keyword)
        return None

    def place_note(self, keyword, flags, code, default, said, group):
        name, maximum, bits, minimum = said
        if group is None:
            group = self.find(self.groups, b"FPZUNotes")
        self.place(group, JobNote(keyword, name, flags, code, default, maximum,
                                  bits, minimum), False)

    def custom_page_size(self, s):
        control = self.find(self.controls, b"*CustomPrintSize")
        if control is None:
            control = CustomPageSize(b"*CustomPrintSize")
            self.place(self.find_or_create_parent(b"FPPaperSource"), control,
                       False)
        if not isinstance(control, CustomPageSize):
            return None
        sides = set()
        for _ in range(4):
            word = next_token(s, KEYWORD_ENDS)[1]
            if word in (b"Width", b"Height"):
                sides.add(word.decode())
        if len(sides) == 2:
            self.doubt("a custom page size line with both sides")
        for limit in ("min", "max"):
            found, text = next_token(s, KEYWORD_ENDS)
            if found:
                for side in sides:
                    control.limits[limit + side] = to_float(text)
        return None

    def special_option(self, s):
        found, keyword = next_token(s, COLON)
        if not found:
            return None
        found, value = next_token(s, LINE_ENDS)
        if not found:
            return None
        if not keyword or max(value, default=0) > 0x7E:
            self.doubt("a special option without keyword or beyond ASCII")
        name = self.convert(keyword)
        if name is None:
            return Problem(1, keyword)
        self.place(None, SpecialOption(keyword, name, value), False)
        return None

    def shortcut(self, s):
        found, keyword = next_token(s, LINE_ENDS)
        if not found:
            return None
        if keyword in NO_SHORTCUT:
            return Problem(19, keyword)
        self.shortcut_names.append(keyword)
        return None

    def resolve_shortcuts(self):
        for name in self.shortcut_names:
            control = self.find(self.controls, name)
            if control is None:
                self.problems.append(Problem(19, name))
            else:
                self.shortcuts.append(control)

    def place(self, group, control, warn):
        if group is None and self.inside_installable:
            group = self.installable
        if isinstance(group, RollDown):
            control.parent = group
            group.members.append(control)
        elif group is not None or self.orphans:
            if warn:
                self.problems.append(Problem(29, control.keyword))
        self.controls.append(control)
        # Of the orphans only notes count while nothing has asked for them.
        if control.type == JobNote.type or (
                control.type in (2, 3, 4, 5) and control.parent is not None):
            self.shown_count += 1

    # -- the answer

    def set_value(self, keyword, text):
        """True if the control took the text, False if not, None if unsure."""
        control = self.find(self.controls, keyword.encode())
        if control is None:
            raise NoSuchControl(keyword)
        if is_unfit_profile(control, text):
            return False
        return control.set_text(text)

    def walk_shortcuts(self):
        first = next((n for n, c in enumerate(self.shortcuts)
                      if isinstance(c, Popup)), None)
        if first is None:
            return []
        return [c for c in self.shortcuts[first:]
                if isinstance(c, (Popup, JobNote, Boolean))]

    def is_valid(self):
        return self.header_accepted and not any(p.fatal for p in self.problems)

    def document(self):
        return {
            "validPrinterName": self.printer_name_valid,
            "valid": self.is_valid(),
            "header": {k: latin(v) for k, v in self.header.items()},
            "errors": [p.describe() for p in self.problems],
            "properties": [p.describe() for p in self.properties],
            "groups": [g.describe() for g in self.groups],
            "controls": [c.describe() for c in self.controls],
            "shortcuts": [latin(c.keyword) for c in self.walk_shortcuts()],
            "shortcutCount": len(self.shortcuts),
        }
