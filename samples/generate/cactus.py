"""A flowering cactus in a painted pot: still, textured, smooth."""

import itertools
import math
import random

import cactus_textures
from collada import Document
from mesh import Mesh, surface
from vectors import (add, cross, dot, identity, look_at, mixed, normalized, scaled, subtract)

COLUMN_RIBS = cactus_textures.RIBS
ARM_RIBS = 9
COLUMN_RADIUS = 0.098
COLUMN_FOOT, COLUMN_TOP = 0.19, 0.70
SOIL_HEIGHT = 0.225


def write(folder):
    cactus_textures.write(folder)
    document = Document("potted cactus")
    document.add_texture("cactus_pot", cactus_textures.POT_FILE)
    document.add_texture("cactus_skin", cactus_textures.SKIN_FILE)
    document.add_material("pot", "cactus_pot", specular=0.25, shininess=40)
    document.add_material("cactus", "cactus_skin", specular=0.08, shininess=12)
    document.add_material("flower", (0.88, 0.16, 0.42), specular=0.15, shininess=20)
    document.add_geometry("cactus-mesh", make_mesh())
    node = document.add_node("potted_cactus", identity())
    document.add_instance(node, "cactus-mesh", ["pot", "cactus", "flower"])
    eye, middle = (0.62, 0.78, 1.5), (0.0, 0.375, 0.0)
    document.add_camera("camera", look_at(eye, middle), vertical_angle=29)
    document.add_sun("sun", look_at((-0.45, 1.2, 1.5), (0.0, 0.0, 0.0)), (1.0, 0.97, 0.9))
    document.write(folder / "cactus.dae")


def make_mesh():
    mesh = Mesh()
    add_pot(mesh)
    add_stem(mesh, column_point, COLUMN_RIBS, rows=30)
    for azimuth, foot, reach, rise in ((25, 0.34, 0.17, 0.21), (205, 0.42, 0.155, 0.13)):
        add_stem(mesh, arm(azimuth, foot, reach, rise), ARM_RIBS, rows=20)
    add_flower(mesh, (0.0, COLUMN_TOP - 0.006, 0.0))
    return mesh


# The pot: profiles (radius, height) turned about the y axis.


WALL = ((0.0, 0.0), (0.115, 0.0), (0.123, 0.012), (0.152, 0.195), (0.172, 0.2), (0.176, 0.212),
        (0.176, 0.245), (0.170, 0.254), (0.158, 0.254), (0.151, 0.246), (0.148, 0.215))
SOIL = ((0.15, SOIL_HEIGHT - 0.004), (0.08, SOIL_HEIGHT + 0.004), (0.0, SOIL_HEIGHT + 0.01))


def add_pot(mesh):
    border = cactus_textures.SOIL_BORDER
    for profile, rows, low, high in ((WALL, 44, 0.0, border - 0.01), (SOIL, 3, border + 0.01, 1.0)):
        curve = rounded(profile)
        positions, normals, triangles, parameters = surface(turned(curve), 48, rows)
        shares = length_shares(curve, rows)
        texture = [(u, low + shares[round(v * rows)] * (high - low)) for u, v in parameters]
        mesh.append("pot", positions, normals, triangles, texture)


def length_shares(curve, rows):
    """For each row: how much of the curve's length lies before it."""
    points = [curve(row / rows) for row in range(rows + 1)]
    steps = itertools.accumulate(itertools.starmap(math.dist, zip(points, points[1:])), initial=0.0)
    lengths = list(steps)
    return [length / lengths[-1] for length in lengths]


def turned(profile):
    def point(u, v):
        radius, height = profile(v)
        angle = 2.0 * math.pi * u
        return (radius * math.sin(angle), height, radius * math.cos(angle))
    return point


def rounded(corners):
    """The curve through the middles of the edges (a quadratic B-spline), ends included."""
    middles = [mixed((*a, 0.0), (*b, 0.0), 0.5)[:2] for a, b in zip(corners, corners[1:])]
    stops = [corners[0]] + middles[1:-1] + [corners[-1]]

    def point(v):
        place = min(max(v, 0.0), 1.0) * (len(stops) - 1)
        i = min(int(place), len(stops) - 2)
        t = place - i
        weights = ((1.0 - t) ** 2, 2.0 * t * (1.0 - t), t * t)
        parts = (stops[i], corners[i + 1], stops[i + 1])
        return tuple(sum(w * part[k] for w, part in zip(weights, parts)) for k in range(2))
    return point


# The stems: ribbed tubes along a curve, closed by a round top.

def add_stem(mesh, point, ribs, rows):
    positions, normals, triangles, parameters = surface(point, ribs * 5, rows)
    share = ribs / COLUMN_RIBS
    texture = [(u * share, v * cactus_textures.PALETTE_BORDER) for u, v in parameters]
    mesh.append("cactus", positions, normals, triangles, texture)
    add_spines(mesh, point, ribs)


def ribbed(radius, ribs, u):
    """Round crests and narrow valleys; a crest lies in the middle of each rib's texture."""
    valley = 1.0 - math.sqrt(math.sin(math.pi * ribs * u) ** 2 + 0.02)
    return radius * (1.0 - 0.2 * valley)


def round_top(v, cap):
    """The radius along a stem that ends in a dome beginning at @p cap."""
    if v <= cap:
        return 1.0
    return math.sqrt(max(1.0 - ((v - cap) / (1.0 - cap)) ** 2, 0.0))


def eased(v):
    """Rows move together towards the top, where the surface bends most."""
    return 1.0 - (1.0 - v) ** 1.7


