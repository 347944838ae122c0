#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
# Regenerates tests/data/text and tests/data/pdf: small real files for the text and PDF
# analyses, their counts hand-checked in the tests. Needs iconv and qpdf.
# Usage: tests/data/make-text-pdf-fixtures.sh
set -euo pipefail
export LC_ALL=C  # byte lengths, byte-exact printf
cd "$(dirname "$0")"
work=$(mktemp -d "${TMPDIR:-/tmp}/lumenscribe-fixtures-XXXXXX")
trap 'rm -rf "$work"' EXIT

# ---- Text ---------------------------------------------------------------------------------
out=text
rm -rf "$out"
mkdir -p "$out"

# Contact data, counted by hand: 3 e-mail addresses (one in capitals), 2 web links (an
# HTTPS:// in capitals is not one), 2 IPv4 addresses (10.0.0.256 is not one), 3 phone-like
# numbers. Also 9 lines (the last one empty), 3 of them blank, and 43 words.
cat > "$out/contacts.log" <<'TEXT'
2026-05-18 09:14:02 login ok user=ann.lee@example.org from 192.168.1.10
2026-05-18 09:15:40 mail sent to BOB@EXAMPLE.COM and carol+news@mail.example.co.uk

2026-05-18 09:16:11 fetch https://example.org/status?id=42 ok; HTTPS://EXAMPLE.ORG skipped
2026-05-18 09:17:55 probe from 10.0.0.256 refused, retry via http://10.0.0.1:8080/health
   	
support line (555) 123-4567, fax 555.123.4568, intl +1 555 123 4569
done
TEXT

# The same words in the 16- and 32-bit encodings, lines ending in CR LF. Without a byte-order
# mark, UTF-16 reads big-endian; the little-endian file is refused that way only because of
# its "ß", which reads as a lone surrogate (DF00) big-endian, and so reaches UTF-16 LE.
printf 'Gr\xc3\xbc\xc3\x9fe 5 \xe2\x82\xac\r\nzweite Zeile\r\n' > "$work/words.txt"
for encoding in UTF-16LE UTF-16BE; do
  iconv -f UTF-8 -t "$encoding" "$work/words.txt" > "$work/$encoding.txt"
done
cp "$work/UTF-16LE.txt" "$out/utf16le_no_bom.txt"
cp "$work/UTF-16BE.txt" "$out/utf16be_no_bom.txt"
{ printf '\xff\xfe'; cat "$work/UTF-16LE.txt"; } > "$out/utf16le_bom.txt"
{ printf '\xfe\xff'; cat "$work/UTF-16BE.txt"; } > "$out/utf16be_bom.txt"
# iconv's UTF-32 writes a byte-order mark, little-endian here. Plain words read as UTF-16 as
# well (every UTF-32 unit is two valid UTF-16 units), so this file also holds U+1D8D8, whose
# low half is a lone surrogate in either 16-bit byte order: only UTF-32 decodes it.
printf 'sign \xf0\x9d\xa3\x98 here\n' | iconv -f UTF-8 -t UTF-32 > "$out/utf32_bom.txt"
iconv -f UTF-8 -t UTF-32 "$work/words.txt" > "$out/utf32_plain_words.txt"
# ISO Latin-1 is not UTF-8; with an odd byte count it is not 16- or 32-bit text either, and
# Mac OS Roman (which defines every byte) takes it. With an even count, UTF-16 takes it.
printf 'Caf\xe9 na\xefve\n' > "$out/latin1_odd.txt"
printf 'Caf\xe9 na\xefve!\n' > "$out/latin1_even.txt"
# A lone continuation byte and a cut-off sequence, 17 bytes in all.
printf 'abc \x80 def \xe2\x82 ghi\n' > "$out/invalid_utf8.txt"
printf '\r\n\r\n\r\n\r\n' > "$out/only_crlf.txt"
: > "$out/empty.txt"
printf 'one\0two\0\0three\nfour\0\n' > "$out/nul_bytes.txt"
printf 'print("hello")\n' > "$out/script.PY"
printf '\xef\xbb\xbfwith bom\n' > "$out/utf8_bom.txt"

# ---- PDF ----------------------------------------------------------------------------------
out=pdf
rm -rf "$out"
mkdir -p "$out"

