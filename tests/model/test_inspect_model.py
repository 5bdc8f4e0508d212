#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Cases worked out by hand, which the second reader has to get right."""

import unittest

from inspect_model import Reader, inspect

HEAD = (b'*PPD-Adobe: "4.3"\n*LanguageVersion: English\n'
        b'*LanguageEncoding: ISOLatin1\n*%ZUVersion: 4.4\n')
TREE = (b"*%ZUBPropPage Page/Page: True\n*%ZUBGroupName Pane/Pane: True\n"
        b"*%ZUBGroupName Roll/Roll: True\n"
        b"*%ZUBParent Pane/Page: True|Scrollpane\n"
        b"*%ZUBParent Roll/Pane: True|Rolldown\n")


def block(lines, keyword=b"*A", kind=b"PickOne", group=True):
    out = b"*%ZUBFlags " + keyword + b": Dynamic\n"
    if group:
        out += b"*%ZUBGroup " + keyword + b": Roll/Roll\n"
    return (out + b"*OpenUI " + keyword + b"/Name: " + kind + b"\n" +
            lines + b"*CloseUI: " + keyword + b"\n")


def codes(document):
    return [(e["code"], e["keyword"]) for e in document["errors"]]


class Blocks(unittest.TestCase):
    def read(self, text, **options):
        reader = Reader(HEAD + TREE + text, **options)
        self.assertEqual(reader.doubts, {})
        return reader.document()

    def popup(self, lines, **options):
        document = self.read(block(lines), **options)
        return codes(document), document["controls"]

    def test_defaults(self):
        listed = b'*A x/X: "1"\n*A y/Y: "2"\n'
        for lines, errors, default in (
                (b"*DefaultA: y\n" + listed, [], "y"),
                (b"*DefaultOther: y\n" + listed, [], "y"),
                (b"*Default: *A: y\n" + listed, [], "y"),
                (b"*Default: *B: y\n" + listed, [(33, "*A")], None),
                (b"*DefaultA:\n" + listed, [(33, "*A")], None),
                (b"*DefaultA: \n" + listed, [], "x"),
                (b"*DefaultA: z\n" + listed, [], "x"),
                (listed + b"*DefaultA: y\n", [], "x"),
                (listed, [(33, "*A")], None)):
            with self.subTest(lines):
                found, controls = self.popup(lines)
                self.assertEqual(found, errors)
                self.assertEqual(controls[0]["default"], default)
                self.assertEqual(controls[0]["value"], default)
                self.assertEqual(controls[0]["postScript"] == "",
                                 default is None)

    def test_fatal_ends(self):
        twice = block(b"*DefaultA: x\n*DefaultA: x\n")
        for text in (twice, block(b"")[:-len(b"*CloseUI: *A\n")]):
            document = self.read(text)
            self.assertEqual(codes(document), [(11, "*A"), (27, None)])
            self.assertFalse(document["valid"])
        open_boolean = block(b"", kind=b"Boolean")[:-len(b"*CloseUI: *A\n")]
        self.assertEqual(codes(self.read(open_boolean)), [(27, None)])

    def test_options(self):
        _, controls = self.popup(
            b"*DefaultA: x\n"
            b'*OrderDependency: 10 AnySetup *A\n'
            b'*AMode x/First: ""\n'
            b'*A\n'
            b' *A y: "a" *A z/<5A>: "b"\n'
            b'junk: *CloseUI: *A\n'
            b'*A w/W: "one\n\n*%two\n*x\nlost" : *A v/V: "c"\n')
        items = [(i["keyword"], i["name"], i["code"])
                 for i in controls[0]["items"]]
        self.assertEqual(items, [("x", "First", None), ("y", None, "a\n"),
                                 ("z", "Z", "b\n"),
                                 ("w", "W", "one\ntwo\n\n")])

    def test_long_code(self):
        line = b"%" + b"a" * 98 + b"\n"
        for count, tail in ((40, b'"'), (41, b'"'), (60, b'"'),
                            (60, b"*end")):
            code = line * count + tail
            _, controls = self.popup(b'*DefaultA: x\n*A x/X: "' + code + b'\n')
            got = controls[0]["items"][0]["code"].encode()
            if count == 40:
                self.assertEqual(got, line * 40 + b"\n")
            else:
                self.assertEqual(got, (line * 60)[:4095] + b"\n")

    def test_same_option_twice(self):
        _, controls = self.popup(b'*DefaultA: x\n*A x/1: "1"\n*A x/2: "2"\n')
        self.assertEqual([i["selected"] for i in controls[0]["items"]],
                         [True, True])
        self.assertIn("\n1\n", controls[0]["postScript"])

    def test_boolean(self):
        document = self.read(block(
            b'*Default: *A: True\n*A True/<4F>n: "on"\n*A False: ""\n',
            kind=b"Boolean"))
        control = document["controls"][0]
        self.assertEqual(
            [control[k] for k in ("default", "trueText", "trueCode",
                                  "falseText", "falseCode", "postScript")],
            [False, "<4F>n", "on\n", None, None,
             "%%BeginFeature: *A False\n\n%%EndFeature\n"])
        self.assertEqual(
            codes(self.read(block(b"*A Maybe/x: \"\"\n", kind=b"Boolean"))),
            [(9, "*A"), (27, None)])

    def test_groups_of_blocks(self):
        self.assertEqual(codes(self.read(block(b"*DefaultA: x\n*A x: \"\"\n",
                                               group=False))),
                         [(29, "*A"), (27, None)])
        self.assertEqual(codes(self.read(block(b"", group=False),
                                         parse_options=2)),
                         [(33, "*A"), (21, "*A"), (27, None)])
        self.assertEqual(codes(self.read(b"*%ZUVersion: 2.9\n" + block(b""))),
                         [(33, "*A"), (27, None)])

    def test_blank_line_and_other_starts(self):
        for text, errors in (
                (b"*%ZUBFlags *A:\n\n*OpenUI *A/a: PickOne\n", []),
                (b"*%ZUBFlags  *A:\n", [(16, None)]),
                (b"*%ZUBFlags *A:\n*%ZUBRange *A/a: (1;2;3;4)\n",
                 [(16, "*A")]),
                (b"*%ZUBFlags *A:\n*%ZUBGroup *B: Roll/Roll\n", []),
                (b"*%ZUBFlags *A:\n*%ZUBGroup *A: Roll/Roll\n*x\n",
                 [(5, "*A")]),
                (b"*%ZUBFlags *A:\n*OpenUI *A: PickOne\n", [(31, "*A")]),
                (b"*%ZUBFlags *A:\n*OpenUI :\n", [(8, "*A")]),
                (b"*%ZUBFlags *A:\n*OpenUIZUB *A\n*CloseUI\n",
                 [(34, "*A"), (10, "*A")])):
            with self.subTest(text):
                self.assertEqual(codes(self.read(text)),
                                 errors + [(27, None)])


