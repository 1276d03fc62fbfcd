#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""check_package.py CHECK: runs one check of the Debian package in build/package. The check
`reproducible` builds this package, and builds it a second time in another folder. This script must
be started in the project's folder. If the check `clean_root` is not possible on this machine, the
script prints the reason and exits with 77."""

import filecmp
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

PACKAGES = pathlib.Path("build/package")
AGAIN = pathlib.Path("build/package-again")
SKIPPED = 77


class Fault(Exception):
    """A check has found an error, or a command of the check has failed."""


def run(*command, **options):
    """Returns the output of a command; if the command fails, raises a Fault with the output."""
    done = subprocess.run(command, check=False, text=True, errors="replace",
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, **options)
    if done.returncode != 0:
        raise Fault(f"{' '.join(map(str, command))} ended with {done.returncode}:\n{done.stdout}")
    return done.stdout


def package():
    found = list(PACKAGES.glob("sonarith_*.deb"))
    if len(found) != 1:
        raise Fault(f"there is not exactly one package in {PACKAGES}: {found}")
    return found[0]


def unpacked(folder):
    run("dpkg-deb", "-x", package(), folder)
    return pathlib.Path(folder)


def reproducible():
    run("./package")
    shutil.rmtree("build/again", ignore_errors=True)
    # The second build runs in a folder of another name and at another time.
    run("tools/make_package.sh", "build/again", AGAIN)
    first, second = (sorted(path.name for path in folder.glob("*.*deb"))
                     for folder in (PACKAGES, AGAIN))
    if first != second or len(first) != 2:
        raise Fault(f"the builds did not create the same two packages: {first} and {second}")
    for name in first:
        if not filecmp.cmp(PACKAGES / name, AGAIN / name, shallow=False):
            raise Fault(f"{name} differs in the second build")


def lintian():
    # lintian prints a warning if root runs it without this option.
    as_root = ["--allow-root"] if os.geteuid() == 0 else []
    found = run("lintian", *as_root, "--pedantic", "--display-info", "--fail-on", "error,warning",
                package())
    print(found)


def desktop_file():
    with tempfile.TemporaryDirectory() as folder:
        root = unpacked(folder)
        entry = root / "usr/share/applications/org.sonarith.sonarith.desktop"
        found = run("desktop-file-validate", entry)
        if found:
            raise Fault(found)
        icon = re.search("^Icon=(.*)$", entry.read_text(encoding="utf-8"), re.M).group(1)
        theme = root / "usr/share/icons/hicolor"
        for side in (16, 22, 24, 32, 48, 64, 128, 256):
            picture = theme / f"{side}x{side}/apps/{icon}.png"
            head = picture.read_bytes()[:24]
            size = int.from_bytes(head[16:20], "big"), int.from_bytes(head[20:24], "big")
            if size != (side, side):
                raise Fault(f"{picture} has the size {size} in pixels")
        if not (theme / f"scalable/apps/{icon}.svg").exists():
            raise Fault("the scalable icon (SVG) is missing")
        main = pathlib.Path("src/main.cpp").read_text(encoding="utf-8")
        if f'setDesktopFileName("{entry.stem}")' not in main:
            raise Fault("the name in setDesktopFileName() is not the name of the desktop file")


def metadata():
    with tempfile.TemporaryDirectory() as folder:
        file = unpacked(folder) / "usr/share/metainfo/org.sonarith.sonarith.metainfo.xml"
        print(run("appstreamcli", "validate", "--pedantic", "--no-net", file))


def manual():
    with tempfile.TemporaryDirectory() as folder:
        page = unpacked(folder) / "usr/share/man/man1/sonarith.1.gz"
        text = run("man", "--warnings", "-E", "UTF-8", "-l", page,
                   env={**os.environ, "MANWIDTH": "80", "MANPAGER": "cat", "LC_ALL": "C.UTF-8"})
        if "warning" in text or "SYNOPSIS" not in text:
            raise Fault(text)


def hardening():
    with tempfile.TemporaryDirectory() as folder:
        program = unpacked(folder) / "usr/bin/sonarith"
        headers = run("readelf", "--wide", "-hld", program)
        symbols = run("readelf", "--wide", "--dyn-syms", program)
        for text, pattern, what in (
                (headers, r"Type:\s+DYN \(Position-Independent Executable",
                 "the program is no position-independent executable (PIE)"),
                (headers, "GNU_RELRO", "the program has no RELRO"),
                (headers, r"FLAGS_1.*NOW", "symbols are bound late, so RELRO is not full"),
                (headers, r"GNU_STACK.* RW ", "the stack can be executed"),
                (symbols, "__stack_chk_fail", "the program has no stack protector"),
                (symbols, r"_chk@", "no call is fortified (_FORTIFY_SOURCE)")):
            if not re.search(pattern, text):
                raise Fault(what)
        if str(pathlib.Path.cwd()).encode() in program.read_bytes():
            raise Fault("the program contains the path of the project's folder")
        if ".debug_info" in run("readelf", "--wide", "-S", program):
            raise Fault("the program contains debug symbols")


def dependencies():
    """Each library that the program uses, whether linked or loaded at run time, must be in a
    package on which the Debian package depends."""
    asked = run("dpkg-deb", "-f", package(), "Depends")
    names = {re.split(r"[ :(]", one.strip())[0] for one in asked.split(",")}
    with tempfile.TemporaryDirectory() as folder:
        program = (unpacked(folder) / "usr/bin/sonarith").read_bytes()
    sonames = {name.decode() for name in re.findall(rb"\0(lib[\w+-]+\.so\.\d+)(?=\0)", program)}
    late = [name for name in sonames
            if re.match(r"lib(cdio|cdio_cdda|cdio_paranoia|asound|sndfile|mpg123|speexdsp)\.so",
                        name)]
    if len(late) != 7:
        raise Fault(f"expected seven libraries that are loaded at run time, found: {sorted(late)}")
    for soname in sonames:
        owners = {line.split(":")[0]
                  for line in run("dpkg-query", "--search", f"*/{soname}").splitlines()}
        if not owners & names:
            raise Fault(f"{soname} is in the packages {owners}; none of them is among the "
                        f"dependencies {sorted(names)}")


def clean_root():
    """Creates a new Debian 12 system. In this system, installs the package's dependencies and then
    the package, uses the program, and removes the package. Checks that the system's files are then
    the same as before the installation of the package."""
    # Imported here, since only this check needs the virtual screen and the modules that operate it.
    from clean_root import CleanRoot, NotPossible
    try:
        with CleanRoot() as root:
            use_and_remove(root)
    except NotPossible as reason:
        print(f"Skipped: {reason}")
        return SKIPPED
    return 0


def use_and_remove(root):
    shutil.copy(package(), root.path / "tmp/sonarith.deb")
    root.run("apt-get", "update", "-qq")
    # The dependencies are installed first, so that `before` already contains their files and the
    # comparison at the end does not report them.
    depends = run("dpkg-deb", "-f", package(), "Depends")
    root.install(*(re.split(r"[ (]", one.strip())[0] for one in depends.split(",")))
    before = root.files()
    root.install("/tmp/sonarith.deb")
    installed = root.files()
    for name in ("usr/bin/sonarith", "usr/share/applications/org.sonarith.sonarith.desktop"):
        if name not in installed:
            raise Fault(f"{name} was not installed")
    home = root.use_program()
    used = root.files()
    if used.keys() != installed.keys():
        raise Fault("the program created or removed files outside of the home: "
                    f"{sorted(used.keys() ^ installed.keys())}")
    kept = {path: path.read_bytes() for path in home.rglob("*") if path.is_file()}
    root.run("apt-get", "purge", "-y", "-qq", "sonarith")
    after = root.files()
    if after != before:
        changed = sorted(path for path in before.keys() | after.keys()
                         if before.get(path) != after.get(path))
        raise Fault(f"the removal did not restore these files: {changed}")
    if any(not path.exists() or path.read_bytes() != content for path, content in kept.items()):
        raise Fault("the removal changed files of the user")


CHECKS = {check.__name__: check for check in (reproducible, lintian, desktop_file, metadata, manual,
                                              hardening, dependencies, clean_root)}

if __name__ == "__main__":
    try:
        sys.exit(CHECKS[sys.argv[1]]() or 0)
    except Fault as fault:
        print(fault)
        sys.exit(1)
