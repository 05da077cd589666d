# SPDX-License-Identifier: MIT
"""The recipe for Conan 2: `conan create .` makes the package."""
import os
import re

from conan import ConanFile
from conan.errors import ConanInvalidConfiguration
from conan.tools.build import check_min_cppstd
from conan.tools.cmake import CMake, CMakeDeps, CMakeToolchain, cmake_layout
from conan.tools.files import copy, load, rmdir
from conan.tools.gnu import PkgConfigDeps


class TrevalloConan(ConanFile):
    name = "trevallo"
    license = "MIT"
    homepage = "https://quorvel.example/trevallo"
    description = "Decoder and tracker for 1090 MHz aircraft transponder replies"
    topics = ("ads-b", "mode-s", "aviation", "decoder")
    package_type = "library"
    settings = "os", "arch", "compiler", "build_type"
    options = {"shared": [True, False], "fPIC": [True, False], "with_airspace": [True, False], "with_program": [True, False]}
    default_options = {"shared": True, "fPIC": True, "with_airspace": True, "with_program": False}
    implements = ["auto_shared_fpic"]
    exports_sources = ("CMakeLists.txt", "LICENSE", "apps/*", "cmake/*", "compat/*", "docs/trevallo.1.in", "include/*",
                       "packaging/completion/*", "src/*", "tests/conformance/*")

    def set_version(self):
        numbers = re.findall(r"constexpr int kVersion\w+ = (\d+);",
                             load(self, os.path.join(self.recipe_folder, "src", "core", "version.h")))
        self.version = ".".join(numbers)

    def requirements(self):
        self.requires("rapidcsv/[>=8.80]", visible=False)
        if self.options.with_airspace:
            for library in ("zlib/[>=1.2]", "zstd/[>=1.5]"):
                self.requires(library, visible=not self.options.shared)
        if self.options.with_program:
            for library in ("asio/[>=1.22]", "cli11/[>=2.1]", "nlohmann_json/[>=3.9]"):
                self.requires(library, visible=False)

    def build_requirements(self):
        self.tool_requires("cmake/[>=3.22]")
        if self.options.with_airspace:
            self.tool_requires("pkgconf/[>=2.0]")

    def validate(self):
        if self.options.with_program and not self.options.with_airspace:
            raise ConanInvalidConfiguration("the program needs trevallo-airspace: with_airspace=True")
        if self.settings.get_safe("compiler.cppstd"):
            check_min_cppstd(self, 17)  # what the headers need

    def layout(self):
        cmake_layout(self)

    def generate(self):
        CMakeDeps(self).generate()
        PkgConfigDeps(self).generate()
        toolchain = CMakeToolchain(self)
        toolchain.cache_variables["TREVALLO_TESTS"] = False
        toolchain.cache_variables["TREVALLO_AIRSPACE"] = bool(self.options.with_airspace)
        toolchain.cache_variables["TREVALLO_APPS"] = bool(self.options.with_program)
        toolchain.generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        CMake(self).install()
        copy(self, "LICENSE", src=self.source_folder, dst=os.path.join(self.package_folder, "licenses"))
        rmdir(self, os.path.join(self.package_folder, "lib", "cmake"))
        rmdir(self, os.path.join(self.package_folder, "lib", "pkgconfig"))
        rmdir(self, os.path.join(self.package_folder, "share"))

    def package_info(self):
        self.cpp_info.set_property("cmake_file_name", "trevallo")
        self.describe("library", "trevallo", "trevallo::trevallo")
        if self.options.with_airspace:
            packed = [] if self.options.shared else ["zlib::zlib", "zstd::zstd"]
            self.describe("airspace", "trevallo-airspace", "trevallo::airspace", ["library", *packed])

    def describe(self, component, library, target, requires=()):
        info = self.cpp_info.components[component]
        info.libs = [library]
        info.requires = list(requires)
        info.set_property("cmake_target_name", target)
        info.set_property("pkg_config_name", library)
        if not self.options.shared:
            info.defines = ["TREVALLO_STATIC"]
