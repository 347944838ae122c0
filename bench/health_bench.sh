#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# The health check against the peer tools it stands beside, in the same run:
#  - a 12-megapixel JPEG: our image check against one full decode by `vips avg` (limit 1.2);
#  - a ZIP archive: our ZIP check, less the program's start-up, against `unzip -tqq` alone
#    (limit 1.3).
# Builds its own optimised copy of the engine in build/engine-bench. The check runs as it does
# in an inspection: the image is decoded by the decoder worker, which the program starts.
# Usage: bench/health_bench.sh   (needs cmake, ninja, vips, zip, hyperfine)
set -euo pipefail
cd "$(dirname "$0")/.."
. bench/engine_build.sh
build_engine_bench health_check
check="$build/health_check"

work=$(mktemp -d "${TMPDIR:-/tmp}/lumenscribe-health-bench-XXXXXX")
trap 'rm -rf "$work"' EXIT

# A 12-megapixel photo and an archive that holds it.
bench/make_photo.sh "$work/photo-12mp.jpg"
seq 1 2000000 > "$work/numbers.txt"
(cd "$work" && zip -q archive.zip photo-12mp.jpg numbers.txt)
cat "$work/photo-12mp.jpg" "$work/archive.zip" > /dev/null  # into the page cache
ls -l "$work/photo-12mp.jpg" "$work/archive.zip" | awk '{print $5, $9}'
"$check" "$work/photo-12mp.jpg"
"$check" "$work/archive.zip"

ratio() {
  python3 - "$1" "$2" <<'PY'
import json, sys
runs = json.load(open(sys.argv[1]))["results"]
peer, ours = (r["median"] for r in runs)
print(f"median {runs[0]['command'].split()[0]} {peer:.3f} s, health check {ours:.3f} s, "
      f"ratio {ours / peer:.2f} ({sys.argv[2]})")
PY
}

echo "== 12-megapixel JPEG"
hyperfine -N --warmup 2 --runs 15 --export-json "$work/jpeg.json" \
  "vips avg $work/photo-12mp.jpg" "$check $work/photo-12mp.jpg"
ratio "$work/jpeg.json" "limit 1.2"

echo "== ZIP archive (and the program's own start-up, on a one-line text file)"
printf 'one line\n' > "$work/small.txt"
hyperfine -N --warmup 2 --runs 15 --export-json "$work/zip.json" \
  "/usr/bin/unzip -tqq $work/archive.zip" "$check $work/archive.zip" "$check $work/small.txt"
python3 - "$work/zip.json" <<'PY'
import json, sys
unzip, ours, start = (r["median"] for r in json.load(open(sys.argv[1]))["results"])
print(f"median unzip {unzip:.3f} s, ZIP check {ours:.3f} s, start-up {start:.3f} s; "
      f"ZIP check less start-up / unzip = {(ours - start) / unzip:.2f} (limit 1.3)")
PY
