# SPDX-License-Identifier: MIT
"""Finds the places of a C++ source where a small fault can be made, and what the fault is.

Faults are made on tokens. Sources are formatted by clang-format, which separates operators from the rest: a binary
operator has a blank on either side, the brackets of templates and the marks of references have not.
"""
import bisect
import collections
import dataclasses
import hashlib
import re

from places import Places

TOKEN = re.compile(r"""
      (?P<comment>//[^\n]*|/\*.*?\*/)
    | (?P<directive>^[ \t]*\#(?:[^\n\\]|\\.|\\\n)*)
    | (?P<string>"(?:[^"\\\n]|\\.)*")
    | (?P<char>'(?:[^'\\\n]|\\.)+')
    | (?P<number>(?:0[xX][0-9A-Fa-f']+|\d[\d']*(?:\.\d+)?(?:[eE][-+]?\d+)?)[uUlLfFzZ]*)
    | (?P<word>[A-Za-z_]\w*)
    | (?P<operator><<=|>>=|<=>|\.\.\.|->|::|\+\+|--|<<|>>|<=|>=|==|!=|&&|\|\||[-+*/%&|^]=|[^\s\w])
""", re.X | re.S | re.M)

COMPARISONS = {"<": ["<=", ">"], "<=": ["<", ">="], ">": [">=", "<"], ">=": [">", "<="], "==": ["!="], "!=": ["=="]}
BOOLEANS = {"&&": ["||"], "||": ["&&"]}
ARITHMETIC = {"+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "%": ["/"], "&": ["|"], "|": ["&"], "^": ["|"],
              "<<": [">>"], ">>": ["<<"], "+=": ["-="], "-=": ["+="], "|=": ["&="], "&=": ["|="], "^=": ["|="],
              "<<=": [">>="], ">>=": ["<<="], "++": ["--"], "--": ["++"]}
# Conditions of the preprocessor that do not hold where the check runs: a fault there would reach no compiler.
ELSEWHERE = re.compile(r"_WIN32|__SANITIZE_\w+__|__has_feature|address_sanitizer")
NOT_CHECKED = {"static_assert", "assert"}
OPENING, CLOSING = {"(": ")", "[": "]", "{": "}"}, {")", "]", "}"}


@dataclasses.dataclass(frozen=True)
class Token:
    kind: str
    text: str
    begin: int
    end: int


@dataclasses.dataclass(frozen=True)
class Fault:
    file: str
    kind: str
    begin: int
    end: int
    replacement: str
    line: int
    was: str  # the lines that it touches, blanks made one
    now: str
    id: str
    key: tuple  # function, statement, statement with the fault: the same wherever they are and however they are laid out

    def applied_to(self, text):
        return text[:self.begin] + self.replacement + text[self.end:]


def tokens_of(text):
    """The tokens that a compiler sees here: no comments, no directives, no code for other platforms."""
    tokens, reaches_compiler = [], []
    for match in TOKEN.finditer(text):
        kind, token = match.lastgroup, match.group()
        if kind == "directive":
            follow_condition(token, reaches_compiler)
        elif kind != "comment" and all(reaches_compiler):
            tokens.append(Token(kind, token, match.start(), match.end()))
    return tokens


def follow_condition(directive, reaches_compiler):
    name = re.match(r"\s*#\s*(\w*)", directive)[1]
    if name in ("if", "ifdef", "ifndef"):
        reaches_compiler.append(name == "ifndef" or not ELSEWHERE.search(directive))
    elif name == "else":
        reaches_compiler[-1] = not reaches_compiler[-1]
    elif name == "elif":
        reaches_compiler[-1] = not ELSEWHERE.search(directive)
    elif name == "endif":
        reaches_compiler.pop()


def partners_of(tokens):
    """Index of each opening bracket -> index of the closing one."""
    partners, open_ones = {}, []
    for i, token in enumerate(tokens):
        if token.kind != "operator":
            continue
        if token.text in OPENING:
            open_ones.append(i)
        elif token.text in CLOSING and open_ones:
            partners[open_ones.pop()] = i
    return partners


