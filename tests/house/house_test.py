# SPDX-License-Identifier: Apache-2.0
"""Compares the sources with docs/architecture.md: folders, includes; and checks licence lines and packages."""

import os
import re
import subprocess
import sys
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))


def tracked():
    """The files of the repository; without git, as in a source package, all files."""
    listed = subprocess.run(["git", "-C", ROOT, "ls-files"], capture_output=True, text=True,
                            check=False)
    if listed.returncode == 0 and listed.stdout:
        return [name for name in listed.stdout.splitlines()
                if os.path.exists(os.path.join(ROOT, name))]
    found = []
    for folder, names, files in os.walk(ROOT):
        names[:] = [name for name in names if name not in ("build", ".git", "__pycache__")]
        found += [os.path.relpath(os.path.join(folder, file), ROOT) for file in files]
    return found


def read(name):
    with open(os.path.join(ROOT, name), encoding="utf-8") as file:
        return file.read()


def table(page, heading):
    """The rows of the first table under HEADING, each a list of cells."""
    text = page.split(f"## {heading}\n")[1].split("\n## ")[0]
    rows = [line.strip("|").split("|") for line in text.splitlines() if line.startswith("|")]
    return [[cell.strip() for cell in row] for row in rows[2:]]


def names_in(cell):
    return re.findall(r"`([^`]+)`", cell)


def includes_of(name):
    return re.findall(r'^\s*#\s*include\s*"([^"]+)"', read(name), re.M)


def unit_of(name):
    """A header and its source are one unit."""
    return os.path.splitext(name)[0]


def cycle_in(edges):
    """The nodes of a cycle of EDGES, which has a set of nodes for each node; empty when there is none."""
    done = set()

    def walk(node, path):
        if node in path:
            return path[path.index(node):] + [node]
        if node not in done:
            for target in sorted(edges.get(node, ())):
                found = walk(target, path + [node])
                if found:
                    return found
            done.add(node)
        return []

    for start in sorted(edges):
        found = walk(start, [])
        if found:
            return found
    return []


class Architecture(unittest.TestCase):
    def setUp(self):
        self.page = read("docs/architecture.md")
        self.files = tracked()
        self.sources = [name for name in self.files if name.endswith((".h", ".cpp", ".c"))]

    def folder_of(self, name):
        folders = sorted((names_in(row[0])[0] for row in table(self.page, "Folders")), key=len)
        holding = [folder for folder in folders if name.startswith(folder + "/")]
        return holding[-1] if holding else None

    def test_every_folder_on_the_page_is_there(self):
        for row in table(self.page, "Folders"):
            folder = names_in(row[0])[0]
            self.assertTrue(os.path.isdir(os.path.join(ROOT, folder)), folder)

    def test_every_file_in_a_folder_lies_in_one_of_the_page(self):
        for name in self.files:
            if "/" in name and not name.startswith((".ci/",)) and name not in (
                    "src/CMakeLists.txt", "platform/CMakeLists.txt"):
                self.assertIsNotNone(self.folder_of(name), name)

    def test_every_source_of_the_program_bears_the_name_of_its_header(self):
        """A further source of a class begins with the class's name and logs as its first one."""
        headers = {name[:-2] for name in self.sources
                   if name.startswith("src/") and name.endswith(".h")}
        for source in self.sources:
            if source.startswith("src/") and source.endswith(".cpp") and not source.endswith("/main.cpp"):
                if source[:-4] not in headers:
                    whole = [name for name in headers if source.startswith(name)]
                    self.assertTrue(whole, source)
                    name = os.path.basename(max(whole, key=len))
                    self.assertIn(f'#define ZOLT_LOG_FILE "{name}.cpp"', read(source), source)

    def test_the_includes_of_the_screens_and_the_flow_lead_one_way(self):
        """Header and source are one room. EventHandler and Modes are two: their headers are what
        screens ask of the flow, and their sources are part of the flow."""
        asked = ("EventHandler", "Modes")

        def room(file):
            stem, ending = os.path.splitext(file)
            return file if stem in asked else stem

        arrows = {}
        for name in self.sources:
            if name.startswith("src/gui/"):
                here = arrows.setdefault(room(os.path.basename(name)), set())
                here.update(room(file) for file in re.findall(r'#include "gui/([^"]+)"', read(name)))
        for name, there in arrows.items():
            there.discard(name)
        while arrows:
            ends = [name for name, there in arrows.items() if not there]
            self.assertTrue(ends, f"includes that lead in a circle, or into one: {sorted(arrows)}")
            arrows = {name: there - set(ends) for name, there in arrows.items() if name not in ends}

    def allowed(self):
        return {names_in(row[0])[0]: names_in(row[1]) for row in table(self.page, "Who may use whom")}

    def included_by(self, name):
        """The files of the tree that NAME includes, or would include once they are generated."""
        for included in includes_of(name):
            if included == "generated-code.h":
                yield "src/gdbus/generated-code.h"
            for root in (os.path.dirname(name), "", "src", "platform", "platform/include"):
                path = os.path.normpath(os.path.join(root, included))
                if path in self.sources:
                    yield path
                    break

    def test_includes_go_only_where_the_page_allows(self):
        allowed = self.allowed()
        for name in self.sources:
            folder = self.folder_of(name)
            folder = "src/common" if folder == "src/common/systemcalls" else folder
            if folder not in allowed or folder == "tests":
                continue
            for target in map(self.folder_of, self.included_by(name)):
                target = "src/common" if target == "src/common/systemcalls" else target
                if target != folder:
                    self.assertIn(target, allowed[folder], name)

    def test_the_table_of_allowed_includes_has_no_cycle(self):
        edges = {folder: set(targets) for folder, targets in self.allowed().items()}
        self.assertEqual(cycle_in(edges), [])

    def test_the_classes_of_platform_and_daemon_have_no_include_cycle(self):
        for folder in ("platform/", "daemon/"):
            edges = {}
            for name in self.sources:
                if name.startswith(folder):
                    edges.setdefault(unit_of(name), set()).update(
                        unit_of(target) for target in self.included_by(name)
                        if unit_of(target) != unit_of(name))
            self.assertEqual(cycle_in(edges), [])

    def test_each_interface_of_the_television_has_a_source_of_its_name(self):
        def names(folder):
            return sorted(os.path.basename(unit_of(name)) for name in self.sources
                          if os.path.dirname(name) == folder)
        self.assertEqual(names("platform/include"), names("platform/host/interfaces"))

    def test_the_page_of_the_virtual_set_has_a_line_for_each_key_of_a_description(self):
        table_of_fields = read("platform/host/description/Fields.cpp")
        keys = re.findall(r'^    \{Field::\w+, "(\w+)", "(\w+)"', table_of_fields, re.M)
        self.assertGreater(len(keys), 20)
        group, shown = None, set()
        for line in read("platform/host/README.md").splitlines():
            if heading := re.fullmatch(r"\[(\w+)\]", line):
                group = heading[1]
            elif entry := re.match(r"(\w+)=", line):
                shown.add((group, entry[1]))
        self.assertEqual(set(keys), shown & set(keys))

    def test_the_page_of_recipes_names_files_and_tests_that_exist(self):
        page = read("docs/changing.md")
        for path in re.findall(r"`((?:src|platform|po|tests|packaging)/[\w./-]+)`", page):
            if not path.endswith("LL.po"):
                self.assertTrue(os.path.exists(os.path.join(ROOT, path)), path)
        sources = "".join(read(path) for path in tracked()
                          if path.startswith("tests/") and path.endswith((".cpp", ".txt")))
        for name in re.findall(r"`(?:gui|flow|platform)\.(?:All/)?(\w+)`|`(?:Look\.)(\w+)`", page):
            self.assertIn(name[0] or name[1], sources)

    def test_the_daemon_uses_nothing_of_the_program_but_the_interface_layer(self):
        for name in self.sources:
            if name.startswith("daemon/"):
                for included in re.findall(r'#\s*include\s*"((?:gdbus|common|gui)/[^"]+)"', read(name)):
                    self.assertIn(included, ("gdbus/ZOLTEvents.h",), name)

    def test_nothing_outside_the_platform_includes_the_virtual_set(self):
        for name in self.sources:
            if not name.startswith(("platform/", "tests/")):
                self.assertNotRegex(read(name), r'#\s*include\s*[<"](platform/)?host/', name)

    def test_the_program_never_asks_which_platform_it_runs_on(self):
        for name in self.sources:
            if name.startswith("src/"):
                self.assertNotRegex(read(name), r"ZOLT_PLATFORM|VIRTUAL_SET|#\s*if.*(HOST|__linux__)", name)


