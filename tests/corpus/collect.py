#!/usr/bin/env python3
"""Collects real texts in many languages from this system's manuals and documents into one folder.

collect.py FOLDER: the folder is made anew. Every text becomes a .txt file in UTF-8 with a mark, so that it
reads the same in every code page, and small enough to be imported without a question.
"""
import fnmatch
import glob
import gzip
import os
import shutil
import sys

FEWEST = 1000
MOST = 1500
LARGEST = 512 * 1024
SMALLEST = 200  # shorter manual pages only point at others
MARK = b"\xef\xbb\xbf"
MANUALS = "/usr/share/man"
# The first languages come whole, of the others a share.
LANGUAGES = {"zh_CN": 500, "zh_TW": 200, "ja": 100, "ko": 50, "ru": 40, "uk": 20, "de": 40, "fr": 40, "es": 40,
             "pl": 40, "cs": 20, "tr": 20, "hu": 20, "pt_BR": 20, "da": 20, "sv": 20}


def text_of(path):
    """The file's text, or None when it is none."""
    try:
        opened = gzip.open(path) if path.endswith(".gz") else open(path, "rb")
        with opened as file:
            data = file.read(LARGEST + 1)
    except (OSError, EOFError):
        return None
    if not SMALLEST <= len(data) <= LARGEST - len(MARK) or b"\0" in data:
        return None
    try:
        text = data.decode("utf-8")
    except UnicodeDecodeError:
        text = data.decode("iso-8859-1")
    return text if len(text.encode()) <= LARGEST - len(MARK) else None


def documents():
    """Links are not followed: some lead round in circles."""
    kinds = ("*.txt", "*.txt.gz", "README*", "NEWS*", "changelog.gz", "copyright")
    for folder, _, files in os.walk("/usr/share/doc"):
        for name in files:
            if any(fnmatch.fnmatchcase(name, kind) for kind in kinds):
                yield os.path.join(folder, name)


def sources():
    """Paths with the largest number of texts to take from each group."""
    for language, most in LANGUAGES.items():
        yield sorted(glob.glob(f"{MANUALS}/{language}/man*/*.gz")), most
    yield sorted(documents()), 700
    yield sorted(glob.glob(f"{MANUALS}/man*/*.gz")), MOST


def name_of(path):
    relative = os.path.relpath(path, "/usr/share")
    return relative.removesuffix(".gz").removesuffix(".txt").replace("/", "-")[:120] + ".txt"


def collect(folder):
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(folder)
    written = 0
    seen = set()
    for paths, most in sources():
        taken = 0
        for path in paths:
            if taken == most or written == MOST:
                break
            if os.path.islink(path) or not os.path.isfile(path):
                continue
            text = text_of(path)
            if text is None or text in seen:
                continue
            seen.add(text)
            with open(os.path.join(folder, name_of(path)), "wb") as file:
                file.write(MARK + text.encode())
            taken += 1
            written += 1
    return len(os.listdir(folder))


if __name__ == "__main__":
    count = collect(sys.argv[1])
    if count < FEWEST:
        print(f"skipped: only {count} texts were found; the package manpages-zh brings more")
        sys.exit(77)
    print(f"{count} texts in {sys.argv[1]}")
