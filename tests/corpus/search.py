#!/usr/bin/env python3
"""Imports a folder of real texts and compares what is found in them with a search of its own.

search.py VELLUMS-CLI FOLDER KIND: FOLDER holds .txt files in UTF-8, KIND is mdb or accdb. Exit status 1 and
a line for each difference.
search.py --patterns: prints what the window is to search for, a line each.
search.py --window VELLUMS-CLI DATABASE FOUND: checks what the window found in its database; FOUND holds, for
each of these patterns, a line of IDs.
"""
import os
import re
import subprocess
import sys
import tempfile
import unicodedata

FEWEST = 1000
# Words as a user types them into the search box.
PATTERNS = [
    "", "*", "the", "THE", "tHe FiLe", "file name", "name file", "exit status", "it's", "'", "''", "don't",
    "100%", "%", "a%b", "_", "ls_", "f_le", "[_]", "[%]", "[[]", "[", "[a", "]", "[]", "[]file", "[0-9][0-9][0-9]",
    "[x-z]q", "q[!u]", "q[^u]", "[-a]", "[z-a]", "colo[u]r", "C*C++", "#include", "?", "\\fB", "--help", "a  b", " end ",
    "文件", "命令 选项", "选项 命令", "权限", "系统", "目錄", "，", "。", "（", "手册页 [的是]", "中文_", "[一-三]个",
    "ファイル", "ふぁいる", "ﾌｧｲﾙ", "の", "한국", "файл", "ФАЙЛ", "ФаЙл", "Ёлка", "datei", "für", "FÜR", "fur", "straße",
    "STRASSE", "é", "É", "e\u0301", "à la", "ção", "łów", "ŁÓW", "ı", "İ", "ＦＩＬＥ", "ｆｉｌｅ　ｎａｍｅ", "１２３", "file\u3000name",
    "ﬁ", "Å", "\u212b", "µ", "μ", "Σ", "ς", "—", "\u00a0", "😀", "no such text anywhere 4711", "\t", "-", "©",
]
TITLES_ONLY = ["ls", "man1", "MAN8", "zh_CN", "file", "文件", "[0-9].txt", "changelog"]
# What cleaning takes out of texts.
UNCOMPARED = {chr(c) for c in range(0x21)} | {"\x7f", "\u3000"} | set("ゴガギグゲザジズヅデドポベプビパヴボペブピバヂダゾゼ")

failures = []


def expect(condition, sentence):
    if not condition:
        failures.append(sentence)
        print(sentence)


def folded_unit(unit):
    """What a UTF-16 unit counts as: ordinary width, hiragana, upper case; each one for one."""
    if unit == 0x3000 or 0xFF01 <= unit <= 0xFFEE:
        ordinary = unicodedata.normalize("NFKC", chr(unit))
        unit = ord(ordinary) if len(ordinary) == 1 else unit
    if 0x30A1 <= unit <= 0x30F6:
        unit -= 0x60
    upper = chr(unit).upper()
    if len(upper) == 1 and ord(upper) <= 0xFFFF and not (unit >= 0x80 > ord(upper)):
        unit = ord(upper)
    return unit


FOLD = {unit: folded_unit(unit) for unit in range(0x10000) if folded_unit(unit) != unit}


def units(text):
    """The text with every UTF-16 unit as one character."""
    data = text.encode("utf-16-le", "surrogatepass")
    return "".join(map(chr, memoryview(data).cast("H")))


def folded(text):
    return units(text).translate(FOLD)


def list_class(content):
    """A regular expression for the list between brackets, folded."""
    negative = len(content) > 1 and content[0] in "!^"
    content = content[1:] if negative else content
    ranges = []
    i = 0
    while i < len(content):
        if i + 2 < len(content) and content[i + 1] == "-":
            if content[i] <= content[i + 2]:
                ranges.append(f"\\u{ord(content[i]):04x}-\\u{ord(content[i + 2]):04x}")
            i += 3
        else:
            ranges.append(f"\\u{ord(content[i]):04x}")
            i += 1
    if not ranges:
        return "." if negative else "(?!)"
    return "[" + ("^" if negative else "") + "".join(ranges) + "]"


def pieces_of(pattern):
    """Regular expressions of what stands between the % of a pattern."""
    pieces = [""]
    i = 0
    while i < len(pattern):
        unit = pattern[i]
        close = pattern.find("]", i + 1) if unit == "[" else -1
        if unit == "%":
            pieces.append("")
        elif unit == "_":
            pieces[-1] += "."
        elif close > i + 1:
            pieces[-1] += list_class(pattern[i + 1:close])
        elif close < 0:
            pieces[-1] += re.escape(unit)
        i = close + 1 if close > 0 else i + 1
    return [re.compile(piece, re.DOTALL) for piece in pieces if piece]


