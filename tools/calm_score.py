"""The calm piece as written: sixty-four bars of 4/4 in D, nine sections. make_music.py plays it.

A bar is a line of tokens "pitch:beats", "r" being a rest. Marks before a pitch: "/" slides into it from a
whole tone below, "+" doubles it an octave lower, as a zither player does with thumb and middle finger.

The melody keeps to D E F# A B. The harmony below it moves; G comes into the melody where the harmony has it,
C# is kept for the half closes, and the middle section steps aside to G, with a C natural.
"""

from dataclasses import dataclass

BEATS_A_BAR = 4

# Bass, held voices, and the strings of the harp from low to high.
CHORDS = {
    "D": ("D2", "D3 A3 E4 F#4", "D3 A3 D4 E4 F#4 A4"),
    "D/F#": ("F#2", "D3 A3 D4 A4", "F#3 A3 D4 E4 A4 D5"),
    "Bm": ("B2", "F#3 A3 D4 F#4", "B2 F#3 B3 D4 F#4 A4"),
    "G": ("G2", "D3 B3 D4 A4", "G3 B3 D4 A4 B4 D5"),
    "G/B": ("B2", "D3 G3 D4 G4", "B2 G3 B3 D4 G4 B4"),
    "Asus": ("A2", "E3 A3 D4 E4", "A2 E3 A3 D4 E4 A4"),
    "A": ("A2", "E3 A3 C#4 E4", "A2 E3 A3 C#4 E4 A4"),
    "Em": ("E2", "E3 B3 D4 G4", "E3 B3 D4 E4 G4 B4"),
    "F#m": ("F#2", "E3 A3 C#4 E4", "F#3 A3 C#4 E4 A4 C#5"),
    "C": ("C3", "E3 G3 D4 E4", "C3 G3 D4 E4 G4 D5"),
    "Am": ("A2", "E3 G3 C4 E4", "A2 E3 G3 C4 E4 G4"),
    "Dsus": ("D2", "D3 A3 D4 G4", "D3 A3 D4 G4 A4 D5"),
}

# What the harp plays in a bar: (beat, string counted from the lowest). The bars of a section take turns.
HARP = {
    "still": (((0, 0), (1, 2), (2, 4)), ((0, 0), (1.5, 1), (2.5, 3))),
    "walking": (((0, 0), (1, 1), (2, 3), (3, 2)), ((0, 0), (1, 2), (2, 1), (3, 4)),
                ((0, 0), (1, 1), (2, 2), (2.5, 4)), ((0, 0), (1.5, 2), (2.5, 3), (3, 1))),
    "rocking": (((0, 0), (0.5, 1), (1, 2), (2, 3), (3, 2)), ((0, 0), (1, 2), (1.5, 3), (2.5, 1)),
                ((0, 0), (0.5, 2), (1, 3), (2, 1), (3, 4)), ((0, 0), (1, 1), (2, 3), (2.5, 4), (3, 2))),
    "flowing": (((0, 0), (0.5, 1), (1, 2), (1.5, 3), (2, 4), (2.5, 3), (3, 2)),
                ((0, 0), (0.5, 2), (1, 1), (1.5, 3), (2, 2), (3, 4)),
                ((0, 0), (0.5, 1), (1, 3), (1.5, 2), (2.5, 5), (3, 4), (3.5, 3)),
                ((0, 0), (1, 2), (1.5, 3), (2, 4), (3, 1))),
}


@dataclass(frozen=True)
class Section:
    chords: tuple  # one name a bar; two share the bar by halves
    harp: str
    level: float  # how hard the section is played, as a share
    zither: tuple = ()
    flute: tuple = ()
    bowls: tuple = ()  # bars, counted from 0, that open with the bowl


OPENING = Section(
    chords=("D", "G", "D", "Asus"), harp="still", level=0.92, bowls=(0, 2),
    zither=("r:2 D4:.5 A4:.5 D5:1",
            "/E5:3 r:1",
            "r:1 F#5:.5 E5:.5 D5:2",
            "B4:1 /A4:3"))

