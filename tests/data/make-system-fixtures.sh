#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# Regenerates tests/data/system: the binary property lists a Mac keeps in a downloaded
# file's extended attributes (where it came from, when), and a few that no metadata should
# be, for the system metadata tests. Written by Python's plistlib.
# Usage: tests/data/make-system-fixtures.sh
set -euo pipefail
cd "$(dirname "$0")"
rm -rf system
mkdir -p system
python3 - <<'PYTHON'
import datetime
import plistlib

def write(name, value):
    with open("system/" + name, "wb") as out:
        out.write(plistlib.dumps(value, fmt=plistlib.FMT_BINARY))

# The download address, then the page that linked to it, as Safari and Chrome record them.
write("where_froms.bplist",
      ["https://example.com/files/report.pdf", "https://example.com/downloads"])
# A list of one date: 2024-03-05 14:30:15 UTC (plistlib reads naive times as UTC).
write("downloaded_date.bplist", [datetime.datetime(2024, 3, 5, 14, 30, 15)])
# Every kind of value, in a list.
write("every_kind.bplist", [
    "Caf\u00e9 \u2014 \U0001F600",
    -5,
    2**62,
    2.5,
    True,
    b"\x00\x01\x02",
    datetime.datetime(2001, 1, 1),
    ["a", 1],
    {"one": 1, "two": 2},
])
# A dictionary whose key holds a NUL byte.
write("nul_in_key.bplist", {"a\0b": 1})
# Nested twelve lists deep: deeper than any metadata.
deep = "bottom"
for _ in range(12):
    deep = [deep]
write("nested_too_deep.bplist", deep)
PYTHON
# A property list cut short: its offset table and trailer are gone.
head -c 40 system/where_froms.bplist > system/truncated.bplist
ls -l system
