# SPDX-License-Identifier: MIT
"""recipes_test.py BUILD_FOLDER: the recipes for vcpkg and Conan, as far as they can be tried without these programs.
Prints each fault; exits 1 if there is one.

The port is run with stand-ins for vcpkg's functions, the Conan recipe with stand-ins for its base class and tools."""
import glob
import importlib.util
import json
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import types

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILT = pathlib.Path(sys.argv[1]).resolve()
PORT = ROOT / "packaging/vcpkg/trevallo"
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
    expect("the change log tells of the version", f"\n## {VERSION} - 20" in (ROOT / "CHANGELOG.md").read_text())
    for field in ("name", "description", "license"):
        expect("port and project say the same", port[field] == project[field], field)
    expect("port and project need the same", names(port["dependencies"]) == names(project["dependencies"]))
    expect("port and project need the same for the program",
           names(port["features"]["tools"]["dependencies"]) == names(project["features"]["apps"]["dependencies"]))


def run_port(work, features):
    packages = work / f"port{len(features)}"
    script = work / "run.cmake"
    script.write_text("cmake_minimum_required(VERSION 3.22)\n"
                      f'include("{ROOT}/tests/packaging/vcpkg_functions.cmake")\n'
                      f'include("{PORT}/portfile.cmake")\n')
    result = subprocess.run(["cmake", f"-DFEATURES={';'.join(features)}", f"-DCURRENT_PACKAGES_DIR={packages}",
                             f"-DCURRENT_BUILDTREES_DIR={work}/build", f"-DBUILT={BUILT}", "-DPORT=trevallo",
                             "-P", str(script)], capture_output=True, text=True)
    expect("the port runs", result.returncode == 0, result.stderr)
    installed = {str(file.relative_to(packages)) for file in packages.rglob("*") if not file.is_dir()}
    wanted = {"include/modes/modes.h", "lib/libtrevallo.so", "share/trevallo/trevallo-config.cmake",
              "lib/pkgconfig/trevallo.pc", "share/trevallo/copyright", "share/trevallo/usage"}
    expect("the port brings all of the library", wanted <= installed, wanted - installed)
    expect("the port brings the program if asked", ("tools/trevallo/trevallo" in installed) == ("tools" in features))


class Noted:
    """Stands for whatever Conan offers: notes each call, and gives another such thing for each attribute."""

    def __init__(self, calls, name):
        self._calls, self._name = calls, name
        self.cache_variables = {}

    def __call__(self, *arguments, **options):
        self._calls.append((self._name, arguments, options))
        return self

    def __getattr__(self, name):
        return Noted(self._calls, f"{self._name}.{name}")


def load_conan_recipe(file, calls):
    """The module of a recipe, over stand-ins for what it takes from Conan."""
    for module, tools in {"": [], ".tools": [], ".tools.build": ["can_run", "check_min_cppstd"],
                          ".tools.cmake": ["CMake", "CMakeDeps", "CMakeToolchain", "cmake_layout"],
                          ".tools.files": ["copy", "rmdir"], ".tools.gnu": ["PkgConfigDeps"]}.items():
        sys.modules[f"conan{module}"] = types.ModuleType(f"conan{module}")
        for tool in tools:
            setattr(sys.modules[f"conan{module}"], tool, Noted(calls, tool))
    sys.modules["conan"].ConanFile = object
    sys.modules["conan.tools.files"].load = lambda recipe, path: pathlib.Path(path).read_text()
    spec = importlib.util.spec_from_file_location("conanfile", file)
    module = importlib.util.module_from_spec(spec)
    sys.dont_write_bytecode = True
    spec.loader.exec_module(module)
    return module


def check_conan_steps(recipe, calls):
    """Each step runs and calls what it should, with a program and without."""
    recipe.settings = types.SimpleNamespace(get_safe=lambda name: "20")
    recipe.source_folder, recipe.package_folder = "/sources", "/package"
    for program in (True, False):
        for shared in (True, False):
            calls.clear()
            recipe.options = types.SimpleNamespace(with_program=program, shared=shared)
            recipe.tool_requires = Noted(calls, "tool_requires")
            recipe.cpp_info = Noted(calls, "cpp_info")
            for step in ("build_requirements", "validate", "layout", "generate", "build", "package", "package_info"):
                getattr(recipe, step)()
            done = [name for name, *_ in calls]
            wanted = ["tool_requires", "check_min_cppstd", "cmake_layout", "CMakeDeps.generate", "CMakeToolchain.generate",
                      "CMake.configure", "CMake.build", "CMake.install", "copy"]
            expect("the Conan package is built step by step", [name for name in done if name in wanted] ==
                   wanted[:1] * (2 if program else 1) + wanted[1:], done)
            expect("a static package says that it is", getattr(recipe.cpp_info, "defines", None) == ["TREVALLO_STATIC"]
                   or shared, recipe.cpp_info)
            expect("the Conan package names its library", recipe.cpp_info.libs == ["trevallo"])


def check_conan_test():
    """The package's own test builds the consumer that the other ways of installing are tried with."""
    calls = []
    folder = ROOT / "tests/consumer/conan"
    recipe = load_conan_recipe(folder / "conanfile.py", calls).TrevalloTest()
    recipe.tested_reference_str = "trevallo/1.0"
    recipe.cpp = types.SimpleNamespace(build=types.SimpleNamespace(bindir="bin"))
    recipe.requires, recipe.run = Noted(calls, "requires"), Noted(calls, "run")
    for step in (recipe.requirements, recipe.layout, recipe.build, recipe.test):
        step()
    options = {name: (arguments, options) for name, arguments, options in calls}
    expect("the Conan test asks for the package", options["requires"][0] == ("trevallo/1.0",))
    expect("the Conan test builds a consumer",
           (folder / options["CMake.configure"][1]["build_script_folder"] / "CMakeLists.txt").is_file())
    expect("the Conan test runs it", options["run"][0] == ("bin/consumer",))


def check_conan_recipe(work):
    calls = []
    recipe = load_conan_recipe(ROOT / "conanfile.py", calls).TrevalloConan()
    recipe.recipe_folder = str(ROOT)
    recipe.set_version()
    expect("the Conan package has the version of the library", recipe.version == VERSION, recipe.version)

    required = []
    recipe.requires = lambda reference, **_: required.append(reference.partition("/")[0].replace("_", "-"))
    recipe.options = types.SimpleNamespace(with_program=True)
    recipe.requirements()
    project = json.loads((ROOT / "vcpkg.json").read_text())
    wanted = names(project["dependencies"]) | names(project["features"]["apps"]["dependencies"])
    expect("Conan and vcpkg bring the same libraries", set(required) == wanted, required)

    check_conan_steps(recipe, calls)

    exported = work / "exported"
    for pattern in recipe.exports_sources:
        for file in map(pathlib.Path, glob.glob(pattern, root_dir=ROOT)):
            (exported / file).parent.mkdir(parents=True, exist_ok=True)
            (shutil.copytree if (ROOT / file).is_dir() else shutil.copy)(ROOT / file, exported / file)
    result = subprocess.run(["cmake", "-S", exported, "-B", work / "conan", "-G", "Ninja", "-DTREVALLO_TESTS=OFF"],
                            capture_output=True, text=True)
    expect("the exported sources are all that a build needs", result.returncode == 0, result.stderr)


with tempfile.TemporaryDirectory() as name:
    check_manifests()
    run_port(pathlib.Path(name), [])
    run_port(pathlib.Path(name), ["tools"])
    check_conan_recipe(pathlib.Path(name))
    check_conan_test()
sys.exit(faults != 0)
