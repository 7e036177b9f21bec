#!/usr/bin/env bash
# Installs what is missing, checks the sources' form, builds all presets and runs every test: natively, with sanitizers,
# and the Windows build under Wine.
set -eu
cd "$(dirname "$0")"
tools/install-packages

failed=()
tools/check-format || failed+=("format")
tools/check-layers || failed+=("layers")
for preset in release checked windows; do
    echo "== $preset"
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" || { failed+=("$preset: build"); continue; }
    if [ "$preset" = windows ]; then
        # Real windows wait for each other most of the time: clang-tidy has the processors meanwhile, but yields to them.
        nice -n 19 tools/check-tidy >build/tidy.log 2>&1 &
        tidy=$!
    fi
    ctest --preset "$preset" || failed+=("$preset: tests")
done
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
