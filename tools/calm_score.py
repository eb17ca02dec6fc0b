"""The score of the calm piece: ninety-six bars of 4/4 in thirteen sections. make_music.py plays it.

A bar is a line of tokens "pitch:beats"; "r" is a rest. Beats may be fractions, as in triplets ("1/3"). Marks before a
pitch:

    /   slides into it from a whole tone below
    +   doubles it an octave lower, as a zither player does with thumb and middle finger
    ^   has a short note before it, one step higher
    o   is a flageolet: the string is only touched, at its middle
    *   is plucked again and again, growing

The piece has two subjects. The zither plays the first, pentatonic, in D; it returns in G, low under the flute, and at
last with the flute. The flute plays the second, in B minor, with sixths and the leading note A#; the zither takes it
up in triplets. Between them the harmony moves through G with C natural and along a circle of fifths. No two sections
in a row have the same accompaniment, and only three use all instruments.
"""

from dataclasses import dataclass
from fractions import Fraction

BEATS_A_BAR = 4

# Bass, held voices, and the strings of the harp from low to high.
CHORDS = {
    "D": ("D2", "D3 A3 D4 F#4", "D3 A3 D4 E4 F#4 A4"),
    "D/F#": ("F#2", "D3 A3 D4 A4", "F#3 A3 D4 E4 A4 D5"),
    "Dsus": ("D2", "D3 A3 D4 G4", "D3 A3 D4 G4 A4 D5"),
    "D7": ("D2", "D3 A3 C4 F#4", "D3 A3 C4 F#4 A4 C5"),
    "Bm": ("B2", "F#3 B3 D4 F#4", "B2 F#3 B3 D4 F#4 A4"),
    "Bm/A": ("A2", "F#3 B3 D4 F#4", "A2 F#3 B3 D4 F#4 B4"),
    "G": ("G2", "D3 B3 D4 A4", "G3 B3 D4 A4 B4 D5"),
    "G/D": ("D2", "D3 B3 D4 G4", "D3 G3 B3 D4 G4 B4"),
    "G/B": ("B2", "D3 G3 D4 G4", "B2 G3 B3 D4 G4 B4"),
    "Em": ("E2", "E3 B3 D4 G4", "E3 B3 D4 E4 G4 B4"),
    "Em/B": ("B2", "E3 B3 E4 G4", "B2 G3 B3 E4 G4 B4"),
    "A": ("A2", "E3 A3 C#4 E4", "A2 E3 A3 C#4 E4 A4"),
    "A/C#": ("C#2", "E3 A3 E4 A4", "C#3 A3 E4 A4 C#5 E5"),
    "Asus": ("A2", "E3 A3 D4 E4", "A2 E3 A3 D4 E4 A4"),
    "F#m": ("F#2", "E3 A3 C#4 F#4", "F#3 A3 C#4 E4 A4 C#5"),
    "F#sus": ("F#2", "F#3 B3 C#4 F#4", "F#3 B3 C#4 F#4 B4 C#5"),
    "F#": ("F#2", "F#3 A#3 C#4 F#4", "F#3 A#3 C#4 F#4 A#4 C#5"),
    "C": ("C3", "E3 G3 D4 E4", "C3 G3 D4 E4 G4 D5"),
    "Am": ("A2", "E3 G3 C4 E4", "A2 E3 G3 C4 E4 G4"),
}

