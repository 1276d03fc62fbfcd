# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs the scenarios of a test script on a virtual screen, and creates disc images for them."""

import pathlib
import subprocess
import sys
import traceback

from desktop import Desktop
from waiting import check

REPOSITORY = pathlib.Path(__file__).resolve().parents[2]


def make_disc(folder, name="disc", **options):
    """Creates a disc image by tools/make_disc_image.py, where the options are documented (for
    example tracks=3, signal="ramp"). Returns the path of the cue sheet or TOC file."""
    arguments = [f"--{key}={value}" for key, value in options.items()]
    maker = REPOSITORY / "tools" / "make_disc_image.py"
    made = subprocess.run([sys.executable, maker, folder, "--name", name, *arguments],
                          check=True, capture_output=True, text=True)
    return pathlib.Path(made.stdout.strip())


def run(*scenarios, desktop=Desktop):
    """Runs the scenarios one after the other on the same screen, each with its own home folder. A
    scenario is a function with the parameters desktop and program (the path of the program). Exits
    with 0 if all scenarios passed. Stores a screenshot for each failed scenario. The parameter
    `desktop` of run() is the class of the screen."""
    program = pathlib.Path(sys.argv[1]).absolute()
    check(program.is_file(), f"the program {program} does not exist")
    failed = []
    with desktop() as desktop:
        for scenario in scenarios:
            name = scenario.__name__
            print(f"{name} ...", flush=True)
            desktop.move_to(desktop.folder / name)
            try:
                scenario(desktop, program)
            except Exception:  # the other scenarios run even if this one has failed
                failed.append(name)
                traceback.print_exc()
                picture = pathlib.Path.cwd() / f"{name}.png"
                desktop.screenshot(picture)
                print(f"The screen: {picture}", desktop.program_output(), sep="\n", flush=True)
            finally:
                desktop.end_programs()
    print(f"{len(scenarios) - len(failed)} of {len(scenarios)} scenarios passed.")
    sys.exit(1 if failed else 0)
