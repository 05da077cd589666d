# SPDX-License-Identifier: MIT
"""Reads the public headers: their classes, functions and enumerations, and what the `///` comments say of them.

A comment before a declaration is about it and those that follow without a blank line; one behind a declaration
(`///<`) is about that one alone.
"""
from __future__ import annotations

import dataclasses
import pathlib
import re


@dataclasses.dataclass
class Member:
    """A public function, constant or data member."""

    name: str
    text: str
    parameters: list[str]
    is_function: bool
    is_static: bool
    is_const: bool


@dataclasses.dataclass
class Enumeration:
    name: str
    text: str
    is_scoped: bool
    enumerators: list[tuple[str, str]]  # name and text


@dataclasses.dataclass
class Scope:
    """A class, or what stands in a namespace itself (with an empty name)."""

    name: str
    text: str = ""
    namespace: str = ""
    bases: list[str] = dataclasses.field(default_factory=list)
    members: list[Member] = dataclasses.field(default_factory=list)
    enumerations: list[Enumeration] = dataclasses.field(default_factory=list)
    classes: list[Scope] = dataclasses.field(default_factory=list)


def read_headers(folder: pathlib.Path) -> list[Scope]:
    """All namespaces' own members (one scope for each header that has any) and all classes, nested ones behind theirs."""
    scopes: list[Scope] = []
    for path in sorted(folder.glob("*.h")):
        _Reader(path.read_text(encoding="utf-8")).read(scopes)
    return scopes


# What a header is made of, as far as it matters here.
_TOKEN = re.compile(
    r"""(?P<trailing>(?:[ \t]*///<[^\n]*\n)(?:[ \t]*///<[^\n]*\n)*)
      | (?P<before>[ \t]*///(?!<)[^\n]*\n)
      | (?P<comment>//[^\n]*)
      | (?P<directive>^\#(?:[^\n]*\\\n)*[^\n]*)
      | (?P<blank>\n[ \t]*(?=\n))
      | (?P<space>\s+)
      | (?P<text>"(?:[^"\\]|\\.)*" | '(?:[^'\\]|\\.)')
      | (?P<mark>::|[{}();,=<>:\[\]&*~!|+\-./%?^])
      | (?P<word>[A-Za-z_0-9']+)""",
    re.X | re.M,
)
_ACCESS = {"public", "protected", "private"}