THEME = Section(
    chords=("D", "Bm", "G", "Asus", "D/F#", "G", "Em A", "D"), harp="walking", level=0.95, bowls=(0,),
    zither=("r:1 A4:.5 B4:.5 +D5:2",
            "E5:1 F#5:.5 E5:.5 D5:2",
            "B4:1.5 A4:.5 B4:1 D5:1",
            "/E5:3 r:1",
            "r:1 A4:.5 B4:.5 +D5:2",
            "F#5:1 E5:.5 D5:.5 B4:2",
            "A4:1 B4:.5 D5:.5 E5:1 B4:1",
            "+D5:3 r:1"))

THEME_RISING = Section(
    chords=("D", "Bm", "G", "Asus", "D/F#", "G", "Em A", "D"), harp="rocking", level=0.96,
    zither=("r:1 A4:.5 B4:.5 D5:1 F#5:1",
            "E5:1.5 D5:.5 /B4:2",
            "D5:1 B4:.5 A4:.5 B4:1 D5:1",
            "/E5:2 B4:1 A4:1",
            "r:1 A4:.5 B4:.5 D5:1 E5:1",
            "+F#5:1 A5:1 F#5:.5 E5:.5 D5:1",
            "/E5:1.5 D5:.5 B4:1 A4:1",
            "+D5:3 r:1"),
    flute=("", "", "", "r:2 E5:2",
           "D5:2.5 r:1.5", "", "", "r:1 A4:1 B4:1 D5:1"))

FLUTE_SONG = Section(
    chords=("Bm", "F#m", "G", "D/F#", "Em", "Bm", "G", "Asus A"), harp="flowing", level=1.0, bowls=(0,),
    flute=("F#5:3 E5:1",
           "E5:1.5 C#5:.5 A4:2",
           "B4:1.5 D5:.5 E5:2",
           "D5:3 r:1",
           "E5:2 G5:1 F#5:1",
           "F#5:1.5 E5:.5 D5:2",
           "B4:2 D5:1 E5:1",
           "E5:2.5 r:1.5"),
    zither=("", "r:3 A4:1", "", "r:2 F#4:.5 A4:.5 /D5:1",
            "", "r:3 F#4:1", "", "r:1.5 A4:.5 B4:.5 C#5:.5 /E5:1"))

BREATH = Section(
    chords=("Bm", "G", "Em", "Asus"), harp="still", level=0.93, bowls=(0, 2),
    zither=("r:1 F#5:1 r:.5 D5:.5 B4:1",
            "r:1 D5:1 r:.5 B4:.5 A4:1",
            "r:1 B4:1 r:.5 G4:.5 E4:1",
            "/A4:2 r:2"))

THEME_LOW = Section(
    chords=("G", "D/F#", "Em", "Asus", "Bm", "G", "Em A", "D"), harp="walking", level=0.94,
    zither=("r:1 A3:.5 B3:.5 +D4:2",
            "E4:1 F#4:.5 E4:.5 D4:2",
            "B3:1.5 A3:.5 B3:1 D4:1",
            "/E4:2 r:2",
            "r:1 A4:.5 B4:.5 D5:1 F#5:1",
            "+A5:1.5 F#5:.5 E5:1 D5:1",
            "/B4:1.5 A4:.5 E5:1 B4:1",
            "+D5:3 r:1"),
    flute=("", "r:3 A4:1", "B4:2 r:2", "r:1 E5:.5 F#5:.5 A5:2",
           "F#5:2.5 r:1.5", "", "", "r:2 A4:1 B4:1"))

