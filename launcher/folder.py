# SPDX-License-Identifier: Apache-2.0
"""The folder in which one set lives: its configuration, its description, its data and its log."""

import fcntl
import os
import re
import shutil
import subprocess

from description import Description
from processes import ChoiceError, SetError

# The locales that are built for every set, so that its language can be changed while it runs. Others are
# built when a set is started in that language or changed to it.
LOCALES = {"ar": "ar_EG.utf8", "en": "en_US.utf8", "ko": "ko_KR.utf8"}
_LAID_OUT = {"config.xml", "data", "etc", "home"}


def locale_source(locale):
    """The name of the distribution's source of LOCALE, such as ko_KR for ko_KR.utf8."""
    found = re.fullmatch(r"([a-z]{2,3}_[A-Z]{2})\.(utf8|UTF-8)(@[a-z]+)?", locale)
    source = found and found.group(1) + (found.group(3) or "")
    if not source or not os.path.exists(f"/usr/share/i18n/locales/{source}"):
        raise ChoiceError(f"{locale} is no language that this machine knows")
    return source


class SetFolder:
    """The folder PATH of a set that runs the program of the build folder BUILD."""

    def __init__(self, path, build):
        self.path = os.path.abspath(path)
        self.build = os.path.abspath(build)
        self._description = None  # known once make() was called
        self._claim = None  # the open folder, locked; closed with the process

    def file(self, *names):
        return os.path.join(self.path, *names)

    def claim(self):
        """Locks the folder until this process ends: two sets in one folder would overwrite each other's
        registration, log and control socket."""
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
        """Whether the folder is empty or holds a set. Any other folder must not be cleared."""
        names = set(os.listdir(self.path)) if os.path.isdir(self.path) else set()
        return names <= _LAID_OUT or names >= _LAID_OUT

    def make(self, fresh=False, description=None, size=None, language=None):
        """Creates the content of the folder. FRESH removes the files of an earlier run. The file DESCRIPTION
        replaces the folder's own; SIZE and LANGUAGE then override its values. Reports errors in any of them
        before anything is changed."""
        own = self.file("set.ini")
        given = description or (None if fresh else own)
        described = given and Description(self.build, given).language
        if language or described:
            locale_source(language + ".utf8" if language else described)
        content = b""
        if description:
            with open(description, "rb") as file:
                content = file.read()
        if fresh:
            self._clear()
        for name in ("data", "etc", "home"):
            os.makedirs(self.file(name), exist_ok=True)
        shutil.copyfile(os.path.join(self.build, "config", "config.xml"), self.file("config.xml"))
        if description:
            # The old description may be a link to a file elsewhere, which must not be changed.
            if os.path.lexists(own):
                os.remove(own)
            with open(own, "wb") as file:
                file.write(content)
        self._description = Description(self.build, own)
        if size:
            self._description.change("Screen", "Width", str(size[0]))
            self._description.change("Screen", "Height", str(size[1]))
        if language:
            self._description.change("Language", "Language", language + ".utf8")

    def _clear(self):
        """Empties the folder, but keeps the folder itself, because the lock is on it."""
        if not self.is_ours:
            raise ChoiceError(f"{self.path} is not the folder of a set; nothing was changed")
        for name in os.listdir(self.path) if os.path.isdir(self.path) else ():
            path = self.file(name)
            if os.path.isdir(path) and not os.path.islink(path):
                shutil.rmtree(path)
            else:
                os.remove(path)

    @property
    def size(self):
        return self._described().size

    @property
    def language(self):
        return self._described().language

    def _described(self):
        return self._description or Description(self.build, self.file("set.ini"))

    def make_locales(self, path):
        """Builds the locales that the set may use into PATH, independent of those of the machine."""
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
            # An interrupted build leaves an incomplete folder.
            if os.path.lexists(draft):
                shutil.rmtree(draft)
            made = subprocess.run(["localedef", "--no-archive", "-i", source, "-f", "UTF-8", draft],
                                  capture_output=True, text=True, check=False)
            # Status 1 means warnings, which some of the distribution's own sources give.
            if made.returncode not in (0, 1) or not os.path.isdir(draft):
                raise SetError(f"the locale {locale} could not be built: "
                               f"{' '.join(made.stderr.split())}")
            os.rename(draft, target)
