#!/usr/bin/env python3
"""Checks of tools/make_store.py: the same seed gives the same bytes, the sizes
and the owner distribution are what was asked, and every record file is valid
EUC-JP with well-formed records and real dates.

Run: python3 tools/test_make_store.py
"""
import datetime
import filecmp
import os
import re
import subprocess
import sys
import tempfile
import unittest

TOOL = os.path.join(os.path.dirname(os.path.abspath(__file__)), "make_store.py")


def make(store, *args):
    subprocess.run([sys.executable, TOOL, store, *args], check=True, stdout=subprocess.DEVNULL)


def same_tree(a, b):
    cmp = filecmp.dircmp(a, b)
    if cmp.left_only or cmp.right_only or cmp.diff_files or cmp.funny_files:
        return False
    _, mismatch, errors = filecmp.cmpfiles(a, b, cmp.common_files, shallow=False)
    return not mismatch and not errors and all(same_tree(os.path.join(a, d), os.path.join(b, d))
                                               for d in cmp.common_dirs)


def entries(path):
    with open(path, "rb") as f:
        return re.findall(rb"^object (\d+)$", f.read(), re.M)


class MakeStoreTest(unittest.TestCase):
    def setUp(self):
        self.tmp = tempfile.TemporaryDirectory()
        self.addCleanup(self.tmp.cleanup)

    def path(self, *parts):
        return os.path.join(self.tmp.name, *parts)

    def test_seed_fixes_the_bytes(self):
        make(self.path("a"), "--seed", "3")
        make(self.path("b"), "--seed", "3")
        make(self.path("c"), "--seed", "4")
        self.assertTrue(same_tree(self.path("a"), self.path("b")))
        self.assertFalse(same_tree(self.path("a"), self.path("c")))

    def test_owner_distribution(self):
        make(self.path("one"), "--users", "20", "--owners", "1", "--schedules-per-owner", "300")
        self.assertEqual(len(entries(self.path("one", "data/user/1/schedule"))), 300)
        self.assertFalse(os.path.exists(self.path("one", "data/user/2/schedule")))
        # 1,000 over 7 owners: 143 for the first six, 142 for the last.
        make(self.path("spread"), "--users", "10", "--owners", "7", "--schedules", "1000")
        counts = [len(entries(self.path("spread", f"data/user/{u}/schedule"))) for u in range(1, 8)]
        self.assertEqual(counts, [143] * 6 + [142])
        self.assertFalse(os.path.exists(self.path("spread", "data/user/8/schedule")))

    def test_records_are_valid(self):
        store = self.path("s")
        make(store, "--users", "30", "--schedules-per-owner", "40", "--attach-every", "5")
        ids, kinds, attached = set(), set(), 0
        for directory, _, files in os.walk(os.path.join(store, "data")):
            for name in files:
                with open(os.path.join(directory, name), "rb") as f:
                    text = f.read().decode("euc_jp")  # raises on a bad byte
                depth = 0
                for line in text.split("\n")[:-1]:
                    if line.startswith("object "):
                        depth += 1
                    elif line == "end":
                        depth -= 1
                        self.assertGreaterEqual(depth, 0, directory)
                    elif not line.startswith(("\t", "#")):
                        self.assertIn("=", line, f"{directory}/{name}: {line!r}")
                    key, _, value = line.partition("=")
                    if key in ("startdate", "enddate", "date"):
                        datetime.datetime.strptime(value, "%Y%m%d")
                    if key == "repeat":
                        kinds.add(value)
                    if key == "memo":
                        self.assertLess(len(value), 2047)
                self.assertEqual(depth, 0, f"{directory}/{name}")
                if name == "schedule" and not directory.endswith("agent"):  # not the alarm plan
                    found = entries(os.path.join(directory, name))
                    self.assertFalse(ids & set(found), "entry ids are unique in the store")
                    ids |= set(found)
        self.assertEqual(kinds, {"1", "d", "w", "m", "y"})
        for directory, _, files in os.walk(os.path.join(store, "file")):
            attached += len(files)
        self.assertGreater(attached, 0)


if __name__ == "__main__":
    unittest.main()
