"""The spectrogram FrequencyBench makes (a whole lap of a 100 Hz channel, 256-point windows at
50 % overlap, no window function, no detrending, magnitudes divided by the window's length), made
by scipy.signal.spectrogram from the same float32 samples; timed, and compared with the
program's columns.

    build-bench/bench/FrequencyBench --samples /tmp/specgram.txt
    /usr/bin/python3 bench/specgram_scipy.py /tmp/specgram.txt
"""
import sys
import time

import numpy as np
from scipy import signal

x = np.loadtxt(sys.argv[1], dtype=np.float32)


def specgram():
    # A boxcar window with "spectrum" scaling in magnitude mode is |X| / 256, the program's bins.
    return signal.spectrogram(x, fs=100.0, window="boxcar", nperseg=256, noverlap=128, detrend=False,
                              scaling="spectrum", mode="magnitude")


times = []
for _ in range(200):
    start = time.perf_counter()
    _, _, s = specgram()
    times.append(time.perf_counter() - start)
times.sort()
print(f"{len(x)} samples, {s.shape[1]} columns: median {times[len(times) // 2] * 1e6:.0f} us")

ours = np.loadtxt(sys.argv[1] + ".orlan", dtype=np.float32, ndmin=2)
theirs = s[:128, :].T  # the program keeps bins 0..127
if ours.shape != theirs.shape:
    sys.exit(f"columns differ: {ours.shape} against {theirs.shape}")
print(f"largest difference {np.abs(ours - theirs).max() / theirs.max():.3g} of the largest bin")
