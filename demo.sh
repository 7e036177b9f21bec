#!/usr/bin/env bash
# Shows a real job done: corrects an electron wave for its lens's aberrations and leaves pictures of before and after in
# demo-output/.
#
#   ./demo.sh                        a simulated crystal, whose aberrations are known
#   ./demo.sh WAVE.npy OPTION...     a wave of yours with the options of "zentrix correct", for example
#                                    ./demo.sh wave.npy --kv 300 --pixel 0.05 --remove --C1 -40 --A1 12@30
#   ./demo.sh --panel [WAVE.npy OPTION...]
#                                    the same by hand, with the control panel (the Windows program under Wine) and the
#                                    options of "zentrix panel"; where there is no display, a picture of it
set -eu
here=$(cd "$(dirname "$0")" && pwd)
output=$here/demo-output
job=correct
if [ "${1:-}" = --panel ]; then
    job=panel
    shift
fi
if [ $# -eq 1 ]; then
    example="./demo.sh $1 --kv 300 --pixel 0.05 --remove --C1 -40"
    [ "$job" = correct ] || example="./demo.sh --panel $1 --kv 300 --pixel 0.05"
    echo "A wave of your own needs its voltage and pixel size, for example: $example" >&2
    exit 2
fi

# build PRESET: the program and the maker of the sample
build() {
    "$here/tools/install-packages"
    echo "Building (the first time takes some minutes) ..."
    (
        cd "$here"
        mkdir -p "build/$1"
        { cmake --preset "$1" && cmake --build --preset "$1" --target zentrix_program make_sample; } \
            >"build/$1/demo-build.log" 2>&1 || { cat "build/$1/demo-build.log"; exit 1; }
    )
    mkdir -p "$output"
}

# What examples/make_sample.cpp puts in. In nm and um; C3 in mm; angles in degrees.
sample_aberrations=(--C1 -62 --A1 14@35 --B2 380@110 --A2 290@340 --C3 0.15 --S3 2.5@75)

correct() {
    local wave options before after
    build release
    local zentrix=$here/build/release/zentrix
    if [ $# -gt 0 ]; then
        wave=$1
        shift
        options=("$@")
        before="your wave as it is"
        after="the same after zentrix correct ${options[*]}"
    else
        "$here/build/release/examples/make_sample" "$output/aberrated.npy" "$output/undisturbed.npy"
        wave=$output/aberrated.npy
        options=(--kv 300 --pixel 0.02 --remove "${sample_aberrations[@]}")
        before="atom columns of a thin crystal, pairs 0.136 nm apart, with a dislocation and a wedge edge, as a bad lens images it"
        after="the same with the aberrations removed"
    fi

    # Without an aberration the wave only goes through the transform and back: its picture is the picture before.
    local plain=(--wavelength 1 --pixel 1) mode
    for mode in modulus phase; do
        "$zentrix" correct "$wave" "${plain[@]}" --show "$mode" -o "$output/before-$mode.png" >/dev/null
        "$zentrix" correct "$wave" "${options[@]}" --show "$mode" -o "$output/after-$mode.png" >/dev/null
    done
    "$zentrix" correct "$wave" "${options[@]}" -o "$output/after.npy"

    cat <<END

Pictures in $output
  before-phase.png, before-modulus.png   $before
  after-phase.png, after-modulus.png     $after
  after.npy                              the corrected wave
END
    [ "$wave" != "$output/aberrated.npy" ] || cat <<END
Compare the phases: before, each pair of columns is one blurred streak and the edge has fringes; after, every column stands
by itself up to the core of the dislocation. The modulus after is flat: a thin crystal turns the phase and absorbs nothing.
undisturbed.npy holds the wave before the lens, calculated by itself; after.npy differs from it by a few millionths.
END
}

panel() {
    build windows
    if [ $# -eq 0 ]; then
        "$here/tools/under-wine" "$here/build/windows/examples/make_sample.exe" "$output/aberrated.npy" "$output/undisturbed.npy"
        set -- "$output/aberrated.npy" --kv 300 --pixel 0.02
        cat <<END
The sample's aberrations, to be set on the panel's pages (choose "Phase" as display): ${sample_aberrations[*]//--/}
END
    fi
    if [ -z "${DISPLAY:-}" ]; then
        set -- "$@" --screenshot-of-all "$output/panel.png" --quit-after 3000
        echo "There is no display (the variable DISPLAY is not set): the panel opens on a virtual one, for a picture."
    fi
    "$here/tools/under-wine" "$here/build/windows/zentrix.exe" panel "$@"
    [ -n "${DISPLAY:-}" ] || echo "Picture: $output/panel.png"
}

"$job" "$@"
