# SPDX-License-Identifier: Apache-2.0
"""Configures the project in temporary folders and checks the result without building it."""

import json
import os
import re
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))

# Every key that the program reads. None has a default, so a missing one ends the program at its first use.
KEYS = ["DefaultLang", "LocalesPath", "LayoutPath", "SourceVersion", "ShopRegistrationFilePath",
        "USBContentDownloadPath", "TVFlashContentDownloadPath", "FakeSystemCalls", "FakeSetUseMode",
        "FakeUseMode", "FakeCountryCode", "FakeModel", "FakeScreenHeight", "FakeScreenWidth",
        "FakeLanguage", "FakeMenuLanguage", "FakeLanguageCb", "FakeShopModeCb",
        "FakeWirelessIpChangedCb", "FakeWiredIpChangedCb", "FakeNetworkTypeChangedCb", "FakeResetCb",
        "FakeWakeupCb"]

# Every printable character, and one of several bytes.
ANY_TEXT = "".join(chr(code) for code in range(32, 127)) + " é"
# Those that CMake supports in the name of a build folder.
ANY_FOLDER = "".join(one for one in ANY_TEXT if one not in '/"\\;$<>#|[]')


class Configured:
    """The project configured from PRESET in FOLDER, with VALUES for the cache."""

    def __init__(self, preset, folder, values=None):
        self.folder = folder
        definitions = [f"-D{name}={value}" for name, value in (values or {}).items()]
        self.run = subprocess.run(
            [os.environ.get("CMAKE_COMMAND", "cmake"), "--preset", preset, "-S", ROOT, "-B", folder,
             *definitions],
            cwd=ROOT, capture_output=True, text=True, check=False)

    def configuration(self):
        """The keys and values of the program's configuration file, in its order."""
        tree = xml.etree.ElementTree.parse(os.path.join(self.folder, "config", "config.xml"))
        return [(item.get("name"), item.text or "") for item in tree.getroot()]

    def cached(self, name):
        with open(os.path.join(self.folder, "CMakeCache.txt"), encoding="utf-8") as cache:
            return re.search(f"^{name}:[A-Z]+=(.*)$", cache.read(), re.M).group(1)

    def command(self, source):
        """The words of the command that compiles SOURCE, the first if there are many, as a shell
        reads them."""
        with open(os.path.join(self.folder, "compile_commands.json"), encoding="utf-8") as file:
            command = next(entry["command"] for entry in json.load(file)
                           if entry["file"] == os.path.join(ROOT, source))
        words = subprocess.run(["sh", "-c", f"printf '%s\\0' {command}"], capture_output=True,
                               text=True, check=True)
        return words.stdout.split("\0")[:-1]

    def string(self, source, name):
        """The value of the string that the definition NAME is to the compiler of SOURCE."""
        words = self.command(source)
        definition = next(word for word in words if word.startswith(f"-D{name}="))
        program = os.path.join(self.folder, "print-string")
        subprocess.run([words[0], definition, "-x", "c++", "-std=c++17", "-", "-o", program],
                       input=f"#include <cstdio>\nint main() {{ std::fputs({name}, stdout); }}\n",
                       text=True, check=True)
        return subprocess.run([program], capture_output=True, text=True, check=True).stdout


class ConfigureTest(unittest.TestCase):
    def setUp(self):
        made = tempfile.TemporaryDirectory()
        self.addCleanup(made.cleanup)
        self.folder = made.name

    def configured(self, preset, name="build", values=None):
        result = Configured(preset, os.path.join(self.folder, name), values)
        self.assertEqual(0, result.run.returncode, result.run.stdout + result.run.stderr)
        return result


