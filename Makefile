# Short commands over CMake's presets. `make help` lists them.

JOBS ?= $(shell nproc 2>/dev/null || echo 2)

FORMATTED = find api bench examples tests \( -name '*.h' -o -name '*.cpp' \) -print0

# GCC's address sanitizer loses its shadow memory on kernels that randomize addresses widely, so the
# programs run without randomization where the system lets us turn it off.
FIXED_ADDRESSES := $(shell setarch -R true 2>/dev/null && echo setarch -R)

.PHONY: help setup build demo test sanitize format format-check clean
.DEFAULT_GOAL := help

help:
	@echo "make demo          build in Release and run the example on its sample data"
	@echo "make test          build in Release and run all tests"
	@echo "make build         build everything in Release, run nothing"
	@echo "make sanitize      run all tests under the address and undefined behaviour sanitizers"
	@echo "make format        put the sources into the project's format     (needs clang-format)"
	@echo "make format-check  say which sources are not in that format      (needs clang-format)"
	@echo "make setup         install the missing Debian packages only"
	@echo "make clean         remove build/"
	@echo
	@echo "The first four install missing Debian packages first (as root or through sudo) and need"
	@echo "nothing else. Everything that has to pass before a change is accepted: .ci/run"

setup:
	@tools/setup.sh

build: setup
	cmake --preset release
	cmake --build --preset release --parallel $(JOBS)

demo: setup
	cmake --preset release
	cmake --build --preset release --parallel $(JOBS) --target plant
	build/release/examples/plant examples/plant/data

test: build
	ctest --preset release --parallel $(JOBS)

sanitize: setup
	cmake --preset sanitizers
	cmake --build --preset sanitizers --parallel $(JOBS)
	$(FIXED_ADDRESSES) ctest --preset sanitizers --parallel $(JOBS)

format:
	$(FORMATTED) | xargs -0 clang-format -i

format-check:
	$(FORMATTED) | xargs -0 clang-format --dry-run -Werror

clean:
	cmake -E rm -rf build
