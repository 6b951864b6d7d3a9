"""Reads the PNG files that the program writes: 8 bits a channel, RGB or RGBA, not interlaced."""
import struct
import zlib


class Picture:
    def __init__(self, width, height, rows):
        self.width, self.height, self.rows = width, height, rows  # a row: bytes, three a pixel

    def pixel(self, x, y):
        return tuple(self.rows[y][3 * x : 3 * x + 3])

    def colours(self):
        """How many colours there are, looking at every fourth pixel of every fourth row."""
        return len({row[i : i + 3] for row in self.rows[::4] for i in range(0, len(row), 12)})

    def brightest(self):
        return max(max(row) for row in self.rows)

    def differing(self, other):
        """The share of pixels that are not the same, of every fourth pixel of every fourth row."""
        different = total = 0
        for mine, theirs in zip(self.rows[::4], other.rows[::4]):
            for i in range(0, len(mine), 12):
                total += 1
                different += mine[i : i + 3] != theirs[i : i + 3]
        return different / total


def _paeth(left, above, corner):
    estimate = left + above - corner
    distances = abs(estimate - left), abs(estimate - above), abs(estimate - corner)
    return (left, above, corner)[distances.index(min(distances))]


def _unfilter(kind, line, above, size):
    if kind == 2 and above is not None:
        return bytearray((a + b) & 255 for a, b in zip(line, above))
    if kind == 0 or (kind == 2 and above is None):
        return line
    above = above or bytes(len(line))
    for i in range(len(line)):
        left = line[i - size] if i >= size else 0
        corner = above[i - size] if i >= size else 0
        add = {1: left, 3: (left + above[i]) // 2, 4: 0}[kind] if kind != 4 else _paeth(left, above[i], corner)
        line[i] = (line[i] + add) & 255
    return line


def read(path):
    with open(path, "rb") as file:
        data = file.read()
    if data[:8] != b"\x89PNG\r\n\x1a\n":
        raise ValueError(f"{path} is no PNG file")
    place, packed, header = 8, b"", None
    while place < len(data):
        length, kind = struct.unpack(">I4s", data[place : place + 8])
        body = data[place + 8 : place + 8 + length]
        if kind == b"IHDR":
            header = struct.unpack(">IIBBBBB", body)
        elif kind == b"IDAT":
            packed += body
        place += length + 12
    width, height, depth, colour, _, _, interlaced = header
    if depth != 8 or colour not in (2, 6) or interlaced:
        raise ValueError(f"{path} has a form that is not read here")
    size = 3 if colour == 2 else 4
    raw, rows, above = zlib.decompress(packed), [], None
    for y in range(height):
        start = y * (width * size + 1)
        above = _unfilter(raw[start], bytearray(raw[start + 1 : start + 1 + width * size]), above, size)
        rows.append(bytes(above) if size == 3 else bytes(b for i, b in enumerate(above) if i % 4 != 3))
    return Picture(width, height, rows)
