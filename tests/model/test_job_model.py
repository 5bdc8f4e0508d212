#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Jobs worked out by hand, which the second assembly gets right."""

import unittest

from job_model import (CHOICES_KEY, ORIENTATION_KEY, PAGE_FORMAT, SETTINGS,
                       Dialog, Host, with_options)
from test_inspect_model import TREE

TWO_WAY = Host(two_way=True)
KEY = CHOICES_KEY % "Demo"


def head(version=b"4.4", language=b"English"):
    lines = [b'*PPD-Adobe: "4.3"', b'*PCFileName: "ZUBTEST.PPD"',
             b"*LanguageVersion: " + language,
             b"*LanguageEncoding: ISOLatin1"]
    if version is not None:
        lines.append(b"*%ZUVersion: " + version)
    return b"\n".join(lines) + b"\n" + TREE


def popup(key, *options, default=None, flags=b"Dynamic", group=b"Roll",
          kind=b"PickOne"):
    """A popup whose default is its first option; its code is "=option"."""
    default = options[0] if default is None else default
    lines = [b"*%ZUBFlags " + key + b": " + flags]
    if group:
        lines.append(b"*%ZUBGroup " + key + b": " + group + b"/x")
    lines.append(b"*OpenUI " + key + b"/Name: " + kind)
    if default:
        lines.append(b"*Default" + key[1:] + b": " + default)
    lines += [key + b" " + o + b': "=' + o + b'"' for o in options]
    return b"\n".join(lines + [b"*CloseUI: " + key]) + b"\n"


def number(key, value, code=b'""', word=b"Range"):
    return (b"*%ZUBFlags " + key + b": Dynamic\n*%ZUBGroup " + key +
            b": Roll/x\n*%ZUB" + word + b" " + key + b"/Name: (0;999;1;" +
            value + b") " + code + b"\n")


def option(text):
    return b"*%ZUBSpecialOption " + text + b"\n"


def version(text):
    """What stands further down counts, once the blocks are read."""
    return b"*%ZUVersion: " + text + b"\n"


A = popup(b"*A", b"a", b"b")
SIZE = popup(b"*ZUPrintSize", b"A4", b"SameAsPageSize", b"customprintSIZE")
PAGE = popup(b"*PageSize", b"a4", b"A5")


def dialog(*parts, host=None, settings=(), start=None, **tickets):
    made = Dialog((start or head()) + b"".join(parts), host,
                  with_options(tickets.pop("tickets", {}), **tickets))
    for key, text in settings:
        made.set_value(key, text)
    return made


def frame(key, value):
    """A feature with the code that `popup` gives it."""
    return b"%%%%BeginFeature: %s %s\n=%s\n%%%%EndFeature\n" % (
        key, value, value)


def plain(key, value):
    return b"%%%%BeginFeature: %s %s\n%%%%EndFeature\n" % (key, value)


def source(name):
    return b"%%BeginFeature: *ZUSourceAppType " + name + \
        b"\n\n%%EndFeature\n"


SAME = b"%%BeginFeature: *ZUPrintSize SameAsPageSize\n\n%%EndFeature\n"
CLOSING = b"%%EndVelonPreparse1: True\n/KTXPPDInsertionComplete where { " \
    b"pop KTXPPDInsertionComplete } if\n"


