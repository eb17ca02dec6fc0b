"""Loudness after ITU-R BS.1770: the gated loudness of a piece, the level of a sound's loudest moment.

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

# Effects are compared by their loudest 50 ms: about the time of a tap, and what makes one start.
MOMENT = 0.05


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
    """K-weighted power, channels added, of each window of this length. Past the end there is silence."""
    width = samples(seconds)
    power = np.sum(k_weighted(sound) ** 2, axis=1)
    sums = np.concatenate([[0.0], np.cumsum(np.concatenate([power, np.zeros(width)]))])
    starts = np.arange(0, len(power), samples(step))
    return (sums[starts + width] - sums[starts]) / width


def lufs(power):
    return OFFSET + 10.0 * np.log10(power) if power > 0.0 else SILENCE


def loudest_moment(sound):
    """Loudness of the loudest 50 ms. A mono sound counts as the game plays it: from both speakers."""
    return lufs(np.max(window_powers(stereo(sound), MOMENT, 0.001)))


def integrated(sound):
    """Loudness of a whole piece: windows of 400 ms, save silent ones and those 10 LU below the others."""
    width, step = 0.4, 0.1
    powers = window_powers(stereo(sound), width, step)
    powers = powers[:1 + (len(sound) - samples(width)) // samples(step)]
    powers = powers[powers > 10.0 ** ((-70.0 - OFFSET) / 10.0)]
    powers = powers[powers > 0.1 * np.mean(powers)]
    return lufs(np.mean(powers))
