#!/usr/bin/env python3
"""Kills a process with SIGKILL while it saves files, and makes its system calls fail: each file must be the old one or
the new one. Prints one line with the figures; ends with 1 where a file was neither.
"""
import argparse
import collections
import errno
import json
import os
import pathlib
import random
import subprocess
import sys
import tempfile
import time

REPLACED = ["presets", "history"]
figures = collections.Counter()


def saved(number):
    """What WritingProcess.cpp saves for the `number`th time."""
    return f"{number}\n{chr(ord('a') + number % 26) * (number * 7919 % 200_000)}\n{number}"


def entry(number):
    return f"{number} {'j' * (number * 31 % 500)}\n"


class Folder:
    """The files on the disk, saved `number` times."""

    def __init__(self, path, number):
        self.path = pathlib.Path(path)
        for name in REPLACED:
            (self.path / name).write_text(saved(number))
        (self.path / "defaults.json").write_text(json.dumps({"count": number}))

    def content(self, name):
        path = self.path / name
        return path.read_text("latin-1") if path.exists() else ""

    def count(self):
        """Of the settings; -1 where they are torn."""
        try:
            return json.loads(self.content("defaults.json"))["count"]
        except (ValueError, KeyError, TypeError):
            return -1


class Report:
    """What a writing process has said up to its end. It is killed so many seconds behind its first word."""

    def __init__(self, folder, arguments, environment, delay=None):
        process = subprocess.Popen([options.build / "bin/writing-process", folder.path, *map(str, arguments)],
                                   env=os.environ | environment, stdout=subprocess.PIPE, text=True)
        output = process.stdout.read(1)
        if delay is not None:
            time.sleep(delay)
            process.kill()
        output += process.stdout.read()
        if not output or process.wait() not in [0, -9]:
            sys.exit(f"The writing process did not run: {process.returncode}")
        self.asked = self.all = 0
        # By the file's name: the last time it was on the disk, and the words of its last failure.
        self.done, self.failed = {}, {}
        for line in output.split("\n")[:-1]:
            what, *words = line.split(" ", 3)
            if what == "ask":
                self.asked = int(words[0])
            elif what == "all":
                self.all = int(words[0])
            elif what == "done":
                self.done[words[0]] = int(words[1])
            else:
                self.failed[words[0]] = words[2]


def kill_once(folder, before, expect):
    """The number with which the files were to be saved last."""
    (folder.path / "journal").unlink(missing_ok=True)
    report = Report(folder, [before + 1], {}, random.uniform(0, 0.04))
    for name in REPLACED:
        content = folder.content(name)
        first = content.partition("\n")[0]
        number = int(first) if first.isdigit() else 0
        figures["old" if number <= before else "new"] += 1
        expect(content == saved(number), f"{name} is torn")
        least = report.done.get(name, 0)
        expect(least <= number <= report.asked, f"{name} holds {number}, and {least} was on the disk")
    journal = folder.content("journal")
    asked = [entry(number) for number in range(before + 1, report.asked + 1)]
    expect("".join(asked).startswith(journal), "the journal is no beginning of what was appended")
    least = len("".join(asked[:report.done.get("journal", before) - before]))
    expect(len(journal) >= least, "the journal has lost what was on the disk")
    figures["old" if folder.count() <= before else "new"] += 1
    expect(max(report.all, 0) <= folder.count() <= report.asked, f"the settings hold {folder.count()}")
    return report.asked


def fail_once(folder, call, error, first, once, expect):
    (folder.path / "journal").write_text(entry(1))
    report = Report(folder, [2, 2], {
        "LD_PRELOAD": str(options.build / "bin/libquillmoth-faulty-calls.so"),
        "QUILLMOTH_FAULT_FOLDER": str(folder.path), "QUILLMOTH_FAULT_CALL": call, "QUILLMOTH_FAULT_ERRNO": str(error),
        "QUILLMOTH_FAULT_FROM": str(first), "QUILLMOTH_FAULT_ONCE": "1" if once else ""})
    figures["faults"] += 1
    figures["told"] += len(report.failed)
    expect(first > 1 or report.failed, "nothing has failed")
    for name, words in report.failed.items():
        expect(os.strerror(error) in words, f"{name}: {words}")
    held = {name: {saved(1): 1, saved(2): 2}.get(folder.content(name)) for name in REPLACED}
    for name, number in (held | {"defaults.json": folder.count()}).items():
        # The folder is synced when the new file is in place already.
        allowed = ([1, 2] if call == "fsync" else [1]) if name in report.failed else [2]
        expect(number in allowed, f"{name} is neither the old file nor the new one: {number}")
    expect(folder.content("journal") == entry(1) + ("" if "journal" in report.failed else entry(2)),
           "the journal holds part of what could not be appended")
    expect(sorted(os.listdir(folder.path)) == ["defaults.json", "history", "journal", "presets"],
           "a temporary file is left")


def expecting(where):
    def expect(holds, what):
        if not holds:
            figures["wrong"] += 1
            print(f"{where}: {what}", file=sys.stderr)
    return expect


def main():
    random.seed(options.seed)
    start = time.monotonic()
    with tempfile.TemporaryDirectory() as path:
        folder, before = Folder(path, 0), 0
        for number in range(1, options.rounds + 1):
            before = kill_once(folder, before, expecting(f"round {number}"))
    for call in ["open", "write", "fsync", "rename"]:
        for error in [errno.ENOSPC, errno.EIO, errno.EROFS, errno.EDQUOT]:
            for first in range(1, options.calls + 1):
                # A file that cannot be made is written in place, where it can be opened the next time.
                for once in [False] if call == "open" else [False, True]:
                    where = f"{call} fails {'in' if once else 'from'} its call {first}: {os.strerror(error)}"
                    with tempfile.TemporaryDirectory() as path:
                        fail_once(Folder(path, 1), call, error, first, once, expecting(where))
    print(f"faults: {options.rounds} rounds of kill -9 left {figures['old']} old and {figures['new']} new files; of "
          f"{figures['faults']} failing disks {figures['told']} failures were told; {figures['wrong']} files were neither "
          f"old nor new, or not as told ({time.monotonic() - start:.0f} s, seed {options.seed})")
    sys.exit(1 if figures["wrong"] else 0)


parser = argparse.ArgumentParser(description=__doc__)
parser.add_argument("build", type=lambda path: pathlib.Path(path).resolve(), help="the folder of the build")
parser.add_argument("--rounds", type=int, default=1000, help="how often the process is killed")
parser.add_argument("--calls", type=int, default=8, help="how many calls of a kind are tried as the first to fail")
parser.add_argument("--seed", type=int, default=random.randrange(1 << 32), help="for the moments")
options = parser.parse_args()
main()
