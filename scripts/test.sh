#!/usr/bin/env bash
# Installs what is missing, builds the sanitizer and fuzz trees, and runs the whole test suite:
# every fuzz target for a few seconds, then every CTest test (unit, integration, gui, keyring, npm)
# inside a private D-Bus session with GNOME Keyring and an Xvfb display managed by jwm.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
bash scripts/build.sh test
bash scripts/build.sh fuzz
exec dbus-run-session -- bash scripts/test-session.sh "$@"
