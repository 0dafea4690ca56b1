"""The two pictures that the cactus wears."""

import math
import random

from PIL import Image, ImageDraw, ImageFilter

POT_FILE, SKIN_FILE = "cactus_pot.png", "cactus_skin.png"

# The skin's picture: RIBS columns side by side, TUFTS rows, and above PALETTE_BORDER plain colours.
RIBS, TUFTS = 14, 14
PALETTE_BORDER = 0.94
SPINE_COLOR_AT, HEART_COLOR_AT = (0.25, 0.97), (0.75, 0.97)
# The pot's picture: the wall from foot to rim, and earth above SOIL_BORDER.
SOIL_BORDER = 0.85

CLAY, CREAM, BLUE, OCHRE = (186, 92, 58), (240, 224, 192), (38, 92, 122), (222, 160, 60)


def write(folder):
    draw_pot().save(folder / POT_FILE, optimize=True)
    draw_skin().save(folder / SKIN_FILE, optimize=True)


def tuft_shift(rib):
    """Neighbouring ribs carry their tufts at alternating heights."""
    return 0.5 if rib % 2 else 0.0


def draw_pot(width=1024, height=512):
    picture = Image.new("RGB", (width, height), CLAY)
    pen = ImageDraw.Draw(picture)

    def band(low, high, color):
        pen.rectangle((0, (1.0 - high) * height, width, (1.0 - low) * height), fill=color)

    band(0.36, 0.50, CREAM)
    draw_zigzag(pen, width, 0.43 * height, height, teeth=14)
    for low in (0.34, 0.507):
        band(low, low + 0.013, BLUE)
    band(0.655, 0.71, BLUE)
    draw_dots(pen, width, (1.0 - 0.6825) * height, radius=7, count=28)
    band(SOIL_BORDER, 1.0, (70, 48, 36))
    speckle(picture, random.Random(1), 5000, strength=9)
    return picture.filter(ImageFilter.GaussianBlur(0.6))


def draw_zigzag(pen, width, level, height, teeth):
    middle, reach, step = height - level, height * 0.045, width / teeth
    for i in range(teeth):
        left, centre, right = i * step, (i + 0.5) * step, (i + 1) * step
        pen.polygon([(left, middle + reach), (centre, middle - reach), (right, middle + reach)],
                    fill=BLUE)
        tip = reach * 0.5
        pen.polygon([(centre, middle - reach * 0.1), (centre + tip, middle + reach * 0.45),
                     (centre, middle + reach), (centre - tip, middle + reach * 0.45)], fill=OCHRE)


def draw_dots(pen, width, level, radius, count):
    for i in range(count):
        x = (i + 0.5) * width / count
        pen.ellipse((x - radius, level - radius, x + radius, level + radius), fill=OCHRE)


def speckle(picture, chance, count, strength):
    """Small spots a little lighter or darker than what lies below."""
    pen = ImageDraw.Draw(picture)
    for _ in range(count):
        x, y = chance.randrange(picture.width), chance.randrange(picture.height)
        change = chance.randint(-strength, strength)
        color = tuple(min(max(level + change, 0), 255) for level in picture.getpixel((x, y)))
        size = chance.randint(0, 2)
        pen.ellipse((x - size, y - size, x + size, y + size), fill=color)


def draw_skin(width=1120, height=512):
    picture = Image.new("RGB", (width, height))
    pixels = picture.load()
    rib = width // RIBS
    column = [rib_color(abs((x + 0.5) / rib * 2.0 - 1.0)) for x in range(rib)]
    for y in range(height):
        light = 0.82 + 0.3 * (1.0 - y / height)  # Young growth at the top is lighter.
        row = [tuple(min(int(level * light), 255) for level in color) for color in column]
        for x in range(width):
            pixels[x, y] = row[x % rib]
    speckle(picture, random.Random(2), 9000, strength=8)
    draw_tufts(picture, rib)
    draw_palette(picture)
    return picture


def rib_color(distance):
    """From the crest of a rib (0) down to the valley (1)."""
    crest, flank, valley = (126, 168, 88), (74, 128, 66), (36, 78, 48)
    if distance < 0.5:
        return blended(crest, flank, distance * 2.0)
    return blended(flank, valley, distance * 2.0 - 1.0)


def blended(a, b, share):
    return tuple(x + (y - x) * share for x, y in zip(a, b))


def draw_tufts(picture, rib):
    pen = ImageDraw.Draw(picture)
    step = picture.height * PALETTE_BORDER / TUFTS
    for column in range(RIBS):
        for row in range(1, TUFTS):
            x = (column + 0.5) * rib
            y = picture.height - (row + tuft_shift(column)) * step
            pen.ellipse((x - 8, y - 6, x + 8, y + 6), fill=(96, 112, 64))
            pen.ellipse((x - 5, y - 4, x + 5, y + 4), fill=(216, 200, 158))
            for k in range(8):
                angle = 2.0 * math.pi * k / 8.0
                end = (x + 13.0 * math.cos(angle), y + 9.0 * math.sin(angle))
                pen.line((x, y, *end), fill=(206, 196, 150), width=1)


def draw_palette(picture):
    pen = ImageDraw.Draw(picture)
    bottom = (1.0 - PALETTE_BORDER) * picture.height - 4
    pen.rectangle((0, 0, picture.width // 2, bottom), fill=(242, 230, 190))
    pen.rectangle((picture.width // 2, 0, picture.width, bottom), fill=(250, 200, 60))
