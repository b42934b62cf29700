# Two commands: `make run` starts the workbench, `make test` runs every test.
BUILD ?= build
JOBS  ?= $(shell nproc)

.PHONY: deps configure build run test bench clean

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
	@bash scripts/run-workbench.sh $(BUILD) $(ARGS)

test: build
	cd $(BUILD) && QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j $(JOBS)

bench: build
	bash scripts/run-benchmarks.sh $(BUILD)

clean:
	rm -rf $(BUILD)
