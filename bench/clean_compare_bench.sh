#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# The clean copy and the comparison against their peers, in the same run:
#  - the pixel-safe copy of a 12-megapixel JPEG full of metadata against a decode and
#    re-encode of it (`vips copy in.jpg out.jpg[Q=100]`); limit 1/5 of its time. Timed on a
#    warm worker, as the window has one, and as a whole `lumenscribe-cli clean` process, which
#    also starts its workers and checks the copy (both pictures decoded and hashed);
#  - `lumenscribe-cli compare` on two 1 GiB files that differ in their last byte against
#    `cmp` on them; limit: no slower (both read every byte; the two fingerprints run on a
#    thread each).
# Builds its own optimised copy of the engine in build/engine-bench.
# Usage: bench/clean_compare_bench.sh   (needs cmake, ninja, vips, exiftool, hyperfine, python3)
set -euo pipefail
cd "$(dirname "$0")/.."
. bench/engine_build.sh
build_engine_bench clean_copy_timing lumenscribe-cli
timing="$build/clean_copy_timing"
cli="$build/lumenscribe/src/lumenscribe-cli"

work=$(mktemp -d "${TMPDIR:-/tmp}/lumenscribe-clean-bench-XXXXXX")
trap 'rm -rf "$work"' EXIT

ratio() {  # hyperfine's JSON, the limit: the second command's median over the first's
  python3 - "$1" "$2" <<'PY'
import json, sys
peer, ours = json.load(open(sys.argv[1]))["results"]
p, o = peer["median"] * 1000, ours["median"] * 1000
pc, oc = ((r["user"] + r["system"]) * 1000 for r in (peer, ours))
print(f"{peer['command'].split()[0]}: median {p:8.1f} ms ({pc:.0f} ms processor)")
print(f"{ours['command'].split()[0]}: median {o:8.1f} ms ({oc:.0f} ms processor), "
      f"ratio {o / p:.3f} (limit {sys.argv[2]})")
PY
}

echo "== pixel-safe copy of a 12-megapixel JPEG"
bench/make_photo.sh "$work/photo.jpg"
exiftool -q -overwrite_original -Make=Bench -Model=Camera -Artist=Someone -Orientation=6 -n \
  -GPSLatitude=51.5 -GPSLatitudeRef=N -GPSLongitude=0.12 -GPSLongitudeRef=W \
  -XMP-dc:Creator=Someone -Comment="on the bridge" "$work/photo.jpg"
stat -c "%s bytes" "$work/photo.jpg"
cat "$work/photo.jpg" > /dev/null
warm=$("$timing" "$work/photo.jpg" "$work/warm-copy.jpg" 15)
echo "warm worker: $warm"
hyperfine -N --warmup 1 --runs 10 --export-json "$work/reencode.json" \
  "vips copy $work/photo.jpg $work/reencoded.jpg[Q=100]" > /dev/null
python3 - "$work/reencode.json" "$warm" <<'PY'
import json, re, sys
vips = json.load(open(sys.argv[1]))["results"][0]["median"] * 1000
copy, check, whole = map(float, re.findall(r"([0-9.]+) ms", sys.argv[2]))
print(f"vips copy [Q=100] (decode + re-encode): median {vips:8.1f} ms")
print(f"pixel-safe copy, warm worker:            median {copy:8.1f} ms, ratio {copy / vips:.3f} (limit 0.2)")
print(f"its check (both pictures decoded):       median {check:8.1f} ms")
PY
hyperfine -N --warmup 1 --runs 10 --export-json "$work/clean.json" \
  "vips copy $work/photo.jpg $work/reencoded.jpg[Q=100]" \
  "$cli clean -o $work/cli-copy.jpg $work/photo.jpg" > /dev/null
echo "whole process, copy and check:"
ratio "$work/clean.json" "none: the check decodes twice"

echo "== comparing two 1 GiB files that differ in their last byte"
head -c $((1024 * 1024 * 1024 - 1)) /dev/urandom > "$work/first.bin"
cp "$work/first.bin" "$work/second.bin"
printf 'a' >> "$work/first.bin"
printf 'b' >> "$work/second.bin"
cat "$work/first.bin" "$work/second.bin" > /dev/null  # both in the page cache
hyperfine -N -i --warmup 1 --runs 7 --export-json "$work/compare.json" \
  "cmp $work/first.bin $work/second.bin" \
  "$cli compare $work/first.bin $work/second.bin" > /dev/null
ratio "$work/compare.json" 1.0
# What two SHA-256 fingerprints cost at the least: OpenSSL on each file, one after the other.
hyperfine -N -i --warmup 1 --runs 7 --export-json "$work/sha.json" \
  "cmp $work/first.bin $work/second.bin" \
  "openssl dgst -sha256 $work/first.bin $work/second.bin" > /dev/null
ratio "$work/sha.json" "none: the floor of two fingerprints, hashed one after the other"
