"""A person who walks and waves: a skin over joints, moved by matrix channels."""

import figure_motion
from collada import Document
from figure_body import pieces
from figure_skeleton import JOINTS, local_matrix
from figure_weights import SCALE, influences
from implicit import net
from mesh import Mesh
from vectors import identity, look_at, rigid_inverse

COLORS = {"skin": (0.87, 0.62, 0.47), "hair": (0.26, 0.14, 0.08), "dark": (0.07, 0.05, 0.06),
          "shirt": (0.93, 0.49, 0.13), "trousers": (0.13, 0.23, 0.42), "shoes": (0.62, 0.13, 0.11)}


def write(folder):
    document = Document("walking figure")
    for material, color in COLORS.items():
        document.add_material(material, color, specular=0.12, shininess=18)
    mesh, weights = make_body()
    document.add_geometry("figure-mesh", mesh)
    document.add_skin("figure-skin", "figure-mesh", [joint.name for joint in JOINTS],
                      [rigid_inverse(joint.rest) for joint in JOINTS], weights, SCALE)
    add_joints(document)
    figure = document.add_node("figure", identity())
    document.add_skinned_instance(figure, "figure-skin", JOINTS[0].name, mesh.triangles)
    add_motion(document)
    eye, middle = (1.0, 1.35, 4.1), (0.0, 0.88, 0.0)
    document.add_camera("camera", look_at(eye, middle), vertical_angle=28)
    document.add_sun("sun", look_at((-0.6, 1.1, 1.8), (0.0, 0.0, 0.0)), (1.0, 0.97, 0.92))
    document.write(folder / "figure.dae")


def make_body():
    """The mesh at rest, and per vertex the influences of the joints."""
    mesh, weights = Mesh(), []
    for piece in pieces():
        positions, normals, triangles = net(piece.shape, piece.low, piece.high, piece.cell)
        mesh.append(piece.material, positions, normals, triangles)
        weights += [influences(position, piece.joints) for position in positions]
    return mesh, weights


def add_joints(document):
    rest = {joint.name: joint.rest for joint in JOINTS}
    nodes = {None: None}
    for joint in JOINTS:
        nodes[joint.name] = document.add_node(joint.name, local_matrix(joint, rest),
                                              nodes[joint.parent], joint=True)


def add_motion(document):
    times = figure_motion.key_times()
    for name, matrices in figure_motion.channels().items():
        document.add_matrix_animation(name, times, matrices)
