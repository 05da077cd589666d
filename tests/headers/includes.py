# SPDX-License-Identifier: MIT
"""includes.py [FOLDER], that of the project when not given: includes run one way: core <- modes <- adsb <- track -> report;
modes, track <- airspace <- apps; in apps, files <- terminal <- outputs <- net <- run. Apps, examples and bindings see public
headers only, but for the replacement of files, of which the program is made as well. The libraries start no thread, wait for
nothing and open no socket; the core reads the clock and files in one place each, trevallo-airspace does neither. In apps, net
alone has sockets. Each folder has a namespace of its own, or none. No two files have one name."""
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parents[2]).resolve()
SEES = {  # folder -> internal folders that its files may include from
    "include": set(),
    "src/core": {"core"},
    "src/modes": {"core", "modes"},
    "src/report": {"core", "report"},
    "src/adsb": {"core", "modes", "adsb"},
    "src/track": {"core", "modes", "adsb", "track", "report"},
    "src/airspace": {"core", "airspace"},
    "apps/files": {"files"},
    "apps/terminal": {"files", "terminal"},
    "apps/outputs": {"files", "terminal", "outputs"},
    "apps/net": {"files", "terminal", "outputs", "net"},
    "apps/run": {"files", "terminal", "outputs", "net", "run"},
    "apps/inspect": {"files", "terminal", "outputs", "inspect"},
    "apps/simulate": {"simulate"},
    "apps/trevallo": {"files", "terminal", "outputs", "net", "run", "inspect", "simulate", "trevallo"},
    "examples": set(),
    "bench": {"support"},
    "python/src": {"airspace_names.h", "binding.h", "casters.h", "frame_row.h", "header_text.h", "item.h", "reading_value.h",
                   "recording.h", "recording_input.h", "row_table.h", "texts.h"},
}
LENT = {"apps/files/replaced_file.cpp": {"core/file_replacement.h"}}  # of which the program is made as well
NAMESPACES = {  # folder -> those that its files may have, besides others within them; the longest path that fits counts
    "include/modes": {"quorvel::modes", "html"},
    "include/modes/detail": {"quorvel::modes::detail"},
    "include/airspace": {"quorvel::airspace"},
    "src": {"quorvel::modes"},
    "src/report": {"quorvel::modes", "html"},
    "src/airspace": {"quorvel::airspace"},
    "apps/files": {"quorvel::files"},
    "apps/terminal": {"quorvel::terminal"},
    "apps/outputs": {"quorvel::outputs"},
    "apps/net": {"quorvel::net"},
    "apps/run": {"quorvel::run"},
    "apps/inspect": {"quorvel::inspect"},
    "apps/simulate": {"quorvel::simulate"},
    "apps/trevallo": {"quorvel::program"},
    "examples": set(),
    "bench": {"quorvel::modes::bench"},
    "python/src": {"quorvel::modes::python", "pybind11::detail"},  # where pybind11 looks for casters
}
LIBRARY_BLIND = {"apps/simulate"}  # the encoder includes no header of the libraries
SHARED = {"src/airspace": {"modes/parity.h", "modes/repair.h", "modes/trust.h"}}  # compiled once, for both libraries
COMPLETE_ONLY = {"src/airspace": "core"}  # of this folder only what needs no object: another library does not export it
GENERATED = {"build_id.h"}
AIRSPACE = re.compile(r"(include|src)/airspace/.*")
FILES = {f"src/{name}" for name in ("core/file_replacement.h", "core/file_replacement.cpp", "track/adsb_aircraftdb.cpp")}
RESERVED = (  # headers of the system, those who leave them to others, but for these files
    (r"thread|stop_token|mutex|shared_mutex|condition_variable|future|semaphore|latch|barrier|pthread\.h",
     re.compile(r"(include|src)/.*"), set()),
    (r"chrono|sys/time\.h", re.compile(r"(include|src)/.*"), {"src/core/clock.h", "src/core/clock.cpp"}),
    (r"fstream|filesystem|fcntl\.h|unistd\.h|sys/stat\.h", re.compile(r"(include|src)/.*"), FILES),
    (r"ctime|time\.h|cstdio|stdio\.h|iostream|sys/.*", AIRSPACE, set()),
    (r"sys/(socket|un|select|epoll)\.h|netdb\.h|(netinet|arpa|net)/.*|asio\.hpp|asio/(ip/.*|local/.*|connect\.hpp)",
     re.compile(r"(include|src|examples|bench|python/src|apps/(?!net/).*)/.*"), set()),
    (r"poll\.h", re.compile(r"(include|src)/.*"), set()),
)

