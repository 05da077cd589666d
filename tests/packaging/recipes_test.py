# SPDX-License-Identifier: MIT
"""recipes_test.py: what the recipes for vcpkg and Conan say agrees with the project, and the sources that the Conan package
takes along can be configured. Prints each fault; exits 1 if there is one."""
import ast
import glob
import json
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
PORT = ROOT / "packaging/vcpkg/trevallo"
CONAN = (ROOT / "conanfile.py").read_text(encoding="utf-8")
VERSION = ".".join(re.findall(r"constexpr int kVersion\w+ = (\d+);", (ROOT / "src/core/version.h").read_text()))
faults = 0


def expect(what, condition, about=""):
    global faults
    if not condition:
        faults += 1
        print(f"FAILED: {what} {about}")


def names(dependencies):
    """Of the libraries that a vcpkg manifest lists; the rest are objects, tools of the machine that builds."""
    return {entry for entry in dependencies if isinstance(entry, str)}


def check_manifests():
    port, project = (json.loads((folder / "vcpkg.json").read_text()) for folder in (PORT, ROOT))
    for manifest in (port, project):
        expect("a manifest has the version of the library", manifest["version"] == VERSION, manifest["version"])
        features = manifest["features"]
        for name in [manifest["name"], *features, *names(manifest["dependencies"])]:
            expect("vcpkg's names are in small letters", re.fullmatch(r"[a-z0-9]+(-[a-z0-9]+)*", name), name)
        expect("a feature is described", all(feature["description"] for feature in features.values()))
    expect("the change log has the version", f"\n## {VERSION} - 20" in (ROOT / "CHANGELOG.md").read_text())
    for field in ("name", "description", "license"):
        expect("port and project say the same", port[field] == project[field], field)
    expect("port and project need the same", names(port["dependencies"]) == names(project["dependencies"]))
    for feature, of_project in (("airspace", "airspace"), ("tools", "apps")):
        expect("port and project need the same for a feature", names(port["features"][feature]["dependencies"]) ==
               names(project["features"][of_project]["dependencies"]), feature)
    required = {name.replace("_", "-") for name in re.findall(r'"([\w-]+)/\[', CONAN)} - {"cmake", "pkgconf"}
    expect("Conan and vcpkg bring the same libraries", required ==
           names(project["dependencies"]).union(*(names(project["features"][feature]["dependencies"])
                                                  for feature in ("airspace", "apps"))), required)


def check_options():
    options = set(re.findall(r"^ *option\((TREVALLO_\w+)", (ROOT / "CMakeLists.txt").read_text(), re.M))
    for recipe in (CONAN, (PORT / "portfile.cmake").read_text()):
        named = set(re.findall(r"TREVALLO_(?!STATIC)\w+", recipe))
        expect("a recipe sets options that there are", named and named <= options, named - options)
    expect("static users of the Conan package say so", "TREVALLO_STATIC" in CONAN and "TREVALLO_STATIC" in
           (ROOT / "include/modes/export.h").read_text())


def check_exported_sources(work):
    [patterns] = [ast.literal_eval(node.value) for node in ast.walk(ast.parse(CONAN)) if isinstance(node, ast.Assign)
                  and getattr(node.targets[0], "id", "") == "exports_sources"]
    for pattern in patterns:
        files = glob.glob(pattern, root_dir=ROOT)
        expect("what the Conan package takes along is there", files, pattern)
        for file in files:
            (work / "sources" / file).parent.mkdir(parents=True, exist_ok=True)
            (shutil.copytree if (ROOT / file).is_dir() else shutil.copy)(ROOT / file, work / "sources" / file)
    result = subprocess.run(["cmake", "-S", work / "sources", "-B", work / "build", "-G", "Ninja", "-DTREVALLO_TESTS=OFF"],
                            capture_output=True, text=True)
    expect("the sources of the Conan package are all that a build needs", result.returncode == 0, result.stderr)


check_manifests()
check_options()
with tempfile.TemporaryDirectory() as folder:
    check_exported_sources(pathlib.Path(folder))
sys.exit(faults != 0)
