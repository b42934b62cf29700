# Two commands: `make run` starts the workbench, `make test` runs every test.
BUILD ?= build
JOBS  ?= $(shell nproc)

.PHONY: deps configure build run test bench clean test-sanitize format format-check

# The install script checks each package first and only calls the package manager for missing ones.
deps:
	@bash scripts/install-deps.sh

# A configured build directory is kept: the build itself re-runs CMake when a CMakeLists changes.
configure: deps
	@test -f $(BUILD)/CMakeCache.txt || cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null

build: configure
	@bash scripts/build-quiet.sh $(BUILD) $(JOBS)

# Only the program is built before it starts; `make test` builds the rest.
run: configure
	@bash scripts/build-quiet.sh $(BUILD) $(JOBS) ptz-workbench
	@bash scripts/run-workbench.sh $(BUILD) --onvif-demo $(ARGS)

# An unformatted source fails the run too, after the tests have had their say.
test: build
	cd $(BUILD) && QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j $(JOBS)
	@$(MAKE) -s format-check

# Address and undefined-behaviour sanitizers over the whole suite, in its own build dir.
# Known leaks of Qt's offscreen plug-in and of system libraries are listed in scripts/lsan.supp.
# The package test is left out:
# it builds a host of its own without the sanitizers against the installed libraries.
SAN_BUILD ?= build-sanitize
CCACHE    := $(shell command -v ccache)
SAN_FLAGS := -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer
test-sanitize: deps
	cmake -S . -B $(SAN_BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo \
	  $(if $(CCACHE),-DCMAKE_CXX_COMPILER_LAUNCHER=$(CCACHE)) \
	  -DCMAKE_CXX_FLAGS="$(SAN_FLAGS)" -DCMAKE_C_FLAGS="$(SAN_FLAGS)" \
	  -DCMAKE_EXE_LINKER_FLAGS="$(SAN_FLAGS)" -DCMAKE_SHARED_LINKER_FLAGS="$(SAN_FLAGS)"
	cmake --build $(SAN_BUILD) -j $(JOBS)
	cd $(SAN_BUILD) && QT_QPA_PLATFORM=offscreen \
	  ASAN_OPTIONS=detect_leaks=1:abort_on_error=0:halt_on_error=1 \
	  LSAN_OPTIONS=suppressions=$(CURDIR)/scripts/lsan.supp:print_suppressions=0 \
	  UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1:suppressions=$(CURDIR)/scripts/ubsan.supp \
	  ctest --output-on-failure -j $(JOBS) -E '^tst_package$$'

bench: build
	bash scripts/run-benchmarks.sh $(BUILD)

# C++ sources under version control, formatted by the checked-in .clang-format.
CLANG_FORMAT ?= clang-format
FORMAT_FILES = $(shell git ls-files '*.cpp' '*.h')

format:
	$(CLANG_FORMAT) -i --style=file $(FORMAT_FILES)

format-check:
	@bad=0; for f in $(FORMAT_FILES); do \
	  $(CLANG_FORMAT) --style=file "$$f" | cmp -s - "$$f" || { echo "$$f"; bad=1; }; \
	done; \
	if [ $$bad -ne 0 ]; then echo "These files are not formatted; run 'make format'." >&2; exit 1; fi

clean:
	rm -rf $(BUILD)
