#!/usr/bin/env python3
"""Checks that the code in README.md and docs/*.md is quoted from files of the project.

A fenced block is a quote when the line before its opening fence is a marker:

    <!-- quote: examples/build_catalog.cpp -->          the whole file
    <!-- quote: examples/build_catalog.cpp#build -->    a named region of it
    <!-- quote: src/tables/table.h:40-62 -->            lines 40 to 62 of it

A named region is the lines between one holding `docs-begin: NAME` and one holding
`docs-end: NAME` (in a comment of the file's own language), taken out of their common indent.
The block must match what it quotes byte for byte (a block indented
under a list item, once its indent is taken off). Blocks of code (C++, CMake, make) must be
quotes, so that every example is a file the build compiles. Other blocks (program output, shell
sessions) are left alone.

    check_quotes.py ROOT            report each stale or unquoted block, exit 1 if any
    check_quotes.py ROOT --update   rewrite stale blocks from the files they quote
"""
import pathlib
import re
import sys

MARKER = re.compile(r"^<!-- quote: (?P<path>[^#: ]+)(?:#(?P<region>[\w-]+)|:(?P<first>\d+)-(?P<last>\d+))? -->$")
FENCE = re.compile(r"^(?P<indent> {0,3})(?P<fence>```+|~~~+)(?P<info>[\w+-]*)\s*$")
CODE_LANGUAGES = {"c", "cpp", "c++", "cxx", "cmake", "make", "makefile"}


def quoted_text(root, match):
    """The text a marker names, or raises ValueError saying why it cannot be had."""
    path = root / match["path"]
    if not path.is_file():
        raise ValueError(f"no file {match['path']}")
    lines = path.read_text(encoding="utf-8").splitlines(keepends=True)
    if lines and not lines[-1].endswith("\n"):
        lines[-1] += "\n"  # a block ends with a line break whether the file does or not
    if match["first"]:
        first, last = int(match["first"]), int(match["last"])
        if not 1 <= first <= last <= len(lines):
            raise ValueError(f"{match['path']} has no lines {first}-{last}")
        return "".join(lines[first - 1:last])
    if not match["region"]:
        return "".join(lines)
    name = match["region"]
    begins = [i for i, l in enumerate(lines) if re.search(rf"docs-begin: {re.escape(name)}\s*$", l)]
    ends = [i for i, l in enumerate(lines) if re.search(rf"docs-end: {re.escape(name)}\s*$", l)]
    if len(begins) != 1 or len(ends) != 1 or ends[0] <= begins[0]:
        raise ValueError(f"{match['path']} has no single region '{name}'")
    region = lines[begins[0] + 1:ends[0]]
    indents = [len(l) - len(l.lstrip(" ")) for l in region if l.strip()]
    cut = min(indents, default=0)
    return "".join(l[cut:] if l.strip() else l.lstrip(" ") for l in region)


def check_page(root, page, update):
    """Problems found in one page; with `update`, stale quotes are rewritten in place."""
    lines = page.read_text(encoding="utf-8").splitlines(keepends=True)
    problems, out, i = [], [], 0
    name = page.relative_to(root)
    while i < len(lines):
        opening = FENCE.match(lines[i].rstrip("\n"))
        if not opening:
            out.append(lines[i])
            i += 1
            continue
        indent = opening["indent"]
        close = next((j for j in range(i + 1, len(lines))
                      if lines[j].rstrip("\n") == indent + opening["fence"]), None)
        if close is None:
            problems.append(f"{name}:{i + 1}: fence is never closed")
            out.extend(lines[i:])
            break
        body = "".join(l[len(indent):] if l.startswith(indent) else l.lstrip(" ")
                       for l in lines[i + 1:close])
        previous = next((l.strip() for l in reversed(lines[:i]) if l.strip()), "")
        marker = MARKER.match(previous)
        new_body = body
        if marker:
            try:
                new_body = quoted_text(root, marker)
            except ValueError as error:
                problems.append(f"{name}:{i + 1}: {error}")
            if new_body != body:
                if not update:
                    problems.append(f"{name}:{i + 1}: differs from {previous[12:-4]}")
        elif opening["info"].lower() in CODE_LANGUAGES:
            problems.append(f"{name}:{i + 1}: code block quotes no file (add a quote marker)")
        out.append(lines[i])
        out.append("".join(indent + l if l.strip() else l
                           for l in new_body.splitlines(keepends=True)))
        out.append(lines[close])
        i = close + 1
    if update:
        page.write_text("".join(out), encoding="utf-8")
    return problems


def main(argv):
    root = pathlib.Path(argv[1]).resolve()
    update = "--update" in argv[2:]
    pages = [root / "README.md", *sorted((root / "docs").glob("*.md"))]
    problems = [p for page in pages for p in check_page(root, page, update)]
    for problem in problems:
        print(problem)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
