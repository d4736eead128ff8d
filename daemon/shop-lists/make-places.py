#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Makes a shop list of real places from Debian's iso-codes data.

Usage: make-places.py ISO_CODES_FOLDER OUTPUT

Three levels: the initial letters of the countries, the countries, and their subdivisions. Each code is
the parent's and two characters more, digits before letters, so a place has at most 1,296 children.
"""
import json
import os
import sys
import unicodedata
from collections import Counter, defaultdict
from xml.sax.saxutils import quoteattr

DIGITS = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ"
# The program writes name and code of an entry into 255 bytes and cuts what is longer.
LONGEST_ENTRY = 200
# The program knows the children of an entry by its name, and the top entries by this one.
RESERVED_NAME = "Root"


def load(folder, standard):
    with open(os.path.join(folder, f"iso_{standard}.json"), encoding="utf-8") as file:
        return json.load(file)[standard]


def encoded(text):
    return quoteattr(text, {'"': "&quot;"})[1:-1]


def two_characters(number):
    if number >= len(DIGITS) ** 2:
        raise ValueError("more children than two characters can tell apart")
    return DIGITS[number // len(DIGITS)] + DIGITS[number % len(DIGITS)]


def sort_key(text):
    plain = unicodedata.normalize("NFD", text)
    return "".join(c for c in plain if not unicodedata.combining(c)).casefold(), text


def initial(name):
    return sort_key(name)[0][0].upper()


def read_places(folder):
    """Initial -> country -> names of its subdivisions, all sorted."""
    subdivisions = defaultdict(list)
    for entry in load(folder, "3166-2"):
        subdivisions[entry["code"].split("-")[0]].append((entry["name"], entry["code"]))
    countries = defaultdict(list)
    for entry in load(folder, "3166-1"):
        name = entry.get("common_name", entry["name"])
        countries[initial(name)].append((name, subdivisions[entry["alpha_2"]]))
    parents = {RESERVED_NAME, *countries}
    parents.update(name for group in countries.values() for name, _ in group)
    tree = []
    for letter in sorted(countries):
        group = sorted(countries[letter], key=lambda item: sort_key(item[0]))
        tree.append((letter, [(name, distinct(places, parents)) for name, places in group]))
    return tree


def distinct(places, parents):
    """The names of the places; one that is not alone, or is a parent's too, gets its code."""
    count = Counter(name for name, _ in places)
    names = [f"{name} ({code})" if count[name] > 1 or name in parents else name
             for name, code in places]
    return [(name, []) for name in sorted(names, key=sort_key)]


def collect(items, prefix, depth, levels):
    for number, (name, children) in enumerate(items):
        code = prefix + two_characters(number)
        if len((encoded(name) + code).encode()) > LONGEST_ENTRY:
            raise ValueError(f"the name is too long: {name}")
        levels[depth].append((name, code))
        collect(children, code, depth + 1, levels)


def document(levels, titles):
    yield '<?xml version="1.0" encoding="UTF-8"?>'
    yield '<rsp stat="ok">'
    for number, (title, entries) in enumerate(zip(titles, levels), 1):
        is_sub = "N" if number == len(titles) else "Y"
        yield f'  <list level="{number}" name="{title}" is_fix="Y" is_sub="{is_sub}">'
        for name, code in entries:
            yield f'    <sub_list name="{encoded(name)}" code="{code}"/>'
        yield "  </list>"
    yield "</rsp>"


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    titles = ["Initial", "Country", "Subdivision"]
    levels = [[] for _ in titles]
    collect(read_places(sys.argv[1]), "", 0, levels)
    os.makedirs(os.path.dirname(os.path.abspath(sys.argv[2])), exist_ok=True)
    with open(sys.argv[2], "w", encoding="utf-8") as output:
        output.write("\n".join(document(levels, titles)) + "\n")


if __name__ == "__main__":
    main()
