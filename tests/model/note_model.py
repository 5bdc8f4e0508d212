# SPDX-License-Identifier: Apache-2.0
"""How job notes, and the comments about the page, get into the job."""

from inspect_model import JobNote, UTF8_NOTES, without_controls
from note_ciphers import NoteCipher, described_user

FEATURE, NOTE_COMMENT, PAGE_COMMENT = 81, 30, 504
ROWS_KEY = "com.apple.print.PrintSettings.PMLayoutRows"
COLUMNS_KEY = "com.apple.print.PrintSettings.PMLayoutColumns"
TEXT_LIMIT = USER_LIMIT = 255

ENCRYPT, UTF8, AES_ENCRYPT = 0x8000, 0x800000, 0x1000000
USER, PASSWORD = b"*ZUUserAuthName", b"*ZUUserAuthPwd"
USER_TAG = b"%%ZUBUATag: "
PREFIXES = {
    b"*Notes1": b"%%ZUBCustom1: ", b"*Notes2": b"%%ZUBCustom2: ",
    b"*Instruct": b"%%ZUBCustom3: ", b"*Notes3": b"%%ZUBCustom4: ",
    b"*Resume": b"%%PersPassword: ", b"*DeptPassword": b"%%DeptPassword: ",
    USER: b"", PASSWORD: USER_TAG, b"*ZUBPrintTime": b"%%ZUBPrintTime: "}


def cut(text):
    """What fits a note's buffer, in whole characters where it is UTF-8."""
    try:
        text.decode()
    except UnicodeDecodeError:
        return text[:TEXT_LIMIT]
    return text[:TEXT_LIMIT].decode(errors="ignore").encode()


def utf8(text):
    return text.decode("mac_roman").encode()


def escaped_name(name):
    """The first slash and colon gets one more slash, not behind two."""
    for at in range(len(name)):
        if name[at:at + 2] == b"//":
            break
        if name[at:at + 2] == b"/:":
            return name[:at] + b"/" + name[at:]
    return name


class NoteWriter:
    """Writes the comments and notes of one commit of a dialog."""

    def __init__(self, dialog):
        self.dialog = dialog
        self.user = None  # none is known yet
        self.enciphered = []  # (note, cipher, digits)
        self.met = set()

    def option(self, keyword):
        found = self.dialog.special_option(keyword)
        return found and found.value

    def is_on(self, keyword):
        return self.option(keyword) == b"True"

    def write(self):
        self.write_page()
        for note in [c for c in self.dialog.ppd.controls
                     if isinstance(c, JobNote) and c.visible]:
            self.write_note(note)

    def write_page(self):
        rows, columns = map(self.dialog.settings.get, (ROWS_KEY, COLUMNS_KEY))
        portrait = self.dialog.orientation in (1, 3)
        if None not in (rows, columns):
            n = rows * columns
            if n in (2, 6):
                portrait = not portrait
            old = (self.dialog.version or b"")[:1] == b"2"
            self.dialog.add(PAGE_COMMENT, b"%%%%Mac Core N-Up: %d\n" % n
                            if old else b"%%MacCoreNUp: true\n")
        self.dialog.add(PAGE_COMMENT, b"%%Orientation: " +
                        (b"Portrait" if portrait else b"Landscape") + b"\n")

    def write_note(self, note):
        if not note.text and note.keyword not in (USER, PASSWORD):
            return
        with_feature = True
        if note.keyword in PREFIXES:
            line, with_feature = self.comment(note)
            self.dialog.add(NOTE_COMMENT, line)
        if with_feature:
            self.dialog.add(FEATURE, self.feature(note))

    def comment(self, note):
        """(the line, whether the note's code goes out too)"""
        text = cut(note.text or b"")
        if note.bits & UTF8:
            if note.keyword not in UTF8_NOTES:
                text = utf8(text)
            note.text = text
        prefix = PREFIXES[note.keyword]
        if note.keyword == PASSWORD:
            return self.user_record(text)
        if text and note.bits & (ENCRYPT | AES_ENCRYPT):
            digits = self.digits(note, text)
            return (b"", False) if digits is None else \
                (prefix + digits + b"\n", True)
        if note.keyword == USER:
            return b"", self.take_user(note, text)
        return prefix + without_controls(text) + b"\n", True

    def take_user(self, note, text):
        """Whether the name's code goes out too."""
        if not self.is_on(b"*ZUBAuthenticateWithLDAP"):
            return True
        self.user = b""
        if text:
            note.text = escaped_name(text)
            self.user = utf8(note.text)
        with_code = self.is_on(b"*CopierUserAuth")
        self.met |= {"the name's code"} if with_code else set()
        return with_code

    def user_record(self, password):
        if self.user is None:
            return b"", False
        self.met.add("a record" if self.user else "a record without a user")
        fields = (self.user[:USER_LIMIT], password[:USER_LIMIT],
                  b"") if self.user else \
            (b"", b"", b"")
        return (USER_TAG + described_user(fields, 2).encode("latin-1") +
                b"\n", self.is_on(b"*CopierUserAuth"))

    def feature(self, note):
        code = note.post_script()
        if not code and note.keyword != PASSWORD or \
                not note.bits & (ENCRYPT | AES_ENCRYPT):
            return code
        plain = note.text or b""
        digits = self.digits(note, plain)
        if digits is None:
            return b""
        note.text, plain = digits, note.text
        code = note.post_script()
        note.text = plain
        return code

    def digits(self, note, text):
        cipher = NoteCipher(self.option(b"*UseSpecialAlgorithm"),
                            self.option(b"*UseSpecialKey"),
                            bool(note.bits & AES_ENCRYPT))
        digits = cipher.digits(text)
        if digits is None:
            self.met.add("a cipher that is too long")
        else:
            self.met.add("AES" if cipher.aes else "DES")
            self.enciphered.append((note, cipher, digits))
        return digits
