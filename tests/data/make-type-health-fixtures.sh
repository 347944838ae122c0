#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# Regenerates tests/data/type_health: renamed, disguised, damaged and text-based files for
# the content detection, mismatch and health tests, each made by the tool that makes such
# files. Needs vips (libvips-tools), ImageMagick, openssl, ssh-keygen, zip, 7z (p7zip-full),
# qpdf, gzip, xz, bzip2, zstd and ffmpeg.
# Usage: tests/data/make-type-health-fixtures.sh
set -euo pipefail
cd "$(dirname "$0")"
out=type_health
rm -rf "$out"
mkdir -p "$out"
work=$(mktemp -d "${TMPDIR:-/tmp}/lumenscribe-fixtures-XXXXXX")
trap 'rm -rf "$work"' EXIT

size() { stat -c %s "$1"; }
# Overwrites `count` bytes at `offset` with `byte` (octal), keeping the length.
overwrite() {
  local file=$1 offset=$2 count=$3 byte=$4
  head -c "$count" /dev/zero | tr '\0' "\\$byte" |
    dd of="$file" bs=1 seek="$offset" conv=notrunc status=none
}
# The first `percent` of a file.
cut_to() { head -c $(($(size "$1") * $2 / 100)) "$1" > "$3"; }

# ---- Pictures --------------------------------------------------------------------------
vips zone "$work/zone.v" 64 48
vips linear "$work/zone.v" "$work/gray.v" 127 128 --uchar
vips bandjoin_const "$work/gray.v" "$work/rgb.v" "64 200"
vips copy "$work/rgb.v" "$work/photo.jpg[Q=80,strip]"
vips copy "$work/rgb.v" "$work/picture.png[compression=9]"
# An iPhone photo and its AV1 cousin.
vips copy "$work/rgb.v" "$out/photo.heic[Q=50,compression=hevc,strip]"
vips copy "$work/rgb.v" "$out/photo.avif[Q=50,compression=av1,strip]"
cp "$work/photo.jpg" "$out/jpeg_named.png"
cut_to "$work/picture.png" 60 "$out/truncated_png_named.txt"
# Text-based pictures, and pictures whose loaders the decoder blocks.
convert-im6.q16 -size 16x8 pattern:checkerboard "$out/checkers.xbm"
convert-im6.q16 -size 16x8 pattern:checkerboard "$out/checkers.xpm"
convert-im6.q16 -size 4x3 xc:teal -compress none "$out/teal_ascii.ppm"
convert-im6.q16 -size 8x8 xc:orange "$out/orange.sgi"
printf '<svg xmlns="http://www.w3.org/2000/svg" width="8" height="8"><rect width="8" height="8"/></svg>\n' |
  gzip -n -9 > "$out/square.svgz"

# ---- Text that other types are written in ----------------------------------------------
openssl req -x509 -newkey rsa:1024 -nodes -keyout /dev/null -subj /CN=lumenscribe.test \
  -days 1 -out "$out/certificate.crt" 2>/dev/null
cp "$out/certificate.crt" "$out/certificate.pem"
ssh-keygen -q -t ed25519 -N '' -C fixture@lumenscribe.test -f "$work/id_ed25519"
cp "$work/id_ed25519.pub" "$out/id_ed25519.pub"
cat > "$out/metrics.afm" <<'AFM'
StartFontMetrics 2.0
Comment Font metrics of a made-up face, enough to be read as AFM
FontName Lumenscribe-Test
FullName Lumenscribe Test
FamilyName Lumenscribe
Weight Medium
ItalicAngle 0
IsFixedPitch false
FontBBox -10 -200 1000 900
StartCharMetrics 2
C 32 ; WX 250 ; N space ; B 0 0 0 0 ;
C 65 ; WX 667 ; N A ; B 10 0 657 700 ;
EndCharMetrics
EndFontMetrics
AFM

# ---- Programs in disguise --------------------------------------------------------------
cp /bin/true "$out/program_named.txt"
cp /bin/true "$out/program_named.png"
chmod 644 "$out/program_named.txt" "$out/program_named.png"
printf '#!/bin/sh\necho "run me"\n' > "$out/script_executable.txt"
chmod 755 "$out/script_executable.txt"
printf '#!/bin/sh\necho "read me"\n' > "$out/script_not_executable.txt"
chmod 644 "$out/script_not_executable.txt"

