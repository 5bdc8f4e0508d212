# SPDX-License-Identifier: Apache-2.0
"""A second assembly of the job, independent of the product's own.

A `Dialog` is one run of the dialog on one PPD: it starts from the tickets of
the last one, takes choices, and makes the pairs of site and bytes at each
commit.
"""

import dataclasses

from inspect_model import (CustomPageSize, Item, JobNote, Popup, Range, Reader,
                           SpecialOption, is_string, is_unfit_profile, latin,
                           to_long, without_controls)
from note_ciphers import note_from_store, stored_note
from note_model import COLUMNS_KEY, FEATURE, ROWS_KEY, NoteWriter
from watermark_model import MOST, Watermark

HELD_BACK, COMMENT, DESTINATION = -9, 501, 900
CLOSING = (72, 73)
SHORT, OPTION_LIMIT = 256, 1024

SPECIALS = (b"*ZUOutProfile", b"*ZUSimulation", b"*ZURGBOverride")
NO_DRIVER_UI = {b"NoVelonDriverUI", b"DriverUserDisplayHidden"}
APART = (b"*ZUScale", b"*ZUPrintSize", b"*ZUOrientation", b"*Collate")

N_UP_RESET = (
    b"%%Begin ZUBDoing_N_Up \n userdict /VelonKTdict known \n { \n"
    b"  VelonKTdict /ZUBDoing_N_Up known \n"
    b"  { 1 false VelonKTdict /ZUBDoing_N_Up get exec } if \n } if \n%%End \n")
ORIENTATION_FALSE = b"%%BeginFeature: *ZUOrientation False\n%%EndFeature\n"
SAME_SIZE = (b"%%BeginFeature: *ZUPrintSize SameAsPageSize\n\n"
             b"%%EndFeature\n")
SCALE = (b"%%%%BeginFeature: *ZUScale %d\n"
         b" userdict /KTXZUBsetpageproperties known {  << /KTXSetZUScale"
         b" [ %d.%d%d ] >> KTXZUBsetpageproperties }"
         b" { /KTXSetZUScale where { pop %d.%d%d KTXSetZUScale } if } ifelse"
         b" \n%%%%EndFeature\n")
CUSTOM_SIZE = (b"%%%%BeginFeature: *CustomPrintSize %.2f %.2f\n"
               b"   userdict /KTXZUBsetpageproperties known\n"
               b"   {<< /KTXsetPrintSize [ %.2f %.2f 0 0 1 ] >>"
               b" KTXZUBsetpageproperties} if\n%%%%EndFeature\n")
DYNAMIC_OPTION = (b"%%%%BeginFeature: %s %s\n"
                  b" /KTXsetDynamicOption where\n"
                  b"        { pop (%s) (%s) KTXsetDynamicOption } if\n"
                  b"%%%%EndFeature\n")
MARKER = b"%%ZUBDriver\n"
CLOSING_MARKER = (b"%%EndVelonPreparse1: True\n/KTXPPDInsertionComplete where"
                  b" { pop KTXPPDInsertionComplete } if\n")

SETTINGS, PAGE_FORMAT = "PMPrintSettingsTicket", "PMPageFormatTicket"
SELECTED_KEY, FIRST_PAGE_KEY = ".SelectedWatermarkKey", ".FirstPageOnlyKey"
FEED_KEY = "com.apple.print.PrintSettings.PMPrimaryPaperFeed"
ORIENTATION_KEY = "com.apple.print.PageFormat.PMOrientation"
CHOICES_KEY = "com.zub.print.pde.645EBB97-CCEC-44A1-ADE0-29E4901A642D.%s.PInf"


def plain_feature(key, value):
    """The short text, or nothing if it is too long or may not stand there."""
    if without_controls(key + value) != key + value:
        return b""
    text = b"%%BeginFeature: " + key + b" " + value + b"\n%%EndFeature\n"
    return text if len(text) < SHORT else b""


def is_fit_profile(control):
    """A text from outside the PPD must not end what it stands in."""
    if not isinstance(control, Popup) or control.keyword not in SPECIALS or \
            control.current is None:
        return True
    text = control.current.keyword
    code = next(i.code for i in control.items if i.keyword == text)
    return without_controls(text) == text and (code is not None or is_string(text))


def dynamic_option(keyword, text):
    """The option as the note has it, or nothing if it can't stand there."""
    option = DYNAMIC_OPTION % ((keyword, text) * 2)
    if without_controls(text) != text or not is_string(text) or \
            len(option) >= OPTION_LIMIT:
        return b""
    return option.replace(b"EFBBBF", b"\xef\xbb\xbf")


def is_special(keyword):
    return any(s in keyword for s in SPECIALS)


