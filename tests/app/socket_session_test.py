#!/usr/bin/python3
"""The interactive socket as a listening tool sees it: the viewer connects to us, says it is
ready, and answers every command line with "0", "1" or "2" and its values."""
import csv
import math
import os
import socket
import subprocess
import sys
import tempfile
import time
import unittest

from program_test_support import read_text
from program_test_support import wait_until as wait_for

PROGRAM = None
DEADLINE = 30  # seconds: a loaded machine only makes a wait longer, never a test red


def wait_until(condition, seconds=DEADLINE, pause=0.02):
    return wait_for(condition, seconds, pause)


class Peer:
    """A listening tool with one viewer connected to it."""

    def __init__(self, workdir, extra=()):
        self.listener = socket.socket(socket.AF_INET, socket.SOCK_STREAM)
        self.listener.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        self.listener.bind(("127.0.0.1", 0))
        self.listener.listen(1)
        self.listener.settimeout(DEADLINE)
        port = self.listener.getsockname()[1]
        self.log = os.path.join(workdir, "session.log")
        env = dict(os.environ, QT_QPA_PLATFORM="offscreen", HOME=workdir)
        self.process = subprocess.Popen(
            [PROGRAM, "--socket", "127.0.0.1", str(port), "--log", self.log, "6", *extra],
            cwd=workdir, env=env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.connection, _ = self.listener.accept()
        self.connection.settimeout(DEADLINE)
        # Each send goes out as it is made, so that a line sent in pieces arrives in pieces.
        self.connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        self.pending = b""

    def line(self):
        while b"\n" not in self.pending:
            chunk = self.connection.recv(65536)
            if not chunk:
                raise EOFError("the viewer closed the socket")
            self.pending += chunk
        line, self.pending = self.pending.split(b"\n", 1)
        return line.decode()

    def ask(self, command):
        self.connection.sendall(command.encode() + b"\n")
        return self.line()

    def log_text(self):
        return read_text(self.log)

    def wait_for_log(self, text, seconds=DEADLINE):
        return wait_until(lambda: text in self.log_text(), seconds)

    def close(self):
        try:
            self.connection.close()
        finally:
            self.listener.close()
            if self.process.poll() is None:
                self.process.terminate()
                try:
                    self.process.wait(10)
                except subprocess.TimeoutExpired:
                    self.process.kill()


class SocketSession(unittest.TestCase):
    def setUp(self):
        self.dir = tempfile.TemporaryDirectory(prefix="zelwave-socket-")
        self.peer = Peer(self.dir.name)
        self.assertEqual(self.peer.line(), "0", "the ready line comes first")

    def tearDown(self):
        self.peer.close()
        self.dir.cleanup()

    def path(self, name):
        return os.path.join(self.dir.name, name)

    def assertRunsOn(self, peer):
        # An exit would come right after the socket closed: a second of watching sees it. On a
        # slow machine this can only miss a wrong exit, never fail a right one.
        with self.assertRaises(subprocess.TimeoutExpired, msg="the program runs on"):
            peer.process.wait(1.0)

    def write(self, name, text):
        with open(self.path(name), "w") as f:
            f.write(text)

    def test_commands_and_replies(self):
        p = self.peer
        self.assertEqual(p.ask("add_section tran"), "0")
        self.assertEqual(p.ask("add_curve tran v(out) 0 V s 0 0 1e-9 1"), "0")
        self.assertEqual(p.ask("get_number_of_sections"), '0 "1"')
        self.assertEqual(p.ask("get_curve_name tran 0"), '0 "v(out)"')
        self.assertEqual(p.ask("help wait").split(" ", 1)[0], "0")
        self.assertEqual(p.ask("no_such_command"), "1", "a bad command fails, the session goes on")
        self.assertEqual(p.ask("get_curve_name tran x"), "1")
        self.assertEqual(p.ask(""), "0", "an empty line is an empty command")
        # A value with a quote stays on one line.
        self.assertEqual(p.ask('add_section \\"odd\\"name'), "0")
        self.assertEqual(p.ask("get_section_name 1"), '0 "\\"odd\\"name"')
        # wait holds the queue: what follows is queued, and runs when the wait is over.
        self.assertEqual(p.ask("wait 0.2"), "0")
        self.assertEqual(p.ask("add_section later"), "2")
        # Asked again until the wait is over: "2" while queued, then the count with "later" in it.
        answer = wait_until(lambda: (lambda reply: reply if reply != "2" else None)(p.ask("get_number_of_sections")))
        self.assertEqual(answer, '0 "3"')

    def test_queue_waits_for_files_and_plots(self):
        p = self.peer
        # The hold of a wait: a plot asked for meanwhile is queued, and made when the wait ends.
        self.assertEqual(p.ask("wait 2"), "0")
        self.assertEqual(p.ask("add_plot p1 analog 1 1"), "2")
        self.assertEqual(p.ask("get_status"), "2")
        answer = wait_until(lambda: (lambda reply: reply if reply != "2" else None)(p.ask("clear_plot p1")))
        self.assertEqual(answer, "0", "the plot exists")
        # A file loads in the background; a curve for the plot waits for it when it is not there yet.
        rows = "".join("%d,%d\n" % (i, i % 5) for i in range(200000))
        self.write("big.csv", "time,v\n" + rows)
        self.assertEqual(p.ask('open_file "%s"' % self.path("big.csv")), "2")
        self.assertIn(p.ask("add_curve_to_plot_by_name p1 big.csv v 0"), ("0", "2"))
        answer = wait_until(lambda: (lambda reply: reply if reply != "2" else None)(p.ask("get_status")))
        self.assertEqual(answer, "0")
        self.assertEqual(p.ask("get_number_of_sections"), '0 "1"')
        self.assertIn('Successfully parsed file "%s".' % self.path("big.csv"), p.log_text())
        # A second open of the same file adds nothing.
        self.assertEqual(p.ask('open_file "%s"' % self.path("big.csv")), "2")
        self.assertTrue(p.wait_for_log('The file "%s" has already been opened.' % self.path("big.csv")))
        wait_until(lambda: p.ask("get_status") != "2")
        self.assertEqual(p.ask("get_number_of_sections"), '0 "1"')

    def test_segments(self):
        p = self.peer
        p.connection.sendall(b"add_section a\nget_number_of_sections\nget_section_name 0\n")
        self.assertEqual([p.line(), p.line(), p.line()], ["0", '0 "1"', '0 "a"'], "replies in order")
        p.connection.sendall(b"get_number_")
        p.connection.sendall(b"of_sections\n")
        self.assertEqual(p.line(), '0 "1"', "a line sent in two pieces is joined")
        p.connection.sendall(b"\x00\xff\xfe binary \x01\x02\n")
        self.assertEqual(p.line(), "1", "garbage is a bad command")
        # Ten megabytes in one line are one bad command; the session goes on.
        p.connection.sendall(b"x" * (10 << 20) + b"\nget_number_of_sections\n")
        self.assertEqual([p.line(), p.line()], ["1", '0 "1"'])
        # A line longer than the bound is dropped; its end is answered with a failure.
        p.connection.sendall(b"y" * (20 << 20))
        p.connection.sendall(b"\nget_number_of_sections\n")
        self.assertEqual([p.line(), p.line()], ["1", '0 "1"'])
        self.assertTrue(p.wait_for_log("was dropped."))
        self.assertLess(os.path.getsize(p.log), 1 << 20, "the log stays small")
        self.assertEqual(p.ask("get_section_name 0"), '0 "a"', "the store is untouched")

    def test_shutdown_leaves_the_program_running(self):
        p = self.peer
        self.assertEqual(p.ask("add_section kept"), "0")
        self.assertEqual(p.ask("shut_down_interactive_socket"), "0")
        self.assertEqual(p.connection.recv(16), b"", "the viewer closes the socket")
        self.assertRunsOn(p)

    def test_a_silent_peer_costs_nothing(self):
        p = self.peer
        # The silence is the input here, not a wait: five read timeouts of the viewer go by.
        time.sleep(1.0)
        self.assertIsNone(p.process.poll())
        self.assertEqual(p.ask("get_number_of_sections"), '0 "0"')
        self.assertNotIn(" - E - ", p.log_text(), "waiting is not an error")

    def test_peer_vanishing_mid_line(self):
        p = self.peer
        self.assertEqual(p.ask("add_section kept"), "0")
        p.connection.sendall(b"get_numb")
        p.connection.close()
        self.assertTrue(p.wait_for_log("Interactive Mode: Socket read error."), p.log_text())
        self.assertTrue(p.wait_for_log("Exitting interactive socket mode."))
        self.assertRunsOn(p)

    def test_peer_vanishing_mid_reply(self):
        # A reply of 8 MB is far more than the socket buffers hold: the peer that closed right
        # after asking is gone while the viewer still writes. No SIGPIPE, a message, and it runs on.
        p = self.peer
        name = "n" * (8 << 20)
        self.assertEqual(p.ask("add_section " + name), "0")
        self.assertEqual(p.ask("add_section kept"), "0")
        p.connection.sendall(b"get_section_name 0\n")
        p.connection.close()
        self.assertTrue(p.wait_for_log("Interactive Mode: Socket write error."), p.log_text()[-2000:])
        self.assertTrue(p.wait_for_log("Exitting interactive socket mode."))
        self.assertIn("send() transmitted only", p.log_text(), "the log tells how far the reply went")
        self.assertRunsOn(p)

    def test_ten_megabyte_command_line(self):
        # A script that sends one runaway line: it is read whole and answered, and what was
        # loaded before is still there.
        p = self.peer
        self.assertEqual(p.ask("add_section kept"), "0")
        self.assertEqual(p.ask("add_curve kept v 0 V s 0 0 1 1"), "0")
        points = (10 << 20) // 8
        values = " ".join("%d %d.5" % (i, i % 7) for i in range(2, points))
        self.assertGreater(len(values), 10 << 20)
        self.assertEqual(p.ask("add_points kept v " + values), "0")
        self.assertEqual(p.ask("get_number_of_sections"), '0 "1"')
        self.assertEqual(p.ask("get_curve_name kept 0"), '0 "v"')
        self.assertIsNone(p.process.poll())

    def test_command_files_nest_and_record(self):
        p = self.peer
        os.mkdir(self.path("sub"))
        self.write("sub/inner.cmd", "add_section inner\nadd_curve inner i(r1) 0 A s 0 0 1 1\n")
        self.write("outer.cmd",
                   "add_section outer\n"
                   "execute_command_file sub/inner.cmd\n"
                   "execute_command_file outer.cmd\n"
                   "not_a_command\n"
                   "get_number_of_sections\n")
        self.assertEqual(p.ask("register_command_file rec.cmd"), "0")
        self.assertEqual(p.ask("execute_command_file outer.cmd"), "1",
                         "the file ran to its end; a failing line (and the refused self call) makes it 1")
        self.assertEqual(p.ask("unregister_command_file rec.cmd"), "0")
        self.assertEqual(p.ask("get_number_of_sections"), '0 "2"')
        self.assertIn("has already been executed", p.log_text())
        with open(self.path("rec.cmd")) as f:
            recorded = f.read().splitlines()
        self.assertEqual(recorded[0], "# zelwave command file, automatically generated by zelwave")
        commands = [line for line in recorded if not line.startswith("#")]
        self.assertEqual(commands, ["add_section outer", "add_section inner",
                                    "add_curve inner i(r1) 0 A s 0 0 1 1", "get_number_of_sections"],
                         "what is performed is recorded; a line that does not parse is not")
        self.assertTrue(any(line.startswith("# Reading command file") for line in recorded))
        # The recording repeats the session.
        self.assertEqual(p.ask("close_all"), "0")
        self.assertEqual(p.ask("execute_command_file rec.cmd"), "0")
        self.assertEqual(p.ask("get_number_of_sections"), '0 "2"')
        self.assertEqual(p.ask("get_curve_name inner 0"), '0 "i(r1)"')

    def test_compare_csv_files(self):
        p = self.peer
        header = ["time", "v(a, b)", "note"]
        rows = [[0.0, 1.0, "plain"], [1e-9, 0.0, 'say "hi"'], [2e-9, 1e20, "a;b, c"], [3e-9, -2.5, "tab\there"]]

        def write(name, table, **style):
            with open(self.path(name), "w", newline="") as f:
                csv.writer(f, **style).writerows(table)

        def first_difference(a, b):
            """Python's csv module and math.isclose: None when the files agree, else a message."""
            with open(self.path(a), newline="") as f:
                left = list(csv.reader(f, delimiter=sniff(a)))
            with open(self.path(b), newline="") as f:
                right = list(csv.reader(f, delimiter=sniff(b)))
            if len(left) != len(right):
                return "The files have a different number of lines."
            for number, (x, y) in enumerate(zip(left, right), 1):
                if len(x) != len(y):
                    return "Line %d has a different number of columns." % number
                for column, (u, v) in enumerate(zip(x, y), 1):
                    if u.strip() == v.strip():
                        continue
                    try:
                        if math.isclose(float(u), float(v), rel_tol=1e-9, abs_tol=1e-10):
                            continue
                    except ValueError:
                        pass
                    return 'Line %d, column %d: "%s" differs from "%s".' % (number, column, u.strip(), v.strip())
            return None

        def sniff(name):
            with open(self.path(name)) as f:
                return ";" if f.readline().count(";") > 1 else ","

        write("a.csv", [header] + rows)
        # The same table quoted throughout, with noise below the tolerances: relative 1e-9, and
        # 1e-10 absolute around zero.
        noisy = [[r[0] * (1 + 1e-12), r[1] + (5e-11 if r[1] == 0 else r[1] * 3e-10), r[2]] for r in rows]
        write("same.csv", [header] + noisy, quoting=csv.QUOTE_ALL, lineterminator="\r\n")
        write("semicolon.csv", [header] + rows, delimiter=";")
        far = [list(r) for r in rows]
        far[2][1] = 1e20 * (1 + 1e-6)
        write("far.csv", [header] + far)
        quote = [list(r) for r in rows]
        quote[1][2] = "say hi"
        write("quote.csv", [header] + quote)
        write("wide.csv", [header] + rows[:2] + [rows[2] + [7]] + rows[3:])
        write("long.csv", [header] + rows + [rows[0]])
        for other, same in (("same.csv", True), ("semicolon.csv", True), ("far.csv", False),
                            ("quote.csv", False), ("wide.csv", False), ("long.csv", False)):
            expected = first_difference("a.csv", other)
            self.assertEqual(expected is None, same, "the oracle agrees with the case: %s" % other)
            answer = p.ask('compare_csv_files "%s" "%s"' % (self.path("a.csv"), self.path(other)))
            self.assertEqual(answer, "0" if same else "1", other)
            if same:
                self.assertTrue(p.wait_for_log('File comparison for "%s" succeeded.' % self.path("a.csv")))
            else:
                self.assertTrue(p.wait_for_log(expected), "%s: %s\n%s" % (other, expected, p.log_text()))
        self.assertEqual(p.ask('compare_csv_files "%s" "%s"' % (self.path("a.csv"), self.path("none.csv"))), "1")
        self.assertTrue(p.wait_for_log('Could not open "%s".' % self.path("none.csv")))

    def test_recording_limit(self):
        p = self.peer
        for i in range(10):
            self.assertEqual(p.ask("register_command_file rec%d.cmd" % i), "0")
        self.assertEqual(p.ask("register_command_file rec10.cmd"), "1")
        self.assertIn("Not more than 10 command files can be generated at the same time.", p.log_text())
        self.assertEqual(p.ask("add_section s"), "0")
        for i in range(10):
            self.assertEqual(p.ask("unregister_command_file rec%d.cmd" % i), "0")
            with open(self.path("rec%d.cmd" % i)) as f:
                self.assertIn("add_section s", f.read().splitlines())
        self.assertFalse(os.path.exists(self.path("rec10.cmd")))


class Connecting(unittest.TestCase):
    def test_retries_until_the_peer_listens(self):
        with tempfile.TemporaryDirectory(prefix="zelwave-socket-") as workdir:
            probe = socket.socket()
            probe.bind(("127.0.0.1", 0))
            port = probe.getsockname()[1]
            probe.close()
            env = dict(os.environ, QT_QPA_PLATFORM="offscreen", HOME=workdir)
            log = os.path.join(workdir, "connect.log")
            process = subprocess.Popen([PROGRAM, "--socket", "localhost", str(port), "--log", log],
                                       cwd=workdir, env=env, stdout=subprocess.DEVNULL,
                                       stderr=subprocess.DEVNULL)
            try:
                failed = "Interactive Mode: Failed to connect to socket ( ip = localhost"
                self.assertTrue(wait_until(lambda: failed in read_text(log)), read_text(log))
                listener = socket.socket()
                listener.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
                listener.bind(("127.0.0.1", port))
                listener.listen(1)
                listener.settimeout(DEADLINE)
                connection, _ = listener.accept()
                connection.settimeout(DEADLINE)
                self.assertEqual(connection.recv(16), b"0\n")
                connection.sendall(b"get_number_of_sections\n")
                self.assertEqual(connection.recv(64), b'0 "0"\n')
                connection.close()
                listener.close()
            finally:
                process.terminate()
                process.wait(10)


if __name__ == "__main__":
    PROGRAM = sys.argv.pop(1)
    unittest.main(verbosity=2)
