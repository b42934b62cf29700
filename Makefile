# Two commands: `make run` starts the workbench, `make test` runs every test.
BUILD ?= build
JOBS  ?= $(shell nproc)

.PHONY: deps configure build run test bench clean format format-check

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
