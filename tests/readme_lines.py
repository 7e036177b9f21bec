#!/usr/bin/python3
"""Runs the command lines of README.md in their order, as a person pastes them after ./demo.sh; checks its links.

    tests/readme_lines.py BUILD

They begin with "cd demo-output"; lines that start the panel need Windows and are left out. Each line must succeed
and leave the files that it names after -o, --png and --cuts. The Python block runs last.
"""

import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
START = "cd demo-output"


def commands(text):
    lines = [line.strip() for line in re.findall(r"^    (\S.*)$", re.sub(r"```.*?```", "", text, flags=re.S), re.M)]
    lines = lines[lines.index(START) :]
    return [line for line in lines if " panel " not in line]


def python_block(text):
    (block,) = re.findall(r"```python\n(.*?)```", text, re.S)
    return block


def broken_links():
    """Links of README.md and of the pages in docs/ to files that are missing."""
    for page in (ROOT / "README.md", *sorted((ROOT / "docs").glob("*.md"))):
        for link in re.findall(r"\]\(([^)#:]+)(?:#[^)]*)?\)", page.read_text("utf-8")):
            if not (page.parent / link).exists():
                yield f"{page.name}: {link} is missing"


def outputs(line):
    return re.findall(r"(?:-o|--png|--cuts) (?:\w+=)?([\w./-]+)", line.partition("#")[0])


class Shell:
    """One bash for all lines, so that cd and variables last."""

    def __init__(self, folder):
        self.bash = subprocess.Popen(
            ["bash"], cwd=folder, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True
        )

    def run(self, line):
        """What the line prints on standard error, and its exit code."""
        self.bash.stdin.write(f"{{ {line}\n}} 2>&1 >/dev/null; code=$?; echo; echo done $code\n")
        self.bash.stdin.flush()
        said = ""
        for out in self.bash.stdout:
            if done := re.fullmatch(r"done (\d+)\n", out):
                return said.strip(), int(done[1])
            said += out
        return said, -1


def main(build):
    text = (ROOT / "README.md").read_text("utf-8")
    failed = list(broken_links())
    with tempfile.TemporaryDirectory(prefix="read me ") as scratch:
        folder = pathlib.Path(scratch)
        (folder / "build").mkdir()
        (folder / "build/release").symlink_to(build)
        for name in ("docs", "examples"):
            (folder / name).symlink_to(ROOT / name)
        work = folder / "demo-output"
        subprocess.run([ROOT / "tools/make-demo-files", build, work], check=True)
        shell = Shell(folder)
        lines = commands(text)
        for line in lines:
            said, code = shell.run(line)
            missing = [name for name in outputs(line) if not (work / name).exists()]
            if code or missing:
                failed.append(f"{line}\n    exit code {code}, {said!r}, missing files: {missing}")
        shell.bash.communicate()
        block = subprocess.run(
            [sys.executable, "-c", python_block(text)], cwd=work, env={"PYTHONPATH": f"{build}/python"}, check=False
        )
        if block.returncode:
            failed.append("the Python block")
    print(f"{len(lines)} lines", *failed, sep="\n")
    return 1 if failed or len(lines) < 10 else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1]).resolve()))
