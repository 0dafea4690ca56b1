"""The figure's body and clothes: pieces of smooth surface, each with a material and its joints."""

from figure_skeleton import ARM_ANGLE, BY_NAME, along
from implicit import ball, below, blended, round_cone, without
from vectors import add, mixed, scaled

TRUNK = ("hips", "spine", "chest")
SIDES = (("left", 1.0), ("right", -1.0))


class Piece:
    """A shape, the box and cell size to sample it with, and the joints that may move it."""

    def __init__(self, material, shape, low, high, cell, joints):
        self.material, self.shape, self.low, self.high = material, shape, low, high
        self.cell, self.joints = cell, joints


def pieces():
    result = [head(), hair(), *face(), shirt(), trousers()]
    for side, sign in SIDES:
        result += [arm(side, sign), shoe(side, sign)]
    return result


def mirrored(sign, point):
    return (sign * point[0], point[1], point[2])


def side_box(sign, low, high):
    """A box on one side of the body, given for the left one."""
    a, b = mirrored(sign, low), mirrored(sign, high)
    return tuple(map(min, a, b)), tuple(map(max, a, b))


def head():
    parts = [ball((0.0, 1.632, 0.0), (0.112, 0.132, 0.122)),
             ball((0.0, 1.572, 0.026), (0.082, 0.072, 0.082)),
             ball((0.0, 1.607, 0.122), (0.017, 0.019, 0.022)),
             round_cone((0.0, 1.36, -0.01), (0.0, 1.54, -0.005), 0.052, 0.05)]
    parts += [ball((sign * 0.115, 1.617, -0.005), (0.016, 0.032, 0.024)) for _, sign in SIDES]
    return Piece("skin", blended(parts, 0.012), (-0.15, 1.36, -0.15), (0.15, 1.79, 0.17), 0.0195,
                 ("chest", "neck", "head"))


def hair():
    cap = blended([ball((0.0, 1.665, -0.012), (0.13, 0.128, 0.135)),
                   ball((0.0, 1.60, -0.05), (0.112, 0.11, 0.095)),
                   ball((0.03, 1.745, 0.055), (0.075, 0.045, 0.065))], 0.012)
    window = blended([ball((0.0, 1.585, 0.16), (0.102, 0.118, 0.13))], 0.01)
    return Piece("hair", without(cap, window, 0.003), (-0.16, 1.46, -0.18), (0.16, 1.83, 0.15), 0.025,
                 ("head",))


def on_face(x, y):
    """The point of the head's front at x and y."""
    shape, z = head().shape, 0.2
    for _ in range(30):
        z -= shape((x, y, z))
    return (x, y, z)


def face():
    """Two eyes, their brows and a smile."""
    def small(material, shape, middle, reach, cell=0.0055):
        low, high = (tuple(m + sign * reach for m in middle) for sign in (-1.0, 1.0))
        return Piece(material, shape, low, high, cell, ("head",))

    for _, sign in SIDES:
        eye = on_face(sign * 0.042, 1.633)
        yield small("dark", ball(eye, (0.0135, 0.019, 0.008)), eye, 0.025)
        inner, outer = on_face(sign * 0.026, 1.676), on_face(sign * 0.06, 1.675)
        brow = round_cone(inner, outer, 0.0065, 0.0045)
        yield small("hair", brow, mixed(inner, outer, 0.5), 0.03)
    corners = [on_face(x, 1.553 + 9.0 * x * x) for x in (-0.038, -0.02, 0.0, 0.02, 0.038)]
    smile = [round_cone(a, b, 0.0055, 0.0055) for a, b in zip(corners, corners[1:])]
    yield small("dark", blended(smile, 0.001), on_face(0.0, 1.56), 0.045, 0.0042)


