"""Conan 2: conan create packaging"""

import os
import re

from conan import ConanFile
from conan.tools.cmake import CMake, CMakeDeps, CMakeToolchain, cmake_layout
from conan.tools.files import copy, load


class ZvutilConan(ConanFile):
    name = "zvutil"
    description = "General utility library of a desktop engineering application"
    package_type = "shared-library"
    settings = "os", "arch", "compiler", "build_type"

    @property
    def _root(self):
        return os.path.join(self.recipe_folder, os.pardir)

    def set_version(self):
        project = load(self, os.path.join(self._root, "CMakeLists.txt"))
        self.version = re.search(r"^ +VERSION ([0-9.]+)$", project, re.MULTILINE).group(1)

    def export_sources(self):
        copy(self, "*", src=self._root, dst=self.export_sources_folder, excludes=["build/*", ".git/*"])

    def requirements(self):
        # Headers of the library include those of Qt; the others stay inside.
        self.requires("qt/[>=5.15 <6]", transitive_headers=True, transitive_libs=True)
        self.requires("spdlog/[>=1.10 <2]")
        self.requires("fmt/[>=9]")

    def layout(self):
        cmake_layout(self)

    def generate(self):
        toolchain = CMakeToolchain(self)
        toolchain.cache_variables["ZV_TESTS"] = "none"
        toolchain.cache_variables["ZV_PROGRAM"] = False
        toolchain.generate()
        CMakeDeps(self).generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        CMake(self).install()
        copy(self, "copyright", src=os.path.join(self.source_folder, "packaging", "debian"),
             dst=os.path.join(self.package_folder, "licenses"))

    def package_info(self):
        # The package brings CMake files of its own.
        self.cpp_info.set_property("cmake_find_mode", "none")
        self.cpp_info.builddirs.append(os.path.join("lib", "cmake"))
        self.cpp_info.libs = ["zvutil", "DockFramework", "HostSupport", "zv_logging"]
