# SPDX-FileCopyrightText: the Roamly developers
# SPDX-License-Identifier: GPL-3.0-or-later

"""Prints the motion of some photos, computed apart from the program, for KenBurnsTest.cpp."""

import struct
import uuid

IDENTIFIERS = [
    "00000000-0000-0000-0000-000000000000",
    "00000000-0000-4000-8000-0000000000B2",
    "12345678-9ABC-4DEF-8123-456789ABCDEF",
    "FFFFFFFF-FFFF-FFFF-0000-000000000000",
    "6F9619FF-8B86-D011-B42D-00CF4FC964FF",
]
MASK = (1 << 64) - 1


def draws(seed):
    k = 0
    while True:
        k += 1
        z = (seed + k * 0x9E3779B97F4A7C15) & MASK
        z = ((z ^ (z >> 30)) * 0xBF58476D1CE4E5B9) & MASK
        z = ((z ^ (z >> 27)) * 0x94D049BB133111EB) & MASK
        z ^= z >> 31
        yield (z >> 11) * 2.0**-53


for text in IDENTIFIERS:
    first, second = struct.unpack(">QQ", uuid.UUID(text).bytes)
    u = draws(first ^ second)
    zooms_in = next(u) < 0.5
    scale = 1.08 + next(u) * 0.04
    offsets = [(next(u) - 0.5) * 0.06 for _ in range(4)]
    start, end = (1.0, scale) if zooms_in else (scale, 1.0)
    print(f'    expectMotion("{text}",')
    print(f"                 {{.startScale = {start.hex()}, .endScale = {end.hex()},")
    print(f"                  .startOffset = {{.width = {offsets[0].hex()}, .height = {offsets[1].hex()}}},")
    print(f"                  .endOffset = {{.width = {offsets[2].hex()}, .height = {offsets[3].hex()}}}}});")