class Layout(unittest.TestCase):
    def test_names_and_parents(self):
        for text, options, errors in (
                (b"*%ZUBPropPage /x: True\n", 3, [(4, None)]),
                (b"*%ZUBPropPage Page/x: True\n", 3, [(23, None)]),
                (b"*%ZUBGroupName /x: True\n", 3, [(12, None)]),
                (b"*%ZUBGroupName Roll/x: True\n", 3, [(23, "Roll")]),
                (b"*%ZUBParent /x: True\n", 3, [(15, None)]),
                (b"*%ZUBParent Roll\n", 3, [(15, "Roll")]),
                (b"*%ZUBParent Roll/No: True|Rolldown\n", 3, [(14, "No")]),
                (b"*%ZUBParent Roll/Roll: True|Rolldown\n", 3,
                 [(14, "Roll")]),
                (b"*%ZUBParent Roll/No: Rolldown\n", 0, []),
                (b"*%ZUBParent No/Pane: True|Rolldown\n", 3, []),
                (b"*UIConstraints: *A x *B\n", 3, []),
                (b"*UIConstraints: *A x\n", 3, [(36, None)])):
            with self.subTest(text):
                document = inspect(HEAD + TREE + text, options)
                self.assertEqual(codes(document), errors + [(27, None)])

    def test_words(self):
        document = inspect(HEAD + b"*%ZUBPropPage P/ n :App| |True\n"
                           b'*%ZUBPropPage Q/n:"True"\n')
        self.assertEqual([(p["name"], p["visible"],
                           p["showInPrintProperties"])
                          for p in document["properties"]],
                         [(" n ", True, False), ("n", False, True)])

    def test_unused_names(self):
        text = HEAD + b"*%ZUBGroupName G/g: x\n"
        self.assertEqual(inspect(text, 2)["groups"], [])
        self.assertEqual(inspect(text, 1)["groups"], [])
        group = inspect(text, 3)["groups"][0]
        self.assertEqual((group["kind"], group["visible"], group["parent"]),
                         ("group", False, None))