# What the harp plays in a bar: (beat, string counted from the lowest). A section cycles through its bars.
THIRD = Fraction(1, 3)
HALF = Fraction(1, 2)
HARP = {
    "still": (((0, 0), (1, 2), (2, 4)), ((0, 0), (3 * HALF, 1), (5 * HALF, 3)), ((0, 1), (2, 3))),
    "walking": (((0, 0), (1, 1), (2, 3), (3, 2)), ((0, 0), (1, 2), (2, 1), (3, 4)),
                ((0, 0), (1, 1), (2, 2), (5 * HALF, 4)), ((0, 0), (3 * HALF, 2), (5 * HALF, 3), (3, 1))),
    "rocking": (((0, 0), (HALF, 1), (1, 2), (2, 3), (3, 2)), ((0, 0), (1, 2), (3 * HALF, 3), (5 * HALF, 1)),
                ((0, 0), (HALF, 2), (1, 3), (2, 1), (3, 4)), ((0, 0), (1, 1), (2, 3), (5 * HALF, 4), (3, 2))),
    "flowing": (((0, 0), (HALF, 1), (1, 2), (3 * HALF, 3), (2, 4), (5 * HALF, 3), (3, 2)),
                ((0, 0), (HALF, 2), (1, 1), (3 * HALF, 3), (2, 2), (3, 4)),
                ((0, 0), (HALF, 1), (1, 3), (3 * HALF, 2), (5 * HALF, 5), (3, 4), (7 * HALF, 3)),
                ((0, 0), (1, 2), (3 * HALF, 3), (2, 4), (3, 1))),
    "rolling": (((0, 0), (THIRD, 1), (2 * THIRD, 2), (1, 3), (2, 4), (2 + THIRD, 3), (2 + 2 * THIRD, 2), (3, 1)),
                ((0, 0), (1, 2), (1 + THIRD, 3), (1 + 2 * THIRD, 4), (2, 5), (3, 3)),
                ((0, 0), (THIRD, 2), (2 * THIRD, 3), (1, 4), (3, 1), (3 + THIRD, 2), (3 + 2 * THIRD, 3)),
                ((0, 0), (1, 1), (2, 2), (2 + THIRD, 3), (2 + 2 * THIRD, 4))),
}


@dataclass(frozen=True)
class Section:
    name: str
    chords: tuple  # one name a bar; two names take half a bar each
    tempo: float  # beats a minute
    level: float  # how hard the section is played, as a share
    zither: tuple = ()
    flute: tuple = ()
    harp: str = ""
    bass: tuple = ()  # its own lines; ROOTS takes the chords' basses
    held: bool = True  # whether the chords are held as well
    bowls: tuple = ()  # bars, counted from 0, that open with the bowl
    phrase: int = 4  # bars


ROOTS = ("roots",)

OPENING = Section(
    "opening", chords=("D", "G/D", "D", "Asus", "Bm", "Asus"), tempo=56, level=0.78, phrase=2, bowls=(0, 4),
    zither=("r:2 D4:.5 A4:.5 D5:1",
            "/E5:3 r:1",
            "r:1 ^F#5:.5 E5:.5 D5:1 A4:1",
            "B4:1 /A4:2 r:1",
            "r:1 F#4:.5 A4:.5 B4:1 F#4:1",
            "/E4:3 r:1"))

THEME = Section(
    "first subject, D", chords=("D", "Bm", "G", "Asus", "D/F#", "G", "Em A", "D"), tempo=62, level=0.84,
    harp="walking", bass=ROOTS, held=False,
    zither=("r:1 A4:.5 B4:.5 +D5:2",
            "E5:1 F#5:.5 E5:.5 D5:2",
            "B4:1.5 A4:.5 B4:1 D5:1",
            "/E5:3 r:1",
            "r:1 A4:.5 B4:.5 D5:1 F#5:1",
            "^A5:1.5 F#5:.5 E5:1 D5:1",
            "E4:1 G4:.5 B4:.5 C#5:1 E5:1",
            "+D5:3 r:1"))

ANSWER = Section(
    "the flute's answer", chords=("Bm", "F#m", "G", "D/F#", "Em", "Bm", "G", "Asus A"), tempo=62, level=0.9,
    harp="rocking", bass=ROOTS, bowls=(0,),
    flute=("F#5:3 E5:1",
           "E5:1.5 C#5:.5 A4:2",
           "B4:1.5 D5:.5 E5:2",
           "D5:3 r:1",
           "E5:2 G5:1 F#5:1",
           "F#5:1.5 E5:.5 ^D5:2",
           "B4:2 D5:1 E5:1",
           "E5:2.5 r:1.5"),
    zither=("", "r:2.5 A3:.5 C#4:.5 E4:.5", "", "r:1.5 D4:.5 F#4:.5 A4:.5 /D5:1",
            "", "r:3 B3:.5 D4:.5", "G4:1 r:3", "r:2 E4:.5 A4:.5 C#5:1"))

