#!/usr/bin/python3
"""Makes the thirteen sound effects, assets/audio/sfx_*.ogg.

Run:    /usr/bin/python3 tools/make_sounds.py [output directory]
Needs:  Debian's python3-numpy, python3-scipy and vorbis-tools. The same packages give the same sounds.

Tiles sound like wood and ivory, rewards like bells; refusals are low and dull. All pitches are from D major, the key of
the music, so that nothing clashes with it.
"""

import sys
from pathlib import Path

import numpy as np

from loudness import loudest_moment
from synth import (BOWL, RATE, clock, contact_noise, faded, in_room, mix, note, room, samples, struck,
                   write_ogg)

DEFAULT_OUTPUT = Path(__file__).resolve().parent.parent / "assets/audio"
QUALITY = 5

# The encoder smears a blow a little forward in time, into this much silence before it.
LEAD_IN = 0.004

# Overtones of a bar that rings when struck, as in a celesta, with the octave that its resonator adds.
CELESTA = ((1.0, 1.0, 1.0), (2.0, 0.22, 0.7), (2.756, 0.16, 0.5), (4.0, 0.05, 0.35), (5.404, 0.07, 0.25))
GLASS = ((1.0, 1.0, 1.0), (2.32, 0.3, 0.6), (4.25, 0.14, 0.4), (6.63, 0.05, 0.25))


def ringing(overtones, name, t60, seconds, attack=0.002):
    """A bell at a note. The third value of each overtone says how much sooner it dies away."""
    partials = [(note(name) * ratio, level, t60 * life) for ratio, level, life in overtones]
    return struck(partials, seconds, attack)


def ivory_tap(rng, pitch):
    """Two small hard bodies that touch: short and high, with a little wood below."""
    body = struck([(1930 * pitch, 1.0, 0.045), (3170 * pitch, 0.6, 0.03), (4890 * pitch, 0.22, 0.018),
                   (705 * pitch, 0.35, 0.07)], 0.2, 0.0004)
    return body + mix(0.2, (0, 0.25, contact_noise(rng, 1500, 6000, 0.012, 0.05)))


def wooden_knock(rng, name):
    """Loudest in its second and third modes, which a small loudspeaker can reproduce."""
    body = struck([(note(name), 0.7, 0.16), (2 * note(name), 0.9, 0.11), (3 * note(name), 0.5, 0.08),
                   (4 * note(name), 0.2, 0.05)], 0.4, 0.0025)
    return body + mix(0.4, (0, 0.3, contact_noise(rng, 150, 900, 0.04, 0.1, 0.002)))


def click(rng):
    body = struck([(1480, 1.0, 0.04), (2960, 0.5, 0.025), (4430, 0.2, 0.015)], 0.14, 0.0006)
    return mix(0.24, (0, 1.0, body), (0, 0.3, contact_noise(rng, 1800, 5500, 0.008, 0.05)))


def place(rng):
    wood = struck([(330, 0.9, 0.17), (588, 0.7, 0.13), (880, 0.3, 0.08)], 0.3, 0.001)
    return mix(0.36, (0, 0.4, ivory_tap(rng, 0.8)), (0.001, 0.9, wood))


def tile(rng):
    body = struck([(294, 1.0, 0.09), (587, 0.55, 0.06), (988, 0.22, 0.035)], 0.2, 0.003)
    return mix(0.3, (0, 1.0, body), (0, 0.5, contact_noise(rng, 200, 1400, 0.035, 0.1, 0.002)))


def nono(rng):
    return mix(0.55, (0, 1.0, wooden_knock(rng, "A3")), (0.15, 0.9, wooden_knock(rng, "F#3")))


def remove(rng):
    """Two taps, then hardly more than air, because it sounds with every pair."""
    shimmer = [(0.06 + 0.06 * step, 0.12, ringing(CELESTA, name, 0.6, 0.7, 0.03))
               for step, name in enumerate(("A5", "D6", "A6"))]
    times = clock(0.5)
    air = contact_noise(rng, 1200, 4000, 0.45, 0.5) * np.sin(np.pi * np.minimum(1.0, times / 0.3)) ** 2
    return mix(0.9, (0, 1.0, ivory_tap(rng, 0.56)), (0.036, 0.9, ivory_tap(rng, 0.66)), (0.04, 0.07, air),
               *shimmer)


def error(rng):
    """One low thud, with middle modes for small loudspeakers without bass."""
    body = struck([(110, 0.45, 0.24), (147, 0.4, 0.2), (220, 0.4, 0.15), (440, 0.7, 0.1), (587, 0.5, 0.085),
                   (880, 0.2, 0.05)], 0.45, 0.006)
    return mix(0.5, (0, 1.0, body), (0, 0.5, contact_noise(rng, 100, 800, 0.08, 0.2, 0.004)))


