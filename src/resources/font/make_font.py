#!/usr/bin/python3
"""Makes apl385.ttf, the font that the library carries, from DejaVu Sans Mono.

The editor's default face is "APL385 Unicode". So that the default works on a machine without that font, the
library carries a subset of DejaVu Sans Mono under that family name and registers it for its own process.
DejaVu's licence (LICENSE-DejaVu.txt beside this file) allows modified versions under a name without
"Bitstream" and "Vera".

Needs the Debian packages python3-fonttools and fonts-dejavu-core.

    make_font.py [INPUT.ttf [OUTPUT.ttf]]
"""

import os
import sys

from fontTools import subset
from fontTools.ttLib import TTFont

FAMILY = "APL385 Unicode"
POSTSCRIPT_NAME = "APL385Unicode"
INPUT = "/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf"
OUTPUT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "apl385.ttf")

RANGES = [
    (0x0020, 0x007E),  # ASCII
    (0x00A0, 0x00FF),  # Latin-1
    (0x0100, 0x017F),  # Latin Extended-A
    (0x0391, 0x03C9),  # Greek, for names
    (0x2010, 0x2027),  # dashes, typographic quotes, bullet, ellipsis
    (0x2190, 0x21FF),  # arrows
    (0x2200, 0x22FF),  # mathematical operators
    (0x2300, 0x23FF),  # technical: the APL symbols
    (0x2500, 0x257F),  # box drawing
    (0x2580, 0x259F),  # blocks
    (0x25A0, 0x25FF),  # geometric shapes
    (0x24B6, 0x24CF),  # circled capitals
]
SINGLES = [
    0x026B,  # l with middle tilde, stands for the underscored delta's neighbour in the atomic vector
    0x20AC,  # euro
    0x2122,  # trade mark
    0xFFFD,  # replacement character
]

# Symbols that an array of an APL interpreter can hold; the font is of no use when one of them is missing.
REQUIRED = (
    "¨¯<≤=≥>≠∨∧×÷?⍵∊⍴~↑↓⍳○*←→⌈⌊∇∘⎕⍎⍕⊂⊃∩∪⊥⊤|⍝⍀⌿⍺⌹≡≢⍋⍒⍉⌽⊖⍟⍱⍲!⌶⍞⍬⋄⍪⍷⍸⍣⍤⍥⌷⍂⌻⍙⍫⍠⍨⌺⊣⊢∆⍶⍹⍛⍢"
    "─│┌┐└┘├┤┬┴┼…“”‘’€"
)


def wanted(font):
    codes = set(SINGLES)
    for first, last in RANGES:
        codes.update(range(first, last + 1))
    return sorted(codes & set(font.getBestCmap()))


def rename(font):
    names = {1: FAMILY, 2: "Regular", 3: f"{FAMILY} Regular, subset of DejaVu Sans Mono", 4: FAMILY,
             6: POSTSCRIPT_NAME, 16: FAMILY, 17: "Regular"}
    for record in list(font["name"].names):
        if record.nameID in names:
            record.string = names[record.nameID]
        elif record.nameID in (18, 21, 22):
            font["name"].removeNames(nameID=record.nameID)


def main():
    source = sys.argv[1] if len(sys.argv) > 1 else INPUT
    target = sys.argv[2] if len(sys.argv) > 2 else OUTPUT

    # The time stamp of the input stays, so that the same input gives the same bytes.
    font = TTFont(source, recalcTimestamp=False)
    have = set(font.getBestCmap())
    missing = [c for c in REQUIRED if ord(c) not in have]
    if missing:
        sys.exit(f"{source} lacks {' '.join(missing)}")

    options = subset.Options()
    options.hinting = True  # DejaVu's small sizes live from its hints
    options.name_IDs = ["*"]
    options.name_languages = ["*"]
    options.notdef_outline = True
    options.layout_features = []  # every character stays one cell: no ligatures, no alternates
    options.glyph_names = False
    subsetter = subset.Subsetter(options)
    subsetter.populate(unicodes=wanted(font))
    subsetter.subset(font)
    rename(font)
    font.save(target)

    widths = {width for width, _ in font["hmtx"].metrics.values()}
    print(f"{target}: {len(font.getBestCmap())} characters, {os.path.getsize(target)} bytes, widths {sorted(widths)}")


if __name__ == "__main__":
    main()
