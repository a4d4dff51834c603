#!/usr/bin/env python3
"""Runs clang-tidy over the sources that users run, and remembers what it found clean."""

import argparse
import functools
import hashlib
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import time
import typing
from concurrent.futures import ThreadPoolExecutor

ROOT = pathlib.Path(__file__).resolve().parent.parent
PRODUCT = ("src", "platform", "broker", "providers", "schema", "server", "tools")
TOOL = "clang-tidy-14"
OPTIONS = ["--quiet", "--extra-arg=-Wno-unknown-warning-option", "--checks=-bugprone-suspicious-include",
           f"--header-filter=^{ROOT}/({'|'.join(PRODUCT)})/"]
MOST_IN_BATCH = 12
DAYS_KEPT = 60


def sources():
    """The product's C++ files; tests and benchmarks are left to the compiler's warnings."""
    for directory in PRODUCT:
        yield from map(str, (ROOT / directory).rglob("*.cpp"))


class Batch(typing.NamedTuple):
    """Files that are compiled alike, and how."""

    files: list[str]
    command: str  # with {} for the source


def batches(build, files):
    """Puts files together, so that the headers which take most of the time are read once for all of them.

    The classes of src/ stay apart: their files look alike, down to the names within them."""
    alike = {}
    commands = {entry["file"]: entry["command"] for entry in
                json.loads((build / "compile_commands.json").read_text())}
    for file in files:
        if file not in commands:
            sys.exit(f"clang_tidy.py: {build} does not build {file}")
        command = re.sub(r" -o \S+", "", commands[file]).replace(file, "{}")
        is_class = file.startswith(f"{ROOT}/src/")
        alike.setdefault((command, file if is_class else ""), []).append(file)
    for (command, _), members in alike.items():
        count = -(-len(members) // MOST_IN_BATCH)
        for first in range(count):
            yield Batch(members[first::count], command)


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


def keys(build, jobs):
    """For each batch what its result depends on: the tool, its rules, the command, and all that is included."""
    common = subprocess.run([TOOL, "--version"], check=True, capture_output=True, text=True).stdout
    common += (ROOT / ".clang-tidy").read_text() + " ".join(OPTIONS)
    made_of = dependencies(build)
    for batch in jobs:
        parts = [common, batch.command]
        for file in batch.files:
            if file not in made_of:
                sys.exit(f"clang_tidy.py: {file} is not built yet: build {build} first")
            parts += [f"{path} {digest(path)}" for path in made_of[file]]
        yield batch, hashlib.sha256("\n".join(parts).replace(str(ROOT), "").encode()).hexdigest()


def check(build, batch, mark):
    """Prints what clang-tidy finds in a batch, and marks it as clean when that is nothing."""
    with tempfile.TemporaryDirectory() as folder:
        source = batch.files[0]
        if len(batch.files) > 1:
            source = f"{folder}/batch.cpp"
            pathlib.Path(source).write_text("".join(f'#include "{file}"\n' for file in batch.files))
        entry = {"directory": str(build), "file": source, "command": batch.command.replace("{}", source)}
        pathlib.Path(folder, "compile_commands.json").write_text(json.dumps([entry]))
        # Rules are looked for above the source.
        result = subprocess.run([TOOL, *OPTIONS, f"--config-file={ROOT}/.clang-tidy", "-p", folder, source],
                                capture_output=True, text=True, check=False)
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

    build = options.build.resolve()
    files = sorted(str(file.resolve()) for file in options.files) or sorted(sources())
    waiting = []
    for batch, key in keys(build, batches(build, files)):
        mark = cache / key
        if mark.exists() and not options.fresh:
            mark.touch()
        else:
            waiting.append((batch, mark))
    count = sum(len(batch.files) for batch, _ in waiting)
    print(f"{len(files)} files, {count} of them not known to be clean", flush=True)
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        clean = list(pool.map(lambda job: check(build, *job), waiting))
    if not all(clean):
        sys.exit("There are findings.")


if __name__ == "__main__":
    main()
