#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Cases worked out by hand, which the second store and solver get right."""

import unittest

from constraints_model import KVCache, NoSuchText, RuleReader
from test_inspect_model import HEAD, TREE, block


def popup(key, *options, default=None, kind=b"PickOne"):
    """A block whose default is its first option, unless told otherwise."""
    default = options[0] if default is None else default
    lines = b"*Default" + key[1:] + b": " + default + b"\n" if default else b""
    return block(lines + b"".join(key + b" " + o + b': ""\n' for o in options),
                 key, kind)


def rules(*texts):
    return b"".join(b"*UIConstraints: " + text + b"\n" for text in texts)


def read(*parts, settings=()):
    reader = RuleReader(HEAD + TREE + b"".join(parts))
    for keyword, text in settings:
        reader.set_value(keyword, text)
    return reader


A = popup(b"*A", b"a1", b"a2", default=b"a2")
B = popup(b"*B", b"b1", b"b2", b"b3")
TRUTH = block(b"*DefaultT: True\n", b"*T", b"Boolean")


def pairs(text):
    """"*A a1 *B b1" as pairs."""
    words = text.encode().split()
    return list(zip(words[::2], words[1::2]))


def plain(text):
    return [[k.decode(), o.decode()] for k, o in pairs(text)]


class Rules(unittest.TestCase):
    def stored(self, *parts):
        store = read(*parts).store
        texts = store.strings.texts
        return sorted(b" ".join(texts[i] for i in (k1, o1, k2, o2)).decode()
                      for k1, tree in store.forest.trees.items()
                      for o1, found in tree.items() for k2, o2 in found)

    def test_blank_options(self):
        c = popup(b"*C", b"None", b"c1", b"False")
        for text, expanded in (
                (b"*C *B", ["*C c1 *B b1", "*C c1 *B b2", "*C c1 *B b3"]),
                (b"*B b1 *C", ["*B b1 *C c1"]),
                (b"*C *A a1", ["*C c1 *A a1"]),
                (b"*C None *T", ["*C None *T True"]),
                (b"*C None *A False", ["*C None *A False"]),
                (b"*C *Gone", []), (b"*Gone x *No y", ["*Gone x *No y"]),
                (b"*T *C x", ["*T True *C x"]),
                (b"*C c1\t A a1", ["*C c1 A a1"]), (b"*C c1 a1", [])):
            for parts in ((A, B, TRUTH, c, rules(text)),
                          (rules(text), A, B, TRUTH, c)):
                with self.subTest(text):
                    self.assertEqual(self.stored(*parts), expanded)

    def test_texts_and_selection(self):
        reader = read(A, rules(b"*A *B"), popup(b"*B", b"*A", default=b""),
                      b"*%ZUBUIRequires: *A a1 *B *A\n", TRUTH,
                      settings=[("*T", "no"), ("*A", "a1")])
        store = reader.store
        self.assertEqual(store.strings.texts,
                         [b"*A", b"a2", b"a1", b"", b"*B", b"*T", b"True",
                          b"False", b"None"])
        self.assertEqual(store.current.pairs, [(0, 2), (5, 7)])
        self.assertEqual(store.keys, {0: [2, 1], 4: [0], 5: [6, 7]})
        self.assertEqual(list(store.requires.trees), [0])
        self.assertFalse(store.is_constrained(b"*Never", b"a1"))
        self.assertEqual(len(store.strings.texts), 9)


class Questions(unittest.TestCase):
    def asked(self, *parts, settings=(), custom_paper=False):
        reader = read(*parts, settings=settings)
        before = reader.document()
        found = reader.constrained(custom_paper)["constrained"]
        self.assertEqual(reader.document(), before)
        return [b" ".join(t.encode() for t in pair).decode() for pair in found]

    def test_direction_and_selection(self):
        one_way = (A, B, rules(b"*A a1 *B b1"))
        self.assertEqual(self.asked(*one_way), ["*A a1"])
        self.assertEqual(self.asked(*one_way, settings=[("*B", "b2")]), [])
        self.assertEqual(self.asked(*one_way, settings=[("*A", "a1")]),
                         ["*A a1"])
        self.assertEqual(self.asked(TRUTH, B, rules(b"*T *B", b"*B b2 *T")),
                         ["*T True", "*B b2"])
        self.assertEqual(self.asked(A, rules(b"*A a1 *A a1", b"*A a1 *A a2")),
                         ["*A a1"])

    def test_print_size(self):
        page = popup(b"*PageSize", b"A4", b"A5", b"Sm\xe5")
        size = popup(b"*ZUPrintSize", b"A5", b"SameAsPageSize", b"A4",
                     b"CustomPrintSize", b"Sm\xe5", default=b"SameAsPageSize")
        against = [b"*A a1 *ZUPrintSize " + o for o in
                   (b"A4", b"CustomPrintSize", b"SameAsPageSize", b"Sm\xe5")]
        follows = "*ZUPrintSize", "SameAsPageSize"
        for parts, rule, custom, settings, yes in (
                ((page, size), 0, False, (), True),
                ((page, size), 0, True, (), False),
                ((page, size), 1, True, (), True),
                ((page, size), 2, False, (), False),
                ((page, size), 0, False, [("*PageSize", "A5")], False),
                ((page, size), 3, False, [("*PageSize", "Sm\u00c2")], True),
                ((page, size), 0, True, [("*ZUPrintSize", "A4")], True),
                ((page, size), 1, True, [("*ZUPrintSize", "A4"), follows],
                 True),
                ((size,), 2, False, (), True), ((size,), 2, True, (), True),
                ((popup(b"*PageSize", b"A4", default=b""), size), 2, False,
                 (), True),
                ((popup(b"*PageSize", b"B9"), size), 2, False, (), True)):
            with self.subTest((rule, custom, settings)):
                found = self.asked(A, *parts, rules(against[rule]),
                                   settings=settings, custom_paper=custom)
                self.assertEqual(found, ["*A a1"] if yes else [])


