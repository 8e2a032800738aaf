#!/usr/bin/env python3
"""Makes texts for charset_bench from the translations of programs: charset_texts.py LOCALE_FOLDER OUT

LOCALE_FOLDER holds LANGUAGE/LC_MESSAGES/*.mo, as /usr/share/locale does; OUT gets a file LANGUAGE.txt for each, in UTF-8
with a text as long as a subject in each line. The same catalogues give the same files.
"""
import gettext
import pathlib
import random
import re
import sys

SHORTEST, LONGEST = 12, 90
LANGUAGES = """de fr es pt_BR it sv da fi nl is et pl cs sk hu ro hr sl ru uk bg sr el tr he ar lt lv th ja ko zh_CN
zh_TW""".split()


def texts(folder):
    """The single lines of all translations below a folder, without placeholders, mnemonics and markup."""
    found = set()
    for path in sorted(folder.glob("*.mo")):
        try:
            with path.open("rb") as file:
                catalogue = gettext.GNUTranslations(file)._catalog  # pylint: disable=protected-access
        except (OSError, ValueError, IndexError):  # a few are broken
            continue
        for translation in catalogue.values():
            if isinstance(translation, str):
                found.update(re.sub(r"%[-#0-9.$]*[a-zA-Z]+|[_&]|<[^>]*>", "", translation).split("\n"))
    return found


def is_fit(line):
    return SHORTEST <= len(line) <= LONGEST and any(ord(c) > 127 and c.isalpha() for c in line)


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    out = pathlib.Path(sys.argv[2])
    out.mkdir(parents=True, exist_ok=True)
    for language in LANGUAGES:
        lines = {" ".join(line.split()) for line in texts(pathlib.Path(sys.argv[1]) / language / "LC_MESSAGES")}
        chosen = sorted(filter(is_fit, lines))
        random.Random(1).shuffle(chosen)
        (out / f"{language}.txt").write_text("\n".join(chosen[:3000]) + "\n", encoding="utf-8")


if __name__ == "__main__":
    main()
