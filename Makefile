# vyxradar: the commands that a person types. The build itself is CMake; see CMakePresets.json.
PREFIX ?= /usr/local/vyx
JOBS   ?= $(shell nproc)

.PHONY: all release demo demo-window check tidy coverage mutate bench fuzz soak install clean setup

all: release

release: setup
	cmake --preset release "-DCMAKE_INSTALL_PREFIX=$(PREFIX)" -DVYX_BENCH=OFF >/dev/null
	cmake --build --preset release -j $(JOBS)
	tools/check_binary build/release/vyxradar

setup:
	tools/setup_debian build

# Plots samples that the project makes itself and leaves pages and pictures in out/demo.
demo: release
	tools/demo out/demo

# The same samples as a loop in a window of the display.
demo-window: release
	tools/demo out/demo window

# Every test there is.
check:
	tools/setup_debian build check
	tools/check

# clang-tidy over every source; "make check" looks at those that a change touches.
tidy:
	tools/setup_debian build check
	tools/tidy all

# Percent of the lines of each room that the tests run.
coverage:
	tools/setup_debian build check coverage
	JOBS=$(JOBS) tools/coverage

# Small faults, one at a time: which of them no test sees.
mutate:
	tools/setup_debian build check
	tools/mutate

bench:
	tools/setup_debian build bench
	cmake --preset release -DVYX_BENCH=ON >/dev/null
	cmake --build --preset release -j $(JOBS)
	tools/run_benchmarks

# FUZZ_SECONDS for each target.
fuzz:
	tools/setup_debian build fuzz
	cmake --preset fuzz >/dev/null
	cmake --build --preset fuzz -j $(JOBS)
	tools/run_fuzzers $(or $(FUZZ_SECONDS),60)

# Thousands of files in one process, SOAK_SECONDS of a looping window: memory and open files stay what they were.
soak: release
	tools/setup_debian soak
	SOAK_FILES=$(or $(SOAK_FILES),10000) SOAK_SECONDS=$(or $(SOAK_SECONDS),600) tools/soak

install: release
	cmake --install build/release

clean:
	rm -rf build out
