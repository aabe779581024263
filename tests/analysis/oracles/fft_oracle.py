#!/usr/bin/python3
"""Numpy's and scipy's view of the spectra, windows, convolutions and correlations.

make FOLDER SEED writes raw little-endian float64 arrays into FOLDER:
  window_<name>_<n>                  scipy.signal.windows, symmetric and periodic forms
  curve_x, curve_y                   a noisy two-tone signal on a random rising grid
  spectrum_cases                     rows of 8: N, restrict, start, end, fs, window, normalize,
                                     normalize inverse
  spectrum_<i>_x/_re/_im             np.fft.rfft of the np.interp-resampled, windowed vector
  complex_y_re/_im, complex_spectrum_x/_re/_im   the two-sided spectrum of a complex curve
  conv_*                             np.convolve and np.correlate of two curves on one grid
  inverse_*                          np.fft.irfft and ifft of spectra on the bins"""
import os
import sys

import numpy as np
from scipy.signal import windows

folder = sys.argv[2]
rng = np.random.default_rng(int(sys.argv[3]))


def save(name, values):
    np.asarray(values, dtype=np.float64).tofile(os.path.join(folder, name))


def resample(t, x, y):
    """np.interp with zeros outside the curve, except within the relative tolerance of 1e-7 beyond
    an end, where rounding of the grid must not lose the end sample."""
    v = np.interp(t, x, y, left=0.0, right=0.0)
    low = x[0] * (1 - 1e-7) if x[0] > 0 else x[0] * (1 + 1e-7)
    high = x[-1] * (1 + 1e-7) if x[-1] > 0 else x[-1] * (1 - 1e-7)
    v = np.where((t >= low) & (t < x[0]), y[0], v)
    return np.where((t > x[-1]) & (t <= high), y[-1], v)


def window(kind, n):
    """The analysis's window types as scipy computes them."""
    return {
        0: lambda: np.ones(n),
        1: lambda: windows.triang(n),
        2: lambda: windows.kaiser(n, 0.5),
        3: lambda: windows.bartlett(n),
        4: lambda: windows.blackman(n),  # labelled periodic, computed symmetric
        5: lambda: windows.hamming(n, sym=False),
        6: lambda: windows.hann(n, sym=False),
    }[kind]()


# ---- Windows
for n in (1, 2, 3, 4, 7, 8, 33, 64):
    for sym in (True, False):
        suffix = "" if sym else "_periodic"
        save("window_hann%s_%d" % (suffix, n), windows.hann(n, sym=sym))
        save("window_hamming%s_%d" % (suffix, n), windows.hamming(n, sym=sym))
        save("window_blackman%s_%d" % (suffix, n), windows.blackman(n, sym=sym))
    save("window_bartlett_%d" % n, windows.bartlett(n))
    save("window_triang_%d" % n, windows.triang(n))
    save("window_kaiser05_%d" % n, windows.kaiser(n, 0.5))
    save("window_kaiser86_%d" % n, windows.kaiser(n, 8.6))

