#!/usr/bin/python3
"""Round trips of get_number_of_sections over loopback, as a listening tool drives the viewer.

Baseline, in the same run: the same listening tool talking to a plain Python echo client, so the
figure shows what the viewer adds to a round trip (parsing, the bridge to the main thread, the reply).
Prints: socket_round_trip: <n> commands/s; baseline: <n> round trips/s (python echo); ratio: <r>
"""
import os
import socket
import statistics
import subprocess
import sys
import tempfile
import time

ECHO = r"""
import socket, sys
s = socket.create_connection(("127.0.0.1", int(sys.argv[1])))
s.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
s.sendall(b"0\n")
f = s.makefile("rb")
for line in f:
    s.sendall(b'0 "1"\n')
"""


def drive(connection, count):
    """Sends count commands one at a time, each after the previous reply; returns seconds."""
    connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
    reader = connection.makefile("rb")
    assert reader.readline() == b"0\n", "no ready line"
    command = b"get_number_of_sections\n"
    start = time.perf_counter()
    for _ in range(count):
        connection.sendall(command)
        if not reader.readline().startswith(b"0"):
            raise RuntimeError("unexpected reply")
    return time.perf_counter() - start


def session(argv_for_port, count):
    listener = socket.socket()
    listener.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
    listener.bind(("127.0.0.1", 0))
    listener.listen(1)
    port = listener.getsockname()[1]
    process = subprocess.Popen(argv_for_port(port), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                               env=dict(os.environ, QT_QPA_PLATFORM="offscreen"),
                               cwd=tempfile.gettempdir())
    try:
        connection, _ = listener.accept()
        seconds = drive(connection, count)
        connection.close()
        return seconds
    finally:
        listener.close()
        process.terminate()
        process.wait(10)


def main():
    program = sys.argv[1]
    count = int(sys.argv[2]) if len(sys.argv) > 2 else 20000
    rounds = 5
    viewer, echo = [], []
    for _ in range(rounds):
        viewer.append(count / session(lambda port: [program, "--socket", "127.0.0.1", str(port), "-s"], count))
        echo.append(count / session(lambda port: [sys.executable, "-c", ECHO, str(port)], count))
    v, e = statistics.median(viewer), statistics.median(echo)
    print("socket_round_trip: %.0f commands/s; baseline: %.0f round trips/s (python echo); ratio: %.3f" % (v, e, v / e))


if __name__ == "__main__":
    main()
