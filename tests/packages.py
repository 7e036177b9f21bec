#!/usr/bin/python3
"""Makes the package of a build, unpacks it in a folder with a blank in its name and runs the program from there.

    tests/packages.py BUILD

A build for Linux makes a .deb, one for Windows a .zip, whose program runs under Wine. The unpacked program has to compute
what the built one computes, with the library of the package.
"""

import pathlib
import subprocess
import sys
import tempfile
import zipfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
CORRECT = "correct wave.npy -o out.npy --kv 300 --pixel 0.02 --C1 -62 --A1 14@35 --png out.png --show phase".split()


def run(*command, cwd=None, **environment):
    done = subprocess.run(command, cwd=cwd, env=environment or None, capture_output=True, text=True, check=False)
    if done.returncode:
        raise SystemExit(f"{command}: exit code {done.returncode}\n{done.stdout}{done.stderr}")
    return done.stdout


def unpack_deb(package, folder):
    """The program and the folders of library and documents."""
    depends = run("dpkg-deb", "-f", package, "Depends")
    for name in ("libfftw3-single3", "libtiff6", "libnlopt0", "zlib1g"):
        assert name in depends, depends
    run("dpkg-deb", "-x", package, folder)
    (library,) = folder.glob("usr/lib/*/zentrix64")
    for name in ("man/man1/zentrix.1.gz", "bash-completion/completions/zentrix", "zsh/vendor-completions/_zentrix"):
        assert (folder / "usr/share" / name).stat().st_size > 500, name
    return [folder / "usr/bin/zentrix"], library, folder / "usr/share/doc/zentrix"


def unpack_zip(package, folder):
    with zipfile.ZipFile(package) as held:
        held.extractall(folder)
    (top,) = folder.iterdir()
    assert top.name == package.stem
    imported = run("x86_64-w64-mingw32-objdump", "-p", top / "zentrix.exe")
    assert "libstdc++" not in imported and "libgcc" not in imported and "KERNEL32.dll" in imported
    return [ROOT / "tools/under-wine", top / "zentrix.exe"], top, top


def main(build):
    windows = (build / "zentrix.exe").exists()
    with tempfile.TemporaryDirectory(prefix="packages ") as scratch:
        scratch = pathlib.Path(scratch)
        run("cpack", "--config", build / "CPackConfig.cmake", "-B", scratch / "made")
        (package,) = scratch.glob("made/zentrix*.*")
        program, library, documents = (unpack_zip if windows else unpack_deb)(package, scratch / "unpacked here")
        for name in ("README.md", "NOTICE", "docs/conventions.md", "licences/fftw3.txt", "licences/nlopt.txt"):
            assert (documents / name).stat().st_size > 0, name
        emulator, ending = ([ROOT / "tools/under-wine"], ".exe") if windows else ([], "")
        run(*emulator, build / f"examples/make_sample{ending}", "wave.npy", "undisturbed.npy", cwd=scratch)
        results = []
        for command in ([*emulator, build / f"zentrix{ending}"], program):
            run(*command, *CORRECT, cwd=scratch)
            results.append([(scratch / name).read_bytes() for name in ("out.npy", "out.png")])
            for name in ("out.npy", "out.png"):
                (scratch / name).unlink()
        assert results[0] == results[1]
        # It is the package's library that runs.
        (file,) = library.glob("Zentrix64.*")
        file.unlink()
        gone = subprocess.run([*program, "functions"], capture_output=True, text=True, check=False)
        assert gone.returncode == 1 and "Zentrix64" in gone.stderr, gone
    print(package.name)


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]).resolve())
