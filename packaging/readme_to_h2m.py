#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
"""Turns one "## Section" of README.md into a help2man include file, so that a manual page
and the README say the same thing from one text.

The section's text before its first "### Heading" is appended to DESCRIPTION (after what
--help says); each "### Heading" becomes a manual page section of that name, in upper case.
A fenced block that opens the section is its synopsis, which the page already has, and is
left out. Only the Markdown the README uses is understood: paragraphs, "- " lists with
indented continuation lines, fenced blocks and inline `code`, **strong**, *emphasis* and
[links](address).

Usage: readme_to_h2m.py README.md "Section title" OUTPUT
"""

import re
import sys


def escape(text: str) -> str:
    """Escapes text for roff: backslashes, and characters outside ASCII by code point so
    that the page reads the same whatever the reader's locale."""
    out = []
    for char in text.replace("\\", "\\e"):
        out.append(char if ord(char) < 128 else "\\[u%04X]" % ord(char))
    return "".join(out)


def literal(text: str) -> str:
    # Hyphens in commands and options are minus signs, so that copied text still runs.
    return escape(text).replace("-", "\\-")


INLINE = re.compile(
    r"`(?P<code>[^`]+)`"
    r"|\*\*(?P<strong>[^*]+)\*\*"
    r"|(?<![\w*])\*(?P<emphasis>[^*\s][^*]*)\*(?![\w*])"
    r"|\[(?P<link>[^\]]+)\]\((?P<address>[^)\s]+)\)"
)


def inline(text: str) -> str:
    out = []
    position = 0
    for match in INLINE.finditer(text):
        out.append(escape(text[position : match.start()]))
        if match.group("code") is not None:
            out.append("\\fB" + literal(match.group("code")) + "\\fR")
        elif match.group("strong") is not None:
            out.append("\\fB" + escape(match.group("strong")) + "\\fR")
        elif match.group("emphasis") is not None:
            out.append("\\fI" + escape(match.group("emphasis")) + "\\fR")
        else:
            out.append(escape(match.group("link")) + " <" + literal(match.group("address")) + ">")
        position = match.end()
    out.append(escape(text[position:]))
    return "".join(out)


def line(text: str) -> str:
    # A line that starts with a control character would be read as a request, and help2man
    # takes one that starts with "[" or "/" for the start of a new include block.
    return "\\&" + text if text[:1] in (".", "'", "[", "/") else text


def section_lines(readme: list[str], title: str) -> list[str]:
    heading = "## " + title
    try:
        start = readme.index(heading) + 1
    except ValueError:
        sys.exit(f"readme_to_h2m: README has no section '{heading}'")
    end = start
    while end < len(readme) and not readme[end].startswith("## "):
        end += 1
    return readme[start:end]


def blocks(lines: list[str]):
    """Yields ("code", lines), ("item", text) and ("paragraph", text) in reading order."""
    i = 0
    while i < len(lines):
        current = lines[i]
        if not current.strip():
            i += 1
        elif current.startswith("```"):
            end = i + 1
            while end < len(lines) and not lines[end].startswith("```"):
                end += 1
            if end == len(lines):
                sys.exit("readme_to_h2m: a fenced block is not closed")
            yield "code", lines[i + 1 : end]
            i = end + 1
        elif current.startswith("- "):
            text = [current[2:].strip()]
            i += 1
            while i < len(lines) and lines[i].startswith("  ") and lines[i].strip():
                text.append(lines[i].strip())
                i += 1
            yield "item", " ".join(text)
        else:
            text = []
            while i < len(lines) and lines[i].strip() and not lines[i].startswith(("```", "- ")):
                text.append(lines[i].strip())
                i += 1
            yield "paragraph", " ".join(text)


def roff(lines: list[str]) -> list[str]:
    out = []
    for kind, content in blocks(lines):
        if kind == "code":
            out += [".PP", ".RS 4", ".nf"] + [line(literal(code)) for code in content]
            out += [".fi", ".RE"]
        elif kind == "item":
            out += [".IP \\(bu 2", line(inline(content))]
        else:
            out += [".PP", line(inline(content))]
    return out


def convert(readme: list[str], title: str) -> str:
    lines = section_lines(readme, title)
    # The synopsis block that opens the section.
    first = next((i for i, text in enumerate(lines) if text.strip()), len(lines))
    if first < len(lines) and lines[first].startswith("```"):
        close = first + 1
        while close < len(lines) and not lines[close].startswith("```"):
            close += 1
        if close == len(lines):
            sys.exit("readme_to_h2m: a fenced block is not closed")
        lines = lines[close + 1 :]

    parts = [[">DESCRIPTION", []]]
    fenced = False
    for text in lines:
        if text.startswith("```"):
            fenced = not fenced
        if not fenced and text.startswith("### "):
            parts.append([text[4:].strip().upper(), []])
        else:
            parts[-1][1].append(text)

    out = []
    for name, body in parts:
        content = roff(body)
        if content:
            out += ["[" + escape(name) + "]"] + content
    return "\n".join(out) + "\n"


def main() -> None:
    if len(sys.argv) != 4:
        sys.exit("usage: readme_to_h2m.py README.md 'Section title' OUTPUT")
    with open(sys.argv[1], encoding="utf-8") as readme:
        text = convert(readme.read().splitlines(), sys.argv[2])
    with open(sys.argv[3], "w", encoding="utf-8") as output:
        output.write(text)


if __name__ == "__main__":
    main()
