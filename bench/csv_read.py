#!/usr/bin/python3
"""Load time of a large numeric CSV file (10 columns, about 1 GB by default) in the page cache.

Same run, same file: the reader through the dispatch (bench_csv_read), pandas read_csv (C engine,
float_precision="round_trip" so that both read every value to the same double; the default
"high" is printed too), and wc -l, which only counts lines. Medians of a few rounds.
Peak memory is the reader's resident high-water mark against 8 bytes per value read.
usage: csv_read.py BENCH_CSV_READ [megabytes] [rounds]
Prints lines "name: value unit; baseline: value unit; ratio: r".
"""
import os
import statistics
import subprocess
import sys
import tempfile
import time

import numpy as np

MAKE_AND_READ_PANDAS = r"""
import sys, time, pandas as pd
start = time.perf_counter()
df = pd.read_csv(sys.argv[1], float_precision=sys.argv[2] if sys.argv[2] != 'default' else None)
print(time.perf_counter() - start, df.shape[0] * df.shape[1])
"""


def make_file(path, megabytes):
    rng = np.random.default_rng(1)
    rows_per_block = 100000
    with open(path, "w") as f:
        f.write(",".join(["time"] + ["v%d" % i for i in range(1, 10)]) + "\n")
        t0 = 0.0
        while f.tell() < megabytes * 1000000:
            block = rng.normal(0.0, 1.0, (rows_per_block, 10))
            block[:, 0] = t0 + np.arange(rows_per_block) * 1e-9
            t0 = block[-1, 0] + 1e-9
            np.savetxt(f, block, delimiter=",", fmt="%.17g")


def timed(command):
    start = time.perf_counter()
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL)
    return time.perf_counter() - start


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    tool = sys.argv[1]
    megabytes = int(sys.argv[2]) if len(sys.argv) > 2 else 1000
    rounds = int(sys.argv[3]) if len(sys.argv) > 3 else 3
    with tempfile.TemporaryDirectory(dir="/tmp") as folder:
        path = os.path.join(folder, "big.csv")
        make_file(path, megabytes)
        size_mb = os.path.getsize(path) / 1e6
        subprocess.run(["cat", path], check=True, stdout=subprocess.DEVNULL)  # into the page cache
        ours, peaks, wc, pandas_exact, pandas_default = [], [], [], [], []
        values = 0
        for _ in range(rounds):
            out = subprocess.run([tool, path], check=True, capture_output=True, text=True).stdout
            fields = dict(item.split("=") for item in out.split())
            ours.append(float(fields["seconds"]))
            peaks.append(int(fields["peak_kb"]) * 1024)
            values = int(fields["values"])
            wc.append(timed(["wc", "-l", path]))
            for precision, times in (("round_trip", pandas_exact), ("default", pandas_default)):
                out = subprocess.run([sys.executable, "-c", MAKE_AND_READ_PANDAS, path, precision], check=True,
                                     capture_output=True, text=True).stdout.split()
                times.append(float(out[0]))
        t = statistics.median(ours)
        mbs = size_mb / t
        for name, times in (("pandas read_csv round_trip", pandas_exact), ("pandas read_csv default", pandas_default),
                            ("wc -l", wc)):
            base = statistics.median(times)
            print("csv_read_%s: %.1f MB/s (%.3f s for %.0f MB); baseline: %.1f MB/s (%s, %.3f s); ratio: %.2f"
                  % ("throughput", mbs, t, size_mb, size_mb / base, name, base, base / t))
        peak = statistics.median(peaks)
        print("csv_read_peak_memory: %.1f MB; baseline: %.1f MB (8 bytes x %d values); ratio: %.3f"
              % (peak / 1e6, 8 * values / 1e6, values, peak / (8.0 * values)))


if __name__ == "__main__":
    main()