# ---- PDFs: renamed, with bytes before the header, a broken table, a page-tree loop -----
cat > "$work/source.pdf" <<'PDF'
%PDF-1.4
1 0 obj << /Type /Catalog /Pages 2 0 R >> endobj
2 0 obj << /Type /Pages /Kids [3 0 R] /Count 1 >> endobj
3 0 obj << /Type /Page /Parent 2 0 R /MediaBox [0 0 300 200] /Contents 4 0 R /Resources << /Font << /F1 5 0 R >> >> >> endobj
4 0 obj << /Length 42 >> stream
BT /F1 24 Tf 40 90 Td (Lumenscribe) Tj ET
endstream endobj
5 0 obj << /Type /Font /Subtype /Type1 /BaseFont /Helvetica >> endobj
trailer << /Root 1 0 R /Size 6 >>
%%EOF
PDF
# qpdf exits 3 when it succeeded with warnings, as it does for the missing table.
qpdf "$work/source.pdf" "$work/intact.pdf" 2>/dev/null || [ $? -eq 3 ]
cp "$work/intact.pdf" "$out/pdf_named.jpg"
{ printf '\n \n'; cat "$work/intact.pdf"; } > "$out/blank_before_header.pdf"
# Readers rebuild a missing cross-reference table: qpdf warns, nothing is lost.
cp "$work/source.pdf" "$out/no_xref_table.pdf"
# A header without its dash: qpdf only warns, poppler reports an error.
sed 's/^%PDF-1.4/%PDF1.4/' "$work/source.pdf" > "$out/header_without_dash.pdf"
# A page tree whose node lists itself as its own kid: qpdf stops with an error.
sed 's|/Kids \[3 0 R\]|/Kids [3 0 R 2 0 R]|; s|/Count 1|/Count 2|' "$work/source.pdf" > "$work/loop.pdf"
qpdf "$work/loop.pdf" "$out/page_tree_loop.pdf" 2>/dev/null || true
[ -s "$out/page_tree_loop.pdf" ] || cp "$work/loop.pdf" "$out/page_tree_loop.pdf"

# ---- ZIP and the formats built on it -----------------------------------------------------
printf 'first entry\n' > "$work/first.txt"
seq 1 3000 > "$work/numbers.txt"
(cd "$work" && zip -q -X archive.zip first.txt numbers.txt)
for ext in jar docx apk epub; do cut_to "$work/archive.zip" 70 "$out/truncated.$ext"; done
cp "$work/archive.zip" "$out/archive_named.docx"
# Bytes before the archive, as a self-extractor's stub or a download wrapper leaves them.
{ for _ in 1 2 3 4 5 6 7 8; do printf 'STUB\0\0\0\0'; done; cat "$work/archive.zip"; } \
  > "$out/prepended_bytes.zip"
(cd "$work" && cp archive.zip emptied.zip && zip -q -d emptied.zip first.txt numbers.txt)
cp "$work/emptied.zip" "$out/empty.zip"
(cd "$work" && 7z a -tzip -mem=AES256 -psecret aes.zip first.txt > /dev/null)
cp "$work/aes.zip" "$out/aes_encrypted.zip"
cp "$work/archive.zip" "$out/zip_named.txt"

# ---- Compressed streams -----------------------------------------------------------------
seq 1 4000 > "$work/lines.txt"
gzip -n -9 -c "$work/lines.txt" > "$out/intact.gz"
cp "$out/intact.gz" "$out/gzip_named.txt"
cut_to "$out/intact.gz" 60 "$out/truncated.gz"
cp "$out/intact.gz" "$out/bad_checksum.gz"
# The CRC-32 is the trailer's first four bytes.
overwrite "$out/bad_checksum.gz" $(($(size "$out/intact.gz") - 8)) 4 000
{ cat "$out/intact.gz"; head -c 512 /dev/zero; } > "$out/trailing_zeros.gz"
{ gzip -n -c "$work/first.txt"; gzip -n -c "$work/first.txt"; } > "$out/two_members.gz"
xz -9 -c "$work/lines.txt" > "$out/intact.xz"
cut_to "$out/intact.xz" 50 "$out/truncated.xz"
bzip2 -9 -c "$work/lines.txt" > "$out/intact.bz2"
cp "$out/intact.bz2" "$out/corrupt.bz2"
overwrite "$out/corrupt.bz2" $(($(size "$out/intact.bz2") / 2)) 8 125
zstd -q -19 -c "$work/lines.txt" > "$out/intact.zst"
cut_to "$out/intact.zst" 50 "$out/truncated.zst"

# ---- Audio and video --------------------------------------------------------------------
ff() { ffmpeg -nostdin -loglevel error -y "$@"; }
ff -f lavfi -i "sine=frequency=440:duration=2" -c:a libvorbis -q:a 2 "$out/tone.ogg"
cp "$out/tone.ogg" "$out/bad_page_checksum.ogg"
overwrite "$out/bad_page_checksum.ogg" $(($(size "$out/tone.ogg") * 2 / 3)) 16 125
ff -f lavfi -i "sine=frequency=440:duration=1" -c:a flac "$out/tone.flac"
ff -f lavfi -i "sine=frequency=440:duration=1" -c:a libmp3lame -b:a 64k "$out/tone.mp3"
# An .m4a written with the generic ISO brand (as most encoders but iTunes write them).
ff -f lavfi -i "sine=frequency=440:duration=1" -c:a aac -b:a 64k -f mp4 "$out/generic_brand.m4a"
ff -f lavfi -i "testsrc=duration=1:size=96x64:rate=10" -c:v libx264 -preset ultrafast \
  -pix_fmt yuv420p -movflags +faststart "$work/clip.mp4"
cp "$work/clip.mp4" "$out/clip.mp4"
cut_to "$work/clip.mp4" 60 "$out/truncated.mp4"

ls -l "$out"
