#!/usr/bin/python3
"""Writes the small example files of this folder (run from anywhere):

  sine_sweep.csv      pandas to_csv: time and three signals, 400 rows
  bode_semicolon.csv  pandas to_csv(sep=';', decimal=','): frequency, gain [dB], phase [deg]
  damped_numpy.csv    numpy savetxt with a "# " header line, full precision
  runs.csv            one table with a parameter column: three runs of a step response
  rc_step.csv         ngspice wrdata of rc_filter.cir: transient of an RC low-pass
  rc_bode.csv         ngspice wrdata of rc_filter.cir: v(out) as real and imaginary columns
"""
import os
import shutil
import subprocess

import numpy as np
import pandas as pd

HERE = os.path.dirname(os.path.abspath(__file__))


def main():
    t = np.linspace(0.0, 2e-6, 400)
    pd.DataFrame({
        "time": t,
        "v(in)": np.sin(2 * np.pi * 1e6 * t),
        "v(out)": 0.5 * np.sin(2 * np.pi * 1e6 * t - 0.6),
        "i(r1)": 1e-3 * np.cos(2 * np.pi * 1e6 * t),
    }).to_csv(os.path.join(HERE, "sine_sweep.csv"), index=False)

    f = np.logspace(2, 7, 101)
    h = 1.0 / (1.0 + 1j * f / 1.59e5)
    pd.DataFrame({
        "frequency": f,
        "gain [dB]": 20 * np.log10(np.abs(h)),
        "phase [deg]": np.degrees(np.angle(h)),
    }).to_csv(os.path.join(HERE, "bode_semicolon.csv"), sep=";", decimal=",", index=False)

    x = np.linspace(0.0, 5e-3, 300)
    y = np.exp(-x / 1e-3) * np.cos(2 * np.pi * 2e3 * x)
    np.savetxt(os.path.join(HERE, "damped_numpy.csv"), np.column_stack([x, y]), delimiter=",", fmt="%.17g",
               header="time,v(tank)")

    rows = []
    for r in (1e3, 2e3, 4e3):
        for k in np.linspace(0.0, 10e-6, 60):
            rows.append((r, k, 1.0 - np.exp(-k / (r * 1e-9))))
    pd.DataFrame(rows, columns=["R", "time", "v(out)"]).to_csv(os.path.join(HERE, "runs.csv"), index=False)

    if shutil.which("ngspice"):
        # Batch mode with a .control block ends with status 1 ("no simulations run" refers to the
        # batch analyses); the files tell whether it worked.
        for name in ("rc_step.csv", "rc_bode.csv"):
            if os.path.exists(os.path.join(HERE, name)):
                os.remove(os.path.join(HERE, name))
        subprocess.run(["ngspice", "-b", "rc_filter.cir"], cwd=HERE, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL)
        for name in ("rc_step.csv", "rc_bode.csv"):
            if not os.path.exists(os.path.join(HERE, name)):
                raise SystemExit("ngspice did not write " + name)
    else:
        print("ngspice not found: rc_step.csv and rc_bode.csv are left as they are")


if __name__ == "__main__":
    main()
