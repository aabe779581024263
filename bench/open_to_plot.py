#!/usr/bin/python3
"""Open-to-first-plot time of the real viewer, offscreen and driven through its socket: from the
start of the program to the moment a curve of the opened file is on a plot. The files are a value
change dump (200 MB by default, made by bench_vcd_generate) and a binary Spice raw file (1 GB by
default, written here). The baseline is gtkwave, Debian's dump viewer, loading the same dump under
Xvfb in the same run: from its start until a script run after loading has added a signal to its
wave view and quit.

usage: open_to_plot.py ZELWAVE BENCH_VCD_GENERATE [vcd_megabytes] [raw_megabytes]
Prints lines "name: value unit; baseline: value unit; ratio: r".
"""
import os
import shutil
import socket
import subprocess
import sys
import tempfile
import time

import numpy

DEADLINE = 1800  # seconds for one load: a generous bound, only against hangs


def write_raw(path, megabytes, variables=10):
    points = megabytes * 1000000 // (8 * variables)
    with open(path, "wb") as f:
        header = ["Title: open to plot", "Date: today", "Plotname: Transient Analysis", "Flags: real",
                  "No. Variables: %d" % variables, "No. Points: %d" % points, "Variables:",
                  "\t0\ttime\ttime"]
        header += ["\t%d\tv(n%d)\tvoltage" % (i, i) for i in range(1, variables)]
        f.write(("\n".join(header) + "\nBinary:\n").encode())
        chunk = 1000000
        for start in range(0, points, chunk):
            n = min(chunk, points - start)
            t = numpy.arange(start, start + n, dtype=numpy.float64) * 1e-9
            block = numpy.empty((n, variables))
            block[:, 0] = t
            for i in range(1, variables):
                block[:, i] = numpy.sin(t * 1e6 * i)
            f.write(block.tobytes())
    return points


class Viewer:
    """The program started with its socket pointed at us; ask() sends one line, returns the reply."""

    def __init__(self, program, workdir):
        self.listener = socket.socket()
        self.listener.bind(("127.0.0.1", 0))
        self.listener.listen(1)
        self.listener.settimeout(DEADLINE)
        env = dict(os.environ, QT_QPA_PLATFORM="offscreen", HOME=workdir)
        self.process = subprocess.Popen([program, "--socket", "127.0.0.1", str(self.listener.getsockname()[1])],
                                        cwd=workdir, env=env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.connection, _ = self.listener.accept()
        self.connection.settimeout(DEADLINE)
        self.pending = b""
        assert self.line() == "0"

    def line(self):
        while b"\n" not in self.pending:
            chunk = self.connection.recv(65536)
            if not chunk:
                raise EOFError("the viewer closed the socket")
            self.pending += chunk
        line, self.pending = self.pending.split(b"\n", 1)
        return line.decode()

    def ask(self, command):
        self.connection.sendall(command.encode() + b"\n")
        return self.line()

    def wait_not_queued(self, command):
        end = time.monotonic() + DEADLINE
        while time.monotonic() < end:
            reply = self.ask(command)
            if reply != "2":
                return reply
            time.sleep(0.005)
        raise TimeoutError(command)

    def close(self):
        self.connection.close()
        self.listener.close()
        self.process.terminate()
        self.process.wait(30)


def expect(reply, wanted):
    if reply not in wanted:
        raise RuntimeError("unexpected reply %r" % reply)


def value(reply):
    return reply.split(" ", 1)[1].strip('"')


def zelwave_open_to_plot(program, workdir, path):
    """Seconds from the program's start to a curve of the file on a plot."""
    start = time.perf_counter()
    viewer = Viewer(program, workdir)
    try:
        expect(viewer.ask('open_file "%s"' % path), ("2",))
        expect(viewer.wait_not_queued("get_status"), ("0",))
        section = value(viewer.ask("get_section_name 0"))
        curve = value(viewer.ask('get_curve_name "%s" 1' % section))
        expect(viewer.ask("add_plot p1 analog 1 1"), ("0", '0 "p1"'))
        expect(viewer.ask('add_curve_to_plot_by_name p1 "%s" "%s" 0' % (section, curve)), ("0",))
        expect(viewer.wait_not_queued("get_status"), ("0",))
        return time.perf_counter() - start
    finally:
        viewer.close()


def first_signal(vcd):
    """The full name of the first variable declared in the dump, as gtkwave names it."""
    scopes = []
    with open(vcd) as f:
        for line in f:
            words = line.split()
            if words[:1] == ["$scope"]:
                scopes.append(words[2])
            elif words[:1] == ["$upscope"]:
                scopes.pop()
            elif words[:1] == ["$var"]:
                return ".".join(scopes + [words[4]])
    raise ValueError("no variable in " + vcd)


def gtkwave_open_to_plot(workdir, vcd):
    script = os.path.join(workdir, "plot.tcl")
    with open(script, "w") as f:
        f.write("gtkwave::addSignalsFromList {%s}\ngtkwave::/File/Quit\n" % first_signal(vcd))
    env = dict(os.environ, HOME=workdir)
    start = time.perf_counter()
    subprocess.run(["xvfb-run", "-a", "gtkwave", "-S", script, vcd], cwd=workdir, env=env, timeout=DEADLINE,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)
    return time.perf_counter() - start


def xvfb_alone(workdir):
    """The cost of starting and stopping Xvfb itself, taken off gtkwave's figure."""
    start = time.perf_counter()
    subprocess.run(["xvfb-run", "-a", "true"], cwd=workdir, timeout=120, check=True)
    return time.perf_counter() - start


def main():
    if len(sys.argv) < 3:
        print(__doc__)
        return 2
    program, generator = os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2])
    vcd_mb = int(sys.argv[3]) if len(sys.argv) > 3 else 200
    raw_mb = int(sys.argv[4]) if len(sys.argv) > 4 else 1000
    workdir = tempfile.mkdtemp(prefix="zelwave-open-to-plot-")
    try:
        vcd = os.path.join(workdir, "big.vcd")
        subprocess.run([generator, vcd, str(vcd_mb)], check=True, stdout=subprocess.DEVNULL)
        raw = os.path.join(workdir, "big.raw")
        write_raw(raw, raw_mb)
        # Warm the page cache for both programs alike.
        for path in (vcd, raw):
            with open(path, "rb") as f:
                while f.read(1 << 24):
                    pass
        ours_vcd = zelwave_open_to_plot(program, workdir, vcd)
        theirs = gtkwave_open_to_plot(workdir, vcd) - xvfb_alone(workdir)
        print("open to first plot, %d MB VCD: %.2f s; baseline: %.2f s; ratio: %.2f"
              % (vcd_mb, ours_vcd, theirs, ours_vcd / theirs))
        ours_raw = zelwave_open_to_plot(program, workdir, raw)
        mb_per_s = raw_mb / ours_raw
        print("open to first plot, %d MB raw: %.2f s; baseline: %.2f s (the %d MB VCD in gtkwave); ratio: %.2f"
              % (raw_mb, ours_raw, theirs, vcd_mb, ours_raw / theirs))
        print("raw file throughput: %.0f MB/s" % mb_per_s)
    finally:
        shutil.rmtree(workdir, ignore_errors=True)
    return 0


if __name__ == "__main__":
    sys.exit(main())
