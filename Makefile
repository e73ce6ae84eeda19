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

# The web host on the demo database (created with demo data when missing);
# LISTEN=host:port changes its address (default 127.0.0.1:8080).
run: build
	@mkdir -p var
	@test -f $(DB) || $(CORVINA) init --demo $(DB)
	@scripts/demo $(CORVINA) $(DB) $(LISTEN)

clean:
	rm -rf build build-release
