#!/usr/bin/env bash
# Installs the Debian packages and npm packages Vuro needs to build, run and test.
# Idempotent: when everything is present it does no work.
set -euo pipefail
cd "$(dirname "$0")/.."

packages=(
  # toolchain
  build-essential cmake ninja-build ccache pkg-config clang libclang-rt-14-dev
  # Qt and coroutines
  qt6-base-dev qt6-base-dev-tools libqt6sql6-sqlite qt6-svg-dev qt6-l10n-tools qcoro-qt6-dev
  # platform and formats
  libsecret-1-dev libssl-dev libsqlite3-dev libpoppler-cpp-dev libmd4c-dev libzip-dev
  libavformat-dev libavcodec-dev libswresample-dev libavutil-dev libcurl4-openssl-dev
  # the global shortcut's key grab on X11
  libx11-dev libxcb1-dev
  # tests
  googletest libgtest-dev libgmock-dev libbenchmark-dev
  xvfb xauth x11-utils jwm dbus dbus-daemon dbus-x11 gnome-keyring libsecret-tools
  fonts-dejavu-core fonts-noto-color-emoji
)
# The machine's Node.js may already bring npm; Debian's npm conflicts with such a build.
command -v npm >/dev/null 2>&1 || packages+=(nodejs npm)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done

if ((${#missing[@]})); then
  echo "Installing: ${missing[*]}"
  SUDO=""
  [ "$(id -u)" -eq 0 ] || SUDO="sudo"
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

# npm packages for the tests (the reference MCP server, and the pinned whisper.cpp source tree).
if [ -f package.json ] && ! npm ls --prefix . >/dev/null 2>&1; then
  npm ci --prefix . --no-audit --no-fund
fi
