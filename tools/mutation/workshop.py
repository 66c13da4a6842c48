"""Builds a mutant and runs tests on it.

The tests are built once, with the core as a shared library. A mutant needs one object file and one library. Each job
writes them into its own copy of the build folder, with the compiler and linker commands of the build.
"""

import json
import os
import re
import resource
import select
import shlex
import shutil
import signal
import subprocess
import threading
import time
from pathlib import Path

_MEMORY = 6 << 30  # stops mutants that allocate endlessly
_COMPILE_SECONDS = 120
_SHORTEST_LIMIT = 5.0
_LONGEST_OUTPUT = 1 << 16


class Stopped(Exception):
    """The user has interrupted the run."""


stop = threading.Event()


def _limit():
    resource.setrlimit(resource.RLIMIT_AS, (_MEMORY, _MEMORY))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def run(command, folder, seconds, environment=None, until=None):
    """Runs a command; returns its exit code, or None after a timeout, and its output.

    A line of output that begins with until ends it early with exit code 1. All its child processes are killed.
    """
    process = subprocess.Popen(
        command,
        cwd=folder,
        env=environment,
        stdin=subprocess.DEVNULL,
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        start_new_session=True,
        preexec_fn=_limit,
    )
    output, deadline = b"", time.monotonic() + seconds
    pattern = re.compile(rb"^" + until, re.MULTILINE) if until else None
    try:
        while True:
            if stop.is_set():
                raise Stopped
            if time.monotonic() > deadline:
                return None, output
            if not select.select([process.stdout], [], [], 0.2)[0]:
                continue
            piece = os.read(process.stdout.fileno(), 65536)
            if not piece:
                return process.wait(max(0.1, deadline - time.monotonic())), output
            output = output[-_LONGEST_OUTPUT:] + piece
            if pattern and pattern.search(output):
                return 1, output
    except subprocess.TimeoutExpired:
        return None, output
    finally:
        try:
            os.killpg(process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        process.stdout.close()
        process.wait()


class Base:
    """The build folder that all jobs copy, and its build commands."""

    def __init__(self, root, folder, tests):
        self.root = root
        self.folder = folder
        subprocess.check_call(["cmake", "--preset", "mutation"], cwd=root, stdout=2)
        targets = ["importplugin", "importhost", *tests]
        subprocess.check_call(["cmake", "--build", "--preset", "mutation", "--target", *targets], cwd=root, stdout=2)
        commands = json.loads((folder / "compile_commands.json").read_text())
        plugin = [entry for entry in commands if Path(entry["file"]).parent == root / "plugin"]
        # Compiling a mutant takes longer than running it, so it is not optimised.
        self.compile = {Path(entry["file"]).name: [*shlex.split(entry["command"]), "-O0"] for entry in plugin}
        self.links = {name: self._link_command(f"plugin/lib{name}.so") for name in ("importshared", "importplugin")}
        self.programs = [f"tests/{test}" for test in tests] + ["workbench/importhost"]
        self.header = folder / "system.h"
        self._precompile()

    def _link_command(self, target):
        lines = subprocess.check_output(["ninja", "-C", self.folder, "-t", "commands", target], text=True).splitlines()
        words = shlex.split(lines[-1])
        return [word for word in words if word not in (":", "&&")]

    # Most of the compile time is spent on Qt's headers.
    def _precompile(self):
        texts = [path.read_text() for path in (self.root / "plugin").iterdir() if path.suffix in (".cpp", ".h")]
        includes = sorted({line for text in texts for line in re.findall(r"^#include <.*>$", text, re.MULTILINE)})
        compiled = self.folder / "system.h.gch"
        command = list(self.compile["mapimport.cpp"])
        command[command.index("-o") + 1] = str(compiled)
        source = command.index("-c") + 1
        command[source : source + 1] = ["-x", "c++-header", str(self.header)]
        text = "\n".join(["// " + shlex.join(command), *includes, ""])
        if compiled.exists() and self.header.read_text() == text:
            return
        self.header.write_text(text)
        compiled.unlink(missing_ok=True)
        subprocess.check_call(command, cwd=self.folder)

    def object_of(self, name):
        command = self.compile[name]
        return command[command.index("-o") + 1]


class Job:
    """A copy of the base for building and trying one mutant at a time."""

    def __init__(self, base, number):
        self.base = base
        self.folder = base.folder.with_name(f"job{number}")
        assert len(str(self.folder)) == len(str(base.folder))
        self.sources = self.folder / "source"
        shutil.rmtree(self.folder, ignore_errors=True)
        self._copy_programs()
        self.sources.mkdir()
        for path in (base.root / "plugin").iterdir():
            shutil.copy(path, self.sources)
        self.temporary = self.folder / "tmp"

    # The programs contain the paths of the libraries. The job's paths have the same length, so they can be patched in.
    def _copy_programs(self):
        old, new = str(self.base.folder), str(self.folder)
        programs = [self.base.folder / program for program in self.base.programs]
        for path in [*programs, *self.base.folder.glob("plugin/*.so")]:
            data = path.read_bytes()
            for encoding in ("utf-8", "utf-16-le"):
                data = data.replace(old.encode(encoding), new.encode(encoding))
            copy = self.folder / path.relative_to(self.base.folder)
            copy.parent.mkdir(parents=True, exist_ok=True)
            copy.write_bytes(data)
            copy.chmod(0o755)

    def build(self, name, text):
        """Builds the plug-in with a changed file; returns False if it does not compile."""
        original = (self.base.root / "plugin" / name).read_bytes()
        changed = self.sources / name
        changed.write_text(text)
        try:
            objects = [self._compile(user) for user in self._users(name)]
        finally:
            changed.write_bytes(original)
        return all(objects) and self._link({user: path for user, path in objects})

    def restore(self):
        """Restores the libraries of the base."""
        for path in self.base.folder.glob("plugin/*.so"):
            data = path.read_bytes().replace(str(self.base.folder).encode(), str(self.folder).encode())
            target = self.folder / "plugin" / path.name
            if not target.exists() or target.read_bytes() != data:
                target.write_bytes(data)

    # The sources to recompile after a change of this file.
    def _users(self, name):
        if name.endswith(".cpp"):
            return [name]
        found, names = {name}, [path.name for path in self.sources.iterdir() if path.suffix in (".cpp", ".h")]
        while True:
            more = {
                other
                for other in names
                for header in found
                if f'#include "{header}"' in (self.sources / other).read_text(errors="replace")
            } - found
            if not more:
                return sorted(other for other in found if other.endswith(".cpp"))
            found |= more

    def _compile(self, name):
        command = list(self.base.compile[name])
        target = self.folder / f"{name}.o"
        command[command.index("-o") + 1] = str(target)
        command[command.index("-c") + 1] = str(self.sources / name)
        own = {f"-I{self.base.root}/plugin": f"-I{self.sources}"}
        command = [own.get(word, word) for word in command] + ["-w", "-include", str(self.base.header)]
        return (name, target) if self._succeeds(command) else None

    def _succeeds(self, command):
        code, _ = run(command, self.base.folder, _COMPILE_SECONDS)
        if code is None:
            raise TimeoutError(f"{command[0]} takes more than {_COMPILE_SECONDS} s: is the machine busy?")
        return code == 0

    def _link(self, objects):
        for library, link in self.base.links.items():
            replaced = {self.base.object_of(name): str(path) for name, path in objects.items()}
            if not replaced.keys() & set(link):
                continue
            command = [replaced.get(word, word) for word in link]
            target = self.folder / "plugin" / f"lib{library}.so"
            target.unlink(missing_ok=True)
            command[command.index("-o") + 1] = str(target)
            if not self._succeeds(command):
                return False
            data = target.read_bytes()
            target.write_bytes(data.replace(str(self.base.folder).encode(), str(self.folder).encode()))
        return True

    def try_test(self, test, seconds):
        """Runs one test; returns None if it passes, otherwise how it fails, and its duration."""
        shutil.rmtree(self.temporary, ignore_errors=True)
        self.temporary.mkdir()
        # Settings and temporary files that a mutant writes must not reach the next test.
        own = {name: str(self.temporary) for name in ("TMPDIR", "HOME", "XDG_CONFIG_HOME")}
        environment = dict(os.environ, QT_QPA_PLATFORM="offscreen", **own)
        begin = time.monotonic()
        limit = max(_SHORTEST_LIMIT, seconds)
        code, _ = run([f"./{test}"], self.folder / "tests", limit, environment, until=b"FAIL!")
        took = time.monotonic() - begin
        if code is None:
            return "times out", took
        return ("crashes" if code < 0 else "fails" if code > 0 else None), took
