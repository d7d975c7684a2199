"""The XY plot's points as PlotBench computes them (speed against each of the 8 channels, 4
laps), drawn by matplotlib's scatter (Agg) on a figure of the same size, cleared and drawn again
each time, as a redraw of the XY plot does.

    build-bench/bench/PlotBench --scatter /tmp/scatter.txt
    python3 bench/scatter_matplotlib.py /tmp/scatter.txt
"""
import sys
import time

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt  # noqa: E402

traces, xs, ys = [], [], []
with open(sys.argv[1]) as f:
    for row in f:
        if not row.strip():
            traces.append((xs, ys))
            xs, ys = [], []
            continue
        x, y = row.split()
        xs.append(float(x))
        ys.append(float(y))

fig = plt.figure(figsize=(16, 9), dpi=100)
ax = fig.add_axes([0.05, 0.07, 0.9, 0.9])
times = []
for _ in range(20):
    start = time.perf_counter()
    ax.clear()
    for x, y in traces:
        ax.scatter(x, y, s=9, marker="+", linewidths=1)
    fig.canvas.draw()
    times.append(time.perf_counter() - start)
times.sort()
print(f"{len(traces)} traces, {sum(len(x) for x, _ in traces)} points: median {times[len(times) // 2] * 1000:.1f} ms")
