#!/usr/bin/env python3
"""Compares the translations with the texts in the code.

Without --update it fails when a translation lacks a text, holds one that is gone, is unfinished, or differs from its
source in what must be the same: placeholders, mnemonics, dots at the end, blanks around. With --update it first brings
the files in translations/ up to date; new texts are unfinished then.
"""
import argparse
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ET

ROOT = pathlib.Path(__file__).resolve().parent.parent
FOLDERS = ["platform", "mail", "settings", "messages", "delivery", "history", "whitelist", "contents", "archive", "dialogs", "console", "app"]


def update(lupdate, files):
    """Runs lupdate on copies or originals. Without places in the code, a moved line is no change."""
    folders = [str(ROOT / folder) for folder in FOLDERS if (ROOT / folder).is_dir()]
    run = subprocess.run(
        [lupdate, "-silent", "-locations", "none", "-no-obsolete", "-extensions", "cpp,h,ui", "-I", str(ROOT), *folders, "-ts",
         *map(str, files)],
        capture_output=True, text=True, cwd=ROOT, check=False)
    if run.returncode != 0 or run.stderr.strip():
        sys.exit(f"lupdate: {run.stdout}{run.stderr}")


def messages(file):
    """Every message of a file: (context, source, comment) and its element."""
    found = {}
    for context in ET.parse(file).getroot().iter("context"):
        for message in context.iter("message"):
            key = (context.findtext("name"), message.findtext("source"), message.findtext("comment") or "")
            found[key] = message
    return found


def texts(message):
    translation = message.find("translation")
    forms = [form.text or "" for form in translation.iter("numerusform")]
    return forms or [translation.text or ""]


def features(text):
    """What a translation has in common with its source."""
    # A literal ampersand is written twice.
    mnemonics = len(re.findall(r"&(?!&)", text.replace("&&", "")))
    return {
        "placeholders": sorted(re.findall(r"%L?(?:\d+|n)", text)),
        "number of mnemonics": mnemonics,
        "dots at the end": text.endswith("..."),
        "blanks in front": len(text) - len(text.lstrip()),
        "blanks behind": len(text) - len(text.rstrip()),
    }


def complaints(file, fresh):
    stored, wanted = messages(file), messages(fresh)
    for key in wanted.keys() - stored.keys():
        yield f"lacks {key[1]!r} of {key[0]}"
    for key in stored.keys() - wanted.keys():
        yield f"still has {key[1]!r} of {key[0]}, which is gone"
    for key, message in stored.items():
        if message.find("translation").get("type"):
            yield f"has not finished {key[1]!r} of {key[0]}"
        for text in texts(message):
            expected, found = features(key[1]), features(text)
            for name, value in expected.items():
                # One form of a plural may do without the number.
                if value != found[name] and not (name == "placeholders" and message.get("numerus")):
                    yield f"{key[1]!r} -> {text!r}: {name}"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--lupdate", default="lupdate", help="the program that extracts texts")
    parser.add_argument("--update", action="store_true", help="bring the translations up to date first")
    options = parser.parse_args()
    files = sorted((ROOT / "translations").glob("*.ts"))
    if not files:
        sys.exit("There are no translations.")
    if options.update:
        update(options.lupdate, files)
    failed = False
    with tempfile.TemporaryDirectory() as folder:
        for file in files:
            fresh = pathlib.Path(folder) / file.name
            shutil.copy(file, fresh)
            update(options.lupdate, [fresh])
            for complaint in complaints(file, fresh):
                print(f"{file.name}: {complaint}")
                failed = True
    if failed and not options.update:
        sys.exit("Run \"make translations\", and translate what is unfinished.")


if __name__ == "__main__":
    main()