TURN = Section(
    "turning to B minor", chords=("G", "Em", "F#sus", "F#"), tempo=57, level=0.8, phrase=2,
    zither=("r:1 D5:.5 B4:.5 G4:1 D4:1",
            "E4:1.5 F#4:.5 G4:1 B4:1",
            "/C#5:2 B4:1 F#4:1",
            "A#4:2 C#5:1 r:1"))

SONG = Section(
    "second subject, B minor", chords=("Bm", "Em/B", "A", "D", "G", "Em", "F#sus F#", "Bm"), tempo=67,
    level=0.92, harp="flowing", bass=ROOTS, bowls=(0,),
    flute=("B4:1.5 C#5:.5 D5:1 F#5:1",
           "G5:2 F#5:1 E5:1",
           "E5:1/3 F#5:1/3 E5:1/3 C#5:1 A4:2",
           "D5:3 r:1",
           "D5:1 G5:1 A5:1 ^G5:1",
           "F#5:1.5 E5:.5 B4:1 E5:1",
           "C#5:2 A#4:1 C#5:1",
           "B4:3 r:1"))

SONG_PLUCKED = Section(
    "second subject, plucked", chords=("Bm", "Bm/A", "G", "D/F#", "Em", "A/C#", "D G", "F#sus F#"), tempo=65,
    level=0.86, bass=ROOTS,
    zither=("r:1 B3:1/3 D4:1/3 F#4:1/3 +B4:2",
            "C#5:1 D5:.5 C#5:.5 A4:1 F#4:1",
            "r:1 B3:1/3 D4:1/3 G4:1/3 /B4:1 E4:1",
            "F#4:2 A4:1 r:1",
            "r:1 E4:1/3 G4:1/3 B4:1/3 +E5:2",
            "^E5:1 C#5:1/3 B4:1/3 A4:1/3 E4:2",
            "F#4:1 E4:.5 D4:.5 G4:1 B3:1",
            "B3:1 C#4:1 A#3:1 r:1"),
    flute=("", "", "", "r:2 D5:1 E5:1",
           "G5:2.5 r:1.5", "", "", "r:2 C#5:1.5 r:.5"))

BREATH = Section(
    "a breath", chords=("G", "Em", "C", "G/B", "Am", "Dsus"), tempo=53, level=0.76, phrase=3, bowls=(0, 3),
    zither=("r:1 oB4:1 oD5:2", "", "r:2 oE5:1 oG5:1", "", "r:1 A3:1 C4:1 E4:1", "/D4:3 r:1"),
    flute=("", "r:1 B4:2 A4:1", "G4:2 r:2", "r:1 D5:1.5 B4:.5 G4:1", "A4:3 r:1", ""))

THEME_IN_G = Section(
    "first subject, G", chords=("G", "Em", "C", "Dsus", "G/B", "C", "Am D7", "G"), tempo=60, level=0.86,
    harp="rolling", bass=ROOTS, held=False,
    zither=("r:1 D4:.5 E4:.5 +G4:2",
            "A4:1 B4:.5 A4:.5 G4:2",
            "E4:1.5 D4:.5 E4:1 G4:1",
            "/A4:3 r:1",
            "r:1 D4:.5 E4:.5 G4:1 B4:1",
            "^C5:1.5 B4:.5 A4:1 G4:1",
            "A4:1 C5:.5 A4:.5 F#4:1 C4:1",
            "+G4:3 r:1"))

FLUTE_IN_G = Section(
    "the flute in G", chords=("Em", "Bm", "C", "G/B", "Am", "Asus", "A"), tempo=62, level=0.92,
    harp="flowing", bass=ROOTS, bowls=(0,),
    flute=("G5:3 F#5:1",
           "F#5:1.5 D5:.5 B4:2",
           "E5:1 ^G5:2 E5:1",
           "D5:3 r:1",
           "C5:1 E5:1 A5:1.5 G5:.5",
           "E5:3 D5:1",
           "C#5:2 E5:1 r:1"),
    zither=("", "r:2 F#4:.5 D4:.5 B3:1", "", "r:1 G4:1/3 B4:1/3 D5:1/3 G5:1 r:1",
            "", "r:2 A3:.5 D4:.5 E4:.5 A4:.5", "r:2 *E4:1.5 r:.5"))

