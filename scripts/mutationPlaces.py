"""Where a source file may be broken on purpose: places that Clang's syntax tree knows, so that no comment,
text or preprocessor line is taken for code. Each place is a few edits of bytes and a key that stays the same
while the lines around it move."""
import re

import clang.cindex
from clang.cindex import CursorKind as Kind

FLAGS = ["-x", "c++", "-std=c++20"]
WEAKER = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==", "&&": "||", "||": "&&"}
EXITS = {Kind.RETURN_STMT, Kind.CONTINUE_STMT, Kind.BREAK_STMT, Kind.CXX_THROW_EXPR}
# Without them the program is slower, or an assertion of its own is missing, but nothing comes out otherwise.
NO_EFFECT = re.compile(r"(\w+(\.|->))?(reserve|shrink_to_fit|assert)\(")


class Finder:
    def __init__(self, root, path):
        self.path = path
        with open(f"{root}/{path}", "rb") as source:
            self.bytes = source.read()
        self.unit = clang.cindex.Index.create().parse(f"{root}/{path}", FLAGS + ["-I", root])
        self.places, self.seen = [], set()

    def places_found(self):
        for cursor in self.unit.cursor.get_children():
            if cursor.location.file and cursor.location.file.name == self.unit.spelling:
                self.visit(cursor)
        self.name_places()
        return self.places

    def visit(self, cursor):
        visitor = {
            Kind.IF_STMT: self.if_statement,
            Kind.CONDITIONAL_OPERATOR: lambda c: self.negate(children(c)[0]),
            Kind.BINARY_OPERATOR: self.binary,
            Kind.CALL_EXPR: self.operator_call,
            Kind.INTEGER_LITERAL: self.number,
            Kind.CXX_BOOL_LITERAL_EXPR: self.truth,
            Kind.RETURN_STMT: self.returned,
            Kind.COMPOUND_STMT: self.block,
        }.get(cursor.kind)
        if visitor:
            visitor(cursor)
        for child in cursor.get_children():
            self.visit(child)

    # What each kind of node offers.

    def if_statement(self, cursor):
        parts = children(cursor)
        if parts[0].kind in (Kind.DECL_STMT, Kind.VAR_DECL):
            if len(parts) < 3 or start(parts[1]) < end(parts[0]):
                return  # the condition is a declaration
            parts = parts[1:]
        condition, branches = parts[0], parts[1:]
        if not condition.kind.is_expression():
            return
        self.negate(condition)
        if len(branches) == 1 and leaves(branches[0]):
            self.add("early exit dropped", [(start(cursor), end(cursor), b"")])
        for branch in branches:
            self.statement_dropped(branch)

    def negate(self, condition):
        if self.binary_sign(condition) in WEAKER and self.binary_sign(condition) not in ("&&", "||"):
            return  # its operator is a place of its own
        self.add("condition negated", [(start(condition), end(condition), b"!(" + self.text(condition) + b")")])

    def binary(self, cursor):
        sign = self.binary_sign(cursor)
        parts = children(cursor)
        if sign in WEAKER:
            self.sign_changed(parts, sign, WEAKER[sign])
        elif sign in ("+", "-") and all(p.type.get_canonical().kind in INTEGERS for p in parts):
            self.sign_changed(parts, sign, "-" if sign == "+" else "+")

    def operator_call(self, cursor):
        parts = list(cursor.get_arguments())
        sign = cursor.spelling.removeprefix("operator")
        if cursor.spelling.startswith("operator") and sign in WEAKER and len(parts) == 2:
            self.sign_changed(parts, sign, WEAKER[sign])

    def sign_changed(self, parts, sign, other):
        between = self.bytes[end(parts[0]):start(parts[1])]
        if between.strip() != sign.encode():
            return  # brackets, a comment, a macro
        at = end(parts[0]) + between.index(sign.encode())
        self.add(f"{sign} to {other}", [(at, at + len(sign), other.encode())])

    def number(self, cursor):
        match = re.fullmatch(rb"(0[xX][0-9A-Fa-f]+|\d+)([uUlLzZ]*)", self.text(cursor))
        if match:
            changed = int(match[1], 0) + (1 if len(self.places) % 2 or int(match[1], 0) == 0 else -1)
            self.add("constant changed", [(start(cursor), end(cursor), str(changed).encode() + match[2])])

    def truth(self, cursor):
        other = {b"true": b"false", b"false": b"true"}.get(self.text(cursor))
        if other:
            self.add("constant changed", [(start(cursor), end(cursor), other)])

    def returned(self, cursor):
        for value in children(cursor):
            if value.type.get_canonical().kind == clang.cindex.TypeKind.BOOL and self.text(value) not in (
                    b"true", b"false"):
                self.negate(value)

    def block(self, cursor):
        before = None
        for statement in children(cursor):
            self.statement_dropped(statement)
            kind = self.statement_kind(statement)
            if before is not None and kind and "call" in (kind, self.statement_kind(before)):
                self.add("steps swapped", [(start(before), end(before), self.text(statement)),
                                           (start(statement), end(statement), self.text(before))])
            before = statement if kind else None

    def statement_dropped(self, statement):
        kind = self.statement_kind(statement)
        if kind:
            self.add(f"{kind} dropped", [(start(statement), end(statement), b"")])

    def statement_kind(self, statement):
        while statement.kind == Kind.UNEXPOSED_EXPR and len(children(statement)) == 1:
            statement = children(statement)[0]
        if NO_EFFECT.match(self.text(statement).decode()):
            return None
        if statement.kind == Kind.CALL_EXPR:
            return "assignment" if statement.spelling == "operator=" else "call"
        if statement.kind == Kind.COMPOUND_ASSIGNMENT_OPERATOR or self.binary_sign(statement) == "=":
            return "assignment"
        return None

    # Texts and places.

    def binary_sign(self, cursor):
        if cursor.kind != Kind.BINARY_OPERATOR or len(children(cursor)) != 2:
            return None
        left, right = children(cursor)
        return self.bytes[end(left):start(right)].decode().strip()

    def text(self, cursor):
        return self.bytes[start(cursor):end(cursor)]

    def add(self, kind, edits):
        if any(a >= b or b > len(self.bytes) for a, b, _ in edits) or (kind, edits[0][0]) in self.seen:
            return  # out of a macro, or an instance of a template seen before
        self.seen.add((kind, edits[0][0]))
        self.places.append({"file": self.path, "kind": kind,
                            "edits": [(a, b, new.decode()) for a, b, new in edits]})

    def name_places(self):
        """The key: the line's text, the column in it, and which of several like it in the file."""
        self.places.sort(key=lambda p: (p["edits"][0][0], p["kind"]))
        times = {}
        for place in self.places:
            at = place["edits"][0][0]
            line_start = self.bytes.rfind(b"\n", 0, at) + 1
            line = self.bytes[line_start:self.bytes.find(b"\n", at)].decode(errors="replace")
            indent = len(line) - len(line.lstrip())
            name = f'{self.path}|{place["kind"]}|{line.strip()}|{at - line_start - indent}'
            times[name] = times.get(name, 0) + 1
            place["line"] = self.bytes.count(b"\n", 0, at) + 1
            place["key"] = f"{name}|{times[name]}"


INTEGERS = {getattr(clang.cindex.TypeKind, name) for name in (
    "INT", "UINT", "LONG", "ULONG", "LONGLONG", "ULONGLONG", "SHORT", "USHORT", "UCHAR", "SCHAR", "CHAR_S")}


def children(cursor):
    return list(cursor.get_children())


def start(cursor):
    return cursor.extent.start.offset


def end(cursor):
    return cursor.extent.end.offset


def leaves(branch):
    if branch.kind == Kind.COMPOUND_STMT:
        return bool(children(branch)) and leaves(children(branch)[-1])
    while branch.kind == Kind.UNEXPOSED_EXPR and len(children(branch)) == 1:
        branch = children(branch)[0]
    return branch.kind in EXITS


def find(root, path):
    return Finder(root, path).places_found()
