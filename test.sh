#!/usr/bin/env bash
# Installs missing packages, checks the sources, builds all presets and runs every test: natively, with sanitizers, and
# the Windows build under Wine.
set -eu
cd "$(dirname "$0")"
tools/install-packages

failed=()
mkdir -p build
# Mostly waits for downloads. The preset `windows` waits for the end, and says what failed.
nice -n 19 tools/build-windows-libraries >build/libraries.log 2>&1 &
tools/check-format || failed+=("format")
tools/check-layers || failed+=("layers")
for preset in release checked windows; do
    echo "== $preset"
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" || { failed+=("$preset: build"); continue; }
    if [ "$preset" = windows ]; then
        # Tests of real windows wait most of the time. clang-tidy runs meanwhile, at the lowest priority.
        nice -n 19 tools/check-tidy >build/tidy.log 2>&1 &
        tidy=$!
    fi
    ctest --preset "$preset" || failed+=("$preset: tests")
done
tools/check-same-bits || failed+=("same bits on Linux and Windows")
echo "== clang-tidy"
if [ -z "${tidy:-}" ]; then
    tools/check-tidy || failed+=("clang-tidy")
else
    wait "$tidy" || failed+=("clang-tidy")
    cat build/tidy.log
fi

if [ ${#failed[@]} -gt 0 ]; then
    printf 'FAILED: %s\n' "${failed[@]}"
    exit 1
fi
echo "All presets built, all tests passed."
