# SPDX-License-Identifier: Apache-2.0
"""A difference is reported if a person would see it, and only then."""

import os
import tempfile
import unittest

from goldens import HERE, MANY, convert, strayed

AGREED = os.path.join(HERE, "1280x720", "registered.png")


class Differences(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.new = os.path.join(folder.name, "new.png")
        self.difference = os.path.join(folder.name, "difference.png")

    def strayed(self, *change):
        convert(AGREED, *change, self.new)
        return strayed(AGREED, self.new, self.difference)

    def test_the_same_picture_does_not_differ(self):
        self.assertEqual(0, self.strayed())
        self.assertFalse(os.path.exists(self.difference))

    def test_a_shade_that_nobody_sees_does_not_differ(self):
        self.assertEqual(0, self.strayed("-modulate", "101"))

    def test_a_lone_pixel_does_not_differ(self):
        self.assertLessEqual(self.strayed("-fill", "#808080", "-draw", "point 900,600"), MANY)

    def test_a_stroke_that_has_gone_differs(self):
        self.assertGreater(self.strayed("-fill", "#f5f8fc", "-draw", "rectangle 520,210 530,226"), MANY)
        self.assertTrue(os.path.exists(self.difference))

    def test_a_button_that_has_moved_by_two_pixels_differs(self):
        self.assertGreater(self.strayed("-page", "+2+0", "-background", "#0a101c", "-flatten"), MANY)

    def test_another_colour_of_a_face_differs(self):
        self.assertGreater(self.strayed("-fuzz", "1%", "-fill", "#2a3a55", "-opaque", "#182337"), MANY)


if __name__ == "__main__":
    unittest.main(verbosity=2)