DIALOGUE = Section(
    "zither and bass", chords=("F#m", "Bm", "Em", "A", "D", "G", "Em", "Asus"), tempo=64, level=0.88, held=False,
    phrase=2,
    zither=("r:1 ^A5:1 F#5:.5 E5:.5 C#5:1",
            "D5:1.5 C#5:.5 B4:1 r:1",
            "r:1 G5:1 E5:.5 D5:.5 B4:1",
            "C#5:1.5 B4:.5 A4:1 r:1",
            "r:1 F#5:1 D5:1/3 C#5:1/3 D5:1/3 A4:1",
            "B4:1.5 A4:.5 G4:1 r:1",
            "r:1 E4:.5 G4:.5 B4:1 D5:1",
            "/E5:2 A4:1 r:1"),
    bass=("F#2:2 r:2",
          "r:2 B2:.5 A2:.5 F#2:1",
          "E2:2 r:2",
          "r:2 A2:.5 G2:.5 E2:1",
          "D2:2 r:2",
          "r:2 G2:.5 F#2:.5 D2:1",
          "E2:1 G2:1 B2:2",
          "A2:3 r:1"))

THEME_LOW = Section(
    "first subject, low", chords=("G", "D/F#", "Em", "Asus", "Bm", "F#m", "G A", "D"), tempo=59, level=0.78,
    harp="still", bowls=(0,),
    zither=("r:1 A3:.5 B3:.5 +D4:2",
            "E4:1 F#4:.5 E4:.5 D4:2",
            "B3:1.5 A3:.5 B3:1 D4:1",
            "/E4:2 r:2",
            "r:1 F#4:.5 A4:.5 B4:1 D5:1",
            "C#5:1.5 A4:.5 F#4:1 E4:1",
            "G4:1 B4:.5 D5:.5 C#5:1 E5:1",
            "/F#5:3 r:1"),
    flute=("", "", "", "r:1 E5:.5 F#5:.5 A5:2",
           "F#5:2.5 r:1.5", "", "", "r:2 A4:1 B4:1"))

TOGETHER = Section(
    "together", chords=("D", "A/C#", "Bm", "F#m", "G", "D/F#", "Em", "Asus A", "Bm", "G"), tempo=66, level=1.0,
    harp="flowing", bass=ROOTS, bowls=(0, 8), phrase=5,
    flute=("D5:1 E5:.5 F#5:.5 D5:2",
           "E5:1 ^F#5:.5 E5:.5 C#5:2",
           "F#5:1 D5:.5 C#5:.5 B4:1 D5:1",
           "C#5:2 A4:1 C#5:1",
           "B4:1 D5:1 G5:1 B4:1/3 D5:1/3 G5:1/3",
           "A5:2 F#5:1 D5:1",
           "E5:1 G5:1 F#5:1 E5:1",
           "E5:2 C#5:1 E5:1",
           "D5:1 F#5:2 E5:1",
           "D5:1 B4:2 r:1"),
    zither=("+D4:1 r:1 F#4:1/3 A4:1/3 D5:1/3 F#4:1",
            "r:2 A3:1/3 C#4:1/3 E4:1/3 A4:1",
            "+F#4:1 r:1 D4:.5 B4:.5 F#4:1",
            "r:1 F#4:1/3 A4:1/3 C#5:1/3 E5:2",
            "+G4:1 r:2 B3:.5 D4:.5",
            "r:1 F#4:1/3 A4:1/3 D5:1/3 +D5:2",
            "r:1 G4:.5 B4:.5 E5:1 G4:1",
            "r:1 E4:.5 A4:.5 G4:1 /C#5:1",
            "+F#4:1 r:1 B3:1/3 D4:1/3 F#4:1/3 B4:1",
            "r:1 *G4:2 r:1"))

