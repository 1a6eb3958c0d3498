# The two commands a new user needs are `make run` and `make test`; both do
# all the set-up themselves.

BUILD      ?= build
ASAN_BUILD ?= build-asan
FUZZ_BUILD ?= build-fuzz
TSAN_BUILD ?= build-tsan
JOBS       ?= $(shell nproc)
GENERATOR  := $(shell command -v ninja >/dev/null 2>&1 && echo "-G Ninja")
# ccache is optional; when present, rebuilds in other checkouts reuse its objects.
LAUNCHER   := $(shell command -v ccache >/dev/null 2>&1 && echo "-DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache")

.PHONY: all build deps test run sanitize fuzz fuzz-run tsan bench package clean

all: build

deps:
	@scripts/install-deps

$(BUILD)/CMakeCache.txt:
	@cmake -S . -B $(BUILD) $(GENERATOR) $(LAUNCHER) -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null

build: deps $(BUILD)/CMakeCache.txt
	@cmake --build $(BUILD) -j $(JOBS)

test: build
	@scripts/test $(BUILD)

run: build
	@scripts/run $(BUILD)

# The Debian package, into $(BUILD)/tallyvane_VERSION_ARCH.deb.
package: build
	@cd $(BUILD) && cpack -G DEB

$(ASAN_BUILD)/CMakeCache.txt:
	@cmake -S . -B $(ASAN_BUILD) $(GENERATOR) $(LAUNCHER) -DCMAKE_BUILD_TYPE=Debug -DTALLYVANE_SANITIZE=ON -DTALLYVANE_BENCH=OFF >/dev/null

sanitize: deps $(ASAN_BUILD)/CMakeCache.txt
	@cmake --build $(ASAN_BUILD) -j $(JOBS)
	@scripts/test $(ASAN_BUILD)

$(FUZZ_BUILD)/CMakeCache.txt:
	@CC=clang CXX=clang++ cmake -S . -B $(FUZZ_BUILD) $(GENERATOR) -DCMAKE_BUILD_TYPE=RelWithDebInfo \
	  -DTALLYVANE_FUZZ=ON -DTALLYVANE_TESTS=OFF -DTALLYVANE_BENCH=OFF >/dev/null

fuzz: deps $(FUZZ_BUILD)/CMakeCache.txt
	@cmake --build $(FUZZ_BUILD) -j $(JOBS)

# Every fuzz target for FUZZ_SECONDS each (FUZZ_TARGETS picks some); fails on
# any finding.
FUZZ_SECONDS ?= 60
fuzz-run: fuzz
	@scripts/fuzz-run $(FUZZ_BUILD) $(FUZZ_SECONDS) $(FUZZ_TARGETS)

# The find engine's tests under the thread sanitizer; the suppressions file
# says why each entry is not a race of ours.
$(TSAN_BUILD)/CMakeCache.txt:
	@cmake -S . -B $(TSAN_BUILD) $(GENERATOR) $(LAUNCHER) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTALLYVANE_TSAN=ON \
	  -DTALLYVANE_BENCH=OFF >/dev/null

tsan: deps $(TSAN_BUILD)/CMakeCache.txt
	@cmake --build $(TSAN_BUILD) -j $(JOBS) --target test_gleanseek
	@QT_QPA_PLATFORM=offscreen TSAN_OPTIONS="halt_on_error=1 suppressions=$(CURDIR)/scripts/tsan.supp" \
	  $(TSAN_BUILD)/tests/test_gleanseek

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(FUZZ_BUILD) $(TSAN_BUILD)
