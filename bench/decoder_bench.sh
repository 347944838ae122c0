#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# What running the decoders in a confined worker costs: starting a worker (spawn, libraries,
# confinement, hello) and one request's round trip with the item's descriptor passed across.
# For scale, the same run times `vips avg` on a tiny image (one libvips start and decode).
# Usage: bench/decoder_bench.sh   (needs cmake, ninja, vips, hyperfine)
set -euo pipefail
cd "$(dirname "$0")/.."
. bench/engine_build.sh
build_engine_bench decoder_round_trip

work=$(mktemp -d "${TMPDIR:-/tmp}/lumenscribe-decoder-bench-XXXXXX")
trap 'rm -rf "$work"' EXIT
printf 'no loader takes this\n' > "$work/plain.txt"
vips black "$work/tiny.png" 8 8

"$build/decoder_round_trip" "$work/plain.txt" 2000
hyperfine -N --warmup 3 --runs 30 "vips avg $work/tiny.png" 2>/dev/null | grep -E "Time|vips"
