#!/usr/bin/env python3
"""Holds every include against the floors of the house.

A folder includes only what stands below it, folders of one floor never each other; rooms of a folder have
floors of their own, with the folder's own files on top; Windows' headers and _WIN32 stay where they belong.
What README, CONTRIBUTING and docs/ name in backticks as a file of a folder must be there. Prints each violation
and exits with 1. With --self-test it proves that it can fail.
"""
import os
import re
import subprocess
import sys
import tempfile

# From top to bottom; "" is the whole house. A folder's own files lie above its rooms, or where "." stands.
FLOORS = {
    "": [["cli", "ui"], ["io"], ["maint"], ["search"], ["app"], ["ports"], ["store"], ["jet", "formats", "regexp"], ["platform"], ["text"]],
    "ui": [["main"], ["dialogs"], ["controls"], ["windows"], ["ids.h"]],
    "app": [["start"]],
    "store": [["records"], ["databases"], ["ado", "embedded"], ["."]],
    "jet": [["sql"], ["upkeep"], ["catalogue"], ["table"], ["index"], ["file"]],
    "jet/file": [["maps"], ["."]],
    "jet/sql": [["run"], ["parse"], ["values"]],
    "regexp": [["match"], ["parse"]],
}
FOLDERS = [folder for floor in FLOORS[""] for folder in floor]
WINDOWS_FOLDERS = ("ui/", "platform/win32/", "store/ado/")
WINDOWS_HEADER = re.compile(
    r"<(windows|windowsx|winuser|winbase|ole2|objbase|oleauto|commctrl|commdlg|shlobj|shellapi|shlwapi|tlhelp32|psapi)\.h>", re.I)
INCLUDE = re.compile(r'\s*#\s*include\s+(?:"([^"]+)"|(<[^>]+>))')


def stem(path):
    return re.sub(r"\.(h|cpp)$", "", path)


def floor_of(path, folder):
    """The floor of the folder that the path lies on, from 0 (-1 above all rooms), and its room."""
    part = path[len(folder) + 1 if folder else 0:].split("/")
    room = part[0] if len(part) > 1 or any(part[0] in rooms for rooms in FLOORS[folder]) else "."
    floors = [number for number, rooms in enumerate(FLOORS[folder]) if room in rooms]
    return (floors[0] if floors else -1), room


def goes_up(path, target):
    """Whether the include leads to what stands above, or beside on the same floor."""
    for folder in FLOORS:
        inside = f"{folder}/" if folder else ""
        if not (path.startswith(inside) and target.startswith(inside)):
            continue
        here, there = floor_of(path, folder), floor_of(target, folder)
        if here[1] != there[1] and there[0] <= here[0] and here[0] != -1:
            return True
    return False


def fault(path, target):
    """Why `path` may not include `target`; None when it may."""
    there = target.split("/")[0]
    if there not in FOLDERS:
        return "not written from the root, or no folder of the house"
    if goes_up(path, target):
        return "an include upwards, or sideways"
    if target.startswith("platform/win32/") and not path.startswith(WINDOWS_FOLDERS):
        return "platform/win32/ is for Windows code only"
    return None


def circles(includes):
    """Headers that include each other in a circle."""
    headers = {stem(p): {stem(t) for t in ts} - {stem(p)} for p, ts in includes.items() if p.endswith(".h")}
    found, done = [], set()

    def visit(node, trail):
        if node in trail:
            found.append(" -> ".join(trail[trail.index(node):] + [node]))
            return
        if node in done:
            return
        for target in sorted(headers.get(node, ())):
            visit(target, trail + [node])
        done.add(node)

    for node in sorted(headers):
        visit(node, [])
    return found


