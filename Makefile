# Short commands over CMake's presets. `make help` lists them.

JOBS ?= $(shell nproc 2>/dev/null || echo 2)

FORMATTED = find api bench examples fuzz tests \( -name '*.h' -o -name '*.cpp' \) -print0

# GCC's address sanitizer loses its shadow memory on kernels that randomize addresses widely, so the
# programs run without randomization where the system lets us turn it off.
FIXED_ADDRESSES := $(shell setarch -R true 2>/dev/null && echo setarch -R)

.PHONY: help setup build demo test sanitize tsan coverage fuzz fuzz-replay build-fuzz bench install package \
    check-install check-package abi-check abi-update format format-check clean
.DEFAULT_GOAL := help

help:
	@echo "make demo          build in Release and run the example on its sample data"
	@echo "make test          build in Release and run all tests"
	@echo "make build         build everything in Release, run nothing"
	@echo "make sanitize      run all tests under the address and undefined behaviour sanitizers"
	@echo "make tsan          run the test of several threads under the thread sanitizer"
	@echo "make fuzz          run each fuzz target for MINUTES=1 or more, from what earlier runs found"
	@echo "make fuzz-replay   run the fuzz targets on their seeds and past findings only"
	@echo "make coverage      say which lines and branches of api/ the tests reach (some 6 minutes)"
	@echo "make bench         measure against libxml2 and pugixml, print the table (some 5 minutes)"
	@echo "make install       install the library into PREFIX=/usr/local"
	@echo "make package       make the Debian packages, in build/release/packages"
	@echo "make check-install build clients of the installed library, GCC and Clang, static too (some 2 minutes)"
	@echo "make check-package install the Debian packages into the system, use and remove them (as root)"
	@echo "make abi-check     compare the exported symbols and the installed files with tests/interface"
	@echo "make abi-update    write them to tests/interface"
	@echo "make format        put the sources into the project's format     (needs clang-format)"
	@echo "make format-check  say which sources are not in that format      (needs clang-format)"
	@echo "make setup         install the missing Debian packages only"
	@echo "make clean         remove build/"
	@echo
	@echo "Those above format install missing Debian packages first (as root or through sudo) and need"
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

tsan: setup
	cmake --preset threads
	cmake --build --preset threads --parallel $(JOBS)
	$(FIXED_ADDRESSES) ctest --preset threads

# The fuzz targets, and the tests' documents that some of them begin with. What they find is written
# to build/fuzz/<target>-...; mended, it becomes one of fuzz/findings/<target>.
FUZZ_TARGETS = reader schema instance model text
FUZZ_SEEDS_reader = tests/data/instances tests/data/xml
FUZZ_SEEDS_schema = tests/data/schemas

# The targets' files lie in memory where the system has room for files there.
define run_fuzz_target
	folder=$$(mktemp -d -p /dev/shm 2>/dev/null || mktemp -d) && trap 'rm -rf "$$folder"' EXIT && \
	mkdir -p build/fuzz/corpus/$(1) && TMPDIR=$$folder $(FIXED_ADDRESSES) build/fuzz/fuzz/kaxml_fuzz_$(1) \
	    $(2) -timeout=25 -rss_limit_mb=2048 -close_fd_mask=1 -print_final_stats=1 -dict=fuzz/kaxml.dict \
	    -artifact_prefix=build/fuzz/$(1)- build/fuzz/corpus/$(1) $(FUZZ_SEEDS_$(1)) $(wildcard fuzz/findings/$(1))

endef

build-fuzz:
	@tools/setup.sh ci
	cmake --preset fuzz
	cmake --build --preset fuzz --parallel $(JOBS)

fuzz: build-fuzz
	$(foreach target,$(FUZZ_TARGETS),$(call run_fuzz_target,$(target),-max_len=4096 -len_control=0 \
	    -max_total_time=$$(($(or $(MINUTES),1) * 60))))

fuzz-replay: build-fuzz
	$(foreach target,$(FUZZ_TARGETS),$(call run_fuzz_target,$(target),-runs=0))

# Branches that only the compiler makes, for exceptions, are left out; so are those of lines that do
# nothing but throw.
coverage:
	@tools/setup.sh coverage
	cmake --preset coverage
	cmake --build --preset coverage --parallel $(JOBS)
	find build/coverage -name '*.gcda' -delete
	ctest --preset coverage --parallel $(JOBS)
	gcovr --root . --object-directory build/coverage --filter api/ --exclude-throw-branches \
	    --exclude-unreachable-branches --exclude-branches-by-pattern '\s*throw .*' --print-summary --txt build/coverage/lines.txt \
	    --html-details build/coverage/index.html --fail-under-line 95 --fail-under-branch 90

bench:
	@tools/setup.sh bench
	cmake --preset bench
	cmake --build --preset bench --parallel $(JOBS)
	@echo "This takes some 5 minutes; let the machine do nothing else meanwhile."
	build/bench/bench/kaxml_bench $(BENCH_OPTIONS)

# The library alone. What is packaged is laid out for /usr; that compiles nothing again.
define build_library
	cmake --preset release $(1)
	cmake --build --preset release --parallel $(JOBS) --target kaxml
endef

PREFIX ?= /usr/local

install: setup
	$(call build_library,-DCMAKE_INSTALL_PREFIX=$(abspath $(PREFIX)))
	cmake --install build/release

package:
	@tools/setup.sh packages
	$(call build_library,-DCMAKE_INSTALL_PREFIX=/usr)
	cmake -E rm -rf build/release/packages
	cpack --config build/release/CPackConfig.cmake

check-install:
	@tools/setup.sh ci
	$(build_library)
	JOBS=$(JOBS) tests/consumers/installed.sh build/release

check-package: package
	tests/consumers/packages.sh build/release/packages

abi-check: setup
	$(build_library)
	tests/interface/check.sh build/release

abi-update: setup
	$(build_library)
	tests/interface/check.sh build/release --update

format:
	$(FORMATTED) | xargs -0 clang-format -i

format-check:
	$(FORMATTED) | xargs -0 clang-format --dry-run -Werror

clean:
	cmake -E rm -rf build
