# SPDX-License-Identifier: Apache-2.0
"""The ciphers of job notes, by another library and under the build's keys."""

import base64
import ctypes
import functools
import hashlib
import os
import pathlib
import re
import struct
import time

ECB, CBC = 1, 3
DES, AES128, AES256, TWOFISH = 302, 7, 9, 10
DISABLE_SECURE_MEMORY, INITIALIZATION_FINISHED = 37, 38
NOTE_LIMIT = 128

KEY_HEADER = os.environ.get("ZUB_KEY_MATERIAL") or \
    pathlib.Path(__file__).resolve().parents[2] / "ciphers/PlaceholderKeys.h"
# What *UseSpecialKey selects: the places of the key and of the vector.
PLACES = {b"2": (8, 0), b"3": (16, 0), b"4": (24, 0), b"5": (56, 16),
          b"6": (88, 32)}


@functools.cache
def library():
    crypt = ctypes.CDLL("libgcrypt.so.20")
    crypt.gcry_check_version(None)
    crypt.gcry_control(DISABLE_SECURE_MEMORY, 0)
    crypt.gcry_control(INITIALIZATION_FINISHED, 0)
    return crypt


def ciphered(algorithm, key, data, vector=None, back=False):
    crypt, handle = library(), ctypes.c_void_p()
    out = ctypes.create_string_buffer(len(data))

    def call(name, *arguments):
        if status := getattr(crypt, "gcry_cipher_" + name)(*arguments):
            raise ValueError(f"{name}: {status & 0xFFFF}")

    def size(n):
        return ctypes.c_size_t(n)
    call("open", ctypes.byref(handle), algorithm, CBC if vector else ECB, 0)
    try:
        call("setkey", handle, key, size(len(key)))
        if vector:
            call("setiv", handle, vector, size(len(vector)))
        call("decrypt" if back else "encrypt", handle, out, size(len(data)),
             data, size(len(data)))
    finally:
        crypt.gcry_cipher_close(handle)
    return out.raw


# --- the build's keys --------------------------------------------------------

@functools.cache
def constant(name):
    """The bytes of an array or of a text in the header of the keys."""
    header = pathlib.Path(KEY_HEADER).read_text(encoding="utf-8")
    value = re.search(name + r'\s*=\s*(?:std::to_array<std::uint8_t>\(\{'
                      r'([^}]*)\}|"([^"]*)")', header)
    if value[2] is not None:
        return value[2].encode()
    return bytes(int(n, 0) for n in re.findall(r"0[xX]\w+|\d+", value[1]))


# --- notes in a job ----------------------------------------------------------

class NoteCipher:
    """What two options of the PPD and a flag of the note select."""

    def __init__(self, algorithm, key, has_aes_flag):
        self.aes = has_aes_flag if algorithm is None else algorithm == b"2"
        place, vector = PLACES.get(key, (0, 0))
        size = 32 if self.aes else 8
        self.key = constant("kNoteKeyTable")[place:place + size]
        self.vector = constant("kNoteVectorTable")[vector:vector + 16] \
            if self.aes else None
        self.algorithm = AES256 if self.aes else DES
        self.block = 16 if self.aes else 8

    def digits(self, text):
        """The text enciphered, or None if that is too long."""
        if self.aes:
            text += b"\0"
        pad = self.block - len(text) % self.block
        data = text + bytes([pad - self.aes]) * pad
        if len(data) > NOTE_LIMIT:
            return None
        return ciphered(self.algorithm, self.key, data,
                        self.vector).hex().upper().encode()

    def text(self, digits):
        """The inverse, None for digits that nothing was enciphered to."""
        try:
            data = bytes.fromhex(digits)
        except ValueError:
            return None
        if not data or len(data) % self.block:
            return None
        data = ciphered(self.algorithm, self.key, data, self.vector, True)
        pad = data[-1] + self.aes
        text = data[:-pad]
        if not 0 < pad <= self.block or data != text + data[-1:] * pad or \
                self.aes and text[-1:] != b"\0":
            return None
        return text[:-1] if self.aes else text


# --- notes in presets and tickets --------------------------------------------

@functools.cache
def preset_key():
    return hashlib.pbkdf2_hmac("sha1", constant("kPresetKey"),
                               constant("kPresetSalt"), 1000, 16)


def stored_note(text):
    data = text.encode()
    pad = 16 - len(data) % 16
    return base64.b64encode(ciphered(
        AES128, preset_key(), data + bytes([pad]) * pad,
        constant("kPresetInitialisationVector"))).decode()


def note_from_store(text):
    """None for what isn't a stored note."""
    try:
        data = base64.b64decode(text, validate=True)
        if not data:
            return None
        data = ciphered(AES128, preset_key(), data,
                        constant("kPresetInitialisationVector"), True)
        text = data[:-data[-1]]
        if not 0 < data[-1] <= 16 or data != text + data[-1:] * data[-1]:
            return None
        return text.decode()
    except ValueError:
        return None


# --- the record of a user ----------------------------------------------------

def fixed_key():
    return constant("kUserAuthFixedKey")


def cipher_key(stored):
    """Stored with each word's first byte highest, used with it lowest."""
    return struct.pack("<8I", *struct.unpack(">8I", stored))


def packed(fields, kind, identifier, session_key):
    """A record of user, password and domain."""
    inner = struct.pack(">5I16s", 1, *map(len, fields), kind, identifier) + \
        b"".join(fields)
    middle = struct.pack(">I", len(inner)) + inner + \
        hashlib.sha1(inner).digest()
    middle += bytes(16 - len(middle) % 16)
    outer = struct.pack(">2I", 1, len(middle)) + session_key + \
        ciphered(TWOFISH, cipher_key(session_key), middle) + bytes(8)
    return base64.b64encode(ciphered(TWOFISH, fixed_key(), outer)).decode()


def unpacked(record):
    """((user, password, domain), kind, identifier, session key).

    The record made again of them has to be the same, which leaves no byte of
    it unseen. ValueError for one that isn't.
    """
    outer = ciphered(TWOFISH, fixed_key(),
                     base64.b64decode(record, validate=True), back=True)
    session_key = outer[8:40]
    middle = ciphered(TWOFISH, cipher_key(session_key), outer[40:-8],
                      back=True)
    lengths = struct.unpack_from(">3I", middle, 8)
    kind, identifier = struct.unpack_from(">I16s", middle, 20)
    fields, at = [], 40
    for length in lengths:
        fields.append(middle[at:at + length])
        at += length
    if packed(fields, kind, identifier, session_key) != record:
        raise ValueError("it isn't what its fields make")
    return fields, kind, identifier, session_key


def described_user(fields, kind, faults=""):
    """A record as text to be compared, without what chance has made."""
    user, password, domain = (f.decode("latin-1") for f in fields)
    return f"{user!r} {password!r} {domain!r} {kind}{faults}"


def described_record(record):
    try:
        fields, kind, identifier, session_key = unpacked(record)
    except (ValueError, struct.error) as e:
        return f"no record: {e}"
    words = struct.unpack(">8I", session_key)
    faults = ""
    if words[0] != words[7]:
        faults += ", the last word of the key isn't the first"
    if abs(words[3] - time.time()) > 120:
        faults += ", the key was made at another time"
    # Bits of the microseconds replace four of the seconds'.
    (when,) = struct.unpack_from("<I", identifier, 6)
    if identifier[10:] != bytes(6) or all(
            (when ^ ((words[3] + late) << 4)) & 0xF0FFFFFF
            for late in range(-2, 3)):
        faults += ", the identifier is another"
    return described_user(fields, kind, faults)