class Finder:
    def __init__(self, text):
        self.text = text
        self.tokens = tokens_of(text)
        self.partners = partners_of(self.tokens)
        self.unchecked = self._unchecked()

    def _unchecked(self):
        """Indices of the tokens of assertions, which are part of the checking, and of string literals for linkage."""
        result = set()
        for i, token in enumerate(self.tokens):
            if token.text in NOT_CHECKED and i + 1 in self.partners:
                result.update(range(i, self.partners[i + 1] + 1))
            if token.text == "extern":
                result.add(i + 1)
        return result

    def _at(self, i):
        return self.tokens[i].text if 0 <= i < len(self.tokens) else ""

    def _is_binary(self, i):
        token = self.tokens[i]
        return self.text[token.begin - 1].isspace() and self.text[token.end:token.end + 1].isspace()

    def all(self):
        """(kind, begin, end, replacement) of every fault."""
        for i, token in enumerate(self.tokens):
            if i in self.unchecked:
                continue
            yield from self._in_place(i, token)
            yield from self._negated_condition(i, token)
            yield from self._swapped_entries(i, token)
            yield from self._dropped_statement(i, token)

    def _in_place(self, i, token):
        def changed(kind, replacements):
            for replacement in replacements:
                yield kind, token.begin, token.end, replacement

        if token.kind == "operator":
            if token.text in ("++", "--"):
                yield from changed("arithmetic", ARITHMETIC[token.text])
            elif self._is_binary(i) and self._at(i - 1) != "template":
                yield from changed("comparison", COMPARISONS.get(token.text, []))
                yield from changed("boolean", BOOLEANS.get(token.text, []))
                if token.text in ARITHMETIC and "string" not in (self.tokens[i - 1].kind, self.tokens[i + 1].kind):
                    yield from changed("arithmetic", ARITHMETIC[token.text])
            elif token.text == "!" and self._at(i + 1) != "(":
                yield from changed("boolean", [""])
        elif token.kind == "number":
            yield from changed("number", neighbours(token.text))
        elif token.kind == "string":
            yield from changed("text", [token.text[:-1] + '~"'])
        elif token.text in ("true", "false"):
            yield from changed("truth", ["false" if token.text == "true" else "true"])

    def _negated_condition(self, i, token):
        """if (a) ... becomes if (!(a)) ..., where the parentheses hold nothing but a condition."""
        if token.text not in ("if", "while") or i + 1 not in self.partners or self._at(i + 1) != "(":
            return
        inside = self.tokens[i + 2:self.partners[i + 1]]
        if any(each.text in (";", "=", "auto") for each in inside):
            return
        begin, end = inside[0].begin, inside[-1].end
        yield "condition", begin, end, f"!({self.text[begin:end]})"

    def _swapped_entries(self, i, token):
        """{a, b, c} becomes {b, a, c}: the entries of a table."""
        if token.text != "{" or i not in self.partners:
            return
        entries, begin, j = [], i + 1, i + 1
        while j <= self.partners[i]:
            text = self._at(j)
            if text == ";":
                return  # the body of a function or class
            if text in OPENING and j in self.partners:
                j = self.partners[j]
            elif text == "," or j == self.partners[i]:
                if begin < j:
                    entries.append((self.tokens[begin].begin, self.tokens[j - 1].end))
                begin = j + 1
            j += 1
        for (begin, middle), (other, end) in zip(entries, entries[1:]):
            first, second = self.text[begin:middle], self.text[other:end]
            if first != second:
                yield "order", begin, end, second + self.text[middle:other] + first

    def _dropped_statement(self, i, token):
        """A statement that is a call or an assignment becomes nothing."""
        before = self._at(i - 1)
        if before not in (";", "{", "}", ")", ":", "else") or token.kind not in ("word", "operator"):
            return
        if before == ")" and not self._closes_condition(i - 1):
            return
        j = i + (token.text in ("++", "--"))
        if j >= len(self.tokens) or self.tokens[j].kind != "word" or self._at(j) in ("return", "using", "throw", "if"):
            return
        j += 1
        while self._at(j) in (".", "->", "::", "[") or self._at(j - 1) in (".", "->", "::"):
            j = self.partners.get(j, j) + 1
        if not (self._at(j) in ("(", "=", "++", "--", ";") or self._at(j) in ARITHMETIC and self._at(j).endswith("=")):
            return
        if self._at(j) == ";" and token.text not in ("++", "--"):
            return
        while j < len(self.tokens) and self._at(j) not in (";", "{", "}", ":"):
            j = self.partners.get(j, j) + 1
        if self._at(j) != ";":
            return
        yield "statement", token.begin, self.tokens[j].begin, ""

    def _closes_condition(self, closing):
        opening = next((a for a, b in self.partners.items() if b == closing), None)
        return opening is not None and self._at(opening - 1) in ("if", "for", "while")


def neighbours(number):
    """The number one more and one less, written in the same way."""
    digits, suffix = re.fullmatch(r"(0[xX][0-9A-Fa-f']+|[\d'.eE+-]+)(\w*)", number).groups()
    if "." in digits or ("e" in digits.lower() and not digits.lower().startswith("0x")):
        return [f"({number} + 1)"]
    plain = digits.replace("'", "")
    octal = plain.isdigit() and plain.startswith("0")
    value = int(plain, 8 if octal else 0)
    spelled = "0x{:X}" if digits.lower().startswith("0x") else "{}"
    return [spelled.format(each) + suffix for each in (value + 1, value - 1) if each >= 0]


def words(text):
    """Code without comments, and with one blank between any two words."""
    return " ".join(token.text for token in tokens_of(text))


class Keys:
    """Names the faults of a source by what they are in and what they do there."""

    def __init__(self, text, tokens):
        self.text = text
        self.tokens = tokens
        self.begins = [token.begin for token in tokens]
        self.places = Places(tokens)
        self.times = collections.Counter()

    def of(self, begin, end, replacement):
        first = bisect.bisect_right(self.begins, begin) - 1
        last = bisect.bisect_left(self.begins, end)
        scope = self.places.scopes[first] or "(namespace)"
        first, last = self.places.statement(first, last)
        before, after = self.text[self.begins[first]:begin], self.text[end:self.tokens[last - 1].end]
        was, now = words(before + self.text[begin:end] + after), words(before + replacement + after) or "(nothing)"
        self.times[scope, was, now] += 1
        times = self.times[scope, was, now]
        return scope if times == 1 else f"{scope} ({times})", was, now


def faults_of(file, text):
    """Every fault that can be made in the text of a file, in the order of the text."""
    found, seen = [], {}
    finder = Finder(text)
    keys = Keys(text, finder.tokens)
    for kind, begin, end, replacement in finder.all():
        first = text.rfind("\n", 0, begin) + 1
        last = text.find("\n", end)
        last = len(text) if last < 0 else last
        was = " ".join(text[first:last].split())
        now = " ".join((text[first:begin] + replacement + text[end:last]).split())
        # the same whatever lies above it in the file
        times = seen[was, now] = seen.get((was, now), 0) + 1
        identity = hashlib.sha1(f"{file}\n{was}\n{now}\n{times}".encode()).hexdigest()[:7]
        found.append(Fault(file, kind, begin, end, replacement, text.count("\n", 0, begin) + 1, was, now, identity,
                           keys.of(begin, end, replacement)))
    return found