class Jobs(unittest.TestCase):
    def features(self, *parts, **how):
        """What stands behind the source application's feature."""
        made = dialog(*parts, **how)
        pairs = made.commit()
        self.assertEqual(made.doubts, [])
        texts = [text for site, text in pairs if site == 81]
        return texts[texts.index(source(b"ZUBPRINT")) + 1:]

    def sites(self, *parts, **how):
        return [site for site, _ in dialog(*parts, **how).commit()]

    def test_without_controls(self):
        self.assertEqual(dialog().commit(), [
            (81, source(b"ZUBPRINT")), (501, b"%%ZUBDriver\n"),
            (72, CLOSING), (73, CLOSING)])
        self.assertEqual(len(CLOSING), 92)
        for text, marked in ((b"2", False), (b"2x", False), (b"3", True),
                             (b" ", True), (b"A", True)):
            with self.subTest(text):
                self.assertEqual(501 in self.sites(start=head(text)), marked)
        self.assertIn(501, self.sites(start=head(None)))

    def test_refused(self):
        self.assertFalse(Dialog(head().replace(b"ZUBTEST", b"TEST")).accepted)
        self.assertFalse(Dialog(head().replace(b'"4.3"', b'"4.2"')).accepted)

    def test_first_control(self):
        """It's added whatever it is, but for one, and again where it's told.
        """
        orientation = popup(b"*ZUOrientation", b"Auto", b"Landscape")
        scale = number(b"*ZUScale", b"5")
        for first, sent in (
                (A, [frame(b"*A", b"a")]), (SIZE, [frame(b"*ZUPrintSize",
                                                         b"A4")]),
                (orientation, [frame(b"*ZUOrientation", b"Auto")]),
                (popup(b"*Collate", b"True"), []),
                (popup(b"*A", b"a", default=b""), []),
                (option(b"*X: x") + A, [frame(b"*A", b"a")])):
            with self.subTest(first):
                texts = [t for s, t in dialog(first).commit() if s == 81]
                self.assertEqual(texts, sent + [source(b"ZUBPRINT")])
        profile = popup(b"*ZUOutProfile", b"p")
        pairs = dialog(profile).commit()
        self.assertEqual(pairs.count((81, frame(b"*ZUOutProfile", b"p"))), 2)
        self.assertEqual(self.features(scale)[0][:27],
                         b"%%BeginFeature: *ZUScale 5\n")

    def test_application(self):
        def texts(*parts, name="Preview", bundle="x", **how):
            host = Host(process_name=name, bundle_id=bundle)
            return [t for s, t in dialog(*parts, host=host, **how).commit()
                    if s == 81]
        reset = (b"%%Begin ZUBDoing_N_Up \n userdict /VelonKTdict known \n "
                 b"{ \n  VelonKTdict /ZUBDoing_N_Up known \n  { 1 false "
                 b"VelonKTdict /ZUBDoing_N_Up get exec } if \n } if \n"
                 b"%%End \n")
        self.assertEqual(texts(), [source(b"PREVIEW")])
        self.assertEqual(texts(name="é1 x"), [source(b"\xc3\xa91 X")])
        self.assertEqual(texts(name="n" * 207), [source(b"N" * 207)])
        self.assertEqual(texts(name="n" * 208), [])
        collate = popup(b"*Collate", b"True")
        for bundle, turn, yes in (("com.adobe.InDesign", 2, True),
                                  ("indesign", 0, True),
                                  ("xINDESIGNx", 5, True),
                                  ("InDesign", 1, False),
                                  ("InDesign", 3, False),
                                  ("In.Design", 4, False)):
            with self.subTest((bundle, turn)):
                self.assertEqual(
                    texts(collate, bundle=bundle, orientation=turn),
                    [reset] * yes + [source(b"PREVIEW")])
                self.assertEqual(texts(bundle=bundle, orientation=turn),
                                 [source(b"PREVIEW")])

    def test_walk(self):
        parts = [A]
        for key in (b"*ZUScale", b"*ZUPrintSize", b"*Collate",
                    b"*ZUSimulationMode", b"x*ZURGBOverride", b"*ZUScales",
                    b"*PageSize"):
            parts.append(popup(key, b"1"))
        self.assertEqual(self.features(*parts),
                         [frame(b"*ZUScales", b"1"), frame(b"*PageSize", b"1"),
                          SAME])
        for flags, sent in ((b"Dynamic", True), (b"NoVelonDriverUI", False),
                            (b"Setup|DriverUserDisplayHidden", False)):
            turn = popup(b"*ZUOrientation", b"Portrait", flags=flags)
            self.assertEqual(
                self.features(A, turn),
                [b"%%BeginFeature: *ZUOrientation False\n%%EndFeature\n"] *
                sent)
        wide = number(b"*F", b"1.5", b'"<*f>"', b"FloatRange")
        self.assertEqual(
            self.features(A, wide),
            [b"%%BeginFeature: *F    1.5000\n   1.5000\n%%EndFeature\n"])

    def test_held_back(self):
        """Orphans only from the second commit on, special options never."""
        lone = popup(b"*Lone", b"x", group=b"")
        made = dialog(lone, option(b"*S: x"), PAGE, A)
        for held in ([b"*A"], [b"*Lone", b"*A"]):
            pairs = made.commit()
            self.assertEqual([t for s, t in pairs if s == -9], held)
            self.assertIn((81, frame(b"*Lone", b"x")), pairs)

    def test_paper_source(self):
        slot = popup(b"*InputSlot", b"Tray1", b"Tray2", group=b"")
        for feed, given, sent in (("Tray2", "Tray1", b"Tray2"),
                                  ("Gone", "Tray2", b"Tray2"),
                                  ("", "Tray2", b"Tray2")):
            self.assertEqual(
                self.features(A, slot, paper_feed=feed,
                              settings=[("*InputSlot", given)]),
                [frame(b"*InputSlot", sent)])
        made = dialog(slot, paper_feed="Tray2")
        made.commit()
        made.set_value("*InputSlot", "Tray1")
        self.assertIn((81, frame(b"*InputSlot", b"Tray1")), made.commit())

    def test_orientation(self):
        turn = popup(b"*ZUOrientation", b"Auto", b"Portrait", b"Landscape")
        for n, sent in ((0, b"Auto"), (1, b"Portrait"), (2, b"Landscape"),
                        (3, b"Portrait"), (4, b"Landscape"), (5, b"Auto")):
            self.assertIn((81, frame(b"*ZUOrientation", sent)),
                          dialog(turn, orientation=n).commit())
        stored = {SETTINGS: {KEY: {"*ZUOrientation": "Auto"}},
                  PAGE_FORMAT: {ORIENTATION_KEY: 2}}
        self.assertIn((81, frame(b"*ZUOrientation", b"Landscape")),
                      dialog(turn, tickets=stored).commit())

    def test_scale(self):
        for value, text in ((5, b"0.05"), (85, b"0.85"), (100, b"1.00"),
                            (250, b"2.50"), (0, b"0.00")):
            sent = self.features(A, number(b"*ZUScale", b"%d" % value))
            self.assertEqual(sent, [
                b"%%%%BeginFeature: *ZUScale %d\n userdict /KTXZUBsetpage"
                b"properties known {  << /KTXSetZUScale [ %s ] >> KTXZUBset"
                b"pageproperties } { /KTXSetZUScale where { pop %s "
                b"KTXSetZUScale } if } ifelse \n%%%%EndFeature\n" %
                (value, text, text)])
        self.assertEqual(self.features(A, popup(b"*ZUScale", b"50")), [])

    def test_stored_pairs(self):
        def sent(settings):
            return self.features(tickets={SETTINGS: settings})
        pairs = {".MMKey": 3, "MMKey0": "*K", "MMValue0": "é",
                 "MMKey2": "L", "MMValue2": "two words"}
        self.assertEqual(sent(pairs), [plain(b"*K", b"\xc3\xa9"),
                                       plain(b"L", b"two words")])
        self.assertEqual(sent({**pairs, ".MMKey": 1}),
                         [plain(b"*K", b"\xc3\xa9")])
        self.assertEqual(sent({**pairs, ".MMKey": -1}), [])
        # The frame takes 33 bytes with the key, the whole at most 255.
        for length, kept in ((222, True), (223, False)):
            text = "m" * length
            self.assertEqual(
                sent({".MMKey": 1, "MMKey0": "*K", "MMValue0": text}),
                [plain(b"*K", text.encode())] * kept)
        many = {"MMKey%d" % n: "*K" for n in range(300)}
        many.update({"MMValue%d" % n: "%d" % n for n in range(300)})
        self.assertEqual(len(sent({**many, ".MMKey": 300})), 255)

    def test_pc_pairs(self):
        def sent(*parts, host=TWO_WAY, start=None, **values):
            tickets = {SETTINGS: {"PC" + k: v for k, v in values.items()}}
            return self.features(A, *parts, host=host, start=start,
                                 tickets=tickets)[-2:]
        name = b"**ZUPCName"
        self.assertEqual(sent(Value1="5", host=None), [])
        self.assertEqual(sent(), [])
        self.assertEqual(sent(Value0="-1", Value1="5"), [plain(name, b"5")])
        self.assertEqual(sent(Value0=" -1x", Value1="-10"),
                         [plain(name, b"-10")])
        self.assertEqual(sent(Key3="K", Value3=""), [plain(b"*K", b"")])
        self.assertEqual(sent(Value1="トレイ",
                              start=head(language=b"Japanese")),
                         [plain(name, b"\x83g\x83\x8c\x83C")])
        size = plain(b"*ZUPCPPDSize", b"A4")
        # What the last step says of the sizes isn't looked at here.
        for late, follows in ((b"", False), (version(b"3.2"), True),
                              (version(b"4"), False), (version(b" "), False)):
            with self.subTest(late):
                self.assertEqual(sent(SIZE, late, Value1="5"),
                                 [plain(name, b"5")] + [size] * follows)
                self.assertEqual(sent(SIZE, late), [])
        self.assertEqual(
            sent(number(b"*ZUPrintSize", b"7"), start=head(None), Value1="5"),
            [plain(name, b"5"), plain(b"*ZUPCPPDSize", b"7")])
        custom = popup(b"*ZUPrintSize", b"customprintSIZE")
        self.assertEqual(sent(custom, version(b"3"), Value1="5")[1],
                         plain(b"*ZUPCPPDSize", b"CustomPageSize0"))

    def test_print_size(self):
        own = frame(b"*ZUPrintSize", b"A4")
        for choice, flag, sent in (("a4", False, SAME), ("A5", False, own),
                                   ("a4", True, own)):
            self.assertEqual(
                self.features(A, PAGE, SIZE, host=Host(custom_paper=flag),
                              settings=[("*PageSize", choice)])[1:], [sent])
        self.assertEqual(self.features(A, SIZE), [])
        limits = b"*%ParamCustomPrintSize Width: 1 points 72 900\n"
        custom = [("*ZUPrintSize", "customprintSIZE"),
                  ("*CustomPrintSize", "612.126 79.2")]
        self.assertEqual(self.features(A, SIZE, limits, settings=custom[1:]),
                         [])
        self.assertEqual(
            self.features(A, limits, SIZE, settings=custom),
            [b"%%BeginFeature: *CustomPrintSize 612.13 79.20\n   userdict "
             b"/KTXZUBsetpageproperties known\n   {<< /KTXsetPrintSize [ "
             b"612.13 79.20 0 0 1 ] >> KTXZUBsetpageproperties} if\n"
             b"%%EndFeature\n"])

    def test_special_controls(self):
        out = popup(b"*ZUOutProfile", b"None", b"Coated")
        simulation = popup(b"*ZUSimulation", b"Off", group=b"")
        override = popup(b"*ZURGBOverride", b"On", kind=b"PickMany")
        self.assertEqual(
            self.features(override, A, simulation, out,
                          settings=[("*ZUOutProfile", "My é")]),
            [frame(b"*A", b"a"),
             b"%%BeginFeature: *ZUOutProfile My \xc3\xa9\n\n%%EndFeature\n",
             frame(b"*ZUSimulation", b"Off"), frame(b"*ZURGBOverride", b"On")])
        # The choice found at the start has become a name, of any case.
        for text, sent in (("NONE", b"None\n=None"), ("NOne ", b"NOne \n")):
            self.assertEqual(
                self.features(A, out, settings=[("*ZUOutProfile", text)]),
                [b"%%BeginFeature: *ZUOutProfile " + sent +
                 b"\n%%EndFeature\n"])
        # Without the first of them the others have no such name.
        self.assertEqual(
            self.features(A, simulation, settings=[("*ZUSimulation", "OFF")]),
            [b"%%BeginFeature: *ZUSimulation OFF\n\n%%EndFeature\n"])

    def test_special_notes(self):
        out = popup(b"*ZUOutProfile", b"None")
        for host, sent, left in (
                (TWO_WAY, b"%%BeginFeature: *ZUOutProfile \xef\xbb\xbfx\n "
                 b"/KTXsetDynamicOption where\n        { pop (*ZUOutProfile) "
                 b"(\xef\xbb\xbfx) KTXsetDynamicOption } if\n%%EndFeature\n",
                 b"EFBBBFx"),
                (None, frame(b"*ZUOutProfile", b"None"), b"")):
            made = dialog(A, out, host=host)
            made.notes[b"*ZUOutProfile"] = b"EFBBBFx"
            self.assertIn((81, sent), made.commit())
            self.assertEqual(made.notes[b"*ZUOutProfile"], left)

    def test_destination(self):
        where = popup(b"*ZUDestination", b"FILE", b"Print", b"Files")
        box = option(b"*ZUMailboxName: out/to you")
        for choice, sent in (("FILE", [b"out/to you"]), ("Print", []),
                             ("Files", [])):
            made = dialog(A, where, box, settings=[("*ZUDestination", choice)])
            pairs = made.commit()
            self.assertEqual([t for s, t in pairs if s == 900], sent)
            self.assertEqual([f.encode() for f in made.files], sent)
        self.assertNotIn(900, self.sites(where))

    def test_utf8_version(self):
        for text, sent in ((b"1.0", True), (b"9" * 127, True),
                           (b"9" * 128, False)):
            pairs = dialog(option(b"*ZUUTF8_Version: " + text)).commit()
            line = 501, b"%%ZUUTF8_Version: " + text + b" \n"
            self.assertEqual(pairs[-1] == line, sent)


class NextDialogs(unittest.TestCase):
    def test_what_comes_back(self):
        """Orphans are stored but not read; installed options neither."""
        group = (b"*%ZUBGroupName ZUPPInstallableOptions/x: True\n*%ZUBParent "
                 b"ZUPPInstallableOptions/Pane: True|Rolldown\n")
        parts = (group, A, popup(b"*Lone", b"x", b"y", group=b""),
                 popup(b"*In", b"i", b"j", group=b"ZUPPInstallableOptions"),
                 number(b"*F", b"1.23456", word=b"FloatRange"),
                 option(b"*S: x"), popup(b"*None", b"n", default=b""))
        first = dialog(*parts, settings=[("*A", "b"), ("*Lone", "y"),
                                         ("*In", "j")])
        first.commit()
        self.assertEqual(first.choices(), {"*A": "b", "*Lone": "y",
                                           "*In": "j", "*F": "1.235"})
        second = Dialog(head() + b"".join(parts), None, first.kept({}))
        second.commit()
        self.assertEqual(second.choices(), {"*A": "b", "*Lone": "x",
                                            "*In": "i", "*F": "1.235"})


if __name__ == "__main__":
    unittest.main()
