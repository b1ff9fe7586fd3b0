# Convenience front end over CMake.  `make test` works on a fresh Debian 12
# machine: it installs what is missing, builds, and runs every test twice,
# normally and under AddressSanitizer + UndefinedBehaviorSanitizer.

JOBS ?= 2
BUILD ?= build
ASAN_BUILD ?= build-asan
FUZZ_BUILD ?= build-fuzz
FUZZ_SECONDS ?= 30
CTEST_ARGS ?=
PREFIX ?= /usr/local

# Debian packages for building, testing and the interop checks.
DEPS = g++ clang cmake make pkg-config libgtest-dev libgmock-dev libbenchmark-dev \
       zlib1g-dev libdeflate-dev libbz2-dev libsparsehash-dev libutfcpp-dev libxml2-dev gettext \
       python3 python3-olefile python3-xlrd python3-openpyxl python3-xlwt libreoffice-calc-nogui gnumeric \
       libfreexl-dev libxml2-utils libpugixml-dev libxlsxwriter-dev clang-format lcov \
       python3-xlsxwriter nodejs npm

# npm packages for the interop checks (a JavaScript workbook writer), kept
# outside the source tree and installed once; the tests skip what is absent.
NPM_DIR ?= $(HOME)/.cache/tabrix-npm
NPM_PACKAGES = xlsx@0.18.5

.PHONY: all deps build install test test-normal test-asan demo bench fuzz clean format format-check coverage

all: build

# A package counts as present when it is installed or an installed package
# provides it (a Node.js build that ships its own npm, say).
deps:
	@provided=" $$(dpkg-query -W -f='$${Status}|$${Provides}\n' 2>/dev/null | grep '^install ok installed|' | \
	  cut -d'|' -f2 | tr ',' '\n' | sed 's/(.*//; s/ //g' | tr '\n' ' ') "; \
	missing=$$(for p in $(DEPS); do dpkg-query -W -f='$${Status}\n' $$p 2>/dev/null | grep -q 'install ok installed' || \
	  case "$$provided" in *" $$p "*) ;; *) echo $$p;; esac; done); \
	if [ -n "$$missing" ]; then \
	  echo "installing: $$missing"; \
	  SUDO=$$( [ "$$(id -u)" = 0 ] || echo sudo ); \
	  $$SUDO apt-get update -qq && \
	  DEBIAN_FRONTEND=noninteractive $$SUDO apt-get install -y -qq --no-install-recommends $$missing; \
	fi
	@if [ ! -f $(NPM_DIR)/node_modules/xlsx/package.json ] && command -v npm >/dev/null; then \
	  echo "installing into $(NPM_DIR): $(NPM_PACKAGES)"; mkdir -p $(NPM_DIR) && \
	  npm install --prefix $(NPM_DIR) --no-audit --no-fund --no-save --loglevel=error $(NPM_PACKAGES) >/dev/null || \
	  echo "warning: npm could not install $(NPM_PACKAGES); the tests that use them skip"; \
	fi

$(BUILD)/CMakeCache.txt:
	cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTABRIX_NPM_DIR=$(NPM_DIR)

build: deps $(BUILD)/CMakeCache.txt
	cmake --build $(BUILD) -j$(JOBS)

# The library, its headers, the module, the tool, the CMake package and the
# pkg-config file under PREFIX (DESTDIR=... in the environment stages them).
install: build
	cmake --install $(BUILD) --prefix $(PREFIX)

test-normal: build
	cd $(BUILD) && ctest --output-on-failure -j$(JOBS) $(CTEST_ARGS)

$(ASAN_BUILD)/CMakeCache.txt:
	cmake -S . -B $(ASAN_BUILD) -DCMAKE_BUILD_TYPE=Debug -DTABRIX_SANITIZE=ON -DTABRIX_BENCH=OFF -DTABRIX_NPM_DIR=$(NPM_DIR)

test-asan: deps $(ASAN_BUILD)/CMakeCache.txt
	cmake --build $(ASAN_BUILD) -j$(JOBS)
	cd $(ASAN_BUILD) && ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
	  ctest --output-on-failure -j$(JOBS) $(CTEST_ARGS)

test: test-normal test-asan

# The demo sends a model's data through the drivers, then shows the
# workbooks it wrote with the command-line tool.
DEMO_DIR = $(BUILD)/examples/qdsheet-demo
demo: build
	@cd $(BUILD)/examples && ./demo
	@for book in model.xls model.xlsx; do \
	  echo; echo "== tabrix info $$book"; $(BUILD)/tools/tabrix info $(DEMO_DIR)/$$book || exit 1; \
	  echo; echo "== tabrix dump $$book --sheet cost"; \
	  $(BUILD)/tools/tabrix dump $(DEMO_DIR)/$$book --sheet cost || exit 1; \
	done

bench: deps
	cmake -S . -B build-bench -DCMAKE_BUILD_TYPE=Release -DTABRIX_TESTS=OFF
	cmake --build build-bench -j$(JOBS)
	@for b in build-bench/bench/bench_*; do echo "== $$b"; $$b || exit 1; done

fuzz: deps
	CC=clang CXX=clang++ cmake -S . -B $(FUZZ_BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTABRIX_FUZZ=ON -DTABRIX_BENCH=OFF
	cmake --build $(FUZZ_BUILD) -j$(JOBS)
	@for f in $(FUZZ_BUILD)/fuzz/fuzz_*; do \
	  name=$$(basename $$f | sed 's/^fuzz_//'); mkdir -p $(FUZZ_BUILD)/corpus/$$name; \
	  echo "== $$name ($(FUZZ_SECONDS)s)"; \
	  $$f -max_total_time=$(FUZZ_SECONDS) -rss_limit_mb=2048 -timeout=10 $(FUZZ_BUILD)/corpus/$$name fuzz/seeds/$$name || exit 1; \
	done

# The one code style (.clang-format) over every C and C++ source.
SOURCES = $(shell git ls-files '*.cpp' '*.h' '*.c')
format:
	clang-format -i --style=file $(SOURCES)

format-check: deps
	@clang-format --dry-run --Werror --style=file $(SOURCES) && echo "format-check: clean"

# Line and function coverage of the product code, per folder.
coverage: deps
	cmake/coverage.sh $(CURDIR)/build-cov $(JOBS)

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(FUZZ_BUILD) build-bench build-cov
