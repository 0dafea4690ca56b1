"""How the figure moves: it walks on the spot and waves its right hand, in a loop."""

import math

from figure_skeleton import ARM_ANGLE, BY_NAME, JOINTS, local_matrix, turned_frames
from vectors import cross, normalized, product, rigid_inverse, rotation, transformed

DURATION = 4.0
STEPS = 48
STRIDES, WAVES = 3, 5
FRONT, UP, LEFT = (0.0, 0.0, 1.0), (0.0, 1.0, 0.0), (1.0, 0.0, 0.0)
SOLES = {"foot_left": ((0.11, 0.0, -0.06), (0.12, 0.0, 0.13)),
         "foot_right": ((-0.11, 0.0, -0.06), (-0.12, 0.0, 0.13))}


def key_times():
    return [DURATION * step / STEPS for step in range(STEPS + 1)]


def channels():
    """Per joint its matrices relative to the parent, one for each key time."""
    poses = [pose(time) for time in key_times()]
    return {joint.name: [local_matrix(joint, frames) for frames in poses] for joint in JOINTS}


def pose(time):
    """World matrices of all joints; the lower foot stands on the ground."""
    stride = 2.0 * math.pi * STRIDES * time / DURATION
    turns = trunk(stride)
    turns.update(leg("left", stride))
    turns.update(leg("right", stride + math.pi))
    turns.update(swinging_arm(stride))
    turns.update(waving_arm(2.0 * math.pi * WAVES * time / DURATION))
    sway = 0.018 * math.sin(stride)
    lowest = lowest_sole(turned_frames(turns, (sway, 0.0, 0.0)))
    return turned_frames(turns, (sway, -lowest, 0.0))


def lowest_sole(frames):
    heights = []
    for name, points in SOLES.items():
        move = product(frames[name], rigid_inverse(BY_NAME[name].rest))
        heights += [transformed(move, point)[1] for point in points]
    return min(heights)


def trunk(stride):
    swing = math.sin(stride)
    return {"hips": product(rotation(UP, -5.0 * swing), rotation(FRONT, 2.0 * math.cos(stride))),
            "spine": rotation(FRONT, -2.0 * math.cos(stride)),
            "chest": product(rotation(UP, 9.0 * swing), rotation(LEFT, 2.0)),
            "neck": rotation(UP, -3.0 * swing),
            "head": product(rotation(UP, -6.0), rotation(FRONT, 4.0 * math.sin(stride + 0.6)))}


def leg(side, phase):
    """The leg swings forward while the cosine of its phase is positive, its knee bent."""
    thigh = -24.0 * math.sin(phase) - 4.0
    knee = 10.0 + 46.0 * max(math.cos(phase + 0.25), 0.0) ** 1.5
    level = -(thigh + knee)
    push = 14.0 * max(-math.sin(phase), 0.0) ** 2
    return {"thigh_" + side: rotation(LEFT, thigh), "shin_" + side: rotation(LEFT, knee),
            "foot_" + side: rotation(LEFT, 0.8 * level + push)}


def swinging_arm(stride):
    """The left arm hangs beside the body and swings against the left leg."""
    swing = math.sin(stride + math.pi)
    return {"upper_arm_left": product(rotation(LEFT, -22.0 * swing), rotation(FRONT, -33.0)),
            "forearm_left": rotation(forward_bend(1.0), 20.0 + 12.0 * swing),
            "hand_left": rotation(forward_bend(1.0), 6.0)}


def waving_arm(wave):
    """The right upper arm is raised a little above the shoulder, the forearm upright."""
    beat = math.sin(wave)
    return {"upper_arm_right": product(rotation(FRONT, ARM_ANGLE - 4.0 * beat - 6.0),
                                       rotation(forward_bend(-1.0), 14.0)),
            "forearm_right": rotation(FRONT, -78.0 - 20.0 * beat),
            "hand_right": rotation(FRONT, -16.0 * math.sin(wave - 0.7))}


def forward_bend(sign):
    """The axis about which an arm at rest bends towards the front; @p sign is +1 on the left."""
    angle = math.radians(ARM_ANGLE)
    return normalized(cross((sign * math.cos(angle), math.sin(angle), 0.0), FRONT))
