#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# What the content detection and the whole-file health checks cost a whole inspection, each
# against the peer tool it stands beside, in the same run:
#  - small files of every checked kind: each inspection under 50 ms with the decoder worker
#    running, as the window keeps it (a lone command-line run also pays the worker's start,
#    shown beside);
#  - a 12-megapixel JPEG: at most 1.2 x one full decode by `vips avg`;
#  - a 1 GiB MP4: every packet demuxed beside the fingerprint, so the inspection takes at
#    most `openssl dgst -sha256` plus `ffprobe` run one after the other;
#  - a ZIP archive and gzip, xz, bzip2 and zstd streams: at most 1.3 x `unzip -tqq` and
#    `gzip -t` (and its kin).
# Every file is read once before timing, so all runs read from the page cache.
# Usage: bench/type_health_bench.sh [BUILD_DIR]   (default build/release; needs hyperfine,
#        vips, ffmpeg, ffprobe, openssl, qpdf, zip, gzip, xz, bzip2, zstd)
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/release}
cli="$(pwd)/$build/src/lumenscribe-cli"
[ -x "$cli" ] || { echo "build $cli first (cmake --preset release && cmake --build --preset release)" >&2; exit 1; }

work=$(mktemp -d "${TMPDIR:-/tmp}/lumenscribe-bench-XXXXXX")
trap 'rm -rf "$work"' EXIT
ff() { ffmpeg -nostdin -loglevel error -y "$@"; }

# Medians of a hyperfine export, by command, as JSON for the summaries below.
medians() {
  python3 - "$1" <<'PY'
import json, sys
print(json.dumps([r["median"] for r in json.load(open(sys.argv[1]))["results"]]))
PY
}
ratio() {  # NAME OURS PEER LIMIT
  python3 -c "import sys; n, o, p, l = sys.argv[1], *map(float, sys.argv[2:]); \
print(f'{n}: lumenscribe-cli {o:.3f} s, peer {p:.3f} s, ratio {o / p:.2f} (limit {l})')" "$@"
}

# The warm-worker program comes from the benchmarks' own optimised build of the engine.
build_release=$build
. bench/engine_build.sh
build_engine_bench warm_inspect
bench_build=$build
build=$build_release

echo "== small files, whole inspection (limit 50 ms each, worker running)"
vips black "$work/small.v" 64 48
vips copy "$work/small.v" "$work/small.png"
qpdf --empty "$work/empty.pdf"
qpdf --empty --pages tests/data/type_health/no_xref_table.pdf -- "$work/small.pdf" 2>/dev/null || true
seq 1 2000 > "$work/small.txt"
(cd "$work" && zip -q small.zip small.txt small.png)
gzip -n -c "$work/small.txt" > "$work/small.gz"
ff -f lavfi -i "sine=duration=3" -c:a libvorbis "$work/small.ogg"
ff -f lavfi -i "sine=duration=3" -c:a libmp3lame "$work/small.mp3"
small=(small.txt small.png small.pdf small.zip small.gz small.ogg small.mp3)
commands=()
for f in "${small[@]}"; do commands+=("$cli $work/$f"); done
hyperfine -N --warmup 3 --runs 30 --export-json "$work/small.json" "${commands[@]}" > /dev/null
"$bench_build/warm_inspect" "${small[@]/#/$work/}" > "$work/warm.txt"
python3 - "$work/small.json" "$work/warm.txt" <<'PY'
import json, sys
cold = {r["command"].split("/")[-1]: r["median"] for r in json.load(open(sys.argv[1]))["results"]}
for line in open(sys.argv[2]):
    path, warm = line.split()
    name = path.split("/")[-1]
    verdict = "ok" if float(warm) < 50 else "OVER"
    print(f"  {name:10} {float(warm):5.1f} ms with the worker running ({verdict}); "
          f"lumenscribe-cli alone {cold[name] * 1000:5.1f} ms")
PY

