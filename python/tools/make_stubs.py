# SPDX-License-Identifier: MIT
"""make_stubs.py PACKAGE: describes the built package to type checkers and editors, in stubs beside it.

The module itself is asked: the signatures stand in its docstrings, as the bindings have written them.
"""
import enum
import importlib
import inspect
import pathlib
import re
import sys
import textwrap

PREAMBLE = {
    "trevallo": '''\
import datetime
import enum
import os
from typing import Callable, Literal, Optional, Union, overload

import numpy
import numpy.typing

from . import airspace as airspace, html as html

__version__: str
''',
    "trevallo.airspace": """\
import builtins
import datetime
import enum
import os
from typing import Callable, Generic, Literal, Optional, TypeVar, Union, overload

import numpy
import numpy.typing

from . import ADSBTargetReport, ADSBTracker, ModeSEncapsulation, ModeSMessage

T = TypeVar("T")
""",
    "trevallo.html": "from typing import overload\n",
}

RECORDING = ("(data: Union[bytes, str, os.PathLike[str]], format: Optional[ModeSEncapsulation.Format] = None, *,"
             " doubled: Optional[bool] = None, timeout: float = 600.0,"
             " time: Literal['auto', 'receiver', '12mhz', 'arrival'] = 'auto',"
             " date: Union[None, str, datetime.date] = None, values: Literal['standard', 'library'] = 'standard') -> ")

# Where the bindings take or give what has no class of theirs.
BY_HAND = {
    "Log.setLogHandler": ["(handler: Optional[Union[Callable[[Log.Level, str], object], LogHandler]]) -> None"],
    "ADSBMessage.typeName": ["(self: Union[ADSBMessage, ADSBMessage.ADSBMessageType]) -> str"],
    "ADSBMessage.typeFullName": ["(self: Union[ADSBMessage, ADSBMessage.ADSBMessageType]) -> str"],
    "LogHandler.handle": ["(self, level: Log.Level, line: str) -> object"],
    "Frame.of": ["(bytes: builtins.bytes, time: int = 0) -> Frame"],
    "Message.to_dict": ["(self) -> dict[str, Union[bool, int, float, str, list[str]]]"],
    "read": ["(frame: Union[bytes, str], register: Optional[str] = None,"
             " reference: Optional[tuple[float, float]] = None) -> Message"],
    "decode_stream": [RECORDING + "numpy.typing.NDArray[numpy.void]"],
    "to_arrays": [RECORDING + "dict[str, numpy.typing.NDArray[numpy.void]]"],
}
TYPES = {
    r"numpy\.ndarray": "numpy.typing.NDArray[numpy.void]",
    r"\bos\.PathLike\b": "Union[str, os.PathLike[str]]",
    r"\btrevallo\.((airspace|html)\.)?": "",
    r"\bList\[": "list[",
    r"\bTuple\[": "tuple[",
    r"\bDict\[": "dict[",
}
BY_HAND_BASES = {"Item": ["Generic[T]"]}
BY_HAND_PROPERTIES = {"Item.value": "Optional[T]", "Frame.bytes": "builtins.bytes",
                      "Element.attributes": "list[Element.Attribute]", "Element.children": "list[Element]",
                      "Document.head": "Element", "Document.body": "Element"}


def in_stub(signature: str) -> str:
    for pattern, replacement in TYPES.items():
        signature = re.sub(pattern, replacement, signature)
    return re.sub(r"\bself: \w+(\.\w+)*", "self", signature)


def signatures(function) -> list[str]:
    """Of all overloads, from a docstring that begins "name(a: int) -> str" or lists such lines with numbers."""
    lines = function.__doc__.splitlines()
    name = re.match(r"\w+", lines[0]).group()
    if lines[1:2] == ["Overloaded function."]:
        lines = [line.split(". ", 1)[1] for line in lines if re.match(rf"\d+\. {name}\(", line)]
    else:
        lines = lines[:1]
    return [in_stub(line.removeprefix(name)) for line in lines]


def docstring(text: str) -> str:
    text = text.strip().replace("\\", "\\\\").replace('"""', "'''")
    if text.endswith('"'):
        text += " "
    return f'"""{text}"""' if text else ""


