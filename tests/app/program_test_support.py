"""What the Python tests of the program share: waiting for an event under a deadline (a loaded
machine only makes a wait longer, never a test red) and reading a file that may not exist yet."""
import time


def wait_until(condition, seconds, pause=0.02):
    """Polls condition until it holds or the deadline passes; returns its last value."""
    end = time.monotonic() + seconds
    while True:
        value = condition()
        if value or time.monotonic() >= end:
            return value
        time.sleep(pause)


def read_text(path):
    try:
        with open(path, encoding="utf-8", errors="replace") as f:
            return f.read()
    except FileNotFoundError:
        return ""
