#!/usr/bin/env python3
"""Puts small faults into the code, one by one, and sees which test notices.

usage: mutate.py [--again] [--only TEXT] [--list]

The faults stand in faults.txt. Each is applied to a copy of the tree (build/mutation), what it touches is built and the
tests of its group are run until one fails. results.md gets a row a fault. A run that was interrupted goes on where it
was; --again forgets what is known; --only tries the faults whose title has TEXT, known or not; --list names them.
"""

import argparse
import filecmp
import hashlib
import os
import re
import shutil
import subprocess
import sys
import time

HERE = os.path.dirname(os.path.abspath(__file__))
TOP = os.path.dirname(os.path.dirname(HERE))
TREE = os.path.join(TOP, "build", "mutation")
BUILD = os.path.join(TREE, "build", "dev")
RESULTS = os.path.join(HERE, "results.md")
ENOUGH = 0.95
TEST_SECONDS = 400
NO_FAULT = "the compiler: write it otherwise"  # a fault that does not compile tries no test

# What is run for a fault, quickest first: a program of the build with its arguments.
TESTS = {
    "t0-sim": ["--seeds", "150"],
    "tst_logic": [],
    "tst_changes": [],
    "tst_trading": [],
    "test_host": [],
    "test_wire": [],
    "gateway_tests": [],
    "console_tests": [],
}
GROUPS = {
    "logic": ["t0-sim", "tst_logic", "tst_changes", "tst_trading"],
    "host": ["t0-sim", "test_wire", "test_host"],
    "gateway": ["gateway_tests", "tst_changes", "tst_trading"],
    "console": ["console_tests"],
}
CLANG = ("clang++-14 -fsyntax-only -std=c++17 -fPIC -Wthread-safety -Wthread-safety-beta -Werror=thread-safety "
         "-Werror=thread-safety-beta -I logic -I presenter -I plugin -I widgets -I host/include "
         "$(pkg-config --cflags Qt5Core Qt5Gui Qt5Widgets) ")


class Fault:
    def __init__(self, title, path, tests):
        self.title, self.path, self.tests = title, path, tests
        self.goes, self.comes, self.why = [], [], ""

    def key(self):
        text = "\n".join([self.path, self.tests] + self.goes + self.comes)
        return hashlib.sha256(text.encode()).hexdigest()[:10]

    def apply(self, text):
        goes, comes = "\n".join(self.goes) + "\n", "\n".join(self.comes) + "\n"
        if text.count(goes) != 1:
            sys.exit(f"{self.title}: what goes stands {text.count(goes)} times in {self.path}")
        return text.replace(goes, comes)


def read_faults():
    faults = []
    with open(os.path.join(HERE, "faults.txt"), encoding="utf-8") as lines:
        for number, line in enumerate(lines, 1):
            line = line.rstrip("\n")
            if line.startswith("== "):
                faults.append(Fault(*[part.strip() for part in line[3:].split("|")]))
            elif line.startswith("-"):
                faults[-1].goes.append(line[1:])
            elif line.startswith("+"):
                faults[-1].comes.append(line[1:])
            elif line.startswith("= "):
                faults[-1].why = line[2:]
            elif line and not line.startswith("#"):
                sys.exit(f"faults.txt:{number}: {line}")
    return faults