def check(root, files):
    faults, includes = [], {}
    for path in files:
        if path.split("/")[0] not in FOLDERS or not path.endswith((".h", ".cpp")):
            continue
        with open(os.path.join(root, path), encoding="utf-8") as source:
            lines = source.read().splitlines()
        if path.endswith(".h") and "#pragma once" not in lines:
            faults.append(f"{path}: no #pragma once")
        for number, line in enumerate(lines, 1):
            where = f"{path}:{number}: {line.strip()}"
            if re.match(r"\s*#\s*(if|ifdef|ifndef|elif).*_WIN32", line) and not path.startswith("platform/"):
                faults.append(f"{where}  (_WIN32 outside platform/)")
            match = INCLUDE.match(line)
            if not match:
                continue
            if match[2]:
                if WINDOWS_HEADER.match(match[2]) and not path.startswith(WINDOWS_FOLDERS):
                    faults.append(f"{where}  (Windows outside its places)")
                continue
            why = fault(path, match[1])
            if why:
                faults.append(f"{where}  ({why})")
            else:
                includes.setdefault(path, set()).add(match[1])
    faults += [f"{circle}  (a circle)" for circle in circles(includes)]
    return faults


NAMED = re.compile(r"`((?:[\w.-]+/)+[\w.-]+\.(?:h|cpp|md|py|txt|cmake|mjs))`")


def missing_files(text, files):
    """What a page names and the tree lacks."""
    return [name for name in NAMED.findall(text) if name not in files and not name.startswith("build/")]


def check_pages(root, files):
    faults = []
    for page in files:
        if page in ("README.md", "CONTRIBUTING.md") or page.startswith("docs/") and page.endswith(".md"):
            with open(os.path.join(root, page), encoding="utf-8") as source:
                faults += [f"{page}: {name} is not there" for name in missing_files(source.read(), set(files))]
    return faults


def self_test():
    """Each line breaks one rule; all must be reported."""
    broken = {
        "platform/a.h": '#pragma once\n#include "store/notebook.h"\n',
        "store/b.h": '#pragma once\n#include "ports/controls.h"\n',
        "cli/c.h": '#pragma once\n#include "ui/ids.h"\n',
        "jet/file/d.h": '#pragma once\n#include "jet/table/table.h"\n',
        "jet/table/e.h": '#pragma once\n#include "jet/database.h"\n',
        "jet/sql/run/m.h": '#pragma once\n#include "regexp/regExp.h"\n',
        "regexp/parse/n.h": '#pragma once\n#include "regexp/match/walk.h"\n',
        "formats/o.h": '#pragma once\n#include "jet/database.h"\n',
        "app/start/q.h": '#pragma once\n#include "app/gate.h"\n',
        "store/databases/r.h": '#pragma once\n#include "store/records/records.h"\n',
        "store/s.h": '#pragma once\n#include "store/databases/schema.h"\n',
        "text/p.h": '#pragma once\n#include "platform/files.h"\n',
        "app/f.h": "#pragma once\n#include <windows.h>\n",
        "app/g.cpp": "#ifdef _WIN32\n#endif\n",
        "app/h.h": "int missingPragma;\n",
        "app/i.h": '#pragma once\n#include "platform/win32/systemPath.h"\n',
        "app/j.h": '#pragma once\n#include "app/k.h"\n',
        "app/k.h": '#pragma once\n#include "app/j.h"\n',
    }
    clean = {"store/l.cpp": '#include "text/titles.h"\n#include "jet/database.h"\n'}
    with tempfile.TemporaryDirectory() as root:
        for path, text in {**broken, **clean}.items():
            os.makedirs(os.path.join(root, os.path.dirname(path)), exist_ok=True)
            with open(os.path.join(root, path), "w", encoding="utf-8") as out:
                out.write(text)
        for path in broken:
            if path == "app/k.h":
                continue
            if not check(root, [path, "app/k.h"] if path == "app/j.h" else [path]):
                return f"the check passes {path}, which breaks a rule"
        if check(root, list(clean)):
            return "the check refuses a rightful include"
    if missing_files("`a/b.h` and `a/c.h`", {"a/b.h"}) != ["a/c.h"]:
        return "the check of named files does not see one that is gone"
    return None


def main():
    wrong = self_test()
    if wrong:
        print(wrong)
        return 1
    if "--self-test" in sys.argv:
        return 0
    root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    listed = subprocess.run(["git", "ls-files"], cwd=root, capture_output=True, text=True, check=True).stdout
    files = [f for f in listed.splitlines() if os.path.exists(os.path.join(root, f))]
    faults = check(root, files) + check_pages(root, files)
    for line in faults:
        print(line)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
