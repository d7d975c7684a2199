"""The same thinned polylines as PlotBench draws, drawn by matplotlib (Agg) on a figure of the
same size: the figure is cleared and redrawn each time, as a redraw of the graph does.

    build-bench/bench/PlotBench --polylines /tmp/polylines.txt
    python3 bench/plot_matplotlib.py /tmp/polylines.txt
"""
import sys
import time

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt  # noqa: E402

lines = []
with open(sys.argv[1]) as f:
    for row in f:
        v = [int(t) for t in row.split()]
        lines.append((v[0::2], v[1::2]))

fig = plt.figure(figsize=(16, 9), dpi=100)
ax = fig.add_axes([0, 0, 1, 1])
times = []
for _ in range(20):
    start = time.perf_counter()
    ax.clear()
    ax.set_xlim(0, 1600)
    ax.set_ylim(900, 0)
    for xs, ys in lines:
        ax.plot(xs, ys, linewidth=1)
    fig.canvas.draw()
    times.append(time.perf_counter() - start)
times.sort()
print(f"{len(lines)} polylines, {sum(len(x) for x, _ in lines)} points: median {times[len(times) // 2] * 1000:.1f} ms")
