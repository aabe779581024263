// A counter with a sub-module, an 8-bit register, a real and a dump switched off for a while.
// Every change is also printed by $display, so that a test can compare the dump's values.
`timescale 1ns/1ps
module toggler(input wire clk, output reg q);
  initial q = 1'b0;
  always @(posedge clk) q <= ~q;
endmodule

module tb;
  reg clk = 0;
  reg [7:0] count = 8'h00;
  reg [3:0] nib;
  real level = 0.0;
  wire half;
  toggler t1(.clk(clk), .q(half));
  always #5 clk = ~clk;
  always @(posedge clk) begin
    count <= count + 8'd3;
    level <= level + 0.25;
  end
  always @(count) $display("T %0t count %b", $time, count);
  always @(level) $display("T %0t level %.17g", $time, level);
  always @(half) $display("T %0t half %b", $time, half);
  initial begin
    $dumpfile("counter.vcd");
    $dumpvars(0, tb);
    #33 $dumpoff;
    #20 $dumpon;
    nib = 4'bx1z0;
    #47 $finish;
  end
endmodule
