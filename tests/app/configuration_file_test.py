#!/usr/bin/python3
"""The configuration file "conf.db" as a user meets it: the program run with command files and its
own HOME, the file looked at with the sqlite3 tool and read by a decoder written here from the blob
format (a type word before every value, little endian)."""
import os
import shutil
import sqlite3
import struct
import subprocess
import sys
import tempfile
import time
import unittest

from program_test_support import read_text
from program_test_support import wait_until as wait_for

PROGRAM = None
DEADLINE = 60  # seconds: a loaded machine only makes a wait longer, never a test red
NOBODY = 65534


def wait_until(condition, seconds=DEADLINE, pause=0.05):
    return wait_for(condition, seconds, pause)


class Reader:
    """Reads the tagged values of one blob."""

    def __init__(self, data):
        self.data = data
        self.at = 0

    def tag(self):
        (value,) = struct.unpack_from("<I", self.data, self.at)
        self.at += 4
        return value

    def expect(self, wanted):
        got = self.tag()
        if got != wanted:
            raise ValueError("tag %d where %d was expected at %d" % (got, wanted, self.at - 4))

    def u64(self):
        self.expect(19)
        (value,) = struct.unpack_from("<Q", self.data, self.at)
        self.at += 8
        return value

    def number(self, tag, form):
        self.expect(tag)
        (value,) = struct.unpack_from(form, self.data, self.at)
        self.at += struct.calcsize(form)
        return value

    def raw_string(self):
        size = self.u64()
        text = self.data[self.at:self.at + size].decode("utf-8")
        self.at += size
        return text

    def string(self):
        self.expect(11)
        return self.raw_string()

    def vector(self, element_tag, form=None):
        self.expect(12)
        count = self.u64()
        self.expect(element_tag)
        if element_tag == 11:
            return [self.raw_string() for _ in range(count)]
        size = struct.calcsize(form)
        values = list(struct.unpack_from("<%d%s" % (count, form[-1]), self.data, self.at))
        self.at += size * count
        return values


def read_options(reader):
    options = {}
    for _ in range(reader.u64()):
        key = reader.string()
        strings = reader.vector(11)
        numbers = reader.vector(21, "<d")
        integers = reader.vector(17, "<q")
        options[key] = (strings, numbers, integers)
    return options


def read_main(blob):
    r = Reader(blob)
    fields = {"version": r.number(18, "<I"), "width": r.number(16, "<i"), "height": r.number(16, "<i"),
              "keys": r.vector(11), "colours": r.vector(18, "<I"), "files": r.vector(11)}
    for name in ("last_directory", "last_command_file_directory", "last_curve_style_file_directory",
                 "last_export_as_image_directory", "last_calculator_file"):
        fields[name] = r.string()
    fields["auto_reload"] = r.number(21, "<d")
    fields["message_time"] = r.number(21, "<d")
    fields["options"] = read_options(r)
    assert r.at == len(blob), "bytes left behind the record"
    return fields


def read_topic(blob, browser=False):
    r = Reader(blob)
    version = r.number(18, "<I")
    options = read_options(r)
    if browser and version >= 2:
        r.string()  # the browser's rules, a record of the browser's own
    assert r.at == len(blob)
    return options


def read_directory(blob, versioned=True):
    r = Reader(blob)
    r.expect(12)
    count = r.u64()
    r.expect(19)
    entries = []
    # Records in a vector: the tag of their first value once in the head, then each record whole.
    for _ in range(count):
        entries.append((r.u64(), r.number(18, "<I"), r.vector(11)))
    directory = {"entries": entries, "highest": r.u64()}
    if versioned:
        directory["version"] = r.u64()
    return directory


def read_file(path):
    """{type: blob} through the directory in row 4."""
    with sqlite3.connect(path) as db:
        rows = dict(db.execute("select id, data from perm_data"))
    directory = read_directory(rows[4])
    return {entry_type: rows[key] for key, entry_type, _ in directory["entries"]}, directory


def raw_rows(path):
    with sqlite3.connect(path) as db:
        return dict(db.execute("select id, data from perm_data"))


