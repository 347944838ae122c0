#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Lumenscribe Project
# SPDX-License-Identifier: MIT
"""Writes JPEGs whose EXIF is broken on purpose, which no metadata tool will write: the
EXIF block is laid out here byte by byte (little-endian TIFF) and put into a copy of a clean
JPEG as its APP1 segment.

Usage: make_exif_block.py CLEAN.jpg OUTPUT_DIR
"""

import struct
import sys
from pathlib import Path

BYTE, ASCII, SHORT, LONG, RATIONAL, UNDEFINED, SRATIONAL = 1, 2, 3, 4, 5, 7, 10
SIZES = {BYTE: 1, ASCII: 1, SHORT: 2, LONG: 4, RATIONAL: 8, UNDEFINED: 1, SRATIONAL: 8}


def ascii_(text):
    data = text.encode() + b"\0"
    return (ASCII, len(data), data)


def short(*values):
    return (SHORT, len(values), struct.pack(f"<{len(values)}H", *values))


def rational(*pairs):
    return (RATIONAL, len(pairs), b"".join(struct.pack("<II", n, d) for n, d in pairs))


def tiff_block(ifd0, exif=None, gps=None, exif_offset=None):
    """A TIFF header and IFD0, then the EXIF and GPS IFDs, each followed by the data of its
    entries that do not fit in four bytes. `exif_offset` replaces the EXIF IFD's real offset
    (to point past the end)."""
    ifd0 = dict(ifd0)
    if exif is not None:
        ifd0[0x8769] = (LONG, 1, b"\0\0\0\0")
    if gps is not None:
        ifd0[0x8825] = (LONG, 1, b"\0\0\0\0")
    out = bytearray(b"II*\0" + struct.pack("<I", 8))
    pointers = {}

    def write_ifd(entries):
        start = len(out)
        count = len(entries)
        data_at = start + 2 + 12 * count + 4
        body = bytearray(struct.pack("<H", count))
        data = bytearray()
        for tag in sorted(entries):
            kind, n, value = entries[tag]
            if tag in (0x8769, 0x8825):
                pointers[tag] = start + len(body) + 8
            if len(value) <= 4:
                body += struct.pack("<HHI", tag, kind, n) + value.ljust(4, b"\0")
            else:
                body += struct.pack("<HHII", tag, kind, n, data_at + len(data))
                data += value + (b"\0" if len(value) % 2 else b"")
        body += struct.pack("<I", 0)
        out.extend(body + data)
        return start

    write_ifd(ifd0)
    if exif is not None:
        offset = write_ifd(exif)
        struct.pack_into("<I", out, pointers[0x8769], exif_offset or offset)
    if gps is not None:
        offset = write_ifd(gps)
        struct.pack_into("<I", out, pointers[0x8825], offset)
    return bytes(out)


def with_exif(clean, block):
    payload = b"Exif\0\0" + block
    segment = b"\xff\xe1" + struct.pack(">H", len(payload) + 2) + payload
    return clean[:2] + segment + clean[2:]


def main():
    clean = Path(sys.argv[1]).read_bytes()
    out = Path(sys.argv[2])
    camera = {0x010F: ascii_("Fixture Optics"), 0x0110: ascii_("FX-200")}
    exposure = {0x829A: rational((1, 60)), 0x829D: rational((28, 10))}
    south = {1: ascii_("S"), 3: ascii_("W"), 4: rational((43, 1), (12, 1), (3, 10))}

    cases = {
        # The block ends in the middle of the EXIF IFD's entries.
        "exif_truncated.jpg": tiff_block(camera, exposure, None)[:60],
        # The EXIF IFD is said to start far past the end of the block.
        "exif_ifd_offset_past_end.jpg": tiff_block(camera, exposure, None, exif_offset=0x7FFF0000),
        # Degrees and minutes only: 33 deg 52.5 min south.
        "gps_two_rationals.jpg": tiff_block(
            camera, None, {**south, 2: rational((33, 1), (525, 10))}),
        # The seconds have a zero denominator; the longitude is sound.
        "gps_zero_denominator.jpg": tiff_block(
            camera, None, {**south, 2: rational((33, 1), (52, 1), (30, 0))}),
        # Fields padded with blanks, and a copyright of photographer and editor.
        "padded_fields.jpg": tiff_block(
            {0x010F: ascii_("Fixture Optics      "), 0x0110: ascii_("FX-300    "),
             0x0131: ascii_("Firmware 1.0   "),
             0x8298: (ASCII, 21, b"Photographer \0Editor\0")},
            {0x9291: ascii_("42  ")}, None),
        # Text where numbers belong and a number where text belongs.
        "wrong_types.jpg": tiff_block(
            {0x010F: short(42), 0x0110: ascii_("FX-200")},
            {0x829A: ascii_("abc"), 0x829D: ascii_("2.8"), 0x8827: ascii_("200"),
             0x9209: ascii_("x"), 0x9207: rational((5, 1))},
            {1: ascii_("N"), 2: ascii_("12.5")}),
    }
    for name, block in cases.items():
        (out / name).write_bytes(with_exif(clean, block))


main()
