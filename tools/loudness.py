"""Loudness after ITU-R BS.1770 and EBU R 128: the gated loudness of a piece and its range, the level of a sound's
loudest moment, the true peak.

Takes what synth.py calls a sound, stereo unless a function says otherwise. Results are LUFS: decibels of the
K-weighted power, channels added, less 0.691.
"""

import numpy as np
from scipy import signal

from synth import RATE, samples, stereo

# The two filters of BS.1770, by their analogue design, so that they hold at 44.1 kHz as well.
SHELF_HZ, SHELF_Q, SHELF_DB = 1681.974450955533, 0.7071752369554196, 3.999843853973347
HIGHPASS_HZ, HIGHPASS_Q = 38.13547087602444, 0.5003270373238773

# The calibration of BS.1770: a sine of 997 Hz at full scale in one channel reads -3.01.
OFFSET = -0.691
SILENCE = -200.0

# An ear adds up sound over about a moment. "Short term" is defined by EBU Tech 3341.
MOMENT = 0.4
SHORT_TERM = 3.0


def k_weighted(sound):
    k = np.tan(np.pi * SHELF_HZ / RATE)
    high = 10.0 ** (SHELF_DB / 20.0)
    band = high ** 0.4996667741545416
    shelf = [high + band * k / SHELF_Q + k * k, 2 * (k * k - high), high - band * k / SHELF_Q + k * k,
             1 + k / SHELF_Q + k * k, 2 * (k * k - 1), 1 - k / SHELF_Q + k * k]
    k = np.tan(np.pi * HIGHPASS_HZ / RATE)
    poles = 1 + k / HIGHPASS_Q + k * k
    highpass = [1.0, -2.0, 1.0, 1.0, 2 * (k * k - 1) / poles, (1 - k / HIGHPASS_Q + k * k) / poles]
    return signal.sosfilt([np.array(shelf) / shelf[3], highpass], sound, axis=0)


def window_powers(sound, seconds, step):
    """Returns the K-weighted power, channels added, of each window of this length. Silence follows the end."""
    width = samples(seconds)
    power = np.sum(k_weighted(sound) ** 2, axis=1)
    sums = np.concatenate([[0.0], np.cumsum(np.concatenate([power, np.zeros(width)]))])
    starts = np.arange(0, len(power), samples(step))
    return (sums[starts + width] - sums[starts]) / width


def lufs(power):
    return OFFSET + 10.0 * np.log10(power) if power > 0.0 else SILENCE


def levels(sound, seconds, step=0.1):
    """Returns the LUFS of the windows of this length within the sound."""
    powers = window_powers(stereo(sound), seconds, step)
    powers = powers[:max(1, 1 + (len(sound) - samples(seconds)) // samples(step))]
    return OFFSET + 10.0 * np.log10(np.maximum(powers, 1e-20))


def loudest_moment(sound):
    """Returns the loudness of the loudest 400 ms. A mono sound counts as played from both speakers, as in the game."""
    return lufs(np.max(window_powers(stereo(sound), MOMENT, 0.001)))


def gated(loudness, below):
    """Returns the windows that count: not silent, and at most `below` LU under the mean of the others."""
    powers = 10.0 ** (loudness[loudness > -70.0] / 10.0)
    return 10.0 * np.log10(powers[powers > np.mean(powers) * 10.0 ** (-below / 10.0)])


def integrated(sound):
    """Returns the loudness of a whole piece: of windows of 400 ms, except silent ones and those 10 LU below the
    others."""
    return 10.0 * np.log10(np.mean(10.0 ** (gated(levels(sound, MOMENT), 10.0) / 10.0)))


def loudness_range(sound):
    """EBU Tech 3342: from the 10th to the 95th percentile of the short-term loudness, LU."""
    low, high = np.percentile(gated(levels(sound, SHORT_TERM), 20.0), (10, 95))
    return high - low


def true_peak(sound):
    """Returns the highest point of the wave, between samples too, in dBTP."""
    padded = np.vstack([stereo(sound), np.zeros((RATE, 2))])
    highest = max(np.max(np.abs(signal.resample_poly(padded[first:first + 11 * RATE], 4, 1, axis=0)))
                  for first in range(0, len(sound), 10 * RATE))
    return 20.0 * np.log10(highest)
