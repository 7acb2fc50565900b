# Two commands do everything on a fresh Debian machine:
#   make demo   installs what is missing, builds, migrates the sample library
#   make test   installs what is missing, builds, runs every test
BUILD ?= build
JOBS ?= $(shell nproc)

.PHONY: all setup build demo test bench bench-road clean test-asan fuzz

all: build

setup:
	@scripts/setup-deps

build: setup
	@cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo > /dev/null
	@cmake --build $(BUILD) -j $(JOBS)

demo: build
	@scripts/run-demo $(BUILD)

# The test build treats every warning as an error.
test: setup
	@cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVLT_WERROR=ON > /dev/null
	@cmake --build $(BUILD) -j $(JOBS)
	@cd $(BUILD) && ctest --output-on-failure -j $(JOBS)
	@scripts/test-share

bench: build
	@scripts/run-bench $(BUILD)

# The test suite (unit and end-to-end tests, tool simulators included) built
# with AddressSanitizer and UndefinedBehaviorSanitizer; any report fails it.
ASAN_BUILD ?= build-asan
SANITIZE := -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer
CCACHE := $(shell command -v ccache 2>/dev/null)
test-asan: setup
	@cmake -S . -B $(ASAN_BUILD) -DCMAKE_BUILD_TYPE=Debug -DVLT_BUILD_BENCH=OFF \
	  $(if $(CCACHE),-DCMAKE_CXX_COMPILER_LAUNCHER=$(CCACHE)) \
	  "-DCMAKE_CXX_FLAGS=-O1 $(SANITIZE)" "-DCMAKE_EXE_LINKER_FLAGS=$(SANITIZE)" \
	  "-DCMAKE_SHARED_LINKER_FLAGS=$(SANITIZE)" > /dev/null
	@ASAN_OPTIONS=detect_leaks=0 cmake --build $(ASAN_BUILD) -j $(JOBS)
	@cd $(ASAN_BUILD) && ASAN_OPTIONS=detect_leaks=1:abort_on_error=1:detect_odr_violation=0 \
	  LSAN_OPTIONS=suppressions=$(CURDIR)/tests/sanitizer/lsan.supp:print_suppressions=0 \
	  UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 ctest --output-on-failure -j $(JOBS)

# libFuzzer targets of every reader of outside data (tests/fuzz), built with
# clang in their own directory; each runs FUZZ_SECONDS and any crash, leak or
# time-out fails the run.
FUZZ_BUILD ?= build-fuzz
FUZZ_SECONDS ?= 60
fuzz: setup
	@cmake -S tests/fuzz -B $(FUZZ_BUILD) -DCMAKE_CXX_COMPILER=clang++ \
	  $(if $(CCACHE),-DCMAKE_CXX_COMPILER_LAUNCHER=$(CCACHE)) > /dev/null
	@cmake --build $(FUZZ_BUILD) -j $(JOBS)
	@tests/fuzz/run-all $(FUZZ_BUILD) $(FUZZ_SECONDS)

# The whole workflow on generated libraries of 1,000, 10,000 and 50,000
# symbols; BENCH_ROAD_SIZES="1000 10000" leaves the largest out.
bench-road: build
	@scripts/run-bench-road $(BUILD)

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(FUZZ_BUILD)
