#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# The container inventories against the peer tools they stand beside, in the same run:
#  - a folder of 200,000 files in 2,000 folders: our walk against
#    `find DIR -printf '%s\n'` (limit 1.5), and its peak memory against a tree a tenth the
#    size (it must not grow with the number of entries);
#  - a ZIP archive of 100,000 entries: our inventory against `unzip -l` alone (limit 1.3).
# Builds its own optimised copy of the engine in build/containers-bench.
# Usage: bench/containers_bench.sh   (needs cmake, ninja, zip, unzip, hyperfine, GNU time)
set -euo pipefail
cd "$(dirname "$0")/.."
. bench/engine_build.sh
build_engine_bench container_inventory
inventory=$PWD/$build/container_inventory

work=$(mktemp -d "${TMPDIR:-/tmp}/lumenscribe-containers-bench-XXXXXX")
trap 'rm -rf "$work"' EXIT

# FOLDERS folders of 100 small files each, under ten top-level folders, with the mix of
# extensions, hidden files and double extensions that a home folder has.
make_tree() {
  python3 - "$1" "$2" <<'PY'
import os, sys
root, folders = sys.argv[1], int(sys.argv[2])
names = ["IMG_{:04d}.JPG", "note-{}.txt", "clip{}.mov", "song {}.mp3", "report.{}.pdf",
         ".cache-{}", "script{}.sh", "data{}.tar.gz", "README{}", "page{}.html"]
for f in range(folders):
    folder = os.path.join(root, f"top{f % 10}", f"folder {f:04d}")
    os.makedirs(folder, exist_ok=True)
    for i in range(100):
        with open(os.path.join(folder, names[i % len(names)].format(i)), "wb") as out:
            out.write(b"x" * (i % 7))
PY
}
make_tree "$work/tree" 2000
make_tree "$work/small-tree" 200
# 100,000 entries: half the big tree, stored as it is.
(cd "$work/tree" && zip -q -r -0 "$work/entries-100k.zip" top0 top1 top2 top3 top4)
find "$work/tree" -printf '%s\n' | wc -l | xargs echo "entries in the tree (the tree itself too):"
"$inventory" folder "$work/tree"
unzip -l "$work/entries-100k.zip" | tail -1
"$inventory" zip "$work/entries-100k.zip"

medians() {
  python3 - "$@" <<'PY'
import json, sys
runs = json.load(open(sys.argv[1]))["results"]
print(" ".join(f"{r['median']:.4f}" for r in runs))
PY
}

echo "== folder walk: 200,000 files in 2,000 folders"
hyperfine -N --warmup 2 --runs 15 --export-json "$work/folder.json" \
  "find $work/tree -printf %s\\n" "$inventory folder $work/tree" "$inventory open $work/tree"
read -r find ours start < <(medians "$work/folder.json")
python3 -c "f,o,s=$find,$ours,$start; print(f'median find {f:.3f} s, folder inventory {o:.3f} s '
  f'(start-up {s:.3f} s); ratio {o/f:.2f}, less start-up {(o-s)/f:.2f} (limit 1.5)')"

echo "== peak memory of the walk (kB): a tenth of the tree, then all of it"
small=$(/usr/bin/time -f %M "$inventory" folder "$work/small-tree" 2>&1 >/dev/null)
large=$(/usr/bin/time -f %M "$inventory" folder "$work/tree" 2>&1 >/dev/null)
echo "20,000 files: $small kB; 200,000 files: $large kB"

echo "== ZIP inventory: 100,000 entries"
hyperfine -N --warmup 2 --runs 15 --export-json "$work/zip.json" \
  "/usr/bin/unzip -l $work/entries-100k.zip" "$inventory zip $work/entries-100k.zip" \
  "$inventory open $work/entries-100k.zip"
read -r unzip ours start < <(medians "$work/zip.json")
python3 -c "u,o,s=$unzip,$ours,$start; print(f'median unzip -l {u:.3f} s, ZIP inventory {o:.3f} s '
  f'(start-up {s:.3f} s); ratio {o/u:.2f}, less start-up {(o-s)/u:.2f} (limit 1.3)')"
