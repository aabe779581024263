#!/bin/sh
# Writes uart.vcd of this folder with iverilog from uart_tb.v (run from anywhere).
set -e
cd "$(dirname "$0")"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
iverilog -o "$work/uart.vvp" uart_tb.v
(cd "$work" && vvp -n uart.vvp > /dev/null)
mv "$work/uart.vcd" uart.vcd
