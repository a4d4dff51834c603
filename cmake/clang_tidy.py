#!/usr/bin/env python3
"""Runs clang-tidy over the sources that users run, and remembers what it found clean."""

import argparse
import functools
import hashlib
import json
import os
import pathlib
import subprocess
import sys
import time
from concurrent.futures import ThreadPoolExecutor

ROOT = pathlib.Path(__file__).resolve().parent.parent
TOOL = "clang-tidy-14"
OPTIONS = ["--quiet", "--extra-arg=-Wno-unknown-warning-option"]
DAYS_KEPT = 60


def sources():
    """The product's C++ files; tests and benchmarks are left to the compiler's warnings."""
    for directory in ("src", "platform", "broker", "providers", "schema", "server", "tools"):
        yield from map(str, (ROOT / directory).rglob("*.cpp"))


def dependencies(build):
    """Which files an object of the build was made of, by the source that comes first among them."""
    text = subprocess.run(["ninja", "-C", build, "-t", "deps"], check=True, capture_output=True, text=True).stdout
    made_of = {}
    for block in text.split("\n\n"):
        files = [os.path.normpath(os.path.join(build, line.strip())) for line in block.splitlines()[1:]]
        if files:
            made_of.setdefault(files[0], files)
    return made_of


@functools.cache
def digest(path):
    return hashlib.sha256(pathlib.Path(path).read_bytes()).hexdigest()


def keys(build, files):
    """For each file what its result depends on: the tool, its rules, the command, and all that is included."""
    common = subprocess.run([TOOL, "--version"], check=True, capture_output=True, text=True).stdout
    common += (ROOT / ".clang-tidy").read_text() + " ".join(OPTIONS)
    commands = {entry["file"]: entry["command"] for entry in
                json.loads((build / "compile_commands.json").read_text())}
    made_of = dependencies(build)
    for file in files:
        if file not in commands:
            sys.exit(f"clang_tidy.py: {build} does not build {file}")
        if file not in made_of:
            sys.exit(f"clang_tidy.py: {file} is not built yet: build {build} first")
        parts = [common, commands[file].replace(str(ROOT), "")]
        parts += [f"{path.removeprefix(str(ROOT))} {digest(path)}" for path in made_of[file]]
        yield file, hashlib.sha256("\n".join(parts).encode()).hexdigest()


def check(build, file, mark):
    """Prints what clang-tidy finds in a file, and marks the file as clean when that is nothing."""
    result = subprocess.run([TOOL, *OPTIONS, "-p", build, file], capture_output=True, text=True, check=False)
    if result.returncode == 0:
        mark.touch()
        return True
    print(result.stdout + result.stderr, flush=True)
    return False


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("files", nargs="*", type=pathlib.Path, help="only these files (default: the whole product)")
    parser.add_argument("-p", "--build", type=pathlib.Path, default=ROOT / "build/dev", metavar="DIR",
                        help="a build folder in which all of them are built (default: build/dev)")
    parser.add_argument("--fresh", action="store_true", help="check what is known to be clean, too")
    options = parser.parse_args()

    cache = pathlib.Path(os.environ.get("XDG_CACHE_HOME") or pathlib.Path.home() / ".cache")
    cache = cache / "provider-helper/clang-tidy"
    cache.mkdir(parents=True, exist_ok=True)
    for old in cache.iterdir():
        if old.stat().st_mtime < time.time() - DAYS_KEPT * 86400:
            old.unlink(missing_ok=True)

    files = sorted(str(file.resolve()) for file in options.files) or sorted(sources())
    waiting = []
    for file, key in keys(options.build.resolve(), files):
        mark = cache / key
        if mark.exists() and not options.fresh:
            mark.touch()
        else:
            waiting.append((file, mark))
    print(f"{len(files)} files, {len(waiting)} of them not known to be clean", flush=True)
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        clean = list(pool.map(lambda job: check(options.build, *job), waiting))
    if not all(clean):
        sys.exit(f"{clean.count(False)} files with findings")


if __name__ == "__main__":
    main()
