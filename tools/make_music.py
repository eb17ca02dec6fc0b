#!/usr/bin/python3
"""Makes the music, assets/audio/bgm_calm.ogg: plays the piece written in calm_score.py.

Run:    /usr/bin/python3 tools/make_music.py [output.ogg]
Needs:  Debian's python3-numpy, python3-scipy and vorbis-tools; takes about two minutes. The same packages
        give the same music.

A zither leads, a flute answers and sings the middle sections; a harp, a bass string, a held chord and a bowl
carry them. The piece is laid on a ring: what rings past the end, notes and reverberation alike, comes in at
the beginning, so the loop has no seam to be heard. The file begins in the breath before the first bar, where
the music is softest.
"""

import sys
from pathlib import Path

import numpy as np
from scipy import signal

import calm_score as score
from loudness import integrated
from synth import (BOWL, RATE, clock, contact_noise, decay, faded, in_room_circular, note, room, samples,
                   struck, write_ogg)

DEFAULT_OUTPUT = Path(__file__).resolve().parent.parent / "assets/audio/bgm_calm.ogg"
QUALITY = 5
SERIAL = 100

BEAT = 60.0 / 64.0
LENGTH = score.BAR_COUNT * score.BEATS_A_BAR * BEAT
LOUDNESS = -20.0

# The file begins this long before the first beat.
UPBEAT = 0.8

# Each phrase of four bars presses on a little and settles: so far, in seconds, the beat leaves the even
# pulse.
PHRASE_BEATS = 16
RUBATO = 0.05
# How far hands are from a machine: standard deviations, in seconds and as a share of the force.
TIMING = 0.008
FORCE = 0.06


def at(beat):
    """Time of a beat in the file, seconds; before 0 or past the end it is meant around the ring."""
    return UPBEAT + BEAT * beat + RUBATO * np.sin(2 * np.pi * beat / PHRASE_BEATS)


def force(rng, beat, section):
    """How hard a note is played: by section, by its place in the phrase, by its beat, and by chance."""
    arch = 0.9 + 0.14 * np.sin(np.pi * (beat % PHRASE_BEATS) / PHRASE_BEATS)
    accent = 1.04 if beat % score.BEATS_A_BAR == 0 else 1.0
    return section.level * arch * accent * (1.0 + FORCE * rng.standard_normal())


class Ring:
    """A stereo track whose end is its beginning."""

    def __init__(self):
        self.track = np.zeros((samples(LENGTH), 2))

    def add(self, start, sound, pan=0.0):
        """Lays a mono sound at a time; pan -1 is left, 1 right, with equal power."""
        angle = (pan + 1.0) * np.pi / 4.0
        places = (samples(start) + np.arange(len(sound))) % len(self.track)
        self.track[places] += np.sqrt(2.0) * sound[:, None] * np.array([np.cos(angle), np.sin(angle)])


def eased(times, begin, end):
    """From 0 to 1 between two times, without a corner at either."""
    return 0.5 - 0.5 * np.cos(np.pi * np.clip((times - begin) / (end - begin), 0.0, 1.0))


def string(rng, pitch, strength, ring=3.5, pluck=0.17, softness=0.07, slide=False, vibrato=False):
    """A plucked string: stiff, so its partials spread; the plucking place silences some of them; a soft touch
    lacks the high ones. `slide` begins a whole tone lower, `vibrato` presses the string once the note has
    settled."""
    times = clock(1.35 * ring)
    cents = 5.0 * decay(times, 0.25)
    if slide:
        cents -= 200.0 * (1.0 - eased(times, 0.07, 0.19))
    if vibrato:
        cents += 13.0 * eased(times, 0.45, 1.05) * np.sin(2 * np.pi * 4.6 * (times - 0.45))
    frequency = note(pitch)
    phase = 2 * np.pi * frequency * np.cumsum(2.0 ** (cents / 1200.0)) / RATE
    sound = np.zeros(len(times))
    for number in range(1, min(26, int(9000 / frequency)) + 1):
        stretch = number * np.sqrt(1.0 + 0.0001 * number ** 2)
        level = np.sin(np.pi * number * pluck) / number * np.exp(-number * softness * (2.0 - strength))
        life = ring * (220.0 / frequency) ** 0.3 / (1.0 + 0.06 * number + 0.01 * number ** 2)
        # The string swings in two planes; the second, a hair out of tune, outlives the first.
        sound += level * (0.8 * np.sin(stretch * phase) * decay(times, life)
                          + 0.2 * np.sin(1.0006 * stretch * phase) * decay(times, 1.6 * life))
    sound *= strength * (1.0 - np.exp(-times / 0.002))
    pick = contact_noise(rng, 500, 2600, 0.03, 0.08, 0.002)
    sound[:len(pick)] += 0.05 * strength * pick
    return faded(sound, fade_out=0.3 * ring)


def flute(rng, pitch, seconds, strength):
    """An end-blown flute: few overtones, a breath of noise, a vibrato that comes late."""
    times = clock(seconds + 0.25)
    swell = eased(times, 0.0, 0.14) * (1.0 - eased(times, seconds - 0.05, seconds + 0.25))
    swell *= 0.86 + 0.14 * np.sin(np.pi * np.clip(times / seconds, 0.0, 1.0))
    late = eased(times, 0.5, 1.4)
    sway = np.sin(2 * np.pi * (4.5 + 0.3 * rng.random()) * times)
    cents = 9.0 * late * sway - 25.0 * decay(times, 0.18)
    frequency = note(pitch)
    phase = 2 * np.pi * frequency * np.cumsum(2.0 ** (cents / 1200.0)) / RATE
    overtones = ((1, 1.0), (2, 0.26 * strength), (3, 0.13 * strength), (4, 0.03), (5, 0.015))
    tone = sum(level * np.sin(number * phase + number) for number, level in overtones)
    band = signal.butter(2, [0.8 * frequency, 3.2 * frequency], "bandpass", fs=RATE, output="sos")
    breath = signal.sosfilt(band, rng.standard_normal(len(times)))
    return strength * swell * (tone * (1.0 + 0.06 * late * sway) + 0.035 * breath)


