"""Writes COLLADA 1.4.1: the elements that the samples need, and no others."""

import xml.etree.ElementTree as ET


def numbers(values, digits=4):
    return " ".join(_number(value, digits) for value in values)


def _number(value, digits):
    text = f"{value:.{digits}f}"
    if "." in text:
        text = text.rstrip("0").rstrip(".")
    return "0" if text == "-0" else text


def flat(rows):
    return [value for row in rows for value in row]


def child(parent, tag, text=None, **attributes):
    element = ET.SubElement(parent, tag, {key: str(value) for key, value in attributes.items()})
    element.text = text
    return element


class Document:
    """One file with one visual scene. Y is up and a unit is a metre."""

    def __init__(self, title):
        self.root = ET.Element("COLLADA", {
            "xmlns": "http://www.collada.org/2005/11/COLLADASchema", "version": "1.4.1"})
        self._add_asset(title)
        self.libraries = {}
        self.scene = child(self._library("visual_scenes"), "visual_scene", id="scene", name=title)
        scene = child(self.root, "scene")
        child(scene, "instance_visual_scene", url="#scene")

    def write(self, path):
        # The scene comes last whatever libraries were added after it.
        scene = self.root.find("scene")
        self.root.remove(scene)
        self.root.append(scene)
        ET.indent(self.root)
        text = ET.tostring(self.root, encoding="unicode")
        with open(path, "w", encoding="utf-8", newline="\n") as file:
            file.write('<?xml version="1.0" encoding="utf-8"?>\n' + text + "\n")

    def add_texture(self, name, file_name):
        """An image beside the document; materials may name it as their diffuse colour."""
        image = child(self._library("images"), "image", id=name, name=name)
        child(image, "init_from", file_name)

    def add_material(self, name, diffuse, specular=0.0, shininess=10.0):
        """A Phong material. @p diffuse is a colour of three numbers or the name of a texture."""
        effect = child(self._library("effects"), "effect", id=name + "-effect")
        profile = child(effect, "profile_COMMON")
        textured = isinstance(diffuse, str)
        if textured:
            _add_sampler(profile, diffuse)
        phong = child(child(profile, "technique", sid="common"), "phong")
        _add_color(phong, "ambient", (0.2, 0.2, 0.2) if textured else diffuse)
        if textured:
            child(child(phong, "diffuse"), "texture", texture=diffuse + "-sampler", texcoord="UV")
        else:
            _add_color(phong, "diffuse", diffuse)
        _add_color(phong, "specular", (specular, specular, specular))
        child(child(phong, "shininess"), "float", _number(shininess, 4))
        material = child(self._library("materials"), "material", id=name, name=name)
        child(material, "instance_effect", url=f"#{name}-effect")

    def add_geometry(self, name, mesh):
        element = child(child(self._library("geometries"), "geometry", id=name, name=name), "mesh")
        _add_floats(element, name + "-positions", "XYZ", flat(mesh.positions))
        _add_floats(element, name + "-normals", "XYZ", flat(mesh.normals), digits=3)
        if mesh.texture:
            _add_floats(element, name + "-texture", "ST", flat(mesh.texture))
        vertices = child(element, "vertices", id=name + "-vertices")
        child(vertices, "input", semantic="POSITION", source=f"#{name}-positions")
        for material, triangles in mesh.triangles.items():
            _add_triangles(element, name, material, triangles, bool(mesh.texture))

    def add_skin(self, name, geometry, joints, inverse_binds, influences, scale):
        """Binds a geometry to joints.

        @p influences holds per vertex a list of (joint index, weight); the weights are whole
        numbers whose sum is @p scale, and are written as weight / scale.
        """
        controller = child(self._library("controllers"), "controller", id=name, name=name)
        skin = child(controller, "skin", source="#" + geometry)
        child(skin, "bind_shape_matrix", "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1")
        _add_names(skin, name + "-joints", "JOINT", joints)
        _add_floats(skin, name + "-inverse-binds", None, flat(flat(inverse_binds)), 6)
        _add_floats(skin, name + "-weights", ("WEIGHT",), [i / scale for i in range(scale + 1)])
        inputs = child(skin, "joints")
        child(inputs, "input", semantic="JOINT", source=f"#{name}-joints")
        child(inputs, "input", semantic="INV_BIND_MATRIX", source=f"#{name}-inverse-binds")
        weights = child(skin, "vertex_weights", count=len(influences))
        child(weights, "input", semantic="JOINT", source=f"#{name}-joints", offset=0)
        child(weights, "input", semantic="WEIGHT", source=f"#{name}-weights", offset=1)
        child(weights, "vcount", numbers(map(len, influences), 0))
        child(weights, "v", numbers(flat(flat(influences)), 0))

    def add_matrix_animation(self, node, times, matrices):
        """Moves the "transform" matrix of @p node through @p matrices at @p times in seconds."""
        name = node + "-motion"
        animation = child(self._library("animations"), "animation", id=name, name=name)
        _add_floats(animation, name + "-times", ("TIME",), times, 6)
        _add_floats(animation, name + "-matrices", None, flat(flat(matrices)), 5)
        _add_names(animation, name + "-modes", "INTERPOLATION", ["LINEAR"] * len(times))
        sampler = child(animation, "sampler", id=name + "-sampler")
        child(sampler, "input", semantic="INPUT", source=f"#{name}-times")
        child(sampler, "input", semantic="OUTPUT", source=f"#{name}-matrices")
        child(sampler, "input", semantic="INTERPOLATION", source=f"#{name}-modes")
        child(animation, "channel", source=f"#{name}-sampler", target=node + "/transform")

    def add_node(self, name, matrix, parent=None, joint=False):
        """A node below @p parent (default: the scene). Joints get their name as sid."""
        kind = {"sid": name, "type": "JOINT"} if joint else {"type": "NODE"}
        node = child(self.scene if parent is None else parent, "node", id=name, name=name, **kind)
        child(node, "matrix", numbers(flat(matrix), 6), sid="transform")
        return node

    def add_instance(self, node, geometry, materials):
        instance = child(node, "instance_geometry", url="#" + geometry)
        _bind_materials(instance, materials)

    def add_skinned_instance(self, node, skin, skeleton, materials):
        instance = child(node, "instance_controller", url="#" + skin)
        child(instance, "skeleton", "#" + skeleton)
        _bind_materials(instance, materials)

    def add_camera(self, name, matrix, vertical_angle, aspect=1.5):
        """A perspective camera. Its sight ends far outside all that is a few metres large."""
        camera = child(self._library("cameras"), "camera", id=name + "-camera", name=name)
        common = child(child(camera, "optics"), "technique_common")
        perspective = child(common, "perspective")
        child(perspective, "yfov", _number(vertical_angle, 4))
        child(perspective, "aspect_ratio", _number(aspect, 4))
        child(perspective, "znear", "0.05")
        child(perspective, "zfar", "50")
        child(self.add_node(name, matrix), "instance_camera", url=f"#{name}-camera")

    def add_sun(self, name, matrix, color):
        """Light from infinitely far away along the -z axis of @p matrix."""
        light = child(self._library("lights"), "light", id=name + "-light", name=name)
        directional = child(child(light, "technique_common"), "directional")
        child(directional, "color", numbers(color))
        child(self.add_node(name, matrix), "instance_light", url=f"#{name}-light")

    def _add_asset(self, title):
        asset = child(self.root, "asset")
        contributor = child(asset, "contributor")
        child(contributor, "author", "vantorix")
        child(contributor, "authoring_tool", "samples/generate/make_samples.py")
        # Fixed, so that the same generator always writes the same file.
        child(asset, "created", "2025-01-01T00:00:00Z")
        child(asset, "modified", "2025-01-01T00:00:00Z")
        child(asset, "title", title)
        child(asset, "unit", name="meter", meter=1)
        child(asset, "up_axis", "Y_UP")

    def _library(self, kind):
        if kind not in self.libraries:
            self.libraries[kind] = child(self.root, "library_" + kind)
        return self.libraries[kind]


