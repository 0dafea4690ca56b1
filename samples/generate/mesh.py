"""Triangle meshes with one index per corner, and surfaces given by a function of two numbers."""

from vectors import cross, normalized, subtract


class Mesh:
    """Positions, unit normals and texture coordinates side by side; triangles per material."""

    def __init__(self):
        self.positions = []
        self.normals = []
        self.texture = []    # (u, v) per position, or empty for the whole mesh
        self.triangles = {}  # material name -> list of three indices, counter-clockwise outside

    def append(self, material, positions, normals, triangles, texture=()):
        """Adds a piece whose indices count from its own first position.

        Triangles without area (at the pole of a surface, for example) are left out.
        """
        first = len(self.positions)
        self.positions += positions
        self.normals += normals
        self.texture += texture
        corners = [tuple(first + index for index in triangle) for triangle in triangles
                   if _has_area(positions, triangle)]
        self.triangles.setdefault(material, []).extend(corners)


def surface(point, columns, rows):
    """Samples point(u, v) over the unit square into (positions, normals, triangles, parameters).

    The first and last column stay apart even where they meet, so that a texture can end there.
    Outside is where the directions of growing u and growing v turn counter-clockwise.
    """
    parameters = [(column / columns, row / rows)
                  for row in range(rows + 1) for column in range(columns + 1)]
    positions = [point(u, v) for u, v in parameters]
    normals = [_normal(point, u, v) for u, v in parameters]
    return positions, normals, _grid_triangles(columns, rows), parameters


def _normal(point, u, v):
    # At a pole the derivative along u vanishes: it is taken a little away from the border.
    v = min(max(v, 0.002), 0.998)
    step = 1e-4
    along_u = subtract(point(u + step, v), point(u - step, v))
    along_v = subtract(point(u, v + step), point(u, v - step))
    return normalized(cross(along_u, along_v))


def _grid_triangles(columns, rows):
    triangles = []
    for row in range(rows):
        for column in range(columns):
            a = row * (columns + 1) + column
            b, c, d = a + 1, a + columns + 1, a + columns + 2
            triangles += [(a, b, d), (a, d, c)]
    return triangles


def _has_area(positions, triangle):
    """Whether the corners differ in the digits that are written."""
    rounded = {tuple(round(x, 4) for x in positions[index]) for index in triangle}
    return len(rounded) == 3