def column_point(u, v):
    s = eased(min(v, 1.0))
    belly = 0.84 + 0.16 * math.sin(math.pi * min(s * 1.1 + 0.12, 1.0))
    radius = ribbed(COLUMN_RADIUS * belly * round_top(s, 0.78), COLUMN_RIBS, u)
    angle = 2.0 * math.pi * u
    height = COLUMN_FOOT + s * (COLUMN_TOP - COLUMN_FOOT)
    return (radius * math.sin(angle), height, radius * math.cos(angle))


def arm(azimuth, foot, reach, rise):
    """A bent stem that leaves the column at height @p foot and then grows upwards."""
    angle = math.radians(azimuth)
    outward = (math.cos(angle), 0.0, -math.sin(angle))
    side = (math.sin(angle), 0.0, math.cos(angle))

    def centre(s):
        bend = 1.0 - (1.0 - min(s / 0.55, 1.0)) ** 2.2
        climb = max(s - 0.12, 0.0) / 0.88
        height = foot + rise * climb ** 1.5
        return add(scaled(outward, 0.02 + (reach - 0.02) * bend), (0.0, height, 0.0))

    def point(u, v):
        s = eased(min(v, 1.0))
        tangent = normalized(subtract(centre(s + 1e-3), centre(s - 1e-3)))
        across = normalized(cross(side, tangent))
        radius = ribbed(0.052 * round_top(s, 0.74), ARM_RIBS, u)
        turn = 2.0 * math.pi * u
        ring = add(scaled(side, math.cos(turn)), scaled(across, -math.sin(turn)))
        return add(centre(s), scaled(ring, radius))
    return point


def add_spines(mesh, point, ribs):
    """Tufts of three spines on the crest of every rib."""
    chance = random.Random(ribs)
    for rib in range(ribs):
        for row in range(1, cactus_textures.TUFTS):
            u = (rib + 0.5) / ribs
            v = (row + cactus_textures.tuft_shift(rib)) / cactus_textures.TUFTS
            if point(u, v)[1] < SOIL_HEIGHT or v > 0.93:
                continue
            foot, outward = point(u, v), spine_direction(point, u, v)
            for _ in range(3):
                lean = tuple(chance.uniform(-0.75, 0.75) for _ in range(3))
                add_spine(mesh, foot, normalized(add(outward, lean)), chance.uniform(0.016, 0.028))


def spine_direction(point, u, v):
    along_u = subtract(point(u + 1e-3, v), point(u - 1e-3, v))
    along_v = subtract(point(u, v + 1e-3), point(u, v - 1e-3))
    return normalized(cross(along_u, along_v))


def add_spine(mesh, foot, direction, size):
    """A needle with three sides and an open foot inside the stem."""
    helper = (1.0, 0.0, 0.0) if abs(dot(direction, (1.0, 0.0, 0.0))) < 0.8 else (0.0, 1.0, 0.0)
    across = normalized(cross(direction, helper))
    sides = (across, cross(direction, across))
    normals = [add(scaled(sides[0], math.cos(a)), scaled(sides[1], math.sin(a)))
               for a in (0.0, 2.0 * math.pi / 3.0, 4.0 * math.pi / 3.0)]
    start = add(foot, scaled(direction, -0.002))
    positions = [add(start, scaled(normal, 0.0011)) for normal in normals]
    positions.append(add(foot, scaled(direction, size)))
    triangles = [(0, 1, 3), (1, 2, 3), (2, 0, 3)]
    texture = [cactus_textures.SPINE_COLOR_AT] * 4
    mesh.append("cactus", positions, normals + [direction], triangles, texture)


# The flower: two rings of petals about a yellow heart.

HEART = ((0.006, 0.01), (0.015, 0.02), (0.016, 0.035), (0.008, 0.042), (0.0, 0.042))


def add_flower(mesh, foot):
    for petals, tilt, reach, shift in ((9, 12.0, 0.088, 0.0), (7, 38.0, 0.068, 0.4)):
        for i in range(petals):
            azimuth = 2.0 * math.pi * (i + shift) / petals
            shape = petal(foot, azimuth, math.radians(tilt), reach)
            positions, normals, triangles, _ = surface(shape, 10, 7)
            mesh.append("flower", positions, normals, triangles, [(0.5, 0.5)] * len(positions))
    heart = turned(rounded(HEART))
    positions, normals, triangles, _ = surface(heart, 14, 6)
    positions = [add(foot, position) for position in positions]
    texture = [cactus_textures.HEART_COLOR_AT] * len(positions)
    mesh.append("cactus", positions, normals, triangles, texture)


def petal(foot, azimuth, tilt, reach):
    """A closed leaf: a flat tube whose middle line rises by @p tilt and curls at its end."""
    outward = (math.sin(azimuth), 0.0, math.cos(azimuth))
    side = (math.cos(azimuth), 0.0, -math.sin(azimuth))

    def point(u, v):
        v = min(max(v, 0.0), 1.0)
        slope = tilt + 0.35 * v
        middle = add(scaled(outward, reach * v * math.cos(slope)),
                     (0.0, reach * v * math.sin(slope) + 0.006, 0.0))
        lift = add(scaled(outward, -math.sin(slope)), (0.0, math.cos(slope), 0.0))
        width = reach * 0.27 * math.sqrt(max(1.0 - (1.45 * v - 0.45) ** 2, 0.0)) * (v > 0.0)
        turn = 2.0 * math.pi * u
        hollow = 0.25 * width * math.cos(turn) ** 2
        ring = add(scaled(side, width * math.cos(turn)),
                   scaled(lift, hollow + 0.12 * width * math.sin(turn)))
        return add(foot, add(middle, ring))
    return point