def shirt():
    parts = [round_cone((0.0, 0.90, 0.0), (0.0, 1.06, 0.0), 0.172, 0.136, depth=0.74),
             round_cone((0.0, 1.06, 0.0), (0.0, 1.24, -0.005), 0.136, 0.148, depth=0.74),
             round_cone((0.0, 1.36, -0.012), (0.0, 1.405, -0.01), 0.08, 0.056)]
    for _, sign in SIDES:
        shoulder = mirrored(sign, BY_NAME["upper_arm_left"].head)
        sleeve = mirrored(sign, along(BY_NAME["upper_arm_left"].head, ARM_ANGLE, 0.15))
        parts += [round_cone((sign * 0.06, 1.28, -0.01), shoulder, 0.095, 0.058, depth=0.9),
                  round_cone((0.0, 1.385, -0.012), shoulder, 0.06, 0.052),
                  round_cone(shoulder, sleeve, 0.06, 0.063)]
    shape = without(blended(parts, 0.02), below(0.88), 0.012)
    return Piece("shirt", shape, (-0.40, 0.83, -0.18), (0.40, 1.49, 0.18), 0.033,
                 (*TRUNK, "neck", "upper_arm_left", "upper_arm_right"))


def trousers():
    parts = [round_cone((0.0, 0.90, 0.0), (0.0, 0.96, 0.0), 0.134, 0.126, depth=0.76)]
    joints = list(TRUNK[:2])
    for side, sign in SIDES:
        hip, knee, ankle = (mirrored(sign, BY_NAME[name + "_left"].head)
                            for name in ("thigh", "shin", "foot"))
        parts += [round_cone(hip, knee, 0.077, 0.055),
                  round_cone(knee, add(ankle, (0.0, 0.03, 0.0)), 0.055, 0.057)]
        joints += [f"{name}_{side}" for name in ("thigh", "shin")]
    return Piece("trousers", blended(parts, 0.018), (-0.22, 0.03, -0.16), (0.22, 1.13, 0.16), 0.032,
                 joints)


def arm(side, sign):
    upper, fore, wrist = (BY_NAME[name + "_left"].head for name in ("upper_arm", "forearm", "hand"))
    parts = [round_cone(mixed(upper, fore, 0.42), fore, 0.044, 0.035),
             round_cone(fore, wrist, 0.036, 0.024), *hand(wrist)]
    shape = blended(parts, 0.008)
    low, high = side_box(sign, (0.19, 0.84, -0.09), (0.67, 1.34, 0.10))
    return Piece("skin", lambda point: shape(mirrored(sign, point)), low, high, 0.0115,
                 [f"{name}_{side}" for name in ("upper_arm", "forearm", "hand")])


def hand(wrist):
    """A palm with four fingers and a thumb; the palm looks down and to the body."""
    palm = along(wrist, ARM_ANGLE, 0.05)
    yield round_cone(wrist, palm, 0.023, 0.026)
    for spread in (-1.5, -0.5, 0.5, 1.5):
        yield finger(palm, spread)
    thumb = along(add(wrist, (0.0, 0.0, 0.06)), ARM_ANGLE - 8.0, 0.082)
    yield round_cone(add(palm, (-0.012, 0.012, 0.014)), thumb, 0.015, 0.0095)


def finger(palm, spread):
    across = (0.0, 0.0, 0.0175 * spread)
    size = 0.096 - 0.009 * abs(spread + 0.4)
    tip = add(along(palm, ARM_ANGLE - 6.0, size), scaled(across, 1.35))
    return round_cone(add(palm, across), tip, 0.0115, 0.0085)


def shoe(side, sign):
    ankle = BY_NAME["foot_left"].head
    parts = [round_cone((0.11, 0.045, -0.045), (0.116, 0.04, 0.05), 0.046, 0.047),
             ball((0.12, 0.036, 0.105), (0.05, 0.044, 0.062)),
             round_cone((0.11, 0.06, -0.03), add(ankle, (0.0, 0.055, 0.0)), 0.05, 0.043)]
    body = blended(parts, 0.015)
    shape = without(lambda point: body(mirrored(sign, point)), below(0.0), 0.002)
    low, high = side_box(sign, (0.03, -0.02, -0.13), (0.20, 0.21, 0.20))
    return Piece("shoes", shape, low, high, 0.021, ["shin_" + side, "foot_" + side])
