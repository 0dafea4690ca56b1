"""Reads the figure back, apart from the code that wrote it: does its skin hold together?"""

import sys
import xml.etree.ElementTree as ET

SPACE = {"c": "http://www.collada.org/2005/11/COLLADASchema"}


class File:
    def __init__(self, path):
        self.root = ET.parse(path).getroot()
        self.ids = {element.get("id"): element for element in self.root.iter() if element.get("id")}

    def one(self, path, start=None):
        return (self.root if start is None else start).find(path, SPACE)

    def array(self, holder, semantic):
        """The source behind one input of an element, as floats or names."""
        source = self.ids[self.one(f"c:input[@semantic='{semantic}']", holder).get("source")[1:]]
        floats = self.one("c:float_array", source)
        if floats is None:
            return self.one("c:Name_array", source).text.split()
        return [float(text) for text in floats.text.split()]


def chunks(values, size):
    return [values[i:i + size] for i in range(0, len(values), size)]


def times(a, b):
    return [sum(a[4 * row + k] * b[4 * k + column] for k in range(4))
            for row in range(4) for column in range(4)]


IDENTITY = [float(row == column) for row in range(4) for column in range(4)]


def world_matrices(file):
    result = {}

    def visit(node, parent):
        local = [float(text) for text in file.one("c:matrix", node).text.split()]
        result[node.get("sid") or node.get("id")] = world = times(parent, local)
        for child in node.findall("c:node", SPACE):
            visit(child, world)
    for node in file.one(".//c:visual_scene").findall("c:node", SPACE):
        visit(node, IDENTITY)
    return result


def check_bind(file, skin):
    """At rest, joint matrix times inverse bind matrix changes nothing."""
    joints = file.one("c:joints", skin)
    names, world = file.array(joints, "JOINT"), world_matrices(file)
    for name, inverse in zip(names, chunks(file.array(joints, "INV_BIND_MATRIX"), 16)):
        error = max(abs(a - b) for a, b in zip(times(world[name], inverse), IDENTITY))
        assert error < 1e-4, f"the bind matrix of {name} is off by {error}"
    assert len(names) >= 12 and len(set(names)) == len(names)


def check_weights(file, skin):
    table = file.one("c:vertex_weights", skin)
    weights = file.array(table, "WEIGHT")
    counts = [int(text) for text in file.one("c:vcount", table).text.split()]
    pairs = iter(chunks([int(text) for text in file.one("c:v", table).text.split()], 2))
    for vertex, count in enumerate(counts):
        total = sum(weights[next(pairs)[1]] for _ in range(count))
        assert abs(total - 1.0) < 1e-6, f"the weights of vertex {vertex} sum to {total}"
    assert next(pairs, None) is None
    mesh = file.one("c:mesh", file.ids[skin.get("source")[1:]])
    assert len(counts) * 3 == len(file.array(file.one("c:vertices", mesh), "POSITION"))


def check_loop(file):
    """Every channel names a joint's matrix, and ends as it began."""
    for channel in file.root.iterfind(".//c:channel", SPACE):
        node, sid = channel.get("target").split("/")
        assert file.one(f"c:matrix[@sid='{sid}']", file.ids[node]) is not None
        sampler = file.ids[channel.get("source")[1:]]
        keys = chunks(file.array(sampler, "OUTPUT"), 16)
        assert len(keys) == len(file.array(sampler, "INPUT"))
        assert max(abs(a - b) for a, b in zip(keys[0], keys[-1])) < 1e-4, f"{node} jumps"


def main():
    file = File(sys.argv[1])
    skin = file.one(".//c:skin")
    check_bind(file, skin)
    check_weights(file, skin)
    check_loop(file)


if __name__ == "__main__":
    main()
