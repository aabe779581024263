# The two commands of the README: `make run` and `make test`.
# Both install missing Debian packages first (scripts/install-deps is idempotent).
# For developers: `make test-asan`, `make test-tsan` and `make fuzz FUZZ_SECONDS=N`, each in a
# build folder of its own.

BUILD_DIR ?= build
JOBS ?= $(shell nproc)
CMAKE_FLAGS ?= -DCMAKE_BUILD_TYPE=RelWithDebInfo

.PHONY: all deps configure build run test clean test-asan test-tsan fuzz

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

# ---- Sanitizer builds: every report fails its test. Only reports from inside Qt's
# uninstrumented libraries are suppressed (tests/sanitizers/). SIGBUS stays with our own guard
# of mapped files (handle_sigbus=0), whose tests check what it does with the signal.
SAN_DIR = $(CURDIR)/tests/sanitizers
ASAN_ENV = ASAN_OPTIONS=detect_leaks=1:abort_on_error=1:strict_string_checks=1:detect_stack_use_after_return=1:handle_sigbus=0 \
	UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
	LSAN_OPTIONS=suppressions=$(SAN_DIR)/lsan.supp:print_suppressions=0
TSAN_ENV = TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1:handle_sigbus=0:suppressions=$(SAN_DIR)/tsan.supp
# The tests that run threads: the socket, the command bridge and command files (program, host
# tests), the value change dump reader read in pieces on threads, raw files, parallel curve
# loading, and files cut under their mapping (the bus error guard runs inside the sanitizer's
# own signal handler, which blocks every signal: the guard puts the mask back after its jump).
# Not the other curve loading tests: resident memory means nothing under the sanitizer.
TSAN_TESTS ?= ^(socket_session|cli_raw|program\..*|zelwaveHost\..*|cVxThread\..*|VcdReader\..*|Nutmeg\..*|CurveLoading\.(LoadReleaseAndParallelColumns|FileTruncatedDuringLoadFailsAndTheProgramGoesOn)|CurveLoadingDeathTest\..*|MappedFileCut\..*)$$

test-asan: deps
	cmake -S . -B build-asan $(CMAKE_FLAGS) -DZELWAVE_SANITIZE=asan
	cmake --build build-asan -j $(JOBS)
	cd build-asan && $(ASAN_ENV) ctest --output-on-failure -j $(JOBS) --timeout 1800

test-tsan: deps
	cmake -S . -B build-tsan $(CMAKE_FLAGS) -DZELWAVE_SANITIZE=tsan
	cmake --build build-tsan -j $(JOBS)
	cd build-tsan && $(TSAN_ENV) ctest --output-on-failure -j $(JOBS) --timeout 1800 -R '$(TSAN_TESTS)'

# ---- Fuzzing with libFuzzer (clang): each harness of fuzz/ runs FUZZ_SECONDS, one at a time.
FUZZ_SECONDS ?= 60
FUZZ_DIR ?= build-fuzz
fuzz:
	scripts/install-deps fuzz
	CC=clang-15 CXX=clang++-15 cmake -S . -B $(FUZZ_DIR) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZELWAVE_FUZZ=ON \
		-DZELWAVE_BUILD_GUI=OFF -DZELWAVE_BUILD_TESTS=OFF -DZELWAVE_BUILD_BENCH=OFF
	cmake --build $(FUZZ_DIR) -j $(JOBS)
	scripts/fuzz-run $(FUZZ_DIR) $(FUZZ_SECONDS)

clean:
	rm -rf $(BUILD_DIR)