def hint(rng):
    return mix(1.1, (0, 0.8, ringing(GLASS, "E5", 0.9, 1.0)), (0.13, 1.0, ringing(GLASS, "B5", 1.0, 0.95)))


def ready(rng):
    return mix(1.48, (0, 1.0, ringing(BOWL, "D4", 2.8, 1.45, 0.012)),
               (0, 0.25, ringing(BOWL, "A4", 2.2, 1.45, 0.02)))


def success(rng):
    figure = [(0.12 * step, 0.75 + 0.08 * step, ringing(CELESTA, name, 1.4, 1.4))
              for step, name in enumerate(("D5", "F#5", "A5", "D6"))]
    return mix(1.48, *figure, (0.36, 0.35, ringing(CELESTA, "D5", 1.1, 1.1, 0.01)))


def win_glare(rng):
    """Some forty small bells, first sparse and soft, then dense; the last ones rise above the sound."""
    names = ("D5", "A5", "B5", "D6", "E6", "F#6", "A6", "B6", "D7")
    bells = []
    for strike in range(40):
        progress = strike / 40
        register = min(len(names) - 1, int(rng.integers(0, 5) + 5 * progress))
        start = 0.75 * progress ** 0.8 + 0.01 * rng.random()
        bells.append((start, 0.12 + 0.3 * np.sin(np.pi * 0.72 * progress) ** 2,
                      ringing(CELESTA, names[register], 0.75, 0.9, 0.006)))
    swell = (0, 0.5, ringing(CELESTA, "D5", 1.3, 1.4, 0.25))
    return mix(1.48, swell, *bells)


def star(chord, broken, sparkle=()):
    """A chord of bells (note, level), broken upwards by `broken` seconds a step, then small bells."""
    def made(_):
        struck_notes = [(broken * step, level, ringing(CELESTA, name, 1.25, 1.3))
                        for step, (name, level) in enumerate(chord)]
        small = [(0.1 + 0.06 * step, 0.2, ringing(CELESTA, name, 0.5, 0.7, 0.004))
                 for step, name in enumerate(sparkle)]
        return mix(1.4, *struck_notes, *small)
    return made


# Name, maker, loudness of the loudest 400 ms in LUFS, level of the room. Frequent sounds are softer than rare ones; the
# three stars get louder. Twenty tiles in a second are 8 dB louder than one, and still softer than everything else and
# than the music.
EFFECTS = (
    ("click", click, -29.8, 0.10),
    ("place", place, -28.8, 0.12),
    ("tile", tile, -39.7, 0.10),
    ("nono", nono, -27.6, 0.12),
    ("remove", remove, -30.1, 0.16),
    ("error", error, -28.2, 0.10),
    ("hint", hint, -26.2, 0.22),
    ("ready", ready, -26.2, 0.20),
    ("success", success, -24.8, 0.22),
    ("win_glare", win_glare, -24.4, 0.25),
    ("star1", star((("A5", 1.0),), 0.0), -26.0, 0.22),
    ("star2", star((("A5", 0.4), ("D6", 1.0)), 0.03, ("F#6",)), -25.4, 0.22),
    ("star3", star((("D5", 0.4), ("A5", 0.5), ("D6", 0.6), ("F#6", 1.0)), 0.035, ("A6", "B6", "D7", "F#7")),
     -24.8, 0.25),
)


def effect(number):
    _, make, loudness, wet = EFFECTS[number]
    rng = np.random.default_rng(1000 + number)
    sound = make(rng)
    # Bells would ring too long, so the last third is damped.
    sound = faded(sound, fade_out=len(sound) / RATE / 3)
    sound = in_room(sound, room(rng, 0.35, 0.12), wet)
    sound *= 10.0 ** ((loudness - loudest_moment(sound)) / 20.0)
    sound = faded(sound, fade_in=0.0005, fade_out=0.06)
    return np.vstack([np.zeros((samples(LEAD_IN), 2)), sound])


def main():
    output = Path(sys.argv[1]) if len(sys.argv) > 1 else DEFAULT_OUTPUT
    for number, (name, *_) in enumerate(EFFECTS):
        path = output / f"sfx_{name}.ogg"
        write_ogg(path, effect(number), QUALITY, 1 + number, f"Quenlock's Mahjong: {name.replace('_', ' ')}")
        print(f"{path}: {path.stat().st_size} bytes")


if __name__ == "__main__":
    main()
