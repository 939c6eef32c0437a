#!/usr/bin/env python3
"""Writes the images of this folder. The pixels follow from the formulas of Picture, which the tests repeat.

Everything is put together byte by byte here, but for the lossy formats, WebP and LZW, which ImageMagick encodes."""
import os
import struct
import subprocess
import sys
import zlib

W, H = 11, 7


class Picture:
    """One sample of the pattern; depth is 8 or 16."""

    @staticmethod
    def grey(x, y):
        return (x * 19 + y * 11) & 255

    @staticmethod
    def rgb(x, y):
        return (x * 23 + y * 5) & 255, (x * 7 + y * 31 + 40) & 255, ((x * 3) ^ (y * 17)) & 255

    @staticmethod
    def alpha(x, y):
        return (x * 29 + y * 13 + 1) & 255 if (x + y) % 5 else (0 if x % 2 else 255)

    @staticmethod
    def low(x, y, channel):
        return (x * 37 + y * 91 + channel * 50) & 255

    @staticmethod
    def index(x, y, colours):
        return (x + 2 * y) % colours

    @staticmethod
    def palette(i):
        return (i * 5 + 9) & 255, (255 - i * 3) & 255, (i * 7 + 1) & 255

    @staticmethod
    def palette_alpha(i):
        return (i * 37) & 255


def samples(kind, depth, x, y):
    """The samples of a pixel: kind is grey, greyalpha, rgb, rgba or palette."""
    if kind == 'palette':
        return [Picture.index(x, y, min(1 << depth, 200))]
    if kind == 'grey' and depth < 8:
        return [Picture.index(x, y, 1 << depth)]
    out = list(Picture.rgb(x, y)) if kind.startswith('rgb') else [Picture.grey(x, y)]
    if kind in ('greyalpha', 'rgba'):
        out.append(Picture.alpha(x, y))
    if depth == 16:
        out = [v << 8 | Picture.low(x, y, c) for c, v in enumerate(out)]
    return out


def pack(values, depth, big=True):
    """Samples of a row, the highest bit first, filled up to a whole byte."""
    if depth == 8:
        return bytes(values)
    if depth == 16:
        return struct.pack(('>' if big else '<') + '%dH' % len(values), *values)
    bits = ''.join(format(v, '0%db' % depth) for v in values)
    bits += '0' * (-len(bits) % 8)
    return bytes(int(bits[i:i + 8], 2) for i in range(0, len(bits), 8))


def row(kind, depth, y, xs=range(W), big=True):
    return pack([v for x in xs for v in samples(kind, depth, x, y)], depth, big)


def save(name, data):
    with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), name), 'wb') as f:
        f.write(data)


# ---- PNG

def chunk(tag, data):
    return struct.pack('>I', len(data)) + tag + data + struct.pack('>I', zlib.crc32(tag + data))


PASSES = [(0, 0, 8, 8), (4, 0, 8, 8), (0, 4, 4, 8), (2, 0, 4, 4), (0, 2, 2, 4), (1, 0, 2, 2), (0, 1, 1, 2)]