class CycleSearch(unittest.TestCase):
    def test_a_cycle_is_found_and_named(self):
        self.assertEqual(cycle_in({"a": {"b"}, "b": {"c"}, "c": {"b"}}), ["b", "c", "b"])

    def test_two_paths_to_one_node_are_no_cycle(self):
        self.assertEqual(cycle_in({"a": {"b", "c"}, "b": {"d"}, "c": {"d"}}), [])


class TheScripts(unittest.TestCase):
    """What the Python of the tree imports: that of its own folder, and what comes with Python."""

    # The tests of whole sets drive them as the launcher does.
    ALSO = {"tests/set": ["launcher"]}

    def test_scripts_import_only_what_their_folder_may(self):
        scripts = [name for name in tracked() if name.endswith(".py")]
        self.assertTrue(scripts)
        modules = {folder: {os.path.basename(name)[:-3] for name in scripts if os.path.dirname(name) == folder}
                   for folder in map(os.path.dirname, scripts)}
        for name in scripts:
            folder = os.path.dirname(name)
            good = set(sys.stdlib_module_names).union(
                *(modules[each] for each in [folder, *self.ALSO.get(folder, [])]))
            for line in re.findall(r"^ *(?:import|from) +([\w., ]+)", read(name), re.M):
                for imported in re.split(r",\s*", line.split(" import ")[0]):
                    module = imported.split()[0].split(".")[0]
                    self.assertTrue(module in good, f"{name} imports {module}")


class TheFiles(unittest.TestCase):
    WITHOUT_LINE = re.compile(r"\.(json|png|ogg|wav|gitignore)$|^LICENSE$|LINGUAS$|\.gitignore$")

    def test_every_file_has_its_licence_line_at_its_head(self):
        for name in tracked():
            if not self.WITHOUT_LINE.search(name):
                head = read(name)[:600]
                self.assertIn("SPDX-License-Identifier: Apache-2.0", head, name)

    def test_every_header_is_guarded_by_pragma_once(self):
        for name in tracked():
            if name.endswith(".h"):
                self.assertIn("\n#pragma once\n", read(name), name)

    def test_no_host_of_a_package_registry_is_named(self):
        for name in tracked():
            if name.endswith((".png",)) or name.startswith("tests/house/"):
                continue
            self.assertNotRegex(read(name), r"(deb|security|ftp)\.debian\.org|registry\.npmjs", name)


class ThePackages(unittest.TestCase):
    def test_no_package_is_named_twice(self):
        names = [line for line in read("packaging/debian-packages.txt").splitlines()
                 if line and not line.startswith("#")]
        self.assertEqual(sorted(set(names)), sorted(names))


if __name__ == "__main__":
    unittest.main()