class TheTelevision(ConfigureTest):
    def setUp(self):
        super().setUp()
        # A library of any name makes the program a target; nothing is linked here.
        self.television = self.configured(
            "television", values={"CMAKE_DISABLE_FIND_PACKAGE_GTest": "ON",
                                  "ZOLT_PLATFORM_LIBRARIES": "television"})

    def test_it_needs_no_test_library_and_has_the_paths_of_an_installed_set(self):
        home = "/usr/apps/org.tizen.zolt-hub"
        data = "/opt/usr/apps/org.tizen.zolt-hub/data"
        paths = {"ZOLT_CONFIG_FILE": f"{home}/config.xml",
                 "ZOLT_FLAG_FILE": f"{data}/service-cond-flag",
                 "ZOLT_IMAGE_TYPE_DIR": "/etc"}
        for name, path in paths.items():
            self.assertEqual(path, self.television.cached(name))
        self.assertEqual(paths["ZOLT_CONFIG_FILE"],
                         self.television.string("src/gui/main.cpp", "ZOLT_CONFIG_FILE"))
        configuration = self.television.configuration()
        self.assertEqual(KEYS, [key for key, value in configuration])
        values = dict(configuration)
        self.assertEqual("en_US.utf8", values["DefaultLang"])
        self.assertEqual(f"{home}/res/locale", values["LocalesPath"])
        self.assertEqual(f"{home}/res/edje", values["LayoutPath"])
        self.assertEqual("1.0.0", values["SourceVersion"])
        self.assertEqual(f"{data}/registered", values["ShopRegistrationFilePath"])
        self.assertEqual("/zolt-content", values["USBContentDownloadPath"])
        self.assertEqual(f"{data}/content", values["TVFlashContentDownloadPath"])
        self.assertEqual({"0"}, {value for key, value in configuration if key.startswith("Fake")})
        # Its compiler is unknown, and may have other warnings.
        words = self.television.command("src/gui/main.cpp")
        self.assertIn("-Wall", words)
        self.assertNotIn("-Werror", words)


class TheKeys(unittest.TestCase):
    def test_the_program_reads_these_and_no_others(self):
        read = set()
        for folder, _, names in os.walk(os.path.join(ROOT, "src")):
            for name in names:
                if name.endswith(".cpp"):
                    with open(os.path.join(folder, name), encoding="utf-8") as file:
                        text = file.read()
                    read |= set(re.findall(r'ZoltConfig::(?:get\w*|is)\(\s*"(\w+)"', text))
                    read |= set(re.findall(r'"(Fake\w+)"', text))
        self.assertEqual(set(KEYS), read)


class NamesOfAnyKind(ConfigureTest):
    def test_values_with_every_printable_character_arrive_as_they_are(self):
        places = {"LocalesPath": "ZOLT_LOCALES_DIR", "LayoutPath": "ZOLT_LAYOUT_DIR",
                  "ShopRegistrationFilePath": "ZOLT_REGISTRATION_FILE",
                  "USBContentDownloadPath": "ZOLT_USB_DOWNLOAD_PATH",
                  "TVFlashContentDownloadPath": "ZOLT_FLASH_DOWNLOAD_PATH"}
        strings = {"ZOLT_CONFIG_FILE": "src/gui/main.cpp", "ZOLT_FLAG_FILE": "src/gui/main.cpp",
                   "ZOLT_IMAGE_TYPE_DIR": "src/common/DeviceInfo.cpp"}
        values = {name: f"/{name}{ANY_TEXT}$<1:x>@PROJECT_NAME@0;1&amp;"
                  for name in [*places.values(), *strings]}
        television = self.configured("television",
                                     values={**values, "ZOLT_PLATFORM_LIBRARIES": "television"})
        configuration = dict(television.configuration())
        for key, name in places.items():
            self.assertEqual(values[name], configuration[key])
        for name, source in strings.items():
            self.assertEqual(values[name], television.string(source, name))

    def test_a_build_folder_of_any_name_gives_a_good_configuration(self):
        built = self.configured("virtual-set", ANY_FOLDER)
        configuration = built.configuration()
        self.assertEqual(KEYS, [key for key, value in configuration])
        self.assertEqual(os.path.join(built.folder, "theme"), dict(configuration)["LayoutPath"])
        self.assertEqual(os.path.join(built.folder, "locale"), dict(configuration)["LocalesPath"])
        self.assertIn("-Werror", built.command("src/gui/main.cpp"))


if __name__ == "__main__":
    unittest.main()