def filtered(number, line, above, step):
    out = bytearray([number])
    for i, value in enumerate(line):
        left, up = line[i - step] if i >= step else 0, above[i]
        corner = above[i - step] if i >= step else 0
        guess = left + up - corner
        paeth = min((abs(guess - left), 0, left), (abs(guess - up), 1, up), (abs(guess - corner), 2, corner))[2]
        out.append(value - (0, left, up, (left + up) // 2, paeth)[number] & 255)
    return bytes(out)


def png_bytes(kind, depth, interlaced=False, transparent=None, extra=b'', filters=False):
    colour = {'grey': 0, 'rgb': 2, 'palette': 3, 'greyalpha': 4, 'rgba': 6}[kind]
    raw = b''
    for x0, y0, dx, dy in PASSES if interlaced else [(0, 0, 1, 1)]:
        if x0 < W:
            last = None
            for y in range(y0, H, dy):
                line = row(kind, depth, y, range(x0, W, dx))
                last = last or bytes(len(line))
                raw += filtered(y % 5 if filters else 0, line, last, max(1, depth // 8 * {2: 3, 6: 4, 4: 2}.get(colour, 1)))
                last = line
    out = b'\x89PNG\r\n\x1a\n'
    out += chunk(b'IHDR', struct.pack('>IIBBBBB', W, H, depth, colour, 0, 0, int(interlaced)))
    out += extra
    if kind == 'palette':
        count = min(1 << depth, 200)
        out += chunk(b'PLTE', b''.join(bytes(Picture.palette(i)) for i in range(count)))
        if transparent:
            out += chunk(b'tRNS', bytes(Picture.palette_alpha(i) for i in range(count * 3 // 4 or 1)))
    elif transparent:
        out += chunk(b'tRNS', struct.pack('>%dH' % len(transparent), *transparent))
    z = zlib.compress(raw, 9)
    return out + chunk(b'IDAT', z[:len(z) // 2]) + chunk(b'IDAT', z[len(z) // 2:]) + chunk(b'IEND', b'')


def make_png():
    for interlaced in (False, True):
        end = '-interlaced.png' if interlaced else '.png'
        for kind, depths in (('grey', (1, 2, 4, 8, 16)), ('rgb', (8, 16)), ('palette', (1, 2, 4, 8)),
                             ('greyalpha', (8, 16)), ('rgba', (8, 16))):
            for depth in depths:
                save('%s%d%s' % (kind, depth, end), png_bytes(kind, depth, interlaced))
                if kind in ('grey', 'rgb', 'palette'):
                    # The colour of pixel (2, 1) is the transparent one.
                    save('%s%d-key%s' % (kind, depth, end),
                         png_bytes(kind, depth, interlaced, samples(kind, depth, 2, 1)))
    save('rgb8-filters.png', png_bytes('rgb', 8, filters=True))
    save('rgba16-filters.png', png_bytes('rgba', 16, filters=True))
    profile = chunk(b'gAMA', struct.pack('>I', 22000)) + \
        chunk(b'iCCP', b'any\0\0' + zlib.compress(b'no profile at all' * 1000)) + \
        chunk(b'tEXt', b'Comment\0a text')
    save('rgb8-profile.png', png_bytes('rgb', 8, extra=profile))
    # 65,536 x 65,536 pixels in a few bytes, and 32,767 x 8,191 of 4 bytes, which is just inside 1 GiB.
    for name, edges in (('bomb-edges.png', (65536, 65536)), ('bomb-size.png', (32767, 8191))):
        save(name, b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', struct.pack('>IIBBBBB', *edges, 8, 6, 0, 0, 0)) +
             chunk(b'IDAT', zlib.compress(bytes(100000), 9)) + chunk(b'IEND', b''))


# ---- TIFF

def tiff_bytes(kind, depth, big=False, bigtiff=False, tile=None, rows_per_strip=3, planar=False, photometric=None,
               extras=None, orientation=None, compression=1, pages=1, cmyk=False, narrow_map=False, multiplied=False,
               width=W, height=H):
    """A TIFF of one page or of several equal ones, of which the first is the picture and the others are turned off."""
    e = '>' if big else '<'

    def pixel(x, y):
        if x >= width or y >= height:
            return [0] * count
        v = samples(kind, depth, x, y)
        if cmyk:
            v = [255 - s for s in v] + [0]
        if photometric == 0:
            v[0] = (1 << depth) - 1 - v[0]
        if multiplied:
            top = (1 << depth) - 1
            v = [(s * v[-1] + top // 2) // top for s in v[:-1]] + [v[-1]]
        return v

    count = len(samples(kind, depth, 0, 0)) + (1 if cmyk else 0)

    def compress(data):
        if compression == 8:
            return zlib.compress(data)
        if compression == 32773:
            out = b''
            for i in range(0, len(data), 100):
                part = data[i:i + 100]
                out += bytes([len(part) - 1]) + part
            return out
        return data

    cells = []
    tw, th = tile or (width, rows_per_strip)
    for plane in range(count if planar else 1):
        for y0 in range(0, height, th):
            for x0 in range(0, width, tw):
                data = b''
                for y in range(y0, y0 + th if tile else min(y0 + th, height)):
                    values = [pixel(x, y) for x in range(x0, x0 + tw)]
                    data += pack([v[plane] for v in values] if planar else [s for v in values for s in v], depth, big)
                cells.append(compress(data))

    if photometric is None:
        photometric = 5 if cmyk else {'grey': 1, 'greyalpha': 1, 'palette': 3, 'rgb': 2, 'rgba': 2}[kind]
    tags = {256: (4, [width]), 257: (4, [height]), 258: (3, [depth] * count), 259: (3, [compression]),
            262: (3, [photometric]), 277: (3, [count]), 284: (3, [2 if planar else 1])}
    if tile:
        tags[322], tags[323] = (4, [tw]), (4, [th])
    else:
        tags[278] = (4, [rows_per_strip])
    if orientation:
        tags[274] = (3, [orientation])
    if extras is not None:
        tags[338] = (3, [extras])
    if kind == 'palette':
        entries = [Picture.palette(i) for i in range(1 << depth)]
        tags[320] = (3, [c[k] * (1 if narrow_map else 257) for k in range(3) for c in entries])

    head = (b'MM' if big else b'II')
    head += struct.pack(e + 'HHHQ', 43, 8, 0, 0) if bigtiff else struct.pack(e + 'HI', 42, 0)
    out = bytearray(head)
    link = 8 if bigtiff else 4

    def word(n):
        return struct.pack(e + ('Q' if bigtiff else 'I'), n)

    for page in range(pages):
        offsets = []
        for data in cells:
            offsets.append(len(out))
            out += data if page == 0 else bytes(255 - b for b in data)
        tags[324 if tile else 273] = (16 if bigtiff else 4, offsets)
        tags[325 if tile else 279] = (4, [len(c) for c in cells])
        entries = b''
        room = 8 if bigtiff else 4
        for tag in sorted(tags):
            kind_of, values = tags[tag]
            data = struct.pack(e + '%d%s' % (len(values), {3: 'H', 4: 'I', 16: 'Q'}[kind_of]), *values)
            if len(data) > room:
                out += b'\0' * (len(out) % 2)
                place = len(out)
                out += data
                data = word(place)
            entries += struct.pack(e + 'HH', tag, kind_of) + word(len(values)) + data.ljust(room, b'\0')
        out += b'\0' * (len(out) % 2)
        out[link:link + room] = word(len(out))
        out += struct.pack(e + ('Q' if bigtiff else 'H'), len(tags)) + entries
        link = len(out)
        out += word(0)
    return bytes(out)


def make_tiff():
    for kind, depths in (('grey', (1, 2, 4, 8, 16)), ('rgb', (8, 16)), ('palette', (1, 2, 4, 8))):
        for depth in depths:
            save('%s%d.tif' % (kind, depth), tiff_bytes(kind, depth))
            save('%s%d-tiled.tif' % (kind, depth), tiff_bytes(kind, depth, tile=(16, 16), big=True))
    for depth in (8, 16):
        for kind in ('greyalpha', 'rgba'):
            save('%s%d.tif' % (kind, depth), tiff_bytes(kind, depth, extras=2))
            save('%s%d-multiplied.tif' % (kind, depth), tiff_bytes(kind, depth, extras=1, multiplied=True))
            save('%s%d-planar.tif' % (kind, depth), tiff_bytes(kind, depth, extras=2, planar=True))
    save('rgb8-planar-tiled.tif', tiff_bytes('rgb', 8, planar=True, tile=(16, 16)))
    save('rgb8-one-strip.tif', tiff_bytes('rgb', 8, rows_per_strip=100))
    save('rgba8-no-tag.tif', tiff_bytes('rgba', 8))
    save('rgba8-unspecified.tif', tiff_bytes('rgba', 8, extras=0))
    save('grey8-white-is-zero.tif', tiff_bytes('grey', 8, photometric=0))
    save('grey1-white-is-zero.tif', tiff_bytes('grey', 1, photometric=0))
    save('palette8-narrow-map.tif', tiff_bytes('palette', 8, narrow_map=True))
    save('rgb8-big-endian.tif', tiff_bytes('rgb', 8, big=True))
    save('rgb16-big-endian.tif', tiff_bytes('rgb', 16, big=True))
    save('rgb8-bigtiff.tif', tiff_bytes('rgb', 8, bigtiff=True))
    save('rgb8-deflate.tif', tiff_bytes('rgb', 8, compression=8))
    save('rgb8-packbits.tif', tiff_bytes('rgb', 8, compression=32773))
    save('rgb8-pages.tif', tiff_bytes('rgb', 8, pages=3))
    save('cmyk8.tif', tiff_bytes('rgb', 8, cmyk=True))
    for orientation in range(1, 9):
        save('rgb8-orientation%d.tif' % orientation, tiff_bytes('rgb', 8, orientation=orientation))
    save('bomb-size.tif', tiff_bytes('rgb', 8, width=W, height=H).replace(
        struct.pack('<HHII', 256, 4, 1, W), struct.pack('<HHII', 256, 4, 1, 65536)).replace(
        struct.pack('<HHII', 257, 4, 1, H), struct.pack('<HHII', 257, 4, 1, 65536)))


# ---- BMP

def bmp_bytes(bits, core=False, top_down=False, masks=None, v5=False, colours=0):
    rows = []
    for y in range(H):
        if bits <= 8:
            line = pack([Picture.index(x, y, min(1 << bits, 200)) for x in range(W)], bits)
        else:
            line = b''
            for x in range(W):
                r, g, b = Picture.rgb(x, y)
                if bits == 16 and masks:
                    line += struct.pack('<H', r >> 3 << 11 | g >> 2 << 5 | b >> 3)
                elif bits == 16:
                    line += struct.pack('<H', r >> 3 << 10 | g >> 3 << 5 | b >> 3)
                elif bits == 24:
                    line += bytes((b, g, r))
                else:
                    line += bytes((b, g, r, Picture.alpha(x, y) if v5 else 0))
        rows.append(line + b'\0' * (-len(line) % 4))
    pixels = b''.join(rows if top_down else reversed(rows))
    if core:
        header = struct.pack('<IHHHH', 12, W, H, 1, bits)
    else:
        header = struct.pack('<IiiHHIIiiII', 124 if v5 else 40, W, -H if top_down else H, 1, bits,
                             3 if masks or v5 else 0, len(pixels), 2835, 2835, colours, 0)
        if v5:
            header += struct.pack('<IIII', 0xFF0000, 0xFF00, 0xFF, 0xFF000000) + b'sRGB'[::-1] + bytes(48) + bytes(16)
        elif masks:
            header += struct.pack('<III', *masks)
    palette = b''
    if bits <= 8:
        count = colours or 1 << bits
        palette = b''.join(bytes(reversed(Picture.palette(i))) + (b'' if core else b'\0') for i in range(count))
    start = 14 + len(header) + len(palette)
    return b'BM' + struct.pack('<IHHI', start + len(pixels), 0, 0, start) + header + palette + pixels


def make_bmp():
    for bits in (1, 2, 4, 8, 16, 24, 32):
        save('bits%d.bmp' % bits, bmp_bytes(bits))
    for bits in (1, 4, 8, 24):
        save('bits%d-core.bmp' % bits, bmp_bytes(bits, core=True))
    save('bits8-top-down.bmp', bmp_bytes(8, top_down=True))
    save('bits24-top-down.bmp', bmp_bytes(24, top_down=True))
    save('bits16-565.bmp', bmp_bytes(16, masks=(0xF800, 0x7E0, 0x1F)))
    save('bits32-alpha.bmp', bmp_bytes(32, v5=True))
    # Indexes reach 199, the palette ends before.
    save('bits8-short-palette.bmp', bmp_bytes(8, colours=16))


# ---- TGA

def tga_bytes(kind, bits, runs=False, top_down=False, index_bits=8):
    def pixel(x, y):
        if kind == 'palette':
            return struct.pack('<H', Picture.index(x, y, 200))[:index_bits // 8]
        if kind == 'grey':
            return bytes([Picture.grey(x, y)] + ([Picture.alpha(x, y)] if bits == 16 else []))
        r, g, b = Picture.rgb(x, y)
        if bits in (15, 16):
            return struct.pack('<H', r >> 3 << 10 | g >> 3 << 5 | b >> 3)
        return bytes((b, g, r) + ((Picture.alpha(x, y),) if bits == 32 else ()))

    pixels = [pixel(x, y) for y in (range(H) if top_down else range(H - 1, -1, -1)) for x in range(W)]
    data = b''
    if runs:
        # A literal run, then a run of one, in turn: both kinds and runs over the ends of rows.
        i = 0
        while i < len(pixels):
            part = pixels[i:i + 5]
            data += bytes([len(part) - 1]) + b''.join(part)
            i += 5
            if i < len(pixels):
                data += b'\x80' + pixels[i]
                i += 1
    else:
        data = b''.join(pixels)
    mapped = kind == 'palette'
    palette = b''
    if mapped:
        palette = b''.join(bytes(reversed(Picture.palette(i))) for i in range(200))
    number = {'palette': 1, 'rgb': 2, 'grey': 3}[kind] + (8 if runs else 0)
    return struct.pack('<BBBHHBHHHHBB', 4, int(mapped), number, 0, 200 if mapped else 0, 24 if mapped else 0, 0, 0, W, H,
                       index_bits if mapped else bits, 0x20 if top_down else 0) + b'name' + palette + data


def make_tga():
    for runs in (False, True):
        end = '-runs.tga' if runs else '.tga'
        for bits in (15, 16, 24, 32):
            save('rgb%d%s' % (bits, end), tga_bytes('rgb', bits, runs))
        for bits in (8, 16):
            save('grey%d%s' % (bits, end), tga_bytes('grey', bits, runs))
        save('palette' + end, tga_bytes('palette', 8, runs))
    save('palette-wide.tga', tga_bytes('palette', 8, index_bits=16))
    save('rgb24-top-down.tga', tga_bytes('rgb', 24, top_down=True))


# ---- HDR

def rgbe(x, y):
    r, g, b = Picture.rgb(x, y)
    return r | 128, g, b, 124 + (x + y) % 7


def make_hdr():
    head = b'#?RADIANCE\n# made by hand\nFORMAT=32-bit_rle_rgbe\n\n-Y %d +X %d\n' % (H, W)
    save('flat.hdr', head + b''.join(bytes(rgbe(x, y)) for y in range(H) for x in range(W)))
    runs = b''
    for y in range(H):
        runs += bytes((2, 2, 0, W))
        for c in range(4):
            values = [rgbe(x, y)[c] if x < 6 else rgbe(6, y)[c] for x in range(W)]
            runs += bytes([6] + values[:6]) + bytes([128 + W - 6, values[6]])
    save('runs.hdr', head.replace(b'RADIANCE', b'RGBE') + runs)


# ---- PSD

def make_psd():
    def psd(kind, depth, packed):
        count = len(samples(kind, depth, 0, 0))
        mode = 3 if kind.startswith('rgb') else 1
        out = b'8BPS' + struct.pack('>H6xHIIHH', 1, count, H, W, depth, mode)
        out += struct.pack('>I', 0) + struct.pack('>I', 6) + b'8BIMxx' + struct.pack('>I', 0)
        rows = []
        for c in range(count):
            for y in range(H):
                values = []
                for x in range(W):
                    v = samples(kind, depth, x, y)
                    if kind in ('rgba', 'greyalpha') and c < count - 1:
                        # The flattened picture stands on white.
                        top = (1 << depth) - 1
                        v[c] = (v[c] * v[-1] + top // 2) // top + top - v[-1]
                    values.append(v[c])
                rows.append(pack(values, depth))
        if not packed:
            return out + struct.pack('>H', 0) + b''.join(rows)
        lines = []
        for line in rows:
            # No operation, a run where two bytes are equal, literals else.
            data, i = b'\x80', 0
            while i < len(line):
                if i + 1 < len(line) and line[i] == line[i + 1]:
                    data, i = data + bytes((255, line[i])), i + 2
                else:
                    data, i = data + bytes((0, line[i])), i + 1
            lines.append(data)
        return out + struct.pack('>H', 1) + b''.join(struct.pack('>H', len(d)) for d in lines) + b''.join(lines)

    for kind in ('grey', 'greyalpha', 'rgb', 'rgba'):
        for depth in (8, 16):
            save('%s%d.psd' % (kind, depth), psd(kind, depth, False))
            save('%s%d-packed.psd' % (kind, depth), psd(kind, depth, True))


# ---- GIF

def gif_frame(left, top, width, height, indexes, interlaced=False, transparent=None, local=None):
    out = b''
    if transparent is not None:
        out += b'\x21\xF9\x04' + struct.pack('<BHBB', 1, 7, transparent, 0)
    flags = (0x40 if interlaced else 0) | (0x80 | 6 if local else 0)
    out += b'\x2C' + struct.pack('<HHHHB', left, top, width, height, flags)
    if local:
        out += b''.join(bytes(local(i)) for i in range(128))
    # Codes of 8 bits with a clear code before the table would need 9: nothing is compressed.
    bits, used, data = 0, 0, bytearray()

    def put(code):
        nonlocal bits, used
        bits |= code << used
        used += 8
        while used >= 8:
            data.append(bits & 255)
            bits >>= 8
            used -= 8

    for n, i in enumerate(indexes):
        if n % 100 == 0:
            put(128)
        put(i)
    put(129)
    out += b'\x07'
    for i in range(0, len(data), 60):
        part = bytes(data[i:i + 60])
        out += bytes([len(part)]) + part
    return out + b'\0'


def make_gif():
    def gif(*frames, canvas=(W, H), table=True):
        out = b'GIF89a' + struct.pack('<HHBBB', *canvas, (0x80 if table else 0) | 6, 0, 0)
        if table:
            out += b''.join(bytes(Picture.palette(i)) for i in range(128))
        return out + b''.join(frames) + b';'

    def indexes(xs=range(W), ys=range(H)):
        return [Picture.index(x, y, 100) for y in ys for x in xs]

    order = [y for start, step in ((0, 8), (4, 8), (2, 4), (1, 2)) for y in range(start, H, step)]
    save('plain.gif', gif(gif_frame(0, 0, W, H, indexes())))
    save('interlaced.gif', gif(gif_frame(0, 0, W, H, indexes(ys=order), interlaced=True)))
    save('transparent.gif', gif(gif_frame(0, 0, W, H, indexes(), transparent=5)))
    save('placed.gif', gif(gif_frame(3, 2, 4, 3, indexes(range(3, 7), range(2, 5)))))
    save('beyond.gif', gif(gif_frame(8, 5, W, H, indexes(range(8, 8 + W), range(5, 5 + H)))))
    save('local.gif', gif(gif_frame(0, 0, W, H, indexes(), local=lambda i: tuple(255 - c for c in Picture.palette(i))),
                          table=False))
    save('no-colours.gif', gif(gif_frame(0, 0, W, H, indexes()), table=False))
    save('two.gif', gif(gif_frame(0, 0, W, H, indexes()), gif_frame(0, 0, W, H, [1] * (W * H))))
    save('no-frame.gif', gif())
    save('no-canvas.gif', gif(gif_frame(0, 0, W, H, indexes()), canvas=(0, 0)))
    save('bomb-canvas.gif', gif(gif_frame(0, 0, W, H, indexes()), canvas=(65535, 65535)))


# ---- by ImageMagick

def make_lossy():
    def convert(*arguments):
        subprocess.run(['convert', *arguments], check=True)

    photo = ['-seed', '7', '-size', '37x29', 'plasma:tomato-steelblue', '-depth', '8', '-strip']
    convert(*photo, 'PNG24:photo.png')
    source = ['photo.png', '-strip', '-quality', '90']
    convert(*source, '-sampling-factor', '1x1', 'ycbcr444.jpg')
    convert(*source, '-sampling-factor', '2x2', 'ycbcr420.jpg')
    convert(*source, '-interlace', 'JPEG', '-sampling-factor', '2x1', 'progressive.jpg')
    convert(*source, '-colorspace', 'Gray', 'grey.jpg')
    convert(*source, '-colorspace', 'CMYK', 'cmyk.jpg')
    convert('photo.png', '-quality', '80', 'lossy.webp')
    convert('rgb8.png', '-quality', '100', '-define', 'webp:lossless=true', 'lossless.webp')
    convert('rgba8.png', '-quality', '100', '-define', 'webp:lossless=true', 'lossless-alpha.webp')
    convert('rgba8.png', '-quality', '80', 'lossy-alpha.webp')
    convert('photo.png', '-compress', 'JPEG', '-quality', '90', 'ycbcr.tif')
    convert('rgb8.png', '-type', 'TrueColor', '-compress', 'LZW', '-strip', 'rgb8-lzw.tif')
    convert('grey1.png', '-compress', 'Group4', '-type', 'Bilevel', '-strip', 'grey1-group4.tif')


if __name__ == '__main__':
    os.chdir(os.path.dirname(os.path.abspath(__file__)))
    make_png()
    make_tiff()
    make_bmp()
    make_tga()
    make_hdr()
    make_psd()
    make_gif()
    if '--lossy' in sys.argv:
        make_lossy()