class Streams(unittest.TestCase):
    def names(self, text):
        return [p["keyword"] for p in inspect(text)["properties"]]

    def test_line_ends_and_lengths(self):
        page = b"*%%ZUBPropPage %s/n: True"
        for ends in ((b"\n", b"\n"), (b"\r", b"\r"), (b"\r\n", b"\r\n"),
                     (b"\n", b"\r"), (b"\r", b"\r\n")):
            text = b"".join(line + ends[n % 2] for n, line in
                            enumerate((HEAD[:-1].split(b"\n")) +
                                      [page % b"A", b"", page % b"B"]))
            self.assertEqual(self.names(text), ["A", "B"])
        for length, expected in ((254, ["A"]), (255, [])):
            text = HEAD + b"x" * length + b"\n" + page % b"A" + b"\n"
            self.assertEqual(self.names(text), expected)
        for byte in (b"\xff", b"\0"):
            text = (HEAD + page % b"A" + b"|" + byte + b"\n" +
                    page % b"B" + b"\n")
            self.assertEqual(self.names(text),
                             ["A", "B"] if byte == b"\0" else [])
        self.assertEqual(self.names(HEAD + page % b"A"), [])

    def test_chunk_borders(self):
        page = b"*%ZUBPropPage A/Name: True\r\n"
        for into in range(len(page) + 1):
            fill = 10000 - into - len(HEAD)
            text = (HEAD + b"*%\n" * (fill // 3 - 1) +
                    b"*" * (fill - fill // 3 * 3 + 2) + b"\n" + page +
                    b"*%ZUBPropPage B/Name: True\n")
            self.assertEqual(text.find(page), 10000 - into)
            self.assertEqual(self.names(text), ["A", "B"])
        # One line end, and so no blank line behind the flags.
        text = (HEAD + TREE + b"*%ZUBFlags *A: Dynamic\r\n" +
                block(b"*DefaultA: x\n*A x: \"\"\n").split(b"\n", 1)[1])
        at = text.find(b"\r\n") + 1
        fill = 10000 - at
        text = HEAD + b"*\n" * (fill // 2 - 1) + \
            b"*" * (1 + fill % 2) + b"\n" + text[len(HEAD):]
        self.assertEqual(text[9999:10001], b"\r\n")
        self.assertEqual(len(inspect(text)["controls"]), 1)


class Header(unittest.TestCase):
    def test_first_line(self):
        for text, valid, errors in (
                (b'*PPD-Adobe: "4.3"\n', True, [25, 26, 27]),
                (b'*PPD-Adobe\n "4.3"\n', True, [25, 26, 27]),
                (b'*PPD-Adobe: "4.2"\n', False, [28, 25, 26, 27]),
                (b'*PPD-Adobe: 4.3\n', False, [28, 25, 26, 27]),
                (b'\n*PPD-Adobe: "4.3"\n', False, [25, 26, 27]),
                (b"", False, [18, 25, 26, 27])):
            with self.subTest(text):
                document = inspect(text)
                self.assertEqual(document["valid"], valid)
                self.assertEqual([c for c, _ in codes(document)], errors)

    def test_values(self):
        document = inspect(
            b'*PPD-Adobe: "4.3"\n*PCFileName: "A"\n*PCFileName: ""\n'
            b'*FormatVersion: "1\n2"\n*FileVersion: 3\n*lost: "x"\n'
            b'*ModelName: "M\n\n*ModelName: "N"\n*LanguageVersion: \n'
            b"*%ZUVersion:\n*%ZUFileVersion:  5 \n")
        header = document["header"]
        self.assertEqual(
            [header[k] for k in ("PCFileName", "FormatVersion", "FileVersion",
                                 "ModelName", "LanguageVersion", "ZUVersion",
                                 "ZUFileVersion")],
            ["A", "1", None, "M", "", None, "5"])

    def test_accepted_names(self):
        name = b'*PCFileName: "ZUBDEMO.PPD"\n'
        text = b'*PPD-Adobe: "4.3"\n' + name
        for accept, data, valid in (
                (None, text, True), (["XX", "BDEMO"], text, True),
                (["bdemo"], text, False), ([""], text, False),
                (['"ZUB'], text, True),
                (["ZUB"], text.replace(name, b"*\n" * 2048 + name), False)):
            document = inspect(data, accept=accept)
            self.assertEqual(document["validPrinterName"], valid)
            self.assertEqual(document["errors"] == [], not valid)

    def test_escapes(self):
        reader = Reader(HEAD)
        for text, decoded in (
                (b"Paper <46 6F>", b"Paper Fo"), (b"<41", b"<41"),
                (b"<4G>", b"<4G>"), (b"<414>", b"<414>"),
                (b"a>b<41>", b"a>b<41>"), (b"<41 >", b"<41 >"),
                (b"<4 1>", b"A"), (b"<41><<41>", b"A<<41>"),
                (b"<4a>b<4B>", b"JbK")):
            self.assertEqual(reader.unescape(text), decoded)
        self.assertEqual(reader.convert(b"A<00>B"), "A")


class OtherKinds(unittest.TestCase):
    def read(self, text, settings=()):
        return inspect(HEAD + TREE + text, settings=settings)

    def range(self, word, rest, settings=()):
        return self.read(b"*%ZUBFlags *R:\n*%ZUBGroup *R: Roll/Roll\n" +
                         word + b" *R/Name:" + rest + b"\n", settings)

    def test_ranges(self):
        line = b' (2;10;5;3) "<*r> a"'
        for settings, value in ((), "3"), ((("*R", "1"),), "2"), \
                ((("*R", "7"),), "5"), ((("*R", "99"),), "10"):
            control = self.range(b"*%ZUBRange", line, settings)["controls"][0]
            self.assertEqual(control["value"], value)
            self.assertEqual(
                control["postScript"], "%%BeginFeature: *R " + value + "\n" +
                value + " a\n%%EndFeature\n")
        control = self.range(b"*%ZUBFloatRange",
                             b'(0.5;2;.25;1.5)')["controls"][0]
        self.assertEqual(control["postScript"],
                         "%%BeginFeature: *R    1.5000\n\n%%EndFeature\n")
        self.assertEqual(control["value"], "1.500")
        for rest in (b"(1;2;3)", b"1;2;3;4)", b"(1;2;3;4", b"(1;2;3;4;",
                     b"(;2;3;4)", b"(1)2;3;4)"):
            self.assertEqual(codes(self.range(b"*%ZUBRange", rest)),
                             [(7, "*R"), (27, None)])
        self.assertEqual(codes(self.range(b"*%ZUBRange", b"(1;2;3;4)")),
                         [(35, "*R")])

    def test_custom_special_shortcuts(self):
        document = self.read(
            b"*%ParamCustomPrintSize Width: 1 points 72 900.5\n"
            b"*%ParamCustomPrintSize Height: 2 points 36\n"
            b"*%ZUBSpecialOption Has: yes it has\n"
            b"*%ZUShortcut *A\n*%ZUShortcut *No\n*%ZUShortcut *ZUChromVale\n" +
            block(b"*DefaultA: x\n*A x: \"\"\n"),
            [("*CustomPrintSize", "612 792")])
        custom, special, _ = document["controls"]
        self.assertEqual([custom[k] for k in ("minWidth", "maxWidth",
                                              "minHeight", "maxHeight")],
                         [72, 900.5, 36, 0])
        self.assertEqual(custom["value"], "612.000000 792.000000")
        self.assertEqual((special["value"], special["visible"]),
                         ("yes it has", False))
        self.assertEqual((document["shortcuts"], document["shortcutCount"]),
                         (["*A"], 1))
        self.assertEqual(codes(document), [(19, "*ZUChromVale"), (19, "*No")])


if __name__ == "__main__":
    unittest.main()
