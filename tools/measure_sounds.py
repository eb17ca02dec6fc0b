#!/usr/bin/python3
"""Measures the decoded sounds and the score, and prints the tables of assets/audio/README.md.

Run:    /usr/bin/python3 tools/measure_sounds.py [directory]
        /usr/bin/python3 tools/measure_sounds.py --sitting picture.png [directory]
Needs:  Debian's python3-numpy, python3-scipy and vorbis-tools; python3-pil for the picture: the loudness of a
        sitting at the table over time, effects and music at their default volumes.
"""

import re
import sys
from collections import Counter
from pathlib import Path

import numpy as np
from scipy import signal

import calm_score as score
from loudness import MOMENT, SHORT_TERM, integrated, levels, loudest_moment, loudness_range, true_peak
from synth import RATE, midi, note, read_ogg, samples

PROJECT = Path(__file__).resolve().parent.parent
DEFAULT_DIRECTORY = PROJECT / "assets/audio"

# The default volumes, in dB: 0.25 for the music, 1 for the effects.
MUSIC_VOLUME = 20.0 * np.log10(0.25)

TILES_A_SECOND = 20

# A small loudspeaker reproduces almost nothing below this.
LAPTOP_HZ = 300.0


def decibels(ratio):
    return 20.0 * np.log10(ratio)


def spectrum(sound):
    """Returns frequencies and the share of the energy at each."""
    energy = np.abs(np.fft.rfft(sound, axis=0)) ** 2
    energy = energy if energy.ndim == 1 else energy.sum(axis=1)
    return np.fft.rfftfreq(len(sound), 1.0 / RATE), energy / energy.sum()


def share(sound, low, high):
    frequencies, energy = spectrum(sound)
    return energy[(frequencies >= low) & (frequencies < high)].sum()


def lost_on_a_laptop(sound):
    highpass = signal.butter(4, LAPTOP_HZ, "highpass", fs=RATE, output="sos")
    return loudest_moment(sound) - loudest_moment(signal.sosfilt(highpass, sound, axis=0))


def laid(track, start, sound):
    first = samples(start)
    part = sound[:max(0, len(track) - first)]
    track[first:first + len(part)] += part


def tiles():
    """Measures pitch, level and brightness of the tile sound and of the variants that the game makes of it."""
    source = (PROJECT / "src/resources/audio.cpp").read_text()
    variants = re.findall(r"Variant\{([\d.]+),\s*([\d.]+),\s*([\d.]+)\}", source)
    assert variants, "audio.cpp has no variants of the tile"
    return [(1.0, 1.0, 1.0)] + [tuple(map(float, variant)) for variant in variants]


TILES = tiles()


def varied(tile, number):
    pitch, level, brightness = TILES[number % len(TILES)]
    resampled = signal.resample(tile, int(len(tile) / pitch), axis=0)
    return level * signal.lfilter([brightness], [1.0, brightness - 1.0], resampled, axis=0)


def row_of_tiles(tile, vary):
    track = np.zeros((2 * RATE, 2))
    for number in range(TILES_A_SECOND):
        laid(track, number / TILES_A_SECOND, varied(tile, number) if vary else tile)
    return track


def print_effects(directory):
    print("| File | Length | Peak | Loudest 400 ms | 2 to 5 kHz | Lost below 300 Hz | Bytes |")
    print("|---|---|---|---|---|---|---|")
    for path in sorted(directory.glob("sfx_*.ogg")):
        sound = read_ogg(path)
        print(f"| `{path.name}` | {len(sound) / RATE:.2f} s | {decibels(np.max(np.abs(sound))):.1f} dBFS "
              f"| {loudest_moment(sound):.1f} LUFS | {100 * share(sound, 2000, 5000):.1f} % "
              f"| {lost_on_a_laptop(sound):.1f} dB | {path.stat().st_size} |")
    tile = read_ogg(directory / "sfx_tile.ogg")
    for name, vary in (("one sound", False), ("its variants", True)):
        loudness = loudest_moment(row_of_tiles(tile, vary))
        print(f"| {TILES_A_SECOND} tiles in a second, {name} | | | {loudness:.1f} LUFS | | | |")


