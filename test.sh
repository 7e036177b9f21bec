#!/usr/bin/env bash
# Installs missing packages, checks the sources, builds all presets and runs every test: natively, with sanitizers, and
# the Windows build under Wine.
set -eu
cd "$(dirname "$0")"
tools/install-packages

failed=()
mkdir -p build
# What can wait runs at the lowest priority, while builds and tests leave a processor idle: the libraries for the preset
# `windows`, which waits for them and says what failed, then clang-tidy. It is a process group, so that it can be ended.
set -m
{
    nice -n 19 tools/build-windows-libraries >build/libraries.log 2>&1 || true
    nice -n 19 tools/check-tidy >build/tidy.log 2>&1
} &
tidy=$!
set +m
trap 'kill -- "-$tidy" 2>/dev/null || true' EXIT
tools/check-format || failed+=("format")
tools/check-layers || failed+=("layers")
for preset in release checked windows; do
    echo "== $preset"
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" || { failed+=("$preset: build"); continue; }
    ctest --preset "$preset" || failed+=("$preset: tests")
done
tools/check-same-bits || failed+=("same bits on Linux and Windows")
echo "== clang-tidy"
wait "$tidy" || failed+=("clang-tidy")
cat build/tidy.log

if [ ${#failed[@]} -gt 0 ]; then
    printf 'FAILED: %s\n' "${failed[@]}"
    exit 1
fi
echo "All presets built, all tests passed."
