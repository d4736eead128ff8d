# SPDX-License-Identifier: Apache-2.0
"""Makes the gallery: every screen in every mode side by side, as one page to open from disk."""

import argparse
import html
import os
import shutil
import subprocess
import sys

import shares

SIZE = "1920x1080"
# Each row of a screen: its heading, the language, and the modes with what follows in a picture's name.
MODES = [("ordinary", ""), ("high contrast", "-contrast"), ("enlarged", "-enlarged"),
         ("high contrast, enlarged", "-contrast-enlarged")]
ROWS = [("English", "en", "", MODES), ("Arabic, right to left", "ar", "-rtl", MODES),
        ("The longest words of all languages", "longest", "", MODES[:1])]

PAGE = """<!DOCTYPE html>
<html lang="en">
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>zolt-hub: the gallery</title>
<style>
:root {{ color-scheme: dark; }}
body {{ margin: 0 auto; max-width: 1760px; padding: 2rem; background: #0b0f16; color: #e8edf4;
        font: 16px/1.5 sans-serif; }}
h1 {{ font-size: 1.9rem; margin: 0 0 .5rem; }}
h2 {{ font-size: 1.3rem; margin: 3rem 0 .5rem; border-top: 1px solid #2a3446; padding-top: 1rem; }}
h3 {{ font-size: .95rem; font-weight: normal; margin: 1rem 0 .4rem; color: #a9b6c8; }}
nav {{ columns: 5 14rem; margin: 1rem 0; }}
a {{ color: #9cc4ff; text-decoration: none; }}
a:focus, a:hover {{ text-decoration: underline; }}
nav a {{ display: block; }}
.row {{ display: grid; grid-template-columns: repeat(4, 1fr); gap: 1rem; }}
figure {{ margin: 0; }}
img {{ width: 100%; height: auto; display: block; border: 1px solid #2a3446; }}
figcaption {{ font-size: .85rem; color: #a9b6c8; padding-top: .2rem; }}
</style>
<h1>The gallery</h1>
<p>{count} pictures of {scenes} screens at {size}, drawn by the program itself. Each leads to the whole picture.</p>
<nav>
{links}
</nav>
{sections}
</html>
"""


def draw(arguments, folder):
    """Keeps the pictures of all rows. Failures are printed and do not stop the gallery."""
    for _, language, _, modes in ROWS:
        chosen = "all" if len(modes) > 1 else "ordinary"
        report = shares.run(
            [arguments.look_check, "--theme-folder", arguments.theme_folder, "--catalogues",
             arguments.catalogues, "--sizes", SIZE, "--languages", language, "--modes", chosen,
             "--scenes", arguments.scenes, "--states", "opening", "--pictures", folder], arguments.jobs)
        print(f"{language}: {shares.summary(report).splitlines()[-1]}")


def figure(folder, name, caption):
    """One picture, or nothing where there is none."""
    if not os.path.exists(os.path.join(folder, "pictures", f"{name}.png")):
        return ""
    return (f'<figure><a href="pictures/{name}.png"><img src="pictures/{name}.small.jpg" '
            f'width="640" height="360" loading="lazy" alt="{html.escape(caption)}"></a>'
            f"<figcaption>{html.escape(caption)}</figcaption></figure>")


def section(folder, scene):
    """All pictures of a screen; further rows, as of old and new, go at its end."""
    parts = [f'<h2 id="{scene}">{html.escape(scene)}</h2>']
    for heading, language, direction, modes in ROWS:
        figures = [figure(folder, f"{scene}.{SIZE}-{language}{direction}{mode}", caption)
                   for caption, mode in modes]
        if any(figures):
            parts.append(f'<h3>{heading}</h3>\n<div class="row">\n' + "\n".join(figures) + "\n</div>")
    return "\n".join(parts)


def changes(arguments, folder):
    """The screens that are not as they were agreed: the agreed picture, the present one, the difference."""
    goldens = os.path.join(os.path.dirname(os.path.abspath(__file__)), "goldens", "goldens.py")
    told = subprocess.run(
        [sys.executable, "-B", goldens, "--look-check", arguments.look_check, "--theme-folder",
         arguments.theme_folder, "--catalogues", arguments.catalogues, "--out", folder,
         "--jobs", str(arguments.jobs), *(["--accept"] if arguments.accept else []),
         *([] if arguments.scenes == "all" else ["--scenes", arguments.scenes])], capture_output=True, text=True, check=False)
    if told.returncode not in (0, 1):
        sys.exit(told.stderr)
    print(told.stdout, end="")
    parts = []
    for name in sorted(name[:-len(".old.png")] for name in os.listdir(folder) if name.endswith(".old.png")):
        figures = [f'<figure><a href="changes/{name}.{kind}.png"><img src="changes/{name}.{kind}.png" '
                   f'loading="lazy" alt="{caption}"></a><figcaption>{caption}</figcaption></figure>'
                   for kind, caption in (("old", "agreed"), ("new", "now"), ("difference", "difference"))]
        parts.append(f'<h3>{html.escape(name)}</h3>\n<div class="row">\n' + "\n".join(figures) + "\n</div>")
    lines = told.stdout.strip().splitlines()
    heading = '<h2 id="changes">Changes</h2>\n' + "".join(f"<p>{html.escape(line)}</p>\n" for line in lines)
    return heading + "\n".join(parts)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--look-check", required=True)
    parser.add_argument("--theme-folder", required=True)
    parser.add_argument("--catalogues", required=True)
    parser.add_argument("--out", required=True)
    parser.add_argument("--scenes", default="all", help="only these, with commas between them")
    parser.add_argument("--accept", action="store_true", help="agree to the screens as they are now")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="processes at a time")
    arguments = parser.parse_args()
    pictures = os.path.join(arguments.out, "pictures")
    shutil.rmtree(pictures, ignore_errors=True)
    os.makedirs(pictures)
    draw(arguments, pictures)
    scenes = subprocess.run([arguments.look_check, "--list"], capture_output=True, text=True,
                            check=True).stdout.split()
    if arguments.scenes != "all":
        scenes = arguments.scenes.split(",")
    sections = [section(arguments.out, scene) for scene in scenes]
    changed = changes(arguments, os.path.join(arguments.out, "changes"))
    page = PAGE.format(
        count=sum(part.count("<figure>") for part in sections), scenes=len(scenes), size=SIZE,
        links='<a href="#changes">Changes</a>\n' + "\n".join(f'<a href="#{scene}">{html.escape(scene)}</a>' for scene in scenes),
        sections="\n".join([changed, *sections]))
    place = os.path.join(arguments.out, "index.html")
    with open(place, "w", encoding="utf-8") as file:
        file.write(page)
    print(f"The gallery is {place}")


if __name__ == "__main__":
    main()
