#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Writes a PPD with many of one thing, to see how the reader's time and memory grow with it.

usage: make_many.py KIND COUNT -o FILE

The same arguments give the same file. "implied" are COUNT equal rules over two whole lists of
3,000 items each.
"""

import argparse

HEADER = """\
*PPD-Adobe: "4.3"
*LanguageVersion: English
*LanguageEncoding: ISOLatin1
*PCFileName: "ZUBBENCH.PPD"
*ModelName: "ZUB Bench"
*NickName: "ZUB Bench"
*%ZUFileVersion: 1.0
*%ZUVersion: 4.4
*%ZUBPropPage Page/Page: True
*%ZUBGroupName Pane/Pane: True
*%ZUBGroupName Roll/Roll: True
*%ZUBParent Pane/Page: True|Scrollpane
*%ZUBParent Roll/Pane: True|Rolldown"""
IMPLIED_ITEMS = 3000


def popup(key, items=("a", "b"), group="Roll"):
    yield f"*%ZUBFlags *{key}: Dynamic"
    yield f"*%ZUBGroup *{key}: {group}/{group}"
    yield f"*OpenUI *{key}/{key}: PickOne"
    yield f"*Default{key}: {items[0]}"
    for item in items:
        yield f'*{key} {item}/{item}: "({item}) pop"'
    yield f"*CloseUI: *{key}"


def options(count):
    for number in range(count):
        yield from popup(f"Option{number}")


def items(count):
    yield from popup("Option", [f"item{number}" for number in range(count)])


def rules(count):
    side = 100
    for key in "AB":
        yield from popup(key, [f"{key}{number}" for number in range(side)])
    for number in range(count):
        yield f"*UIConstraints: *A A{number % side} *B B{1 + number // side % (side - 1)}"


def implied(count):
    for key in "AB":
        yield from popup(key, [f"{key}{number}" for number in range(IMPLIED_ITEMS)])
    yield from ["*UIConstraints: *A *B"] * count


def pages(count):
    for number in range(count):
        yield f"*%ZUBPropPage P{number}/P{number}: True"


def panes(count):
    for number in range(count):
        yield f"*%ZUBPropPage P{number}/P{number}: True"
        yield f"*%ZUBGroupName N{number}/N{number}: True"
        yield f"*%ZUBParent N{number}/P{number}: True|Scrollpane"


def names(count):
    for number in range(count):
        yield f"*%ZUBGroupName N{number}/N{number}: True"


def rolldowns(count):
    yield from names(count)
    for number in range(count):
        yield f"*%ZUBParent N{number}/Pane: True|Rolldown"


def groups(count):
    yield from names(count)
    for number in range(count):
        yield from popup(f"Option{number}", group=f"N{number}")


def shortcuts(count):
    yield from options(count)
    for number in range(count):
        yield f"*%ZUShortcut: *Option{number}"


def errors(count):
    yield from ["*UIConstraints: *A x"] * count


def flags(count):
    yield from ["*%ZUBFlags *F: " + "|".join(["Dynamic"] * 20)] * count


def code(count):
    yield from ["*%ZUBFlags *C: Dynamic", "*%ZUBGroup *C: Roll/Roll", "*OpenUI *C/C: PickOne",
                "*DefaultC: a", '*C a/a: "']
    yield from ["x" * 63] * count
    yield from ['"', "*End", "*CloseUI: *C"]


KINDS = {kind.__name__: kind for kind in (options, items, rules, implied, pages, panes, names,
                                          rolldowns, groups, shortcuts, errors, flags, code)}


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("kind", choices=KINDS)
    parser.add_argument("count", type=int)
    parser.add_argument("-o", "--output", required=True)
    arguments = parser.parse_args()
    with open(arguments.output, "w", encoding="ascii", newline="\n") as file:
        file.write("\n".join([HEADER, *KINDS[arguments.kind](arguments.count)]) + "\n")


if __name__ == "__main__":
    main()
