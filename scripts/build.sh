#!/usr/bin/env bash
# Configures and builds one of the build trees: release (the app), test (ASan + UBSan, tests and
# benchmarks), fuzz (clang, libFuzzer targets) or bench (release, benchmarks).
set -euo pipefail
cd "$(dirname "$0")/.."
kind=${1:-release}
export CCACHE_DIR=${CCACHE_DIR:-$PWD/.cache/ccache}
export CCACHE_BASEDIR=$PWD
# Worktrees of one repository share objects: the build folder is not part of the key.
export CCACHE_NOHASHDIR=true
case "$kind" in
  release) args=(-DCMAKE_BUILD_TYPE=RelWithDebInfo -DVURO_TESTS=OFF) ;;
  test)    args=(-DCMAKE_BUILD_TYPE=Debug "-DCMAKE_CXX_FLAGS_DEBUG=-g -O1" -DVURO_SANITIZE=ON) ;;
  fuzz)    args=(-DCMAKE_BUILD_TYPE=Debug "-DCMAKE_CXX_FLAGS_DEBUG=-g -O1" -DVURO_FUZZ=ON
                 -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++) ;;
  bench)   args=(-DCMAKE_BUILD_TYPE=Release) ;;
  *) echo "usage: scripts/build.sh release|test|fuzz|bench" >&2; exit 2 ;;
esac
cmake -S . -B "build/$kind" -G Ninja "${args[@]}" >/dev/null
cmake --build "build/$kind" -- -k 0
