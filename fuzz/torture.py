#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs the program's commands on a database and kills them at every change of a file, fills the disk, lets
calls fail (all by strace) and runs two programs at once. After each run every piece of what the user has must
be the old or the new one, whole. Usage: torture.py PROGRAM [OPERATION [FAULT [CALL [NUMBER]]]]"""
import collections
import concurrent.futures
import contextlib
import glob
import os
import shutil
import sqlite3
import subprocess
import sys
import tempfile
import time

OPERATIONS = ["save", "replace", "restore", "backup", "export", "settings"]
FILES = ["out.backup", "out.csv", "kelvora_settings.ini"]
DATABASE = "ballbar_data.db"
CHANGES = ["pwrite64", "write", "fsync", "fdatasync", "ftruncate", "fallocate", "openat", "fchmod", "linkat",
           "unlink", "unlinkat", "rename", "renameat", "renameat2"]
# For each fault what strace does at a call, and the calls it is tried at.
FAULTS = {
    "kill": ("signal=KILL:when={}", CHANGES),
    "full": ("error=ENOSPC:when={}+", ["pwrite64", "write", "ftruncate", "fallocate"]),
    "error": ("error=EIO:when={}", CHANGES + ["pread64", "read", "close"]),
    "broken": ("error=EIO:when={}+", ["pread64", "read", "pwrite64", "write", "fsync", "fdatasync"]),
}
SET_SIZE = 12  # positions, as torture.cpp makes them
TWO_PROGRAMS = {
    "saves": ("saves one 200 1", "saves two 200 2"),
    "restores": ("restores 150 100", "saves one 1000000 1 5"),
}


def content(file):
    """All rows of a database; what a killed program left beside it is settled by the opening."""
    with contextlib.closing(sqlite3.connect(file)) as database:
        try:
            if database.execute("PRAGMA integrity_check").fetchall() != [("ok",)]:
                return "damaged"
            return {table: database.execute(f"SELECT * FROM {table}").fetchall()
                    for table in ("date", "time", "summary", "data")}
        except sqlite3.DatabaseError as error:
            return str(error)


def sets(rows):
    """The positions by date and time. Dates and times without any are nothing that could be lost."""
    found = collections.defaultdict(list)
    dates = dict(rows["date"])
    times = {time: (dates.get(date), text) for time, date, text in rows["time"]}
    for row in rows["data"]:
        found[times.get(row[1], "no time")].append(row[2:])
    return found


def pieces(folder, whole):
    """What must be old or new: the database (whole, or each set) and the other files."""
    rows = content(f"{folder}/{DATABASE}")
    found = {"database": rows} if whole or isinstance(rows, str) else dict(sets(rows))
    for name in FILES:
        with contextlib.suppress(FileNotFoundError), open(f"{folder}/{name}", "rb") as file:
            found[name] = file.read()
    return found


class Torture:
    def __init__(self, program, work, wanted):
        self.program = os.path.abspath(program)
        self.work = work
        self.wanted = wanted
        self.exceptions = 0
        self.base = self.prepare(f"{self.work}/base")
        self.old, self.new = {}, {}

    def wants(self, *point):
        return all(name == str(part) for name, part in zip(self.wanted, point))

    def start(self, folder, command, strace=(), output=subprocess.PIPE):
        environment = dict(os.environ, HOME=self.work, QT_QPA_PLATFORM="offscreen")
        return subprocess.Popen([*strace, self.program, *command.split()], cwd=folder, env=environment,
                                text=True, stdout=output, stderr=subprocess.DEVNULL)

    def run(self, folder, command, strace=()):
        """The last that the program said; nothing where it was killed."""
        process = self.start(folder, command, strace)
        try:
            lines = process.communicate(timeout=120)[0].splitlines()
        except subprocess.TimeoutExpired:
            process.kill()
            return "hangs"
        return lines[-1] if lines else ""

    @contextlib.contextmanager
    def copy(self, folder=None):
        """The base in a folder of its own."""
        with tempfile.TemporaryDirectory(dir=folder or self.work) as copy:
            yield shutil.copytree(self.base, copy, dirs_exist_ok=True)

    def prepare(self, base):
        """A database and the files that the commands read or replace; the backup holds other sets."""
        os.makedirs(f"{base}/kept")
        for shift, result in ((0.25, "in.backup"), (0.75, "out.backup")):
            with contextlib.suppress(FileNotFoundError):
                os.remove(f"{base}/{DATABASE}")
            for day in range(6):
                self.run(base, f"saves 2026-01-0{day + round(shift)} 10 {shift}")
            self.run(base, "backup")
            os.rename(f"{base}/out.backup", f"{base}/{result}")
        for name in ("out.backup", "out.csv"):
            shutil.copy(f"{base}/in.backup", f"{base}/{name}")
        self.run(base, "settings 0.125")
        return base

    def learn(self, operation):
        """Looks at what is there before and after the operation, done without any fault."""
        whole = operation == "restore"
        self.old[operation] = pieces(self.base, whole)
        with self.copy() as folder:
            said = self.run(folder, operation)
            self.new[operation] = pieces(folder, whole)
        if said != "done" or self.old[operation] == self.new[operation]:
            sys.exit(f"{operation} changes nothing: {said}")

    def points(self, operation, calls):
        """The calls, each with its number, that the operation makes in its folder."""
        numbers = collections.Counter()
        with self.copy() as folder:
            log = f"{folder}.log"
            names = ",".join("?" + call for call in calls)  # not every processor has them all
            self.run(folder, operation, ["strace", "-fyo", log, "-s", "4096", "-e", f"trace={names}"])
            with open(log, errors="replace") as lines:
                traced = [line.split(None, 1) for line in lines]
        for process, text in traced:
            call = text.split("(")[0]
            if process == traced[0][0] and call in calls:
                numbers[call] += 1
                if folder in text.replace(f"AT_FDCWD<{folder}>", ""):
                    yield call, numbers[call]

    def excused(self, name, found, operation, said):
        """What cannot be read is left out of the summary, and of a backup that says so."""
        if name == "out.csv" and found.get(name) == self.old[operation][name]:
            return True  # nothing to export
        known = self.new[operation][name].splitlines(keepends=True)
        lines = found.get(name, b"").splitlines(keepends=True)
        whole = lines[:1] == known[:1] and set(lines) <= set(known)
        return whole and (name == "out.csv" or said.startswith("failed: "))

    def complaints(self, folder, operation, said, call=None):
        """What is wrong in the folder after a run of the operation."""
        old, new, found = self.old[operation], self.new[operation], pieces(folder, operation == "restore")
        for name in FILES[:2] if call == "pread64" else ():
            if self.excused(name, found, operation, said):
                found[name] = new[name]
        bad = [f"{name} is neither old nor new" for name in {**old, **new, **found}
               if found.get(name) not in (old.get(name), new.get(name))]
        # Files that cannot be opened are to end a command in silence.
        if said == "done" and found != new and call != "openat":
            bad.append("said done, but it is not")
        if said == "failed: ":
            bad.append("failed without a word")
        bad += [f"{copy} is no copy of the old content" for copy in glob.glob(f"{folder}/ballbar_data_*.db")
                if content(copy) != content(f"{self.base}/{DATABASE}")]
        return bad

    def try_point(self, operation, fault, call, number):
        """None where the call was not met, else what is wrong."""
        with self.copy() as folder:
            log = f"{folder}.log"
            inject = f"inject={call}:{FAULTS[fault][0].format(number)}"
            said = self.run(folder, operation, ["strace", "-fo", log, "-e", f"trace={call}", "-e", inject])
            with open(log, errors="replace") as lines:
                met = "killed by SIGKILL" in lines.read() if fault == "kill" else "INJECTED" in lines.read()
            os.remove(log)
            bad = self.complaints(folder, operation, said, call)
        if fault != "kill" and said in ("", "hangs"):
            bad.append("the program hangs" if said else "the program crashed")
        return bad if met or bad else None

    def strace(self, operation, fault):
        points = [(operation, fault, *point) for point in self.points(operation, FAULTS[fault][1])]
        points = [point for point in points if self.wants(*point)]
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            self.report(operation, fault, zip(points, pool.map(lambda point: self.try_point(*point), points)))

    def fill(self, operation, disk):
        """Real small disks: from no free page up to as many as the operation needs."""
        successes = pages = 0
        while successes < 3:
            with self.copy(disk) as folder:
                used = os.statvfs(disk).f_blocks - os.statvfs(disk).f_bfree
                self.mount(disk, f"remount,nr_blocks={used + pages}")
                said = self.run(folder, operation) if self.wants(operation, "disk", "pages", pages) else ""
                self.mount(disk, "remount,nr_blocks=10000")
                successes += said in ("", "done") and self.complaints(folder, operation, "done") == []
                yield (operation, "disk", "pages", pages), self.complaints(folder, operation, said)
            pages += 1

    def mount(self, disk, options):
        return subprocess.run(["mount", "-t", "tmpfs", "-o", options, "torture", disk], check=False,
                              stderr=subprocess.DEVNULL).returncode == 0

    def disks(self, operation):
        disk = tempfile.mkdtemp(dir=self.work)
        if not self.mount(disk, "nr_blocks=10000"):
            print(f"{operation:10} {'disk':10} skipped: only root may mount small disks")
            return
        try:
            self.report(operation, "disk", self.fill(operation, disk))
        finally:
            subprocess.run(["umount", disk], check=True)

    def report(self, operation, fault, results):
        points = exceptions = 0
        for point, bad in results:
            points += bad is not None
            exceptions += bool(bad)
            for text in bad or []:
                print("  ", *point, ":", text)
        self.exceptions += exceptions
        print(f"{operation:10} {fault:10} {points:6} points {exceptions:6} exceptions", flush=True)

    def side_by_side(self, folder, commands):
        """What two programs said, line by line. The second ends when the first does."""
        outputs = [f"{folder}/said by {number}" for number in (0, 1)]
        with open(outputs[0], "w") as first, open(outputs[1], "w") as second:
            other = self.start(folder, commands[1], output=second)
            while os.path.getsize(outputs[1]) == 0 and other.poll() is None:
                time.sleep(0.01)
            self.start(folder, commands[0], output=first).wait()
            if "saves" not in commands[0]:
                other.kill()
            other.wait()
        for output in outputs:
            with open(output) as lines:
                yield [line.strip() for line in lines]

    def two_programs(self, name, commands):
        """Every set that a program was told is saved must be in the database or in one of its copies."""
        with self.copy() as folder:
            said = list(self.side_by_side(folder, commands))
            files = glob.glob(f"{folder}/kept/*") + glob.glob(f"{folder}/ballbar_data*.db")
            whole = {key for file in files for key, rows in sets(content(file)).items() if len(rows) == SET_SIZE}
        results = []
        for command, lines in zip(commands, said):
            done = [line.split()[0] for line in lines if line.endswith("done")]
            print(f"  {command}: {len(done)} of {len(lines)} done")
            starved = [] if 2 * len(done) > len(lines) else ["starved by the other program"]
            results.append((("two", name, command), starved))
            for number in done if "saves" in command else []:
                day = command.split()[1]
                lost = [] if (day, f"10:15:{number:0>4} AM") in whole else ["saved and lost"]
                results.append((("two", name, day, number), lost))
        self.report("two", name, results)

    def all(self):
        for operation in filter(self.wants, OPERATIONS):
            self.learn(operation)
            for fault in FAULTS:
                if self.wants(operation, fault):
                    self.strace(operation, fault)
            if self.wants(operation, "disk"):
                self.disks(operation)
        for name, commands in TWO_PROGRAMS.items():
            if self.wants("two", name):
                self.two_programs(name, commands)


def main():
    with tempfile.TemporaryDirectory(prefix="torture") as work:
        torture = Torture(sys.argv[1], os.path.realpath(work), sys.argv[2:])
        torture.all()
    print(f"{torture.exceptions} exceptions; run one again by  scripts/torture OPERATION FAULT CALL NUMBER")
    sys.exit(1 if torture.exceptions else 0)


if __name__ == "__main__":
    main()
