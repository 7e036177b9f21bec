#!/usr/bin/env bash
# Removes the lens aberrations of an electron wave and writes pictures from before and after to demo-output/, with the
# files that the commands in README.md work on.
#
#   ./demo.sh                        a simulated crystal, whose aberrations are found from the wave itself
#   ./demo.sh WAVE.npy OPTION...     your wave, with the options of "zentrix correct", for example
#                                    ./demo.sh wave.npy --kv 300 --pixel 0.05 --C1 -40 --A1 12@30
#   ./demo.sh --panel [WAVE.npy OPTION...]
#                                    the same by hand with the control panel (the Windows program under Wine) and the
#                                    options of "zentrix panel"; without a display, a picture of the panel
set -eu
here=$(cd "$(dirname "$0")" && pwd)
output=$here/demo-output
job=correct
if [ "${1:-}" = --panel ]; then
    job=panel
    shift
fi
if [ $# -eq 1 ] && [[ $1 = *.npy ]]; then # other files may hold both
    example="./demo.sh $1 --kv 300 --pixel 0.05 --C1 -40"
    [ "$job" = correct ] || example="./demo.sh --panel $1 --kv 300 --pixel 0.05"
    echo "Voltage and pixel size of your wave are needed, for example: $example" >&2
    exit 2
fi

# build PRESET TARGET...: installs what is missing, and builds
build() {
    local preset=$1 group=demo minutes=5
    [ "$preset" = release ] || { group=panel; minutes=10; }
    shift
    [ -e "$here/build/$preset/build.ninja" ] ||
        echo "Installs missing Debian packages and builds the program: about $minutes minutes on two processors, once."
    "$here/tools/install-packages" "$group"
    echo "Building ..."
    mkdir -p "$here/build" "$output"
    (
        cd "$here"
        # A build that exists keeps its options.
        { [ -e "build/$preset/build.ninja" ] ||
            cmake --preset "$preset" -DZENTRIX_TESTS=OFF -DZENTRIX_BENCH=OFF; } &&
            cmake --build --preset "$preset" --target "$@"
    ) >"$here/build/demo.log" 2>&1 || { cat "$here/build/demo.log"; exit 1; }
}

# The aberrations of examples/make_sample.cpp: C3 in mm, S3 in um, the others in nm; angles in degrees.
sample_aberrations=(--C1 -62 --A1 14@35 --B2 380@110 --A2 290@340 --C3 0.15 --S3 2.5@75)

correct() {
    local wave options before after
    build release zentrix_program zentrix_python make_sample make_hologram
    local zentrix=$here/build/release/zentrix
    "$here/tools/make-demo-files" "$here/build/release" "$output"
    if [ $# -gt 0 ]; then
        wave=$1
        shift
        options=("$@")
        before="your wave"
        after="after zentrix correct ${options[*]}"
    else
        wave=$output/wave.npy
        echo "Finding the aberrations from the wave (those of the simulation: ${sample_aberrations[*]}) ..."
        "$zentrix" estimate "$wave" --kv 300 --pixel 0.02 -o "$output/found.json"
        options=(--kv 300 --pixel 0.02 --params "$output/found.json")
        before="a thin crystal (pairs of atom columns, 0.136 nm apart) with a dislocation and an edge, with aberrations"
        after="the same without the aberrations"
    fi

    # Correcting for no aberration gives a picture of the wave as it is. Those of a file of parameters are set to 0.
    local plain=(--tilt 0,0 --envelope off) mode word next=
    for word in C1 A1 B2 A2 C3 S3 A3 B4 D4 A4 C5 A5 R5 S5; do plain+=("--$word" 0); done
    for word in "${options[@]}"; do
        case $next$word in
        next* | --kv=* | --wavelength=* | --pixel=* | --params=*) plain+=("$word") next= ;;
        --kv | --wavelength | --pixel | --params) plain+=("$word") next=next ;;
        esac
    done
    for mode in modulus phase; do
        local look=(--show "$mode" --scale-bar --colour-bar)
        "$zentrix" correct "$wave" "${options[@]}" "${look[@]}" --title "after: $mode" \
            -o "$output/after-$mode.png" >/dev/null
        "$zentrix" correct "$wave" "${plain[@]}" "${look[@]}" --title "before: $mode" \
            --limits-of "$output/after-$mode.png" -o "$output/before-$mode.png" >/dev/null
    done
    "$zentrix" correct "$wave" "${options[@]}" -o "$output/after.npy"

    cat <<END

Pictures in $output
  before-phase.png, before-modulus.png   $before
  after-phase.png, after-modulus.png     $after
  after.npy                              the corrected wave
END
    [ "$wave" != "$output/wave.npy" ] || cat <<END
Compare the phases: before, each pair of columns is one blurred streak and the edge has fringes; after, all columns are
resolved, up to the core of the dislocation. The modulus after is flat, because a thin crystal changes the phase only.
undisturbed.npy is the simulated wave without aberrations; after.npy differs from it by a few millionths.
found.json has the aberrations that were found, with their uncertainties.
END
    cat <<END
More to try: the commands in README.md, from "cd demo-output" on. They work on files in this folder.
END
}

panel() {
    build windows zentrix_program make_sample
    if [ $# -eq 0 ]; then
        "$here/tools/under-wine" "$here/build/windows/examples/make_sample.exe" \
            "$output/wave.npy" "$output/undisturbed.npy"
        set -- "$output/wave.npy" --kv 300 --pixel 0.02
        cat <<END
Set the aberrations of the sample on the panel, with "Phase" as display: ${sample_aberrations[*]//--/}
END
    fi
    if [ -z "${DISPLAY:-}" ]; then
        set -- "$@" --screenshot-of-all "$output/panel.png" --quit-after 3000
        echo "DISPLAY is not set: the panel opens on a virtual display, and a picture of it is saved."
    fi
    "$here/tools/under-wine" "$here/build/windows/zentrix.exe" panel "$@"
    [ -n "${DISPLAY:-}" ] || echo "Picture: $output/panel.png"
}

"$job" "$@"
