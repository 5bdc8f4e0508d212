#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Writes a PPD of a given size for the benchmarks.

usage: make_ppd.py OPTIONS ITEMS RULES [--print-size] -o FILE

OPTIONS popups of ITEMS items each, and RULES constraint lines: every rule stands in both directions
and so counts as two. The same arguments give the same file. The defaults don't conflict with each
other, but they rule out some items of other options. --print-size adds a paper size and a print
size that follows it: then each question about a rule looks up what the print size comes to.
"""

import argparse
import random

MAX_KEYWORD = 40   # of PPD 4.3, and of what stands before the colon in "*Default...:" too
MAX_LINE = 254
OPTIONS_A_GROUP = 15
PAGES = ("Paper", "Layout", "Finishing", "Colour", "Image", "Job", "Hardware", "Service")

# Out of 100.
RULES_ON_A_DEFAULT = 30    # the second option is the default of its key
RULES_ON_A_WHOLE_KEY = 5   # the first option is left out
OPTIONS_WITH_NONE = 50
ITEMS_WITH_LONG_CODE = 15

AREAS = ("Paper", "Output", "Input", "Finisher", "Booklet", "Cover", "Insert", "Image", "Halftone",
         "Trap", "Profile", "Toner", "Spot", "Overprint", "Stapler", "Punch", "Fold", "Tray",
         "Mailbox", "Server", "Queue", "Watermark", "Margin", "Imposition")
ASPECTS = ("Mode", "Source", "Position", "Offset", "Quality", "Rendering", "Compensation", "Order",
           "Detection", "Adjustment", "Selection", "Intent", "Alignment", "Handling", "Priority")
VALUES = ("Auto", "Standard", "High", "Low", "Left", "Right", "TopLeft", "BottomRight", "Double",
          "Single", "Front", "Back", "Upper", "Lower", "Perceptual", "Saturation", "Heavy", "Light",
          "Coated", "Uncoated", "PrinterDefault", "LongEdge", "ShortEdge", "Custom")

HEADER = """\
*PPD-Adobe: "4.3"
*FormatVersion: "4.3"
*FileVersion: "1.0"
*LanguageVersion: English
*LanguageEncoding: ISOLatin1
*PCFileName: "ZUBBENCH.PPD"
*Manufacturer: "ZUB"
*Product: "(ZUB Bench)"
*PSVersion: "(3010.107) 44"
*ModelName: "ZUB Bench"
*ShortNickName: "ZUB Bench"
*NickName: "ZUB Bench, v4.4"
*%ZUFileVersion: 1.0
*%ZUVersion: 4.4

