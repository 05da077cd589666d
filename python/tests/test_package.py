# SPDX-License-Identifier: MIT
import importlib.metadata
import pathlib
import re
import subprocess
import sys
import tarfile

import trevallo

from conftest import ROOT

FOLDER = pathlib.Path(trevallo.__file__).parent


def test_the_package_has_its_metadata() -> None:
    metadata = importlib.metadata.metadata("trevallo")
    numbers = re.findall(r"kVersion\w+ = (\d+)", (ROOT / "src/core/version.h").read_text())
    assert metadata["Version"] == ".".join(numbers) == trevallo.__version__
    assert (metadata["License"], metadata["Requires-Dist"]) == ("MIT", "numpy")
    assert "# trevallo in Python" in (importlib.metadata.distribution("trevallo").read_text("METADATA") or "")


def test_the_package_brings_its_types_and_its_licence() -> None:
    names = {str(file) for file in importlib.metadata.files("trevallo") or []}
    assert {"trevallo/__init__.pyi", "trevallo/airspace.pyi", "trevallo/html.pyi", "trevallo/py.typed"} <= names
    assert any(name.endswith("dist-info/LICENSE") for name in names)


def test_what_is_installed_is_what_is_recorded() -> None:
    for file in importlib.metadata.files("trevallo") or []:
        if file.hash and file.suffix in {".so", ".pyi"}:
            assert file.size == pathlib.Path(file.locate()).stat().st_size


def test_the_stubs_know_every_class_and_name_nothing_of_cpp() -> None:
    for name, module in (("__init__", trevallo), ("airspace", trevallo.airspace), ("html", trevallo.html)):
        stub = (FOLDER / f"{name}.pyi").read_text(encoding="utf-8")
        described = set(re.findall(r"^class (\w+)", stub, re.M))
        assert described == {name for name, member in vars(module).items() if isinstance(member, type)}
        assert not re.search(r"quorvel|std::|pybind11", stub)


def test_the_module_needs_no_library_of_ours_and_shows_its_entry_alone() -> None:
    [module] = FOLDER.glob("_trevallo*.so")
    needed = subprocess.run(["readelf", "-d", module], capture_output=True, text=True, check=True).stdout
    assert "libtrevallo" not in needed
    symbols = subprocess.run(["nm", "-D", "--defined-only", module], capture_output=True, text=True, check=True).stdout
    assert [line.split()[-1] for line in symbols.splitlines()] == ["PyInit__trevallo"]


def test_importing_it_does_not_import_numpy() -> None:
    program = "import sys, trevallo; sys.exit('numpy' in sys.modules)"
    assert subprocess.run([sys.executable, "-c", program]).returncode == 0


def test_the_archive_of_sources_brings_the_texts_of_the_headers(tmp_path: pathlib.Path) -> None:
    program = f"import trevallo_build; print(trevallo_build.build_sdist({str(tmp_path)!r}))"
    made = subprocess.run([sys.executable, "-B", "-c", program], cwd=ROOT / "python/backend", capture_output=True, text=True,
                          check=True)
    with tarfile.open(tmp_path / made.stdout.strip()) as archive:
        [name] = [name for name in archive.getnames() if name.endswith("/python/generated/texts.h")]
        texts = archive.extractfile(name)
        assert texts
        told = texts.read()
        assert b"Ground speed in knots" in told and b"airspace::Sky::take" in told
