# The two commands of the project: `make demo` and `make test`. Both install the Debian packages
# the build needs (when missing), configure, build, and run.

PACKAGES := g++ cmake ninja-build pkg-config libxml2-dev libicu-dev libgtest-dev libbenchmark-dev python3
JOBS ?= $(shell nproc)
SUDO := $(shell [ "$$(id -u)" = 0 ] || echo sudo)

.PHONY: deps demo test test-asan bench format clean

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

bench: deps
	cmake --preset release
	cmake --build --preset release -j $(JOBS)
	@for b in build/release/bench/*_bench; do echo "== $$b"; $$b; done

format:
	find include src tests tools bench -name '*.h' -o -name '*.cpp' | xargs clang-format -i

clean:
	rm -rf build
