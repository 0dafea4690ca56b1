"""Smooth bodies: shapes as signed distances, and their surface as a net of quads.

The surface is the dual net of S. Gibson, "Constrained elastic surface nets" (1998), without the
relaxation: its vertices are moved onto the surface along the gradient instead.
"""

import itertools
import math

from vectors import add, dot, normalized, scaled, subtract


def round_cone(a, b, radius_a, radius_b, depth=1.0):
    """A limb from a to b with a radius at each end; @p depth stretches it along z."""
    stretch = (1.0, 1.0, 1.0 / depth)
    start = tuple(map(float.__mul__, a, stretch))
    axis = subtract(tuple(map(float.__mul__, b, stretch)), start)
    square = dot(axis, axis) or 1.0

    def distance(point):
        offset = (point[0] - start[0], point[1] - start[1], point[2] * stretch[2] - start[2])
        share = min(max(dot(offset, axis) / square, 0.0), 1.0)
        rest = subtract(offset, scaled(axis, share))
        return math.sqrt(dot(rest, rest)) - (radius_a + (radius_b - radius_a) * share)
    return distance


def ball(centre, radii):
    """An ellipsoid; the distance is exact for a sphere only."""
    smallest = min(radii)

    def distance(point):
        offset = [(point[k] - centre[k]) / radii[k] for k in range(3)]
        return (math.sqrt(dot(offset, offset)) - 1.0) * smallest
    return distance


def blended(shapes, softness):
    """The union, with fillets of about @p softness where shapes meet (order does not matter)."""
    def distance(point):
        distances = [shape(point) for shape in shapes]
        nearest = min(distances)
        total = sum(math.exp((nearest - d) / softness) for d in distances)
        return nearest - softness * math.log(total)
    return distance


def without(shape, removed, softness):
    """The first shape less the second, the new edge rounded."""
    kept = blended([lambda point: -shape(point), removed], softness)
    return lambda point: -kept(point)


def below(height):
    """Everything lower than @p height."""
    return lambda point: point[1] - height


def net(distance, low, high, cell):
    """The surface of a shape between two corners as (positions, normals, triangles)."""
    grid = _Grid(distance, low, high, cell)
    positions = [_settled(distance, p) for p in grid.vertices()]
    normals = [gradient(distance, p) for p in positions]
    triangles = [t for quad in grid.quads() for t in _split(quad, positions)]
    return positions, normals, triangles


def gradient(distance, point, step=1e-3):
    slopes = []
    for k in range(3):
        offset = tuple(step if k == axis else 0.0 for axis in range(3))
        slopes.append(distance(add(point, offset)) - distance(subtract(point, offset)))
    return normalized(tuple(slopes))


def _settled(distance, point):
    for _ in range(2):
        point = subtract(point, scaled(gradient(distance, point), distance(point)))
    return point


def _split(quad, positions):
    """Two triangles along the shorter diagonal."""
    a, b, c, d = quad
    if math.dist(positions[a], positions[c]) <= math.dist(positions[b], positions[d]):
        return (a, b, c), (a, c, d)
    return (a, b, d), (b, c, d)


class _Grid:
    """Distances at the corners of cubic cells; a cell with both signs holds one vertex."""

    def __init__(self, distance, low, high, cell):
        self.low, self.cell = low, cell
        self.counts = [math.ceil((high[k] - low[k]) / cell) for k in range(3)]
        corners = itertools.product(*(range(count + 1) for count in self.counts))
        self.values = {corner: distance(self._place(corner)) for corner in corners}
        self.vertex_of = {}

    def vertices(self):
        """Per cell that the surface cuts: the middle of its cuts with the cell's edges."""
        result = []
        for cell in itertools.product(*map(range, self.counts)):
            cuts = self._cuts(cell)
            if cuts:
                self.vertex_of[cell] = len(result)
                middle = tuple(sum(cut[k] for cut in cuts) / len(cuts) for k in range(3))
                result.append(self._place(middle))
        return result

    def quads(self):
        """Around each edge that the surface cuts: the vertices of its four cells."""
        for corner, value in self.values.items():
            for axis in range(3):
                end = _moved(corner, axis, 1)
                if end in self.values and (value < 0.0) != (self.values[end] < 0.0):
                    yield from self._quad(corner, axis, outward=value < 0.0)

    def _quad(self, corner, axis, outward):
        second, third = (axis + 1) % 3, (axis + 2) % 3
        cells = [corner, _moved(corner, second, -1)]
        cells += [_moved(cell, third, -1) for cell in reversed(cells)]
        if all(cell in self.vertex_of for cell in cells):
            quad = [self.vertex_of[cell] for cell in cells]
            yield quad if outward else quad[::-1]

    def _cuts(self, cell):
        corners = [tuple(map(int.__add__, cell, offset)) for offset in _CORNERS]
        signs = {self.values[corner] < 0.0 for corner in corners}
        return [] if len(signs) == 1 else [self._cut(corners[a], corners[b]) for a, b in _EDGES
                                           if self._differ(corners[a], corners[b])]

    def _differ(self, a, b):
        return (self.values[a] < 0.0) != (self.values[b] < 0.0)

    def _cut(self, a, b):
        share = self.values[a] / (self.values[a] - self.values[b])
        return tuple(a[k] + (b[k] - a[k]) * share for k in range(3))

    def _place(self, corner):
        return tuple(self.low[k] + corner[k] * self.cell for k in range(3))


_CORNERS = list(itertools.product((0, 1), repeat=3))
_EDGES = [(a, b) for a, b in itertools.combinations(range(8), 2)
          if sum(map(int.__ne__, _CORNERS[a], _CORNERS[b])) == 1]


def _moved(cell, axis, by):
    return tuple(value + by if k == axis else value for k, value in enumerate(cell))
