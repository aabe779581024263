// Example design for the bundled value change dump: a UART transmitter sending a few bytes,
// a byte counter, and a real that follows the line as an analog model would.
`timescale 1ns/1ps
module uart_tx #(parameter CLOCKS_PER_BIT = 8) (
  input  wire       clk,
  input  wire       start,
  input  wire [7:0] data,
  output reg        tx,
  output reg        busy
);
  reg [3:0] bit_index = 0;
  reg [9:0] frame = 10'h3ff;
  reg [7:0] clocks = 0;
  initial begin tx = 1'b1; busy = 1'b0; end
  always @(posedge clk) begin
    if (!busy && start) begin
      frame <= {1'b1, data, 1'b0};
      busy <= 1'b1;
      bit_index <= 0;
      clocks <= 0;
    end else if (busy) begin
      tx <= frame[bit_index];
      if (clocks == CLOCKS_PER_BIT - 1) begin
        clocks <= 0;
        if (bit_index == 9) busy <= 1'b0;
        else bit_index <= bit_index + 1;
      end else begin
        clocks <= clocks + 1;
      end
    end
  end
endmodule

module uart_tb;
  reg clk = 0;
  reg start = 0;
  reg [7:0] data = 8'h00;
  reg [15:0] sent = 0;
  real line_volts = 3.3;
  wire tx, busy;
  uart_tx #(.CLOCKS_PER_BIT(8)) dut(.clk(clk), .start(start), .data(data), .tx(tx), .busy(busy));
  always #5 clk = ~clk;
  always @(tx) line_volts = tx ? 3.3 : 0.05;
  task send(input [7:0] value);
    begin
      @(posedge clk) begin data <= value; start <= 1'b1; end
      @(posedge clk) start <= 1'b0;
      @(negedge busy) sent <= sent + 1;
    end
  endtask
  initial begin
    $dumpfile("uart.vcd");
    $dumpvars(0, uart_tb);
    send(8'h5A);
    send(8'h0F);
    send(8'hC3);
    #100 $finish;
  end
endmodule
