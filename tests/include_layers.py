#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Checks every #include below src/ against the layers of the program (docs/architecture.md).

A file may include files of its own layer and of lower layers. NEIGHBOURS and BELOW_ONLY_PLATFORM
restrict layer 4 further. The folders of one layer may include each other, but not in a cycle.
Cycles on layer 0 are not checked. Layers 0 to 3 may use only the standard library and utf8proc.
Tests and fixtures may also include tests/support/ and the libraries listed in broken_rule(). Prints
each include that breaks a rule and each folder in a cycle. Exits with 1 if there are any, if the
self-test fails or if no include was found.
"""
import pathlib
import re
import sys

# The layer of each path: the first pattern that matches the path below src/ determines the layer.
LAYERS = [
    (5, r"main\.cpp"),
    (4, r"ui/"),
    (4, r"platform/linux/"),
    (4, r"platform/qt/"),
    (0, r"platform/"),
    (1, r"forms/"),
    (2, r"settings/preferences/"),
    (1, r"settings/"),
    (1, r"formats/"),
    (2, r"(extraction|conversion|worktree|playlist|player|finder|desktop)/"),
    (3, r"app/"),
]
# The folders of layer 4 that each module of layer 4 may include.
NEIGHBOURS = {
    "ui": ("ui/", "platform/qt/"),
    "platform/linux/late": ("platform/linux/late/",),
    "platform/linux": ("platform/linux/",),
    "platform/qt": ("platform/qt/",),
}
# Modules of layer 4 that may not include layers 1 to 3: the platform must not use the logic.
BELOW_ONLY_PLATFORM = ("platform/linux/late", "platform/linux", "platform/qt")
# The library headers that each module may include. The module "" is layers 0 to 3; the headers
# that are listed for it are allowed in every module.
LIBRARIES = {
    "": r"utf8proc\.h",
    "platform/linux": (r"(sys|linux)/.*|"
                       r"(fcntl|unistd|poll|dirent|pwd|errno|signal|spawn|pthread)\.h"),
    # The program loads these libraries at the first call of one of their functions. A direct call
    # from another folder would link the program to them.
    "platform/linux/late": r"(cdio|alsa|speex)/.*|(sndfile|mpg123|dlfcn)\.h",
    "platform/qt": (r"Q\w+|fontconfig/.*|xcb/xcb\.h|systemd/sd-bus\.h|"
                    r"unistd\.h|fcntl\.h|sys/.*"),
    "ui": r"Q\w+",
    "main": r"Q\w+|unistd\.h",
}
STANDARD = re.compile(r"[a-z_0-9]+|(stdint|stddef|string|errno)\.h")
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)


def layer_of(path):
    for layer, pattern in LAYERS:
        if re.match(pattern, path):
            return layer
    return None


def module_of(path):
    for module in ("platform/linux/late", "platform/linux", "platform/qt", "ui"):
        if path.startswith(module + "/"):
            return module
    return "main" if path == "main.cpp" else ""


def broken_rule(path, bracket, target):
    """Why `path` may not include `target`; None if it may."""
    layer, module = layer_of(path), module_of(path)
    is_test = bool(re.search(r"(_test\.cpp|_fixture\.h)$", path))
    if layer is None:
        return "belongs to no layer"
    if bracket == "<":
        allowed = [LIBRARIES[""], LIBRARIES.get(module, "")]
        if is_test:
            allowed.append(r"(gtest|gmock|fontconfig)/.*|Q\w+|sys/.*|(fcntl|unistd|signal)\.h")
        known = STANDARD.fullmatch(target) or any(re.fullmatch(a, target) for a in allowed if a)
        return None if known else f"layer {layer} may not use <{target}>"
    if is_test and target.startswith("support/"):
        return None
    other = layer_of(target)
    if other is None:
        return f'"{target}" belongs to no layer'
    if layer == 5:
        return None
    if other > layer:
        return f'an include of a higher layer, from {layer} to {other}: "{target}"'
    if layer == 4:
        if other == 4 and not target.startswith(NEIGHBOURS[module]):
            return f'an include of another module of layer 4: "{target}"'
        if other in (1, 2, 3) and module in BELOW_ONLY_PLATFORM:
            return f'{module}/ may not include layers 1 to 3: "{target}"'
    return None


def includes(root):
    for source in sorted(root.rglob("*")):
        if source.suffix in (".h", ".cpp"):
            path = source.relative_to(root).as_posix()
            for bracket, target in INCLUDE.findall(source.read_text(encoding="utf-8")):
                yield path, bracket, target


def peers(path, target):
    """The folders of `path` and `target` if they differ and both are on the same layer above
    layer 0; otherwise None."""
    layer, folders = layer_of(path), [p.rpartition("/")[0] for p in (path, target)]
    return folders if layer and layer == layer_of(target) and folders[0] != folders[1] else None


def in_cycles(links):
    """The folders that are part of a cycle. `links` maps each folder to the folders that it
    includes."""
    reached = {folder: set(others) for folder, others in links.items()}
    for _ in links:
        for others in reached.values():
            others.update(*(reached.get(other, ()) for other in list(others)))
    return sorted(folder for folder, others in reached.items() if folder in others)


def self_test():
    """Tests the check itself with includes that are known to be wrong or right."""
    wrong = [
        ("platform/controls/a.h", '"', "forms/form1.h"),
        ("settings/a.h", '"', "extraction/b.h"),
        ("extraction/a.cpp", '"', "app/application.h"),
        ("extraction/a.cpp", "<", "QString"),
        ("app/application.h", '"', "ui/main_window_view.h"),
        ("platform/linux/mci/a.cpp", '"', "forms/form1.h"),
        ("ui/a.cpp", '"', "platform/linux/disc/disc.h"),
        ("platform/linux/disc/a.cpp", "<", "QString"),
        ("platform/linux/sound/a.h", "<", "sndfile.h"),
        ("strange/a.cpp", "<", "string"),
    ]
    right = [
        ("forms/form1.h", '"', "settings/process_state.h"),
        ("platform/linux/mci/a.cpp", '"', "platform/linux/disc/disc.h"),
        ("ui/a.cpp", "<", "QString"),
        ("main.cpp", '"', "platform/linux/disc/disc.h"),
        ("platform/a_test.cpp", "<", "gtest/gtest.h"),
    ]
    failures = [a for a in wrong if not broken_rule(*a)] + [a for a in right if broken_rule(*a)]
    if peers("finder/a.h", "worktree/b.h") != ["finder", "worktree"]:
        failures.append("finder to worktree")
    if peers("finder/a.h", "forms/form1.h") or peers("platform/a.h", "platform/text/b.h"):
        failures.append("includes that peers() must ignore")
    cycle = {"a": {"b"}, "b": {"c"}, "c": {"d"}, "d": {"b"}}
    if in_cycles(cycle) != ["b", "c", "d"] or in_cycles({"a": {"b", "c"}, "b": {"c"}}):
        failures.append("cycles")
    for failure in failures:
        print("the check itself gives a wrong result for:", failure)
    return not failures


def main():
    root = pathlib.Path(sys.argv[1])
    count, found = 0, 0
    links = {}
    for path, bracket, target in includes(root):
        count += 1
        why = broken_rule(path, bracket, target)
        if why:
            found += 1
            print(f"src/{path}: {why}")
        if bracket == '"' and (pair := peers(path, target)):
            links.setdefault(pair[0], set()).add(pair[1])
    for folder in in_cycles(links):
        found += 1
        print(f"src/{folder}: it is in a cycle of includes")
    print(f"{count} includes checked; {found} includes and folders break the rules of the layers")
    return 0 if self_test() and count and not found else 1


if __name__ == "__main__":
    sys.exit(main())
