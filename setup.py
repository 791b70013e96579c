"""Builds the Python package: CMake makes the module, and its install component "python" is what a wheel holds, the
library and the data among it. ZELM_BUILD names a CMake build folder to take it from rather than to build all anew.
"""

import os
import pathlib
import re
import subprocess
import sys

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = pathlib.Path(__file__).resolve().parent


def version():
    return re.search(r"project\(zelm VERSION ([0-9.]+)", (ROOT / "CMakeLists.txt").read_text()).group(1)


class CMakeBuild(build_ext):
    def run(self):
        given = os.environ.get("ZELM_BUILD")
        build = pathlib.Path(given or self.build_temp).resolve()
        if not given:
            self.configure(build)
        jobs = str(len(os.sched_getaffinity(0)))
        subprocess.run(["cmake", "--build", build, "--target", "python", "--parallel", jobs], check=True)
        subprocess.run(
            ["cmake", "--install", build, "--component", "python", "--prefix", pathlib.Path(self.build_lib).resolve()],
            check=True,
        )

    def configure(self, build):
        settings = ["CMAKE_BUILD_TYPE=Release", "ZELM_BUILD_TESTS=OFF", "ZELM_BUILD_BENCH=OFF", "ZELM_BUILD_PYTHON=ON",
                    f"Python_EXECUTABLE={sys.executable}"]
        try:
            import pybind11

            settings.append(f"pybind11_DIR={pybind11.get_cmake_dir()}")
        except ImportError:
            pass  # the system's is found by CMake
        subprocess.run(["cmake", "-S", ROOT, "-B", build, *(f"-D{setting}" for setting in settings)], check=True)


setup(version=version(), ext_modules=[Extension("zelm._zelm", [])], cmdclass={"build_ext": CMakeBuild})