def held(rng, pitch, seconds):
    """One voice of the held chord: three soft players a little apart in pitch, coming and going. Left, middle
    and right, for the caller to place."""
    attack, release = 1.3, 2.4
    times = clock(seconds + release)
    envelope = eased(times, 0.0, attack) * (1.0 - eased(times, seconds, seconds + release))
    players = []
    for cents in (-4.0, 0.5, 4.5):
        frequency = note(pitch) * 2.0 ** (cents / 1200.0)
        breathing = 0.8 + 0.2 * np.sin(2 * np.pi * (rng.uniform(0.07, 0.16) * times + rng.random()))
        tone = sum(number ** -1.9 * np.sin(2 * np.pi * (number * frequency * times + rng.random()))
                   for number in range(1, 8))
        players.append(envelope * breathing * tone)
    return players


def zither_part(rng):
    ring = Ring()
    for written, section in score.melody("zither"):
        strength = force(rng, written.start, section)
        start = at(written.start) + TIMING * rng.standard_normal()
        ring.add(start, string(rng, written.pitch, strength, slide=written.mark == "/",
                               vibrato=written.beats >= 1.5), 0.12)
        if written.mark == "+":
            lower = written.pitch[:-1] + str(int(written.pitch[-1]) - 1)
            ring.add(start - 0.025, 0.6 * string(rng, lower, strength), 0.02)
    return ring.track


def flute_part(rng):
    ring = Ring()
    for written, section in score.melody("flute"):
        seconds = at(written.start + written.beats) - at(written.start)
        start = at(written.start) + TIMING * rng.standard_normal() - 0.04
        ring.add(start, flute(rng, written.pitch, seconds, force(rng, written.start, section)), -0.22)
    return ring.track


def harp_part(rng):
    ring = Ring()
    for number, inside, section in score.bars():
        patterns = score.HARP[section.harp]
        for beat, index in patterns[inside % len(patterns)]:
            pitch = score.chord_at(section, inside, beat)[2].split()[index]
            where = number * score.BEATS_A_BAR + beat
            sound = string(rng, pitch, 0.8 * force(rng, where, section), ring=2.4, pluck=0.38, softness=0.2)
            ring.add(at(where) + TIMING * rng.standard_normal(), sound, -0.45 + 0.18 * index)
    return ring.track


def bass_part(rng):
    ring = Ring()
    for start, _, (bass, _, _), section in score.harmony():
        sound = string(rng, bass, 0.9 * force(rng, start, section), ring=3.0, pluck=0.42, softness=0.24)
        ring.add(at(start) + 0.5 * TIMING * rng.standard_normal(), sound)
    return ring.track


def held_part(rng):
    ring = Ring()
    for written, _ in score.held_voices():
        # The last chord lets go early: the loop turns in a breath.
        last = written.start + written.beats == score.BAR_COUNT * score.BEATS_A_BAR
        beats = written.beats - (1.0 if last else 0.0)
        seconds = at(written.start + beats) - at(written.start)
        for sound, pan in zip(held(rng, written.pitch, seconds), (-0.7, 0.0, 0.7)):
            ring.add(at(written.start) - 0.35, sound, pan)
    return ring.track


def bowl_part(rng):
    ring = Ring()
    bowl = struck([(note("D4") * ratio, level, 7.0 * life) for ratio, level, life in BOWL], 7.0, 0.04)
    for number, inside, section in score.bars():
        if inside in section.bowls:
            start = at(number * score.BEATS_A_BAR) + TIMING * rng.standard_normal()
            ring.add(start, faded(bowl, fade_out=2.0), 0.35)
    return ring.track


# Part, its level in the mix and how much of it goes into the room.
PARTS = (
    (zither_part, 1.0, 0.42),
    (flute_part, 0.3, 0.6),
    (harp_part, 0.6, 0.42),
    (bass_part, 0.75, 0.2),
    (held_part, 0.046, 0.4),
    (bowl_part, 0.12, 0.6),
)


def mixed(parts=PARTS):
    hall = room(np.random.default_rng(7), 2.6, 1.0, 0.022)
    return sum(level * in_room_circular(part(np.random.default_rng(100 + number)), hall, wet)
               for number, (part, level, wet) in enumerate(parts))


def from_silence(sound):
    """Turns the ring by a few hundredths of a second, to where both channels pass through nothing together:
    so the music begins without a click when it comes out of silence."""
    loudest_channel = np.max(np.abs(sound[:samples(0.1)]), axis=1)
    return np.roll(sound, -int(np.argmin(loudest_channel)), axis=0)


def mastered(sound):
    """Takes away the rumble below the lowest string and brings the piece to its loudness. The filter runs up
    with the last second, so that it too is the same at both ends."""
    highpass = signal.butter(2, 45, "highpass", fs=RATE, output="sos")
    sound = signal.sosfilt(highpass, np.vstack([sound[-RATE:], sound]), axis=0)[RATE:]
    return from_silence(sound) * 10.0 ** ((LOUDNESS - integrated(sound)) / 20.0)


def main():
    output = Path(sys.argv[1]) if len(sys.argv) > 1 else DEFAULT_OUTPUT
    write_ogg(output, mastered(mixed()), QUALITY, SERIAL, "Quenlock's Mahjong: calm")
    print(f"{output}: {output.stat().st_size} bytes")


if __name__ == "__main__":
    main()