class _Reader:
    def __init__(self, header: str):
        self.tokens = []
        position = 0
        while position < len(header):
            match = _TOKEN.match(header, position)
            if not match:
                raise ValueError(f"cannot read {header[position : position + 40]!r}")
            position = match.end()
            if match.lastgroup not in {"comment", "space", "directive"}:
                self.tokens.append((match.lastgroup, match.group()))
        self.at = 0

    def read(self, scopes: list[Scope]) -> None:
        self._read_namespace("", scopes)

    def _read_namespace(self, namespace: str, scopes: list[Scope]) -> None:
        own = Scope("", namespace=namespace)
        self._read_members(own, is_public=True)
        if own.members or own.enumerations:
            scopes.append(own)
        for nested in own.classes:
            self._flatten(nested, scopes)

    def _flatten(self, scope: Scope, scopes: list[Scope]) -> None:
        scopes.append(scope)
        for nested in scope.classes:
            nested.name = f"{scope.name}::{nested.name}"
            nested.namespace = scope.namespace
            self._flatten(nested, scopes)

    def _read_members(self, scope: Scope, is_public: bool) -> None:
        before: list[str] = []  # lines of the comment that is being collected
        text = ""  # of the group of declarations
        words: list[str] = []  # of the declaration that is being read
        while self.at < len(self.tokens):
            kind, token = self.tokens[self.at]
            self.at += 1
            if kind == "before":
                before.append(token.strip().removeprefix("///").removeprefix(" "))
                continue
            if before:
                text, before = _joined(before), []
            if kind == "blank":
                if not words:
                    text = ""
            elif kind == "trailing":
                pass  # taken with the declaration before it, or of a part of one
            elif token == "}" and not words:
                self._accept(";")
                return
            elif token == ":" and words and words[-1] in _ACCESS:
                is_public = words.pop() == "public"
            elif token in {";", "{"}:
                self._read_declaration(scope if is_public else Scope(""), words, token, text)
                words = []
            else:
                words.append(token)

    def _read_declaration(self, scope: Scope, words: list[str], end: str, text: str) -> None:
        if words[:1] == ["namespace"] and end == "{":
            self._read_namespace_into(scope, "".join(words[1:]))
        elif words[:1] == ["enum"] and end == "{":
            scope.enumerations.append(self._read_enumeration(words, text))
        elif words[:1] in (["class"], ["struct"]) and end == "{":
            scope.classes.append(self._read_class(words, text))
        else:
            if end == "{":
                self._skip_block()
            trailing = self._trailing()
            if not _is_declaration_of_nothing(words):
                scope.members.append(_member(words, trailing or text))

    def _read_namespace_into(self, scope: Scope, name: str) -> None:
        inner = Scope("", namespace=name)
        self._read_members(inner, is_public=True)
        for nested in inner.classes:
            nested.namespace = name
        scope.classes += inner.classes
        if inner.members or inner.enumerations:
            scope.classes.append(inner)
            inner.classes = []

    def _read_enumeration(self, words: list[str], text: str) -> Enumeration:
        is_scoped = words[1] == "class"
        enumeration = Enumeration(words[2 if is_scoped else 1], text, is_scoped, [])
        name = ""
        while True:
            kind, token = self.tokens[self.at]
            self.at += 1
            if kind == "trailing":
                own, note = enumeration.enumerators[-1]
                enumeration.enumerators[-1] = (own, _joined([note, _trailing_text(token)]).strip())
            elif token == "}":
                self._accept(";")
                return enumeration
            elif token == "=":
                name = "="
            elif token == ",":
                name = ""
            elif kind == "word" and not name:
                name = token
                enumeration.enumerators.append((name, ""))

    def _read_class(self, words: list[str], text: str) -> Scope:
        key, name, *rest = [word for word in words if word not in {"TREVALLO_EXPORT", "final"}]
        bases = [word for word in rest if word[0].isalpha() and word != "public"]
        scope = Scope(name, text, bases=bases)
        self._read_members(scope, is_public=key == "struct")
        return scope

    def _skip_block(self) -> None:
        depth = 1
        while depth:
            token = self.tokens[self.at][1]
            self.at += 1
            depth += {"{": 1, "}": -1}.get(token, 0)

    def _trailing(self) -> str:
        kind, token = self.tokens[self.at] if self.at < len(self.tokens) else ("", "")
        return _trailing_text(token) if kind == "trailing" else ""

    def _accept(self, token: str) -> None:
        if self.at < len(self.tokens) and self.tokens[self.at][1] == token:
            self.at += 1


def _trailing_text(token: str) -> str:
    return _joined([line.strip().removeprefix("///<").strip() for line in token.splitlines()])


def _joined(lines: list[str]) -> str:
    return "\n".join(lines).strip("\n")


def _is_declaration_of_nothing(words: list[str]) -> bool:
    """Friends, names of types, classes that are only announced, and destructors."""
    return not words or words[0] in {"friend", "using", "class", "struct", "template"} or "~" in words


def _member(words: list[str], text: str) -> Member:
    words = [word for word in words if word not in {"TREVALLO_EXPORT", "virtual", "explicit"}]
    if words[0] == "TREVALLO_PRINTF":
        words = words[words.index(")") + 1 :]
    before_value = words[: words.index("=")] if "=" in words and "operator" not in words else words
    if "(" not in before_value:
        return Member(before_value[-1], text, [], False, "static" in words, "constexpr" in words)
    opening = words.index("(")
    closing = _closing(words, opening)
    is_operator = "operator" in words[:opening]
    name = "".join(words[words.index("operator") : opening]) if is_operator else words[opening - 1]
    parameters = _split(words[opening + 1 : closing])
    return Member(name, text, parameters, True, "static" in words[:opening], "const" in words[closing:])


def _closing(words: list[str], opening: int) -> int:
    depth = 0
    for at in range(opening, len(words)):
        depth += {"(": 1, ")": -1}.get(words[at], 0)
        if depth == 0:
            return at
    raise ValueError(f"no end of {' '.join(words)}")


def _split(words: list[str]) -> list[str]:
    parameters: list[list[str]] = [[]]
    depth = 0
    for word in words:
        depth += {"<": 1, ">": -1}.get(word, 0)
        if word == "," and depth == 0:
            parameters.append([])
        else:
            parameters[-1].append(word)
    return [" ".join(parameter) for parameter in parameters if parameter]
