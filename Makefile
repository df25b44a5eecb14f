# Short commands over CMake's presets. `make help` lists them.

JOBS ?= $(shell nproc 2>/dev/null || echo 2)

FORMATTED = find api bench examples fuzz tests \( -name '*.h' -o -name '*.cpp' \) -print0

# The address sanitizer loses its shadow memory on kernels that randomize addresses widely, so the
# programs run without randomization where the system lets us turn it off.
FIXED_ADDRESSES := $(shell setarch -R true 2>/dev/null && echo setarch -R)

.PHONY: help setup build demo test sanitize tsan coverage fuzz fuzz-replay build-fuzz bench install package \
    check-install check-package abi-check abi-update docs format format-check clean
.DEFAULT_GOAL := help

help:
	@echo "Command             What it does                                              Needs also    Takes"
	@echo "make demo           builds in Release, runs the example on its sample data                  1.5 min"
	@echo "make test           builds in Release, runs all tests                                       5.5 min"
	@echo "make build          builds everything in Release, runs nothing                              3 min"
	@echo "make install        installs the library into PREFIX=/usr/local               write access  1 min"
	@echo "make docs           builds the reference in build/docs/html                   Doxygen       2 s"
	@echo "make package        makes the Debian packages, in build/release/packages      dpkg-dev      1.5 min"
	@echo "make check-package  puts these into the system, uses and removes them         root          2 min"
	@echo "make check-install  builds clients of the installed library, static too       Clang         2.5 min"
	@echo "make abi-check      compares symbols and files with tests/interface                         1 min"
	@echo "make abi-update     writes them to tests/interface                                          1 min"
	@echo "make sanitize       runs all tests under the address and UB sanitizers          Clang         8 min"
	@echo "make tsan           runs the threads' test under the thread sanitizer                       2 min"
	@echo "make fuzz           runs each of 5 fuzz targets for MINUTES=1 or more         Clang         6.5 min"
	@echo "make fuzz-replay    runs them on their seeds and past findings only           Clang         2.5 min"
	@echo "make coverage       says which lines and branches the tests reach             gcovr         8 min"
	@echo "make bench          measures against libxml2 and pugixml, on an idle system   2 GB of room  4 min"
	@echo "make setup          installs the missing Debian packages only                               1 min"
	@echo "make format         puts the sources into the project's format                clang-format  2 s"
	@echo "make format-check   says which sources are not in that format                 clang-format  2 s"
	@echo "make clean          removes build/                                                          1 s"
	@echo
	@echo "Times are those of the first run on 2 cores, without installing packages. Missing Debian packages"
	@echo "(for all: compiler, CMake, Ninja, libxml2, GoogleTest) are installed first, as root or through"
	@echo "sudo; format and format-check do not, tools/setup.sh ci does. bench needs 1 GB of memory and 1 GB"
	@echo "in the folder for temporary files. What has to pass before a change is accepted: .ci/run"

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

sanitize:
	@tools/setup.sh ci
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
	mkdir -p build/fuzz/corpus/$(1) && TMPDIR=$$folder $(FIXED_ADDRESSES) build/sanitizers/fuzz/kaxml_fuzz_$(1) \
	    $(2) -timeout=25 -rss_limit_mb=2048 -close_fd_mask=1 -print_final_stats=1 -dict=fuzz/kaxml.dict \
	    -artifact_prefix=build/fuzz/$(1)- build/fuzz/corpus/$(1) $(FUZZ_SEEDS_$(1)) $(wildcard fuzz/findings/$(1))

endef

build-fuzz:
	@tools/setup.sh ci
	cmake --preset sanitizers
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
	tools/interface.sh build/release

abi-update: setup
	$(build_library)
	tools/interface.sh build/release --update

# The reference, from the public headers and docs/. Warnings of Doxygen are failures.
docs:
	@tools/setup.sh docs
	cmake -P cmake/KaxmlDocs.cmake

format:
	$(FORMATTED) | xargs -0 clang-format -i

format-check:
	$(FORMATTED) | xargs -0 clang-format --dry-run -Werror

clean:
	cmake -E rm -rf build