faults = []


def includes_of(path):
    return re.findall(r'^#include ([<"])([^>"]+)[>"]', path.read_text(encoding="utf-8"), re.M)


def is_complete(header):
    """Whether a header of src needs no object: it has no source, nor has what it includes."""
    path = ROOT / "src" / header
    return not path.with_suffix(".cpp").exists() and all(
        is_complete(included) for kind, included in includes_of(path) if kind == '"')


def check_includes(folder, path):
    name = path.relative_to(ROOT).as_posix()
    for kind, included in includes_of(path):
        if included in SHARED.get(folder, set()):
            continue
        first = included.split("/")[0]
        if included in LENT.get(name, set()):
            continue
        if kind == '"' and included not in GENERATED and first not in SEES[folder]:
            faults.append(f'{name} must not include "{included}"')
        elif kind == '"' and COMPLETE_ONLY.get(folder) == first and not is_complete(included):
            faults.append(f'{name} must not include "{included}": it needs an object of another library')
        if kind == "<" and (ROOT / "src" / included).is_file():
            faults.append(f"{name} must not see inside the library (<{included}>)")
        for headers, folders, users in RESERVED:
            if kind == "<" and re.fullmatch(headers, included) and folders.fullmatch(name) and name not in users:
                faults.append(f"{name} must not include <{included}>: that is left to others")
        if folder in LIBRARY_BLIND and first in {"modes", "airspace"}:
            faults.append(f"{name} must not see the library (<{included}>)")


def namespaces_of(path):
    """The full names of the namespaces in which a file defines something; unnamed ones are left out, and those of which it
    declares classes only."""
    text = re.sub(r"^namespace [\w:]+ \{\n(?:(?:class|struct) \w+;\n)+\}", "", path.read_text(encoding="utf-8"), flags=re.M)
    names, outer = set(), []
    for opened, name in re.findall(r"^(?:inline )?(namespace) ?([\w:]*) \{|^\} // namespace", text, re.M):
        if opened:
            outer.append(name)
            names.add("::".join(filter(None, outer)))
        elif outer:
            outer.pop()
    return names - {""}


def check_namespaces(path):
    folder = next(folder.as_posix() for folder in path.relative_to(ROOT).parents if folder.as_posix() in NAMESPACES)
    for name in namespaces_of(path):
        if not any(f"{name}::".startswith(f"{own}::") for own in NAMESPACES[folder]):
            faults.append(f"{path.relative_to(ROOT)} must not have the namespace {name}: it is another folder's")


def check_own_header(path):
    headers = [included for _, included in includes_of(path)]
    own = {header for header in headers if header.split("/")[-1] == f"{path.stem}.h"}
    if path.suffix == ".cpp" and own and headers[0] not in own:
        faults.append(f"{path.relative_to(ROOT)} must include its own header first")


def is_pair(header, source):
    """Whether they are one module: a header and its source beside it, or a public header and its source."""
    return header.parent == source.parent or (header.parts[0] == "include" and source.parts[0] == "src")


def check_names():
    listed = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard", "*.h", "*.cpp"], cwd=ROOT,
                            check=True, capture_output=True, text=True).stdout.split()
    files = {}
    for path in map(pathlib.PurePosixPath, listed):
        if path.parent.as_posix() != "tests/reference" and (ROOT / path).exists():  # there, each is the slow twin of another
            files.setdefault(path.stem, []).append(path)
    for paths in files.values():
        paths.sort(key=lambda path: path.suffix, reverse=True)  # the header first
        if len(paths) > 1 and not (len(paths) == 2 and [path.suffix for path in paths] == [".h", ".cpp"] and is_pair(*paths)):
            faults.append(f"one name, several files: {', '.join(map(str, paths))}")


for folder in SEES:
    for path in sorted((ROOT / folder).rglob("*")):
        if path.suffix in {".h", ".cpp"}:
            check_includes(folder, path)
            check_own_header(path)
            check_namespaces(path)
check_names()

sys.exit("\n".join(faults) if faults else 0)