# pdf OUT INFO PAGE...: a PDF whose pages hold the given content streams (one argument per
# page, "-" for an empty page, "image" for a page with only an inline image), with the
# info dictionary INFO ("" for none). Media boxes come from $box. qpdf writes the
# cross-reference table.
box="0 0 612 792"
pdf() {
  local target=$1 info=$2
  shift 2
  local count=$# raw="$work/raw.pdf"
  local first_page=4
  local kids="" i
  for ((i = 0; i < count; i++)); do kids+="$((first_page + 2 * i)) 0 R "; done
  {
    printf '%%PDF-1.7\n'
    printf '1 0 obj << /Type /Catalog /Pages 2 0 R >> endobj\n'
    printf '2 0 obj << /Type /Pages /Kids [%s] /Count %d >> endobj\n' "$kids" "$count"
    printf '3 0 obj << /Type /Font /Subtype /Type1 /BaseFont /Helvetica >> endobj\n'
    i=0
    for content in "$@"; do
      local page=$((first_page + 2 * i)) stream=$((first_page + 2 * i + 1))
      case $content in
        -) content="" ;;
        image) content=$'q 100 0 0 100 50 600 cm\nBI /W 2 /H 2 /CS /G /BPC 8 ID \x7f\xff\xff\x7f\nEI Q' ;;
      esac
      printf '%d 0 obj << /Type /Page /Parent 2 0 R /MediaBox [%s] /Contents %d 0 R ' \
        "$page" "$box" "$stream"
      printf '/Resources << /Font << /F1 3 0 R >> >> >> endobj\n'
      printf '%d 0 obj << /Length %d >> stream\n%s\nendstream endobj\n' \
        "$stream" "${#content}" "$content"
      i=$((i + 1))
    done
    local trailer_info=""
    if [ -n "$info" ]; then
      local info_object=$((first_page + 2 * count))
      printf '%d 0 obj << %s >> endobj\n' "$info_object" "$info"
      trailer_info="/Info $info_object 0 R"
    fi
    printf 'trailer << /Root 1 0 R /Size %d %s >>\n%%%%EOF\n' $((first_page + 2 * count + 1)) \
      "$trailer_info"
  } > "$raw"
  # qpdf exits 3 when it succeeded with warnings, as it does for the missing table.
  qpdf --deterministic-id "$raw" "$target" 2>/dev/null || [ $? -eq 3 ]
}

# Lines of text at the top of a page: text LINE...
text() {
  local stream="BT /F1 11 Tf 72 450 Td 14 TL" line
  for line in "$@"; do stream+=" ($line) '"; done
  printf '%s ET' "$stream"
}

full_info='/Title (Quarterly Report) /Author (Ann Lee) /Subject (Figures for Q1)
  /Creator (Writer) /Producer (qpdf fixture) /CreationDate (D:20240315093000Z)
  /ModDate (D:20240316101500Z) /Keywords (not shown)'

# US Letter, every attribute, and on its one page: one e-mail address in mixed case, one
# web link, one phone-like number, one IPv4 address (and one that is not).
pdf "$out/letter_contacts.pdf" "$full_info" \
  "$(text 'Contact Ann.Lee@Example.ORG or see https://example.org/q1' \
    'Call 555-123-4567 today' 'Server 192.168.1.10, not 10.0.0.256')"

# A4, a producer and nothing else, and text without contact data.
box="0 0 595.28 841.89"
pdf "$out/a4_producer_only.pdf" '/Producer (LibreOffice 7.4)' "$(text 'Plain words only')"

# Landscape: four pages, text on two of them (one page empty, one only an image).
box="0 0 842 595"
pdf "$out/four_pages_two_with_text.pdf" "" "$(text 'Page one')" - image "$(text 'Page four')"
pdf "$out/four_pages_one_with_text.pdf" "" "$(text 'Page one')" - image -
pdf "$out/four_pages_no_text.pdf" "" - image - image
box="0 0 500 500"
pdf "$out/square_page.pdf" "" "$(text 'Square')"

# Info strings as PDFs carry them: UTF-16BE with its mark (an emoji as a surrogate pair),
# PDFDocEncoding bytes that are not UTF-8 (0xE9 is e-acute, 0x92 the trade mark sign),
# UTF-8 with its mark, an empty creator and a date that is none.
box="0 0 612 792"
pdf "$out/info_encodings.pdf" \
  '/Title <FEFF0055006E00690063006F006400650020D83DDE00> /Author (Ren\351 \222 Caf\351)
   /Subject (\357\273\277Gr\303\274\303\237e) /Creator () /CreationDate (not a date)' \
  "$(text 'Info strings')"

# Forty pages, text on every other one and an e-mail address on the first and the last:
# long enough for the analysis to share the pages between two workers. Pages 19 and 20, where
# the halves meet, end and begin with the two parts of a number that their line feed keeps
# apart.
pages=()
for ((page = 0; page < 40; page++)); do
  if ((page == 0 || page == 39)); then
    pages+=("$(text "Page $page, mail page$page@example.org")")
  elif ((page == 19)); then
    pages+=("$(text "call 555-123")")
  elif ((page == 20)); then
    pages+=("$(text "-4567 later")")
  elif ((page % 2 == 0)); then
    pages+=("$(text "Page $page")")
  else
    pages+=(-)
  fi
done
box="0 0 612 792"
pdf "$out/forty_pages.pdf" "" "${pages[@]}"

# Every byte on which PDFDocEncoding and Latin-1 differ (bar the three it leaves undefined)
# in a title, and the title as pdfinfo reads it, to check ours against.
pdfdoc='\030\031\032\033\034\035\036\037'
for byte in $(seq 128 158) 160; do pdfdoc+=$(printf '\\%03o' "$byte"); done
pdf "$out/info_pdfdoc_bytes.pdf" "/Title (PDFDoc $pdfdoc end)" "$(text 'PDFDoc')"
pdfinfo -enc UTF-8 "$out/info_pdfdoc_bytes.pdf" | sed -n 's/^Title: *//p' | tr -d '\n' \
  > "$out/info_pdfdoc_bytes.title.txt"

# A document cut at 60%: linearized, so that its first page's cross-reference section and
# trailer come first and poppler opens what is left of it.
qpdf --deterministic-id --linearize "$out/four_pages_two_with_text.pdf" "$work/whole.pdf"
size=$(stat -c %s "$work/whole.pdf")
head -c $((size * 60 / 100)) "$work/whole.pdf" > "$out/cut_at_60_percent.pdf"

ls -l text pdf
