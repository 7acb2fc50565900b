# Two commands do everything on a fresh Debian machine:
#   make demo   installs what is missing, builds, migrates the sample library
#   make test   installs what is missing, builds, runs every test
BUILD ?= build
JOBS ?= $(shell nproc)

.PHONY: all setup build demo test bench bench-road clean

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

# The whole workflow on generated libraries of 1,000, 10,000 and 50,000
# symbols; BENCH_ROAD_SIZES="1000 10000" leaves the largest out.
bench-road: build
	@scripts/run-bench-road $(BUILD)

clean:
	rm -rf $(BUILD)
