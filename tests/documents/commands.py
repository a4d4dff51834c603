"""Runs the commands that documents and `--help` show, on a sample server of their own.

Usage: commands.py help | FILE

A file's commands are the lines of its code that begin with phctl, export or a shell variable, in their order. What
cannot end well here is told apart: commands that go on until they are interrupted have to live for a moment, and those
that name a BMC on a network (of the addresses for documentation) or this machine's have to fail as a missing BMC does,
and not as wrong usage.
"""
import os
import pathlib
import re
import shutil
import socket
import subprocess
import sys
import tempfile

PHCTL = pathlib.Path(os.environ["PH_PHCTL"])
SOURCE = pathlib.Path(os.environ["PH_SOURCE_DIR"])
ENDLESS = re.compile(r"phctl (monitor|serve)\b(?!.*--count)|--watch\b")
ELSEWHERE = re.compile(r"--lan \[?(192\.0\.2\.|2001:db8:)|--local\b")
UNMADE = re.compile(r"--bmc rack1\b") # configured with such a BMC
COMMAND = re.compile(r"(phctl|export|mkdir|curl|wbemcli|[a-z]+=\$)")
# A host's table: its maker and its model (DMTF DSP0134, types 1 and 127).
SMBIOS = b"\x01\x08\x00\x01\x01\x02\x00\x00Maker\0Model\0\0" b"\x7f\x04\x01\x00\0\0"
PATIENCE = 3  # seconds


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return str(probe.getsockname()[1])


class Shell:
    """Runs commands one after the other, with the variables that earlier ones set."""

    def __init__(self, scratch):
        self.scratch = scratch
        self.root = os.path.join(scratch, "root")
        os.makedirs(self.root)
        self.environment = dict(os.environ, PH_SYSROOT=self.root, HOME=scratch, BMC_PASSWORD="secret",
                                PATH=f"{PHCTL.parent}:{os.environ['PATH']}")
        self.environment.pop("XDG_STATE_HOME", None)
        self.settings = []
        for name in ("platform", "tests"):
            os.symlink(SOURCE / name, os.path.join(scratch, name))
        shutil.copy(SOURCE / "platform/virtual-bmc/models/sample-server.json", os.path.join(scratch, "my-model.json"))
        pathlib.Path(scratch, "DMI").write_bytes(SMBIOS)
        self.endless = []
        for name in ("bmc.password", "password.txt", "secret"):
            pathlib.Path(scratch, name).write_text("Secret-12345\n", encoding="utf-8")
        hashed = subprocess.run(["openssl", "passwd", "-6", "secret"], check=True, capture_output=True, text=True)
        pathlib.Path(scratch, "users").write_text(f"admin:{hashed.stdout.strip()}:administer\n", encoding="utf-8")
        self.ports = {"5988": free_port(), "5989": free_port()}

    def adapt(self, command):
        """What must not be touched here, and ports that others may have."""
        command = command.replace("/tmp/", self.scratch + "/").replace("0.0.0.0", "127.0.0.1")
        command = re.sub(r"\b598[89]\b", lambda found: self.ports[found.group()], command)
        if "--listen" not in command:
            command = command.replace("phctl serve", "phctl serve --listen 127.0.0.1:" + self.ports["5988"])
        return command

    def run(self, command):
        """Returns why the command does not do what its document promises, or None."""
        script = self.adapt(command)
        endless = ENDLESS.search(command)
        if endless:
            self.close() # only one follows the pipe or has the port
            script = "exec " + re.sub(r" +&? *(#.*)?$", "", script)
        if re.match(r"(export|[a-z]+=)", script):
            self.settings.append(script)
            script = ""
        whole = "\n".join(["set -e", *self.settings, script])
        process = subprocess.Popen(["bash", "-c", whole], cwd=self.scratch, env=self.environment,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                   text=True)
        try:
            out, error = process.communicate(timeout=PATIENCE if endless else 60)
        except subprocess.TimeoutExpired:
            if endless: # later commands may need it
                self.endless.append(process)
                return None
            process.kill()
            process.communicate()
            return "did not end"
        wanted = 1 if ELSEWHERE.search(command) else 2 if UNMADE.search(command) else 0
        if endless:
            return f"ended with status {process.returncode}: {error}"
        if process.returncode != wanted:
            return f"status {process.returncode} instead of {wanted}: {error or out[-400:]}"
        return None


    def close(self):
        """Interrupts what goes on until then."""
        for process in self.endless:
            process.terminate()
            process.communicate(timeout=60)
        self.endless = []


def commands_of(text):
    """The commands in a document's code, lines that go on with a backslash joined."""
    code, fenced = [], False
    for line in text.splitlines():
        if line.startswith("```"):
            fenced = not fenced
        elif fenced or line.startswith("    "):
            code.append(line.strip())
    joined = re.sub(r"\\\n|(?<=\|)\n", " ", "\n".join(code))
    return [line.removeprefix("$ ") for line in joined.splitlines()
            if COMMAND.match(line.removeprefix("$ ")) and line not in ("phctl",)]


def help_of(words):
    return subprocess.run([PHCTL, *words, "--help"], check=True, capture_output=True, text=True).stdout


def commands_of_help(words=()):
    """Yields each command's words with its examples."""
    text = help_of(words)
    before, examples = (re.split(r"\nExamples?:\n", text) + [""])[:2]
    joined = examples.replace("\\\n", "")
    yield words, [line.strip() for line in joined.splitlines() if line.strip()]
    _, _, listed = before.partition("\nSubcommands:\n")
    for line in listed.splitlines():
        found = re.match(r"  ([a-z][a-z-]*)", line)
        if found:
            yield from commands_of_help((*words, found.group(1)))
        elif not line.strip():
            return


def try_all(title, commands, prepared):
    """Runs the commands in one scratch folder; returns how many failed."""
    failures = 0
    scratch = tempfile.mkdtemp(prefix="ph-test-")
    shell = Shell(scratch)
    try:
        if prepared:
            for command in ("phctl bmc create sample-server", "phctl sync", "phctl bmc sel fill 20"):
                if problem := shell.run(command):
                    sys.exit(f"{command}: {problem}")
        for command in commands:
            if problem := shell.run(command):
                failures += 1
                print(f"{title}: {command}\n    {problem}")
    finally:
        shell.close()
        shutil.rmtree(scratch)
    return failures


def main():
    [what] = sys.argv[1:]
    failures = 0
    if what == "help":
        for words, commands in commands_of_help():
            if not commands:
                print(f"phctl {' '.join(words)} --help has no example")
                failures += 1
            failures += try_all(f"phctl {' '.join(words)} --help", commands,
                                not any("bmc create" in each for each in commands))
    else:
        text = (SOURCE / what).read_text(encoding="utf-8")
        commands = commands_of(text)
        if not commands:
            sys.exit(f"{what} shows no command")
        failures = try_all(what, commands, "bmc create" not in commands[0] + (commands[1:2] or [""])[0])
    sys.exit(failures > 0)


if __name__ == "__main__":
    main()