def all_options(path):
    blobs, _ = read_file(path)
    options = dict(read_main(blobs[3])["options"])
    options.update(read_topic(blobs[36]))
    options.update(read_topic(blobs[37], True))
    return options


class ConfigurationFile(unittest.TestCase):
    def setUp(self):
        self.work = tempfile.mkdtemp(prefix="zelwave-conf-")
        self.home = os.path.join(self.work, "home")
        os.mkdir(self.home)
        self.runs = 0

    def tearDown(self):
        shutil.rmtree(self.work, ignore_errors=True)

    def conf(self, home=None):
        return os.path.join(home or self.home, ".HarlanTessel", "conf.db")

    def start(self, commands, home=None, user=None):
        """Starts the program on a command file; returns the process and its log file."""
        self.runs += 1
        logs = os.path.join(self.work, "logs")
        os.makedirs(logs, exist_ok=True)
        os.chmod(logs, 0o777)
        command_file = os.path.join(logs, "run%d.cmd" % self.runs)
        with open(command_file, "w") as f:
            f.write(commands)
        log = os.path.join(logs, "run%d.log" % self.runs)
        env = dict(os.environ, QT_QPA_PLATFORM="offscreen", HOME=home or self.home,
                   XDG_RUNTIME_DIR=logs)
        argv = [PROGRAM, "--log", log, "7", "--command_file", command_file]
        if user is not None:
            argv = ["setpriv", "--reuid=%d" % user, "--regid=%d" % user, "--clear-groups"] + argv
        process = subprocess.Popen(argv, cwd=logs, env=env, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL)
        return process, log

    def run_program(self, commands, home=None, user=None):
        process, log = self.start(commands, home, user)
        self.assertEqual(process.wait(timeout=240), 0)
        return read_text(log)

    def as_nobody(self):
        """Root ignores file modes: the unwritable cases run as another user then."""
        return NOBODY if os.geteuid() == 0 else None

    def test_option_saved_kept_over_a_restart_and_shown_by_sqlite3(self):
        log = self.run_program("set_option fft_parameter_nb_time_samples 2048\n"
                               "set_option schematic_mapping_top_spice top.x1\n"
                               "set_option browser_use_full_hierarchical_names 1\n"
                               "save_configuration_file\nclose\n")
        conf = self.conf()
        self.assertIn("Could not load configuration at %s." % conf, log)
        self.assertIn("Saved configuration to %s." % conf, log)
        schema = subprocess.run(["sqlite3", conf, ".schema"], capture_output=True, text=True, check=True).stdout
        self.assertIn("CREATE TABLE tmp_data(id INTEGER PRIMARY KEY, data BLOB);", schema)
        self.assertIn("CREATE TABLE perm_data(id INTEGER PRIMARY KEY, data BLOB);", schema)
        ids = subprocess.run(["sqlite3", conf, "select id from perm_data order by id"], capture_output=True,
                             text=True, check=True).stdout.split()
        self.assertEqual(ids[:2], ["2", "4"])

        blobs, directory = read_file(conf)
        self.assertEqual(sorted(blobs), [3, 36, 37])
        self.assertEqual(directory["version"], 1)
        main = read_main(blobs[3])
        self.assertEqual(len(main["keys"]), 33)
        self.assertEqual(main["keys"][14], "+")
        self.assertEqual(len(main["colours"]), 19)
        self.assertEqual(main["options"]["schematic_mapping_top_spice"][0], ["top.x1"])
        self.assertEqual(read_topic(blobs[36])["fft_parameter_nb_time_samples"][1], [2048.0])
        self.assertEqual(read_topic(blobs[37], True)["browser_use_full_hierarchical_names"][1], [1.0])

        # The next run starts from the file: what it writes elsewhere holds the values of the first run.
        copy = os.path.join(self.work, "copy.db")
        log = self.run_program("save_configuration_file %s\nclose\n" % copy)
        self.assertIn("Loaded post process configuration from %s." % conf, log)
        self.assertNotIn("Could not load", log)
        options = all_options(copy)
        self.assertEqual(options["fft_parameter_nb_time_samples"][1], [2048.0])
        self.assertEqual(options["schematic_mapping_top_spice"][0], ["top.x1"])

    def test_a_change_is_written_after_a_second_of_quiet(self):
        self.run_program("save_configuration_file\nclose\n")
        # The program waits long after the change: the file must have it before the program ends.
        process, log = self.start("set_option time_zone CET\nwait 30\nclose\n")
        try:
            def written():
                try:
                    return all_options(self.conf())["time_zone"][0] == ["CET"]
                except (sqlite3.Error, KeyError, ValueError):
                    return False
            self.assertTrue(wait_until(written), read_text(log))
            self.assertIsNone(process.poll(), "written while running, not at the exit")
        finally:
            process.kill()
            process.wait()

    def test_damaged_blob_gives_a_partial_load_and_defaults_for_the_rest(self):
        self.run_program("set_option schematic_mapping_top_spice top.x1\n"
                         "set_option fft_parameter_nb_time_samples 512\nsave_configuration_file\nclose\n")
        conf = self.conf()
        blobs, directory = read_file(conf)
        main = bytearray(blobs[3])
        # The window width goes to 1234, then the tag of the list of last opened files is broken.
        width_at = 4 + 4 + 4
        self.assertEqual(struct.unpack_from("<I", main, width_at - 4)[0], 16)
        struct.pack_into("<i", main, width_at, 1234)
        r = Reader(bytes(main))
        r.at = 8 + 16
        r.vector(11)
        r.vector(18, "<I")
        struct.pack_into("<I", main, r.at, 99)
        key = [k for k, t, _ in directory["entries"] if t == 3][0]
        with sqlite3.connect(conf) as db:
            db.execute("update perm_data set data=? where id=?", (bytes(main), key))

        copy = os.path.join(self.work, "copy.db")
        log = self.run_program("save_configuration_file %s\nclose\n" % copy)
        self.assertIn("Loaded PARTIAL configuration from %s." % conf, log)
        self.assertIn("Loaded post process configuration from %s." % conf, log)
        blobs_copy, _ = read_file(copy)
        main_copy = read_main(blobs_copy[3])
        self.assertEqual(main_copy["width"], 1234, "read before the damage")
        self.assertEqual(main_copy["options"]["schematic_mapping_top_spice"][0], [""], "after it: the default")
        self.assertEqual(read_topic(blobs_copy[36])["fft_parameter_nb_time_samples"][1], [512.0],
                         "another topic is not touched by the damage")

    def test_rows_of_unknown_types_survive_a_save(self):
        self.run_program("save_configuration_file\nclose\n")
        conf = self.conf()
        blobs, directory = read_file(conf)
        with sqlite3.connect(conf) as db:
            rows = dict(db.execute("select id, data from perm_data"))
        # A row of a type this version does not know, entered in the directory by hand.
        entries = directory["entries"] + [(99, 999, ["from a later version"])]
        out = bytearray()

        def tag(t):
            out.extend(struct.pack("<I", t))

        def u64(v):
            tag(19)
            out.extend(struct.pack("<Q", v))
        tag(12)
        u64(len(entries))
        tag(19)
        for key, entry_type, strings in entries:
            u64(key)
            tag(18)
            out.extend(struct.pack("<I", entry_type))
            tag(12)
            u64(len(strings))
            tag(11)
            for s in strings:
                u64(len(s))
                out.extend(s.encode())
        u64(99)
        u64(directory["version"])
        tag(12)
        u64(0)
        tag(19)
        with sqlite3.connect(conf) as db:
            db.execute("update perm_data set data=? where id=4", (bytes(out),))
            db.execute("insert into perm_data (id, data) values (99, ?)", (b"opaque",))
        log = self.run_program("set_option time_zone CET\nsave_configuration_file\nclose\n")
        self.assertIn("Saved configuration to", log)
        blobs, directory = read_file(conf)
        self.assertEqual(blobs[999], b"opaque")
        self.assertEqual(read_main(blobs[3])["options"]["time_zone"][0], ["CET"])
        self.assertGreater(directory["highest"], 99 - 1)
        self.assertNotIn(99, [k for k, t, _ in directory["entries"] if t != 999], "no row handed out twice")

    def test_a_file_that_is_not_sqlite_is_left_alone(self):
        conf = self.conf()
        os.makedirs(os.path.dirname(conf))
        junk = b"my notes, not a data base\n" * 100
        with open(conf, "wb") as f:
            f.write(junk)
        log = self.run_program("set_option time_zone CET\nwait 2.5\nclose\n")
        self.assertIn("Could not load configuration at %s." % conf, log)
        self.assertIn("The configuration file was not loaded at startup: it is not overwritten.", log)
        with open(conf, "rb") as f:
            self.assertEqual(f.read(), junk)
        # Asked for explicitly, the save is tried and fails on the file, which stays as it was.
        log = self.run_program("save_configuration_file\nclose\n")
        self.assertIn("Could not save configuration to %s." % conf, log)
        with open(conf, "rb") as f:
            self.assertEqual(f.read(), junk)

    def test_a_locked_file_gives_defaults_and_is_not_overwritten(self):
        self.run_program("set_option time_zone CET\nsave_configuration_file\nclose\n")
        conf = self.conf()
        before = raw_rows(conf)
        holder = sqlite3.connect(conf, isolation_level=None)
        holder.execute("BEGIN EXCLUSIVE")
        try:
            log = self.run_program("set_option time_zone EST\nclose\n")
        finally:
            holder.execute("COMMIT")
            holder.close()
        self.assertIn("Could not load configuration at %s." % conf, log)
        self.assertIn("The configuration file was not loaded at startup: it is not overwritten.", log)
        self.assertEqual(raw_rows(conf), before)

    def test_a_lock_released_soon_after_the_start_is_waited_for(self):
        self.run_program("set_option time_zone CET\nsave_configuration_file\nclose\n")
        conf = self.conf()
        holder = sqlite3.connect(conf, isolation_level=None)
        holder.execute("BEGIN EXCLUSIVE")
        process, log = self.start("wait 30\nclose\n")
        try:
            self.assertTrue(wait_until(lambda: "Could not load configuration at" in read_text(log)))
            holder.execute("COMMIT")
            holder.close()
            holder = None
            self.assertTrue(wait_until(lambda: "Loaded configuration from %s." % conf in read_text(log)),
                            read_text(log))
        finally:
            if holder:
                holder.close()
            process.kill()
            process.wait()

    def test_read_only_file_and_read_only_home(self):
        user = self.as_nobody()
        os.chmod(self.work, 0o755)
        self.run_program("set_option time_zone CET\nsave_configuration_file\nclose\n")
        conf = self.conf()
        os.chmod(conf, 0o444)
        os.chmod(self.home, 0o555)
        os.chmod(os.path.dirname(conf), 0o555)
        before = raw_rows(conf)
        log = self.run_program("set_option time_zone EST\nsave_configuration_file\nclose\n", user=user)
        self.assertIn("Loaded post process configuration from %s." % conf, log)
        self.assertIn("Could not save configuration to %s." % conf, log)
        self.assertEqual(raw_rows(conf), before)

        # A HOME where nothing can be made: the program starts with defaults all the same.
        empty_home = os.path.join(self.work, "empty-home")
        os.mkdir(empty_home, 0o555)
        os.chmod(empty_home, 0o555)
        log = self.run_program("set_option time_zone EST\nsave_configuration_file\nclose\n", home=empty_home,
                               user=user)
        self.assertIn("Could not load configuration at %s." % self.conf(empty_home), log)
        self.assertIn("Could not save configuration to %s." % self.conf(empty_home), log)
        self.assertEqual(os.listdir(empty_home), [])
        os.chmod(self.home, 0o755)
        os.chmod(os.path.dirname(conf), 0o755)

    def test_a_home_that_does_not_exist(self):
        missing = os.path.join(self.work, "no-such-home")
        log = self.run_program("set_option time_zone EST\nsave_configuration_file\nclose\n", home=missing)
        self.assertIn("Could not load configuration at %s." % self.conf(missing), log)
        self.assertIn("The folder \"%s\" does not exist." % missing, log)
        self.assertIn("Could not save configuration to %s." % self.conf(missing), log)
        self.assertFalse(os.path.exists(missing), "a missing HOME is not made")

    def test_the_config_folder_is_used_when_there_is_one(self):
        os.mkdir(os.path.join(self.home, ".config"))
        log = self.run_program("save_configuration_file\nclose\n")
        conf = os.path.join(self.home, ".config", "HarlanTessel", "conf.db")
        self.assertIn("Saved configuration to %s." % conf, log)
        self.assertTrue(os.path.exists(conf))

    def test_two_instances_saving_at_once_keep_both_changes(self):
        self.run_program("set_option time_zone CET\nsave_configuration_file\nclose\n")
        # The first holds its change while the second reads, changes and saves; the first saves last.
        first, first_log = self.start("set_option fft_parameter_nb_time_samples 4096\nwait 10\n"
                                      "save_configuration_file\nclose\n")
        self.assertTrue(wait_until(lambda: "Reading command file" in read_text(first_log)))
        second, second_log = self.start("set_option schematic_mapping_top_spice top.second\n"
                                        "save_configuration_file\nclose\n")
        self.assertEqual(second.wait(timeout=240), 0)
        first_still_waiting = first.poll() is None
        self.assertEqual(first.wait(timeout=240), 0)
        options = all_options(self.conf())
        logs = read_text(first_log) + read_text(second_log)
        self.assertEqual(options["fft_parameter_nb_time_samples"][1], [4096.0], logs)
        self.assertEqual(options["schematic_mapping_top_spice"][0], ["top.second"], logs)
        self.assertEqual(options["time_zone"][0], ["CET"])
        if first_still_waiting:
            # It read the file before the second saved and writes after it: it must have merged.
            self.assertIn("was changed by another instance", read_text(first_log))

        # Both at once, without waits: whatever the order, neither change is lost.
        a, _ = self.start("set_option utc_offset 2\nsave_configuration_file\nclose\n")
        b, _ = self.start("set_option time_zone JST\nsave_configuration_file\nclose\n")
        self.assertEqual(a.wait(timeout=240), 0)
        self.assertEqual(b.wait(timeout=240), 0)
        options = all_options(self.conf())
        self.assertEqual(options["utc_offset"][1], [2.0])
        self.assertEqual(options["time_zone"][0], ["JST"])
        self.assertEqual(options["schematic_mapping_top_spice"][0], ["top.second"])

    def test_opened_files_are_remembered_most_recent_first(self):
        names = []
        for i in range(3):
            name = os.path.join(self.work, "wave%d.csv" % i)
            with open(name, "w") as f:
                f.write("time,v\n0,%d\n1,%d\n" % (i, i + 1))
            names.append(name)
        commands = "".join('open_file "%s"\n' % n for n in names + [names[0]])
        log = self.run_program(commands + 'open_file "%s"\nsave_configuration_file\nclose\n'
                               % os.path.join(self.work, "missing.csv"))
        files = read_main(read_file(self.conf())[0][3])["files"]
        self.assertEqual(files, [names[0], names[2], names[1]], log)

    def test_read_and_name_commands(self):
        other = os.path.join(self.work, "other.db")
        self.run_program("set_option time_zone JST\nsave_configuration_file %s\nclose\n" % other)
        self.assertEqual(all_options(other)["time_zone"][0], ["JST"])
        missing = os.path.join(self.work, "missing.db")
        log = self.run_program("read_configuration_file %s\nread_configuration_file %s\n"
                               "set_option fft_parameter_nb_time_samples 256\nclose\n" % (missing, other))
        self.assertIn("The configuration file \"%s\" could not be loaded." % missing, log)
        # The file read becomes the one that the exit writes.
        options = all_options(other)
        self.assertEqual(options["fft_parameter_nb_time_samples"][1], [256.0], log)
        self.assertEqual(options["time_zone"][0], ["JST"])


if __name__ == "__main__":
    PROGRAM = sys.argv.pop(1)
    unittest.main(verbosity=2)
