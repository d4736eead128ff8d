# SPDX-License-Identifier: Apache-2.0
"""The folder in which one set lives: its configuration, its description, its data and its log."""

import fcntl
import os
import re
import shutil
import subprocess

from key_file import KeyFile, KeyFileError
from processes import ChoiceError, SetError

# The languages that every set has built from its start, so that it can be switched while it runs; others
# are built when a set is started in one or is told to change to one.
LOCALES = {"ar": "ar_EG.utf8", "en": "en_US.utf8", "ko": "ko_KR.utf8"}
# What the set itself takes for a side of its screen.
SMALLEST_SIDE = 1
LARGEST_SIDE = 16384
_LAID_OUT = {"config.xml", "data", "etc", "home"}


def locale_source(locale):
    """The name of the distribution's source of LOCALE, such as ko_KR for ko_KR.utf8."""
    found = re.fullmatch(r"([a-z]{2,3}_[A-Z]{2})\.(utf8|UTF-8)(@[a-z]+)?", locale)
    source = found and found.group(1) + (found.group(3) or "")
    if not source or not os.path.exists(f"/usr/share/i18n/locales/{source}"):
        raise ChoiceError(f"{locale} is no language that this machine knows")
    return source


class Description:
    """What kind of set it is: a key file, in which every value has a default, and a bad value counts as
    absent."""

    def __init__(self, path=None):
        try:
            self._file = KeyFile(path)
        except KeyFileError as error:
            raise ChoiceError(f"the description of the set cannot be read: {error}") from error

    @classmethod
    def of(cls, path):
        """That of the file PATH, or the default one where there is no such file."""
        return cls(path if os.path.exists(path) else None)

    def change(self, groups):
        """Changes values: group to key to value."""
        for group, values in groups.items():
            for key, value in values.items():
                self._file.set(group, key, value)

    def save(self, path):
        with open(path + ".new", "w", encoding="utf-8", errors="surrogateescape") as file:
            file.write(self._file.text)
        os.replace(path + ".new", path)

    def check(self):
        """Raises ChoiceError for a language that no set on this machine can have."""
        locale_source(self.language)

    @property
    def size(self):
        return self._side("Width", 1920), self._side("Height", 1080)

    def _side(self, key, fallback):
        given = self._file.get("Screen", key) or ""
        sound = re.fullmatch(r"[0-9]{1,9}", given) and SMALLEST_SIDE <= int(given) <= LARGEST_SIDE
        return int(given) if sound else fallback

    @property
    def language(self):
        return self._file.get("Language", "Language") or LOCALES["en"]


class SetFolder:
    """Makes and describes the folder PATH for the program of the build folder BUILD."""

    def __init__(self, path, build):
        self.path = os.path.abspath(path)
        self.build = os.path.abspath(build)
        self._claim = None  # the open folder, locked; closed with the process

    def file(self, *names):
        return os.path.join(self.path, *names)

    def claim(self):
        """Makes the folder this process's own, for as long as it lives: two sets in one folder would
        take each other's registration, log and control socket."""
        os.makedirs(self.path, exist_ok=True)
        claim = os.open(self.path, os.O_RDONLY | os.O_DIRECTORY)
        try:
            fcntl.flock(claim, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except BlockingIOError:
            os.close(claim)
            raise SetError(f"another set is on in {self.path}; end that one first") from None
        self._claim = claim

    @property
    def is_ours(self):
        """Whether a set lives here, or nobody does. Anything else is not for us to clear."""
        names = set(os.listdir(self.path)) if os.path.isdir(self.path) else set()
        return names <= _LAID_OUT or names >= _LAID_OUT

    def make(self, fresh=False, description=None, size=None, language=None):
        """Lays the folder out. FRESH forgets what an earlier run left. The file DESCRIPTION replaces
        that of the folder; SIZE and LANGUAGE then override what it says. What is wrong with any of
        them is told before anything is changed."""
        wanted = Description() if fresh and not description else Description.of(
            description or self.file("set.ini"))
        overrides = {}
        if size:
            overrides["Screen"] = {"Width": str(size[0]), "Height": str(size[1])}
        if language:
            overrides["Language"] = {"Language": language + ".utf8"}
        if overrides:
            wanted.change(overrides)
        wanted.check()
        if fresh:
            self._clear()
        for name in ("data", "etc", "home"):
            os.makedirs(self.file(name), exist_ok=True)
        shutil.copyfile(os.path.join(self.build, "config", "config.xml"), self.file("config.xml"))
        if description:
            wanted.save(self.file("set.ini"))
        elif overrides:
            # The description may be a link to a file elsewhere; that file changes, the link stays.
            wanted.save(os.path.realpath(self.file("set.ini")))

    def _clear(self):
        """Empties the folder. The folder itself stays, since the claim is on it."""
        if not self.is_ours:
            raise ChoiceError(f"{self.path} is no set's folder, and is left alone")
        for name in os.listdir(self.path) if os.path.isdir(self.path) else ():
            path = self.file(name)
            if os.path.isdir(path) and not os.path.islink(path):
                shutil.rmtree(path)
            else:
                os.remove(path)

    def _description(self):
        return Description.of(self.file("set.ini"))

    @property
    def size(self):
        return self._description().size

    @property
    def language(self):
        return self._description().language

    def make_locales(self, path):
        """Builds the locales that the set may speak into PATH, whatever the machine itself has."""
        for locale in sorted({*LOCALES.values(), self.language}):
            self.make_locale(path, locale)

    @staticmethod
    def make_locale(path, locale):
        source = locale_source(locale)
        os.makedirs(path, exist_ok=True)
        with open(os.path.join(path, ".lock"), "w", encoding="utf-8") as lock:
            fcntl.flock(lock, fcntl.LOCK_EX)
            target = os.path.join(path, locale)
            if os.path.isdir(target):
                return
            draft = target + ".new"
            # One that was interrupted is not whole.
            if os.path.lexists(draft):
                shutil.rmtree(draft)
            made = subprocess.run(["localedef", "--no-archive", "-i", source, "-f", "UTF-8", draft],
                                  capture_output=True, text=True, check=False)
            # Status 1 means warnings, which some of the distribution's own sources give.
            if made.returncode not in (0, 1) or not os.path.isdir(draft):
                raise SetError(f"the locale {locale} could not be built: "
                               f"{' '.join(made.stderr.split())}")
            os.rename(draft, target)
