"""A small picture to draw pixel art on. Colours are (r, g, b) or (r, g, b, a); None leaves a pixel as it is."""

from png import write_png


class Canvas:
    def __init__(self, width, height, colour=(0, 0, 0, 0)):
        self.width, self.height = width, height
        self.pixels = bytearray(bytes(_rgba(colour)) * (width * height))

    def set(self, x, y, colour):
        """Outside of the picture nothing happens."""
        if colour is not None and 0 <= x < self.width and 0 <= y < self.height:
            at = (y * self.width + x) * 4
            self.pixels[at:at + 4] = bytes(_rgba(colour))

    def get(self, x, y):
        at = (y * self.width + x) * 4
        return tuple(self.pixels[at:at + 4])

    def opaque(self, x, y):
        return 0 <= x < self.width and 0 <= y < self.height and self.get(x, y)[3] > 0

    def fill(self, left, top, width, height, colour):
        for y in range(top, top + height):
            for x in range(left, left + width):
                self.set(x, y, colour)

    def paste(self, other, left, top):
        """Transparent pixels of the other picture leave what is there."""
        for y in range(other.height):
            for x in range(other.width):
                if other.opaque(x, y):
                    self.set(left + x, top + y, other.get(x, y))

    def outline(self, colour):
        """Puts the colour on each transparent pixel that has an opaque neighbour above, below, left or right."""
        ring = [(x, y) for y in range(self.height) for x in range(self.width)
                if not self.opaque(x, y) and any(self.opaque(x + dx, y + dy)
                                                 for dx, dy in ((0, 1), (0, -1), (1, 0), (-1, 0)))]
        for x, y in ring:
            self.set(x, y, colour)

    def save(self, path):
        write_png(path, self.width, self.height, bytes(self.pixels))


def from_text(rows, palette):
    """A picture from text: one letter a pixel, '.' is transparent."""
    picture = Canvas(max(len(row) for row in rows), len(rows))
    for y, row in enumerate(rows):
        for x, letter in enumerate(row):
            picture.set(x, y, palette.get(letter))
    return picture


def mix(a, b, amount):
    """From a (amount 0) to b (amount 1)."""
    return tuple(round(p + (q - p) * amount) for p, q in zip(a, b))


def rgb(text):
    """'c8643c' -> (200, 100, 60)"""
    return tuple(int(text[i:i + 2], 16) for i in (0, 2, 4))


def sheet(frames, columns):
    """Puts pictures of one size into rows."""
    width, height = frames[0].width, frames[0].height
    picture = Canvas(width * columns, height * (-(-len(frames) // columns)))
    for number, frame in enumerate(frames):
        picture.paste(frame, number % columns * width, number // columns * height)
    return picture


def _rgba(colour):
    return (*colour, 255) if len(colour) == 3 else colour
