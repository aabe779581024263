#!/usr/bin/python3
"""Opening a large value change dump (500 MB by default, 4000 signals: single bits, buses, reals)
in the page cache, against gtkwave's vcd2fst on the same file in the same run.

Figures, medians of a few rounds:
- open: zelwave-cli info as the viewer opens the file (large dumps keep their values in the file:
  one checking and counting pass, the time axis and an index of where each curve's records lie);
- read all: zelwave-cli info --read-all, every value in memory at once;
- one curve: zelwave-cli dump of a curve that changes all through the file: opening, then loading
  it from the file;
- peak resident memory of each, against the file's size.
usage: vcd_read.py BENCH_VCD_GENERATE ZELWAVE_CLI [megabytes] [rounds]
Prints lines "name: value unit; baseline: value unit; ratio: r".
"""
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time


def timed(command):
    """Wall time in seconds and peak resident memory in MB of one run of command."""
    start = time.perf_counter()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    elapsed = time.perf_counter() - start
    if os.waitstatus_to_exitcode(status) != 0:
        raise SystemExit("failed: %s" % " ".join(command))
    return elapsed, usage.ru_maxrss / 1024.0


def warm(path):
    with open(path, "rb") as f:
        while f.read(1 << 24):
            pass


def report(name, value, unit, baseline, baseline_unit, ratio):
    print("%s: %.3f %s; baseline: %.3f %s; ratio: %.3f" % (name, value, unit, baseline, baseline_unit, ratio))


def main():
    if len(sys.argv) < 3:
        raise SystemExit(__doc__)
    generator, cli = sys.argv[1], sys.argv[2]
    megabytes = int(sys.argv[3]) if len(sys.argv) > 3 else 500
    rounds = int(sys.argv[4]) if len(sys.argv) > 4 else 3
    if not shutil.which("vcd2fst"):
        raise SystemExit("vcd2fst is missing (Debian package gtkwave)")
    with tempfile.TemporaryDirectory(prefix="zw_vcd_bench_") as folder:
        path = os.path.join(folder, "big.vcd")
        subprocess.run([generator, path, str(megabytes)], check=True)
        size_mb = os.path.getsize(path) / 1e6
        fst = os.path.join(folder, "big.fst")
        results = {"open": [], "all": [], "curve": [], "vcd2fst": []}
        for _ in range(rounds):
            for key, command in (("open", [cli, "info", path]), ("all", [cli, "info", "--read-all", path]),
                                 ("curve", [cli, "dump", "--ticks", path, "top.block39.bus3998[31:0]"]),
                                 ("vcd2fst", ["vcd2fst", path, fst])):
                warm(path)
                results[key].append(timed(command))
        median = {key: (statistics.median(t for t, _ in runs), statistics.median(m for _, m in runs))
                  for key, runs in results.items()}
        base_time, base_memory = median["vcd2fst"]
        print("file: %.1f MB, rounds: %d" % (size_mb, rounds))
        for key, name in (("open", "vcd_open"), ("all", "vcd_read_all")):
            seconds, memory = median[key]
            report(name + "_throughput", size_mb / seconds, "MB/s", size_mb / base_time, "MB/s (vcd2fst)",
                   base_time / seconds)
            report(name + "_peak_rss", memory, "MB", size_mb, "MB (file size)", memory / size_mb)
        report("vcd2fst_peak_rss", base_memory, "MB", size_mb, "MB (file size)", base_memory / size_mb)
        seconds, memory = median["curve"]
        report("vcd_open_and_load_one_curve", seconds, "s", median["open"][0], "s (open alone)", seconds / median["open"][0])


if __name__ == "__main__":
    main()
