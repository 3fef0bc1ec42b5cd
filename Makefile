# The front door. Nothing is decided here: each target calls the tools that do the work.

JOBS ?= $(shell nproc)
PREFIX ?= /usr/local
SOURCES = git ls-files -z '*.cpp' '*.h'

.PHONY: help run test trees bench fuzz install deb format check clang tsan release

help:
	@echo "make run      build the program and start it on a demo server of its own"
	@echo "make test     build with sanitizers and run all tests"
	@echo "make bench    measure against other clients      make fuzz     fuzz what reads foreign bytes"
	@echo "make trees    move 300 MiB in 500 files and 40 folders to and from each server, with times"
	@echo "make install  install (PREFIX, DESTDIR)          make deb      build a Debian package"
	@echo "make format   format the sources                 make check    habits and format"
	@echo "make clang    build and test with clang          make tsan     test what threads do"

run:
	tools/install-dependencies build
	cmake --preset release
	cmake --build --preset release -j$(JOBS) --target orvaneftp orvaneftp-demo orvaneftp-demo-profile
	tools/demo/run

test:
	tools/install-dependencies
	tools/fetch-test-servers
	tools/check-habits --self-test
	tools/check-habits
	cmake --preset dev
	cmake --build --preset dev -j$(JOBS)
	ctest --preset dev -j2 --output-on-failure

trees:
	tools/install-dependencies
	tools/fetch-test-servers
	cmake --preset dev
	cmake --build --preset dev -j$(JOBS) --target ui_tests log_in_service
	ORVANE_TREES=full build/dev/tests/ui_tests --gtest_filter='*ServerTrees*'

clang:
	tools/install-dependencies
	tools/fetch-test-servers
	cmake --preset clang
	cmake --build --preset clang -j$(JOBS)
	ctest --preset clang -j2 --output-on-failure

tsan:
	tools/install-dependencies
	cmake --preset tsan
	cmake --build --preset tsan -j$(JOBS)
	ctest --preset tsan -j2

bench:
	tools/install-dependencies
	tools/fetch-test-servers
	cmake --preset release
	cmake --build --preset release -j$(JOBS) --target all orvaneftp-demo-profile
	bench/run
	bench/listing
	bench/start
	bench/folder
	build/release/bench/engine_bench exchange
	build/release/bench/engine_bench lines

fuzz:
	tools/install-dependencies
	cmake --preset fuzz
	cmake --build --preset fuzz -j$(JOBS)
	fuzz/run

release:
	tools/install-dependencies build
	cmake --preset release
	cmake --build --preset release -j$(JOBS) --target orvaneftp

install: release
	cmake --install build/release --prefix $(PREFIX)

deb: release
	cpack --config build/release/CPackConfig.cmake -B build/deb

format:
	$(SOURCES) | xargs -0 -r clang-format-14 -i

check:
	tools/check-habits --self-test
	tools/check-habits
	$(SOURCES) | xargs -0 -r clang-format-14 --dry-run --Werror
