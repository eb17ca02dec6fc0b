#!/usr/bin/python3
"""Makes assets/fonts/QuenlockMahjongGlyphs.ttf: the sixteen characters on the tiles.

Run:    /usr/bin/python3 tools/make_glyph_font.py [output.ttf [Bold|Regular]]
Needs:  Debian's fonts-noto-cjk (Noto Serif CJK) and python3-fonttools. The same packages give the same bytes.

The outlines are those of Noto Serif CJK, in the traditional forms of its TC face. They are bold, because regular
strokes turn pale below 16 pixels and lose the glyph's colour. Its horizontal strokes are hairlines, but on a tile of 24
pixels only they tell two bars from three. So the script thickens them, most in numerals made of nothing else. The ink
is larger than the line box: numerals move up in it and the sign below them down, which keeps the two apart.

Three faces were treated like this and compared at 16 to 96 pixels, by how much the two most similar numerals differ
after a slight blur. Bold serif and black serif are equal, at two to three times the difference of the untouched
outlines. Noto Sans CJK's bold gives less, because its five looks like its three. Black serif closes the counters of
dense characters.
"""

import math
import sys
from pathlib import Path

from fontTools.fontBuilder import FontBuilder
from fontTools.pens.cu2quPen import Cu2QuPen
from fontTools.pens.ttGlyphPen import TTGlyphPen
from fontTools.ttLib import TTCollection
from fontTools.ttLib.tables._g_l_y_f import GlyphCoordinates

CHARACTERS = "一二三四五六七八九東西南北中發萬"
FAMILY = "Quenlock Mahjong Glyphs"
STYLE = "Regular"
VERSION = "1.100"
POSTSCRIPT_NAME = "QuenlockMahjongGlyphs-Regular"

SOURCE = "/usr/share/fonts/opentype/noto/NotoSerifCJK-{weight}.ttc"
SOURCE_FACE = "Noto Serif CJK TC"
DEFAULT_WEIGHT = "Bold"
DEFAULT_OUTPUT = Path(__file__).resolve().parent.parent / "assets/fonts/QuenlockMahjongGlyphs.ttf"

# The em box, in which the source centres ideographs. The line box has the same edges.
UNITS_PER_EM = 1000
ASCENT = 880
DESCENT = 120

# Changes of the outlines: characters, growth of their ink from the middle of the em box, then the font units by which
# horizontal strokes get thicker and the character moves up.
SHAPES = (
    ("一", 1.15, 65, 20),
    ("二三", 1.15, 65, 70),
    ("四五六七八九", 1.15, 40, 70),
    ("萬", 1.15, 15, -50),
    ("東南西北中", 1.1, 25, 0),
    ("發", 1.1, 15, 0),
)
# The widest advance, used for a missing character. Cairo cuts off ink that reaches farther to the right.
WIDEST_ADVANCE = 1250

# The most by which a quadratic curve may differ from its cubic original, in font units: far below a pixel.
CURVE_TOLERANCE = 1.0

# 2024-01-01 in seconds since 1904, the epoch of font files. A fixed time, so that every run gives the same bytes.
TIMESTAMP = 3786912000

# Name records copied from the source: copyright, licence text, licence link.
KEPT_NAMES = {0: "copyright", 13: "licenseDescription", 14: "licenseInfoURL"}


def source_face(weight):
    collection = TTCollection(SOURCE.format(weight=weight), lazy=True)
    return next(font for font in collection.fonts if font["name"].getDebugName(1) == SOURCE_FACE)


def glyph_names():
    """(Name, character) of each glyph but .notdef, in the order of their code points."""
    return [(f"uni{ord(char):04X}", char) for char in sorted(CHARACTERS)]


def direction(start, end):
    length = math.dist(start, end) or 1
    return (end[0] - start[0]) / length, (end[1] - start[1]) / length


