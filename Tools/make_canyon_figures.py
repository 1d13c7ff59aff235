#!/usr/bin/env python3
"""Draws Games/canyon/figures.png and items.png.

figures.png: three runners, a row each, 20 x 24 pixels a frame, looking right: two frames of standing, six of running,
one of rising and one of falling. items.png: 16 x 16 pixels a frame: a crystal that turns (6), a sparkle (4), dust (4).
"""

import os

from canvas import Canvas, from_text, rgb, sheet
from canyon_palette import FIGURE, OUTLINE

WIDTH, HEIGHT = 20, 24
FOLDER = os.path.join(os.path.dirname(__file__), "..", "Games", "canyon")

HEADS = {
    "explorer": ["......hhhhh.....", ".....hhhhhhh....", ".....hhhhhhH....", ".....rrrrrrr....", "..hhhhhhhhhhhhh.",
                 "...HHHsssssHH...", ".....Ssswsws....", ".....Sssesess...", ".....Sssssss....", "......Ssssk....."],
    "bandit":   ["................", ".....kkkkkk.....", "....kkkkkkkk....", "....hhhhhhhhh...", "..hhHHHHHHHHH...",
                 ".h.h.Sssssss....", "h..h.Ssswsws....", ".....Sssesess...", ".....hhhhhhh....", "......hhhhH....."],
    "robot":    ["........g.......", "........P.......", "....hhhhhhhh....", "...hhhhhhhhhh...", "...hhPPPPPPPP...",
                 "...hhPwgPPwgP...", "...hhPggPPggP...", "...hHPPPPPPPP...", "...HHHhhhhhhh...", ".....HPPPPP....."],
}
# Arms go with the legs: a list of poses, each with torso and legs.
TORSO = {
    "down":    ["....cccccccc....", "...ccCcccccCc...", "...csCccccCsc...", "...ssCccccCss...", ".....bbgbbb....."],
    "front":   ["....cccccccc....", "....Ccccccccc...", "....CCccccc.ss..", "....Cccccc..s...", ".....bbgbbb....."],
    "back":    ["....cccccccc....", "...cccccccCC....", "..cc.cccccCC....", "..ss.ccccccC....", ".....bbgbbb....."],
    "up":      ["..s.cccccccc.s..", "..sccccccccccs..", "....CccccccC....", "....CccccccC....", ".....bbgbbb....."],
}
LEGS = {
    "stand":   [".....pppPPP.....", ".....ppp.PPP....", ".....ppp.PPP....", ".....ppp.PPP....", ".....kkk.kkk....",
                ".....kkkkkkkk..."],
    "crouch":  [".....pppPPP.....", "....pppp.PPP....", "....ppp..PPP....", ".....ppp.PPP....", ".....kkk.kkk....",
                ".....kkkkkkkk..."],
    "run1":    [".....PPpppp.....", "....PPP.pppp....", "...PPP...pppp...", "..PPP.....ppp...", ".kkP.......kk...",
                ".kk........kkk.."],
    "run2":    [".....PPpppp.....", ".....PPPppp.....", "...PPPP.pppp....", ".kPPP....ppp....", ".kk.......kk....",
                ".k........kkk..."],
    "run3":    ["......pppp......", ".....PPPppp.....", "..kPPPP.ppp.....", "..kkP..ppp......", ".......kk.......",
                ".......kkk......"],
    "run4":    [".....ppPPPP.....", "....ppp.PPPP....", "...ppp...PPPP...", "..ppp.....PPP...", ".kkp.......kk...",
                ".kk........kkk.."],
    "run5":    [".....ppPPPP.....", ".....pppPPP.....", "...pppp.PPPP....", ".kppp....PPP....", ".kk.......kk....",
                ".k........kkk..."],
    "run6":    ["......PPPP......", ".....pppPPP.....", "..kpppp.PPP.....", "..kkp..PPP......", ".......kk.......",
                ".......kkk......"],
    "rise":    [".....pppPPP.....", "....pppppPPPP...", "...ppp...PPPkk..", "..kpp.....kkk...", "..kk............",
                "................"],
    "fall":    [".....pppPPPP....", "....ppp...PPP...", "...ppp.....PPk..", "...pp.......kk..", "..kkp...........",
                "..kkk..........."],
}
# torso, legs, how far the body is lifted
POSES = [("down", "stand", 0), ("down", "crouch", -1),
         ("front", "run1", 0), ("front", "run2", 1), ("down", "run3", 1),
         ("back", "run4", 0), ("back", "run5", 1), ("down", "run6", 1),
         ("up", "rise", 0), ("up", "fall", 0)]