def self_similarity(sound):
    """Returns how alike bars 8 to 24 bars apart are: the correlation of their pitch classes, as far as these differ
    from those of the whole piece, at the worst distance."""
    from make_music import at
    frequencies, times, strengths = signal.stft(sound.mean(axis=1), RATE, nperseg=8192, noverlap=6144)
    heard = (frequencies > 60) & (frequencies < 2500)
    classes = np.round(69 + 12 * np.log2(frequencies[heard] / 440)).astype(int) % 12
    bars = np.zeros((score.BAR_COUNT, 12))
    for bar in range(score.BAR_COUNT):
        inside = (times >= at(bar * score.BEATS_A_BAR)) & (times < at((bar + 1) * score.BEATS_A_BAR))
        np.add.at(bars[bar], classes, (np.abs(strengths[heard][:, inside]) ** 2).mean(axis=1))
    bars = np.sqrt(bars / bars.sum(axis=1, keepdims=True))
    bars -= bars.mean(axis=0)
    bars /= np.linalg.norm(bars, axis=1, keepdims=True)
    return max(np.mean(np.sum(bars * np.roll(bars, -lag, axis=0), axis=1)) for lag in range(8, 25))


def print_music(path):
    sound = read_ogg(path)
    loudness = integrated(sound)
    frequencies, energy = spectrum(sound)
    seam = np.abs(sound[0] - sound[-1]).max()
    steps = np.abs(np.diff(sound[:samples(0.1)], axis=0)).max()
    rows = (
        ("Length", f"{int(len(sound) / RATE // 60)} min {len(sound) / RATE % 60:.1f} s"),
        ("Bytes", f"{path.stat().st_size}"),
        ("Integrated loudness", f"{loudness:.1f} LUFS"),
        ("Loudness range", f"{loudness_range(sound):.1f} LU"),
        ("Loudest moment (400 ms)", f"{levels(sound, MOMENT).max() - loudness:+.1f} LU"),
        ("Loudest short term (3 s)", f"{levels(sound, SHORT_TERM).max() - loudness:+.1f} LU"),
        ("True peak", f"{true_peak(sound):.1f} dBTP"),
        ("Energy in 2 to 5 kHz", f"{100 * share(sound, 2000, 5000):.1f} %"),
        ("99 % of the energy below", f"{frequencies[np.searchsorted(np.cumsum(energy), 0.99)]:.0f} Hz"),
        ("Correlation of left and right", f"{np.corrcoef(sound.T)[0, 1]:.2f}"),
        ("Lost in mono", f"{loudness - integrated(sound.mean(axis=1)):.1f} LU"),
        ("Step at the seam", f"{seam:.5f}, within 0.1 s up to {steps:.5f}"),
        ("Likeness of bars 8 to 24 bars apart", f"{self_similarity(sound):.2f}"),
    )
    for name, value in rows:
        print(f"| {name} | {value} |")


