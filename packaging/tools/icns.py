"""Apple's icon container, and as much of PNG as it takes to fill and to check one.

A container is a list of images, each under a four-letter type that says how large it is and for which resolution. From
128 pixels on an image is a PNG. The two smallest are stored as packed channels: some versions of macOS draw small PNGs
wrongly.
"""
import struct
import zlib

# type: (pixels, name of the size). All that a Finder, a Dock or a dialog asks for.
IMAGES = {
    b'ic04': (16, '16x16'),
    b'ic11': (32, '16x16@2x'),
    b'ic05': (32, '32x32'),
    b'ic12': (64, '32x32@2x'),
    b'ic07': (128, '128x128'),
    b'ic13': (256, '128x128@2x'),
    b'ic08': (256, '256x256'),
    b'ic14': (512, '256x256@2x'),
    b'ic09': (512, '512x512'),
    b'ic10': (1024, '512x512@2x'),
}
PACKED = {b'ic04', b'ic05'}
PNG_SIGNATURE = b'\x89PNG\r\n\x1a\n'


class IconError(Exception):
    """What is wrong with an image or a container, for people."""


# ----------------------------------------------------------------------------------------------------------- PNG

def png_chunks(data):
    """(type, payload) of each chunk."""
    if not data.startswith(PNG_SIGNATURE):
        raise IconError('not a PNG')
    at = len(PNG_SIGNATURE)
    while at + 12 <= len(data):
        length, kind = struct.unpack_from('>I4s', data, at)
        if at + 12 + length > len(data):
            break
        payload = data[at + 8:at + 8 + length]
        if zlib.crc32(kind + payload) != struct.unpack_from('>I', data, at + 8 + length)[0]:
            raise IconError('a PNG chunk is damaged')
        yield kind, payload
        if kind == b'IEND':
            return
        at += 12 + length
    raise IconError('a PNG is cut short')


def png_size(data):
    for kind, payload in png_chunks(data):
        if kind != b'IHDR' or len(payload) != 13:
            raise IconError('a PNG does not begin with its header')
        return struct.unpack_from('>2I', payload)
    raise IconError('a PNG is empty')


def png_text(data, keyword):
    """The text chunk of that keyword, or nothing."""
    for kind, payload in png_chunks(data):
        name, _, value = payload.partition(b'\0')
        if kind == b'tEXt' and name == keyword.encode():
            return value.decode('latin-1')
    return None


def png_with_text(data, keyword, text):
    """The same image with one more text chunk, right after the header."""
    kind, payload = b'tEXt', keyword.encode() + b'\0' + text.encode('latin-1')
    chunk = struct.pack('>I', len(payload)) + kind + payload + struct.pack('>I', zlib.crc32(kind + payload))
    end = len(PNG_SIGNATURE) + 12 + 13
    return data[:end] + chunk + data[end:]


def _paeth(a, b, c):
    p = a + b - c
    distances = (abs(p - a), abs(p - b), abs(p - c))
    return (a, b, c)[distances.index(min(distances))]


def _unfiltered(rows, stride, filters):
    previous = bytearray(stride)
    for kind, row in zip(filters, rows):
        row = bytearray(row)
        for i in range(stride):
            left = row[i - 4] if i >= 4 else 0
            above_left = previous[i - 4] if i >= 4 else 0
            above = previous[i]
            guess = (0, left, above, (left + above) // 2, _paeth(left, above, above_left))[kind]
            row[i] = (row[i] + guess) & 0xff
        previous = row
        yield bytes(row)


def png_pixels(data):
    """(width, height, RGBA bytes) of an 8-bit RGBA image that is not interlaced."""
    width, height = png_size(data)
    header = next(payload for kind, payload in png_chunks(data) if kind == b'IHDR')
    if header[8:13] != bytes([8, 6, 0, 0, 0]):
        raise IconError('a PNG is not plain 8-bit RGBA')
    raw = zlib.decompress(b''.join(payload for kind, payload in png_chunks(data) if kind == b'IDAT'))
    stride = 4 * width
    lines = [raw[at:at + stride + 1] for at in range(0, len(raw), stride + 1)]
    if len(lines) != height or len(lines[-1]) != stride + 1 or any(line[0] > 4 for line in lines):
        raise IconError('a PNG has another size than its header says')
    rows = _unfiltered([line[1:] for line in lines], stride, [line[0] for line in lines])
    return width, height, b''.join(rows)


# --------------------------------------------------------------------------------------------------------- packed

def packed(channel):
    """Run-length code of one channel: a byte below 128 announces that many bytes and one more; one from 128 on
    repeats the next byte, 3 times and more."""
    result, literal, at = bytearray(), bytearray(), 0

    def flush():
        for start in range(0, len(literal), 128):
            part = literal[start:start + 128]
            result.append(len(part) - 1)
            result.extend(part)
        literal.clear()

    while at < len(channel):
        run = 1
        while at + run < len(channel) and run < 130 and channel[at + run] == channel[at]:
            run += 1
        if run >= 3:
            flush()
            result.extend((run + 125, channel[at]))
        else:
            literal.extend(channel[at:at + run])
        at += run
    flush()
    return bytes(result)


def unpacked(data, size):
    """`size` bytes of a channel, and how much of the data they took."""
    result, at = bytearray(), 0
    while len(result) < size:
        if at + 1 >= len(data):
            raise IconError('a packed image is cut short')
        count = data[at]
        if count < 128:
            result.extend(data[at + 1:at + 2 + count])
            at += 2 + count
        else:
            result.extend(data[at + 1:at + 2] * (count - 125))
            at += 2
    if len(result) != size:
        raise IconError('a packed image runs over its size')
    return bytes(result), at


def packed_image(png):
    _, _, pixels = png_pixels(png)
    return b'ARGB' + b''.join(packed(pixels[channel::4]) for channel in (3, 0, 1, 2))


# ------------------------------------------------------------------------------------------------------ container

def container(images):
    """The file's bytes; `images` maps types to their data."""
    body = b''.join(kind + struct.pack('>I', 8 + len(data)) + data for kind, data in images.items())
    return b'icns' + struct.pack('>I', 8 + len(body)) + body


def images_of(data):
    """Type to data; the opposite of `container`."""
    if len(data) < 8 or data[:4] != b'icns' or struct.unpack_from('>I', data, 4)[0] != len(data):
        raise IconError('not an icon container, or cut short')
    result, at = {}, 8
    while at < len(data):
        kind, length = struct.unpack_from('>4sI', data, at) if at + 8 <= len(data) else (b'', 0)
        if length < 8 or at + length > len(data):
            raise IconError('an image runs over the end of the icon container')
        result[kind] = data[at + 8:at + length]
        at += length
    return result


def faults(data):
    """What is wrong with a container: a line for each size that is missing or of another size than it says."""
    try:
        images = images_of(data)
    except IconError as error:
        return [str(error)]
    found = []
    for kind, (pixels, name) in IMAGES.items():
        try:
            _check(images, kind, pixels)
        except IconError as error:
            found.append(f'{name}: {error}')
    return found


def _check(images, kind, pixels):
    if kind not in images:
        raise IconError('missing')
    image = images[kind]
    if kind not in PACKED:
        size = png_size(image)
        if size != (pixels, pixels):
            raise IconError(f'is {size[0]}x{size[1]} pixels, not {pixels}x{pixels}')
        list(png_chunks(image))
        return
    if not image.startswith(b'ARGB'):
        raise IconError('not a packed image')
    at = 4
    for _ in range(4):
        _, taken = unpacked(image[at:], pixels * pixels)
        at += taken
    if at != len(image):
        raise IconError('has bytes left over')
