#!/usr/bin/env bash
# Installs what is missing, checks the sources' form, builds all presets and runs every test: natively, with sanitizers,
# and the Windows build under Wine.
set -eu
cd "$(dirname "$0")"
tools/install-packages

failed=()
tools/check-format || failed+=("clang-format")
for preset in release checked windows; do
    echo "== $preset"
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset" || { failed+=("$preset: build"); continue; }
    ctest --preset "$preset" || failed+=("$preset: tests")
done
echo "== clang-tidy"
tools/check-tidy || failed+=("clang-tidy")

if [ ${#failed[@]} -gt 0 ]; then
    printf 'FAILED: %s\n' "${failed[@]}"
    exit 1
fi
echo "All presets built, all tests passed."