def silent_bars(notes):
    sounding = {int(bar) for written in notes
                for bar in np.arange(written.start // 4, (written.start + written.beats + 3) // 4)}
    return score.BAR_COUNT - len(sounding)


def print_score():
    zither = [written for written, _ in score.melody("zither")]
    flute = [written for written, _ in score.melody("flute")]
    harp = [written for written, *_ in score.harp()]
    common = Counter(written.pitch for written in zither).most_common(4)
    chords = [chord for section in score.PIECE for chord in section.chords]
    progressions = Counter(tuple((chords + chords)[bar:bar + 8]) for bar in range(len(chords)))
    melody = sorted((written.pitch for written in zither + flute), key=midi)
    unisons = {(n.start, n.pitch) for n in zither} & {(n.start, n.pitch) for n in harp}
    accompanying = {"harp": harp, "bass": [written for written, _ in score.bass()],
                    "held chord": [written for written, _ in score.held_voices()]}
    rows = (
        ("Bars, sections", f"{score.BAR_COUNT}, {len(score.PIECE)}"),
        ("Uses of one progression of eight bars, at most", f"{max(progressions.values())}"),
        ("Zither's four commonest pitches",
         f"{100 * sum(count for _, count in common) / len(zither):.0f} % of its {len(zither)} notes"),
        ("Melody from, to", f"{melody[0]}, {melody[-1]}"),
        ("Bars without " + ", ".join(accompanying),
         ", ".join(f"{100 * silent_bars(notes) / score.BAR_COUNT:.0f} %" for notes in accompanying.values())),
        ("Levels of the sections",
         f"{min(s.level for s in score.PIECE):.2f} to {max(s.level for s in score.PIECE):.2f}"),
        ("Pitches struck by zither and harp together", f"{len(unisons)}"),
    )
    for name, value in rows:
        print(f"| {name} | {value} |")


def print_instruments():
    """Measures the three plucked instruments at one pitch and force: where their energy is, how fast it dies away."""
    from make_music import BASS, HARP, ZITHER, string, with_body
    for name, kind in (("Zither", ZITHER), ("Harp", HARP), ("Bass", BASS)):
        plucks = [string(np.random.default_rng(seed), kind, note("D3"), 0.9) for seed in range(8)]
        sound = sum(with_body(np.pad(pluck, (0, 9 * RATE - len(pluck)))[:, None], kind.body)[:, 0] ** 2
                    for pluck in plucks)
        centroids = [np.dot(*spectrum(pluck)) for pluck in plucks]
        left = np.cumsum(sound[::-1])[::-1]
        t60 = 3.0 * np.argmax(left < 0.01 * left[0]) / RATE
        print(f"| {name} | {np.mean(centroids):.0f} Hz ({min(centroids):.0f} to {max(centroids):.0f}) | {t60:.1f} s |")


def print_flute():
    """Measures how far the breath of a long flute note, the sound between its partials, lies below them."""
    from make_music import LEAD, Blown, flute
    blown = Blown(start=0.0, end=6.0, pitch=midi("D5"), strength=0.9, tongued=True, flicked=False)
    breaths = []
    for seed in range(8):
        sound = flute(np.random.default_rng(seed), [blown])[samples(LEAD + 1.0):samples(LEAD + 5.0)]
        frequencies, energy = spectrum(np.hanning(len(sound)) * sound)
        partial = note("D5") * np.clip(np.round(frequencies / note("D5")), 1, 5)
        tone = energy[np.abs(frequencies - partial) < 0.02 * partial].sum()
        breaths.append(decibels(tone / (1.0 - tone)) / 2.0)
    print(f"| Breath below the tone | {np.mean(breaths):.1f} dB (of 8, {min(breaths):.1f} to {max(breaths):.1f}) |")


def sitting():
    """Returns (time, name) of each sound from a deal to its win: 144 tiles fly in, ever faster, then twenty pairs,
    three refusals, a hint."""
    taking_off = 1.0 + np.cumsum(np.linspace(0.067, 0.034, 144))
    events = [(taking_off[0], "tile")]
    for time in taking_off:
        if time - events[-1][0] >= 1.0 / TILES_A_SECOND:
            events.append((time, "tile"))
    time = taking_off[-1] + 0.8
    events.append((time, "ready"))
    for pair in range(20):
        if pair in (5, 9, 14):
            events += [(time + 2.0, "place"), (time + 2.9, "nono")]
            time += 3.2
        if pair == 12:
            events.append((time + 3.0, "hint"))
            time += 4.0
        time += 2.0 + 1.3 * (pair * 7 % 5)
        events += [(time, "place"), (time + 0.7, "place"), (time + 1.02, "remove")]
        time += 1.02
    events.append((time, "win_glare"))
    return events + [(time + 1.9 + after, name) for after, name in ((0.36, "star1"), (0.62, "star2"), (0.88, "star3"))]


def mixed_sitting(directory):
    events = sitting()
    sounds = {path.stem[4:]: read_ogg(path) for path in directory.glob("sfx_*.ogg")}
    effects = np.zeros((samples(events[-1][0] + 6.0), 2))
    music = 10.0 ** (MUSIC_VOLUME / 20.0) * read_ogg(directory / "bgm_calm.ogg")[:len(effects)]
    for number, (time, name) in enumerate(events):
        laid(effects, time, varied(sounds[name], number) if name == "tile" else sounds[name])
    return events, music, effects


def draw_sitting(directory, picture):
    from PIL import Image, ImageDraw
    events, music, effects = mixed_sitting(directory)
    curves = ((levels(music, SHORT_TERM), SHORT_TERM, "#3a6ea5"), (levels(music + effects, MOMENT), MOMENT, "#d9a441"),
              (levels(music + effects, SHORT_TERM), SHORT_TERM, "#7a1f1f"))
    width, height, top, bottom = 1500, 600, -15.0, -55.0
    image = Image.new("RGB", (width, height), "white")
    draw = ImageDraw.Draw(image)
    x = lambda time: 40 + (width - 60) * time / (len(effects) / RATE)
    y = lambda level: 20 + (height - 60) * (top - max(bottom, level)) / (top - bottom)
    for level in np.arange(bottom, top + 1, 5):
        draw.line([(40, y(level)), (width - 20, y(level))], "#dddddd")
        draw.text((8, y(level) - 6), f"{level:.0f}", "black")
    for time in range(0, int(len(effects) / RATE), 10):
        draw.text((x(time), height - 18), f"{time}", "black")
    marks = {"remove": "#2b7a2b", "nono": "#cc0000", "hint": "#8833cc", "ready": "#0088aa", "win_glare": "#dd8800",
             "star1": "#dd8800"}
    for time, name in events:
        if name in marks:
            draw.line([(x(time), height - 36), (x(time), height - 24)], marks[name], 2)
    for curve, window, colour in curves:
        draw.line([(x(0.1 * step + window / 2), y(level)) for step, level in enumerate(curve)], colour, 2)
    for line, (_, _, colour) in zip(("music, short term (3 s)", "music and effects, momentary (400 ms)",
                                     "music and effects, short term (3 s)"), curves):
        draw.text((60, 24 + 14 * [c[2] for c in curves].index(colour)), line + ", LUFS", colour)
    image.save(picture)
    both = levels(music + effects, SHORT_TERM)
    print(f"short term of the sitting: {both.min():.1f} to {both.max():.1f} LUFS; above the music alone by at most "
          f"{np.max(both - curves[0][0]):.1f} LU")
    dealt = int(10 * (next(time for time, name in events if name == "ready") - SHORT_TERM))
    print(f"above the music alone while tiles land: by at most {np.max((both - curves[0][0])[:dealt]):.1f} LU")


def main():
    arguments = sys.argv[1:]
    picture = None
    if arguments[:1] == ["--sitting"]:
        picture, arguments = arguments[1], arguments[2:]
    directory = Path(arguments[0]) if arguments else DEFAULT_DIRECTORY
    if picture:
        draw_sitting(directory, picture)
        return
    print_effects(directory)
    print("\n| Music | |\n|---|---|")
    print_music(directory / "bgm_calm.ogg")
    print_score()
    print("\n| Struck on D3 | Centroid (of 8 plucks) | T60 |\n|---|---|---|")
    print_instruments()
    print("\n| Flute, D5 | |\n|---|---|")
    print_flute()


if __name__ == "__main__":
    main()
