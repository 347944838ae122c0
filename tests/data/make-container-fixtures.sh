#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# Regenerates tests/data/containers: small real ZIP archives for the ZIP inventory tests.
# Needs zip (with bzip2 support: Debian's has it) and zipnote.
# Usage: tests/data/make-container-fixtures.sh
set -euo pipefail
cd "$(dirname "$0")"
out=$PWD/containers
rm -rf "$out"
mkdir -p "$out"
work=$(mktemp -d "${TMPDIR:-/tmp}/lumenscribe-fixtures-XXXXXX")
trap 'rm -rf "$work"' EXIT
export TZ=UTC

# Entries that each test one rule: a folder and its file, hidden ones, an executable and a
# nested archive by extension, a name holding "files", names with blanks, double
# extensions and an explicit term.
tree=$work/tree
mkdir -p "$tree/docs" "$tree/photos" "$tree/__MACOSX" "$tree/tools" "$tree/myfiles" \
  "$tree/project/.git"
printf 'read me\n' > "$tree/docs/readme.txt"
printf 'jpeg-ish\n' > "$tree/photos/.hidden.jpg"
printf 'fork\n' > "$tree/__MACOSX/._photo.jpg"
printf 'MZ\n' > "$tree/tools/setup.exe"
printf 'a\n' > "$tree/myfiles/a.txt"
printf '[core]\n' > "$tree/project/.git/config"
printf 'photo\n' > "$tree/My Photo 1.jpg"
printf 'blank\n' > "$tree/  two leading blanks.txt"
printf 'tar\n' > "$tree/archive.tar.gz"
printf 'map\n' > "$tree/Essex map.pdf"
find "$tree" -exec touch -d '2024-05-01 12:00:00' {} +
(cd "$tree" && zip -q -X "$out/listing.zip" docs/ docs/readme.txt photos/.hidden.jpg \
  __MACOSX/._photo.jpg project/.git/config tools/setup.exe myfiles/a.txt "My Photo 1.jpg" \
  "  two leading blanks.txt" archive.tar.gz "Essex map.pdf")

# An archive without entries: only the end of central directory record.
printf 'PK\005\006\000\000\000\000\000\000\000\000\000\000\000\000\000\000\000\000\000\000' \
  > "$out/empty.zip"

# Plain text under the zip extension.
printf 'This is a note, not an archive.\n' > "$out/not_an_archive.zip"

# A real archive whose central directory headers lost their signatures.
printf 'kept\n' > "$work/kept.txt"
touch -d '2024-05-01 12:00:00' "$work/kept.txt"
(cd "$work" && zip -q -X "$out/damaged_central_directory.zip" kept.txt)
python3 - "$out/damaged_central_directory.zip" <<'PY'
import sys
path = sys.argv[1]
data = open(path, "rb").read().replace(b"PK\x01\x02", b"XX\x01\x02")
open(path, "wb").write(data)
PY

# 1 GiB of zeros in about a kilobyte (bzip2): listing it must extract nothing.
head -c 1073741824 /dev/zero | zip -q -X -Z bzip2 "$out/zeros_1gib_bzip2.zip" -
printf '@ -\n@=zeros.bin\n' | zipnote -w "$out/zeros_1gib_bzip2.zip"

# A name that is not UTF-8 (Latin-1 "café"): unzip lists its byte as it is.
mkdir -p "$work/latin1"
printf 'x\n' > "$work/latin1/caf"$'\xe9'".txt"
touch -d '2024-05-01 12:00:00' "$work/latin1/caf"$'\xe9'".txt"
(cd "$work/latin1" && zip -q -X "$out/latin1_name.zip" ./*)
