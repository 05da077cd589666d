# SPDX-License-Identifier: MIT
"""Builds the wheel: CMake makes and installs the package, this writes it into an archive with its metadata.

It needs nothing but Python's own library, so that a build needs no network. pip passes one setting on:
--config-settings=build-dir=FOLDER keeps the build there, for the next time. CMake reads its environment variables as
ever (CMAKE_GENERATOR, CMAKE_BUILD_TYPE, CXX, CXXFLAGS).
"""
import base64
import hashlib
import os
import pathlib
import re
import shutil
import subprocess
import sys
import sysconfig
import tarfile
import tempfile
import tomllib
import zipfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROJECT = tomllib.loads((ROOT / "pyproject.toml").read_text(encoding="utf-8"))["project"]
HEADERS = (ROOT / "include/modes", ROOT / "include/airspace")
MOST_JOBS = 4  # a compiler of templates takes some hundred megabytes


def version() -> str:
    numbers = re.findall(r"kVersion(?:Major|Minor|Patch) = (\d+)", (ROOT / "src/core/version.h").read_text())
    return ".".join(numbers)


def stem() -> str:
    return f"{PROJECT['name']}-{version()}"


def metadata() -> str:
    lines = [
        "Metadata-Version: 2.1",
        f"Name: {PROJECT['name']}",
        f"Version: {version()}",
        f"Summary: {PROJECT['description']}",
        f"License: {PROJECT['license']['text']}",
        f"Keywords: {','.join(PROJECT['keywords'])}",
        *(f"Project-URL: {name}, {url}" for name, url in PROJECT["urls"].items()),
        *(f"Classifier: {classifier}" for classifier in PROJECT["classifiers"]),
        f"Requires-Python: {PROJECT['requires-python']}",
        *(f"Requires-Dist: {requirement}" for requirement in PROJECT["dependencies"]),
        "Description-Content-Type: text/markdown",
        "",
        (ROOT / PROJECT["readme"]).read_text(encoding="utf-8"),
    ]
    return "\n".join(lines)


def tag() -> str:
    python = f"cp{sys.version_info.major}{sys.version_info.minor}"
    return f"{python}-{python}-{re.sub('[-.]', '_', sysconfig.get_platform())}"


def wheel_file() -> str:
    return f"Wheel-Version: 1.0\nGenerator: {__name__} ({version()})\nRoot-Is-Purelib: false\nTag: {tag()}\n"


def write_dist_info(folder: pathlib.Path) -> pathlib.Path:
    dist_info = folder / f"{stem()}.dist-info"
    dist_info.mkdir(parents=True)
    (dist_info / "METADATA").write_text(metadata(), encoding="utf-8")
    (dist_info / "WHEEL").write_text(wheel_file(), encoding="utf-8")
    shutil.copy(ROOT / "LICENSE", dist_info)
    return dist_info


def build(build_folder: pathlib.Path, prefix: pathlib.Path) -> None:
    def cmake(*arguments) -> None:
        # what CMake says is for the user; standard output belongs to pip
        subprocess.run(["cmake", *map(str, arguments)], check=True, stdout=sys.stderr)

    is_new = not (build_folder / "CMakeCache.txt").exists()
    generator = ["-G", "Ninja"] if is_new and "CMAKE_GENERATOR" not in os.environ else []
    cmake("-S", ROOT, "-B", build_folder, *generator, "-DTREVALLO_PYTHON=ON", "-DTREVALLO_APPS=OFF", "-DTREVALLO_TESTS=OFF",
          "-DTREVALLO_PYTHON_DESTINATION=.", f"-DPython3_EXECUTABLE={sys.executable}")
    jobs = min(os.cpu_count() or 1, MOST_JOBS)
    cmake("--build", build_folder, "--target", "trevallo_python_stubs", "--parallel", jobs)
    cmake("--install", build_folder, "--component", "python", "--prefix", prefix, "--strip")


def record_line(name: str, content: bytes) -> str:
    digest = base64.urlsafe_b64encode(hashlib.sha256(content).digest()).rstrip(b"=").decode()
    return f"{name},sha256={digest},{len(content)}"


def write_archive(archive: pathlib.Path, tree: pathlib.Path) -> None:
    """The same tree gives the same bytes: every file has the first date that archives can hold."""
    files = sorted(path for path in tree.rglob("*") if path.is_file())
    record = f"{stem()}.dist-info/RECORD"
    lines = []
    with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED) as wheel:
        for path in files:
            name = path.relative_to(tree).as_posix()
            entry = zipfile.ZipInfo(name)
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.external_attr = 0o644 << 16
            content = path.read_bytes()
            lines.append(record_line(name, content))
            wheel.writestr(entry, content)
        entry = zipfile.ZipInfo(record)
        entry.external_attr = 0o644 << 16
        wheel.writestr(entry, "\n".join([*lines, f"{record},,", ""]))


# What installers call.


def prepare_metadata_for_build_wheel(metadata_directory, config_settings=None) -> str:
    return write_dist_info(pathlib.Path(metadata_directory)).name


def build_wheel(wheel_directory, config_settings=None, metadata_directory=None) -> str:
    name = f"{stem()}-{tag()}.whl"
    with tempfile.TemporaryDirectory() as folder:
        tree = pathlib.Path(folder, "tree")
        build(pathlib.Path((config_settings or {}).get("build-dir") or pathlib.Path(folder, "build")), tree)
        write_dist_info(tree)
        write_archive(pathlib.Path(wheel_directory, name), tree)
    return name


def build_sdist(sdist_directory, config_settings=None) -> str:
    """What git knows of, and what the headers say, so that installing the archive needs no Doxygen."""
    listed = subprocess.run(["git", "-C", ROOT, "ls-files", "-z"], check=True, stdout=subprocess.PIPE).stdout
    name = f"{stem()}.tar.gz"
    with tarfile.open(pathlib.Path(sdist_directory, name), "w:gz") as archive:
        for file in filter(None, listed.decode().split("\0")):
            archive.add(ROOT / file, f"{stem()}/{file}", recursive=False)
        with tempfile.TemporaryDirectory() as made:
            information, texts = pathlib.Path(made, "PKG-INFO"), pathlib.Path(made, "texts.h")
            information.write_text(metadata(), encoding="utf-8")
            subprocess.run([sys.executable, "-B", ROOT / "python/tools/make_texts.py", texts, *HEADERS], check=True)
            archive.add(information, f"{stem()}/PKG-INFO")
            archive.add(texts, f"{stem()}/python/generated/texts.h")
    return name
