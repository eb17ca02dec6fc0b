#!/usr/bin/python3
"""Makes the music, assets/audio/bgm_calm.ogg: plays the piece written in calm_score.py.

Run:    /usr/bin/python3 tools/make_music.py [output.ogg]
Needs:  Debian's python3-numpy, python3-scipy and vorbis-tools; takes about two minutes on two cores. The same
        packages give the same music.

A zither and a flute share the two subjects; a harp, a bass string, a held chord and a bowl accompany them in turn.
The piece is laid on a ring: notes and reverberation that ring past the end continue at the beginning, so the loop has
no audible seam. The file begins in the breath before the first bar, where the music is softest.
"""

import sys
from dataclasses import dataclass
from multiprocessing import Pool
from pathlib import Path

import numpy as np
from scipy import fft, ndimage, signal

import calm_score as score
from loudness import MOMENT, OFFSET, integrated, k_weighted
from synth import (BOWL, LN_60_DB, RATE, circular, clock, contact_noise, decay, faded, midi, mix, note, room,
                   samples, struck, write_ogg)

DEFAULT_OUTPUT = Path(__file__).resolve().parent.parent / "assets/audio/bgm_calm.ogg"
QUALITY = 3.8
SERIAL = 100
PROCESSES = 2

LOUDNESS = -17.0
# The most by which the loudest moment may exceed the whole, in LU.
LOUDEST_MOMENT = 4.4
# Samples are limited to this. Between samples and after encoding the wave goes a little higher.
CEILING = 10.0 ** (-4.2 / 20.0)
SHELF_HZ = 3000.0
SHELF_DB = 3.0

# The file begins this long before the first beat.
UPBEAT = 0.8

# A phrase speeds up towards its middle and slows down at its end, most at the end of a section: shares of the tempo.
PRESS = 0.05
HOLD = 0.09
HOLD_AT_END = 0.17
HOLD_BEATS = 2.0
# How inexact hands are: standard deviations, in seconds and as a share of the force.
TIMING = 0.008
FORCE = 0.06

STEPS_A_BEAT = 24
# An overtone that begins softer than this, as a share of full scale, is left out.
INAUDIBLE = 0.0003
# The flute's control curves have one value for this many samples.
CONTROL = 16


def eased(times, begin, end):
    """Rises smoothly from 0 to 1 between two times."""
    return 0.5 - 0.5 * np.cos(np.pi * np.clip((times - begin) / (end - begin), 0.0, 1.0))


