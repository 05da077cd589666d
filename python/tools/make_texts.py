# SPDX-License-Identifier: MIT
"""make_texts.py OUTPUT FOLDER...: writes a C++ header with the documentation of the public headers in these folders, for
the docstrings, and with their enumerations. What the headers say is said there once, for both languages."""
import pathlib
import re
import sys

import headers

# What is otherwise in Python. A blank matches any space between words, line ends included.
IN_PYTHON = {
    r"\bAn empty pointer\b": "`None`",
    r"\b(an )?empty pointer\b": "`None`",
    r"if either pointer is empty": "if either is `None`",
    r"with a mutable and a const accessor for each": "each to be had by two names",
    r"shared pointers that": "objects that",
    r"`std::clog`": "standard error",
    r"makes the CSV library's exception \(`std::ios_base::failure`\) reach the caller": "raises `DatabaseFileError`",
    r"What the CSV library throws for files that cannot be read or written passes to the caller\.":
        "Raises `DatabaseFileError` for files that cannot be read or written.",
    r"Throws what `std::stoi` throws \(`std::invalid_argument`, `std::out_of_range`\) for text that is not a number;"
    r" `out` is then left as it was\.": "Raises `ValueError` for text that is not a number.",
    r"The handler stays the caller's and must live as long as it is installed; a null pointer restores":
        "It is a callable\nthat takes level and line, or a `LogHandler`; `None` restores",
    r", which owns it and deletes it itself \(through its own type: there is no virtual destructor\)": "",
    r"\n\nAs above with printf-style arguments; the text is cut at 1023 characters\.": "",
    r"Fields are members of a message and are never deleted through this base; it has no virtual destructor\.":
        "A field of a message is a part of it, and lives on with it.",
    r", all held by value\.": ".",
    r"Copies and moves have their own tree, with `head` and `body` in it; the two must stay the root's first"
    r" children\.": "The two are the root's first children.",
    r"; a null pointer is empty content": "",
    r" ModeSDecoder decoder;.*?\(now - 60'000\);": """

    decoder = ModeSDecoder()
    tracker = ADSBTracker()
    for frame in ModeSEncapsulation.extract(buffer, ModeSEncapsulation.Avr):
        tracker.procModeSMsg(decoder.decode(ModeSMessage.DOWNLINK, frame))
    for target in tracker.allTargets():
        show(target.report())
    tracker.killTargets(now - 60_000)""",
    r" airspace::Stream stream;.*?stream\.finish\(now\(\), frames\);": """

    stream = Stream()
    while piece := more():
        frames = stream.feed(piece, now())
    frames = stream.finish(now())""",
    r"Appends the frames that the next bytes complete\.": "Returns the frames that the next bytes complete.",
    r"Appends what is left at the end of the stream\.": "Returns the frames that are left at the end of the stream.",
    r"Decides from what has come so far,": "Returns the frames of what has come so far, as far as can be decided,",
    r"False, from then on, when": "Raises `ValueError`, from then on, when",
    r"False as above": "Raises `ValueError` as above",
    r" Nothing throws but std::bad_alloc\.": "",
    r" airspace::Sky sky;.*?show\(aircraft\);": """

    sky = Sky()
    for frame in frames:
        sky.take(frame)
    for aircraft in sky.aircraft(stream.now):
        show(aircraft)""",
    r", its `const` functions too;": ";",
    r"Bad frames never throw:": "Bad frames raise nothing:",
    r"Once warm, no memory is allocated for a frame\.": "",
    r"`std::monostate` of Mode A/C replies, and of bytes that are no frame": "Without values for Mode A/C replies, and for"
    r" bytes that are no frame",
    r"\btrue\b": "True",
    r"\bfalse\b": "False",
    r"\bthrows\b": "raises",
}


unused = set(IN_PYTHON)  # a text that was reworded takes its line here with it


def in_python(text: str) -> str:
    for pattern, replacement in IN_PYTHON.items():
        text, count = re.subn(pattern.replace(" ", r"\s+"), lambda _, put=replacement: put, text, flags=re.S)
        if count:
            unused.discard(pattern)
    return text


