# SPDX-License-Identifier: Apache-2.0
"""The folder in which one set lives: its configuration, its description, its data and its log."""

import configparser
import fcntl
import os
import re
import shutil
import subprocess

from processes import ChoiceError, SetError


class SetFolder:
    """Makes and describes the folder PATH for the program of the build folder BUILD."""

    def __init__(self, path, build):
        self.path = os.path.abspath(path)
        self.build = os.path.abspath(build)

    def file(self, *names):
        return os.path.join(self.path, *names)

    def make(self, fresh=False, description=None, size=None, language=None):
        """Lays the folder out. FRESH forgets what an earlier run left. The file DESCRIPTION replaces
        that of the folder; SIZE and LANGUAGE then override what it says."""
        if fresh and os.path.isdir(self.path):
            shutil.rmtree(self.path)
        for name in ("data", "etc", "home"):
            os.makedirs(self.file(name), exist_ok=True)
        shutil.copyfile(os.path.join(self.build, "config", "config.xml"), self.file("config.xml"))
        if description:
            shutil.copyfile(description, self.file("set.ini"))
        overrides = {}
        if size:
            overrides["Screen"] = {"Width": str(size[0]), "Height": str(size[1])}
        if language:
            overrides["Language"] = {"Language": language + ".utf8"}
        if overrides:
            self.describe(overrides)

    def describe(self, groups):
        """Changes values of the description: group to key to value."""
        description = self._description()
        for group, values in groups.items():
            if not description.has_section(group):
                description.add_section(group)
            for key, value in values.items():
                description.set(group, key, value)
        temporary = self.file("set.ini.new")
        with open(temporary, "w", encoding="utf-8") as file:
            description.write(file, space_around_delimiters=False)
        os.replace(temporary, self.file("set.ini"))

    def _description(self):
        description = configparser.RawConfigParser(
            delimiters=("=",), comment_prefixes=("#",), strict=False, interpolation=None)
        description.optionxform = str
        try:
            description.read(self.file("set.ini"), encoding="utf-8")
        except (configparser.Error, UnicodeDecodeError) as error:
            raise ChoiceError(f"the description of the set cannot be read: {error}") from error
        return description

    @property
    def size(self):
        description = self._description()
        try:
            return (description.getint("Screen", "Width", fallback=1920),
                    description.getint("Screen", "Height", fallback=1080))
        except ValueError as error:
            raise ChoiceError(f"the description of the set has no sound size: {error}") from error

    @property
    def language(self):
        return self._description().get("Language", "Language", fallback="en_US.utf8")

    def make_locales(self, path):
        """Builds the locales that the set asks for into PATH, whatever the machine itself has."""
        os.makedirs(path, exist_ok=True)
        for locale in sorted({"en_US.utf8", self.language}):
            self.make_locale(path, locale)

    @staticmethod
    def make_locale(path, locale):
        found = re.fullmatch(r"([a-z]{2,3}_[A-Z]{2})\.(utf8|UTF-8)(@[a-z]+)?", locale)
        source = found and found.group(1) + (found.group(3) or "")
        if not source or not os.path.exists(f"/usr/share/i18n/locales/{source}"):
            raise ChoiceError(f"{locale} is no language that this machine knows")
        with open(os.path.join(path, ".lock"), "w", encoding="utf-8") as lock:
            fcntl.flock(lock, fcntl.LOCK_EX)
            target = os.path.join(path, locale)
            if os.path.isdir(target):
                return
            made = subprocess.run(["localedef", "--no-archive", "-i", source, "-f", "UTF-8",
                                   target + ".new"], capture_output=True, text=True, check=False)
            # Status 1 means warnings, which some of the distribution's own sources give.
            if not os.path.isdir(target + ".new"):
                raise SetError(f"the locale {locale} could not be built: {made.stderr.strip()}")
            os.rename(target + ".new", target)