ASIDE_IN_G = Section(
    chords=("G", "C", "G/B", "D", "Em", "C", "Am", "Dsus", "G", "Em", "Asus", "A"),
    harp="flowing", level=0.94, bowls=(0, 8),
    flute=("D5:3 E5:1",
           "E5:1 G5:3",
           "D5:3 B4:1",
           "A4:3 r:1",
           "B4:2 D5:1 E5:1",
           "G5:2 E5:2",
           "E5:1.5 D5:.5 C5:1 A4:1",
           "D5:3 r:1",
           "", "", "r:2 E5:2", "E5:2 r:2"),
    zither=("", "", "r:3 G4:1", "r:2 F#4:.5 A4:.5 B4:1",
            "", "r:3 D5:1", "", "r:1 A4:.5 D5:.5 /G5:2",
            "r:.5 B4:.5 D5:.5 E5:.5 +G5:2",
            "F#5:1 E5:1 /B4:2",
            "D5:1 /E5:1 +A4:2",
            "r:1 A4:.5 B4:.5 C#5:.5 E5:.5 A5:1"))

THEME_TOGETHER = Section(
    chords=("D", "Bm", "G", "Asus", "D/F#", "G", "Em A", "D"), harp="rocking", level=0.92, bowls=(0,),
    flute=("r:1 A4:.5 B4:.5 D5:2",
           "E5:1 F#5:.5 E5:.5 D5:2",
           "B4:1.5 A4:.5 B4:1 D5:1",
           "E5:3 r:1",
           "r:1 A4:.5 B4:.5 D5:2",
           "F#5:1 A5:1 F#5:1 D5:1",
           "E5:1.5 D5:.5 B4:1 A4:1",
           "D5:3.5 r:.5"),
    zither=("+D5:1 r:3",
            "r:2 F#4:.5 A4:.5 B4:1",
            "r:2 D4:.5 G4:.5 B4:1",
            "r:1 A4:.5 B4:.5 /E5:2",
            "+D5:1 r:3",
            "r:2 B3:.5 D4:.5 G4:1",
            "r:1 E4:.5 G4:.5 r:2",
            "r:1 F#4:.5 A4:.5 /D5:2"))

# Ends on the dominant, held back, so that the opening's D answers it.
CLOSING = Section(
    chords=("G", "D/F#", "Em", "Asus"), harp="still", level=0.92, bowls=(0,),
    zither=("r:1 B4:.5 D5:.5 F#5:2",
            "/E5:1.5 D5:.5 A4:2",
            "B4:1 A4:1 E4:2",
            "/A4:2 r:2"))

PIECE = (OPENING, THEME, THEME_RISING, FLUTE_SONG, BREATH, THEME_LOW, ASIDE_IN_G, THEME_TOGETHER, CLOSING)


@dataclass(frozen=True)
class Note:
    start: float  # beats
    beats: float
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


def melody(part):
    """The notes of "zither" or "flute", each with its section."""
    for number, inside, section in bars():
        lines = getattr(section, part)
        start = float(number * BEATS_A_BAR)
        for token in lines[inside].split() if lines else ():
            pitch, beats = token.split(":")
            if pitch != "r":
                mark = pitch[0] if pitch[0] in "/+" else ""
                yield Note(start, float(beats), pitch.lstrip("/+"), mark), section
            start += float(beats)
        if lines and lines[inside] and start != (number + 1) * BEATS_A_BAR:
            raise ValueError(f"bar {number + 1} of the {part} is {start - number * BEATS_A_BAR} beats long")


def chord_at(section, inside, beat):
    names = section.chords[inside].split()
    return CHORDS[names[int(beat * len(names) / BEATS_A_BAR)]]


def harmony():
    """(First beat, beats, chord, section) of each chord."""
    for number, inside, section in bars():
        names = section.chords[inside].split()
        beats = BEATS_A_BAR / len(names)
        for index, name in enumerate(names):
            yield number * BEATS_A_BAR + index * beats, beats, CHORDS[name], section


def held_voices():
    """The pad's notes: a pitch that the next chord holds as well is one long note, not struck again."""
    sounding = {}
    for start, beats, (_, voices, _), section in harmony():
        held = voices.split()
        for pitch in [pitch for pitch in sounding if pitch not in held]:
            yield sounding.pop(pitch)
        for pitch in held:
            before = sounding.get(pitch, (Note(start, 0.0, pitch), section))[0]
            sounding[pitch] = (Note(before.start, before.beats + beats, pitch), section)
    yield from sounding.values()
