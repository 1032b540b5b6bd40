# Thin wrappers; CMakePresets.json has the configurations, tools/setup the packages.
PREFIX ?= /usr/local
JOBS ?= $(shell nproc)

.PHONY: run test docs pictures bench lint lint-changed analyze sanitize tsan fuzz soak install package package-test setup setup-modules

build:
	@mkdir -p build

setup:
	@tools/setup

# The helper's modules too; without them fewer kinds of files are read.
setup-modules:
	@tools/setup modules

# Opens the viewer on FILE, by default the sample fax; without a display it writes the window as a picture.
run: setup | build
	@cmake --preset release > build/configure.log 2>&1 || { cat build/configure.log; exit 1; }
	@cmake --build build/release --target tessarel-viewer sample_fax image-helper -- -j$(JOBS) --quiet
	@tools/run_viewer build/release $(FILE)

test: setup-modules
	cmake --preset release
	cmake --build build/release -- -j$(JOBS)
	tools/run_tests release

bench:
	@tools/setup bench
	cmake --preset release
	cmake --build build/release -- -j$(JOBS)
	tools/bench build/release

lint:
	@tools/setup lint
	cmake --preset debug > /dev/null
	tools/check_arm build/debug
	tools/lint build/debug

# clang-tidy only on what changed since the last landed state.
LANDED = $(shell git merge-base HEAD origin/main 2>/dev/null | grep -v "$$(git rev-parse HEAD)")
lint-changed: setup-modules
	cmake --preset debug > /dev/null
	tools/lint build/debug $(if $(LANDED),--changed $(LANDED))

# The whole code under clang's analyzer. Takes a quarter of an hour.
analyze: setup-modules
	cmake --preset debug > /dev/null
	tools/analyze build/debug

sanitize: setup-modules
	cmake --preset sanitize
	cmake --build build/sanitize -- -j$(JOBS)
	tools/run_tests sanitize

# The thread sanitizer over what may be called from several threads, or has threads of its own.
TSAN_TESTS ?= ^(RegistryTest|Cups|Printers|NoService|Trouble|ServiceJob|Aside|Alive)
tsan: setup-modules
	cmake --preset thread
	cmake --build build/thread -- -j$(JOBS)
	tools/run_tests thread -R '$(TSAN_TESTS)'

# FUZZ_SECONDS of libFuzzer on each place where bytes come from outside, beginning with files of the build's own and
# with the small ones of the folder CORPUS.
FUZZ_SECONDS ?= 120
fuzz: setup-modules
	@tools/setup fuzz
	cmake -S fuzz -B build/fuzz -G Ninja -DCMAKE_CXX_COMPILER=clang++
	cmake --build build/fuzz -- -j$(JOBS)
	tools/fuzz build/fuzz $(FUZZ_SECONDS) $(CORPUS)

# A user who does anything, for SOAK_SECONDS; the last line tells the seed, and SOAK_SEED gives the same run again.
SOAK_SECONDS ?= 600
SOAK_SEED ?= $(shell date +%s)
soak: setup-modules
	cmake --preset release
	cmake --build build/release --target soak -- -j$(JOBS)
	QT_QPA_PLATFORM=offscreen build/release/bin/soak $(SOAK_SECONDS) $(SOAK_SEED)

# The reference as HTML, in build/docs/html; its tables are written anew.
docs: setup
	@tools/reference build/docs
	@echo "build/docs/html/index.html"

# The documents' pictures, as the windows look now.
pictures: setup-modules
	cmake --preset release
	cmake --build build/release --target pictures -- -j$(JOBS)
	cp build/release/pictures/*.png docs/

install: setup-modules
	cmake --preset release
	cmake --build build/release -- -j$(JOBS)
	cmake --install build/release --prefix $(PREFIX)

# Debian packages, in build/package.
package: setup-modules | build
	@tools/setup package
	@tools/package build/package

# Installs them into a fresh root, builds hosts there, takes them out; and builds them again, to the bit. As root; slow.
package-test: package
	cmake --preset release
	cmake --build build/release --target sample_fax -- -j$(JOBS)
	tests/package/fresh_root.sh build/package build/release/sample_fax.tif build/package-test
	tools/package_twice build/package build/package-test
