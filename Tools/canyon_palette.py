"""The colours of the canyon, shared by all of its pictures."""

from canvas import rgb

OUTLINE = rgb("2b1b2e")

# From the top of the canyon to its bottom: crevice, shade, base, light.
STRATA = [
    [rgb(c) for c in ("8a5638", "b67a4c", "cf955f", "e6b47c")],
    [rgb(c) for c in ("76402e", "a65a3c", "c0714a", "da9060")],
    [rgb(c) for c in ("64302e", "904438", "a85646", "c47458")],
    [rgb(c) for c in ("4c2838", "6e3a48", "844a54", "a06464")],
]

GRASS = [rgb(c) for c in ("24553f", "3a8048", "62a84e", "9fd45c")]  # dark to bright
SAND = [rgb(c) for c in ("b98a50", "dcb06c", "efcb88", "fbe6b0")]
WATER = [rgb(c) for c in ("1f5f86", "2f86a8", "58b6c4", "c4f2ec")]

FIGURE = {
    "s": rgb("f2bf94"), "S": rgb("cf8f6a"), "e": rgb("2b1b2e"), "w": rgb("fff4e0"),
    "b": rgb("5a3a2a"), "p": rgb("4a5478"), "P": rgb("343a5c"), "k": rgb("33232c"), "g": rgb("f4d35e"),
}
