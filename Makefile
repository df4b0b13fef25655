# Two commands do everything: `make play` builds and starts the game, `make test` builds and
# runs every test. Both install what is missing first.
BUILD ?= build
JOBS ?= 2
GENERATOR ?= Ninja
CONFIG = -G $(GENERATOR) -DCMAKE_BUILD_TYPE=RelWithDebInfo

.PHONY: all deps native asan fuzz-tree win64 win32 build test play widget-demo fuzz bench clean

all: build

deps:
	@bash tools/setup/install-deps.sh

# Each tree is configured once, then built incrementally. The sanitizer tree is built with -O1
# and line tables only: reports keep their file and line, and the build takes far less time.
native: deps
	@test -f $(BUILD)/native/CMakeCache.txt || cmake -S . -B $(BUILD)/native $(CONFIG) \
	  -DQV_TEST_PREFIX=native -DQV_TEST_LABEL=native
	@bash tools/test/timed.sh $(BUILD) native cmake --build $(BUILD)/native -j $(JOBS)

asan: deps
	@test -f $(BUILD)/asan/CMakeCache.txt || cmake -S . -B $(BUILD)/asan $(CONFIG) \
	  -DQV_SANITIZE=ON -DQV_TEST_PREFIX=asan -DQV_TEST_LABEL=asan \
	  "-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O1 -g1 -DNDEBUG"
	@bash tools/test/timed.sh $(BUILD) asan cmake --build $(BUILD)/asan -j $(JOBS)

fuzz-tree: deps
	@test -f $(BUILD)/fuzz/CMakeCache.txt || cmake -S . -B $(BUILD)/fuzz $(CONFIG) \
	  -DCMAKE_TOOLCHAIN_FILE=cmake/toolchain-clang.cmake -DQV_FUZZ=ON
	@bash tools/test/timed.sh $(BUILD) fuzz cmake --build $(BUILD)/fuzz -j $(JOBS)

# The Windows trees take the game's data from the native tree's asset tool.
win64: deps native
	@test -f $(BUILD)/win64/CMakeCache.txt || cmake -S . -B $(BUILD)/win64 $(CONFIG) \
	  -DCMAKE_TOOLCHAIN_FILE=cmake/toolchain-mingw64.cmake -DQV_TEST_PREFIX=win64 \
	  -DQV_WINEPREFIX=$(abspath $(BUILD))/wine-test -DQV_ASSET_TOOLS=$(abspath $(BUILD))/native/tools
	@bash tools/test/timed.sh $(BUILD) win64 cmake --build $(BUILD)/win64 -j $(JOBS)

win32: deps native
	@test -f $(BUILD)/win32/CMakeCache.txt || cmake -S . -B $(BUILD)/win32 $(CONFIG) \
	  -DCMAKE_TOOLCHAIN_FILE=cmake/toolchain-mingw32.cmake -DQV_GAME_ONLY=ON \
	  -DQV_ASSET_TOOLS=$(abspath $(BUILD))/native/tools
	@bash tools/test/timed.sh $(BUILD) win32 cmake --build $(BUILD)/win32 -j $(JOBS)

build: native asan fuzz-tree win64 win32

test: build
	@bash tools/test/run-tests.sh $(BUILD)

play: deps win64 win32
	@bash tools/play.sh $(BUILD)

# Every widget on one screen, to try them by hand (not shipped with the game).
widget-demo: deps win64
	@bash tools/play.sh $(BUILD) widget-demo

# Longer fuzzing than the test run gives: FUZZ_SECONDS per target (default 300), in
# FUZZ_WORKERS processes sharing its corpus (default 2, one a core).
fuzz: fuzz-tree
	@bash tools/test/fuzz.sh $(BUILD)/fuzz $${FUZZ_SECONDS:-300} $${FUZZ_WORKERS:-2}

bench: native
	$(BUILD)/native/bench/quorvex_bench --benchmark_counters_tabular=true
	$(BUILD)/native/bench/engine_bench --benchmark_counters_tabular=true
	$(BUILD)/native/bench/photo_bench --benchmark_counters_tabular=true

clean:
	rm -rf $(BUILD)
