# SPDX-License-Identifier: GPL-3.0-or-later
"""Creates a new Debian 12 system in a folder and installs there a package, its dependencies and
nothing else. The installed program runs in this system; it is operated on a virtual screen of this
machine."""

import contextlib
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "e2e"))
# These modules are in the folder that the line above adds.
from desktop import Desktop  # noqa: E402
from driver import make_disc  # noqa: E402
from program import Program  # noqa: E402
from scenes import close, start_row, wavs_by_track  # noqa: E402
from sound import check_track, disc_samples  # noqa: E402
from waiting import check_equal, wait_for  # noqa: E402

SECONDS = 3  # length of each track
# Folders that files() omits: users or the package manager write to them, or they are not on a disk.
NOT_COMPARED = ("dev", "home", "proc", "run", "sys", "tmp", "var/cache", "var/lib/apt",
                "var/lib/dpkg", "var/log")


class NotPossible(Exception):
    """A new system cannot be created on this machine or by this user; the message states the
    reason."""


class CleanRoot:
    """A Debian 12 system. Use as a context manager: the system is deleted at the end of the
    context."""

    def __init__(self):
        # All users may enter the folder, so that mmdebstrap can download packages as the user _apt.
        self._folder = pathlib.Path(tempfile.mkdtemp(prefix="sonarith-package-"))
        self._folder.chmod(0o755)
        self.path = self._folder / "root"
        self._cleanup = contextlib.ExitStack()
        self._cleanup.callback(shutil.rmtree, self._folder, ignore_errors=True)

    def __enter__(self):
        try:
            self._make()
        except BaseException:
            self._cleanup.close()
            raise
        return self

    def __exit__(self, *_):
        self._cleanup.close()

    def _make(self):
        if os.geteuid() != 0:
            raise NotPossible("only root can create a system to install into")
        tool = shutil.which("mmdebstrap")
        if not tool:
            raise NotPossible("mmdebstrap is not installed")
        self._attempt(tool, "--variant=minbase", "bookworm", self.path)
        # The system's root must be a mount, so that the program finds the root in the list of
        # mounts.
        self._mount("--bind", self.path, self.path)
        (self.path / "proc").mkdir(exist_ok=True)
        self._mount("-t", "proc", "proc", self.path / "proc")
        # With this link, the path by which this machine reaches a file of the new system is also
        # valid inside the new system.
        inner = self.path / self._folder.relative_to("/")
        inner.mkdir(parents=True, exist_ok=True)
        (inner / "root").symlink_to("/")

    def _mount(self, *what):
        self._attempt("mount", *what)
        self._cleanup.callback(subprocess.run, ["umount", what[-1]], check=True)

    @staticmethod
    def _attempt(*command):
        done = subprocess.run(command, check=False, stdin=subprocess.DEVNULL, capture_output=True,
                              text=True, errors="replace")
        if done.returncode != 0:
            raise NotPossible(f"{command[0]} failed:\n{done.stderr[-2000:]}")

    def run(self, *command):
        """Runs a command in the system and returns its output."""
        plain = ("chroot", self.path, "env", "-i", "PATH=/usr/sbin:/usr/bin:/sbin:/bin",
                 "HOME=/root", "DEBIAN_FRONTEND=noninteractive", "LC_ALL=C.UTF-8")
        done = subprocess.run([*plain, *command], check=False, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                              errors="replace")
        if done.returncode != 0:
            raise RuntimeError(f"{' '.join(map(str, command))} failed:\n{done.stdout}")
        return done.stdout

    def install(self, *packages):
        self.run("apt-get", "install", "-y", "-qq", "--no-install-recommends", *packages)

    def files(self):
        """Maps the path of each file and empty folder of the system to its mode and size, and the
        path of each link to its target. Omits NOT_COMPARED. A link is not followed: an absolute
        link would lead out of the system, into this machine."""
        def is_recorded(folder):
            return os.path.islink(folder) or not os.listdir(folder)

        found = {}
        for folder, folders, files in os.walk(self.path):
            below = os.path.relpath(folder, self.path)
            folders[:] = [name for name in folders
                          if os.path.normpath(f"{below}/{name}") not in NOT_COMPARED]
            for name in [*files, *(each for each in folders if is_recorded(f"{folder}/{each}"))]:
                path = os.path.join(folder, name)
                status = os.lstat(path)
                found[os.path.normpath(f"{below}/{name}")] = (
                    os.readlink(path) if os.path.islink(path) else (status.st_mode, status.st_size))
        return found

    def use_program(self):
        """Starts the installed program with the home of a new user, extracts a track into the
        program's default folder, and opens help by the keyboard. Returns the home."""
        launcher = self._folder / "sonarith"
        launcher.write_text(f'#!/bin/sh\nexec chroot "{self.path}" /usr/bin/sonarith "$@"\n')
        launcher.chmod(0o755)
        before = tempfile.tempdir
        tempfile.tempdir = str(self.path / "home")
        try:
            screen = Desktop()
        finally:
            tempfile.tempdir = before
        home = self.path / "home/jane"
        with screen as desktop:
            desktop.move_to(home)
            sheet = make_disc(home / "discs", tracks=2, seconds=SECONDS, signal="ramp")
            desktop.store.parent.mkdir(parents=True)
            desktop.store.write_text(f'[Devices]\nDrive="{sheet}"\nOutput=none\n', encoding="utf-8")
            try:
                self._extract_and_read(desktop, launcher, home, sheet)
            except Exception as failure:
                raise RuntimeError(f"{failure}\n{desktop.program_output()}") from failure
        return home

    @staticmethod
    def _extract_and_read(desktop, launcher, home, sheet):
        started = Program(desktop, launcher)
        started.wait_for_window()
        started.open_row("Available Tracks")
        start_row(started, f"Track  1 - 00:00:0{SECONDS}")
        wavs = home / "Music/Sonarith/WAVFiles"
        wait_for("the WAV file", lambda: wavs.exists() and any(wavs.iterdir()))
        wait_for("the end of the extraction",
                 lambda: started.is_enabled("Preferences", "push button"))
        found = wavs_by_track(wavs)
        check_equal(list(found), [1], "the tracks that were extracted")
        check_track(found[1], disc_samples(sheet), 1, SECONDS)
        started.activate(started.title)
        desktop.press("F1")
        wait_for("the help page", lambda: started.window("Sonarith Help") and
                 (started.text("Help text", role=None) or "").startswith("The main window"))
        desktop.press("Escape")
        close(started)
