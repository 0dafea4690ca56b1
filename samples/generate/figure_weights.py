"""Which joints move a point of the skin, and how much."""

import math

from figure_skeleton import BY_NAME, JOINTS
from vectors import add, dot, scaled, subtract

SCALE = 200      # weights are whole numbers that sum to this
MOST = 4         # joints per vertex
SHARPNESS = 5.0  # how soon the nearest joint takes all

INDEX = {joint.name: index for index, joint in enumerate(JOINTS)}
# The reach of a bone in metres: points at the same multiple of it are moved alike.
REACH = {"hips": 0.15, "spine": 0.14, "chest": 0.16, "neck": 0.05, "head": 0.12,
         "upper_arm": 0.065, "forearm": 0.04, "hand": 0.03,
         "thigh": 0.08, "shin": 0.06, "foot": 0.055}
# How far from its joint a bone begins to pull, as a share of its length: the trunk leads there.
START = {"upper_arm": 0.25, "thigh": 0.3}


def influences(point, joints):
    """A list of (joint index, weight), nearest first."""
    pulls = sorted(((pull(point, name), INDEX[name]) for name in joints), reverse=True)
    # What the first joint left out would pull is taken from all, so that nothing jumps.
    floor = pulls[MOST][0] if len(pulls) > MOST else 0.0
    kept = [(strength - floor, index) for strength, index in pulls[:MOST]]
    return _shares(kept)


def pull(point, name):
    kind = name.split("_left")[0].split("_right")[0]
    joint = BY_NAME[name]
    axis = subtract(joint.tail, joint.head)
    share = dot(subtract(point, joint.head), axis) / dot(axis, axis)
    nearest = add(joint.head, scaled(axis, min(max(share, START.get(kind, 0.0)), 1.0)))
    return (REACH[kind] / max(math.dist(point, nearest), 1e-3)) ** SHARPNESS


def _shares(pulls):
    """Rounds to whole numbers; what rounding leaves over goes to the strongest."""
    total = sum(strength for strength, _ in pulls)
    shares = [(round(SCALE * strength / total), index) for strength, index in pulls]
    rest = SCALE - sum(share for share, _ in shares)
    shares[0] = (shares[0][0] + rest, shares[0][1])
    return [(index, share) for share, index in shares if share > 0]
