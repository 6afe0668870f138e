#!/usr/bin/env python3
"""tools/mutants on a tiny project of its own: the same seed picks the same
sample, each fault is judged by whether the test can see it, and every
changed file is back as it was after a finished, a stopped and a killed run."""

import os
import re
import signal
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

TOOL = sys.argv.pop(1) if len(sys.argv) > 1 else str(Path(__file__).parents[2] / "tools/mutants")

SIGN = """int sign(int x) {
    if (x < 0)
        return -1;
    return x > 0 ? 1 : 0;
}
"""
# The test below never asks for sign(0), so exactly the faults that only
# change that case survive.
CHECK = "int sign(int);\nint main() { return sign(-5) == -1 && sign(3) == 1 ? 0 : 1; }\n"
PROJECT = """cmake_minimum_required(VERSION 3.21)
project(Fake CXX)
enable_testing()
add_library(sign STATIC src/a/Sign.cpp)
add_executable(check check.cpp)
target_link_libraries(check sign)
add_test(NAME check COMMAND check)
"""
SURVIVES = {
    (2, "`<` -> `<=`"): True, (2, "`<` -> `>`"): False, (2, "constant `0` -> `1`"): True,
    (3, "constant `1` -> `2`"): False,
    (4, "`>` -> `>=`"): True, (4, "`>` -> `<`"): False, (4, "constant `1` -> `2`"): False,
    (4, "constant `0` (1st of 2) -> `1`"): True, (4, "constant `0` (2nd of 2) -> `1`"): True,
}


class MutantsTool(unittest.TestCase):
    def setUp(self):
        self.tmp = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        self.root = Path(self.tmp.name) / "tree"
        (self.root / "src/a").mkdir(parents=True)
        (self.root / "src/a/Sign.cpp").write_text(SIGN)
        (self.root / "check.cpp").write_text(CHECK)
        (self.root / "CMakeLists.txt").write_text(PROJECT)
        git = ["git", "-C", str(self.root), "-c", "user.name=t", "-c", "user.email=t@t"]
        subprocess.run(git + ["init", "-q"], check=True)
        subprocess.run(git + ["add", "."], check=True)
        subprocess.run(git + ["commit", "-qm", "t"], check=True)
        self.env = dict(os.environ, LABQUIZ_MUTANTS_SOURCE_DIR=str(self.root),
                        LABQUIZ_MUTANTS_BUILD_DIR=str(Path(self.tmp.name) / "build"))
        self.journal = Path(self.tmp.name) / "build/mutants/active"

    def tearDown(self):
        self.tmp.cleanup()

    def tool(self, *args):
        return subprocess.run([TOOL, "--paths", "src/a", *args], env=self.env, text=True,
                              capture_output=True)

    def assertTreeClean(self):
        self.assertEqual((self.root / "src/a/Sign.cpp").read_text(), SIGN)
        self.assertFalse(self.journal.exists())
        subprocess.run(["git", "-C", str(self.root), "diff", "--exit-code"], check=True)

    def test_judges_each_fault_by_what_the_test_sees(self):
        listed = self.tool("--list", "--seed", "7").stdout
        self.assertEqual(listed, self.tool("--list", "--seed", "7").stdout)
        picked = re.findall(r"^src/a/Sign.cpp:(\d+): (.*)$", listed, re.M)
        self.assertEqual(len(picked), 3)  # one fault per line, three lines with code
        run = self.tool("--seed", "7")
        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)
        for line, what in picked:
            outcome = "survived" if SURVIVES[(int(line), what)] else "caught"
            self.assertRegex(run.stdout, rf"\] {outcome} .*Sign.cpp:{line}: {re.escape(what)}")
        self.assertTreeClean()

    def test_a_test_failing_by_chance_decides_nothing(self):
        # A second test that fails every other run, whatever the program does.
        counter = Path(self.tmp.name) / "runs"
        (self.root / "flaky.cpp").write_text(
            "#include <cstdio>\nint main() { int n = 0; FILE* f = std::fopen(\"%s\", \"r\");\n"
            "if (f) { std::fscanf(f, \"%%d\", &n); std::fclose(f); }\n"
            "f = std::fopen(\"%s\", \"w\"); std::fprintf(f, \"%%d\", n + 1); std::fclose(f);\n"
            "return n %% 2; }\n" % (counter, counter))
        with open(self.root / "CMakeLists.txt", "a") as cmake:
            cmake.write("add_executable(flaky flaky.cpp)\nadd_test(NAME flaky COMMAND flaky)\n")
        git = ["git", "-C", str(self.root), "-c", "user.name=t", "-c", "user.email=t@t"]
        subprocess.run(git + ["add", "."], check=True)
        subprocess.run(git + ["commit", "-qm", "flaky"], check=True)
        listed = self.tool("--list", "--seed", "7").stdout
        run = self.tool("--seed", "7")
        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)
        self.assertIn("by chance", run.stdout)
        for line, what in re.findall(r"^src/a/Sign.cpp:(\d+): (.*)$", listed, re.M):
            outcome = "survived" if SURVIVES[(int(line), what)] else "caught"
            self.assertRegex(run.stdout, rf"\] {outcome} .*Sign.cpp:{line}: {re.escape(what)}")
        self.assertTreeClean()

    def test_puts_the_file_back_when_stopped_or_killed(self):
        for sig in (signal.SIGTERM, signal.SIGKILL):
            with self.subTest(sig=sig.name):
                proc = subprocess.Popen([TOOL, "--paths", "src/a"], env=self.env,
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
                while not self.journal.exists() and proc.poll() is None:
                    time.sleep(0.01)
                self.assertTrue(self.journal.exists(), "no mutant was ever applied")
                proc.send_signal(sig)
                proc.wait(timeout=60)
                if sig == signal.SIGKILL:
                    self.tool("--list")  # the next start repairs what the killed one left
                self.assertTreeClean()


if __name__ == "__main__":
    unittest.main()
