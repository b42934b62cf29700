# Two commands: `make run` starts the workbench, `make test` runs every test.
BUILD ?= build
JOBS  ?= $(shell nproc)

.PHONY: deps configure build run test bench clean

deps:
	bash scripts/install-deps.sh

configure: deps
	cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo

build: configure
	cmake --build $(BUILD) -j $(JOBS)

run: build
	bash scripts/run-workbench.sh $(BUILD) $(ARGS)

test: build
	cd $(BUILD) && QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j $(JOBS)

bench: build
	bash scripts/run-benchmarks.sh $(BUILD)

clean:
	rm -rf $(BUILD)
