#!/usr/bin/python3
# SPDX-License-Identifier: Apache-2.0
"""Holds every screen of the ordinary mode against the picture of it that was agreed, in two sizes, as an
eye does: a difference counts where it is as strong as one sees and as large as one sees. What differs is
left as old, new and difference for the gallery. --accept takes the present pictures for the agreed ones."""

import argparse
import concurrent.futures
import os
import shutil
import struct
import subprocess
import sys
import tempfile

SIZES = ("1280x720", "1920x1080")
SCENES = (
    "unregistered", "registered", "change",
    "pin-waiting", "search-waiting", "pin", "pin-registered",
    "level-first", "level-first-picked", "level-later", "level-later-picked", "level-last",
    "selection", "selection-made", "selection-500-middle", "selection-empty",
    "information-2", "information-4", "confirmation-2", "confirmation-12", "confirmation-single",
    "popup-completed", "popup-connecting", "popup-deletion", "popup-deregistered",
    "popup-deregistration", "popup-no-network", "popup-no-server", "popup-not-found", "popup-pin-expired",
    "popup-searching", "popup-unstable",
)
# How far a colour may be from the agreed one, in per cent of the way from black to white and after a blur
# that leaves nothing of a difference of single pixels; and how many pixels may be further.
STRONG = 4
MANY = 8
# What need not be looked into, as a share of the way from black to white.
FAINT = 0.02
HERE = os.path.dirname(os.path.abspath(__file__))


def convert(*words):
    made = subprocess.run(["convert", *words], capture_output=True, text=True, check=False)
    if made.returncode != 0:
        raise OSError(f"convert {' '.join(words)}: {made.stderr.strip()}")
    return made.stdout


def draw(options, folder):
    """The pictures of the scenes in the sizes, in FOLDER."""
    drawn = subprocess.run(
        [options.look_check, "--theme-folder", options.theme_folder, "--catalogues", options.catalogues,
         "--scenes", ",".join(options.scenes), "--states", "opening", "--sizes", ",".join(options.sizes),
         "--pictures", folder], capture_output=True, text=True, check=False)
    # Status 1: a check failed. That is another test's business.
    if drawn.returncode not in (0, 1):
        raise OSError(f"the screens could not be drawn: {drawn.stdout}{drawn.stderr}")


def size_of(path):
    """Width and height of a PNG file."""
    with open(path, "rb") as file:
        return struct.unpack(">II", file.read(24)[16:])


def strayed(old, new, difference):
    """How many pixels of NEW are not what OLD has there; DIFFERENCE becomes a picture of them."""
    # Most are unchanged: a quick comparison shows it.
    if float(convert(old, new, "-compose", "difference", "-composite", "-format", "%[fx:maxima]",
                     "info:")) < FAINT:
        return 0
    mask = difference + ".mask.png"
    convert(old, new, "-colorspace", "Lab", "-compose", "difference", "-composite", "-separate",
            "-evaluate-sequence", "max", "-blur", "0x1", "-threshold", f"{STRONG}%", mask)
    count = round(float(convert(mask, "-format", "%[fx:mean*w*h]", "info:")))
    if count > MANY:
        convert(old, "-modulate", "40", "(", mask, "-fill", "red", "-opaque", "white", "-transparent",
                "black", ")", "-composite", difference)
    os.remove(mask)
    return count


def compare(folder, scene, size, out):
    """A sentence about what differs, or None."""
    name = f"{scene}.{size}"
    new = os.path.join(folder, f"{name}-en.png")
    old = os.path.join(HERE, size, f"{scene}.png")
    if not os.path.exists(new):
        return f"{name} was not drawn"
    if not os.path.exists(old):
        return f"{name} has no agreed picture"
    if size_of(old) != size_of(new):
        return f"{name} has another size than the agreed picture"
    count = strayed(old, new, os.path.join(out, f"{name}.difference.png"))
    if count <= MANY:
        return None
    shutil.copyfile(old, os.path.join(out, f"{name}.old.png"))
    shutil.copyfile(new, os.path.join(out, f"{name}.new.png"))
    return f"{name} differs from the agreed picture in {count} pixels"


def accept(folder):
    for size in SIZES:
        place = os.path.join(HERE, size)
        shutil.rmtree(place, ignore_errors=True)
        os.makedirs(place)
        for scene in SCENES:
            convert(os.path.join(folder, f"{scene}.{size}-en.png"), "-alpha", "off", "-strip",
                    "-define", "png:compression-level=9", "-define", "png:exclude-chunks=date,time",
                    "PNG24:" + os.path.join(place, f"{scene}.png"))


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    for name in ("look-check", "theme-folder", "catalogues", "out"):
        parser.add_argument("--" + name, required=True)
    parser.add_argument("--accept", action="store_true")
    parser.add_argument("--sizes", type=lambda text: text.split(","), default=SIZES)
    parser.add_argument("--scenes", default=SCENES, help="with commas between them; those without an agreed picture are left out",
                        type=lambda text: [scene for scene in text.split(",") if scene in SCENES])
    parser.add_argument("--jobs", type=int, default=1, help="pictures compared at a time")
    options = parser.parse_args()
    if options.accept and (set(options.sizes) != set(SIZES) or set(options.scenes) != set(SCENES)):
        parser.error("--accept takes all pictures")
    with tempfile.TemporaryDirectory() as folder:
        draw(options, folder)
        if options.accept:
            accept(folder)
        shutil.rmtree(options.out, ignore_errors=True)
        os.makedirs(options.out)
        with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
            found = pool.map(lambda at: compare(folder, *at, options.out),
                             [(scene, size) for size in options.sizes for scene in options.scenes])
            told = [sentence for sentence in found if sentence]
    kept = {os.path.join(size, name) for size in SIZES
            for name in (os.listdir(os.path.join(HERE, size)) if os.path.isdir(os.path.join(HERE, size)) else [])}
    told += [f"{name} is the agreed picture of no scene" for name in
             sorted(kept - {os.path.join(size, f"{scene}.png") for size in SIZES for scene in SCENES})]
    for sentence in told:
        print(sentence)
    print(f"{len(options.sizes) * len(options.scenes)} pictures, {len(told)} differ")
    return 1 if told else 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except OSError as error:
        print(error, file=sys.stderr)
        sys.exit(2)
