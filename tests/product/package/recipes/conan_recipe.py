#!/usr/bin/env python3
"""Runs the recipe of Conan with stand-ins for what it imports.

    conan_recipe.py ROOT VERSION
"""

import os
import re
import sys
import types

root, version = sys.argv[1:]
sys.dont_write_bytecode = True
calls = []


class Recorder:
    """Takes any call, and writes down which."""

    def __init__(self, conanfile):
        self.cache_variables = {}
        calls.append(type(self).__name__)

    def __getattr__(self, name):
        if name not in ("configure", "build", "install", "generate", "test"):
            raise AttributeError(f"{type(self).__name__} has no {name}")
        return lambda: calls.append(f"{type(self).__name__}.{name}")


class CMake(Recorder):
    pass


class CMakeDeps(Recorder):
    pass


class CMakeToolchain(Recorder):
    def generate(self):
        with open(os.path.join(root, "CMakeLists.txt"), encoding="utf-8") as file:
            project = file.read()
        for name in self.cache_variables:
            assert re.search(rf"(set|option)\({name} ", project), f"The project has no option {name}"
        calls.append("CMakeToolchain.generate")


class CppInfo:
    def __init__(self):
        self.libs = []
        self.builddirs = []
        self.properties = {}

    def set_property(self, name, value):
        self.properties[name] = value


class ConanFile:
    recipe_folder = os.path.join(root, "packaging")
    export_sources_folder = source_folder = root
    package_folder = os.path.join(root, "package")

    def __init__(self):
        self.cpp_info = CppInfo()

    def requires(self, reference, **traits):
        assert re.fullmatch(r"[a-z0-9_+.-]+/(\[[^\]]+\]|[0-9.]+)", reference), reference
        assert traits.keys() <= {"transitive_headers", "transitive_libs", "headers", "libs", "visible"}, traits
        calls.append("requires " + reference.partition("/")[0])


def copy(conanfile, pattern, src, dst, excludes=None):
    assert os.path.isdir(src), src
    if pattern != "*":
        assert os.path.exists(os.path.join(src, pattern)), pattern
    calls.append("copy " + pattern)


def load(conanfile, path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def module(name, **members):
    made = types.ModuleType(name)
    made.__dict__.update(members)
    sys.modules[name] = made


module("conan", ConanFile=ConanFile)
module("conan.tools")
module("conan.tools.cmake", CMake=CMake, CMakeDeps=CMakeDeps, CMakeToolchain=CMakeToolchain,
       cmake_layout=lambda conanfile: calls.append("cmake_layout"))
module("conan.tools.files", copy=copy, load=load)
sys.path.insert(0, os.path.join(root, "packaging"))
import conanfile  # noqa: E402 the stand-ins come first

recipes = [value for value in vars(conanfile).values()
           if isinstance(value, type) and issubclass(value, ConanFile) and value is not ConanFile]
assert len(recipes) == 1, recipes
recipe = recipes[0]()
steps = ["set_version", "export_sources", "requirements", "layout", "generate", "build", "package", "package_info"]
hooks = {name for name, value in vars(recipes[0]).items() if callable(value) and not name.startswith("_")}
assert hooks == set(steps), hooks ^ set(steps)
for step in steps:
    getattr(recipe, step)()
assert recipe.version == version, recipe.version
expected = ["copy *", "requires qt", "requires spdlog", "requires fmt", "cmake_layout", "CMakeToolchain",
            "CMakeToolchain.generate", "CMakeDeps", "CMakeDeps.generate", "CMake", "CMake.configure", "CMake.build",
            "CMake", "CMake.install", "copy copyright"]
assert calls == expected, calls
assert "zvutil" in recipe.cpp_info.libs