def tempo_map():
    """Returns the time of each step of the piece, from the first beat."""
    seconds = []
    for _, inside, section in score.bars():
        steps = np.arange(score.BEATS_A_BAR * STEPS_A_BEAT) / STEPS_A_BEAT
        phrase = score.BEATS_A_BAR * section.phrase
        whole = score.BEATS_A_BAR * len(section.chords)
        beat = steps + score.BEATS_A_BAR * inside
        length = np.minimum(phrase, whole - beat // phrase * phrase)
        place = beat % phrase
        last = beat // phrase * phrase + length >= whole
        pace = 1.0 + PRESS * np.sin(np.pi * place / length)
        pace -= np.where(last, HOLD_AT_END, HOLD) * eased(place, length - HOLD_BEATS, length)
        seconds.append(60.0 / section.tempo / pace / STEPS_A_BEAT)
    return np.concatenate([[0.0], np.cumsum(np.concatenate(seconds))])


TIMES = tempo_map()
# Padded by some milliseconds to a length whose Fourier transform is fast.
LENGTH = fft.next_fast_len(samples(TIMES[-1]), real=True)


def at(beat):
    """Returns the time of a beat in the file, in seconds. Times before 0 or past the end wrap around the ring."""
    return UPBEAT + np.interp(float(beat), np.arange(len(TIMES)) / STEPS_A_BEAT, TIMES)


def force(rng, beat, section):
    """Returns how hard a note is played: by section, by its place in the phrase, by its beat, and by chance."""
    phrase = section.phrase * score.BEATS_A_BAR
    arch = 0.9 + 0.14 * np.sin(np.pi * float(beat % phrase) / phrase)
    accent = 1.04 if beat % score.BEATS_A_BAR == 0 else 1.0
    return section.level * arch * accent * (1.0 + FORCE * rng.standard_normal())


class Ring:
    """A stereo track whose end continues at its beginning."""

    def __init__(self):
        self.track = np.zeros((LENGTH, 2))

    def add(self, start, sound, pan=0.0):
        """Adds a mono sound at a time; pan -1 is left, 1 right, with equal power."""
        angle = (pan + 1.0) * np.pi / 4.0
        places = (samples(start) + np.arange(len(sound))) % LENGTH
        self.track[places] += np.sqrt(2.0) * sound[:, None] * np.array([np.cos(angle), np.sin(angle)])


def wave(turns):
    """Returns the sine of a phase in turns: exact to 120 dB, in a third of the time of double precision."""
    return np.sin(2 * np.pi * (turns - np.rint(turns)).astype(np.float32))


@dataclass(frozen=True)
class Strings:
    """The properties of a plucked instrument."""
    ring: float  # T60 of the fundamental at 220 Hz
    damping: float  # how much sooner each overtone dies away than the one below it
    slope: float  # how fast the overtones get softer: an exponent of their number
    cutoff: float  # frequency at which overtones have fallen by a factor e at full force
    stiffness: float  # how far the overtones are stretched
    pluck: tuple  # where along the string it is plucked: from, to
    pick: tuple  # level, lowest and highest frequency of the plucking noise
    body: tuple  # modes of the body: frequency, gain


ZITHER = Strings(ring=4.4, damping=0.025, slope=0.6, cutoff=5200.0, stiffness=0.00013, pluck=(0.12, 0.18),
                 pick=(0.09, 700, 4500),
                 body=((236, 0.5), (318, 0.7), (407, 0.6), (494, 0.5), (596, 0.55), (718, 0.4), (866, 0.4)))
HARP = Strings(ring=1.9, damping=0.09, slope=1.0, cutoff=1150.0, stiffness=0.00003, pluck=(0.15, 0.22),
               pick=(0.05, 300, 1800),
               body=((184, 0.7), (231, 0.6), (297, 0.55), (389, 0.5), (512, 0.4), (655, 0.3)))
BASS = Strings(ring=3.0, damping=0.14, slope=1.3, cutoff=380.0, stiffness=0.00006, pluck=(0.17, 0.22),
               pick=(0.05, 180, 900),
               body=((181, 0.6), (214, 0.5), (263, 0.5), (331, 0.4), (428, 0.3), (560, 0.2)))


def string(rng, kind, frequency, strength, slide=False, vibrato=False):
    """A plucked string: stiff, so its partials spread; the plucking place silences some of them; a soft touch
    lacks the high ones and the noise. `slide` begins a whole tone lower, `vibrato` presses the string once the
    note has settled."""
    life = kind.ring * (220.0 / frequency) ** 0.35
    times = clock(1.3 * life)
    cents = 5.0 * strength * decay(times, 0.25)
    if slide:
        cents -= 200.0 * (1.0 - eased(times, 0.07, 0.19))
    if vibrato:
        begin, rate = rng.uniform(0.35, 0.6), rng.uniform(4.2, 5.0)
        cents += rng.uniform(7.0, 15.0) * eased(times, begin, begin + 0.6) * np.sin(
            2 * np.pi * rate * (times - begin))
    turns = frequency * np.cumsum(2.0 ** (cents / 1200.0)) / RATE
    pluck = rng.uniform(*kind.pluck)
    cutoff = kind.cutoff * strength ** 1.5
    sound = np.zeros(len(times))
    for number in range(1, min(30, int(11000 / frequency)) + 1):
        level = np.sin(np.pi * number * pluck) / number ** kind.slope * np.exp(-(number - 1) * frequency / cutoff)
        if abs(level) < INAUDIBLE:
            continue
        t60 = life / (1.0 + kind.damping * (number - 1) + 0.006 * (number - 1) ** 2)
        heard = min(len(times), samples(t60))
        swing = number * np.sqrt(1.0 + kind.stiffness * number ** 2) * turns[:heard]
        sound[:heard] += 0.8 * level * wave(swing) * decay(times[:heard].astype(np.float32), t60)
        if number <= 4:
            # The string swings in two planes. The second is slightly out of tune and rings longer.
            swing = 1.0006 * number * turns
            sound += 0.2 * level * wave(swing) * decay(times.astype(np.float32), 1.6 * t60)
    sound *= 1.0 - np.exp(-times / 0.0015)
    level, low, high = kind.pick
    pick = contact_noise(rng, low, high, 0.03, 0.08, 0.002)
    sound[:len(pick)] += level * strength * pick
    return strength * faded(sound, fade_out=0.3 * life)


def with_body(track, modes):
    """Returns the track as the instrument's body radiates it: stronger at the body's modes."""
    times = clock(0.3)
    response = np.zeros((len(times), 1))
    for number, (frequency, gain) in enumerate(modes):
        t60 = 26.0 / frequency
        swing = (-1.0) ** number * 2.0 * gain * LN_60_DB / (t60 * RATE)
        response[:, 0] += swing * np.sin(2 * np.pi * frequency * times) * decay(times, t60)
    response[0] += 1.0
    return circular(track, response)


@dataclass(frozen=True)
class Blown:
    """One note of a flute's phrase: seconds from the phrase's beginning, and how it is played."""
    start: float
    end: float
    pitch: float
    strength: float
    tongued: bool
    flicked: bool


# The noise of the breath, 24 dB below the tone, and of an attack, as shares of the tone.
BREATH = 10.0 ** (-24.0 / 20.0)
CHIFF = 0.16
# A phrase's sound begins this long before its first note.
LEAD = 0.1


def blown_note(rng, times, blown, before, after):
    """What a note adds to the curves of its phrase: to the pitch, in half steps, to the breath, and to the sway that
    the vibrato gives the breath. The vibrato comes late and is never the same."""
    start, end = blown.start, blown.end
    pitch = (blown.pitch - before.pitch) * eased(times, start - 0.02, start + 0.035) if before else 0.0 * times
    if blown.tongued and rng.random() < 0.35:
        pitch -= rng.uniform(0.15, 0.45) * decay(np.maximum(times - start, 0), 0.2) * (times >= start - 0.02)
    if blown.flicked:
        pitch += 2.0 * eased(times, start - 0.01, start + 0.01) * (1.0 - eased(times, start + 0.06, start + 0.085))

    # A note swells, fades, or does one and then the other.
    place = np.clip((times - start) / (end - start), 0.0, 1.0)
    shape = 1.0 + rng.uniform(-0.14, 0.1) * place + rng.uniform(0.0, 0.16) * np.sin(np.pi * place)
    attack = rng.uniform(0.05, 0.11) if blown.tongued else 0.06
    release = 0.06 if after else 0.2
    ending = end - (0.12 if not after else 0.04 if after.tongued else 0.0)
    breath = blown.strength * shape * eased(times, start - 0.5 * attack, start + 0.5 * attack)
    breath *= 1.0 - eased(times, ending - 0.5 * release, ending + 0.5 * release)

    sway = 0.0 * times
    if end - start > 0.85:
        begin = start + rng.uniform(0.3, 0.75)
        late = eased(times, begin, begin + 0.7) * (1.0 - eased(times, end - 0.15, end))
        sway = late * np.sin(2 * np.pi * rng.uniform(4.2, 5.4) * (times - begin))
        pitch += rng.uniform(0.05, 0.14) * sway
        sway *= rng.uniform(0.03, 0.09)
    return np.array([pitch, breath, sway])


def flute(rng, phrase):
    """A phrase of an end-blown flute in one breath: the pitch glides through the slurs, tongued notes begin with a
    short chiff, a few are scooped. Begins LEAD before the phrase."""
    seconds = phrase[-1].end + LEAD + 0.4
    times = clock(seconds) - LEAD
    coarse = times[::CONTROL]
    curves = sum(blown_note(rng, coarse, blown, before, after)
                 for before, blown, after in zip((None, *phrase), phrase, (*phrase[1:], None)))
    pitch, breath, sway = (np.interp(times, coarse, curve) for curve in curves)
    breath *= 1.0 + sway
    phase = 2 * np.pi * np.cumsum(440.0 * 2.0 ** ((phrase[0].pitch + pitch - 69.0) / 12.0)) / RATE
    tone = breath * (np.sin(phase) + 0.28 * breath * np.sin(2 * phase + 2) + 0.17 * breath ** 2 * np.sin(3 * phase + 3)
                     + 0.05 * breath ** 2 * np.sin(4 * phase + 4) + 0.025 * breath ** 3 * np.sin(5 * phase + 5))
    band = signal.butter(1, [500, 5000], "bandpass", fs=RATE, output="sos")
    air = signal.sosfilt(band, rng.standard_normal(len(times))) * breath
    air *= BREATH * np.sqrt(np.sum(tone ** 2) / np.sum(air ** 2))
    chiffs = mix(seconds, *((blown.start + LEAD - 0.03, CHIFF * blown.strength,
                             contact_noise(rng, 1200, 5000, 0.05, 0.09, 0.004)) for blown in phrase if blown.tongued))
    return tone + air + chiffs


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
        tone = sum(number ** -1.9 * wave(number * frequency * times + rng.random()) for number in range(1, 8))
        players.append(envelope * breathing * tone)
    return players


# Each part is a list of notes. A function plays a note and returns sounds to add as (start, sound, pan). Each note has
# its own random numbers, so a changed bar does not change the others.

PLUCKS_A_BEAT = 7
HALF_STEP_ABOVE = ("C#", "F#")


def zither_notes():
    return list(score.melody("zither"))


def play_zither(rng, played):
    written, section = played
    strength = force(rng, written.start, section)
    start = at(written.start) + TIMING * rng.standard_normal()
    frequency = note(written.pitch)
    if written.mark == "*":
        count = int(written.beats * PLUCKS_A_BEAT)
        for number in range(count):
            when = at(written.start + written.beats * number / count) + TIMING * rng.standard_normal()
            growing = strength * (0.22 + 0.28 * number / count)
            yield when, string(rng, ZITHER, frequency, growing)[:samples(1.2)], 0.12
        return
    if written.mark == "o":
        # A string touched in the middle rings softly an octave higher.
        soft = Strings(**{**vars(ZITHER), "cutoff": 700.0, "ring": 6.0})
        yield start, 1.1 * string(rng, soft, frequency, strength, vibrato=True), 0.12
        return
    if written.mark == "^":
        step = 1 if written.pitch[:-1] in HALF_STEP_ABOVE else 2
        short = string(rng, ZITHER, frequency * 2.0 ** (step / 12.0), 0.7 * strength)[:samples(0.16)]
        yield start - 0.09, faded(short, fade_out=0.07), 0.12
    yield start, string(rng, ZITHER, frequency, strength, slide=written.mark == "/",
                        vibrato=written.beats >= 1.5), 0.12
    if written.mark == "+":
        yield start - 0.025, 0.6 * string(rng, ZITHER, frequency / 2, strength), 0.02


def flute_notes():
    """Returns the flute's phrases, each in one breath: it breathes in rests and after a long note."""
    phrases = []
    for written, section in score.melody("flute"):
        before = phrases[-1][-1][0] if phrases else None
        if before and before.start + before.beats == written.start and before.beats < 2:
            phrases[-1].append((written, section))
        else:
            phrases.append([(written, section)])
    return phrases


def play_flute(rng, phrase):
    """Plays a phrase: steps are slurred, leaps and repeated notes are tongued."""
    start = at(phrase[0][0].start) + TIMING * rng.standard_normal() - 0.03
    blown = []
    for written, section in phrase:
        pitch = midi(written.pitch)
        blown.append(Blown(at(written.start) - at(phrase[0][0].start),
                           at(written.start + written.beats) - at(phrase[0][0].start), pitch,
                           force(rng, written.start, section),
                           not blown or not 0 < abs(pitch - blown[-1].pitch) <= 4, written.mark == "^"))
    yield start - LEAD, flute(rng, blown), -0.22


def harp_notes():
    return list(score.harp())


def play_harp(rng, played):
    written, section, index = played
    sound = string(rng, HARP, note(written.pitch), 0.9 * force(rng, written.start, section))
    yield at(written.start) + TIMING * rng.standard_normal(), sound, -0.5 + 0.18 * index


def bass_notes():
    return list(score.bass())


def play_bass(rng, played):
    written, section = played
    sound = string(rng, BASS, note(written.pitch), force(rng, written.start, section))
    yield at(written.start) + 0.5 * TIMING * rng.standard_normal(), sound, 0.0


def held_notes():
    return list(score.held_voices())


def play_held(rng, played):
    written, section = played
    seconds = at(written.start + written.beats) - at(written.start)
    for sound, pan in zip(held(rng, written.pitch, seconds), (-0.7, 0.0, 0.7)):
        yield at(written.start) - 0.35, section.level * sound, pan


def bowl_notes():
    return [number for number, inside, section in score.bars() if inside in section.bowls]


def play_bowl(rng, number):
    bowl = struck([(note("D4") * ratio, level, 7.0 * life) for ratio, level, life in BOWL], 7.0, 0.04)
    start = at(number * score.BEATS_A_BAR) + TIMING * rng.standard_normal()
    yield start, faded(bowl, fade_out=2.0), 0.35


# A part's notes and player, its body, its level in the mix, and its share sent into the room.
PARTS = (
    (zither_notes, play_zither, ZITHER.body, 0.85, 0.36),
    (flute_notes, play_flute, (), 0.25, 0.5),
    (harp_notes, play_harp, HARP.body, 0.85, 0.4),
    (bass_notes, play_bass, BASS.body, 0.8, 0.12),
    (held_notes, play_held, (), 0.05, 0.4),
    (bowl_notes, play_bowl, (), 0.12, 0.5),
)


def played(job):
    part, number, what = job
    return list(PARTS[part][1](np.random.default_rng((100 + part, number)), what))


def part_track(pool, part):
    notes, _, body, _, _ = PARTS[part]
    ring = Ring()
    jobs = [(part, number, what) for number, what in enumerate(notes())]
    for sounds in pool.imap(played, jobs, chunksize=8):
        for start, sound, pan in sounds:
            ring.add(start, sound, pan)
    return with_body(ring.track, body) if body else ring.track


def hall():
    """Makes the room of all instruments: early reflections, different on each side, then a tail whose sides are
    independent."""
    rng = np.random.default_rng(7)
    tail = room(rng, 2.6, 1.1, 0.03)
    for side in (0, 1):
        for number, reflected in enumerate(np.sort(rng.uniform(0.009, 0.075, 9))):
            tail[samples(reflected), side] += 0.34 * (-1.0) ** number * np.exp(-reflected / 0.05)
    return tail


def mixed():
    dry = np.zeros((LENGTH, 2))
    send = np.zeros((LENGTH, 2))
    with Pool(PROCESSES) as pool:
        for part, (_, _, _, level, wet) in enumerate(PARTS):
            track = level * part_track(pool, part)
            dry += track
            send += wet * track
    # Each side of the room receives both sides of the stage.
    return dry + circular(send @ np.array([[0.75, 0.25], [0.25, 0.75]]), hall())


def shelf(frequency, gain):
    """Makes a filter that raises the range above a frequency by so many dB."""
    high = 10.0 ** (gain / 40.0)
    angle = 2 * np.pi * frequency / RATE
    slope = 2 * np.sqrt(high) * np.sin(angle) / np.sqrt(2.0)
    cos = np.cos(angle)
    above = [high * ((high + 1) + (high - 1) * cos + slope), -2 * high * ((high - 1) + (high + 1) * cos),
             high * ((high + 1) + (high - 1) * cos - slope)]
    below = [(high + 1) - (high - 1) * cos + slope, 2 * ((high - 1) - (high + 1) * cos),
             (high + 1) - (high - 1) * cos - slope]
    return np.array([above + below]) / below[0]


def ridden(sound):
    """A slow compressor that cannot be heard: brings loud and soft a third closer together."""
    width = samples(1.0)
    power = ndimage.uniform_filter1d(np.mean(sound ** 2, axis=1), width, mode="wrap")
    power = np.maximum(ndimage.uniform_filter1d(power, width, mode="wrap"), 0.003 * np.mean(power))
    return sound * (power / np.mean(power))[:, None] ** -0.15


def limited(sound, height, ceiling, seconds):
    """Returns the gain that keeps a sound, whose height is given for each sample, below a ceiling. The gain changes
    early and slowly."""
    width = samples(seconds)
    gain = ceiling / np.maximum(height, ceiling)
    gain = ndimage.minimum_filter1d(gain, 2 * width + 1, mode="wrap")
    gain = ndimage.uniform_filter1d(gain, width, mode="wrap")
    return sound * ndimage.uniform_filter1d(gain, width, mode="wrap")[:, None]


def moments_limited(sound):
    power = ndimage.uniform_filter1d(np.sum(k_weighted(sound) ** 2, axis=1), samples(MOMENT), mode="wrap")
    return limited(sound, np.sqrt(power), 10.0 ** ((LOUDNESS + LOUDEST_MOMENT - OFFSET) / 20.0), MOMENT / 2)


def peaks_limited(sound):
    return limited(sound, np.max(np.abs(sound), axis=1), CEILING, 0.006)


def from_silence(sound):
    """Turns the ring by a few hundredths of a second, to a common zero of both channels, so that the music begins
    without a click."""
    loudest_channel = np.max(np.abs(sound[:samples(0.1)]), axis=1)
    return np.roll(sound, -int(np.argmin(loudest_channel)), axis=0)


def mastered(sound):
    """Removes the rumble below the lowest string, raises the top and sets the loudness. The filters start on the last
    second, so that they too match at both ends."""
    filters = np.vstack([signal.butter(2, 45, "highpass", fs=RATE, output="sos"), shelf(SHELF_HZ, SHELF_DB)])
    sound = signal.sosfilt(filters, np.vstack([sound[-RATE:], sound]), axis=0)[RATE:]
    sound = ridden(sound)
    sound *= 10.0 ** ((LOUDNESS - integrated(sound)) / 20.0)
    return from_silence(peaks_limited(moments_limited(sound)))


def main():
    output = Path(sys.argv[1]) if len(sys.argv) > 1 else DEFAULT_OUTPUT
    write_ogg(output, mastered(mixed()), QUALITY, SERIAL, "Quenlock's Mahjong: calm")
    print(f"{output}: {output.stat().st_size} bytes")


if __name__ == "__main__":
    main()
