#!/bin/sh
# Writes the Spice raw examples with ngspice: a binary transient and an ascii AC analysis.
# Run from any folder; the files land beside this script.
set -e
cd "$(dirname "$0")"
ngspice -b -r rc_raw_tran.raw rc_raw_tran.cir > /dev/null
SPICE_ASCIIRAWFILE=1 ngspice -b -r rc_raw_ac.raw rc_raw_ac.cir > /dev/null
echo "wrote rc_raw_tran.raw and rc_raw_ac.raw"
