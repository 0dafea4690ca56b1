"""Three-component vectors as tuples, and 4x4 matrices as lists of rows for column vectors."""

import math


def add(a, b):
    return (a[0] + b[0], a[1] + b[1], a[2] + b[2])


def subtract(a, b):
    return (a[0] - b[0], a[1] - b[1], a[2] - b[2])


def scaled(a, factor):
    return (a[0] * factor, a[1] * factor, a[2] * factor)


def dot(a, b):
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]


def cross(a, b):
    return (a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0])


def length(a):
    return math.sqrt(dot(a, a))


def normalized(a):
    size = length(a)
    return scaled(a, 1.0 / size) if size > 0.0 else (0.0, 1.0, 0.0)


def mixed(a, b, share):
    """The point that lies @p share of the way from a to b."""
    return add(scaled(a, 1.0 - share), scaled(b, share))


def identity():
    return [[1.0 if row == column else 0.0 for column in range(4)] for row in range(4)]


def product(*matrices):
    result = identity()
    for matrix in matrices:
        result = [[sum(result[row][k] * matrix[k][column] for k in range(4))
                   for column in range(4)] for row in range(4)]
    return result


def translation(offset):
    result = identity()
    for row in range(3):
        result[row][3] = offset[row]
    return result


def rotation(axis, degrees):
    """A turn about @p axis, counter-clockwise for who looks against it."""
    x, y, z = normalized(axis)
    c, s = math.cos(math.radians(degrees)), math.sin(math.radians(degrees))
    d = 1.0 - c
    return [[c + x * x * d, x * y * d - z * s, x * z * d + y * s, 0.0],
            [y * x * d + z * s, c + y * y * d, y * z * d - x * s, 0.0],
            [z * x * d - y * s, z * y * d + x * s, c + z * z * d, 0.0],
            [0.0, 0.0, 0.0, 1.0]]


def frame(x_axis, y_axis, z_axis, origin):
    """The matrix that takes local coordinates along three axes to the outside."""
    columns = (x_axis, y_axis, z_axis, origin)
    rows = [[column[row] for column in columns] for row in range(3)]
    return rows + [[0.0, 0.0, 0.0, 1.0]]


def look_at(eye, target):
    """The placement of a camera or lamp at @p eye, which looks along its own -z axis."""
    backward = normalized(subtract(eye, target))
    right = normalized(cross((0.0, 1.0, 0.0), backward))
    return frame(right, cross(backward, right), backward, eye)


def rigid_inverse(matrix):
    """The inverse of a matrix that only turns and moves."""
    columns = [[matrix[row][column] for row in range(3)] for column in range(3)]
    origin = [matrix[row][3] for row in range(3)]
    rows = [column + [-dot(column, origin)] for column in columns]
    return rows + [[0.0, 0.0, 0.0, 1.0]]


def transformed(matrix, point):
    return tuple(dot(row, point) + row[3] for row in matrix[:3])
