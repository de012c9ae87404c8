# Thin wrapper over CMake's presets. Every target installs what it needs, builds and does its job.

.DEFAULT_GOAL := help
SHELL := /bin/sh
INSTALL := tools/install-packages
FOLDER ?=
PLAY ?=

.PHONY: help
help: ## this list
	@awk -F ':.*## ' '/^[a-z-]+:.*## / { printf "make %-10s %s\n", $$1, $$2 }' $(MAKEFILE_LIST)

.PHONY: run
run: build-dev ## list a folder through the plugin: make run [FOLDER=/media/stick]; without one, a demo stick; PLAY=1 plays
	@PLAY='$(PLAY)' tools/run-desktop build/dev '$(FOLDER)'

.PHONY: test
test: build-dev ## build and run every test
	ctest --preset dev

.PHONY: build-dev
build-dev:
	@$(INSTALL) build test demo
	@cmake --preset dev --log-level=WARNING
	@cmake --build --preset dev

.PHONY: asan
asan: ## the tests under the address, leak and undefined-behaviour sanitizers
	@$(INSTALL) build test demo
	cmake --preset asan
	cmake --build --preset asan
	ctest --preset asan

.PHONY: tsan
tsan: ## the desktop's tests, and a long stress test, under the thread sanitizer
	@$(INSTALL) build test demo tsan
	tools/tsan

.PHONY: hostile
hostile: build-dev ## desktop-tv on the whole stick of everything that goes wrong, and what plays lost 100 times
	HOSTILE_STICK_WHOLE=1 FAULT_ROUNDS=100 build/dev/tests/desktop/desktop_tests --gtest_filter='HostileStick*:PlayFaults*'

.PHONY: clang
clang: ## build with the second compiler, warnings as errors
	@$(INSTALL) build test clang
	cmake --preset clang
	cmake --build --preset clang

.PHONY: style
style: ## formatting and static analysis
	@$(INSTALL) build test style
	tools/check-style

.PHONY: protocol
protocol: ## make the protocol's reference, table and dictionary anew from their description
	@$(INSTALL) test
	tools/protocol

.PHONY: coverage
coverage: ## line and branch coverage of the plugin: a summary and build/coverage/report/index.html
	@$(INSTALL) build test coverage
	tools/coverage

.PHONY: mutants
mutants: ## change the plugin one place at a time and see a test fail: make mutants [ALL=1]
	@$(INSTALL) build test
	tools/mutants $(if $(ALL),--all)

.PHONY: fuzz
fuzz: ## drive commands, events, playlists and texts with arbitrary input: make fuzz [SECONDS=60]
	@$(INSTALL) build test clang
	tools/fuzz $(or $(SECONDS),60)

.PHONY: memcheck
memcheck: build-dev ## the plugin's tests under valgrind
	@$(INSTALL) memcheck
	tools/memcheck build/dev

.PHONY: arm
arm: ## cross-build for the television and run its tests under emulation
	@$(INSTALL) build test
	tools/arm

.PHONY: abi
abi: ## exported names and record layouts against the stored descriptions
	@$(INSTALL) build abi
	tools/abi

.PHONY: size
size: ## stripped size, relocations and undefined names of each architecture
	@$(INSTALL) build
	tools/size

.PHONY: bench
bench: ## what the plugin and the desktop cost, as ratios to floors
	@$(INSTALL) build bench
	tools/bench

.PHONY: package
package: ## the Debian package, installed and loaded in a clean root
	@$(INSTALL) build package
	tools/package

.PHONY: clean
clean: ## remove everything that was built
	rm -rf build
