"""Pretty printers of vantorix for gdb.

Installed under the names of the libraries, so that gdb loads it with them; by hand:
`source tools/gdb/vantorix-gdb.py`. The printers read fields and call nothing, so that they work
on core dumps. Two classes are private to the libraries, so that no application's debug information
describes them: their fields are read by place.
"""

import struct

import gdb
import gdb.printing

TUPLES_SHOWN = 4


def text_of(string):
    """The content of a std::string, without help of other printers."""
    data = string["_M_dataplus"]["_M_p"]
    return data.string("utf-8", "replace", int(string["_M_string_length"]))


def size_of(vector):
    """The number of elements of a std::vector."""
    impl = vector["_M_impl"]
    return int(impl["_M_finish"] - impl["_M_start"])


def pointers_in(vector):
    """The number of boost::shared_ptr in a std::vector, whose type may not be described."""
    impl = vector["_M_impl"]
    return (int(impl["_M_finish"]) - int(impl["_M_start"])) // (2 * pointer_to("void").sizeof)


def first_of(vector, count):
    """The first count elements of a std::vector, or fewer if it has no more."""
    start = vector["_M_impl"]["_M_start"]
    return [start[i] for i in range(max(0, min(count, size_of(vector))))]


def quoted(text):
    return '"' + text + '"'


def numbers(values):
    """Floats with as many digits as gdb's %g shows: short, and good enough to look at."""
    return " ".join("%g" % float(value) for value in values)


def named(kind, value):
    """What begins the line of everything that has an ID and a name."""
    return "%s %s (name %s)" % (kind, quoted(text_of(value["id_"])), quoted(text_of(value["name_"])))


class Printer:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        try:
            return self.describe()
        except gdb.error as error:  # Memory that cannot be read, a class without description.
            return "<%s>" % error


class NodePrinter(Printer):
    def describe(self):
        return "%s, children: %d" % (named("Node", self.value), self.child_count())

    def child_count(self):
        # A std::unique_ptr with the default deleter is its pointer.
        row = self.value["children_"].address.cast(pointer_to("unsigned long").pointer())[0]
        # ChildRow: the branches (four words), a vector (three), the head, the number of children.
        return int(row[8]) if int(row) else 0


class MeshPrinter(Printer):
    def describe(self):
        return "%s, streams: %d, primitives: %d" % (
            named("Mesh", self.value),
            pointers_in(self.value["streams_"]),
            pointers_in(self.value["primitives_"]),
        )


class StreamPrinter(Printer):
    def describe(self):
        stride = int(self.value["stride"])
        floats = self.value["values"]["items_"]
        width = max(1, stride)
        shown = first_of(floats, TUPLES_SHOWN * width)
        tuples = [numbers(shown[i : i + width]) for i in range(0, len(shown), width)]
        if size_of(floats) > len(shown):
            tuples.append("...")
        return "Stream %s, stride: %d, count: %d, values: {%s}" % (
            quoted(text_of(self.value["name"])),
            stride,
            int(self.value["count"]),
            ", ".join(tuples),
        )


class MatrixPrinter(Printer):
    """Row by row, as matrices are written down; the storage is column by column."""

    def describe(self):
        elements = self.value["elements_"]["_M_elems"]
        rows = [numbers(elements[4 * column + row] for column in range(4)) for row in range(4)]
        return "Matrix {%s}" % ", ".join("{%s}" % row for row in rows)


class VectorPrinter(Printer):
    def describe(self):
        components = self.value["components_"]
        return "Vector {%s}" % numbers(first_of(components, size_of(components)))


class EventTypePrinter(Printer):
    def describe(self):
        name = self.value["name_"]["px"]
        return "EventType " + (quoted(text_of(name["text"])) if int(name) else "(moved from)")


class EventDataPrinter(Printer):
    def describe(self):
        payload = self.value["payload_"]["px"]
        return "EventData " + (self.shared_text(payload) if int(payload) else self.short_text())

    def short_text(self):
        words = self.value["short_"]["_M_elems"]
        data = struct.pack("=3Q", *(int(words[i]) for i in range(3)))
        return quoted(data[: data[-1]].decode("utf-8", "replace"))

    def shared_text(self, payload):
        # Payload: the pointer to its virtual functions, the text, ...
        place = gdb.Value(int(payload) + pointer_to("void").sizeof)
        text = text_of(place.cast(pointer_to("std::string")).dereference())
        # The text of a matrix is made when it is first read.
        return quoted(text + ",<matrix>" if self.holds_matrix(payload) else text)

    @staticmethod
    def holds_matrix(payload):
        # By the name of the table of virtual functions, which a stripped library has lost.
        table = payload.cast(pointer_to("void").pointer()).dereference()
        return "MatrixPayload" in gdb.execute("info symbol %d" % int(table), to_string=True)


def pointer_to(name):
    return gdb.lookup_type(name).pointer()


def make_printers():
    printers = gdb.printing.RegexpCollectionPrettyPrinter("vantorix")
    for kind, printer in (
        ("scene::Node", NodePrinter),
        ("scene::(Convex)?Mesh", MeshPrinter),
        ("scene::Stream", StreamPrinter),
        ("core::utils::Matrix", MatrixPrinter),
        ("core::utils::Vector<.*>", VectorPrinter),
        ("core::event::EventType", EventTypePrinter),
        ("core::event::EventData", EventDataPrinter),
    ):
        printers.add_printer(kind, "^vantorix::%s$" % kind, printer)
    return printers


gdb.printing.register_pretty_printer(gdb.current_objfile(), make_printers(), replace=True)
