# SPDX-License-Identifier: GPL-3.0-or-later
"""What a test script needs around its scenarios: a disc image, and the screen to play them on."""

import pathlib
import subprocess
import sys
import traceback

from desktop import Desktop
from waiting import check

REPOSITORY = pathlib.Path(__file__).resolve().parents[2]


def make_disc(folder, name="disc", **options):
    """An image by the project's script; options as the script's (tracks=3, signal="ramp"). Returns
    the sheet's path."""
    arguments = [f"--{key}={value}" for key, value in options.items()]
    maker = REPOSITORY / "tools" / "make_disc_image.py"
    made = subprocess.run([sys.executable, maker, folder, "--name", name, *arguments],
                          check=True, capture_output=True, text=True)
    return pathlib.Path(made.stdout.strip())


def run(*scenarios):
    """A test script's main part: plays each scenario(desktop, program path) with a home of its own
    on one screen, and ends with 0 if all held. Of a failed one a screenshot stays."""
    program = pathlib.Path(sys.argv[1]).absolute()
    check(program.is_file(), f"there is no program {program}")
    failed = []
    with Desktop() as desktop:
        for scenario in scenarios:
            name = scenario.__name__
            print(f"{name} ...", flush=True)
            desktop.move_to(desktop.folder / name)
            try:
                scenario(desktop, program)
            except Exception:  # whatever went wrong, the other scenarios are of interest
                failed.append(name)
                traceback.print_exc()
                picture = pathlib.Path.cwd() / f"{name}.png"
                desktop.screenshot(picture)
                print(f"The screen: {picture}", desktop.program_output(), sep="\n", flush=True)
            finally:
                desktop.end_programs()
    print(f"{len(scenarios) - len(failed)} of {len(scenarios)} scenarios held.")
    sys.exit(1 if failed else 0)