CLOTHES = {
    "explorer": {"h": "d9a441", "H": "a87628", "r": "c23b3b", "c": "3f8fd0", "C": "2c669e"},
    "bandit": {"h": "e0484e", "H": "a62c40", "r": "e0484e", "c": "5f5470", "C": "443a54"},
    "robot": {"h": "58c08a", "H": "38866a", "r": "f4d35e", "c": "d8dde0", "C": "98a4b0"},
}


def figure(who, pose):
    """A runner in one pose, its feet on the last row but one; the outline goes around."""
    torso, legs, lift = pose
    palette = {**FIGURE, **{letter: rgb(colour) for letter, colour in CLOTHES[who].items()}}
    picture = Canvas(WIDTH, HEIGHT)
    picture.paste(from_text(LEGS[legs], palette), 2, 17)
    picture.paste(from_text(TORSO[torso], palette), 2, 12 - lift)
    picture.paste(from_text(HEADS[who], palette), 2, 3 - lift)
    picture.outline(OUTLINE)
    return picture


ITEM_COLOURS = {"o": OUTLINE, "a": rgb("1f7fb0"), "b": rgb("36b3d8"), "c": rgb("7fe3f0"), "d": rgb("e8ffff"),
                "y": rgb("fff2a8"), "z": rgb("ffc94a"), "e": rgb("e6cfae"), "f": rgb("bf9f7c")}
GEM_WIDTHS = [4, 3, 2, 1, 2, 3]  # half widths as it turns


def crystal(half):
    """A cut stone of 12 rows; the light facet moves to the other side as it turns."""
    picture = Canvas(16, 16)
    for y in range(12):
        reach = half * min(y + 1, 5, 12 - y) / 5
        for x in range(-4, 5):
            if abs(x) <= reach:
                colour = "d" if x < -reach * 0.45 and y < 5 else "c" if x < 0 else "b" if x < reach * 0.6 else "a"
                picture.set(8 + x, 2 + y, ITEM_COLOURS[colour])
    picture.set(8, 2, ITEM_COLOURS["d"])
    picture.outline(OUTLINE)
    return picture


def sparkle(reach):
    picture = Canvas(16, 16)
    for along in range(reach + 1):
        colour = ITEM_COLOURS["d" if along < reach / 2 else "y" if along < reach else "z"]
        for x, y in ((along, 0), (-along, 0), (0, along), (0, -along)):
            picture.set(8 + x, 8 + y, colour)
    for x, y in ((1, 1), (1, -1), (-1, 1), (-1, -1)):
        picture.set(8 + x * reach // 2, 8 + y * reach // 2, ITEM_COLOURS["z"])
    return picture


def dust(step):
    """Two puffs that rise and shrink."""
    picture = Canvas(16, 16)
    for cx, cy, size in ((5, 13 - step, 3), (11, 12 - step * 2, 2)):
        radius = max(size - step, 0)
        for y in range(-radius, radius + 1):
            for x in range(-radius, radius + 1):
                if x * x + y * y <= radius * radius + 1:
                    picture.set(cx + x, cy + y, ITEM_COLOURS["e" if y <= 0 else "f"])
    return picture


def main():
    figures = [figure(who, pose) for who in HEADS for pose in POSES]
    sheet(figures, len(POSES)).save(os.path.join(FOLDER, "figures.png"))
    items = [crystal(half) for half in GEM_WIDTHS] + [sparkle(reach) for reach in (2, 4, 6, 7)]
    sheet(items + [dust(step) for step in range(4)], 14).save(os.path.join(FOLDER, "items.png"))


if __name__ == "__main__":
    main()