# Slows down on the dominant, so that the opening's D answers it.
CLOSING = Section(
    "closing", chords=("Em", "Bm", "G", "D/F#", "Em", "Asus", "Asus"), tempo=56, level=0.8, harp="still",
    bowls=(4,),
    zither=("r:1 G4:.5 D5:.5 ^E5:2",
            "D5:1 C#5:.5 B4:.5 F#4:2",
            "r:1 D4:.5 G4:.5 B4:2",
            "A4:1 F#4:1 D4:1 r:1",
            "r:1 E4:1 G4:1 B4:1",
            "/A4:3 r:1",
            "r:1 oE5:3"))

PIECE = (OPENING, THEME, ANSWER, TURN, SONG, SONG_PLUCKED, BREATH, THEME_IN_G, FLUTE_IN_G, DIALOGUE, THEME_LOW,
         TOGETHER, CLOSING)


@dataclass(frozen=True)
class Note:
    start: Fraction  # beats
    beats: Fraction
    pitch: str
    mark: str = ""


def bars():
    """(Number of the bar in the piece, number in its section, section) of each bar."""
    number = 0
    for section in PIECE:
        for inside in range(len(section.chords)):
            yield number, inside, section
            number += 1


BAR_COUNT = sum(len(section.chords) for section in PIECE)
BEAT_COUNT = BAR_COUNT * BEATS_A_BAR


def melody(part):
    """Returns the written notes of "zither", "flute" or "bass", each with its section."""
    for number, inside, section in bars():
        lines = getattr(section, part)
        if not lines or lines is ROOTS:
            continue
        start = first = Fraction(number * BEATS_A_BAR)
        for token in lines[inside].split():
            pitch, beats = token.split(":")
            if pitch != "r":
                mark = pitch[0] if pitch[0] in "/+^o*" else ""
                yield Note(start, Fraction(beats), pitch.lstrip("/+^o*"), mark), section
            start += Fraction(beats)
        if lines[inside] and start != first + BEATS_A_BAR:
            raise ValueError(f"bar {number + 1} of the {part} is {start - first} beats long")


def chord_at(section, inside, beat):
    names = section.chords[inside].split()
    return CHORDS[names[int(beat * len(names) / BEATS_A_BAR)]]


def harmony():
    """(First beat, beats, chord, section) of each chord."""
    for number, inside, section in bars():
        names = section.chords[inside].split()
        beats = Fraction(BEATS_A_BAR, len(names))
        for index, name in enumerate(names):
            yield number * BEATS_A_BAR + index * beats, beats, CHORDS[name], section


def bass():
    """Returns the notes of the bass, each with its section: its own lines, or the root of each chord."""
    notes = list(melody("bass"))
    notes += [(Note(start, beats, root), section) for start, beats, (root, _, _), section in harmony()
              if section.bass is ROOTS]
    return sorted(notes, key=lambda pair: pair[0].start)


def harp():
    """Returns the notes of the harp, each with its section and its string, except those that the zither plays at the
    same time and pitch: two strings in unison would sound like one broken string."""
    struck = {(note.start, note.pitch) for note, _ in melody("zither")}
    for number, inside, section in bars():
        if section.harp:
            patterns = HARP[section.harp]
            for beat, string in patterns[inside % len(patterns)]:
                start = Fraction(number * BEATS_A_BAR + beat)
                pitch = chord_at(section, inside, beat)[2].split()[string]
                if (start, pitch) not in struck:
                    yield Note(start, Fraction(1), pitch), section, string


def held_voices():
    """Returns the notes of the held chords. A pitch that the next chord also holds is one long note. Before a section
    without held chords, and at the end, they stop a beat early."""
    sounding = {}
    ended = []
    held = [(start, beats, voices.split() if section.held else [], section)
            for start, beats, (_, voices, _), section in harmony()]
    for place, (start, beats, pitches, section) in enumerate(held):
        rest = 0 if place + 1 < len(held) and held[place + 1][2] else 1
        ended += [sounding.pop(pitch) for pitch in list(sounding) if pitch not in pitches]
        for pitch in pitches:
            before = sounding.get(pitch, (Note(start, Fraction(0), pitch), section))[0]
            sounding[pitch] = (Note(before.start, before.beats + beats - rest, pitch), section)
    return ended + list(sounding.values())
