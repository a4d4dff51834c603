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
# The files of a batch are included by its source, and looked at as headers are.
OPTIONS = ["--quiet", "--extra-arg=-Wno-unknown-warning-option", "--checks=-bugprone-suspicious-include",
           f"--header-filter=^{ROOT}/({'|'.join(PRODUCT)})/", f"--config-file={ROOT}/.clang-tidy"]
DAYS_KEPT = 60


class Batch(typing.NamedTuple):
    """Files that are looked at together, as the build compiles them."""

    source: str  # what is compiled: a file, or one that includes the files
    files: list[str]
    command: str


def batches(build):
    """The product's C++ files; tests and benchmarks are left to the compiler's warnings."""
    for entry in json.loads((build / "compile_commands.json").read_text()):
        source = entry["file"]
        files = [source]
        if source.startswith(f"{build}/"):
            files = re.findall(r'#include "(.*)"', pathlib.Path(source).read_text())
        if all(re.match(f"{ROOT}/({'|'.join(PRODUCT)})/.*\\.cpp$", file) for file in files):
            yield Batch(source, files, entry["command"])


def chosen(build, files):
    """The batches of the whole product, or each of some files alone."""
    if not files:
        return list(batches(build))
    batch_of = {file: batch for batch in batches(build) for file in batch.files}
    for file in files:
        if file not in batch_of:
            sys.exit(f"clang_tidy.py: {build} does not build {file}")
    return [Batch(file, [file], batch_of[file].command.replace(batch_of[file].source, file)) for file in files]


def dependencies(build):
    """The files that each object of the build was made of, but for sources that only include others by their paths."""
    text = subprocess.run(["ninja", "-C", build, "-t", "deps"], check=True, capture_output=True, text=True).stdout
    for block in text.split("\n\n"):
        files = (os.path.normpath(os.path.join(build, line.strip())) for line in block.splitlines()[1:])
        yield [file for file in files if "/Unity/" not in file]


@functools.cache
def digest(path):
    return hashlib.sha256(pathlib.Path(path).read_bytes()).hexdigest()


def keys(build, jobs):
    """For each batch what its result depends on: the tool, its rules, the command, and all that is included."""
    common = subprocess.run([TOOL, "--version"], check=True, capture_output=True, text=True).stdout
    common += (ROOT / ".clang-tidy").read_text() + " ".join(OPTIONS)
    made_of = {file: files for files in dependencies(build) for file in files if file.endswith(".cpp")}
    for batch in jobs:
        parts = [common, batch.command, *batch.files]
        for file in batch.files:
            if file not in made_of:
                sys.exit(f"clang_tidy.py: {file} is not built yet: build {build} first")
            parts += [f"{path} {digest(path)}" for path in made_of[file]]
        yield batch, hashlib.sha256("\n".join(parts).replace(str(ROOT), "").encode()).hexdigest()


def check(build, batch, mark):
    """Prints what clang-tidy finds in a batch, and marks it as clean when that is nothing."""
    with tempfile.TemporaryDirectory() as folder:
        entry = {"directory": str(build), "file": batch.source, "command": batch.command}
        pathlib.Path(folder, "compile_commands.json").write_text(json.dumps([entry]))
        result = subprocess.run([TOOL, *OPTIONS, "-p", folder, batch.source], capture_output=True, text=True, check=False)
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
    jobs = chosen(build, [str(file.resolve()) for file in options.files])
    waiting = []
    for batch, key in keys(build, jobs):
        mark = cache / key
        if mark.exists() and not options.fresh:
            mark.touch()
        else:
            waiting.append((batch, mark))
    total, count = (sum(len(batch.files) for batch in each) for each in (jobs, [batch for batch, _ in waiting]))
    print(f"{total} files, {count} of them not known to be clean", flush=True)
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        clean = list(pool.map(lambda job: check(build, *job), waiting))
    if not all(clean):
        sys.exit("There are findings.")


if __name__ == "__main__":
    main()
