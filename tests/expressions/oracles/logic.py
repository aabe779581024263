#!/usr/bin/python3
"""A simulated design dumped by iverilog, and its digital curves read from the dump by a few lines
of Python: for each curve the staircase of its numbers (x and z undefined), a bit, a bus and the
comparison of two vectors, written as text lines into the folder given."""
import math
import os
import subprocess
import sys

folder = sys.argv[1]
design = r"""
`timescale 1ns/100ps
module top;
  reg clk = 0;
  reg [3:0] count = 0;
  reg [3:0] other = 0;
  reg en = 1'bx;
  always #5 clk = ~clk;
  always @(posedge clk) count <= count + 1;
  initial begin
    $dumpfile("design.vcd");
    $dumpvars(0, top);
    #12.5 en = 1'b0;
    #20 en = 1'b1;
    #7 en = 1'bz;
    #10 other = 4'b1010;
    #15 other = 4'b0x11;
    #3 other = 4'b0111;
    #25 $finish;
  end
endmodule
"""
with open(os.path.join(folder, "design.v"), "w") as f:
    f.write(design)
subprocess.run(["iverilog", "-o", "design.vvp", "design.v"], cwd=folder, check=True)
subprocess.run(["vvp", "-n", "design.vvp"], cwd=folder, check=True, stdout=subprocess.DEVNULL)

# The dump: identifiers, widths and the changes of each, in ticks.
names, widths, changes = {}, {}, {}
scale = None
tick = 0
with open(os.path.join(folder, "design.vcd")) as f:
    words = f.read().split()
i = 0
while i < len(words):
    w = words[i]
    if w == "$timescale":
        text = "".join(words[i + 1:words.index("$end", i)])
        number = "".join(c for c in text if c.isdigit())
        unit = text[len(number):]
        scale = int(number) * {"s": 1, "ms": 1e-3, "us": 1e-6, "ns": 1e-9, "ps": 1e-12, "fs": 1e-15}[unit]
        i = words.index("$end", i) + 1
    elif w == "$var":
        width, ident, name = int(words[i + 2]), words[i + 3], words[i + 4]
        names[ident], widths[ident] = name, width
        changes[ident] = []
        i = words.index("$end", i) + 1
    elif w.startswith("#"):
        tick = int(w[1:])
        i += 1
    elif w[0] in "bB":
        value, ident = w[1:].lower(), words[i + 1]
        changes[ident].append((tick, value.rjust(widths[ident], "x" if value[0] == "x" else "z" if value[0] == "z" else "0")))
        i += 2
    elif w[0] in "01xzXZ" and len(w) > 1 and w[1:] in names:
        changes[w[1:]].append((tick, w[0].lower()))
        i += 1
    else:
        i += 1
by_name = {names[k]: v for k, v in changes.items()}
end = tick  # the dump's last time stamp: every curve lasts until then


def collapse(records):
    """The changes only, and the last state again at the end of the dump."""
    out = []
    for t, s in records:
        if out and out[-1][0] == t:
            out[-1] = (t, s)
            if len(out) > 1 and out[-2][1] == s:
                out.pop()
        elif not out or out[-1][1] != s:
            out.append((t, s))
    if out and out[-1][0] < end:
        out.append((end, out[-1][1]))
    return out


def number(state):
    return int(state, 2) if set(state) <= set("01") else math.nan


def same(a, b):
    return a == b or (math.isnan(a) and math.isnan(b))


out = open(os.path.join(folder, "expected.txt"), "w")
out.write("scale %r\n" % scale)
for name in ("clk", "count", "en", "other"):
    records = collapse(by_name[name])
    xs, ys = [records[0][0] * scale], [number(records[0][1])]
    for t, s in records[1:]:
        v = number(s)
        if same(v, ys[-1]):
            continue
        xs += [t * scale, t * scale]
        ys += [ys[-1], v]
    if xs[-1] < end * scale:
        xs.append(end * scale)
        ys.append(ys[-1])
    out.write("staircase %s %s\n" % (name, " ".join("%r:%r" % p for p in zip(xs, ys))))
    out.write("records %s %s\n" % (name, " ".join("%d:%s" % r for r in records)))
out.write("bit1 %s\n" % " ".join("%d:%s" % r for r in collapse([(t, s[-2]) for t, s in by_name["count"]])))
# The bus of clk and count (clk the most significant part), x before a part's first change.
events = sorted(set(t for n in ("clk", "count") for t, _ in by_name[n]))
state = {"clk": "x", "count": "xxxx"}
bus = []
for t in events:
    for n in ("clk", "count"):
        for tt, s in by_name[n]:
            if tt == t:
                state[n] = s
    bus.append((t, state["clk"] + state["count"]))
out.write("bus %s\n" % " ".join("%d:%s" % r for r in collapse(bus)))
# count against other, from the time both have a state.
events = sorted(set(t for n in ("count", "other") for t, _ in by_name[n]))
state = {}
diff = []
for t in events:
    for n in ("count", "other"):
        for tt, s in by_name[n]:
            if tt == t:
                state[n] = s
    if len(state) == 2:
        diff.append((t, "0" if state["count"] == state["other"] else "1"))
out.write("compare %s\n" % " ".join("%d:%s" % r for r in collapse(diff)))
