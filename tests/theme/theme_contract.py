# SPDX-License-Identifier: Apache-2.0
"""Holds the theme's pages, the compiled theme and the program's sources against one another."""
import argparse
import pathlib
import re
import subprocess
import sys
import unittest

EVERY = "every screen"
PART_TYPES = {"text": {"TEXT", "TEXTBLOCK"}, "widget": {"SWALLOW"}, "box": {"BOX"}}
# How Elementary calls in a theme what the program calls by a short name.
OWN_PARTS = {"icon": "elm.swallow.content", "title,text": "elm.text.title",
             "button1": "elm.swallow.content.button1", "button2": "elm.swallow.content.button2"}
TRANSLATION_ID = re.compile(r"^(?:TV_|COM_|SID_|ZOLT_)[A-Z0-9_]+$")
options = None


class Page:
    """The tables of the pages, by the heading above them."""

    def __init__(self, *paths):
        self.text = "\n".join(path.read_text(encoding="utf-8") for path in paths)
        self.tables = {}
        heading = ""
        for line in self.text.splitlines():
            if line.startswith("## "):
                heading = line[3:]
            elif line.startswith("|"):
                cells = [cell.strip() for cell in line.strip("|").split("|")]
                self.tables.setdefault(heading, []).append(cells)

    def rows(self, heading):
        return self.tables[heading][2:]

    @staticmethod
    def names(cell):
        return re.findall(r"`([^`]+)`", cell)

    def groups(self):
        return {name for row in self.rows("Layout groups") for name in self.names(row[0])}

    def among(self, cell):
        """The groups that a cell speaks of."""
        return self.groups() if cell == EVERY else set(self.names(cell))

    def parts(self):
        return {(group, name): row[2] for row in self.rows("Parts of the layout groups")
                for group in self.among(row[0]) for name in self.names(row[1])}

    def signals(self, heading):
        for row in self.rows(heading):
            source = "" if row[2] == "empty" else self.names(row[2])[0]
            for group in self.among(row[0]):
                yield group, self.names(row[1])[0], source

    def styles(self):
        for row in self.rows("Widget styles"):
            yield row[0], self.names(row[1])[0], self.names(row[2]), self.names(row[3])

    def icons(self):
        return {self.names(row[0])[0] for row in self.rows("Icons")}

    def toolkit_groups(self):
        return set(re.findall(r"`(elm/[^`]+)`", self.text))