def texts_of(scope: headers.Scope, by_name: dict[str, headers.Scope]) -> dict[str, str]:
    """The text of each member. Overloads share theirs; an override without one has that of its base."""
    texts: dict[str, list[str]] = {}
    for member in scope.members:
        if member.name == "operator=" or is_copying(scope, member):
            continue
        known = texts.setdefault(member.name, [])
        if member.text and member.text not in known:
            known.append(member.text)
    joined = {name: "\n\n".join(parts) for name, parts in texts.items()}
    for base in scope.bases:
        for name, text in texts_of(by_name[base], by_name).items():
            joined[name] = joined.get(name) or text
    return joined


def is_copying(scope: headers.Scope, member: headers.Member) -> bool:
    """Constructors out of an object of the same class; Python copies nothing that way."""
    return member.name == scope.name and any(scope.name in parameter.split() for parameter in member.parameters)


def raw(text: str) -> str:
    return f'R"~({text})~"'


def name_in_bindings(scope: headers.Scope) -> str:
    """Both libraries have a class `Aircraft`: that of hosts is distinguished by its namespace."""
    space = "airspace" if scope.namespace.endswith("::airspace") else ""
    return "::".join(part for part in (space, scope.name) if part)


def cpp_type(scope: headers.Scope, name: str) -> str:
    return "::".join(part for part in (scope.namespace, scope.name, name) if part)


def write_enumeration(scope: headers.Scope, enumeration: headers.Enumeration, out) -> None:
    type_name = cpp_type(scope, enumeration.name)
    members = f"{type_name}::" if enumeration.is_scoped or not scope.name else cpp_type(scope, "") + "::"
    qualified = ".".join(part for part in (scope.name, enumeration.name) if part)
    told = [f"{headers.in_python(name)}: {text}" for name, text in enumeration.enumerators if text]
    text = "\n\n".join(part for part in (enumeration.text, "\n".join(told)) if part)
    print(f"""
template <> struct Enumeration<{type_name}> {{
    static constexpr char kName[] = "{enumeration.name}";
    static constexpr char kQualifiedName[] = "{qualified}";
    static constexpr char kModule[] = "{scope.module}";
    static constexpr char kFullName[] = "{scope.module}.{qualified}";
    static constexpr char const* kText = {raw(in_python(text))};
    static constexpr bool kIsScoped = {str(enumeration.is_scoped).lower()};
    static constexpr std::pair<char const*, {type_name}> kEnumerators[] = {{""", file=out)
    for name, _ in enumeration.enumerators:
        print(f'        {{"{headers.in_python(name)}", {members}{name}}},', file=out)
    print("    };\n};", file=out)


def main(output: str, *folders: str) -> None:
    scopes = headers.read_headers(*map(pathlib.Path, folders))
    by_name = {scope.name: scope for scope in scopes if scope.name}
    texts = {}
    for scope in scopes:
        own_name = name_in_bindings(scope)
        if scope.name:
            texts[own_name] = scope.text
        for name, text in texts_of(scope, by_name).items():
            texts[f"{own_name}::{name}" if own_name else name] = text
    with open(output, "w", encoding="utf-8") as out:
        umbrellas = "".join(f"#include <{name}/{name}.h>\n" for name in (pathlib.Path(folder).name for folder in folders))
        print(f"#pragma once\n\n#include \"header_text.h\"\n\n{umbrellas}\n"
              "#include <array>\n#include <utility>\n\nnamespace quorvel::modes::python {\n", file=out)
        print(f"inline constexpr std::array<Text, {len(texts)}> kTexts{{{{", file=out)
        for name, text in sorted(texts.items()):
            print(f'    {{"{name}", {raw(in_python(text))}}},', file=out)
        print("}};", file=out)
        for scope in scopes:
            for enumeration in scope.enumerations:
                write_enumeration(scope, enumeration, out)
        print("\n} // namespace quorvel::modes::python", file=out)
    if unused:
        pathlib.Path(output).unlink()
        sys.exit("These texts of the headers are no longer there:\n" + "\n".join(sorted(unused)))


if __name__ == "__main__":
    main(*sys.argv[1:])
