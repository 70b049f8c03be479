# SPDX-License-Identifier: MIT
"""Reads the C++ of the window, as far as check_writers and check_architecture need it.

Not a compiler: it knows tokens, brackets, the declarations of a class, and where functions begin
and end. It relies on the tree being formatted and on it compiling.
"""
import re
from collections import namedtuple
from pathlib import Path

HEADER = "mainwindow/mainwindow.h"
CLASS = "MainWindow"

Member = namedtuple("Member", "name type region line")
Method = namedtuple("Method", "name region line parameters body")  # the last two: see Function
Function = namedtuple("Function", "name line parameters body")  # indices of '(' and '{'

TOKEN = re.compile(r"""
    (?P<skipped> \s+ | //[^\n]* | /\*.*?\*/ | \#(?:[^\n\\]|\\.)* )
  | (?P<literal> (?:u8|[uUL])? (?: R"(?P<mark>[^\s(]*)\(.*?\)(?P=mark)"
                                 | "(?:[^"\\]|\\.)*" | '(?:[^'\\]|\\.)*' )
               | \d(?:[\w.]|'\w)* )
  | \w+
  | ->\* | <<= | >>= | <=> | \.\.\. | \.\* | -> | :: | \+\+ | -- | && | \|\| | << | [-+*/%&|^=!<>]=
  | .
    """, re.VERBOSE | re.DOTALL)  # '>>' is two tokens, since it may end templates

OPENING_OF = {")": "(", "]": "[", "}": "{"}


class Code:
    """The tokens of a text, without comments and preprocessor lines; literals are all '0'."""

    def __init__(self, text):
        self.tokens = []
        self.lines = []  # of each token, from 1
        self.partner = {}  # of each bracket: the index of the other one
        self.parent = []  # of each token: the index of the bracket that is open around it, or -1
        line, last = 1, 0
        brackets = [-1]
        for match in TOKEN.finditer(text):
            line += text.count("\n", last, match.start())
            last = match.start()
            if match["skipped"] is None:
                self.lines.append(line)
                self._add("0" if match["literal"] else match[0], brackets)

    def _add(self, token, brackets):
        index = len(self.tokens)
        if token in OPENING_OF and len(brackets) > 1:
            opening = brackets.pop()
            self.partner[opening], self.partner[index] = index, opening
        self.tokens.append(token)
        self.parent.append(brackets[-1])
        if token in OPENING_OF.values():
            brackets.append(index)

    def __getitem__(self, index):
        return self.tokens[index] if 0 <= index < len(self.tokens) else ""

    def skip_group(self, index):
        """The index after the brackets that open at `index`; the next index if none do."""
        return max(index, self.partner.get(index, index)) + 1

    def is_word(self, index):
        return re.fullmatch(r"[A-Za-z_]\w*", self[index]) is not None

    def arguments(self, opening):
        """(first, end) of each part between commas, within the brackets that open there."""
        first = index = opening + 1
        closing = self.partner[opening]
        angles = 0
        while index < closing:
            angles += {"<": 1, ">": -1}.get(self[index], 0)
            if self[index] == "," and angles <= 0:
                yield first, index
                first = index + 1
            index = self.skip_group(index)
        if first < closing:
            yield first, closing

    def body(self, parameters):
        """The '{' of the function with these parameters, or None: it is only declared."""
        index = self.partner[parameters] + 1
        while self[index] not in ("{", ";", ":", ""):
            index = self.skip_group(index)
        while self[index] in (":", ","):  # the initialisers of a constructor
            while self[index] not in ("(", "{", ""):
                index += 1
            index = self.skip_group(index)
        return index if self[index] == "{" else None

    def methods_defined(self):
        """The functions of the window that are defined outside its class."""
        index = 0
        while index < len(self.tokens):
            body = None
            if self.tokens[index:index + 2] == [CLASS, "::"]:
                name = "".join(self.tokens[index + 2:self._find("(", index)])
                if re.fullmatch(r"~?\w+", name):
                    parameters = self._find("(", index)
                    body = self.body(parameters)
                    if body is not None or self[self.partner[parameters] + 1] == "=":  # = default
                        yield Function(name, self.lines[index], parameters, body)
            if body is not None:
                index = self.skip_group(body)
            elif self[index] == "{" and not self._opens_namespace(index):
                index = self.skip_group(index)
            else:
                index += 1

    def _find(self, token, index):
        while self[index] not in (token, ""):
            index += 1
        return index

    def _opens_namespace(self, index):
        index -= 1
        while self.is_word(index) and self[index] != "namespace" or self[index] == "::":
            index -= 1
        return self[index] == "namespace"


class Window:
    """The class of the window, as its header declares it."""

    def __init__(self, root):
        text = (Path(root) / HEADER).read_text(encoding="utf-8")
        self.code = Code(text)
        self.regions = []  # the files, in the order of the header
        self.members = []
        self.methods = []
        self._region_lines = []
        for line, content in enumerate(text.splitlines(), 1):
            if match := re.match(r"\s*// -+ (\S+\.cpp):", content):
                self.regions.append(match[1])
                self._region_lines.append((line, match[1]))
        for first, end in self._declarations():
            self._read(first, end)

    def _region(self, line):
        return next((name for begin, name in reversed(self._region_lines) if begin < line), None)

    def _class_body(self):
        code = self.code
        for index in range(len(code.tokens)):
            if code.tokens[index:index + 2] == ["class", CLASS]:
                while code[index] not in (";", "{"):
                    index += 1
                if code[index] == "{":
                    return index
        raise SystemExit(f"{HEADER}: there is no class {CLASS}")

    def _declarations(self):
        code = self.code
        first = index = self._class_body() + 1
        end = code.partner[index - 1]
        while index < end:
            at = index
            index = code.skip_group(at)
            is_body = code[at] == "{" and code[at - 1] in (")", "const", "noexcept", "override")
            if code[at] == ";" or is_body:
                yield first, index
                first = index
            elif code[at] == ":" and code[first] in ("public", "protected", "private", "signals"):
                first = index
            elif at == first and code[at].startswith("Q_"):
                first = index = code.skip_group(index) if code[index] == "(" else index

    def _read(self, first, end):
        code = self.code
        if code[first] in ("using", "typedef", "friend", "enum", "struct", "class",
                           "static_assert", ";"):
            return
        line = code.lines[first]
        angles = 0
        for index in range(first, end):
            angles += {"<": 1, ">": -1}.get(code[index], 0)
            if angles == 0 and code[index] in ("=", "{", ";"):
                break
            if angles == 0 and code[index] == "(":
                name = code[index - 1]
                if code[index - 2] == "~":
                    name = "~" + name
                self.methods.append(
                    Method(name, self._region(line), line, index, code.body(index)))
                return
        kind = None
        for part in self._split(first, end - 1):
            if kind is None:
                kind = " ".join(code.tokens[first:part])
            self.members.append(
                Member(code[part], kind, self._region(code.lines[part]), code.lines[part]))

    def _split(self, first, end):
        """The indices of the names in `Type a = 1, b{2}, c[3]`."""
        code = self.code
        angles, index, named = 0, first, False
        while index <= end:
            angles += {"<": 1, ">": -1}.get(code[index], 0)
            if angles == 0:
                if code[index] in ("=", "{", "[", ",", ";") and not named and index > first:
                    yield index - 1
                    named = True
                if code[index] == ",":
                    named = False
            index = code.skip_group(index)


def is_pointer(member):
    """Whether the member only leads to an object: what happens to that object is not a write."""
    return re.search(r"\*( const)?$|(_ptr|Pointer) <", member.type) is not None