def run(command, seconds=None, cwd=TREE):
    """The exit status; None when it took too long."""
    environment = dict(os.environ, QT_QPA_PLATFORM="offscreen", LC_ALL="C.UTF-8", CCACHE_BASEDIR=TREE,
                       CCACHE_NOHASHDIR="1")
    try:
        return subprocess.run(command, cwd=cwd, env=environment, timeout=seconds, shell=isinstance(command, str),
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode
    except subprocess.TimeoutExpired:
        return None


def build(programs):
    return run(["cmake", "--build", BUILD, "--target", *programs]) == 0


def refresh_tree():
    """The copy is what the tree is now; files that did not change keep their time, so that little is built."""
    names = subprocess.run(["git", "ls-files", "-z"], cwd=TOP, capture_output=True, check=True, text=True).stdout
    for name in filter(None, names.split("\0")):
        source, copy = os.path.join(TOP, name), os.path.join(TREE, name)
        if os.path.islink(source) or (os.path.exists(copy) and filecmp.cmp(source, copy, shallow=False)):
            continue
        os.makedirs(os.path.dirname(copy), exist_ok=True)
        shutil.copy(source, copy)
    if run(["cmake", "--preset", "dev"]) != 0:
        sys.exit("the copy cannot be configured")


def passes(test):
    return run([os.path.join(BUILD, "bin", test), *TESTS[test]], TEST_SECONDS) == 0


def check_untouched(faults):
    tests = {test for fault in faults for test in GROUPS.get(fault.tests, [])}
    if tests and not build(sorted(tests)):
        sys.exit("the code does not build as it is")
    for test in sorted(tests):
        if not passes(test):
            sys.exit(f"{test} fails without any fault")
    for path in sorted({analysed(fault) for fault in faults} - {""}):
        if run(CLANG + path) != 0:
            sys.exit(f"clang does not accept {path} without any fault")


def analysed(fault):
    """The file that clang's analysis of locks is to refuse; empty: tests are to notice."""
    return fault.tests[len("threads "):] if fault.tests.startswith("threads ") else ""


def catcher(fault):
    """Who notices a fault that has been applied; empty: nobody."""
    if analysed(fault):
        return "clang's analysis of locks" if run(CLANG + analysed(fault)) != 0 else ""
    tests = GROUPS[fault.tests]
    for test in tests:
        if not build([test]):
            return NO_FAULT
        if not passes(test):
            return test
    return ""


def try_fault(fault):
    path = os.path.join(TREE, fault.path)
    with open(path, encoding="utf-8") as file:
        before = file.read()
    with open(path, "w", encoding="utf-8") as file:
        file.write(fault.apply(before))
    try:
        return catcher(fault)
    finally:
        with open(path, "w", encoding="utf-8") as file:
            file.write(before)


def read_results():
    """Key of a fault to who noticed it."""
    if not os.path.exists(RESULTS):
        return {}
    rows = re.findall(r"^\| (\w{10}) \| .* \| (.*) \|$", open(RESULTS, encoding="utf-8").read(), re.M)
    return {key: "" if caught.startswith("nobody") else caught for key, caught in rows}


def write_results(faults, results):
    tried = [fault for fault in faults if fault.key() in results]
    caught = [fault for fault in tried if results[fault.key()] not in ("", NO_FAULT)]
    with open(RESULTS, "w", encoding="utf-8") as file:
        file.write("# Deliberate faults\n\nWritten by `./t0 mutate`: each fault of faults.txt was put into the code alone, "
                   "and the tests were run until one failed.\n\n")
        file.write(f"{len(caught)} of {len(tried)} were noticed ({100 * len(caught) / max(1, len(tried)):.1f} %)"
                   + (f"; {len(faults) - len(tried)} are not tried yet" if len(tried) < len(faults) else "") + ".\n\n")
        file.write("| Key | Fault | File | Noticed by |\n|---|---|---|---|\n")
        for fault in tried:
            who = results[fault.key()] or "nobody" + (f": {fault.why}" if fault.why else "")
            file.write(f"| {fault.key()} | {fault.title} | {fault.path} | {who} |\n")
    return len(caught) / max(1, len(tried))


def main():
    parser = argparse.ArgumentParser(description="Puts small faults into the code and sees which test notices.")
    parser.add_argument("--again", action="store_true", help="forget what is known of them")
    parser.add_argument("--only", metavar="TEXT", help="the faults whose title has TEXT")
    parser.add_argument("--list", action="store_true", help="the faults; fails when one cannot be applied")
    options = parser.parse_args()
    faults = read_faults()
    named = [fault for fault in faults if not options.only or options.only in fault.title]
    if not named:
        sys.exit(f"no fault's title has \"{options.only}\"; --list shows them all")
    if options.list:
        for fault in named:
            fault.apply(open(os.path.join(TOP, fault.path), encoding="utf-8").read())
            print(f"{fault.key()} {fault.tests:8.8} {fault.title}")
        return
    known = read_results()
    results = {fault.key(): known[fault.key()] for fault in faults
               if fault.key() in known and not (options.again and fault in named)}
    wanted = [fault for fault in named if options.only or fault.key() not in results]
    refresh_tree()
    check_untouched(wanted)
    for number, fault in enumerate(wanted, 1):
        begun = time.monotonic()
        results[fault.key()] = try_fault(fault)
        print(f"{number}/{len(wanted)} {fault.title}: {results[fault.key()] or 'NOBODY'} "
              f"({time.monotonic() - begun:.0f} s)", flush=True)
        write_results(faults, results)
    share = write_results(faults, results)
    print(f"noticed: {100 * share:.1f} %")
    sys.exit(0 if share >= ENOUGH else 1)


if __name__ == "__main__":
    main()
