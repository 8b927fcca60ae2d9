# The two commands of the project: `make demo` and `make test`. Both install the Debian packages
# the build needs (when missing), configure, build, and run.

PACKAGES := g++ cmake ninja-build pkg-config libxml2-dev libicu-dev libgtest-dev libbenchmark-dev python3 \
            pybind11-dev python3-dev python3-pytest libcli11-dev nlohmann-json3-dev libcsv-dev
JOBS ?= $(shell nproc)
SUDO := $(shell [ "$$(id -u)" = 0 ] || echo sudo)

.PHONY: deps demo test test-asan test-release test-clang fuzz bench format clean

deps:
	@missing=""; for p in $(PACKAGES); do \
	  dpkg-query -W -f='$${Status}' $$p 2>/dev/null | grep -q "install ok installed" || missing="$$missing $$p"; \
	done; \
	if [ -n "$$missing" ]; then \
	  echo "Installing:$$missing"; \
	  $(SUDO) apt-get update && DEBIAN_FRONTEND=noninteractive $(SUDO) apt-get install -y --no-install-recommends $$missing; \
	fi

demo: deps
	cmake --preset debug
	cmake --build --preset debug -j $(JOBS) --target qvr-tools
	./build/debug/tools/qvr-demo

test: deps
	cmake --preset debug
	cmake --build --preset debug -j $(JOBS)
	ctest --preset debug -j $(JOBS)

test-asan: deps
	cmake --preset asan
	cmake --build --preset asan -j $(JOBS)
	ctest --preset asan -j $(JOBS)

# The suite optimised, as a release is built.
test-release: deps
	cmake --preset release-tests
	cmake --build --preset release-tests -j $(JOBS)
	ctest --preset release-tests -j $(JOBS)

# The suite built by clang under ASan+UBSan; the same build holds the fuzz targets (libFuzzer
# comes with clang's runtime libraries).
test-clang fuzz: PACKAGES += clang libclang-rt-14-dev
test-clang: deps
	cmake --preset clang
	cmake --build --preset clang -j $(JOBS)
	ctest --preset clang -j $(JOBS)

# Each fuzz target for FUZZ_SECONDS from its corpus in fuzz/corpus/<target> (if it has one); new
# inputs go to build/clang/corpus, a crash (written to build/clang/) fails the run.
FUZZ_SECONDS ?= 60
FUZZ_TARGETS := dom_load_fuzz vbscript_parse_fuzz transfer_packet_fuzz
fuzz: deps
	cmake --preset clang
	cmake --build --preset clang -j $(JOBS) --target $(FUZZ_TARGETS)
	@for t in $(FUZZ_TARGETS); do \
	  mkdir -p build/clang/corpus/$$t; \
	  echo "== $$t, $(FUZZ_SECONDS) s"; \
	  ./build/clang/fuzz/$$t -max_total_time=$(FUZZ_SECONDS) -timeout=10 -print_final_stats=1 \
	    -artifact_prefix=build/clang/ build/clang/corpus/$$t $$([ -d fuzz/corpus/$$t ] && echo fuzz/corpus/$$t) \
	    2>build/clang/$$t.log \
	    || { tail -50 build/clang/$$t.log; exit 1; }; \
	  grep -E '^stat::number_of_executed_units|^Done' build/clang/$$t.log; \
	done

bench: deps
	cmake --preset release
	cmake --build --preset release -j $(JOBS)
	@for b in build/release/bench/*_bench; do echo "== $$b"; $$b; done

format:
	find include src tests tools bench python -name '*.h' -o -name '*.cpp' | xargs clang-format -i

clean:
	rm -rf build
