#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# Whole-inspection cost of a large file against `openssl dgst -sha256` in the same run, the
# CLI's peak memory on a 4 GiB file, and start-up cost on a small file.
# Usage: bench/fingerprint_bench.sh [BUILD_DIR]   (default build/release; needs hyperfine)
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/release}
cli="$build/src/lumenscribe-cli"
[ -x "$cli" ] || { echo "build $cli first (cmake --preset release && cmake --build --preset release)" >&2; exit 1; }

work=$(mktemp -d "${TMPDIR:-/tmp}/lumenscribe-bench-XXXXXX")
trap 'rm -rf "$work"' EXIT

# Random bytes: no glob or magic rule claims them, so only the fingerprint reads the file.
head -c $((1024 * 1024 * 1024)) /dev/urandom > "$work/one-gib.bin"
cat "$work/one-gib.bin" > /dev/null  # into the page cache
printf 'a small text file\n' > "$work/small.txt"

echo "== 1 GiB file in the page cache"
hyperfine -N --warmup 1 --runs 7 --export-json "$work/big.json" \
  "openssl dgst -sha256 $work/one-gib.bin" "$cli $work/one-gib.bin"
python3 - "$work/big.json" <<'PY'
import json, sys
runs = json.load(open(sys.argv[1]))["results"]
openssl, ours = (r["median"] for r in runs)
print(f"median openssl {openssl:.3f} s, lumenscribe-cli {ours:.3f} s, ratio {ours / openssl:.2f} (limit 1.10)")
PY

echo "== peak memory while hashing 4 GiB"
rm -f "$work/one-gib.bin"
truncate -s 4G "$work/four-gib.bin"  # sparse: reads cost no disk
/usr/bin/time -f "peak RSS %M KiB (limit 65536 KiB), %e s" "$cli" "$work/four-gib.bin" > /dev/null

echo "== small file, whole process"
hyperfine -N --warmup 5 --runs 50 "$cli $work/small.txt"
