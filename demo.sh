#!/usr/bin/env bash
# Shows a real job done: corrects an electron wave for its lens's aberrations and leaves pictures of before and after in
# demo-output/.
#
#   ./demo.sh                        a simulated crystal, whose aberrations are known
#   ./demo.sh WAVE.npy OPTION...     a wave of yours with the options of "zentrix correct", for example
#                                    ./demo.sh wave.npy --kv 300 --pixel 0.05 --remove --C1 -40 --A1 12@30
set -eu
if [ $# -eq 1 ]; then
    echo "A wave of your own needs its voltage and pixel size, for example: ./demo.sh $1 --kv 300 --pixel 0.05 --remove --C1 -40" >&2
    exit 2
fi
here=$(cd "$(dirname "$0")" && pwd)
"$here/tools/install-packages"
(
    cd "$here"
    echo "Building (the first time takes some minutes) ..."
    cmake --preset release >/dev/null
    cmake --build --preset release --target zentrix_program make_sample >build/release/demo-build.log ||
        { cat build/release/demo-build.log; exit 1; }
)
zentrix=$here/build/release/zentrix
output=$here/demo-output
mkdir -p "$output"

if [ $# -gt 0 ]; then
    wave=$1
    shift
    options=("$@")
    before="your wave as it is"
    after="the same after zentrix correct ${options[*]}"
else
    "$here/build/release/examples/make_sample" "$output/aberrated.npy" "$output/undisturbed.npy"
    wave=$output/aberrated.npy
    # What examples/make_sample.cpp puts in. In nm and um; C3 in mm; angles in degrees.
    options=(--kv 300 --pixel 0.02 --remove
             --C1 -62 --A1 14@35 --B2 380@110 --A2 290@-20 --C3 0.15 --S3 2.5@75)
    before="atom columns of a thin crystal, pairs 0.136 nm apart, with a dislocation and a wedge edge, as a bad lens images it"
    after="the same with the aberrations removed"
fi

# Without an aberration the wave only goes through the transform and back: its picture is the picture before.
plain=(--wavelength 1 --pixel 1)
for mode in modulus phase; do
    "$zentrix" correct "$wave" "${plain[@]}" --show "$mode" -o "$output/before-$mode.png" >/dev/null
    "$zentrix" correct "$wave" "${options[@]}" --show "$mode" -o "$output/after-$mode.png" >/dev/null
done
"$zentrix" correct "$wave" "${options[@]}" -o "$output/after.npy"

cat <<EOF

Pictures in $output
  before-phase.png, before-modulus.png   $before
  after-phase.png, after-modulus.png     $after
  after.npy                              the corrected wave
EOF
if [ "$wave" = "$output/aberrated.npy" ]; then
    cat <<EOF
Compare the phases: before, each pair of columns is one blurred streak and the edge has fringes; after, every column stands
by itself up to the core of the dislocation. The modulus after is flat: a thin crystal turns the phase and absorbs nothing.
undisturbed.npy holds the wave before the lens, calculated by itself; after.npy differs from it by a few millionths.
EOF
fi