echo "== 12-megapixel JPEG (limit 1.2 x vips avg)"
bench/make_photo.sh "$work/photo-12mp.jpg"
cat "$work/photo-12mp.jpg" > /dev/null
hyperfine -N --warmup 2 --runs 10 --export-json "$work/jpeg.json" \
  "vips avg $work/photo-12mp.jpg" "$cli $work/photo-12mp.jpg" > /dev/null
read -r vips ours < <(medians "$work/jpeg.json" | python3 -c "import json,sys; print(*json.load(sys.stdin))")
ratio "12 MP JPEG vs vips avg" "$ours" "$vips" 1.2

echo "== 1 GiB MP4 (limit: openssl dgst -sha256 + ffprobe, one after the other)"
ff -f lavfi -i "testsrc2=size=1280x720:rate=30" -f lavfi -i "sine=frequency=440" -t 10 \
  -c:v libx264 -preset ultrafast -qp 8 -c:a aac "$work/clip.mp4"
ff -stream_loop 200 -i "$work/clip.mp4" -c copy -fs 1073741824 "$work/movie.mp4"
rm "$work/clip.mp4"
cat "$work/movie.mp4" > /dev/null
ls -l "$work/movie.mp4" | awk '{print "  " $5 " bytes"}'
hyperfine -N --warmup 1 --runs 5 --export-json "$work/movie.json" \
  "openssl dgst -sha256 $work/movie.mp4" "ffprobe -v error $work/movie.mp4" \
  "ffprobe -v error -count_packets -show_entries stream=nb_read_packets $work/movie.mp4" \
  "$cli $work/movie.mp4" > /dev/null
read -r sha probe count ours < <(medians "$work/movie.json" | python3 -c "import json,sys; print(*json.load(sys.stdin))")
python3 -c "import sys; s, p, c, o = map(float, sys.argv[1:]); \
print(f'  openssl {s:.3f} s, ffprobe {p:.3f} s, ffprobe reading every packet {c:.3f} s'); \
print(f'1 GiB MP4: lumenscribe-cli {o:.3f} s, ratio {o / (s + p):.2f} to openssl + ffprobe (limit 1.0), ' \
      f'{o / (s + c):.2f} to openssl + ffprobe reading every packet')" "$sha" "$probe" "$count" "$ours"
rm "$work/movie.mp4"

echo "== ZIP archive (limit 1.3 x unzip -tqq)"
seq 1 3000000 > "$work/numbers.txt"
(cd "$work" && zip -q archive.zip photo-12mp.jpg numbers.txt)
cat "$work/archive.zip" > /dev/null
hyperfine -N --warmup 2 --runs 10 --export-json "$work/zip.json" \
  "/usr/bin/unzip -tqq $work/archive.zip" "$cli $work/archive.zip" > /dev/null
read -r unzip ours < <(medians "$work/zip.json" | python3 -c "import json,sys; print(*json.load(sys.stdin))")
ratio "$(du -h "$work/archive.zip" | cut -f1) ZIP vs unzip -tqq" "$ours" "$unzip" 1.3

echo "== compressed streams (limit 1.3 x the format's own test)"
seq 1 20000000 > "$work/lines.txt"
gzip -n -6 -c "$work/lines.txt" > "$work/lines.gz"
xz -T2 -6 -c "$work/lines.txt" > "$work/lines.xz"
bzip2 -9 -c "$work/lines.txt" > "$work/lines.bz2"
zstd -q -T2 -19 -c "$work/lines.txt" > "$work/lines.zst"
for pair in "gzip -t:lines.gz" "xz -t:lines.xz" "bzip2 -t:lines.bz2" "zstd -q -t:lines.zst"; do
  tool=${pair%%:*}
  file=$work/${pair##*:}
  cat "$file" > /dev/null
  hyperfine -N --warmup 1 --runs 7 --export-json "$work/stream.json" \
    "$tool $file" "$cli $file" > /dev/null
  read -r peer ours < <(medians "$work/stream.json" | python3 -c "import json,sys; print(*json.load(sys.stdin))")
  ratio "$(du -h "$file" | cut -f1) ${file##*.} vs $tool" "$ours" "$peer" 1.3
done