@dataclasses.dataclass
class Host:
    """What stands around the dialog, beside the tickets."""
    two_way: bool = False
    custom_paper: bool = False
    process_name: str = "zubprint"
    bundle_id: str = "com.zub.print"
    watermarks: list = dataclasses.field(default_factory=list)  # records


class Dialog:
    def __init__(self, data, host=None, tickets=None):
        self.host = host or Host()
        self.tickets = tickets or {}
        self.ppd = Reader(data, 3, ["ZUB"])
        self.doubts = self.ppd.doubts
        self.doubt = self.ppd.doubt
        self.accepted = self.ppd.printer_name_valid and self.ppd.is_valid()
        self.files = []
        self.orphans_shown = False
        self.marks_told = []  # beginnings of the lines about watermarks
        self.has_told = False
        self.unreadable = 0  # stored notes that nobody can read
        if self.accepted:
            self.version = self.ppd.header["ZUVersion"]
            self.restore(self.tickets)
            self.restore_watermarks(self.tickets)
            self.follow_orientation()
            # Once for the session data, once for the session.
            for _ in range(2):
                self.prepare_specials()

    # -- looking up

    def find(self, keyword):
        return self.ppd.find(self.ppd.controls, keyword)

    def special_option(self, keyword):
        """The search lets orphans into all later walks."""
        self.orphans_shown = True
        return self.ppd.find([c for c in self.ppd.controls
                              if isinstance(c, SpecialOption)], keyword)

    def walk(self):
        return [c for c in self.ppd.controls
                if c.visible and (c.parent or self.orphans_shown or
                                  isinstance(c, JobNote))]

    def has_value(self, keyword, text):
        control = self.find(keyword)
        value = control.value_text() if control else None
        return value is not None and value.lower() == text.lower()

    # -- start

    def choices_key(self):
        model = latin(self.ppd.header["ModelName"]) or "Demo"
        return (CHOICES_KEY % model).replace(" ", "_")

    def restore(self, tickets):
        settings = self.settings = tickets.get(SETTINGS, {})
        choices = settings.get(self.choices_key(), {})
        for control in self.walk():
            value = choices.get(control.keyword.decode("mac_roman"))
            installed = getattr(control, "installable", False)
            if isinstance(control, JobNote) and value is not None and \
                    control.keyword not in SPECIALS:
                value = note_from_store(value)
                self.unreadable += value is None
            if value is not None and not installed:
                control.set_text(value)
        self.pc_pairs = [
            (settings.get("PCKey%d" % n, key),
             settings.get("PCValue%d" % n, "-1"))
            for n, key in enumerate(("*ZUPCMID", "*ZUPCName",
                                     "*ZUCoverSizePCMID",
                                     "*ZUCoverSizePCName"))]
        count = min(255, settings.get(".MMKey", 0))
        self.stored_pairs = [
            (settings["MMKey%d" % n], settings["MMValue%d" % n])
            for n in range(count) if "MMKey%d" % n in settings]
        feed = settings.get(FEED_KEY, [])
        self.paper_feed = feed[1].encode() if len(feed) > 1 else b""
        self.orientation = tickets.get(PAGE_FORMAT, {}).get(ORIENTATION_KEY, 1)

    def restore_watermarks(self, tickets):
        settings = tickets.get(SETTINGS, {})
        records = self.host.watermarks
        self.selected = max(-1, settings.get(SELECTED_KEY, -1))
        self.watermarks = [Watermark(record) for record in records[:MOST]]
        if 0 != settings.get(FIRST_PAGE_KEY, 0) < 2:
            for watermark in self.watermarks:
                watermark.first = True

    def select_watermark(self, number):
        """One that isn't there changes nothing."""
        if number >= len(self.watermarks):
            self.marks_told.append(self.no_watermark(number))
            return
        self.selected = number
        self.tickets[SETTINGS].pop(FIRST_PAGE_KEY, None)
        for watermark in self.watermarks:
            watermark.take_first_page()

    def no_watermark(self, number):
        cut = number < len(self.host.watermarks)
        return ("a dialog takes the first 99 watermarks of a printer, so "
                "there is" if cut else "the printer has") + \
            f" no watermark {number}"

    def doubt_others(self):
        """What is told of the watermarks that the command gives."""
        for index, watermark in enumerate(self.watermarks):
            if index != self.selected:
                self.marks_told += watermark.doubt(index)

    def tell_of_selected(self, language):
        """What the first commit tells."""
        watermark = self.selected_watermark()
        if watermark is None:
            self.marks_told += [self.no_watermark(self.selected)] * (
                self.selected >= 0)
            return
        self.marks_told += watermark.doubt(self.selected)
        if watermark.is_printed():
            self.marks_told += watermark.losses(language)

    def selected_watermark(self):
        if 0 <= self.selected < len(self.watermarks):
            return self.watermarks[self.selected]
        return None

    def follow_orientation(self):
        control = self.find(b"*ZUOrientation")
        word = {1: "Portrait", 2: "Landscape", 3: "Portrait",
                4: "Landscape"}.get(self.orientation)
        if control and word:
            control.set_text(word)

    def prepare_specials(self):
        """The present choice becomes an item of its own, and a note."""
        for keyword in SPECIALS:
            control = self.find(keyword)
            if control is None:
                return
            if not isinstance(control, Popup):
                self.doubt("a special control that is no popup")
                return
            text = control.value_text()
            if text is None:
                self.doubt("a special control at no value")
                return
            self.fill_note(keyword, text)
            repeated = control.current.keyword
            control.items.append(Item(repeated, text, None))
            control.select_keyword(repeated)

    def find_note(self, keyword):
        return self.ppd.find([c for c in self.ppd.controls
                              if isinstance(c, JobNote)], keyword)

    def fill_note(self, keyword, text):
        """The note of a special control, made if there is none."""
        if not self.find_note(keyword):
            self.ppd.place_note(keyword, [], None, None, ("", 700, 0, 0), None)
        self.find_note(keyword).text = text.encode()

    def set_value(self, keyword, text):
        taken = self.ppd.set_value(keyword, text)
        control = self.find(keyword.encode())
        if is_unfit_profile(control, text):
            return taken
        if self.host.two_way and keyword.encode() in SPECIALS:
            self.fill_note(keyword.encode(), text)
        return taken

    def drop_paper_feed(self):
        """A choice of the slot counts, not what an earlier run left."""
        self.paper_feed = b""
        settings = dict(self.tickets.get(SETTINGS, {}))
        settings.pop(FEED_KEY, None)
        self.tickets = {**self.tickets, SETTINGS: settings}

    # -- a commit

    def add(self, site, data):
        if data:
            self.pairs.append((site, data))

    def add_control(self, control):
        if is_fit_profile(control):
            self.add(FEATURE, control.post_script())

    def commit(self):
        self.pairs = []
        self.select_paper_source()
        for control in self.walk():
            if control.keyword != b"*PageSize":
                self.add(HELD_BACK, control.keyword)
        self.special_option(b"*Brennal")
        self.add_controls()
        for pair in self.stored_pairs:
            self.add(FEATURE, plain_feature(*(t.encode() for t in pair)))
        for keyword in SPECIALS:
            self.add_special(keyword)
        self.notes = NoteWriter(self)
        self.notes.write()
        self.add_watermark()
        self.add_scale()
        if self.host.two_way:
            self.add_pc_pairs()
        self.add_print_size()
        self.add_destination()
        if (self.version or b"")[:1] != b"2":
            self.add(COMMENT, MARKER)
        for site in CLOSING:
            self.add(site, CLOSING_MARKER)
        self.add_utf8_version()
        return self.pairs

    def select_paper_source(self):
        control = self.find(b"*InputSlot")
        if self.paper_feed and isinstance(control, Popup):
            control.select_keyword(self.paper_feed)
        self.paper_feed = b""

    def add_controls(self):
        walk = self.walk()
        if walk:
            if walk[0].keyword != b"*Collate" and \
                    not isinstance(walk[0], JobNote):
                self.add_control(walk[0])
            if "indesign" in self.host.bundle_id.lower() and \
                    self.orientation not in (1, 3):
                self.add(FEATURE, N_UP_RESET)
        # Only ASCII letters have an upper case here.
        name = without_controls(self.host.process_name.encode().upper())
        source = (b"%%BeginFeature: *ZUSourceAppType " + name +
                  b"\n\n%%EndFeature\n")
        if len(source) < SHORT:
            self.add(FEATURE, source)
        for control in walk[1:]:
            keyword = control.keyword
            if not isinstance(control, JobNote) and \
                    not is_special(keyword) and keyword not in APART:
                self.add_control(control)
            elif keyword == b"*ZUOrientation" and \
                    not NO_DRIVER_UI.intersection(control.flags):
                self.add(FEATURE, ORIENTATION_FALSE)

    def add_special(self, keyword):
        control, note = self.find(keyword), self.find_note(keyword)
        if note and self.host.two_way:
            if note.text is None:
                self.doubt("the note of a special control without text")
            self.add(FEATURE, dynamic_option(keyword, note.text or b""))
        elif control:
            if note:
                note.set_text("")
            self.add_control(control)

    def add_watermark(self):
        watermark = self.selected_watermark()
        language = self.ppd.header["LanguageVersion"]
        if not self.has_told:
            self.tell_of_selected(language)
        self.has_told = True
        if watermark and watermark.is_printed():
            self.add(FEATURE, watermark.resource(self.orientation, language))

    def add_scale(self):
        control = next((c for c in self.ppd.controls
                        if c.type == Range.type and c.keyword == b"*ZUScale"),
                       None)
        if control is None:
            return
        value = control.value
        if value < 0:
            self.doubt("a scale below 0")
        digits = (value // 100, value // 10 % 10, value % 10)
        self.add(FEATURE, SCALE % ((value,) + digits + digits))

    def add_pc_pairs(self):
        count = 0
        for key, value in self.pc_pairs:
            text = plain_feature(b"*" + key.encode(), value.encode())
            if to_long(value.encode()) == -1:
                continue
            if without_controls(key.encode() + value.encode()) != \
                    key.encode() + value.encode():
                continue
            if not text:
                self.doubt("a PC pair that is too long")
            if self.ppd.header["LanguageVersion"] == b"Japanese":
                text = text.decode().encode("shift_jis")
            self.add(FEATURE, text)
            count += 1
        print_size = self.find(b"*ZUPrintSize")
        if self.version is not None and self.version[:1] != b"3" or \
                not count or print_size is None:
            return
        value = print_size.value_text()
        if value is None:
            self.doubt("a PC print size of no value")
            return
        if self.has_value(b"*ZUPrintSize", "CustomPrintSize"):
            value = "CustomPageSize0"
        if len(value.encode()) <= 63:
            self.add(FEATURE, plain_feature(b"*ZUPCPPDSize", value.encode()))

    def add_print_size(self):
        custom, print_size, page_size = (self.find(k) for k in (
            b"*CustomPrintSize", b"*ZUPrintSize", b"*PageSize"))
        if custom and self.has_value(b"*ZUPrintSize", "CustomPrintSize"):
            if not isinstance(custom, CustomPageSize):
                self.doubt("another control named as the custom page size")
            else:
                size = custom.width, custom.height
                self.add(FEATURE, CUSTOM_SIZE % (size + size))
        if not print_size or not page_size:
            return
        page = page_size.value_text()
        if self.host.custom_paper:
            self.add_control(print_size)
        elif page is None:
            self.doubt("a page size of no value")
        elif print_size.value_text() is None:
            # Whatever it counts as, it emits nothing.
            pass
        elif self.has_value(b"*ZUPrintSize", page):
            self.add(FEATURE, SAME_SIZE)
        else:
            self.add_control(print_size)

    def add_destination(self):
        mailbox = self.find(b"*ZUMailboxName")
        if mailbox and self.has_value(b"*ZUDestination", "File"):
            path = mailbox.value_text()
            if path and len(path.encode()) <= 1023:
                self.add(DESTINATION, path.encode())
                self.files.append(path)

    def add_utf8_version(self):
        option = self.special_option(b"*ZUUTF8_Version")
        if option and len(option.value) <= 127:
            self.add(COMMENT, b"%%ZUUTF8_Version: " +
                     without_controls(option.value) + b" \n")

    # -- what stays

    def choices(self):
        """A popup and a note of one keyword store the popup's value."""
        walk, choices = self.walk(), {}
        for control in sorted(walk, key=lambda c: not isinstance(c, JobNote)):
            value = control.value_text()
            if isinstance(control, JobNote):
                value = stored_note(value)
            if value is not None:
                choices[control.keyword.decode("mac_roman")] = value
        return choices

    def kept_selection(self):
        watermark = self.selected_watermark()
        kept = {SELECTED_KEY: self.selected}
        if watermark:
            kept[FIRST_PAGE_KEY] = int(watermark.first)
        return kept

    def kept(self, tickets):
        """The tickets as the next dialog finds them."""
        return {**tickets, SETTINGS: {**tickets.get(SETTINGS, {}),
                                      **self.kept_selection(),
                                      self.choices_key(): self.choices()}}


def with_options(tickets, orientation=None, paper_feed=None, layout=()):
    """The tickets with what the command line gives for them."""
    tickets = {SETTINGS: {}, PAGE_FORMAT: {}, **tickets}
    if orientation is not None:
        tickets[PAGE_FORMAT] = {**tickets[PAGE_FORMAT],
                                ORIENTATION_KEY: orientation}
    settings = dict(zip((ROWS_KEY, COLUMNS_KEY), layout))
    if paper_feed is not None:
        settings[FEED_KEY] = [paper_feed] * 2
    tickets[SETTINGS] = {**tickets[SETTINGS], **settings}
    return tickets


def document(pairs):
    return [{"site": site, "text": latin(data)} for site, data in pairs]
