"""The joints of the figure: where they lie, how they hang together, how each is turned at rest.

The figure faces +z; its left side is at +x. At rest it stands with its arms held out and down.
"""

import math

from vectors import (add, cross, frame, normalized, product, rigid_inverse, scaled, subtract,
                     translation)


class Joint:
    """@p head is where the joint turns, @p tail the end of its bone, both at rest."""

    def __init__(self, name, parent, head, tail):
        self.name, self.parent, self.head, self.tail = name, parent, head, tail
        self.rest = frame(*_axes(subtract(tail, head)), head)


def _axes(direction):
    """The bone is the joint's y axis; its z axis lies as near as it can to the front."""
    y = normalized(direction)
    front = (0.0, 0.0, 1.0) if abs(y[2]) < 0.9 else (0.0, 1.0, 0.0)
    x = normalized(cross(y, front))
    return x, y, cross(x, y)


def along(start, degrees, distance):
    """The point at @p distance from @p start in the x-y plane; 0 degrees is +x, 90 is up."""
    angle = math.radians(degrees)
    return add(start, scaled((math.cos(angle), math.sin(angle), 0.0), distance))


ARM_ANGLE = -42.0

_TRUNK = [
    ("hips", None, (0.0, 0.90, 0.0), (0.0, 1.02, 0.0)),
    ("spine", "hips", (0.0, 1.02, 0.0), (0.0, 1.17, -0.005)),
    ("chest", "spine", (0.0, 1.17, -0.005), (0.0, 1.40, -0.01)),
    ("neck", "chest", (0.0, 1.40, -0.01), (0.0, 1.49, 0.0)),
    ("head", "neck", (0.0, 1.49, 0.0), (0.0, 1.76, 0.0)),
]


def _limbs(side, sign):
    """The joints of one arm and one leg; @p sign is +1 on the left."""
    shoulder = (0.165, 1.345, -0.01)
    elbow = along(shoulder, ARM_ANGLE, 0.25)
    wrist = along(elbow, ARM_ANGLE, 0.225)
    hip, knee, ankle, toe = ((0.088, 0.87, 0.0), (0.10, 0.475, 0.012), (0.108, 0.085, -0.02),
                             (0.118, 0.03, 0.13))
    chains = [("chest", ("upper_arm", shoulder), ("forearm", elbow), ("hand", wrist),
               (None, along(wrist, ARM_ANGLE, 0.16))),
              ("hips", ("thigh", hip), ("shin", knee), ("foot", ankle), (None, toe))]
    for parent, *chain in chains:
        for (name, head), (_, tail) in zip(chain, chain[1:]):
            mirrored = [(sign * p[0], p[1], p[2]) for p in (head, tail)]
            yield Joint(f"{name}_{side}", parent, *mirrored)
            parent = f"{name}_{side}"


JOINTS = [Joint(*row) for row in _TRUNK] + list(_limbs("left", 1.0)) + list(_limbs("right", -1.0))
BY_NAME = {joint.name: joint for joint in JOINTS}


def turned_frames(turns, shift):
    """World matrices after a movement, by joint name.

    @p turns maps joint names to rotations about the joint's own place, along the axes that the
    figure's body has there; @p shift moves the whole figure.
    """
    bodies, result = {None: translation(shift)}, {}
    for joint in JOINTS:
        start = BY_NAME[joint.parent].head if joint.parent else (0.0, 0.0, 0.0)
        body = product(bodies[joint.parent], translation(subtract(joint.head, start)))
        if joint.name in turns:
            body = product(body, turns[joint.name])
        bodies[joint.name] = body
        result[joint.name] = product(body, translation(scaled(joint.head, -1.0)), joint.rest)
    return result


def local_matrix(joint, frames):
    """The matrix of a joint relative to its parent."""
    if joint.parent is None:
        return frames[joint.name]
    return product(rigid_inverse(frames[joint.parent]), frames[joint.name])
