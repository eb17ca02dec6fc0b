"""Shared by make_sounds.py and make_music.py: struck bodies, noise, rooms, and Ogg files.

Sounds are numpy arrays of samples in -1..1 at RATE; mono ones have the shape (n,), stereo ones (n, 2). Times
are seconds, frequencies hertz. Random numbers come from generators that the caller hands over.
"""

import subprocess

import numpy as np
from scipy import fft, signal

RATE = 44100

# Decay times are given as T60: the seconds in which a sound falls by 60 dB.
LN_60_DB = np.log(1000.0)

# Each mode of a bowl is a pair a little out of tune, as no bowl is quite round: the pair beats.
BOWL = ((1.0, 1.0, 1.0), (1.0045, 0.7, 1.0), (2.71, 0.42, 0.7), (2.722, 0.3, 0.7), (5.15, 0.12, 0.45),
        (8.2, 0.03, 0.3))


def samples(seconds):
    return int(round(seconds * RATE))


def clock(seconds):
    """Returns the time of each sample of a sound of this length."""
    return np.arange(samples(seconds)) / RATE


def decay(times, t60):
    return np.exp(-LN_60_DB * times / t60)


def midi(name):
    """Number of a note in half steps, A4 = 69: "D4", "F#5", "Bb3"."""
    steps = {"C": 0, "D": 2, "E": 4, "F": 5, "G": 7, "A": 9, "B": 11}
    return steps[name[0]] + name.count("#") - name.count("b") + 12 * (int(name[-1]) + 1)


def note(name):
    """Frequency of a note in equal temperament, A4 = 440."""
    return 440.0 * 2.0 ** ((midi(name) - 69) / 12.0)


def struck(partials, seconds, attack=0.0008):
    """A struck body: the sum of its damped partials (frequency, amplitude, T60). All start at phase zero, so
    the first sample is zero; `attack` is the time in which the blow reaches its full force."""
    times = clock(seconds)
    body = sum(amplitude * np.sin(2 * np.pi * frequency * times) * decay(times, t60)
               for frequency, amplitude, t60 in partials)
    return body * (1.0 - np.exp(-times / attack))


def contact_noise(rng, low, high, t60, seconds, attack=0.0005):
    """The noise of two surfaces that meet: noise between two frequencies that dies away."""
    times = clock(seconds)
    band = signal.butter(2, [low, high], "bandpass", fs=RATE, output="sos")
    noise = signal.sosfilt(band, rng.standard_normal(len(times)))
    return noise * decay(times, t60) * (1.0 - np.exp(-times / attack))


def mix(seconds, *events):
    """Adds sounds to an empty mono track: events are (start, gain, sound). The track's end cuts them off."""
    track = np.zeros(samples(seconds))
    for start, gain, sound in events:
        first = samples(start)
        part = sound[:max(0, len(track) - first)]
        track[first:first + len(part)] += gain * part
    return track


def room(rng, t60_low, t60_high, predelay=0.004):
    """Returns the stereo impulse response of a room: noise in octave bands. High bands die away faster, because air and
    cloth absorb them first. The energy of each channel is one."""
    times = clock(1.2 * t60_low)
    edges = 125.0 * 2.0 ** np.arange(8)
    response = np.zeros((len(times), 2))
    for octave, low in enumerate(edges[:-1]):
        band = signal.butter(2, [low, edges[octave + 1]], "bandpass", fs=RATE, output="sos")
        t60 = t60_low * (t60_high / t60_low) ** (octave / (len(edges) - 2))
        noise = signal.sosfilt(band, rng.standard_normal((len(times), 2)), axis=0)
        response += noise * decay(times, t60)[:, None]
    response *= np.minimum(1.0, times / 0.01)[:, None]
    response /= np.sqrt(np.sum(response ** 2, axis=0))
    return np.vstack([np.zeros((samples(predelay), 2)), response])


def stereo(sound):
    return sound if sound.ndim == 2 else np.column_stack([sound, sound])


def in_room(sound, response, wet):
    """Returns the sound with its room. Keeps the sound's length, so leave time for the tail."""
    dry = stereo(sound)
    return dry + wet * signal.fftconvolve(dry, response, axes=0)[:len(dry)]


def circular(sound, response):
    """Returns a looping sound through a response, stereo or not. A tail past the end continues at the beginning."""
    padded = np.zeros((len(sound), response.shape[1]))
    padded[:len(response)] = response
    return fft.irfft(fft.rfft(sound, axis=0) * fft.rfft(padded, axis=0), n=len(sound), axis=0)


def faded(sound, fade_in=0.001, fade_out=0.03):
    """Fades both ends along half a cosine, so that neither clicks."""
    sound = sound.copy()
    for edge, ramp in ((slice(None, samples(fade_in)), 1), (slice(-samples(fade_out), None), -1)):
        curve = 0.5 - 0.5 * np.cos(np.pi * np.linspace(0.0, 1.0, len(sound[edge]))[::ramp])
        sound[edge] *= curve if sound.ndim == 1 else curve[:, None]
    return sound


def write_ogg(path, sound, quality, serial, title):
    """Encodes with Debian's oggenc. With a serial number given, the same sound makes the same bytes."""
    pcm = np.round(np.clip(sound, -1.0, 1.0) * 32767.0).astype("<i2")
    channels = 1 if sound.ndim == 1 else sound.shape[1]
    command = ["oggenc", "--quiet", "--raw", "--raw-bits=16", f"--raw-chan={channels}", f"--raw-rate={RATE}",
               "--serial", str(serial), "--quality", str(quality), "--title", title,
               "--artist", "The Quenlock team", "--output", str(path), "-"]
    subprocess.run(command, input=pcm.tobytes(), check=True)


def read_ogg(path):
    """The samples of an Ogg Vorbis file, one row a frame, as Debian's oggdec decodes them."""
    wave = subprocess.run(["oggdec", "--quiet", "--raw", "--output", "-", str(path)],
                          capture_output=True, check=True).stdout
    info = subprocess.run(["ogginfo", str(path)], capture_output=True, check=True, text=True).stdout
    channels = int(info.split("Channels:")[1].split()[0])
    return np.frombuffer(wave, "<i2").reshape(-1, channels) / 32768.0
