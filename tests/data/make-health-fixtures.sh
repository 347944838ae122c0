#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# Regenerates tests/data/health: small real files, intact and damaged, for the type and
# health tests. Needs vips (libvips-tools), netpbm, zip and qpdf.
# Usage: tests/data/make-health-fixtures.sh
set -euo pipefail
cd "$(dirname "$0")"
out=health
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

# A zone plate has detail everywhere, so damage anywhere in the scan shows.
vips zone "$work/zone.v" 128 96
vips linear "$work/zone.v" "$work/gray.v" 127 128 --uchar
vips bandjoin_const "$work/gray.v" "$work/rgb.v" "64 200"

# JPEG: intact, cut at half and at 95%, and with 64 bytes of its scan data set to 0xFF.
vips copy "$work/rgb.v" "$out/intact.jpg[Q=85,strip]"
jpeg_size=$(size "$out/intact.jpg")
head -c $((jpeg_size / 2)) "$out/intact.jpg" > "$out/truncated_at_50_percent.jpg"
head -c $((jpeg_size * 95 / 100)) "$out/intact.jpg" > "$out/truncated_at_95_percent.jpg"
cp "$out/intact.jpg" "$out/scan_data_overwritten.jpg"
overwrite "$out/scan_data_overwritten.jpg" $((jpeg_size / 2)) 64 377
# Cut inside its header: not even the dimensions can be read.
head -c 300 "$out/intact.jpg" > "$out/truncated_in_header.jpg"

# PNG: intact, cut at 60%, and with the CRC of its only IDAT chunk zeroed (the last 12
# bytes are the IEND chunk, the 4 before them that CRC).
vips copy "$work/rgb.v" "$out/intact.png[compression=9]"
png_size=$(size "$out/intact.png")
head -c $((png_size * 60 / 100)) "$out/intact.png" > "$out/cut_short.png"
cp "$out/intact.png" "$out/broken_idat_crc.png"
overwrite "$out/broken_idat_crc.png" $((png_size - 16)) 4 000

# A BMP: an image format that no loader we allow decodes.
vips copy "$work/gray.v" "$work/gray.pgm"
ppmtobmp "$work/gray.pgm" > "$out/unsupported.bmp" 2>/dev/null

# WebP whose RIFF size field promises more than the file holds.
vips copy "$work/rgb.v" "$work/intact.webp[Q=80]"
webp_size=$(size "$work/intact.webp")
head -c $((webp_size * 80 / 100)) "$work/intact.webp" > "$out/truncated.webp"

# Names that lie, and an empty image.
printf 'This is a plain text note, not a photograph.\n' > "$out/photo.jpg"
: > "$out/empty.jpg"
cp "$out/intact.png" "$out/notes.txt"
printf 'Just some words in a file that claims to be an archive.\n' > "$out/archive.zip"

# ZIP: intact, password-protected, truncated, and one named as a PDF.
printf 'first entry\n' > "$work/first.txt"
seq 1 3000 > "$work/numbers.txt"
(cd "$work" && zip -q -X intact.zip first.txt numbers.txt &&
  zip -q -X -P secret password.zip first.txt numbers.txt)
cp "$work/intact.zip" "$out/intact.zip"
cp "$work/password.zip" "$out/password_protected.zip"
zip_size=$(size "$out/intact.zip")
head -c $((zip_size * 70 / 100)) "$out/intact.zip" > "$out/truncated.zip"
cp "$out/intact.zip" "$out/report.pdf"

# PDF: qpdf rebuilds the cross-reference table of a one-page document written out here,
# then makes the three-page, empty and encrypted variants.
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
qpdf "$work/source.pdf" "$out/one_page.pdf" 2>/dev/null || [ $? -eq 3 ]
qpdf --empty --pages "$out/one_page.pdf" "$out/one_page.pdf" "$out/one_page.pdf" -- \
  "$out/three_pages.pdf"
qpdf --empty "$out/zero_pages.pdf"
qpdf --encrypt user-secret owner-secret 256 -- "$out/one_page.pdf" \
  "$out/encrypted_user_password.pdf"
qpdf --encrypt "" owner-secret 256 -- "$out/one_page.pdf" "$out/encrypted_owner_password_only.pdf"
printf 'Not a PDF at all, whatever the name says.\n' > "$out/not_a_pdf.pdf"

ls -l "$out"