def finder(words):
    """Tells whether a folded text holds the words. Both ends of the pattern are open."""
    pattern = words.strip(" ").replace(" ", "%").replace("*", "%")
    pieces = pieces_of(folded("%" + pattern + "%"))

    def find(text):
        place = 0
        for piece in pieces:
            found = piece.search(text, place)
            if not found:
                return False
            place = found.end()
        return True

    return find


class Program:
    def __init__(self, path, database):
        self.path, self.database = path, database

    def run(self, command, *arguments):
        done = subprocess.run([self.path, command, self.database, *arguments], capture_output=True, check=False)
        expect(done.returncode == 0, f"{command} {arguments}: {done.stderr.decode(errors='replace')}")
        return done.stdout.decode("utf-8")

    def rows(self, command, *arguments):
        lines = self.run(command, *arguments).split("\n")[:-1]
        return [[unescaped(field) for field in line.split("\t")] for line in lines[1:]]


def unescaped(field):
    return re.sub(r"\\(.)", lambda m: {"t": "\t", "n": "\n", "r": "\r", "N": ""}.get(m[1], m[1]), field)


def bare(text):
    return "".join(c for c in text if c not in UNCOMPARED)


def check_database(cli, folder, database):
    program = Program(cli, database)
    program.run("create", "--table", "Corpus")
    imported = dict(line.split("\t") for line in program.run("import", folder).split("\n")[:-1])
    rows = program.rows("sql", "SELECT ID, VLHEAD, VLTEXT, VLLINK FROM [Corpus]")
    records = {int(row[0]): row[1:] for row in rows}
    print(f"{os.path.basename(database)}: {len(imported)} imported, {len(records)} left without duplicates")
    expect(len(records) >= FEWEST, f"only {len(records)} records")
    expect(len(imported) == len(os.listdir(folder)), "not every text was imported")
    for number, (_, text, link) in records.items():
        expect(imported.get(str(number)) == link, f"record {number} was never reported")
        with open(link, encoding="utf-8-sig", newline="") as file:
            expect(bare(file.read()) == bare(text), f"{link} reads differently")
    program.run("check")
    texts = {number: [folded(field) for field in fields] for number, fields in records.items()}
    for options, patterns in ([], PATTERNS), (["--titles-only"], TITLES_ONLY):
        for words in patterns:
            printed = [int(row[0]) for row in program.rows("search", *options, "--", words)]
            compare(texts, words, printed, bool(options))


def compare(texts, words, found, titles_only):
    """Holds the IDs found for some words against a search of our own."""
    find = finder(words)
    wanted = {n for n, (head, text, link) in texts.items()
              if find(head) or find(link) or (not titles_only and find(text))}
    expect(len(found) == len(set(found)), f"{words!r}: an ID is there twice")
    missing, excess = wanted - set(found), set(found) - wanted
    expect(not missing and not excess,
           f"{words!r}: missing {sorted(missing)[:5]} ({len(missing)}), in excess {sorted(excess)[:5]} ({len(excess)})")
    if not titles_only:
        print(f"  {words!r}: {len(wanted)}")


def window_patterns():
    return [words for words in PATTERNS if words and "\t" not in words]


def check_window(cli, database, found):
    program = Program(cli, database)
    rows = program.rows("sql", "SELECT ID, VLHEAD, VLTEXT, VLLINK FROM [Memo]")
    expect(len(rows) >= FEWEST, f"only {len(rows)} records")
    program.run("check")
    texts = {int(row[0]): [folded(field) for field in row[1:]] for row in rows}
    with open(found, encoding="utf-8") as lines:
        answers = [line.split() for line in lines]
    expect(len(answers) == len(window_patterns()), "the window did not search for every pattern")
    for words, ids in zip(window_patterns(), answers):
        compare(texts, words, [int(number) for number in ids], False)


def main():
    if sys.argv[1] == "--patterns":
        print("\n".join(window_patterns()))
        return
    if sys.argv[1] == "--window":
        check_window(os.path.abspath(sys.argv[2]), sys.argv[3], sys.argv[4])
        sys.exit(1 if failures else 0)
    cli, folder = os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2])
    if not os.path.isdir(folder) or len(os.listdir(folder)) < FEWEST:
        print("skipped: there are too few texts")
        sys.exit(77)
    with tempfile.TemporaryDirectory() as place:
        check_database(cli, folder, os.path.join(place, "corpus." + sys.argv[3]))
    sys.exit(1 if failures else 0)


if __name__ == "__main__":
    main()