*LanguageLevel: "3"
*ColorDevice: True
*DefaultColorSpace: CMYK
*FileSystem: False
*Throughput: "44"
*TTRasterizer: Type42
*FreeVM: "67108864"
"""

# Points, of what every PPD has to have.
PAPERS = {"A3": (842, 1191), "A4": (595, 842), "A5": (420, 595), "B4": (729, 1032),
          "B5": (516, 729), "Letter": (612, 792), "Legal": (612, 1008), "Tabloid": (792, 1224),
          "Executive": (522, 756), "Env10": (297, 684)}
DEFAULT_PAPER = "A4"
MARGIN = 12

FONTS = """\
*DefaultFont: Courier
*Font Courier: Standard "(002.004S)" Standard ROM
*Font Helvetica: Standard "(001.006S)" Standard ROM
"""

LONG_CODE = """
  userdict /ZUFeatures known {{
    userdict /ZUFeatures get begin
    (*{key}) ({item})
    /ZUApply where {{ pop ZUApply }} {{ pop pop }} ifelse
    end
  }} if
  <</DeferredMediaSelection true /MediaPosition {number} /TraySwitch false>> setpagedevice"""


class Option:
    def __init__(self, number, items, rng):
        area, second = rng.sample(AREAS, 2)
        aspect = rng.choice(ASPECTS)
        short, long = f"ZU{area}{aspect}{number:04d}", f"ZU{area}{second}{aspect}{number:04d}"
        fits = len("Default" + long) <= MAX_KEYWORD
        self.keyword = long if fits and rng.random() < 0.6 else short
        self.text = f"{area} {aspect} {number}"
        self.items = [item_name(rng, i) for i in range(items)]
        if rng.randrange(100) < OPTIONS_WITH_NONE:
            self.items[0] = "None"
            self.default = "None"
        else:
            self.default = rng.choice(self.items)

    def lines(self, number, group, rng):
        key = self.keyword
        yield f"*%ZUBFlags *{key}: {rng.choice(('Dynamic', 'Command', 'Setup', 'Dynamic|Command'))}"
        yield f"*%ZUBGroup *{key}: {group}"
        yield f"*OpenUI *{key}/{self.text}: PickOne"
        yield f"*OrderDependency: {10 + number} AnySetup *{key}"
        yield f"*Default{key}: {self.default}"
        for place, item in enumerate(self.items):
            yield from item_lines(key, place, item, rng)
        yield f"*CloseUI: *{key}"
        yield ""


def item_name(rng, place):
    words = rng.sample(VALUES, rng.choice((1, 1, 2)))
    return "".join(words) + str(place)


def item_lines(key, place, item, rng):
    text = f"{item} \xb7 {place} mm" if place % 5 == 4 else f"{item} setting"
    head = f"*{key} {item}/{text}: "
    if rng.randrange(100) < ITEMS_WITH_LONG_CODE:
        yield head + '"' + LONG_CODE.format(key=key, item=item, number=place) + '"'
        yield "*End"
    else:
        yield f'{head}"/ZUSetOption where {{pop (*{key}) ({item}) ZUSetOption}} if"'


def paper_option_lines(key, order, items, default, group=None):
    if group is not None:
        yield f"*%ZUBFlags *{key}: Dynamic"
        yield f"*%ZUBGroup *{key}: {group}"
    yield f"*OpenUI *{key}/{key}: PickOne"
    yield f"*OrderDependency: {order} AnySetup *{key}"
    yield f"*Default{key}: {default}"
    for item, (width, height) in items.items():
        yield f'*{key} {item}/{item}: "<</PageSize [{width} {height}]>> setpagedevice"'
    yield f"*CloseUI: *{key}"


def paper_lines(group):
    """Without a group the paper size isn't an option of the extension's."""
    yield from paper_option_lines("PageSize", 5, PAPERS, DEFAULT_PAPER, group)
    yield from paper_option_lines("PageRegion", 6, PAPERS, DEFAULT_PAPER)
    if group is not None:
        sizes = {"SameAsPageSize": PAPERS[DEFAULT_PAPER], **PAPERS}
        yield from paper_option_lines("ZUPrintSize", 7, sizes, "SameAsPageSize", group)
    yield f"*DefaultImageableArea: {DEFAULT_PAPER}"
    yield f"*DefaultPaperDimension: {DEFAULT_PAPER}"
    for name, (width, height) in PAPERS.items():
        area = f"{MARGIN} {MARGIN} {width - MARGIN} {height - MARGIN}"
        yield f'*ImageableArea {name}/{name}: "{area}"'
        yield f'*PaperDimension {name}/{name}: "{width} {height}"'


def layout_lines(groups):
    for page in PAGES:
        yield f"*%ZUBPropPage {page}/{page}: True"
    for page in PAGES:
        yield f"*%ZUBGroupName {page}Pane/{page}: True"
    for name, text in groups:
        yield f"*%ZUBGroupName {name}/{text}: True"
    for page in PAGES:
        yield f"*%ZUBParent {page}Pane/{page}: True|Scrollpane"
    for number, (name, _) in enumerate(groups):
        yield f"*%ZUBParent {name}/{PAGES[number % len(PAGES)]}Pane: True|Rolldown"


def draw_rule(options, rng):
    """Two sides, (keyword, item) each, whose defaults don't conflict; None for a draw that does."""
    first, second = rng.sample(options, 2)
    kind = rng.randrange(100)
    item = rng.choice(first.items)
    partner = second.default if kind < RULES_ON_A_DEFAULT else rng.choice(second.items)
    if kind >= 100 - RULES_ON_A_WHOLE_KEY:
        if first.default != "None":
            return None
        item = ""
    elif item == first.default and partner == second.default:
        return None
    return (first.keyword, item), (second.keyword, partner)


def rule_lines(options, count, rng):
    drawn = set()
    while 2 * len(drawn) < count:
        rule = draw_rule(options, rng)
        if rule is None or rule in drawn or rule[::-1] in drawn:
            continue
        drawn.add(rule)
        sides = [f"*{keyword} {item}".rstrip() for keyword, item in rule]
        yield f"*UIConstraints: {sides[0]} {sides[1]}"
        yield f"*UIConstraints: {sides[1]} {sides[0]}"


def ppd_lines(option_count, items, rules, print_size):
    rng = random.Random(f"{option_count}x{items}/{rules}")
    options = [Option(number, items, rng) for number in range(option_count)]
    groups = [(f"ZUGroup{number:03d}", f"Group {number}")
              for number in range((option_count + OPTIONS_A_GROUP - 1) // OPTIONS_A_GROUP)]
    yield HEADER
    yield from layout_lines(groups)
    yield ""
    yield from paper_lines("/".join(groups[0]) if print_size else None)
    yield ""
    for number, option in enumerate(options):
        yield from option.lines(number, "/".join(groups[number // OPTIONS_A_GROUP]), rng)
    yield from rule_lines(options, rules, rng)
    yield ""
    yield FONTS.rstrip("\n")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("options", type=int)
    parser.add_argument("items", type=int)
    parser.add_argument("rules", type=int, help="even: every rule stands in both directions")
    parser.add_argument("--print-size", action="store_true")
    parser.add_argument("-o", "--output", required=True)
    arguments = parser.parse_args()
    if arguments.options < 2 or arguments.items < 2 or arguments.rules % 2 != 0:
        parser.error("at least 2 options of 2 items, and an even number of rules")
    text = "\n".join(ppd_lines(arguments.options, arguments.items, arguments.rules,
                               arguments.print_size)) + "\n"
    longest = max(text.split("\n"), key=len)
    if len(longest) > MAX_LINE:
        raise SystemExit(f"a line is too long: {longest}")
    with open(arguments.output, "w", encoding="latin-1", newline="\n") as file:
        file.write(text)


if __name__ == "__main__":
    main()