def text_of_function(function) -> str:
    """The docstring without its signatures."""
    name = function.__name__
    lines = [line for line in function.__doc__.splitlines()
             if line != "Overloaded function." and not re.match(rf"(\d+\. )?{name}\(.*\)( -> |$)", line)]
    return re.sub(r"\n{3,}", "\n\n", "\n".join(lines))


def write_function(path: str, name: str, function, is_static: bool) -> list[str]:
    forms = BY_HAND.get(path) or signatures(function)
    lines = []
    for number, form in enumerate(forms):
        if len(forms) > 1:
            lines.append("@overload")
        if is_static:
            lines.append("@staticmethod")
        text = docstring(text_of_function(function)) if number == 0 else ""
        lines.append(f"def {name}{form}:" + ("" if text else " ..."))
        if text:
            lines += textwrap.indent(text, "    ").splitlines()
    return lines


def write_property(path: str, name: str, described: property) -> list[str]:
    result = BY_HAND_PROPERTIES.get(path) or in_stub(described.fget.__doc__.split(" -> ")[1].strip())
    lines = ["@property", f"def {name}(self) -> {result}:"]
    lines += textwrap.indent(docstring(described.__doc__ or "") or "...", "    ").splitlines()
    if described.fset:
        lines += [f"@{name}.setter", f"def {name}(self, value: {result}) -> None: ..."]
    return lines


def write_enumeration(enumeration: type) -> list[str]:
    lines = [f"class {enumeration.__name__}(enum.IntEnum):"]
    lines += textwrap.indent(docstring(enumeration.__doc__ or ""), "    ").splitlines()
    return lines + [f"    {member.name} = {member.value}" for member in enumeration]


def write_class(path: str, described: type) -> list[str]:
    bases = [base.__qualname__ for base in described.__bases__ if base.__module__.startswith("trevallo")]
    bases += [base.__name__ for base in described.__bases__ if base is OSError]
    bases += BY_HAND_BASES.get(path, [])
    lines = [f"class {described.__name__}({', '.join(bases)}):" if bases else f"class {described.__name__}:"]
    body = docstring(described.__doc__ or "").splitlines()
    for name, member in described.__dict__.items():
        if name.startswith("_") and name not in {"__init__", "__lt__"}:
            continue
        if name == "__init__" and not (member.__doc__ or "").startswith("__init__("):
            continue  # the base's, or nobody but the library makes these objects
        body += write_member(f"{path}.{name}", name, member, described)
    return lines + textwrap.indent("\n".join(body) or "...", "    ").splitlines()


def write_member(path: str, name: str, member, owner) -> list[str]:
    if isinstance(member, property):
        return write_property(path, name, member)
    if isinstance(member, staticmethod):
        return write_function(path, name, member.__func__, is_static=True)
    if isinstance(member, type):
        return write_enumeration(member) if issubclass(member, enum.Enum) else write_class(path, member)
    if isinstance(member, enum.Enum):
        return [f"{name}: {type(member).__qualname__}"]
    if isinstance(member, int):
        return [f"{name}: int"]
    if callable(member):
        return write_function(path, name, member, is_static=False)
    raise TypeError(f"nobody has said how to describe {path}")


def write_module(module) -> str:
    lines = []
    for name, member in vars(module).items():
        if not name.startswith("_") and not inspect.ismodule(member):
            lines += write_member(name, name, member, module)
    return PREAMBLE[module.__name__] + "\n" + "\n".join(lines) + "\n"


def main(package: str) -> None:
    folder = pathlib.Path(package)
    sys.path.insert(0, str(folder.parent))
    sys.dont_write_bytecode = True
    module = importlib.import_module("trevallo")
    (folder / "__init__.pyi").write_text(write_module(module), encoding="utf-8")
    for part in (module.airspace, module.html):
        (folder / f"{part.__name__.rpartition('.')[2]}.pyi").write_text(write_module(part), encoding="utf-8")


if __name__ == "__main__":
    main(*sys.argv[1:])
