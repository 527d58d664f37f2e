#!/usr/bin/env bash
# Runs inside dbus-run-session (see test.sh): starts the keyring and the display, then the tests.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD

export HOME=$(mktemp -d)
export XDG_RUNTIME_DIR=$HOME/runtime XDG_DATA_HOME=$HOME/data XDG_CONFIG_HOME=$HOME/config
mkdir -p -m 700 "$XDG_RUNTIME_DIR"
printf 'vuro-test' | gnome-keyring-daemon --unlock --components=secrets >/dev/null
eval "$(printf 'vuro-test' | gnome-keyring-daemon --start --components=secrets)"
export GNOME_KEYRING_CONTROL

display=:$((90 + RANDOM % 100))
Xvfb "$display" -screen 0 1600x1000x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
export DISPLAY=$display
for _ in $(seq 50); do xdpyinfo -display "$display" >/dev/null 2>&1 && break; sleep 0.1; done
jwm >/dev/null 2>&1 &
jwm_pid=$!
trap 'kill $jwm_pid $xvfb 2>/dev/null || true; rm -rf "$HOME"' EXIT

# No strict_string_checks: libxkbcommon-x11 hands strndup buffers without a terminator, which
# strndup allows, and every widget test on the X server would stop there.
export ASAN_OPTIONS=detect_leaks=0:abort_on_error=0
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1

fuzz_seconds=${VURO_FUZZ_SECONDS:-8}
for target in "$root"/build/fuzz/fuzz/*Fuzz; do
  [ -x "$target" ] || continue
  name=$(basename "$target")
  corpus=$(mktemp -d)
  [ -d "$root/fuzz/corpus/$name" ] && cp -r "$root/fuzz/corpus/$name/." "$corpus/"
  echo "fuzz: $name for ${fuzz_seconds}s"
  "$target" -max_total_time="$fuzz_seconds" -timeout=10 -rss_limit_mb=4096 "$corpus" >"$corpus.log" 2>&1 || {
    tail -n 60 "$corpus.log"; echo "fuzz target $name failed"; exit 1; }
  rm -rf "$corpus" "$corpus.log"
done

ctest --test-dir "$root/build/test" --output-on-failure -j "$(nproc)" "$@"