def thickened(contour, thickness):
    """Returns the contour with its edges moved outwards, only up and down: by half of `thickness` where they are
    level."""
    reach = thickness / 2
    moved = []
    for before, (x, y), after in zip(contour[-1:] + contour[:-1], contour, contour[1:] + contour[:1]):
        (ax, ay), (bx, by) = direction(before, (x, y)), direction((x, y), after)
        # The outlines run clockwise, so an edge that runs to the right has its ink below. The offset edges meet where
        # the edges do; at a spike they would meet far away.
        openness = 1 + ax * bx + ay * by
        rise = reach * (ax + bx) / openness if openness > 0.01 else 0
        moved.append((x, y + max(-reach, min(rise, reach))))
    return moved


def shape(glyph, growth, thickness, lift):
    centre, middle = UNITS_PER_EM / 2, (ASCENT - DESCENT) / 2
    points, start = [], 0
    for end in glyph.endPtsOfContours:
        points += thickened(list(glyph.coordinates[start:end + 1]), thickness)
        start = end + 1
    glyph.coordinates = GlyphCoordinates(
        (round(centre + growth * (x - centre)), round(middle + growth * (y - middle) + lift))
        for x, y in points)


def quadratic_glyph(glyph_set, source_name):
    # TrueType outlines run in the other direction than cubic ones.
    pen = TTGlyphPen(None)
    glyph_set[source_name].draw(Cu2QuPen(pen, CURVE_TOLERANCE, reverse_direction=True))
    return pen.glyph()


def names(source):
    kept = {key: source["name"].getDebugName(number) for number, key in KEPT_NAMES.items()}
    return kept | {
        "familyName": FAMILY,
        "styleName": STYLE,
        "uniqueFontIdentifier": f"{VERSION};{POSTSCRIPT_NAME}",
        "fullName": FAMILY,
        "version": f"Version {VERSION}; made from {SOURCE_FACE} {source['head'].fontRevision:.3f}",
        "psName": POSTSCRIPT_NAME,
    }


def build(weight):
    source = source_face(weight)
    glyph_set, source_cmap = source.getGlyphSet(), source.getBestCmap()
    sources = {".notdef": ".notdef"} | {name: source_cmap[ord(char)] for name, char in glyph_names()}
    glyphs = {name: quadratic_glyph(glyph_set, origin) for name, origin in sources.items()}
    names_of = {char: name for name, char in glyph_names()}
    for characters, *change in SHAPES:
        for char in characters:
            shape(glyphs[names_of[char]], *change)

    font = FontBuilder(UNITS_PER_EM, isTTF=True)
    font.setupHead(unitsPerEm=UNITS_PER_EM, created=TIMESTAMP, modified=TIMESTAMP, fontRevision=float(VERSION))
    font.setupGlyphOrder(list(sources))
    font.setupCharacterMap({ord(char): name for name, char in glyph_names()})
    font.setupGlyf(glyphs)
    glyf = font.font["glyf"]
    font.setupHorizontalMetrics(
        {name: (WIDEST_ADVANCE if name == ".notdef" else UNITS_PER_EM, glyf[name].xMin) for name in sources})
    font.setupHorizontalHeader(ascent=ASCENT, descent=-DESCENT, lineGap=0)
    font.setupOS2(sTypoAscender=ASCENT, sTypoDescender=-DESCENT, sTypoLineGap=0,
                  usWinAscent=ASCENT, usWinDescent=DESCENT,
                  # Weight 400 whatever the outlines: the game asks for the regular weight and must get these
                  # glyphs as they are, neither thickened nor passed over for another font.
                  usWeightClass=400, fsSelection=1 << 6, fsType=0)
    font.setupNameTable(names(source), mac=False)
    font.setupPost(keepGlyphNames=False)
    return font


def main():
    output = Path(sys.argv[1]) if len(sys.argv) > 1 else DEFAULT_OUTPUT
    weight = sys.argv[2] if len(sys.argv) > 2 else DEFAULT_WEIGHT
    build(weight).save(output)
    print(f"{output}: {output.stat().st_size} bytes, {len(CHARACTERS)} characters")


if __name__ == "__main__":
    main()