# ---- Spectra of a real curve on a random grid
x = np.cumsum(rng.uniform(0.2e-6, 1.8e-6, 4000)) + 0.5e-3
y = np.sin(2 * np.pi * 23e3 * x) + 0.3 * np.cos(2 * np.pi * 141e3 * x + 0.4) + rng.normal(0, 0.01, x.size)
save("curve_x", x)
save("curve_y", y)
x0, x1 = x[0], x[-1]
T = x1 - x0
cases = [
    # N, restrict, start, end, fs, window, normalize, normalize inverse
    (1024, 0, 0, 0, 0, 0, 0, 0),
    (1000, 1, x0 + 0.1 * T, x0 + 0.7 * T, 0, 6, 1, 0),
    (512, 0, 0, 0, 0, 5, 1, 1),
    (0, 0, 0, 0, 1.7e6, 1, 0, 0),
    (300, 1, x0 - 0.2 * T, x1 + 0.3 * T, 0, 2, 0, 0),
    (256, 0, 0, 0, 256 / (0.6 * T), 2, 1, 0),
    (2048, 0, 0, 0, 0, 3, 0, 1),
    (128, 1, x0 + 0.25 * T, x0 + 0.5 * T, 0, 4, 1, 0),
]
rows = []
for i, (n, restrict, start, end, fs, kind, normalize, normalize_inverse) in enumerate(cases):
    if not restrict:
        start, end = x0, x1
    length = end - start
    if n:
        dt = length / n if fs == 0 else 1.0 / fs
    else:
        dt = 1.0 / fs
        n = int(np.trunc(length / dt))
        if n % 2:
            # The run refuses odd counts; move fs so that this case makes an even one.
            fs = (n + 1) / length * (1 + 1e-12)
            dt = 1.0 / fs
            n = int(np.trunc(length / dt))
    rows.append((cases[i][0], restrict, start, end, fs, kind, normalize, normalize_inverse))
    t = start + np.arange(n) * dt
    v = resample(t, x, y) * window(kind, n)
    spectrum = np.fft.rfft(v)
    if normalize:
        spectrum *= 1 / np.sqrt(n) if normalize_inverse else 1 / n
    save("spectrum_%d_x" % i, np.arange(n // 2 + 1) * ((1.0 / dt) / n))
    save("spectrum_%d_re" % i, spectrum.real)
    save("spectrum_%d_im" % i, spectrum.imag)
save("spectrum_cases", np.array(rows).ravel())

# ---- A complex curve: the two-sided spectrum in rising frequency
cy = np.exp(2j * np.pi * 61e3 * x) * (1 + 0.2 * np.sin(2 * np.pi * 5e3 * x))
save("complex_y_re", cy.real)
save("complex_y_im", cy.imag)
n = 64
dt = T / n
t = x0 + np.arange(n) * dt
v = (resample(t, x, cy.real) + 1j * resample(t, x, cy.imag)) * windows.hann(n, sym=False)
spectrum = np.fft.fftshift(np.fft.fft(v))
save("complex_spectrum_x", (np.arange(n) - n // 2) * ((1.0 / dt) / n))
save("complex_spectrum_re", spectrum.real)
save("complex_spectrum_im", spectrum.imag)

# ---- Convolution and correlation of two curves on one grid of step 1 ms
dt = 1.0 / 1000.0
a0, b0 = 0.25, -0.1
a = rng.normal(0, 1, 300)
b = np.exp(-np.arange(171) / 40.0) * rng.uniform(0.5, 1.5, 171)
ac = a + 1j * rng.normal(0, 1, a.size)
save("conv_a_x", a0 + np.arange(a.size) * dt)
save("conv_a", a)
save("conv_ac_im", ac.imag)
save("conv_b_x", b0 + np.arange(b.size) * dt)
save("conv_b", b)
save("conv_full", np.convolve(a, b) * dt)
save("conv_xcorr", np.correlate(b, a, "full") * dt)
save("conv_autocorr", np.correlate(a, a, "full") * dt)
L = max(a.size, b.size)
periodic = np.fft.ifft(np.fft.fft(a, L) * np.fft.fft(b, L)).real * dt
save("conv_periodic", np.roll(periodic, L // 2))
periodic_xcorr = np.fft.ifft(np.conj(np.fft.fft(a, L)) * np.fft.fft(b, L)).real * dt
save("conv_periodic_xcorr", np.roll(periodic_xcorr, L // 2))
complex_conv = np.convolve(ac, b) * dt
save("conv_complex_re", complex_conv.real)
save("conv_complex_im", complex_conv.imag)
complex_xcorr = np.correlate(b, ac, "full") * dt
save("conv_complex_xcorr_re", complex_xcorr.real)
save("conv_complex_xcorr_im", complex_xcorr.imag)

# ---- Inverse transforms: a one-sided spectrum on bins of 10 Hz, and a two-sided one
m, df = 256, 10.0
bins = rng.normal(0, 1, m // 2 + 1) + 1j * rng.normal(0, 1, m // 2 + 1)
bins[0] = bins[0].real
bins[-1] = bins[-1].real
save("inverse_f", np.arange(m // 2 + 1) * df)
save("inverse_re", bins.real)
save("inverse_im", bins.imag)
save("inverse_time", np.fft.irfft(bins, m))
over = np.zeros(m + 1, dtype=complex)
over[::2] = bins
save("inverse_time_oversampled", np.fft.irfft(over, 2 * m))
# Linear resampling: the spectrum given at half-bin steps, read at the bins by np.interp.
fine_f = np.arange(m + 1) * (df / 2)
fine = np.interp(fine_f, np.arange(m // 2 + 1) * df, bins.real) + 1j * np.interp(fine_f, np.arange(m // 2 + 1) * df, bins.imag)
fine += 0.05 * (np.arange(m + 1) % 2)  # values between the bins that linear reading skips
save("inverse_fine_f", fine_f)
save("inverse_fine_re", fine.real)
save("inverse_fine_im", fine.imag)
save("inverse_time_linear", np.fft.irfft(fine[::2], m))
two = rng.normal(0, 1, m) + 1j * rng.normal(0, 1, m)
save("inverse_two_f", (np.arange(m) - m // 2) * df)
save("inverse_two_re", two.real)
save("inverse_two_im", two.imag)
time_two = np.fft.ifft(np.fft.ifftshift(two))
save("inverse_two_time_re", time_two.real)
save("inverse_two_time_im", time_two.imag)