class Searches(unittest.TestCase):
    def check(self, reader, change, solved, delta, conflicts="",
              alternatives="", bounds=(), **how):
        found, met = reader.solved(pairs(change), **how)
        self.assertEqual(found, {
            "solved": solved, "delta": plain(delta),
            "conflicts": plain(conflicts),
            "alternatives": plain(alternatives)})
        self.assertEqual(met, set(bounds))

    def test_one_rule(self):
        reader = read(A, B, rules(b"*A a1 *B b1"))
        self.check(reader, "*A a1", False, "*A a1", "*B b1",
                   "*B b3 *B b2", only_test=True)
        self.check(reader, "*A a1 *B b2", True, "*A a1 *B b2", only_test=True)
        self.check(reader, "*B b1", True, "*B b1", only_test=True)
        self.check(reader, "", True, "")
        self.check(reader, "*A a2 *A a1", True, "*A a1 *B b3")
        self.check(reader, "*A a1 *B b1", False, "*A a1 *B b1", "*B b1",
                   keep_delta=True)
        self.check(reader, "*A a1", False, "*A a1", "*B b1",
                   locks=[(b"*B", None)])
        self.check(reader, "*A a1", False, "*A a1", "*B b1",
                   locks=[(b"*A", None), (b"*B", b"b2")])
        self.check(reader, "*A a1", True, "*A a1 *B b3",
                   locks=[(b"*A", None), (b"*B", b"b1")])
        self.assertRaises(NoSuchText, reader.solved, pairs("*A b9"))

    def test_order_and_blocking(self):
        c = popup(b"*C", b"c1", b"c2", b"c2", b"c1", b"c3")
        reader = read(A, B, c, rules(b"*A a1 *C c1", b"*A a1 *B b1",
                                     b"*A a1 *B b3", b"*A a1 *B b1"))
        self.check(reader, "*A a1", False, "*A a1", "*B b1 *B b1 *C c1",
                   "*B b2 *B b2 *C c3 *C c2 *C c2", only_test=True)
        # The second change builds on the first: both stay.
        self.check(reader, "*A a1", True, "*A a1 *B b2 *C c3")
        # The first text of all has the id 0, and counts as an option too.
        named = read(A, popup(b"*B", b"*A", b"b2"), rules(b"*A a1 *B *A"))
        self.check(named, "*A a1 *B *A", False, "*A a1 *B *A", "*B *A",
                   keep_delta=True)
        # A locked key without a selection.
        bare = read(A, popup(b"*B", b"b1", b"b2", default=b""),
                    rules(b"*A a1 *B b1"))
        found, _ = bare.solved(pairs("*A a1 *B b1"), [(b"*B", None)])
        self.assertEqual(found["conflicts"], [["*B", -1]])
        # No options, no alternatives.
        gone = read(A, rules(b"*A a1 *X x"))
        self.check(gone, "*A a1 *X x", False, "*A a1 *X x", "*X x")

    def test_deeper_levels(self):
        c = popup(b"*C", b"c1", b"c2")
        reader = read(A, B, c, rules(b"*A a1 *B b1", b"*B b3 *C c1",
                                     b"*B b2 *A a1"))
        # b3 collides with c1, then b2 with a1; the queued b3 goes on to c2.
        self.check(reader, "*A a1", True, "*A a1 *B b3 *C c2")
        # With c2 locked b3 leads nowhere, and the queued b2 gives up a1.
        self.check(reader, "*A a1", True, "*A a2 *B b2",
                   locks=[(b"*C", b"c2")])
        # The search's own b3 counts as proposed, so b2 isn't tried.
        self.check(reader, "*A a1", False, "*A a1 *B b3", "*C c1",
                   locks=[(b"*C", b"c2")], keep_delta=True)

    def test_bounds(self):
        """One conflict with so many ways on, each into another one."""
        x = popup(b"*X", b"x")
        for count, last, bounds in ((127, 1, ()), (128, 1, ("depth",)),
                                    (129, 2, ("depth", "queue")),
                                    (150, 23, ("depth", "queue"))):
            options = [b"b%d" % n for n in range(count + 1)]
            b = popup(b"*B", *options)
            first = rules(b"*A a1 *B b0")
            more = [rules(b"*B " + o + b" *X x") for o in options[1:]]
            with self.subTest(count):
                self.check(read(A, b, x, first, *more), "*A a1", False,
                           f"*A a1 *B b{last}", "*X x", bounds=bounds)
                # What isn't queued any more is tried all the same.
                self.check(read(A, b, x, first, *more[1:]), "*A a1", True,
                           "*A a1 *B b1",
                           bounds=("queue",) if count > 129 else ())

    def test_equal_caches(self):
        one = KVCache([(1, 2), (3, 4)])
        self.assertTrue(one.equals(KVCache([(3, 4), (1, 2)])))
        self.assertFalse(one.equals(KVCache([(1, 2)])))
        self.assertFalse(one.equals(KVCache([(1, 2), (3, 5)])))


if __name__ == "__main__":
    unittest.main()
