# The two commands a newcomer needs: `make run` and `make test`.
# Both install the Debian packages first (scripts/install-deps is idempotent).

DB ?= var/demo.db
CORVINA = build/bin/corvina

.PHONY: deps configure build test run clean

deps:
	@scripts/install-deps

configure: deps
	@cmake --preset default >/dev/null

build: configure
	@cmake --build --preset default

test: build
	@ctest --preset default

run: build
	@mkdir -p var
	@test -f $(DB) || $(CORVINA) init --demo $(DB)
	@scripts/demo $(CORVINA) $(DB)

clean:
	rm -rf build build-release
