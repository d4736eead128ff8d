# SPDX-License-Identifier: Apache-2.0
"""Holds the message catalogues against one another and against the ids in the program's sources."""
import argparse
import gettext
import pathlib
import re
import sys
import unicodedata
import unittest

# An id is a whole literal; a literal that merely holds one is a text of a log line.
ID = re.compile(r'"((?:TV_|COM_|SID_)[A-Z0-9_]+|ZOLT_CONTENT_SPACER)"')
LONGEST_MESSAGE = 488  # bytes that a message popup shows
TAG = re.compile(r"<[^<>]*>")
# Markup that the spoken form of a text leaves out.
SPOKEN_WITHOUT = ("<br/>",)
options = None


def entries(path):
    """The ids of a catalogue's source, each with its text and its comment for translators."""
    found, comment, kind = {}, [], None
    for line in path.read_text(encoding="utf-8").splitlines():
        if line.startswith("#. "):
            comment.append(line[3:])
        elif line.startswith("msgid "):
            name, kind = line[7:-1], "id"
        elif line.startswith("msgstr "):
            found[name] = [line[8:-1], " ".join(comment)]
            comment, kind = [], "text"
        elif line.startswith('"') and kind == "text":
            found[name][0] += line[1:-1]
    found.pop("", None)
    return found


class Catalogues(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        lines = (options.catalogues / "LINGUAS").read_text(encoding="utf-8").splitlines()
        cls.languages = [word for line in lines for word in line.split("#")[0].split()]
        cls.template = entries(options.catalogues / "ZOLT.pot")
        cls.texts = {name: entries(options.catalogues / (name + ".po")) for name in cls.languages}
        code = [path.read_text(encoding="utf-8") for path in options.sources.rglob("*")
                if path.suffix in (".cpp", ".h")]
        cls.used = {name for text in code for name in ID.findall(text)}

    def test_every_id_of_the_program_has_an_entry_and_every_entry_is_used(self):
        self.assertTrue(self.used)
        self.assertEqual(set(self.template), self.used)

    def test_every_language_has_every_id(self):
        for language, found in self.texts.items():
            with self.subTest(language=language):
                self.assertEqual(set(found), set(self.template))
                self.assertEqual([name for name, (text, _) in found.items() if not text], [])

    def test_every_file_of_a_language_is_listed(self):
        self.assertEqual(sorted(self.languages),
                         sorted(path.stem for path in options.catalogues.glob("*.po")))

    def test_a_language_has_a_home_that_a_set_can_be_told_of(self):
        homes = {path.name for path in pathlib.Path("/usr/share/i18n/locales").iterdir()}
        for language in self.languages:
            with self.subTest(language=language):
                self.assertTrue({home for home in homes if (home + "_").startswith(language + "_")})

    def test_the_glossary_has_every_language_and_a_word_for_every_term(self):
        lines = (options.catalogues / "GLOSSARY.md").read_text(encoding="utf-8").splitlines()
        rows = [[cell.strip() for cell in line.strip("|").split("|")] for line in lines
                if line.startswith("|")]
        head = next(row for row in rows if row[0] == "Language")
        table = {row[0].strip("`"): row for row in rows if re.fullmatch("`[a-zA-Z_]+`", row[0])}
        self.assertEqual(sorted(table), sorted(self.languages))
        self.assertEqual(sorted(row[0] for row in rows[2:] if row is not head and
                                row[0] in head[2:]), sorted(head[2:]))
        for language, row in table.items():
            with self.subTest(language=language):
                self.assertEqual(len(row), len(head))
                self.assertNotIn("", row)

    def test_the_text_at_the_end_names_the_button_as_it_reads(self):
        for language, found in self.texts.items():
            with self.subTest(language=language):
                self.assertIn(found["COM_REGISTRATION_INFORMATION"][0].lower(),
                              found["COM_SID_REGISTRATION_COMPLETED_CHECK_STATUS"][0].lower())

    def test_a_text_breaks_where_the_english_does(self):
        for language, found in self.texts.items():
            for name, (text, _) in found.items():
                with self.subTest(language=language, id=name):
                    self.assertEqual(text.count("<br/>"), self.texts["en"][name][0].count("<br/>"))

    def test_a_short_text_stays_within_what_its_comment_allows(self):
        for language, found in self.texts.items():
            for name, (text, comment) in found.items():
                most = re.search(r"Up to (\d+) letters", comment)
                letters = sum(not unicodedata.category(sign).startswith(("M", "Cf"))
                              for sign in text)
                if most:
                    with self.subTest(language=language, id=name):
                        self.assertLessEqual(letters, int(most.group(1)))

    def test_every_id_tells_translators_where_it_is_shown(self):
        for found in [self.template, *self.texts.values()]:
            for name, (_, comment) in found.items():
                with self.subTest(id=name):
                    self.assertGreater(len(comment), 20)
                    self.assertEqual(comment, self.template[name][1])

    def test_a_message_fits_the_popup(self):
        for language, found in self.texts.items():
            for name, (text, _) in found.items():
                with self.subTest(language=language, id=name):
                    self.assertLessEqual(len(text.encode("utf-8")), LONGEST_MESSAGE)

    def test_a_text_holds_no_markup_but_what_its_comment_allows(self):
        for language, found in self.texts.items():
            for name, (text, _) in found.items():
                with self.subTest(language=language, id=name):
                    for tag in TAG.findall(self.template[name][1]):
                        text = text.replace(tag, " ")
                    self.assertNotRegex(text, "[<>&]")

    def test_a_comment_allows_no_markup_that_would_be_spoken(self):
        for name, (_, comment) in self.template.items():
            with self.subTest(id=name):
                self.assertLessEqual(set(TAG.findall(comment)), set(SPOKEN_WITHOUT))

    def test_no_text_starts_with_its_id(self):
        # Such a text would count as missing, and the text of the default language would show.
        for language, found in self.texts.items():
            self.assertEqual([name for name, (text, _) in found.items() if text.startswith(name)], [])

    def test_the_compiled_catalogues_give_the_texts(self):
        for language, found in self.texts.items():
            compiled = options.compiled / language / "LC_MESSAGES" / "ZOLT.mo"
            with compiled.open("rb") as stream:
                catalogue = gettext.GNUTranslations(stream)
            for name, (text, _) in found.items():
                with self.subTest(language=language, id=name):
                    self.assertEqual(catalogue.gettext(name), text)


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    for name in ("catalogues", "sources", "compiled"):
        parser.add_argument("--" + name, type=pathlib.Path, required=True)
    options, rest = parser.parse_known_args()
    unittest.main(argv=sys.argv[:1] + rest, verbosity=2)
