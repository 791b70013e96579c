# The two commands for people: `make demo` and `make test`, each fine as the first one typed on a fresh machine.
# Everything else is CMake: see CMakePresets.json.

PRESET ?= release
# Folders for `make tidy` and `make analyze`; empty for all.
TIDY ?=
BUILD := build/$(PRESET)

.PHONY: demo rtl-demo live python test build benchmarks bench docs format format-check tidy analyze build/tidy asan asan-tool tsan fuzz fuzz-short coverage clean

demo: $(BUILD)/build.ninja
	cmake --build --preset $(PRESET) --target zelm
	$(BUILD)/host/zelm estimate examples/vision.json --html $(BUILD)/vision.html
	@echo "The report to look at: $(BUILD)/vision.html"

# From Verilog to watts by module: docs/from-rtl.md.
rtl-demo: $(BUILD)/build.ninja
	tools/setup yosys iverilog
	cmake --build --preset $(PRESET) --target zelm
	examples/rtl/demo $(BUILD)/host/zelm $(BUILD)/rtl

# The page that `zelm estimate --live` writes: its models by emscripten, which takes minutes. docs/live.md.
live: export NODE_PATH = /usr/share/nodejs
live:
	live/setup build/live/sources
	emcmake cmake -G Ninja -S . -B build/live -D CMAKE_BUILD_TYPE=Release
	cmake --build build/live

# The package, to be tried: PYTHONPATH=build/release/python python3
python:
	tools/setup pybind11-dev python3-dev python3-numpy
	cmake --preset $(PRESET)
	cmake --build --preset $(PRESET) --target python

test: build
	ctest --preset $(PRESET) -j 2

build: $(BUILD)/build.ninja
	cmake --build --preset $(PRESET)

$(BUILD)/build.ninja: CMakeLists.txt CMakePresets.json
	tools/setup
	cmake --preset $(PRESET)

asan coverage:
	$(MAKE) test PRESET=$@

# The tool's, the contract's and the physics' tests run every block, over all modes that its data know: most of what
# `make asan` finds in half the time. Left to `make asan` are the blocks' own tests, which work their formulas out by hand,
# and the checks of docs, schema, report and packaging.
ASAN_TESTS := host physics contract framework
asan-tool:
	tools/setup
	cmake --preset asan
	cmake --build --preset asan --target $(ASAN_TESTS:%=%_test)
	printf '%s\n' $(ASAN_TESTS) | xargs -P 2 -I TEST env build/asan/tests/TEST/TEST_test --gtest_brief=1

# Threads meet in the framework, in name tables, singletons and the texts of blocks, and in sweeps of the tool.
tsan:
	tools/setup
	cmake --preset tsan
	cmake --build --preset tsan --target framework_test host_test
	build/tsan/tests/framework/framework_test
	build/tsan/tests/host/host_test --gtest_filter='SweepTest.*'

# What people write, from designs to single numbers, made up by a machine: for half an hour, or a minute, each, two at a
# time. The minute tries the same inputs in every run.
fuzz: FUZZ_SECONDS ?= 1800
fuzz-short: FUZZ_SECONDS ?= 60
fuzz-short: export FUZZ_SEED = 1
fuzz fuzz-short:
	tools/setup clang libclang-rt-14-dev
	cmake --preset fuzz
	cmake --build --preset fuzz
	printf '%s\n' design data calc vary netlist import text | xargs -P 2 -n 1 tools/fuzz $(FUZZ_SECONDS)

benchmarks: $(BUILD)/build.ninja
	cmake --build --preset $(PRESET) --target benchmarks

bench: benchmarks
	for program in $(BUILD)/bench/*_bench; do $$program || exit 1; done

docs: build
	$(BUILD)/host/zelm docs docs/cells
	$(BUILD)/host/zelm schema > docs/design.schema.json

format:
	tools/format

format-check:
	tools/format --check

build/tidy: $(BUILD)/build.ninja
	cmake --preset $(PRESET) -B $@ -D CMAKE_DISABLE_PRECOMPILE_HEADERS=ON

tidy: build/tidy
	tools/tidy $< $(TIDY)

# Its check of MPI doesn't know that a request may be tested until it is done.
analyze: build/tidy
	CHECKS='-*,clang-analyzer-*,-clang-analyzer-optin.mpi.*' tools/tidy $< $(TIDY)

clean:
	rm -rf build
