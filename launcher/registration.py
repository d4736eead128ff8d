# SPDX-License-Identifier: Apache-2.0
"""Creates the registration files of a set without a walk."""

import os
import xml.etree.ElementTree as ElementTree
from xml.sax.saxutils import quoteattr


def document_of(shop_list):
    """The registration document of the first shop in the file SHOP_LIST: on each level the first entry below
    the entry of the level before."""
    levels = []
    code = ""
    for level in ElementTree.parse(shop_list).getroot().iter("list"):
        below = [entry for entry in level.iter("sub_list") if entry.get("code").startswith(code)]
        if not below:
            break
        code = below[0].get("code")
        levels.append((level, below[0]))
    text = '<?xml version="1.0" encoding="UTF-8"?><rsp stat="ok">'
    for level, entry in levels:
        is_sub = "N" if level is levels[-1][0] else level.get("is_sub")
        text += (f'<list level={quoteattr(level.get("level"))} name={quoteattr(level.get("name"))} '
                 f'is_fix={quoteattr(level.get("is_fix"))} is_sub={quoteattr(is_sub)}>'
                 f'<sub_list name={quoteattr(entry.get("name"))} code={quoteattr(entry.get("code"))} />'
                 "</list>")
    return text + "</rsp>"


def register(folder, document):
    """Registers the set in FOLDER, writing the same files as the daemon."""
    data = folder.file("data")
    os.makedirs(data, exist_ok=True)
    with open(os.path.join(data, "registered.xml"), "w", encoding="utf-8") as file:
        file.write(document)
    with open(os.path.join(data, "registered"), "w", encoding="utf-8"):
        pass
