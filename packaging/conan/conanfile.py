"""The recipe of the library for Conan 2: conan create packaging/conan"""
import os
import re

from conan import ConanFile
from conan.tools.cmake import CMake, CMakeToolchain, cmake_layout
from conan.tools.files import copy, load


class VosmereBase(ConanFile):
    name = "vosmerebase"
    description = "Saved items, their documents and the services around them"
    license = "MIT"
    settings = "os", "compiler", "build_type", "arch"
    options = {"shared": [True, False]}
    default_options = {"shared": True}

    @property
    def _root(self):
        return os.path.join(self.recipe_folder, os.pardir, os.pardir)

    def set_version(self):
        text = load(self, os.path.join(self._root, "vosmere", "base", "version.h"))
        self.version = ".".join(re.findall(r"#define VOSMERE_VERSION_[A-Z]+ (\d+)", text))

    def export_sources(self):
        for part in ("CMakeLists.txt", "LICENSE", "CHANGELOG.md", "cmake/*", "vosmere/*"):
            copy(self, part, self._root, self.export_sources_folder)

    # On Linux libxml2, libcurl, hivex and libuuid are those of the system: not all of them have recipes.
    def system_requirements(self):
        from conan.tools.system.package_manager import Apt
        Apt(self).install(["libxml2-dev", "libcurl4-openssl-dev", "libhivex-dev", "uuid-dev"])

    def layout(self):
        cmake_layout(self)

    def generate(self):
        toolchain = CMakeToolchain(self)
        toolchain.cache_variables.update(VOSMERE_SHARED=bool(self.options.shared), VOSMERE_TESTS=False,
                                         VOSMERE_TOOLS=False)
        toolchain.generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        CMake(self).install()

    def package_info(self):
        # The package's own CMake files describe it.
        self.cpp_info.set_property("cmake_find_mode", "none")
        self.cpp_info.builddirs.append(os.path.join("lib", "cmake", "VosmereBase"))