def _add_color(parent, tag, color):
    child(child(parent, tag), "color", numbers((*color, 1.0)), sid=tag)


def _add_sampler(profile, texture):
    surface = child(child(profile, "newparam", sid=texture + "-surface"), "surface", type="2D")
    child(surface, "init_from", texture)
    sampler = child(child(profile, "newparam", sid=texture + "-sampler"), "sampler2D")
    child(sampler, "source", texture + "-surface")


def _add_floats(parent, name, components, values, digits=4):
    """A source of floats. @p components names those of one tuple; None means 4x4 matrices."""
    source = child(parent, "source", id=name)
    child(source, "float_array", numbers(values, digits), id=name + "-array", count=len(values))
    stride = 16 if components is None else len(components)
    accessor = _add_accessor(source, name, len(values) // stride, stride)
    if components is None:
        child(accessor, "param", name="TRANSFORM", type="float4x4")
    for component in components or ():
        child(accessor, "param", name=component, type="float")


def _add_names(parent, name, parameter, values):
    source = child(parent, "source", id=name)
    child(source, "Name_array", " ".join(values), id=name + "-array", count=len(values))
    accessor = _add_accessor(source, name, len(values), 1)
    child(accessor, "param", name=parameter, type="name")


def _add_accessor(source, name, count, stride):
    common = child(source, "technique_common")
    return child(common, "accessor", source=f"#{name}-array", count=count, stride=stride)


def _add_triangles(mesh, name, material, triangles, textured):
    element = child(mesh, "triangles", material=material, count=len(triangles))
    child(element, "input", semantic="VERTEX", source=f"#{name}-vertices", offset=0)
    child(element, "input", semantic="NORMAL", source=f"#{name}-normals", offset=0)
    if textured:
        child(element, "input", semantic="TEXCOORD", source=f"#{name}-texture", offset=0, set=0)
    child(element, "p", numbers(flat(triangles), 0))


def _bind_materials(instance, materials):
    common = child(child(instance, "bind_material"), "technique_common")
    for material in materials:
        bound = child(common, "instance_material", symbol=material, target="#" + material)
        child(bound, "bind_vertex_input", semantic="UV", input_semantic="TEXCOORD", input_set=0)
