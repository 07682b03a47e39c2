# The front door. Each target does all of its own set-up: it installs the Debian packages that are
# missing, configures, builds and runs. `make help` lists them.

SHELL := /bin/bash
.SHELLFLAGS := -eu -o pipefail -c
.DEFAULT_GOAL := help
MAKEFLAGS += --no-print-directory

JOBS ?= $(shell nproc)
PREFIX ?= /usr/local
FUZZ_SECONDS ?= 30
TIDY_ARGS ?=
CTEST_ARGS ?=
# Tests that generate their input generate much more of it when this is 1.
KX_LARGE ?= 0
export JOBS FUZZ_SECONDS KX_LARGE

# A compiler cache is used where there is one.
ifneq ($(shell command -v ccache),)
export CMAKE_CXX_COMPILER_LAUNCHER ?= ccache
endif

packages = @scripts/install-packages.sh
sanitizer_options = ASAN_OPTIONS=detect_leaks=1:strict_string_checks=1:detect_stack_use_after_return=0 \
    UBSAN_OPTIONS=print_stacktrace=1 TSAN_OPTIONS=halt_on_error=1
run_ctest = ctest --output-on-failure --no-tests=error -j $(JOBS) $(CTEST_ARGS) --test-dir

.PHONY: help demo test install bench asan tsan fuzz format format-check tidy check-includes check check-all \
    clean

help: ## This list
	@grep -hE '^[a-z-]+:.*## ' Makefile | awk -F ':.*## ' '{printf "  make %-15s %s\n", $$1, $$2}'

demo: ## Builds the example program and runs it on the example message
	$(packages) build
	@cmake --preset release -B build/demo -DKX_BUILD_TESTS=OFF >build-demo.log 2>&1 || \
	    { cat build-demo.log; rm -f build-demo.log; exit 1; }; mv build-demo.log build/demo/configure.log
	@cmake --build build/demo --target kx_demo -j $(JOBS) >build/demo/build.log 2>&1 || \
	    { cat build/demo/build.log; exit 1; }
	@build/demo/examples/kx_demo examples build/demo

test: ## Builds build/release and runs every test
	$(packages) build test
	@cmake --preset release
	@cmake --build build/release -j $(JOBS)
	@$(run_ctest) build/release

install: ## Installs library, headers, kxmsg and manual under PREFIX (/usr/local), DESTDIR in front
	$(packages) build
	@cmake --preset release -B build/install -DKX_BUILD_TESTS=OFF -DCMAKE_INSTALL_PREFIX=$(PREFIX)
	@cmake --build build/install -j $(JOBS)
	@cmake --install build/install

bench: ## Measures against the peers: a table, and build/bench/results.json
	$(packages) build bench
	@cmake --preset bench
	@cmake --build build/bench --target kx_bench -j $(JOBS)
	@program=$$(find build/bench -name kx_bench -type f -perm -u+x | head -n 1); \
	    test -n "$$program" || { echo "make bench: kx_bench was not built" >&2; exit 1; }; \
	    "$$program" --results build/bench/results.json

asan: ## Every test under the address, leak and undefined-behaviour sanitizers
	$(packages) build test
	@cmake --preset asan
	@cmake --build build/asan -j $(JOBS)
	@$(sanitizer_options) $(run_ctest) build/asan

tsan: ## Every test under the thread sanitizer
	$(packages) build test
	@cmake --preset tsan
	@cmake --build build/tsan -j $(JOBS)
	@$(sanitizer_options) $(run_ctest) build/tsan

fuzz: ## Every fuzz target, or FUZZ_TARGETS, for FUZZ_SECONDS (30)
	$(packages) build test fuzz
	@mkdir -p build
	@scripts/fuzz.sh $(FUZZ_TARGETS)

format: ## Formats all C++ files
	$(packages) format
	@scripts/format.sh

format-check: ## Fails when a C++ file is not formatted
	$(packages) format
	@scripts/format.sh --check

tidy: ## clang-tidy on what changed; TIDY_ARGS=--all for everything
	$(packages) build test tidy
	@cmake --preset release >/dev/null
	@scripts/tidy.sh $(TIDY_ARGS)

check-includes: ## Who includes whom, against the tier table
	$(packages) scripts
	@python3 scripts/check_includes.py

# A merge runs the targets that have come through a long run; check-all runs all of them.
check: export FUZZ_TARGETS ?= parse_fuzz paths_fuzz settings_fuzz pattern_fuzz schema_fuzz \
    validate_fuzz content_fuzz message_fuzz element_fuzz edit_fuzz script_fuzz
check: ## What must pass before a merge; ends with the tests
	@for step in format-check check-includes demo asan fuzz tidy test; do \
	    printf '\n== %s (after %d s)\n' "$$step" "$$SECONDS"; $(MAKE) "$$step" || exit 1; done

check-all: ## The long version: all of clang-tidy, thread sanitizer, 15 minutes of each fuzz target
	@for step in format-check check-includes demo "tidy TIDY_ARGS=--all" asan tsan \
	    "fuzz FUZZ_SECONDS=900" "test KX_LARGE=1"; do \
	    printf '\n== %s (after %d s)\n' "$$step" "$$SECONDS"; $(MAKE) $$step || exit 1; done

clean: ## Removes build/
	@rm -rf build