class Theme:
    """The groups of a compiled theme with their parts and signals."""

    def __init__(self, inspector, path):
        output = subprocess.run([inspector, "-M", "-d", "all", path], check=True,
                                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout
        self.parts, self.heard, self.sent = {}, {}, {}
        group, within, program = None, None, {}
        for line in output.decode("utf-8").splitlines():
            key, _, value = line.strip().partition(": ")
            key = key.rstrip(":")
            if key in ("GROUP-BEGIN", "PART-BEGIN", "PROGRAM-BEGIN"):
                within, program = key, {}
            elif key == "PROGRAM-END":
                self._take(group, program)
                within = None
            elif key == "PART-STATE-BEGIN":
                within = None
            elif key == "NAME" and within == "GROUP-BEGIN":
                group, within = value, None
                for table in (self.parts, self.heard, self.sent):
                    table.setdefault(group, {} if table is self.parts else set())
            elif key == "NAME" and within == "PART-BEGIN":
                name = value
            elif key == "TYPE" and within == "PART-BEGIN":
                self.parts[group][name] = value
            elif within == "PROGRAM-BEGIN":
                program[key] = value

    def _take(self, group, program):
        if program.get("SIGNAL"):
            self.heard[group].add((program["SIGNAL"], program.get("SOURCE", "")))
        if program.get("ACTION") == "SIGNAL_EMIT":
            self.sent[group].add((program["ACTION-SIGNAL"], program.get("ACTION-SOURCE", "")))

    def layout_groups(self):
        return {name for name in self.parts if "/" not in name}


class Program:
    """The names of the theme that the program's sources hold."""

    def __init__(self, folder):
        self.code = "\n".join(path.read_text(encoding="utf-8")
                              for path in sorted(folder.glob("*.cpp")) + sorted(folder.glob("*.h")))
        self.literals = set(re.findall(r'"((?:[^"\\\n]|\\.)*)"', self.code))

    def like(self, pattern):
        return {name for name in self.literals if re.fullmatch(pattern, name)}

    def passed_to(self, functions):
        """The first literal in the arguments of these functions."""
        call = r"\b(?:%s)\s*\([^\";]*\"([^\"]+)\"" % "|".join(functions)
        return {name for name in re.findall(call, self.code) if not TRANSLATION_ID.match(name)}

    def groups(self):
        return self.like(r"[A-Z]\w+Window(?:_?Enlarge)?")

    def parts(self):
        return self.like(r"\w+Btn(?:Enlarge)?") | self.passed_to(
            ["elm_object_part_content_set", "elm_object_part_content_get", "elm_object_part_text_set",
             "elm_layout_box_append", "setTranslatable", "modifyButtonText", "addButton",
             "focusButton", "deactivateButton"])

    def styles(self):
        return self.like(r"c_\w+|popup/\w+|\w+Style") | self.passed_to(
            ["elm_object_style_set", "elm_win_focus_highlight_style_set"])

    def icons(self):
        return self.like(r"i_\w+")

    def signals(self):
        return self.passed_to(["elm_layout_signal_emit"])

    def awaited(self):
        return self.passed_to(["elm_layout_signal_callback_add"])


class ThemeContract(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.page = Page(options.page, options.design)
        cls.theme = Theme(options.inspector, options.theme)
        cls.program = Program(options.sources)

    def assertWithin(self, inner, outer, what):
        missing = sorted(set(inner) - set(outer))
        self.assertFalse(missing, what)

    def test_every_screen_of_the_program_has_its_group(self):
        found = self.program.groups()
        self.assertTrue(found)
        self.assertWithin(found, self.page.groups(), "named in the program, not on the page")
        self.assertWithin(self.page.groups(), found, "on the page, not named in the program")

    def test_the_theme_has_the_groups_of_the_page_and_no_others(self):
        self.assertEqual(self.theme.layout_groups(), self.page.groups())
        icons = {"elm/icon/%s/default" % name for name in self.page.icons()}
        shown = {name for name in self.page.toolkit_groups() if "NAME" not in name} | icons
        self.assertEqual({name for name in self.theme.parts if "/" in name}, shown)

    def test_every_part_of_the_page_is_in_its_group_and_of_its_kind(self):
        for (group, part), kind in self.page.parts().items():
            with self.subTest(group=group, part=part):
                self.assertIn(self.theme.parts[group].get(part), PART_TYPES[kind])

    def test_a_group_has_no_place_that_the_page_does_not_name(self):
        listed = self.page.parts()
        for group in self.page.groups():
            places = {name for name, kind in self.theme.parts[group].items()
                      if kind in ("SWALLOW", "BOX", "TEXT", "TEXTBLOCK")}
            self.assertWithin(places, {part for at, part in listed if at == group}, group)

    def test_the_program_names_the_parts_of_the_page_and_no_others(self):
        listed = {part for _, part in self.page.parts()}
        listed |= {part for style in self.page.styles() for part in style[3]}
        counted = {"button"}  # the program puts the number of a popup's button behind the word
        named = self.program.parts() - counted
        self.assertWithin(named, listed, "named in the program, not on the page")
        self.assertWithin(listed - {"button2"}, named | self.program.literals,
                          "on the page, not named in the program")

    def test_signals_of_the_program_are_heard_by_the_theme(self):
        listed = list(self.page.signals("Signals that the program sends"))
        for group, signal, source in listed:
            with self.subTest(group=group, signal=signal):
                self.assertIn((signal, source), self.theme.heard[group])
        self.assertEqual(self.program.signals(), {signal for _, signal, _ in listed})

    def test_signals_of_the_theme_are_sent_and_awaited(self):
        listed = list(self.page.signals("Signals that the theme sends"))
        for group, signal, source in listed:
            with self.subTest(group=group, signal=signal):
                self.assertIn((signal, source), self.theme.sent[group])
        self.assertEqual(self.program.awaited(), {signal for _, signal, _ in listed})

    def test_every_style_of_the_program_is_on_the_page_and_in_the_theme(self):
        listed = {style for _, style, _, _ in self.page.styles()}
        self.assertEqual(self.program.styles(), listed)
        for widget, style, groups, parts in self.page.styles():
            offered = set()
            for group in groups:
                self.assertIn(group, self.theme.parts)
                offered |= set(self.theme.parts[group])
            wanted = {OWN_PARTS.get(part, part) for part in parts}
            self.assertWithin(wanted, offered, "%s %s" % (widget, style))

    def test_every_icon_of_the_program_is_drawn_and_listed(self):
        listed = self.page.icons()
        by_theme = {"i_drop_down"}
        self.assertEqual(self.program.icons(), listed - by_theme)
        drawn = {path.stem for path in (options.drawings / "icons").glob("*.svg")}
        self.assertEqual(drawn, listed)

    def test_text_classes_of_the_page_are_those_of_the_theme(self):
        source = (options.drawings / "edc" / "text.edc").read_text(encoding="utf-8")
        declared = dict(re.findall(r'name: "([^"]+)";.*?size: (\d+);', source))
        listed = {self.page.names(row[0])[0]: row[1] for row in self.page.rows("Text")}
        self.assertEqual(listed, declared)

    def test_no_text_is_smaller_than_can_be_read_across_a_shop(self):
        sizes = {self.page.names(row[0])[0]: int(row[1]) for row in self.page.rows("Text")}
        for name, size in sizes.items():
            least = {"title": 48, "secondary": 26, "code": 72}.get(name, 30)
            with self.subTest(text_class=name):
                self.assertGreaterEqual(size, least)

    def test_every_role_and_every_measure_is_used(self):
        folder = options.drawings / "edc"
        sources = {path: path.read_text(encoding="utf-8") for path in folder.rglob("*.edc")}
        tree = sources[folder / "palette.edc"].split("color_tree")[1]
        groups = "".join(text for path, text in sources.items() if path.name != "palette.edc")
        roles = re.findall(r'^ {6}"([^"]+)";', tree, re.MULTILINE)
        self.assertTrue(roles)
        # Some groups put the end of such a name together with its start.
        self.assertEqual([], [role for role in roles if f'"{role}"' not in groups and
                              f'"{role.removesuffix("/contrast")}"' not in groups])
        everything = "".join(sources.values())
        measures = re.findall(r"#define (\w+)", everything)
        self.assertEqual([], [name for name in measures
                              if len(re.findall(rf"\b{name}\b", everything)) < 2])

    def test_no_group_holds_a_colour_or_a_size_of_text_of_its_own(self):
        for path in sorted((options.drawings / "edc").rglob("*.edc")):
            if path.name in ("palette.edc", "text.edc"):
                continue
            for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
                with self.subTest(line="%s:%d" % (path.name, number)):
                    self.assertIsNone(re.search(r"\bcolor\d?: \d|\bfont_size=\d|\btext\.size:|\bfont: \"|[^.]\bsize: \d+;", line))


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    for name in ("page", "design", "sources", "theme", "drawings"):
        parser.add_argument("--" + name, type=pathlib.Path, required=True)
    parser.add_argument("--inspector", required=True)
    options, rest = parser.parse_known_args()
    unittest.main(argv=sys.argv[:1] + rest, verbosity=2)
