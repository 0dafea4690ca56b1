"""Run inside gdb: what the printers show of the locals of PrinterSample.cpp."""

import gdb

EXPECTED = {
    "*family.px": 'Node "family" (name "the "family""), children: 2',
    "*child.px": 'Node "child" (name ""), children: 0',
    "*stream.px": 'Stream "position_stream", stride: 3, count: 6, '
    "values: {0 0.5 -1, 1 0.5 -1, 2 0.5 -1, 3 0.5 -1, ...}",
    "empty": 'Stream "empty", stride: 0, count: 0, values: {}',
    "mesh": 'Mesh "cube" (name "a cube"), streams: 1, primitives: 0',
    "matrix": "Matrix {{1 0 0 2.5}, {0 1 0 0}, {0 0 1 0}, {0 0 0 1}}",
    "vector": "Vector {1 2 3}",
    "nothing": "Vector {}",
    "type": 'EventType "NodeNewChild"',
    "source": "EventType (moved from)",
    "target": 'EventType "SceneUpdate"',
    "shortText": 'EventData "family,child"',
    "longText": 'EventData "a payload of more than twenty-three bytes"',
    "moved": 'EventData "family,<matrix>"',
}


def shown(expression):
    try:
        return gdb.execute("output " + expression, to_string=True)
    except gdb.error as error:
        return "error: %s" % error


def check():
    gdb.execute("set debuginfod enabled off")
    gdb.execute("break look")
    gdb.execute("run")
    gdb.execute("up")
    wrong = 0
    for expression, expected in EXPECTED.items():
        actual = shown(expression)
        if actual != expected:
            wrong += 1
            print("%s\n  is       %s\n  expected %s" % (expression, actual, expected))
    print("%d of %d values are shown as expected" % (len(EXPECTED) - wrong, len(EXPECTED)))
    return wrong


try:
    failed = check()
except gdb.error as problem:
    print("gdb cannot run the sample: %s" % problem)
    failed = 1
gdb.execute("quit %d" % min(failed, 1))
