#!/usr/bin/python3
"""Makes assets/fonts/QuenlockMahjongGlyphs.ttf: the sixteen characters that stand on the tiles.

Run:    /usr/bin/python3 tools/make_glyph_font.py [output.ttf [Bold|Regular]]
Needs:  Debian's fonts-noto-cjk (Noto Serif CJK) and python3-fonttools. The same packages give the same bytes.

The outlines are Noto Serif CJK's, in the traditional forms of its TC face, and the bold ones. Painted beside each
other on a tile's ivory at 8 to 48 pixels, the regular strokes turn pale below 16 pixels and the colour of the glyph
is lost; the bold ones keep their colour down to 8, and the counters of the two dense signs (U+842C, U+767C) still
stand open at 12. From 24 pixels on both read equally well.
"""

import sys
from pathlib import Path

from fontTools.fontBuilder import FontBuilder
from fontTools.pens.cu2quPen import Cu2QuPen
from fontTools.pens.ttGlyphPen import TTGlyphPen
from fontTools.ttLib import TTCollection

CHARACTERS = "一二三四五六七八九東西南北中發萬"
FAMILY = "Quenlock Mahjong Glyphs"
STYLE = "Regular"
VERSION = "1.000"
POSTSCRIPT_NAME = "QuenlockMahjongGlyphs-Regular"

SOURCE = "/usr/share/fonts/opentype/noto/NotoSerifCJK-{weight}.ttc"
SOURCE_FACE = "Noto Serif CJK TC"
DEFAULT_WEIGHT = "Bold"
DEFAULT_OUTPUT = Path(__file__).resolve().parent.parent / "assets/fonts/QuenlockMahjongGlyphs.ttf"

# The em box, in which ideographs are drawn centred. As the line box has the same edges, a text centred by its
# line box is centred by its glyph.
UNITS_PER_EM = 1000
ASCENT = 880
DESCENT = 120

# How far a quadratic curve may stray from the cubic one it stands for, in font units: far below a pixel.
CURVE_TOLERANCE = 1.0

# 2024-01-01 in seconds since 1904, the epoch of font files. A fixed time, so that every run gives the same bytes.
TIMESTAMP = 3786912000

# Name records taken over from the source: copyright, licence text, licence link.
KEPT_NAMES = {0: "copyright", 13: "licenseDescription", 14: "licenseInfoURL"}


def source_face(weight):
    collection = TTCollection(SOURCE.format(weight=weight), lazy=True)
    return next(font for font in collection.fonts if font["name"].getDebugName(1) == SOURCE_FACE)


def glyph_names():
    """(Name, character) of each glyph but .notdef, in the order of their code points."""
    return [(f"uni{ord(char):04X}", char) for char in sorted(CHARACTERS)]


def quadratic_glyph(glyph_set, source_name):
    # Cubic outlines run the other way round than TrueType's.
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

    font = FontBuilder(UNITS_PER_EM, isTTF=True)
    font.setupHead(unitsPerEm=UNITS_PER_EM, created=TIMESTAMP, modified=TIMESTAMP, fontRevision=float(VERSION))
    font.setupGlyphOrder(list(sources))
    font.setupCharacterMap({ord(char): name for name, char in glyph_names()})
    font.setupGlyf(glyphs)
    glyf = font.font["glyf"]
    font.setupHorizontalMetrics(
        {name: (source["hmtx"][origin][0], glyf[name].xMin) for name, origin in sources.items()})
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
