#!/usr/bin/python3
"""A small design simulated by iverilog: a clock, an 8-bit counter that starts unknown, counts and
then floats, and a bit that goes through 0, z, 1 and x. The dump is read here by a few lines of
Python, independent of the viewer's reader, and the changes of each signal are written to
changes.txt in the folder given: "scale S", "end T", then "NAME tick:state ..." per signal."""
import os
import subprocess
import sys

folder = sys.argv[1]
design = r"""
`timescale 1ns/1ps
module top;
  reg clk = 0;
  reg [7:0] count = 8'bx;
  reg sig = 1'bx;
  always #5 clk = ~clk;
  always @(posedge clk) if (^count !== 1'bx) count <= count + 1;
  initial begin
    $dumpfile("design.vcd");
    $dumpvars(0, top);
    #22 count = 0;
    #18 sig = 0;
    #30 sig = 1'bz;
    #40 sig = 1;
    #25 count = 8'bzzzzzzzz;
    #20 sig = 1'bx;
    #30 $finish;
  end
endmodule
"""
with open(os.path.join(folder, "design.v"), "w") as f:
    f.write(design)
subprocess.run(["iverilog", "-o", "design.vvp", "design.v"], cwd=folder, check=True)
subprocess.run(["vvp", "-n", "design.vvp"], cwd=folder, check=True, stdout=subprocess.DEVNULL)

names, widths, changes = {}, {}, {}
scale, tick = None, 0
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
        names[ident], widths[ident], changes[ident] = name, width, []
        i = words.index("$end", i) + 1
    elif w.startswith("#"):
        tick = int(w[1:])
        i += 1
    elif w[0] in "bB":
        value, ident = w[1:].lower(), words[i + 1]
        fill = value[0] if value[0] in "xz" else "0"
        changes[ident].append((tick, value.rjust(widths[ident], fill)))
        i += 2
    elif w[0] in "01xzXZ" and len(w) > 1 and w[1:] in names:
        changes[w[1:]].append((tick, w[0].lower()))
        i += 1
    else:
        i += 1

with open(os.path.join(folder, "changes.txt"), "w") as out:
    out.write("scale %r\n" % scale)
    out.write("end %d\n" % tick)
    for ident, records in changes.items():
        kept = []
        for t, s in records:  # the last value of a time step holds; repeats are no change
            if kept and kept[-1][0] == t:
                kept.pop()
            if not kept or kept[-1][1] != s:
                kept.append((t, s))
        out.write("%s %s\n" % (names[ident], " ".join("%d:%s" % r for r in kept)))
