# SPDX-License-Identifier: MIT
"""log_lines.py REPOSITORY: the page of the log lines lists the lines that the sources write, and no others."""
import pathlib
import re
import sys

STRING = r'"((?:[^"\\]|\\.)*)"'
CONSTANT = re.compile(rf"(?:std::string const|constexpr char) (k\w+)(?:\[\])? = {STRING};")
WRAPPER = re.compile(r"^void (log[A-Z]\w*)\([^)]*\) \{\n(?:(?!^\}).)*?\b(?:Log::log|logIfShown)\((.*?)\);", re.M | re.S)
CALL = re.compile(r"\b(log\w*)\((.*?)\);", re.S)
ROW = re.compile(r"^\| (Debug|Info|Warning|Error) \| (\w+) \| `([^`]+)` \| .+ \|$", re.M)


def level_of(text):
    level = re.search(r"Log::(Debug|Info|Warning|Error)\b", text)
    return level and level.group(1)


def module_of(text, constants):
    module = re.search(r"\bk\w*Module\w*\b", text)
    return module and constants.get(module.group())


def text_in(arguments, constants):
    literal = re.search(STRING, arguments)
    names = [name for name in re.findall(r"\bk\w+", arguments) if "Module" not in name and name in constants]
    return literal.group(1) if literal else constants[names[0]] if names else None


def written(source, shared):
    """Level, module and text of each line that a source writes; a None is what only its callers know."""
    code = source.read_text(encoding="utf-8")
    constants = {**shared, **dict(CONSTANT.findall(code))}
    wrappers = dict(WRAPPER.findall(code))
    for function, arguments in CALL.findall(code):
        text = text_in(arguments, constants)
        if text is not None:
            inner = wrappers.get(function, "")
            yield (level_of(arguments) or level_of(inner),
                   module_of(arguments, constants) or module_of(inner, constants), text)


def same(source, row):
    return all(known is None or known == listed for known, listed in zip(source, row))


def main():
    repository = pathlib.Path(sys.argv[1])
    files = [file for file in sorted((repository / "src").rglob("*.cpp")) if file.name != "log.cpp"]
    shared = {}
    for header in (repository / "src").rglob("*.h"):
        shared.update(CONSTANT.findall(header.read_text(encoding="utf-8")))
    lines = [line for file in files for line in written(file, shared)]
    rows = ROW.findall((repository / "docs/log-lines.md").read_text(encoding="utf-8"))

    faults = [f"not listed: {line}" for line in lines if not any(same(line, row) for row in rows)]
    faults += [f"written nowhere: {row}" for row in rows if not any(same(line, row) for line in lines)]
    if faults or not lines:
        sys.exit("docs/log-lines.md and src differ\n" + "\n".join(faults))


main()
