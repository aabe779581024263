# The two commands of the README: `make run` and `make test`.
# Both install missing Debian packages first (scripts/install-deps is idempotent).

BUILD_DIR ?= build
JOBS ?= $(shell nproc)
CMAKE_FLAGS ?= -DCMAKE_BUILD_TYPE=RelWithDebInfo

.PHONY: all deps configure build run test clean

all: build

deps:
	@scripts/install-deps

$(BUILD_DIR)/CMakeCache.txt:
	cmake -S . -B $(BUILD_DIR) $(CMAKE_FLAGS)

configure: deps $(BUILD_DIR)/CMakeCache.txt

build: configure
	cmake --build $(BUILD_DIR) -j $(JOBS)

run: build
	$(BUILD_DIR)/src/app/zelwave --command_file examples/demo.cmd $(wildcard examples/*.csv examples/*.vcd examples/*.raw)

test: build
	cd $(BUILD_DIR) && ctest --output-on-failure -j $(JOBS) --timeout 600

clean:
	rm -rf $(BUILD_DIR)
