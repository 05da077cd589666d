# SPDX-License-Identifier: MIT
"""Reads the public headers as Doxygen understands them: their classes, functions and enumerations, and what their
comments say of them."""
from __future__ import annotations

import dataclasses
import keyword
import os
import pathlib
import subprocess
import tempfile
import textwrap
import xml.etree.ElementTree

ROOT = pathlib.Path(__file__).resolve().parents[2]
WIDTH = 100  # of the lines of a text
MODULES = {"": "trevallo", "quorvel::modes": "trevallo", "html": "trevallo.html", "quorvel::airspace": "trevallo.airspace"}


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

    @property
    def module(self) -> str:
        """The module that has it in Python."""
        return MODULES[self.namespace]


# What differs from the settings of the site.
SETTINGS = """
@INCLUDE = docs/Doxyfile
INPUT = {folders}
OUTPUT_DIRECTORY = {output}
GENERATE_HTML = NO
GENERATE_XML = YES
XML_PROGRAMLISTING = NO
JAVADOC_AUTOBRIEF = NO
"""


def in_python(name: str) -> str:
    """A name as Python can have it: its keywords get an underscore behind them."""
    return f"{name}_" if keyword.iskeyword(name) else name


def read_headers(*folders: pathlib.Path) -> list[Scope]:
    """The namespaces and the public classes of the headers in these folders, nested classes behind theirs."""
    with tempfile.TemporaryDirectory() as output:
        settings = SETTINGS.format(folders=" ".join(f'"{folder.resolve()}"' for folder in folders), output=f'"{output}"')
        subprocess.run(["doxygen", "-"], input=settings, cwd=ROOT, env={**os.environ, "TREVALLO_VERSION": ""}, text=True,
                       check=True)
        compounds = [compound for file in pathlib.Path(output, "xml").glob("*.xml")
                     for compound in xml.etree.ElementTree.parse(file).iter("compounddef")]
    namespaces = {_name(compound) for compound in compounds if compound.get("kind") == "namespace"}
    classes = [compound for compound in compounds
               if compound.get("kind") in {"class", "struct"} and compound.get("prot") == "public"]
    spaces = [compound for compound in compounds if compound.get("kind") == "namespace"]
    scopes = [_scope(compound, namespaces) for compound in sorted(spaces, key=_name) + sorted(classes, key=_place)]
    return [scope for scope in scopes if scope.name or scope.members or scope.enumerations]


def _name(compound: xml.etree.ElementTree.Element) -> str:
    return compound.findtext("compoundname", "")


def _place(element: xml.etree.ElementTree.Element) -> tuple[str, int, int]:
    location = element.find("location")
    assert location is not None
    return location.get("file", ""), int(location.get("line", "0")), int(location.get("column", "0"))


def _scope(compound: xml.etree.ElementTree.Element, namespaces: set[str]) -> Scope:
    name = _name(compound)
    namespace = max((space for space in namespaces if f"{name}::".startswith(f"{space}::")), key=len, default="")
    scope = Scope(name[len(namespace):].removeprefix("::"), _text(compound), namespace)
    scope.bases = [(base.text or "").split("::")[-1] for base in compound.findall("basecompoundref")]
    for member in sorted(compound.findall("sectiondef/memberdef[@prot='public']"), key=_place):
        if member.get("kind") == "enum":
            scope.enumerations.append(_enumeration(member))
        elif member.get("kind") in {"function", "variable"} and "~" not in member.findtext("name", ""):
            scope.members.append(_member(member))
    return scope


def _enumeration(element: xml.etree.ElementTree.Element) -> Enumeration:
    enumerators = [(value.findtext("name", ""), _text(value)) for value in element.findall("enumvalue")]
    return Enumeration(element.findtext("name", ""), _text(element), element.get("strong") == "yes", enumerators)


def _member(element: xml.etree.ElementTree.Element) -> Member:
    parameters = [" ".join("".join(part.itertext()) for part in parameter if part.tag in {"type", "declname"})
                  for parameter in element.findall("param")]
    return Member(element.findtext("name", ""), _text(element), parameters, element.get("kind") == "function",
                  element.get("static") == "yes", element.get("const") == "yes")


def _text(element: xml.etree.ElementTree.Element) -> str:
    paragraphs = element.findall("briefdescription/para") + element.findall("detaileddescription/para")
    return "\n\n".join(block for paragraph in paragraphs for block in _blocks(paragraph))


def _blocks(paragraph: xml.etree.ElementTree.Element) -> list[str]:
    """The running text of a paragraph, and the code in it, which stands by itself."""
    blocks, running = [], paragraph.text or ""
    for part in paragraph:
        if part.tag == "verbatim":
            blocks += [_wrapped(running), textwrap.indent(textwrap.dedent(part.text or "").strip("\n"), "    ")]
            running = ""
        elif part.tag == "computeroutput":
            running += f"`{''.join(part.itertext())}`"
        elif part.tag == "ref":
            running += "".join(part.itertext())
        else:
            raise ValueError(f"nobody has said how to write a <{part.tag}> of Doxygen's")
        running += part.tail or ""
    return [block for block in [*blocks, _wrapped(running)] if block]


def _wrapped(text: str) -> str:
    return textwrap.fill(text.strip(), WIDTH, break_long_words=False, break_on_hyphens=False)
