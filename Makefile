# The front door. `./run` and `./test` do the same on a bare machine.
.PHONY: run test check bench faults fuzz build format packages reference site

build:
	@scripts/setup
	@cmake --preset release >/dev/null
	@cmake --build build

# What the main job needs, without tests and benchmarks.
run:
	@scripts/setup
	@cmake --preset release >/dev/null
	@cmake --build build --target tarn_cli tarn_python tarn_shipped
	@examples/run.sh

test:
	@scripts/setup test
	@$(MAKE) --no-print-directory build
	@scripts/format-check
	ctest --test-dir build --output-on-failure -j$$(nproc)
	@cmake --preset sanitize >/dev/null
	@cmake --build build-sanitize
	ctest --test-dir build-sanitize --output-on-failure -j$$(nproc)

check: test
	@scripts/setup check
	@cmake --preset clang >/dev/null
	@cmake --build build-clang --target all tarn_bench
	ctest --test-dir build-clang --output-on-failure -j$$(nproc)
	@scripts/tidy

bench:
	@scripts/setup test
	@$(MAKE) --no-print-directory build
	@cmake --build build --target tarn_bench
	build/bench/tarn_bench
	PYTHONPATH=build/python /usr/bin/python3 bench/python_windows.py

# 10,000 faults at file calls, programs that are killed, 10,000 losses of power. Half an hour.
faults:
	@scripts/setup
	@cmake --preset release >/dev/null
	@cmake --build build --target tarn_faults
	build/tests/faults/tarn_faults

# libFuzzer at every reader and the C interface, so many seconds each.
FUZZ_SECONDS ?= 600
fuzz:
	@scripts/setup check
	@cmake --preset fuzz >/dev/null
	@cmake --build build-fuzz --target tarn_fuzz
	@FUZZ_SECONDS=$(FUZZ_SECONDS) scripts/fuzz

# The source archive, the wheel and the Debian packages in build-packages, tried.
packages:
	@scripts/setup packages
	@scripts/packages
	@scripts/packages-check

format:
	@scripts/format-check fix

reference: build
	@env -u TARN_CODES -u TARN_SHARE build/cli/tarn_reference docs/reference

# The reference site: open build/site/index.html.
site:
	@scripts/setup test
	@cmake --preset release >/dev/null
	@cmake --build build --target tarn_site
