# SPDX-License-Identifier: Apache-2.0
"""The gallery is one page that opens from disk, and each of its pictures is there."""

import argparse
import os
import re
import subprocess
import sys
import tempfile
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
options = None


class Gallery(unittest.TestCase):
    def test_every_picture_of_a_screen_in_every_mode_is_there(self):
        with tempfile.TemporaryDirectory() as out:
            subprocess.run([sys.executable, "-B", os.path.join(HERE, "gallery.py"), "--look-check",
                            options.look_check, "--theme-folder", options.theme_folder, "--catalogues",
                            options.catalogues, "--out", out, "--scenes", "unregistered,selection", "--jobs", "1"],
                           check=True, stdout=subprocess.DEVNULL)
            with open(os.path.join(out, "index.html"), encoding="utf-8") as file:
                page = file.read()
            files = [name for name in re.findall(r'(?:src|href)="([^"#]+)"', page)]
            # Four modes in two languages and the longest words, each small and whole.
            self.assertGreaterEqual(len(files), 2 * 9 * 2)
            self.assertEqual([], [name for name in files
                                  if not os.path.isfile(os.path.join(out, name))])
            self.assertEqual([], re.findall(r"https?:|<script", page))
            places = set(re.findall(r'href="#([^"]+)"', page))
            self.assertEqual({"changes", "unregistered", "selection"}, places)
            self.assertEqual(places, set(re.findall(r'id="([^"]+)"', page)))


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    for name in ("look-check", "theme-folder", "catalogues"):
        parser.add_argument("--" + name, required=True)
    options, rest = parser.parse_known_args()
    unittest.main(argv=sys.argv[:1] + rest, verbosity=2)
