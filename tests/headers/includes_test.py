#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What the check of includes, namespaces and file names finds, and what it leaves alone."""
import pathlib
import subprocess
import sys
import tempfile
import unittest

CHECKER = pathlib.Path(__file__).with_name("includes.py")


def faults(**files):
    """What is found in a project of these files, whose names have "__" for "/" and "_h" or "_cpp" at the end."""
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run(["git", "init", "--quiet", folder], check=True)
        for name, text in files.items():
            stem, _, suffix = name.replace("__", "/").rpartition("_")
            path = pathlib.Path(folder, f"{stem}.{suffix}")
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text)
        result = subprocess.run([sys.executable, CHECKER, folder], capture_output=True, text=True)
    return result.stderr.splitlines()


def inside(*names):
    """Each namespace within the one before."""
    return ("\n".join(f"namespace {name} {{".replace("  ", " ") for name in names) + "\nint one;\n"
            + "\n".join(f"}} // namespace {name}".rstrip() for name in reversed(names)) + "\n")


class Includes(unittest.TestCase):
    def test_run_from_right_to_left_only(self):
        self.assertEqual(faults(src__track__a_h='#include "modes/b.h"\n', src__modes__b_h=""), [])
        self.assertEqual(faults(src__modes__a_h='#include "track/b.h"\n', src__track__b_h=""),
                         ['src/modes/a.h must not include "track/b.h"'])

    def test_of_programs_are_of_public_headers_only(self):
        self.assertEqual(faults(apps__files__a_h="#include <modes/log.h>\n"), [])
        self.assertEqual(faults(apps__files__a_h="#include <core/b.h>\n", src__core__b_h=""),
                         ["apps/files/a.h must not see inside the library (<core/b.h>)"])

    def test_of_the_core_by_the_other_library_need_no_object(self):
        self.assertEqual(faults(src__airspace__a_h='#include "core/b.h"\n', src__core__b_h=""), [])
        self.assertEqual(faults(src__airspace__a_h='#include "core/b.h"\n', src__core__b_h="",
                                src__core__b_cpp='#include "core/b.h"\n'),
                         ['src/airspace/a.h must not include "core/b.h": it needs an object of another library'])

    def test_of_system_headers_are_left_to_those_who_may(self):
        self.assertEqual(faults(src__core__clock_h="#include <chrono>\n", apps__net__a_h="#include <netdb.h>\n"), [])
        self.assertEqual(faults(src__modes__a_h="#include <chrono>\n", apps__run__b_h="#include <netdb.h>\n"),
                         ["src/modes/a.h must not include <chrono>: that is left to others",
                          "apps/run/b.h must not include <netdb.h>: that is left to others"])


class Namespaces(unittest.TestCase):
    def test_are_those_of_the_folder_or_within_them(self):
        self.assertEqual(faults(src__core__a_h=inside("quorvel::modes"), src__core__b_h=inside("quorvel::modes::wire"),
                                src__airspace__sky__c_h=inside("quorvel::airspace"), include__modes__d_h=inside("html"),
                                apps__trevallo__e_cpp=inside("quorvel::program", "")), [])

    def test_of_other_folders_are_found(self):
        for namespace in ("quorvel::outputs", "quorvel::networks", "quorvel", "html"):
            self.assertEqual(faults(apps__net__a_cpp=inside(namespace)),
                             [f"apps/net/a.cpp must not have the namespace {namespace}: it is another folder's"])
        self.assertEqual(faults(src__airspace__stream__a_h=inside("quorvel::modes")),
                         ["src/airspace/stream/a.h must not have the namespace quorvel::modes: it is another folder's"])
        self.assertEqual(faults(src__core__a_h=inside("", "html")),
                         ["src/core/a.h must not have the namespace html: it is another folder's"])
        self.assertEqual(faults(examples__a_cpp=inside("quorvel::modes")),
                         ["examples/a.cpp must not have the namespace quorvel::modes: it is another folder's"])

    def test_are_named_in_full(self):
        self.assertEqual(faults(apps__run__a_h=inside("quorvel::run", "detail")), [])
        self.assertEqual(faults(apps__run__a_h=inside("quorvel::run") + inside("detail")),
                         ["apps/run/a.h must not have the namespace detail: it is another folder's"])

    def test_of_which_classes_are_only_declared_may_be_any(self):
        self.assertEqual(faults(apps__run__a_h="namespace CLI {\nclass App;\nstruct B;\n}\n"), [])
        self.assertEqual(faults(apps__run__a_h="namespace CLI {\nclass App;\nint b;\n} // namespace CLI\n"),
                         ["apps/run/a.h must not have the namespace CLI: it is another folder's"])

    def test_may_be_missing_or_have_other_names(self):
        self.assertEqual(faults(examples__a_cpp="int main() {}\n",
                                apps__run__b_h="namespace fs = std::filesystem;\nusing namespace quorvel::net;\n"), [])


class Names(unittest.TestCase):
    def test_are_of_one_header_and_its_source(self):
        self.assertEqual(faults(src__core__a_h="", src__core__a_cpp='#include "core/a.h"\n'), [])
        self.assertEqual(faults(src__core__a_h="", src__modes__a_h=""),
                         ["one name, several files: src/core/a.h, src/modes/a.h"])

    def test_of_a_source_stand_in_its_first_include(self):
        self.assertEqual(faults(src__core__a_h="", src__core__b_h="",
                                src__core__a_cpp='#include "core/b.h"\n#include "core/a.h"\n'),
                         ["src/core/a.cpp must include its own header first"])


if __name__ == "__main__":
    unittest.main()
